// Values of options. An input has a value a line, behind a letter for the option that takes it.
#include "core/ilibraryservices.h"
#include "core/programoptions.h"
#include "data/content/package.h"
#include "fuzztargets.h"
#include "ksx/core/packagereader.h"
#include "ksx/core/packageslistmanager.h"
#include "programcommand/imageconnection.h"
#include "programcommand/inputeditor.h"
#include "services.h"
#include "support/filtertext.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"

#include <QStringList>
#include <QUrl>
#include <random>
#include <sstream>

namespace TestSupport {

namespace {

constexpr char SetDefault = 's';
constexpr char SwitchToConstant = 'c';
constexpr char ConnectImage = 'i';

// A graph with an input of each type. Its name is the number of the type.
std::string aPackageOfAllTypes()
{
    FilterText filter("f");
    for (unsigned bit = 0; bit < 17; ++bit)
        filter.taking(InputText("t" + std::to_string(1U << bit), 1U << bit));
    filter.taking(InputText("t2304", 2304)).taking(InputText("t3", 3));
    filter.taking(InputText("bounded", 256)
                      .byDefault("Float1", "0.5")
                      .editedBy("slider")
                      .withOption("min", "0")
                      .withOption("max", "1")
                      .withOption("clamp", "1"));
    return aPackage().named("p").containing(filter.text()).text();
}

// Runs the command with services of its own, which leave nothing behind.
int run(const std::vector<std::string>& arguments)
{
    Services services;
    int code = 0;
    {
        Orv::Core::ProgramOptions options(QStringLiteral("kestrix"), 80, 70);
        options.addCommand(std::make_unique<ProgramCommand::InputEditor>(&services));
        std::vector<const char*> words{"kestrix"};
        for (const std::string& argument : arguments)
            words.push_back(argument.c_str());
        code = options.run(static_cast<int>(words.size()), words.data());
    }
    delete services.packagesListManager();
    Orv::setLibraryServices(nullptr);
    return code;
}

bool canBeOpened(const std::string& path)
{
    const QUrl url = QUrl::fromLocalFile(QString::fromStdString(path));
    return Ksx::Core::PackageReader::open(url, nullptr, {}, {}, nullptr, nullptr, true) != nullptr;
}

// A target that is written is a package; a run that fails writes none.
std::string faultOfEdits(const std::vector<std::string>& edits)
{
    static const TemporaryDirectory directory;
    static const std::string package = directory.write("p.obl", aPackageOfAllTypes());
    std::vector<std::string> arguments{package, "--output-path", directory.path(), "--output-name",
                                       "out"};
    arguments.insert(arguments.end(), edits.begin(), edits.end());
    const int code = run(arguments);
    const bool isWritten = directory.exists("out.obl");
    const bool isSound = code == 0 && isWritten && canBeOpened(directory.path("out.obl"));
    if (isWritten)
        std::filesystem::remove(directory.path("out.obl"));
    if (code == 1)
        return isWritten ? "failed and has written" : "";
    return isSound ? "" : "ends with " + std::to_string(code) + " and no package";
}

std::string faultOfValues(const std::string& input)
{
    std::vector<std::string> edits;
    QStringList images;
    std::istringstream lines(input);
    for (std::string line; std::getline(lines, line);) {
        const std::string value = line.empty() ? line : line.substr(1);
        switch (line.empty() ? '\0' : line.front()) {
        case SetDefault:
            edits.push_back("--set-default-value=" + value);
            break;
        case SwitchToConstant:
            edits.push_back("--switch-to-constant=" + value);
            break;
        case ConnectImage:
            images.append(QString::fromStdString(value));
            break;
        default:;
        }
    }
    ProgramCommand::parseImageConnections("connect-image", images);
    return edits.empty() ? "" : faultOfEdits(edits);
}

std::vector<std::string> values()
{
    return {"st256@0.5\n",
            "st16@-1\nst32@1,2\nst64@1,2,3\nst128@1,2,3,4\n",
            "st256@1e9\nst512@1,2\nst1024@1,2,3\nst2048@0,0.5,1,nan\n",
            "st4@1\nst16384@a\nst32768@text\n",
            "sbounded@2\n",
            "ct256\nct16@3\nct4@0\n",
            "ct2048@1,2,3,4\nct2304@1\nct1\nct3@1\n",
            "iin@path@a.png@level@0.5@format@JPEG@tiling@1\n"};
}

const std::vector<std::string> Words = {
    "@",      ",",          "nan",    "inf",        "-inf",        "1e38",  "1e39",    "1e-46",
    "0x1p3",  "2147483647", "-",      "+",          ".",           "e",     " ",       "\xC3\xA9",
    "\xFF",   "t1",         "t16",    "t256",       "t2048",       "t2304", "bounded", "level",
    "tiling", "path",       "format", "4294967295", "-2147483649", "\ns",   "\nc",     "\ni"};

std::string changedAsValues(const std::string& input, const std::string& other, unsigned seed)
{
    std::mt19937 random(seed);
    const auto below = [&](std::size_t count) { return count == 0 ? 0 : random() % count; };
    std::string text = input;
    const std::size_t place = below(text.size() + 1);
    switch (below(4)) {
    case 0:
        text.erase(place, 1 + below(4));
        break;
    case 1:
        text.insert(place, other.substr(below(other.size()), 1 + below(20)));
        break;
    default:
        text.insert(place, Words[below(Words.size())]);
    }
    return text;
}

} // namespace

std::vector<FuzzTarget> commandLineTargets()
{
    return {{"values", &faultOfValues, &values, &changedAsValues}};
}

} // namespace TestSupport

// The proof of the command "preview": an update with the same arguments does what it told.
#include "core/messagenode.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/packagereader.h"
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <gtest/gtest.h>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <sys/stat.h>

using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::escaped;
using TestSupport::ksxPath;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

namespace fs = std::filesystem;

constexpr long Now = 1790000000;
using Files = std::map<std::string, std::string>; // bytes by path

// All files below a folder. Folders have no bytes.
Files filesBelow(const std::string& folder)
{
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        files[entry.path()] =
            entry.is_regular_file() ? TestSupport::readFile(entry.path()) : std::string();
    return files;
}

// Every name below a folder with its kind, its size, its times and its permissions.
std::string listingOf(const std::string& folder)
{
    std::map<std::string, std::string> lines;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        struct stat status = {};
        lstat(entry.path().c_str(), &status);
        std::ostringstream line;
        line << status.st_mode << ' ' << status.st_size << ' ' << status.st_ino << ' '
             << status.st_mtim.tv_sec << '.' << status.st_mtim.tv_nsec << ' '
             << status.st_ctim.tv_sec << '.' << status.st_ctim.tv_nsec << '\n';
        lines[entry.path()] = line.str();
    }
    std::string text;
    for (const auto& [path, line] : lines)
        text.append(path).append(" ").append(line);
    return text;
}

std::string sumOf(const std::string& bytes)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

// The steps of a file in its log, such as "1.1.0.5356".
std::vector<std::string> stepsInLog(const std::string& file)
{
    Orv::Core::MessageNode log;
    Ksx::Core::PackageReader::open(QUrl::fromLocalFile(QString::fromStdString(file)), &log, {}, {},
                                   nullptr, nullptr, true);
    std::vector<std::string> steps;
    for (const auto& message : log.children())
        if (message->text().endsWith(QLatin1String(" : NAME")))
            steps.push_back(message->text().section(' ', 0, 0).toStdString());
    return steps;
}

std::string textOf(const QJsonValue& value)
{
    return Orv::toBytes(value.toString());
}

// An update of a copy of samples: the preview, the files in front of the run, the run and the files
// behind it.
class Proof
{
public:
    Proof(const std::string& folder, const Arguments& arguments)
        : m_folder(folder), m_listing(listingOf(folder)), m_before(filesBelow(folder))
    {
        Arguments words{"preview", "--json"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        m_preview = tool().at(ksxPath()).run(words);
        m_report = QJsonDocument::fromJson(QByteArray::fromStdString(m_preview.out)).object();
        m_listingBehind = listingOf(folder);
        words = {"update"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        for (const QJsonValue file : files())
            m_steps[textOf(file["file"])] = stepsInLog(textOf(file["file"]));
        m_run = tool().run(words);
        m_after = filesBelow(folder);
    }

    const ToolRun& preview() const { return m_preview; }
    const ToolRun& run() const { return m_run; }
    QJsonArray files() const { return m_report["files"].toArray(); }

    void expectTrue() const
    {
        EXPECT_EQ(m_listingBehind, m_listing) << "the preview has written";
        EXPECT_EQ(m_preview.exitCode, expectedExitCode()) << m_preview;
        expectLines();
        expectOutputs();
        for (const QJsonValue file : files()) {
            expectSteps(file.toObject());
            expectReferences(file.toObject());
        }
    }

private:
    Tool tool() const { return Tool(m_folder).withClockAt(Now).withoutRootRights(); }

    int expectedExitCode() const
    {
        if (m_run.exitCode != 0)
            return 2;
        return changedFiles().empty() ? 0 : 1;
    }

    std::set<std::string> changedFiles() const
    {
        std::set<std::string> changed;
        for (const auto& [path, bytes] : m_after) {
            const auto before = m_before.find(path);
            if (before == m_before.end() || before->second != bytes)
                changed.insert(path);
        }
        return changed;
    }

    // The run prints the files that it has read and written, and the preview the same errors.
    void expectLines() const
    {
        std::string read;
        std::string written;
        std::string errors;
        for (const QJsonValue file : files()) {
            read += "    " + textOf(file["file"]) + '\n';
            if (file["error"].toString().isEmpty())
                written += "    " + textOf(file["target"]) + '\n';
        }
        for (const QJsonValue error : m_report["errors"].toArray())
            errors += textOf(error) + '\n';
        EXPECT_EQ(m_run.err, errors);
        const bool isLoaded = m_report["failures"].toArray().isEmpty();
        const std::string expected =
            isLoaded ? "Packages Loaded:\n" + read + "Packages Saved:\n" + written : "";
        const std::size_t begin = m_run.out.find("Packages Loaded:");
        EXPECT_EQ(begin == std::string::npos ? "" : m_run.out.substr(begin), expected);
    }

    void expectOutputs() const
    {
        std::set<std::string> changed;
        for (const QJsonValue file : files()) {
            const std::string target = textOf(file["target"]);
            EXPECT_EQ(file["exists"].toBool(), m_before.count(target) == 1) << target;
            if (file["changed"].toBool())
                changed.insert(target);
            if (m_run.exitCode != 0 || file["replaced"].toBool())
                continue;
            ASSERT_EQ(m_after.count(target), 1U) << target;
            EXPECT_EQ(textOf(file["sha256"]), sumOf(m_after.at(target))) << target;
            EXPECT_EQ(file["size"].toInt(), m_after.at(target).size()) << target;
        }
        if (m_report["failures"].toArray().isEmpty())
            EXPECT_EQ(changed, changedFiles());
        else
            EXPECT_EQ(changedFiles(), std::set<std::string>());
    }

    void expectSteps(const QJsonObject& file) const
    {
        std::vector<std::string> steps;
        for (const QJsonValue step : file["steps"].toArray())
            steps.push_back(textOf(step["version"]));
        EXPECT_EQ(steps, m_steps.at(textOf(file["file"]))) << textOf(file["file"]);
    }

    // New uids are left out: the file has their numbers.
    void expectReferences(const QJsonObject& file) const
    {
        if (m_run.exitCode != 0 || file["replaced"].toBool())
            return;
        const std::string& written = m_after.at(textOf(file["target"]));
        for (const QJsonValue change : file["references"].toArray()) {
            const std::string text = textOf(change["new"]);
            const bool isThere = written.find("v=\"" + escaped(text) + '"') != std::string::npos;
            EXPECT_TRUE(isThere || text.find("new uid") != std::string::npos) << text;
        }
    }

    std::string m_folder;
    std::string m_listing;
    Files m_before;
    ToolRun m_preview;
    QJsonObject m_report;
    std::string m_listingBehind;
    std::map<std::string, std::vector<std::string>> m_steps;
    ToolRun m_run;
    Files m_after;
};

// Options in front of the packages of a case.
struct ProofCase
{
    const char* name;
    Arguments arguments;
};

class PreviewOf : public testing::TestWithParam<ProofCase>
{
protected:
    PreviewOf()
    {
        fs::copy(sourcePath("examples"), directory.path(), fs::copy_options::recursive);
        fs::copy(TestSupport::goldenPath("chains"), directory.makeDirectory("chains"),
                 fs::copy_options::recursive);
        allowAll();
    }
    // The tools run without the rights of root.
    void allowAll() const
    {
        directory.setMode("", 0777);
        for (const auto& entry : fs::recursive_directory_iterator(directory.path()))
            fs::permissions(entry.path(),
                            fs::perms::others_write | fs::perms::others_read |
                                (entry.is_directory() ? fs::perms::others_exec : fs::perms::none),
                            fs::perm_options::add);
    }
    Proof prove(const Arguments& arguments) const { return {directory.path(), arguments}; }

    TemporaryDirectory directory;
};

TEST_P(PreviewOf, TellsWhatTheUpdateDoes)
{
    const Proof proof = prove(GetParam().arguments);

    EXPECT_FALSE(proof.files().isEmpty()) << proof.preview();
    proof.expectTrue();
}

TEST_P(PreviewOf, IsTrueOfASecondUpdateAsWell)
{
    prove(GetParam().arguments);

    prove(GetParam().arguments).expectTrue();
}

const char* const Presets = "--presets-path";
const char* const To = "--output-path";
const char* const As = "--output-name";

INSTANTIATE_TEST_SUITE_P(
    All, PreviewOf,
    testing::Values(
        ProofCase{"BrickWall", {Presets, "presets", "bricks/brick_wall.obl"}},
        ProofCase{"SurfaceRust", {Presets, "presets", "effects/surface_rust.obl"}},
        ProofCase{"WovenFabric", {Presets, "presets", "fabrics/woven_fabric.obl"}},
        ProofCase{"CityFacade", {Presets, "presets", "large/city_facade.obl"}},
        ProofCase{"Everything", {Presets, "presets", "mixed/everything.obl"}},
        ProofCase{"Noises", {Presets, "presets", "noises/noises.obl"}},
        ProofCase{"PresetsLibrary", {Presets, "presets", "presets/presets_library.obl"}},
        ProofCase{"WoodPlanks", {Presets, "presets", "wood/wood_planks.obl"}},
        ProofCase{"CycleBesideItself",
                  {Presets, "presets", To, "{inputPath}", "wood/wood_planks.obl"}},
        ProofCase{"RustAssembly", {"assemblies/rust_effect.oblasm"}},
        ProofCase{"MetalArchive", {"assemblies/metal_filters.oblar"}},
        ProofCase{"StoneArchive", {"assemblies/stone_filters.oblar"}},
        ProofCase{"RoofTiles", {Presets, "old/presets", "old/roof_tiles.obl"}},
        ProofCase{"Grain", {"old/grain.obl"}},
        ProofCase{"Felt", {Presets, "old/presets", "old/felt.obl"}},
        ProofCase{"Parquet", {"old/parquet.obl"}}, ProofCase{"Speckles", {"old/speckles.obl"}},
        ProofCase{"Pavement", {"old/pavement.obl"}},
        ProofCase{"MarketSquare", {"old/market_square.obl"}},
        ProofCase{"Shapes", {"old/presets/shapes.obl"}},
        ProofCase{"Version3000", {Presets, "chains/presets", "chains/1.0.1.3000/input.obl"}},
        ProofCase{"Version3962", {Presets, "chains/presets", "chains/1.0.1.3962/input.obl"}},
        ProofCase{"Version4253", {Presets, "chains/presets", "chains/1.0.1.4253/input.obl"}},
        ProofCase{"Version4510", {Presets, "chains/presets", "chains/1.0.1.4510/input.obl"}},
        ProofCase{"Version4858", {Presets, "chains/presets", "chains/1.0.3.4858/input.obl"}},
        ProofCase{"Version5017", {Presets, "chains/presets", "chains/1.0.3.5017/input.obl"}},
        ProofCase{"Version5356", {Presets, "chains/presets", "chains/1.1.0.5356/input.obl"}},
        ProofCase{"Version6141", {Presets, "chains/presets", "chains/1.1.0.6141/input.obl"}},
        ProofCase{"AllOldInTheirPlaces",
                  {Presets, "old/presets", To, "{inputPath}", As, "{inputName}",
                   "old/roof_tiles.obl", "old/felt.obl", "old/speckles.obl", "old/pavement.obl",
                   "old/market_square.obl", "old/parquet.obl"}},
        ProofCase{"TwoIntoOneFile", {As, "both", "old/pavement.obl", "old/speckles.obl"}},
        ProofCase{"OneTwice", {"--no-dependency", "old/grain.obl", "old/../old/grain.obl"}},
        ProofCase{"ToAFolderThatIsNotThere", {To, "nowhere", "old/grain.obl"}},
        ProofCase{"WithoutAName", {As, "", "old/grain.obl"}}),
    TestSupport::caseName<ProofCase>);

// Packages of a test's own.
class PreviewOfOwn : public testing::Test
{
protected:
    PreviewOfOwn() { directory.setMode("", 0777); }
    Proof prove(const Arguments& arguments) const { return {directory.path(), arguments}; }
    void writeSound(const std::string& name) const { directory.write(name, aPackage().text()); }

    TemporaryDirectory directory;
};

TEST_F(PreviewOfOwn, TellsOfADamagedPackageAmongOthers)
{
    writeSound("a.obl");
    directory.write("b.obl", "<package><formatVersion v=\"1.0.1.3000\"/><conten");

    const Proof proof = prove({"a.obl", "b.obl"});

    proof.expectTrue();
    EXPECT_EQ(proof.files().size(), 1);
    EXPECT_EQ(proof.preview().err.rfind("Error! ", 0), 0U) << proof.preview();
}

TEST_F(PreviewOfOwn, TellsOfAMissingDependency)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 5).text());

    const Proof proof = prove({"a.obl"});

    proof.expectTrue();
    EXPECT_NE(proof.preview().err.find("Cannot load dependency: "), std::string::npos)
        << proof.preview();
}

TEST_F(PreviewOfOwn, TellsOfAStepThatFails)
{
    directory.write("a.obl", "<package><formatVersion v=\"1.0.3.5017\"/></package>");

    prove({"a.obl"}).expectTrue();
}

TEST_F(PreviewOfOwn, TellsOfAFolderThatTakesNoFile)
{
    writeSound("a.obl");
    directory.makeDirectory("shut");
    directory.setMode("shut", 0555);

    prove({"--output-path", "shut", "a.obl"}).expectTrue();
}

TEST_F(PreviewOfOwn, TellsOfAFileThatMayNotBeWritten)
{
    writeSound("a.obl");
    writeSound("a_updated.obl");
    directory.setMode("a_updated.obl", 0444);

    prove({"a.obl"}).expectTrue();
}

TEST_F(PreviewOfOwn, TellsOfATargetThatIsAFolder)
{
    writeSound("a.obl");
    directory.makeDirectory("a_updated.obl");

    prove({"a.obl"}).expectTrue();
}

TEST_F(PreviewOfOwn, FollowsALinkToTheTarget)
{
    writeSound("a.obl");
    writeSound("b.obl");
    directory.write("old.obl", "before");
    directory.setMode("old.obl", 0666);
    directory.makeLink("a_updated.obl", "old.obl");
    directory.makeLink("b_updated.obl", "old.obl");

    const Proof proof = prove({"a.obl", "b.obl"});

    EXPECT_TRUE(proof.files()[0].toObject()["replaced"].toBool());
    EXPECT_EQ(sumOf(directory.read("old.obl")), textOf(proof.files()[1].toObject()["sha256"]));
}

TEST_F(PreviewOfOwn, TellsOfPackagesThatNeedEachOther)
{
    directory.write("a.obl", aPackage()
                                 .dependingOn("b.obl", 5)
                                 .containing(aGraphWithInstance("i", "pkg://g/i?dependency=5"))
                                 .text());
    directory.write("b.obl", aPackage()
                                 .dependingOn("a.obl", 7)
                                 .containing(aGroup("g", aGraphWithInstance("i", "pkg://i")))
                                 .text());

    const Proof proof = prove({"a.obl"});

    proof.expectTrue();
    EXPECT_EQ(proof.files().size(), 2);
}

TEST_F(PreviewOfOwn, TellsOfElementsThatTheFormatDoesNotKnow)
{
    const std::string text =
        TestSupport::replaced(aPackage().text(), "<platform", "<stage v=\"7\"/><platform");
    directory.write("a.obl", text);

    const Proof proof = prove({"a.obl"});

    proof.expectTrue();
    const QJsonObject change = proof.files()[0].toObject()["writing"].toArray()[0].toObject();
    EXPECT_EQ(textOf(change["kind"]), "removed");
    EXPECT_EQ(textOf(change["element"]), "stage");
    EXPECT_EQ(textOf(change["old"]), "7");
}

} // namespace

// The command "draw": pictures of graphs, and reports of libraries.
#include "command/commandtable.h"
#include "command/jsonoutput.h"
#include "command/outputfolder.h"
#include "command/packagework.h"
#include "data/filename.h"
#include "ksx/kit/pictures.h"
#include "ksx/kit/report.h"
#include "report/filenames.h"
#include <iostream>
#include <optional>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;

constexpr const char* OutputOption = "output";
constexpr const char* HtmlOption = "html";
constexpr const char* FormatOption = "format";
constexpr const char* GraphOption = "graph";
constexpr const char* Png = "png";
constexpr const char* Svg = "svg";

// A picture that is written.
struct WrittenPicture
{
    QString place;
    bool isFunction = false;
    QString file;
    std::size_t nodes = 0;
    std::size_t connections = 0;
    std::size_t leftOut = 0;
    LayoutWay way = LayoutWay::Stored;
};

using WrittenPictures = std::vector<WrittenPicture>;

QJsonObject toJson(const WrittenPicture& picture)
{
    return {{"place", picture.place},
            {"kind", picture.isFunction ? "function" : "graph"},
            {"picture", picture.file},
            {"nodes", qint64(picture.nodes)},
            {"connections", qint64(picture.connections)},
            {"leftOut", qint64(picture.leftOut)},
            {"layout", wordOf(picture.way)}};
}

// The results as the user wants them: JSON, or a line for each file that is written.
class Results
{
public:
    explicit Results(bool isJson)
    {
        if (isJson)
            m_json.emplace("draw", "packages");
    }

    void add(const QString& file, const WrittenPictures& pictures)
    {
        m_pictures += pictures.size();
        QJsonArray array;
        for (const WrittenPicture& picture : pictures) {
            array.append(toJson(picture));
            if (!m_json)
                std::cout << Orv::toBytes(picture.file) << '\n';
        }
        if (m_json)
            m_json->add({{"file", file}, {"page", QString()}, {"pictures", array}});
    }
    void addPage(const QString& file, const QString& page)
    {
        if (m_json)
            m_json->add({{"file", file}, {"page", page}, {"pictures", QJsonArray()}});
    }
    void addIndex(const QString& file)
    {
        if (!m_json)
            std::cout << Orv::toBytes(file) << '\n';
    }
    void finish(const PackageFiles& files)
    {
        if (m_json)
            m_json->finish(files.failures);
    }
    std::size_t pictureCount() const { return m_pictures; }

private:
    std::optional<JsonList> m_json; // none for people
    std::size_t m_pictures = 0;
};

// Returns for each file a folder of its own, named like it.
QHash<QString, QString> foldersFor(const QStringList& files)
{
    QHash<QString, QString> folders;
    UniqueFileNames names;
    for (const QString& file : files) {
        const QString name = file.mid(file.lastIndexOf(QLatin1Char('/')) + 1);
        const auto end = name.lastIndexOf(QLatin1Char('.'));
        folders.insert(file, names.nameFor(end > 0 ? name.left(end) : name));
    }
    return folders;
}

void addFailure(PackageFiles& files, const QString& file, const QString& reason)
{
    files.failures.push_back({file, reason});
    printFailure(files.failures.back());
}

void drawPictures(const Request& request, PackageFiles& files, Results& results)
{
    const QStringList presetsPaths = presetsPathsOf(request);
    const OutputFolder output(request.text(OutputOption), files.files);
    const QHash<QString, QString> folders = foldersFor(files.files);
    PictureChoice choice;
    choice.place = request.text(GraphOption);
    const bool isPng = request.text(FormatOption) == QLatin1String(Png);
    choice.ending = QLatin1Char('.') + QLatin1String(isPng ? Png : Svg);
    const auto read = [&](const QString& file, QString& reason) -> std::optional<WrittenPictures> {
        WrittenPictures written;
        const auto take = [&](const Picture& picture) {
            const QString name =
                folders.value(file) + QLatin1Char('/') + picture.name + choice.ending;
            const Drawing& drawing = picture.drawing;
            written.push_back({picture.place, picture.isFunction, output.pathOf(name),
                               drawing.boxes.size(), drawing.wires.size(), drawing.leftOut,
                               drawing.way});
            const QByteArray bytes = isPng ? pngOf({drawing}, reason) : svgOf(drawing);
            if (bytes.isEmpty())
                reason = QStringLiteral("%1: %2").arg(picture.place, reason);
            return !bytes.isEmpty() && output.write(name, bytes, reason);
        };
        if (!drawPackage(file, presetsPaths, choice, take, reason))
            return std::nullopt;
        return written;
    };
    const auto take = [&](const QString& file, WrittenPictures&& pictures) {
        results.add(file, pictures);
    };
    readAll<WrittenPictures>(files, jobsOf(request), read, take);
    if (!choice.place.isEmpty() && results.pictureCount() == 0)
        addFailure(files, choice.place, QStringLiteral("no package has such a graph or function"));
}

void writeReport(const Request& request, PackageFiles& files, Results& results)
{
    const OutputFolder output(request.text(HtmlOption), files.files);
    const LibraryReport report(files.files, presetsPathsOf(request));
    std::vector<ReportEntry> entries;
    std::vector<Failure> unreadable;
    const auto read = [&](const QString& file, QString& reason) -> std::optional<ReportPage> {
        ReportPage page = report.pageOf(file);
        if (!output.write(page.file.name, page.file.text, reason))
            return std::nullopt;
        page.file.text.clear(); // it waits for its turn
        return page;
    };
    const auto take = [&](const QString& file, ReportPage&& page) {
        results.addPage(file, output.pathOf(page.file.name));
        if (!page.failure.isEmpty())
            unreadable.push_back({file, page.failure});
        entries.push_back(std::move(page.entry));
    };
    readAll<ReportPage>(files, jobsOf(request), read, take);
    for (const Failure& failure : unreadable)
        addFailure(files, failure.file, failure.reason);
    QString reason;
    for (const ReportFile& one : LibraryReport::indexOf(entries)) {
        if (output.write(one.name, one.text, reason))
            continue;
        addFailure(files, request.text(HtmlOption), reason);
        return;
    }
    results.addIndex(output.pathOf(QStringLiteral("index.html")));
}

void checkOptions(const Request& request)
{
    if (request.has(OutputOption) == request.has(HtmlOption))
        throw UsageError("Give either '--output' or '--html', with a folder to write to");
    if (request.has(HtmlOption) && request.has(GraphOption))
        throw UsageError("'--graph' goes with '--output' alone");
    if (request.has(HtmlOption) && request.has(FormatOption))
        throw UsageError("'--format' goes with '--output' alone");
    const QString format = request.text(FormatOption);
    if (!format.isEmpty() && format != QLatin1String(Png) && format != QLatin1String(Svg))
        throw UsageError("The option '--format' takes svg or png");
}

} // namespace

void declareDrawOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        ("output,o", po::value<std::string>()->value_name("FOLDER"),
         "Writes a picture of each graph and each function there, in a folder for each package.")
        (HtmlOption, po::value<std::string>()->value_name("FOLDER"),
         "Writes a report there in place of pictures: a page for each package, and an index with a "
         "search. A browser opens index.html.")
        (FormatOption, po::value<std::string>()->value_name("FORMAT"),
         "Chooses the format of pictures: svg, which is the default, or png.")
        (GraphOption, po::value<std::string>()->value_name("PATH"),
         "Draws the graph or function at that path alone, such as group/graph.");
    // clang-format on
    declareReadingOptions(options);
}

int runDraw(const Request& request)
{
    checkOptions(request);
    jobsOf(request); // a wrong one ends the command before anything is printed
    PackageFiles files = filesOf(request);
    Results results(request.has("json")); // prints, so the request is sound by now
    if (request.has(HtmlOption))
        writeReport(request, files, results);
    else
        drawPictures(request, files, results);
    results.finish(files);
    return files.failures.empty() ? NothingFound : CannotDo;
}

} // namespace Ksx::Kit

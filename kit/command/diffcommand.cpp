// The command "diff", which tells what differs between packages.
#include "command/colour.h"
#include "command/commandtable.h"
#include "command/differencetext.h"
#include "command/jsonoutput.h"
#include "command/outputfolder.h"
#include "command/packagework.h"
#include "command/texttable.h"
#include "console.h"
#include "core/fileplace.h"
#include "data/filename.h"
#include "ksx/kit/comparisonpictures.h"
#include "report/filenames.h"
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <iostream>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;
using Differences = std::vector<Difference>;

constexpr const char* LayoutOption = "layout";
constexpr const char* GitOption = "git";
constexpr const char* TextOption = "text";
constexpr const char* SvgOption = "svg";
const QString Nothing = QStringLiteral("/dev/null");

// Two files, and what users call them.
struct Pair
{
    PackageVersion first;
    PackageVersion second;
    QString name = {}; // of both together
};

// Returns the names of the packages in a folder, from the folder on, in their order.
QStringList namesIn(const QString& folder, std::vector<Failure>& failures)
{
    PackageFiles found = findPackageFiles({folder});
    failures.insert(failures.end(), found.failures.begin(), found.failures.end());
    const QDir root(Orv::Core::absolutePath(folder));
    for (QString& file : found.files)
        file = root.relativeFilePath(Orv::Core::absolutePath(file));
    std::sort(found.files.begin(), found.files.end()); // by characters, not by bytes
    return found.files;
}

// Returns the packages of two folders, by their names. What one folder lacks is compared with
// nothing.
std::vector<Pair> pairsOfFolders(const QString& first, const QString& second,
                                 std::vector<Failure>& failures)
{
    const QStringList firstNames = namesIn(first, failures);
    const QStringList secondNames = namesIn(second, failures);
    QStringList all = firstNames + secondNames;
    all.removeDuplicates();
    std::sort(all.begin(), all.end());
    const auto versionOf = [](const QString& folder, const QStringList& names,
                              const QString& name) {
        const QString file = QDir(folder).filePath(name);
        const bool isThere = std::binary_search(names.begin(), names.end(), name);
        return PackageVersion{isThere ? file : Nothing, isThere ? QString() : file};
    };
    std::vector<Pair> pairs;
    for (const QString& name : all)
        pairs.push_back(
            {versionOf(first, firstNames, name), versionOf(second, secondNames, name), name});
    return pairs;
}

// Git calls an external diff with the path of the file, and then file, hash and mode of the two
// versions. A renamed file has its other path behind them.
std::vector<Pair> pairOfGit(const QStringList& words)
{
    if (words.size() == 1)
        return {}; // an unmerged path
    if (words.size() != 7 && words.size() != 9)
        throw UsageError("The option '--git' takes the seven words that git gives");
    const QString& path = words[0];
    return {{{words[1], path}, {words[4], path}, path}};
}

std::vector<Pair> pairsOf(const Request& request, std::vector<Failure>& failures)
{
    const QStringList names = operandsOf(request);
    if (request.has(GitOption))
        return pairOfGit(names);
    if (names.size() != 2)
        throw UsageError("Two packages or two folders are compared");
    if (QFileInfo(names[0]).isDir() && QFileInfo(names[1]).isDir())
        return pairsOfFolders(names[0], names[1], failures);
    return {{{names[0]}, {names[1]}}};
}

// A picture that is written.
struct WrittenPicture
{
    QString place;
    QString file;
};

// What came out of a pair: without differences a failure.
struct Outcome
{
    std::optional<Differences> differences;
    std::vector<WrittenPicture> pictures;
    Failure failure;
};

QJsonArray jsonOf(const std::vector<WrittenPicture>& pictures)
{
    QJsonArray array;
    for (const WrittenPicture& picture : pictures)
        array.append(QJsonObject{{"place", picture.place}, {"picture", picture.file}});
    return array;
}

// Prints what is found.
class Results
{
public:
    explicit Results(bool isJson)
    {
        if (isJson)
            m_json.emplace("diff", "comparisons");
    }

    void add(const Pair& pair, const Differences& differences,
             const std::vector<WrittenPicture>& pictures)
    {
        m_hasFound = m_hasFound || !differences.empty();
        if (m_json) {
            m_json->add({{"first", pair.first.file},
                         {"second", pair.second.file},
                         {"differences", arrayOf(differences)},
                         {"pictures", jsonOf(pictures)}});
            return;
        }
        if (differences.empty())
            return;
        if (!pair.name.isEmpty())
            std::cout << Orv::toBytes(coloured(lineText(pair.name), Colour::Strong, m_isColoured) +
                                      QLatin1Char('\n'));
        std::cout << Orv::toBytes(differenceText(differences, m_isColoured));
        for (const WrittenPicture& picture : pictures)
            std::cout << Orv::toBytes(picture.file) << '\n';
    }

    void fail(const QString& file, const QString& reason)
    {
        m_failures.push_back({file, reason});
        printFailure(m_failures.back());
    }

    int finish()
    {
        if (m_json)
            m_json->finish(m_failures);
        if (!m_failures.empty())
            return CannotDo;
        return m_hasFound ? SomethingFound : NothingFound;
    }

private:
    const bool m_isColoured = hasColours();
    std::optional<JsonList> m_json; // none for people
    std::vector<Failure> m_failures;
    bool m_hasFound = false;
};

// Writes the pictures of a pair into a folder of its own. Returns false on failure.
bool writePictures(const OutputFolder& output, const QString& folder,
                   const std::vector<ComparedGraph>& graphs, Outcome& outcome)
{
    UniqueFileNames names;
    for (const ComparedGraph& graph : graphs) {
        const QString name =
            folder + names.nameFor(dottedName(graph.place)) + QStringLiteral(".svg");
        outcome.failure.file = output.pathOf(name);
        if (!output.write(name, svgOf({graph.before, graph.after}), outcome.failure.reason))
            return false;
        outcome.pictures.push_back({graph.place, output.pathOf(name)});
    }
    return true;
}

// Compares pairs, and draws them if there is a folder for pictures.
class Comparer
{
public:
    Comparer(const std::vector<Pair>& pairs, const ComparisonOptions& options,
             const QString& pictureFolder)
        : m_pairs(pairs), m_options(options)
    {
        QStringList inputs;
        UniqueFileNames names;
        for (const Pair& pair : pairs) {
            inputs << pair.first.file << pair.second.file;
            m_folders.append(pair.name.isEmpty() ? QString()
                                                 : names.nameFor(pair.name) + QLatin1Char('/'));
        }
        if (!pictureFolder.isEmpty())
            m_pictures.emplace(pictureFolder, inputs);
    }

    // Runs in any thread.
    Outcome compare(std::size_t index) const
    {
        const Pair& pair = m_pairs[index];
        Outcome outcome;
        QString& file = outcome.failure.file;
        QString& reason = outcome.failure.reason;
        if (!m_pictures) {
            outcome.differences = comparePackages(pair.first, pair.second, m_options, file, reason);
            return outcome;
        }
        auto drawn = drawComparison(pair.first, pair.second, m_options, file, reason);
        const QString& folder = m_folders[static_cast<int>(index)];
        if (drawn && writePictures(*m_pictures, folder, drawn->graphs, outcome))
            outcome.differences = std::move(drawn->differences);
        return outcome;
    }

private:
    const std::vector<Pair>& m_pairs;
    const ComparisonOptions& m_options;
    QStringList m_folders; // in the folder for pictures, one for each pair
    std::optional<OutputFolder> m_pictures;
};

void compareAll(const std::vector<Pair>& pairs, const Comparer& comparer, unsigned jobs,
                Results& results)
{
    PackageFiles numbers; // of the pairs, since they may share their names
    for (std::size_t i = 0; i < pairs.size(); ++i)
        numbers.files.append(QString::number(i));
    const auto compare = [&](const QString& number, QString&) {
        return std::optional<Outcome>(comparer.compare(number.toUInt()));
    };
    const auto take = [&](const QString& number, Outcome&& outcome) {
        if (outcome.differences)
            results.add(pairs[number.toUInt()], *outcome.differences, outcome.pictures);
        else
            results.fail(outcome.failure.file, outcome.failure.reason);
    };
    readAll<Outcome>(numbers, jobs, compare, take);
}

int describeFiles(const QStringList& files, const ComparisonOptions& options)
{
    int exitCode = NothingFound;
    for (const QString& file : files) {
        QString reason;
        const auto lines = describePackage({file}, options, reason);
        if (!lines) {
            printFailure({file, reason});
            exitCode = CannotDo;
            continue;
        }
        for (const QString& line : *lines)
            std::cout << Orv::toBytes(lineText(line)) << '\n';
    }
    return exitCode;
}

} // namespace

void declareDiffOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        (LayoutOption, po::bool_switch(),
         "Counts positions, comments and other facts of the layout as well.")
        (GitOption, po::bool_switch(),
         "Takes the words that git gives an external diff. The exit code is 0 for differences.")
        (SvgOption, po::value<std::string>()->value_name("FOLDER"),
         "Writes a picture of each graph and function that differs there, with both versions side by "
         "side in colours.")
        (TextOption, po::bool_switch(),
         "Prints all facts of each package, a line for each, for programs that compare texts.");
    // clang-format on
    declareReadingOptions(options);
}

int runDiff(const Request& request)
{
    ComparisonOptions options;
    options.withLayout = request.has(LayoutOption);
    if (request.has(TextOption))
        return describeFiles(operandsOf(request), options);
    const unsigned jobs = jobsOf(request);
    std::vector<Failure> failures;
    std::vector<Pair> pairs = pairsOf(request, failures);
    Results results(request.has("json")); // prints, so the request is sound by now
    for (const Failure& failure : failures)
        results.fail(failure.file, failure.reason);
    compareAll(pairs, Comparer(pairs, options, request.text(SvgOption)), jobs, results);
    const int exitCode = results.finish();
    return request.has(GitOption) && exitCode == SomethingFound ? NothingFound : exitCode;
}

} // namespace Ksx::Kit

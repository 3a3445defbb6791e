#include "ksx/core/dependencyopener.h"

#include "core/fileplace.h"
#include "core/messagenode.h"
#include "data/content/package.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/packagereader.h"
#include <QDir>
#include <QPair>
#include <QSet>
#include <QUrl>
#include <boost/functional/hash.hpp>
#include <deque>
#include <iterator>
#include <memory>

namespace Ksx::Core {

namespace {

using Data::Content::Package;
using Orv::Core::MessageNode;

const char* const PresetsPrefix = "obl://";
constexpr std::size_t ReadingsPerWorker = 2; // at most, begun and not yet attached

std::list<QDir> presetsDirectories(const QStringList& paths)
{
    if (paths.isEmpty())
        return {QDir(Orv::Core::currentFolder())};
    return {paths.begin(), paths.end()};
}

// A package file that is read ahead of its turn.
struct ReadAhead
{
    QString filename;
    std::unique_ptr<MessageNode> report = nullptr; // null if nobody wants one
    std::unique_ptr<Package> package = nullptr;
};

void moveMessages(MessageNode& from, MessageNode& to)
{
    while (!from.children().empty())
        to.attach(*from.children().front());
}

QString firstErrorIn(const MessageNode& node)
{
    if (node.level() == Orv::Core::MessageLevel::Error)
        return node.text();
    for (const auto& child : node.children())
        if (child->hasError())
            return firstErrorIn(*child);
    return {};
}

// Returns the first error among the messages that have come below a report, which may be null.
QString firstErrorSince(const MessageNode* report, std::size_t formerCount)
{
    QString error;
    for (std::size_t i = formerCount; report != nullptr && i < report->children().size(); ++i)
        if (error.isEmpty())
            error = firstErrorIn(*report->children()[i]);
    return error;
}

void makeCanonical(QString& filename)
{
    const QString canonical = Orv::Core::canonicalPath(filename);
    if (!canonical.isEmpty())
        filename = canonical;
}

// A file may be read although its links could not be followed, for the moment.
void makeAbsolute(QString& filename)
{
    if (QDir::isRelativePath(filename))
        filename = Orv::Core::absolutePath(filename);
}

// Finds the package of an entry among those that are open. The name of its file is canonical.
bool findPackage(PackagesListManager::DependencyEntry& entry, const LoadedEntries& loaded)
{
    if (entry.package)
        return true;
    const auto* const other = loaded.findByFile(entry.filename);
    if (other != nullptr)
        entry.package = other->package;
    return other != nullptr;
}

} // namespace

std::size_t LoadedEntries::Hash::operator()(const Entry* entry) const
{
    std::size_t seed = qHash(entry->filename);
    boost::hash_combine(seed, entry->uid);
    boost::hash_combine(seed, entry->package.get());
    boost::hash_combine(seed, entry->owner.get());
    return seed;
}

LoadedEntries::LoadedEntries(std::initializer_list<Entry> entries)
{
    for (const Entry& entry : entries)
        add(entry);
}

bool LoadedEntries::add(const Entry& entry)
{
    m_entries.push_back(entry);
    if (!m_known.insert(&m_entries.back()).second) {
        m_entries.pop_back();
        return false;
    }
    if (!m_byFile.contains(entry.filename))
        m_byFile.insert(entry.filename, &m_entries.back());
    return true;
}

// One call of open().
struct DependencyOpener::Opening
{
    // Waits for a file that is read ahead. Returns false if that is another one.
    bool takeRead(const QString& filename, std::unique_ptr<Data::Content::Package>& package);

    MessageNode* report;
    std::vector<Failure>& failures;
    unsigned workers;
    std::size_t fileCount; // of the files that were asked for
    std::size_t visitedCount = 0;
    LoadedEntries loaded = {};
    std::list<Entry> pending = {}; // these files, and dependencies behind them
    // A package depends on the same files whoever asks, unless it is known by another file name.
    QSet<QPair<const Package*, QString>> followed = {};

    std::size_t aheadCount = 0; // of the pending entries that readAhead() has looked at
    std::list<Entry>::iterator lastAhead = {}; // of these, if there is one
    QSet<QString> expected = {};               // all files that were or are read ahead
    std::deque<ReadAhead> readings = {};       // a reading does not move while others come and go
    // One for each reading, and destroyed before them.
    Orv::Core::OrderedTasks tasks{workers};
};

bool DependencyOpener::Opening::takeRead(const QString& filename,
                                         std::unique_ptr<Data::Content::Package>& package)
{
    if (readings.empty() || readings.front().filename != filename)
        return false;
    tasks.finish();
    package = std::move(readings.front().package);
    if (report != nullptr)
        moveMessages(*readings.front().report, *report);
    readings.pop_front();
    return true;
}

DependencyOpener::DependencyOpener(PackagesListManager& manager, const QStringList& presetsPaths,
                                   OnFailure onFailure)
    : m_manager(manager), m_presetsPaths(presetsPaths), m_onFailure(onFailure)
{}

bool DependencyOpener::open(const QStringList& paths, MessageNode* report)
{
    m_failures.clear();
    Opening opening{report, m_failures, m_workers, static_cast<std::size_t>(paths.size())};
    for (const QString& path : paths) {
        opening.pending.emplace_back();
        opening.pending.back().filename = path;
    }
    while (!opening.pending.empty())
        if (!visit(opening) && m_onFailure == OnFailure::Stop)
            return false;
    m_manager.finishLoading(opening.loaded.all());
    return m_failures.empty();
}

// Makes the name of the file of an entry canonical, and finds its package if that counts as open.
void DependencyOpener::locate(Entry& entry) const
{
    makeCanonical(entry.filename);
    if (m_takesOpen)
        entry.package = m_manager.packageForPath(entry.filename);
}

// Lets the workers begin with the files that will be read next.
void DependencyOpener::readAhead(Opening& opening) const
{
    const std::size_t most = m_workers < 2 ? 0 : ReadingsPerWorker * m_workers;
    auto next = opening.aheadCount == 0 ? opening.pending.begin() : std::next(opening.lastAhead);
    for (; opening.readings.size() < most && next != opening.pending.end(); ++next) {
        ++opening.aheadCount;
        opening.lastAhead = next;
        if (next->package)
            continue;
        locate(*next);
        if (next->package || opening.expected.contains(next->filename) ||
            opening.loaded.findByFile(next->filename) != nullptr)
            continue;
        opening.expected.insert(next->filename);
        ReadAhead& reading = opening.readings.emplace_back();
        reading.filename = next->filename;
        if (opening.report != nullptr)
            reading.report = std::make_unique<MessageNode>();
        opening.tasks.add(
            [this, &reading] { reading.package = read(reading.filename, reading.report.get()); });
    }
}

// Opens the first pending entry.
bool DependencyOpener::visit(Opening& opening) const
{
    readAhead(opening);
    Entry entry = std::move(opening.pending.front());
    opening.pending.pop_front();
    if (opening.aheadCount > 0) // readAhead() has made the name canonical
        --opening.aheadCount;
    else if (!entry.package)
        locate(entry);
    const bool isDependency = opening.visitedCount++ >= opening.fileCount;
    if (!findPackage(entry, opening.loaded)) {
        const std::size_t messageCount =
            opening.report == nullptr ? 0 : opening.report->children().size();
        std::unique_ptr<Package> package;
        if (!opening.takeRead(entry.filename, package))
            package = read(entry.filename, opening.report);
        if (package == nullptr) {
            opening.failures.push_back(
                {entry.filename, isDependency, firstErrorSince(opening.report, messageCount)});
            return false;
        }
        makeAbsolute(entry.filename);
        entry.package = m_manager.keep(std::move(package));
    }
    const QPair<const Package*, QString> place(entry.package.get(), entry.filename);
    if (opening.loaded.add(entry) && m_followsDependencies && !opening.followed.contains(place)) {
        opening.followed.insert(place);
        opening.pending.splice(opening.pending.end(), m_manager.dependenciesOf(entry));
    }
    return true;
}

bool DependencyOpener::openEntry(Entry& entry, const LoadedEntries& loaded,
                                 MessageNode* report) const
{
    if (!entry.package)
        makeCanonical(entry.filename);
    if (findPackage(entry, loaded))
        return true;
    auto package = read(entry.filename, report);
    if (package == nullptr)
        return false;
    makeAbsolute(entry.filename);
    entry.package = m_manager.keep(std::move(package));
    return true;
}

std::unique_ptr<Package> DependencyOpener::read(const QString& filename, MessageNode* report) const
{
    const Orv::Data::XmlValueConverterURLPrefixReplacement presets(
        PresetsPrefix, presetsDirectories(m_presetsPaths));
    const PackageReader::Converters converters{&presets};
    return PackageReader::open(QUrl::fromLocalFile(filename), report, {}, {}, &converters, nullptr,
                               true, {}, m_onStage);
}

} // namespace Ksx::Core

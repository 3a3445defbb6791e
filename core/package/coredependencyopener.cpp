#include "ksx/core/dependencyopener.h"

#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/packagereader.h"
#include <QDir>
#include <QPair>
#include <QSet>
#include <QUrl>
#include <boost/functional/hash.hpp>

namespace Ksx::Core {

namespace {

const char* const PresetsPrefix = "obl://";

std::list<QDir> presetsDirectories(const QStringList& paths)
{
    if (paths.isEmpty())
        return {QDir(Orv::Core::currentFolder())};
    return {paths.begin(), paths.end()};
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
    Orv::Core::MessageNode* report;
    std::vector<Failure>& failures;
    bool isOfDependencies = false;
    LoadedEntries loaded = {};
    std::list<Entry> pending = {};
    // A package depends on the same files whoever asks, unless it is known by another file name.
    QSet<QPair<const Data::Content::Package*, QString>> followed = {};
};

DependencyOpener::DependencyOpener(PackagesListManager& manager, const QStringList& presetsPaths,
                                   OnFailure onFailure)
    : m_manager(manager), m_presetsPaths(presetsPaths), m_onFailure(onFailure)
{}

bool DependencyOpener::open(const QStringList& paths, Orv::Core::MessageNode* report)
{
    m_failures.clear();
    Opening opening{report, m_failures};
    const bool stops = m_onFailure == OnFailure::Stop;
    for (const QString& path : paths) {
        Entry entry;
        entry.filename = path;
        if (!visit(opening, std::move(entry)) && stops)
            return false;
    }
    opening.isOfDependencies = true;
    for (; !opening.pending.empty(); opening.pending.pop_front())
        if (!visit(opening, opening.pending.front()) && stops)
            return false;
    m_manager.finishLoading(opening.loaded.all());
    return m_failures.empty();
}

bool DependencyOpener::visit(Opening& opening, Entry entry) const
{
    if (!openEntry(entry, opening.loaded, opening.report)) {
        opening.failures.push_back({entry.filename, opening.isOfDependencies});
        return false;
    }
    const QPair<const Data::Content::Package*, QString> place(entry.package.get(), entry.filename);
    if (opening.loaded.add(entry) && m_followsDependencies && !opening.followed.contains(place)) {
        opening.followed.insert(place);
        opening.pending.splice(opening.pending.end(), m_manager.dependenciesOf(entry));
    }
    return true;
}

bool DependencyOpener::openEntry(Entry& entry, const LoadedEntries& loaded,
                                 Orv::Core::MessageNode* report) const
{
    if (entry.package)
        return true;
    const QString canonical = Orv::Core::canonicalPath(entry.filename);
    if (!canonical.isEmpty())
        entry.filename = canonical;
    if (const Entry* other = loaded.findByFile(entry.filename)) {
        entry.package = other->package;
        return true;
    }
    const Orv::Data::XmlValueConverterURLPrefixReplacement presets(
        PresetsPrefix, presetsDirectories(m_presetsPaths));
    const PackageReader::Converters converters{&presets};
    auto package = PackageReader::open(QUrl::fromLocalFile(entry.filename), report, {}, {},
                                       &converters, nullptr, true);
    if (package == nullptr)
        return false;
    entry.package = m_manager.keep(std::move(package));
    return true;
}

} // namespace Ksx::Core

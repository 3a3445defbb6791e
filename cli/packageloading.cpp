#include "packageloading.h"

#include "console.h"
#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/packagereader.h"
#include <QDir>
#include <QPair>
#include <QSet>
#include <QUrl>
#include <boost/functional/hash.hpp>

namespace {

using Ksx::Core::PackagesListManager;
using Entry = PackagesListManager::DependencyEntry;

const char* const PresetsPrefix = "obl://";

std::list<QDir> presetsDirectories(const QStringList& paths)
{
    if (paths.isEmpty())
        return {QDir::current()};
    return {paths.begin(), paths.end()};
}

// One call of loadPackages().
class Load
{
public:
    Load(PackagesListManager& manager, const QStringList& presetsPaths, bool followDependencies)
        : m_manager(manager), m_presetsPaths(presetsPaths),
          m_followsDependencies(followDependencies)
    {}

    // False, after an error line, if the file of the entry cannot be opened.
    bool open(Entry entry, const QString& failure);
    bool openPending();
    void finish() { m_manager.finishLoading(m_loaded.all()); }

private:
    PackagesListManager& m_manager;
    const QStringList& m_presetsPaths;
    bool m_followsDependencies;
    LoadedEntries m_loaded;
    std::list<Entry> m_pending;
    // A package depends on the same files whoever asks, unless it is known by another file name.
    QSet<QPair<const Ksx::Data::Content::Package*, QString>> m_followed;
};

bool Load::open(Entry entry, const QString& failure)
{
    if (loadPackageEntry(entry, m_manager, m_loaded, m_presetsPaths) != 0) {
        printError(failure + entry.filename);
        return false;
    }
    const QPair<const Ksx::Data::Content::Package*, QString> place(entry.package.get(),
                                                                   entry.filename);
    if (m_loaded.add(entry) && m_followsDependencies && !m_followed.contains(place)) {
        m_followed.insert(place);
        m_pending.splice(m_pending.end(), m_manager.dependenciesOf(entry));
    }
    return true;
}

bool Load::openPending()
{
    for (; !m_pending.empty(); m_pending.pop_front())
        if (!open(m_pending.front(), QStringLiteral("Cannot load dependency: ")))
            return false;
    return true;
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

int loadPackages(PackagesListManager& manager, const QStringList& paths,
                 const QStringList& presetsPaths, bool followDependencies)
{
    Load load(manager, presetsPaths, followDependencies);
    for (const QString& path : paths) {
        Entry entry;
        entry.filename = path;
        if (!load.open(entry, QStringLiteral("Cannot load: ")))
            return 1;
    }
    if (!load.openPending())
        return 1;
    load.finish();
    return 0;
}

int loadPackageEntry(Entry& entry, PackagesListManager& manager, const LoadedEntries& loaded,
                     const QStringList& presetsPaths)
{
    if (entry.package)
        return 0;
    const QString canonical = Orv::Core::canonicalPath(entry.filename);
    if (!canonical.isEmpty())
        entry.filename = canonical;
    if (const Entry* other = loaded.findByFile(entry.filename)) {
        entry.package = other->package;
        return 0;
    }
    const Orv::Data::XmlValueConverterURLPrefixReplacement presets(
        PresetsPrefix, presetsDirectories(presetsPaths));
    const Ksx::Core::PackageReader::Converters converters{&presets};
    auto package = Ksx::Core::PackageReader::open(QUrl::fromLocalFile(entry.filename), nullptr, {},
                                                  {}, &converters, nullptr, true);
    if (package == nullptr)
        return 1;
    entry.package = manager.keep(std::move(package));
    return 0;
}

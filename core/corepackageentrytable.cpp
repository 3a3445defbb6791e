#include "ksx/core/packageentrytable.h"

#include "core/fileplace.h"
#include "data/changeevent.h"
#include "data/content/package.h"
#include <QDir>
#include <QFileInfo>

namespace Ksx::Core {

namespace {

// One text per file: its canonical path, or the cleaned absolute one while it does not exist.
QString keyOf(const QString& path)
{
    const QString canonical = Orv::Core::canonicalPath(path);
    return canonical.isEmpty() ? QDir::cleanPath(QFileInfo(path).absoluteFilePath()) : canonical;
}

} // namespace

const Orv::Data::ListenerFilter& PackageEntryTable::getFilter() const
{
    using Orv::Data::ChangeType;
    static constexpr Orv::Data::ListenerFilter filter{ChangeType::Erased,
                                                      Orv::Data::MessageMask::All, 0};
    return filter;
}

void PackageEntryTable::deliver(const Orv::Data::DataMessage&)
{
    // A package that is only taken out may come back by an undo, and keeps its entry until it dies.
    for (auto place = m_entries.begin(); place != m_entries.end();) {
        const auto entry = place++;
        if (entry->package)
            continue;
        m_byUid.erase(entry->uid);
        m_byPath.remove(m_byPath.key(&*entry));
        m_entries.erase(entry);
    }
}

PackageEntry& PackageEntryTable::add(Uid uid, const QString& path,
                                     const Data::Content::Package* package)
{
    m_entries.push_back({uid, path, Orv::Data::DataPointerBox<Data::Content::Package>(package)});
    PackageEntry* entry = &m_entries.back();
    m_byUid.emplace(uid, entry);
    if (!path.isEmpty())
        m_byPath.insert(keyOf(path), entry);
    return *entry;
}

PackageEntry* PackageEntryTable::findByPath(const QString& path)
{
    if (path.isEmpty() || m_byPath.isEmpty()) // a key costs a look at the disk
        return nullptr;
    return m_byPath.value(keyOf(path), nullptr);
}

PackageEntry* PackageEntryTable::findByUid(Uid uid)
{
    const auto place = m_byUid.find(uid);
    return place == m_byUid.end() ? nullptr : place->second;
}

PackageEntry* PackageEntryTable::findByPackage(const Data::Content::Package& package)
{
    for (PackageEntry& entry : m_entries)
        if (entry.package == &package)
            return &entry;
    return nullptr;
}

} // namespace Ksx::Core

#include "ksx/core/packageentrytable.h"

#include "core/fileplace.h"
#include "data/changeevent.h"
#include "data/content/package.h"
#include "data/datamessage.h"
#include <algorithm>
#include <iterator>
#include <utility>

namespace Ksx::Core {

namespace {

using Data::Content::Package;

const char* const Himself = "?himself";

// The path as text alone says it.
QString spelledKey(const QString& path)
{
    return Orv::Core::absolutePath(path);
}

} // namespace

Uid ownUid(const Package& package)
{
    for (const Data::Content::Dependency& dependency : package.dependencies())
        if (dependency.filename().get() == Himself)
            return dependency.uid().get();
    return NoUid;
}

const Orv::Data::ListenerFilter& PackageEntryTable::getFilter() const
{
    using Orv::Data::ChangeType;
    static constexpr Orv::Data::ListenerFilter filter{ChangeType::Inserted | ChangeType::Erased,
                                                      Orv::Data::MessageMask::All, 0};
    return filter;
}

void PackageEntryTable::deliver(const Orv::Data::DataMessage& message)
{
    for (auto place = m_entries.begin(); place != m_entries.end();) {
        const auto entry = place++;
        if (!entry->package)
            drop(entry);
    }
    m_closed.remove_if([](const PackageEntry& entry) { return !entry.package; });
    for (const Orv::Data::TouchedChild& child : message.touched) {
        const auto* const package = dynamic_cast<const Package*>(child.object.get());
        if (package == nullptr)
            continue;
        if (isAttached(*package))
            open(*package);
        else
            close(*package);
    }
}

void PackageEntryTable::open(const Package& package)
{
    if (findByPackage(package) != nullptr)
        return;
    const auto former =
        std::find_if(m_closed.begin(), m_closed.end(),
                     [&package](const PackageEntry& entry) { return entry.package == &package; });
    PackageEntry entry;
    if (former != m_closed.end()) {
        entry = *former;
        m_closed.erase(former);
    } else {
        entry.uid = ownUid(package);
    }
    if (!isFree(entry.uid))
        entry.uid = UidSource::shared().next([this](Uid uid) { return !isFree(uid); });
    if (findByPath(entry.path) != nullptr)
        entry.path.clear();
    add(entry.uid, entry.path, &package);
}

void PackageEntryTable::close(const Package& package)
{
    const auto entry =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [&package](const PackageEntry& one) { return one.package == &package; });
    if (entry == m_entries.end())
        return;
    m_closed.push_back(*entry);
    drop(entry);
}

void PackageEntryTable::drop(std::list<PackageEntry>::iterator entry)
{
    m_byUid.erase(entry->uid);
    for (auto place = m_byPath.begin(); place != m_byPath.end();)
        place = place.value() == &*entry ? m_byPath.erase(place) : std::next(place);
    m_missing.erase(std::remove(m_missing.begin(), m_missing.end(), &*entry), m_missing.end());
    m_entries.erase(entry);
}

PackageEntry& PackageEntryTable::add(Uid uid, const QString& path, const Package* package)
{
    m_entries.push_back({uid, path, Orv::Data::DataPointerBox<Package>(package)});
    PackageEntry* entry = &m_entries.back();
    m_byUid.emplace(uid, entry);
    if (!path.isEmpty())
        noteKeys(*entry);
    return *entry;
}

// A file has two keys: its real place, which is known while it exists, and its spelling.
void PackageEntryTable::noteKeys(PackageEntry& entry)
{
    const QString spelled = spelledKey(entry.path);
    if (!m_byPath.contains(spelled))
        m_byPath.insert(spelled, &entry);
    const QString real = Orv::Core::canonicalPath(entry.path);
    if (real.isEmpty())
        m_missing.push_back(&entry);
    else
        m_byPath.insert(real, &entry);
}

PackageEntry* PackageEntryTable::findByPath(const QString& path)
{
    if (path.isEmpty() || m_byPath.isEmpty()) // a key costs a look at the disk
        return nullptr;
    const QString real = Orv::Core::canonicalPath(path);
    if (real.isEmpty())
        return m_byPath.value(spelledKey(path), nullptr);
    if (PackageEntry* known = m_byPath.value(real, nullptr))
        return known;
    // The file may have come since its entry was made.
    const auto missing = std::exchange(m_missing, {});
    for (PackageEntry* entry : missing)
        noteKeys(*entry);
    return m_byPath.value(real, nullptr);
}

PackageEntry* PackageEntryTable::findByUid(Uid uid)
{
    const auto place = m_byUid.find(uid);
    return place == m_byUid.end() ? nullptr : place->second;
}

PackageEntry* PackageEntryTable::findByPackage(const Package& package)
{
    for (PackageEntry& entry : m_entries)
        if (entry.package == &package)
            return &entry;
    return nullptr;
}

} // namespace Ksx::Core

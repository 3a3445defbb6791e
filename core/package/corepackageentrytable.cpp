#include "ksx/core/packageentrytable.h"

#include "core/fileplace.h"
#include "data/changeevent.h"
#include "data/content/package.h"
#include "data/datamessage.h"
#include "ksx/core/ilibraryservices.h"
#include "ksx/core/packageslistmanager.h"
#include <QtGlobal>
#include <iterator>
#include <utility>

namespace Ksx::Core {

namespace {

using Data::Content::Package;

// The path as text alone says it.
QString spelledKey(const QString& path)
{
    return Orv::Core::absolutePath(path);
}

} // namespace

PackageEntryTable* PackageEntryTable::ofProcess()
{
    auto* const services = dynamic_cast<ILibraryServices*>(Orv::libraryServices());
    auto* const manager = services == nullptr ? nullptr : services->packagesListManager();
    return manager == nullptr ? nullptr : &manager->table();
}

const Data::Content::Dependency* findDependency(const Package& package, Uid uid)
{
    for (const Data::Content::Dependency& dependency : package.dependencies())
        if (dependency.uid().get() == uid)
            return &dependency;
    return nullptr;
}

Uid ownUid(const Package& package)
{
    for (const Data::Content::Dependency& dependency : package.dependencies())
        if (dependency.filename().get() == Himself)
            return dependency.uid().get();
    return NoUid;
}

void PackageEntryTable::deliver(const Orv::Data::DataMessage& message)
{
    settle();
    for (const Orv::Data::TouchedChild& child : message.touched) {
        const auto* const package = dynamic_cast<const Package*>(child.object.get());
        if (package == nullptr)
            dropDead(child.address);
        else if (isAttached(*package))
            open(*package);
        else
            close(*package);
    }
}

// Drops the entries whose package has never come.
void PackageEntryTable::settle()
{
    for (PackageEntry* entry : std::exchange(m_unsettled, {})) {
        if (!entry->package)
            drop(*entry);
        else if (!isAttached(*entry->package))
            m_unsettled.insert(entry);
    }
}

void PackageEntryTable::dropDead(Address package)
{
    const auto known = m_byPackage.find(package);
    if (known != m_byPackage.end() && !known->second->package)
        drop(*known->second);
    const auto closed = m_closed.find(package);
    if (closed != m_closed.end() && !closed->second.package)
        m_closed.erase(closed);
}

void PackageEntryTable::open(const Package& package)
{
    if (findByPackage(package) != nullptr)
        return;
    PackageEntry entry{ownUid(package), {}, {}};
    const auto former = m_closed.find(&package);
    if (former != m_closed.end()) {
        if (former->second.package == &package)
            entry = former->second;
        m_closed.erase(former);
    }
    if (!isFree(entry.uid))
        entry.uid = UidSource::shared().next([this](Uid uid) { return !isFree(uid); });
    if (findByPath(entry.path) != nullptr)
        entry.path.clear();
    m_unsettled.erase(&add(entry.uid, entry.path, &package));
}

void PackageEntryTable::close(const Package& package)
{
    PackageEntry* const entry = findByPackage(package);
    if (entry == nullptr)
        return;
    m_closed.insert_or_assign(&package, *entry);
    drop(*entry);
    if (m_closed.size() < m_closedLimit)
        return;
    for (auto place = m_closed.begin(); place != m_closed.end();)
        place = place->second.package ? std::next(place) : m_closed.erase(place);
    m_closedLimit = 2 * m_closed.size() + 16;
}

void PackageEntryTable::drop(PackageEntry& entry)
{
    const auto known = m_keys.find(&entry);
    const Keys keys = known->second;
    m_keys.erase(known);
    for (const QString& path : keys.paths)
        if (m_byPath.value(path, nullptr) == &entry)
            m_byPath.remove(path);
    const auto package = m_byPackage.find(keys.package);
    if (package != m_byPackage.end() && package->second == &entry)
        m_byPackage.erase(package);
    m_byUid.erase(entry.uid);
    m_missing.erase(keys.missing);
    m_unsettled.erase(&entry);
    m_entries.erase(keys.place);
}

PackageEntry& PackageEntryTable::add(Uid uid, const QString& path, const Package* package)
{
    Q_ASSERT(findByUid(uid) == nullptr);
    m_entries.push_back({uid, path, {}});
    PackageEntry& entry = m_entries.back();
    m_keys[&entry].place = std::prev(m_entries.end());
    m_byUid.emplace(uid, &entry);
    m_unsettled.insert(&entry);
    if (package != nullptr)
        setPackage(entry, *package);
    if (!path.isEmpty())
        noteKeys(entry);
    return entry;
}

void PackageEntryTable::setPackage(PackageEntry& entry, const Package& package)
{
    Q_ASSERT(m_keys.count(&entry) != 0);
    entry.package.reset(&package);
    m_keys.at(&entry).package = &package;
    m_byPackage.insert_or_assign(&package, &entry);
}

// A file has two keys: its real place, which is known while it exists, and its spelling.
void PackageEntryTable::noteKeys(PackageEntry& entry)
{
    Keys& keys = m_keys.at(&entry);
    const QString spelled = spelledKey(entry.path);
    if (!m_byPath.contains(spelled)) {
        m_byPath.insert(spelled, &entry);
        keys.paths.append(spelled);
    }
    const QString real = Orv::Core::canonicalPath(entry.path);
    keys.missing = real.isEmpty() ? ++m_lastMissing : 0;
    if (real.isEmpty()) {
        m_missing.emplace(keys.missing, &entry);
    } else {
        m_byPath.insert(real, &entry);
        keys.paths.append(real);
    }
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
    for (const auto& [number, entry] : missing)
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
    const auto place = m_byPackage.find(&package);
    // The address may be that of a package that has died.
    const bool isKnown = place != m_byPackage.end() && place->second->package == &package;
    return isKnown ? place->second : nullptr;
}

} // namespace Ksx::Core

// The index of open packages by path, by uid and by package.
#pragma once

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/datapointerbox.h"
#include "ksx/core/stage.h"
#include "ksx/core/uidsource.h"
#include <QHash>
#include <QString>
#include <QStringList>
#include <list>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace Ksx::Data::Content {
class Dependency;
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// One open package. The address of an entry holds until the entry is dropped.
struct PackageEntry
{
    // The uid by which dependency elements and data paths name the package. Unique in the table.
    Uid uid;
    // The path of the file of the package. Empty if it was never saved.
    QString path;
    // The package. Empty once it has died.
    Orv::Data::DataPointerBox<Data::Content::Package> package;
};

// The file name in the dependency element by which a package names itself.
inline constexpr const char* Himself = "?himself";

// Returns the first element of a package for that dependency. Returns null if there is none.
const Data::Content::Dependency* findDependency(const Data::Content::Package& package, Uid uid);

// Returns the uid of the element by which a package names itself. Returns NoUid without one.
Uid ownUid(const Data::Content::Package& package);

// Has one entry for each open package. PackagesListManager owns it. It follows the list of open
// packages at each edit, undo and redo, before all behaviours. Main thread.
//
// A package that comes into the list without an entry gets one. It gets its own uid if that is
// free, and no path. A package that leaves the list loses its entry, whose uid and path are free at
// once. If an undo brings the package back, it gets both again, unless somebody else has taken
// them.
//
// Paths are equal when they lead to one file at the time of asking, however they are spelled. Links
// are followed. Entries without a path are never found by path. Entries stay where they are in
// memory until they are dropped.
class PackageEntryTable final
    : public Orv::Core::ListenerSimple<Stage::Mirror, Orv::Data::ChangeType::Inserted |
                                                          Orv::Data::ChangeType::Erased>
{
public:
    // Returns the table of the packages that are open in this process. Returns null without
    // services.
    static PackageEntryTable* ofProcess();

    void deliver(const Orv::Data::DataMessage& message) override;

    // Adds an entry and returns it. `uid` must not be taken. `package` may be null. An entry that
    // has no package when the list changes next is dropped then.
    PackageEntry& add(Uid uid, const QString& path, const Data::Content::Package* package);
    // Gives an entry of this table its package. The entry is no longer found by its former package.
    void setPackage(PackageEntry& entry, const Data::Content::Package& package);

    // Returns the entry of the file that a path leads to. Returns null if there is none. Looks at
    // the disk.
    PackageEntry* findByPath(const QString& path);
    // Returns the entry of a uid. Returns null if there is none.
    PackageEntry* findByUid(Uid uid);
    // Returns the entry of a package. Returns null if there is none.
    PackageEntry* findByPackage(const Data::Content::Package& package);
    // Returns all entries, in the order in which they were made.
    const std::list<PackageEntry>& entries() const { return m_entries; }

private:
    // Of a package, which may have died since.
    using Address = const Orv::Data::BaseObject*;
    // By what an entry is found.
    struct Keys
    {
        std::list<PackageEntry>::iterator place;
        QStringList paths;
        std::size_t missing = 0; // its number among these; 0 for none
        Address package = nullptr;
    };

    void open(const Data::Content::Package& package);
    void close(const Data::Content::Package& package);
    void drop(PackageEntry& entry);
    void dropDead(Address package);
    void settle();
    void noteKeys(PackageEntry& entry);
    bool isFree(Uid uid) { return uid != NoUid && findByUid(uid) == nullptr; }

    std::list<PackageEntry> m_entries;
    std::unordered_map<const PackageEntry*, Keys> m_keys;
    QHash<QString, PackageEntry*> m_byPath; // by the keys of the file
    std::unordered_map<Uid, PackageEntry*> m_byUid;
    std::unordered_map<Address, PackageEntry*> m_byPackage;
    // Whose file was not there when it was looked for, in this order.
    std::map<std::size_t, PackageEntry*> m_missing;
    std::size_t m_lastMissing = 0;
    std::unordered_set<PackageEntry*> m_unsettled;      // whose package is not in the list yet
    std::unordered_map<Address, PackageEntry> m_closed; // of packages that may come back
    std::size_t m_closedLimit = 16; // so many are kept before the dead ones are looked for
};

} // namespace Ksx::Core

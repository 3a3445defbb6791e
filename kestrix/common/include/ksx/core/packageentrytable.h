// The index of open packages.
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

struct PackageEntry
{
    Uid uid;      // by which dependency elements name the package
    QString path; // may be empty
    Orv::Data::DataPointerBox<Data::Content::Package> package;
};

// The file name in the element by which a package names itself.
inline constexpr const char* Himself = "?himself";

// Returns the first element of a package for that dependency. Returns null if there is none.
const Data::Content::Dependency* findDependency(const Data::Content::Package& package, Uid uid);

// Returns the uid of the element by which a package names itself. Returns NoUid without one.
Uid ownUid(const Data::Content::Package& package);

// Listens to the list of open packages. A package that comes into the list without an entry gets
// one: with its own uid if that is free, and without a path. A package that leaves the list loses its
// entry, whose uid and path are free at once. If the package comes back by an undo, it gets both
// again, as far as nobody else has taken them.
//
// Paths are equal when they lead to one file at the time of asking, however they are spelled.
// Entries without a path are never found by path. Entries stay where they are in memory until they
// are dropped.
class PackageEntryTable final
    : public Orv::Core::ListenerSimple<Stage::Mirror, Orv::Data::ChangeType::Inserted |
                                                          Orv::Data::ChangeType::Erased>
{
public:
    // Returns the table of the packages that are open in this process. Returns null without services.
    static PackageEntryTable* ofProcess();

    void deliver(const Orv::Data::DataMessage& message) override;

    // The uid must not be taken. The package may be null: an entry that has none when the list
    // changes is dropped then.
    PackageEntry& add(Uid uid, const QString& path, const Data::Content::Package* package);
    // For an entry without a package.
    void setPackage(PackageEntry& entry, const Data::Content::Package& package);
    // Null if there is none.
    PackageEntry* findByPath(const QString& path);
    PackageEntry* findByUid(Uid uid);
    PackageEntry* findByPackage(const Data::Content::Package& package);
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

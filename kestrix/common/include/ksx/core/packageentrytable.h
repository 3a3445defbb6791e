// The index of open packages.
#pragma once

#include "data/datapointerbox.h"
#include "data/listenerbase.h"
#include "ksx/core/stage.h"
#include "ksx/core/uidsource.h"
#include <QHash>
#include <QString>
#include <list>
#include <unordered_map>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

struct PackageEntry
{
    Uid uid;      // by which dependency elements name the package
    QString path; // may be empty
    Orv::Data::DataPointerBox<Data::Content::Package> package;
};

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
class PackageEntryTable final : public Orv::Data::ListenerBase
{
public:
    // Other listeners look up what this one keeps.
    std::uint16_t getPriority() const override { return Stage::Mirror; }
    const Orv::Data::ListenerFilter& getFilter() const override;
    void deliver(const Orv::Data::DataMessage& message) override;

    // The uid must not be taken. The package may be empty.
    PackageEntry& add(Uid uid, const QString& path, const Data::Content::Package* package);
    // Null if there is none.
    PackageEntry* findByPath(const QString& path);
    PackageEntry* findByUid(Uid uid);
    PackageEntry* findByPackage(const Data::Content::Package& package);
    const std::list<PackageEntry>& entries() const { return m_entries; }

private:
    void open(const Data::Content::Package& package);
    void close(const Data::Content::Package& package);
    void drop(std::list<PackageEntry>::iterator entry);
    void noteKeys(PackageEntry& entry);
    bool isFree(Uid uid) { return uid != NoUid && findByUid(uid) == nullptr; }

    std::list<PackageEntry> m_entries;
    std::list<PackageEntry> m_closed;       // of packages that have left the list and may come back
    QHash<QString, PackageEntry*> m_byPath; // by the keys of the file
    std::vector<PackageEntry*> m_missing;   // whose file was not there when it was looked for
    std::unordered_map<Uid, PackageEntry*> m_byUid;
};

} // namespace Ksx::Core

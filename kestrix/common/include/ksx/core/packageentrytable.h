// The index of open packages.
#pragma once

#include "data/datapointerbox.h"
#include "data/listenerbase.h"
#include "ksx/core/uidsource.h"
#include <QHash>
#include <QString>
#include <list>
#include <unordered_map>

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

// Listens to the list of open packages, and drops the entries of those that have died when another
// one leaves it. Paths are equal
// when they lead to one file, however they are spelled; entries without a path are never found by
// path. Entries stay where they are in memory until they are dropped.
class PackageEntryTable final : public Orv::Data::ListenerBase
{
public:
    std::uint16_t getPriority() const override { return 0; }
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
    std::list<PackageEntry> m_entries;
    QHash<QString, PackageEntry*> m_byPath; // by the key of the file
    std::unordered_map<Uid, PackageEntry*> m_byUid;
};

} // namespace Ksx::Core

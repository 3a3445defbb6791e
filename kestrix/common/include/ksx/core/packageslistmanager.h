// The open packages and how they come to depend on each other.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/packageentrytable.h"
#include "ksx/core/uidsource.h"
#include <QString>
#include <QStringList>
#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Ksx::Data::Content {
class Dependency;
class Package;
class PackagesList;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Owns the document of open packages, whether they were asked for or pulled in by others. A package
// stays until it is removed or the process ends. Changes of the list go through the process's
// command manager, so that they can be undone; without one they are made directly.
class PackagesListManager
{
public:
    using PackageBox = Orv::Data::DataPointerBox<Data::Content::Package>;

    // One package that is wanted.
    struct DependencyEntry
    {
        std::int32_t uid = -1; // of the dependency element; -1 for a package asked for by a user
        QString filename;      // absolute once the package is loaded
        PackageBox package;    // once it is loaded
        PackageBox owner;      // of the dependency element; empty for a package asked for
        // The element itself; no part of the comparison.
        Orv::Data::DataPointerBox<Data::Content::Dependency> element;

        // Equal in uid, filename, package and owner.
        friend bool operator==(const DependencyEntry& a, const DependencyEntry& b)
        {
            return a.uid == b.uid && a.package == b.package && a.owner == b.owner &&
                   a.filename == b.filename;
        }
    };

    PackagesListManager();
    PackagesListManager(const PackagesListManager&) = delete;
    PackagesListManager& operator=(const PackagesListManager&) = delete;
    virtual ~PackagesListManager();

    // Appends packages to the list, in order. False if the command failed; they are deleted then.
    virtual bool addPackages(std::vector<std::unique_ptr<Data::Content::Package>> packages);
    // Takes packages out of the list. False if one of them is not in it.
    virtual bool removePackages(const std::vector<PackageBox>& packages);
    // Moves a package by `offset` places in the list. False beyond its ends.
    virtual bool movePackage(const PackageBox& package, std::ptrdiff_t offset);
    // Removes one dependency element from a package; what used its uid is left as it is.
    virtual bool removeDependency(Data::Content::Package& package,
                                  const Data::Content::Dependency& dependency);

    const Data::Content::PackagesList& document() const { return *m_document; }
    PackageEntryTable& table() { return m_table; }

    // The packages of the list, in its order.
    std::vector<PackageBox> openPackages() const;
    // The path that the table holds for a package, or an empty text.
    QString filePath(const Data::Content::Package& package);
    // The package that the table holds for a path, or an empty handle.
    PackageBox packageForPath(const QString& path);
    // A package outside the list, with a fresh fileUID. An empty identifier gives the default one.
    static std::unique_ptr<Data::Content::Package> newPackage(const QString& identifier);

    // Keeps a package that was opened, until finishLoading() attaches it or the manager dies.
    PackageBox keep(std::unique_ptr<Data::Content::Package> package);
    // What the entry's package depends on, in document order. Elements that name the package's own
    // file, or a file a second time, are removed from it.
    std::list<DependencyEntry> dependenciesOf(const DependencyEntry& entry);
    // Attaches the packages of all entries that one load opened, in their order, and gives every
    // dependency element the uid by which the table knows its package; data paths follow. Of the
    // elements of a package that spell one file name in several ways the first one stays.
    bool finishLoading(const std::list<DependencyEntry>& loaded);

private:
    struct Rewrites;
    class Settling;

    void dropOtherSpellings(Data::Content::Package& package);
    std::unique_ptr<Data::Content::Package> release(const Data::Content::Package& package);

    std::unique_ptr<Data::Content::PackagesList> m_document;
    PackageEntryTable m_table;
    // Not attached.
    std::unordered_map<const Data::Content::Package*, std::unique_ptr<Data::Content::Package>>
        m_kept;
};

} // namespace Ksx::Core

// The open packages, and the settling of their dependencies.
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

// Owns the document of open packages, whether a user opened them or others depend on them. Open
// packages through DependencyOpener. List them by openPackages().
//
// A program makes one manager and hands it out by ILibraryServices. A package stays until it is
// removed or the process ends. Edits of the list are commands of the command manager of the
// process, with an empty history text. They can be undone. Without a command manager they run
// directly. The controllers of a package that is removed die at the end of that edit. Main thread.
//
//     std::vector<std::unique_ptr<Data::Content::Package>> added;
//     added.push_back(PackagesListManager::newPackage("wood"));
//     manager.addPackages(std::move(added));
class PackagesListManager
{
public:
    using PackageBox = Orv::Data::DataPointerBox<Data::Content::Package>;

    // One package that is wanted: by a user, or by a dependency element of another package.
    struct DependencyEntry
    {
        // The uid of the dependency element. -1 for a package that a user asked for.
        std::int32_t uid = -1;

        // The path of the file. Absolute once the package is loaded. Empty for a package that was
        // never saved.
        QString filename;
        // The package, once it is loaded.
        PackageBox package;
        // The package with the dependency element. Empty for a package that a user asked for.
        PackageBox owner;
        // The dependency element. It takes no part in comparisons.
        Orv::Data::DataPointerBox<Data::Content::Dependency> element;

        // Returns whether uid, filename, package and owner are equal.
        friend bool operator==(const DependencyEntry& a, const DependencyEntry& b)
        {
            return a.uid == b.uid && a.package == b.package && a.owner == b.owner &&
                   a.filename == b.filename;
        }
    };

    // Makes an empty list.
    PackagesListManager();
    PackagesListManager(const PackagesListManager&) = delete;
    PackagesListManager& operator=(const PackagesListManager&) = delete;
    // Destroys all packages. A program may as well leave the manager to the end of the process.
    virtual ~PackagesListManager();

    // Appends packages to the list, in order, by one undoable command. Each gets an entry in the
    // table. Returns false if the command failed; the packages are deleted then.
    virtual bool addPackages(std::vector<std::unique_ptr<Data::Content::Package>> packages);

    // Takes packages out of the list, by one undoable command. Their entries in the table go, and
    // packages that depend on them keep their elements. Returns false and changes nothing if one of
    // them is not in the list.
    virtual bool removePackages(const std::vector<PackageBox>& packages);

    // Moves a package by `offset` places in the list, by one undoable command. Returns false and
    // changes nothing beyond an end of the list, and for a package that is not in it.
    virtual bool movePackage(const PackageBox& package, std::ptrdiff_t offset);

    // Removes one dependency element from a package. Objects that used its uid are left as they
    // are. This is an undoable command for an open package, and a plain edit for another one.
    // Returns false if the element is none of the package.
    virtual bool removeDependency(Data::Content::Package& package,
                                  const Data::Content::Dependency& dependency);

    // Returns the document of open packages. Listeners can be attached to its `content`.
    const Data::Content::PackagesList& document() const { return *m_document; }
    // Returns the index of open packages by path and uid.
    PackageEntryTable& table() { return m_table; }

    // Returns the packages of the list, in its order.
    std::vector<PackageBox> openPackages() const;

    // Returns the path of the file of a package. Returns an empty text for a package without an
    // entry in the table, and for one that was never saved.
    QString filePath(const Data::Content::Package& package);

    // Returns the open package whose file `path` leads to, however the path is spelled. Returns an
    // empty box if there is none.
    PackageBox packageForPath(const QString& path);

    // Returns a new package outside of the list, with a fresh fileUID. An empty identifier gives
    // the default. Give it to addPackages() to edit it.
    static std::unique_ptr<Data::Content::Package> newPackage(const QString& identifier);

    // For DependencyOpener: keeps a package that was opened, until finishLoading() attaches it or
    // the manager dies.
    PackageBox keep(std::unique_ptr<Data::Content::Package> package);

    // For DependencyOpener: returns one entry for each package on which the package of `entry`
    // depends. They are in the order of the document. Entries of packages that are open already
    // have their package.
    //
    // Removes the elements that name the own file of the package by its path, or a file a second
    // time. Returns nothing for an entry without a package.
    std::list<DependencyEntry> dependenciesOf(const DependencyEntry& entry);

    // For DependencyOpener: attaches the packages of one load, in the order of `loaded`, by one
    // command. Every dependency element gets the uid by which the table knows its package, and data
    // paths follow. If elements of a package spell one file name in several ways, the first one
    // stays. Returns false if the command failed; the packages are deleted then.
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

// The objects that make a package depend on other packages.
#pragma once

#include "core/listenersimple.h"
#include "data/baseobject.h"
#include "data/changeevent.h"
#include "data/datapointerbox.h"
#include "ksx/core/stage.h"
#include "ksx/core/uidsource.h"
#include <list>
#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Maps the packages that a package depends on to the objects that use them. A package is named by
// the uid that dependency elements have for it.
//
// The behaviours fill it while documents are edited; see Behavior::addBehaviors(). A program owns
// it and keeps it longer than its documents. Packages that wait in a notifier do not count yet; see
// DataNotifier::deferOpened(). Users are remembered by boxes: a user that has died counts no more.
// Main thread.
class DependenciesDictionary
{
public:
    class RetrieveDependency;
    using UserBox = Orv::Data::DataPointerBox<Orv::Data::BaseObject>;

    // For behaviours: notes that `user`, which is part of `package`, needs the package of
    // `dependency`. A second call for the same three changes nothing.
    void addUse(const Data::Content::Package& package, Uid dependency,
                const Orv::Data::BaseObject& user);
    // For behaviours: forgets a use. Returns false if there was none.
    bool removeUse(const Data::Content::Package& package, Uid dependency,
                   const Orv::Data::BaseObject& user);

    // Returns the uids on which the package depends, ascending. Returns nothing for a package that
    // nobody noted.
    std::vector<Uid> dependenciesOf(const Data::Content::Package& package) const;

    // Returns the live objects of the package that use the dependency, in the order in which they
    // came.
    std::vector<UserBox> usersOf(const Data::Content::Package& package, Uid dependency) const;
    // Returns whether a live object of the package uses the dependency.
    bool isUsed(const Data::Content::Package& package, Uid dependency) const;

    // Forgets the packages and users that have died. Without this they take memory, and nothing
    // else.
    void removeDead();

private:
    struct Users
    {
        std::list<UserBox> inOrder;
        // By the address, under which another object may come when the one that had it has died.
        std::unordered_map<const Orv::Data::BaseObject*, std::list<UserBox>::iterator> places;

        void add(const Orv::Data::BaseObject& user);
        bool remove(const Orv::Data::BaseObject& user);
        void removeDead();
    };
    struct OfPackage
    {
        Orv::Data::DataPointerBox<Data::Content::Package> package;
        std::map<Uid, Users> uses;
    };
    const OfPackage* find(const Data::Content::Package& package) const;

    // By the address, with the same reserve.
    std::unordered_map<const Data::Content::Package*, OfPackage> m_packages;
};

// Knows the dependency that one kind of object has. The behaviours derive from it.
class DependenciesDictionary::RetrieveDependency
{
public:
    virtual ~RetrieveDependency() = default;
    // Returns the uid of the dependency. Returns none if the object needs no other package.
    virtual std::optional<Uid> retrieve(const Orv::Data::BaseObject& object) const = 0;
};

// Lets a dictionary forget the packages that have left the list of open packages. A program owns
// it. It attaches it to the list of open packages once:
//
//     listenTo(packagesListManager.document().content(), updater);
class DependenciesDictionaryUpdater final
    : public Orv::Core::ListenerSimple<Stage::Cache, Orv::Data::ChangeType::Erased>
{
public:
    // The dictionary must outlive the updater.
    explicit DependenciesDictionaryUpdater(DependenciesDictionary& dictionary)
        : m_dictionary(dictionary)
    {}
    void deliver(const Orv::Data::DataMessage&) override { m_dictionary.removeDead(); }

private:
    DependenciesDictionary& m_dictionary;
};

} // namespace Ksx::Core

// Which objects make a package depend on which other packages.
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
// the uid that dependency elements have for it. Users are remembered by boxes: one that has died
// counts no more.
class DependenciesDictionary
{
public:
    class RetrieveDependency;
    using UserBox = Orv::Data::DataPointerBox<Orv::Data::BaseObject>;

    // `user` stands in `package` and needs the package of `dependency`. A second call for the same
    // pair changes nothing.
    void addUse(const Data::Content::Package& package, Uid dependency,
                const Orv::Data::BaseObject& user);
    // False if there was no such use.
    bool removeUse(const Data::Content::Package& package, Uid dependency,
                   const Orv::Data::BaseObject& user);

    // The uids on which the package depends, ascending.
    std::vector<Uid> dependenciesOf(const Data::Content::Package& package) const;
    // The live objects of the package that use the dependency, in the order in which they came.
    std::vector<UserBox> usersOf(const Data::Content::Package& package, Uid dependency) const;
    bool isUsed(const Data::Content::Package& package, Uid dependency) const;

    // Forgets the packages and users that have died.
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

// A behaviour bound to one kind of object: tells which dependency an object needs, so that the
// dictionary stays right while objects come and go.
class DependenciesDictionary::RetrieveDependency
{
public:
    virtual ~RetrieveDependency() = default;
    // None if the object needs no other package.
    virtual std::optional<Uid> retrieve(const Orv::Data::BaseObject& object) const = 0;
};

// Listens to the list of open packages, to let the dictionary forget those that have left it.
class DependenciesDictionaryUpdater final
    : public Orv::Core::ListenerSimple<Stage::Cache, Orv::Data::ChangeType::Erased>
{
public:
    // The dictionary outlives the updater.
    explicit DependenciesDictionaryUpdater(DependenciesDictionary& dictionary)
        : m_dictionary(dictionary)
    {}
    void deliver(const Orv::Data::DataMessage&) override { m_dictionary.removeDead(); }

private:
    DependenciesDictionary& m_dictionary;
};

} // namespace Ksx::Core

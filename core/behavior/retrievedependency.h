// What the behaviours share that look after the dependencies of references.
#pragma once

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/dependenciesdictionary.h"
#include "ksx/core/stage.h"
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace Ksx::Core::Behavior {

// Tells the dictionary that `user`, in the package, has come to use the dependency, or that it does
// so no more.
using DictionaryCallback = std::function<void(const Data::Content::Package& package, Uid dependency,
                                              const Orv::Data::BaseObject& user, bool isUsed)>;

// Stands on the shadow of an object that has references. Keeps the dictionary up to date, and makes
// the dependency elements of the package that references need which come in by an edit: for another
// open package, or "?himself". An element that is no longer needed stays.
class RetrieveDependency
    : public Orv::Core::ListenerSimple<Stage::Repair, Orv::Data::ChangeType::Descendant |
                                                          Orv::Data::ChangeType::Removed>,
      public DependenciesDictionary::RetrieveDependency
{
public:
    // Texts of the object, which need not be data paths.
    using References = std::vector<std::string_view>;

    RetrieveDependency(const RetrieveDependency&) = delete;
    RetrieveDependency& operator=(const RetrieveDependency&) = delete;
    ~RetrieveDependency() override;

    bool isOwnedByShadow() const override { return true; }
    // The first, if the object has several. None for a reference within the package.
    std::optional<Uid> retrieve(const Orv::Data::BaseObject& object) const override;
    void deliver(const Orv::Data::DataMessage& message) override;

protected:
    // The callback may be empty.
    explicit RetrieveDependency(const DictionaryCallback& dictionary);

    // None for an object of another class.
    virtual References referencesOf(const Orv::Data::BaseObject& object) const = 0;
    void note(const Orv::Data::BaseObject& object, const References& references);
    static void makeElements(const Orv::Data::BaseObject& object, const References& references,
                             Orv::Core::ManipulatorContext& context);

private:
    struct Uses; // none for most objects: their references stay in their package

    void forget(const Orv::Data::BaseObject& object);

    DictionaryCallback m_dictionary;
    std::unique_ptr<Uses> m_uses;
};

// Derived is the behaviour of the objects of class T, and has a static function `referencesIn` for
// one of them.
template <class Derived, class T>
class RetrieveDependencyOf : public RetrieveDependency, public BehaviorOf<T>
{
public:
    RetrieveDependencyOf(const T& object, const DictionaryCallback& dictionary)
        : RetrieveDependency(dictionary)
    {
        note(object, Derived::referencesIn(object));
    }
    void entered(const T& object, Orv::Core::ManipulatorContext& context)
    {
        makeElements(object, Derived::referencesIn(object), context);
    }

protected:
    References referencesOf(const Orv::Data::BaseObject& object) const override
    {
        if (&object.getMeta() != &T::MetaTag::record)
            return {};
        return Derived::referencesIn(static_cast<const T&>(object));
    }
};

} // namespace Ksx::Core::Behavior

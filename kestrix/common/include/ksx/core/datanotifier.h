// The registry of behaviours.
#pragma once

#include "core/listenersimple.h"
#include "data/baseobject.h"
#include "data/changeevent.h"
#include "data/datapointerbox.h"
#include "data/manipulatorcontextbase.h"
#include "data/objectmeta.h"
#include "data/shadowobject.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/stage.h"
#include <algorithm>
#include <array>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Core {

// Calls its entries for the objects that come into a document, so that behaviours can attach
// themselves to them. What stands in a package that is opened is not repaired by that: behaviours
// react to edits.
class DataNotifier final
    : public Orv::Core::ListenerSimple<Stage::Mirror, Orv::Data::ChangeType::Descendant |
                                                          Orv::Data::ChangeType::Inserted>
{
public:
    // How an object has come in.
    struct Arrival
    {
        Orv::Data::ManipulatorContextBase& context;
        // For an object that came into an open package by an edit, which may be carried on at once.
        // Null for what came with a package, and for what an undo or a redo brings back.
        Orv::Core::ManipulatorContext* edit;
    };

    // An entry. The base does nothing.
    class Functor
    {
    public:
        using Types = std::vector<const Orv::Data::ObjectMeta*>;

        // Of the classes under these declarations: content, kinds of image nodes, function nodes.
        // Of all classes if there are none, which is far dearer, since it takes a look at every
        // object.
        explicit Functor(Types types = {}) : m_types(std::move(types)) {}
        virtual ~Functor() = default;
        // `object` has come into the document. Entries that name classes can be given an object
        // again, when something has come in below it.
        virtual void operator()(const Orv::Data::BaseObject& object, const Arrival& arrival);

        const Types& types() const { return m_types; }

    private:
        Types m_types;
    };

    // For each object, entries are called in the order in which they were added. The classes that an
    // entry names must be classes of content, of implementations of nodes, or of function nodes.
    void add(std::unique_ptr<Functor> functor);
    // From now on objects that come to stand below `root` reach the entries. Called once.
    void attachTo(const Orv::Data::BaseObject& root);

    // From now on packages that are opened wait, and with them the entries, until visitOpened() is
    // called or something comes into an open package: nobody who only opens and saves a package has
    // to pay for the behaviours of all that stands in it. visitOpened() is to be called before each
    // edit, since a behaviour has to know what was there before.
    void deferOpened() { m_isDeferring = true; }
    void visitOpened();

    void deliver(const Orv::Data::DataMessage& message) override;

private:
    class Walk;
    struct OfType
    {
        const Orv::Data::ObjectMeta* type;
        std::vector<Functor*> functors;
    };

    void visit(const Orv::Data::BaseObject& object, const Arrival& arrival) const;
    void visitOpened(Orv::Data::ManipulatorContextBase& context);

    std::vector<std::unique_ptr<Functor>> m_functors;
    std::vector<Functor*> m_ofAll; // those that name no class
    std::vector<OfType> m_ofTypes;
    bool m_isDeferring = false;
    std::vector<Orv::Data::DataPointerBox<Orv::Data::BaseObject>> m_opened; // packages that wait
};

// What the two factories below need to know of a behaviour, which is a listener and derives from
// this: all functions can be replaced by its own. One that is made for each object can name a second
// class, of objects that others of its kind refer to.
template <class T, class Watched = void>
class BehaviorOf
{
public:
    using ObjectType = T;
    using WatchedType = Watched;

    // Has the behaviour anything to do with this object?
    static bool concerns(const T&) { return true; }
    // Where the behaviour is attached: in the object, of which the first is the one that counts.
    static std::array<const Orv::Data::BaseObject*, 1> placesIn(const T& object)
    {
        return {&object};
    }
    // The behaviour has been attached to an object that came in by an edit.
    void entered(const T&, Orv::Core::ManipulatorContext&) {}
    // An object of the second class has come in, or something below it.
    //     static void watch(const Watched&);
};

// Attaches one behaviour to all objects of its type.
template <class T>
class DataStaticFactory final : public DataNotifier::Functor
{
public:
    DataStaticFactory() : Functor({&T::ObjectType::MetaTag::record}) {}
    void operator()(const Orv::Data::BaseObject& object,
                    const DataNotifier::Arrival& arrival) override
    {
        const auto& typed = static_cast<const typename T::ObjectType&>(object);
        if (!T::concerns(typed) || isAttachedTo(*T::placesIn(typed)[0]))
            return;
        for (const Orv::Data::BaseObject* place : T::placesIn(typed))
            arrival.context.addListener(*place, m_behavior);
        if (arrival.edit != nullptr)
            m_behavior.entered(typed, *arrival.edit);
    }

private:
    bool isAttachedTo(const Orv::Data::BaseObject& place) const
    {
        const Orv::Data::ShadowObject* shadow = place.shadow();
        if (shadow == nullptr)
            return false;
        const auto& listeners = shadow->listeners();
        return std::any_of(listeners.begin(), listeners.end(),
                           [this](const Orv::Data::ListenerEntry& entry) {
                               return entry.listener == &m_behavior;
                           });
    }

    T m_behavior;
};

// Makes a behaviour for each object of its type, which must be owned by the object's shadow: it
// ends with the object. The behaviour is constructed with the object and a copy of the arguments.
template <class T, class... Arguments>
class DataDynamicFactory final : public DataNotifier::Functor
{
public:
    explicit DataDynamicFactory(Arguments... arguments)
        : Functor(types()), m_arguments(std::move(arguments)...)
    {}
    void operator()(const Orv::Data::BaseObject& object,
                    const DataNotifier::Arrival& arrival) override
    {
        if constexpr (HasWatchedType) {
            if (&object.getMeta() != &T::ObjectType::MetaTag::record) {
                T::watch(static_cast<const typename T::WatchedType&>(object));
                return;
            }
        }
        const auto& typed = static_cast<const typename T::ObjectType&>(object);
        if (!T::concerns(typed))
            return;
        const Orv::Data::ShadowObject* shadow = T::placesIn(typed)[0]->shadow();
        if (shadow != nullptr && shadow->template findListener<T>() != nullptr)
            return;
        auto made = std::apply(
            [&](const Arguments&... arguments) { return std::make_unique<T>(typed, arguments...); },
            m_arguments);
        T& behavior = giveToShadows(std::move(made), T::placesIn(typed));
        if (arrival.edit != nullptr)
            behavior.entered(typed, *arrival.edit);
    }

private:
    static constexpr bool HasWatchedType = !std::is_void_v<typename T::WatchedType>;
    static Types types()
    {
        Types types{&T::ObjectType::MetaTag::record};
        if constexpr (HasWatchedType)
            types.push_back(&T::WatchedType::MetaTag::record);
        return types;
    }

    std::tuple<Arguments...> m_arguments;
};

} // namespace Ksx::Core

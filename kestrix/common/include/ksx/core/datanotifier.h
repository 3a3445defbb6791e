// The registry of behaviours.
#pragma once

#include "data/baseobject.h"
#include "data/datapointerbox.h"
#include "data/listenerbase.h"
#include "data/manipulatorcontextbase.h"
#include <functional>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace Ksx::Core {

// Calls its entries for every object that comes into a document, so that behaviours can attach
// themselves to it. What stands in a document when it is attached is not repaired by that:
// behaviours react to changes made from then on.
class DataNotifier final : public Orv::Data::ListenerBase
{
public:
    // An entry. The base does nothing.
    class Functor
    {
    public:
        virtual ~Functor() = default;
        // `object` has come into the document by a change in `context`.
        virtual void operator()(const Orv::Data::BaseObject& object,
                                Orv::Data::ManipulatorContextBase& context);
    };

    // Entries are called in the order in which they were added.
    void add(std::unique_ptr<Functor> functor);
    // From now on objects that come to stand below `root` reach the entries. Called once.
    void attachTo(const Orv::Data::BaseObject& root);

    std::uint16_t getPriority() const override { return Orv::Data::FirstPriority; }
    const Orv::Data::ListenerFilter& getFilter() const override;
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    std::vector<std::unique_ptr<Functor>> m_functors;
};

// Attaches one behaviour to all objects of its type. A behaviour is a listener with an `ObjectType`.
template <class T>
class DataStaticFactory final : public DataNotifier::Functor
{
public:
    void operator()(const Orv::Data::BaseObject& object,
                    Orv::Data::ManipulatorContextBase& context) override
    {
        if (const auto* typed = dynamic_cast<const typename T::ObjectType*>(&object))
            context.addListener(*typed, m_behavior);
    }

private:
    T m_behavior;
};

// Makes a behaviour for each object of its type, which must be owned by the object's shadow: it
// ends with the object. The behaviour is constructed with the object and a copy of the arguments.
template <class T, class... Arguments>
class DataDynamicFactory final : public DataNotifier::Functor
{
public:
    explicit DataDynamicFactory(Arguments... arguments) : m_arguments(std::move(arguments)...) {}
    void operator()(const Orv::Data::BaseObject& object,
                    Orv::Data::ManipulatorContextBase& context) override
    {
        const auto* typed = dynamic_cast<const typename T::ObjectType*>(&object);
        if (typed == nullptr)
            return;
        auto* behavior =
            std::apply([&](const Arguments&... arguments) { return new T(*typed, arguments...); },
                       m_arguments);
        context.addListener(*typed, *behavior); // the shadow owns it
    }

private:
    std::tuple<Arguments...> m_arguments;
};

} // namespace Ksx::Core

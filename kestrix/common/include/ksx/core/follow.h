// Lets an object hear of changes through one of its members.
#pragma once

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/datamessage.h"
#include "data/objectmeta.h"
#include "ksx/core/edit.h"
#include "ksx/core/stage.h"
#include <cstdint>

namespace Ksx::Core {

// A list has other items or another order.
constexpr std::uint32_t ShapeChanges =
    Orv::Data::ChangeType::Inserted | Orv::Data::ChangeType::Erased | Orv::Data::ChangeType::Moved;
// A list has another shape, or something below it has changed.
constexpr std::uint32_t ListChanges = ShapeChanges | Orv::Data::ChangeType::Descendant;

// Calls a member of its owner, which holds it, at the end of each change of `Types`. One can be
// attached to several objects, and hears of each of them. It detaches itself when the owner dies.
// The call may destroy owner and listener.
//
// The call comes while the change is delivered, for edits, undos and redos alike. Several writes in
// one edit may come as one call. Main thread. `Member` is a pointer to one of these:
//
//     void changed(const Orv::Data::DataMessage&);
//     void changed(Orv::Core::ManipulatorContext*); // as editableContext() returns it
//     void changed();
//     LazySignal<> changed;
//
// For example:
//
//     class Title
//     {
//     public:
//         explicit Title(const Graph& graph) { listenTo(graph.attributes().label(), m_listener); }
//
//     private:
//         void onLabel(); // draws the label
//
//         Follow<&Title::onLabel> m_listener{*this};
//     };
template <auto Member, std::uint32_t Types = Orv::Data::ChangeType::Value,
          std::uint16_t When = Stage::Mirror,
          std::uint32_t MemberMask = Orv::Data::MessageMask::All>
class Follow;

template <class Owner, class M, M Owner::*Member, std::uint32_t Types, std::uint16_t When,
          std::uint32_t MemberMask>
class Follow<Member, Types, When, MemberMask> final
    : public Orv::Core::ListenerSimple<When, Types, MemberMask>
{
public:
    // `owner` must outlive the listener.
    explicit Follow(Owner& owner) : m_owner(owner) {}
    Follow(const Follow&) = delete;
    Follow& operator=(const Follow&) = delete;

    void deliver(const Orv::Data::DataMessage& message) override { call(Member, message); }

private:
    using Message = Orv::Data::DataMessage;
    using Context = Orv::Core::ManipulatorContext;

    void call(void (Owner::*member)(const Message&), const Message& message)
    {
        (m_owner.*member)(message);
    }
    void call(void (Owner::*member)(Context*), const Message& message)
    {
        (m_owner.*member)(editableContext(message));
    }
    template <class Callable>
    void call(Callable Owner::*member, const Message&)
    {
        (m_owner.*member)();
    }

    Owner& m_owner;
};

} // namespace Ksx::Core

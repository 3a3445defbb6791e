// Tells a controller that something of its object has changed.
#pragma once

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/datamessage.h"
#include "ksx/core/stage.h"

namespace Ksx::Core {

// Calls a member function of its owner, which holds it, at the end of each change of an attribute
// that it is attached to; with ListChanges, of a list and of all below it.
template <class Owner, std::uint32_t TypeMask = Orv::Data::ChangeType::Value>
class ValueListener final : public Orv::Core::ListenerSimple<Stage::Mirror, TypeMask>
{
public:
    using Member = void (Owner::*)();

    ValueListener(Owner& owner, Member member) : m_owner(owner), m_member(member) {}
    ValueListener(const ValueListener&) = delete;
    ValueListener& operator=(const ValueListener&) = delete;

    void deliver(const Orv::Data::DataMessage&) override { (m_owner.*m_member)(); }

private:
    Owner& m_owner;
    Member m_member;
};

constexpr std::uint32_t ListChanges = Orv::Data::ChangeType::Descendant |
                                      Orv::Data::ChangeType::Inserted |
                                      Orv::Data::ChangeType::Erased | Orv::Data::ChangeType::Moved;

} // namespace Ksx::Core

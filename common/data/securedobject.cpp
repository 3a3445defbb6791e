#include "data/securedobject.h"

namespace Orv {

namespace {

constexpr std::uintptr_t ShadowBit = 1;

bool isTagged(const BoxLink* link)
{
    return (reinterpret_cast<std::uintptr_t>(link) & ShadowBit) != 0;
}

BoxLink* untagged(BoxLink* link)
{
    return reinterpret_cast<BoxLink*>(reinterpret_cast<std::uintptr_t>(link) & ~ShadowBit);
}

} // namespace

void BoxLink::linkTo(SecuredObject* target)
{
    unlink();
    if (target == nullptr)
        return;
    BoxLink** place = &target->m_firstBox;
    if (isTagged(*place))
        place = &untagged(*place)->m_next;
    m_target = target;
    m_prevLink = place;
    m_next = *place;
    if (m_next != nullptr)
        m_next->m_prevLink = &m_next;
    *place = this;
}

void BoxLink::linkBeside(const BoxLink& other)
{
    // Behind `other` rather than at the head: `other` itself may not move.
    if (other.m_target == nullptr)
        return;
    auto& left = const_cast<BoxLink&>(other);
    m_target = left.m_target;
    m_prevLink = &left.m_next;
    m_next = left.m_next;
    if (m_next != nullptr)
        m_next->m_prevLink = &m_next;
    left.m_next = this;
}

void BoxLink::unlink()
{
    if (m_prevLink == nullptr)
        return;
    *m_prevLink = m_next; // a shadow's link is the first one, so this drops its mark with it
    if (m_next != nullptr)
        m_next->m_prevLink = m_prevLink;
    m_next = nullptr;
    m_prevLink = nullptr;
    m_target = nullptr;
}

void SecuredObject::clearBoxes()
{
    for (BoxLink* link = untagged(m_firstBox); link != nullptr;) {
        BoxLink* next = link->m_next;
        link->m_next = nullptr;
        link->m_prevLink = nullptr;
        link->m_target = nullptr;
        link = next;
    }
    m_firstBox = nullptr;
}

} // namespace Orv

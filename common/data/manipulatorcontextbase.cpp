#include "data/manipulatorcontextbase.h"

#include "data/listenerbase.h"
#include "data/shadowobject.h"
#include "data/treewalk.h"

namespace Orv::Data {

namespace {

// Turns a priority into its place in the order of delivery: 0xFFFF, then 0x8000 and up, then 0
// and up. In 16-bit arithmetic.
std::uint16_t deliveryKey(std::uint16_t priority)
{
    if (priority == FirstPriority)
        return 0;
    const unsigned shift = (priority & 0x8000u) != 0 ? 32769u : 32768u;
    return static_cast<std::uint16_t>(priority + shift);
}

// Contexts live on the stack of the thread that edits the document.
thread_local ManipulatorContextBase* innermostContext = nullptr;

bool isServedFirst(const ListenerEntry& entry)
{
    return entry.priority == FirstPriority;
}

} // namespace

ManipulatorContextBase::ManipulatorContextBase() : m_enclosing(innermostContext)
{
    innermostContext = this;
}

ManipulatorContextBase::~ManipulatorContextBase()
{
    innermostContext = m_enclosing;
}

ManipulatorContextBase* ManipulatorContextBase::innermost()
{
    return innermostContext;
}

void ManipulatorContextBase::addListener(const BaseObject& object, ListenerBase& listener)
{
    ShadowObject::of(const_cast<BaseObject&>(object)).addListener(listener);
    if (m_immediate && listener.getPriority() == FirstPriority)
        m_skipSet.insert(&listener);
}

bool ManipulatorContextBase::removeListener(const BaseObject& object, const ListenerBase& listener)
{
    ShadowObject* shadow = object.shadow();
    return shadow != nullptr && shadow->removeListener(listener);
}

void ManipulatorContextBase::noteInserted(const BaseObject& object)
{
    m_inserted.emplace_back(&object);
}

void ManipulatorContextBase::touch(ShadowObject& shadow)
{
    m_touched.emplace_back(&shadow);
}

void ManipulatorContextBase::notify(BaseObject& object, std::uint32_t type, const ChangeRuns& runs,
                                    const ChildrenSpan& children)
{
    ChangeEvent event{type, runs, object.getMeta().messageMask, children};
    BaseObject* child = nullptr;
    for (BaseObject* place = &object; place != nullptr && event.memberMask != 0;
         place = place->getParent()) {
        if (child != nullptr)
            event.children = {&child, 1};
        if (ShadowObject* shadow = place->shadow())
            postOn(*shadow, event);
        if ((event.type & ChangeType::Local) != 0)
            event.type = ChangeType::Descendant | (event.type & ~ChangeType::Local);
        if ((event.type & ChangeType::Reserved) != 0)
            event.type = (event.type & ~ChangeType::Reserved) | ChangeType::DescendantMoved;
        event.runs.clear();
        child = place;
    }
}

void ManipulatorContextBase::notifyRemoved(BaseObject& object)
{
    visitTree(object, [this](BaseObject& removed) {
        ShadowObject* shadow = removed.shadow();
        if (shadow == nullptr)
            return;
        ChangeEvent event{ChangeType::Removed, {}, removed.getMeta().messageMask};
        postOn(*shadow, event);
    });
}

void ManipulatorContextBase::setAside(ShadowObject& shadow)
{
    m_aside[&shadow] = shadow.takePending();
}

std::unique_ptr<PendingState> ManipulatorContextBase::takeAside(const ShadowObject& shadow)
{
    const auto place = m_aside.find(&shadow);
    if (place == m_aside.end())
        return nullptr;
    auto state = std::move(place->second);
    m_aside.erase(place);
    return state->shadow == &shadow ? std::move(state) : nullptr;
}

void ManipulatorContextBase::postOn(ShadowObject& shadow, ChangeEvent& event)
{
    if (m_enclosing != nullptr && shadow.hasPending() && !(shadow.m_pending->context == this))
        setAside(shadow);
    const bool wasPending = shadow.hasPending();
    if (!shadow.post(event, *this))
        return;
    if (!wasPending)
        touch(shadow);
    if (!m_immediate)
        return;
    // By index: a listener may attach further ones while it is served.
    for (std::size_t i = 0; i < shadow.m_listeners.size(); ++i)
        deliverImmediately(shadow.m_listeners[i], *shadow.m_pending, event);
}

void ManipulatorContextBase::deliverImmediately(ListenerEntry& entry, const DataMessage& pending,
                                                const ChangeEvent& event)
{
    if (!isServedFirst(entry) || !entry.matched || !entry.listener)
        return;
    DataMessage message = entry.hasOwnMessage && entry.ownMessage ? *entry.ownMessage : pending;
    if (!m_skipSet.insert(entry.listener.get()).second) {
        message.type = event.type; // it has heard the rest already
        message.runs = event.runs;
        message.touched.clear();
        message.touch(event.children);
        if ((message.type & ChangeType::Removed) != 0)
            message.type = ChangeType::Removed;
    }
    entry.listener.access()->deliver(message);
}

void ManipulatorContextBase::scheduleShadow(ShadowObject& shadow, Schedule& schedule)
{
    for (ListenerEntry& entry : shadow.m_listeners) {
        if (!entry.listener)
            continue;
        const DataMessage* message =
            entry.hasOwnMessage ? entry.ownMessage.get() : shadow.m_pending.get();
        if (message == nullptr)
            continue;
        if (const auto waiting = entry.scheduled.lock()) {
            if (entry.matched)
                waiting->merge(*message);
            else if (message->type == ChangeType::Removed)
                waiting->merge(ChangeType::Removed, {});
        } else if (entry.matched) {
            auto copy = std::make_shared<DataMessage>(*message);
            copy->context.reset(this); // an inner context that made the change may have ended
            entry.scheduled = copy;
            schedule[deliveryKey(entry.priority)].emplace_back(entry.listener, std::move(copy));
        }
    }
    shadow.dropPending();
    shadow.removeDeadListeners();
}

void ManipulatorContextBase::dispatch()
{
    while (!m_touched.empty()) {
        Schedule schedule;
        const auto touched = std::exchange(m_touched, {});
        for (const auto& box : touched) {
            ShadowObject* shadow = box.access();
            if (shadow == nullptr)
                continue;
            if (shadow->hasPending())
                scheduleShadow(*shadow, schedule);
            if (shadow->owner() == nullptr)
                delete shadow;
        }
        for (auto& [key, waiting] : schedule) {
            for (auto& [listener, message] : waiting) {
                // Out of the schedule before it is delivered: what happens during the delivery
                // makes a message of its own.
                const DataMessage taken = std::move(*message);
                message.reset();
                if (listener && m_skipSet.count(listener.get()) == 0)
                    listener.access()->deliver(taken);
            }
        }
        m_skipSet.clear();
    }
}

void ManipulatorContextBase::takeOut(BaseObject& object)
{
    visitTree(object, [this](BaseObject& removed) {
        ShadowObject* shadow = removed.shadow();
        if (shadow == nullptr)
            return;
        shadow->unlinkOwner();
        if (!shadow->hasPending())
            touch(*shadow);
    });
}

void ManipulatorContextBase::join()
{
    const auto touched = std::exchange(m_touched, {});
    for (const auto& box : touched) {
        ShadowObject* shadow = box.access();
        if (shadow == nullptr)
            continue;
        if (const auto aside = takeAside(*shadow))
            shadow->mergeBehind(*aside, *m_enclosing); // the enclosing context has touched it
        else
            m_enclosing->touch(*shadow);
        if (shadow->hasPending())
            shadow->m_pending->context.reset(m_enclosing);
    }
}

void ManipulatorContextBase::finish()
{
    // What the listeners below do while they die belongs to the enclosing context.
    innermostContext = m_enclosing;
    if (m_enclosing != nullptr)
        for (const auto& object : m_inserted)
            m_enclosing->m_inserted.push_back(object);
    m_inserted.clear();
    // Deleting listeners may take further shadows along, hence the boxes.
    const auto touched = std::exchange(m_touched, {});
    for (const auto& box : touched) {
        ShadowObject* shadow = box.access();
        if (shadow == nullptr)
            continue;
        shadow->dropPending();
        if (auto aside = takeAside(*shadow))
            shadow->putBack(std::move(*aside));
        else if (shadow->owner() == nullptr)
            delete shadow;
    }
    m_aside.clear();
    m_skipSet.clear();
}

} // namespace Orv::Data

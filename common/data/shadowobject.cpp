#include "data/shadowobject.h"

#include "data/diagnosticlog.h"
#include "data/manipulatorcontextbase.h"
#include <QtGlobal>
#include <algorithm>

namespace Orv::Data {

namespace {

// The entry of the same listener; null if there is none.
const ListenerEntry* findEntry(const std::vector<ListenerEntry>& entries, const ListenerEntry& like)
{
    const auto place =
        std::find_if(entries.begin(), entries.end(), [&like](const ListenerEntry& entry) {
            return entry.listener && entry.listener == like.listener;
        });
    return place == entries.end() ? nullptr : &*place;
}

// Returns one message that tells of both, the second one behind the first one. Either may be null;
// returns null if both are.
std::unique_ptr<DataMessage> joined(const DataMessage* first, const DataMessage* second)
{
    if (first == nullptr && second == nullptr)
        return nullptr;
    auto message = std::make_unique<DataMessage>(first == nullptr ? *second : *first);
    if (first != nullptr && second != nullptr)
        message->merge(*second);
    return message;
}

} // namespace

ShadowObject::ShadowObject(BaseObject& owner)
{
    m_owner.shadow = this;
    owner.linkShadow(m_owner);
}

ShadowObject::~ShadowObject()
{
    if (m_pending)
        DiagnosticLog::write(LogLevel::Assertion, "data/include/data/shadowobject", 34,
                             "The shadow object have pending messages");
    // A listener may touch its entry while it dies: each leaves the vector first.
    while (!m_listeners.empty()) {
        ListenerBase* listener = m_listeners.back().listener.access();
        m_listeners.pop_back();
        if (listener != nullptr && listener->isOwnedByShadow())
            delete listener;
    }
}

ShadowObject& ShadowObject::of(BaseObject& object)
{
    ShadowObject* shadow = object.shadow();
    return shadow != nullptr ? *shadow : *new ShadowObject(object); // the object owns it
}

void ShadowObject::addListener(ListenerBase& listener)
{
    removeDeadListeners();
    ListenerEntry entry;
    entry.priority = listener.getPriority();
    entry.listener.reset(&listener);
    entry.hasOwnMessage = hasPending();
    const auto place = std::upper_bound(
        m_listeners.begin(), m_listeners.end(), entry.priority,
        [](std::uint16_t priority, const ListenerEntry& e) { return priority < e.priority; });
    m_listeners.insert(place, std::move(entry));
}

bool ShadowObject::removeListener(const ListenerBase& listener)
{
    const auto place =
        std::find_if(m_listeners.begin(), m_listeners.end(),
                     [&](const ListenerEntry& entry) { return entry.listener == &listener; });
    if (place == m_listeners.end())
        return false;
    m_listeners.erase(place);
    return true;
}

bool ShadowObject::post(ChangeEvent& event, ManipulatorContextBase& context)
{
    bool anyMatched = false;
    for (ListenerEntry& entry : m_listeners) {
        if (!entry.listener)
            continue;
        if (event.type == ChangeType::Removed || !entry.matched)
            entry.matched = entry.listener->accept(event);
        anyMatched = anyMatched || entry.matched;
    }
    if (!anyMatched)
        return false;
    if (!m_pending) {
        m_pending = std::make_unique<DataMessage>();
        m_pending->object.reset(owner());
    }
    m_pending->context.reset(&context);
    m_pending->merge(event.type, event.runs);
    m_pending->touch(event.children);
    for (ListenerEntry& entry : m_listeners) {
        if (!entry.hasOwnMessage)
            continue;
        if (!entry.ownMessage) {
            entry.ownMessage = std::make_shared<DataMessage>();
            entry.ownMessage->object.reset(owner());
        }
        entry.ownMessage->context.reset(&context);
        entry.ownMessage->merge(event.type, event.runs);
        entry.ownMessage->touch(event.children);
    }
    return true;
}

void ShadowObject::dropPending()
{
    m_pending.reset();
    for (ListenerEntry& entry : m_listeners) {
        entry.matched = false;
        entry.hasOwnMessage = false;
        entry.ownMessage.reset();
    }
}

std::unique_ptr<PendingState> ShadowObject::takePending()
{
    auto state = std::make_unique<PendingState>();
    state->shadow.reset(this);
    state->pending = std::move(m_pending);
    state->entries = m_listeners;
    dropPending();
    return state;
}

void ShadowObject::putBack(PendingState state)
{
    Q_ASSERT(!m_pending);
    m_pending = std::move(state.pending);
    for (ListenerEntry& entry : m_listeners) {
        const ListenerEntry* former = findEntry(state.entries, entry);
        entry.matched = former != nullptr && former->matched;
        // A listener that came since then must not hear of what is pending.
        entry.hasOwnMessage = former == nullptr || former->hasOwnMessage;
        if (former != nullptr)
            entry.ownMessage = former->ownMessage;
    }
}

void ShadowObject::mergeBehind(const PendingState& state, ManipulatorContextBase& context)
{
    const std::unique_ptr<DataMessage> later = std::move(m_pending);
    if (later)
        later->context.reset(&context);
    m_pending = joined(state.pending.get(), later.get());
    for (ListenerEntry& entry : m_listeners) {
        const ListenerEntry* former = findEntry(state.entries, entry);
        // A listener of the state hears of all of it. One that came later has its own message.
        const std::shared_ptr<DataMessage> own = entry.ownMessage;
        const DataMessage* const laterOwn = entry.hasOwnMessage ? own.get() : later.get();
        entry.hasOwnMessage = former == nullptr || former->hasOwnMessage;
        entry.ownMessage.reset();
        if (entry.hasOwnMessage)
            entry.ownMessage =
                joined(former == nullptr ? nullptr : former->ownMessage.get(), laterOwn);
        // A removal has asked each listener anew.
        const bool isRemoved = later && later->type == ChangeType::Removed;
        entry.matched = entry.matched || (!isRemoved && former != nullptr && former->matched);
    }
}

void ShadowObject::removeDeadListeners()
{
    m_listeners.erase(std::remove_if(m_listeners.begin(), m_listeners.end(),
                                     [](const ListenerEntry& entry) { return !entry.listener; }),
                      m_listeners.end());
}

} // namespace Orv::Data

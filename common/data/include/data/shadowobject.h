// The listeners of one document object, and the news that they have not heard yet.
#pragma once

#include "data/baseobject.h"
#include "data/datamessage.h"
#include "data/datapointerbox.h"
#include "data/listenerbase.h"
#include <cstdint>
#include <memory>
#include <vector>

namespace Orv::Data {

class ManipulatorContextBase;
class ShadowObject;

struct ListenerEntry
{
    std::uint16_t priority = 0;
    DataPointerBox<ListenerBase> listener;
    bool matched = false;                 // accepted an event since the last delivery
    std::weak_ptr<DataMessage> scheduled; // the message that waits for this listener in a delivery
    // A listener that came while a message was pending must not hear of what happened before:
    // it gets a message of its own, which is null until the first event after it came.
    bool hasOwnMessage = false;
    std::shared_ptr<DataMessage> ownMessage;
};

// The news that the listeners of one shadow have not heard yet, kept apart from the shadow.
struct PendingState
{
    DataPointerBox<ShadowObject> shadow;
    std::unique_ptr<DataMessage> pending;
    std::vector<ListenerEntry> entries; // as they were
};

// Made by the first addListener() on an object and deleted with it, or alone at the end of the
// change that took the object out for good. Deletes the listeners that it owns.
class ShadowObject : public SecuredObject
{
public:
    explicit ShadowObject(BaseObject& owner);
    ShadowObject(const ShadowObject&) = delete;
    ShadowObject& operator=(const ShadowObject&) = delete;
    ~ShadowObject() override;

    // The object's shadow, made if there is none.
    static ShadowObject& of(BaseObject& object);

    // Null once the object has been taken out.
    const BaseObject* owner() const { return static_cast<BaseObject*>(m_owner.target()); }
    const std::vector<ListenerEntry>& listeners() const { return m_listeners; }
    bool hasPending() const { return m_pending != nullptr; }
    // Returns all that the listeners have not heard yet; null if there is nothing.
    const DataMessage* pending() const { return m_pending.get(); }

    // Behind all listeners of equal or lower number of priority. Entries of listeners that have
    // died are dropped on the way. A shadow takes ownership if the listener says so.
    void addListener(ListenerBase& listener);
    // False if the listener is not attached here. An owned listener is handed back to the caller.
    bool removeListener(const ListenerBase& listener);

    // The first live listener of class L, null if there is none.
    template <class L>
    L* findListener() const
    {
        for (const ListenerEntry& entry : m_listeners)
            if (auto* found = dynamic_cast<L*>(entry.listener.access()))
                return found;
        return nullptr;
    }

private:
    friend class ManipulatorContextBase;

    // Cuts object and shadow apart.
    void unlinkOwner() { m_owner.unlink(); }
    // Merges the event into the pending message if a listener wants it; true if so.
    bool post(ChangeEvent& event, ManipulatorContextBase& context);
    // Forgets what is pending, undelivered.
    void dropPending();
    // Takes what is pending off the shadow, as if nothing had happened to its object.
    std::unique_ptr<PendingState> takePending();
    // Makes a taken state pending again. Nothing else must be pending.
    void putBack(PendingState state);
    // Adds what is pending behind a taken state, as if both had been posted here in turn.
    void mergeBehind(const PendingState& state, ManipulatorContextBase& context);
    void removeDeadListeners();

    ShadowLink m_owner;
    std::vector<ListenerEntry> m_listeners;
    std::unique_ptr<DataMessage> m_pending;
};

} // namespace Orv::Data

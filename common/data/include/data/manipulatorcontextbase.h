// The face of a manipulation context for the data layer: collecting and delivering notices.
#pragma once

#include "data/changeevent.h"
#include "data/datapointerbox.h"
#include "data/securedobject.h"
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Orv::Data {

class BaseObject;
class ListenerBase;
class ShadowObject;
struct DataMessage;
struct ListenerEntry;
struct PendingState;

// Collects the events of one transaction and delivers them when it has ended well.
class ManipulatorContextBase : public SecuredObject
{
public:
    // Attaches a listener to an object. It hears of what changes from now on.
    void addListener(const BaseObject& object, ListenerBase& listener);
    // False if the listener is not attached to the object.
    bool removeListener(const BaseObject& object, const ListenerBase& listener);

    // Objects that have come into the tree and that nobody has asked for yet, each the root of what
    // came with it; the boxes of those that have gone again are empty. Asking takes them off. What
    // nobody asked for passes to the enclosing context, where there is one.
    std::vector<DataPointerBox<BaseObject>> takeInserted() { return std::exchange(m_inserted, {}); }

    // Listeners of FirstPriority are served at each event, and not at the end alone.
    void setImmediate(bool immediate) { m_immediate = immediate; }

protected:
    ManipulatorContextBase();
    ~ManipulatorContextBase() override;

    // Keeps the object for takeInserted().
    void noteInserted(const BaseObject& object);
    // Posts an event on the object and, as a change of a descendant, on its ancestors. With the
    // `children` it happened, if the object is a list.
    void notify(BaseObject& object, std::uint32_t type, const ChangeRuns& runs,
                const ChildrenSpan& children);
    // Tells every shadow of the subtree that its object leaves the tree.
    void notifyRemoved(BaseObject& object);

    // Delivers until no listener causes any more change.
    void dispatch();
    // Cuts the shadows of a subtree off, so that they are deleted at the end of the context.
    void takeOut(BaseObject& object);
    // Drops all pending notices and deletes the shadows that have lost their object. Notices of the
    // enclosing context that were set aside are pending again.
    void finish();
    // Hands all pending notices over to the enclosing context, which delivers them.
    void join();

    // The open context of this thread, and the one within which this one was made; or null.
    static ManipulatorContextBase* innermost();
    ManipulatorContextBase* enclosing() const { return m_enclosing; }

private:
    friend class ShadowObject;
    using Schedule = std::map<
        std::uint16_t,
        std::vector<std::pair<DataPointerBox<ListenerBase>, std::shared_ptr<DataMessage>>>>;

    void touch(ShadowObject& shadow);
    // Keeps the notices that the enclosing contexts have for a shadow apart from this one's.
    void setAside(ShadowObject& shadow);
    // Hands out what was set aside for a shadow; null if nothing was.
    std::unique_ptr<PendingState> takeAside(const ShadowObject& shadow);
    void postOn(ShadowObject& shadow, ChangeEvent& event);
    void scheduleShadow(ShadowObject& shadow, Schedule& schedule);
    void deliverImmediately(ListenerEntry& entry, const DataMessage& pending,
                            const ChangeEvent& event);

    // Shadows with pending messages, and those that wait for their deletion. Boxes, since an
    // object and its shadow may die before the end.
    std::vector<DataPointerBox<ShadowObject>> m_touched;
    std::vector<DataPointerBox<BaseObject>> m_inserted;
    // By shadow; its box is empty if the shadow has gone.
    std::unordered_map<const ShadowObject*, std::unique_ptr<PendingState>> m_aside;
    ManipulatorContextBase* m_enclosing;     // the one that was open when this one was made
    std::set<const ListenerBase*> m_skipSet; // have been served at once in this pass
    bool m_immediate = false;
};

} // namespace Orv::Data

// A row of controllers, kept in step with a list of the document.
#pragma once

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/containerlist.h"
#include "data/datamessage.h"
#include "data/densemap.h"
#include "data/row.h"
#include "data/shadowobject.h"
#include "ksx/core/edit.h"
#include "ksx/core/places.h"
#include "ksx/core/stage.h"
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Ksx::Core {

// Has one place for each item of the list, in the list's order. The place is empty where the
// factory makes no controller. Follows the list by its change notices, so that controllers come and
// go with their objects, in time with what has changed. Must not outlive the list's owner.
//
// Callbacks may edit the list: such an edit is told later, and the items that it takes out live as
// long. So nothing is read from the list once the first callback has been called.
template <class Item, class Controller>
class ControllerList final
    : public Orv::Core::ListenerSimple<Stage::Mirror, Orv::Data::ChangeType::Inserted |
                                                          Orv::Data::ChangeType::Erased |
                                                          Orv::Data::ChangeType::Moved>
{
public:
    using List = Orv::Data::ContainerList<Item>;

    struct Callbacks
    {
        std::function<std::unique_ptr<Controller>(const Item&)> make; // null: the place is empty
        // All three may be empty. The index is the place in the list, the message that which told
        // of the change.
        std::function<void(Controller&, std::size_t index, const Orv::Data::DataMessage&)> added;
        std::function<void(Controller&, std::size_t index)> aboutToRemove;
        std::function<void()> moved;
    };

    explicit ControllerList(Callbacks callbacks) : m_callbacks(std::move(callbacks)) {}

    // Makes the controllers of what stands in the list, without calling `added`, and listens from
    // now on. Called once.
    void follow(const List& list)
    {
        for (const Item& item : list)
            m_places.pushBack({&item, m_callbacks.make(item)});
        listenTo(list, *this);
    }

    std::size_t size() const { return m_places.size(); }
    // Null for an empty place. `index` is below size().
    Controller* at(std::size_t index) const { return m_places[index].controller.get(); }
    // The controllers that there are.
    std::vector<Controller*> controllers() const
    {
        std::vector<Controller*> result;
        result.reserve(m_places.size());
        for (const Place& place : m_places)
            if (place.controller != nullptr)
                result.push_back(place.controller.get());
        return result;
    }
    // That of an item; null if there is none. A walk at the first time, which the list remembers.
    Controller* find(const Item& item)
    {
        if (m_byItem.empty())
            for (const Place& place : m_places)
                m_byItem.emplace(place.item, place.controller.get());
        const auto found = m_byItem.find(&item);
        return found == m_byItem.end() ? nullptr : found->value;
    }
    // Destroys all controllers, without calling anything.
    void clear()
    {
        m_byItem.clear();
        m_places.clear();
    }

    void deliver(const Orv::Data::DataMessage& message) override
    {
        const auto* list = static_cast<const List*>(message.object.get());
        if (list == nullptr)
            return;
        const bool isLate = m_isAhead; // what the script tells is here already
        m_isAhead = list->shadow() != nullptr && list->shadow()->hasPending();
        if (!isLate && !m_isAhead && isPlain(message.runs, list->size()))
            followRuns(message, *list);
        else
            rearrange(message, *list);
    }

private:
    struct Place
    {
        const Item* item = nullptr; // for comparison alone
        std::unique_ptr<Controller> controller;
    };

    // Can the script be followed step by step: without moves, and from the state that is held?
    bool isPlain(const Orv::Data::ChangeRuns& runs, std::size_t size) const
    {
        std::size_t expected = m_places.size();
        for (const Orv::Data::ChangeRun& run : runs.runs()) {
            if (run.link != 0)
                return false;
            expected += run.kind == Orv::Data::RunKind::Inserted ? run.count : 0;
            expected -= run.kind == Orv::Data::RunKind::Erased ? run.count : 0;
        }
        return expected == size;
    }

    void followRuns(const Orv::Data::DataMessage& message, const List& list)
    {
        std::vector<std::size_t> gone;
        std::vector<std::size_t> fresh;
        std::vector<const Item*> items;
        std::size_t former = 0;
        std::size_t place = 0;
        for (const Orv::Data::ChangeRun& run : message.runs.runs()) {
            for (std::size_t i = 0; run.kind == Orv::Data::RunKind::Erased && i < run.count; ++i)
                gone.push_back(former + i);
            for (std::size_t i = 0; run.kind == Orv::Data::RunKind::Inserted && i < run.count;
                 ++i) {
                fresh.push_back(place + i);
                items.push_back(&list.at(place + i));
            }
            former += run.inOldList() ? run.count : 0;
            place += run.inNewList() ? run.count : 0;
        }
        remove(gone);
        std::vector<Place> made;
        made.reserve(items.size());
        for (const Item* item : items) {
            made.push_back({item, m_callbacks.make(*item)});
            if (!m_byItem.empty())
                m_byItem.emplace(item, made.back().controller.get());
        }
        putInto(m_places, fresh, std::move(made));
        for (const std::size_t index : fresh)
            announce(index, message);
    }

    // From the last place to the first one, so that each is the place of its controller to whoever
    // removes the others likewise.
    void remove(const std::vector<std::size_t>& places)
    {
        for (auto place = places.rbegin(); place != places.rend(); ++place) {
            if (m_places[*place].controller != nullptr && m_callbacks.aboutToRemove)
                m_callbacks.aboutToRemove(*m_places[*place].controller, *place);
            m_byItem.erase(m_places[*place].item);
        }
        const std::vector<Place> removed = takeFrom(m_places, places); // die when that is in order
    }

    void announce(std::size_t index, const Orv::Data::DataMessage& message)
    {
        if (m_places[index].controller != nullptr && m_callbacks.added)
            m_callbacks.added(*m_places[index].controller, index, message);
    }

    // Puts the places into the order of the list, whatever they were before.
    void rearrange(const Orv::Data::DataMessage& message, const List& list)
    {
        std::vector<const Item*> items;
        for (const Item& item : list)
            items.push_back(&item);
        const std::unordered_set<const Item*> isListed(items.begin(), items.end());
        std::vector<std::size_t> gone;
        for (std::size_t i = 0; i < m_places.size(); ++i)
            if (isListed.count(m_places[i].item) == 0)
                gone.push_back(i);
        remove(gone);
        std::unordered_map<const Item*, Place> held;
        for (Place& place : m_places.takeAll())
            held.emplace(place.item, std::move(place));
        m_byItem.clear();
        std::vector<std::size_t> fresh;
        for (const Item* item : items) {
            const auto found = held.find(item);
            if (found == held.end()) {
                fresh.push_back(m_places.size());
                m_places.pushBack({item, m_callbacks.make(*item)});
            } else {
                m_places.pushBack(std::move(found->second));
            }
        }
        for (const std::size_t index : fresh)
            announce(index, message);
        if (m_callbacks.moved)
            m_callbacks.moved();
    }

    Callbacks m_callbacks;
    Orv::Data::Row<Place> m_places;
    Orv::Data::DenseMap<const Item*, Controller*> m_byItem; // empty until somebody asks
    bool m_isAhead = false; // of the notices, which an edit within a delivery still has to send
};

} // namespace Ksx::Core

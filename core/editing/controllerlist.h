// A row of controllers, kept in step with a list of the document.
#pragma once

#include "data/containerlist.h"
#include "data/densemap.h"
#include "data/row.h"
#include "editing/listmirror.h"
#include "ksx/core/edit.h"
#include <QtGlobal>
#include <functional>
#include <memory>
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
    : public ListMirror<Orv::Data::ContainerList<Item>, ShapeChanges, Stage::Mirror>
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
        Q_ASSERT(m_places.empty());
        for (const Item& item : list)
            m_places.pushBack({&item, m_callbacks.make(item)});
        listenTo(list, *this);
    }

    std::size_t size() const override { return m_places.size(); }
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

private:
    struct Place
    {
        const Item* item = nullptr; // for comparison alone
        std::unique_ptr<Controller> controller;
    };

    void followSteps(const MirrorSteps& steps, const Orv::Data::DataMessage& message,
                     const List& list) override
    {
        std::vector<const Item*> items;
        items.reserve(steps.fresh.size());
        for (const std::size_t place : steps.fresh)
            items.push_back(&list.at(place));
        remove(steps.gone);
        std::vector<Place> made;
        made.reserve(items.size());
        for (const Item* item : items) {
            made.push_back({item, m_callbacks.make(*item)});
            if (!m_byItem.empty())
                m_byItem.emplace(item, made.back().controller.get());
        }
        putInto(m_places, steps.fresh, std::move(made));
        for (const std::size_t index : steps.fresh)
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

    void rearrange(const Orv::Data::DataMessage& message, const List& list) override
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
        m_byItem.clear();
        std::vector<std::size_t> fresh;
        const auto itemOf = [](const Place& place) { return place.item; };
        arrange(m_places, items, itemOf, [&](const Item& item) {
            fresh.push_back(m_places.size());
            return Place{&item, m_callbacks.make(item)};
        });
        for (const std::size_t index : fresh)
            announce(index, message);
        if (m_callbacks.moved)
            m_callbacks.moved();
    }

    Callbacks m_callbacks;
    Orv::Data::Row<Place> m_places;
    Orv::Data::DenseMap<const Item*, Controller*> m_byItem; // empty until somebody asks
};

} // namespace Ksx::Core

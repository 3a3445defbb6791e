// Rows beside lists of the document, with an entry for each item.
#pragma once

#include "core/listenersimple.h"
#include "data/changeruns.h"
#include "data/datamessage.h"
#include "data/row.h"
#include "data/shadowobject.h"
#include "ksx/core/follow.h"
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Ksx::Core {

// The places at which entries of a row go and come. Both ascend.
struct MirrorSteps
{
    std::vector<std::size_t> gone;  // in the row as it was
    std::vector<std::size_t> fresh; // in the list as it is now
};

// Returns the steps of a script. Returns none for a script with moves, and for one that does not
// lead from `former` items to `present` ones.
std::optional<MirrorSteps> stepsOf(const Orv::Data::ChangeRuns& runs, std::size_t former,
                                   std::size_t present);

// Takes the entries at these places out of a row. The places ascend. Returns the entries.
template <class Entry>
std::vector<Entry> takeFrom(Orv::Data::Row<Entry>& row, const std::vector<std::size_t>& places)
{
    std::vector<Entry> taken(places.size());
    for (std::size_t i = places.size(); i-- > 0;)
        taken[i] = row.take(places[i]);
    return taken;
}

// Puts an entry at each of these places, which ascend and are places of the row as it is then.
template <class Entry>
void putInto(Orv::Data::Row<Entry>& row, const std::vector<std::size_t>& places,
             std::vector<Entry> entries)
{
    for (std::size_t i = 0; i < places.size(); ++i)
        row.insert(places[i], std::move(entries[i]));
}

// Puts a row into the order of `items`, and adds an entry, `make(item)`, for each item that has
// none. Returns the entries without an item of the row. `itemOf(entry)` may return null.
template <class Entry, class Item, class ItemOf, class Make>
std::vector<Entry> arrange(Orv::Data::Row<Entry>& row, const std::vector<const Item*>& items,
                           const ItemOf& itemOf, const Make& make)
{
    std::vector<Entry> left;
    std::unordered_map<const Item*, Entry> held;
    for (Entry& entry : row.takeAll()) {
        if (const Item* item = itemOf(entry))
            held.emplace(item, std::move(entry));
        else
            left.push_back(std::move(entry));
    }
    for (const Item* item : items) {
        const auto found = held.find(item);
        row.pushBack(found == held.end() ? make(*item) : std::move(found->second));
        if (found != held.end())
            held.erase(found);
    }
    for (auto& [item, entry] : held)
        left.push_back(std::move(entry));
    return left;
}

// Base of the listeners that keep a row in step with a list. A script without moves is followed
// step by step, in a time of the order of n log n for n steps.
//
// Who hears of an entry may edit the list. The row is ahead of the notice of such an edit, since a
// delivery reads the list as it is then. So it is rearranged until the notices have caught up.
template <class List, std::uint32_t Types, std::uint16_t When>
class ListMirror : public Orv::Core::ListenerSimple<When, Types>
{
public:
    // Returns the number of entries.
    virtual std::size_t size() const = 0;

    void deliver(const Orv::Data::DataMessage& message) final
    {
        const auto* list = static_cast<const List*>(message.object.get());
        if (list == nullptr)
            return;
        const bool isLate = m_isAhead; // the row has the changes of this message already
        m_isAhead = list->shadow() != nullptr && list->shadow()->hasPending();
        std::optional<MirrorSteps> steps;
        if (!isLate && !m_isAhead)
            steps = stepsOf(message.runs, size(), list->size());
        if (steps)
            followSteps(*steps, message, *list);
        else
            rearrange(message, *list);
    }

private:
    virtual void followSteps(const MirrorSteps& steps, const Orv::Data::DataMessage& message,
                             const List& list) = 0;
    // Follows the list from whatever state the row is in.
    virtual void rearrange(const Orv::Data::DataMessage& message, const List& list) = 0;

    bool m_isAhead = false; // of the notices
};

} // namespace Ksx::Core

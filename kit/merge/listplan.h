// Which items a merged list may have, in which order.
#pragma once

#include "compare/alignment.h"
#include "merge/trio.h"
#include <optional>

namespace Ksx::Kit {

class Translation;

// An item of a merged list.
struct PlannedItem
{
    Trio versions;
    // The number that the merged item gets, if it has one.
    std::optional<unsigned> uid = std::nullopt;
};

// The items of a merged list. Items that a side has removed are there as well.
struct ListPlan
{
    std::vector<PlannedItem> items;
    // Whether both sides have brought the items of the base into another order each, which users
    // see.
    bool hasTwoOrders = false;
};

// Plans the list of the items of the base and of both sides. Items are in the order of the base or
// of the side that has another one. Items that a side has added follow the item that they follow
// there. The plan is the same, whichever side is which, but for two orders: those of `preferred`
// stays then.
ListPlan planList(const Items& base, const std::array<Items, 2>& sides,
                  const std::array<Alignment, 2>& alignments,
                  const std::array<Translation, 2>& translations, Side preferred);

// Returns the number that names an item in its list, or a dependency in its package. Returns none
// for items without one.
std::optional<unsigned> ownUidOf(const Orv::Data::BaseObject& item);

} // namespace Ksx::Kit

// Takes items out of a row and puts items into it, many at a time.
#pragma once

#include "data/row.h"
#include <cstddef>
#include <utility>
#include <vector>

namespace Ksx::Core {

// Takes the items at these places out of a row. The places ascend. Returns the items.
template <class T>
std::vector<T> takeFrom(Orv::Data::Row<T>& row, const std::vector<std::size_t>& places)
{
    std::vector<T> taken(places.size());
    for (std::size_t i = places.size(); i-- > 0;)
        taken[i] = row.take(places[i]);
    return taken;
}

// Puts an item at each of these places, which ascend and are places of the row as it is then.
template <class T>
void putInto(Orv::Data::Row<T>& row, const std::vector<std::size_t>& places, std::vector<T> items)
{
    for (std::size_t i = 0; i < places.size(); ++i)
        row.insert(places[i], std::move(items[i]));
}

} // namespace Ksx::Core

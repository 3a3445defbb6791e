// Takes items out of a row and puts items into it, many at a time.
#pragma once

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace Ksx::Core {

// Takes the items at these places out of a vector or deque, in one walk from the first place to the
// last one. The places ascend. Returns the items.
template <class Row>
std::vector<typename Row::value_type> takeFrom(Row& row, const std::vector<std::size_t>& places)
{
    std::vector<typename Row::value_type> taken;
    if (places.empty())
        return taken;
    taken.reserve(places.size());
    std::size_t next = places.front(); // the place of the next item that stays
    std::size_t index = next;
    for (; taken.size() < places.size(); ++index) {
        if (index == places[taken.size()])
            taken.push_back(std::move(row[index]));
        else
            row[next++] = std::move(row[index]);
    }
    const auto begin = row.begin();
    row.erase(begin + static_cast<std::ptrdiff_t>(next),
              begin + static_cast<std::ptrdiff_t>(index));
    return taken;
}

// Puts an item at each of these places, which ascend and are those of the row as it is then.
template <class Row>
void putInto(Row& row, const std::vector<std::size_t>& places,
             std::vector<typename Row::value_type> items)
{
    if (places.empty())
        return;
    std::vector<typename Row::value_type> room(items.size());
    row.insert(row.begin() + static_cast<std::ptrdiff_t>(places.front()),
               std::make_move_iterator(room.begin()), std::make_move_iterator(room.end()));
    std::size_t next = places.front() + items.size(); // of those that make room
    std::size_t put = 0;
    for (std::size_t index = places.front(); put < items.size(); ++index) {
        if (index == places[put])
            row[index] = std::move(items[put++]);
        else
            row[index] = std::move(row[next++]);
    }
}

} // namespace Ksx::Core

#include "batch/components.h"

#include <queue>
#include <algorithm>
#include <functional>
#include <numeric>
#include <tuple>
#include <utility>

namespace Ksx::Kit {

Components::Components(std::size_t count) : m_parents(count)
{
    std::iota(m_parents.begin(), m_parents.end(), std::size_t{0});
}

void Components::join(std::size_t a, std::size_t b)
{
    const auto [first, last] = std::minmax({groupOf(a), groupOf(b)});
    m_parents[last] = first;
}

std::size_t Components::groupOf(std::size_t thing)
{
    while (m_parents[thing] != thing) {
        m_parents[thing] = m_parents[m_parents[thing]]; // halves the way of the next call
        thing = m_parents[thing];
    }
    return thing;
}

std::vector<std::size_t> distribute(const std::vector<qint64>& loads, std::size_t bins)
{
    std::vector<std::size_t> order(loads.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return loads[a] > loads[b]; });
    // The load and the number of loads of each bin, the least in front.
    using Bin = std::tuple<qint64, std::size_t, std::size_t>;
    std::priority_queue<Bin, std::vector<Bin>, std::greater<>> queue;
    for (std::size_t bin = 0; bin < bins; ++bin)
        queue.emplace(0, 0, bin);
    std::vector<std::size_t> result(loads.size());
    for (const std::size_t load : order) {
        const auto [bytes, count, bin] = queue.top();
        queue.pop();
        result[load] = bin;
        queue.emplace(bytes + loads[load], count + 1, bin);
    }
    return result;
}

} // namespace Ksx::Kit

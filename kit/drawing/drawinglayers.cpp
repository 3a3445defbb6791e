#include "drawing/drawinglayers.h"

#include <algorithm>
#include <deque>
#include <limits>

namespace Ksx::Kit {

DrawingLayers::DrawingLayers(const Drawing& drawing)
    : m_feeders(drawing.boxes.size()), m_users(drawing.boxes.size()), m_layers(drawing.boxes.size())
{
    for (const Wire& wire : drawing.wires) {
        m_feeders[wire.to].push_back(wire.from);
        m_users[wire.from].push_back(wire.to);
    }
    assign();
    pullSources();
}

std::size_t DrawingLayers::crossings() const
{
    std::size_t sum = 0;
    for (std::size_t box = 0; box < m_layers.size(); ++box)
        for (const std::size_t user : m_users[box])
            sum +=
                std::max(m_layers[box], m_layers[user]) - std::min(m_layers[box], m_layers[user]);
    return sum;
}

// Takes the boxes whose feeders are all done, and the first of the others where there are none.
void DrawingLayers::assign()
{
    Numbers open(m_feeders.size());
    std::deque<std::size_t> ready;
    std::vector<bool> isTaken(m_feeders.size());
    for (std::size_t box = 0; box < open.size(); ++box) {
        open[box] = m_feeders[box].size();
        if (open[box] == 0)
            ready.push_back(box);
    }
    for (std::size_t next = 0; next < open.size() || !ready.empty();) {
        if (ready.empty()) {
            ready.push_back(next++);
            continue;
        }
        const std::size_t box = ready.front();
        ready.pop_front();
        if (isTaken[box])
            continue;
        isTaken[box] = true;
        for (const std::size_t user : m_users[box]) {
            if (isTaken[user])
                continue;
            m_layers[user] = std::max(m_layers[user], m_layers[box] + 1);
            if (--open[user] == 0)
                ready.push_back(user);
        }
    }
}

// Moves boxes that nothing feeds to the layer in front of their first user.
void DrawingLayers::pullSources()
{
    for (std::size_t box = 0; box < m_layers.size(); ++box) {
        if (!m_feeders[box].empty() || m_users[box].empty())
            continue;
        std::size_t first = std::numeric_limits<std::size_t>::max();
        for (const std::size_t user : m_users[box])
            first = std::min(first, m_layers[user]);
        m_layers[box] = first == 0 ? 0 : first - 1;
    }
}

} // namespace Ksx::Kit

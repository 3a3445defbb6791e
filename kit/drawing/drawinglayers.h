// Sorts the boxes of a drawing into layers.
#pragma once

#include "ksx/kit/drawing.h"
#include <cstddef>
#include <vector>

namespace Ksx::Kit {

using Numbers = std::vector<std::size_t>;

// Layers of boxes: each wire goes to a later one, but for a wire that closes a cycle. Takes a time
// that is linear in boxes and wires.
class DrawingLayers
{
public:
    explicit DrawingLayers(const Drawing& drawing);

    // Returns whether no wire leads to the box or from it.
    bool isAlone(std::size_t box) const { return m_feeders[box].empty() && m_users[box].empty(); }
    const Numbers& feeders(std::size_t box) const { return m_feeders[box]; }
    std::size_t of(std::size_t box) const { return m_layers[box]; }
    // Returns the number of layers that all wires cross, taken together.
    std::size_t crossings() const;

private:
    void assign();
    void pullSources();

    std::vector<Numbers> m_feeders;
    std::vector<Numbers> m_users;
    Numbers m_layers;
};

} // namespace Ksx::Kit

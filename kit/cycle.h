// Finds cycles in graphs of numbers.
#pragma once

#include <cstddef>
#include <vector>

namespace Ksx::Kit {

// For each vertex, the vertices that it leads to.
using Edges = std::vector<std::vector<std::size_t>>;

// Returns a vertex of each cycle that a walk in the order of the vertices meets: the one at which
// the cycle closes. Each is named once. Takes a time that is linear in the edges, and no stack.
std::vector<std::size_t> cyclesIn(const Edges& edges);

} // namespace Ksx::Kit

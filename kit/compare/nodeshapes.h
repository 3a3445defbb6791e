// Finds nodes that are the same although their numbers differ.
#pragma once

#include "compare/alignment.h"
#include "compare/shape.h"
#include <functional>

namespace Ksx::Kit {

// Pairs the items that have no partner and are of an equal shape other than 0, in their order.
void alignEqual(Alignment& alignment, const std::function<Shape(std::size_t)>& ofFirst,
                const std::function<Shape(std::size_t)>& ofSecond);

// Pairs the nodes that have no partner. Nodes are told apart by what they are and by the nodes
// around them, farther ones first. At last nodes with other parameters are found by their kind and
// their neighbours. Takes time in proportion to the nodes and connections.
void alignNodesByShape(const Items& first, const Items& second, Alignment& alignment);

} // namespace Ksx::Kit

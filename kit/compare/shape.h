// What an object is, apart from the numbers by which others refer to it.
#pragma once

#include "compare/itemkind.h"
#include <cstdint>

namespace Ksx::Kit {

// A number that equal shapes have in common. Different shapes differ in all likelihood.
using Shape = std::uint64_t;

// Returns a shape that depends on both, and on their order.
Shape joined(Shape first, Shape second);
Shape shapeOf(std::string_view text);

// Returns the shape of an item with all below it. Its name, uids, connections, contents and the
// layout do not count, nor do the numbers in references. A group is known by the names of what is in
// it. Returns 0 for an item that nothing but its name tells from others.
Shape shapeOf(const Orv::Data::BaseObject& item);

} // namespace Ksx::Kit

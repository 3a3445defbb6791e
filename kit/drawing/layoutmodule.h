// The library for layouts, which is loaded when the first graph needs it.
#pragma once

#include <cstddef>
#include <vector>

namespace Ksx::Kit {

// A box: its size, and the place of its middle, which a layout sets.
struct LayoutBox
{
    double width = 0;
    double height = 0;
    double x = 0;
    double y = 0;
};

// A wire from a box to another one, by their numbers.
struct LayoutWire
{
    std::size_t from = 0;
    std::size_t to = 0;
};

// The function of the library, ksxLayOut(). Sets the places so that wires go to the right where
// they can. Returns false on failure. Any thread.
using LayoutFunction = bool (*)(LayoutBox* boxes, std::size_t boxCount, const LayoutWire* wires,
                                std::size_t wireCount);

// Returns the function of libksx_layout.so. Returns null if that library is missing.
LayoutFunction layoutFunction();

} // namespace Ksx::Kit

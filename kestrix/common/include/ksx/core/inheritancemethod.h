// The relation of the value of a parameter to other values.
#pragma once

#include <cstdint>

namespace Ksx::Core {

// The `relativeTo` of a stored parameter. Files hold these numbers. A file that does not state it
// gives all ones, which mean the default mode of the parameter.
enum class InheritanceMethod : std::uint32_t
{
    // The value counts by itself.
    Absolute = 0,
    // The value changes the value of the image at the primary input.
    RelativeToInput = 1,
    // The value changes the value of the enclosing graph.
    RelativeToParent = 2
};

} // namespace Ksx::Core

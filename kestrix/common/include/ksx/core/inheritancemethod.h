// How a parameter's value relates to other values.
#pragma once

#include <cstdint>

namespace Ksx::Core {

// The `relativeTo` of a stored parameter. A file that does not state it holds all ones there, which
// stands for the default mode of the parameter.
enum class InheritanceMethod : std::uint32_t
{
    Absolute = 0,
    RelativeToInput = 1,
    RelativeToParent = 2 // the enclosing graph
};

} // namespace Ksx::Core

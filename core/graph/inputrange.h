// The bounds within which a value of an input is kept.
#pragma once

#include <boost/any.hpp>
#include <string_view>
#include <vector>

namespace Ksx::Data::Content {
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// A bound is one number for all components of a value, or as many as the value has, with blanks,
// "," or ";" between them. A text that is no such thing is no bound, like an empty one; a number
// that is NaN bounds nothing.
class InputRange
{
public:
    InputRange() = default;
    InputRange(std::string_view minimum, std::string_view maximum);
    // From the options "min" and "max" of the input's widget. Whether the widget itself keeps to
    // them (its option "clamp") makes no difference.
    static InputRange of(const Data::Content::ParamInput& input);

    // The value with each component in its bounds; where they cross, the upper one holds. Integers
    // come to the nearest integer within. NaN, and what holds no numbers, stays as it is. Shapes
    // with numbers are unsigned, int, float, Int1 to Int4 and Float1 to Float4.
    boost::any clamped(const boost::any& value) const;

private:
    using Bounds = std::vector<double>; // empty without a bound

    static Bounds boundsIn(std::string_view text);
    static double boundAt(const Bounds& bounds, std::size_t index, std::size_t size,
                          double otherwise);
    template <class Number>
    Number clampedNumber(Number value, std::size_t index, std::size_t size) const;
    template <class Number>
    bool clampNumber(boost::any& value) const;
    template <class Vector>
    bool clampVector(boost::any& value) const;

    Bounds m_minimum;
    Bounds m_maximum;
};

} // namespace Ksx::Core

#include "graph/inputrange.h"

#include "data/attribute.h"
#include "data/content/paraminput.h"
#include <QByteArray>
#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace Ksx::Core {

namespace {

using Data::Content::Option;
using Data::Content::ParamInput;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr std::string_view Separators = " \t\r\n,;";

std::string_view optionOf(const ParamInput& input, std::string_view name)
{
    for (const Option& option : input.defaultWidget().options())
        if (option.name().get() == name)
            return option.value().get();
    return {};
}

// The number of that kind that comes nearest to a bound: bounds may lie beyond all of them.
template <class Number>
Number nearest(double bound)
{
    constexpr auto lowest = static_cast<double>(std::numeric_limits<Number>::lowest());
    constexpr auto highest = static_cast<double>(std::numeric_limits<Number>::max());
    return static_cast<Number>(std::clamp(bound, lowest, highest));
}

} // namespace

InputRange::InputRange(std::string_view minimum, std::string_view maximum)
    : m_minimum(boundsIn(minimum)), m_maximum(boundsIn(maximum))
{}

InputRange InputRange::of(const ParamInput& input)
{
    return InputRange(optionOf(input, "min"), optionOf(input, "max"));
}

InputRange::Bounds InputRange::boundsIn(std::string_view text)
{
    Bounds bounds;
    std::size_t begin = text.find_first_not_of(Separators);
    while (begin != std::string_view::npos) {
        const std::size_t end = std::min(text.find_first_of(Separators, begin), text.size());
        bool isNumber = false;
        const std::string_view part = text.substr(begin, end - begin);
        bounds.push_back(
            QByteArray(part.data(), static_cast<int>(part.size())).toDouble(&isNumber));
        if (!isNumber)
            return {};
        begin = text.find_first_not_of(Separators, end);
    }
    return bounds;
}

double InputRange::boundAt(const Bounds& bounds, std::size_t index, std::size_t size,
                           double otherwise)
{
    if (bounds.size() != 1 && bounds.size() != size)
        return otherwise;
    const double bound = bounds.size() == 1 ? bounds.front() : bounds[index];
    return std::isnan(bound) ? otherwise : bound;
}

template <class Number>
Number InputRange::clampedNumber(Number value, std::size_t index, std::size_t size) const
{
    double minimum = boundAt(m_minimum, index, size, -Infinity);
    double maximum = boundAt(m_maximum, index, size, Infinity);
    if constexpr (std::is_integral_v<Number>) {
        minimum = std::ceil(minimum);
        maximum = std::floor(maximum);
    }
    Number result = value;
    if (static_cast<double>(result) < minimum)
        result = nearest<Number>(minimum);
    if (static_cast<double>(result) > maximum)
        result = nearest<Number>(maximum);
    return result;
}

template <class Number>
bool InputRange::clampNumber(boost::any& value) const
{
    auto* const number = boost::any_cast<Number>(&value);
    if (number != nullptr)
        *number = clampedNumber(*number, 0, 1);
    return number != nullptr;
}

template <class Vector>
bool InputRange::clampVector(boost::any& value) const
{
    auto* const vector = boost::any_cast<Vector>(&value);
    for (std::size_t i = 0; vector != nullptr && i < Vector::size(); ++i)
        (*vector)[i] = clampedNumber((*vector)[i], i, Vector::size());
    return vector != nullptr;
}

boost::any InputRange::clamped(const boost::any& value) const
{
    using namespace Orv::Data;
    boost::any result = value;
    clampNumber<UInt>(result) || clampNumber<int>(result) || clampNumber<float>(result) ||
        clampVector<Int1>(result) || clampVector<Int2>(result) || clampVector<Int3>(result) ||
        clampVector<Int4>(result) || clampVector<Float1>(result) || clampVector<Float2>(result) ||
        clampVector<Float3>(result) || clampVector<Float4>(result);
    return result;
}

} // namespace Ksx::Core

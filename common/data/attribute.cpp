#include "data/attribute.h"

#include <boost/lexical_cast.hpp>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

namespace Orv::Data {

namespace {

// Digits that keep a value apart from its neighbours: a scalar float is written with nine, the
// elements of a vector with six. Files depend on the difference.
constexpr int ScalarFloatDigits = 9;
constexpr int VecFloatDigits = 6;

// Room for any number below, sign, point and exponent included.
constexpr std::size_t NumberLength = 32;

template <class T>
[[noreturn]] void throwBadText()
{
    throw boost::bad_lexical_cast(typeid(std::string), typeid(T));
}

// Numbers are written without a look at the C locale, which a Qt program takes from its user.
template <class Number>
void appendInteger(std::string& out, Number value)
{
    char buffer[NumberLength];
    const auto result = std::to_chars(buffer, buffer + NumberLength, value);
    out.append(buffer, result.ptr);
}

void appendFloat(std::string& out, double value, int digits)
{
    char buffer[NumberLength];
    const auto result =
        std::to_chars(buffer, buffer + NumberLength, value, std::chars_format::general, digits);
    out.append(buffer, result.ptr);
}

void appendValue(std::string& out, UInt value)
{
    appendInteger(out, value);
}

void appendValue(std::string& out, bool value)
{
    out.push_back(value ? '1' : '0');
}

void appendValue(std::string& out, const Text& value)
{
    out.append(value);
}

void appendValue(std::string& out, float value)
{
    appendFloat(out, static_cast<double>(value), ScalarFloatDigits);
}

template <class T, std::size_t N>
void appendValue(std::string& out, const Vec<T, N>& value)
{
    for (std::size_t i = 0; i < N; ++i) {
        if (i > 0)
            out.push_back(' ');
        if constexpr (std::is_integral_v<T>)
            appendInteger(out, value[i]);
        else
            appendFloat(out, static_cast<double>(value[i]), VecFloatDigits);
    }
}

// The short plain forms that files hold nearly always; whatever they do not cover goes the long
// way through the conversion that defines the format.
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Reads "-12", up to nine digits: no overflow to think of. Answers the end, null if it is not so.
const char* parsePlain(const char* first, const char* last, int& value)
{
    const char* digits = first != last && *first == '-' ? first + 1 : first;
    const char* end = digits;
    while (end != last && isDigit(*end))
        ++end;
    if (end == digits || end - digits > 9)
        return nullptr;
    std::from_chars(first, end, value);
    return end;
}

// Reads "-12" and "-12.5", without exponent. Answers the end, null if it is not so.
const char* parsePlain(const char* first, const char* last, float& value)
{
    const char* digits = first != last && *first == '-' ? first + 1 : first;
    const char* end = digits;
    while (end != last && isDigit(*end))
        ++end;
    if (end == digits)
        return nullptr;
    if (end != last && *end == '.') {
        ++end;
        while (end != last && isDigit(*end))
            ++end;
    }
    const auto result = std::from_chars(first, end, value, std::chars_format::fixed);
    return result.ec == std::errc() ? end : nullptr;
}

template <class T>
bool parseWholePlain(std::string_view text, T& value)
{
    const char* last = text.data() + text.size();
    return parsePlain(text.data(), last, value) == last;
}

template <class T, std::size_t N>
bool parseWholePlain(std::string_view text, Vec<T, N>& value)
{
    const char* place = text.data();
    const char* const last = place + text.size();
    for (std::size_t i = 0; i < N; ++i) {
        place = parsePlain(place, last, value[i]);
        if (place == nullptr)
            return false;
        if (i + 1 < N) {
            if (place == last || (*place != ' ' && *place != ','))
                return false;
            ++place;
        }
    }
    return place == last;
}

// A sign is allowed, and a minus negates modulo 2 to the 32nd power.
UInt parse(std::string_view text, const UInt*)
{
    const bool hasSign = !text.empty() && (text.front() == '-' || text.front() == '+');
    const char* const first = text.data() + (hasSign ? 1 : 0);
    const char* const last = text.data() + text.size();
    UInt value = 0;
    const auto result = std::from_chars(first, last, value);
    if (result.ec != std::errc() || result.ptr != last)
        throwBadText<UInt>();
    return hasSign && text.front() == '-' ? 0U - value : value;
}

bool parse(std::string_view text, const bool*)
{
    if (text == "1" || text == "+1")
        return true;
    if (text == "0" || text == "+0" || text == "-0")
        return false;
    throwBadText<bool>();
}

Text parse(std::string_view text, const Text*)
{
    return Text(text);
}

// Reads the words that stand for no number, with an optional sign. Returns false for others.
bool parseWord(std::string_view text, float& value)
{
    const bool hasSign = !text.empty() && (text.front() == '-' || text.front() == '+');
    const std::string_view word = text.substr(hasSign ? 1 : 0);
    if (word == "nan" || word == "NAN")
        value = std::numeric_limits<float>::quiet_NaN();
    else if (word == "inf" || word == "INF" || word == "infinity" || word == "INFINITY")
        value = std::numeric_limits<float>::infinity();
    else
        return false;
    if (hasSign && text.front() == '-')
        value = -value;
    return true;
}

// In the classic locale, whatever the process has for its own. A stream also takes a number that
// breaks off behind its exponent's mark.
float parse(std::string_view text, const float*)
{
    float value = 0;
    if (parseWholePlain(text, value) || parseWord(text, value))
        return value;
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    stream.unsetf(std::ios::skipws);
    stream >> value;
    if (stream.fail() || stream.get() != std::istringstream::traits_type::eof() ||
        std::string_view("eE+-").find(text.back()) != std::string_view::npos)
        throwBadText<float>();
    return value;
}

template <class T, std::size_t N>
Vec<T, N> parse(std::string_view text, const Vec<T, N>*)
{
    Vec<T, N> value;
    if (parseWholePlain(text, value))
        return value;
    std::istringstream stream{std::string(text)};
    stream.exceptions(std::ios::badbit); // a lack of memory is no fault of the text
    stream.imbue(std::locale::classic());
    stream.unsetf(std::ios::skipws);
    stream >> value;
    if (stream.fail() || stream.get() != std::istringstream::traits_type::eof())
        throwBadText<Vec<T, N>>();
    return value;
}

template <class T>
bool differs(const T& a, const T& b)
{
    if constexpr (std::is_floating_point_v<T>)
        return a < b || a > b; // so a NaN is never modified
    else
        return a != b;
}

template <std::size_t N>
bool differs(const Vec<float, N>& a, const Vec<float, N>& b)
{
    for (std::size_t i = 0; i < N; ++i)
        if (differs(a[i], b[i]))
            return true;
    return false;
}

} // namespace

template <class T>
void Attribute<T>::appendText(std::string& out) const
{
    appendValue(out, m_value);
}

template <class T>
T valueFromString(std::string_view text)
{
    return parse(text, static_cast<const T*>(nullptr));
}

template <class T>
void Attribute<T>::fromString(std::string_view text)
{
    m_value = valueFromString<T>(text);
}

template <class T>
bool Attribute<T>::isModified() const
{
    return differs(getDefaultValue(), m_value);
}

#define ATTRIBUTE_TYPE(type)                                                                       \
    template type valueFromString<type>(std::string_view text);                                    \
    template class Attribute<type>;
#include "data/attributetypes.inc"

} // namespace Orv::Data

// Attributes that stand alone, and the short ways from value to text and back.
#pragma once

#include "data/attribute.h"
#include "data/metabinder.h"
#include <boost/lexical_cast.hpp>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace TestDocument {

struct ValueMeta_
{
    static constexpr Orv::Data::ObjectMeta record =
        Orv::Data::makeMeta("value", Orv::Data::Required);
};
template <class T>
class Value final : public Orv::Data::MetaBinder<Orv::Data::Attribute<T>, ValueMeta_>
{};

template <class T>
bool parses(std::string_view text)
{
    try {
        static_cast<void>(Orv::Data::valueFromString<T>(text));
        return true;
    } catch (const boost::bad_lexical_cast&) {
        return false;
    }
}

template <class T>
std::string textOf(const T& value)
{
    Value<T> attribute;
    attribute.assign(value);
    return attribute.toString();
}

// The bits of a number of four bytes, which tell zeros and NaNs apart.
template <class Number>
std::uint32_t bitsOf(Number number)
{
    std::uint32_t bits = 0;
    static_assert(sizeof(number) == sizeof(bits));
    std::memcpy(&bits, &number, sizeof(bits));
    return bits;
}

} // namespace TestDocument

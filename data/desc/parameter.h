// What a node says about one of its parameters or connectors.
#pragma once

#include <boost/any.hpp>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Ksx::Data::Desc {

// Bits of Parameter::flags.
namespace ParameterFlag {
constexpr unsigned OptionalVariant = 0x3; // both bits: follows the type of others, if connected
constexpr unsigned Inheritable = 0x8;     // relative to the input or the parent unless it is stored
constexpr unsigned Primary = 0x20;        // the connector that automatic wiring uses first
constexpr unsigned ZeroWhenRelative = 0x20000;
constexpr unsigned OneWhenRelative = 0x40000;
constexpr unsigned DefaultFromEntry = 0x400000; // the first entry of DefaultEntryKind
} // namespace ParameterFlag

constexpr unsigned DefaultEntryKind = 3072;

// One of the values that a parameter offers.
struct ValueEntry
{
    std::string identifier;
    std::string nameKey;
    std::string descKey;
    unsigned kind = 0;
    boost::any value; // of the shape of the parameter's value: the item's index in enumerations
};

// Connectors are described by the same record, with an image or connection type and no value.
struct Parameter
{
    std::string identifier;
    std::string widget;
    unsigned type = 0;  // one or more of ValueType
    unsigned flags = 0; // of ParameterFlag
    // Of the shape that emptyValueOf() has for the type, and empty where that is empty.
    boost::any defaultValue;
    // Keys of translations in the context "Ksx::Data::Desc::Filters".
    std::string nameKey;
    std::string descKey;
    // "min", "max", "valueInterpretation", "label0" and so on: numbers as text, words, or keys.
    std::map<std::string, std::string> extras;
    std::vector<ValueEntry> entries; // in the order of their indexes; empty if any value will do

    // The text of an extra, empty without it.
    const std::string& extra(const std::string& name) const;
    // The default as T; T{} when it has another shape.
    template <class T>
    T defaultAs() const
    {
        const T* const value = boost::any_cast<T>(&defaultValue);
        return value ? *value : T{};
    }
};

// Zero, false or the empty text in the shape in which values of the type are handed around: bool,
// unsigned (for Int1), Int2 to Int4, Float1 to Float4 (for Color and ColorOrImage too) or
// std::string (for both kinds of text). Empty for types without a value.
boost::any emptyValueOf(unsigned type);

} // namespace Ksx::Data::Desc

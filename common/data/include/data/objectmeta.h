// The static description of one declared element.
#pragma once

#include <cstdint>
#include <string_view>

namespace Orv::Data {

// Whether an element must be in a file, and the other facts of its declaration; joined with "|".
enum Need : unsigned
{
    Required = 0,
    Optional = 1,     // may be absent, and is not written while it has its default
    FilePath = 2,     // the value is the path of a file (ValueFlag::FilePath)
    Presentation = 4, // shown to a user, without effect on the result (MessageMask::Presentation)
};
constexpr Need operator|(Need a, Need b)
{
    return static_cast<Need>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

// Bits of ObjectMeta::valueFlags: they select the converters of the XML writer.
struct ValueFlag
{
    static constexpr std::uint32_t None = 0;
    static constexpr std::uint32_t FilePath = 1;
};

// Bits of ObjectMeta::messageMask and of a listener's member mask.
struct MessageMask
{
    static constexpr std::uint32_t All = 0xFFFFFFFFu;
    static constexpr std::uint32_t Presentation = 1;
    static constexpr std::uint32_t Content = 2; // a listener with this mask hears no Presentation
};

// One record per declaration, constant for the life of the process.
struct ObjectMeta
{
    std::string_view name;     // the XML element name, and the key of a member in its structure
    bool isOptional;           // may be absent, and is not written while isModified() is false
    std::uint32_t messageMask; // sent with changes that begin at the object
    std::uint32_t valueFlags;
    const void* userData; // always null; free for a client of the library
};

constexpr ObjectMeta makeMeta(std::string_view name, Need need)
{
    return {name, (need & Optional) != 0,
            (need & Presentation) != 0 ? MessageMask::Presentation : MessageMask::All,
            (need & FilePath) != 0 ? ValueFlag::FilePath : ValueFlag::None, nullptr};
}

} // namespace Orv::Data

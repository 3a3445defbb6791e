// The three versions of an object that are merged.
#pragma once

#include "compare/itemkind.h"
#include <array>
#include <cstddef>
#include <optional>

namespace Ksx::Kit {

// The two versions that were made of the base.
enum Side : std::size_t
{
    Ours,
    Theirs,
};
inline constexpr std::array BothSides = {Ours, Theirs};

constexpr Side otherSide(Side side)
{
    return side == Ours ? Theirs : Ours;
}

// The versions of one object. Each of them may be null, but for one of the sides.
struct Trio
{
    const Orv::Data::BaseObject* base = nullptr;
    std::array<const Orv::Data::BaseObject*, 2> sides = {};

    bool hasBoth() const { return sides[Ours] != nullptr && sides[Theirs] != nullptr; }
    // Returns a version that is there, ours if it is.
    const Orv::Data::BaseObject& any() const
    {
        return sides[Ours] != nullptr ? *sides[Ours] : *sides[Theirs];
    }
    // Returns the trio of what a function finds in each version.
    template <class Function>
    Trio mapped(Function&& function) const
    {
        const auto of = [&](const Orv::Data::BaseObject* object) {
            return object == nullptr ? nullptr : function(*object);
        };
        return {of(base), {of(sides[Ours]), of(sides[Theirs])}};
    }
};

// Returns the side whose value wins. Returns none in a conflict. `base` is null without a base.
template <class Value>
std::optional<Side> winner(const Value* base, const std::array<Value, 2>& sides)
{
    if (sides[Ours] == sides[Theirs] || (base != nullptr && sides[Theirs] == *base))
        return Ours;
    if (base != nullptr && sides[Ours] == *base)
        return Theirs;
    return std::nullopt;
}

} // namespace Ksx::Kit

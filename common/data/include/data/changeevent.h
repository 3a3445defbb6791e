// One change on its way up the tree.
#pragma once

#include "data/changeruns.h"
#include <cstddef>
#include <cstdint>

namespace Orv::Data {

class BaseObject;

// Bits of an event's type, of a message's and of a listener's type mask.
struct ChangeType
{
    static constexpr std::uint32_t Descendant = 1;       // something below the object changed
    static constexpr std::uint32_t Value = 2;            // the attribute's value changed
    static constexpr std::uint32_t Removed = 4;          // the object leaves the tree
    static constexpr std::uint32_t Inserted = 8;         // items were inserted, a child was set
    static constexpr std::uint32_t Erased = 16;          // items were erased, a child was cleared
    static constexpr std::uint32_t DescendantMoved = 32; // reserved: nothing sends it
    static constexpr std::uint32_t Reserved = 64;        // becomes DescendantMoved at the parent
    static constexpr std::uint32_t Moved = 128;          // items were moved within the list
    // What a parent sees as a mere change of a descendant.
    static constexpr std::uint32_t Local = Value | Removed | Inserted | Erased | Moved;
};

// Children of one object, in any order. Does not own them.
struct ChildrenSpan
{
    BaseObject* const* first = nullptr;
    std::size_t count = 0;

    BaseObject* const* begin() const { return first; }
    BaseObject* const* end() const { return first + count; }
};

struct ChangeEvent
{
    std::uint32_t type;
    ChangeRuns runs;          // of the list that changed; empty on the ancestors
    std::uint32_t memberMask; // message mask of the object where the change began
    // The items of a list that come, go or move, and the child through which a change came up.
    ChildrenSpan children = {};
};

} // namespace Orv::Data

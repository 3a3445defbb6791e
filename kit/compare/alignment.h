// Finds the items of two lists that are the same item.
#pragma once

#include "compare/itemkind.h"
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace Ksx::Kit {

class Translation;

// Which items of two lists belong together.
struct Alignment
{
    static constexpr std::size_t None = ~std::size_t{0};

    // For each item of one list the index in the other one, or None.
    std::vector<std::size_t> inSecond;
    std::vector<std::size_t> inFirst;

    void pair(std::size_t first, std::size_t second)
    {
        inSecond[first] = second;
        inFirst[second] = first;
    }
};

// Aligns by uid, then by name, and at last by structure, since uids come from the clock. Items of
// several owners may be given. Nodes are found by what feeds them and what they feed as well.
// `translation` is that of the second list.
Alignment align(const Items& first, const Items& second, const Translation& translation);

// Aligns by uid and by name alone. `translations` are those of both lists into a third one.
Alignment alignByKey(const Items& first, const Items& second,
                     const std::array<Translation, 2>& translations);

// Returns the number that names an item in its list. A number that is a reference, such as that of
// a rendered output, is the translated one.
std::optional<unsigned> translatedUidOf(const Orv::Data::BaseObject& item,
                                        const Translation& translation);

// Returns for each item of the second list whether it stands elsewhere among the items that both
// lists have. As few as possible do.
std::vector<bool> movedItems(const Alignment& alignment);

} // namespace Ksx::Kit

// Identifiers of new objects in a content list.
#pragma once

#include <string>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Core {

// An identifier as its base and the number behind its last "_". The number of a text without one
// is 1, and all of it is its base.
struct NumberedName
{
    explicit NumberedName(const std::string& text);
    // The candidate with the number at hand, which then counts up.
    std::string next() { return base + '_' + std::to_string(number++); }

    std::string base;
    long long number = 1; // beyond all that fits the text, so that it can count on
};

// The wanted identifier in its legal form, unless it leads to an object of the container's content
// other than `ignored` (which may be null); otherwise the first one with a number behind it that
// leads to none. The number is the one that the text ends in, behind a "_", else 1, and counts up:
// "Graph" gives "Graph_1", and "Graph_7" gives "Graph_8". An empty text stays empty; another one
// always gives some. `container` is a package, a group or a graph; nothing is taken in any other
// object.
std::string uniqueIdentifier(const Orv::Data::BaseObject& container, const std::string& wanted,
                             const Orv::Data::BaseObject* ignored = nullptr);

} // namespace Ksx::Core

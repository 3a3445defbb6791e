// Identifiers of new objects in a content list.
#pragma once

#include <string>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Core {

// The wanted identifier in its legal form, unless it leads to an object of the container's content
// other than `ignored` (which may be null); otherwise the first one with a number behind it that
// leads to none. The number is the one that the text ends in, behind a "_", else 1, and counts up:
// "Graph" gives "Graph_1", and "Graph_7" gives "Graph_8". An empty text stays empty; another one
// always gives some. `container` is a package, a group or a graph; nothing is taken in any other
// object.
std::string uniqueIdentifier(const Orv::Data::BaseObject& container, const std::string& wanted,
                             const Orv::Data::BaseObject* ignored = nullptr);

} // namespace Ksx::Core

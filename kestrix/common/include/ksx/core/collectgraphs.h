// The graphs of a package.
#pragma once

#include "data/datapointerbox.h"
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

constexpr int AllDepths = -1;

// The graphs in the content of a package, a group or a graph, in document order, and those in the
// content of its objects down to `depth` levels below. None for any other object.
std::vector<Orv::Data::DataPointerBox<Data::Content::Graph>>
collectGraphs(const Orv::Data::BaseObject& object, int depth = AllDepths);

} // namespace Ksx::Core

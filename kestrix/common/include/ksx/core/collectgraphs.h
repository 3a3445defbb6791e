// Lists the graphs of a package.
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

// The depth that sets no limit.
constexpr int AllDepths = -1;

// Returns the graphs in the content of a package, a group or a graph, in the order of the document.
// Also returns the graphs in the content of these objects, down to `depth` levels below. Depth 0
// looks into no group. Returns nothing for any other object. Makes no controllers. Main thread.
//
//     const auto graphs = collectGraphs(package);
//     CompGraphController* first = graphs.empty() ? nullptr : graphController(graphs.front());
std::vector<Orv::Data::DataPointerBox<Data::Content::Graph>>
collectGraphs(const Orv::Data::BaseObject& object, int depth = AllDepths);

} // namespace Ksx::Core

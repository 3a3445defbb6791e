// Which type of image the outputs of a graph have.
#pragma once

#include <vector>

namespace Ksx::Data::Content {
class Graph;
class GraphOutput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The type of an output of a graph, as an instance of the graph stores it: the connection type that
// the output's node names, else the type of what feeds that node, else a color image. One that is
// either color or grayscale is a color image. Takes a walk over the nodes of the graph.
unsigned typeOfGraphOutput(const Data::Content::Graph& graph,
                           const Data::Content::GraphOutput& output);

// The types of all outputs, in the order of `graphOutputs`. Walks over the nodes once for them all.
std::vector<unsigned> typesOfGraphOutputs(const Data::Content::Graph& graph);

} // namespace Ksx::Core

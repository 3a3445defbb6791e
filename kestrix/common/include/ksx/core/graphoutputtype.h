// Which type of image the outputs of a graph have.
#pragma once

#include "ksx/core/uidsource.h"
#include <vector>

namespace Ksx::Data::Content {
class CompNode;
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

// The nodes that say so, in any order: the types are the same until one of them changes or goes,
// or another node comes that belongs to an output or has one of the missing uids.
struct GraphOutputNodes
{
    std::vector<const Data::Content::CompNode*> nodes;
    std::vector<Uid> missing;
};
GraphOutputNodes nodesOfGraphOutputs(const Data::Content::Graph& graph);

// Does the node belong to an output of its graph?
bool isOutputNode(const Data::Content::CompNode& node);

} // namespace Ksx::Core

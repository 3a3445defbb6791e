// Who reads an input of a graph, and how an input is frozen.
#pragma once

#include <boost/any.hpp>
#include <string>
#include <vector>

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class FuncNodeController;
class InputController;
class InputsController;

// The function nodes that read the input of that identifier: typed getters that hold it, whatever
// type they have. In the order of the document: the parameters of the graph, then those of each
// node, in which arrays of parameter sets come behind the node's own list and FX-map graphs last.
// Controllers are made only for function graphs with such a node.
std::vector<FuncNodeController*> collectInputUsers(const Data::Content::Graph& graph,
                                                   const std::string& identifier);

// Removes the input, which belongs to `inputs` and dies, and lets everything that read it read a
// constant: in each function graph a node of the getter's own type takes its place. A constant that
// is empty or has not the shape of a getter's type leaves that type's zero. Each step is a command
// of its own. False, and nothing is changed, for the input of an image and for one that has died.
bool switchToConstant(InputsController& inputs, InputController& input, const boost::any& constant);

} // namespace Ksx::Core

// The function nodes that read an input of a graph, and the freezing of an input.
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

// Returns the function nodes that read the input of an identifier: the getters of a type that hold
// this name. The type of the input does not count.
//
// They are in the order of the document: first the parameters of the graph, then the parameters of
// each node. Within a node, arrays of parameter sets come behind its own list, and graphs of
// FX-maps last.
//
// Only function graphs with a reader get controllers. These own the returned nodes. Main thread.
std::vector<FuncNodeController*> collectInputUsers(const Data::Content::Graph& graph,
                                                   const std::string& identifier);

// Freezes an input: removes it and makes all its readers read a constant instead. In each function
// graph a new node, of the type of the getter, takes the place of the getter. A constant that is
// empty or has another shape gives the zero of that type. `constant` has the shape that
// InputController::defaultValue() has.
//
// `input` belongs to `inputs` and dies. Each step is a command of its own: use a Transaction around
// the call. Returns false and changes nothing for an input of images and for one that has died.
bool switchToConstant(InputsController& inputs, InputController& input, const boost::any& constant);

} // namespace Ksx::Core

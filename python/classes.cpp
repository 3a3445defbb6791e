// Makes the classes of Python before their functions are bound.
#include "objects.h"

namespace Ksx::Python {

void declareClasses(pybind11::module_& module)
{
    makeClass<Handle>(module, "Object", R"(Anything that is in an open package.

Two objects are equal if they mean the same thing of the document. An object raises GoneError once it
has left the document, and is valid again if an undo brings it back.)");
    makeClass<Package, Handle>(module, "Package",
                               "An open package: its graphs, functions and resources.");
    makeClass<Dependency, Handle>(module, "Dependency", "A package that another one refers to.");
    makeClass<Content, Handle>(module, "Content",
                               "What a graph, a function and a resource have in common.");
    makeClass<Graph, Content>(module, "Graph", "A graph of nodes that make images.");
    makeClass<Function, Content>(module, "Function", "A function that packages define.");
    makeClass<Resource, Content>(module, "Resource", "A file that a package uses.");
    makeClass<Input, Handle>(module, "Input", "An input of a graph: a value or an image.");
    makeClass<Output, Handle>(module, "Output", "An output of a graph.");
    makeClass<FunctionGraph, Handle>(module, "FunctionGraph", "A graph that computes a value.");
    makeClass<ParameterGraph, Handle>(module, "ParameterGraph", "The graph of an FX-map.");
    makeClass<Node, Handle>(module, "Node", "A node of a graph.");
    makeClass<ImageNode, Node>(module, "ImageNode", "A node of a graph of images.");
    makeClass<FilterNode, ImageNode>(module, "FilterNode", "A node that runs an atomic filter.");
    makeClass<InstanceNode, ImageNode>(module, "InstanceNode", "A node that shows another graph.");
    makeClass<InputNode, ImageNode>(module, "InputNode",
                                    "A node that gives the image of an input of its graph.");
    makeClass<OutputNode, ImageNode>(module, "OutputNode",
                                     "A node that takes the image of an output of its graph.");
    makeClass<FunctionNode, Node>(module, "FunctionNode", "A node that computes a function.");
    makeClass<ParameterNode, Node>(module, "ParameterNode", "A node of the graph of an FX-map.");
    makeClass<InputConnector>(module, "InputConnector", "An input of a node.");
    makeClass<OutputConnector>(module, "OutputConnector", "An output of a node.");
    makeClass<Parameter>(module, "Parameter", R"(A parameter of a graph or node.

It has a value whether the document stores one or not.)");
}

} // namespace Ksx::Python

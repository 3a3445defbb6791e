// Binds nodes of graphs of images, and what all nodes have in common.
#include "data/content/compnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/content/paramnode.h"
#include "data/content/paramsgraph.h"
#include "data/content/resource.h"
#include "edits.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/paramgraphcontroller.h"
#include "ksx/core/paramnodecontroller.h"
#include "objects.h"
#include "values.h"
#include <pybind11/stl.h>
#include <typeinfo>

namespace Ksx::Python {

namespace py = pybind11;
namespace Document = Data::Content;
using Orv::Data::BaseObject;
using Orv::Data::DataPointerBox;

namespace {

template <class T>
Core::GraphController* graphOf(const BaseObject& graph)
{
    return Core::graphController(DataPointerBox<T>(&static_cast<const T&>(graph)));
}

// The graph that has a node. Its class follows from that of the node.
Core::GraphController& graphOfNode(const BaseObject& node)
{
    const BaseObject& graph = *node.getParent()->getParent();
    if (dynamic_cast<const Document::CompNode*>(&node) != nullptr)
        return *graphOf<Document::Graph>(graph);
    if (dynamic_cast<const Document::ParamNode*>(&node) != nullptr)
        return *graphOf<Document::DynamicValue>(graph);
    return *graphOf<Document::ParamsGraph>(graph);
}

Core::Uid uidOf(const BaseObject& node)
{
    if (const auto* image = dynamic_cast<const Document::CompNode*>(&node))
        return image->uid().get();
    if (const auto* function = dynamic_cast<const Document::ParamNode*>(&node))
        return function->uid().get();
    return static_cast<const Document::ParamsGraphNode&>(node).uid().get();
}

// What the module knows of a kind of nodes.
struct KindRow
{
    const std::type_info& controller;
    const BaseObject& (*document)(const Core::NodeController&);
    py::object (*make)(const Node&);
};

template <class Controller>
const BaseObject& documentOf(const Core::NodeController& node)
{
    return *static_cast<const Controller&>(node).node();
}

template <class Class>
py::object made(const Node& node)
{
    return py::cast(Class(node));
}

// The class of each controller of nodes is one of these itself.
const KindRow Kinds[] = {
    {typeid(Core::CompFilterNodeController), &documentOf<Core::CompNodeController>,
     &made<FilterNode>},
    {typeid(Core::CompInstanceNodeController), &documentOf<Core::CompNodeController>,
     &made<InstanceNode>},
    {typeid(Core::CompInputNodeController), &documentOf<Core::CompNodeController>,
     &made<InputNode>},
    {typeid(Core::CompOutputNodeController), &documentOf<Core::CompNodeController>,
     &made<OutputNode>},
    {typeid(Core::FuncNodeController), &documentOf<Core::FuncNodeController>, &made<FunctionNode>},
    {typeid(Core::ParamNodeController), &documentOf<Core::ParamNodeController>,
     &made<ParameterNode>},
};

const KindRow& kindOf(const Core::NodeController& node)
{
    for (const KindRow& row : Kinds)
        if (row.controller == typeid(node))
            return row;
    raise("GoneError", "the node has a kind that cannot be shown");
}

// The node in the document that a controller shows.
const BaseObject& documentNode(const Core::NodeController& node)
{
    return kindOf(node).document(node);
}

const Document::CompNode* imageNodeIn(const BaseObject& node)
{
    return dynamic_cast<const Document::CompNode*>(&node);
}

// Nodes of one uid are told apart by their objects: the graph finds the first of them.
Core::NodeController* controllerIn(Core::GraphController& graph, const BaseObject& node)
{
    if (const auto* image = imageNodeIn(node))
        return static_cast<Core::CompGraphController&>(graph).nodeController(*image);
    Core::NodeController* const found = graph.nodeByUid(uidOf(node));
    if (found != nullptr && &documentNode(*found) == &node)
        return found;
    for (Core::NodeController* candidate : graph.nodes())
        if (&documentNode(*candidate) == &node)
            return candidate;
    return nullptr;
}

template <class Controller>
Controller& controllerAs(const Node& self)
{
    return static_cast<Controller&>(controllerOf(self));
}

InputConnector inputOf(const Node& node, const Core::InputConnectorController& connector)
{
    return {{node, connector.identifier()}};
}

OutputConnector outputOf(const Node& node, const Core::OutputConnectorController& connector)
{
    return {{node, connector.identifier(), connector.outputUid()}};
}

py::list inputsOf(const Node& self)
{
    const Core::NodeController& node = controllerOf(self);
    py::list inputs;
    for (std::size_t i = 0; i < node.inputConnectorCount(); ++i)
        inputs.append(inputOf(self, *node.inputConnector(i)));
    return inputs;
}

py::list outputsOf(const Node& self)
{
    const Core::NodeController& node = controllerOf(self);
    py::list outputs;
    for (std::size_t i = 0; i < node.outputConnectorCount(); ++i)
        outputs.append(outputOf(self, *node.outputConnector(i)));
    return outputs;
}

InputConnector findInput(const Node& self, const py::str& identifier)
{
    const auto* const found = controllerOf(self).inputConnectorByName(textFrom(identifier));
    if (found == nullptr)
        raiseMissing(identifier);
    return inputOf(self, *found);
}

OutputConnector findOutput(const Node& self, const py::str& identifier)
{
    const auto* const found = controllerOf(self).outputConnectorByName(textFrom(identifier));
    if (found == nullptr)
        raiseMissing(identifier);
    return outputOf(self, *found);
}

void remove(const Node& self, bool disconnect)
{
    Core::NodeController& node = controllerOf(self);
    node.graph().removeNode(node, disconnect);
    require(!self.isValid(), "nodes of this graph cannot be removed");
}

void setPosition(const Node& self, std::pair<double, double> position)
{
    requireFinite(position.first);
    requireFinite(position.second);
    controllerOf(self).setPosition({position.first, position.second});
}

py::object graphObjectOf(const Node& self)
{
    const BaseObject& node = self.object();
    const BaseObject& graph = *node.getParent()->getParent();
    if (imageNodeIn(node) != nullptr)
        return py::cast(Graph(self.world(), graph));
    if (dynamic_cast<const Document::ParamNode*>(&node) != nullptr)
        return py::cast(FunctionGraph(self.world(), graph));
    return py::cast(ParameterGraph(self.world(), graph));
}

void bindNode(py::module_& module)
{
    auto bound = declared<Node, Handle>(module, "Node");
    bindRepr(
        bound, +[](const Node& self) { return py::str(py::int_(uidOf(self.object()))); });
    bound
        .def_property_readonly(
            "uid", [](const Node& self) { return uidOf(self.object()); }, "The uid of the node.")
        .def_property_readonly("graph", &graphObjectOf, "The graph of the node.")
        .def_property(
            "position",
            [](const Node& self) {
                const QPointF position = controllerOf(self).position();
                return std::make_pair(position.x(), position.y());
            },
            &setPosition, "The place on the canvas: x and y.")
        .def_property(
            "depth", [](const Node& self) { return controllerOf(self).depth(); },
            [](const Node& self, float depth) {
                requireFinite(depth);
                controllerOf(self).setDepth(depth);
            },
            "The depth on the canvas, where nodes overlap.")
        .def_property_readonly("inputs", &inputsOf, "All inputs.")
        .def_property_readonly("outputs", &outputsOf, "All outputs.")
        .def("input", &findInput, py::arg("identifier"),
             "Returns the input of an identifier. Raises KeyError if there is none.")
        .def("output", &findOutput, py::arg("identifier"),
             "Returns the output of an identifier. Raises KeyError if there is none.")
        .def(
            "remove", &remove, py::kw_only(), py::arg("disconnect") = true,
            "Removes the node, with its connections unless told otherwise. An input or output that "
            "the node shows goes with it.");
}

py::object resourceOf(const FilterNode& self)
{
    const auto& node = controllerAs<const Core::CompFilterNodeController>(self);
    return contentObject(self.world(), node.resource());
}

py::object parameterGraphOf(const FilterNode& self)
{
    const auto* const graph = controllerAs<const Core::CompFilterNodeController>(self).paramGraph();
    return graph == nullptr ? py::object(py::none())
                            : py::cast(ParameterGraph(self.world(), *graph->graph()));
}

py::object inputShownBy(const InputNode& self)
{
    const auto* const input = controllerAs<const Core::CompInputNodeController>(self).input();
    return input == nullptr ? py::object(py::none())
                            : py::cast(Input(self.world(), *input->input()));
}

py::object outputShownBy(const OutputNode& self)
{
    const auto output = controllerAs<const Core::CompOutputNodeController>(self).output();
    return output ? py::cast(Output(self.world(), *output)) : py::object(py::none());
}

void bindImageNodes(py::module_& module)
{
    declared<ImageNode, Node>(module, "ImageNode")
        .def_property_readonly(
            "parameters", [](const ImageNode& self) { return parameterObjects(self); },
            "All parameters, stored or not, in the order of their descriptions.")
        .def(
            "parameter",
            [](const ImageNode& self, const py::str& identifier) {
                return parameterObject(self, identifier);
            },
            py::arg("identifier"),
            "Returns the parameter of an identifier. Raises KeyError if there is none.");
    declared<FilterNode, ImageNode>(module, "FilterNode")
        .def_property_readonly(
            "filter",
            [](const FilterNode& self) {
                const auto& node = controllerAs<const Core::CompFilterNodeController>(self);
                return textOf(node.filter()->filter().get());
            },
            "The name of the filter, such as \"blur\".")
        .def_property_readonly("resource", &resourceOf,
                               "The resource that the filter reads. None for most filters.")
        .def_property_readonly("parameter_graph", &parameterGraphOf,
                               "The graph of an FX-map. None for other filters.");
    declared<InstanceNode, ImageNode>(module, "InstanceNode")
        .def_property_readonly(
            "path",
            [](const InstanceNode& self) {
                const auto& node = controllerAs<const Core::CompInstanceNodeController>(self);
                return textOf(node.instance()->path().value().get());
            },
            "The data path of the graph.")
        .def_property_readonly(
            "reference",
            [](const InstanceNode& self) {
                const auto& node = controllerAs<const Core::CompInstanceNodeController>(self);
                return contentObject(self.world(), node.referencedGraph().get());
            },
            "The graph. None while it cannot be found.");
    declared<InputNode, ImageNode>(module, "InputNode")
        .def_property_readonly("entry", &inputShownBy, "The input. None if it is missing.");
    declared<OutputNode, ImageNode>(module, "OutputNode")
        .def_property_readonly("entry", &outputShownBy, "The output. None if it is missing.");
}

} // namespace

Core::GraphController& graphControllerOf(const Node& node)
{
    return graphOfNode(node.object());
}

Core::NodeController& controllerOf(const Node& node)
{
    const BaseObject& object = node.object();
    Core::NodeController* const found = controllerIn(graphOfNode(object), object);
    if (found == nullptr)
        raise("GoneError", "the node has a kind that cannot be shown");
    return *found;
}

Core::ConnectorController& controllerOf(const InputConnector& connector)
{
    Core::ConnectorController* const found =
        controllerOf(connector.node).inputConnectorByName(connector.identifier);
    if (found == nullptr)
        raise("GoneError", "the node has no such input any more");
    return *found;
}

Core::ConnectorController& controllerOf(const OutputConnector& connector)
{
    const Core::NodeController& node = controllerOf(connector.node);
    Core::ConnectorController* const found = connector.uid == 0
                                                 ? node.outputConnectorByName(connector.identifier)
                                                 : node.outputConnectorByUid(connector.uid);
    if (found == nullptr)
        raise("GoneError", "the node has no such output any more");
    return *found;
}

py::object nodeObject(const WorldPointer& world, const Core::NodeController& node)
{
    const KindRow& kind = kindOf(node);
    return kind.make(Node(world, kind.document(node)));
}

py::object nodeObject(const Node& node)
{
    return kindOf(controllerOf(node)).make(node);
}

py::list nodeObjects(const WorldPointer& world, const Core::GraphController& graph)
{
    py::list nodes;
    for (const Core::NodeController* node : graph.nodes())
        nodes.append(nodeObject(world, *node));
    return nodes;
}

py::object connectorObject(const WorldPointer& world, const Core::ConnectorController& connector)
{
    const Node node(world, documentNode(connector.node()));
    if (typeid(connector) == typeid(Core::InputConnectorController))
        return py::cast(
            inputOf(node, static_cast<const Core::InputConnectorController&>(connector)));
    return py::cast(outputOf(node, static_cast<const Core::OutputConnectorController&>(connector)));
}

void bindNodes(py::module_& module)
{
    bindNode(module);
    bindImageNodes(module);
}

} // namespace Ksx::Python

// Binds graphs of images, connectors, and what all graphs have in common.
#include "data/content/graph.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/filter.h"
#include "data/desc/filtertable.h"
#include "data/desc/valuetype.h"
#include "edits.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/tweakinputcontroller.h"
#include "objects.h"
#include "values.h"

namespace Ksx::Python {

namespace py = pybind11;
namespace Document = Data::Content;

namespace {

// The controller that an edit returned, as the object of Python for its node.
py::object added(const Graph& self, const Core::NodeController* node)
{
    require(node != nullptr, "the node cannot be added");
    return nodeObject(self.world(), *node);
}

py::object addFilter(const Graph& self, const std::string& filter)
{
    const auto* const description =
        Data::Desc::DescriptionTables::instance().filters().find(filter);
    if (description == nullptr)
        throw py::value_error("no filter is called \"" + filter + '"');
    return added(self, controllerOf(self).addAtomicFilter(description->kind));
}

py::object addInstance(const Graph& self, const Graph& shown)
{
    const Orv::Data::DataPointerBox<Document::Graph> box(&shown.as<Document::Graph>());
    return added(self, controllerOf(self).addInstanceNode(box));
}

Core::CompGraphController::BridgeEntry entryOf(const py::str& identifier, const std::string& type,
                                               const py::iterable& usages)
{
    const unsigned number = typeFrom(type);
    if (!Data::Desc::ValueType::isImage(number))
        throw py::value_error("an image is wanted: \"color\", \"grayscale\" or \"image\"");
    return {textFrom(identifier), number, usagesFrom(usages)};
}

py::object addInputNode(const Graph& self, const py::str& identifier, const std::string& type,
                        const py::iterable& usages)
{
    return added(self, controllerOf(self).addInputNode(entryOf(identifier, type, usages)));
}

py::object addOutputNode(const Graph& self, const py::str& identifier, const std::string& type,
                         const py::iterable& usages)
{
    return added(self, controllerOf(self).addOutputNode(entryOf(identifier, type, usages)));
}

Input addInput(const Graph& self, const py::str& identifier, const std::string& type)
{
    const auto* const input =
        controllerOf(self).inputsController()->addTweakInput(typeFrom(type), textFrom(identifier));
    require(input != nullptr,
            "an input of that type cannot be added: use add_input_node() for images");
    return {self.world(), *input->input()};
}

py::object nodeOf(const Graph& self, Core::Uid uid)
{
    const Core::NodeController* const node = controllerOf(self).nodeByUid(uid);
    if (node == nullptr)
        raiseMissing(py::int_(uid));
    return nodeObject(self.world(), *node);
}

template <class Class, class List>
py::list itemsOf(const Graph& self, const List& list)
{
    py::list items;
    for (const auto& item : list)
        items.append(Class(self.world(), item));
    return items;
}

template <class Class, class List>
Class itemOf(const Graph& self, const List& list, const py::str& identifier)
{
    const std::string wanted = textFrom(identifier);
    for (const auto& item : list)
        if (item.identifier().get() == wanted)
            return {self.world(), item};
    raiseMissing(identifier);
}

py::list optionsOf(const Graph& self)
{
    py::list options;
    for (const auto& option : self.as<Document::Graph>().options())
        options.append(py::make_tuple(textOf(option.name().get()), textOf(option.value().get())));
    return options;
}

void bindLists(py::class_<Graph, Content>& graph)
{
    using Type = Document::Graph;
    graph
        .def_property_readonly(
            "nodes",
            [](const Graph& self) { return nodeObjects(self.world(), controllerOf(self)); },
            "All nodes, in the order of the document.")
        .def_property_readonly(
            "inputs",
            [](const Graph& self) { return itemsOf<Input>(self, self.as<Type>().paraminputs()); },
            "All inputs, in the order of the document.")
        .def_property_readonly(
            "outputs",
            [](const Graph& self) { return itemsOf<Output>(self, self.as<Type>().graphOutputs()); },
            "All outputs, in the order of the document.")
        .def_property_readonly(
            "connections",
            [](const Graph& self) { return connectionsOf(self.world(), controllerOf(self)); },
            "All connections, as pairs of the output that feeds and the input that is fed.")
        .def_property_readonly(
            "parameters", [](const Graph& self) { return parameterObjects(self); },
            "The parameters of the graph itself, which nodes can inherit.")
        .def_property_readonly("options", &optionsOf,
                               "The options: pairs of a name and a value that mean nothing here.")
        .def("node", &nodeOf, py::arg("uid"),
             "Returns the node of a uid. Raises KeyError if there is none.")
        .def(
            "input",
            [](const Graph& self, const py::str& identifier) {
                return itemOf<Input>(self, self.as<Type>().paraminputs(), identifier);
            },
            py::arg("identifier"),
            "Returns the first input of an identifier. Raises KeyError if there is none.")
        .def(
            "output",
            [](const Graph& self, const py::str& identifier) {
                return itemOf<Output>(self, self.as<Type>().graphOutputs(), identifier);
            },
            py::arg("identifier"),
            "Returns the first output of an identifier. Raises KeyError if there is none.")
        .def(
            "parameter",
            [](const Graph& self, const py::str& identifier) {
                return parameterObject(self, identifier);
            },
            py::arg("identifier"),
            "Returns the parameter of an identifier. Raises KeyError if there is none.");
}

void bindEdits(py::class_<Graph, Content>& graph)
{
    graph
        .def("add_filter", &addFilter, py::arg("filter"),
             "Adds a node that runs an atomic filter, such as \"blur\".")
        .def(
            "add_instance", &addInstance, py::arg("graph"),
            "Adds a node that shows another graph. The package gets a dependency if that is one of "
            "another package.")
        .def(
            "add_input_node", &addInputNode, py::arg("identifier") = py::str(),
            py::arg("type") = "color", py::arg("usages") = py::tuple(),
            "Adds an input of images, and a node that gives its image. Usages are pairs of a name and "
            "of components, such as (\"diffuse\", \"RGBA\").")
        .def("add_output_node", &addOutputNode, py::arg("identifier") = py::str(),
             py::arg("type") = "color", py::arg("usages") = py::tuple(),
             "Adds an output, and a node that takes its image.")
        .def("add_input", &addInput, py::arg("identifier") = py::str(), py::arg("type") = "float1",
             "Adds an input of values, for functions to read.")
        .def(
            "connect",
            [](const Graph& self, const OutputConnector& output, const InputConnector& input,
               bool replace) { connect(controllerOf(self), output, input, replace); },
            py::arg("output"), py::arg("input"), py::kw_only(), py::arg("replace") = true,
            "Connects two nodes. The former source of the input goes, unless told otherwise.")
        .def(
            "disconnect",
            [](const Graph& self, const OutputConnector& output, const InputConnector& input) {
                disconnect(controllerOf(self), output, input);
            },
            py::arg("output"), py::arg("input"), "Removes the connection of two nodes.");
}

// The name of the class and what is in it.
std::string reprOf(const py::object& self)
{
    const std::string name = "kestrix." + py::type::of(self).attr("__name__").cast<std::string>();
    return '<' + name + ' ' + py::repr(self.attr("identifier")).cast<std::string>() + '>';
}

const char* colorName(Core::ColorKind kind)
{
    switch (kind) {
    case Core::ColorKind::Color:
        return "color";
    case Core::ColorKind::Grayscale:
        return "grayscale";
    case Core::ColorKind::Other:
        break;
    }
    return "other";
}

py::list targetsOf(const WorldPointer& world, const Core::ConnectorController& connector)
{
    py::list targets;
    for (const Core::ConnectorController* target : connector.targets())
        targets.append(connectorObject(world, *target));
    return targets;
}

template <class Class>
void bindConnector(py::class_<Class>& bound)
{
    bound
        .def_property_readonly(
            "identifier", [](const Class& self) { return textOf(self.identifier); },
            "The name by which the node knows the connector.")
        .def_property_readonly(
            "label", [](const Class& self) { return textOf(controllerOf(self).label()); },
            "The text for users.")
        .def_property_readonly(
            "color", [](const Class& self) { return colorName(controllerOf(self).colorKind()); },
            "The kind of image: \"color\", \"grayscale\" or \"other\".")
        .def_property_readonly(
            "node", [](const Class& self) { return nodeObject(self.node); },
            "The node of the connector.")
        .def(
            "__eq__",
            [](const Class& a, const Class& b) {
                return a.node.isSame(b.node) && a.identifier == b.identifier && a.uid == b.uid;
            },
            py::is_operator())
        .def("__hash__",
             [](const Class& self) {
                 return self.node.hash() ^ std::hash<std::string>()(self.identifier);
             })
        .def("__repr__", &reprOf);
}

void bindConnectors(py::module_& module)
{
    auto input = declared<InputConnector>(module, "InputConnector");
    auto output = declared<OutputConnector>(module, "OutputConnector");
    bindConnector(input);
    bindConnector(output);
    input
        .def_property_readonly(
            "sources",
            [](const InputConnector& self) {
                return targetsOf(self.node.world(), controllerOf(self));
            },
            "The outputs that feed the input.")
        .def(
            "connect",
            [](const InputConnector& self, const OutputConnector& source, bool replace) {
                connect(graphControllerOf(self.node), source, self, replace);
            },
            py::arg("source"), py::kw_only(), py::arg("replace") = true,
            "Lets an output feed the input. The former source goes, unless told otherwise.")
        .def(
            "disconnect",
            [](const InputConnector& self, const OutputConnector& source) {
                disconnect(graphControllerOf(self.node), source, self);
            },
            py::arg("source"), "Removes the connection.");
    output
        .def_property_readonly(
            "targets",
            [](const OutputConnector& self) {
                return targetsOf(self.node.world(), controllerOf(self));
            },
            "The inputs that the output feeds.")
        .def_property_readonly(
            "uid", [](const OutputConnector& self) { return self.uid; },
            "The uid of the output. 0 where outputs have none.")
        .def_property_readonly(
            "type",
            [](const OutputConnector& self) {
                const auto& controller =
                    static_cast<const Core::OutputConnectorController&>(controllerOf(self));
                return typeName(controller.type());
            },
            "The type of the value that the output gives.")
        .def(
            "connect",
            [](const OutputConnector& self, const InputConnector& target, bool replace) {
                connect(graphControllerOf(self.node), self, target, replace);
            },
            py::arg("target"), py::kw_only(), py::arg("replace") = true,
            "Feeds an input. Its former source goes, unless told otherwise.")
        .def(
            "disconnect",
            [](const OutputConnector& self, const InputConnector& target) {
                disconnect(graphControllerOf(self.node), self, target);
            },
            py::arg("target"), "Removes the connection.");
}

} // namespace

Core::CompGraphController& controllerOf(const Graph& graph)
{
    return *Core::graphController(
        Orv::Data::DataPointerBox<Document::Graph>(&graph.as<Document::Graph>()));
}

void connect(Core::GraphController& graph, const OutputConnector& output,
             const InputConnector& input, bool replace)
{
    require(graph.connect(controllerOf(output), controllerOf(input), replace),
            "the two cannot be connected");
}

void disconnect(Core::GraphController& graph, const OutputConnector& output,
                const InputConnector& input)
{
    Core::ConnectorController& target = controllerOf(input);
    Core::ConnectorController& source = controllerOf(output);
    require(target.isConnectedTo(source) && graph.disconnect(source, target),
            "the two are not connected");
}

py::list connectionsOf(const WorldPointer& world, const Core::GraphController& graph)
{
    py::list connections;
    for (const Core::NodeController* node : graph.nodes())
        for (std::size_t i = 0; i < node->inputConnectorCount(); ++i)
            for (const Core::ConnectorController* source : node->inputConnector(i)->targets())
                connections.append(
                    py::make_tuple(connectorObject(world, *source),
                                   connectorObject(world, *node->inputConnector(i))));
    return connections;
}

void bindGraphs(py::module_& module)
{
    auto graph = declared<Graph, Content>(module, "Graph");
    bindLists(graph);
    bindEdits(graph);
    bindConnectors(module);
}

} // namespace Ksx::Python

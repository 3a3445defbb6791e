// Binds functions, the graphs that compute values, and the graphs of FX-maps.
#include "data/content/dynamicvalue.h"
#include "data/content/function.h"
#include "data/content/paramnode.h"
#include "data/content/paramsgraph.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/functiontable.h"
#include "edits.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/paramgraphcontroller.h"
#include "ksx/core/paramnodecontroller.h"
#include "objects.h"
#include "values.h"

namespace Ksx::Python {

namespace py = pybind11;
namespace Document = Data::Content;

namespace {

Core::FuncNodeController& functionNode(const FunctionNode& self)
{
    return static_cast<Core::FuncNodeController&>(controllerOf(static_cast<const Node&>(self)));
}

Core::ParamGraphController& controllerOf(const ParameterGraph& graph)
{
    return *Core::graphController(
        Orv::Data::DataPointerBox<Document::ParamsGraph>(&graph.as<Document::ParamsGraph>()));
}

py::object nodeOrNone(const WorldPointer& world, const Core::NodeController* node)
{
    return node == nullptr ? py::object(py::none()) : nodeObject(world, *node);
}

py::object nodeOf(const WorldPointer& world, const Core::GraphController& graph, Core::Uid uid)
{
    const Core::NodeController* const node = graph.nodeByUid(uid);
    if (node == nullptr)
        raiseMissing(py::int_(uid));
    return nodeObject(world, *node);
}

py::object addFunction(const FunctionGraph& self, const std::string& function)
{
    const auto* const found = Data::Desc::DescriptionTables::instance().functions().find(function);
    if (found == nullptr)
        throw py::value_error("no function is called \"" + function + '"');
    const auto* const node = controllerOf(self).addAtomicFunction(found->kind);
    require(node != nullptr, "the node cannot be added");
    return nodeObject(self.world(), *node);
}

void setOutputNode(const FunctionGraph& self, const FunctionNode& node)
{
    Core::FuncGraphController& graph = controllerOf(self);
    Core::FuncNodeController& output = functionNode(node);
    require(output.isOutputNode() || graph.setOutputNode(output),
            "the node cannot be the output of this graph");
}

void replaceSource(const FunctionGraph& self, const FunctionNode& replaced,
                   const FunctionNode& replacement)
{
    const Core::Transaction transaction(QStringLiteral("replace"));
    controllerOf(self).replaceSource(functionNode(replaced), functionNode(replacement));
}

void setValue(const FunctionNode& self, const py::object& value)
{
    Core::FuncNodeController& node = functionNode(self);
    const Data::Desc::Function* const description = node.description();
    if (description == nullptr || !description->data)
        raise("EditError", "the node holds no value");
    require(node.setData(valueFrom(value, description->data->type)),
            "the node takes no such value");
}

py::object bodyOf(const Function& self)
{
    const auto& function = self.as<Document::Function>();
    const auto* const body =
        dynamic_cast<const Document::DynamicValue*>(function.paramValue().get());
    return body == nullptr ? py::object(py::none()) : py::cast(FunctionGraph(self.world(), *body));
}

py::list inputsOf(const Function& self)
{
    py::list inputs;
    for (const auto& input : self.as<Document::Function>().paraminputs())
        inputs.append(
            py::make_tuple(textOf(input.identifier().get()), typeName(input.type().value().get())));
    return inputs;
}

void bindFunctionGraph(py::module_& module)
{
    auto graph = declared<FunctionGraph, Handle>(module, "FunctionGraph");
    bindRepr(
        graph, +[](const FunctionGraph& self) {
            return py::str("of {} nodes").format(controllerOf(self).nodes().size());
        });
    graph
        .def_property_readonly(
            "nodes",
            [](const FunctionGraph& self) { return nodeObjects(self.world(), controllerOf(self)); },
            "All nodes, in the order of the document.")
        .def_property_readonly(
            "connections",
            [](const FunctionGraph& self) {
                return connectionsOf(self.world(), controllerOf(self));
            },
            "All connections, as pairs of the output that feeds and the input that is fed.")
        .def(
            "node",
            [](const FunctionGraph& self, Core::Uid uid) {
                return nodeOf(self.world(), controllerOf(self), uid);
            },
            py::arg("uid"), "Returns the node of a uid. Raises KeyError if there is none.")
        .def_property(
            "output_node",
            [](const FunctionGraph& self) {
                return nodeOrNone(self.world(), controllerOf(self).outputNode());
            },
            &setOutputNode,
            "The node whose value is the value of the graph. None if there is none.")
        .def("add", &addFunction, py::arg("function"),
             "Adds a node that computes a function, such as \"add\" or \"const_float1\".")
        .def(
            "connect",
            [](const FunctionGraph& self, const OutputConnector& output,
               const InputConnector& input,
               bool replace) { connect(controllerOf(self), output, input, replace); },
            py::arg("output"), py::arg("input"), py::kw_only(), py::arg("replace") = true,
            "Connects two nodes. The former source of the input goes, unless told otherwise.")
        .def(
            "disconnect",
            [](const FunctionGraph& self, const OutputConnector& output,
               const InputConnector& input) { disconnect(controllerOf(self), output, input); },
            py::arg("output"), py::arg("input"), "Removes the connection of two nodes.")
        .def("replace_source", &replaceSource, py::arg("replaced"), py::arg("replacement"),
             "Lets a node feed all that another one feeds, by one step.");
    declared<FunctionNode, Node>(module, "FunctionNode")
        .def_property_readonly(
            "function",
            [](const FunctionNode& self) {
                return textOf(self.as<Document::ParamNode>().function().get());
            },
            "The name of the function.")
        .def_property_readonly(
            "type",
            [](const FunctionNode& self) { return typeName(functionNode(self).outputType()); },
            "The type of the value. A number while it is open which of several it is.")
        .def_property(
            "value",
            [](const FunctionNode& self) { return valueOf(functionNode(self).dataValue()); },
            &setValue,
            "The constant of the node, or the name of the input that it reads. None for others.")
        .def_property_readonly(
            "is_output", [](const FunctionNode& self) { return functionNode(self).isOutputNode(); },
            "Whether the value of the node is that of the graph.")
        .def_property_readonly(
            "reference",
            [](const FunctionNode& self) {
                return contentObject(self.world(), functionNode(self).referencedFunction());
            },
            "The function that an instance of one refers to. None for other nodes.");
}

void bindParameterGraph(py::module_& module)
{
    auto graph = declared<ParameterGraph, Handle>(module, "ParameterGraph");
    bindRepr(
        graph, +[](const ParameterGraph& self) {
            return py::str("of {} nodes").format(controllerOf(self).nodes().size());
        });
    graph
        .def_property_readonly(
            "nodes",
            [](const ParameterGraph& self) {
                return nodeObjects(self.world(), controllerOf(self));
            },
            "All nodes, in the order of the document.")
        .def_property_readonly(
            "root_node",
            [](const ParameterGraph& self) {
                return nodeOrNone(self.world(), controllerOf(self).rootNode());
            },
            "The node that the graph begins with. None if there is none.")
        .def(
            "node",
            [](const ParameterGraph& self, Core::Uid uid) {
                return nodeOf(self.world(), controllerOf(self), uid);
            },
            py::arg("uid"), "Returns the node of a uid. Raises KeyError if there is none.");
    declared<ParameterNode, Node>(module, "ParameterNode")
        .def_property_readonly(
            "kind",
            [](const ParameterNode& self) {
                return textOf(self.as<Document::ParamsGraphNode>().type().get());
            },
            "The kind of node.")
        .def_property_readonly(
            "parameters", [](const ParameterNode& self) { return parameterObjects(self); },
            "All parameters, stored or not.")
        .def(
            "parameter",
            [](const ParameterNode& self, const py::str& identifier) {
                return parameterObject(self, identifier);
            },
            py::arg("identifier"),
            "Returns the parameter of an identifier. Raises KeyError if there is none.");
}

} // namespace

Core::FuncGraphController& controllerOf(const FunctionGraph& graph)
{
    return *Core::graphController(
        Orv::Data::DataPointerBox<Document::DynamicValue>(&graph.as<Document::DynamicValue>()));
}

void bindFunctions(py::module_& module)
{
    declared<Function, Content>(module, "Function")
        .def_property_readonly("body", &bodyOf,
                               "The graph that computes the value. None for a "
                               "constant.")
        .def_property_readonly("inputs", &inputsOf,
                               "The inputs: pairs of an identifier and a type.")
        .def_property_readonly(
            "type",
            [](const Function& self) {
                return typeName(self.as<Document::Function>().type().value().get());
            },
            "The type of the value.");
    bindFunctionGraph(module);
    bindParameterGraph(module);
}

} // namespace Ksx::Python

// What the objects of Python refer to, and the functions that bind their classes.
#pragma once

#include "ksx/core/uidsource.h"
#include "world.h"
#include <pybind11/pybind11.h>
#include <string>
#include <utility>
#include <vector>

namespace Ksx::Core {
class CompGraphController;
class ConnectorController;
class FuncGraphController;
class GraphController;
class NodeController;
} // namespace Ksx::Core

namespace Ksx::Data::Desc {
struct Parameter;
} // namespace Ksx::Data::Desc

namespace Ksx::Python {

// Each class of Python has a class of its own here, so that the two find each other.

struct Package : Handle
{
    using Handle::Handle;
};
struct Dependency : Handle
{
    using Handle::Handle;
};

// A graph, function or resource of a package.
struct Content : Handle
{
    using Handle::Handle;
};
struct Graph : Content
{
    using Content::Content;
};
struct Function : Content
{
    using Content::Content;
};
struct Resource : Content
{
    using Content::Content;
};

struct Input : Handle
{
    using Handle::Handle;
};
struct Output : Handle
{
    using Handle::Handle;
};

// A graph of functions, and that of an FX-map.
struct FunctionGraph : Handle
{
    using Handle::Handle;
};
struct ParameterGraph : Handle
{
    using Handle::Handle;
};

// A node of any graph.
struct Node : Handle
{
    using Handle::Handle;
};
// A node of a graph of images. The kinds of images that it works on are those below.
struct ImageNode : Node
{
    explicit ImageNode(const Node& node) : Node(node) {}
};
struct FilterNode : ImageNode
{
    explicit FilterNode(const Node& node) : ImageNode(node) {}
};
struct InstanceNode : ImageNode
{
    explicit InstanceNode(const Node& node) : ImageNode(node) {}
};
struct InputNode : ImageNode
{
    explicit InputNode(const Node& node) : ImageNode(node) {}
};
struct OutputNode : ImageNode
{
    explicit OutputNode(const Node& node) : ImageNode(node) {}
};
struct FunctionNode : Node
{
    explicit FunctionNode(const Node& node) : Node(node) {}
};
struct ParameterNode : Node
{
    explicit ParameterNode(const Node& node) : Node(node) {}
};

// A connector is found by its name. Only an output of a node of images has a uid.
struct Connector
{
    Node node;
    std::string identifier;
    Core::Uid uid = 0;
};
struct InputConnector : Connector
{};
struct OutputConnector : Connector
{};

// A parameter of a graph, of a node of images, or of a node of an FX-map. A gradient describes some
// of its parameters twice, once for each color mode, so the place counts as well.
struct Parameter
{
    Handle owner;
    std::string identifier;
    std::size_t place = 0; // among the parameters of the owner, when it was found
};

// The controllers. Each raises GoneError where there is none.
Core::CompGraphController& controllerOf(const Graph& graph);
Core::FuncGraphController& controllerOf(const FunctionGraph& graph);
Core::NodeController& controllerOf(const Node& node);
Core::GraphController& graphControllerOf(const Node& node);
Core::ConnectorController& controllerOf(const InputConnector& connector);
Core::ConnectorController& controllerOf(const OutputConnector& connector);

// The objects of Python for what controllers show.
pybind11::object nodeObject(const WorldPointer& world, const Core::NodeController& node);
pybind11::object nodeObject(const Node& node);
pybind11::list nodeObjects(const WorldPointer& world, const Core::GraphController& graph);
pybind11::object connectorObject(const WorldPointer& world,
                                 const Core::ConnectorController& connector);
pybind11::list parameterObjects(const Handle& owner);
Parameter parameterObject(const Handle& owner, const pybind11::str& identifier);
const Data::Desc::Parameter& descriptionOf(const Parameter& parameter);
// None for null.
pybind11::object contentObject(const WorldPointer& world, const Orv::Data::BaseObject* object);

// The edits that all graphs have in common. Each raises EditError if it was refused.
void connect(Core::GraphController& graph, const OutputConnector& output,
             const InputConnector& input, bool replace);
void disconnect(Core::GraphController& graph, const OutputConnector& output,
                const InputConnector& input);
pybind11::list connectionsOf(const WorldPointer& world, const Core::GraphController& graph);

// A block for `with`, whose edits are one step of that name.
pybind11::object editBlock(const WorldPointer& world, const pybind11::str& name);

// Makes a class of the module. Users cannot make objects of it.
template <class Class, class... Bases>
pybind11::class_<Class, Bases...> makeClass(pybind11::module_& module, const char* name,
                                            const char* doc)
{
    pybind11::class_<Class, Bases...> made(module, name, doc);
    made.attr("__module__") = "kestrix";
    // Nor by __new__(), whose object would be nothing of a document.
    reinterpret_cast<PyTypeObject*>(made.ptr())->tp_new = nullptr;
    return made;
}

// Returns a class that declareClasses() has made.
template <class Class, class... Bases>
pybind11::class_<Class, Bases...> declared(const pybind11::module_& module, const char* name)
{
    return pybind11::reinterpret_borrow<pybind11::class_<Class, Bases...>>(module.attr(name));
}

// Binds __repr__(): the name of the class and a text, which is asked for a valid object alone.
template <class Bound>
void bindRepr(Bound& bound, pybind11::str (*text)(const typename Bound::type&))
{
    using Class = typename Bound::type;
    bound.def("__repr__", [text](const pybind11::object& self) {
        const auto& object = self.cast<const Class&>();
        const char* const fault = object.fault();
        return pybind11::str("<kestrix.{}{}{}>")
            .format(pybind11::type::of(self).attr("__name__"), fault == nullptr ? " " : ", ",
                    fault == nullptr ? text(object) : pybind11::str(fault));
    });
}

// Makes all classes of objects of packages. The texts of functions can name each of them then.
void declareClasses(pybind11::module_& module);
// Each binds the classes of one source.
void bindPackages(pybind11::module_& module);
void bindGraphs(pybind11::module_& module);
void bindNodes(pybind11::module_& module);
void bindInterfaces(pybind11::module_& module);
void bindParameters(pybind11::module_& module);
void bindFunctions(pybind11::module_& module);
void bindResources(pybind11::module_& module);
void bindSessions(pybind11::module_& module);

} // namespace Ksx::Python

// Binds parameters of graphs and nodes.
#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/desc/parameter.h"
#include "edits.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compnodecontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/paramnodecontroller.h"
#include "objects.h"
#include "values.h"
#include <array>

namespace Ksx::Python {

namespace py = pybind11;
namespace Document = Data::Content;
using Core::InheritanceMethod;

namespace {

struct MethodRow
{
    const char* name;
    InheritanceMethod method;
};

constexpr MethodRow Methods[] = {
    {"absolute", InheritanceMethod::Absolute},
    {"input", InheritanceMethod::RelativeToInput},
    {"parent", InheritanceMethod::RelativeToParent},
};

// The parameters of a graph, a node of images, or a node of an FX-map. Null where there are none.
Core::ParametersController* parametersOf(const Handle& owner)
{
    const Orv::Data::BaseObject& object = owner.object();
    if (dynamic_cast<const Document::Graph*>(&object) != nullptr)
        return &controllerOf(Graph(owner.world(), object)).parametersController();
    Core::NodeController& node = controllerOf(Node(owner.world(), object));
    if (auto* const image = dynamic_cast<Core::CompNodeController*>(&node))
        return image->parametersController();
    return static_cast<Core::ParamNodeController&>(node).parametersController();
}

Core::ParameterController& controllerOf(const Parameter& self)
{
    Core::ParametersController* const parameters = parametersOf(self.owner);
    if (parameters != nullptr && self.place < parameters->count() &&
        parameters->at(self.place).identifier() == self.identifier)
        return parameters->at(self.place);
    Core::ParameterController* const found =
        parameters == nullptr ? nullptr : parameters->parameter(self.identifier);
    if (found == nullptr)
        raise("GoneError", "there is no such parameter any more");
    return *found;
}

std::string methodName(InheritanceMethod method)
{
    for (const MethodRow& row : Methods)
        if (row.method == method)
            return row.name;
    return std::to_string(static_cast<unsigned>(method));
}

InheritanceMethod methodFrom(const std::string& name)
{
    for (const MethodRow& row : Methods)
        if (row.name == name)
            return row.method;
    throw py::value_error("a parameter is relative to nothing called \"" + name +
                          "\": use \"absolute\", \"input\" or \"parent\"");
}

void setValue(const Parameter& self, const py::object& value)
{
    Core::ParameterController& parameter = controllerOf(self);
    if (parameter.modifier() == nullptr)
        raise("EditError", "the parameter has no value that can be edited");
    const boost::any wanted = parameterValueFrom(value, parameter.description());
    const bool isThere = parameter.setValue(wanted) || parameter.modifier()->isValue(wanted);
    require(isThere, "the parameter takes no such value");
}

void setRelativeTo(const Parameter& self, const std::string& name)
{
    Core::ParameterController& parameter = controllerOf(self);
    const InheritanceMethod method = methodFrom(name);
    require(parameter.setRelativeTo(method) || parameter.relativeTo() == method,
            "the parameter cannot be relative to anything");
}

void linkTo(const Parameter& self, const Input& input)
{
    Core::ParameterController& parameter = controllerOf(self);
    const auto& read = input.as<Document::ParamInput>();
    parameter.linkToInput({read.identifier().get(), read.type().value().get()});
    require(parameter.isDynamic(), "functions cannot read an input of that type");
}

py::object functionOf(const Parameter& self)
{
    const auto* const value = controllerOf(self).computedValue();
    return value == nullptr ? py::object(py::none())
                            : py::cast(FunctionGraph(self.owner.world(), *value));
}

py::object makeDynamic(const Parameter& self)
{
    Core::ParameterController& parameter = controllerOf(self);
    require(parameter.isDynamic() || parameter.makeDynamic(),
            "functions have no values of the type of the parameter");
    return functionOf(self);
}

py::dict choicesOf(const Parameter& self)
{
    py::dict choices;
    for (const Data::Desc::ValueEntry& entry : controllerOf(self).description().entries)
        choices[textOf(entry.identifier)] = valueOf(entry.value);
    return choices;
}

} // namespace

py::list parameterObjects(const Handle& owner)
{
    py::list parameters;
    if (Core::ParametersController* const found = parametersOf(owner))
        for (std::size_t i = 0; i < found->count(); ++i)
            parameters.append(Parameter{owner, found->at(i).identifier(), i});
    return parameters;
}

const Data::Desc::Parameter& descriptionOf(const Parameter& parameter)
{
    return controllerOf(parameter).description();
}

Parameter parameterObject(const Handle& owner, const py::str& identifier)
{
    const std::string wanted = textFrom(identifier);
    Core::ParametersController* const parameters = parametersOf(owner);
    const std::size_t count = parameters == nullptr ? 0 : parameters->count();
    for (std::size_t i = 0; i < count; ++i)
        if (parameters->at(i).identifier() == wanted)
            return {owner, wanted, i};
    raiseMissing(identifier);
}

void bindParameters(py::module_& module)
{
    declared<Parameter>(module, "Parameter")
        .def_property_readonly(
            "identifier", [](const Parameter& self) { return textOf(self.identifier); },
            "The name of the parameter, such as \"outputsize\".")
        .def_property_readonly(
            "type",
            [](const Parameter& self) { return typeName(controllerOf(self).description().type); },
            "The type: \"float1\", for one.")
        .def_property(
            "value", [](const Parameter& self) { return valueOf(controllerOf(self).value()); },
            &setValue,
            "The value that is stored, or the default; a written one replaces a function. The name of "
            "a choice may be written for its value.")
        .def_property_readonly("choices", &choicesOf,
                               "The values that are offered, by their names. Empty if any will do.")
        .def_property(
            "relative_to",
            [](const Parameter& self) { return methodName(controllerOf(self).relativeTo()); },
            &setRelativeTo,
            "What the value changes: \"input\", \"parent\", or \"absolute\" for neither.")
        .def_property_readonly(
            "is_stored",
            [](const Parameter& self) { return controllerOf(self).stored() != nullptr; },
            "Whether the document stores the parameter. It has its default if not.")
        .def_property_readonly(
            "is_dynamic", [](const Parameter& self) { return controllerOf(self).isDynamic(); },
            "Whether a function computes the value.")
        .def_property_readonly("function", &functionOf,
                               "The graph that computes the value. None for a plain value.")
        .def(
            "make_dynamic", &makeDynamic,
            "Makes a function compute the value, which begins as a constant, and returns its graph.")
        .def("link_to", &linkTo, py::arg("input"),
             "Makes the parameter read an input of its graph.")
        .def(
            "__eq__",
            [](const Parameter& a, const Parameter& b) {
                return a.owner.isSame(b.owner) && a.identifier == b.identifier &&
                       a.place == b.place;
            },
            py::is_operator())
        .def("__hash__",
             [](const Parameter& self) {
                 return self.owner.hash() ^ std::hash<std::string>()(self.identifier);
             })
        .def("__repr__", [](const Parameter& self) {
            return "<kestrix.Parameter " + py::repr(textOf(self.identifier)).cast<std::string>() +
                   '>';
        });
}

} // namespace Ksx::Python

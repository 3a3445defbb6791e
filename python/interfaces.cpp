// Binds inputs and outputs of graphs.
#include "data/content/graph.h"
#include "data/desc/valuetype.h"
#include "edits.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/renaming.h"
#include "ksx/core/rootoutputcontroller.h"
#include "ksx/core/tweakinputcontroller.h"
#include "objects.h"
#include "values.h"
#include <pybind11/stl.h>

namespace Ksx::Python {

namespace py = pybind11;
namespace Document = Data::Content;

namespace {

const Document::ParamInput& document(const Input& self)
{
    return self.as<Document::ParamInput>();
}

const Document::GraphOutput& document(const Output& self)
{
    return self.as<Document::GraphOutput>();
}

template <class Item>
Graph graphOf(const Item& self)
{
    return {self.world(), *self.object().getParent()->getParent()};
}

bool isImage(const Input& self)
{
    return Data::Desc::ValueType::isImage(document(self).type().value().get());
}

// A property that is a text of the document.
template <class Item, class Attribute>
void bindText(py::class_<Item, Handle>& bound, const char* name, Attribute attribute,
              const char* doc)
{
    bound.def_property(
        name, [attribute](const Item& self) { return textOf(attribute(document(self)).get()); },
        [attribute, name](const Item& self, const py::str& text) {
            write(attribute(document(self)), textFrom(text), name);
        },
        doc);
}

// Reading and writing a default wants no more than a controller of this input.

py::object defaultOf(const Input& self)
{
    return valueOf(Core::InputController::make(document(self))->defaultValue());
}

void setDefault(const Input& self, const py::object& value)
{
    const Document::ParamInput& input = document(self);
    require(Core::InputController::make(input)->setDefaultValue(
                valueFrom(value, input.type().value().get())),
            "the input takes no such default");
}

void rename(const Input& self, const py::str& identifier)
{
    require(Core::renameInput(*Core::InputController::make(document(self)), textFrom(identifier)),
            "nothing of the identifier is legal");
}

py::list usersOf(const Input& self)
{
    const Graph graph = graphOf(self);
    py::list users;
    for (const Core::FuncNodeController* node :
         Core::collectInputUsers(graph.as<Document::Graph>(), document(self).identifier().get()))
        users.append(nodeObject(self.world(), *node));
    return users;
}

Core::InputsController& inputsOf(const Input& self)
{
    return *controllerOf(graphOf(self)).inputsController();
}

// The controller of an input in the list of its graph. Inputs of one uid are told apart by their
// objects.
Core::InputController& controllerOf(const Input& self, const Core::InputsController& inputs)
{
    const Document::ParamInput& input = document(self);
    Core::InputController* const found = inputs.inputByUid(input.uid().get());
    if (found != nullptr && found->input() == &input)
        return *found;
    for (Core::InputController* candidate : inputs.inputs())
        if (candidate->input() == &input)
            return *candidate;
    raise("GoneError", "the graph has no such input any more");
}

void freeze(const Input& self, const py::object& value)
{
    Core::InputsController& inputs = inputsOf(self);
    Core::InputController& input = controllerOf(self, inputs);
    const boost::any constant =
        value.is_none() ? input.defaultValue() : valueFrom(value, input.type());
    const Core::Transaction transaction(QStringLiteral("freeze"));
    require(Core::switchToConstant(inputs, input, constant), "an input of images cannot be frozen");
}

Core::TweakInputController& tweakOf(const Input& self)
{
    auto* const input =
        dynamic_cast<Core::TweakInputController*>(&controllerOf(self, inputsOf(self)));
    if (input == nullptr)
        raise("EditError", "an input of images can look like no other");
    return *input;
}

void lookLikeInput(const Input& self, const Input& other)
{
    require(tweakOf(self).initFromInput(document(other)), "the input cannot be changed");
}

void lookLikeParameter(const Input& self, const Parameter& other)
{
    require(tweakOf(self).initFromDescription(descriptionOf(other)), "the input cannot be changed");
}

void remove(const Input& self)
{
    Core::InputsController& inputs = inputsOf(self);
    require(inputs.removeInput(controllerOf(self, inputs)), "the input cannot be removed");
}

// The limits that the widget of an input gives. None for a limit that it does not.
py::object limitOf(const Input& self, const char* name)
{
    for (const auto& option : document(self).defaultWidget().options())
        if (option.name().get() == name)
            return textOf(option.value().get());
    return py::none();
}

void bindInput(py::module_& module)
{
    auto input = declared<Input, Handle>(module, "Input");
    using Type = Document::ParamInput;
    input.def_property_readonly("graph", &graphOf<Input>, "The graph of the input.")
        .def_property_readonly(
            "uid", [](const Input& self) { return document(self).uid().get(); },
            "The uid of the input.")
        .def_property(
            "identifier",
            [](const Input& self) { return textOf(document(self).identifier().get()); }, &rename,
            "The name by which functions and instances know the input. A new one is brought into "
            "legal form and gets a number if it is taken. Functions and instances follow.")
        .def_property_readonly(
            "type", [](const Input& self) { return typeName(document(self).type().value().get()); },
            "The type: \"float1\" or \"color\", for two.")
        .def_property_readonly("is_image", &isImage, "Whether the input takes an image.")
        .def_property("default", &defaultOf, &setDefault,
                      "The value that counts where a user sets none. A written one is brought into "
                      "the range of the widget. None for an image.")
        .def_property_readonly(
            "minimum", [](const Input& self) { return limitOf(self, "min"); },
            "The lower end of the range, as its text in the document. None without one.")
        .def_property_readonly(
            "maximum", [](const Input& self) { return limitOf(self, "max"); },
            "The upper end of the range, as its text in the document. None without one.")
        .def_property_readonly("users", &usersOf, "The function nodes that read the input.")
        .def(
            "freeze", &freeze, py::arg("value") = py::none(),
            "Removes the input, and lets all that read it read a constant. Without a value that is "
            "the default.")
        .def("look_like", &lookLikeInput, py::arg("other"),
             "Takes over the texts, type, default and widget of another input.")
        .def(
            "look_like", &lookLikeParameter, py::arg("other"),
            "Takes over the texts, type, default and widget of a parameter that it is going to drive.")
        .def("remove", &remove,
             "Removes the input. Functions and nodes that read it are left as they are.");
    bindRepr(
        input, +[](const Input& self) {
            const Type& shown = document(self);
            return py::str("{!r}: {}")
                .format(textOf(shown.identifier().get()), typeName(shown.type().value().get()));
        });
    bindText(
        input, "label", [](const Type& of) -> auto& { return of.attributes().label(); },
        "The text for users.");
    bindText(
        input, "description", [](const Type& of) -> auto& { return of.attributes().description(); },
        "The longer text for users.");
    bindText(
        input, "group", [](const Type& of) -> auto& { return of.group(); },
        "The group under which the input is shown.");
}

Core::RootOutputController& rootOutputOf(const Output& self)
{
    Core::RootOutputController* const found =
        controllerOf(graphOf(self)).rootOutput(document(self).uid().get());
    if (found == nullptr)
        raise("EditError", "the output has no root output");
    return *found;
}

py::object nodeOf(const Output& self)
{
    const Core::Uid uid = document(self).uid().get();
    for (const Core::NodeController* node : controllerOf(graphOf(self)).nodes()) {
        const auto* const output = dynamic_cast<const Core::CompOutputNodeController*>(node);
        if (output != nullptr && output->entry() == uid)
            return nodeObject(self.world(), *node);
    }
    return py::none();
}

void bindOutput(py::module_& module)
{
    auto output = declared<Output, Handle>(module, "Output");
    using Type = Document::GraphOutput;
    output.def_property_readonly("graph", &graphOf<Output>, "The graph of the output.")
        .def_property_readonly(
            "uid", [](const Output& self) { return document(self).uid().get(); },
            "The uid of the output.")
        .def_property(
            "identifier",
            [](const Output& self) { return textOf(document(self).identifier().get()); },
            [](const Output& self, const py::str& identifier) {
                const Core::OutputController controller(document(self));
                require(Core::renameOutput(controller, textFrom(identifier)),
                        "nothing of the identifier is legal");
            },
            "The name by which instances know the output. A new one is brought into legal form and "
            "gets a number if it is taken. Instances follow.")
        .def_property_readonly(
            "usages",
            [](const Output& self) {
                return usagesOf(Core::OutputController(document(self)).usages());
            },
            "What other programs match the output by: pairs of a name and of components.")
        .def_property_readonly("node", &nodeOf, "The node that shows the output. None without one.")
        .def_property(
            "format", [](const Output& self) { return rootOutputOf(self).format(); },
            [](const Output& self, unsigned format) {
                require(rootOutputOf(self).setFormat(format), "the output has no root output");
            },
            "The number of the pixel format.")
        .def_property(
            "mipmaps", [](const Output& self) { return rootOutputOf(self).mipmaps(); },
            [](const Output& self, unsigned mipmaps) {
                require(rootOutputOf(self).setMipmaps(mipmaps), "the output has no root output");
            },
            "The number of mipmap levels.");
    bindRepr(
        output, +[](const Output& self) {
            return py::str("{!r}").format(textOf(document(self).identifier().get()));
        });
    bindText(
        output, "label", [](const Type& of) -> auto& { return of.attributes().label(); },
        "The text for users.");
    bindText(
        output, "description",
        [](const Type& of) -> auto& { return of.attributes().description(); },
        "The longer text for users.");
}

} // namespace

void bindInterfaces(py::module_& module)
{
    bindInput(module);
    bindOutput(module);
}

} // namespace Ksx::Python

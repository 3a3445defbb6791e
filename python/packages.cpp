// Binds packages, their dependencies, and what their content has in common.
#include "core/undostack.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/filename.h"
#include "data/latin1.h"
#include "edits.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/datapath.h"
#include "ksx/core/filereferences.h"
#include "ksx/core/objecturl.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/packageslistmanager.h"
#include "ksx/core/renaming.h"
#include "ksx/core/resourcelistener.h"
#include "objects.h"
#include "values.h"
#include <QFileInfo>
#include <pybind11/stl.h>
#include <unordered_set>

namespace Ksx::Python {

namespace py = pybind11;
namespace Document = Data::Content;
using Orv::Data::Attribute;
using Orv::Data::BaseObject;
using Orv::Data::Text;

namespace {

constexpr unsigned BitmapResource = 3;

template <class DocumentClass, class Class>
py::list contentOfKind(const Package& self)
{
    py::list objects;
    Core::visitContent(self.as<Document::Package>(),
                       [&](const Document::ContentObjectBase& object) {
                           if (dynamic_cast<const DocumentClass*>(&object) != nullptr)
                               objects.append(Class(self.world(), object));
                       });
    return objects;
}

template <class DocumentClass, class Class>
Class findContent(const Package& self, const py::str& identifier)
{
    const std::string wanted = textFrom(identifier);
    const DocumentClass* found = nullptr;
    Core::visitContent(
        self.as<Document::Package>(), [&](const Document::ContentObjectBase& object) {
            const auto* const candidate = dynamic_cast<const DocumentClass*>(&object);
            if (found == nullptr && candidate != nullptr && candidate->identifier().get() == wanted)
                found = candidate;
        });
    if (found == nullptr)
        raiseMissing(identifier);
    return Class(self.world(), *found);
}

Core::Session::PackageBox boxOf(const Package& self)
{
    return Core::Session::PackageBox(&self.as<Document::Package>());
}

py::object pathOrNone(const QString& path)
{
    return path.isEmpty() ? py::object(py::none()) : pathOf(path);
}

Graph addGraph(const Package& self, const py::str& identifier)
{
    const auto graph =
        self.session().controller(boxOf(self))->addGraphObject(wideTextFrom(identifier));
    require(bool(graph), "the graph cannot be added");
    return {self.world(), *graph};
}

Resource addResource(const Package& self, const py::object& path, const py::str& identifier)
{
    const QFileInfo file(QFileInfo(pathFrom(path)).absoluteFilePath());
    const QString name = wideTextFrom(identifier);
    const auto* const resource =
        self.session()
            .controller(boxOf(self))
            ->addLinkedResource(BitmapResource, file.suffix().toUpper(),
                                name.isEmpty() ? file.baseName() : name, file.filePath());
    require(resource != nullptr, "the resource cannot be added");
    return {self.world(), *resource->resource()};
}

void save(const Package& self, const py::object& path)
{
    Core::Session& session = self.session();
    const auto package = boxOf(self);
    const QString target = path.is_none() ? session.path(package) : pathFrom(path);
    if (target.isEmpty())
        throw py::value_error("the package has no file yet: name one");
    Core::Session::Saving saving;
    {
        const py::gil_scoped_release release;
        saving = session.save(package, target);
    }
    if (!saving.isSaved)
        raise("SaveError", pathOf(target), messageOf(saving.reason), pathOrNone(saving.keptCopy));
}

// Packages that are closed cannot be brought back: the steps that need them go too.
void close(const Package& self)
{
    Core::Session& session = self.session();
    const auto package = boxOf(self);
    session.steps().setRecording(false);
    const bool isClosed = session.close(package);
    session.steps().setRecording(true);
    require(isClosed, "the package cannot be closed");
    session.steps().clear();
}

py::list dependenciesOf(const Package& self)
{
    py::list dependencies;
    for (const Document::Dependency& dependency : self.as<Document::Package>().dependencies())
        dependencies.append(Dependency(self.world(), dependency));
    return dependencies;
}

bool isOwn(const Document::Dependency& dependency)
{
    return dependency.filename().get() == Core::Himself;
}

py::list unusedDependencies(const Package& self)
{
    const auto& package = self.as<Document::Package>();
    std::unordered_set<Core::Uid> used;
    Core::visitTexts(package, [&](const Core::TextAttribute& text) {
        if (Core::DataPath::isDataPath(text.get()))
            if (const auto uid = Core::DataPath::dependencyOf(text.get()))
                used.insert(*uid);
    });
    py::list unused;
    for (const Document::Dependency& dependency : package.dependencies())
        if (!isOwn(dependency) && used.count(dependency.uid().get()) == 0)
            unused.append(Dependency(self.world(), dependency));
    return unused;
}

const Document::Package& packageOf(const Dependency& self)
{
    return static_cast<const Document::Package&>(*self.object().getParent()->getParent());
}

py::object openPackageOf(const Dependency& self)
{
    if (isOwn(self.as<Document::Dependency>()))
        return py::cast(Package(self.world(), packageOf(self)));
    const Core::PackageEntry* const entry =
        self.session().manager().table().findByUid(self.as<Document::Dependency>().uid().get());
    return entry == nullptr || !entry->package ? py::object(py::none())
                                               : py::cast(Package(self.world(), *entry->package));
}

void removeDependency(const Dependency& self)
{
    auto& dependency = self.as<Document::Dependency>();
    // The manager changes the package by a command.
    auto& package = const_cast<Document::Package&>(packageOf(self));
    require(self.session().manager().removeDependency(package, dependency),
            "the dependency cannot be removed");
}

const Document::ContentInterface& namesOf(const Content& self)
{
    return dynamic_cast<const Document::ContentInterface&>(self.object());
}

const Document::Package& packageOf(const Content& self)
{
    const BaseObject* owner = &self.object();
    while (dynamic_cast<const Document::Package*>(owner) == nullptr)
        owner = owner->getParent();
    return static_cast<const Document::Package&>(*owner);
}

void rename(const Content& self, const py::str& identifier)
{
    const auto& object = static_cast<const Document::ContentObjectBase&>(self.object());
    require(Core::renameContent(object, textFrom(identifier)),
            "nothing of the identifier is legal");
}

// A property that is a text of the document.
template <class DocumentClass, class Class>
void bindText(py::class_<Class, Handle>& bound, const char* name,
              const Attribute<Text>& (*attribute)(const DocumentClass&), const char* doc)
{
    bound.def_property(
        name,
        [attribute](const Class& self) {
            return textOf(attribute(self.template as<DocumentClass>()).get());
        },
        [attribute, name](const Class& self, const py::str& text) {
            write(attribute(self.template as<DocumentClass>()), textFrom(text), name);
        },
        doc);
}

void bindPackageTexts(py::class_<Package, Handle>& package)
{
    using Type = Document::Package;
    bindText<Type>(
        package, "author", +[](const Type& of) -> const Attribute<Text>& { return of.author(); },
        "The author of the package.");
    bindText<Type>(
        package, "description", +[](const Type& of) -> const Attribute<Text>& { return of.desc(); },
        "The description of the package.");
    package
        .def_property_readonly(
            "identifier",
            [](const Package& self) { return textOf(self.as<Type>().identifier().get()); },
            "The identifier of the package.")
        .def_property_readonly(
            "format_version",
            [](const Package& self) { return textOf(self.as<Type>().formatVersion().get()); },
            "The version of the format. Opening brings it to the current one.")
        .def_property_readonly(
            "updater_version",
            [](const Package& self) { return textOf(self.as<Type>().updaterVersion().get()); },
            "The version of the last updater that was applied.")
        .def_property_readonly(
            "file_uid", [](const Package& self) { return textOf(self.as<Type>().fileUID().get()); },
            "The uid of the file.");
}

py::str shownText(const Package& self)
{
    const py::str identifier = textOf(self.as<Document::Package>().identifier().get());
    const QString path = self.session().path(boxOf(self));
    return path.isEmpty() ? py::str("{!r}").format(identifier)
                          : py::str("{!r} of {!r}").format(identifier, py::str(pathOf(path)));
}

py::str shownText(const Dependency& self)
{
    const auto& dependency = self.as<Document::Dependency>();
    return isOwn(dependency) ? py::str("on itself")
                             : py::str("on {!r}").format(
                                   py::str(pathOf(Orv::fromBytes(dependency.filename().get()))));
}

py::str shownText(const Content& self)
{
    return py::str("{!r}").format(textOf(namesOf(self).identifierAttribute().get()));
}

void bindPackage(py::module_& module)
{
    auto package = declared<Package, Handle>(module, "Package");
    bindPackageTexts(package);
    package
        .def_property_readonly(
            "path",
            [](const Package& self) { return pathOrNone(self.session().path(boxOf(self))); },
            "The file of the package. None for a new package.")
        .def_property_readonly("graphs", &contentOfKind<Document::Graph, Graph>,
                               "All graphs, in the order of the document, those in groups too.")
        .def_property_readonly("functions", &contentOfKind<Document::Function, Function>,
                               "All functions, in the same order.")
        .def_property_readonly("resources", &contentOfKind<Document::Resource, Resource>,
                               "All resources, in the same order.")
        .def_property_readonly("dependencies", &dependenciesOf,
                               "The packages that this one refers to, itself among them.")
        .def("graph", &findContent<Document::Graph, Graph>, py::arg("identifier"),
             "Returns the first graph of an identifier. Raises KeyError if there is none.")
        .def("function", &findContent<Document::Function, Function>, py::arg("identifier"),
             "Returns the first function of an identifier. Raises KeyError if there is none.")
        .def("resource", &findContent<Document::Resource, Resource>, py::arg("identifier"),
             "Returns the first resource of an identifier. Raises KeyError if there is none.")
        .def(
            "find",
            [](const Package& self, const py::str& url) {
                return contentObject(
                    self.world(),
                    Core::resolveObjectUrl(textFrom(url), self.as<Document::Package>()));
            },
            py::arg("url"),
            "Returns the graph, function, resource or package that a data path in this package leads "
            "to, such as \"pkg://wood?dependency=7\". Returns None if there is none.")
        .def("unused_dependencies", &unusedDependencies,
             "Returns the dependencies that no text of the package names.")
        .def("add_graph", &addGraph, py::arg("identifier") = py::str(),
             "Adds an empty graph. A taken identifier gets a number.")
        .def("add_resource", &addResource, py::arg("path"), py::arg("identifier") = py::str(),
             "Adds a bitmap that is linked to. Without an identifier it is called as the file.")
        .def(
            "save", &save, py::arg("path") = py::none(),
            "Writes the package to a file, which it replaces as a whole. Without a path that is the "
            "file that it was opened from. Raises SaveError if the file cannot be written, if it "
            "belongs to another open package, or if this package refers to it.")
        .def("close", &close, "Closes the package, and forgets all steps of the session.")
        .def(
            "edit",
            [](const Package& self, const py::str& name) { return editBlock(self.world(), name); },
            py::arg("name"), "Returns a block for `with`. See Session.edit().");
    bindRepr(package, &shownText);
}

void bindDependency(py::module_& module)
{
    auto bound = declared<Dependency, Handle>(module, "Dependency");
    bindRepr(bound, &shownText);
    bound
        .def_property_readonly(
            "path",
            [](const Dependency& self) {
                const auto& dependency = self.as<Document::Dependency>();
                return isOwn(dependency) ? py::object(py::none())
                                         : pathOf(Orv::fromBytes(dependency.filename().get()));
            },
            "The file. None for the package itself.")
        .def_property_readonly(
            "uid",
            [](const Dependency& self) { return self.as<Document::Dependency>().uid().get(); },
            "The number by which data paths name the dependency.")
        .def_property_readonly(
            "is_own", [](const Dependency& self) { return isOwn(self.as<Document::Dependency>()); },
            "Whether the package names itself.")
        .def_property_readonly("package", &openPackageOf, "The package. None while it is not open.")
        .def("remove", &removeDependency,
             "Removes the dependency. Data paths are left as they are.");
}

void bindContent(py::module_& module)
{
    auto bound = declared<Content, Handle>(module, "Content");
    bindRepr(bound, &shownText);
    bound
        .def_property(
            "identifier",
            [](const Content& self) { return textOf(namesOf(self).identifierAttribute().get()); },
            &rename,
            "The identifier. A new one is brought into legal form and gets a number if it is taken. "
            "Data paths to the object follow, in all open packages.")
        .def_property_readonly(
            "uid", [](const Content& self) { return namesOf(self).uidAttribute().get(); },
            "The uid of the object.")
        .def_property_readonly(
            "url", [](const Content& self) { return textOf(Core::objectUrl(self.object())); },
            "The data path of the object, as other packages name it.")
        .def_property_readonly(
            "package", [](const Content& self) { return Package(self.world(), packageOf(self)); },
            "The package of the object.");
}

} // namespace

py::object contentObject(const WorldPointer& world, const BaseObject* object)
{
    if (const auto* graph = dynamic_cast<const Document::Graph*>(object))
        return py::cast(Graph(world, *graph));
    if (const auto* function = dynamic_cast<const Document::Function*>(object))
        return py::cast(Function(world, *function));
    if (const auto* resource = dynamic_cast<const Document::Resource*>(object))
        return py::cast(Resource(world, *resource));
    if (const auto* package = dynamic_cast<const Document::Package*>(object))
        return py::cast(Package(world, *package));
    return py::none();
}

void bindPackages(py::module_& module)
{
    auto handle = declared<Handle>(module, "Object");
    handle
        .def(
            "__eq__", [](const Handle& a, const Handle& b) { return a.isSame(b); },
            py::is_operator())
        .def("__hash__", &Handle::hash)
        .def_property_readonly("is_valid", &Handle::isValid,
                               "Whether the object is part of an open package.");
    bindPackage(module);
    bindDependency(module);
    bindContent(module);
}

} // namespace Ksx::Python

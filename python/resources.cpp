// Binds resources.
#include "data/content/graph.h"
#include "data/content/resource.h"
#include "edits.h"
#include "ksx/core/resourcelistener.h"
#include "objects.h"
#include "values.h"
#include <QFileInfo>

namespace Ksx::Python {

namespace py = pybind11;
namespace Document = Data::Content;

namespace {

Core::ResourceListener& listenerOf(const Resource& self)
{
    return Core::ResourceListener::of(self.as<Document::Resource>());
}

void linkTo(const Resource& self, const py::object& path)
{
    const QFileInfo file(QFileInfo(pathFrom(path)).absoluteFilePath());
    require(listenerOf(self).setFile(file.filePath(), file.suffix().toUpper()),
            "the resource is kept inside the package");
}

[[noreturn]] void raiseUnreadable(const Resource& self)
{
    const bool isInside = !self.as<Document::Resource>().source().isEmpty();
    const py::object failure =
        py::module_::import("kestrix.errors")
            .attr("Failure")(pathOf(listenerOf(self).filePath()),
                             isInside ? "it is kept inside the package" : "the file cannot be read",
                             true);
    raise("OpenError", py::make_tuple(failure));
}

py::bytes read(const Resource& self)
{
    const auto data = listenerOf(self).data();
    if (!data)
        raiseUnreadable(self);
    return {data->constData(), static_cast<std::size_t>(data->size())};
}

py::list usersIn(const Resource& self, const Graph& graph)
{
    const auto users = listenerOf(self).users(graph.as<Document::Graph>());
    py::list nodes;
    for (const auto& user : users)
        nodes.append(nodeObject(self.world(), controllerOf(Node(self.world(), *user))));
    return nodes;
}

} // namespace

void bindResources(py::module_& module)
{
    using Type = Document::Resource;
    declared<Resource, Content>(module, "Resource")
        .def_property_readonly(
            "path", [](const Resource& self) { return pathOf(listenerOf(self).filePath()); },
            "The file. Absolute in a package that was opened.")
        .def("link_to", &linkTo, py::arg("path"),
             "Makes the resource link to another file. Its time and checksum are noted.")
        .def("read", &read, "Returns all bytes of the file. Raises OpenError if it cannot be read.")
        .def_property_readonly(
            "is_reachable", [](const Resource& self) { return listenerOf(self).isReachable(); },
            "Whether the file can be read.")
        .def_property_readonly(
            "format", [](const Resource& self) { return textOf(self.as<Type>().format().get()); },
            "The name of the file format, such as \"PNG\".")
        .def_property_readonly(
            "checksum",
            [](const Resource& self) { return textOf(self.as<Type>().checksum().get()); },
            "The MD5 sum of the file when it was linked to.")
        .def_property_readonly(
            "last_modified",
            [](const Resource& self) { return textOf(self.as<Type>().lastModif().get()); },
            "The time of the file when it was linked to.")
        .def_property(
            "cooked_format",
            [](const Resource& self) { return self.as<Type>().cookedFormat().get(); },
            [](const Resource& self, unsigned format) { listenerOf(self).setCookedFormat(format); },
            "The number of the format in which a compiled package stores the image.")
        .def_property(
            "cooked_quality",
            [](const Resource& self) { return self.as<Type>().cookedQuality().get()[0]; },
            [](const Resource& self, float quality) {
                requireFinite(quality);
                listenerOf(self).setCookedQuality(quality);
            },
            "The quality in which a compiled package stores the image.")
        .def("users", &usersIn, py::arg("graph"), "Returns the nodes of a graph that use it.");
}

} // namespace Ksx::Python

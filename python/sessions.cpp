// Binds the session, and the block of edits that is one step.
#include "core/transaction.h"
#include "core/undostack.h"
#include "data/content/package.h"
#include "edits.h"
#include "ksx/core/packageslistmanager.h"
#include "objects.h"
#include "values.h"
#include <optional>
#include <pybind11/stl.h>

namespace Ksx::Python {

namespace py = pybind11;
using Orv::Core::UndoStack;

namespace {

// A session as Python has it. It is closed, and has no world, until Python has initialised it.
struct Session
{
    WorldPointer world;

    // For an object that Session.__new__() made alone: makes it at its first use.
    static void* operator new(std::size_t size) { return ::new (::operator new(size)) Session(); }
    static void operator delete(void* session) { ::operator delete(session); }

    bool isClosed() const { return world == nullptr || world->isClosed(); }
    Core::Session& get() const
    {
        check();
        return world->session();
    }
    // Raises SessionError if the session is closed, and in any other thread.
    void check() const
    {
        if (world == nullptr)
            raise("SessionError", "the session is closed");
        world->check();
    }
    void close() const
    {
        if (isClosed())
            return;
        world->check();
        world->close();
    }
    const char* fault() const
    {
        if (isClosed())
            return "closed";
        return world->isUsable() ? nullptr : "of another thread";
    }
};

// The edits between entering and leaving are one step.
class EditBlock
{
public:
    EditBlock(WorldPointer world, const QString& name) : m_world(std::move(world)), m_name(name) {}

    void enter()
    {
        UndoStack& steps = m_world->session().steps();
        if (m_isOpen)
            raise("EditError", "the block is open already");
        m_count = steps.openCount();
        Orv::Core::beginUndoableTransaction(m_name);
        m_isOpen = true;
    }

    // Takes the edits back if the block ended by an exception, also inside another block.
    void leave(bool hasFailed)
    {
        if (!m_isOpen || m_world->isClosed())
            return;
        UndoStack& steps = m_world->session().steps();
        const bool isDone = !hasFailed || steps.takeBack(m_count);
        Orv::Core::commitTransaction();
        m_isOpen = false;
        require(isDone, "the edits of the block cannot be taken back");
    }

private:
    WorldPointer m_world;
    QString m_name;
    std::size_t m_count = 0; // of the commands of the outer blocks before it
    bool m_isOpen = false;
};

py::list failuresOf(const Core::Session& session)
{
    const py::object type = py::module_::import("kestrix.errors").attr("Failure");
    py::list failures;
    for (const Core::Session::Failure& failure : session.failures())
        failures.append(
            type(pathOf(failure.filename), messageOf(failure.reason), failure.isDependency));
    return failures;
}

// Opens files and returns their packages. Without `allowsMissing`, raises OpenError if a file or
// one that it depends on cannot be opened. The others are open all the same.
py::list open(const Session& self, const QStringList& paths, bool followsDependencies,
              bool allowsMissing)
{
    Core::Session& session = self.get();
    bool isOpen = false;
    {
        const py::gil_scoped_release release;
        isOpen = followsDependencies ? session.open(paths) : session.openAlone(paths);
    }
    if (!isOpen && !allowsMissing)
        raise("OpenError", failuresOf(session));
    py::list packages;
    for (const QString& path : paths) {
        const auto package = session.package(path);
        if (!package)
            raise("OpenError", failuresOf(session));
        packages.append(Package(self.world, *package));
    }
    return packages;
}

py::list packagesOf(const Session& self)
{
    py::list packages;
    for (const auto& package : self.get().packages())
        packages.append(Package(self.world, *package));
    return packages;
}

Package findPackage(const Session& self, const py::object& path)
{
    const auto package = self.get().package(pathFrom(path));
    if (!package)
        raiseMissing(path);
    return {self.world, *package};
}

Package addPackage(const Session& self, const py::str& identifier)
{
    const auto package = self.get().addPackage(wideTextFrom(identifier));
    require(bool(package), "the package cannot be added");
    return {self.world, *package};
}

void bindEditBlock(py::module_& module)
{
    makeClass<EditBlock>(module, "EditBlock", "Edits that are one step. Made by edit().")
        .def(
            "__enter__",
            [](EditBlock& self) -> EditBlock& {
                self.enter();
                return self;
            },
            py::return_value_policy::reference, "Begins the step.")
        .def(
            "__exit__",
            [](EditBlock& self, const py::object& type, const py::object&, const py::object&) {
                self.leave(!type.is_none());
            },
            "Ends the step. Takes its edits back if there was an exception.");
}

void bindUndo(py::class_<Session>& session)
{
    session
        .def(
            "undo", [](const Session& self) { return self.get().undo(); },
            "Reverses the last step. Returns False if there is none, and inside an edit block.")
        .def(
            "redo", [](const Session& self) { return self.get().redo(); },
            "Runs the step again that was undone last. Returns False in the same cases.")
        .def_property_readonly(
            "can_undo", [](const Session& self) { return self.get().steps().canUndo(); },
            "Whether there is a step to undo.")
        .def_property_readonly(
            "can_redo", [](const Session& self) { return self.get().steps().canRedo(); },
            "Whether there is a step to redo.")
        .def_property_readonly(
            "undo_text", [](const Session& self) { return textOf(self.get().steps().undoText()); },
            "The name of the step that undo() reverses.")
        .def_property_readonly(
            "redo_text", [](const Session& self) { return textOf(self.get().steps().redoText()); },
            "The name of the step that redo() runs again.")
        .def(
            "forget_steps", [](const Session& self) { self.get().steps().clear(); },
            "Forgets all steps, and with them the objects that edits have removed.")
        .def(
            "edit",
            [](const Session& self, const py::str& name) {
                self.check();
                return editBlock(self.world, name);
            },
            py::arg("name"),
            "Returns a block for `with`, whose edits are one step of that name. An exception that "
            "leaves the block takes its edits back. Of blocks in blocks the outermost is the step.");
}

} // namespace

py::object editBlock(const WorldPointer& world, const py::str& name)
{
    world->check();
    return py::cast(EditBlock(world, wideTextFrom(name)));
}

void bindSessions(py::module_& module)
{
    bindEditBlock(module);
    py::class_<Session> session(module, "Session", R"(The open packages and the steps to undo.

One session is open at a time, and belongs to the thread that made it. Other threads may run
meanwhile: reading and writing release the interpreter's lock.

    with kestrix.Session(["/srv/library/presets"]) as session:
        package = session.open("wood.obl")

The paths are where "obl://" references lead: the first of them, or the current folder without any.
Objects of a session cannot be used after close().)");
    session.attr("__module__") = "kestrix";
    session
        .def(py::init([](const py::iterable& presets) {
                 return Session{std::make_shared<World>(pathsFrom(presets))};
             }),
             py::arg("presets_paths") = py::tuple())
        .def(
            "open",
            [](const Session& self, const py::object& path, bool dependencies, bool allowMissing) {
                return py::object(
                    open(self, QStringList(pathFrom(path)), dependencies, allowMissing)[0]);
            },
            py::arg("path"), py::kw_only(), py::arg("dependencies") = true,
            py::arg("allow_missing") = false,
            "Opens a package, with all that it depends on unless told otherwise, and returns it. Old "
            "packages are brought to the current format in memory. Raises OpenError if a file cannot "
            "be opened; with `allow_missing`, a dependency that cannot be opened is only noted in "
            "`failures`. A file that is open already stays as it is.")
        .def(
            "open_all",
            [](const Session& self, const py::iterable& paths, bool dependencies,
               bool allowMissing) {
                return open(self, pathsFrom(paths), dependencies, allowMissing);
            },
            py::arg("paths"), py::kw_only(), py::arg("dependencies") = true,
            py::arg("allow_missing") = false,
            "Opens several packages, which are read side by side, and returns them. See open().")
        .def("package", &findPackage, py::arg("path"),
             "Returns the open package of a file. Raises KeyError if there is none.")
        .def("add_package", &addPackage, py::arg("identifier") = py::str(),
             "Adds a new package without a file.")
        .def_property_readonly("packages", &packagesOf,
                               "The open packages, in the order in which they were opened.")
        .def_property_readonly(
            "failures", [](const Session& self) { return failuresOf(self.get()); },
            "The files that failed in the last call of open() or open_all().")
        .def("close", &Session::close, "Closes all packages. Closing twice does nothing.")
        .def_property_readonly("is_closed", &Session::isClosed, "Whether the session is closed.")
        .def(
            "__enter__",
            [](const py::object& self) {
                self.cast<const Session&>().check();
                return self;
            },
            "Returns the session.")
        .def(
            "__exit__",
            [](const Session& self, const py::object&, const py::object&, const py::object&) {
                self.close();
            },
            "Closes the session.");
    bindRepr(
        session, +[](const Session& self) {
            return py::str("of {} packages").format(self.get().packages().size());
        });
    bindUndo(session);
}

} // namespace Ksx::Python

"""Objects that are used after their end raise an exception. The interpreter never crashes."""

from __future__ import annotations

import copy
import gc
import inspect
import pickle
from collections.abc import Callable, Iterator

import kestrix
import pytest
from samples import BRICKS, EVERYTHING, FABRIC, PRESETS, RUST, WOOD, run_python

CLASSES = [kind for kind in vars(kestrix).values()
           if inspect.isclass(kind) and not issubclass(kind, (Exception, tuple))]


def objects_of(package: kestrix.Package) -> dict[str, object]:
    """One object of each class that a package has."""
    found: dict[str, object] = {}
    waiting: list[object] = [package]
    while waiting:
        owner = waiting.pop()
        if type(owner).__name__ in found:
            continue
        found[type(owner).__name__] = owner
        for name in properties_of(owner):
            value = getattr(owner, name)
            for item in value if isinstance(value, list) else [value]:
                waiting += item if isinstance(item, tuple) else [item]
        waiting = [item for item in waiting if type(item).__module__ == "kestrix"
                   and getattr(item, "package", package) == package]
    return found


def properties_of(item: object) -> list[str]:
    return [name for name in dir(type(item)) if not name.startswith("_")
            and isinstance(getattr(type(item), name), property) and name != "is_valid"]


def fates(item: object) -> set[str]:
    """Returns the outcomes of reading all properties, except the few that a gone object keeps."""
    return {fate(item, name) for name in properties_of(item)
            if (type(item).__name__, name) not in KEPT}


KEPT = {("InputConnector", "identifier"), ("OutputConnector", "identifier"),
        ("OutputConnector", "uid"), ("Parameter", "identifier")}


def fate(item: object, name: str) -> str:
    try:
        getattr(item, name)
    except kestrix.Error as error:
        return type(error).__name__
    return f"{type(item).__name__}.{name} is usable"


@pytest.fixture
def all_objects(session: kestrix.Session) -> list[object]:
    packages = [session.open(path, dependencies=False) for path in (EVERYTHING, FABRIC, RUST, WOOD)]
    return [item for package in packages for item in objects_of(package).values()]


def test_the_objects_of_these_tests_are_of_all_classes(all_objects: list[object]) -> None:
    assert {type(item) for item in all_objects} == {
        kind for kind in CLASSES
        if kind.__name__ not in ("Session", "EditBlock", "Object", "Content", "Node", "ImageNode")}


def test_objects_of_a_closed_package_are_gone(session: kestrix.Session,
                                              all_objects: list[object]) -> None:
    for package in session.packages:
        package.close()

    assert set().union(*map(fates, all_objects)) == {"GoneError"}


def test_objects_of_a_closed_session_raise_session_error(session: kestrix.Session,
                                                         all_objects: list[object]) -> None:
    session.close()

    assert set().union(*map(fates, all_objects)) == {"SessionError"}


def test_objects_of_a_former_session_stay_closed_in_the_next_one() -> None:
    with kestrix.Session() as first:
        objects = list(objects_of(first.open(WOOD, dependencies=False)).values())

    with kestrix.Session() as second:
        second.open(WOOD, dependencies=False)
        assert set().union(*map(fates, objects)) == {"SessionError"}


@pytest.mark.parametrize("end", ["session", "package"])
def test_ended_objects_can_be_shown_compared_and_hashed(
        session: kestrix.Session, all_objects: list[object], end: str) -> None:
    hashes = [hash(item) for item in all_objects]
    close(session, end)

    assert all(repr(item).startswith("<kestrix.") for item in all_objects)
    assert [hash(item) for item in all_objects] == hashes
    assert all(item == item for item in all_objects)
    assert {getattr(item, "is_valid", False) for item in all_objects} == {False}


def close(session: kestrix.Session, end: str) -> None:
    ended: list[kestrix.Session | kestrix.Package] = (
        [session] if end == "session" else [*session.packages])
    for item in ended:
        item.close()


def test_the_repr_of_an_ended_object_says_so(wood: kestrix.Package,
                                             session: kestrix.Session) -> None:
    graph = wood.graphs[0]
    wood.close()

    assert repr(graph) == "<kestrix.Graph, gone>"
    session.close()
    assert (repr(graph), repr(session)) == ("<kestrix.Graph, gone>", "<kestrix.Session, closed>")


REMOVALS: dict[str, Callable[[kestrix.Graph], tuple[kestrix.Object, Callable[[], None]]]] = {
    "node": lambda graph: (graph.nodes[3], graph.nodes[3].remove),
    "input": lambda graph: (graph.input("wear"), graph.input("wear").remove),
    "frozen input": lambda graph: (graph.input("wear"), graph.input("wear").freeze),
    "function node": lambda graph: (graph.input("wear").users[0], graph.input("wear").freeze),
    "dependency": lambda graph: (graph.package.dependencies[0],
                                 graph.package.dependencies[0].remove),
}


@pytest.mark.parametrize("name", REMOVALS)
def test_a_removed_object_is_gone_until_undo_brings_it_back(session: kestrix.Session,
                                                            name: str) -> None:
    item, remove = REMOVALS[name](session.open(BRICKS).graphs[0])
    before = repr(item)
    remove()
    removed = (item.is_valid, fates(item))
    session.undo()
    undone = (item.is_valid, repr(item))
    session.redo()

    assert removed == (False, {"GoneError"})
    assert undone == (True, before)
    assert (item.is_valid, fates(item)) == (False, {"GoneError"})


@pytest.mark.parametrize("name", REMOVALS)
def test_a_removed_object_stays_gone_when_its_step_is_forgotten(session: kestrix.Session,
                                                                name: str) -> None:
    item, remove = REMOVALS[name](session.open(BRICKS).graphs[0])
    remove()
    session.forget_steps()
    gc.collect()

    assert (item.is_valid, fates(item)) == (False, {"GoneError"})
    assert hash(item) == hash(item)
    assert item == item


ADDITIONS: dict[str, Callable[[kestrix.Graph], kestrix.Object]] = {
    "graph": lambda graph: graph.package.add_graph("x"),
    "resource": lambda graph: graph.package.add_resource(WOOD, "x"),
    "filter": lambda graph: graph.add_filter("blur"),
    "instance": lambda graph: graph.add_instance(graph.package.graphs[1]),
    "input": lambda graph: graph.add_input("x"),
    "input node": lambda graph: graph.add_input_node("x"),
    "output node": lambda graph: graph.add_output_node("x"),
    "function": lambda graph: graph.nodes[0].parameter("outputsize").make_dynamic(),
}


@pytest.mark.parametrize("name", ADDITIONS)
def test_an_added_object_is_gone_after_undo_and_back_after_redo(session: kestrix.Session,
                                                                name: str) -> None:
    item = ADDITIONS[name](session.open(BRICKS).graphs[0])
    shown = repr(item)
    session.undo()
    undone = (item.is_valid, fates(item))
    session.redo()

    assert undone == (False, {"GoneError"})
    assert (item.is_valid, repr(item)) == (True, shown)


@pytest.mark.parametrize("name", ADDITIONS)
def test_an_object_that_was_never_brought_back_stays_gone(session: kestrix.Session,
                                                          name: str) -> None:
    graph = session.open(BRICKS).graphs[0]
    item = ADDITIONS[name](graph)
    session.undo()
    graph.package.author = "another step"  # which drops the former one and its object

    assert (item.is_valid, fates(item)) == (False, {"GoneError"})


@pytest.mark.parametrize("use", [
    lambda graph: graph.add_filter("blur"),
    lambda graph: graph.add_instance(graph),
    lambda graph: graph.add_input("x"),
    lambda graph: graph.add_input_node("x"),
    lambda graph: graph.add_output_node("x"),
    lambda graph: graph.node(1),
    lambda graph: graph.input("x"),
    lambda graph: graph.parameter("outputsize"),
    lambda graph: setattr(graph, "identifier", "x"),
], ids=range(9))
def test_a_graph_that_is_gone_takes_no_edits(session: kestrix.Session, graph: kestrix.Graph,
                                             use: Callable[[kestrix.Graph], object]) -> None:
    session.undo()

    with pytest.raises(kestrix.GoneError):
        use(graph)


@pytest.mark.parametrize("use", [
    lambda graph, gone: graph.connect(gone.outputs[0], graph.nodes[0].inputs[0]),
    lambda graph, gone: graph.add_instance(gone.graph),
    lambda graph, gone: gone.remove(),
    lambda graph, gone: setattr(gone, "position", (1, 2)),
    lambda graph, gone: gone.parameter("intensity"),
    lambda graph, gone: gone.input("source"),
], ids=range(6))
def test_a_node_that_is_gone_takes_no_edits(
        graph: kestrix.Graph,
        use: Callable[[kestrix.Graph, kestrix.FilterNode], object]) -> None:
    gone = graph.add_filter("blur")
    graph.add_filter("blur")
    gone.remove()

    with pytest.raises(kestrix.GoneError):
        use(graph, gone)


def test_connectors_and_parameters_of_a_node_end_with_it(graph: kestrix.Graph) -> None:
    node = graph.add_filter("uniform")
    connector, parameter = node.outputs[0], node.parameters[0]
    node.remove()
    other = graph.add_filter("blur")

    with pytest.raises(kestrix.GoneError):
        other.inputs[0].connect(connector)
    with pytest.raises(kestrix.GoneError):
        parameter.value = 1


def test_a_connector_that_the_node_lost_is_gone(session: kestrix.Session,
                                                graph: kestrix.Graph) -> None:
    shown = graph.package.add_graph("shown")
    output = shown.add_output_node("first")
    connector = graph.add_instance(shown).outputs[0]
    output.remove()

    with pytest.raises(kestrix.GoneError):
        connector.targets


def test_a_parameter_that_the_node_lost_is_gone(graph: kestrix.Graph) -> None:
    shown = graph.package.add_graph("shown")
    entry = shown.add_input("scale")
    node = graph.add_instance(shown)
    parameter = node.parameter("scale")
    entry.remove()

    with pytest.raises(kestrix.GoneError):
        parameter.value


def test_functions_of_a_plain_value_are_gone(graph: kestrix.Graph) -> None:
    parameter = graph.add_filter("blur").parameter("intensity")
    function = parameter.make_dynamic()
    node = function.nodes[0]
    parameter.value = 1

    with pytest.raises(kestrix.GoneError):
        function.add("mul")
    with pytest.raises(kestrix.GoneError):
        node.value = 2


# Sessions.

def test_one_session_is_open_at_a_time(session: kestrix.Session) -> None:
    with pytest.raises(kestrix.SessionError, match="another session is open"):
        kestrix.Session()

    assert session.packages == []


def test_sessions_follow_each_other() -> None:
    for _ in range(3):
        with kestrix.Session([PRESETS]) as session:
            assert session.open(BRICKS).graphs[0].nodes


def test_a_session_that_is_no_longer_used_is_closed() -> None:
    kestrix.Session().open(WOOD)
    gc.collect()

    kestrix.Session().close()


def test_objects_keep_their_session_open() -> None:
    graph = kestrix.Session().add_package("a").add_graph("b")

    assert graph.identifier == "b"
    with pytest.raises(kestrix.SessionError, match="another session is open"):
        kestrix.Session()


def test_a_session_may_be_closed_twice(session: kestrix.Session) -> None:
    session.close()
    session.close()

    assert session.is_closed


def test_a_failed_session_leaves_room_for_another_one() -> None:
    with pytest.raises(TypeError):
        kestrix.Session([None])  # type: ignore[list-item]

    kestrix.Session().close()


@pytest.mark.parametrize("use", [
    lambda session: session.open(WOOD), lambda session: session.open_all([]),
    lambda session: session.package(WOOD), lambda session: session.add_package("a"),
    lambda session: session.packages, lambda session: session.failures,
    lambda session: session.undo(), lambda session: session.redo(),
    lambda session: session.can_undo, lambda session: session.undo_text,
    lambda session: session.forget_steps(), lambda session: session.edit("x"),
    lambda session: session.__enter__(),
], ids=range(13))
@pytest.mark.parametrize("make", [
    lambda: closed(kestrix.Session()), lambda: kestrix.Session.__new__(kestrix.Session)],
    ids=["closed", "never opened"])
def test_a_closed_session_raises_session_error(make: Callable[[], kestrix.Session],
                                               use: Callable[[kestrix.Session], object]) -> None:
    session = make()

    with pytest.raises(kestrix.SessionError, match="the session is closed"):
        use(session)

    assert session.is_closed
    assert repr(session) == "<kestrix.Session, closed>"


def closed(session: kestrix.Session) -> kestrix.Session:
    session.close()
    return session


@pytest.mark.parametrize("kind", [kind for kind in CLASSES if kind is not kestrix.Session])
@pytest.mark.parametrize("make", [
    lambda kind: kind(), lambda kind: kind.__new__(kind), lambda kind: object.__new__(kind),
    lambda kind: type("Derived", (kind,), {})()], ids=["call", "new", "object", "derived"])
def test_only_sessions_are_made_by_users(kind: type[object],
                                         make: Callable[[type[object]], object]) -> None:
    with pytest.raises(TypeError):
        make(kind)


def test_a_class_derived_from_session_works() -> None:
    class Named(kestrix.Session):
        name = "mine"

    with Named([PRESETS]) as session:
        assert (session.name, session.open(WOOD).identifier) == ("mine", "wood_planks")


def test_objects_cannot_be_copied(wood: kestrix.Package) -> None:
    with pytest.raises(TypeError):
        copy.copy(wood)
    with pytest.raises(TypeError):
        pickle.dumps(wood.graphs[0])


@pytest.mark.parametrize("program", [
    "s = kestrix.Session(); p = s.open(path)",
    "p = kestrix.Session().open(path).graphs[0].nodes",
    "s = kestrix.Session(); p = s.open(path).edit('x'); p.__enter__(); s.packages[0].author = 'x'",
    "class A: pass\na = A(); a.a = a; a.s = kestrix.Session(); a.p = a.s.open(path)",
    "s = kestrix.Session(); p = s.open(path); p.close(); p = p.is_valid",
    "kestrix.Session.__new__(kestrix.Session)",
    "import atexit; p = kestrix.Session().open(path); atexit.register(p.save, '/dev/null/x')",
    "sys.modules['kept'] = kestrix.Session().open(path).graphs[0].connections",
], ids=range(8))
def test_the_interpreter_ends_well_whatever_is_left_open(program: str) -> None:
    run = run_python(f"import sys, kestrix\npath = sys.argv[1]\n{program}", WOOD)

    assert run.returncode == 0, run.stderr


@pytest.fixture(autouse=True)
def collected() -> Iterator[None]:
    """Destroys the objects that a failed test has kept alive."""
    yield
    gc.collect()

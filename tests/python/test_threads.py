"""A session belongs to a thread, and lets other threads run meanwhile."""

from __future__ import annotations

import gc
import pathlib
import shutil
import sys
import threading
import time
from collections.abc import Callable
from typing import Any

import kestrix
import pytest
from samples import FACADE, PRESETS, WOOD, run_python


def in_thread(use: Callable[[], object]) -> object:
    """The result of a call in another thread, or the exception that it raised."""
    results: list[object] = []

    def run() -> None:
        try:
            results.append(use())
        except Exception as error:
            results.append(error)

    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    return results[0]


class Counter:
    """Counts in a thread of its own, between entering and leaving."""

    def __init__(self, count: Callable[[], object] = lambda: None) -> None:
        self.count = 0
        self.errors: list[Exception] = []
        self._call = count
        self._ends = threading.Event()
        self._thread = threading.Thread(target=self._run)

    def _run(self) -> None:
        while not self._ends.is_set():
            try:
                self._call()
            except Exception as error:
                self.errors.append(error)
            self.count += 1
            time.sleep(0)  # which releases the interpreter's lock

    def __enter__(self) -> Counter:
        self._thread.start()
        return self

    def __exit__(self, *_: object) -> None:
        self._ends.set()
        self._thread.join()


@pytest.fixture
def large(examples: pathlib.Path) -> list[pathlib.Path]:
    """Large packages, all different files."""
    return [pathlib.Path(shutil.copy(FACADE, examples / "large" / f"{i}.obl")) for i in range(6)]


@pytest.mark.parametrize("use", [
    lambda session: session.open(WOOD), lambda session: session.packages,
    lambda session: session.add_package(), lambda session: session.undo(),
    lambda session: session.close(), lambda session: session.edit("x"),
    lambda session: session.__exit__(None, None, None), lambda session: session.failures,
], ids=range(8))
def test_a_session_raises_session_error_in_another_thread(
        session: kestrix.Session, use: Callable[[kestrix.Session], object]) -> None:
    error = in_thread(lambda: use(session))

    assert isinstance(error, kestrix.SessionError)
    assert str(error) == "the session belongs to another thread"
    assert not session.is_closed


@pytest.mark.parametrize("use", [
    lambda package: package.author, lambda package: setattr(package, "author", "x"),
    lambda package: package.graphs, lambda package: package.save("/dev/null/x"),
    lambda package: package.close(), lambda package: package.is_valid,
    lambda package: package.edit("x"), lambda package: package.find("pkg://"),
], ids=range(8))
def test_an_object_raises_session_error_in_another_thread(
        wood: kestrix.Package, use: Callable[[kestrix.Package], object]) -> None:
    assert isinstance(in_thread(lambda: use(wood)), kestrix.SessionError)
    assert wood.is_valid


@pytest.mark.parametrize("use", [
    lambda graph: graph.nodes[0].outputs[0].targets, lambda graph: graph.connections[0][1].sources,
    lambda graph: graph.parameters[0].value, lambda graph: graph.inputs[0].default,
], ids=range(4))
def test_parts_of_a_graph_raise_session_error_in_another_thread(
        wood: kestrix.Package, use: Callable[[kestrix.Graph], object]) -> None:
    graph = wood.graphs[0]

    assert isinstance(in_thread(lambda: use(graph)), kestrix.SessionError)


def test_a_block_raises_session_error_in_another_thread(session: kestrix.Session,
                                                        wood: kestrix.Package) -> None:
    with wood.edit("block") as block:
        wood.author = "new"
        error = in_thread(lambda: block.__exit__(None, None, None))

    assert isinstance(error, kestrix.SessionError)
    assert session.undo_text == "block"


def test_objects_can_be_shown_and_compared_in_another_thread(wood: kestrix.Package) -> None:
    graph = wood.graphs[0]

    assert in_thread(lambda: repr(graph)) == "<kestrix.Graph, of another thread>"
    assert in_thread(lambda: graph == wood.graphs) is not True
    assert in_thread(lambda: (graph == graph, graph in {graph})) == (True, True)


def test_another_thread_may_have_the_next_session() -> None:
    kestrix.Session().close()

    def identifiers() -> list[str]:
        with kestrix.Session([PRESETS]) as session:
            return [graph.identifier for graph in session.open(FACADE).graphs]

    assert in_thread(identifiers) == identifiers()


def test_a_second_session_is_refused_in_any_thread(session: kestrix.Session) -> None:
    assert isinstance(in_thread(kestrix.Session), kestrix.SessionError)


def progress_during(call: Callable[[], object]) -> int:
    """Returns the number up to which another thread counts while this one makes a call.

    A thread that waits for the interpreter's lock asks for it at the end of the switch interval. The
    interval is an hour here. So the other thread counts only while the call has released the lock."""
    former = sys.getswitchinterval()
    with Counter() as counter:
        sys.setswitchinterval(3600)
        try:
            time.sleep(0.05)  # ends waits of the former interval
            before = counter.count
            call()
            return counter.count - before
        finally:
            sys.setswitchinterval(former)


def test_other_threads_stand_still_without_the_lock() -> None:
    assert progress_during(lambda: sum(range(10**6))) == 0


def test_other_threads_go_on_while_packages_are_opened(session: kestrix.Session,
                                                       large: list[pathlib.Path]) -> None:
    assert progress_during(lambda: session.open_all(large)) > 0


def test_other_threads_go_on_while_a_package_is_opened(session: kestrix.Session,
                                                       large: list[pathlib.Path]) -> None:
    assert progress_during(lambda: session.open(large[0])) > 0


def test_other_threads_go_on_while_a_package_is_saved(session: kestrix.Session,
                                                      large: list[pathlib.Path]) -> None:
    package = session.open(large[0])

    assert progress_during(package.save) > 0


def test_other_threads_go_on_while_a_command_runs(tmp_path: pathlib.Path) -> None:
    assert progress_during(lambda: kestrix.update(WOOD, output_path=tmp_path)) > 0


def test_objects_may_be_destroyed_while_the_session_opens(session: kestrix.Session,
                                                          large: list[pathlib.Path]) -> None:
    objects: list[Any] = [item for graph in session.open(FACADE).graphs
                          for item in [*graph.nodes, *graph.connections, *graph.parameters]]

    with Counter(lambda: objects and objects.pop()) as counter:
        packages = session.open_all(large)
        packages[0].save()

    assert counter.errors == []
    assert all(package.graphs[0].nodes for package in packages)


def test_other_threads_can_ask_while_the_session_opens(session: kestrix.Session,
                                                       large: list[pathlib.Path]) -> None:
    graph = session.open(WOOD).graphs[0]

    with Counter(lambda: (repr(session), repr(graph), graph == graph, hash(graph),
                          session.is_closed)) as counter:
        session.open_all(large)

    assert counter.count > 0
    assert counter.errors == []


def test_other_threads_are_refused_while_the_session_opens(session: kestrix.Session,
                                                           large: list[pathlib.Path]) -> None:
    with Counter(session.close) as counter:
        session.open_all(large)

    assert len(session.packages) > len(large)
    assert {type(error) for error in counter.errors} == {kestrix.SessionError}


def test_the_last_object_of_a_session_may_be_destroyed_in_another_thread() -> None:
    objects = [kestrix.Session([PRESETS]).open(WOOD).graphs[0].nodes]

    in_thread(objects.clear)
    gc.collect()

    kestrix.Session().close()


def test_objects_of_a_closed_session_may_be_destroyed_in_another_thread() -> None:
    with kestrix.Session() as session:
        objects = [session.open(WOOD, dependencies=False).graphs[0].nodes]

    with kestrix.Session() as session:
        in_thread(objects.clear)
        assert session.open(WOOD, dependencies=False).graphs[0].nodes


def test_a_thread_that_ends_leaves_its_session_to_be_destroyed() -> None:
    sessions: list[object] = [in_thread(kestrix.Session)]
    assert isinstance(in_thread(lambda: kestrix.Session()), kestrix.SessionError)
    sessions.clear()
    gc.collect()

    kestrix.Session().close()


@pytest.mark.parametrize("program", [
    """
def work():
    global session
    session = kestrix.Session()
    package = session.open(path)
thread = threading.Thread(target=work); thread.start(); thread.join()
""", """
session = kestrix.Session()
threading.Thread(target=time.sleep, args=(0.2,)).start()
package = session.open(path)
""", """
session = kestrix.Session()
package = session.open(path)
def count():
    while True: repr(package)
threading.Thread(target=count, daemon=True).start()
session.open(path)
"""], ids=range(3))
def test_the_interpreter_ends_well_with_threads(program: str) -> None:
    run = run_python(f"import sys, threading, time, kestrix\npath = sys.argv[1]\n{program}", WOOD)

    assert run.returncode == 0, run.stderr

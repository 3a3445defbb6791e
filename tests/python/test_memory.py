"""Memory does not grow with the number of packages that were opened before."""

from __future__ import annotations

import gc
import pathlib
from collections.abc import Callable

import kestrix
import pytest
from samples import PRESETS, RUST

PAGE = 4096


def resident() -> int:
    """The bytes of this process that are in memory."""
    gc.collect()
    return int(pathlib.Path("/proc/self/statm").read_text(encoding="ascii").split()[1]) * PAGE


def open_in_new_session() -> None:
    with kestrix.Session([PRESETS]) as session:
        walk(session.open(RUST))


def walk(package: kestrix.Package) -> int:
    return len([parameter.value for graph in package.graphs for node in graph.nodes
                for parameter in node.parameters])


def growth(call: Callable[[], object]) -> int:
    """The bytes by which 200 calls grow the process, when 100 were made before."""
    for _ in range(100):
        call()
    before = resident()
    for _ in range(200):
        call()
    return resident() - before


def test_sessions_that_were_closed_leave_nothing() -> None:
    assert growth(open_in_new_session) < 2 * 2**20


def test_packages_that_were_closed_leave_nothing() -> None:
    with kestrix.Session([PRESETS]) as session:
        def open_and_close() -> None:
            package = session.open(RUST)
            walk(package)
            package.close()

        assert growth(open_and_close) < 2 * 2**20


def test_packages_that_cannot_be_opened_leave_nothing(tmp_path: pathlib.Path) -> None:
    damaged = tmp_path / "damaged.obl"
    damaged.write_bytes(RUST.read_bytes()[:-100])

    with kestrix.Session() as session:
        def fail() -> None:
            with pytest.raises(kestrix.OpenError):
                session.open(damaged)

        assert growth(fail) < 2 * 2**20


def test_steps_that_were_forgotten_leave_nothing() -> None:
    with kestrix.Session([PRESETS]) as session:
        graph = session.open(RUST).graphs[0]

        def edit() -> None:
            with graph.package.edit("edits"):
                graph.add_filter("blur").remove()
            session.undo()
            session.forget_steps()

        assert growth(edit) < 2 * 2**20

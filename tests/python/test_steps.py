"""Undo, redo, and blocks of edits that are one step."""

from __future__ import annotations

import pathlib

import kestrix
import pytest
from samples import BRICKS, WOOD


class Stop(Exception):
    """Leaves a block."""


def saved(package: kestrix.Package, folder: pathlib.Path) -> bytes:
    path = folder / "state.obl"
    package.save(path)
    return path.read_bytes()


def test_an_edit_is_a_step(session: kestrix.Session, wood: kestrix.Package) -> None:
    wood.author = "new"

    assert (session.can_undo, session.can_redo) == (True, False)
    assert session.undo()
    assert (session.can_undo, session.can_redo) == (False, True)
    assert wood.author == "Åsa Öberg"
    assert session.redo()
    assert wood.author == "new"


def test_without_steps_nothing_is_undone(session: kestrix.Session, wood: kestrix.Package) -> None:
    assert not session.undo()
    assert not session.redo()
    assert (session.undo_text, session.redo_text) == ("", "")


def test_opening_is_no_step(session: kestrix.Session) -> None:
    session.open(BRICKS)

    assert not session.can_undo


def test_a_new_edit_drops_the_steps_to_redo(session: kestrix.Session,
                                            wood: kestrix.Package) -> None:
    wood.author = "first"
    session.undo()
    wood.author = "second"

    assert not session.can_redo


def test_undoing_all_edits_restores_the_bytes(session: kestrix.Session, wood: kestrix.Package,
                                              tmp_path: pathlib.Path) -> None:
    before = saved(wood, tmp_path)
    graph = wood.graphs[0]
    graph.inputs[0].freeze()
    graph.add_filter("blur").parameter("intensity").make_dynamic()
    graph.nodes[3].remove()
    graph.identifier = "planks"
    wood.add_graph("other").add_instance(graph)
    after = saved(wood, tmp_path)

    assert [session.undo() for _ in range(7)] == [True] * 7
    assert not session.can_undo
    assert saved(wood, tmp_path) == before
    assert [session.redo() for _ in range(7)] == [True] * 7
    assert saved(wood, tmp_path) == after


def test_a_block_is_one_step_of_its_name(session: kestrix.Session, wood: kestrix.Package) -> None:
    with wood.edit("three edits"):
        wood.author = "new"
        wood.graphs[0].add_filter("blur")
        wood.graphs[0].inputs[0].label = "label"

    assert session.undo_text == "three edits"
    assert session.undo()
    assert session.redo_text == "three edits"
    assert not session.can_undo
    assert wood.author == "Åsa Öberg"


def test_a_block_of_the_session_reaches_several_packages(session: kestrix.Session) -> None:
    packages = [session.add_package("a"), session.add_package("b")]
    session.forget_steps()
    with session.edit("all"):
        packages[0].author = packages[1].author = "new"
    session.undo()

    assert [package.author for package in packages] == ["", ""]


def test_an_empty_block_is_no_step(session: kestrix.Session, wood: kestrix.Package) -> None:
    with wood.edit("nothing"):
        pass

    assert not session.can_undo


def test_an_exception_takes_the_edits_of_the_block_back(
        session: kestrix.Session, wood: kestrix.Package, tmp_path: pathlib.Path) -> None:
    before = saved(wood, tmp_path)

    with pytest.raises(Stop):
        with wood.edit("failing"):
            wood.author = "new"
            wood.graphs[0].inputs[0].freeze()
            raise Stop

    assert saved(wood, tmp_path) == before
    assert (session.can_undo, session.can_redo) == (False, False)


def test_a_block_that_failed_leaves_other_steps_alone(session: kestrix.Session,
                                                      wood: kestrix.Package) -> None:
    wood.author = "first"
    wood.author = "second"
    session.undo()

    with pytest.raises(Stop):
        with wood.edit("failing"):
            wood.author = "third"
            raise Stop

    assert wood.author == "first"
    assert session.redo()
    assert wood.author == "second"


def test_a_refused_edit_leaves_the_block_as_an_exception(session: kestrix.Session,
                                                         graph: kestrix.Graph) -> None:
    session.forget_steps()

    with pytest.raises(kestrix.EditError):
        with session.edit("failing"):
            graph.add_filter("blur")
            graph.identifier = "///"

    assert graph.nodes == []


def test_blocks_in_blocks_are_one_step(session: kestrix.Session, wood: kestrix.Package) -> None:
    with wood.edit("outer"):
        with wood.edit("inner"):
            wood.author = "new"
        with session.edit("another"):
            wood.description = "new"

    assert session.undo_text == "outer"
    session.undo()
    assert (wood.author, session.can_undo) == ("Åsa Öberg", False)


def test_an_exception_takes_an_inner_block_back_alone(session: kestrix.Session,
                                                      wood: kestrix.Package) -> None:
    with wood.edit("outer"):
        wood.author = "outer"
        with pytest.raises(Stop):
            with wood.edit("inner"):
                wood.author = "inner"
                wood.graphs[0].add_filter("blur")
                raise Stop
        wood.description = "outer"

    assert (wood.author, wood.description) == ("outer", "outer")
    session.undo()
    assert (wood.author, session.can_undo) == ("Åsa Öberg", False)


def test_an_exception_takes_inner_blocks_back_with_the_outer_one(
        session: kestrix.Session, wood: kestrix.Package) -> None:
    with pytest.raises(Stop):
        with wood.edit("outer"):
            with wood.edit("inner"):
                wood.author = "inner"
            raise Stop

    assert (wood.author, session.can_undo) == ("Åsa Öberg", False)


def test_nothing_is_undone_inside_a_block(session: kestrix.Session, wood: kestrix.Package) -> None:
    wood.author = "before"
    with wood.edit("block"):
        wood.author = "inside"
        assert (session.undo(), session.redo(), session.can_undo) == (False, False, False)

    assert wood.author == "inside"


def test_a_block_may_be_used_again(session: kestrix.Session, wood: kestrix.Package) -> None:
    block = wood.edit("twice")
    with block:
        wood.author = "first"
    with block:
        wood.author = "second"
    session.undo()

    assert wood.author == "first"


def test_a_block_is_not_entered_twice_at_a_time(wood: kestrix.Package) -> None:
    block = wood.edit("twice")

    with block:
        with pytest.raises(kestrix.EditError, match="open already"):
            block.__enter__()


def test_a_block_that_was_not_entered_is_left_without_effect(session: kestrix.Session,
                                                             wood: kestrix.Package) -> None:
    wood.author = "new"
    wood.edit("unused").__exit__(Stop, Stop(), None)

    assert wood.author == "new"
    assert session.can_undo


def test_a_session_may_be_closed_inside_a_block() -> None:
    session = kestrix.Session()
    with session.add_package("a").edit("block"):
        session.close()

    with kestrix.Session() as second:
        second.add_package("b").author = "new"
        assert second.undo()


def test_a_package_may_be_closed_inside_a_block(session: kestrix.Session,
                                                wood: kestrix.Package) -> None:
    other = session.add_package("other")
    session.forget_steps()

    with pytest.raises(Stop):
        with session.edit("block"):
            other.author = "before"
            wood.close()
            other.author = "behind"
            raise Stop

    assert not wood.is_valid
    assert other.author == "before"  # closing forgets the steps before it


def test_opening_inside_a_block_stays(session: kestrix.Session, wood: kestrix.Package) -> None:
    with pytest.raises(Stop):
        with session.edit("block"):
            wood.author = "new"
            opened = session.open(BRICKS)
            raise Stop

    assert opened.is_valid
    assert wood.author == "Åsa Öberg"


def test_forgotten_steps_cannot_be_undone(session: kestrix.Session, wood: kestrix.Package) -> None:
    wood.author = "new"
    session.forget_steps()

    assert not session.undo()
    assert wood.author == "new"


def test_adding_a_package_can_be_undone(session: kestrix.Session) -> None:
    package = session.add_package("new")
    session.undo()

    assert not package.is_valid
    assert session.packages == []
    session.redo()
    assert package.is_valid


def test_closing_a_package_forgets_all_steps(session: kestrix.Session,
                                             wood: kestrix.Package) -> None:
    other = session.add_package("other")
    other.close()

    assert (session.can_undo, session.can_redo) == (False, False)
    assert wood.path == WOOD

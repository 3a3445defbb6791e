"""Opening packages, and all that keeps one from being opened."""

from __future__ import annotations

import os
import pathlib

import kestrix
import pytest
from samples import (BRICKS, EXAMPLES, PRESETS, WOOD, dependency, package_text, write_package)


def test_open_returns_the_package_of_the_file(session: kestrix.Session) -> None:
    package = session.open(WOOD)

    assert package.identifier == "wood_planks"
    assert package.path == WOOD


@pytest.mark.parametrize("path", [WOOD, str(WOOD), os.fsencode(WOOD)], ids=["Path", "str", "bytes"])
def test_a_path_may_have_any_form(session: kestrix.Session, path: str) -> None:
    assert session.open(path).path == WOOD


def test_open_follows_dependencies(session: kestrix.Session) -> None:
    session.open(BRICKS)

    assert [package.identifier for package in session.packages] == [
        "brick_wall", "noises", "presets_library"]


def test_open_without_dependencies_opens_one_file(session: kestrix.Session) -> None:
    session.open(BRICKS, dependencies=False)

    assert [package.identifier for package in session.packages] == ["brick_wall"]
    assert session.failures == []


def test_a_file_that_is_open_stays_as_it_is(session: kestrix.Session) -> None:
    package = session.open(WOOD)
    package.author = "nobody"
    count = len(session.packages)

    assert session.open(WOOD.parent / ".." / "wood" / WOOD.name) == package
    assert session.open_all([WOOD, WOOD]) == [package, package]
    assert (package.author, package.path) == ("nobody", WOOD)
    assert len(session.packages) == count


def test_a_dependency_that_is_open_stays_as_it_is(session: kestrix.Session) -> None:
    library = session.open(PRESETS / "presets_library.obl")
    bricks = session.open(BRICKS)

    assert bricks.dependencies[1].package == library
    assert session.package(PRESETS / "presets_library.obl") == library


def test_dependencies_of_an_open_package_are_opened_later(session: kestrix.Session) -> None:
    package = session.open(BRICKS, dependencies=False)

    assert session.open(BRICKS) == package
    assert len(session.packages) == 3


def test_a_missing_dependency_is_opened_when_it_has_come(session: kestrix.Session,
                                                         tmp_path: pathlib.Path) -> None:
    path = write_package(tmp_path / "tiny.obl", dependency("gone.obl", 7))
    package = session.open(path, allow_missing=True)
    package.author = "nobody"
    came = write_package(tmp_path / "gone.obl")

    assert session.open(path) == package
    assert package.dependencies[0].package == session.package(came)
    assert session.undo()


def test_a_package_that_was_closed_is_read_again(session: kestrix.Session) -> None:
    package = session.open(WOOD)
    package.author = "nobody"
    package.close()

    assert session.open(WOOD).author == "Åsa Öberg"
    assert not package.is_valid


def test_open_all_returns_the_packages_in_the_order_of_the_paths(session: kestrix.Session) -> None:
    packages = session.open_all([BRICKS, WOOD, BRICKS])

    assert [package.path for package in packages] == [BRICKS, WOOD, BRICKS]


def test_open_all_of_nothing_opens_nothing(session: kestrix.Session) -> None:
    assert session.open_all([]) == []


def test_package_finds_the_open_package_of_a_file(session: kestrix.Session) -> None:
    opened = session.open(WOOD)

    assert session.package(WOOD) == opened


def test_package_raises_key_error_for_a_file_that_is_not_open(session: kestrix.Session) -> None:
    with pytest.raises(KeyError, match="wood_planks"):
        session.package(WOOD)


def test_obl_references_lead_into_the_presets_folder() -> None:
    with kestrix.Session([PRESETS]) as session:
        session.open(BRICKS)
        assert session.package(PRESETS / "presets_library.obl").identifier == "presets_library"


def test_a_missing_file_raises_open_error_with_file_and_reason(session: kestrix.Session,
                                                               tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.OpenError) as raised:
        session.open(tmp_path / "none.obl")

    assert raised.value.failures == (
        kestrix.Failure(tmp_path / "none.obl", "there is no such file", False),)
    assert str(raised.value) == f"{tmp_path}/none.obl: there is no such file"


def test_a_folder_raises_open_error(session: kestrix.Session, tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.OpenError, match="it is a folder"):
        session.open(tmp_path)


@pytest.mark.parametrize("text", [
    "", "no document", package_text()[:-40], package_text().replace("7049", "9999"),
    "<package/>", package_text().replace("package", "graph"), "\0\xff",
], ids=["empty", "text", "cut", "newer", "bare", "another", "binary"])
def test_a_damaged_file_raises_open_error(session: kestrix.Session, tmp_path: pathlib.Path,
                                          text: str) -> None:
    path = tmp_path / "damaged.obl"
    path.write_text(text, encoding="latin-1")

    with pytest.raises(kestrix.OpenError) as raised:
        session.open(path)

    assert [failure.path for failure in raised.value.failures] == [path]
    assert session.packages == []


def test_another_ending_raises_open_error(session: kestrix.Session, tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.OpenError, match="its name does not end with"):
        session.open(write_package(tmp_path / "tiny.txt"))


def test_a_missing_dependency_raises_open_error(session: kestrix.Session,
                                                tmp_path: pathlib.Path) -> None:
    path = write_package(tmp_path / "tiny.obl", dependency("gone.obl", 7))

    with pytest.raises(kestrix.OpenError) as raised:
        session.open(path)

    assert raised.value.failures == (
        kestrix.Failure(tmp_path / "gone.obl", "there is no such file", True),)


def test_a_missing_dependency_is_noted_where_it_is_allowed(session: kestrix.Session,
                                                           tmp_path: pathlib.Path) -> None:
    path = write_package(tmp_path / "tiny.obl", dependency("gone.obl", 7))

    package = session.open(path, allow_missing=True)

    assert package.path == path
    assert session.failures == [
        kestrix.Failure(tmp_path / "gone.obl", "there is no such file", True)]
    assert [needed.package for needed in package.dependencies] == [None]


def test_a_missing_file_is_never_allowed(session: kestrix.Session, tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.OpenError):
        session.open(tmp_path / "none.obl", allow_missing=True)


def test_the_sound_packages_are_open_if_another_one_fails(session: kestrix.Session,
                                                          tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.OpenError):
        session.open_all([tmp_path / "none.obl", WOOD])

    assert session.package(WOOD).is_valid


def test_failures_are_those_of_the_last_call(session: kestrix.Session,
                                             tmp_path: pathlib.Path) -> None:
    session.open(write_package(tmp_path / "tiny.obl", dependency("gone.obl", 7)),
                 allow_missing=True)
    session.open(WOOD)

    assert session.failures == []


@pytest.mark.parametrize("name", [b"\xff\xfe.obl", "Ω ☃ ü.obl".encode(), b"a\nb.obl"],
                         ids=["no UTF-8", "Unicode", "newline"])
def test_names_of_files_keep_their_bytes(session: kestrix.Session, tmp_path: pathlib.Path,
                                         name: bytes) -> None:
    path = tmp_path / os.fsdecode(name)
    path.write_text(package_text(), encoding="utf-8")

    package = session.open(path)

    assert os.fsencode(package.path or "") == os.fsencode(path)
    assert session.package(path) == package
    assert "of '" in repr(package)


def test_a_missing_file_of_any_name_is_named_in_the_error(session: kestrix.Session,
                                                          tmp_path: pathlib.Path) -> None:
    path = tmp_path / os.fsdecode(b"\xff.obl")

    with pytest.raises(kestrix.OpenError) as raised:
        session.open(path)

    assert raised.value.failures[0].path == path


def test_old_packages_are_brought_up_in_memory(tmp_path: pathlib.Path) -> None:
    old = EXAMPLES / "old" / "parquet.obl"
    before = old.read_bytes()

    with kestrix.Session([EXAMPLES / "old" / "presets"]) as session:
        package = session.open(old)
        assert package.updater_version == "1.1.0.7049"

    assert old.read_bytes() == before


def test_archives_open_as_packages(session: kestrix.Session) -> None:
    package = session.open(EXAMPLES / "assemblies" / "metal_filters.oblar")

    assert len(package.graphs) == 3


@pytest.mark.parametrize("path", [None, 7, ["a.obl"]])
def test_open_takes_nothing_but_a_path(session: kestrix.Session, path: str) -> None:
    with pytest.raises(TypeError):
        session.open(path)


@pytest.mark.parametrize("paths", ["a.obl", None, [None], pathlib.Path("a.obl")])
def test_open_all_takes_nothing_but_paths(session: kestrix.Session, paths: list[str]) -> None:
    with pytest.raises(TypeError):
        session.open_all(paths)


def test_a_path_without_end_raises_value_error(session: kestrix.Session) -> None:
    with pytest.raises(ValueError, match="null byte"):
        session.open("a\0b.obl")


@pytest.mark.parametrize("presets", ["presets", 7, [None]])
def test_a_session_takes_a_list_of_presets_folders(presets: list[str]) -> None:
    with pytest.raises(TypeError):
        kestrix.Session(presets)

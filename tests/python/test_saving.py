"""Saving packages, and all that keeps one from being saved."""

from __future__ import annotations

import os
import pathlib

import kestrix
import pytest
from samples import BRICKS, FABRIC, PRESETS, RUST, WOOD, name_of, run_python, write_package

FAULTS = os.environ["KESTRIX_FAULTS"]


@pytest.mark.parametrize("path", [WOOD, BRICKS, FABRIC, RUST, PRESETS / "presets_library.obl"],
                         ids=name_of)
def test_an_unedited_package_is_saved_as_update_writes_it(session: kestrix.Session,
                                                          tmp_path: pathlib.Path,
                                                          path: pathlib.Path) -> None:
    session.open(path).save(tmp_path / "saved.obl")
    kestrix.update(path, output_path=tmp_path, output_name="{inputName}", presets_path=PRESETS)

    assert (tmp_path / "saved.obl").read_bytes() == (tmp_path / path.name).read_bytes()


def test_without_a_path_the_file_is_replaced(session: kestrix.Session,
                                             examples: pathlib.Path) -> None:
    path = examples / "effects" / "surface_rust.obl"
    package = session.open(path)
    package.author = "Zoë"
    package.save()

    assert 'author v="Zoë"' in path.read_text(encoding="utf-8")
    assert package.path == path


def test_saving_elsewhere_keeps_the_path_of_the_package(session: kestrix.Session,
                                                        wood: kestrix.Package,
                                                        tmp_path: pathlib.Path) -> None:
    wood.save(tmp_path / "copy.obl")

    assert wood.path == WOOD
    assert session.package(WOOD) == wood


@pytest.mark.parametrize("form", [str, os.fsencode, pathlib.Path])
def test_a_target_may_have_any_form(graph: kestrix.Graph, tmp_path: pathlib.Path,
                                    form: type[str]) -> None:
    graph.package.save(form(tmp_path / "saved.obl"))

    assert (tmp_path / "saved.obl").is_file()


def test_a_relative_target_starts_in_the_current_folder(graph: kestrix.Graph,
                                                        tmp_path: pathlib.Path,
                                                        monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(tmp_path)
    graph.package.save("saved.obl")

    assert (tmp_path / "saved.obl").is_file()


@pytest.mark.parametrize("name", [b"\xff\xfe.obl", "Ω ☃.obl".encode()],
                         ids=["no UTF-8", "Unicode"])
def test_names_of_targets_keep_their_bytes(graph: kestrix.Graph, tmp_path: pathlib.Path,
                                           name: bytes) -> None:
    graph.package.save(tmp_path / os.fsdecode(name))

    assert os.listdir(os.fsencode(tmp_path)) == [name]


def test_a_new_package_has_to_be_given_a_file(graph: kestrix.Graph) -> None:
    with pytest.raises(ValueError, match="no file yet"):
        graph.package.save()


def test_a_saved_package_is_opened_with_its_edits(session: kestrix.Session, wood: kestrix.Package,
                                                  tmp_path: pathlib.Path) -> None:
    wood.graphs[0].inputs[0].default = 9
    wood.save(tmp_path / "copy.obl")

    assert session.open(tmp_path / "copy.obl").graphs[0].inputs[0].default == 9


def test_files_follow_a_package_that_is_saved_elsewhere(session: kestrix.Session,
                                                        wood: kestrix.Package,
                                                        tmp_path: pathlib.Path) -> None:
    wood.save(tmp_path / "copy.obl")
    copy = session.open(tmp_path / "copy.obl")

    assert copy.resource("oak_color").path.samefile(wood.resource("oak_color").path)
    assert [dependency.path and dependency.path.resolve() for dependency in copy.dependencies] == [
        dependency.path and dependency.path.resolve() for dependency in wood.dependencies]


def test_the_file_of_another_open_package_is_no_target(session: kestrix.Session,
                                                       graph: kestrix.Graph,
                                                       tmp_path: pathlib.Path) -> None:
    other = write_package(tmp_path / "other.obl")
    before = other.read_bytes()
    session.open(other)

    with pytest.raises(kestrix.SaveError, match="belongs to another open package") as raised:
        graph.package.save(other)

    assert (raised.value.path, raised.value.kept_copy) == (other, None)
    assert other.read_bytes() == before


def test_a_file_of_the_package_is_no_target(session: kestrix.Session,
                                            examples: pathlib.Path) -> None:
    wood = session.open(examples / "wood" / "wood_planks.obl")
    picture = wood.resource("oak_color").path
    before = picture.read_bytes()

    with pytest.raises(kestrix.SaveError, match="refers to it"):
        wood.save(picture)

    assert picture.read_bytes() == before


@pytest.mark.parametrize("target", [".", "none/saved.obl"])
def test_a_target_that_cannot_be_written_raises_save_error(graph: kestrix.Graph,
                                                           tmp_path: pathlib.Path,
                                                           target: str) -> None:
    with pytest.raises(kestrix.SaveError) as raised:
        graph.package.save(tmp_path / target)

    assert raised.value.path == tmp_path / target
    assert str(raised.value) == f"{tmp_path / target}: the file cannot be written"
    assert list(tmp_path.iterdir()) == []


@pytest.mark.parametrize("call", ["sync:1:EIO", "sync:1:ENOSPC", "rename:1:EIO"])
def test_a_failing_disk_leaves_the_former_file(examples: pathlib.Path, call: str) -> None:
    path = examples / "effects" / "surface_rust.obl"
    before = path.read_bytes()
    listed = sorted(path.parent.iterdir())

    run = run_python(EDIT_AND_SAVE, path, environment={"LD_PRELOAD": FAULTS, "FAULTS": call})

    assert (run.returncode, run.stdout) == (0, "SaveError the file cannot be written\n"), run.stderr
    assert path.read_bytes() == before
    assert sorted(path.parent.iterdir()) == listed


EDIT_AND_SAVE = """
import sys, kestrix
with kestrix.Session() as session:
    package = session.open(sys.argv[1])
    package.author = "new"
    try:
        package.save()
    except kestrix.SaveError as error:
        print(type(error).__name__, error.reason)
"""


@pytest.mark.parametrize("target", [7, ["a.obl"]])
def test_a_target_is_a_path(graph: kestrix.Graph, target: str) -> None:
    with pytest.raises(TypeError):
        graph.package.save(target)

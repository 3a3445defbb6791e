"""The programs of `examples/python`, run on copies of the example packages."""

from __future__ import annotations

import csv
import io
import pathlib
import shutil
import subprocess
import sys

import kestrix
import pytest
from samples import EXAMPLES, dependency, write_package

PROGRAMS = sorted((EXAMPLES / "python").glob("*.py"))
NO_PRESETS = [pathlib.Path("/nonexistent")]


def run(name: str, *arguments: object, folder: pathlib.Path) -> subprocess.CompletedProcess[str]:
    """Runs a program in a folder."""
    return subprocess.run([sys.executable, EXAMPLES / "python" / f"{name}.py",
                           *map(str, arguments)], cwd=folder, capture_output=True, text=True,
                          check=False)


@pytest.fixture
def library(examples: pathlib.Path) -> pathlib.Path:
    """A library of six packages in their folders."""
    for other in ("old", "assemblies", "large", "python", "library"):
        shutil.rmtree(examples / other)
    return examples


@pytest.fixture
def damaged(library: pathlib.Path) -> pathlib.Path:
    path = library / "noises" / "damaged.obl"
    path.write_text("no document", encoding="ascii")
    return path


def files_of(folder: pathlib.Path) -> dict[pathlib.Path, bytes]:
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*.obl")}


def test_there_are_five_programs() -> None:
    assert [path.stem for path in PROGRAMS] == [
        "list_inputs", "make_variations", "replace_texture", "set_author", "unused_dependencies"]


@pytest.mark.parametrize("program", PROGRAMS, ids=[path.stem for path in PROGRAMS])
def test_a_program_explains_itself(tmp_path: pathlib.Path, program: pathlib.Path) -> None:
    done = run(program.stem, "--help", folder=tmp_path)

    assert done.returncode == 0
    assert done.stdout.startswith(f"usage: {program.name}")
    assert program.read_text(encoding="utf-8").splitlines()[1][3:] in " ".join(done.stdout.split())


@pytest.mark.parametrize("name, arguments", [
    ("list_inputs", ["none"]), ("make_variations", ["none.obl", "surface", "none.png"]),
    ("replace_texture", ["none.png", "none.png", "."]),
    ("replace_texture", ["none.png", "effects/steel_plate.png", "none"]),
    ("set_author", ["Zoë", "none", "new"]), ("unused_dependencies", ["none"])])
def test_a_missing_file_is_named(library: pathlib.Path, name: str, arguments: list[str]) -> None:
    done = run(name, *arguments, folder=library)

    assert done.returncode == 1
    assert "none" in done.stderr
    assert "Traceback" not in done.stderr


def test_list_inputs_writes_one_row_for_each_input(library: pathlib.Path) -> None:
    done = run("list_inputs", "wood", "effects/surface_rust.obl", folder=library)
    rows = list(csv.reader(io.StringIO(done.stdout)))

    assert (done.returncode, done.stderr) == (0, "")
    assert rows[0] == ["package", "graph", "input", "type", "default", "minimum", "maximum",
                       "group", "label"]
    assert rows[1] == [f"{library}/wood/wood_planks.obl", "wood_planks", "plank_count", "int1", "7",
                       "1", "24", "Planks", "Plank count"]
    assert len(rows) == 1 + 14 + 12


def test_list_inputs_writes_a_file(library: pathlib.Path) -> None:
    done = run("list_inputs", ".", "--output", "inputs.csv", folder=library)

    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")
    assert len((library / "inputs.csv").read_text(encoding="utf-8").splitlines()) > 50


def test_list_inputs_names_a_file_that_cannot_be_written(library: pathlib.Path) -> None:
    done = run("list_inputs", "wood", "--output", "none/inputs.csv", folder=library)

    assert (done.returncode, done.stderr) == (1, "none/inputs.csv: No such file or directory\n")


def test_list_inputs_lists_the_others_if_a_package_is_damaged(library: pathlib.Path,
                                                              damaged: pathlib.Path) -> None:
    done = run("list_inputs", "noises", "wood", folder=library)

    assert done.returncode == 1
    assert done.stderr.startswith(f"{damaged}: ")
    assert "plank_count" in done.stdout


def test_set_author_writes_into_every_package(library: pathlib.Path,
                                              tmp_path: pathlib.Path) -> None:
    before = files_of(library)
    done = run("set_author", "Zoë Oak", ".", tmp_path / "signed", folder=library)
    written = files_of(tmp_path / "signed")

    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout.splitlines() == [f"{tmp_path}/signed/{path}" for path in sorted(before)]
    assert files_of(library) == before
    assert written.keys() == before.keys()
    assert all('<author v="Zoë Oak"/>'.encode() in data for data in written.values())


def test_set_author_keeps_all_references(library: pathlib.Path, tmp_path: pathlib.Path) -> None:
    run("set_author", "Zoë Oak", ".", tmp_path / "signed", folder=library)

    assert references_of(tmp_path / "signed") == references_of(library)


def references_of(folder: pathlib.Path) -> list[object]:
    """Returns the files that the packages of a folder refer to, behind all links."""
    with kestrix.Session(NO_PRESETS) as session:
        packages = session.open_all(sorted(folder.rglob("*.obl")), dependencies=False)
        paths = [[*(item.path for item in package.dependencies),
                  *(item.path for item in package.resources)] for package in packages]
        return [path and path.resolve() for path in sum(paths, [])]


@pytest.mark.parametrize("author", ["Ω", "\udcff"])
def test_set_author_refuses_a_name_that_packages_cannot_hold(library: pathlib.Path,
                                                             author: str) -> None:
    done = run("set_author", author, "wood", "signed", folder=library)

    assert done.returncode == 1
    assert done.stderr.startswith("signed/wood_planks.obl: ")
    assert not (library / "signed").exists()


def test_set_author_signs_the_others_if_a_package_is_damaged(library: pathlib.Path,
                                                             damaged: pathlib.Path) -> None:
    done = run("set_author", "Zoë", "noises", "signed", folder=library)

    assert (done.returncode, done.stdout) == (1, "signed/noises.obl\n")
    assert done.stderr.startswith(f"{damaged}: ")


def test_replace_texture_changes_the_packages_that_link_to_it(library: pathlib.Path) -> None:
    before = files_of(library)
    done = run("replace_texture", "wood/bitmaps/oak_color.png", "effects/steel_plate.png", ".",
               folder=library)
    changed = {path for path, data in files_of(library).items() if data != before[path]}

    assert (done.returncode, done.stdout, done.stderr) == (0, "wood/wood_planks.obl\n", "")
    assert changed == {pathlib.Path("wood/wood_planks.obl")}
    with kestrix.Session(NO_PRESETS) as session:
        wood = session.open(library / "wood" / "wood_planks.obl", dependencies=False)
        assert wood.resource("oak_color").path.resolve() == library / "effects" / "steel_plate.png"


def test_replace_texture_names_a_package_that_keeps_it_inside(library: pathlib.Path) -> None:
    before = files_of(library)
    done = run("replace_texture", "wood/bitmaps/oak_grain.png", "effects/steel_plate.png", ".",
               folder=library)

    assert done.returncode == 1
    assert done.stderr == "wood/wood_planks.obl: the resource is kept inside the package\n"
    assert files_of(library) == before


def test_unused_dependencies_finds_none_in_sound_packages(library: pathlib.Path) -> None:
    done = run("unused_dependencies", ".", folder=library)

    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")


def test_unused_dependencies_finds_and_removes_them(library: pathlib.Path) -> None:
    path = write_package(library / "new.obl", dependency("wood/wood_planks.obl", 7),
                         dependency("?himself", 8))
    found = run("unused_dependencies", ".", folder=library)
    removed = run("unused_dependencies", ".", "--remove", folder=library)
    again = run("unused_dependencies", ".", folder=library)

    assert (found.returncode, found.stdout) == (0, f"{path}: {library}/wood/wood_planks.obl\n")
    assert (removed.returncode, removed.stdout) == (0, found.stdout)
    assert (again.returncode, again.stdout) == (0, "")
    assert '"?himself"' in path.read_text(encoding="utf-8")


def test_make_variations_makes_a_package_for_each_picture(library: pathlib.Path) -> None:
    pictures = ["wood/bitmaps/oak_color.png", "effects/steel_plate.png"]
    done = run("make_variations", "effects/surface_rust.obl", "surface", *pictures,
               "--output", "new/variations", "--hide-parameters", folder=library)

    made = [library / "new" / "variations" / f"surface_rust_{name}.obl"
            for name in ("oak_color", "steel_plate")]
    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout.splitlines() == [str(path) for path in made]
    with kestrix.Session() as session:
        packages = session.open_all(made)
        assert [package.graphs[0].identifier for package in packages] == [
            "oak_color", "steel_plate"]
        assert [package.resources[0].path.resolve() for package in packages] == [
            library / picture for picture in pictures]


def test_make_variations_goes_on_behind_a_picture_that_fails(library: pathlib.Path) -> None:
    done = run("make_variations", "effects/surface_rust.obl", "surface", "none.png",
               "effects/steel_plate.png", folder=library)

    assert (done.returncode, done.stdout) == (1, f"{library}/surface_rust_steel_plate.obl\n")
    assert done.stderr.startswith("none.png: ")

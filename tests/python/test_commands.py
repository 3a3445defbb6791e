"""The three commands as functions."""

from __future__ import annotations

import os
import pathlib
import subprocess

import kestrix
import pytest
from samples import BRICKS, EXAMPLES, PRESETS, RUST, WOOD, write_package

STEEL = EXAMPLES / "effects" / "steel_plate.png"


def test_update_writes_packages_with_all_that_they_depend_on(tmp_path: pathlib.Path) -> None:
    report = kestrix.update(BRICKS, output_path=tmp_path, presets_path=PRESETS)

    names = ["brick_wall", "noises", "presets_library"]
    assert report.exit_code == 0
    assert [path.stem for path in report.loaded] == names
    assert report.saved == tuple(tmp_path / f"{name}_updated.obl" for name in names)
    assert all(path.is_file() for path in report.saved)
    assert report.errors == ()


def test_update_takes_several_packages(tmp_path: pathlib.Path) -> None:
    packages = [write_package(tmp_path / f"{name}.obl") for name in "ab"]
    (tmp_path / "new").mkdir()

    report = kestrix.update(packages, output_path=tmp_path / "new", output_name="{inputName}_x")

    assert report.loaded == tuple(packages)
    assert report.saved == (tmp_path / "new" / "a_x.obl", tmp_path / "new" / "b_x.obl")


def test_update_does_what_the_command_does(tmp_path: pathlib.Path) -> None:
    tool = pathlib.Path(kestrix.__file__).parents[4] / "bin" / "kestrix"
    kestrix.update(RUST, output_path=tmp_path, output_name="module")
    subprocess.run([tool, "update", RUST, "--output-path", tmp_path, "--output-name", "tool"],
                   check=True, capture_output=True)

    assert (tmp_path / "module.obl").read_bytes() == (tmp_path / "tool.obl").read_bytes()


def test_the_name_of_a_package_may_begin_like_an_option(tmp_path: pathlib.Path,
                                                        monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(tmp_path)
    write_package(pathlib.Path("--inputs.obl"))

    assert [path.name for path in kestrix.update("--inputs.obl").saved] == [
        "--inputs_updated.obl"]


def test_update_reports_a_missing_package(tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.CommandError, match="none.obl") as raised:
        kestrix.update(tmp_path / "none.obl", output_path=tmp_path)

    assert raised.value.report.exit_code == 1
    assert raised.value.report.saved == ()
    assert str(raised.value) == "\n".join(raised.value.report.errors)


def test_update_without_packages_fails(tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.CommandError):
        kestrix.update([], output_path=tmp_path)


def test_edit_inputs_freezes_and_sets_defaults(session: kestrix.Session,
                                               tmp_path: pathlib.Path) -> None:
    report = kestrix.edit_inputs(BRICKS, freeze=["wear"], output_path=tmp_path, output_name="new",
                                 defaults={"brick_count": (3, 4), "use_custom": True,
                                           "mortar_width": 0.25}, presets_path=PRESETS)
    graph = session.open(tmp_path / "new.obl").graphs[0]

    assert report.saved == (tmp_path / "new.obl",)
    assert "wear" not in [entry.identifier for entry in graph.inputs]
    assert graph.input("brick_count").default == (3, 4)
    assert graph.input("use_custom").default is True
    assert graph.input("mortar_width").default == 0.25


def test_edit_inputs_freezes_to_a_value(session: kestrix.Session,
                                        tmp_path: pathlib.Path) -> None:
    kestrix.edit_inputs(BRICKS, freeze={"mortar_width": 0.75, "light_angle": None},
                        output_path=tmp_path, presets_path=PRESETS)
    graph = session.open(tmp_path / "brick_wall_edited.obl").graphs[0]
    constants = [parameter.function.nodes[0].value for node in graph.nodes
                 for parameter in node.parameters if parameter.function
                 and parameter.function.nodes[0].function == "const_float1"]

    assert (constants.count(0.75), constants.count(0.125)) == (1, 1)


def test_edit_inputs_reports_an_unknown_input(tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.CommandError, match="none"):
        kestrix.edit_inputs(BRICKS, defaults={"none": 1}, output_path=tmp_path,
                            presets_path=PRESETS)

    assert list(tmp_path.iterdir()) == []


def test_specialize_makes_a_graph_with_a_picture(session: kestrix.Session,
                                                 tmp_path: pathlib.Path) -> None:
    report = kestrix.specialize(RUST, images={"surface": STEEL}, hide_parameters=True,
                                output_path=tmp_path, graph_name="rusty_steel")
    package = session.open(tmp_path / "surface_rust_specialized.obl")

    assert report.saved == (tmp_path / "surface_rust_specialized.obl",)
    assert package.graphs[0].identifier == "rusty_steel"
    assert [resource.path.resolve() for resource in package.resources] == [STEEL]


def test_specialize_takes_the_form_of_a_picture(session: kestrix.Session,
                                                tmp_path: pathlib.Path) -> None:
    kestrix.specialize(RUST, images={"surface": kestrix.Image(STEEL, "JPEG", 0.5, True)},
                       output_path=tmp_path)
    resource = session.open(tmp_path / "surface_rust_specialized.obl").resources[0]

    assert resource.cooked_quality == 0.5


def test_specialize_merges_into_a_package(session: kestrix.Session,
                                          tmp_path: pathlib.Path) -> None:
    for name in ("first", "second"):
        kestrix.specialize(RUST, graph_name=name, merge=True, output_path=tmp_path,
                           output_name="all")

    graphs = session.open(tmp_path / "all.obl").graphs
    assert [graph.identifier for graph in graphs] == ["first", "second"]


def test_specialize_reports_an_unknown_input(tmp_path: pathlib.Path) -> None:
    with pytest.raises(kestrix.CommandError) as raised:
        kestrix.specialize(RUST, images={"none": STEEL}, output_path=tmp_path)

    assert raised.value.report.errors


def test_commands_leave_an_open_session_alone(session: kestrix.Session, wood: kestrix.Package,
                                              tmp_path: pathlib.Path) -> None:
    kestrix.update(WOOD, output_path=tmp_path)

    assert session.package(WOOD) == wood


def test_names_of_files_keep_their_bytes(tmp_path: pathlib.Path) -> None:
    path = write_package(tmp_path / os.fsdecode(b"\xff.obl"))

    report = kestrix.update(path, output_path=tmp_path)

    assert report.loaded == (path,)
    assert report.saved == (tmp_path / os.fsdecode(b"\xff_updated.obl"),)


def test_a_path_with_blanks_is_reported_whole(tmp_path: pathlib.Path) -> None:
    folder = tmp_path / " a: b "
    folder.mkdir()
    path = write_package(folder / " c d .obl")

    report = kestrix.update(path, output_path=folder, output_name=" e ")

    assert report.loaded == (path,)
    assert report.saved == (folder / " e .obl",)


@pytest.mark.parametrize("inputs", [7, [None], None])
def test_update_takes_nothing_but_paths(inputs: list[str]) -> None:
    with pytest.raises(TypeError):
        kestrix.update(inputs)


def test_a_report_can_be_unpacked(tmp_path: pathlib.Path) -> None:
    exit_code, loaded, saved, errors = kestrix.update(write_package(tmp_path / "a.obl"),
                                                      output_path=tmp_path)

    assert (exit_code, len(loaded), len(saved), errors) == (0, 1, 1, ())

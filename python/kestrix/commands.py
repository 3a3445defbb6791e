"""The three commands of the tool as functions.

Each starts the installed tool, waits for its end, and returns a report. Open sessions are not
touched, and notice nothing of files that change on the disk."""

from __future__ import annotations

import os
import pathlib
import subprocess
from collections.abc import Iterable, Mapping
from typing import NamedTuple, Union

from . import _places
from .errors import CommandError

Path = Union[str, "os.PathLike[str]"]
Value = Union[bool, int, float, str, Iterable[float]]


class Report(NamedTuple):
    """What a command did.

    `exit_code` is 0, and 1 in a CommandError. `loaded` has the packages that update() opened, with
    those that others depend on; the other commands name none. `saved` has the files that were
    written, and `errors` the lines of the standard error stream."""

    exit_code: int
    loaded: tuple[pathlib.Path, ...]
    saved: tuple[pathlib.Path, ...]
    errors: tuple[str, ...]


class Image(NamedTuple):
    """A picture for an input of a filter.

    `path` is its file. `format` is "RAW" or "JPEG", and `level` the quality of the latter, from 0
    to 1. `tiling` says that the picture repeats."""

    path: Path
    format: str = "RAW"
    level: float = 0.0
    tiling: bool = False


def update(inputs: Path | Iterable[Path], *, output_path: Path | None = None,
           output_name: str | None = None, presets_path: Path | None = None) -> Report:
    """Brings packages, and all that they depend on, to the current format.

    The results go to `output_path`, or to the current folder; "{inputPath}" in it stands for the
    folder of each input. `output_name` is "{inputName}_updated" unless it is given. No input is
    changed, unless it is itself the target. Raises CommandError if a package cannot be opened or
    written."""
    paths = [inputs] if isinstance(inputs, (str, os.PathLike)) else list(inputs)
    arguments = _files(output_path, output_name, presets_path)
    return _run("update", arguments + [f"--inputs={os.fspath(path)}" for path in paths])


def edit_inputs(path: Path, *, freeze: Iterable[str] | Mapping[str, Value | None] = (),
                defaults: Mapping[str, Value] | None = None, output_path: Path | None = None,
                output_name: str | None = None, presets_path: Path | None = None) -> Report:
    """Freezes inputs of the first graph of a package, and sets defaults of others.

    `freeze` has the inputs to remove, with the values that are read in their place; None, or a list
    of names alone, stands for the default. `output_name` is "{inputName}_edited" unless it is given.
    Raises CommandError if an edit is refused or a file cannot be opened or written."""
    frozen = freeze if isinstance(freeze, Mapping) else dict.fromkeys(freeze)
    arguments = _files(output_path, output_name, presets_path)
    for name, constant in frozen.items():
        value = "" if constant is None else f"@{_text(constant)}"
        arguments.append(f"--switch-to-constant={name}{value}")
    for name, default in (defaults or {}).items():
        arguments.append(f"--set-default-value={name}@{_text(default)}")
    return _run("graph-parameters-editor", arguments + [f"--input={os.fspath(path)}"])


def specialize(path: Path, *, images: Mapping[str, Image | Path] | None = None,
               inputs: Iterable[str] = (), hide_parameters: bool = False, merge: bool = False,
               graph_name: str | None = None, output_path: Path | None = None,
               output_name: str | None = None, presets_path: Path | None = None) -> Report:
    """Makes a ready graph of a filter, which is the first graph of a package.

    `images` has pictures for inputs of the filter, and `inputs` those that become inputs of the new
    graph. Its other inputs become inputs too, unless `hide_parameters`. With `merge` the graph is
    added to the package at the target. `graph_name` is "{inputGraph}" and `output_name`
    "{inputName}_specialized" unless they are given. Raises CommandError if the graph cannot be made
    or a file cannot be opened or written."""
    arguments = _files(output_path, output_name, presets_path)
    if graph_name is not None:
        arguments.append(f"--output-graph-name={graph_name}")
    if merge:
        arguments.append("--output-merge")
    if hide_parameters:
        arguments.append("--hide-parameters")
    for name, image in (images or {}).items():
        arguments += [f"--connect-image={option}" for option in _image_options(name, image)]
    arguments += [f"--connect-input={name}" for name in inputs]
    return _run("specialization", arguments + [f"--input={os.fspath(path)}"])


def _files(output_path: Path | None, output_name: str | None,
           presets_path: Path | None) -> list[str]:
    given = {"output-path": output_path, "output-name": output_name, "presets-path": presets_path}
    return [f"--{option}={os.fspath(value)}" for option, value in given.items()
            if value is not None]


def _image_options(name: str, image: Image | Path) -> list[str]:
    given = image if isinstance(image, Image) else Image(image)
    values = {"path": os.fspath(given.path), "format": given.format, "level": repr(given.level),
              "tiling": str(int(given.tiling))}
    return [f"{name}@{parameter}@{value}" for parameter, value in values.items()]


def _text(value: Value) -> str:
    if isinstance(value, bool):
        return str(int(value))
    if isinstance(value, (int, float, str)):
        return str(value)
    return ",".join(str(number) for number in value)


def _run(command: str, arguments: list[str]) -> Report:
    tool = pathlib.Path(__file__).resolve().parent / _places.TOOL
    done = subprocess.run([tool, command, *arguments], capture_output=True, check=False)
    report = _report(done.returncode, os.fsdecode(done.stdout), os.fsdecode(done.stderr))
    if report.exit_code != 0:
        raise CommandError(report)
    return report


def _report(exit_code: int, output: str, errors: str) -> Report:
    """Reads what a command has printed: headings, with paths below them or behind them."""
    paths: dict[str, list[pathlib.Path]] = {"Packages Loaded": [], "Packages Saved": [],
                                            "Package Saved": []}
    heading = ""
    for line in output.splitlines():
        if line.startswith("    "):
            paths.get(heading, []).append(pathlib.Path(line.strip()))
            continue
        heading, _, rest = line.partition(":")
        if rest.strip() and heading in paths:
            paths[heading].append(pathlib.Path(rest.strip()))
    return Report(exit_code, tuple(paths["Packages Loaded"]),
                  tuple(paths["Packages Saved"] + paths["Package Saved"]),
                  tuple(errors.splitlines()))

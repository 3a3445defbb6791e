"""Packages for the tests: the packages of `examples/`, and tiny ones as text."""

from __future__ import annotations

import os
import pathlib
import subprocess
import sys

EXAMPLES = pathlib.Path(os.environ["KESTRIX_EXAMPLES"])
SOURCES = EXAMPLES.parent
PRESETS = EXAMPLES / "presets"
WOOD = EXAMPLES / "wood" / "wood_planks.obl"
BRICKS = EXAMPLES / "bricks" / "brick_wall.obl"
FABRIC = EXAMPLES / "fabrics" / "woven_fabric.obl"
EVERYTHING = EXAMPLES / "mixed" / "everything.obl"
RUST = EXAMPLES / "effects" / "surface_rust.obl"
FACADE = EXAMPLES / "large" / "city_facade.obl"


def name_of(value: type[object] | pathlib.Path) -> str:
    """The name of a parameter in the name of a test."""
    return value.stem if isinstance(value, pathlib.Path) else value.__name__


def leaf(name: str, value: str) -> str:
    return f'<{name} v="{value}"/>'


def dependency(filename: str, uid: int) -> str:
    """A dependency on a file, or on the package itself by the name "?himself"."""
    return ("<dependency>" + leaf("filename", filename) + leaf("uid", str(uid)) +
            leaf("type", "package") + leaf("fileUID", "0") + leaf("versionUID", "0") +
            "</dependency>")


def package_text(*dependencies: str, identifier: str = "tiny", author: str = "") -> str:
    """A package without content."""
    version = "1.1.0.7049"
    return ('<?xml version="1.0" encoding="UTF-8"?><package>' + leaf("packageType", "Kestrix") +
            leaf("identifier", identifier) + leaf("formatVersion", version) +
            leaf("updaterVersion", version) + leaf("platform", "1") + leaf("author", author) +
            leaf("fileUID", "{00000000-0000-0000-0000-000000000001}") + leaf("versionUID", "1") +
            "<configurations>" + leaf("name", "default") + leaf("uid", "2") +
            "<configuration/></configurations><dependencies>" + "".join(dependencies) +
            "</dependencies><content/></package>\n")


def write_package(path: pathlib.Path, *dependencies: str, author: str = "") -> pathlib.Path:
    path.write_text(package_text(*dependencies, author=author), encoding="utf-8")
    return path


def run_python(program: str, *arguments: object,
               environment: dict[str, str] | None = None) -> subprocess.CompletedProcess[str]:
    """Runs a program in an interpreter of its own, which may crash."""
    return subprocess.run([sys.executable, "-X", "faulthandler", "-c", program,
                           *map(str, arguments)], capture_output=True, text=True, check=False,
                          env={**os.environ, **(environment or {})}, timeout=120)

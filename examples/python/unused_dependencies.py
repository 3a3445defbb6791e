#!/usr/bin/env python3
"""Finds dependencies of packages that nothing in the package refers to.

    unused_dependencies.py library
    unused_dependencies.py library --remove

With --remove the dependencies are removed, and the packages are saved where they are. Packages that
cannot be opened or saved are named on standard error, and the exit code is 1."""

from __future__ import annotations

import argparse
import pathlib
import sys

import kestrix

# Nothing lies there, so "obl://" references and all others are saved as they were.
NO_PRESETS = pathlib.Path("/nonexistent")


def check(package: kestrix.Package, remove: bool) -> None:
    unused = package.unused_dependencies()
    for dependency in unused:
        print(f"{package.path}: {dependency.path}")
        if remove:
            dependency.remove()
    if unused and remove:
        package.save()


def main() -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").partition("\n")[0])
    parser.add_argument("folder", type=pathlib.Path, help="the packages, also in folders below it")
    parser.add_argument("--remove", action="store_true", help="remove the dependencies and save")
    arguments = parser.parse_args()
    if not arguments.folder.is_dir():
        print(f"{arguments.folder}: there is no such folder", file=sys.stderr)
        return 1

    failed = 0
    with kestrix.Session([NO_PRESETS]) as session:
        for path in sorted(arguments.folder.rglob("*.obl")):
            try:
                package = session.open(path, dependencies=False)
                check(package, arguments.remove)
                package.close()
            except (kestrix.OpenError, kestrix.SaveError) as error:
                print(error, file=sys.stderr)
                failed = 1
    return failed


if __name__ == "__main__":
    sys.exit(main())

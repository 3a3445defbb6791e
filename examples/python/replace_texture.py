#!/usr/bin/env python3
"""Lets all packages of a folder link to another texture file in the place of one.

    replace_texture.py library/bitmaps/oak.png library/bitmaps/beech.png library

Packages that link to the old file are changed and saved where they are; all others are left alone. A
package that keeps a copy of the file inside, or that cannot be opened or saved, is named on standard
error, and the exit code is 1."""

from __future__ import annotations

import argparse
import pathlib
import sys

import kestrix

# Nothing lies there, so "obl://" references and all others are saved as they were.
NO_PRESETS = pathlib.Path("/nonexistent")


def replace(package: kestrix.Package, old: pathlib.Path, new: pathlib.Path) -> bool:
    """Returns whether the package was changed."""
    resources = [resource for resource in package.resources if resource.path.resolve() == old]
    with package.edit(f"replace {old.name}"):
        for resource in resources:
            resource.link_to(new)
    if resources:
        package.save()
    return bool(resources)


def main() -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").partition("\n")[0])
    parser.add_argument("old", type=pathlib.Path, help="the texture that is replaced")
    parser.add_argument("new", type=pathlib.Path, help="the texture that is used from now on")
    parser.add_argument("folder", type=pathlib.Path, help="the packages, also in folders below it")
    arguments = parser.parse_args()
    for missing in [path for path in (arguments.new, arguments.folder) if not path.exists()]:
        print(f"{missing}: there is no such file", file=sys.stderr)
        return 1

    failed = 0
    with kestrix.Session([NO_PRESETS]) as session:
        for path in sorted(arguments.folder.rglob("*.obl")):
            try:
                package = session.open(path, dependencies=False)
                if replace(package, arguments.old.resolve(), arguments.new):
                    print(path)
                package.close()
            except (kestrix.OpenError, kestrix.SaveError) as error:
                print(error, file=sys.stderr)
                failed = 1
            except (kestrix.EditError, UnicodeEncodeError) as error:
                print(f"{path}: {error}", file=sys.stderr)
                failed = 1
    return failed


if __name__ == "__main__":
    sys.exit(main())

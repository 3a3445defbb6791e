#!/usr/bin/env python3
"""Writes a name as the author into every package of a folder, and saves them in another folder.

    set_author.py "Zoë Oak" library signed

The packages lie in the new folder as in the old one, and their references lead to the same files.
Packages that cannot be opened or saved are named on standard error, and the exit code is 1."""

from __future__ import annotations

import argparse
import pathlib
import sys

import kestrix

# Nothing lies there, so "obl://" references and all others are saved as they were.
NO_PRESETS = pathlib.Path("/nonexistent")


def sign(session: kestrix.Session, source: pathlib.Path, author: str, target: pathlib.Path) -> None:
    package = session.open(source, dependencies=False)
    package.author = author
    target.parent.mkdir(parents=True, exist_ok=True)
    package.save(target)
    package.close()


def main() -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").partition("\n")[0])
    parser.add_argument("author")
    parser.add_argument("folder", type=pathlib.Path, help="the packages, also in folders below it")
    parser.add_argument("target", type=pathlib.Path, help="the folder for the new packages")
    arguments = parser.parse_args()
    if not arguments.folder.is_dir():
        print(f"{arguments.folder}: there is no such folder", file=sys.stderr)
        return 1

    failed = 0
    with kestrix.Session([NO_PRESETS]) as session:
        for source in sorted(arguments.folder.rglob("*.obl")):
            target = arguments.target / source.relative_to(arguments.folder)
            try:
                sign(session, source, arguments.author, target)
                print(target)
            except (kestrix.OpenError, kestrix.SaveError) as error:
                print(error, file=sys.stderr)
                failed = 1
            except (OSError, UnicodeEncodeError) as error:
                print(f"{target}: {error}", file=sys.stderr)
                failed = 1
    return failed


if __name__ == "__main__":
    sys.exit(main())

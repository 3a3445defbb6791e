#!/usr/bin/env python3
"""Lists the inputs of all graphs of a library of packages as CSV.

    list_inputs.py library > inputs.csv
    list_inputs.py library/wood.obl library/stone --output inputs.csv

A folder means all packages below it. Packages that cannot be opened are named on standard error;
the inputs of all others are listed, and the exit code is 1."""

from __future__ import annotations

import argparse
import csv
import pathlib
import sys
from collections.abc import Iterator

import kestrix

COLUMNS = ["package", "graph", "input", "type", "default", "minimum", "maximum", "group", "label"]


def packages_below(paths: list[pathlib.Path]) -> list[pathlib.Path]:
    return [found for path in paths
            for found in (sorted(path.rglob("*.obl")) if path.is_dir() else [path])]


def rows_of(package: kestrix.Package) -> Iterator[list[object]]:
    for graph in package.graphs:
        for entry in graph.inputs:
            yield [package.path, graph.identifier, entry.identifier, entry.type, entry.default,
                   entry.minimum, entry.maximum, entry.group, entry.label]


def main() -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").partition("\n")[0])
    parser.add_argument("paths", nargs="+", type=pathlib.Path, help="packages, and folders of them")
    parser.add_argument("--output", default=sys.stdout.fileno(),
                        help="the CSV file; standard output if not given")
    arguments = parser.parse_args()

    with kestrix.Session() as session:
        try:
            session.open_all(packages_below(arguments.paths), dependencies=False)
        except kestrix.OpenError as error:
            print(error, file=sys.stderr)
        try:
            with open(arguments.output, "w", encoding="utf-8", errors="surrogateescape",
                      newline="") as file:
                table = csv.writer(file)
                table.writerow(COLUMNS)
                for package in session.packages:
                    table.writerows(rows_of(package))
        except OSError as error:
            print(f"{arguments.output}: {error.strerror}", file=sys.stderr)
            return 1
        return 1 if session.failures else 0


if __name__ == "__main__":
    sys.exit(main())

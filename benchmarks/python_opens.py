#!/usr/bin/env python3
"""Opens a package many times from Python, and prints the memory of the process on the way.

    PYTHONPATH=build/release/python/lib/python3.11/dist-packages benchmarks/python_opens.py PACKAGE

A session opens, walks and closes the package ten times, and is closed then. The next one follows."""

from __future__ import annotations

import argparse
import gc
import pathlib
import resource

import kestrix

SHOWN = (10, 100, 1000, 2500, 5000, 7500, 10000)


def resident() -> int:
    """Returns the pages of the process that are in memory, in KiB."""
    pages = pathlib.Path("/proc/self/statm").read_text(encoding="ascii").split()[1]
    return int(pages) * resource.getpagesize() // 1024


def open_and_close(session: kestrix.Session, path: pathlib.Path) -> None:
    package = session.open(path, allow_missing=True)
    for graph in package.graphs:
        for node in graph.nodes:
            for parameter in node.parameters:
                parameter.value
    for opened in session.packages:
        opened.close()


def main() -> None:
    parser = argparse.ArgumentParser(description=(__doc__ or "").partition("\n")[0])
    parser.add_argument("package", type=pathlib.Path)
    parser.add_argument("--presets-path", type=pathlib.Path, default=pathlib.Path())
    arguments = parser.parse_args()

    count = 0
    while count < SHOWN[-1]:
        with kestrix.Session([arguments.presets_path]) as session:
            for _ in range(10):
                open_and_close(session, arguments.package)
                count += 1
        if count in SHOWN:
            gc.collect()
            print(f"{count:6} opens: {resident()} KiB", flush=True)


if __name__ == "__main__":
    main()

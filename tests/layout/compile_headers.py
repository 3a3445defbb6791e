#!/usr/bin/env python3
"""Compiles each header of Kestrix by itself, without writing anything.

  compile_headers.py SOURCES BUILD

Takes compiler and options of a source of the same folder from compile_commands.json in BUILD. Prints
the errors of each header that needs another include before it, and answers 1 if there is one.
"""

import concurrent.futures
import json
import os
import pathlib
import shlex
import subprocess
import sys

FOLDERS = ["common", "data", "core", "kestrix", "archives", "imageformats", "console", "kit",
           "cli"]
# Whose options do for a header of a folder without sources.
STAND_INS = {"kestrix": "core"}


def options(command):
    """Returns the compile command of a source up to its output, without the cache and the file."""
    words = shlex.split(command)
    words = words[next(i for i, word in enumerate(words) if word.endswith(("++", "++-12", "++-14"))):]
    return words[:words.index("-o")]


def commands(sources, build):
    """Returns the options of one source for each folder with sources in it or below."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        file = pathlib.Path(entry["file"])
        if sources in file.parents and build not in file.parents:
            for folder in file.relative_to(sources).parents:
                found.setdefault(folder, options(entry["command"]))
    return found


def command_for(header, by_folder):
    """Returns the options of the nearest folder around a header."""
    stand_in = STAND_INS.get(header.parts[0])
    folders = [pathlib.Path(stand_in)] if stand_in else header.parents
    return next(by_folder[folder] for folder in folders if folder in by_folder)


def compile_alone(sources, header, command):
    result = subprocess.run(command + ["-fsyntax-only", "-x", "c++", "-"], text=True,
                            input=f'#include "{sources / header}"\n', capture_output=True,
                            check=False)
    return result.stderr if result.returncode else ""


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    sources, build = (pathlib.Path(argument).resolve() for argument in arguments)
    by_folder = commands(sources, build)
    headers = [path.relative_to(sources) for folder in FOLDERS
               for path in sorted((sources / folder).rglob("*.h"))]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        errors = list(pool.map(
            lambda header: compile_alone(sources, header, command_for(header, by_folder)), headers))
    for header, error in zip(headers, errors):
        if error:
            print(f"{header} does not compile by itself:\n{error}")
    print(f"{len(headers)} headers, {sum(map(bool, errors))} with errors")
    return 1 if any(errors) or not headers else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

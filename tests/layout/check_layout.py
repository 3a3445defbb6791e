#!/usr/bin/env python3
"""Checks what the sources of Kestrix include and print against the rules of CONTRIBUTING.md.

  check_layout.py SOURCES floors     each folder and room includes only what is above it there
  check_layout.py SOURCES public     public headers and kit/ include no internal header
  check_layout.py SOURCES printing   only the programs and ProgramOptions write to standard streams

Prints each line that breaks the rule, and answers 1 if there is one.
"""

import pathlib
import re
import sys

PUBLIC = "kestrix/common/include/ksx/core"
PUBLIC_KIT = "kestrix/common/include/ksx/kit"

# Folders from the lowest to the highest. The rooms of core/ follow, in the order of CONTRIBUTING.md;
# above them come the libraries that are loaded at need, and the programs.
BELOW_ROOMS = ["common/data", "common/core", "data/content", "data/desc"]
ABOVE_ROOMS = ["archives", "imageformats", "kit", "console", "kit/command", "cli"]

INCLUDE_ROOTS = ["", "common/data/include", "common/core/include", "kestrix/common/include", "core",
                 "console", "kit", "cli"]

# Public headers that have no source to tell their room.
ROOM_OF_HEADER = {
    "datacontext": "parameter",
    "follow": "editing",
    "ilibraryservices": "package",
    "inheritancemethod": "parameter",
    "inheritedparamslistener": "parameter",
    "lazysignal": "editing",
    "lazysignalconnect": "editing",
    "listenerof": "editing",
    "stage": "editing",
    "updatestage": "reading",
}

PRINTING = re.compile(r"std::(cout|cerr|clog)\b|\b(f?printf|fputs|fputc|puts|qDebug|qInfo)\s*\("
                      r"|\b(stdout|stderr)\b")
MAY_PRINT = re.compile(r"(cli|console|kit/command)/|common/core/(programoptions|programcommand)\.cpp$"
                       # Writes the log of commands to a file that it opened.
                       r"|common/core/commandmanager\.cpp$")


def rooms(sources):
    """Returns the rooms of core/ from the lowest to the highest, as CONTRIBUTING.md lists them."""
    text = (sources / "CONTRIBUTING.md").read_text()
    section = re.search(r"^## The rooms of `core/`\n(.*?)(?=^## |\Z)", text, re.M | re.S)
    found = re.findall(r"^\| `(\w+)/` \|", section.group(1), re.M) if section else []
    if not found:
        sys.exit("CONTRIBUTING.md has no table of rooms")
    return found


def code_files(sources):
    for folder in ["common", "data", "core", "kestrix", "archives", "imageformats", "console",
                   "kit", "cli"]:
        for path in sorted((sources / folder).rglob("*")):
            if path.suffix in (".h", ".cpp", ".inc"):
                yield path.relative_to(sources).as_posix()


class Layout:
    def __init__(self, sources):
        self.sources = sources
        self.rooms = rooms(sources)
        self.files = list(code_files(sources))
        self.known = set(self.files)
        self.order = BELOW_ROOMS + ["core/" + room for room in self.rooms] + ABOVE_ROOMS
        self.room_of_source = {}
        for file in self.files:
            match = re.fullmatch(r"core/(\w+)/core(?:behavior)?(\w+)\.cpp", file)
            if match:
                self.room_of_source[match.group(2)] = match.group(1)

    def includes(self, file):
        """Yields the line number and the file of each include that leads into the project."""
        for number, line in enumerate((self.sources / file).read_text().splitlines(), 1):
            match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            if not match:
                continue
            beside = (pathlib.PurePosixPath(file).parent / match.group(1)).as_posix()
            for candidate in [beside] + [f"{root}/{match.group(1)}".lstrip("/")
                                         for root in INCLUDE_ROOTS]:
                if candidate in self.known:
                    yield number, candidate
                    break

    def place(self, file):
        """Returns the folder or room that a file belongs to, or None."""
        if file.startswith(PUBLIC):
            stem = pathlib.PurePosixPath(file).stem
            room = self.room_of_source.get(stem) or ROOM_OF_HEADER.get(stem)
            return "core/" + room if room else None
        if file.startswith(PUBLIC_KIT):
            return "kit"
        return max((place for place in self.order if file.startswith(place + "/")), key=len,
                   default=None)


def check_floors(layout):
    for file in layout.files:
        here = layout.place(file)
        for number, target in layout.includes(file):
            there = layout.place(target)
            if here and there and layout.order.index(there) > layout.order.index(here):
                yield f"{file}:{number}: {here} includes {target}, which is above it"
        if here is None:
            yield f"{file}: belongs to no folder or room of CONTRIBUTING.md"


def is_internal(header):
    """Returns whether a header of the libraries is not installed."""
    return (header.startswith(("core/", "archives/", "imageformats/"))
            or re.match(r"common/\w+/(?!include/)", header) is not None)


def check_public(layout):
    for file in layout.files:
        if not file.startswith((PUBLIC, PUBLIC_KIT, "kit/")):
            continue
        for number, target in layout.includes(file):
            if is_internal(target):
                yield f"{file}:{number}: includes {target}, which is not installed"


def check_printing(layout):
    for file in layout.files:
        if MAY_PRINT.search(file):
            continue
        for number, line in enumerate((layout.sources / file).read_text().splitlines(), 1):
            if PRINTING.search(line.split("//")[0]):
                yield f"{file}:{number}: writes to a standard stream"


CHECKS = {"floors": check_floors, "public": check_public, "printing": check_printing}


def main(arguments):
    if len(arguments) != 2 or arguments[1] not in CHECKS:
        print(__doc__, file=sys.stderr)
        return 2
    faults = list(CHECKS[arguments[1]](Layout(pathlib.Path(arguments[0]))))
    print("\n".join(faults) if faults else "no fault")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

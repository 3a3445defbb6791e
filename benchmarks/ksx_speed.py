#!/usr/bin/env python3
"""Times `ksx` on a large pair of packages and on a library, and prints the figures as Markdown.

Builds nothing: the programs are searched for in the build folder. Figures are medians."""
import argparse
import os
import re
import shutil
import sys
import tempfile

from run_benchmarks import LARGE_GRAPHS, SMALL_NODES, Failure, find_programs, median, run, table, verdict

DIFF_RATIO = 3.0            # of the cpu of a comparison to that of reading both packages
DIFF_BYTES_PER_BYTE = 4.0   # of memory, for both packages
BRIEF_SECONDS = 2.0         # of cpu for the heads of LIBRARY_PACKAGES packages
LIBRARY_PACKAGES = 10000


def change(source, target):
    """Copies a package with another value in one parameter of twenty."""
    count = 0

    def changed(match):
        nonlocal count
        count += 1
        return match[0] if count % 20 else match[1] + b"0.875" + match[3]

    with open(source, "rb") as file:
        text = file.read()
    pattern = rb'(<constantValueFloat1><value v=")([^"]*)(")'
    with open(target, "wb") as file:
        file.write(re.sub(pattern, changed, text))


def renumber(source, target):
    """Copies a package whose graphs have other numbers for all nodes, as from another clock."""
    with open(source, "rb") as file:
        text = file.read()
    pattern = (rb'(<compNode><uid v="|<connRef><value v=")(\d{7,})(")(?![^<]*/></connRef><type)')
    with open(target, "wb") as file:
        file.write(re.sub(pattern, lambda match: match[1] + b"1" + match[2] + match[3], text))


class Speed:
    def __init__(self, programs, ksx, folder, runs):
        self.programs, self.ksx, self.folder, self.runs = programs, ksx, folder, runs
        self.log = os.path.join(folder, "errors.txt")

    def time(self, command, expected=0):
        return median([run(command, self.log, expected) for _ in range(self.runs)])

    def generate(self, name, graphs, *options):
        path = os.path.join(self.folder, name)
        run([self.programs["generatepackage"], str(graphs), path, *options], self.log)
        return path

    def comparisons(self):
        large = self.generate("large.obl", LARGE_GRAPHS)
        size = os.path.getsize(large)
        changed = os.path.join(self.folder, "changed.obl")
        update = self.time([self.programs["kestrix"], "update", large, "--output-path",
                            self.folder, "--output-name", "copy"])
        reading = self.time([self.ksx, "info", large])
        rows = [["one update", f"{update.wall:.2f}", f"{update.cpu:.2f}", "", ""],
                ["one reading, by info", f"{reading.wall:.2f}", f"{reading.cpu:.2f}", "", ""]]
        for label, make in (("equal", shutil.copyfile), ("a value in 20 changed", change),
                            ("nodes of other numbers", renumber)):
            make(large, changed)
            used = self.time([self.ksx, "diff", large, changed], 0 if label == "equal" else 1)
            ratio, memory = used.cpu / (2 * reading.cpu), used.memory / (2 * size)
            rows.append([f"diff, {label}", f"{used.wall:.2f}", f"{used.cpu:.2f}",
                         f"{ratio:.2f}, {verdict(ratio, DIFF_RATIO)}",
                         f"{memory:.2f}, {verdict(memory, DIFF_BYTES_PER_BYTE)}"])
        table(f"Two packages of {size / 1e6:.0f} MB, {self.runs} runs",
              ["Run", "wall s", "cpu s", "cpu / two readings", "peak bytes per byte of both"], rows)
        os.remove(large)
        os.remove(changed)

    def library(self):
        folder = os.path.join(self.folder, "library")
        os.mkdir(folder)
        first = self.generate("small.obl", 1, "--nodes", str(SMALL_NODES))
        for number in range(LIBRARY_PACKAGES):
            shutil.copyfile(first, os.path.join(folder, f"{number}.obl"))
        rows = []
        for label, words in (("info --brief", ["info", "--brief"]), ("info", ["info", "--json"]),
                             ("check", ["check"])):
            used = self.time([self.ksx, *words, folder])
            bar = verdict(used.cpu, BRIEF_SECONDS) if label == "info --brief" else ""
            rows.append([label, f"{used.wall:.2f}", f"{used.cpu:.2f}", bar,
                         f"{used.memory / 2**20:.0f}"])
        table(f"A library of {LIBRARY_PACKAGES} packages of {os.path.getsize(first) / 1e3:.0f} kB",
              ["Run", "wall s", "cpu s", f"bar {BRIEF_SECONDS:g} s", "peak MiB"], rows)


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build-dir", required=True, help="where the programs were built")
    parser.add_argument("--runs", type=int, default=3, help="runs of each program (%(default)s)")
    parser.add_argument("--work-dir", help="folder for a temporary folder of 1.3 GB")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    try:
        programs = find_programs(arguments.build_dir)
        ksx = os.path.join(os.path.abspath(arguments.build_dir), "bin/ksx")
        with tempfile.TemporaryDirectory(prefix="kestrix-", dir=arguments.work_dir) as folder:
            speed = Speed(programs, ksx, folder, arguments.runs)
            speed.library() # first: a child has at least the memory that this script has had
            speed.comparisons()
    except Failure as failure:
        print(f"Error! {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())

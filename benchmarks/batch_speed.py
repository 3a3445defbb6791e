#!/usr/bin/env python3
"""Times `ksx batch` on a library against one call of `kestrix` for each group of packages that need
each other, and prints the figures as Markdown.

Most packages are copies of the old examples, of several versions, and some are current; they have
about 22 kB, and of seven packages two need another one and one needs presets. Builds nothing."""
import argparse
import os
import pathlib
import shutil
import sys
import tempfile

from run_benchmarks import SMALL_NODES, Failure, find_programs, run, table, verdict

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent / "examples/old"
# The packages of one folder of the library, each group with what it needs.
GROUPS = (("grain", "parquet"), ("pavement", "market_square"), ("speckles",), ("felt",), ("current",))
FOLDER_PACKAGES = sum(len(group) for group in GROUPS)
OVER_PLAIN_CALLS = 1.05  # of the cpu
TWO_JOBS_RATIO = 0.55    # of the wall clock time


class Library:
    def __init__(self, programs, ksx, folder, packages, runs):
        self.programs, self.ksx, self.folder, self.runs = programs, ksx, folder, runs
        self.plans = 0
        self.log = os.path.join(folder, "errors.txt")
        self.root = os.path.join(folder, "library")
        self.presets = os.path.join(self.root, "presets")
        shutil.copytree(EXAMPLES / "presets", self.presets)
        current = os.path.join(folder, "current.obl")
        run([programs["generatepackage"], "1", current, "--nodes", str(SMALL_NODES)], self.log)
        self.folders = [os.path.join(self.root, f"{number:05}")
                        for number in range(packages // FOLDER_PACKAGES)]
        for name in self.folders:
            os.mkdir(name)
            for package in (name for group in GROUPS for name in group):
                source = current if package == "current" else EXAMPLES / f"{package}.obl"
                shutil.copyfile(source, os.path.join(name, f"{package}.obl"))

    def plan(self, *options):
        """Each plan has a target of its own: file systems may be slow where much was removed."""
        self.plans += 1
        plan = os.path.join(self.folder, f"{self.plans}.json")
        used = run([self.ksx, "batch", "plan", "update", self.root, "--to",
                    os.path.join(self.folder, str(self.plans)), "--presets-path", self.presets,
                    "-o", plan, *options], self.log)
        return plan, used

    def batch(self, part, plan, jobs):
        return run([self.ksx, "batch", part, plan, "--jobs", str(jobs)], self.log)

    def best_run(self, jobs, *options):
        """The run with the least wall clock time."""
        return min((self.batch("run", self.plan(*options)[0], jobs) for _ in range(self.runs)),
                   key=lambda used: used.wall)

    def plain_calls(self):
        """xargs starts the calls, which costs less than to do it here."""
        calls = os.path.join(self.folder, "calls.txt")
        with open(calls, "w", encoding="utf-8") as file:
            for name in self.folders:
                target = os.path.join(self.folder, "plain", os.path.basename(name))
                os.makedirs(target, exist_ok=True)
                for group in GROUPS:
                    files = " ".join(os.path.join(name, f"{package}.obl") for package in group)
                    file.write(f"{files} --output-path {target}\n")
        return run(["/usr/bin/xargs", "-a", calls, "-L", "1", self.programs["kestrix"], "update",
                    "--presets-path", self.presets], self.log)


def measure(library, packages):
    plain = library.plain_calls()
    one, two = library.best_run(1), library.best_run(2)
    all_or_none = library.best_run(2, "--all-or-none")
    plan, planning = library.plan()
    library.batch("run", plan, 2)
    verify = library.batch("verify", plan, 2)
    calls = len(library.folders) * len(GROUPS)
    over = verdict(one.cpu / plain.cpu, OVER_PLAIN_CALLS)
    scaling = verdict(two.wall / one.wall, TWO_JOBS_RATIO)
    table(f"A library of {packages} packages, the best of {library.runs} runs",
          ["Run", "wall s", "cpu s", "peak MiB", "bar"],
          [[label, f"{used.wall:.2f}", f"{used.cpu:.2f}", f"{used.memory / 2**20:.0f}", bar]
           for label, used, bar in (
               (f"{calls} calls of kestrix update", plain, ""), ("plan", planning, ""),
               ("run --jobs 1", one, f"cpu {one.cpu / plain.cpu:.2f} of plain calls, {over}"),
               ("run --jobs 2", two, f"wall {two.wall / one.wall:.2f} of one job, {scaling}"),
               ("verify --jobs 2", verify, ""), ("run --jobs 2, all or none", all_or_none, ""))])


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build-dir", required=True, help="where the programs were built")
    parser.add_argument("--runs", type=int, default=3, help="runs of each program (%(default)s)")
    parser.add_argument("--packages", type=int, default=10000, help="(%(default)s)")
    parser.add_argument("--work-dir", help="folder for a temporary folder of 4 GB")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    try:
        programs = find_programs(arguments.build_dir)
        ksx = os.path.join(os.path.abspath(arguments.build_dir), "bin/ksx")
        with tempfile.TemporaryDirectory(prefix="kestrix-", dir=arguments.work_dir) as folder:
            packages = arguments.packages // FOLDER_PACKAGES * FOLDER_PACKAGES
            measure(Library(programs, ksx, folder, packages, arguments.runs), packages + 1)
    except Failure as failure:
        print(f"Error! {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())

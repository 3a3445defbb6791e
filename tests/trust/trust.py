#!/usr/bin/env python3
"""Proves the tool's promises by attacking them, and prints a table of what was run and found.

Each part is a module beside this one with a sentence as its text, TITLE, and run(context), which
returns an Outcome. docs/reliability.md says which promise each part is about.
"""

import argparse
import concurrent.futures
import dataclasses
import datetime
import importlib
import os
import pathlib
import random
import shutil
import sys
import tempfile
import time

import runs

HERE = pathlib.Path(__file__).resolve().parent
PROJECT = HERE.parents[1]
FIXED_SEED = 1
# In the order in which they run.
PARTS = ["mutants", "truncation", "kills", "iofaults", "diskfull", "memory", "shapes", "pictures",
         "metamorphic"]
# Take too long for each run, and so run only where they are named.
SLOW_PARTS = ["valgrind"]
MOST_FAILURES = 20  # are printed of one part


@dataclasses.dataclass
class Outcome:
    runs: int
    failures: list  # texts: what was broken, and how to see it again
    notes: list = dataclasses.field(default_factory=list)  # texts: what was seen and is no failure

    def add(self, other):
        self.runs += other.runs
        self.failures += other.failures
        self.notes += other.notes


@dataclasses.dataclass
class Context:
    """What a part is given.

    `release` and `sanitized` are build folders. `share` is the part of the full number of runs that
    is wanted, 1 for all. `seeds` are a fixed one and one of the day."""

    release: pathlib.Path
    sanitized: pathlib.Path
    seeds: list
    share: float
    jobs: int
    folder: pathlib.Path  # empty, of this part alone; removed at the end
    kept: pathlib.Path  # for files that a failure names; they stay

    def __post_init__(self):
        self.workplace = runs.Workplace(self.folder)

    def number(self, full):
        """The share of that number of runs, at least one."""
        return max(1, round(full * self.share))

    def random(self, seed, case):
        """A generator of random numbers of that case alone, whichever thread it runs in."""
        return random.Random(f"{seed}-{case}")

    def map(self, function, items):
        """Calls the function for all items, in threads, and returns a list of the results."""
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            return list(pool.map(function, items))

    def outcome_of(self, check, cases):
        """Runs check(case), which returns None or the text of a failure, on all cases, in threads."""
        cases = list(cases)
        texts = self.map(check, cases)
        return Outcome(len(cases), [text for text in texts if text is not None])

    def keep(self, name, content):
        """Keeps bytes, or a copy of a folder, that a failure needs, and returns the place."""
        self.kept.mkdir(parents=True, exist_ok=True)
        place = self.kept / name
        if isinstance(content, bytes):
            place.write_bytes(content)
        else:
            shutil.copytree(content, place, dirs_exist_ok=True, symlinks=True)
        return place


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("parts", nargs="*", metavar="PART",
                        help=f"of {', '.join(PARTS)}, which run if none is named, and "
                             f"{', '.join(SLOW_PARTS)}")
    parser.add_argument("--release", type=pathlib.Path, default=PROJECT / "build/release")
    parser.add_argument("--sanitized", type=pathlib.Path, default=PROJECT / "build/sanitize")
    parser.add_argument("--share", type=float, default=1, help="of the full number of runs")
    parser.add_argument("--seed", type=int, help="instead of the fixed one and that of the day")
    parser.add_argument("--jobs", type=int, default=2)
    arguments = parser.parse_args()
    unknown = set(arguments.parts) - {*PARTS, *SLOW_PARTS}
    if unknown:
        parser.error(f"no part is called {', '.join(sorted(unknown))}")
    return arguments


def run_part(name, arguments, seeds, root):
    module = importlib.import_module(name)
    folder = pathlib.Path(root, name)
    folder.mkdir()
    context = Context(arguments.release.resolve(), arguments.sanitized.resolve(), seeds,
                      arguments.share, arguments.jobs, folder, PROJECT / "build/trust" / name)
    start = time.monotonic()
    outcome = module.run(context)
    shutil.rmtree(folder)
    print(f"{module.TITLE:60} {outcome.runs:7} runs {len(outcome.failures):4} failures "
          f"{time.monotonic() - start:6.0f} s", flush=True)
    for text in outcome.notes + outcome.failures[:MOST_FAILURES]:
        print(f"  {text}", flush=True)
    return outcome


def fastest_place():
    """The file system in memory where it has room, as a disk would only make all slow."""
    memory = "/dev/shm"
    has_room = os.path.isdir(memory) and shutil.disk_usage(memory).free >= 1 << 30
    return memory if has_room else None


def main():
    arguments = parse_arguments()
    day = datetime.date.today().toordinal()
    seeds = [FIXED_SEED, day] if arguments.seed is None else [arguments.seed]
    print(f"trust: seeds {' '.join(map(str, seeds))}", flush=True)
    with tempfile.TemporaryDirectory(prefix="kestrix-trust-", dir=fastest_place()) as root:
        outcomes = [run_part(name, arguments, seeds, root) for name in arguments.parts or PARTS]
    failures = sum(len(outcome.failures) for outcome in outcomes)
    print(f"trust: {sum(outcome.runs for outcome in outcomes)} runs, {failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Runs batches whose results appear together: killed and failing at each step, and gone on with."""

import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import unittest

from batchlibrary import GROUP, NEED, PACKAGE, results_in

KSX = pathlib.Path(sys.argv[1]).resolve()
FAULTS = pathlib.Path(sys.argv[2]).resolve()
# Calls of the system, and whether the state behind one differs from that before the next one.
STEPS = {"rename": True, "link": True, "remove": True, "open": False, "write": False, "sync": False,
         "stat": False}
UNITS = {None: (), "component": ("--all-or-none",), "plan": ("--all-or-none", "--whole-plan")}


def write_package(path, author, needs=()):
    text = PACKAGE.format(name=path.stem, groups=GROUP.format(1),
                          needs="".join(NEED.format(f"{need}.obl", 1000 + place)
                                        for place, need in enumerate(needs)))
    path.write_text(text.replace('"me"', f'"{author}"'))


def write_library(folder, author):
    """Components of three packages, of two, and of one."""
    folder.mkdir(exist_ok=True)
    for name, needs in (("a1", ()), ("a2", ("a1",)), ("a3", ("a2",)), ("b1", ()), ("b2", ("b1",)),
                        ("c1", ())):
        write_package(folder / f"{name}.obl", author, needs)


class Units(unittest.TestCase):
    def setUp(self):
        # pylint: disable=consider-using-with
        # In memory, since each run waits for the disk many times.
        memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        self.directory = tempfile.TemporaryDirectory(dir=memory)
        self.addCleanup(self.directory.cleanup)
        self.folder = pathlib.Path(self.directory.name)
        self.target = self.folder / "out"

    def batch(self, *arguments, **environment):
        return subprocess.run([KSX, "batch", *arguments], cwd=self.folder, text=True,
                              capture_output=True, check=False,
                              env={**os.environ, **environment})

    def plan(self, unit, *options, target="out"):
        planned = self.batch("plan", "update", "lib", "--to", target, "--clock", "7", "-o",
                             f"{target}.json", *UNITS[unit], *options)
        self.assertIn(planned.returncode, (0, 1), planned.stderr)

    def results_of(self, author, unit=None):
        """The results of a library whose packages have that author."""
        write_library(self.folder / "lib", author)
        target = f"expected-{author}"
        self.plan(unit, target=target)
        run = self.batch("run", f"{target}.json")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return results_in(self.folder / target)

    def make_former(self, former):
        """Results of an earlier run, of which one component has none."""
        subprocess.run(["rm", "-rf", self.target], check=True)
        self.target.mkdir()
        for name, content in former.items():
            if not name.startswith("b"):
                (self.target / name).write_bytes(content)
        (self.target / "a1.obl").chmod(0o640)

    def waiting(self):
        """Files of the state folder that only a placement has."""
        state = self.target / ".ksx-batch"
        return sorted(path.relative_to(state).as_posix() for path in state.rglob("*")
                      if path.is_file() and re.match(r"staged/|former/|placing-|verify-",
                                                     path.relative_to(state).as_posix())
                      and path.name != "placing.lock")

    def components(self, results, former, latest):
        """The state of each component: the results of which library it has."""
        states = {}
        for component in "abc":
            names = [name for name in latest if name.startswith(component)]
            if all(results.get(name) == latest[name] for name in names):
                states[component] = "latest"
            elif all(results.get(name) == (None if component == "b" else former[name])
                     for name in names):
                states[component] = "former"
            else:
                states[component] = "mixed"
        return states

    def calls(self, unit):
        """How often a whole run makes each of the calls."""
        counts = self.folder / "counts"
        self.plan(unit)
        self.batch("run", "out.json", LD_PRELOAD=str(FAULTS), FAULT_COUNTS=str(counts))
        words = dict(line.split() for line in counts.read_text().splitlines())
        return {word: int(words[word]) for word in STEPS}

    def test_gives_the_same_bytes_as_without(self):
        expected = self.results_of("me")
        self.assertEqual(self.results_of("me", "component"), expected)
        self.assertEqual(len(expected), 6)
        self.directory.cleanup()
        self.folder.mkdir()
        self.assertEqual(self.results_of("me", "plan"), expected)

    def test_keeps_the_permissions_of_former_results_and_leaves_nothing_behind(self):
        former = self.results_of("old")
        latest = self.results_of("new")
        for unit in ("component", "plan"):
            self.make_former(former)
            self.plan(unit)
            run = self.batch("run", "out.json")
            self.assertEqual((run.returncode, run.stdout),
                             (0, "done: 6, failed: 0, left as they are: 0\n"))
            self.assertEqual(results_in(self.target), latest)
            self.assertEqual((self.target / "a1.obl").stat().st_mode & 0o777, 0o640)
            self.assertEqual(self.waiting(), [])
            self.assertEqual(self.batch("status", "out.json").returncode, 0)
            again = self.batch("resume", "out.json")
            self.assertEqual(again.stdout, "done: 0, failed: 0, left as they are: 6\n")

    def test_leaves_a_component_alone_of_which_one_package_fails(self):
        former = self.results_of("old")
        latest = self.results_of("new")
        self.make_former(former)
        self.plan("component")
        (self.folder / "lib/a2.obl").write_text("damaged")
        run = self.batch("run", "out.json")
        self.assertEqual(run.returncode, 2)
        self.assertIn("lib/a1.obl: ", run.stderr)
        self.assertIn("no package of its component has a result: ", run.stderr)
        self.assertEqual(self.components(results_in(self.target), former, latest),
                         {"a": "former", "b": "latest", "c": "latest"})
        self.assertEqual(self.waiting(), [])

    def test_leaves_all_alone_if_one_package_of_the_plan_fails_and_goes_on_when_it_is_mended(self):
        former = self.results_of("old")
        latest = self.results_of("new")
        self.make_former(former)
        self.plan("plan", "--shards", "3")
        text = (self.folder / "lib/c1.obl").read_text()
        (self.folder / "lib/c1.obl").write_text("damaged")
        run = self.batch("run", "out.json")
        self.assertEqual(run.returncode, 2)
        self.assertIn("out: the results of the plan are not all there, and so none takes its place\n",
                      run.stderr)
        self.assertEqual(self.components(results_in(self.target), former, latest),
                         {"a": "former", "b": "former", "c": "former"})
        status = self.batch("status", "out.json")
        self.assertEqual((status.returncode, status.stdout.splitlines()[-1]),
                         (1, "all: done: 0, staged: 5, changed: 0, failed: 1, pending: 0"))
        (self.folder / "lib/c1.obl").write_text(text)
        resumed = self.batch("resume", "out.json")
        self.assertEqual((resumed.returncode, resumed.stdout),
                         (0, "done: 1, failed: 0, left as they are: 5\n"), resumed.stderr)
        self.assertEqual(results_in(self.target), latest)
        self.assertEqual(self.waiting(), [])

    def test_places_a_plan_behind_the_last_of_its_shards(self):
        latest = self.results_of("new")
        self.plan("plan", "--shards", "3")
        for shard in ("2", "3"):
            self.assertEqual(self.batch("run", "out.json", "--shard", shard).returncode, 0)
            self.assertEqual(results_in(self.target), {})
        self.assertEqual(self.batch("run", "out.json", "--shard", "1").returncode, 0)
        self.assertEqual(results_in(self.target), latest)

    def test_has_all_or_none_behind_a_kill_at_each_step(self):
        former = self.results_of("old")
        latest = self.results_of("new")
        for unit in ("component", "plan"):
            for word, count in self.calls(unit).items():
                for number in range(1, count + 1):
                    for deed in ("KILL", "KILLED") if STEPS[word] else ("KILL",):
                        self.check_kill(unit, f"{word}:{number}:{deed}", former, latest)

    def check_kill(self, unit, fault, former, latest):
        with self.subTest(unit=unit, fault=fault):
            self.make_former(former)
            run = self.batch("run", "out.json", LD_PRELOAD=str(FAULTS), FAULTS=fault)
            self.assertIn(run.returncode, (2, -signal.SIGKILL), run.stdout + run.stderr)
            # A run goes on that can complete what has begun, and nothing else.
            (self.folder / "lib/a2.obl").rename(self.folder / "lib/moved")
            resumed = self.batch("resume", "out.json")
            states = self.components(results_in(self.target), former, latest)
            self.assertNotIn("mixed", states.values(), resumed.stderr)
            (self.folder / "lib/moved").rename(self.folder / "lib/a2.obl")
            resumed = self.batch("resume", "out.json")
            self.assertEqual(resumed.returncode, 0, resumed.stderr)
            self.assertEqual(results_in(self.target), latest)
            self.assertEqual(self.waiting(), [])

    def test_has_all_or_none_behind_a_failure_at_each_step(self):
        former = self.results_of("old")
        latest = self.results_of("new")
        for unit in ("component", "plan"):
            for word, count in self.calls(unit).items():
                for number in range(1, count + 1):
                    for times in ("", "+"):
                        self.check_failure(unit, f"{word}:{number}{times}:EIO", former, latest)

    def check_failure(self, unit, fault, former, latest):
        with self.subTest(unit=unit, fault=fault):
            self.make_former(former)
            run = self.batch("run", "out.json", LD_PRELOAD=str(FAULTS), FAULTS=fault)
            self.assertIn(run.returncode, (0, 2), run.stdout + run.stderr)
            states = self.components(results_in(self.target), former, latest)
            if run.returncode == 0:
                self.assertEqual(set(states.values()), {"latest"})
            if "which resume will do" not in run.stderr:
                self.assertNotIn("mixed", states.values(), run.stderr)
            resumed = self.batch("resume", "out.json")
            self.assertEqual(resumed.returncode, 0, resumed.stderr)
            self.assertEqual(results_in(self.target), latest)
            self.assertEqual(self.waiting(), [])


if __name__ == "__main__":
    os.environ["LC_ALL"] = "C"
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]], verbosity=2)

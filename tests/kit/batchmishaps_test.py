#!/usr/bin/env python3
"""Runs batches that meet another batch, a full disk, inputs that change, and cycles of packages."""

import contextlib
import ctypes
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from batchlibrary import make_library, results_in, write_package

KSX, KESTRIX = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
MEMORY = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None  # a disk takes its time
PATIENCE = 60  # seconds, of which it takes few milliseconds
CLONE_NEWNS, CLONE_NEWUSER = 0x20000, 0x10000000
MS_REMOUNT = 32
MNT_DETACH = 2
LIBC = ctypes.CDLL(None, use_errno=True)


def enter_namespace():
    """Whoever is not root may mount in a namespace of his own, which the process stays in."""
    user, group = os.geteuid(), os.getegid()
    if LIBC.unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0:
        return
    pathlib.Path("/proc/self/setgroups").write_text("deny")
    pathlib.Path("/proc/self/uid_map").write_text(f"{user} {user} 1")
    pathlib.Path("/proc/self/gid_map").write_text(f"{group} {group} 1")


class SmallDisk(contextlib.AbstractContextManager):
    """A file system of so many KiB on a folder. Skips the test where the system allows none."""

    def __init__(self, folder, size):
        self._folder = os.fsencode(folder)
        if os.geteuid() != 0:
            enter_namespace()
        if not self._is_mounted(0, size):
            raise unittest.SkipTest("the system mounts no small disk for this user")

    def grow(self, size):
        assert self._is_mounted(MS_REMOUNT, size)

    def _is_mounted(self, flags, size):
        options = f"size={size}k".encode()
        return LIBC.mount(b"tmpfs", self._folder, b"tmpfs", flags, options) == 0

    def __exit__(self, *_):
        LIBC.umount2(self._folder, MNT_DETACH)


class BatchTest(unittest.TestCase):
    def setUp(self):
        # pylint: disable=consider-using-with
        self.directory = tempfile.TemporaryDirectory(dir=MEMORY)
        self.addCleanup(self.directory.cleanup)
        self.folder = pathlib.Path(self.directory.name).resolve()

    def batch(self, *arguments):
        return subprocess.run([KSX, "batch", *arguments], cwd=self.folder, text=True,
                              capture_output=True, check=False)

    def plan(self, name, *folders, target="out"):
        planned = self.batch("plan", "update", *folders, "--to", target, "--clock", "7",
                             "--shards", "2", "-o", name)
        self.assertEqual(planned.returncode, 0, planned.stderr)
        return planned.stdout


class MeetingOthers(BatchTest):
    """Each test stops a run of many packages while something happens to it."""
    COUNT = 400

    @classmethod
    def setUpClass(cls):
        # pylint: disable=consider-using-with
        directory = tempfile.TemporaryDirectory(dir=MEMORY)
        cls.addClassCleanup(directory.cleanup)
        cls.library = pathlib.Path(directory.name).resolve() / "lib"
        make_library(cls.library, cls.COUNT)

    @contextlib.contextmanager
    def stopped_run(self, plan):
        """A run of a plan that has begun and stands still. It goes on behind the block."""
        journal = self.folder / "out/.ksx-batch/shard-000001.log"
        with subprocess.Popen([KSX, "batch", "run", plan, "--jobs", "1"], cwd=self.folder,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as run:
            end = time.monotonic() + PATIENCE
            while not (journal.exists() and journal.stat().st_size) and time.monotonic() < end:
                time.sleep(0.001)
            run.send_signal(signal.SIGSTOP)
            self.assertIsNone(run.poll(), "the run has ended before it could be stopped")
            try:
                yield run
            finally:
                run.send_signal(signal.SIGCONT)
                run.output, run.errors = run.communicate(timeout=PATIENCE)

    def last_of_second_shard(self):
        """A package that a run comes to at the end, and that no other one needs."""
        packages = json.loads((self.folder / "plan.json").read_text())["packages"]
        return [package["input"] for package in packages if package["shard"] == 2
                and int(package["input"][1:-4]) % 3 == 0][-1]

    def test_refuses_a_second_batch_into_a_target_while_one_runs(self):
        write_package(self.folder / "other/q.obl", [])
        self.plan("first.json", self.library)
        self.plan("second.json", "other")
        with self.stopped_run("first.json") as first:
            second = self.batch("run", "second.json")
            self.assertFalse((self.folder / "out/q.obl").exists())
        self.assertEqual(second.returncode, 2)
        self.assertEqual(second.stderr, f"Error! {self.folder}/out: another batch is run into the "
                                        "folder\n")
        self.assertEqual((first.returncode, first.errors), (0, ""))
        self.assertEqual(len(results_in(self.folder / "out")), self.COUNT)
        self.assertEqual(self.batch("status", "first.json").returncode, 0)
        self.assertEqual(self.batch("run", "second.json").returncode, 0)

    def test_refuses_a_shard_on_which_another_run_of_the_plan_works(self):
        self.plan("plan.json", self.library)
        with self.stopped_run("plan.json") as first:
            second = self.batch("run", "plan.json", "--shard", "1")
        self.assertEqual(second.returncode, 2)
        self.assertEqual(second.stderr,
                         f"Error! {self.folder}/out: shard 1: another run works on it\n")
        self.assertEqual((first.returncode, first.errors), (0, ""))

    def test_refuses_an_input_that_changes_while_the_batch_runs(self):
        self.plan("plan.json", self.library)
        name = self.last_of_second_shard()
        package = self.library / name
        self.addCleanup(package.write_text, package.read_text())
        with self.stopped_run("plan.json") as run:
            write_package(package, [])
        self.assertEqual(run.returncode, 2)
        self.assertEqual(run.errors,
                         f"Error! {package}: it has changed since the plan was made\n")
        self.assertEqual(len(results_in(self.folder / "out")), self.COUNT - 1)
        self.assertFalse((self.folder / "out" / name).exists())


class Mishaps(BatchTest):
    def test_refuses_an_input_that_is_gone_since_the_plan(self):
        make_library(self.folder / "lib", 3)
        self.plan("plan.json", "lib")
        (self.folder / "lib/p2.obl").unlink()
        run = self.batch("run", "plan.json")
        self.assertEqual(run.returncode, 2)
        self.assertEqual(run.stderr,
                         f"Error! {self.folder}/lib/p2.obl: there is no such file\n")
        self.assertEqual(run.stdout, "done: 2, failed: 1, left as they are: 0\n")

    def test_goes_on_behind_a_disk_that_was_full(self):
        make_library(self.folder / "lib", 30)
        self.plan("whole.json", "lib", target="whole")
        self.assertEqual(self.batch("run", "whole.json").returncode, 0)
        expected = results_in(self.folder / "whole")
        self.plan("plan.json", "lib")
        (self.folder / "out").mkdir()
        with SmallDisk(self.folder / "out", 160) as disk:
            run = self.batch("run", "plan.json")
            found = results_in(self.folder / "out")
            self.assertEqual(run.returncode, 2)
            self.assertTrue(0 < len(found) < 30, run.stdout)
            self.assertEqual({name for name in found if found[name] != expected[name]}, set())
            self.assertEqual(set(re.findall("lib/(.*): the result cannot be written", run.stderr)),
                             set(expected) - set(found))
            self.assertEqual(list((self.folder / "out").glob(".orv-*")), [])
            self.assertEqual(self.batch("report", "plan.json").returncode, 1)
            disk.grow(4096)
            resumed = self.batch("resume", "plan.json")
            self.assertEqual(resumed.returncode, 0, resumed.stderr)
            self.assertEqual(results_in(self.folder / "out"), expected)

    def test_updates_a_cycle_across_folders_together(self):
        write_package(self.folder / "a/x.obl", ["../b/y.obl"])
        write_package(self.folder / "b/y.obl", ["../a/x.obl"])
        write_package(self.folder / "b/z.obl", [])
        self.assertIn("packages: 3, bytes: 1326, components: 2, shards: 2, ",
                      self.plan("plan.json", "a", "b"))
        run = self.batch("run", "plan.json", "--jobs", "2")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        (self.folder / "whole").mkdir()
        subprocess.run([KESTRIX, "update", "a/x.obl", "b/z.obl", "--output-path", "whole",
                        "--output-name", "{inputName}"], cwd=self.folder, check=True,
                       env={**os.environ, "ASAN_OPTIONS": "detect_leaks=0"},  # it ends with packages
                       stdout=subprocess.DEVNULL)
        found, expected = ({name: re.sub(rb'<uid v="\d+"/>', b"", bytes_)
                            for name, bytes_ in results_in(self.folder / folder).items()}
                           for folder in ("out", "whole"))
        self.assertEqual(found, expected)
        self.assertEqual(self.batch("verify", "plan.json").stdout,
                         "the same: 3, not the same: 0\n")


if __name__ == "__main__":
    os.environ["LC_ALL"] = "C"
    unittest.main(argv=sys.argv[:1], verbosity=2)

#!/usr/bin/env python3
"""Runs batches that are killed, that meet another one, or that have a full disk, and goes on."""

import json
import os
import pathlib
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from batchlibrary import make_library, results_in

KSX = pathlib.Path(sys.argv[1]).resolve()
SEED = 20261122


class Batch(unittest.TestCase):
    COUNT = 200

    def setUp(self):
        # pylint: disable=consider-using-with
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)
        self.folder = pathlib.Path(self.directory.name)
        make_library(self.folder / "lib", self.COUNT)

    def command(self, *arguments):
        return [KSX, "batch", *arguments]

    def run_batch(self, *arguments, **options):
        return subprocess.run(self.command(*arguments), cwd=self.folder, text=True,
                              capture_output=True, check=False, **options)

    def plan(self, target, *options):
        planned = self.run_batch("plan", "update", "lib", "--to", target, "--clock", "7", "-o",
                                 f"{target}.json", *options)
        self.assertEqual(planned.returncode, 0, planned.stderr)

    def start(self, *arguments):
        return subprocess.Popen(self.command(*arguments), cwd=self.folder,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def expected(self):
        self.plan("whole")
        self.assertEqual(self.run_batch("run", "whole.json").returncode, 0)
        return results_in(self.folder / "whole")

    def test_goes_on_behind_kills_with_nothing_half_written(self):
        expected = self.expected()
        self.plan("out", "--shards", "3")
        moments = random.Random(SEED)
        (self.folder / "out").mkdir()
        for _ in range(12):
            run = self.start("resume", "out.json", "--jobs", "2")
            time.sleep(moments.uniform(0.0, 0.12))
            run.send_signal(signal.SIGKILL)
            run.wait()
            found = results_in(self.folder / "out")
            self.assertEqual({name for name in found if found[name] != expected[name]}, set())
        ended = self.run_batch("resume", "out.json")
        self.assertEqual(ended.returncode, 0, ended.stderr)
        self.assertEqual(results_in(self.folder / "out"), expected)
        self.assertEqual(self.run_batch("status", "out.json").returncode, 0)
        again = self.run_batch("resume", "out.json")
        self.assertEqual(again.stdout,
                         f"done: 0, failed: 0, left as they are: {self.COUNT}\n")

    def test_gives_the_same_bytes_with_a_process_for_each_shard(self):
        expected = self.expected()
        self.plan("out", "--shards", "4")
        runs = [self.start("run", "out.json", "--shard", str(shard)) for shard in range(1, 5)]
        self.assertEqual([run.wait() for run in runs], [0, 0, 0, 0])
        self.assertEqual(results_in(self.folder / "out"), expected)

    def test_tells_of_results_for_which_the_disk_has_no_place(self):
        text = (self.folder / "lib/p0.obl").read_text()
        (self.folder / "lib/p0.obl").write_text(
            text.replace('<author v="me"/>', f'<author v="{"me" * 50000}"/>'))
        self.plan("out")

        def bound_files():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (90000, 90000))

        run = self.run_batch("run", "out.json", preexec_fn=bound_files)
        self.assertEqual(run.returncode, 2)
        self.assertIn("lib/p0.obl: the result cannot be written\n", run.stderr)
        self.assertFalse((self.folder / "out/p0.obl").exists())
        self.assertEqual(self.run_batch("resume", "out.json").returncode, 0)

    def test_writes_reports_that_programs_can_read(self):
        self.plan("out", "--shards", "2")
        self.run_batch("run", "out.json")
        outputs = []
        for path in (self.folder / "out/.ksx-batch").glob("shard-*.json"):
            outputs += [package["output"] for package in json.loads(path.read_text())["packages"]]
        self.assertEqual(len(outputs), self.COUNT)
        self.assertEqual(len(set(outputs)), self.COUNT)


if __name__ == "__main__":
    os.environ["LC_ALL"] = "C"
    unittest.main(argv=sys.argv[:1], verbosity=2)

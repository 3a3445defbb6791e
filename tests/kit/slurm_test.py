#!/usr/bin/env python3
"""Runs batches by a Slurm of two nodes on this machine, which the test starts and ends."""

import json
import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

from batchlibrary import make_library, results_in

KSX = pathlib.Path(sys.argv[1]).resolve()
PROGRAMS = ["munged", "slurmctld", "slurmd", "sbatch", "scontrol", "sinfo", "squeue"]
PATIENCE = 100  # seconds, of which a run on an idle machine takes few
CONFIGURATION = """
ClusterName=test
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={ports[0]}
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
AuthInfo=socket={folder}/munge.sock,cred_expire=5
CredType=cred/munge
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool-%n
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd-%n.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd-%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SwitchType=switch/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerType=sched/backfill
SchedulerParameters=sched_interval=1,batch_sched_delay=1,bf_interval=1
MpiDefault=none
ReturnToService=2
SlurmdParameters=config_overrides
NodeName=n[1-2] NodeHostname={host} NodeAddr=127.0.0.1 Port=[{ports[1]}-{ports[2]}] CPUs=2
PartitionName=all Nodes=n[1-2] Default=YES MaxTime=INFINITE State=UP
"""


def free_ports():
    """Three ports in a row."""
    for first in range(36817 + os.getpid() % 1000 * 3, 65000, 3):
        sockets = [socket.socket() for _ in range(3)]
        try:
            for number, one in enumerate(sockets):
                one.bind(("127.0.0.1", first + number))
            return [first, first + 1, first + 2]
        except OSError:
            pass
        finally:
            for one in sockets:
                one.close()
    raise unittest.SkipTest("no port is free")


def waited(condition):
    """Whether the condition came true in time."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.05)
    return False


def environment_of(process):
    try:
        return pathlib.Path(f"/proc/{process}/environ").read_bytes().split(b"\0")
    except OSError:
        return []


def parent_of(process):
    try:
        status = pathlib.Path(f"/proc/{process}/status").read_text()
    except OSError:
        return 0
    return int(re.search(r"PPid:\t(\d+)", status)[1])


class Slurm(unittest.TestCase):
    COUNT = 1000

    @classmethod
    def setUpClass(cls):
        for name in PROGRAMS:
            if shutil.which(name) is None:
                raise unittest.SkipTest(f"{name} is not installed")
        if os.geteuid() != 0:
            raise unittest.SkipTest("only root can start the daemons of Slurm")
        # pylint: disable=consider-using-with
        directory = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        cls.addClassCleanup(directory.cleanup)
        cls.folder = pathlib.Path(directory.name)
        cls.folder.chmod(0o755)  # as munged wants it
        cls.environment = {**os.environ, "SLURM_CONF": f"{cls.folder}/slurm.conf"}
        cls.start_daemons()
        make_library(cls.folder / "lib", cls.COUNT)

    @classmethod
    def start_daemons(cls):
        folder = cls.folder
        (folder / "state").mkdir()
        (folder / "munge.key").write_bytes(os.urandom(128))
        (folder / "munge.key").chmod(0o600)
        host = socket.gethostname().split(".")[0]
        (folder / "slurm.conf").write_text(
            CONFIGURATION.format(folder=folder, host=host, ports=free_ports()))
        cls.start_daemon("munged", "--foreground", "--force", f"--key-file={folder}/munge.key",
                         f"--socket={folder}/munge.sock", f"--pid-file={folder}/munge.pid",
                         f"--log-file={folder}/munge.log", f"--seed-file={folder}/munge.seed")
        if not waited((folder / "munge.sock").exists):
            raise unittest.SkipTest("munged does not start here")
        cls.start_daemon("slurmctld", "-D")
        cls.nodes = {name: cls.start_daemon("slurmd", "-D", "-N", name) for name in ("n1", "n2")}
        if not waited(lambda: cls.output_of("sinfo", "-h", "-o", "%D %t") == "2 idle\n"):
            raise unittest.SkipTest("the daemons of Slurm do not start here")

    @classmethod
    def start_daemon(cls, *command):
        # pylint: disable=consider-using-with
        daemon = subprocess.Popen(command, cwd=cls.folder, env=cls.environment,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        cls.addClassCleanup(cls.end_daemon, daemon)
        return daemon

    @staticmethod
    def end_daemon(daemon):
        daemon.terminate()
        try:
            daemon.wait(20)
        except subprocess.TimeoutExpired:
            daemon.kill()
            daemon.wait()

    @classmethod
    def output_of(cls, *command):
        return subprocess.run(command, cwd=cls.folder, env=cls.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              check=False).stdout

    def batch(self, *arguments):
        return subprocess.run([KSX, "batch", *arguments], cwd=self.folder, env=self.environment,
                              text=True, capture_output=True, check=False)

    def plan(self, target, shards):
        planned = self.batch("plan", "update", "lib", "--to", target, "--clock", "7", "--shards",
                             str(shards), "-o", f"{target}.json")
        self.assertEqual(planned.returncode, 0, planned.stderr)

    def submit(self, target, *options):
        """Hands the plan over, and answers the number of the last job."""
        submitted = self.batch("submit", f"{target}.json", "--slurm", *options, "--",
                               f"--output={target}-%j.out")
        self.assertRegex(submitted.stdout, r"^tasks: \d+, report: \d+\n$", submitted.stderr)
        return submitted.stdout.split()[-1]

    def assertEnds(self, job):
        self.assertTrue(waited(lambda: self.output_of("squeue", "-h", "-j", job) == ""),
                        self.output_of("squeue"))

    def assertAllDone(self, target):
        self.assertEqual(self.batch("status", f"{target}.json").returncode, 0)
        report = json.loads((self.folder / target / ".ksx-batch/report.json").read_text())
        self.assertEqual([package["state"] for package in report["packages"]],
                         ["done"] * self.COUNT)
        self.assertEqual(self.batch("run", f"{target}-here.json").returncode, 0)
        self.assertEqual(results_in(self.folder / target),
                         results_in(self.folder / f"{target}-here"))

    def processes_on(self, node):
        """The tasks on a node and the daemons that watch over them, which come first."""
        marks = {f"SLURMD_NODENAME={node}".encode(),
                 f"SLURM_CONF={self.folder}/slurm.conf".encode()}
        tasks = [int(name) for name in os.listdir("/proc")
                 if name.isdigit() and marks <= set(environment_of(name))]
        return [parent_of(task) for task in tasks if parent_of(task) not in {*tasks, 0, 1}] + tasks

    def kill_node(self, node):
        self.nodes[node].kill()
        for process in self.processes_on(node):
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass
        self.output_of("scontrol", "update", f"nodename={node}", "state=down", "reason=lost")

    def test_updates_a_library_on_two_nodes(self):
        self.plan("out", 8)
        self.plan("out-here", 1)
        self.assertEnds(self.submit("out", "--html", "out.html"))
        self.assertAllDone("out")
        self.assertIn(f"<dd>{self.COUNT:,}, of ", (self.folder / "out.html").read_text())

    def test_goes_on_behind_a_node_that_is_killed(self):
        self.plan("lost", 4)
        self.plan("lost-here", 1)
        job = self.submit("lost")
        self.assertTrue(waited(lambda: len(results_in(self.folder / "lost")) > 100))
        self.assertNotEqual(self.processes_on("n1"), [])
        self.kill_node("n1")
        self.assertEnds(job)
        self.assertAllDone("lost")
        told = "".join(path.read_text() for path in self.folder.glob("lost-*.out"))
        self.assertRegex(told, "left as they are: [1-9]")

    def test_tells_of_options_that_slurm_refuses(self):
        self.plan("none", 1)
        submitted = self.batch("submit", "none.json", "--slurm", "--", "--no-such-option")
        self.assertEqual(submitted.returncode, 2)
        self.assertIn("Error! sbatch: Slurm does not take the job\n", submitted.stderr)


class WithoutSlurm(unittest.TestCase):
    def test_tells_that_the_program_is_missing(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            make_library(folder / "lib", 1)
            subprocess.run([KSX, "batch", "plan", "update", "lib", "--to", "out", "-o", "p.json"],
                           cwd=folder, check=True, stdout=subprocess.DEVNULL)
            submitted = subprocess.run([KSX, "batch", "submit", "p.json", "--slurm"], cwd=folder,
                                       env={"PATH": name}, text=True, capture_output=True,
                                       check=False)
        self.assertEqual(submitted.returncode, 2)
        self.assertEqual(submitted.stderr,
                         "Error! sbatch: the program of Slurm cannot be started\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)

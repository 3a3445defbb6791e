"""Which tests a change of a source is given to, in which order, and their runs."""

import json
import os
import re
import selectors
import shutil
import signal
import subprocess
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

from mutation.build import BuildError

# The test executables that reach the sources of a folder, the nearest first.
REACHING = {
    "common": ("orv_tests", "ksx_tests", "kestrix_tests"),
    "data": ("ksx_tests", "kestrix_tests"),
    "core": ("ksx_tests", "kestrix_tests"),
    "cli": ("kestrix_tests",),
    "console": ("kestrix_tests", "kit_tests"),
    "kit": ("kit_tests",),
    "archives": ("ksx_tests", "kestrix_tests"),
    "imageformats": ("imageformats_tests", "ksx_tests", "kestrix_tests"),
}
TAIL = 65536  # bytes of the output of a run that are kept


@dataclass
class Suite:
    name: str
    file: str
    seconds: float
    failing: list = field(default_factory=list)


@dataclass
class Outcome:
    passed: bool
    how: str = ""


def fast_folder():
    """Returns a folder in memory if there is one: most of the time of a run is waiting for disks."""
    shared = Path("/dev/shm")
    return shared if os.access(shared, os.W_OK) else Path(tempfile.gettempdir())


def isolation():
    """Returns the words that give a run process numbers of its own, where that is allowed.

    A changed line may kill the process with the number -1, which are all."""
    words = ["unshare", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if not shutil.which(words[0]):
        return []
    trial = subprocess.run([*words, "true"], stderr=subprocess.DEVNULL)
    return words if trial.returncode == 0 else []


class Runner:
    def __init__(self, build, megabytes):
        self._build = build
        limit = f'ulimit -c 0 -v {megabytes * 1024}; exec "$@"'
        self._start = [*isolation(), "sh", "-c", limit, "sh"]
        self._suites = {}
        self._includes = {}

    def learn(self, executables):
        """Runs all tests on the unchanged sources: their times, and which of them fail anyway."""
        for name in executables:
            report = self._build.folder / f"{name}.json"
            report.unlink(missing_ok=True)
            self._run(name, ["--gtest_output=json:" + str(report)], {}, 1800)
            if not report.exists():
                raise BuildError(f"{name} does not come to its end without a change")
            suites = json.loads(report.read_text())["testsuites"]
            self._suites[name] = [self._suite(entry) for entry in suites]
        for suites in self._suites.values():
            for file in {suite.file for suite in suites}:
                text = Path(file).read_text()
                self._includes[file] = set(re.findall(r'#include "(?:[^"]*/)?(\w+)\.h"', text))

    def failing(self):
        return [name for suites in self._suites.values() for s in suites for name in s.failing]

    def judge(self, path, place):
        """Runs the tests that reach the source with the libraries in `place`, until one fails."""
        executables = REACHING[path.split("/", 1)[0]]
        for chosen, wanted in ((self._near, True), (self._near, False)):
            for name in executables:
                suites = [s for s in self._suites[name] if chosen(s, path) == wanted]
                outcome = self._run_suites(name, suites, place)
                if not outcome.passed:
                    return outcome
        return Outcome(True)

    def _near(self, suite, path):
        """Whether the suite is about the class of the source: by file name, or by its header."""
        source = Path(path).stem
        names = {source, re.sub(r"^core(behavior)?", "", source), re.sub(r"^core", "", source)}
        test = re.sub(r"_test$", "", Path(suite.file).stem)
        return test.split("_")[0] in names or bool(names & self._includes[suite.file])

    def _run_suites(self, executable, suites, place):
        if not suites:
            return Outcome(True)
        wanted = ":".join(f"{suite.name}.*" for suite in suites)
        failing = ":".join(name for suite in suites for name in suite.failing)
        environment = {
            "GTEST_FILTER": f"{wanted}-{failing}" if failing else wanted,
            "LD_LIBRARY_PATH": str(place),
        }
        seconds = 10 + 5 * sum(suite.seconds for suite in suites)
        return self._run(executable, ["--gtest_fail_fast"], environment, seconds)

    @staticmethod
    def _suite(entry):
        tests = entry["testsuite"]
        failing = [f"{entry['name']}.{test['name']}" for test in tests if "failures" in test]
        seconds = sum(float(test["time"].rstrip("s")) for test in tests)
        return Suite(entry["name"], tests[0]["file"], seconds, failing)

    def _run(self, executable, arguments, environment, seconds):
        scratch = tempfile.mkdtemp(prefix="mutate-", dir=fast_folder())
        os.chmod(scratch, 0o755)
        process = subprocess.Popen(
            [*self._start, str(self._build.binaries / executable), *arguments],
            cwd=scratch,
            env={**os.environ, **environment, "TMPDIR": scratch},
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            start_new_session=True,
        )
        try:
            tail, in_time = read_tail(process, seconds)
        finally:
            end_group(process)
            shutil.rmtree(scratch, ignore_errors=True)
        return outcome_of(process.returncode, tail, in_time)


def read_tail(process, seconds):
    """Returns the end of the output, and whether the process ended within the time."""
    end = time.monotonic() + seconds
    tail = b""
    with selectors.DefaultSelector() as selector:
        selector.register(process.stdout, selectors.EVENT_READ)
        while time.monotonic() < end:
            if not selector.select(0.1):
                if process.poll() is not None:  # what it has left behind may hold the pipe
                    break
                continue
            block = os.read(process.stdout.fileno(), TAIL)
            if not block:
                break
            tail = (tail + block)[-TAIL:]
    try:
        process.wait(max(0.1, end - time.monotonic()))
    except subprocess.TimeoutExpired:
        return tail, False
    return tail, True


def end_group(process):
    """Ends what a run has started, and only that: it is a session of its own."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()
    process.stdout.close()


def outcome_of(code, tail, in_time):
    text = tail.decode(errors="replace")
    failed = re.findall(r"^\[  FAILED  \] ([\w/]+\.[^\s,]+)", text, re.MULTILINE)
    begun = re.findall(r"^\[ RUN      \] (\S+)", text, re.MULTILINE)
    if not in_time:
        return Outcome(False, f"time-out in {begun[-1] if begun else 'the start'}")
    if code == 0:
        return Outcome(True)
    if failed:
        return Outcome(False, failed[0])
    return Outcome(False, f"exit {code} in {begun[-1] if begun else 'the start'}")

"""Runs of the tool, and what any run must hold to."""

import dataclasses
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import tempfile
import threading

CPU_LIMIT = 10  # seconds, for any input
MEMORY_LIMIT = 1 << 20  # KiB of resident memory, for any input of at most 1 MB
SANITIZER_EXIT = 99  # no exit code of the tool's own
SILENT = "fails without a line that says why"

SANITIZER_ENVIRONMENT = {
    # The open documents live until the process ends, which is no leak.
    "ASAN_OPTIONS": f"detect_leaks=0:exitcode={SANITIZER_EXIT}",
    "UBSAN_OPTIONS": f"halt_on_error=1:print_stacktrace=1:exitcode={SANITIZER_EXIT}",
}


@dataclasses.dataclass
class Run:
    """The end of one run. `code` is -1 where a signal ended it."""

    arguments: list
    code: int
    signal: int
    cpu: float  # seconds
    peak: int  # KiB
    out: bytes
    err: bytes

    def __str__(self):
        end = signal.Signals(self.signal).name if self.signal else f"exit {self.code}"
        words = " ".join(str(word) for word in self.arguments)
        return (f"kestrix {words}: {end}, {self.cpu:.2f} s, {self.peak // 1024} MiB\n"
                f"    out {self.out[:300]!r}\n    err {self.err[-600:]!r}")


def broken_bound(run, named=None, bounds_memory=True, cpu_limit=CPU_LIMIT):
    """What this run did that no run may do, or None.

    A run ends by itself with 0 or 1, in bounded time and memory. One that ends with 1 says why in a
    line, which names `named` if that is given: a file name as bytes."""
    if run.signal == signal.SIGXCPU or run.cpu > cpu_limit:
        return "takes more than its time of cpu"
    if run.signal:
        return "is ended by a signal"
    if run.code not in (0, 1):
        return "ends with a code that is neither 0 nor 1"
    if b"runtime error:" in run.err or b"AddressSanitizer" in run.err:
        return "is reported by a sanitizer"
    if bounds_memory and run.peak > MEMORY_LIMIT:
        return "takes more than its memory"
    if run.code == 1 and not (run.out + run.err).strip():
        return SILENT
    if run.code == 1 and named is not None and named not in run.out + run.err:
        return "fails without a line that names the file"
    return None


class ForkServer:
    """Runs of one build of the tool that cost no start. For one thread. It ends when this process does.

    What the runs print lies in `folder`."""

    def __init__(self, build, folder, environment=None):
        self._process = subprocess.Popen(
            [build / "kestrix-forkserver"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, env={**os.environ, **SANITIZER_ENVIRONMENT, **(environment or {})})
        self._texts = pathlib.Path(tempfile.mkdtemp(prefix="texts-", dir=folder))

    def run(self, arguments, directory, memory_limit=0):
        """`memory_limit` is bytes of address space, 0 for none: the sanitizers need 20 TB."""
        out, err = self._texts / "out", self._texts / "err"
        texts = [directory, out, err, CPU_LIMIT + 5, memory_limit, *arguments]
        request = b"".join(os.fsencode(str(text) if not isinstance(text, bytes) else text) + b"\0"
                           for text in [len(texts), *texts])
        self._process.stdin.write(request)
        self._process.stdin.flush()
        code, number, microseconds, peak = map(int, self._process.stdout.readline().split())
        return Run(list(arguments), code, number, microseconds / 1e6, peak,
                   out.read_bytes(), err.read_bytes())


class FileSink:
    def __init__(self):
        self.target = tempfile.TemporaryFile()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.target.close()

    def text(self):
        self.target.seek(0)
        return self.target.read()


class PipeSink:
    def __init__(self):
        reading, writing = os.pipe()
        self.source = open(reading, "rb")
        self.target = open(writing, "wb")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.target.close()
        self.source.close()

    def text(self):
        self.target.close()
        return self.source.read()


def run_process(build, arguments, directory, environment=None, limits=(), executable="kestrix",
                before_start=None, in_pipes=False):
    """Starts the tool as a user does. `limits` are pairs of a resource and an amount.

    `before_start` is called in the process that becomes the tool. What a run prints goes to files,
    or to pipes, which take 64 KiB and have no limit of size."""
    def prepare():
        resource.setrlimit(resource.RLIMIT_CPU, (CPU_LIMIT + 5, CPU_LIMIT + 5))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        for which, amount in limits:
            resource.setrlimit(which, (amount, amount))
        if before_start is not None:
            before_start()

    sink = PipeSink if in_pipes else FileSink
    with sink() as out, sink() as err:
        process = subprocess.Popen(
            [build / executable, *arguments], cwd=directory, stdin=subprocess.DEVNULL,
            stdout=out.target, stderr=err.target, env={**os.environ, **SANITIZER_ENVIRONMENT, **(environment or {})},
            preexec_fn=prepare)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        return Run(list(arguments), max(process.returncode, -1), max(-process.returncode, 0),
                   usage.ru_utime + usage.ru_stime, usage.ru_maxrss, out.text(), err.text())


class Workplace(threading.local):
    """What one thread works with: a folder that each case finds empty, and its fork servers."""

    def __init__(self, root):
        self._root = root
        self._folder = None
        self._servers = {}

    def empty_folder(self):
        if self._folder is None:
            self._folder = pathlib.Path(tempfile.mkdtemp(prefix="case-", dir=self._root))
        for entry in os.scandir(self._folder):
            if entry.is_dir(follow_symlinks=False):
                shutil.rmtree(entry.path)
            else:
                os.unlink(entry.path)
        return self._folder

    def server(self, build):
        if build not in self._servers:
            self._servers[build] = ForkServer(build, self._root)
        return self._servers[build]

"""Runs of the release build below valgrind, which sees memory that nobody has written.

The address sanitizer does not see that, and libraries are not built with it."""

import shutil
import signal
import subprocess

import runs
import trust

TITLE = "runs below valgrind"

INPUTS = 50
FOUND = 97  # exit code: valgrind has seen a fault
CPU_LIMIT = 120  # seconds; a run takes thirty times as long
EXAMPLES = trust.PROJECT / "examples"


def examples(pattern):
    return sorted(path for path in EXAMPLES.rglob(pattern) if "sources" not in path.parts
                  and path.stat().st_size < 200000)


def cases(context):
    """Arguments of runs: all kinds of files and commands, then damaged packages."""
    found = []
    for path in examples("*.obl") + examples("*.oblar") + examples("*.oblasm"):
        found.append(["update", path, "--presets-path", EXAMPLES / "presets"])
    for path in examples("*.obl"):
        found.append(["specialization", path, "--hide-parameters",
                      "--presets-path", EXAMPLES / "presets"])
        found.append(["graph-parameters-editor", path, "--set-default-value", "outputsize@1,1",
                      "--presets-path", EXAMPLES / "presets"])
    generator = context.random(context.seeds[0], "valgrind")
    samples = [path.read_bytes() for path in examples("*.obl")]
    while len(found) < INPUTS:
        data = bytearray(generator.choice(samples))
        place = generator.randrange(len(data))
        del data[place:place + generator.choice([1, 10, len(data)])]
        path = context.folder / f"damaged{len(found)}.obl"
        path.write_bytes(data)
        found.append(["update", path])
    return found[:context.number(INPUTS)]


def failure_of(context, arguments, program=("valgrind",)):
    """Runs the tool below that program. Returns None or the text of a failure."""
    folder = context.workplace.empty_folder()
    command = [*program, "--quiet", f"--error-exitcode={FOUND}", context.release / "kestrix",
               *arguments, "--output-path", folder]
    result = subprocess.run(command, cwd=folder, stdin=subprocess.DEVNULL, capture_output=True,
                            preexec_fn=lambda: runs.resource.setrlimit(
                                runs.resource.RLIMIT_CPU, (CPU_LIMIT, CPU_LIMIT)))
    if result.returncode in (0, 1):
        return None
    words = " ".join(map(str, command))
    end = ("valgrind has seen a fault" if result.returncode == FOUND else
           f"signal {signal.Signals(-result.returncode).name}" if result.returncode < 0 else
           f"exit {result.returncode}")
    return f"{words}: {end}\n{result.stderr[-3000:].decode(errors='replace')}"


def run(context):
    if shutil.which("valgrind") is None:
        return trust.Outcome(1, ["valgrind is missing: scripts/install-packages nightly"])
    return context.outcome_of(lambda case: failure_of(context, case), cases(context))

"""Runs of the release build below valgrind, which sees memory that nobody has written.

The address sanitizer does not see that, and libraries are not built with it."""

import dataclasses
import shutil
import signal
import subprocess

import mutants
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


@dataclasses.dataclass
class Case:
    """A run with these arguments, in a folder that holds these files: bytes by name."""

    name: str
    arguments: list
    files: dict = dataclasses.field(default_factory=dict)


def example(command, path, *options):
    return Case(f"{command} {path.name}",
                [command, path, *options, "--presets-path", EXAMPLES / "presets"])


def of_examples():
    """All kinds of files and commands."""
    for path in examples("*.obl") + examples("*.oblar") + examples("*.oblasm"):
        yield example("update", path)
    for path in examples("*.obl"):
        yield example("specialization", path, "--hide-parameters")
        yield example("graph-parameters-editor", path, "--set-default-value", "outputsize@1,1")


def damaged(name, random, samples):
    """An example with some bytes that are gone."""
    data = bytearray(random.choice(samples))
    place = random.randrange(len(data))
    del data[place:place + random.choice([1, 10, len(data)])]
    return Case(name, ["update", "damaged.obl"], {"damaged.obl": bytes(data)})


def mutant(name, random):
    files, arguments = mutants.make(random)
    return Case(name, arguments, files)


def cases(context):
    """Examples, then damaged packages, then mutants."""
    found = list(of_examples())
    random = context.random(context.seeds[0], "valgrind")
    samples = [path.read_bytes() for path in examples("*.obl")]
    while len(found) < INPUTS:
        found.append(damaged(f"damaged-{len(found)}", random, samples))
    while len(found) < context.number(INPUTS):
        seed = context.seeds[len(found) % len(context.seeds)]
        name = f"mutant-{seed}-{len(found)}"
        found.append(mutant(name, context.random(seed, f"valgrind-{len(found)}")))
    return found[:context.number(INPUTS)]


def failure_of(context, case, program=("valgrind",)):
    """Runs the tool below that program. Returns None or the text of a failure."""
    folder = context.workplace.empty_folder()
    for name, content in case.files.items():
        (folder / name).write_bytes(content)
    command = [*program, "--quiet", f"--error-exitcode={FOUND}", context.release / "kestrix",
               *case.arguments, "--output-path", folder]
    result = subprocess.run(command, cwd=folder, stdin=subprocess.DEVNULL, capture_output=True,
                            preexec_fn=lambda: runs.resource.setrlimit(
                                runs.resource.RLIMIT_CPU, (CPU_LIMIT, CPU_LIMIT)))
    if result.returncode in (0, 1):
        return None
    words = " ".join(word.decode(errors="replace") if isinstance(word, bytes) else str(word)
                     for word in command)
    end = ("valgrind has seen a fault" if result.returncode == FOUND else
           f"signal {signal.Signals(-result.returncode).name}" if result.returncode < 0 else
           f"exit {result.returncode}")
    kept = context.keep(case.name, folder)
    return f"{words}, with {kept}: {end}\n{result.stderr[-3000:].decode(errors='replace')}"


def run(context):
    if shutil.which("valgrind") is None:
        return trust.Outcome(1, ["valgrind is missing: scripts/install-packages nightly"])
    return context.outcome_of(lambda case: failure_of(context, case), cases(context))

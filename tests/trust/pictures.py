"""Damaged pictures: in the process that decodes them, and in whole runs of the tool.

Decoders are old code of others, and some crash, so they run in a process of their own. A crash of
that process is counted and no failure. A failure is a picture handed over that is none, a
bound of the process that does not hold, and a run of the tool that does not end well. A part of a
picture that a decoder leaves unwritten is counted as well: the tool fills its memory with zeros."""

import collections
import dataclasses
import itertools
import os
import signal
import subprocess
import tempfile
import threading
import xml.etree.ElementTree
import zlib

import picturemutants
import runs
import trust

TITLE = "damaged pictures, decoded alone and connected by whole runs"

DECODED = 20000
WHOLE_RUNS = 500
MOST_SLOW = 3  # whole runs with a picture that takes all the time that there is
SLOW = 2.0  # seconds of cpu
MARK = 0x4B535850  # of an answer
MOST_PIXELS = 1 << 26
CPU_LIMIT = 12  # seconds: 10 until the signal, and 1 until the one that cannot be ignored
PEAK_LIMIT = 2 << 20  # KiB
WHOLE_CPU_LIMIT = runs.CPU_LIMIT + CPU_LIMIT  # the tool's own, and that of the process
FILLS = [0, 0xAA]  # of fresh memory: as in the tool, and another
TRUNCATED = 0.15  # of the cases are a sample that lacks its end, and nothing else
CRASHES = {signal.SIGSEGV, signal.SIGBUS, signal.SIGFPE, signal.SIGILL, signal.SIGABRT}

@dataclasses.dataclass
class Answer:
    """What became of the process that decodes one picture."""

    code: int
    signal: int
    microseconds: int
    peak: int  # KiB
    bytes: int
    mark: int
    kind: int
    width: int
    height: int
    pixel_bytes: int
    hash: int

    def is_picture(self):
        return self.code == 0 and self.kind != 0

    def end(self):
        if self.signal in CRASHES:
            return "crash"
        if self.signal:
            return "out of time"
        if self.code:
            return "gave up"
        return "picture" if self.is_picture() else "refused"

    def pixels(self):
        return (self.width, self.height, self.hash)


class DecodeServer:
    """Decodes pictures on a guarded heap, without a start for each. For one thread."""

    def __init__(self, build, folder):
        # One thread each, as the tool orders; what fails is of no interest.
        self._process = subprocess.Popen(
            [build / "kestrix-decodeserver"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, env={"OMP_NUM_THREADS": "1"})
        handle, self._file = tempfile.mkstemp(dir=folder)
        os.close(handle)

    def decode(self, data, ending, fill):
        with open(self._file, "wb") as file:
            file.write(data)
        request = b"%b\0%b\0%d\0" % (os.fsencode(self._file), ending.encode(), fill)
        self._process.stdin.write(request)
        self._process.stdin.flush()
        return Answer(*map(int, self._process.stdout.readline().split()))


@dataclasses.dataclass
class Case:
    """A damaged picture and what its decoding came to."""

    name: str
    ending: str
    data: bytes
    answer: Answer
    is_unwritten: bool  # the decoder has left a part of the picture as its memory was
    failure: str | None


def broken_promise(answer, whole=None):
    """What no decoding may do, or None. `whole` is that of the sample that lacks its end here."""
    if answer.microseconds > CPU_LIMIT * 1e6:
        return "takes more than its time of cpu"
    if answer.peak > PEAK_LIMIT:
        return "takes more than its memory"
    if not answer.is_picture():
        return None
    pixels = answer.width * answer.height
    if (answer.bytes, answer.mark) != (16, MARK) or answer.kind > 2:
        return "gives an answer that is none"
    if not 0 < pixels <= MOST_PIXELS or answer.pixel_bytes != pixels * 4:
        return "gives a picture of another size than it says"
    if whole is not None and whole.pixels() != answer.pixels():
        return "gives a picture of which a part is missing"
    return None


def load_samples(made):
    """All samples by their endings, as pairs of name and bytes. Some are in the folder `made`."""
    samples = collections.defaultdict(list)
    found = itertools.chain((trust.PROJECT / "tests/data/pictures").iterdir(), made.iterdir())
    for path in sorted(found, key=lambda path: path.name):
        name, data = path.name, path.read_bytes()
        if name.endswith(".z"):
            name, data = name.removesuffix(".z"), zlib.decompress(data)
        if not name.endswith((".md", ".obl")):
            samples[name.rsplit(".", 1)[1]].append((name, data))
    return samples


class Decoding(threading.local):
    """A decode server for each thread."""

    def __init__(self, context):
        self._server = DecodeServer(context.release, context.folder)

    def decode(self, data, ending, fill=FILLS[0]):
        return self._server.decode(data, ending, fill)


def decode_mutant(context, decoding, samples, seed, number):
    random = context.random(seed, number)
    ending = sorted(samples)[number % len(samples)]
    name, sample = random.choice(samples[ending])
    whole = None
    if random.random() < TRUNCATED:
        data = sample[:random.randrange(len(sample))]
        whole = decoding.decode(sample, ending)
    else:
        data = picturemutants.mutant(random, sample, random.choice(samples[ending])[1])
    answer = decoding.decode(data, ending)
    again = decoding.decode(data, ending, FILLS[1]) if answer.is_picture() else answer
    broken = broken_promise(answer, whole if whole and whole.is_picture() else None)
    failure = None
    if broken is not None:
        place = context.keep(f"decoded-{seed}-{number}.{ending}", data)
        failure = f"the decoding of {place} (from {name}) {broken}: {answer}"
    is_unwritten = again.pixels() != answer.pixels()
    return Case(f"{seed}-{number}", ending, data, answer, is_unwritten, failure)


def chosen_for_whole_runs(cases, count):
    """Pictures whose decoding crashed or took long come first, then the others in turn."""
    slow = [case for case in cases if case.answer.microseconds > SLOW * 1e6]
    rest = [case for case in cases if case.answer.microseconds <= SLOW * 1e6]
    crashed = [case for case in rest if case.answer.end() in ("crash", "gave up")]
    others = [case for case in rest if case.answer.end() in ("picture", "refused")]
    chosen = slow[:MOST_SLOW] + crashed[:count // 2]
    step = max(1, len(others) // max(1, count - len(chosen)))
    return (chosen + others[::step])[:count]


def broken_run(run, folder, picture, inputs):
    """What this run did that no run with a picture may do, or None."""
    message = b"Error! Image cannot be correctly loaded: " + os.fsencode(folder / picture) + b"\n"
    broken = runs.broken_bound(run, os.fsencode(picture), False, WHOLE_CPU_LIMIT)
    if broken is not None:
        return broken
    files = {entry.name for entry in os.scandir(folder)}
    if any((folder / name).read_bytes() != content for name, content in inputs.items()):
        return "changes its input"
    if run.code == 1:
        if run.err != message:
            return "fails with another line than that of a picture"
        return None if files == set(inputs) else "fails and leaves a file"
    if files != {*inputs, "f_specialized.obl"}:
        return "succeeds without its target, or with a file beside it"
    try:
        xml.etree.ElementTree.parse(folder / "f_specialized.obl")
    except xml.etree.ElementTree.ParseError:
        return "writes a package that is none"
    return None


def connect(context, case, filter_package):
    folder = context.workplace.empty_folder()
    picture = f"p.{case.ending}"
    inputs = {"f.obl": filter_package, picture: case.data}
    for name, content in inputs.items():
        (folder / name).write_bytes(content)
    run = runs.run_process(context.release, ["specialization", "f.obl", "--connect-image",
                                             f"in@path@{picture}"], folder)
    broken = broken_run(run, folder, picture, inputs)
    if broken is None:
        return None
    place = context.keep(f"run-{case.name}", folder)
    return f"with the picture of {place} the tool {broken}\n    {run}"


def by_ending(cases):
    counts = collections.Counter(case.ending for case in cases)
    return ", ".join(f"{ending} {count}" for ending, count in counts.most_common()) or "none"


def notes_on(cases):
    """How the decodings ended, and what decoders do that the tool can bear."""
    ends = collections.Counter(case.answer.end() for case in cases)
    crashes = [case for case in cases if case.answer.end() == "crash"]
    unwritten = [case for case in cases if case.is_unwritten]
    return ["decodings: " + ", ".join(f"{count} {end}" for end, count in ends.most_common()),
            f"crashes of decoders, which end their own process alone: {by_ending(crashes)}",
            f"pictures of which decoders leave a part unwritten, zeros in the tool: "
            f"{by_ending(unwritten)}"]


def run(context):
    made = context.folder / "samples"
    made.mkdir()
    subprocess.run([context.release / "kestrix-decodeserver", "--samples", made], check=True)
    samples, filter_package = load_samples(made), (made / "filter.obl").read_bytes()
    decoding = Decoding(context)
    half = context.number(DECODED) // len(context.seeds)
    numbers = [(seed, number) for seed in context.seeds for number in range(max(1, half))]
    cases = context.map(lambda pair: decode_mutant(context, decoding, samples, *pair), numbers)
    chosen = chosen_for_whole_runs(cases, context.number(WHOLE_RUNS))
    whole = context.outcome_of(lambda case: connect(context, case, filter_package), chosen)
    failures = [case.failure for case in cases if case.failure] + whole.failures
    return trust.Outcome(len(cases) + whole.runs, failures, notes_on(cases))

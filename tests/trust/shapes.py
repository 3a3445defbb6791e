"""Hostile shapes of files and command lines: twice as much takes at most 2.3 times as long."""

import runs
import hostile

TITLE = "hostile shapes, each at two sizes, and command lines"
MEGABYTE = 1_000_000
CPU_OF_A_MEGABYTE = 2  # seconds, in the release build
RATIO = 2.3
# Sizes of the larger file of a pair, in bytes. A ratio counts if it is too large at all of them:
# the first measurement may be wrong by chance, and a larger file leaves the caches.
SIZES = [MEGABYTE, MEGABYTE, 2 * MEGABYTE, 4 * MEGABYTE]
# Runs of which the least cpu counts, once a ratio is in doubt.
REPEATS = 4


def size_of(files):
    return sum(map(len, files.values()))


def parts_for(shape, size):
    """How many parts of a shape come to about that size."""
    parts = 1000
    while 2 * size_of(shape.make(parts)) < size:
        parts *= 2
    return max(2, parts * size // size_of(shape.make(parts)))


def run_on(context, files, command):
    folder = context.workplace.empty_folder()
    for name, content in files.items():
        (folder / name).write_bytes(content if isinstance(content, bytes) else content.encode())
    return context.workplace.server(context.release).run(command, folder)


def least_run(context, files, command, repeats):
    """The run that took the least of some, or the first that breaks a bound."""
    made = []
    for _ in range(repeats):
        made.append(run_on(context, files, command))
        if runs.broken_bound(made[-1]) is not None:
            return made[-1]
    return min(made, key=lambda run: run.cpu)


def broken_growth(context, shape, command):
    """What a shape takes too much of, or None, and the last run."""
    name = next(iter(shape.make(2)))
    command = [name if word == hostile.INPUT else word for word in command]
    said = []
    for number, size in enumerate(SIZES):
        repeats = REPEATS if number else 1
        parts = parts_for(shape, size) // 2
        small = least_run(context, shape.make(parts), command, repeats)
        large = least_run(context, shape.make(2 * parts), command, repeats)
        for run in (small, large):
            if (broken := runs.broken_bound(run)) is not None:
                return f"of {parts} or {2 * parts} parts {broken}", run
        if size == MEGABYTE and large.cpu > CPU_OF_A_MEGABYTE:
            return f"takes {large.cpu:.1f} s for a megabyte", large
        if large.cpu <= RATIO * small.cpu:
            return None, large
        said.append(f"{parts} parts {small.cpu:.3f} s, {2 * parts} parts {large.cpu:.3f} s")
    return f"grows too fast: {'; '.join(said)}", large


def abridged(run):
    """A run with a command that can be read."""
    run.arguments = [word[:100] for word in run.arguments[:8]]
    return run


def check_shape(context, shape, command):
    broken, run = broken_growth(context, shape, command)
    return None if broken is None else f"shape '{shape.name}' {broken}\n  {abridged(run)}"


def check_line(context, name):
    files, words = hostile.COMMAND_LINES[name]()
    run = run_on(context, files, words)
    broken = runs.broken_bound(run)
    if broken is None and run.cpu > CPU_OF_A_MEGABYTE:
        broken = "takes too long"
    return None if broken is None else f"command line '{name}' {broken}\n  {abridged(run)}"


def run(context):
    pairs = [(shape, command) for shape in hostile.SHAPES for command in shape.commands]
    every = round(1 / min(context.share, 1))
    grown = context.outcome_of(lambda pair: check_shape(context, *pair), pairs[::every])
    lines = context.outcome_of(lambda name: check_line(context, name),
                               list(hostile.COMMAND_LINES)[::every])
    return type(grown)(2 * grown.runs + lines.runs, grown.failures + lines.failures)

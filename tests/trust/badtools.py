"""Tools that break the promises, for the tests of the parts: functions in the place of the tool."""

import contextlib
import os
import pathlib
import tempfile
import types
from unittest import mock

import runs
import trust

WHOLE = b"</package>\n"


def ended(code, err=b"", out=b"", number=0):
    """What a bad tool returns: the end of its run."""
    return runs.Run([], code, number, 0.001, 1000, out, err)


def target_of(words, folder):
    """Where the tool that is given these words would write."""
    stem = pathlib.Path(words[1]).stem
    place = words[words.index("--output-path") + 1] if "--output-path" in words else "."
    if place == "{inputPath}":
        return folder / f"{stem}.obl"
    return folder / place / f"{stem}_updated.obl"


def saved(words, folder, content=WHOLE):
    """Writes a target, and returns the end of the run that says so."""
    target = target_of(words, folder)
    target.write_bytes(content)
    return ended(0, out=b"Packages Saved:\n    %s\n" % str(target).encode())


@contextlib.contextmanager
def context_with(tool, share):
    """A context in which tool(words, folder, environment) runs in the place of the tool."""
    def run(words, folder, environment=None):
        made = tool([os.fsdecode(word) for word in words], pathlib.Path(folder), environment or {})
        made.arguments = list(words)
        return made

    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        (folder / "part").mkdir()
        context = trust.Context(folder, folder, [1], share, 1, folder / "part", folder / "kept")
        server = types.SimpleNamespace(run=run)
        with (mock.patch.object(runs.Workplace, "server", lambda *_: server),
              mock.patch.object(runs, "run_process", lambda build, words, directory,
                                environment=None: run(words, directory, environment))):
            yield context


def failures_of(part, tool, share):
    """The failures that a part finds in such a tool, as one text."""
    with context_with(tool, share) as context:
        return "\n".join(part.run(context).failures)

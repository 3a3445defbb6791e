"""The exceptions of the module."""

from __future__ import annotations

import pathlib
from collections.abc import Iterable
from typing import TYPE_CHECKING, NamedTuple

if TYPE_CHECKING:
    from .commands import Report


class Failure(NamedTuple):
    """A file that could not be opened.

    `path` is the file, and `reason` the cause in a sentence. `is_dependency` is true for a
    file that another package needs."""

    path: pathlib.Path
    reason: str
    is_dependency: bool


class Error(Exception):
    """The base of all exceptions of this module."""


class OpenError(Error):
    """Files that cannot be opened. `failures` has one entry for each, in the order of the attempts."""

    def __init__(self, failures: Iterable[Failure], message: str | None = None) -> None:
        self.failures = tuple(failures)
        lines = [f"{failure.path}: {failure.reason}" for failure in self.failures]
        super().__init__(message or "\n".join(lines) or "the file cannot be opened")


class SaveError(Error):
    """A file that cannot be written. It has its former bytes still.

    If these could not be put back, `kept_copy` is the path of a copy of them."""

    def __init__(self, path: pathlib.Path, reason: str,
                 kept_copy: pathlib.Path | None = None) -> None:
        self.path = path
        self.reason = reason
        self.kept_copy = kept_copy
        kept = "" if kept_copy is None else f"; the former file is kept as {kept_copy}"
        super().__init__(f"{path}: {reason}{kept}")


class EditError(Error):
    """An edit that was refused. The package is as it was before."""


class GoneError(Error):
    """The use of an object that has left its package, or whose package is closed."""


class SessionError(Error):
    """The use of a closed session, of one that belongs to another thread, or a second session."""


class CommandError(Error):
    """A command that failed. `report` says what it did before."""

    def __init__(self, report: Report) -> None:
        self.report = report
        super().__init__("\n".join(report.errors) or f"exit code {report.exit_code}")

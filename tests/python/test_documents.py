"""The code of `docs/python.md` does what the page shows."""

from __future__ import annotations

import doctest
import pathlib
import re
import textwrap

import kestrix
import pytest
from samples import SOURCES, run_python

PAGE = SOURCES / "docs" / "python.md"
TEXT = PAGE.read_text(encoding="utf-8")


def blocks() -> list[str]:
    """The indented blocks."""
    found = re.findall(r"(?:^    .*\n|^\n(?=    ))+", TEXT, re.M)
    return [textwrap.dedent(block).strip("\n") + "\n" for block in found]


def test_the_page_shows_what_the_module_answers(examples: pathlib.Path,
                                                monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(examples)
    answers: list[str] = []
    test = doctest.DocTestParser().get_doctest(TEXT, {}, PAGE.name, str(PAGE), 0)

    results = doctest.DocTestRunner(verbose=False).run(test, out=answers.append)

    assert results.attempted > 40
    assert results.failed == 0, "".join(answers)


def test_the_first_program_prints_what_the_page_shows(examples: pathlib.Path,
                                                      monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(examples)
    _, program, output = [block for block in blocks() if not block.startswith(">>>")]

    run = run_python(program)

    assert (run.stdout, run.stderr) == (output, "")


def test_the_page_names_all_that_is_public() -> None:
    names = [name for name in kestrix.__all__ if name != "__version__"]

    assert [name for name in names if not re.search(rf"\b{name}\b", TEXT)] == []


def test_the_page_names_nothing_that_is_missing() -> None:
    members = {name for owner in vars(kestrix).values() for name in dir(owner)}
    named = set(re.findall(r"`(?:\w+\.)?(\w+)\(\)`", TEXT)) - {"repr", "hash", "help"}

    assert named <= members | set(kestrix.__all__)

"""The fixtures of the tests: an open session, packages in it, and copies of the examples."""

from __future__ import annotations

import pathlib
import shutil
from collections.abc import Iterator

import kestrix
import pytest
from samples import EXAMPLES, PRESETS, WOOD


@pytest.fixture
def session() -> Iterator[kestrix.Session]:
    with kestrix.Session([PRESETS]) as opened:
        yield opened


@pytest.fixture
def wood(session: kestrix.Session) -> kestrix.Package:
    return session.open(WOOD)


@pytest.fixture
def graph(session: kestrix.Session) -> kestrix.Graph:
    """An empty graph of a new package."""
    return session.add_package("made").add_graph("made")


@pytest.fixture
def examples(tmp_path: pathlib.Path) -> pathlib.Path:
    """A copy of the examples that a test may change."""
    return pathlib.Path(shutil.copytree(EXAMPLES, tmp_path / "examples"))

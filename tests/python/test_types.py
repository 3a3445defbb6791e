"""The stub and the docstrings agree with the module."""

from __future__ import annotations

import ast
import inspect
import pathlib
import pydoc
import re
import subprocess
import sys
from collections.abc import Iterator

import kestrix
import pytest
from kestrix import _kestrix
from samples import SOURCES, name_of

HERE = pathlib.Path(__file__).parent
STUB = pathlib.Path(_kestrix.__file__).with_name("_kestrix.pyi")
CLASSES = [value for value in vars(_kestrix).values() if inspect.isclass(value)]
PUBLIC = [getattr(kestrix, name) for name in kestrix.__all__ if name != "__version__"]


def mypy(*arguments: object) -> subprocess.CompletedProcess[str]:
    return subprocess.run([sys.executable, "-m", *map(str, arguments)], text=True, check=False,
                          capture_output=True)


def test_the_types_are_right_in_module_examples_and_tests(tmp_path: pathlib.Path) -> None:
    sources = [*sorted((SOURCES / "examples" / "python").glob("*.py")), HERE / "samples.py",
               HERE / "conftest.py",
               *(path for path in sorted(HERE.glob("test_*.py"))
                 if path.name != "test_editscripts.py")]

    run = mypy("mypy", "--strict", "--cache-dir", tmp_path, "-p", "kestrix")
    assert run.returncode == 0, run.stdout
    run = mypy("mypy", "--strict", "--cache-dir", tmp_path, *sources)
    assert run.returncode == 0, run.stdout


def test_the_stub_agrees_with_the_module(tmp_path: pathlib.Path) -> None:
    (tmp_path / "mypy.ini").write_text(f"[mypy]\ncache_dir = {tmp_path}\n", encoding="ascii")

    run = mypy("mypy.stubtest", "--allowlist", HERE / "stub_allowed.txt", "--mypy-config-file",
               tmp_path / "mypy.ini", "kestrix._kestrix")

    assert run.returncode == 0, run.stdout


def stub_classes() -> dict[str, ast.ClassDef]:
    tree = ast.parse(STUB.read_text(encoding="utf-8"))
    return {node.name: node for node in tree.body if isinstance(node, ast.ClassDef)}


def test_the_stub_has_the_classes_of_the_module_with_their_bases() -> None:
    stub = {name: [base.id for base in node.bases if isinstance(base, ast.Name)]
            for name, node in stub_classes().items()}

    assert stub == {kind.__name__: [base.__name__ for base in kind.__bases__
                                    if base.__name__ != "pybind11_object"] for kind in CLASSES}


def bound_signatures(kind: type) -> Iterator[tuple[str, list[str]]]:
    """The signatures as they are bound, from the first lines of the docstrings."""
    for name, value in vars(kind).items():
        if name.startswith("_") or not callable(value):
            continue
        for arguments in re.findall(rf"^(?:\d\. )?{name}\((.*)\) -> ", value.__doc__ or "", re.M):
            if arguments != "*args, **kwargs":
                yield name, [re.sub(r": [\w.:]+", "", argument)
                             for argument in arguments.split(", ")]


def stub_signatures(kind: ast.ClassDef) -> Iterator[tuple[str, list[str]]]:
    for function in kind.body:
        if isinstance(function, ast.FunctionDef) and not function.name.startswith("_"):
            decorators = {ast.unparse(decorator) for decorator in function.decorator_list}
            if "property" not in decorators:
                yield function.name, [re.sub(r"=", " = ", re.sub(r": .*?(?==|$)", "", argument))
                                      for argument in ast.unparse(bare(function)).split(", ")]


def bare(function: ast.FunctionDef) -> ast.arguments:
    arguments = function.args
    for argument in [*arguments.args, *arguments.kwonlyargs]:
        argument.annotation = None
    return arguments


@pytest.mark.parametrize("kind", CLASSES, ids=name_of)
def test_the_signatures_of_the_stub_are_those_that_are_bound(kind: type) -> None:
    assert sorted(stub_signatures(stub_classes()[kind.__name__])) == sorted(bound_signatures(kind))


@pytest.mark.parametrize("kind", CLASSES, ids=name_of)
def test_the_stub_says_which_properties_can_be_written(kind: type) -> None:
    body = stub_classes()[kind.__name__].body
    written = {node.target.id for node in body
               if isinstance(node, ast.AnnAssign) and isinstance(node.target, ast.Name)}

    assert written == {name for name, value in vars(kind).items()
                       if isinstance(value, property) and value.fset is not None}


def documented(owner: object) -> dict[str, object]:
    """The public members of a class, or the object itself."""
    members = {"": owner}
    if inspect.isclass(owner):
        members |= {name: value for name, value in vars(owner).items()
                    if (not name.startswith("_") or name in ("__enter__", "__exit__"))
                    and (callable(value) or isinstance(value, (property, classmethod)))}
    return members


@pytest.mark.parametrize("owner", PUBLIC, ids=name_of)
def test_everything_public_has_a_docstring(owner: object) -> None:
    texts = {name: described(value) for name, value in documented(owner).items()}

    assert [name for name, text in texts.items() if not re.match(r"[A-Z].*\.", text, re.S)] == []


@pytest.mark.parametrize("owner", [kestrix.Failure, kestrix.Image, kestrix.Report], ids=name_of)
def test_every_field_has_its_text_in_the_class(owner: type[tuple[object, ...]]) -> None:
    fields: tuple[str, ...] = getattr(owner, "_fields")

    assert [name for name in fields if f"`{name}`" not in (owner.__doc__ or "")] == []


def described(value: object) -> str:
    """The docstring without signatures, which the binding library puts in front."""
    text = re.sub(r"^(\d\. )?\w+\(.*\)( -> .*)?$", "", value.__doc__ or "", flags=re.M)
    return text.replace("Overloaded function.", "").strip()


@pytest.mark.parametrize("owner", PUBLIC, ids=name_of)
def test_help_names_no_class_of_cpp_and_no_private_module(owner: object) -> None:
    text = pydoc.plain(pydoc.render_doc(owner))

    assert "::" not in text
    assert "kestrix._kestrix" not in text


def test_help_of_the_module_begins_with_an_example() -> None:
    text = pydoc.plain(pydoc.render_doc(kestrix))

    assert "with kestrix.Session() as session:" in text
    assert all(f"class {owner.__name__}" in text for owner in PUBLIC if inspect.isclass(owner))


def test_the_module_knows_its_version() -> None:
    assert re.fullmatch(r"\d+\.\d+\.\d+", kestrix.__version__)


def test_all_public_classes_belong_to_the_module() -> None:
    assert {owner.__module__ for owner in PUBLIC} == {"kestrix", "kestrix.errors",
                                                      "kestrix.commands"}


def test_all_errors_have_one_base() -> None:
    errors = [owner for owner in PUBLIC
              if inspect.isclass(owner) and issubclass(owner, Exception)]

    assert len(errors) == 7
    assert all(issubclass(error, kestrix.Error) for error in errors)

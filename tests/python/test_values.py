"""Values of every type are read as they were written, and other shapes are refused."""

from __future__ import annotations

import decimal
import fractions
import pathlib
from collections.abc import Sequence

import kestrix
import pytest

VALUES: list[tuple[str, bool | float | str | tuple[float, ...]]] = [
    ("bool", True), ("bool", False),
    ("int1", -3), ("int1", 2**31 - 1), ("int1", -2**31),
    ("int2", (1, -2)), ("int3", (1, 2, 3)), ("int4", (-2**31, 2, 3, 2**31 - 1)),
    ("float1", 0.25), ("float1", -0.00390625), ("float1", 7.0),
    ("float2", (0.5, -1.5)), ("float3", (0.5, 1.5, 2.5)), ("float4", (0.0, 0.25, 0.5, 1.0)),
    ("string", ""), ("string", "Grüße, \"ça va\"?\n\t& <end>"),
]
SHAPES: dict[str, bool | int | str | tuple[int, ...]] = {
    "bool": True, "int1": 7, "int2": (1, 2), "int3": (1, 2, 3), "int4": (1, 2, 3, 4),
    "string": "text"}


@pytest.mark.parametrize("kind, value", VALUES, ids=str)
def test_a_default_is_read_as_it_was_written(graph: kestrix.Graph, kind: str,
                                             value: float) -> None:
    entry = graph.add_input("x", kind)
    entry.default = value

    assert (entry.default, type(entry.default)) == (value, type(value))


@pytest.mark.parametrize("kind, value", VALUES, ids=str)
def test_a_default_is_the_same_in_the_saved_file(session: kestrix.Session, graph: kestrix.Graph,
                                                 tmp_path: pathlib.Path, kind: str,
                                                 value: float) -> None:
    graph.add_input("x", kind).default = value
    graph.package.save(tmp_path / "saved.obl")

    read = session.open(tmp_path / "saved.obl").graph("made").input("x")

    assert (read.type, read.default) == (kind, value)


@pytest.mark.parametrize("kind", ["int1", "int2", "int3", "int4", "float1", "float2", "float3",
                                  "float4", "bool"])
def test_a_constant_of_a_function_is_read_as_it_was_written(graph: kestrix.Graph,
                                                            kind: str) -> None:
    body = graph.add_filter("blur").parameter("intensity").make_dynamic()
    node = body.add(f"const_{kind}")
    value = dict(VALUES)[kind]
    node.value = value

    assert (node.value, type(node.value)) == (value, type(value))


@pytest.mark.parametrize("kind", ["bool", "int1", "int2", "float1", "float4", "string"])
def test_a_new_input_has_no_default(graph: kestrix.Graph, kind: str) -> None:
    assert graph.add_input("x", kind).default is None


@pytest.mark.parametrize("kind", ["int1", "float1", "bool"])
def test_a_vector_is_no_number(graph: kestrix.Graph, kind: str) -> None:
    with pytest.raises(TypeError):
        graph.add_input("x", kind).default = (1,)


@pytest.mark.parametrize("kind", SHAPES)
@pytest.mark.parametrize("other", SHAPES)
def test_a_value_of_another_shape_raises_type_error(graph: kestrix.Graph, kind: str,
                                                    other: str) -> None:
    entry = graph.add_input("x", kind)

    assert is_refused(entry, SHAPES[other]) == (other != kind)


def is_refused(entry: kestrix.Input, value: object) -> bool:
    try:
        entry.default = value  # type: ignore[assignment]
    except TypeError:
        return True
    return False


@pytest.mark.parametrize("value", [1.5, decimal.Decimal("1.5"), fractions.Fraction(3, 2), "1", None,
                                   True, 2**31, -2**31 - 1, 2**100, [1], object()], ids=str)
def test_an_integer_takes_nothing_but_integers(graph: kestrix.Graph, value: object) -> None:
    entry = graph.add_input("x", "int1")

    assert is_refused(entry, value)
    assert entry.default is None


@pytest.mark.parametrize("value", ["1", None, True, [1.0], b"1", object()], ids=str)
def test_a_float_takes_nothing_but_numbers(graph: kestrix.Graph, value: object) -> None:
    assert is_refused(graph.add_input("x", "float1"), value)


@pytest.mark.parametrize("value, read", [(2, 2.0), (decimal.Decimal("0.5"), 0.5),
                                         (fractions.Fraction(1, 4), 0.25)], ids=str)
def test_a_float_takes_any_number(graph: kestrix.Graph, value: float, read: float) -> None:
    entry = graph.add_input("x", "float1")
    entry.default = value

    assert entry.default == read


@pytest.mark.parametrize("value", [float("nan"), float("inf"), -float("inf"), 1e300], ids=str)
def test_a_number_that_is_not_finite_is_refused(graph: kestrix.Graph, value: float) -> None:
    entry = graph.add_input("x", "float1")

    with pytest.raises(kestrix.EditError):
        entry.default = value

    assert entry.default is None


@pytest.mark.parametrize("value", [[1, 2], (1, 2), range(1, 3)], ids=str)
def test_a_vector_takes_any_sequence(graph: kestrix.Graph, value: Sequence[int]) -> None:
    entry = graph.add_input("x", "int2")
    entry.default = value

    assert entry.default == (1, 2)


@pytest.mark.parametrize("value", ["12", b"12", {1, 2}, {1: 2, 3: 4}, iter((1, 2)), (1,), (1, 2, 3),
                                   (1, None), (1, True), (1, 2.5)], ids=str)
def test_a_vector_takes_no_more_than_its_numbers(graph: kestrix.Graph, value: object) -> None:
    assert is_refused(graph.add_input("x", "int2"), value)


@pytest.mark.parametrize("value", [1, None, b"text", ["text"]], ids=str)
def test_a_text_takes_nothing_but_texts(graph: kestrix.Graph, value: object) -> None:
    assert is_refused(graph.add_input("x", "string"), value)


def test_a_text_outside_latin_1_raises_unicode_encode_error(graph: kestrix.Graph) -> None:
    with pytest.raises(UnicodeEncodeError):
        graph.add_input("x", "string").default = "Ω"


def test_an_image_has_no_values(graph: kestrix.Graph) -> None:
    graph.add_input_node("image", "grayscale")

    with pytest.raises(ValueError, match="the type grayscale has no values"):
        graph.input("image").default = 1


def test_a_default_is_brought_into_the_range_of_its_widget(session: kestrix.Session,
                                                           wood: kestrix.Package) -> None:
    entry = wood.graphs[0].input("age")
    entry.default = 1000

    assert entry.maximum is not None
    assert entry.default == float(entry.maximum)


def test_a_frozen_value_has_the_type_of_the_input(graph: kestrix.Graph) -> None:
    entry = graph.add_input("x", "int2")

    with pytest.raises(TypeError):
        entry.freeze(1.5)

    assert entry.is_valid


@pytest.mark.parametrize("value", [True, 1.5, -1, 2**32, (0,), "x"], ids=str)
def test_the_single_integer_of_a_parameter_is_an_index(graph: kestrix.Graph,
                                                       value: object) -> None:
    with pytest.raises(TypeError):
        graph.parameter("format").value = value  # type: ignore[assignment]


def test_a_number_that_is_not_finite_is_no_value_of_a_parameter(graph: kestrix.Graph) -> None:
    with pytest.raises(kestrix.EditError):
        graph.add_filter("blur").parameter("intensity").value = float("nan")

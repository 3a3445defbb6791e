"""Small files of every format and version, and one package with a little of everything."""

import dataclasses
import pathlib
import re

import structure as s

PROJECT = pathlib.Path(__file__).resolve().parents[2]
LARGEST = 20_000  # bytes of a sample: a run of it is quick under the sanitizers as well
HIMSELF = "?himself"
COMPANION = "b.obl"  # what all samples depend on


@dataclasses.dataclass
class Sample:
    """`members` are the documents in it by their names: one of a package, of an archive several."""

    kind: str  # the ending of its file
    members: dict  # elements by name


def companion():
    """A package that others depend on, with a graph and a function."""
    return s.package(
        s.graph("wood", 10, s.graph_input("size", 11), None, s.graph_output("color", 12))
        + s.node("function", s.leaf("identifier", "twice"), s.leaf("uid", 13),
                 s.node("paraminputs", s.graph_input("x", 14)), s.valued("type", 256),
                 s.node("paramValue", s.function_value(_getter(15, "x"), 15))),
        s.dependency(HIMSELF, 40)).encode()


def _getter(uid, name):
    return s.function_node(uid, "get_float1", 256, "", s.function_data(name))


def _of_functions():
    """A blend whose opacity is computed from the input "size"."""
    functions = (_getter(60, "size") + _getter(61, "size")
                 + s.function_node(62, "add", 256, s.connection("a", 60) + s.connection("b", 61)))
    return s.comp_filter("blend", s.parameter("opacitymult", s.function_value(functions, 62))
                         + s.parameter("outputsize", s.constant("Int2", "1 2")))


def _fx_map():
    return s.comp_filter("fxmaps", "", s.node("paramsGraphs", s.node(
        "paramsGraph", s.leaf("name", "fxmap"), s.leaf("uid", 70), s.valued("rootnode", 72),
        s.node("paramsGraphDatas", s.node("paramsGraphData", s.leaf("identifier", "d"),
                                          s.leaf("uid", 71), s.leaf("type", "paramset"), s.node(
                                              "parameters", s.parameter("opacity", s.function_value(
                                                  _getter(74, "size"), 74))))),
        s.node("paramsGraphNodes", s.node("paramsGraphNode", s.leaf("uid", 72),
                                          s.leaf("type", "paramset"), s.leaf("data", 71))))))


def everything():
    """A current package with a little of everything that a package can hold."""
    inputs = (s.graph_input("size", 2, 256, s.node("defaultValue", s.constant("Float1", "0.5")),
                            [("min", "0"), ("max", "1")])
              + s.graph_input("count", 3, 16, s.node("defaultValue", s.constant("Int1", "7")),
                              [("parameters", "1;one | 2;two")])
              + s.graph_input("mask", 4, 2))
    outputs = (s.graph_output("color", 5, s.node("usage", s.leaf("components", "RGB"),
                                                 s.leaf("name", "diffuse")))
               + s.graph_output("height", 6))
    nodes = (
        s.comp_node(20, s.input_bridge(4), [21])
        + s.comp_node(22, _of_functions(), [23], s.connection("source", 20, 21)
                      + s.connection("destination", 24, 25))
        + s.comp_node(24, s.instance(
            "pkg://wood?dependency=31", s.parameter("size", s.constant("Float1", "0.25")),
            s.bridging(25, "color")), [25], s.connection("in", 20, 21))
        + s.comp_node(26, s.instance("pkg://parts/leaf?dependency=30", "",
                                     s.bridging(27, "o")), [27])
        + s.comp_node(28, _fx_map(), [29])
        + s.comp_node(32, s.output_bridge(5), [], s.connection("inputNodeOutput", 22, 23),
                      s.leaf("GUIName", "out"))
        + s.comp_node(34, s.output_bridge(6), [], s.connection("inputNodeOutput", 24, 25))
        + s.comp_node(36, s.comp_filter("bitmap", s.parameter(
            "bitmapresourcepath", s.constant("String", "pkg://oak?dependency=30"))), [37]))
    extra = s.node("GUIObjects", s.node(
        "GUIObject", s.leaf("type", "comment"), s.leaf(
            "GUIDependency",
            "pkg://planks?dependency=30&amp;typeParam=CompNodeType&amp;compNodeUidParam=22"),
        s.node("GUILayout", s.leaf("gpos", "1 2 3")), s.leaf("GUIName", ""), s.leaf("uid", 38)))
    content = (s.graph("planks", 1, inputs, 4, outputs, nodes, s.root_output(5) + s.root_output(6),
                       s.parameter("format", s.constant("Int1", "0")), "", extra)
               + s.group("parts", 7, s.graph("leaf", 8, "", None, s.graph_output("o", 9)))
               + s.resource("oak", 39, "oak.png"))
    return s.package(content, s.dependency(HIMSELF, 30) + s.dependency(COMPANION, 31)).encode()


def _read(path):
    text = path.read_bytes()
    # A template of the tests, whose uids have letters in front.
    return s.parse(re.sub(rb'"[up](\d+)"', rb'"\1"', text))


def _depend_on_companion(root):
    for element in root.walk():
        if element.name == "dependency":
            for child in element.children:
                if child.name == "filename" and child.attributes[0][1] != HIMSELF:
                    child.attributes = [["v", COMPANION]]
    return root


def packages():
    """Small packages of all versions, with the companion as their only dependency."""
    golden = PROJECT / "tests/golden"
    paths = [golden / "specialization/rich.obl", *sorted((golden / "chains").glob("*/input.obl")),
             *sorted((PROJECT / "examples").rglob("*.obl"))]
    small = [path for path in paths if path.stat().st_size <= LARGEST]
    roots = [s.parse(everything()), *map(_read, small)]
    return [Sample("obl", {"a.obl": _depend_on_companion(root)}) for root in roots]


def descriptions():
    """Elements of the small descriptions of assemblies."""
    paths = sorted((PROJECT / "examples/assemblies/sources").rglob("*.xml"))
    return [s.parse(path.read_bytes()) for path in paths]


def assemblies():
    return [Sample("oblasm", {"a.xml": root}) for root in descriptions()]


def archives():
    """Archives of one, two and all of the descriptions."""
    roots = descriptions()
    return [Sample("oblar", {f"assemblies/content/{n}/a.xml": root for n, root in enumerate(some)})
            for some in (roots[:1], roots[:2], roots)]

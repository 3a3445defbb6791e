"""Shapes of files that might make work for the tool grow faster than they do.

A shape makes the files of a run from a number of parts."""

import dataclasses
import itertools
import random
import typing

import structure as s

INPUT = "{input}"  # the name of the first file of a shape
UPDATE = ("update", INPUT)
SET = ("graph-parameters-editor", INPUT, "--set-default-value", "i@1")
FREEZE = ("graph-parameters-editor", INPUT, "--switch-to-constant", "i@1")
SPECIALIZE = ("specialization", INPUT)
MERGE = ("specialization", INPUT, "--connect-input", "m", "--output-merge", "--output-name", "t")
EDITS = (FREEZE, SPECIALIZE)
ALL = (UPDATE, SET, FREEZE, SPECIALIZE)

HIMSELF = s.dependency("?himself", 9)
OTHER = {"b.obl": s.package(s.graph("h", 1))}
DEEPEST = 4_900  # elements in each other, of the 5,000 that are allowed
MOST_ATTRIBUTES = 990  # of an element, of the 1,000 that are allowed
E = "&"  # begins an entity


@dataclasses.dataclass
class Shape:
    name: str
    commands: tuple
    make: typing.Callable  # of a number of parts: the files by name, that of the input first


def base(inputs="", outputs="", nodes="", roots="", dependencies="", behind="", **graph):
    """A package whose first graph has an input "i", an image "m" that goes to an output "o", and
    what is given. What is `behind` stands behind that graph."""
    first = s.graph(
        "g", 1, s.graph_input("i", 2, 256, s.node("defaultValue", s.constant("Float1", "0.5")))
        + s.graph_input("m", 3, 1) + inputs, 3, s.graph_output("o", 4) + outputs,
        s.comp_node(5, s.input_bridge(3), [6])
        + s.comp_node(7, s.output_bridge(4), [], s.connection("inputNodeOutput", 5, 6)) + nodes,
        s.root_output(4) + roots, **graph)
    return {"a.obl": s.package(first + behind, dependencies)}


def many(part, n):
    """The text of a part for each number, or n times a text."""
    return "".join(map(part, range(n))) if callable(part) else part * n


def getter(uid, name="i"):
    return s.function_node(uid, "get_float1", 256, "", s.function_data(name))


def adder(uid, *sources):
    return s.function_node(uid, "add", 256, "".join(
        s.connection(name, source) for name, source in zip(itertools.cycle("ab"), sources)))


def computed(functions, root):
    return s.parameter("opacitymult", s.function_value(functions, root))


def blend(parameters="", connections="", uid=100, outputs=(1_000_000,), extra=""):
    return s.comp_node(uid, s.comp_filter("blend", parameters, extra), outputs, connections)


def with_function(functions, root):
    return base(nodes=blend(computed(functions, root)))


def instance(uid, path, parameters="", bridgings=""):
    return s.comp_node(uid, s.instance(path, parameters, bridgings), [uid + 1_000_000])


def of_package(text):
    """Text in front of the content of a package."""
    return {"a.obl": base()["a.obl"].replace("<content>", text + "<content>", 1)}


def with_author(value):
    return {"a.obl": base()["a.obl"].replace('<author v=""/>', f'<author v="{value}"/>')}


def with_doctype(declarations, value):
    return {"a.obl": with_author(value)["a.obl"].replace(
        "<package>", f"<!DOCTYPE package [{declarations}]><package>")}


def in_encoding(text, encoding):
    return {"a.obl": of_package(text)["a.obl"].encode(encoding, "surrogatepass")}


def old(version, files):
    return {name: text.replace(s.VERSION, version) for name, text in files.items()}


def nested_groups(n, inner=""):
    opened = many(lambda k: f'<group><uid v="{k + 100}"/><identifier v="p"/><content>', n)
    return opened + inner + "</content></group>" * n


def fx_map(datas, nodes):
    return s.node("paramsGraphs", s.node(
        "paramsGraph", s.leaf("name", "fxmap"), s.leaf("uid", 5), s.valued("rootnode", 0),
        s.node("paramsGraphDatas", datas), s.node("paramsGraphNodes", nodes)))


def fx_data(uid, parameters=""):
    return s.node("paramsGraphData", s.leaf("identifier", "d"), s.leaf("uid", uid),
                  s.leaf("type", "paramset"), s.node("parameters", parameters))


def fx_node(uid, data):
    return s.node("paramsGraphNode", s.leaf("uid", uid), s.leaf("type", "paramset"),
                  s.node("connexions", s.connection("patterntype", uid + 1)), s.leaf("data", data))


INTERFACES = [
    Shape("inputs", ALL, lambda n: base(many(lambda k: s.graph_input(f"i{k}", 10 + k), n))),
    Shape("inputs of one name", ALL,
          lambda n: base(many(lambda k: s.graph_input("i", 10 + k), n))),
    Shape("inputs of one uid", ALL, lambda n: base(many(lambda k: s.graph_input(f"i{k}", 2), n))),
    Shape("inputs of one name and uid", EDITS, lambda n: base(many(s.graph_input("i", 2), n))),
    Shape("inputs named like those that are made", EDITS, lambda n: base(
        many(lambda k: s.graph_input("i" if k % 2 else f"i_{k // 2}", 10 + k), n))),
    Shape("inputs with the last uids", EDITS, lambda n: base(
        many(lambda k: s.graph_input("i", 2 ** 32 - 1 - k), n))),
    Shape("images", ALL, lambda n: base(many(lambda k: s.graph_input(f"m{k}", 10 + k, 1), n))),
    Shape("images of one name", EDITS, lambda n: base(
        many(lambda k: s.graph_input("m", 10 + k, 1), n))),
    Shape("images with nodes", ALL, lambda n: base(
        many(lambda k: s.graph_input(f"m{k}", 10 + k, 1), n),
        nodes=many(lambda k: s.comp_node(10 ** 6 + k, s.input_bridge(10 + k),
                                         [2 * 10 ** 6 + k]), n))),
    Shape("outputs", ALL, lambda n: base(
        outputs=many(lambda k: s.graph_output(f"o{k}", 10 + k), n))),
    Shape("outputs of one name", EDITS, lambda n: base(
        outputs=many(lambda k: s.graph_output("o", 10 + k), n))),
    Shape("outputs of one uid", EDITS, lambda n: base(
        outputs=many(lambda k: s.graph_output(f"o{k}", 4), n))),
    Shape("outputs with nodes", ALL, lambda n: base(
        outputs=many(lambda k: s.graph_output(f"o{k}", 10 + k), n),
        roots=many(lambda k: s.root_output(10 + k), n),
        nodes=many(lambda k: s.comp_node(10 ** 6 + k, s.output_bridge(10 + k), [],
                                         s.connection("inputNodeOutput", 5, 6)), n))),
    Shape("nodes of one input", EDITS, lambda n: base(
        nodes=many(lambda k: s.comp_node(10 + k, s.input_bridge(3), [10 ** 6 + k]), n))),
    Shape("nodes of one output", EDITS, lambda n: base(
        nodes=many(lambda k: s.comp_node(10 + k, s.output_bridge(4), [],
                                         s.connection("inputNodeOutput", 5, 6)), n))),
    Shape("usages", EDITS, lambda n: base(outputs=s.graph_output("u", 9, many(
        s.node("usage", s.leaf("components", "R"), s.leaf("name", "x")), n)))),
    Shape("options of an input", ALL, lambda n: {"a.obl": s.package(s.graph(
        "g", 1, s.graph_input("i", 2, 256, "", [("max", "1")] * n)))}),
    Shape("entries of a drop-down list", EDITS, lambda n: base(
        s.graph_input("w", 9, 16, "", [("parameters", "1;a | " * n)]))),
]

GRAPHS = [
    Shape("nodes of one uid", ALL, lambda n: base(nodes=many(blend(uid=5), n))),
    Shape("chain of nodes", EDITS, lambda n: base(nodes=many(lambda k: blend(
        "", s.connection("source", 99 + k, 999_999 + k), 100 + k, [10 ** 6 + k]), n))),
    Shape("chain of nodes, the last one first", EDITS, lambda n: base(nodes=many(lambda k: blend(
        "", s.connection("source", 101 + k, 1_000_001 + k), 100 + k, [10 ** 6 + k]), n))),
    Shape("cycle of nodes", EDITS, lambda n: base(nodes=many(lambda k: blend(
        "", s.connection("source", 100 + (k + 1) % n, 10 ** 6 + (k + 1) % n), 100 + k,
        [10 ** 6 + k]), n))),
    Shape("nodes fed twice by the one before", EDITS, lambda n: base(nodes=many(lambda k: blend(
        "", s.connection("source", 99 + k, 999_999 + k) + s.connection(
            "destination", 99 + k, 999_999 + k), 100 + k, [10 ** 6 + k]), n))),
    Shape("nodes fed by one", ALL, lambda n: base(nodes=many(lambda k: blend(
        "", s.connection("source", 5, 6), 100 + k, [10 ** 6 + k]), n))),
    Shape("connections of one input", EDITS, lambda n: base(
        nodes=blend("", many(s.connection("source", 5, 6), n)))),
    Shape("dangling connections", EDITS, lambda n: base(
        nodes=blend("", many(lambda k: s.connection(f"s{k}", 1000 + k, 6), n)))),
    Shape("outputs of a node", EDITS, lambda n: base(nodes=blend(outputs=range(1000, 1000 + n)))),
    Shape("parameters of a node", EDITS, lambda n: base(nodes=blend(
        many(lambda k: s.parameter(f"p{k}", s.constant("Float1", "1")), n)))),
    Shape("parameters of one name", EDITS, lambda n: base(nodes=blend(
        many(s.parameter("opacitymult", s.constant("Float1", "1")), n)))),
    Shape("objects of the layout", EDITS, lambda n: base(dependencies=HIMSELF, extra=s.node(
        "GUIObjects", many(lambda k: s.node(
            "GUIObject", s.leaf("type", "comment"), s.leaf(
                "GUIDependency", f"pkg://g?dependency=9{E}amp;typeParam=CompNodeType"
                f"{E}amp;compNodeUidParam=5"), s.leaf("GUIName", ""), s.leaf("uid", k)), n)))),
    Shape("sets of an FX-map", EDITS, lambda n: base(nodes=blend(extra=fx_map(
        many(fx_data, n), many(lambda k: fx_node(k, k), n))))),
    Shape("overloads of a value", EDITS, lambda n: base(nodes=blend(s.parameter(
        "opacitymult", s.node("constantValueFloat1", s.leaf("value", "1"), s.node(
            "valueOverloads", many(s.node("valueOverload", s.leaf("value", "1"),
                                          s.leaf("configurations", "c")), n))))))),
]

FUNCTIONS = [
    Shape("readers of an input in one function", (SET, FREEZE), lambda n: with_function(
        many(lambda k: getter(10 + k), n), 10)),
    Shape("functions fed by one reader", (FREEZE,), lambda n: with_function(
        getter(10) + many(lambda k: adder(11 + k, 10, 10), n), 10)),
    Shape("one connection of functions again and again", (FREEZE,), lambda n: with_function(
        getter(10) + adder(11, *[10] * n), 11)),
    Shape("sequences of functions", (FREEZE,), lambda n: with_function(getter(10) + many(
        lambda k: s.function_node(11 + k, "sequence", 256, s.connection("seqin", 10 + k)
                                  + s.connection("seqlast", 10)), n), 10 + n)),
    Shape("readers of an input in sets of an FX-map", (FREEZE,), lambda n: base(nodes=blend(
        extra=fx_map(many(fx_data(5, computed(getter(3), 3)), n), fx_node(0, 5))))),
    Shape("functions in a chain", EDITS, lambda n: with_function(
        getter(10) + many(lambda k: adder(11 + k, 10 + k), n), 10 + n)),
    Shape("functions in a cycle", EDITS, lambda n: with_function(
        getter(10) + many(lambda k: adder(11 + k, 11 + (k + 1) % n), n), 11)),
    Shape("functions fed twice by the one before", EDITS, lambda n: with_function(
        getter(10) + many(lambda k: adder(11 + k, 10 + k, 10 + k), n), 10 + n)),
    Shape("functions of nodes that read one input", EDITS, lambda n: base(nodes=many(
        lambda k: blend(computed(getter(10), 10), "", 100 + k, [10 ** 6 + k]), n))),
    Shape("functions of a package", EDITS, lambda n: base(behind=many(lambda k: s.node(
        "function", s.leaf("identifier", f"f{k}"), s.leaf("uid", 100 + k), "<paraminputs/>",
        s.valued("type", 256), s.node("paramValue", s.function_value(getter(10), 10))), n))),
    Shape("values of a function node", EDITS, lambda n: with_function(
        s.function_node(10, "get_float1", 256, "", many(s.function_data("i"), n)), 10)),
]

CONTENTS = [
    Shape("groups", ALL, lambda n: base(behind=many(lambda k: s.group(f"p{k}", 100 + k), n))),
    Shape("groups of one name", EDITS, lambda n: base(
        behind=many(lambda k: s.group("g", 100 + k), n))),
    Shape("groups in each other", ALL, lambda n: base(
        behind=many(nested_groups(DEEPEST // 2 - 10), n // 2000 + 1))),
    Shape("graphs", EDITS, lambda n: base(behind=many(lambda k: s.graph(f"g{k}", 100 + k), n))),
    Shape("graphs of one name", EDITS, lambda n: base(
        behind=many(lambda k: s.graph("g", 100 + k), n))),
    Shape("graphs named like those that are made", (MERGE,), lambda n: {
        **base(), "t.obl": s.package(many(lambda k: s.graph(f"g_{k}" if k else "g", 9 + k), n))}),
    Shape("target with graphs of one uid", (MERGE,), lambda n: {
        **base(), "t.obl": s.package(many(s.graph("g", 1), n))}),
    Shape("target with many ways to itself", (MERGE,), lambda n: {
        **base(), "t.obl": s.package("", many(lambda k: s.dependency("?himself", 1 + k), n))}),
    Shape("resources", EDITS, lambda n: base(
        behind=many(lambda k: s.resource(f"r{k}", 100 + k, f"r{k}.png"), n))),
    Shape("resources of one file", (UPDATE,), lambda n: base(
        behind=many(lambda k: s.resource(f"r{k}", 100 + k, "a/../" * 20 + "r.png"), n))),
    Shape("instances of one graph", EDITS, lambda n: base(
        nodes=many(lambda k: instance(100 + k, "pkg://h?dependency=9"), n), dependencies=HIMSELF,
        behind=s.graph("h", 90, s.graph_input("x", 1), None, s.graph_output("y", 2)))),
    Shape("instances of the graph that they are in", (SET, FREEZE), lambda n: base(
        nodes=many(lambda k: instance(100 + k, "pkg://g?dependency=9"), n), dependencies=HIMSELF)),
    Shape("instances of the last graph", (SET, FREEZE), lambda n: base(
        nodes=many(lambda k: instance(100 + k, f"pkg://g{n - 1}?dependency=9"), n),
        dependencies=HIMSELF, behind=many(lambda k: s.graph(f"g{k}", 100 + k), n))),
    Shape("instances of a missing graph", (SET, FREEZE), lambda n: base(
        nodes=many(lambda k: instance(100 + k, "pkg://x?dependency=9"), n),
        dependencies=HIMSELF, behind=many(lambda k: s.group(f"g{k}", 100 + k), n))),
    Shape("instances of a graph of images", (SET, FREEZE), lambda n: base(
        nodes=many(lambda k: instance(100 + k, "pkg://h?dependency=9"), n), dependencies=HIMSELF,
        behind=s.graph("h", 90, many(lambda k: s.graph_input(f"x{k}", 10 + k, 1), n)))),
    Shape("instances of each other's graphs", EDITS, lambda n: base(
        nodes=instance(9, "pkg://g0?dependency=9"), dependencies=HIMSELF,
        behind=many(lambda k: s.graph(f"g{k}", 100 + k, s.graph_input("x", 1), None,
                                      s.graph_output("y", 2),
                                      instance(5, f"pkg://g{k + 1}?dependency=9")), n))),
    Shape("instances that set the input", EDITS, lambda n: base(
        dependencies=HIMSELF, behind=s.graph("h", 100, nodes=many(lambda k: instance(
            5 + k, "pkg://g?dependency=9", s.parameter("i", s.constant("Float1", "1"))), n)))),
    Shape("parameters of an instance", EDITS, lambda n: base(
        nodes=instance(100, "pkg://h?dependency=9", many(
            lambda k: s.parameter(f"x{k}", s.constant("Float1", "1")), n)), dependencies=HIMSELF,
        behind=s.graph("h", 90, many(lambda k: s.graph_input(f"x{k}", 10 + k), n)))),
    Shape("outputs of an instance", EDITS, lambda n: base(
        nodes=instance(100, "pkg://h?dependency=9", "", many(
            lambda k: s.bridging(1000 + k, f"y{k}"), n)), dependencies=HIMSELF,
        behind=s.graph("h", 90, outputs=many(lambda k: s.graph_output(f"y{k}", 10 + k), n)))),
    Shape("segments of a path", EDITS, lambda n: base(
        nodes=instance(100, "pkg://" + "a/" * n + "?dependency=9"), dependencies=HIMSELF)),
    Shape("parameters of a path", EDITS, lambda n: base(
        nodes=instance(100, "pkg://g?dependency=9" + f"{E}amp;a=1" * n), dependencies=HIMSELF)),
    Shape("configurations", (UPDATE,), lambda n: {"a.obl": base()["a.obl"].replace(
        "<configuration/>", s.node("configuration", many(lambda k: s.node(
            "configurations", s.leaf("name", "c"), s.leaf("uid", k), "<configuration/>"), n)))}),
]

DEPENDENCIES = [
    Shape("ways to itself", ALL, lambda n: base(
        dependencies=many(lambda k: s.dependency("?himself", 10 + k), n))),
    Shape("ways to itself of one uid", (UPDATE,), lambda n: base(
        dependencies=many(s.dependency("?himself", 10), n))),
    Shape("ways to itself, each with a path", ALL, lambda n: base(
        dependencies=many(lambda k: s.dependency("?himself", 10 + k), n),
        nodes=many(lambda k: instance(10 ** 5 + k, f"pkg://g?dependency={10 + k}"), n))),
    Shape("its own name", (UPDATE, SPECIALIZE), lambda n: base(
        dependencies=many(lambda k: s.dependency("./a.obl" if k % 2 else "a.obl", 10 + k), n))),
    Shape("one missing file", ALL, lambda n: base(
        dependencies=many(lambda k: s.dependency("d.obl", 10 + k), n))),
    Shape("missing files", (UPDATE,), lambda n: base(
        dependencies=many(lambda k: s.dependency(f"d{k}.obl", 10 + k), n))),
    Shape("one file in many spellings", (UPDATE, SPECIALIZE), lambda n: {**base(
        dependencies=many(lambda k: s.dependency("./" * (k % 50) + "b.obl", 10 + k), n)), **OTHER}),
    Shape("dependencies without a name", (UPDATE,), lambda n: base(
        dependencies=many(lambda k: s.dependency("", 10 + k), n))),
    Shape("chain of packages", (UPDATE, SPECIALIZE), lambda n: {
        **base(dependencies=s.dependency("b0.obl", 10)),
        **{f"b{k}.obl": s.package("", s.dependency(f"b{(k + 1) % n}.obl", 10)) for k in range(n)}}),
    Shape("star of packages of one uid", (UPDATE, SPECIALIZE), lambda n: {
        **base(dependencies=many(lambda k: s.dependency(f"b{k}.obl", 10), n)),
        **{f"b{k}.obl": s.package("", s.dependency("a.obl", 10)) for k in range(n)}}),
]

DOCUMENTS = [
    Shape("unknown elements in each other", (UPDATE,), lambda n: of_package(
        many("<x>" * DEEPEST + "</x>" * DEEPEST, n // DEEPEST + 1))),
    Shape("elements that are never closed", (UPDATE,), lambda n: of_package("<x>" * n)),
    Shape("unknown elements", (UPDATE,), lambda n: of_package("<x/>" * n)),
    Shape("unknown elements, each of its own name", (UPDATE,), lambda n: of_package(
        many(lambda k: f"<x{k}/>", n))),
    Shape("known elements again and again", (UPDATE,), lambda n: of_package(
        '<identifier v="a"/>' * n)),
    Shape("long name of an element", (UPDATE,), lambda n: of_package("<" + "x" * n + "/>")),
    Shape("prefixes", (UPDATE,), lambda n: of_package("<" + "x:" * n + "y/>")),
    Shape("namespaces", (UPDATE,), lambda n: of_package(many(
        lambda k: f'<x xmlns:a{k}="b"/>', n))),
    Shape("attributes", (UPDATE,), lambda n: of_package(many(
        "<x " + many(lambda k: f' a{k}="b"', MOST_ATTRIBUTES) + "/>", n // 1000 + 1))),
    Shape("attributes, too many", (UPDATE,), lambda n: of_package(
        "<x " + many(lambda k: f' a{k}="b"', n) + "/>")),
    Shape("one attribute again and again", (UPDATE,), lambda n: of_package(
        "<x " + ' a="b"' * n + "/>")),
    Shape("long value", ALL, lambda n: with_author("x" * n)),
    Shape("long names", ALL, lambda n: {"a.obl": base()["a.obl"].replace(
        '"g"', '"' + "x" * n + '"').replace('"i"', '"' + "!" * n + '"')}),
    Shape("long name of a dependency", (UPDATE,), lambda n: base(
        dependencies=s.dependency("x" * n, 10))),
    Shape("long way to a dependency", (UPDATE,), lambda n: base(
        dependencies=s.dependency("x/../" * n + "b.obl", 10))),
    Shape("long way in the presets", (UPDATE,), lambda n: base(
        dependencies=s.dependency("obl://" + "./" * n + "b.obl", 10))),
    Shape("long way to a resource", (UPDATE,), lambda n: base(
        behind=s.resource("r", 100, "../x/" * n))),
    Shape("long number", (UPDATE,), lambda n: base(behind=s.group("x", "0" * n + "7"))),
    Shape("long fraction", EDITS, lambda n: base(s.graph_input(
        "f", 9, 256, s.node("defaultValue", s.constant("Float1", "0." + "3" * n))))),
    Shape("long version", (UPDATE,), lambda n: {"a.obl": base()["a.obl"].replace(
        s.VERSION, "1." * n + "1")}),
    Shape("comments", (UPDATE,), lambda n: of_package("<!--x-->" * n)),
    Shape("comments in front", (UPDATE,), lambda n: {"a.obl": base()["a.obl"].replace(
        "<package>", "<!--x-->" * n + "<package>")}),
    Shape("texts between elements", (UPDATE,), lambda n: of_package("<x/>y" * n)),
    Shape("blanks", (UPDATE,), lambda n: of_package("\r\n \t" * n)),
    Shape("sections of text", (UPDATE,), lambda n: of_package("<![CDATA[x]]>" * n)),
    Shape("references to characters", (UPDATE,), lambda n: with_author(f"{E}#233;" * n)),
    Shape("entities", (UPDATE,), lambda n: with_doctype(
        many(lambda k: f'<!ENTITY e{k} "x">', min(n, 2000)), f"{E}e1;" * n)),
    Shape("entity of entities", (UPDATE,), lambda n: with_doctype(
        '<!ENTITY e0 "x">' + many(lambda k: f'<!ENTITY e{k + 1} "{E}e{k};">', 20), f"{E}e20;" * n)),
    Shape("empty entity of entities", (UPDATE,), lambda n: with_doctype(
        '<!ENTITY e0 "">' + many(lambda k: f'<!ENTITY e{k + 1} "{f"{E}e{k};" * 9}">', 9),
        f"{E}e9;" * n)),
    Shape("long document type", (UPDATE,), lambda n: with_doctype("<!ELEMENT x ANY>" * n, "")),
    Shape("zero bytes", (UPDATE,), lambda n: with_author("\0" * n)),
    Shape("nothing but zero bytes", (UPDATE,), lambda n: {"a.obl": "\0" * n}),
    Shape("bytes by chance", (UPDATE,), lambda n: {"a.obl": random.Random(n).randbytes(n)}),
    Shape("bad UTF-8", (UPDATE,), lambda n: {"a.obl": with_author("?")["a.obl"].encode().replace(
        b'"?"', b'"' + b"\xff\xc3" * n + b'"')}),
    Shape("UTF-16", (UPDATE,), lambda n: in_encoding("<x/>" * n, "utf-16")),
    Shape("bad UTF-16", (UPDATE,), lambda n: in_encoding("<x v='\ud800'/>" * n, "utf-16")),
    Shape("wide characters", (UPDATE,), lambda n: with_author("\U0001F600" * n)),
    Shape("blanks behind the end", (UPDATE,), lambda n: {"a.obl": base()["a.obl"] + " " * n}),
]

OLD_FILES = [
    Shape(f"{name}, version {version}", (UPDATE,),
          lambda n, version=version, make=make: old(version, make(n)))
    for version in ("1.0.1.3000", "1.0.3.4000", "1.1.0.6140") for name, make in (
        ("outputs with usages", lambda n: base(outputs=many(lambda k: s.node(
            "graphoutput", s.leaf("identifier", "o"), s.leaf("uid", k), s.leaf("usage", k % 30),
            s.leaf("desc", "d")), n))),
        ("one output with usages", lambda n: base(outputs=s.node(
            "graphoutput", s.leaf("identifier", "o"), s.leaf("uid", 9),
            many(s.leaf("usage", 3) + s.leaf("desc", "d") + "<attributes/>", n)))),
        ("options of sliders", lambda n: base(s.graph_input(
            "w", 9, 256, "", [("slidermin", "0")] * n))),
        ("objects at the top", lambda n: base(behind=many(
            lambda k: s.group("a", k) + s.resource("r", k, "ksx://r.png"), n))),
        ("paths without a dependency", lambda n: base(nodes=many(
            lambda k: instance(100 + k, "pkg://a/g"), n))),
        ("dependencies without a uid", lambda n: {**base(dependencies=many(s.node(
            "dependency", s.leaf("filename", "b.obl"), s.leaf("type", "package"),
            s.leaf("fileUID", 0), s.leaf("versionUID", 0)), n)), **OTHER}),
        ("primary inputs that name nothing", lambda n: base(behind=many(
            lambda k: s.graph(f"g{k}", 100 + k, s.graph_input("x", 1, 1), 77), n))),
        ("unknown elements in each other", lambda n: of_package(
            many("<x>" * DEEPEST + "</x>" * DEEPEST, n // DEEPEST + 1))))]


def described_input(uid, name="i", gui=""):
    return (f'<input identifier="{name}" uid="{uid}" type="0" default="1"><inputgui>{gui}'
            '</inputgui></input>')


def described_output(uid, name="o", channels=""):
    return (f'<output identifier="{name}" uid="{uid}" format="0" mipmaps="0"><channels>{channels}'
            "</channels></output>")


def described(graphs):
    return {"a.oblasm": s.assembly(), "a.xml": s.description(graphs)}


def one_described(inputs=described_input(1), outputs=described_output(2)):
    return described(s.described_graph("pkg://g", inputs, outputs))


def described_graphs(url, n):
    return described(many(lambda k: s.described_graph(url(k), described_input(1),
                                                      described_output(2)), n))


DESCRIPTIONS = [
    Shape("described graphs", (UPDATE, SPECIALIZE), lambda n: described_graphs(
        lambda k: f"pkg://a/g{k}", n)),
    Shape("described graphs of one name", (UPDATE, SPECIALIZE), lambda n: described_graphs(
        lambda k: "pkg://g", n)),
    Shape("described graphs named like those that are made", (UPDATE,), lambda n: described_graphs(
        lambda k: f"pkg://g_{k // 2}" if k % 2 else "pkg://g", n)),
    Shape("described graphs without a name", (UPDATE,), lambda n: described_graphs(
        lambda k: "", n)),
    Shape("described graphs, each in a group", (UPDATE,), lambda n: described_graphs(
        lambda k: f"pkg://a{k}/g", n)),
    Shape("described graphs far down", (UPDATE,), lambda n: described_graphs(
        lambda k: "pkg://" + "a/" * 100 + f"g{k}", n)),
    Shape("described graph too far down", (UPDATE,), lambda n: described_graphs(
        lambda k: "pkg://" + "a/" * n + "g", 1)),
    Shape("described inputs", (UPDATE, FREEZE, SPECIALIZE), lambda n: one_described(
        many(lambda k: described_input(k, f"i{k}" if k else "i"), n))),
    Shape("described outputs", (UPDATE, SPECIALIZE), lambda n: one_described(
        outputs=many(lambda k: described_output(k, f"o{k}"), n))),
    Shape("described channels", (UPDATE,), lambda n: one_described(
        outputs=described_output(2, "o", '<channel components="R" names="x"/>' * n))),
    Shape("described entries of a drop-down list", (UPDATE,), lambda n: one_described(
        described_input(1, "i", s.node(
            "guicombobox", '<guicomboboxitem value="1" text="b"/>' * n)))),
    Shape("described labels", (UPDATE,), lambda n: one_described(many(described_input(
        1, "i", "<guislider " + many(lambda k: f'label{k}="x" ', MOST_ATTRIBUTES) + "/>"),
                                                                      n // 1000 + 1))),
    Shape("described texts", (UPDATE,), lambda n: one_described("x<y/>" * n)),
]


def archive(files, **said):
    return {"a.oblar": s.stored_archive(files, **said)}


def archived(n, url, **said):
    texts = [s.description(s.described_graph(url(k), described_input(1), described_output(2)))
             for k in range(n)]
    return archive(s.archived_assemblies([text.encode() for text in texts]), **said)


def broken_archive(header):
    return {"a.oblar": s.archive_around(b"", header)}


ARCHIVES = [
    Shape("archive of assemblies", (UPDATE, SPECIALIZE), lambda n: archived(
        n, lambda k: f"pkg://g{k}")),
    Shape("archive of assemblies in one folder", (UPDATE,), lambda n: archived(
        n, lambda k: f"pkg://g{k}", one_folder=True)),
    Shape("archive of graphs of one name", (UPDATE,), lambda n: archived(n, lambda k: "pkg://g")),
    Shape("archive of empty files", (UPDATE,), lambda n: archive(
        [(f"x{k}", b"") for k in range(n)])),
    Shape("archive of files of one name", (UPDATE,), lambda n: archive([("x", b"1")] * n)),
    Shape("archive of small folders", (UPDATE,), lambda n: archive(
        [(f"x{k}", b"1") for k in range(n)])),
    Shape("archive with a long name", (UPDATE,), lambda n: archive([("a/" * n, b"1")])),
    Shape("archive of bodies", (UPDATE,), lambda n: archive(
        [(f"assemblies/content/{k}/a.oblasm", s.assembly()) for k in range(n)])),
    Shape("archive of descriptions", (UPDATE,), lambda n: archive(
        [(f"assemblies/content/{k}/a.xml", b"<x/>") for k in range(n)])),
    Shape("archive of a large description", (UPDATE,), lambda n: archive(s.archived_assemblies(
        [one_described(many(described_input(1), n))["a.xml"].encode()]))),
    Shape("archive that announces huge files", (UPDATE,), lambda n: archive(
        [(f"assemblies/content/{k}/a.xml", b"x") for k in range(n)], sizes=[1 << 40] * n)),
    Shape("archive that announces a huge folder", (UPDATE,), lambda n: archive(
        [(f"assemblies/content/{k}/a.xml", b"x") for k in range(n)],
        sizes=[(1 << 62) // n] * n, one_folder=True)),
    Shape("archive that announces many files", (UPDATE,), lambda n: broken_archive(
        b"\1\5" + s.archive_number(1 << 40) + b"\0" * n)),
    Shape("archive that announces many folders", (UPDATE,), lambda n: broken_archive(
        b"\1\4\7\x0b" + s.archive_number(1 << 30) + b"\0" + b"\1\1\0" * n)),
    Shape("archive of dummies", (UPDATE,), lambda n: broken_archive(
        b"\1\5" + s.archive_number(0) + b"\x19\0" * n + b"\0\0")),
]

SHAPES = [*INTERFACES, *GRAPHS, *FUNCTIONS, *CONTENTS, *DEPENDENCIES, *DOCUMENTS, *OLD_FILES,
          *DESCRIPTIONS, *ARCHIVES]

THOUSANDS = 4000
LONG = 1_000_000


def line(*words):
    """A shape of which only the arguments are large. The tool is given the words as they are."""
    return lambda: (base(), list(words))


EDITOR = "graph-parameters-editor"
# The parser of command lines moves all that follow for each argument: these are in thousands.
COMMAND_LINES = {
    "unknown options": line("update", "a.obl", *(f"--x{k}" for k in range(THOUSANDS))),
    "dashes": line("update", "a.obl", *["-"] * THOUSANDS),
    "empty arguments": line("update", *[""] * THOUSANDS),
    "one input again and again": line("update", *["a.obl"] * THOUSANDS),
    "missing inputs": line("update", *(f"b{k}.obl" for k in range(THOUSANDS))),
    "commands": line(*["update"] * THOUSANDS),
    "one default again and again": line(
        EDITOR, "a.obl", *["--set-default-value", "i@1"] * THOUSANDS),
    "one constant again and again": line(
        EDITOR, "a.obl", *["--switch-to-constant", "i"] * THOUSANDS),
    "one image again and again": line(
        "specialization", "a.obl", *["--connect-input", "m"] * THOUSANDS),
    "long option": line("update", "a.obl", "--" + "x" * LONG),
    "long command": line("x" * LONG),
    "long help": line("--help=" + "x" * LONG),
    "long input": line("update", "x" * LONG),
    "long way to the input": line("update", "./" * (LONG // 2) + "a.obl"),
    "long value": line(EDITOR, "a.obl", "--set-default-value", "i@0." + "1" * LONG),
    "long value of parts": line(EDITOR, "a.obl", "--switch-to-constant", "i@" + "1," * (LONG // 2)),
    "long output name": line("update", "a.obl", "--output-name", "x" * LONG),
    "long pattern of the output name": line(
        "update", "a.obl", "--output-name", "{inputName}" * (LONG // 11)),
    "long output path": line("update", "a.obl", "--output-path", "./" * (LONG // 2)),
    "long presets path": line("update", "a.obl", "--presets-path", "./" * (LONG // 2)),
    "long graph name": line("specialization", "a.obl", "--output-graph-name", "!x" * (LONG // 2)),
    "long pairs of an image": line(
        "specialization", "a.obl", "--connect-image", "m@path@a.obl" + "@level@1" * (LONG // 8)),
    "odd bytes": line("update", b"\xff\xfe\x01\n" * 60 + b".obl"),
    "odd bytes of an option": line("update", "a.obl", b"--output-name", b"\xff\xfe\x01"),
}

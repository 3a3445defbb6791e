#!/usr/bin/env python3
"""Writes the library of sample packages that lies beside this script.

The packages are what the tests, the benchmarks and a curious reader open: a brick wall, a woven
fabric, wood planks, a library of noises, the presets that the others share, one package with a
bit of everything, one big facade and a filter for rust. Run it without arguments to write all of
them again. The same script always gives the same bytes: no clock, no random source, numbers that
vary come from a generator seeded with the package's name.
"""
import base64
import hashlib
import os
import struct
import uuid
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))
VERSION = "1.1.0.7049"
NO_RELATION = 4294967295
ABSOLUTE, TO_INPUT, TO_PARENT = 0, 1, 2
COLOR, GRAYSCALE = 1, 2
BITMAP_RESOURCE = 3
COOKED_RAW, COOKED_JPEG = 0, 4
LAST_CHANGE = "2013-04-17T09:12:44"

TYPES = {
    "bool": 4, "int1": 16, "int2": 32, "int3": 64, "int4": 128,
    "float1": 256, "float2": 512, "float3": 1024, "float4": 2048, "string": 32768,
}
OPERANDS = {
    "add": "a b", "sub": "a b", "mul": "a b", "div": "a b", "mod": "a b", "min": "a b",
    "max": "a b", "dot": "a b", "and": "a b", "or": "a b", "not": "a", "eq": "a b",
    "noteq": "a b", "gt": "a b", "gteq": "a b", "lr": "a b", "lreq": "a b", "neg": "a",
    "abs": "a", "floor": "a", "ceil": "a", "cos": "a", "sin": "a", "sqrt": "a", "log": "a",
    "exp": "a", "pow2": "a", "tan": "a", "atan2": "a", "rand": "a", "lerp": "a b x",
    "mulscalar": "a scalar", "cartesian": "rho theta", "ifelse": "condition ifpath elsepath",
    "sequence": "seqin seqlast", "set": "value", "vector2": "componentsin componentslast",
    "vector3": "componentsin componentslast", "vector4": "componentsin componentslast",
    "ivector2": "componentsin componentslast", "ivector3": "componentsin componentslast",
    "toint1": "value", "toint2": "value", "tofloat": "value", "tofloat2": "value",
    "swizzle1": "vector", "swizzle2": "vector", "iswizzle1": "vector", "samplelum": "pos",
}
RESULTS = {
    "and": "bool", "or": "bool", "not": "bool", "eq": "bool", "noteq": "bool", "gt": "bool",
    "gteq": "bool", "lr": "bool", "lreq": "bool", "dot": "float1", "atan2": "float1",
    "cartesian": "float2", "vector2": "float2", "vector3": "float3", "vector4": "float4",
    "ivector2": "int2", "ivector3": "int3", "toint1": "int1", "toint2": "int2",
    "tofloat": "float1", "tofloat2": "float2", "swizzle1": "float1", "swizzle2": "float2",
    "iswizzle1": "int1", "samplelum": "float1",
}
PATTERNS = ("null", "image_entry", "square", "disc", "paraboloid", "bell", "gaussian", "thorn",
            "pyramid", "brick", "gradation", "waves", "halfbell", "ridgebell", "crescent",
            "capsule", "cone")
BLENDS = ("copy", "add", "substract", "multiply", "addsub", "max", "min", "switch")


def pattern(name):
    return PATTERNS.index(name)


def blending(name):
    return BLENDS.index(name)


# Text of elements

def escape(text):
    for character, entity in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;"), ('"', "&quot;"),
                              ("\n", "&#10;"), ("\t", "&#9;"), ("\r", "&#13;")):
        text = text.replace(character, entity)
    return text


def single(number):
    return struct.unpack("f", struct.pack("f", number))[0]


def value_text(value, digits=6):
    if isinstance(value, bool):
        return "1" if value else "0"
    if isinstance(value, float):
        return f"{single(value):.{digits}g}"
    if isinstance(value, tuple):
        return " ".join(value_text(item) for item in value)
    return str(value)


def leaf(name, value, digits=6):
    return f'<{name} v="{escape(value_text(value, digits))}"/>'


def optional(name, value, default):
    return "" if value == default else leaf(name, value)


def element(name, *children):
    body = "".join(children)
    return f"<{name}>{body}</{name}>" if body else f"<{name}/>"


def nonempty(name, *children):
    body = "".join(children)
    return element(name, body) if body else ""


def overloadable(name, value, overloads=(), digits=6):
    variants = [element("valueOverload", leaf("value", other, digits),
                        leaf("configurations", names)) for other, names in overloads]
    return element(name, leaf("value", value, digits), nonempty("valueOverloads", *variants))


def disabled(flag, overloads=()):
    return overloadable("disabled", flag, overloads) if flag or overloads else ""


def gui_layout(x, y, depth=0.0, dock=None):
    place = (float(x), float(y), float(depth))
    docked = dock is not None
    return nonempty("GUILayout", optional("gpos", place, (0.0, 0.0, 0.0)),
                    leaf("docked", True) if docked else "",
                    leaf("dockDistance", dock) if docked else "")


def gui_layout_comp(display="graph", groi="", gzoom=""):
    return nonempty("GUILayoutComp", optional("display", display, "graph"),
                    optional("groi", groi, ""), optional("gzoom", gzoom, ""))


ATTRIBUTES = ("category", "label", "author", "authorURL", "tags", "description", "usertags")


def attributes(texts):
    return nonempty("attributes", *(optional(key, texts.get(key, ""), "") for key in ATTRIBUTES))


def options(pairs):
    return [element("option", leaf("name", name), leaf("value", value)) for name, value in pairs]


def usages(names):
    items = [element("usage", leaf("components", components), leaf("name", name))
             for components, name in names]
    return nonempty("usages", *items)


def gui_object(kind, name, uid, place, settings="", bound_to=""):
    return element("GUIObject", leaf("type", kind), optional("options", settings, ""),
                   optional("GUIDependency", bound_to, ""), gui_layout(*place),
                   leaf("GUIName", name), leaf("uid", uid))


def label_of(identifier):
    return identifier.replace("_", " ").capitalize()


class Numbers:
    """Repeatable numbers: uids that only grow, and small variations."""

    def __init__(self, name):
        self.state = zlib.crc32(name.encode("utf-8"))
        self.last_uid = 1200000000 + self.state % 90000000

    def below(self, limit):
        self.state = (self.state * 1664525 + 1013904223) & 0xFFFFFFFF
        return (self.state >> 8) % limit

    def between(self, low, high, steps=100):
        return low + (high - low) * self.below(steps + 1) / steps

    def uid(self):
        self.last_uid += 1 + self.below(700)
        return self.last_uid


# Values and functions

class Constant:
    """A constant value of a named class, where the Python type alone does not tell it."""

    def __init__(self, kind, value, overloads=()):
        self.kind, self.value, self.overloads = kind, value, overloads

    def text(self):
        digits = 9 if self.kind == "Float" else 6
        return overloadable("constantValue" + self.kind, self.value, self.overloads, digits)


def constant(value):
    """The constant that a parameter or a function node holds for a plain Python value."""
    if isinstance(value, Constant):
        return value
    if isinstance(value, bool):
        return Constant("Bool", value)
    if isinstance(value, int):
        return Constant("Int32", value)
    if isinstance(value, float):
        return Constant("Float1", value)
    if isinstance(value, str):
        return Constant("String", value)
    family = "Float" if isinstance(value[0], float) else "Int"
    return Constant(f"{family}{len(value)}", value)


def default_constant(type_name, value):
    return Constant(type_name[0].upper() + type_name[1:], value)


class Related:
    """A parameter value with a relation other than the usual absolute one."""

    def __init__(self, value, relative_to):
        self.value, self.relative_to = value, relative_to


class Fn:
    """One node of a value function; its links are the nodes that feed it.

    `title` and `is_off` are the node's own; `view` and `notes` tell how the function is shown
    whose root the node is.
    """

    def __init__(self, name, type_name, links=(), data=None):
        self.name, self.type, self.links, self.data = name, type_name, links, data
        self.title, self.is_off, self.view, self.notes = "", False, ("graph", "", ""), ()


def get(type_name, variable):
    word = type_name.replace("int", "integer")
    return Fn("get_" + word, type_name, data=variable)


def const(value):
    kind = constant(value).kind
    type_name = "int1" if kind == "Int32" else kind[0].lower() + kind[1:]
    return Fn("const_" + type_name, type_name, data=value)


def op(name, *arguments, data=None):
    result = RESULTS.get(name)
    if result is None:
        result = arguments[1 if name in ("sequence", "ifelse") else 0].type
    links = tuple(zip(OPERANDS[name].split(), arguments))
    return Fn(name, result, links, data)


def call(package, function, **arguments):
    return Fn("instance", function.type, tuple(arguments.items()), package.reference(function))


def connexion(identifier, node_uid=None, output_uid=None):
    source = "" if node_uid is None else overloadable("connRef", node_uid)
    output = "" if output_uid is None else overloadable("connRefOutput", output_uid)
    return element("connexion", leaf("identifier", identifier), source, output)


def dynamic_value(root, numbers):
    uids, depths, nodes, rows = {}, {}, [], {}

    def visit(node):
        if id(node) in uids:
            return uids[id(node)]
        fed = [connexion(name, visit(source)) for name, source in node.links]
        uid = uids[id(node)] = numbers.uid()
        depth = 1 + max((depths[id(source)] for _, source in node.links), default=-1)
        depths[id(node)] = depth
        row = rows[depth] = rows.get(depth, -1) + 1
        data = [] if node.data is None else [element(
            "funcData", leaf("name", "datacontent"),
            element("constantValue", constant(node.data).text()))]
        nodes.append(element(
            "paramNode", leaf("uid", uid), leaf("function", node.name), disabled(node.is_off),
            overloadable("type", TYPES[node.type]), nonempty("connexions", *fed),
            nonempty("funcDatas", *data), gui_layout(depth * 128 - 256, row * 96),
            optional("GUIName", node.title, "")))
        return uid

    root_uid = visit(root)
    notes = [gui_object("comment", text, numbers.uid(), (-256, -96, 0)) for text in root.notes]
    return element("dynamicValue", gui_layout_comp(*root.view), overloadable("rootnode", root_uid),
                   element("paramNodes", *nodes), nonempty("GUIObjects", *notes))


def param_value(value, numbers):
    if isinstance(value, Fn):
        return element("paramValue", dynamic_value(value, numbers))
    return element("paramValue", constant(value).text())


def parameter(name, value, numbers):
    relation = ABSOLUTE
    if isinstance(value, Related):
        relation, value = value.relative_to, value.value
    return element("parameter", leaf("name", name),
                   optional("relativeTo", relation, NO_RELATION), param_value(value, numbers))


def parameters(values, numbers):
    return [parameter(name, value, numbers) for name, value in values.items()]


def widget(name, *pairs):
    return element("defaultWidget", leaf("name", name), element("options", *options(pairs)))


def slider(low, high, step="0.01", *labels, clamp="1", suffix=""):
    pairs = [("min", str(low)), ("max", str(high)), ("clamp", clamp), ("step", step)]
    pairs += [(f"label{index}", text) for index, text in enumerate(labels)]
    if suffix:
        pairs.append(("suffix", suffix))
    return widget("slider", *pairs)


def angle():
    return widget("angle", ("min", "0"), ("max", "1"), ("clamp", "0"), ("step", "0.01"),
                  ("unit", "turns"), ("suffix", "°"), ("valueScale", "360"))


def dropdown(*texts, first=1):
    """The texts stand for the values from `first` on."""
    entries = (f"{value};{text}" for value, text in enumerate(texts, first))
    return widget("dropdownlist", ("editorID", "dropdownlist"),
                  ("parameters", " | ".join(entries)))


def color_widget():
    return widget("color", ("clamp", "1"))


def toggle():
    return widget("togglebutton", ("label0", "Off"), ("label1", "On"))


def value_input_text(identifier, uid, type_name, default, widget_text, texts, group, is_off=False):
    return element(
        "paraminput", leaf("identifier", identifier), leaf("uid", uid), attributes(texts),
        disabled(is_off), overloadable("type", TYPES[type_name]),
        element("defaultValue", default_constant(type_name, default).text()), widget_text,
        optional("group", group, ""))


# Content of packages

class Item:
    """What stands in a content list; it knows its place for the paths that refer to it."""
    parent = None

    def package(self):
        return self if isinstance(self, Package) else self.parent.package()

    def segments(self):
        return [] if isinstance(self, Package) else self.parent.segments() + [self.identifier]


class Container(Item):
    def __init__(self):
        self.items = []

    def add(self, item):
        item.parent = self
        item.numbers = self.numbers
        item.uid = self.numbers.uid()
        self.items.append(item)
        return item

    def group(self, identifier, desc=""):
        return self.add(Group(identifier, desc))

    def graph(self, identifier, **texts):
        return self.add(Graph(identifier, texts))

    def content_text(self):
        return element("content", *(item.text() for item in self.items))


class Package(Container):
    def __init__(self, path, identifier, author, desc):
        super().__init__()
        self.path, self.identifier, self.author, self.desc = path, identifier, author, desc
        self.numbers = Numbers(path)
        self.version_uid = self.numbers.uid()
        self.file_uid = "{%s}" % uuid.uuid5(uuid.NAMESPACE_OID, path)
        self.dependencies = {}
        self.configurations = self.configuration("default")

    def configuration(self, name, *children, desc="", platform=0):
        return element("configurations", leaf("name", name), leaf("uid", self.numbers.uid()),
                       optional("desc", desc, ""), optional("platform", platform, 0),
                       element("configuration", *children))

    def depends_on(self, other, filename):
        self.dependencies[other.path] = (filename, self.numbers.uid(), other.version_uid)

    def reference(self, item, **query):
        """The path by which this package's data names an item of this or another package."""
        target = item.package()
        if target is self and self.path not in self.dependencies:
            self.dependencies[self.path] = ("?himself", self.numbers.uid(), 0)
        pairs = [("dependency", self.dependencies[target.path][1])] + list(query.items())
        return ("pkg://" + "/".join(item.segments()) + "?"
                + "&".join(f"{key}={value}" for key, value in pairs))

    def text(self):
        dependencies = [element(
            "dependency", leaf("filename", filename), leaf("uid", uid), leaf("type", "package"),
            leaf("fileUID", 0), leaf("versionUID", version_uid))
            for filename, uid, version_uid in self.dependencies.values()]
        return element(
            "package", leaf("packageType", "Kestrix"), leaf("identifier", self.identifier),
            optional("desc", self.desc, ""), leaf("formatVersion", VERSION),
            leaf("updaterVersion", VERSION), leaf("platform", 1), leaf("author", self.author),
            leaf("fileUID", self.file_uid), leaf("versionUID", self.version_uid),
            self.configurations, element("dependencies", *dependencies), self.content_text())

    def write(self):
        text = '<?xml version="1.0" encoding="UTF-8"?>' + self.text() + "\n"
        write_file(self.path, text.encode("utf-8"))


class Group(Container):
    def __init__(self, identifier, desc):
        super().__init__()
        self.identifier, self.desc = identifier, desc

    def text(self):
        return element("group", leaf("uid", self.uid), leaf("identifier", self.identifier),
                       optional("desc", self.desc, ""), self.content_text())


class Resource(Item):
    def __init__(self, identifier, filepath, data, texts=None, source="", cooked_format=COOKED_RAW,
                 cooked_quality=0.0, settings=()):
        self.identifier, self.filepath, self.data = identifier, filepath, data
        self.texts, self.source, self.settings = texts or {}, source, settings
        self.cooked_format, self.cooked_quality = cooked_format, cooked_quality

    def text(self):
        return element(
            "resource", leaf("identifier", self.identifier), leaf("uid", self.uid),
            leaf("type", BITMAP_RESOURCE), leaf("format", "PNG"),
            optional("cookedFormat", self.cooked_format, 0),
            optional("cookedQuality", self.cooked_quality, 0.0), leaf("filepath", self.filepath),
            leaf("lastModif", LAST_CHANGE), leaf("checksum", checksum(self.data)),
            attributes(self.texts), nonempty("source", self.source),
            nonempty("options", *options(self.settings)))


class Function(Item):
    """A named value function; inputs are tuples of identifier, type name, default, widget."""

    def __init__(self, identifier, inputs, body, **texts):
        self.identifier, self.inputs, self.body, self.texts = identifier, inputs, body, texts
        self.type = body.type

    def text(self):
        inputs = [value_input_text(name, self.numbers.uid(), type_name, default, widget_text,
                                   {"label": label_of(name)}, "")
                  for name, type_name, default, widget_text in self.inputs]
        texts = {"label": label_of(self.identifier), **self.texts}
        return element(
            "function", leaf("identifier", self.identifier), leaf("uid", self.uid),
            attributes(texts), element("paraminputs", *inputs),
            overloadable("type", TYPES[self.type]),
            element("paramValue", dynamic_value(self.body, self.numbers)))


class Node:
    """A placed node of a graph: what it is, and the uids of its outputs by name."""

    def __init__(self, uid, implementation, outputs=(), links=None, title="", is_off=False,
                 off_variants=(), settings=(), dock=None):
        self.uid, self.implementation, self.outputs = uid, implementation, dict(outputs)
        self.links, self.title, self.is_off = links or {}, title, is_off
        self.off_variants, self.settings, self.dock = off_variants, settings, dock

    def __getitem__(self, output):
        return self, output


class FxNode:
    """A node of the graph inside an fxmaps filter."""

    def __init__(self, kind, identifier, values=None, **links):
        self.kind, self.identifier, self.values, self.links = kind, identifier, values or {}, links
        self.is_off, self.title = False, ""


class Graph(Container):
    def __init__(self, identifier, texts):
        super().__init__()
        self.identifier, self.texts = identifier, texts
        self.input_texts, self.image_inputs, self.value_types = [], {}, {}
        self.outputs, self.nodes, self.objects = [], [], []
        self.base_parameters = {"outputsize": Related((0, 0), TO_PARENT)}
        self.settings, self.is_off, self.view = (), False, ("graph", "", "")
        self.primary_variants = ()

    # Interface of the graph

    def image_input(self, identifier, kind=COLOR, names=(), group="", values=None, desc="",
                    is_off=False):
        entry, output = self.numbers.uid(), self.numbers.uid()
        self.image_inputs[identifier] = entry
        choice = "color" if kind == COLOR else "grayscale"
        texts = {"label": label_of(identifier), "description": desc}
        self.input_texts.append(element(
            "paraminput", leaf("identifier", identifier), leaf("uid", entry), attributes(texts),
            usages(names), disabled(is_off), overloadable("type", kind),
            widget("image", ("colortype", choice)), optional("group", group, "")))
        bridge = element("compInputBridge", leaf("entry", entry),
                         element("parameters", *parameters(values or {}, self.numbers)))
        return self.place(bridge, {identifier: (output, kind)})

    def value_input(self, identifier, type_name, default, widget_text, group="", desc="",
                    is_off=False):
        self.value_types[identifier] = type_name
        texts = {"label": label_of(identifier), "description": desc}
        self.input_texts.append(value_input_text(
            identifier, self.numbers.uid(), type_name, default, widget_text, texts, group, is_off))

    def read(self, identifier):
        return get(self.value_types[identifier], identifier)

    def output(self, identifier, source, *names, label="", channels=1, image_format=0, mipmaps=0,
               usertag="", is_off=False, desc="", group=""):
        uid = self.numbers.uid()
        kind = self.source_output(source)[1][1]
        texts = {"category": group, "label": label or label_of(identifier), "description": desc}
        self.outputs.append((identifier, kind, element(
            "graphoutput", leaf("identifier", identifier), leaf("uid", uid), attributes(texts),
            usages(names), optional("channels", channels, 1), disabled(is_off)), element(
            "rootOutput", leaf("output", uid), overloadable("format", image_format),
            overloadable("mipmaps", mipmaps) if mipmaps else "", leaf("usertag", usertag),
            disabled(is_off))))
        bridge = element("compOutputBridge", leaf("output", uid),
                         leaf("connectionColorType", kind))
        return self.place(bridge, {}, {"inputNodeOutput": source})

    # Nodes

    def place(self, implementation, outputs, links=None, **details):
        node = Node(self.numbers.uid(), implementation, outputs, links, **details)
        self.nodes.append(node)
        return node

    def filter(self, name, links=None, values=None, kind=None, arrays="", graphs="", **details):
        values = dict(values or {})
        if kind is None:
            source = next(iter((links or {}).values()), None)
            kind = self.source_output(source)[1][1] if source else COLOR
        if kind == GRAYSCALE and name in ("bitmap", "uniform", "gradient", "fxmaps"):
            values["colorswitch"] = False
        text = element("compFilter", leaf("filter", name),
                       element("parameters", *parameters(values, self.numbers)),
                       nonempty("paramsArrays", arrays), nonempty("paramsGraphs", graphs))
        return self.place(text, {"unique_filter_output": (self.numbers.uid(), kind)}, links,
                          **details)

    def instance(self, graph, links=None, values=None, view=("graph", "", ""), **details):
        outputs = {name: (self.numbers.uid(), kind) for name, kind, _, _ in graph.outputs}
        bridgings = [element("outputBridging", leaf("uid", uid), leaf("identifier", name))
                     for name, (uid, _) in outputs.items()]
        path = overloadable("path", self.package().reference(graph))
        text = element("compInstance", path,
                       element("parameters", *parameters(values or {}, self.numbers)),
                       element("outputBridgings", *bridgings), gui_layout_comp(*view))
        return self.place(text, outputs, links, **details)

    def bind(self, graph, *names):
        """Values for an instance that follow this graph's inputs of the same names."""
        return {name: Related(self.read(name), ABSOLUTE) for name in names
                if name in graph.value_types}

    def blend(self, top, base, mode="copy", opacity=1.0, **details):
        links = {"source": top, "destination": base}
        values = {"opacity": opacity, "blendingmode": blending(mode)}
        return self.filter("blend", links, values, **details)

    def levels(self, source, low=0.0, high=1.0, middle=0.5, out_low=0.0, out_high=1.0, **details):
        values = {}
        for name, value, default in (("levelinlow", low, 0.0), ("levelinhigh", high, 1.0),
                                     ("levelinmid", middle, 0.5), ("leveloutlow", out_low, 0.0),
                                     ("levelouthigh", out_high, 1.0)):
            if value != default:
                values[name] = value if isinstance(value, Fn) else (float(value),) * 4
        return self.filter("levels", {"input1": source}, values, **details)

    def uniform(self, color, **details):
        kind = GRAYSCALE if isinstance(color, float) else COLOR
        value = (color,) * 3 + (1.0,) if kind == GRAYSCALE else color
        return self.filter("uniform", None, {"outputcolor": value}, kind=kind, **details)

    def transform(self, source, scale=1.0, offset=(0.0, 0.0), **details):
        values = {}
        if scale != 1.0:
            values["matrix22"] = (1.0 / scale, 0.0, 0.0, 1.0 / scale)
        if offset != (0.0, 0.0):
            values["offset"] = offset
        return self.filter("transformation", {"input1": source}, values, **details)

    def to_gray(self, source, weights=(0.33, 0.33, 0.33, 0.0)):
        return self.filter("grayscaleconversion", {"input1": source},
                           {"channelsweights": weights}, kind=GRAYSCALE)

    def normal(self, source, intensity=4.0):
        return self.filter("normal", {"input1": source}, {"intensity": intensity}, kind=COLOR)

    def gradient(self, source, keys, alpha=False):
        name = "gradientalpha" if alpha else "gradientrgba"
        cells = [element("paramsArrayCell", leaf("uid", self.numbers.uid()), element(
            "parameters", *parameters({"value": value, "position": position, "midpoint": 0.5},
                                      self.numbers))) for position, value in keys]
        array = element("paramsArray", leaf("name", name), leaf("uid", self.numbers.uid()),
                        element("paramsArrayCells", *cells))
        return self.filter("gradient", {"input1": source}, {},
                           kind=GRAYSCALE if alpha else COLOR, arrays=array)

    def bitmap(self, resource, kind=COLOR, size=(6, 6), **details):
        values = {"outputsize": size,
                  "bitmapresourcepath": self.package().reference(resource)}
        return self.filter("bitmap", None, values, kind=kind, **details)

    def fxmap(self, root, kind=GRAYSCALE, background=None, image=None, values=None, objects=(),
              **details):
        uids, datas, nodes = {}, [], []

        def visit(node, depth):
            if id(node) in uids:
                return uids[id(node)]
            fed = [connexion(name, visit(child, depth + 1)) for name, child in node.links.items()]
            uid, data = self.numbers.uid(), self.numbers.uid()
            uids[id(node)] = uid
            datas.append(element(
                "paramsGraphData", leaf("identifier", node.identifier), leaf("uid", data),
                leaf("type", node.kind),
                nonempty("parameters", *parameters(node.values, self.numbers))))
            nodes.append(element(
                "paramsGraphNode", leaf("uid", uid), leaf("type", node.kind), disabled(node.is_off),
                nonempty("connexions", *fed), leaf("data", data),
                gui_layout(96 * len(nodes), 128 * depth), optional("GUIName", node.title, "")))
            return uid

        root_uid = visit(root, 0)
        graph = element("paramsGraph", leaf("name", "fxmap"), leaf("uid", self.numbers.uid()),
                        overloadable("rootnode", root_uid), element("paramsGraphDatas", *datas),
                        element("paramsGraphNodes", *nodes), nonempty("GUIObjects", *objects))
        links = {}
        if background is not None:
            links["background"] = background
        if image is not None:
            links["inputpattern"] = image
        return self.filter("fxmaps", links, values, kind=kind, graphs=graph, **details)

    def comment(self, text, place, bound_to=None, kind="comment"):
        path = "" if bound_to is None else self.package().reference(
            self, typeParam="CompNodeType", compNodeUidParam=bound_to.uid)
        self.objects.append(gui_object(kind, text, self.numbers.uid(), place,
                                       "color=255,220,96,80" if kind == "frame" else "", path))

    # Text

    @staticmethod
    def source_output(source):
        if isinstance(source, tuple):
            return source[0], source[0].outputs[source[1]]
        return source, next(iter(source.outputs.values()))

    def node_texts(self):
        depths, rows, texts = {}, {}, []
        for node in self.nodes:
            sources = {name: self.source_output(source) for name, source in node.links.items()
                       if source is not None}
            depth = 1 + max((depths[feeder.uid] for feeder, _ in sources.values()), default=-1)
            depths[node.uid] = depth
            row = rows[depth] = rows.get(depth, -1) + 1
            outputs = [element("compOutput", leaf("uid", uid), overloadable("comptype", kind))
                       for uid, kind in node.outputs.values()]
            fed = [connexion(name, feeder.uid, output[0])
                   for name, (feeder, output) in sources.items()]
            fed += [connexion(name) for name, source in node.links.items() if source is None]
            texts.append(element(
                "compNode", leaf("uid", node.uid), disabled(node.is_off, node.off_variants),
                gui_layout(depth * 160 - 480, row * 128 - 256, 0.0, node.dock),
                nonempty("compOutputs", *outputs), nonempty("connexions", *fed),
                element("compImplementation", node.implementation),
                optional("GUIName", node.title, ""), nonempty("options", *options(node.settings))))
        return texts

    def text(self):
        primary = next(iter(self.image_inputs.values()), 0)
        root_outputs = [item[3] for item in self.outputs]
        return element(
            "graph", leaf("identifier", self.identifier), leaf("uid", self.uid),
            attributes({"label": label_of(self.identifier), **self.texts}),
            gui_layout_comp(*self.view), nonempty("paraminputs", *self.input_texts),
            overloadable("primaryInput", primary, self.primary_variants) if primary else "",
            element("graphOutputs", *(item[2] for item in self.outputs)),
            element("compNodes", *self.node_texts()),
            element("baseParameters", *parameters(self.base_parameters, self.numbers)),
            self.content_text(), nonempty("GUIObjects", *self.objects),
            nonempty("options", *options(self.settings)),
            element("root", disabled(self.is_off), nonempty("rootOutputs", *root_outputs)))


# Files

def write_file(path, data):
    full = os.path.join(HERE, *path.split("/"))
    os.makedirs(os.path.dirname(full), exist_ok=True)
    with open(full, "wb") as file:
        file.write(data)


def checksum(data):
    return hashlib.md5(data).hexdigest()


def stored_zlib(data):
    """A zlib stream of stored blocks: its bytes do not hang on the zlib that is installed."""
    blocks = [data[start:start + 65535] for start in range(0, len(data), 65535)] or [b""]
    stream = b"\x78\x01"
    for index, block in enumerate(blocks):
        last = index == len(blocks) - 1
        stream += struct.pack("<BHH", last, len(block), len(block) ^ 0xFFFF) + block
    return stream + struct.pack(">I", zlib.adler32(data))


def png_file(width, height, color_type, rows, *chunks):
    def chunk(name, body):
        return struct.pack(">I", len(body)) + name + body + struct.pack(
            ">I", zlib.crc32(name + body))

    header = struct.pack(">IIBBBBB", width, height, 8, color_type, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
            + b"".join(chunk(name, body) for name, body in chunks)
            + chunk(b"IDAT", stored_zlib(rows)) + chunk(b"IEND", b""))


def png(width, height, channels, pixel):
    """A PNG whose pixel(x, y) gives `channels` numbers from 0 to 255."""
    rows = b"".join(b"\0" + bytes(value for x in range(width) for value in pixel(x, y))
                    for y in range(height))
    return png_file(width, height, {1: 0, 3: 2, 4: 6}[channels], rows)


def indexed_png(width, height, palette, index):
    """A PNG whose index(x, y) gives the place of a colour in a palette of up to 256."""
    rows = b"".join(b"\0" + bytes(index(x, y) for x in range(width)) for y in range(height))
    return png_file(width, height, 3, rows, (b"PLTE", bytes(sum(palette, ()))))


# Building blocks of several packages

def scaled(graph, name, factor, offset=0.0):
    """A float input times a factor plus an offset, as a value function."""
    product = op("mul", graph.read(name), const(factor))
    return op("add", product, const(offset)) if offset else product


def as_float4(graph, name):
    """A float input spread over four components, as the level parameters want it."""
    value = graph.read(name)
    return op("vector4", op("vector2", value, value), op("vector2", value, value))


def scatter(graph, count, shape, size, rotation=0.0, spread=1.0, seed=0):
    """The root of an fxmaps graph that throws `count` copies of a shape over the image."""
    where = op("vector2", op("rand", const(spread)), op("rand", const(spread)))
    values = {
        "patterntype": pattern(shape), "branchoffset": where, "patternsize": size,
        "patternrotation": rotation, "randomseed": seed, "blendingmode": 1,
        "opacity": op("rand", const(1.0)),
    }
    leaf_node = FxNode("paramset", f"{shape}_set", values)
    return FxNode("addnode", f"{shape}_scatter",
                  {"numberadded": count, "randominherited": True}, output0=leaf_node)


def common_noise_inputs(graph, scale=8):
    graph.value_input("scale", "int1", scale, slider(1, 64, "1"), "Noise")
    graph.value_input("disorder", "float1", 0.0, slider(0, 1), "Noise",
                      desc="Turns the noise without a change of its structure.")
    graph.value_input("contrast", "float1", 0.5, slider(0, 1), "Noise")
    graph.value_input("seed_offset", "int1", 0, slider(0, 1000, "1", clamp="0"), "Noise")


# noises/noises.obl

def make_noises():
    package = Package(
        "noises/noises.obl", "noises", "André Müller",
        "Noises for all our materials.\nAngles are in turns: 1 = 360°, 0.25 = 90°.\n"
        'Names with "_base" are building blocks & not for direct use; keep scale < 64.')
    root = package.group("noises", "All noises, sorted by family")
    functions = root.group("functions")
    unit = slider(0, 1)
    gain = functions.add(Function(
        "octave_gain", [("level", "float1", 0.0, slider(0, 16, "1")),
                        ("roughness", "float1", 0.5, unit)],
        op("pow2", op("neg", op("mul", get("float1", "level"),
                                op("sub", const(2.0), get("float1", "roughness"))))),
        description="Strength of an octave: 2 to the power of -level * (2 - roughness)."))
    functions.add(Function(
        "wrap_angle", [("angle", "float1", 0.0, angle())],
        op("sub", get("float1", "angle"), op("floor", get("float1", "angle"))),
        description="Brings an angle into 0° ... 360°."))
    functions.add(Function(
        "remap", [("value", "float1", 0.0, unit), ("low", "float1", 0.0, unit),
                  ("high", "float1", 1.0, unit)],
        op("lerp", get("float1", "low"), get("float1", "high"), get("float1", "value"))))
    seeded = functions.add(Function(
        "seed_of", [("seed_offset", "int1", 0, slider(0, 1000, "1")),
                    ("index", "int1", 0, slider(0, 64, "1"))],
        op("mod", op("add", op("mul", get("int1", "seed_offset"), const(37)),
                     op("mul", get("int1", "index"), const(101))), const(65536))))

    families = {
        "perlin": [("perlin_soft", "gaussian", 2, 0.35), ("perlin_ridged", "ridgebell", 1, 0.6),
                   ("turbulence", "bell", 2, 0.75), ("clouds_1", "paraboloid", 1, 0.5)],
        "cells": [("cells_1", "cone", 1, 0.4), ("crystal", "pyramid", 1, 0.55),
                  ("cracks", "thorn", 1, 0.8)],
        "spots": [("speckle", "disc", 1, 0.65), ("splatter", "crescent", 1, 0.7),
                  ("pebbles", "halfbell", 1, 0.45)],
    }
    made = {}
    for family, noises in families.items():
        group = root.group(family)
        for identifier, shape, octaves, roughness in noises:
            graph = group.graph(identifier, category="Noises/" + family, tags=f"noise;{family}",
                                description=f"Sum of {octaves} octaves of \"{shape}\" shapes.")
            made[identifier] = graph
            common_noise_inputs(graph, 4 + 2 * octaves)
            fill_noise(package, graph, shape, octaves, roughness, gain, seeded)

    grunge = root.group("grunge", "Mixes of the noises above")
    recipes = {"grunge_map_1": ("perlin_soft", "speckle", "cracks"),
               "grunge_map_2": ("turbulence", "splatter", "cells_1"),
               "dust": ("speckle", "clouds_1", "perlin_ridged"),
               "stains": ("clouds_1", "splatter", "perlin_soft")}
    for identifier, names in recipes.items():
        graph = grunge.graph(identifier, category="Noises/grunge")
        made[identifier] = graph
        fill_grunge(graph, [made[name] for name in names])
    return package, made


def fill_noise(package, graph, shape, octaves, roughness, gain, seeded):
    sum_so_far = graph.uniform(0.0, title="Start value")
    for octave in range(octaves):
        cells = op("mul", graph.read("scale"), const(2 ** octave))
        size = op("div", const(1.5), op("tofloat", cells))
        layer = graph.fxmap(scatter(
            graph, op("mul", cells, cells), shape, op("vector2", size, size),
            op("add", graph.read("disorder"), const(0.125 * octave)),
            seed=call(package, seeded, seed_offset=graph.read("seed_offset"),
                      index=const(octave))), values={"hurst": roughness})
        softened = graph.filter("blur", {"input1": layer}, {"intensity": 1.0 / (octave + 1)})
        strength = call(package, gain, level=const(float(octave)), roughness=const(roughness))
        sum_so_far = graph.blend(softened, sum_so_far, "add", strength)
    shaped = graph.levels(sum_so_far, high=0.9, middle=as_float4(graph, "contrast"))
    graph.output("noise", shaped, ("R", "height"), ("RGBA", "$any"), group="Noise")
    graph.comment(f"{octaves} octaves, roughness {roughness}", (-320, -400, 0))


def fill_grunge(graph, sources):
    common_noise_inputs(graph, 6)
    graph.value_input("balance", "float1", 0.5, slider(0, 1, "0.01", "Fine", "Coarse"), "Grunge")
    layers = [graph.instance(source, values=graph.bind(source, "scale", "disorder",
                                                       "seed_offset")) for source in sources]
    base = graph.blend(layers[1], layers[0], "multiply", graph.read("balance"))
    bent = graph.filter("directionalwarp", {"input1": base, "inputintensity": layers[2]},
                        {"intensity": 14.5, "warpangle": graph.read("disorder")})
    sharp = graph.filter("sharpen", {"input1": bent}, {"intensity": 0.75})
    final = graph.levels(sharp, middle=as_float4(graph, "contrast"))
    graph.output("grunge", final, ("RGBA", "mask"), group="Noise")


# presets/presets_library.obl

def make_presets():
    package = Package("presets/presets_library.obl", "presets_library", "Kestrix presets",
                      "Presets that come with the library.\nRefer to them by obl://.")
    adjust, materials = package.group("adjust"), package.group("materials")
    made = {}

    def preset(group, identifier, description, **inputs):
        graph = made[identifier] = group.graph(identifier, category="Presets",
                                               description=description)
        return graph, [graph.image_input(name, kind) for name, kind in inputs.items()]

    graph, (front, back, mask) = preset(
        adjust, "masked_blend", "Foreground over background where the mask is white.",
        foreground=COLOR, background=COLOR, mask=GRAYSCALE)
    graph.value_input("opacity", "float1", 1.0, slider(0, 1))
    faded = graph.levels(mask, out_high=as_float4(graph, "opacity"))
    masked = graph.filter("shuffle", {"input1": front, "input2": faded},
                          {"channelalpha": 4}, kind=COLOR)
    graph.output("result", graph.blend(masked, back), ("RGBA", "$any"))

    graph, (source,) = preset(adjust, "histogram_range", "Narrows and moves the histogram.",
                              source=GRAYSCALE)
    graph.value_input("range", "float1", 1.0, slider(0, 1))
    graph.value_input("position", "float1", 0.5, slider(0, 1))
    half = scaled(graph, "range", 0.5)
    low = op("max", const(0.0), op("sub", graph.read("position"), half))
    high = op("min", const(1.0), op("add", graph.read("position"), half))
    values = [op("vector4", op("vector2", end, end), op("vector2", end, end))
              for end in (low, high)]
    graph.output("result", graph.levels(source, out_low=values[0], out_high=values[1]))

    graph, (source,) = preset(adjust, "safe_transform", "Tiles, turns and moves an image.",
                              source=COLOR)
    graph.value_input("tile", "int1", 1, slider(1, 16, "1"))
    graph.value_input("rotation", "float1", 0.0, angle())
    graph.value_input("offset", "float2", (0.0, 0.0), slider(-0.5, 0.5, "0.01", "X", "Y"))
    turn = op("mul", graph.read("rotation"), const(6.2831855))
    tile = op("tofloat", graph.read("tile"))
    matrix = op("mulscalar", op("vector4", op("vector2", op("cos", turn), op("sin", turn)),
                                op("vector2", op("neg", op("sin", turn)), op("cos", turn))), tile)
    moved = graph.filter("transformation", {"input1": source},
                         {"matrix22": matrix, "offset": graph.read("offset"), "tiling": 3})
    graph.output("result", moved)

    graph, (source,) = preset(adjust, "make_it_tile", "Hides the seams of a photograph.",
                              source=COLOR)
    graph.value_input("edge_width", "float1", 0.2, slider(0, 0.5))
    shifted = graph.transform(source, offset=(0.5, 0.5))
    frame = graph.fxmap(FxNode("paramset", "frame", {
        "patterntype": pattern("paraboloid"), "patternsize": (1.0, 1.0), "opacity": (1.0,) * 4}))
    edge = graph.levels(frame, as_float4(graph, "edge_width"))
    graph.output("result", graph.instance(made["masked_blend"], {
        "foreground": source, "background": shifted, "mask": edge}))

    graph, (height,) = preset(materials, "height_maps", "Normal and occlusion of a height.",
                              height=GRAYSCALE)
    graph.value_input("strength", "float1", 4.0, slider(0, 16, "0.1"))
    graph.value_input("occlusion_radius", "float1", 0.3, slider(0, 1))
    graph.output("normal", graph.normal(height, graph.read("strength")), ("RGB", "normal"))
    soft = graph.filter("blur", {"input1": height},
                        {"intensity": scaled(graph, "occlusion_radius", 24.0)})
    difference = graph.blend(soft, height, "substract")
    graph.output("ambient_occlusion", graph.levels(difference, high=0.4, out_low=1.0,
                                                   out_high=0.35), ("RGBA", "ambientOcclusion"))

    graph, (height, dirt) = preset(materials, "edge_wear", "Mask of worn edges.",
                                   height=GRAYSCALE, dirt=GRAYSCALE)
    graph.value_input("wear_level", "float1", 0.5, slider(0, 1))
    edges = graph.filter("emboss", {"input1": height, "inputgradient": height},
                         {"intensity": 3.5, "lightangle": 0.125})
    broken = graph.filter("warp", {"input1": edges, "inputgradient": dirt}, {"intensity": 0.4})
    graph.output("mask", graph.levels(broken, high=0.8, middle=as_float4(graph, "wear_level")),
                 ("RGBA", "mask"))

    graph, layers = preset(materials, "material_switch", "One of four materials.",
                           material_1=COLOR, material_2=COLOR, material_3=COLOR,
                           material_4=COLOR)
    graph.value_input("selection", "int1", 1, dropdown("First", "Second", "Third", "Fourth"))
    chosen = layers[0]
    for index, layer in enumerate(layers[1:], 2):
        is_chosen = op("ifelse", op("eq", graph.read("selection"), const(index)), const(1.0),
                       const(0.0))
        chosen = graph.blend(layer, chosen, "switch", is_chosen)
    graph.output("result", chosen, ("RGBA", "diffuse"))
    return package, made


# bricks/brick_wall.obl

def make_bricks(noises, noise_graphs, presets, preset_graphs):
    package = Package("bricks/brick_wall.obl", "brick_wall", "André Müller",
                      'A wall of "Reichsformat" bricks <25 x 12 x 6.5 cm> & lime mortar.\n'
                      "Light falls in at 45°.")
    package.depends_on(noises, "../noises/noises.obl")
    package.depends_on(presets, "obl://presets_library.obl")
    wall = package.graph("brick_wall", category="Materials/Walls", author="André Müller",
                         authorURL="", tags="brick;wall;façade",
                         description="Old brick wall.\nAll outputs tile.", usertags="v2")
    parts = package.group("parts", "Graphs used by brick_wall")
    bond = make_bond(parts)
    tone = make_brick_tone(parts)
    mortar = make_mortar(package, parts, noise_graphs)

    custom = wall.image_input("custom_brick", COLOR, [("RGB", "diffuse")], "Bricks",
                              desc="A photograph of bricks; used when \"use_custom\" is on.")
    dirt_mask = wall.image_input("dirt_mask", GRAYSCALE, [("RGBA", "mask")], "Ageing",
                                 values={"tiling": 3})
    wall.value_input("bond", "int1", 1, dropdown("Stretcher", "English", "Flemish", "Header"),
                     "Bricks", desc="The way in which the bricks are laid.")
    wall.value_input("brick_count", "int2", (6, 16), slider(1, 64, "1", "Per row", "Rows"),
                     "Bricks")
    wall.value_input("brick_color", "float4", (0.545, 0.243, 0.18, 1.0), color_widget(), "Bricks")
    wall.value_input("color_variation", "float1", 0.35, slider(0, 1), "Bricks")
    wall.value_input("use_custom", "bool", False, toggle(), "Bricks")
    wall.value_input("mortar_width", "float1", 0.06, slider(0, 0.5, "0.005"), "Mortar")
    wall.value_input("mortar_color", "float3", (0.71, 0.68, 0.62), color_widget(), "Mortar")
    wall.value_input("wear", "float1", 0.4, slider(0, 1), "Ageing")
    wall.value_input("light_angle", "float1", 0.125, angle(), "Light", desc="0.125 is 45°.")
    wall.value_input("offset", "float2", (0.0, 0.0), slider(-0.5, 0.5, "0.01", "X", "Y"),
                     "Position")

    laid = wall.instance(bond, values=wall.bind(bond, "bond", "brick_count", "mortar_width"))
    joint = wall.instance(mortar, values=wall.bind(mortar, "mortar_color"))
    surface = wall.uniform((0.545, 0.243, 0.18, 1.0), title="Brick ground")
    for index in range(9):
        hue = 0.47 + 0.0075 * index
        ground = wall.filter("uniform", None, {"outputcolor": wall.read("brick_color")},
                             kind=COLOR)
        fill = wall.instance(tone, {"ground": ground}, {
            "hue": hue, "lightness": 0.42 + 0.02 * (index % 5), **wall.bind(
                tone, "color_variation")}, title=f"Tone {index + 1}")
        chosen = wall.levels(laid["tone_mask"], index / 9, (index + 1) / 9)
        surface = wall.instance(preset_graphs["masked_blend"], {
            "foreground": fill, "background": surface, "mask": chosen})
    photo = wall.instance(preset_graphs["safe_transform"], {"source": custom},
                          {"tile": 2, **wall.bind(preset_graphs["safe_transform"], "offset")})
    as_number = op("ifelse", wall.read("use_custom"), const(1.0), const(0.0))
    surface = wall.blend(photo, surface, "switch", as_number, title="Photo or tones")

    relief = laid["height"]
    for index, name in enumerate(("cracks", "grunge_map_1", "speckle", "stains", "pebbles")):
        noise = wall.instance(noise_graphs[name], values={"scale": 3 + 2 * index,
                                                          "seed_offset": 11 * index})
        part = wall.levels(noise, 0.1 * index, 0.95, 0.45)
        strength = op("mul", wall.read("wear"), const(0.4 - 0.06 * index))
        relief = wall.blend(part, relief, "substract", strength)
        dark = wall.gradient(part, [(0.0, (0.2, 0.15, 0.12, 0.0)), (0.5, (0.5, 0.4, 0.35, 0.3)),
                                    (1.0, (1.0, 1.0, 1.0, 1.0))])
        surface = wall.blend(dark, surface, "multiply", strength)
    edges = wall.instance(preset_graphs["edge_wear"], {"height": relief, "dirt": dirt_mask},
                          {"wear_level": wall.read("wear")})
    pale = wall.uniform((0.8, 0.62, 0.53, 1.0))
    worn = wall.instance(preset_graphs["masked_blend"],
                         {"foreground": pale, "background": surface, "mask": edges})
    diffuse = wall.instance(preset_graphs["masked_blend"], {
        "foreground": joint["color"], "background": worn, "mask": laid["mortar_mask"]})
    lit = wall.filter("emboss", {"input1": diffuse, "inputgradient": relief},
                      {"lightangle": wall.read("light_angle"), "intensity": 1.5})
    height = wall.blend(joint["height"], relief, "max", 0.35)
    maps = wall.instance(preset_graphs["height_maps"], {"height": height}, {"strength": 6.5})
    rough = wall.levels(wall.to_gray(lit), 0.0, 1.0, 0.5, 1.0, 0.55)
    shine = wall.levels(rough, out_low=0.6, out_high=0.02)
    wall.output("diffuse", lit, ("RGB", "diffuse"), ("A", "opacity"), channels=3,
                image_format=0, mipmaps=12, usertag="base colour", group="Material")
    wall.output("normal", maps["normal"], ("RGB", "normal"), image_format=1, group="Material")
    wall.output("height", height, ("R", "height"), ("R", "displacement"), image_format=1,
                group="Material")
    wall.output("ambient_occlusion", maps["ambient_occlusion"], ("RGBA", "ambientOcclusion"),
                group="Material")
    wall.output("roughness", rough, ("RGBA", "roughness"), group="Material")
    wall.output("specular", shine, ("RGBA", "specularLevel"), group="Material")
    wall.output("brick_mask", laid["tone_mask"], ("RGBA", "mask"), is_off=True, group="Masks")
    wall.comment("Tones: one per ninth of the random mask", (-400, -480, 0), surface)
    wall.comment("Ageing", (800, -300, 0), kind="frame")
    wall.base_parameters["randomseed"] = 2013
    wall.settings = (("defaultOutputSize", "10x10"), ("exportFolder", "C:\\textures\\bricks"))
    return package, {"brick_wall": wall, "bond": bond, "brick_tone": tone, "mortar": mortar}


def make_bond(parts):
    graph = parts.graph("bond", description="Lays the bricks: height, joints, random tones.")
    graph.value_input("bond", "int1", 1, dropdown("Stretcher", "English", "Flemish", "Header"))
    graph.value_input("brick_count", "int2", (6, 16), slider(1, 64, "1"))
    graph.value_input("mortar_width", "float1", 0.06, slider(0, 0.5))
    count = op("tofloat2", graph.read("brick_count"))
    across, rows = (op("swizzle1", count, data=0), op("swizzle1", count, data=1))
    free = op("sub", const(1.0), graph.read("mortar_width"))
    size = op("vector2", op("div", free, across), op("div", free, rows))
    is_shifted = op("gt", graph.read("bond"), const(1))
    shift = op("ifelse", is_shifted, const((0.5, 0.0)), const((0.25, 0.5)))
    layers = []
    for shape, tones in (("brick", False), ("paraboloid", False), ("square", True)):
        values = {"patterntype": pattern(shape), "patternsize": size, "branchoffset": shift,
                  "blendingmode": 1,
                  "opacity": op("rand", const(1.0)) if tones else (1.0, 1.0, 1.0, 1.0)}
        bricks = FxNode("paramset", f"{shape}_brick", values)
        cells = op("mul", op("iswizzle1", graph.read("brick_count"), data=0),
                   op("iswizzle1", graph.read("brick_count"), data=1))
        layers.append(graph.fxmap(FxNode("addnode", "rows", {"numberadded": cells},
                                         output0=bricks)))
    rounded = graph.blend(layers[1], layers[0], "multiply", 0.3)
    graph.output("height", graph.filter("blur", {"input1": rounded}, {"intensity": 0.5}))
    graph.output("mortar_mask", graph.levels(layers[0], high=0.1, out_low=1.0, out_high=0.0))
    graph.output("tone_mask", layers[2])
    return graph


def make_brick_tone(parts):
    graph = parts.graph("brick_tone")
    ground = graph.image_input("ground", COLOR)
    graph.value_input("hue", "float1", 0.5, slider(0, 1))
    graph.value_input("lightness", "float1", 0.5, slider(0, 1))
    graph.value_input("color_variation", "float1", 0.35, slider(0, 1))
    centered = op("lerp", const(0.5), graph.read("hue"), graph.read("color_variation"))
    shifted = graph.filter("hsl", {"input1": ground}, {
        "hue": centered, "saturation": 0.5, "luminosity": graph.read("lightness")})
    graph.output("color", shifted, ("RGB", "diffuse"))
    return graph


def make_mortar(package, parts, noise_graphs):
    graph = parts.graph("mortar", description="Lime mortar with sand grains.")
    graph.value_input("mortar_color", "float3", (0.71, 0.68, 0.62), color_widget())
    color = op("vector4", graph.read("mortar_color"), const(1.0))
    ground = graph.filter("uniform", None, {"outputcolor": color}, kind=COLOR)
    sand = graph.instance(noise_graphs["speckle"], values={"scale": 48, "contrast": 0.7})
    lumps = graph.instance(noise_graphs["perlin_soft"], values={"scale": 12})
    height = graph.blend(sand, lumps, "multiply", 0.5)
    shade = graph.gradient(height, [(0.0, (0.55, 0.5, 0.45, 1.0)), (1.0, (1.0,) * 4)])
    graph.output("color", graph.blend(shade, ground, "multiply", 0.8), ("RGB", "diffuse"))
    graph.output("height", graph.levels(height, out_high=0.4), ("R", "height"))
    return graph


# fabrics/woven_fabric.obl

def make_fabrics(noises, noise_graphs):
    package = Package("fabrics/woven_fabric.obl", "woven_fabric", "Zoë Lefèvre",
                      "Woven cloth: plain weave, twill & satin.\nThread angle up to ±15°.")
    package.depends_on(noises, "../noises/noises.obl")
    cloth = package.graph("woven_fabric", category="Materials/Fabrics", tags="cloth;weave")
    weaves = package.group("weaves")
    threads = package.group("threads")
    made = [make_thread(threads, name, twist, noise_graphs)
            for name, twist in (("linen", 0.1), ("wool", 0.35), ("silk", 0.02))]
    weave_graphs = [make_weave(weaves, name, step)
                    for name, step in (("plain", 1), ("twill", 2), ("satin", 5))]

    stain = cloth.image_input("stain", COLOR, [("RGBA", "diffuse")], "Wear")
    cloth.value_input("weave", "int1", 1, dropdown("Plain", "Twill", "Satin"), "Weave")
    cloth.value_input("thread_count", "int2", (24, 24), slider(2, 128, "1", "Warp", "Weft"),
                      "Weave")
    cloth.value_input("thread_width", "float1", 0.85, slider(0.1, 1), "Weave")
    cloth.value_input("thread_angle", "float1", 0.0, angle(), "Weave")
    cloth.value_input("warp_color", "float4", (0.2, 0.25, 0.45, 1.0), color_widget(), "Colour")
    cloth.value_input("weft_color", "float4", (0.85, 0.8, 0.7, 1.0), color_widget(), "Colour")
    woven = None
    for index, graph in enumerate(weave_graphs, 1):
        layer = cloth.instance(graph, values=cloth.bind(graph, "thread_count", "thread_width",
                                                        "thread_angle"))
        if woven is None:
            woven = layer["height"]
            mask = layer["warp_mask"]
            continue
        is_chosen = op("ifelse", op("eq", cloth.read("weave"), const(index)), const(1.0),
                       const(0.0))
        woven = cloth.blend(layer["height"], woven, "switch", is_chosen)
        mask = cloth.blend(layer["warp_mask"], mask, "switch", is_chosen)
    fibres = [cloth.instance(graph) for graph in made]
    hair = cloth.blend(fibres[1], cloth.blend(fibres[0], fibres[2], "max", 0.5), "addsub", 0.4)
    height = cloth.blend(hair, woven, "multiply", 0.6)
    warp, weft = (cloth.filter("uniform", None, {"outputcolor": cloth.read(name)}, kind=COLOR)
                  for name in ("warp_color", "weft_color"))
    with_mask = cloth.filter("shuffle", {"input1": warp, "input2": mask}, {"channelalpha": 4},
                             kind=COLOR)
    dyed = cloth.blend(with_mask, weft)
    shaded = cloth.blend(cloth.gradient(height, [(0.0, (0.1, 0.1, 0.12, 1.0)),
                                                 (0.35, (0.55, 0.55, 0.55, 1.0)),
                                                 (1.0, (1.0,) * 4)]), dyed, "multiply")
    final = cloth.blend(stain, shaded, "multiply", 0.25)
    cloth.output("diffuse", final, ("RGB", "diffuse"), mipmaps=10)
    cloth.output("normal", cloth.normal(height, 7.5), ("RGB", "normal"))
    cloth.output("height", height, ("R", "height"), image_format=1)
    cloth.output("glossiness", cloth.levels(height, out_low=0.05, out_high=0.3),
                 ("RGBA", "glossiness"))
    return package


def make_thread(threads, name, twist, noise_graphs):
    graph = threads.graph(name, description=f"Fibres of {name}, twisted by {twist:g} turns.")
    graph.value_input("twist", "float1", twist, slider(0, 1))
    graph.value_input("fibre_count", "int1", 60, slider(8, 256, "1"))
    length = op("vector2", const(0.04), op("lerp", const(0.3), const(0.9),
                                           op("rand", const(1.0))))
    fibres = graph.fxmap(scatter(graph, graph.read("fibre_count"), "capsule", length,
                                 scaled(graph, "twist", 0.5)))
    bend = graph.instance(noise_graphs["perlin_soft"], values={"scale": 5})
    bent = graph.filter("warp", {"input1": fibres, "inputgradient": bend},
                        {"intensity": op("mul", graph.read("twist"), const(2.0))})
    smear = graph.filter("dirmotionblur", {"input1": bent},
                         {"intensity": 6.5, "mblurangle": graph.read("twist")})
    graph.output("fibres", smear, ("R", "height"))
    return graph


def make_weave(weaves, name, step):
    graph = weaves.graph(name, description=f"Every thread moves on by {step}.")
    graph.value_input("thread_count", "int2", (24, 24), slider(2, 128, "1"))
    graph.value_input("thread_width", "float1", 0.85, slider(0.1, 1))
    graph.value_input("thread_angle", "float1", 0.0, angle())
    layers = []
    for index, role in enumerate(("warp", "weft")):
        count = op("iswizzle1", graph.read("thread_count"), data=index)
        pitch = op("div", const(1.0), op("tofloat", count))
        width = op("mul", pitch, graph.read("thread_width"))
        size = op("vector2", width, const(1.0)) if role == "warp" else op(
            "vector2", const(1.0), width)
        step_on = op("mul", pitch, const(float(step)))
        counter = op("sequence", op("set", op("mul", pitch, const(0.5)), data="half_pitch"),
                     op("vector2", op("add", get("float1", "half_pitch"), step_on), pitch))
        thread = FxNode("paramset", f"{role}_thread", {
            "patterntype": pattern("waves" if step > 1 else "halfbell"), "patternsize": size,
            "branchoffset": counter, "patternrotation": graph.read("thread_angle"),
            "opacity": op("lerp", const(0.6), const(1.0), op("rand", const(1.0))),
            "blendingmode": 1, "randomseed": 7 * step + index})
        gap = FxNode("paramset", f"{role}_gap", {"patterntype": pattern("null")})
        choice = FxNode("markov2", f"{role}_float", {
            "switch": op("gt", op("rand", const(1.0)), const(1.0 / (step + 1)))},
            output2=thread, output3=gap)
        root = FxNode("addnode", f"{role}_threads", {
            "numberadded": op("mul", count, const(step)), "randominherited": False},
            output0=choice, output1=thread)
        note = gui_object("comment", f"{role}: {step} over, 1 under", graph.numbers.uid(),
                          (0, -96, 0))
        layers.append(graph.fxmap(root, values={"renderroi": (-0.5, -0.5, 0.5, 0.5)},
                                  objects=[note], title=label_of(role)))
    mask = graph.levels(graph.blend(layers[1], layers[0], "substract"), 0.05, 0.2)
    graph.output("height", graph.blend(layers[0], layers[1], "max"), ("R", "height"))
    graph.output("warp_mask", mask, ("RGBA", "mask"))
    return graph


# wood/wood_planks.obl and mixed/everything.obl, which refer to each other

def wood_bitmaps():
    def rings(x, y):
        distance = ((x - 20) ** 2 + (y * 0.35 - 40) ** 2) * 3
        return distance % 1024 * 255 // 1024 // 2 + 96 if distance else 128

    def grain(x, y):
        return ((x * x * 7 + y * 3 + (x * y) % 13 * 5) % 97) + 100

    return {
        "oak_color": png(64, 64, 3, lambda x, y: (int(rings(x, y)), int(rings(x, y) * 0.7),
                                                  int(rings(x, y) * 0.45))),
        "oak_grain": png(64, 64, 1, lambda x, y: (grain(x, y),)),
        "nail_head": png(24, 24, 1, lambda x, y: (
            max(0, 255 - 2 * ((x - 12) ** 2 + (y - 12) ** 2)),)),
        "scratches": png(48, 48, 1, lambda x, y: (255 if (3 * x + y) % 29 == 0 else 16 + x,)),
    }


def make_wood(bitmaps):
    package = Package("wood/wood_planks.obl", "wood_planks", "Åsa Öberg",
                      "Planks of oak, pine & larch.\n\tGrain runs at 90° to the joints.")
    planks = package.graph("wood_planks", category="Materials/Wood", tags="wood;plank;floor",
                           description="A floor of planks with nails.")
    resources = package.group("resources", "Scans, 300 dpi")
    images = {}
    copy = bitmaps["oak_grain"]
    packed = stored_zlib(bitmaps["nail_head"])
    embedded = base64.b64encode(bitmaps["scratches"]).decode("ascii")
    sources = {
        "oak_color": "",
        "oak_grain": element("externalcopy", leaf("filename", "bitmaps/oak_grain_copy.png"),
                             leaf("lastModif", LAST_CHANGE), leaf("checksum", checksum(copy))),
        "nail_head": element("binboon", leaf("offset", 64),
                             leaf("datalength", len(bitmaps["nail_head"])),
                             leaf("format", "zlib"), leaf("compressedlength", len(packed))),
        "scratches": element("binembedded", leaf("datalength", len(bitmaps["scratches"])),
                             leaf("format", 1), leaf("strdata", embedded)),
    }
    for name, data in bitmaps.items():
        is_scan = name == "oak_color"
        images[name] = resources.add(Resource(
            name, f"bitmaps/{name}.png", data, {"label": label_of(name), "author": "Åsa Öberg"},
            sources[name], COOKED_JPEG if is_scan else COOKED_RAW, 0.85 if is_scan else 0.0,
            (("scanner", "A4 \"flatbed\""), ("dpi", "300")) if is_scan else ()))
        write_file(f"wood/bitmaps/{name}.png", data)
    write_file("wood/bitmaps/oak_grain_copy.png", copy)
    species = package.group("species")
    made = {name: make_plank(species, name, images, color, knots) for name, color, knots in (
        ("oak", (0.52, 0.37, 0.22, 1.0), 3), ("pine", (0.78, 0.6, 0.36, 1.0), 9),
        ("larch", (0.66, 0.42, 0.27, 1.0), 6))}
    return package, planks, images, made


def make_plank(species, name, images, color, knots):
    graph = species.graph(name, description=f"One plank of {name}.")
    graph.value_input("grain_scale", "float1", 1.0, slider(0.1, 4))
    graph.value_input("knot_count", "int1", knots, slider(0, 32, "1"))
    graph.value_input("stain", "float4", color, color_widget())
    scan = graph.bitmap(images["oak_color"], COLOR)
    grain = graph.bitmap(images["oak_grain"], GRAYSCALE)
    zoom = op("div", const(1.0), graph.read("grain_scale"))
    matrix = op("vector4", op("vector2", zoom, const(0.0)), op("vector2", const(0.0), zoom))
    stretched = graph.filter("transformation", {"input1": grain}, {"matrix22": matrix})
    knot_size = op("lerp", const((0.02, 0.03)), const((0.05, 0.08)), op("rand", const(1.0)))
    spots = graph.fxmap(scatter(graph, graph.read("knot_count"), "cone", knot_size,
                                op("rand", const(1.0))))
    streaks = graph.filter("directionalwarp", {"input1": stretched, "inputintensity": spots},
                           {"intensity": 22.5, "warpangle": 0.25})
    along = graph.filter("motionblur", {"input1": streaks, "inputgradient": spots},
                         {"intensity": 0.3})
    tinted = graph.filter("uniform", None, {"outputcolor": graph.read("stain")}, kind=COLOR)
    wood = graph.blend(scan, tinted, "multiply", 0.7)
    rings = graph.gradient(along, [(0.0, (0.3, 0.2, 0.1, 1.0)), (0.6, color), (1.0, (1.0,) * 4)])
    graph.output("color", graph.blend(rings, wood, "multiply"), ("RGB", "diffuse"))
    graph.output("height", graph.blend(spots, along, "max", 0.5), ("R", "height"))
    return graph


def finish_wood(package, planks, images, made, everything, everything_graphs):
    package.depends_on(everything, "../mixed/everything.obl")
    planks.value_input("plank_count", "int1", 7, slider(1, 24, "1"), "Planks")
    planks.value_input("gap", "float1", 0.02, slider(0, 0.2, "0.005"), "Planks")
    planks.value_input("nails", "bool", True, toggle(), "Nails")
    planks.value_input("age", "float1", 0.3, slider(0, 1, "0.01", suffix=" years"), "Ageing")
    dirt = planks.image_input("dirt", GRAYSCALE, [("RGBA", "mask")])
    order = ("oak", "pine", "larch", "oak", "larch", "pine", "oak")
    floor, height = None, None
    for index, name in enumerate(order):
        plank = planks.instance(made[name], values={"grain_scale": 0.75 + 0.125 * index,
                                                    "knot_count": 2 + index % 4})
        color = planks.transform(plank["color"], 0.25, (index / 7, 0.0))
        relief = planks.transform(plank["height"], 0.25, (index / 7, 0.0))
        floor = color if floor is None else planks.blend(color, floor)
        height = relief if height is None else planks.blend(relief, height, "max")
    nail = planks.bitmap(images["nail_head"], GRAYSCALE, (5, 5))
    nail_size = op("vector2", const(0.02), const(0.02))
    shown = op("ifelse", planks.read("nails"), op("mul", planks.read("plank_count"), const(4)),
               const(0))
    heads = planks.fxmap(scatter(planks, shown, "image_entry", nail_size), image=nail)
    scratch = planks.bitmap(images["scratches"], GRAYSCALE)
    worn = planks.blend(scratch, height, "substract", planks.read("age"))
    relief = planks.blend(heads, worn, "max", title="Nails on top")
    gray = planks.blend(planks.gradient(dirt, [(0.0, (0.4, 0.4, 0.42, 1.0)), (1.0, (1.0,) * 4)]),
                        floor, "multiply", scaled(planks, "age", 0.9, 0.05))
    badge = planks.instance(everything_graphs["Stamp"], {"paper": gray}, {"text_size": 0.1})
    planks.output("diffuse", badge["stamped"], ("RGB", "diffuse"), mipmaps=11)
    planks.output("height", relief, ("R", "height"), image_format=1)
    planks.output("normal", planks.normal(relief), ("RGB", "normal"))
    planks.output("roughness", planks.levels(relief, out_low=0.9, out_high=0.5),
                  ("RGBA", "roughness"))


def make_everything(noises, noise_graphs, wood, wood_graphs, wood_images):
    package = Package("mixed/everything.obl", "everything", "André Müller & Zoë <Lefèvre>",
                      'One of each: "quotes", <brackets>, & signs,\ttabs,\n'
                      "line feeds and 20 °C.")
    package.depends_on(noises, "../noises/noises.obl")
    package.depends_on(wood, "../wood/wood_planks.obl")
    package.configurations = package.configuration(
        "root", package.configuration(
            "desktop", package.configuration("high", desc="Best quality"),
            package.configuration("low"), desc="PC & Mac", platform=1),
        package.configuration("mobile", package.configuration("phone", platform=3),
                              platform=2), desc="All targets")
    first = package.group("first")
    second = first.group("second", "A group in a group")
    third = second.group("Third", "Two groups up: first")
    stamp_data = png(16, 16, 4, lambda x, y: (200, 16 * y, 16 * x, 255 if x != y else 64))
    write_file("mixed/bitmaps/stamp.png", stamp_data)
    stamp_image = third.add(Resource(
        "stamp-image", "bitmaps/stamp.png", stamp_data, {"description": 'A "stamp" > 15 px'},
        element("binembedded", leaf("datalength", len(stamp_data)),
                leaf("strdata", base64.b64encode(stamp_data).decode("ascii"))),
        COOKED_RAW, 0.0, (("empty", ""), ("quote", '"'))))
    functions = second.group("functions")
    square = op("mul", get("float1", "x"), get("float1", "x"))
    square.title = "x²"
    smooth = op("mul", square, op("sub", const(3.0), op("mul", const(2.0), get("float1", "edge"))))
    smooth.view, smooth.notes = ("list", "0 0 320 200", "2"), ("Smooth step", "edge <= 1 & > 0")
    fade = functions.add(Function(
        "fade", [("x", "float1", 0.0, slider(0, 1)), ("edge", "float1", 0.5, slider(0, 1))], smooth,
        category="Curves", description="Smooth step: x² · (3 - 2 · edge)."))
    functions.add(Function("pi", [], const(3.14159274), description="The number itself."))
    functions.add(Function(
        "swing", [("phase", "float1", 0.0, angle())],
        call(package, fade, x=op("sin", get("float1", "phase")), edge=const(0.25))))

    main, parts = everything_main(package, second, fade)
    parts.update(fade=fade, image=stamp_image)
    stamp = make_stamp(third, stamp_image)
    empty = package.graph("empty_graph")
    empty.base_parameters, empty.is_off = {}, True
    constants_graph(package.group("constants"))
    finish_everything(package, main, parts, stamp, noise_graphs, wood_graphs, wood_images)
    return package, {"Everything": main, "Stamp": stamp}


def make_stamp(group, image):
    graph = group.graph("Stamp")
    paper = graph.image_input("paper", COLOR)
    graph.value_input("text_size", "float1", 0.1, slider(0.01, 0.5))
    graph.value_input("label_text", "string", "N° 5, \"oak\"", widget("text"))
    size = op("vector2", graph.read("text_size"), graph.read("text_size"))
    words = graph.filter("text", {}, {
        "text": "N° 5\n<oak & pine>",
        "fontsize": size, "alignement": 1, "position": (0, 12), "Font data": "",
        "front color": (0.1, 0.1, 0.35, 1.0)}, kind=COLOR)
    seal = graph.bitmap(image, COLOR, (4, 4))
    graph.output("stamped", graph.blend(words, graph.blend(seal, paper, "multiply", 0.5)),
                 ("RGB", "diffuse"))
    return graph


def constants_graph(group):
    """One graph with an input of each type and each class of constant value as a parameter."""
    graph = group.graph("every_constant")
    entries = [
        ("a_bool", "bool", True, toggle()), ("an_int1", "int1", -3, slider(-10, 10, "1")),
        ("an_int2", "int2", (1, -2), slider(-10, 10, "1")),
        ("an_int3", "int3", (1, 2, -3), slider(-10, 10, "1")),
        ("an_int4", "int4", (-2147483648, 2, 3, 2147483647), slider(-10, 10, "1")),
        ("a_float1", "float1", 0.1, slider(0, 1)),
        ("a_float2", "float2", (0.333333, -1.5), slider(-2, 2, "0.1", "X", "Y")),
        ("a_float3", "float3", (1e-07, 1e+20, 0.0), slider(-2, 2)),
        ("a_float4", "float4", (0.123457, 0.5, 123457.0, 1.0), color_widget()),
        ("a_string", "string", "Grüße, \"ça va\"?\n\ttab & <end>", widget("text")),
    ]
    for identifier, type_name, default, widget_text in entries:
        graph.value_input(identifier, type_name, default, widget_text, "Group of " + type_name)
    values = {
        "randomseed": Constant("Int32", 4294967295), "outputsize": Related((-1, 2), TO_PARENT),
        "format": Related(1, TO_INPUT), "tiling": Related(3, NO_RELATION),
        "pixelsize": (1.0, 1.0), "quality": Constant("Int32", 2, [(4, "high"), (0, "phone;low")]),
    }
    noise = graph.uniform((0.1, 0.2, 0.3, 1.0))
    old_style = {"intensity": Constant("Float", 0.1), "shiftangle": Constant(
        "Float", 1234.56789, [(0.5, "mobile"), (1e-10, "desktop;high")])}
    blurred = graph.filter("motionblur", {"input1": noise, "inputgradient": graph.to_gray(noise)},
                           {**old_style, **values})
    texts = graph.filter("text", {}, {
        "position": Constant("Int2", (3, -4), [((5, 6), "mobile")]),
        "text": Constant("String", "plain", [("phone", "phone"), ("", "low")]),
        "colorswitch": Constant("Bool", False, [(True, "desktop")]),
        "fontsize": Constant("Float2", (12.5, 12.5), [((8.0, 8.0), "phone")])}, kind=GRAYSCALE)
    switched_off = graph.read("a_float1")
    switched_off.is_off = True
    tuned = graph.filter("levels", {"input1": texts}, {
        "levelinlow": op("mulscalar", graph.read("a_float4"), switched_off),
        "levelinmid": Constant("Float4", (0.5,) * 4, [((0.25,) * 4, "mobile")])})
    shuffled = graph.filter("shuffle", {"input1": blurred, "input2": tuned}, {
        "channelred": Constant("Int1", (0,)), "channelgreen": Constant("Int1", (5,))}, kind=COLOR)
    shapes = graph.fxmap(FxNode("paramset", "all_vectors", {
        "frameoffset": Constant("Int3", (0, 1, -1)), "branchoffset": graph.read("a_float2"),
        "opacity": graph.read("a_float1"), "patterntype": pattern("disc"),
        "randomseed": op("toint1", graph.read("a_float1"))}), background=tuned)
    graph.base_parameters = {
        **values, "tint": Constant("Float3", (0.25, 0.5, 1.0)),
        "window": Constant("Int4", (0, 0, 512, 512))}
    graph.output("mixed", shuffled, ("RGB", "diffuse"))
    graph.output("shapes", shapes, ("R", "myOwnUsage"))


def everything_main(package, group, fade):
    main = group.graph(
        "Everything", category="Tests", label='The "main" graph', author="André Müller",
        authorURL="mailto:andre@example.org?subject=a&body=b", tags="a;b;ç",
        description="Line one\nline two < 3 & more", usertags="x y")
    main.view = ("list", "0 0 640 480", "0.75")
    base = main.image_input("base", COLOR, [("RGB", "diffuse"), ("A", "opacity")], "Images")
    mask = main.image_input("mask", GRAYSCALE, [("RGBA", "mask")], "Images", is_off=True)
    main.primary_variants = [(main.image_inputs["mask"], "phone")]
    main.value_input("strength", "float1", 0.5, slider(0, 1), "Tuning")
    main.value_input("amount", "int1", 12, slider(0, 100, "1", suffix=" %"), "Tuning",
                     is_off=True)
    nested = main.add(Group("inside", "Content of a graph"))
    helper = nested.graph("helper")
    source = helper.image_input("source", GRAYSCALE)
    helper.value_input("edge", "float1", 0.5, slider(0, 1))
    faded = op("vector2", *[call(package, fade, x=helper.read("edge"), edge=const(0.5))] * 2)
    helper.output("result", helper.levels(source, op("vector4", faded, faded)))
    nested.add(Function("local_gain", [("gain", "float1", 1.0, slider(0, 4))],
                        op("sqrt", op("abs", get("float1", "gain")))))
    return main, {"base": base, "mask": mask, "helper": helper}


def finish_everything(package, main, parts, stamp, noise_graphs, wood_graphs, wood_images):
    base, mask, helper, fade, image = (
        parts[name] for name in ("base", "mask", "helper", "fade", "image"))
    soft = main.instance(helper, {"source": mask}, {"edge": main.read("strength")},
                         view=("preview", "", "1.5"), title="Nested helper")
    wood = main.instance(wood_graphs["pine"], values={"knot_count": main.read("amount")})
    noise = main.instance(noise_graphs["turbulence"], values={
        "scale": 5, "contrast": call(package, fade, x=main.read("strength"), edge=const(1.0))})
    picture = main.bitmap(image, COLOR, (4, 4), dock=(32.0, -16.5), title="Stamp image")
    scan = main.bitmap(wood_images["oak_color"], COLOR, title="Scan from the wood package")
    spread = FxNode("paramset", "spread", {
        "patterntype": pattern("image_entry"),
        "branchoffset": op("cartesian", op("rand", const(0.5)), op("rand", const(6.28))),
        "patternsize": (0.125, 0.125),
        "opacity": op("min", const(1.0), op("add", main.read("strength"), const(0.1)))})
    never = FxNode("paramset", "never", {"patterntype": pattern("null")})
    never.is_off, never.title = True, "Never drawn"
    choice = FxNode("markov2", "choice", {"switch": op(
        "and", op("lreq", main.read("strength"), const(0.9)), op("not", const(False)))},
        output2=spread, output3=never)
    root = FxNode("addnode", "many", {"numberadded": op("max", const(1), main.read("amount"))},
                  output0=choice, outputn=never)
    stamps = main.fxmap(root, COLOR, image=picture, values={"hurst": 0.2},
                        objects=[gui_object("comment", "The map's own note", 17, (0, 40, 0))])
    mixed = main.blend(stamps, main.blend(scan, wood["color"], "multiply"), "max", 0.5,
                       is_off=True, off_variants=[(False, "desktop")],
                       settings=(("thumbnail", "0"),))
    both = main.blend(mixed, base, "addsub", main.read("strength"))
    stamped = main.instance(stamp, {"paper": both})
    final = main.filter("hsl", {"input1": stamped}, {"hue": 0.5})
    main.place(element("compExternal", leaf("identifier", "render_farm"),
                       leaf("desc", "Done elsewhere, at 90 °C")), {})
    main.place(element("compExternal", leaf("identifier", "plain_external")), {})
    main.place(element("compExternalLink", overloadable(
        "path", package.reference(wood_graphs["oak"]))), {})
    main.place("", {}, title="Nothing chosen")
    bent = main.filter("warp", {"input1": soft, "inputgradient": noise}, {"intensity": 0.5})
    main.filter("blend", {"source": bent, "destination": None}, title="Half connected")
    main.output("color", final, ("RGB", "diffuse"), ("A", "opacity"), mipmaps=12,
                usertag='tag "one"', desc="Final colour")
    main.output("relief", bent, ("R", "height"), channels=0, image_format=3, is_off=True)
    main.output("unused", noise)
    main.comment("Bound to the fxmaps node", (-64, 220.5, 2), stamps)
    main.comment("Frame around\nthe inputs", (-512, -256, -1), kind="frame")
    main.comment("", (0, 0, 0), kind="pin")
    main.settings = (("folder", "..\\out"), ("note", "a & b"))


# large/city_facade.obl

WINDOWS = ("sash", "casement", "bay", "arched", "oriel", "gothic", "transom", "shop")
FLOORS = ("ground", "mezzanine", "first", "second", "attic")
MATERIALS = ("plaster", "sandstone", "limestone", "clinker", "stucco")


def make_city(bricks, brick_graphs, noises, noise_graphs):
    package = Package("large/city_facade.obl", "city_facade", "André Müller",
                      "A street of houses from the Gründerzeit.\nScale 1:1, slope of roofs 45°.")
    package.depends_on(bricks, "../bricks/brick_wall.obl")
    package.depends_on(noises, "../noises/noises.obl")
    facade = package.graph("city_facade", category="Architecture", tags="house;street;façade",
                           description="A whole façade; the floors are in \"floors\".")
    numbers = Numbers("city variations")
    functions = package.group("functions")
    jitter = functions.add(Function(
        "jitter", [("seed", "float1", 0.0, slider(0, 100)), ("amount", "float1", 0.1,
                                                             slider(0, 1))],
        op("mul", op("sub", op("rand", get("float1", "seed")), const(0.5)),
           get("float1", "amount"))))
    material_group = package.group("materials")
    materials = [make_facade_material(material_group, name, index, brick_graphs, noise_graphs,
                                      numbers)
                 for index, name in enumerate(MATERIALS)]
    window_group = package.group("windows")
    windows = [make_window(package, window_group, name, index, jitter, noise_graphs, numbers)
               for index, name in enumerate(WINDOWS)]
    floor_group = package.group("floors")
    floors = []
    for index, name in enumerate(FLOORS):
        group = floor_group.group(name)
        floors += [make_floor(group, index, materials, windows, noise_graphs, numbers, variant)
                   for variant in ("plain", "ornate")]
    stack_floors(facade, floors, noise_graphs)
    return package


def make_facade_material(group, name, index, brick_graphs, noise_graphs, numbers):
    graph = group.graph(name, category="Architecture/Materials")
    graph.value_input("tint", "float4", tuple(round(numbers.between(0.3, 0.9), 2)
                                              for _ in range(3)) + (1.0,), color_widget())
    graph.value_input("wear", "float1", 0.3, slider(0, 1))
    wall = brick_graphs["brick_wall"]
    ground = graph.filter("uniform", None, {"outputcolor": graph.read("tint")}, kind=COLOR)
    masonry = graph.instance(wall, values={
        "bond": 1 + index % 4, "brick_count": (4 + index, 10 + 2 * index),
        "mortar_width": round(numbers.between(0.02, 0.12), 3), **graph.bind(wall, "wear")})
    surface = graph.blend(masonry["diffuse"], ground, "multiply", 0.5)
    relief = masonry["height"]
    for step, noise_name in enumerate(("grunge_map_1", "dust", "stains", "perlin_ridged",
                                       "cells_1", "clouds_1")):
        noise = graph.instance(noise_graphs[noise_name], values={
            "scale": 2 + numbers.below(14), "seed_offset": numbers.below(500),
            "contrast": graph.read("wear")})
        shaped = graph.levels(noise, round(numbers.between(0.0, 0.3), 2),
                              round(numbers.between(0.7, 1.0), 2))
        dirt = graph.gradient(shaped, [(0.0, (0.35, 0.32, 0.3, 1.0)), (1.0, (1.0,) * 4)])
        surface = graph.blend(dirt, surface, "multiply", scaled(graph, "wear", 0.5 - 0.05 * step))
        relief = graph.blend(shaped, relief, "addsub", scaled(graph, "wear", 0.1))
    graph.output("diffuse", surface, ("RGB", "diffuse"))
    graph.output("height", relief, ("R", "height"))
    return graph


def make_window(package, group, name, index, jitter, noise_graphs, numbers):
    graph = group.graph(name, category="Architecture/Windows",
                        description=f"Window \"{name}\", {0.9 + 0.05 * index:.2f} m wide.")
    graph.value_input("frame_width", "float1", 0.06, slider(0, 0.3, "0.005"))
    graph.value_input("frame_color", "float4", (0.93, 0.92, 0.88, 1.0), color_widget())
    graph.value_input("lit", "bool", index % 3 == 0, toggle())
    graph.value_input("seed", "float1", float(index), slider(0, 100, "1"))
    columns, rows = 2 + index % 3, 2 + index // 6
    frame_color = graph.filter("uniform", None, {"outputcolor": graph.read("frame_color")},
                               kind=COLOR)
    hole = op("sub", const(1.0), op("mul", const(2.0), graph.read("frame_width")))
    opening = graph.fxmap(FxNode("paramset", "opening", {
        "patterntype": pattern(("square", "disc", "halfbell", "capsule")[index % 4]),
        "patternsize": op("vector2", hole, hole), "opacity": (1.0,) * 4}))
    glass, mask = graph.uniform((0.08, 0.11, 0.15, 1.0), title="Night glass"), opening
    for row in range(rows):
        for column in range(columns):
            seed = op("add", graph.read("seed"), const(float(row * columns + column)))
            turn = call(package, jitter, seed=seed, amount=const(0.02))
            pane = graph.fxmap(FxNode("paramset", f"pane_{row}_{column}", {
                "patterntype": pattern("square"), "patternrotation": turn,
                "patternsize": (0.9 / columns, 0.9 / rows),
                "branchoffset": ((column + 0.5) / columns - 0.5, (row + 0.5) / rows - 0.5),
                "opacity": op("ifelse", graph.read("lit"), op("rand", seed), const(0.1))}))
            tinted = graph.gradient(pane, [(0.0, (0.0, 0.0, 0.0, 0.0)), (1.0, (
                1.0, round(numbers.between(0.7, 0.95), 2), round(numbers.between(0.4, 0.7), 2),
                1.0))])
            glass = graph.blend(tinted, glass, "add")
            mask = graph.blend(pane, mask, "max")
    dirt = graph.instance(noise_graphs["dust"], values={"scale": 3 + index})
    cleaned = graph.blend(graph.gradient(dirt, [(0.0, (0.5,) * 4), (1.0, (1.0,) * 4)]), glass,
                          "multiply", 0.3)
    with_mask = graph.filter("shuffle", {"input1": cleaned, "input2": mask},
                             {"channelalpha": 4}, kind=COLOR)
    graph.output("diffuse", graph.blend(with_mask, frame_color), ("RGB", "diffuse"))
    graph.output("mask", mask, ("RGBA", "mask"))
    graph.output("emissive", glass, ("RGB", "emissive"), is_off=index % 2 == 1)
    return graph


def make_floor(group, index, materials, windows, noise_graphs, numbers, variant):
    graph = group.graph(variant, category="Architecture/Floors")
    graph.value_input("bays", "int1", 8, slider(1, 32, "1"))
    graph.value_input("wear", "float1", 0.3, slider(0, 1))
    graph.value_input("lit_windows", "float1", 0.4, slider(0, 1))
    material = materials[index % len(materials)]
    wall = graph.instance(material, values=graph.bind(material, "wear"))
    surface, relief = wall["diffuse"], wall["height"]
    width = op("div", const(1.0), op("tofloat", graph.read("bays")))
    for bay in range(8 if variant == "plain" else 9):
        window = windows[(index * 3 + bay * (2 if variant == "plain" else 5)) % len(windows)]
        lit = op("lr", op("rand", const(float(bay))), graph.read("lit_windows"))
        placed = graph.instance(window, values={
            "seed": float(numbers.below(100)), "lit": lit,
            "frame_width": round(numbers.between(0.03, 0.12), 3)}, title=f"Bay {bay + 1}")
        x = round((bay + 0.5) / 11 - 0.5, 4)
        offset = op("vector2", op("mul", const(float(bay)), width), const(round(
            numbers.between(-0.02, 0.02), 3)))
        color = graph.filter("transformation", {"input1": placed["diffuse"]},
                             {"matrix22": (8.0, 0.0, 0.0, 1.5), "offset": offset, "tiling": 0})
        mask = graph.transform(placed["mask"], 0.125, (x, 0.0))
        cut = graph.filter("shuffle", {"input1": color, "input2": mask}, {"channelalpha": 4},
                           kind=COLOR)
        surface = graph.blend(cut, surface)
        relief = graph.blend(mask, relief, "substract", round(numbers.between(0.2, 0.5), 2))
    if variant == "ornate":
        for step in range(4):
            moulding = graph.fxmap(scatter(graph, op("mul", graph.read("bays"), const(step + 1)),
                                           ("waves", "bell", "ridgebell", "brick")[step],
                                           (0.125, 0.03), 0.0, 0.5, seed=step))
            relief = graph.blend(moulding, relief, "max", 0.25)
    streaks = graph.instance(noise_graphs["stains"], values={"scale": 4, "disorder": 0.25})
    rain = graph.filter("dirmotionblur", {"input1": streaks}, {"intensity": 32.0,
                                                               "mblurangle": 0.25})
    final = graph.blend(graph.gradient(rain, [(0.0, (0.6, 0.6, 0.58, 1.0)), (1.0, (1.0,) * 4)]),
                        surface, "multiply", graph.read("wear"))
    graph.output("diffuse", final, ("RGB", "diffuse"))
    graph.output("height", relief, ("R", "height"))
    graph.comment(f"Floor {index}, {variant}", (-500, -420, 0), wall)
    return graph


def stack_floors(facade, floors, noise_graphs):
    sky = facade.image_input("sky", COLOR, [("RGB", "environment")])
    facade.value_input("wear", "float1", 0.3, slider(0, 1), "Façade")
    facade.value_input("lit_windows", "float1", 0.4, slider(0, 1), "Façade")
    facade.value_input("floor_height", "float1", 0.1, slider(0.05, 0.5), "Façade")
    facade.value_input("style", "int1", 1, dropdown("Plain", "Ornate"), "Façade")
    color, height = sky, facade.uniform(0.0)
    for index in range(0, len(floors), 2):
        shown = []
        for graph in floors[index:index + 2]:
            shown.append(facade.instance(graph, values=facade.bind(graph, "wear", "lit_windows"),
                                         title=label_of(graph.parent.identifier)))
        ornate = op("ifelse", op("eq", facade.read("style"), const(2)), const(1.0), const(0.0))
        offset = op("vector2", const(0.0), op("mul", facade.read("floor_height"),
                                              const(float(index // 2))))
        for output in ("diffuse", "height"):
            chosen = facade.blend(shown[1][output], shown[0][output], "switch", ornate)
            placed = facade.filter("transformation", {"input1": chosen},
                                   {"matrix22": (1.0, 0.0, 0.0, 10.0), "offset": offset})
            if output == "diffuse":
                color = facade.blend(placed, color)
            else:
                height = facade.blend(placed, height, "max")
    soot = facade.instance(noise_graphs["grunge_map_2"], values={"scale": 3})
    aged = facade.blend(facade.gradient(soot, [(0.0, (0.3, 0.3, 0.3, 1.0)), (1.0, (1.0,) * 4)]),
                        color, "multiply", facade.read("wear"))
    facade.output("diffuse", aged, ("RGB", "diffuse"), mipmaps=12)
    facade.output("height", height, ("R", "height"), image_format=1)
    facade.output("normal", facade.normal(height, 8.0), ("RGB", "normal"))
    facade.output("glossiness", facade.levels(soot, out_low=0.1, out_high=0.4),
                  ("RGBA", "glossiness"))


# effects/surface_rust.obl and effects/steel_plate.png

def steel_plate():
    """A picture that passes for a photograph: brushed steel with rivets, a scratch, first rust."""
    width, height, tones = 300, 200, 128
    numbers = Numbers("steel plate")
    brushed = [[numbers.below(15) for _ in range(width // 30 + 2)] for _ in range(height)]
    grain = [numbers.below(9) for _ in range(4099)]
    steel = [(2 * tone * 15 // 16, 2 * tone * 31 // 32, 2 * tone) for tone in range(tones)]
    rusty = [(tone * 7 // 4, tone, tone * 9 // 16) for tone in range(tones)]
    rivets = [(x, y) for x in (22, 150, 278) for y in (22, 178)]

    def index(x, y):
        block, inside = divmod(x, 30)
        streak = (brushed[y][block] * (30 - inside) + brushed[y][block + 1] * inside) // 30
        tone = 34 + x * 40 // width + (height - y) * 18 // height + streak + grain[
            (x * 131 + y * 577) % len(grain)]
        if abs(5 * x - 9 * y + 300) < 6 and 60 < x < 210:
            tone -= 26
        for center_x, center_y in rivets:
            dx, dy = x - center_x, y - center_y
            if dx * dx + dy * dy < 81:
                tone = 66 - 3 * (dx + dy)
            elif dx * dx + dy * dy < 110:
                tone = 18
        if x < 4 or y < 4:
            tone += 24
        elif x >= width - 4 or y >= height - 4:
            tone -= 24
        stain = (x - 22) ** 2 + max(0, y - 178 if y > 178 else (178 - y) // 3) ** 2
        spread = 900 + 60 * grain[(x // 3 * 17 + y // 3 * 5) % len(grain)]
        return min(max(tone, 0), tones - 1) + (tones if stain < spread else 0)

    return indexed_png(width, height, steel + rusty, index)


def make_rust():
    package = Package("effects/surface_rust.obl", "surface_rust", "Zoë Lefèvre",
                      "A filter that lets rust grow over any surface.")
    rust = package.graph(
        "rust", category="Effects", tags="filter;rust;metal", author="Zoë Lefèvre",
        description="Rust where the wear mask is white, with pits and drips below them.")
    functions = package.group("functions")
    reach_of = functions.add(Function(
        "reach_of", [("amount", "float1", 0.5, slider(0, 1)),
                     ("severity", "int1", 1, dropdown("Light", "Medium", "Heavy", first=0))],
        op("mul", get("float1", "amount"),
           op("ifelse", op("eq", get("int1", "severity"), const(0)), const(0.4),
              op("ifelse", op("eq", get("int1", "severity"), const(1)), const(0.7), const(1.0)))),
        description="How much of the mask is taken: all of it for heavy rust of amount 1."))
    surface, wear = rust_inputs(rust)
    fill_rust(package, rust, surface, wear, reach_of)
    return package


def rust_inputs(rust):
    surface = rust.image_input("surface", COLOR, [("RGBA", "diffuse")], "Images",
                               desc="The surface as it was when new.")
    wear = rust.image_input("wear_mask", GRAYSCALE, [("R", "mask")], "Images",
                            desc="White where the coat is worn off.")
    rust.value_input("enabled", "bool", True, toggle(), "Rust",
                     desc="Off leaves the surface as it is.")
    rust.value_input("severity", "int1", 1, dropdown("Light", "Medium", "Heavy", first=0), "Rust",
                     desc="How far the rust has come.")
    rust.value_input("amount", "float1", 0.45, slider(0, 1, "0.01", "Clean", "Rusty"), "Rust")
    rust.value_input("softness", "float1", 2.5, slider(0, 16, "0.1"), "Rust",
                     desc="Width of the edge of a stain.")
    rust.value_input("rust_color", "float4", (0.43, 0.19, 0.07, 1.0), color_widget(), "Colour")
    rust.value_input("metal_tint", "float3", (0.62, 0.6, 0.58), color_widget(), "Colour",
                     desc="Colour of the bare metal.")
    rust.value_input("pit_count", "int1", 24, slider(0, 64, "1"), "Pits",
                     desc="Pits along an edge.")
    rust.value_input("drip_count", "int2", (12, 3), slider(1, 64, "1", "Across", "Down"), "Drips")
    rust.value_input("drip_angle", "float1", 0.25, angle(), "Drips", desc="0.25 is straight down.")
    rust.value_input("offset", "float2", (0.0, 0.0), widget(
        "position", ("min", "-0.5"), ("max", "0.5"), ("clamp", "1"), ("step", "0.01"),
        ("label0", "X"), ("label1", "Y")), "Place", desc="Moves the surface below the rust.")
    return surface, wear


def fill_rust(package, rust, surface, wear, reach_of):
    def reach():
        return call(package, reach_of, amount=rust.read("amount"), severity=rust.read("severity"))

    def strength(factor):
        return op("ifelse", rust.read("enabled"), op("mul", reach(), const(factor)), const(0.0))

    moved = rust.filter("transformation", {"input1": surface}, {"offset": rust.read("offset")})
    bare = rust.filter("uniform", None, {
        "outputcolor": op("vector4", rust.read("metal_tint"), const(1.0))}, kind=COLOR)
    metal = rust.blend(bare, moved, "multiply", 0.6)

    size = op("div", const(1.2), op("tofloat", op("max", rust.read("pit_count"), const(1))))
    pits = rust.fxmap(scatter(rust, op("mul", rust.read("pit_count"), rust.read("pit_count")),
                              "crescent", op("vector2", size, size),
                              op("rand", const(1.0)), seed=7), title="Pits")
    across, down = (op("iswizzle1", rust.read("drip_count"), data=index) for index in (0, 1))
    length = op("vector2", op("div", const(0.4), op("tofloat", across)),
                op("div", const(0.8), op("tofloat", down)))
    drops = rust.fxmap(scatter(rust, op("mul", across, down), "capsule", length,
                               op("sub", rust.read("drip_angle"), const(0.25)), seed=31))
    drips = rust.filter("dirmotionblur", {"input1": drops}, {
        "intensity": scaled(rust, "softness", 6.0, 1.0), "mblurangle": rust.read("drip_angle")},
        title="Drips")

    torn = rust.filter("warp", {"input1": wear, "inputgradient": pits},
                       {"intensity": scaled(rust, "amount", 0.6)})
    soft = rust.filter("blur", {"input1": torn}, {"intensity": rust.read("softness")})
    least = op("sub", const(1.0), reach())
    stains = rust.levels(soft, op("vector4", op("vector2", least, least),
                                  op("vector2", least, least)))
    mask = rust.blend(drips, stains, "multiply", strength(0.5), title="Where rust is")

    shades = rust.gradient(pits, [(0.0, (0.55, 0.45, 0.4, 1.0)), (0.45, (0.8, 0.62, 0.5, 1.0)),
                                  (1.0, (1.0, 0.93, 0.86, 1.0))])
    ground = rust.filter("uniform", None, {"outputcolor": rust.read("rust_color")}, kind=COLOR)
    rusty = rust.blend(shades, ground, "multiply", 0.8)
    cut_out = rust.filter("shuffle", {"input1": rusty, "input2": mask}, {"channelalpha": 4},
                          kind=COLOR)
    final = rust.blend(cut_out, metal, "copy", strength(1.0), title="Rust on metal")

    plain = rust.levels(rust.to_gray(moved), out_low=0.4, out_high=0.6)
    flaked = rust.blend(mask, plain, "add", strength(0.25))
    relief = rust.blend(pits, flaked, "substract", strength(0.4), title="Relief")
    slope = rust.to_gray(rust.normal(relief, scaled(rust, "amount", 12.0)), (0.0, 0.0, 1.0, 0.0))
    rough = rust.blend(rust.levels(slope, out_low=1.0, out_high=0.35), mask, "max",
                       title="Steep or rusty is rough")
    rust.output("base_color", final, ("RGBA", "diffuse"), label="Base colour", mipmaps=12,
                group="Material")
    rust.output("height", relief, ("R", "height"), image_format=1, mipmaps=1, group="Material")
    rust.output("roughness", rough, ("R", "roughness"), mipmaps=10, group="Material")
    rust.comment("Pits and drips", (-500, -420, 0), pits)


def main():
    noises, noise_graphs = make_noises()
    presets, preset_graphs = make_presets()
    bricks, brick_graphs = make_bricks(noises, noise_graphs, presets, preset_graphs)
    fabrics = make_fabrics(noises, noise_graphs)
    wood, planks, wood_images, plank_graphs = make_wood(wood_bitmaps())
    everything, everything_graphs = make_everything(noises, noise_graphs, wood, plank_graphs,
                                                    wood_images)
    finish_wood(wood, planks, wood_images, plank_graphs, everything, everything_graphs)
    city = make_city(bricks, brick_graphs, noises, noise_graphs)
    for package in (noises, presets, bricks, fabrics, wood, everything, city, make_rust()):
        package.write()
    write_file("effects/steel_plate.png", steel_plate())


if __name__ == "__main__":
    main()

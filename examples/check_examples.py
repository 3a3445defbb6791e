#!/usr/bin/env python3
"""Checks package files: structure, canonical text, unique uids, and that every reference resolves.

Usage: check_examples.py [--presets DIRECTORY] [--updated] [--no-nodes] PACKAGE...

A package that is only referred to is opened too, but checked only if it is named itself. Each
fault is one line on standard error; the exit code is 1 if there was one, 2 for wrong arguments.

With --updated the packages are what `kestrix update` wrote into one directory: a reference to
x.obl, wherever that is, leads to x_updated.obl beside the package that refers. With --no-nodes
they were made from assemblies, whose graphs have inputs and outputs but no nodes.
"""
import argparse
import hashlib
import os
import re
import struct
import sys
import xml.etree.ElementTree as ElementTree

VERSION = "1.1.0.7049"
DECLARATION = '<?xml version="1.0" encoding="UTF-8"?>'

# One line per structure. A member is `name:type`, then "?" if it may be absent and "=x" for a
# default other than the type's empty value. Types: s text, u unsigned, b truth value, f float,
# f1..f4 and i1..i4 vectors; `v.` a value with overloads; [x] a list; {x} a union; `name@row` a
# structure or list that stands in a row of its own.
ROWS = """
package: packageType:s identifier:s desc:s? formatVersion:s updaterVersion:s? platform:u author:s
    fileUID:s versionUID:u configurations dependencies:[dependency] content
configurations: name:s uid:u desc:s? platform:u? configuration:[configurations]
dependency: filename:s uid:u? type:s fileUID:u versionUID:u
content: [group resource graph function]
group: uid:u identifier:s desc:s? content
resource: identifier:s uid:u type:u format:s cookedFormat:u? cookedQuality:f1? filepath:s
    lastModif:s checksum:s attributes? source:{externalcopy binboon binembedded}? options?
externalcopy: filename:s lastModif:s checksum:s
binboon: offset:u datalength:u format:s compressedlength:s?
binembedded: datalength:u format:u? strdata:s
attributes: category:s? label:s? author:s? authorURL:s? tags:s? description:s? usertags:s?
options: [option]
option: name:s value:s
GUILayout: gpos:f3? docked:b? dockDistance:f2?
GUILayoutComp: display:s?=graph groi:s? gzoom:s?
GUIObject: type:s options:s? GUIDependency:s? GUILayout? GUIName:s uid:u
graph: identifier:s uid:u attributes? GUILayoutComp? paraminputs:[paraminput]? primaryInput:v.u?
    graphOutputs:[graphoutput] compNodes:[compNode] baseParameters:[parameter] content
    GUIObjects:[GUIObject]? options? root
function: identifier:s uid:u attributes? paraminputs:[paraminput] type:v.u paramValue
paraminput: identifier:s uid:u attributes? usages:[usage]? disabled:v.b? type:v.u
    defaultValue:{CONSTANTS}? defaultWidget group:s?
graphoutput: identifier:s uid:u attributes? usages:[usage]? channels:u?=1 disabled:v.b?
usage: components:s name:s
defaultWidget: name:s options
compNode: uid:u disabled:v.b? GUILayout? compOutputs:[compOutput]? connexions:[connexion]?
    compImplementation GUIName:s? options?
compImplementation: {compFilter compInstance compInputBridge compOutputBridge compExternal
    compExternalLink}
compFilter: filter:s parameters:[parameter] paramsArrays:[paramsArray]? paramsGraphs:[paramsGraph]?
compInstance: path:v.s parameters:[parameter] outputBridgings:[outputBridging] GUILayoutComp?
compInputBridge: entry:u parameters:[parameter]
compOutputBridge: output:u connectionColorType:u?
compExternal: identifier:s desc:s?
compExternalLink: path:v.s
compOutput: uid:u comptype:v.u?
outputBridging: uid:u identifier:s
connexion: identifier:s connRef:v.u? connRefOutput:v.u?
parameter: name:s relativeTo:u?=4294967295 paramValue
paramValue: {dynamicValue CONSTANTS}
dynamicValue: GUILayoutComp? rootnode:v.u? paramNodes:[paramNode] GUIObjects:[GUIObject]?
paramNode: uid:u function:s disabled:v.b? type:v.u connexions:[connexion]? funcDatas:[funcData]?
    GUILayout? GUIName:s?
funcData: name:s constantValue:{CONSTANTS}
paramsArray: name:s uid:u paramsArrayCells:[paramsArrayCell]
paramsArrayCell: uid:u parameters:[parameter]
paramsGraph: name:s uid:u GUILayoutComp? rootnode:v.u? paramsGraphDatas:[paramsGraphData]
    paramsGraphNodes:[paramsGraphNode] GUIObjects:[GUIObject]?
paramsGraphData: identifier:s uid:u type:s parameters:[parameter]?
paramsGraphNode: uid:u type:s disabled:v.b? connexions:[connexion]? data:u GUILayout? GUIName:s?
root: disabled:v.b? rootOutputs:[rootOutput]?
rootOutput: output:u format:v.u mipmaps:v.u? usertag:s disabled:v.b?
"""
CONSTANTS = {
    "String": "s", "Bool": "b", "Int32": "u", "Float": "f", "Float1": "f1", "Float2": "f2",
    "Float3": "f3", "Float4": "f4", "Int1": "i1", "Int2": "i2", "Int3": "i3", "Int4": "i4",
}
TYPE_OF_CONSTANT = {
    "String": 32768, "Bool": 4, "Int32": 16, "Float": 256, "Float1": 256, "Float2": 512,
    "Float3": 1024, "Float4": 2048, "Int1": 16, "Int2": 32, "Int3": 64, "Int4": 128,
}
ASSEMBLY_STRING = 16384  # the type that a text input of an assembly has
FILTERS = {
    "gradient": "input1", "blend": "source destination", "transformation": "input1",
    "grayscaleconversion": "input1", "shuffle": "input1 input2", "fxmaps":
    "inputpattern background", "svg": "", "uniform": "", "warp": "input1 inputgradient",
    "emboss": "input1 inputgradient", "motionblur": "input1 inputgradient", "blur": "input1",
    "dirmotionblur": "input1", "directionalwarp": "input1 inputintensity", "sharpen": "input1",
    "hsl": "input1", "levels": "input1", "bitmap": "", "text": "", "normal": "input1",
}
COMPONENTS = ("RGBA", "RGB", "R", "G", "B", "A")
COMMON_PARAMETERS = "outputsize format pixelsize tiling quality randomseed"
FILTER_PARAMETERS = {
    "gradient": "colorswitch", "uniform": "colorswitch outputcolor", "warp": "intensity",
    "blend": "opacity alphablending maskrectangle maskvectorresourcepath blendingmode",
    "transformation": "matrix22 offset manualmiplevel mattecolor filtering mipmapmode",
    "grayscaleconversion": "channelsweights alphamult mattelevel", "blur": "intensity",
    "shuffle": "channelred channelgreen channelblue channelalpha", "sharpen": "intensity",
    "svg": "colorswitch background vectorresourcepath", "normal": "intensity inversedy",
    "emboss": "intensity lightangle highlightcolor shadowcolor",
    "motionblur": "intensity shiftangle", "dirmotionblur": "intensity mblurangle",
    "directionalwarp": "intensity warpangle", "hsl": "hue saturation luminosity",
    "levels": "levelinlow levelinhigh levelinmid leveloutlow levelouthigh",
    "bitmap": "colorswitch bitmapresourcepath", "fxmaps": "colorswitch hurst renderroi tilingroi",
    "text": "background colorswitch text position fontsize fontleading alignement Font_data "
            "front_color",
}
FX_NODES = {"paramset": "output2", "markov2": "output2 output3", "markovn": "markovn",
            "addnode": "outputn output0 output1"}
FUNCTIONS = {
    "sequence": "seqin seqlast", "ifelse": "condition ifpath elsepath", "if": "condition ifpath",
    "dowhile": "condition loop", "set": "value", "mulscalar": "a scalar",
    "cartesian": "rho theta", "lerp": "a b x", "samplelum": "pos", "samplecol": "pos",
    "get_path": "",
}
for _names, _inputs in (
        ("add sub mul div mod dot cross and or eq noteq gt gteq lr lreq min max", "a b"),
        ("neg not abs floor ceil cos sin sqrt log exp pow2 tan atan2 rand", "a"),
        ("vector2 vector3 vector4 ivector2 ivector3 ivector4", "componentsin componentslast"),
        ("swizzle1 swizzle2 swizzle3 swizzle4 iswizzle1 iswizzle2 iswizzle3 iswizzle4", "vector"),
        ("toint1 toint2 toint3 toint4 tofloat tofloat2 tofloat3 tofloat4", "value"),
        ("get_bool get_integer1 get_integer2 get_integer3 get_integer4 get_float1 get_float2 "
         "get_float3 get_float4 const_string const_bool const_int1 const_int2 const_int3 "
         "const_int4 const_float1 const_float2 const_float3 const_float4", "")):
    FUNCTIONS.update(dict.fromkeys(_names.split(), _inputs))
GETTER_TYPES = {"bool": 4, "integer1": 16, "integer2": 32, "integer3": 64, "integer4": 128,
                "float1": 256, "float2": 512, "float3": 1024, "float4": 2048}


def compile_rows():
    """The table above as {row: ("struct", members) or ("list" | "union", names)}."""
    constants = " ".join("constantValue" + name for name in CONSTANTS)
    text = re.sub(r"\n\s+", " ", ROWS.replace("CONSTANTS", constants)).strip()
    rows = {"constantValue" + name: ("struct", over_members(kind))
            for name, kind in CONSTANTS.items()}
    for line in text.split("\n"):
        name, _, body = line.partition(": ")
        shape = type_shape(body.strip())
        if shape is None:
            shape = ("struct", [member(token) for token in re.findall(
                r"\w+(?::(?:\[[^\]]*\]|\{[^}]*\}|[\w.]+))?\??(?:=\w+)?", body)])
        rows[name] = shape
    return rows


def type_shape(text):
    if text[0] in "[{":
        return ("list" if text[0] == "[" else "union", text[1:-1].split())
    return None


def member(token):
    name, type_text, optional, default = re.fullmatch(
        r"(\w+)(?::(\[.*\]|\{.*\}|[\w.]+))?(\?)?(?:=(\w+))?", token).groups()
    if type_text is None:
        shape = ("row", name)
    elif type_text.startswith("v."):
        shape = ("struct", over_members(type_text[2:]))
    else:
        shape = type_shape(type_text) or ("leaf", type_text)
    return name, shape, bool(optional), default


def over_members(kind):
    overload = ("struct", [("value", ("leaf", kind), False, None),
                           ("configurations", ("leaf", "s"), False, None)])
    return [("value", ("leaf", kind), False, None),
            ("valueOverloads", ("listof", "valueOverload", overload), True, None)]


SCHEMA = compile_rows()


def escape(text):
    for character, entity in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;"), ('"', "&quot;"),
                              ("\n", "&#10;"), ("\t", "&#9;"), ("\r", "&#13;")):
        text = text.replace(character, entity)
    return text


def written(element):
    """The element as the package writer puts it."""
    head = element.tag + "".join(f' {key}="{escape(value)}"' for key, value in
                                 element.attrib.items())
    body = "".join(written(child) for child in element)
    return f"<{head}>{body}</{element.tag}>" if body else f"<{head}/>"


def canonical(text, kind):
    """The text that a writer would give for a value, or None if it is no such value."""
    try:
        if kind == "s":
            text.encode("latin-1")
            return text
        if kind == "b":
            return text if text in ("0", "1") else None
        if kind == "u":
            return str(int(text)) if 0 <= int(text) < 2 ** 32 else None
        parts = text.split(" ")
        if len(parts) != int(kind[1:] or 1):
            return None
        if kind[0] == "i":
            return " ".join(str(int(part)) for part in parts)
        digits = 9 if kind == "f" else 6
        singles = [struct.unpack("f", struct.pack("f", float(part)))[0] for part in parts]
        return " ".join(f"{number:.{digits}g}" for number in singles)
    except (ValueError, OverflowError):
        return None


def text_of(element, path, default=None):
    found = element.find(path)
    return default if found is None else found.get("v")


def over(element, name):
    return text_of(element, name + "/value")


def children(element, name):
    found = element.find(name)
    return [] if found is None else list(found)


class Package:
    def __init__(self, path):
        self.path = os.path.realpath(path)
        with open(path, "rb") as file:
            self.data = file.read()
        self.root = ElementTree.fromstring(self.data)
        self.dependencies = {}


class Checker:
    def __init__(self, presets, updated=False, no_nodes=False):
        self.presets, self.updated, self.no_nodes = presets, updated, no_nodes
        self.packages, self.faults, self.file = {}, 0, ""

    def fault(self, where, message):
        self.faults += 1
        print(f"{self.file}: {where}: {message}", file=sys.stderr)

    def open(self, path):
        """The package of a file, each opened once; None if it cannot be read."""
        key = os.path.realpath(path)
        if key not in self.packages:
            self.packages[key] = None
            try:
                self.packages[key] = package = Package(path)
            except (OSError, ElementTree.ParseError) as error:
                self.fault(path, f"cannot be read: {error}")
                return None
            package.dependencies = {
                text_of(entry, "uid", "0"): self.dependency_path(package, entry)
                for entry in children(package.root, "dependencies")}
        return self.packages[key]

    def dependency_path(self, package, entry):
        name = text_of(entry, "filename", "")
        if name == "?himself":
            return package.path
        if self.updated:
            base = os.path.basename(name).partition(".")[0]
            return os.path.join(os.path.dirname(package.path), base + "_updated.obl")
        return self.file_path(package, name)

    def file_path(self, package, name):
        if name.startswith("obl://"):
            return os.path.join(self.presets or ".", name[len("obl://"):])
        return os.path.join(os.path.dirname(package.path), name)

    def check(self, path):
        self.file = path
        package = self.open(path)
        if package is None:
            return
        if package.root.tag != "package":
            self.fault("root", f"is <{package.root.tag}>")
            return
        if (DECLARATION + written(package.root) + "\n").encode("utf-8") != package.data:
            self.fault("text", "differs from what a writer would give")
        before = self.faults
        self.check_shape(package.root, ("row", "package"), "package")
        if self.faults != before:
            return  # the checks below rely on the shape
        self.check_header(package)
        self.check_lists(package.root, "package")
        self.check_texts(package)
        self.check_content(package, package.root, "")

    # Structure

    def check_shape(self, element, shape, where):
        if shape[0] == "row":
            shape = SCHEMA[shape[1]]
        kind = shape[0]
        if kind == "leaf":
            self.check_leaf(element, shape[1], where)
            return
        if element.attrib or (element.text or "").strip():
            self.fault(where, "holds an attribute or text")
        if kind == "struct":
            self.check_members(element, shape[1], where)
            return
        if kind == "union" and len(element) > 1:
            self.fault(where, "a union with more than one child")
        for index, child in enumerate(element):
            place = f"{where}/{child.tag}[{index}]"
            if kind == "listof":
                self.check_shape(child, shape[2], place)
            elif child.tag in shape[1]:
                self.check_shape(child, ("row", child.tag), place)
            else:
                self.fault(place, "no item of this list or union")

    def check_leaf(self, element, kind, where):
        text = element.get("v")
        if set(element.attrib) != {"v"} or len(element) or element.text:
            self.fault(where, "is no leaf with the one attribute v")
        elif canonical(text, kind) != text:
            self.fault(where, f"'{text}' is no canonical text of type {kind}")

    def check_members(self, element, members, where):
        order = [name for name, _, _, _ in members]
        tags = [child.tag for child in element]
        known = [tag for tag in tags if tag in order]
        for tag in tags:
            if tag not in order:
                self.fault(where, f"unknown member {tag}")
        if len(set(known)) != len(known):
            self.fault(where, "a member stands twice")
        if known != sorted(known, key=order.index):
            self.fault(where, "members are out of order")
        for name, shape, is_optional, default in members:
            child = element.find(name)
            if child is None:
                if not is_optional:
                    self.fault(where, f"member {name} is missing")
                continue
            self.check_shape(child, shape, f"{where}/{name}")
            if is_optional and not self.holds_something(child, shape, default):
                self.fault(f"{where}/{name}", "is at its default and should be absent")

    def holds_something(self, element, shape, default):
        if shape[0] == "row":
            shape = SCHEMA[shape[1]]
        if shape[0] == "leaf":
            text = element.get("v", "")
            if default is None and shape[1] != "s":
                return any(part != "0" for part in text.split(" "))
            return text != (default or "")
        if shape[0] != "struct":
            return len(element) > 0
        return any(element.find(name) is not None and self.holds_something(
            element.find(name), inner, inner_default)
            for name, inner, _, inner_default in shape[1])

    # Header and lists

    def check_header(self, package):
        root = package.root
        for name in ("formatVersion", "updaterVersion"):
            if text_of(root, name) != VERSION:
                self.fault(name, f"is not {VERSION}")
        seen = set()
        for entry in children(root, "dependencies"):
            name, uid = text_of(entry, "filename"), text_of(entry, "uid", "0")
            where = f"dependency '{name}'"
            if name in seen:
                self.fault(where, "stands twice")
            seen.add(name)
            if uid == "0":
                self.fault(where, "has no uid")
            if text_of(entry, "type") != "package":
                self.fault(where, "is of another type than package")
            if name.startswith("obl://") and self.presets is None and not self.updated:
                self.fault(where, "needs --presets")
                continue
            path = package.dependencies[uid]
            if name != "?himself" and os.path.realpath(path) == package.path:
                self.fault(where, "names the package itself")
            other = self.open(path)
            version = text_of(entry, "versionUID")
            expected = "0" if name == "?himself" else other and text_of(other.root, "versionUID")
            if other is not None and version != expected:
                self.fault(where, f"versionUID {version} is not {expected}")

    def check_lists(self, element, where):
        keys = {"content": ("uid", "identifier"), "connexions": ("identifier",),
                "paraminputs": ("uid", "identifier"), "graphOutputs": ("uid", "identifier"),
                "paramsGraphDatas": ("uid", "identifier"), "rootOutputs": ("output",),
                "outputBridgings": ("uid", "identifier")}
        names = keys.get(element.tag, ("uid",))
        if element.tag in ("parameters", "baseParameters", "funcDatas"):
            names = ("name",)
        if element.tag not in ("options", "package", "group", "graph"):
            for name in names:
                values = [text_of(child, name) for child in element if child.find(name) is not
                          None and len(child.find(name)) == 0]
                for value in sorted({value for value in values if values.count(value) > 1}):
                    self.fault(where, f"{name} '{value}' stands twice")
        for index, child in enumerate(element):
            self.check_lists(child, f"{where}/{child.tag}[{index}]")

    # Paths

    def check_texts(self, package):
        for element in package.root.iter():
            text = element.get("v", "")
            if text.startswith("pkg://"):
                self.resolve(package, text, element.tag)
            if element.tag == "components" and text not in COMPONENTS:
                self.fault("usage", f"unknown components '{text}'")

    def resolve(self, package, text, where, expected=None):
        """The object that a path names, or None with a fault."""
        if not text.startswith("pkg://"):
            self.fault(where, f"'{text}' is no object path")
            return None
        path, _, query = text[len("pkg://"):].partition("?")
        pairs = dict(pair.partition("=")[::2] for pair in query.split("&") if pair)
        uid = pairs.get("dependency")
        if uid not in package.dependencies:
            self.fault(where, f"'{text}' names no dependency of the package")
            return None
        if not os.path.isfile(package.dependencies[uid]):
            self.fault(where, f"'{text}' leads to a package that is not there")
            return None
        target = self.open(package.dependencies[uid])
        if target is None:
            return None
        found = target.root
        for segment in path.split("/"):
            found = next((item for item in children(found, "content")
                          if text_of(item, "identifier") == segment), None)
            if found is None:
                self.fault(where, f"'{text}' reaches nothing at '{segment}'")
                return None
        kinds = {"CompNodeType": ("compNodeUidParam", "compNodes"),
                 "GraphOutputType": ("graphOutputUidParam", "graphOutputs"),
                 "GUIObjectType": ("GuiObjectUidParam", "GUIObjects")}
        if "typeParam" in pairs:
            key, name = kinds.get(pairs["typeParam"], ("", ""))
            found = next((item for item in children(found, name)
                          if text_of(item, "uid") == pairs.get(key)), None)
            if found is None:
                self.fault(where, f"'{text}' reaches no such {pairs['typeParam']}")
                return None
        if expected is not None and found.tag != expected:
            self.fault(where, f"'{text}' reaches a {found.tag}, not a {expected}")
            return None
        return found

    # Content

    def check_content(self, package, owner, where):
        for item in children(owner, "content"):
            place = f"{where}/{text_of(item, 'identifier')}"
            if item.tag == "resource":
                self.check_resource(package, item, place)
            elif item.tag == "function":
                inputs = self.inputs_of(item, place)
                self.check_param_value(package, item.find("paramValue"), inputs, place,
                                       over(item, "type"))
            elif item.tag == "graph":
                self.check_graph(package, item, place)
            self.check_content(package, item, place)

    def check_resource(self, package, item, where):
        path = self.file_path(package, text_of(item, "filepath"))
        if not os.path.isfile(path):
            self.fault(where, f"there is no file {text_of(item, 'filepath')}")
            return
        with open(path, "rb") as file:
            data = file.read()
        sums = [text_of(item, "checksum")] + [
            text_of(copy, "checksum") for copy in item.iter("externalcopy")]
        if any(entry != hashlib.md5(data).hexdigest() for entry in sums):
            self.fault(where, "the checksum is not that of the file")

    def inputs_of(self, owner, where):
        """The value inputs by identifier, with their types; image inputs have 1 or 2."""
        types = {}
        for entry in children(owner, "paraminputs"):
            name, kind = text_of(entry, "identifier"), int(over(entry, "type"))
            types[name] = kind
            self.check_widget(entry.find("defaultWidget"), f"{where}/{name}")
            value = entry.find("defaultValue")
            if kind in (1, 2):
                if value is not None:
                    self.fault(f"{where}/{name}", "an image input with a default value")
            elif value is None:
                if not self.no_nodes:
                    self.fault(f"{where}/{name}", "a value input without a default value")
            elif kind not in (self.constant_type(value), 0) and not (
                    kind == ASSEMBLY_STRING and self.constant_type(value) == TYPE_OF_CONSTANT[
                        "String"]):
                self.fault(f"{where}/{name}", "the default value is of another type")
        return types

    def check_widget(self, widget, where):
        """The entries of a drop-down list are "value;text | value;text"."""
        for option in children(widget, "options"):
            if (text_of(widget, "name"), text_of(option, "name")) == ("dropdownlist", "parameters"):
                for entry in text_of(option, "value").split(" | "):
                    if not re.fullmatch(r"-?\d+;.+", entry):
                        self.fault(where, f"'{entry}' is no entry of a drop-down list")

    @staticmethod
    def constant_type(union):
        return TYPE_OF_CONSTANT[union[0].tag[len("constantValue"):]] if len(union) else 0

    def check_graph(self, package, graph, where):
        inputs = self.inputs_of(graph, where)
        entries = {text_of(entry, "uid"): int(over(entry, "type"))
                   for entry in children(graph, "paraminputs")}
        outputs = {text_of(entry, "uid") for entry in children(graph, "graphOutputs")}
        image_uids = [uid for uid, kind in entries.items() if kind in (1, 2)]
        primary = over(graph, "primaryInput") if graph.find("primaryInput") is not None else "0"
        if self.no_nodes:
            image_uids = []
        if image_uids and primary not in image_uids or not image_uids and primary != "0":
            self.fault(where, f"primaryInput {primary} is no image input")
        rooted = [text_of(entry, "output") for entry in children(graph.find("root"),
                                                                 "rootOutputs")]
        for uid in outputs.symmetric_difference(rooted):
            self.fault(where, f"graph output and root output {uid} do not match")
        nodes = {text_of(node, "uid"): {text_of(output, "uid") for output in
                                        children(node, "compOutputs")}
                 for node in children(graph, "compNodes")}
        bridged = []
        for node in children(graph, "compNodes"):
            place = f"{where}/node {text_of(node, 'uid')}"
            self.check_node(package, node, inputs, entries, outputs, place)
            self.check_connexions(node, nodes, place)
            bridged += [text_of(bridge, name) for kind, name in (
                ("compInputBridge", "entry"), ("compOutputBridge", "output"))
                for bridge in node.findall("compImplementation/" + kind)]
        ends = set() if self.no_nodes else outputs.union(image_uids)
        for uid in sorted(ends.symmetric_difference(bridged)):
            self.fault(where, f"image input or output {uid} has no bridge node, or a bridge no end")
        if len(set(bridged)) != len(bridged):
            self.fault(where, "two bridge nodes for one input or output")
        self.check_parameters(package, graph, "baseParameters", inputs, where)

    def check_connexions(self, node, nodes, where):
        """`nodes` are the uids of a graph's nodes, with the uids of the outputs of each."""
        for entry in children(node, "connexions"):
            name = text_of(entry, "identifier")
            source = over(entry, "connRef")
            output = over(entry, "connRefOutput")
            if source is None:
                continue  # an input that stands in the list and is fed by nothing
            if source not in nodes:
                self.fault(where, f"'{name}' is fed by node {source}, which is not there")
            elif source == text_of(node, "uid"):
                self.fault(where, f"'{name}' is fed by its own node")
            elif nodes[source] is not None and output not in nodes[source]:
                self.fault(where, f"'{name}' is fed by output {output}, which is not there")

    def check_node(self, package, node, inputs, entries, outputs, where):
        implementation = node.find("compImplementation")
        if not len(implementation):
            return
        body = implementation[0]
        fed = {text_of(entry, "identifier") for entry in children(node, "connexions")}
        allowed = set()
        if body.tag == "compFilter":
            allowed = self.check_filter(package, body, inputs, where)
        elif body.tag == "compInstance":
            allowed = self.check_instance(package, node, body, inputs, where)
        elif body.tag == "compInputBridge":
            if entries.get(text_of(body, "entry")) not in (1, 2):
                self.fault(where, "the entry is no image input of the graph")
            self.check_parameters(package, body, "parameters", inputs, where)
        elif body.tag == "compOutputBridge":
            allowed = {"inputNodeOutput"}
            if text_of(body, "output") not in outputs:
                self.fault(where, "the output is no output of the graph")
        elif body.tag == "compExternalLink":
            self.resolve(package, over(body, "path"), where, "graph")
        for name in sorted(fed - allowed):
            self.fault(where, f"{body.tag} has no connector '{name}'")

    def check_filter(self, package, body, inputs, where):
        name = text_of(body, "filter")
        if name not in FILTERS:
            self.fault(where, f"unknown filter '{name}'")
            return set()
        self.check_parameters(package, body, "parameters", inputs, where)
        known = (COMMON_PARAMETERS + " " + FILTER_PARAMETERS[name]).split()
        for entry in children(body, "parameters"):
            parameter = text_of(entry, "name")
            if parameter.replace(" ", "_") not in known:
                self.fault(where, f"filter {name} has no parameter '{parameter}'")
            if parameter == "bitmapresourcepath":
                self.resolve(package, over(entry, "paramValue/constantValueString") or "", where,
                             "resource")
        for cell in body.iter("paramsArrayCell"):
            self.check_parameters(package, cell, "parameters", inputs, where)
        if (name == "fxmaps") != (body.find("paramsGraphs") is not None):
            self.fault(where, "exactly the filter fxmaps has parameter graphs")
        for graph in children(body, "paramsGraphs"):
            self.check_params_graph(package, graph, inputs, where)
        return set(FILTERS[name].split())

    def check_instance(self, package, node, body, inputs, where):
        graph = self.resolve(package, over(body, "path"), where, "graph")
        self.check_parameters(package, body, "parameters", inputs, where)
        bridgings = {text_of(entry, "uid"): text_of(entry, "identifier")
                     for entry in children(body, "outputBridgings")}
        if set(bridgings) != {text_of(entry, "uid") for entry in children(node, "compOutputs")}:
            self.fault(where, "outputs and output bridgings do not match")
        if graph is None:
            return set()
        names = [text_of(entry, "identifier") for entry in children(graph, "graphOutputs")]
        if list(bridgings.values()) != names:
            self.fault(where, "output bridgings are not the outputs of the instantiated graph")
        types = {text_of(entry, "identifier"): int(over(entry, "type"))
                 for entry in children(graph, "paraminputs")}
        for entry in children(body, "parameters"):
            name = text_of(entry, "name")
            if types.get(name, 1) in (1, 2) and name not in COMMON_PARAMETERS.split():
                self.fault(where, f"the instantiated graph has no value input '{name}'")
            elif name in types and self.value_type(entry.find("paramValue")) != types[name]:
                self.fault(where, f"the value for '{name}' is of another type")
        return {name for name, kind in types.items() if kind in (1, 2)}

    def value_type(self, union):
        dynamic = union.find("dynamicValue")
        if dynamic is None:
            return self.constant_type(union)
        root = over(dynamic, "rootnode")
        return next((int(over(node, "type")) for node in children(dynamic, "paramNodes")
                     if text_of(node, "uid") == root), 0)

    def check_parameters(self, package, owner, name, inputs, where):
        for entry in children(owner, name):
            self.check_param_value(package, entry.find("paramValue"), inputs,
                                   f"{where}/{text_of(entry, 'name')}")

    def check_params_graph(self, package, graph, inputs, where):
        datas = {text_of(entry, "uid"): text_of(entry, "type")
                 for entry in children(graph, "paramsGraphDatas")}
        nodes = {text_of(node, "uid"): None for node in children(graph, "paramsGraphNodes")}
        if over(graph, "rootnode") not in nodes:
            self.fault(where, "the root node of a parameter graph is not there")
        for node in children(graph, "paramsGraphNodes"):
            kind = text_of(node, "type")
            if datas.get(text_of(node, "data")) != kind:
                self.fault(where, f"no data of type {kind} for a {kind} node")
            self.check_connexions(node, nodes, where)
            for entry in children(node, "connexions"):
                if text_of(entry, "identifier") not in FX_NODES.get(kind, "").split():
                    self.fault(where, f"a {kind} node has no connector "
                                      f"'{text_of(entry, 'identifier')}'")
        for entry in children(graph, "paramsGraphDatas"):
            self.check_parameters(package, entry, "parameters", inputs, where)

    # Value functions

    def check_param_value(self, package, union, inputs, where, expected=None):
        if not len(union):
            self.fault(where, "holds no value")
            return
        dynamic = union.find("dynamicValue")
        if dynamic is None:
            return
        found = {text_of(node, "uid"): None for node in children(dynamic, "paramNodes")}
        if over(dynamic, "rootnode") not in found:
            self.fault(where, "the root node is not there")
        elif expected is not None and str(self.value_type(union)) != expected:
            self.fault(where, "the type of the function is not that of its root node")
        variables = {self.data_of(node): int(over(node, "type"))
                     for node in children(dynamic, "paramNodes")
                     if text_of(node, "function") == "set"}
        for node in children(dynamic, "paramNodes"):
            self.check_connexions(node, found, where)
            self.check_function_node(package, node, {**inputs, **variables}, where)

    @staticmethod
    def data_of(node):
        for entry in children(node, "funcDatas"):
            if text_of(entry, "name") == "datacontent":
                return text_of(entry, "constantValue/*/value")
        return None

    def check_function_node(self, package, node, variables, where):
        name, data = text_of(node, "function"), self.data_of(node)
        fed = {text_of(entry, "identifier") for entry in children(node, "connexions")}
        kind = int(over(node, "type"))
        if name == "instance":
            function = self.resolve(package, data or "", where, "function")
            if function is None:
                return
            allowed = {text_of(entry, "identifier")
                       for entry in children(function, "paraminputs")}
            if int(over(function, "type")) != kind:
                self.fault(where, "the function instantiated is of another type")
        elif name in FUNCTIONS:
            allowed = set(FUNCTIONS[name].split())
            if fed != allowed:
                self.fault(where, f"inputs of {name} are not all connected")
        else:
            self.fault(where, f"unknown function '{name}'")
            return
        for connector in sorted(fed - allowed):
            self.fault(where, f"{name} has no input '{connector}'")
        if name.startswith("get_") and name != "get_path":
            if variables.get(data) != kind or kind != GETTER_TYPES[name[len("get_"):]]:
                self.fault(where, f"{name} reads '{data}', which is no such input or variable")
        if name.startswith("const_"):
            union = node.find("funcDatas/funcData/constantValue")
            if union is None or self.constant_type(union) != kind:
                self.fault(where, f"{name} holds no value of its type")


def main():
    parser = argparse.ArgumentParser(description="Checks package files.")
    parser.add_argument("--presets", metavar="DIRECTORY", help="where obl:// paths lead")
    parser.add_argument("--updated", action="store_true",
                        help="a reference to x.obl leads to x_updated.obl beside the package")
    parser.add_argument("--no-nodes", action="store_true",
                        help="the packages were made from assemblies")
    parser.add_argument("packages", metavar="PACKAGE", nargs="+")
    arguments = parser.parse_args()
    checker = Checker(arguments.presets, arguments.updated, arguments.no_nodes)
    for path in arguments.packages:
        checker.check(path)
    print(f"{len(arguments.packages)} packages, {checker.faults} faults")
    return 1 if checker.faults else 0


if __name__ == "__main__":
    sys.exit(main())

"""Packages, descriptions and archives, built of elements and files."""

import dataclasses
import struct
import xml.etree.ElementTree
import xml.sax.saxutils
import zlib

VERSION = "1.1.0.7049"
DECLARATION = '<?xml version="1.0" encoding="UTF-8"?>'
ASSEMBLY_UID = 7


@dataclasses.dataclass
class Element:
    """One of a document. It may have an attribute twice, and any text as a name."""

    name: str
    attributes: list  # of [name, value]
    children: list

    def copy(self):
        return Element(self.name, [list(pair) for pair in self.attributes],
                       [child.copy() for child in self.children])

    def walk(self):
        pending = [self]
        while pending:
            element = pending.pop()
            yield element
            pending.extend(reversed(element.children))


def escaped(text):
    return xml.sax.saxutils.escape(text, {'"': "&quot;"})


def parse(document):
    """The root of a document's bytes. Texts between elements are left out: packages have none."""
    def converted(node):
        return Element(node.tag, [list(pair) for pair in node.items()],
                       [converted(child) for child in node])

    return converted(xml.etree.ElementTree.fromstring(document))


def text_of(element):
    """The element with all that it contains, as text."""
    parts = []

    def write(one):
        attributes = "".join(f' {name}="{escaped(value)}"' for name, value in one.attributes)
        if not one.children:
            parts.append(f"<{one.name}{attributes}/>")
            return
        parts.append(f"<{one.name}{attributes}>")
        for child in one.children:
            write(child)
        parts.append(f"</{one.name}>")

    write(element)
    return "".join(parts)


def document_of(element):
    return f"{DECLARATION}{text_of(element)}\n".encode("utf-8", "surrogateescape")


# Texts of elements, for large files, of which a tree would be slow.


def leaf(name, value):
    return f'<{name} v="{value}"/>'


def node(name, *contents):
    return f"<{name}>{''.join(contents)}</{name}>"


def valued(name, value):
    """An overloadable value."""
    return node(name, leaf("value", value))


def package(content="", dependencies="", version=VERSION, extra=""):
    return (f"{DECLARATION}<package>" + leaf("packageType", "Kestrix") + leaf("identifier", "a")
            + leaf("formatVersion", version) + leaf("updaterVersion", version) + leaf("platform", 1)
            + leaf("author", "") + leaf("fileUID", "") + leaf("versionUID", 0)
            + node("configurations", leaf("name", ""), leaf("uid", 0), "<configuration/>")
            + node("dependencies", dependencies) + node("content", content) + extra
            + "</package>\n")


def dependency(filename, uid):
    return node("dependency", leaf("filename", filename), leaf("uid", uid),
                leaf("type", "package"), leaf("fileUID", 0), leaf("versionUID", 0))


def graph(identifier="g", uid=1, inputs="", primary=None, outputs="", nodes="", root="",
          parameters="", content="", extra=""):
    return node("graph", leaf("identifier", identifier), leaf("uid", uid),
                node("paraminputs", inputs),
                "" if primary is None else valued("primaryInput", primary),
                node("graphOutputs", outputs), node("compNodes", nodes),
                node("baseParameters", parameters), node("content", content), extra,
                node("root", node("rootOutputs", root)))


def group(identifier, uid, content=""):
    return node("group", leaf("uid", uid), leaf("identifier", identifier), node("content", content))


def resource(identifier, uid, filepath):
    return node("resource", leaf("identifier", identifier), leaf("uid", uid), leaf("type", 0),
                leaf("format", "png"), leaf("filepath", filepath), leaf("lastModif", ""),
                leaf("checksum", ""))


def options(pairs):
    return node("options", *(node("option", leaf("name", name), leaf("value", value))
                             for name, value in pairs))


def widget(pairs=()):
    return node("defaultWidget", leaf("name", ""), options(pairs))


def graph_input(identifier, uid, kind=256, default="", pairs=(), extra=""):
    return node("paraminput", leaf("identifier", identifier), leaf("uid", uid), extra,
                valued("type", kind), default, widget(pairs))


def graph_output(identifier, uid, usages=""):
    return node("graphoutput", leaf("identifier", identifier), leaf("uid", uid),
                node("usages", usages))


def root_output(output):
    return node("rootOutput", leaf("output", output), valued("format", 0), leaf("usertag", ""))


def comp_node(uid, implementation, outputs=(), connections="", extra=""):
    return node("compNode", leaf("uid", uid),
                node("compOutputs", *(node("compOutput", leaf("uid", output), valued("comptype", 1))
                                      for output in outputs)),
                node("connexions", connections), node("compImplementation", implementation), extra)


def connection(identifier, reference, output=None):
    return node("connexion", leaf("identifier", identifier), valued("connRef", reference),
                "" if output is None else valued("connRefOutput", output))


def comp_filter(name="blur", parameters="", extra=""):
    return node("compFilter", leaf("filter", name), node("parameters", parameters), extra)


def input_bridge(entry):
    return node("compInputBridge", leaf("entry", entry), "<parameters/>")


def output_bridge(output):
    return node("compOutputBridge", leaf("output", output))


def instance(path, parameters="", bridgings=""):
    return node("compInstance", valued("path", path), node("parameters", parameters),
                node("outputBridgings", bridgings))


def bridging(uid, identifier):
    return node("outputBridging", leaf("uid", uid), leaf("identifier", identifier))


def parameter(name, value):
    return node("parameter", leaf("name", name), leaf("relativeTo", 0), node("paramValue", value))


def constant(kind, value):
    return valued(f"constantValue{kind}", value)


def function_value(nodes, root):
    return node("dynamicValue", valued("rootnode", root), node("paramNodes", nodes))


def function_node(uid, function, kind=256, connections="", data=""):
    return node("paramNode", leaf("uid", uid), leaf("function", function), valued("type", kind),
                node("connexions", connections), node("funcDatas", data))


def function_data(value, name="datacontent"):
    return node("funcData", leaf("name", name), node("constantValue", constant("String", value)))


# Compiled packages.


def assembly(uid=ASSEMBLY_UID):
    return b"OLAM\1\2\3\4\5\6\7\10" + struct.pack("<I", uid) + b"what follows is not read"


def description(graphs, uid=ASSEMBLY_UID):
    return (f'{DECLARATION}<obldescription asmuid="{uid}" '
            f'fileUid="{{00000000-0000-0000-0000-0000000000ab}}">' + node("graphs", graphs)
            + "</obldescription>\n")


def described_graph(url, inputs="", outputs=""):
    contents = node("inputs", inputs) + node("outputs", outputs)
    return f'<graph pkgurl="{url}">{contents}</graph>'


def archive_number(value):
    """As 7z writes numbers: the ones that the first byte begins with count the bytes behind it."""
    for count in range(8):
        if value < 1 << (7 * (count + 1)):
            first = (0xFF00 >> count) & 0xFF | value >> (8 * count)
            return bytes([first]) + (value & ((1 << (8 * count)) - 1)).to_bytes(count, "little")
    return b"\xFF" + value.to_bytes(8, "little")


def _numbers(values):
    return b"".join(archive_number(value) for value in values)


def _bits(values):
    packed = bytearray((len(values) + 7) // 8)
    for place, value in enumerate(values):
        packed[place // 8] |= (0x80 >> place % 8) if value else 0
    return bytes(packed)


def archive_around(packed, header):
    """A 7z archive of the packed bytes and of what it says about them, with good checksums."""
    start = struct.pack("<QQI", len(packed), len(header), zlib.crc32(header))
    signature = b"7z\xbc\xaf\x27\x1c\0\4" + struct.pack("<I", zlib.crc32(start))
    return signature + start + packed + header


def archive_header(files, sizes=None, one_folder=False, checksums=None):
    """What an archive of stored files says about them. `sizes` are announced for their own."""
    full = [content for _, content in files if content]
    sizes = [len(content) for content in full] if sizes is None else sizes
    checksums = [zlib.crc32(content) for content in full] if checksums is None else checksums
    packed = [sum(map(len, full))] if one_folder else [len(content) for content in full]
    folders = [sum(sizes)] if one_folder else sizes
    streams = b"\6" + archive_number(0) + archive_number(len(packed))
    streams += b"\x09" + _numbers(packed) + b"\0"
    streams += b"\7\x0b" + archive_number(len(folders)) + b"\0" + b"\1\1\0" * len(folders)
    streams += b"\x0c" + _numbers(folders) + b"\0\x08"
    if one_folder:
        streams += b"\x0d" + archive_number(len(full)) + b"\x09" + _numbers(sizes[:-1])
    streams += b"\x0a\1" + struct.pack(f"<{len(full)}I", *checksums) + b"\0"
    names = b"\0" + b"".join(name.encode("utf-16-le") + b"\0\0" for name, _ in files)
    empty = _bits([not content for _, content in files])
    listed = archive_number(len(files))
    listed += b"\x0e" + archive_number(len(empty)) + empty if len(full) < len(files) else b""
    listed += b"\x11" + archive_number(len(names)) + names + b"\0"
    return b"\1" + (b"\4" + streams + b"\0" if full else b"") + b"\5" + listed + b"\0"


def stored_archive(files, **said):
    """A 7z archive of pairs of a name and bytes, which are stored as they are.

    `said` goes to archive_header()."""
    return archive_around(b"".join(content for _, content in files), archive_header(files, **said))


def archived_assemblies(descriptions):
    """The files of an archive of assemblies with these descriptions, as bytes."""
    files = []
    for number, text in enumerate(descriptions):
        place = f"assemblies/content/{number}/a"
        files += [(f"{place}.oblasm", assembly()), (f"{place}.xml", text)]
    return files

"""A tiny file of each format, cut at every byte: it is refused, and nothing is written."""

import dataclasses

import runs
import structure as s

TITLE = "every truncation of a tiny file of each format"
HEADER_OF_ASSEMBLY = 16  # bytes that are read of a body
OLD_VERSION = "1.0.1.3000"


@dataclasses.dataclass
class Whole:
    """Files of a format, of which `cut` is the one that is truncated."""

    files: dict
    cut: str
    needed: int  # bytes of it; what is behind them is no content
    commands: list


def tiny_package(version=s.VERSION):
    """A graph with an input, an image that goes through a filter, and an output."""
    inputs = (s.graph_input("i", 2, 256, s.node("defaultValue", s.constant("Float1", "0.5")))
              + s.graph_input("m", 3, 1))
    nodes = (s.comp_node(5, s.input_bridge(3), [6])
             + s.comp_node(7, s.output_bridge(4), [], s.connection("inputNodeOutput", 5, 6)))
    graph = s.graph("g", 1, inputs, 3, s.graph_output("o", 4), nodes, s.root_output(4))
    return s.package(graph, s.dependency("?himself", 8), version).encode()


def tiny_description(url="pkg://g"):
    made_of = ('<input identifier="i" uid="2" type="0" default="0.5"><inputgui widget="slider">'
               '<guislider min="0" max="1"/></inputgui></input>'
               '<input identifier="m" uid="3" type="5"><inputgui><guiimage colortype="color"/>'
               '</inputgui></input>')
    output = ('<output identifier="o" uid="4" format="0" mipmaps="0"><channels><channel '
              'components="RGB" names="diffuse"/></channels><outputgui label="O"/></output>')
    return s.description(s.described_graph(url, made_of, output)).encode()


def commands(name):
    return [["update", name], ["graph-parameters-editor", name, "--switch-to-constant", "i"],
            ["specialization", name, "--connect-input", "m"]]


def wholes():
    current, old = tiny_package(), tiny_package(OLD_VERSION)
    body, text = s.assembly(), tiny_description()
    members = s.archived_assemblies([text, tiny_description("pkg://h")])
    archives = [s.stored_archive(members), s.stored_archive(members, one_folder=True)]
    end_of_line = 1
    assembly = {"a.oblasm": body, "a.xml": text}
    return [
        Whole({"a.obl": current}, "a.obl", len(current) - end_of_line, commands("a.obl")),
        Whole({"a.obl": old}, "a.obl", len(old) - end_of_line, commands("a.obl")[:1]),
        Whole(assembly, "a.oblasm", HEADER_OF_ASSEMBLY, commands("a.oblasm")),
        Whole(assembly, "a.xml", len(text) - end_of_line, commands("a.oblasm")[:1]),
        *(Whole({"a.oblar": bytes_}, "a.oblar", len(bytes_), commands("a.oblar")[:1])
          for bytes_ in archives)]


def cases():
    """All of a format, an arguments list and a number of bytes, the whole file among them."""
    return [(whole, arguments, length) for whole in wholes() for arguments in whole.commands
            for length in range(len(whole.files[whole.cut]) + 1)]


def broken_rule(run, folder, whole, length):
    """What the run on that many bytes has done wrong, or None."""
    broken = runs.broken_bound(run, f"/{run.arguments[1]}".encode())
    if broken is not None:
        return broken
    if run.code != (0 if length >= whole.needed else 1):
        return f"ends with {run.code}"
    left = sorted(path.name for path in folder.iterdir() if path.name not in whole.files)
    if run.code == 1 and left:
        return f"fails and leaves {left}"
    if run.code == 0 and (len(left) != 1 or not (folder / left[0]).read_bytes().endswith(
            b"</package>\n")):
        return f"does not write a whole package, but {left}"
    return None


def check(context, whole, arguments, length):
    folder = context.workplace.empty_folder()
    for name, content in whole.files.items():
        (folder / name).write_bytes(content[:length] if name == whole.cut else content)
    run = context.workplace.server(context.release).run(arguments, folder)
    broken = broken_rule(run, folder, whole, length)
    if broken is None:
        return None
    kept = context.keep(f"{whole.cut}-{length}-{arguments[0]}", folder)
    return f"{whole.cut} cut to {length} bytes {broken}; see {kept}\n  {run}"


def run(context):
    every = round(1 / min(context.share, 1))
    return context.outcome_of(lambda case: check(context, *case), cases()[::every])

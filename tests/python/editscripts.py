"""Random scripts of edits, and the run of one through the module.

A script is lines of a word and three numbers; the words are the functions below. A number chooses
among what there is at that moment, and what there is not is left out. editscripts.cpp runs the same
lines in C++.

    editscripts.py PROGRAM COUNT SEED   runs that many by both, over several packages, and compares"""

import hashlib
import pathlib
import random
import subprocess
import sys
import tempfile

import kestrix
from kestrix import _kestrix

STEPS = 24
PACKAGES = ["fabrics/woven_fabric.obl", "mixed/everything.obl"]
FILTERS = ["blur", "blend", "uniform", "levels", "transformation", "fxmaps", "normal", "shuffle"]
FUNCTIONS = ["const_float1", "const_float4", "add", "mul", "sin", "get_float1", "vector2", "const_int1"]
TYPES = ["bool", "int1", "int2", "float1", "float2", "float4", "string"]
METHODS = ["absolute", "input", "parent"]


def chosen(items, number):
    """One of the items. None if there are none."""
    return items[number % len(items)] if items else None


def value_for(kind, number):
    """A value of a type, made of a number."""
    if kind == "bool":
        return number % 2 == 1
    if kind in ("string", "text"):
        return f"t{number % 9}"
    if kind.startswith("int"):
        whole = [(number + i) % 5 for i in range(int(kind[3:]))]
        return whole[0] if len(whole) == 1 else whole
    if kind.startswith("float"):
        parts = [(number + i) % 16 / 4 for i in range(int(kind[5:]))]
        return parts[0] if len(parts) == 1 else parts
    return None


class Run:
    """The run of one script over a package."""

    def __init__(self, session, package):
        self.session = session
        self.package = package
        self.graph = None

    def step(self, word, numbers):
        self.graph = chosen(self.package.graphs, numbers[0])
        if self.graph is None:
            return
        len(self.graph.nodes)  # makes the controllers of the graph, which make types follow
        try:
            getattr(self, word)(*numbers[1:])
        except kestrix.EditError:
            pass  # refused here and there

    def node(self, number):
        return chosen(self.graph.nodes, number)

    def parameter(self, b, c):
        node = self.node(b)
        return chosen(node.parameters, c) if isinstance(node, kestrix.ImageNode) else None

    def values(self):
        """The graphs that compute a parameter of a node."""
        found = []
        for node in self.graph.nodes:
            found += [parameter.function for parameter in node.parameters if parameter.is_dynamic]
        return found

    def add_filter(self, b, _c):
        self.graph.add_filter(chosen(FILTERS, b))

    def add_instance(self, b, _c):
        self.graph.add_instance(chosen(self.package.graphs, b))

    def add_input_node(self, b, c):
        self.graph.add_input_node(f"in{b % 3}", ["color", "grayscale"][c % 2],
                                  [("diffuse", "RGBA")] * (b % 2))

    def add_output_node(self, b, c):
        self.graph.add_output_node(f"out{b % 3}", ["color", "grayscale"][c % 2])

    def add_input(self, b, c):
        self.graph.add_input(f"x{b % 3}", chosen(TYPES, c))

    def connect(self, b, c):
        source, target = self.node(b), self.node(c)
        if source and source.outputs and target.inputs:
            self.graph.connect(chosen(source.outputs, b), chosen(target.inputs, c),
                               replace=b % 2 == 0)

    def disconnect(self, b, _c):
        connection = chosen(self.graph.connections, b)
        if connection:
            self.graph.disconnect(*connection)

    def remove_node(self, b, c):
        node = self.node(b)
        if node:
            node.remove(disconnect=c % 2 == 0)

    def move(self, b, c):
        node = self.node(b)
        if node:
            node.position = (c % 50, b % 50)

    def set_value(self, b, c):
        parameter = self.parameter(b, c)
        value = value_for(parameter.type, b) if parameter else None
        if value is not None:
            parameter.value = value

    def set_relative(self, b, c):
        parameter = self.parameter(b, c)
        if parameter:
            parameter.relative_to = chosen(METHODS, b)

    def link(self, b, c):
        parameter, read = self.parameter(b, c), chosen(self.graph.inputs, c)
        if parameter and read:
            parameter.link_to(read)

    def make_dynamic(self, b, c):
        parameter = self.parameter(b, c)
        if parameter:
            parameter.make_dynamic()

    def add_function(self, b, c):
        value = chosen(self.values(), b)
        if value:
            value.add(chosen(FUNCTIONS, c))

    def connect_function(self, b, c):
        value = chosen(self.values(), b)
        if not value:
            return
        source, target = chosen(value.nodes, b), chosen(value.nodes, c)
        if source and source.outputs and target.inputs:
            value.connect(source.outputs[0], chosen(target.inputs, c))

    def set_function_value(self, b, c):
        value = chosen(self.values(), b)
        node = chosen(value.nodes, c) if value else None
        if node and node.function == "const_float1":
            node.value = b % 8 / 4

    def set_output_node(self, b, c):
        value = chosen(self.values(), b)
        node = chosen(value.nodes, c) if value else None
        if node:
            value.output_node = node

    def rename_graph(self, b, _c):
        self.graph.identifier = f"g{b % 4}"

    def rename_input(self, b, c):
        renamed = chosen(self.graph.inputs, b)
        if renamed:
            renamed.identifier = f"x{c % 4}"

    def rename_output(self, b, c):
        renamed = chosen(self.graph.outputs, b)
        if renamed:
            renamed.identifier = f"out{c % 4}"

    def freeze(self, b, _c):
        frozen = chosen(self.graph.inputs, b)
        if frozen:
            frozen.freeze()

    def set_default(self, b, c):
        changed = chosen(self.graph.inputs, b)
        value = value_for(changed.type, c) if changed and not changed.is_image else None
        if value is not None:
            changed.default = value

    def remove_input(self, b, _c):
        removed = chosen(self.graph.inputs, b)
        if removed:
            removed.remove()

    def add_graph(self, b, _c):
        self.package.add_graph(f"g{b % 4}")

    def undo(self, _b, _c):
        self.session.undo()

    def redo(self, _b, _c):
        self.session.redo()


WORDS = [name for name in vars(Run) if not name.startswith("_")
         and name not in ("step", "node", "parameter", "values")]
# Few graphs with many edits show more than the other way round.
WEIGHTS = [1 if word in ("add_graph", "freeze", "remove_input") else 4 for word in WORDS]


def write(count, seed, file):
    """Scripts, each with a heading."""
    source = random.Random(seed)
    with open(file, "w", encoding="ascii") as out:
        for number in range(count):
            out.write(f"script {number}\n")
            for word in source.choices(WORDS, WEIGHTS, k=STEPS):
                numbers = " ".join(str(source.randrange(1000)) for _ in range(3))
                out.write(f"{word} {numbers}\n")


def scripts_in(file):
    scripts = []
    for line in pathlib.Path(file).read_text(encoding="ascii").splitlines():
        word, *numbers = line.split()
        if word == "script":
            scripts.append([])
        else:
            scripts[-1].append((word, [int(number) for number in numbers]))
    return scripts


def sum_of(script, package, target):
    """The sum of the file that a package becomes by a script."""
    _kestrix._fix_uids(1000, 0)
    with kestrix.Session() as session:
        opened = session.open(package)
        run = Run(session, opened)
        for word, numbers in script:
            run.step(word, numbers)
        opened.save(target)
    return hashlib.md5(target.read_bytes()).hexdigest()


def differences(program, count, seed, package, folder):
    """Runs scripts by both. Returns the number of results, and the scripts whose results differ."""
    file = folder / "scripts"
    write(count, seed, file)
    native = subprocess.run([program, file, package, folder], check=True, capture_output=True,
                            text=True).stdout.split()
    scripts = scripts_in(file)
    sums = [sum_of(script, package, folder / "python.obl") for script in scripts]
    different = [script for script, ours, theirs in zip(scripts, sums, native) if ours != theirs]
    return len(native), len(set(sums)), different


def main(arguments):
    program, count, seed = arguments[0], int(arguments[1]), int(arguments[2])
    examples = pathlib.Path(__file__).resolve().parents[2] / "examples"
    packages = [examples / name for name in PACKAGES]
    failed = False
    for number, package in enumerate(packages):
        with tempfile.TemporaryDirectory() as folder:
            runs, kinds, different = differences(program, count // len(packages), seed + number,
                                                 package, pathlib.Path(folder))
        print(f"{package.name}: {runs} scripts, {kinds} different results, {len(different)} unequal")
        for script in different[:1]:
            print("\n".join(f"  {word} {numbers}" for word, numbers in script))
        failed = failed or bool(different)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

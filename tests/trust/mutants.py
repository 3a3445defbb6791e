"""Mutants of packages, assemblies and archives: of their elements, not of their bytes.

A mutant is a sample of which some elements were dropped, doubled, moved, swapped, or given values
of other places. All commands run on mutants, in the build with sanitizers."""

import functools
import pathlib
import re

import runs
import samples
import structure as s

TITLE = "structure-aware mutants under the sanitizers"
FULL = 20_000
COMMANDS = ["update"] * 5 + ["graph-parameters-editor", "specialization"] * 2
# How `update` names the file that it cannot load. The name of a dependency may be any text.
NAMED = re.compile(rb"^(Cannot load: .*/[ab]\.obl|Cannot load dependency: |Error! )", re.MULTILINE)
# A default that is no value of the input's type ends the command without a line.
DEFAULT = "--set-default-value"
NUMBERS = ["0", "1", "2", "4", "16", "256", "2307", "-1", "+7", "30", "31", "40", "2147483647",
           "2147483648", "4294967295"]
DECIMALS = ["0", "-0", "1e38", "3.4028235e38", "1e-46", "0.1", "nan", "inf", "-1", "1 2", "1 2 3",
            "1 2 3 4", "1,2,3,4"]
PATHS = ["pkg://", "pkg:///", "pkg://?", "pkg://planks?dependency=30", "pkg://wood?dependency=31",
         "pkg://planks?dependency=", "pkg://planks?dependency=4294967295",
         "pkg://planks?dependency=30&typeParam=CompNodeType&compNodeUidParam=22",
         "pkg://parts//leaf/?dependency=30"]
WORDS = ["", " ", "?himself", "?x", ".", "..", "/", "//", "a.obl", "./a.obl", "b.obl", "c/../b.obl",
         "obl://b.obl", "obl://", "ksx://b.kestrix", "http://host", *PATHS, "%1", "%25", "%n",
         "x" * 300, "\u00e9", "\u20ac", "\U0001F600", "\t", "\n", "\x7f", "\x85",
         "\ufffd", "&amp;", "<", "size",
         "{inputName}", "instance", "get_float1", "inputNodeOutput", "fxmaps", "bitmap", "blend",
         "datacontent", "source", "color"]
STRANGE = ["0x10", "4294967296", "99999999999999999999", "1.1.0.7049", "1.1.0.7050", "0.0.0.0",
           "1.0.1.3000", "1.1", "1.1.0.-1", "true", "1e39", "\ufffe"]
# What may stand before, in, or behind a document.
TEXTS = [b"", b" ", b"\0", b"\xff", b"\xef\xbb\xbf", b"<!--x-->", b"<?x y?>", b"<x/>", b"x",
         b'<!DOCTYPE package [<!ENTITY e "x">]>', b"&e;", b"<![CDATA[x]]>", b"\r\n", b"</package>"]


@functools.cache
def pool():
    current, *others = samples.packages()
    return [*[current] * 10, *others * 2, *samples.assemblies(), *samples.archives()]


@functools.cache
def other_names():
    return sorted({element.name for sample in pool() for root in sample.members.values()
                   for element in root.walk()})


# Changes of a tree. Each is given a generator of random numbers, the elements of the tree in a row,
# of which the first is its root, and the root of another document. Most leave a document that can
# be read, so that it comes to the places behind the reader.


def is_list(element):
    """Whether it may have its children in any number: they all have one name."""
    return len(element.children) > 1 and len({child.name for child in element.children}) == 1


def is_content(element):
    return element.name in ("content", "package", "graphs")


def lists(elements):
    return [one for one in elements if is_list(one) or is_content(one) and one.children]


def a_list(random, elements):
    return random.choice(lists(elements) or elements[:1])


def any_parent(random, elements):
    return random.choice([one for one in elements if one.children] or elements[:1])


def drop(random, elements, _):
    children = a_list(random, elements).children
    if children:
        children.pop(random.randrange(len(children)))


def drop_anything(random, elements, _):
    children = any_parent(random, elements).children
    if children:
        children.pop(random.randrange(len(children)))


def empty(random, elements, _):
    a_list(random, elements).children = []


def double(random, elements, _):
    children = a_list(random, elements).children
    if children:
        place = random.randrange(len(children))
        times = random.choice([1, 1, 1, 2, 20])
        children[place:place] = [children[place].copy() for _ in range(times)]


def double_anything(random, elements, _):
    children = any_parent(random, elements).children
    if children:
        children.append(random.choice(children).copy())


def move(random, elements, _):
    """Something to another list of its kind, or to anywhere."""
    children = any_parent(random, elements).children
    if children:
        moved = children.pop(random.randrange(len(children)))
        inside = set(map(id, moved.walk()))
        outside = [one for one in elements if id(one) not in inside]
        alike = [one for one in outside if any(child.name == moved.name for child in one.children)]
        target = random.choice(alike or outside)
        target.children.insert(random.randint(0, len(target.children)), moved)


def swap(random, elements, _):
    """What two elements of one name contain."""
    left = random.choice(elements)
    right = random.choice([one for one in elements if one.name == left.name])
    left.children, right.children = ([child.copy() for child in right.children],
                                     [child.copy() for child in left.children])


def reorder(random, elements, _):
    random.shuffle(any_parent(random, elements).children)


def nest(random, elements, _):
    """A group in itself, or any element."""
    groups = [one for one in elements if one.name == "group"]
    one = random.choice(groups or elements)
    inner = [child for child in one.children if child.name == "content"]
    (inner[0] if inner else one).children.insert(0, one.copy())


def rename(random, elements, _):
    random.choice(elements).name = random.choice(other_names())


def cross(random, elements, other):
    """Something of the other document, where something of that name is."""
    wanted = {child.name for one in lists(elements) for child in one.children}
    known = [one for one in other.walk() if one.name in wanted]
    if known:
        taken = random.choice(known).copy()
        target = random.choice([one for one in lists(elements)
                                if any(child.name == taken.name for child in one.children)])
        target.children.insert(random.randint(0, len(target.children)), taken)


def replace(random, elements, other):
    """What an element contains, by what one of its name in the other document contains."""
    by_name = {}
    for one in other.walk():
        by_name.setdefault(one.name, []).append(one)
    known = [one for one in elements if one.name in by_name]
    if known:
        one = random.choice(known)
        source = random.choice(by_name[one.name]).copy()
        one.children, one.attributes = source.children, source.attributes


def valued(elements):
    return [one for one in elements if one.attributes] or elements[:1]


def extreme_for(random, value):
    if random.random() < 0.1:
        return random.choice(STRANGE)
    if value.isdecimal():
        return random.choice(NUMBERS)
    if re.fullmatch(r"[-+.e\d ]+", value):
        return random.choice(DECIMALS)
    return random.choice(WORDS)


def set_extreme(random, elements, _):
    one = random.choice(valued(elements))
    for pair in one.attributes[:1]:
        pair = random.choice(one.attributes)
        pair[1] = extreme_for(random, pair[1])


def values(elements):
    """The pairs of a name and a value in a row, with the name of their element in front."""
    return [(one.name, pair) for one in elements for pair in one.attributes]


def set_other(random, elements, _):
    """A value that another place has, of a number that of a number."""
    known = values(elements)
    if known:
        _, pair = random.choice(known)
        alike = [other for _, other in known if other[1].isdecimal() == pair[1].isdecimal()]
        pair[1] = random.choice(alike)[1]


def set_alike(random, elements, _):
    """One value for all places of a name, such as one uid."""
    known = values(elements)
    if known:
        name, pair = random.choice(known)
        for other_name, other in known:
            if other_name == name and other[0] == pair[0]:
                other[1] = pair[1]


def change_attributes(random, elements, _):
    one = random.choice(elements)
    added = [random.choice(["v", "w", "xmlns", "a:v", "label"]), random.choice(WORDS)]
    one.attributes = random.choice([[], [added], [*one.attributes, added], one.attributes * 2,
                                    one.attributes[::-1]])


# By how often they are chosen.
CHANGES = ([set_other] * 6 + [set_extreme] * 6 + [set_alike] * 4 + [drop] * 3 + [double] * 4
           + [cross] * 4 + [replace] * 4 + [move] * 2 + [swap] * 4 + [reorder] * 3
           + [empty] * 2 + [nest] * 2 + [drop_anything, double_anything, rename, change_attributes])


def changed(random, root):
    """A changed copy of a document."""
    root = root.copy()
    other = random.choice(list(random.choice(pool()).members.values()))
    for _ in range(random.choice([1, 1, 1, 2, 2, 3, 6])):
        random.choice(CHANGES)(random, list(root.walk()), other)
    return root


def in_characters_of_xml(text):
    return re.sub("[\ud800-\udfff]", "?", text)


def bytes_of(random, root):
    """A document as bytes. Some are damaged as texts, or in another encoding."""
    text = in_characters_of_xml(s.text_of(root))
    whole = f"{s.DECLARATION}{text}\n".encode()
    choice = random.random()
    if choice < 0.88:
        return whole
    if choice < 0.91:
        place = random.choice([0, len(s.DECLARATION), random.randrange(len(whole)), len(whole)])
        return whole[:place] + random.choice(TEXTS) + whole[place:]
    if choice < 0.93:
        return whole[:random.randrange(len(whole))]
    if choice < 0.96:
        return text.encode(random.choice(["utf-16", "utf-16-le", "utf-16-be", "utf-32"]))
    return text.encode("utf-8").replace(b"><", random.choice([b">\n<", b"> <", b">\0<"]))


# Archives.


def archive_files(random, sample):
    """The files of an archive. One of its descriptions is changed, and perhaps their row."""
    mutant = random.choice(list(sample.members))
    files = []
    for name, root in sample.members.items():
        body = s.assembly(int(dict(root.attributes).get("asmuid", 0)))
        text = changed(random, root) if name == mutant else root
        files += [(name.replace(".xml", ".oblasm"), body), (name, bytes_of(random, text))]
    choice = random.random()
    if choice < 0.1:
        files.pop(random.randrange(len(files)))
    elif choice < 0.2:
        random.shuffle(files)
    elif choice < 0.3:
        place = random.randrange(len(files))
        name = random.choice(["", "/", "..", "../a.xml", "assemblies/content/0/a.xml", "x" * 300,
                              "assemblies/content/x/a.xml", "authoring/content/0/a.xml"])
        files[place] = (name, files[place][1])
    return files


def archive_bytes(random, sample):
    """A stored archive. Where its header is changed, its checksums are made good again."""
    files = archive_files(random, sample)
    packed = b"".join(content for _, content in files)
    header = bytearray(s.archive_header(files, one_folder=random.random() < 0.5))
    if random.random() < 0.4:
        for _ in range(random.choice([1, 1, 2, 4])):
            place = random.randrange(len(header))
            header[place] = random.choice([0, 1, 2, 0x7F, 0x80, 0xFF, random.randrange(256)])
        if random.random() < 0.2:
            del header[random.randrange(len(header)):]
    return s.archive_around(packed, bytes(header))


def files_of(random, sample):
    """The files of a mutant, by name, and the elements that commands may name inputs of."""
    if sample.kind == "oblar":
        return {"a.oblar": archive_bytes(random, sample)}, list(sample.members.values())[0]
    (name, root), = sample.members.items()
    mutant = changed(random, root)
    files = {name: bytes_of(random, mutant)}
    if sample.kind == "oblasm":
        body = bytearray(s.assembly(int(dict(root.attributes).get("asmuid", 0))))
        if random.random() < 0.1:
            body[random.randrange(16)] ^= 1 << random.randrange(8)
        files["a.oblasm"] = bytes(body)
    return files, mutant


# Commands.


def of_child(element, name):
    """The value of the first leaf of that name below an element."""
    values = [one.attributes[0][1] for one in element.walk() if one.name == name and one.attributes]
    return values[0] if values else ""


def inputs_in(root):
    """The inputs of the first graph of a document: pairs of a name and a type."""
    graphs = [one for one in root.walk() if one.name == "graph"][:1]
    found = []
    for one in (one for graph in graphs for one in graph.walk()):
        if one.name == "paraminput":
            types = [of_child(child, "value") for child in one.children if child.name == "type"]
            found.append((of_child(one, "identifier"), types[0] if types else ""))
        elif one.name == "input":
            described = dict(one.attributes)
            kind = "1" if described.get("type") == "5" else "256"
            found.append((described.get("identifier", ""), kind))
    return [(name, kind) for name, kind in found if "\0" not in name]


IMAGES = ["1", "2", "3", "2307"]
VALUES = {"16": "3", "32": "3,4", "256": "0.5", "512": "1,2", "1024": "1,2,3", "2048": "0,0,0,1",
          "4": "1"}


def edits(random, inputs):
    made = []
    known = [one for one in inputs if one[1] not in IMAGES] or inputs or [("none", "")]
    for _ in range(random.choice([1, 1, 1, 2, 5])):
        name, kind = random.choice(known) if random.random() < 0.95 else ("none", "")
        value = VALUES.get(kind, "0") if random.random() < 0.9 else random.choice(DECIMALS)
        made += random.choice([["--switch-to-constant", name],
                               ["--switch-to-constant", f"{name}@{value}"],
                               [DEFAULT, f"{name}@{value}"]])
    return made


def specializations(random, inputs, files):
    made = ["--hide-parameters"] if random.random() < 0.3 else []
    images = [name for name, kind in inputs if kind in IMAGES] or ["none"]
    for _ in range(random.choice([0, 1, 1, 2])):
        made += ["--connect-input", random.choice(images)]
    if random.random() < 0.4:
        target = random.choice([sample for sample in pool() if sample.kind == "obl"])
        files["t.obl"] = bytes_of(random, changed(random, target.members["a.obl"]))
        made += ["--output-merge", "--output-name", "t"]
    return made


def arguments_of(random, kind, root, files):
    command = random.choice(COMMANDS)
    words = [command, f"a.{kind}"]
    if command == "graph-parameters-editor":
        words += edits(random, inputs_in(root))
    elif command == "specialization":
        words += specializations(random, inputs_in(root), files)
    elif random.random() < 0.1:
        words += ["b.obl"]
    return [word.encode("utf-8", "surrogateescape") for word in words]


# Rules.


def saved_in(run):
    """The paths of the packages that a run says it has saved."""
    listed = run.out.partition(b"Packages Saved:\n")[2] or run.out.partition(b"Package Saved:")[2]
    return [line.strip() for line in listed.splitlines() if line.strip()]


def broken_rule(run, folder, files):
    """What a run on these files has done wrong, or None."""
    # The sanitizers' own memory is not bounded.
    broken = runs.broken_bound(run, bounds_memory=False)
    if broken is not None and not (broken == runs.SILENT and DEFAULT.encode() in run.arguments):
        return broken
    if run.code == 1 and run.arguments[0] == b"update" and not NAMED.search(run.err):
        return "fails without a line that names the file"
    return broken_folder(run, folder, files)


def broken_folder(run, folder, files):
    """What is wrong with the files behind the run. They are looked at as a user does, by name."""
    saved = {pathlib.Path(path.decode("utf-8", "surrogateescape")) for path in saved_in(run)}
    left = {path for path in folder.rglob("*") if path.is_file()}
    for name, content in files.items():
        if folder / name not in saved and (folder / name).read_bytes() != content:
            return f"has changed its input {name}"
    if strange := left - saved - {folder / name for name in files}:
        return f"has left {sorted(map(str, strange))}"
    if missing := saved - left:
        return f"has not written {sorted(map(str, missing))}"
    for path in saved:
        if not path.read_bytes().endswith(b"</package>\n"):
            return f"has not written all of {path}"
    return None


def make(random):
    """The files of a case by their names, and the arguments."""
    sample = random.choice(pool())
    files, root = files_of(random, sample)
    arguments = arguments_of(random, sample.kind, root, files)
    return {**files, samples.COMPANION: samples.companion()}, arguments


def check(context, seed, case):
    files, arguments = make(context.random(seed, case))
    folder = context.workplace.empty_folder()
    for name, content in files.items():
        (folder / name).write_bytes(content)
    run = context.workplace.server(context.sanitized).run(arguments, folder)
    broken = broken_rule(run, folder, files)
    if broken is None:
        return None
    kept = context.keep(f"{seed}-{case}", folder)
    return f"mutant {seed}-{case} {broken}; see {kept}\n  {run}"


def run(context):
    number = context.number(FULL)
    cases = [(context.seeds[case % len(context.seeds)], case) for case in range(number)]
    return context.outcome_of(lambda case: check(context, *case), cases)

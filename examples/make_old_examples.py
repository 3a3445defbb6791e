#!/usr/bin/env python3
"""Writes the packages of old formats below old/, one per version that `kestrix update` knows.

Each package is put together in the present format, with the helpers of make_examples.py, and then
taken back step by step to the format of its time. So an update must lead back to a package that is
sound in every reference. Run it without arguments; the same script always gives the same bytes.

Two things about old packages that the sources of this script rely on:

* A path into the package itself began with the package's name, although nothing of that name stood
  in its content: "pkg://grain/rings" was the graph `rings` of the package `grain`. Since build 5356
  all content lies in a group named like the package, and the same paths lead through that group.
* Before build 6141 a path could not say into which package it leads, so no path in these files
  leaves its package; dependencies are only listed. The one file of build 6141 has both.
"""
import os
import xml.etree.ElementTree as ElementTree

from make_examples import (
    COLOR, GRAYSCALE, HERE, Function, FxNode, Package, Resource, angle, as_float4, call,
    color_widget, const, dropdown, escape, get, op, pattern, png, scaled, scatter, slider, toggle,
    write_file)

DECLARATION = '<?xml version="1.0" encoding="UTF-8"?>'
USAGE_NUMBERS = {name: number for number, name in enumerate((
    "diffuse", "opacity", "emissive", "ambient", "ambientOcclusion", "mask", "normal", "bump",
    "height", "displacement", "specular", "specularLevel", "specularColor", "glossiness",
    "roughness"))}
OLD_OPTIONS = {"min": "slidermin", "max": "slidermax", "clamp": "clampvalues"}


# Taking a package back

def text_of(owner, name):
    found = owner.find(name)
    return "" if found is None else found.get("v")


def new_leaf(name, value):
    return ElementTree.Element(name, v=value)


def insert_after(owner, name, item):
    owner.insert(list(owner).index(owner.find(name)) + 1, item)


def take_text(owner, name):
    """Removes a text from the attributes of an object, and the attributes if nothing is left."""
    attributes = owner.find("attributes")
    found = None if attributes is None else attributes.find(name)
    if found is None:
        return ""
    attributes.remove(found)
    if not len(attributes):
        owner.remove(attributes)
    return found.get("v")


def before_6141(root, _):
    """Dependencies have no uid, and paths into the package itself name no dependency."""
    dependencies = root.find("dependencies")
    own = [item for item in dependencies if text_of(item, "filename") == "?himself"]
    own_uids = [text_of(item, "uid") for item in own]
    for item in own:
        dependencies.remove(item)
    for item in dependencies:
        item.remove(item.find("uid"))
    for item in root.iter():
        text = item.get("v", "")
        if not text.startswith("pkg://"):
            continue
        path, _, query = text.partition("?")
        pairs = query.split("&")
        assert pairs[0] in [f"dependency={uid}" for uid in own_uids], text
        item.set("v", "?".join([path] + ["&".join(pairs[1:])] * (len(pairs) > 1)))


def before_5356(root, settings):
    """The content of the group named like the package stands at the top.

    With the setting `grouped` that group is there all the same and keeps the items so named.
    """
    content = root.find("content")
    group, = content
    assert text_of(group, "identifier") == text_of(root, "identifier")
    inside = group.find("content")
    kept = settings.get("grouped", ())
    moved = [item for item in inside if text_of(item, "identifier") not in kept]
    for item in moved:
        inside.remove(item)
    if not kept:
        content.remove(group)
    content.extend(moved)


def before_5017(root, _):
    """Inputs and outputs have their description and their user tags beside their attributes."""
    for name in ("paraminput", "graphoutput"):
        for item in root.iter(name):
            insert_after(item, "uid", new_leaf("desc", take_text(item, "description")))
    for item in root.iter("paraminput"):
        tags = take_text(item, "usertags")
        if tags:
            insert_after(item, "desc", new_leaf("usertag", tags))


def before_4858(root, _):
    """Graphs, resources and functions have their description beside their attributes."""
    for name in ("graph", "resource", "function"):
        for item in root.iter(name):
            if len(item):  # a node of a value function has a leaf `function`
                insert_after(item, "uid", new_leaf("desc", take_text(item, "description")))


def before_4510(root, settings):
    """The usage of an output is a number; the setting `usages` has some that are not as usual."""
    for item in root.iter("graphoutput"):
        usages = item.find("usages")
        name = text_of(item, "identifier")
        number = USAGE_NUMBERS.get(text_of(usages[0], "name")) if usages is not None else None
        if usages is not None:
            item.remove(usages)
        number = settings.get("usages", {}).get(name, number)
        if number is not None:
            insert_after(item, "desc", new_leaf("usage", str(number)))


def before_4253(root, settings):
    """A primary input may be wrong: the setting `primary` says of which graphs, and what it is."""
    for graph in root.iter("graph"):
        wanted = settings.get("primary", {}).get(text_of(graph, "identifier"))
        if wanted is None:
            continue
        inputs = {text_of(item, "identifier"): text_of(item, "uid")
                  for item in graph.iter("paraminput")}
        found = graph.find("primaryInput")
        if found is not None:
            graph.remove(found)
        item = ElementTree.Element("primaryInput")
        item.append(new_leaf("value", inputs.get(wanted, wanted)))
        graph.insert(list(graph).index(graph.find("graphOutputs")), item)


def before_3962(root, _):
    """Other names for options and configurations, and the first endings and schemes of files."""
    for name in root.iterfind(".//paraminput/defaultWidget/options/option/name"):
        name.set("v", OLD_OPTIONS.get(name.get("v"), name.get("v")))
    outer = root.find("configurations")
    outer.find("configuration").tag = "configurations"
    outer.tag = "configuration"
    for item in list(root.iter("filename")) + list(root.iter("filepath")):
        text = item.get("v")
        text = "ksx://" + text[len("obl://"):] if text.startswith("obl://") else text
        text = text[:-len(".obl")] + ".kestrix" if text.endswith(".obl") else text
        item.set("v", text)


STEPS = ((6141, before_6141), (5356, before_5356), (5017, before_5017), (4858, before_4858),
         (4510, before_4510), (4253, before_4253), (3962, before_3962))


def build_of(version):
    return int(version.rpartition(".")[2])


def stamp(root, format_version, updater_version):
    root.find("formatVersion").set("v", format_version)
    updater = root.find("updaterVersion")
    if updater_version is None:
        root.remove(updater)
    else:
        updater.set("v", updater_version)


def one_line(item):
    body = "".join(one_line(child) for child in item)
    head = item.tag + "".join(f' {key}="{escape(text)}"' for key, text in item.attrib.items())
    return f"<{head}>{body}</{item.tag}>" if body else f"<{head}/>"


def indented(item, depth=0):
    head = " " * depth + "<" + item.tag
    head += "".join(f' {key}="{escape(text)}"' for key, text in item.attrib.items())
    if not len(item):
        return head + "/>\n"
    body = "".join(indented(child, depth + 1) for child in item)
    return f"{head}>\n{body}{' ' * depth}</{item.tag}>\n"


def old_bytes(package, format_version, updater_version=None, edit=None, **settings):
    """The package's bytes as a program of that version wrote them.

    `edit` may change the present form first. Up to build 4510 the files had a line per element.
    """
    root = ElementTree.fromstring(package.text())
    if edit is not None:
        edit(root)
    build = build_of(updater_version or format_version)
    for step_build, step in STEPS:
        if build < step_build:
            step(root, settings)
    stamp(root, format_version, updater_version)
    if build <= 4510:
        return (DECLARATION + "\n" + indented(root)).encode("utf-8")
    return (DECLARATION + one_line(root) + "\n").encode("utf-8")


def write_old(package, *versions, **settings):
    write_file(package.path, old_bytes(package, *versions, **settings))


def tag_input(root, identifier, tags):
    """User tags of an input, which the helpers for graphs do not write."""
    for item in root.iter("paraminput"):
        if text_of(item, "identifier") == identifier:
            insert_after(item.find("attributes"), "label", new_leaf("usertags", tags))


def package_group(package):
    """The group that holds everything; it has the uid that an update gives it."""
    group = package.group(package.identifier)
    group.uid = 1
    return group


# old/grain.obl: build 4253, which did not change the format of build 3962

def make_grain():
    package = Package("old/grain.obl", "grain", "Åsa Öberg",
                      "Grain of wood.\nFirst version 2011.")
    root = package_group(package)
    ring = root.add(Function(
        "ring_width", [("age", "float1", 0.5, slider(0, 1)),
                       ("climate", "float1", 0.5, slider(0, 1))],
        op("lerp", const(0.02), const(0.2), op("mul", get("float1", "age"),
                                               get("float1", "climate"))),
        description="Width of a year ring: 0.02 to 0.2."))
    rings = root.graph("rings", category="Wood", description="Rings of a trunk.")
    rings.value_input("age", "float1", 0.6, slider(0, 1), "Tree", desc="1 is a full-grown tree.")
    rings.value_input("count", "int1", 24, slider(1, 64, "1"), "Tree")
    width = call(package, ring, age=rings.read("age"), climate=const(0.7))
    discs = rings.fxmap(scatter(rings, rings.read("count"), "disc", op("vector2", width, width),
                                spread=0.0))
    rings.output("height", rings.filter("blur", {"input1": discs}, {"intensity": 0.5}),
                 ("RGBA", "height"))
    plank = root.graph("plank_grain", description="Grain along a plank.")
    knots = plank.image_input("knots", GRAYSCALE, group="Tree", desc="White where knots are.")
    plank.value_input("length", "float1", 0.8, slider(0, 1))
    trunk = plank.instance(rings, values={"count": 40})
    stretched = plank.filter("directionalwarp", {"input1": trunk, "inputintensity": knots},
                             {"intensity": scaled(plank, "length", 24.0), "warpangle": 0.25})
    plank.output("height", stretched, ("RGBA", "height"))
    plank.output("knots_mask", knots, ("RGBA", "mask"))
    plank.output("shine", plank.levels(stretched, out_low=0.3), ("RGBA", "glossiness"))
    plank.comment("The warp follows the knots", (-200, -320, 0), stretched)
    write_old(package, "1.0.1.3962", "1.0.1.4253", usages={"knots_mask": 5, "shine": 999})
    return package


# old/presets/shapes.obl: build 3962, the presets library of the old packages

def make_shapes():
    package = Package("old/presets/shapes.obl", "shapes", "Kestrix presets",
                      "Basic shapes, named by obl://shapes.obl.")
    root = package_group(package)
    for name, shape in (("tile", "brick"), ("dot", "disc"), ("ridge", "ridgebell")):
        graph = root.graph(name, category="Presets", tags="shape",
                           description=f"One {name}, white on black.")
        graph.value_input("size", "float1", 0.8, slider(0, 1, "0.01", "Small", "Full"), "Shape")
        graph.value_input("turn", "float1", 0.0, angle(), "Shape")
        side = op("vector2", graph.read("size"), graph.read("size"))
        drawn = graph.fxmap(FxNode("paramset", f"{name}_shape", {
            "patterntype": pattern(shape), "patternsize": side,
            "patternrotation": graph.read("turn"), "opacity": (1.0,) * 4}))
        graph.output("mask", drawn, ("RGBA", "mask"))
    tinted = root.graph("tinted", description="A shape in a colour.")
    shape = tinted.image_input("shape", GRAYSCALE)
    background = tinted.image_input("background", COLOR)
    tinted.value_input("colour", "float4", (1.0, 0.5, 0.0, 1.0), color_widget())
    ground = tinted.filter("uniform", None, {"outputcolor": tinted.read("colour")}, kind=COLOR)
    cut = tinted.filter("shuffle", {"input1": ground, "input2": shape}, {"channelalpha": 4},
                        kind=COLOR)
    tinted.output("result", tinted.blend(cut, background), ("RGBA", "diffuse"))
    # The second image input is not the first, yet it is one: this primary input is in order.
    write_old(package, "1.0.1.3962", primary={"tinted": "background"})
    return package


# old/roof_tiles.obl: older than every step

def make_roof_tiles(grain, shapes):
    package = Package("old/roof_tiles.obl", "roof_tiles", "André Müller",
                      'Clay tiles "Biberschwanz", laid double & wet.\nAngles are in turns.')
    package.depends_on(shapes, "obl://shapes.obl")
    package.depends_on(grain, "grain.obl")
    root = package_group(package)
    slate = png(16, 16, 1, lambda x, y: ((x * 11 + y * 29) % 160 + 40,))
    clay = png(16, 16, 3, lambda x, y: (180 + (x * y) % 40, 90 + (x + y) % 30, 60))
    write_file("old/bitmaps/slate.png", slate)
    write_file("old/presets/clay_scan.png", clay)
    scans = root.group("scans", "300 dpi")
    slate_scan = scans.add(Resource("slate", "bitmaps/slate.png", slate, {
        "label": "Slate", "description": "Façade of the old mill."}))
    clay_scan = scans.add(Resource("clay", "obl://clay_scan.png", clay, {
        "author": "Kestrix presets", "description": "From the presets."}))
    with open(os.path.join(HERE, *grain.path.split("/")), "rb") as file:
        scans.add(Resource("grain_package", "grain.obl", file.read(), {
            "description": "The package from which the grain was made."}))
    shift = root.add(Function(
        "row_shift", [("row", "float1", 0.0, slider(0, 64, "1"))],
        op("mul", op("sub", get("float1", "row"), op("mul", const(2.0), op(
            "floor", op("mul", get("float1", "row"), const(0.5))))), const(0.5)),
        description="Every second row is moved by half a tile."))

    tile = root.graph("single_tile", category="Roof", description="One tile with its round end.")
    tile.value_input("width", "float1", 0.9, slider(0.1, 1, clamp="0"), "Shape")
    tile.value_input("round_end", "bool", True, toggle(), "Shape")
    is_round = op("ifelse", tile.read("round_end"), const(1.0), const(0.0))
    size = op("vector2", tile.read("width"), const(1.0))
    body = tile.fxmap(FxNode("paramset", "body", {
        "patterntype": pattern("square"), "patternsize": size, "opacity": (1.0,) * 4}))
    end = tile.fxmap(FxNode("paramset", "end", {
        "patterntype": pattern("halfbell"), "patternsize": size, "opacity": (1.0,) * 4}))
    tile.output("height", tile.blend(end, body, "min", is_round), ("RGBA", "height"))

    ridge = root.graph("ridge", description="The line of the ridge; nothing to set.")
    ridge.output("height", ridge.fxmap(FxNode("paramset", "line", {
        "patterntype": pattern("capsule"), "patternsize": (1.0, 0.1), "opacity": (1.0,) * 4})),
        ("RGBA", "height"))

    roof = root.graph("roof_tiles", category="Roof", tags="roof;tile", author="André Müller",
                      description="A roof.\nAll outputs tile.")
    roof.value_input("rows", "float1", 12.0, slider(1, 64, "1", "Few", "Many"), "Laying",
                     desc="How many rows lie one over the other.")
    roof.value_input("colour", "float4", (0.7, 0.35, 0.22, 1.0), color_widget(), "Colour")
    roof.value_input("bond", "int1", 1, dropdown("Single", "Double", "Crown"), "Laying")
    moss = roof.image_input("moss", COLOR, group="Ageing", desc="Moss with alpha.")
    roof.value_input("light", "float1", 0.125, angle(), "Light")
    moved = op("vector2", call(package, shift, row=roof.read("rows")), const(0.0))
    laid = roof.filter("transformation", {"input1": roof.instance(tile, values={"width": 0.95})},
                       {"matrix22": (8.0, 0.0, 0.0, 12.0), "offset": moved})
    scan = roof.bitmap(clay_scan, COLOR, (4, 4))
    rough = roof.bitmap(slate_scan, GRAYSCALE, (4, 4))
    relief = roof.blend(rough, laid, "multiply", 0.3)
    relief = roof.blend(roof.instance(ridge), relief, "max", title="Ridge on top")
    ground = roof.filter("uniform", None, {"outputcolor": roof.read("colour")}, kind=COLOR)
    surface = roof.blend(moss, roof.blend(scan, ground, "multiply", 0.6))
    lit = roof.filter("emboss", {"input1": surface, "inputgradient": relief},
                      {"lightangle": roof.read("light"), "intensity": 2.0})
    roof.output("diffuse", lit, ("RGBA", "diffuse"), desc="Colour with light.")
    roof.output("normal", roof.normal(relief, 5.0), ("RGBA", "normal"))
    roof.output("height", relief, ("RGBA", "height"), channels=2)
    roof.output("wetness", roof.levels(relief, high=0.3, out_low=1.0, out_high=0.0))
    roof.output("preview", surface)
    roof.comment("Bond: see the book of roofs, p. 112", (-300, -400, 0), laid)

    def edit(present):
        tag_input(present, "rows", "laying;main")
        tag_input(present, "moss", "ageing")
        for item in present.iter("resource"):
            if text_of(item, "identifier") == "grain_package":
                item.find("type").set("v", "0")
                item.find("format").set("v", "OBL")

    # `wetness` has a number that stands for nothing, `preview` has none. The primary input of
    # `roof_tiles` is no image, and `ridge` has no input at all.
    write_old(package, "1.0.1.3000", edit=edit, usages={"wetness": 4242},
              primary={"roof_tiles": "rows", "ridge": "77"})
    return package


# old/felt.obl: build 4510

def make_felt(shapes):
    package = Package("old/felt.obl", "felt", "Zoë Lefèvre", "Felt: hair, pressed & dyed.")
    package.depends_on(shapes, "obl://shapes.obl")
    root = package_group(package)
    hair = root.graph("hair", description="Loose hair.")
    hair.value_input("amount", "int1", 300, slider(1, 1000, "1"), "Hair")
    hair.value_input("curl", "float1", 0.4, slider(0, 1), "Hair", desc="0 is straight.")
    length = op("vector2", const(0.01), op("lerp", const(0.2), const(0.6), op("rand", const(1.0))))
    drawn = hair.fxmap(scatter(hair, hair.read("amount"), "capsule", length,
                               op("rand", const(1.0)), seed=5))
    bent = hair.filter("motionblur", {"input1": drawn, "inputgradient": drawn},
                       {"intensity": scaled(hair, "curl", 0.5)})
    hair.output("hair", bent, ("R", "height"), ("RGBA", "mask"))
    felt = root.graph("felt", category="Fabrics", tags="wool",
                      description="Pressed hair in two colours.")
    stain = felt.image_input("stain", COLOR, [("RGBA", "diffuse")], "Wear", desc="Over all.")
    felt.value_input("first_colour", "float3", (0.3, 0.3, 0.35), color_widget(), "Colour")
    felt.value_input("second_colour", "float3", (0.6, 0.1, 0.1), color_widget(), "Colour")
    layers = [felt.instance(hair, values={"amount": amount, "curl": curl})
              for amount, curl in ((400, 0.2), (150, 0.8))]
    pressed = felt.blend(layers[1], layers[0], "max", 0.7, title="Pressed")
    dyes = [felt.filter("uniform", None, {"outputcolor": op("vector4", felt.read(name),
                                                            const(1.0))}, kind=COLOR)
            for name in ("first_colour", "second_colour")]
    dyed = felt.blend(dyes[1], dyes[0], "switch", 0.5)
    felt.output("diffuse", felt.blend(stain, dyed, "multiply", 0.3), ("RGB", "diffuse"))
    felt.output("height", pressed, ("R", "height"), desc="Very flat.")

    def edit(present):
        tag_input(present, "stain", "wear")

    write_old(package, "1.0.1.4510", edit=edit)
    return package


# old/parquet.obl: build 4858

def make_parquet(grain):
    package = Package("old/parquet.obl", "parquet", "Åsa Öberg", "Herringbone of oak.")
    package.depends_on(grain, "grain.obl")
    root = package_group(package)
    oak = png(24, 24, 3, lambda x, y: (150 + (x * x + y) % 50, 100 + (x * x + y) % 40, 60))
    write_file("old/bitmaps/oak.png", oak)
    scan = root.add(Resource("oak", "bitmaps/oak.png", oak, {
        "label": "Oak", "description": "A board of the town hall."},
        settings=(("dpi", "300"),)))
    board = root.graph("board", description="One board.")
    board.value_input("stain", "float4", (0.6, 0.42, 0.25, 1.0), color_widget(), "Colour",
                      desc="Over the scan.")
    tint = board.filter("uniform", None, {"outputcolor": board.read("stain")}, kind=COLOR)
    board.output("colour", board.blend(board.bitmap(scan, COLOR, (5, 5)), tint, "multiply", 0.8),
                 ("RGB", "diffuse"))
    floor = root.graph("parquet", category="Wood", tags="floor;wood", description="Herringbone.")
    dirt = floor.image_input("dirt", GRAYSCALE, [("RGBA", "mask")], "Ageing",
                             desc="White is dirty.")
    floor.value_input("gap", "float1", 0.02, slider(0, 0.2, "0.005"), "Laying")
    boards = [floor.instance(board, values={"stain": (0.6 + 0.05 * index, 0.42, 0.25, 1.0)})
              for index in range(3)]
    across = floor.filter("transformation", {"input1": boards[0]},
                          {"matrix22": (0.0, 4.0, -4.0, 0.0)})
    along = floor.transform(boards[1], 0.25, (0.25, 0.125))
    laid = floor.blend(across, floor.blend(along, boards[2], "switch", 0.5), "switch", 0.5)
    gaps = floor.fxmap(FxNode("paramset", "gaps", {
        "patterntype": pattern("brick"), "opacity": (1.0,) * 4, "patternsize": op(
            "vector2", op("sub", const(1.0), floor.read("gap")), const(0.25))}))
    floor.output("diffuse", floor.blend(floor.gradient(dirt, [
        (0.0, (1.0,) * 4), (1.0, (0.4, 0.35, 0.3, 1.0))]), laid, "multiply"), ("RGB", "diffuse"),
        desc="Colour without light.")
    floor.output("height", gaps, ("R", "height"))

    def edit(present):
        tag_input(present, "gap", "laying")

    write_old(package, "1.0.3.4858", "1.0.3.4858", edit=edit)
    return package


# old/speckles.obl: build 5017, with a group that is named like the package already

def make_speckles():
    package = Package("old/speckles.obl", "speckles", "André Müller", "Spots of three sizes.")
    root = package_group(package)
    root.uid = 1900  # it is there already, and keeps its uid
    made = []
    for name, shape, size in (("fine", "disc", 0.02), ("middle", "bell", 0.06),
                              ("coarse", "crescent", 0.15)):
        graph = root.graph(name, category="Noises", description=f"{name} spots".capitalize())
        graph.value_input("amount", "int1", int(8 / size), slider(1, 1000, "1"), "Spots",
                          desc="How many spots.")
        graph.value_input("contrast", "float1", 0.5, slider(0, 1), "Spots")
        spots = graph.fxmap(scatter(graph, graph.read("amount"), shape, (size, size)))
        graph.output("noise", graph.levels(spots, middle=as_float4(graph, "contrast")),
                     ("R", "height"), ("RGBA", "$any"))
        made.append(graph)
    mixed = root.group("mixes", "Several sizes at once").graph("all_sizes")
    layer = mixed.instance(made[0])
    for graph in made[1:]:
        layer = mixed.blend(mixed.instance(graph, values={"contrast": 0.7}), layer, "max", 0.8)
    mixed.output("noise", layer, ("RGBA", "mask"))
    write_old(package, "1.0.3.5017", "1.0.3.5017", grouped=("fine", "mixes"))
    return package


# old/pavement.obl: build 5356

def make_pavement():
    package = Package("old/pavement.obl", "pavement", "Zoë Lefèvre", "Cobbles of a small town.")
    root = package_group(package)
    stone = root.graph("stone", description="A round stone.", usertags="part")
    stone.value_input("roundness", "float1", 0.6, slider(0, 1), "Stone", desc="1 is a ball.")
    soft = stone.fxmap(FxNode("paramset", "soft", {
        "patterntype": pattern("paraboloid"), "opacity": (1.0,) * 4}))
    hard = stone.fxmap(FxNode("paramset", "hard", {
        "patterntype": pattern("pyramid"), "opacity": (1.0,) * 4}))
    stone.output("height", stone.blend(soft, hard, "switch", stone.read("roundness")),
                 ("R", "height"))
    street = root.graph("pavement", category="Streets", tags="stone;street")
    rain = street.image_input("rain", GRAYSCALE, [("RGBA", "mask")], "Weather")
    street.value_input("stones", "int1", 144, slider(1, 400, "1"), "Laying")
    laid = street.fxmap(FxNode("addnode", "rows", {"numberadded": street.read("stones")},
                               output0=FxNode("paramset", "one", {
                                   "patterntype": pattern("image_entry"),
                                   "patternsize": (0.08, 0.08)})),
                        image=street.instance(stone, values={"roundness": 0.75}))
    wet = street.blend(rain, laid, "addsub", 0.2)
    street.output("height", laid, ("R", "height"), ("R", "displacement"))
    street.output("roughness", street.levels(wet, out_low=0.9, out_high=0.1),
                  ("RGBA", "roughness"))
    street.comment("Stones of the market", (0, -300, 0), laid, "frame")
    write_old(package, "1.1.0.5356", "1.1.0.5356")
    return package, street


# old/market_square.obl: build 6141, which names the package of every path

def make_market_square(pavement, street):
    package = Package("old/market_square.obl", "market_square", "Zoë Lefèvre", "Around the well.")
    package.depends_on(pavement, "pavement.obl")
    root = package_group(package)
    kerb = root.graph("kerb")
    kerb.output("height", kerb.fxmap(FxNode("paramset", "kerb", {
        "patterntype": pattern("brick"), "patternsize": (1.0, 0.2), "opacity": (1.0,) * 4})),
        ("R", "height"))
    square = root.graph("market_square", category="Streets")
    rain = square.image_input("rain", GRAYSCALE, [("RGBA", "mask")])
    square.value_input("stones", "int1", 200, slider(1, 400, "1"))
    ground = square.instance(street, {"rain": rain}, square.bind(street, "stones"))
    edged = square.blend(square.instance(kerb), ground["height"], "max")
    square.output("height", edged, ("R", "height"))
    square.output("roughness", ground["roughness"], ("RGBA", "roughness"))
    write_old(package, "1.1.0.6141", "1.1.0.6141")
    return package


def main():
    grain = make_grain()
    shapes = make_shapes()
    make_roof_tiles(grain, shapes)
    make_felt(shapes)
    make_parquet(grain)
    make_speckles()
    pavement, street = make_pavement()
    make_market_square(pavement, street)


if __name__ == "__main__":
    main()

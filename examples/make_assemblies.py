#!/usr/bin/env python3
"""Writes the assemblies below assemblies/, and those that make_archives.sh packs into archives.

An assembly is a pair of files: x.oblasm, a small header and a body that nobody reads here, and
x.xml, its description. Run it without arguments; it always gives the same bytes.
"""
import struct
import uuid

from make_examples import Numbers, escape, write_file

MAGIC = b"OLAM"
BODY_VERSION = 3

# Types of inputs in a description.
FLOAT1, FLOAT2, FLOAT3, FLOAT4 = 0, 1, 2, 3
INT1, IMAGE, STRING = 4, 5, 7
INT2, INT3, INT4 = 8, 9, 10


def node(name, *children, **attributes):
    """An element with its attributes in the order given; those that are None are left out."""
    head = name + "".join(f' {key}="{escape(str(value))}"' for key, value in attributes.items()
                          if value is not None)
    if not children:
        return [f"<{head}/>"]
    return [f"<{head}>"] + [" " + line for child in children for line in child] + [f"</{name}>"]


class Assembly:
    """One pair of files; its uids are drawn from numbers seeded with its path."""

    def __init__(self, path):
        self.path, self.numbers, self.graphs = path, Numbers(path), []
        self.uid = self.numbers.uid()

    def input(self, identifier, kind, default=None, gui=None, usertag=None, altered=()):
        return node("input", *([gui] if gui else []), identifier=identifier,
                    uid=self.numbers.uid(), type=kind, usertag=usertag, default=default,
                    alteroutputs=",".join(str(uid) for uid in altered) or None,
                    alternodes=",".join(str(index) for index in range(len(altered))) or None)

    def output(self, identifier, *channels, label=None, format=0, size=10, mipmaps=0, group=None,
               uid=None, description=None):
        parts = [node("channel", components=components, names=names)
                 for components, names in channels]
        return node("output", *([node("channels", *parts)] if parts else []),
                    *([node("outputgui", label=label, description=description, group=group)]
                      if label else []),
                    identifier=identifier, uid=uid or self.numbers.uid(), format=format, width=size,
                    height=size, mipmaps=mipmaps, dynamicsize="yes" if size == 10 else "no")

    def graph(self, pkgurl, inputs, outputs, **texts):
        lists = [node("inputs", *inputs)] if inputs else []
        lists += [node("outputs", *outputs)] if outputs else []
        self.graphs.append(node("graph", *lists, pkgurl=pkgurl, **texts))

    def body(self):
        content = bytes(self.numbers.below(256) for _ in range(160 + self.numbers.below(200)))
        return MAGIC + struct.pack("<III", BODY_VERSION, len(content), self.uid) + content

    def write(self):
        root = node("obldescription", node("graphs", *self.graphs), asmuid=self.uid,
                    fileUid="{%s}" % uuid.uuid5(uuid.NAMESPACE_OID, self.path))
        text = '<?xml version="1.0" encoding="UTF-8"?>\n' + "\n".join(root) + "\n"
        write_file(self.path + ".xml", text.encode("utf-8"))
        write_file(self.path + ".oblasm", self.body())


def gui(widget=None, *children, **attributes):
    return node("inputgui", *children, **attributes, widget=widget)


def slider(low, high, step=None, clamp="on", labels=(), **attributes):
    numbered = {f"label{index}": text for index, text in enumerate(labels)}
    return node("guislider", min=low, max=high, clamp=clamp, step=step, **attributes, **numbered)


def angle(unit, low, high, **attributes):
    return node("guiangle", min=low, max=high, clamp="off", unit=unit, **attributes)


def combo_box(*entries):
    return node("guicombobox", *(node("guicomboboxitem", value=value, text=text)
                                 for value, text in entries))


def image(color_type):
    return node("guiimage", colortype=color_type)


# assemblies/rust_effect: every type of input, every widget, every part of a description

def make_rust_effect():
    assembly = Assembly("assemblies/rust_effect")
    color_uid, mask_uid, height_uid = (assembly.numbers.uid() for _ in range(3))
    surface = [color_uid, height_uid]
    inputs = [
        assembly.input("source", IMAGE, gui=gui("image", image("color"), label="Source",
                                                description="The clean metal.",
                                                group="Images", state="visible")),
        assembly.input("rust_mask", IMAGE, gui=gui("image", image("grayscale"), group="Images"),
                       usertag="mask", altered=[mask_uid]),
        assembly.input("any_image", IMAGE, gui=gui("image", state="hidden")),
        assembly.input("amount", FLOAT1, "0.35", gui(
            "slider", slider(0, 1, 0.01, labels=("Clean", "Rusty")), label="Amount",
            description="0 is new, 1 is lost.", group="Rust", state="visible"), altered=surface),
        assembly.input("warmth", FLOAT1, "0.5", gui(None, slider(
            0, 1, 0.01, suffix=" %", valuescale=100), group="Rust")),
        assembly.input("wind_angle", FLOAT1, "0.125", gui("angle", angle(
            "turns", 0, 1, suffix="°", valuescale=360), label="Wind", group="Weather")),
        assembly.input("sun_angle", FLOAT1, "45", gui("angle", angle("degrees", 0, 360))),
        assembly.input("drip_angle", FLOAT1, "1.5708", gui(None, angle("radians", -3.14159,
                                                                       3.14159, step=0.1))),
        assembly.input("offset", FLOAT2, "0.25,-0.5", gui("position", slider(
            -0.5, 0.5, 0.01, "off", ("X", "Y")), group="Place")),
        assembly.input("pivot", FLOAT2, "0.5,0.5", gui("position", group="Place")),
        assembly.input("light_colour", FLOAT3, "1,0.9,0.75", gui("color", label="Light colour")),
        assembly.input("rust_colour", FLOAT4, "0.55,0.25,0.1,1", gui(
            "color", label="Rust colour", group="Rust"), "colour"),
        assembly.input("levels", FLOAT4, "0,0.33,0.66,1", gui("slider", slider(
            0, 1, labels=("Low", "Mid low", "Mid high", "High")), state="disabled")),
        assembly.input("random_seed", INT1, "7", gui("slider", slider(0, 1000, 1, "no"))),
        assembly.input("metal", INT1, "2", gui("dropdownlist", combo_box(
            (0, "Iron"), (1, "Steel"), (2, "Cast iron & slag")), label="Metal")),
        assembly.input("has_drips", INT1, "yes", gui("togglebutton", label="Drips")),
        assembly.input("is_painted", INT1, "0", gui("togglebutton", group="Paint")),
        assembly.input("quality", INT1, "1", gui("buttons", combo_box((0, "Draft"), (1, "Good")))),
        assembly.input("output_size", INT2, "10,10", gui("slider", slider(
            4, 12, 1, labels=("Width", "Height")))),
        assembly.input("counts", INT3, "1,2,3", gui("slider", slider(0, 16, 1))),
        assembly.input("region", INT4, "0,0,512,512", gui(label="Region", usertag="pixels")),
        assembly.input("stamp", STRING, 'Müller & "Söhne"', gui("text", label="Stamp")),
        assembly.input("bare", FLOAT1),
    ]
    outputs = [
        assembly.output("color", ("RGB", "diffuse"), ("A", "opacity"), label="Colour",
                        description="Colour with transparent holes.", group="Material", mipmaps=8,
                        uid=color_uid),
        assembly.output("mask", ("R", "mask"), label="Mask", format=1, uid=mask_uid),
        assembly.output("height", ("R", "height"), ("R", "displacement"), label="Height",
                        format=1, size=512, uid=height_uid),
        assembly.output("normal", ("RGBA", "normal"), label="Normal", format=2, mipmaps=12),
        assembly.output("gloss", ("RGBA", "glossiness"), label="Gloss", size=11),
        assembly.output("preview"),
    ]
    assembly.graph("pkg://rust_effect/rust", inputs, outputs, label="Rust", keywords="rust;metal",
                   description="Rust on iron.\nFlaking & drips.", author="André Müller",
                   authorurl="", usertag="v3")
    assembly.graph("pkg://rust_effect/parts/drips", [
        assembly.input("length", FLOAT1, "0.4", gui("slider", slider(0, 1)))],
        [assembly.output("drips", ("RGBA", "mask"))], label="Drips")
    assembly.graph("pkg://rust_effect/parts/noise", [], [assembly.output("noise")], label="Noise")
    assembly.write()


# The sources of the archives

def make_filter(folder, name, color, roughness, **texts):
    assembly = Assembly(f"{folder}/{name}")
    package = folder.split("/")[2]  # the folder of the archive
    assembly.graph(f"pkg://{package}/{name}", [
        assembly.input("source", IMAGE, gui=gui("image", image("color"), label="Source")),
        assembly.input("strength", FLOAT1, "0.5", gui("slider", slider(0, 1, 0.01), group=name)),
        assembly.input("colour", FLOAT3, color, gui("color", label="Colour")),
        assembly.input("finish", INT1, "0", gui("dropdownlist", combo_box(
            (0, "Raw"), (1, "Polished")))),
        assembly.input("tiling", INT2, "1,1", gui("slider", slider(1, 16, 1, labels="XY")))],
        [assembly.output("colour", ("RGB", "diffuse"), label="Colour"),
         assembly.output("roughness", ("R", roughness), label="Surface", format=1)],
        label=name.replace("_", " ").capitalize(), **texts)
    assembly.write()


def make_metal_filters():
    content = "assemblies/sources/metal_filters/assemblies/content"
    make_filter(content + "/2041", "patina", "0.3,0.6,0.5", "roughness",
                description="Green of old copper.")
    make_filter(content + "/2041", "tarnish", "0.35,0.3,0.25", "roughness", keywords="silver")
    make_filter(content + "/2077", "brushed_steel", "0.8,0.8,0.82", "anisotropyLevel",
                author="Zoë Lefèvre")


def make_stone_filters():
    content = "assemblies/sources/stone_filters/assemblies/content"
    authoring = "assemblies/sources/stone_filters/authoring/content"
    make_filter(content + "/311", "marble", "0.9,0.88,0.85", "glossiness")
    make_filter(content + "/312", "granite", "0.4,0.4,0.42", "roughness", usertag="coarse")
    write_file(authoring + "/311/marble.txt", b"Veins by hand, after a slab of the old bath.\n")
    write_file(authoring + "/400/slate.txt", b"Not compiled yet.\n")


def main():
    make_rust_effect()
    make_metal_filters()
    make_stone_filters()


if __name__ == "__main__":
    main()

"""A library of packages for tests of batches."""

PACKAGE = """<?xml version="1.0" encoding="UTF-8"?><package><packageType v="Kestrix"/>\
<identifier v="{name}"/><formatVersion v="1.1.0.7049"/><updaterVersion v="1.1.0.7049"/>\
<platform v="1"/><author v="me"/><fileUID v="0"/><versionUID v="1"/><configurations>\
<name v="default"/><uid v="1"/><configuration/></configurations><dependencies>{needs}\
</dependencies><content>{groups}</content></package>
"""
GROUP = '<group><identifier v="g{0}"/><uid v="{0}"/><content/></group>'
NEED = """<dependency><filename v="{0}"/><uid v="{1}"/><type v="package"/><fileUID v="0"/>\
<versionUID v="0"/></dependency>"""


def write_package(path, needs, groups=""):
    """A package that needs others, by the names in its file."""
    path.parent.mkdir(exist_ok=True)
    dependencies = "".join(NEED.format(name, 1000 + i) for i, name in enumerate(needs))
    path.write_text(PACKAGE.format(name=path.stem, needs=dependencies, groups=groups))


def make_library(folder, count):
    """Packages of which every third needs the one before."""
    folder.mkdir()
    groups = "".join(GROUP.format(number) for number in range(1, 200))
    for number in range(count):
        needs = [f"p{number - 1}.obl"] if number % 3 == 2 else []
        write_package(folder / f"p{number}.obl", needs, groups)


def results_in(folder):
    return {path.name: path.read_bytes() for path in folder.glob("*.obl")}

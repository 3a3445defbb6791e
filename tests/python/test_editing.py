"""All edits, each with its effect and its undo."""

from __future__ import annotations

import pathlib
from collections.abc import Callable

import kestrix
import pytest
from samples import BRICKS, EXAMPLES, FABRIC, RUST, WOOD

STEEL = EXAMPLES / "effects" / "steel_plate.png"


@pytest.fixture
def rust(session: kestrix.Session) -> kestrix.Graph:
    return session.open(RUST).graphs[0]


@pytest.fixture
def chain(graph: kestrix.Graph) -> tuple[kestrix.FilterNode, kestrix.FilterNode]:
    """Two filters, of which the first can feed the second."""
    return graph.add_filter("uniform"), graph.add_filter("blur")


@pytest.fixture
def body(graph: kestrix.Graph) -> kestrix.FunctionGraph:
    """The function of a parameter, which is a constant at first."""
    return graph.add_filter("blur").parameter("intensity").make_dynamic()


# The texts of packages, inputs and outputs.

@pytest.mark.parametrize("name", ["author", "description"])
def test_texts_of_a_package_can_be_written(session: kestrix.Session, wood: kestrix.Package,
                                           name: str) -> None:
    before = getattr(wood, name)
    setattr(wood, name, "Zoë\n& <co>")
    after = getattr(wood, name)
    session.undo()

    assert (after, getattr(wood, name)) == ("Zoë\n& <co>", before)


@pytest.mark.parametrize("name", ["label", "description", "group"])
def test_texts_of_an_input_can_be_written(session: kestrix.Session, rust: kestrix.Graph,
                                          name: str) -> None:
    before = getattr(rust.inputs[0], name)
    setattr(rust.inputs[0], name, "new")
    after = getattr(rust.inputs[0], name)
    session.undo()

    assert (after, getattr(rust.inputs[0], name)) == ("new", before)


@pytest.mark.parametrize("name", ["label", "description"])
def test_texts_of_an_output_can_be_written(rust: kestrix.Graph, name: str) -> None:
    setattr(rust.outputs[0], name, "new")

    assert getattr(rust.outputs[0], name) == "new"


def test_writing_the_present_value_is_no_step(session: kestrix.Session,
                                              wood: kestrix.Package) -> None:
    wood.author = wood.author

    assert not session.can_undo


# Graphs, resources and dependencies of a package.

def test_a_graph_is_added_with_a_free_identifier(wood: kestrix.Package) -> None:
    first = wood.add_graph("oak")
    second = wood.add_graph("oak")

    assert [first.identifier, second.identifier] == ["oak", "oak_1"]
    assert wood.graphs[-2:] == [first, second]


def test_an_identifier_is_brought_into_legal_form(wood: kestrix.Package) -> None:
    graph = wood.add_graph("oak")
    graph.identifier = "dark/oak"

    assert graph.identifier == "dark_oak"


@pytest.mark.parametrize("item", [
    lambda graph: graph, lambda graph: graph.inputs[0], lambda graph: graph.outputs[0]],
    ids=["graph", "input", "output"])
def test_an_identifier_of_nothing_legal_is_refused(
        rust: kestrix.Graph, item: Callable[[kestrix.Graph], kestrix.Graph]) -> None:
    with pytest.raises(kestrix.EditError, match="legal"):
        item(rust).identifier = "///"


def test_references_follow_a_renamed_graph(session: kestrix.Session) -> None:
    bricks = session.open(BRICKS)
    bond = bricks.graph("bond")
    users = [node for node in bricks.graphs[0].nodes
             if isinstance(node, kestrix.InstanceNode) and node.reference == bond]

    bond.identifier = "masonry"

    assert users
    assert all(node.path.split("?")[0].endswith("/masonry") for node in users)
    assert all(node.reference == bond for node in users)


def test_functions_follow_a_renamed_input(session: kestrix.Session) -> None:
    entry = session.open(BRICKS).graphs[0].input("wear")
    entry.identifier = "age"

    assert {node.value for node in entry.users} == {"age"}
    assert len(entry.users) == 11


def test_a_renamed_output_keeps_its_node(rust: kestrix.Graph) -> None:
    output = rust.outputs[0]
    node = output.node
    output.identifier = "albedo"

    assert rust.output("albedo") == output
    assert output.node == node


def test_a_resource_is_added_as_a_link(wood: kestrix.Package) -> None:
    resource = wood.add_resource(STEEL)

    assert resource.identifier == "steel_plate"
    assert (resource.path, resource.format) == (STEEL, "PNG")
    assert resource.read() == STEEL.read_bytes()


def test_a_resource_may_be_named(wood: kestrix.Package) -> None:
    assert wood.add_resource(STEEL, "steel").identifier == "steel"


def test_a_relative_path_of_a_resource_starts_in_the_current_folder(
        wood: kestrix.Package, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(STEEL.parent)

    assert wood.add_resource(STEEL.name).path == STEEL


def test_a_resource_can_link_to_another_file(session: kestrix.Session,
                                             wood: kestrix.Package) -> None:
    resource = wood.resource("oak_color")
    before = (resource.path, resource.checksum)
    resource.link_to(STEEL)
    after = (resource.path, resource.read())
    session.undo()

    assert after == (STEEL, STEEL.read_bytes())
    assert (resource.path, resource.checksum) == before


def test_a_resource_inside_the_package_cannot_link(wood: kestrix.Package) -> None:
    with pytest.raises(kestrix.EditError, match="inside"):
        wood.resource("oak_grain").link_to(STEEL)


def test_the_cooked_form_of_a_resource_can_be_written(wood: kestrix.Package) -> None:
    resource = wood.resource("oak_color")
    resource.cooked_format = 2
    resource.cooked_quality = 0.5

    assert (resource.cooked_format, resource.cooked_quality) == (2, 0.5)


def test_a_dependency_can_be_removed(session: kestrix.Session) -> None:
    package = session.open(BRICKS)
    dependency = package.dependencies[0]
    dependency.remove()

    assert not dependency.is_valid
    assert len(package.dependencies) == 2


def test_a_dependency_without_references_is_unused(session: kestrix.Session,
                                                   graph: kestrix.Graph) -> None:
    node = graph.add_instance(session.open(WOOD, dependencies=False).graphs[0])
    used = graph.package.unused_dependencies()
    node.remove()

    assert used == []
    assert [dependency.path for dependency in graph.package.unused_dependencies()] == [WOOD]


# Nodes and connections.

def test_a_filter_node_is_added(graph: kestrix.Graph) -> None:
    node = graph.add_filter("blur")

    assert graph.nodes == [node]
    assert (node.filter, node.graph) == ("blur", graph)


@pytest.mark.parametrize("name", ["nope", "", "Ω"])
def test_an_unknown_filter_raises_value_error(graph: kestrix.Graph, name: str) -> None:
    with pytest.raises(ValueError, match="no filter is called"):
        graph.add_filter(name)


def test_an_instance_brings_its_dependency(session: kestrix.Session, graph: kestrix.Graph) -> None:
    wood = session.open(WOOD, dependencies=False)
    node = graph.add_instance(wood.graphs[0])

    assert node.reference == wood.graphs[0]
    assert [dependency.package for dependency in graph.package.dependencies
            if not dependency.is_own] == [wood]
    assert [output.identifier for output in node.outputs] == [
        output.identifier for output in wood.graphs[0].outputs]


def test_an_input_node_comes_with_its_input(graph: kestrix.Graph) -> None:
    node = graph.add_input_node("mask", "grayscale", [("mask", "R")])

    assert node.entry == graph.input("mask")
    assert (graph.input("mask").type, graph.input("mask").is_image) == ("grayscale", True)


def test_an_output_node_comes_with_its_output(graph: kestrix.Graph) -> None:
    node = graph.add_output_node("diffuse", usages=[("diffuse", "RGBA"), ("opacity", "A")])

    assert node.entry is not None
    assert node.entry.usages == [("diffuse", "RGBA"), ("opacity", "A")]
    assert node.entry.node == node


@pytest.mark.parametrize("add", ["add_input_node", "add_output_node"])
def test_images_alone_have_input_and_output_nodes(graph: kestrix.Graph, add: str) -> None:
    with pytest.raises(ValueError, match="an image is wanted"):
        getattr(graph, add)("x", "float1")


@pytest.mark.parametrize("add", ["add_input_node", "add_output_node", "add_input"])
def test_an_unknown_type_raises_value_error(graph: kestrix.Graph, add: str) -> None:
    with pytest.raises(ValueError, match='no type is called "colour"'):
        getattr(graph, add)("x", "colour")


def test_an_input_of_values_cannot_take_images(graph: kestrix.Graph) -> None:
    with pytest.raises(kestrix.EditError, match="add_input_node"):
        graph.add_input("x", "color")


@pytest.mark.parametrize("usages", [["diffuse"], "ab", [("a", "b", "c")], [("a", 1)], [None], 7])
def test_usages_are_pairs_of_texts(graph: kestrix.Graph, usages: list[tuple[str, str]]) -> None:
    with pytest.raises(TypeError):
        graph.add_output_node("x", "color", usages)

    assert graph.outputs == []


def test_nodes_are_connected(graph: kestrix.Graph,
                             chain: tuple[kestrix.FilterNode, kestrix.FilterNode]) -> None:
    first, second = chain
    graph.connect(first.outputs[0], second.inputs[0])

    assert graph.connections == [(first.outputs[0], second.inputs[0])]
    assert second.inputs[0].sources == [first.outputs[0]]


@pytest.mark.parametrize("connect", [
    lambda output, entry: output.connect(entry), lambda output, entry: entry.connect(output)],
    ids=["output", "input"])
def test_connectors_connect_themselves(
        chain: tuple[kestrix.FilterNode, kestrix.FilterNode],
        connect: Callable[[kestrix.OutputConnector, kestrix.InputConnector], None]) -> None:
    output, entry = chain[0].outputs[0], chain[1].inputs[0]
    connect(output, entry)

    assert output.targets == [entry]


def test_a_new_connection_replaces_the_former_one(
        graph: kestrix.Graph, chain: tuple[kestrix.FilterNode, kestrix.FilterNode]) -> None:
    other = graph.add_filter("uniform")
    chain[0].outputs[0].connect(chain[1].inputs[0])
    other.outputs[0].connect(chain[1].inputs[0])

    assert chain[1].inputs[0].sources == [other.outputs[0]]


def test_a_connection_may_be_added_to_the_former_one(
        graph: kestrix.Graph, chain: tuple[kestrix.FilterNode, kestrix.FilterNode]) -> None:
    other = graph.add_filter("uniform")
    chain[0].outputs[0].connect(chain[1].inputs[0])
    other.outputs[0].connect(chain[1].inputs[0], replace=False)

    assert len(chain[1].inputs[0].sources) == 2


def test_a_node_does_not_feed_itself(graph: kestrix.Graph) -> None:
    node = graph.add_filter("blur")

    with pytest.raises(kestrix.EditError, match="cannot be connected"):
        node.outputs[0].connect(node.inputs[0])


def test_nodes_of_two_graphs_are_not_connected(graph: kestrix.Graph) -> None:
    other = graph.package.add_graph("other").add_filter("uniform")

    with pytest.raises(kestrix.EditError, match="cannot be connected"):
        graph.add_filter("blur").inputs[0].connect(other.outputs[0])


@pytest.mark.parametrize("disconnect", [
    lambda output, entry: output.disconnect(entry), lambda output, entry: entry.disconnect(output),
    lambda output, entry: output.node.graph.disconnect(output, entry)],
    ids=["output", "input", "graph"])
def test_a_connection_is_removed(
        graph: kestrix.Graph, chain: tuple[kestrix.FilterNode, kestrix.FilterNode],
        disconnect: Callable[[kestrix.OutputConnector, kestrix.InputConnector], None]) -> None:
    output, entry = chain[0].outputs[0], chain[1].inputs[0]
    output.connect(entry)
    disconnect(output, entry)

    assert graph.connections == []


def test_a_missing_connection_cannot_be_removed(
        chain: tuple[kestrix.FilterNode, kestrix.FilterNode]) -> None:
    with pytest.raises(kestrix.EditError, match="not connected"):
        chain[0].outputs[0].disconnect(chain[1].inputs[0])


def test_an_input_connects_to_no_input(
        chain: tuple[kestrix.FilterNode, kestrix.FilterNode]) -> None:
    with pytest.raises(TypeError):
        chain[0].outputs[0].connect(chain[1].outputs[0])  # type: ignore[arg-type]


def test_a_removed_node_takes_its_connections_along(
        graph: kestrix.Graph, chain: tuple[kestrix.FilterNode, kestrix.FilterNode]) -> None:
    chain[0].outputs[0].connect(chain[1].inputs[0])
    chain[0].remove()

    assert graph.nodes == [chain[1]]
    assert chain[1].inputs[0].sources == []


def test_a_removed_node_may_leave_its_connections(
        session: kestrix.Session, graph: kestrix.Graph,
        chain: tuple[kestrix.FilterNode, kestrix.FilterNode]) -> None:
    chain[0].outputs[0].connect(chain[1].inputs[0])
    chain[0].remove(disconnect=False)
    session.undo()

    assert graph.connections == [(chain[0].outputs[0], chain[1].inputs[0])]


@pytest.mark.parametrize("add, listed", [("add_input_node", "inputs"),
                                         ("add_output_node", "outputs")])
def test_a_removed_bridge_takes_its_entry_along(graph: kestrix.Graph, add: str,
                                                listed: str) -> None:
    getattr(graph, add)("x").remove()

    assert getattr(graph, listed) == []


def test_nodes_of_an_fx_map_cannot_be_removed(session: kestrix.Session) -> None:
    node = next(node for graph in session.open(FABRIC).graphs for node in graph.nodes
                if isinstance(node, kestrix.FilterNode) and node.parameter_graph)
    assert node.parameter_graph is not None

    with pytest.raises(kestrix.EditError, match="cannot be removed"):
        node.parameter_graph.nodes[0].remove()


def test_a_node_can_be_moved(session: kestrix.Session, graph: kestrix.Graph) -> None:
    node = graph.add_filter("blur")
    before = node.position
    node.position = (16.5, -32)
    after = node.position
    session.undo()

    assert (after, node.position) == ((16.5, -32.0), before)


def test_the_depth_of_a_node_can_be_written(graph: kestrix.Graph) -> None:
    node = graph.add_filter("blur")
    node.depth = 3

    assert node.depth == 3.0


# Inputs.

def test_an_input_of_values_is_added(graph: kestrix.Graph) -> None:
    entry = graph.add_input("scale", "float2")

    assert graph.inputs == [entry]
    assert (entry.identifier, entry.type) == ("scale", "float2")


def test_a_removed_input_is_gone(rust: kestrix.Graph) -> None:
    entry = rust.inputs[-1]
    entry.remove()

    assert not entry.is_valid
    assert entry not in rust.inputs


def test_a_frozen_input_becomes_its_default(session: kestrix.Session) -> None:
    graph = session.open(BRICKS).graphs[0]
    parameters = parameters_reading(graph.input("light_angle"))
    graph.input("light_angle").freeze()

    assert [constant_of(parameter) for parameter in parameters] == [("const_float1", 0.125)]
    assert "light_angle" not in [entry.identifier for entry in graph.inputs]


def parameters_reading(entry: kestrix.Input) -> list[kestrix.Parameter]:
    """The parameters of nodes of images whose functions do no more than read an input."""
    parameters = [parameter for node in entry.graph.nodes for parameter in node.parameters]
    return [parameter for parameter in parameters
            if parameter.function and parameter.function.nodes == entry.users]


def constant_of(parameter: kestrix.Parameter) -> object:
    assert parameter.function is not None
    node = parameter.function.nodes[0]
    return node.function, node.value


def test_an_input_freezes_to_a_value(session: kestrix.Session) -> None:
    graph = session.open(BRICKS).graphs[0]
    parameters = parameters_reading(graph.input("brick_count"))
    graph.input("brick_count").freeze([3, 4])

    assert [constant_of(parameter) for parameter in parameters] == [("const_int2", (3, 4))]


def test_freezing_is_one_step(session: kestrix.Session) -> None:
    graph = session.open(BRICKS).graphs[0]
    graph.input("wear").freeze(0.5)
    session.undo()

    assert len(graph.input("wear").users) == 11
    assert not session.can_undo


def test_an_input_of_images_cannot_be_frozen(rust: kestrix.Graph) -> None:
    image = next(entry for entry in rust.inputs if entry.is_image)

    with pytest.raises(kestrix.EditError, match="cannot be frozen"):
        image.freeze()


def test_an_input_can_look_like_another(session: kestrix.Session, graph: kestrix.Graph) -> None:
    model = session.open(BRICKS).graphs[0].input("brick_count")
    entry = graph.add_input("count")
    entry.look_like(model)

    assert (entry.type, entry.default, entry.label) == (model.type, model.default, model.label)
    assert (entry.minimum, entry.maximum) == ("1", "64")


def test_an_input_can_look_like_a_parameter(graph: kestrix.Graph) -> None:
    entry = graph.add_input("strength", "bool")
    entry.look_like(graph.add_filter("blur").parameter("intensity"))

    assert (entry.type, entry.default) == ("float1", 10.0)


def test_an_input_of_images_looks_like_no_other(graph: kestrix.Graph) -> None:
    graph.add_input_node("image")

    with pytest.raises(kestrix.EditError, match="images"):
        graph.input("image").look_like(graph.add_input("x"))


@pytest.mark.parametrize("name, number", [("format", 1), ("mipmaps", 3)])
def test_the_form_of_an_output_can_be_written(rust: kestrix.Graph, name: str, number: int) -> None:
    setattr(rust.outputs[0], name, number)

    assert getattr(rust.outputs[0], name) == number


# Parameters.

def test_the_value_of_a_parameter_is_stored(session: kestrix.Session, graph: kestrix.Graph) -> None:
    parameter = graph.add_filter("blur").parameter("intensity")
    parameter.value = 2.5
    after = (parameter.value, parameter.is_stored)
    session.undo()

    assert after == (2.5, True)
    assert (parameter.value, parameter.is_stored) == (10.0, False)


def test_a_parameter_of_a_graph_can_be_written(graph: kestrix.Graph) -> None:
    graph.parameter("outputsize").value = (10, 9)

    assert graph.parameter("outputsize").value == (10, 9)


def test_writing_the_value_that_counts_is_allowed(graph: kestrix.Graph) -> None:
    parameter = graph.add_filter("blur").parameter("intensity")
    parameter.value = 10.0

    assert not parameter.is_stored


def test_the_name_of_a_choice_stands_for_its_value(graph: kestrix.Graph) -> None:
    parameter = graph.parameter("format")
    parameter.value = "hdr_low_precision"

    assert parameter.value == parameter.choices["hdr_low_precision"] == 2


def test_an_unknown_choice_raises_type_error(graph: kestrix.Graph) -> None:
    with pytest.raises(TypeError, match="'hdr'"):
        graph.parameter("format").value = "hdr"


def test_every_choice_of_every_parameter_can_be_written(graph: kestrix.Graph) -> None:
    parameters = [parameter for name in ("blend", "transformation", "bitmap", "normal", "warp")
                  for parameter in graph.add_filter(name).parameters]
    written = [(write(parameter, name), value) for parameter in parameters
               for name, value in parameter.choices.items()]

    assert len(written) > 40
    assert [before for before, _ in written] == [value for _, value in written]


def write(parameter: kestrix.Parameter, value: str) -> object:
    parameter.value = value
    return parameter.value


@pytest.mark.parametrize("method", ["absolute", "input", "parent"])
def test_a_parameter_can_be_relative(graph: kestrix.Graph, method: str) -> None:
    parameter = graph.add_filter("blur").parameter("outputsize")
    parameter.relative_to = method

    assert parameter.relative_to == method


def test_a_parameter_is_relative_to_nothing_else(graph: kestrix.Graph) -> None:
    with pytest.raises(ValueError, match='"moon"'):
        graph.add_filter("blur").parameter("outputsize").relative_to = "moon"


def test_a_parameter_without_such_a_choice_cannot_be_relative(graph: kestrix.Graph) -> None:
    with pytest.raises(kestrix.EditError, match="relative"):
        graph.add_filter("text").parameter("text").relative_to = "parent"


def test_a_parameter_of_connections_has_no_value(graph: kestrix.Graph) -> None:
    parameter = graph.add_filter("fxmaps").parameter("inputpattern")

    with pytest.raises(kestrix.EditError, match="no value"):
        parameter.value = 1

    assert parameter.value is None


def test_a_parameter_becomes_dynamic(session: kestrix.Session, graph: kestrix.Graph) -> None:
    parameter = graph.add_filter("blur").parameter("intensity")
    function = parameter.make_dynamic()

    assert (parameter.is_dynamic, parameter.function) == (True, function)
    assert [(node.function, node.value, node.is_output) for node in function.nodes] == [
        ("const_float1", 10.0, True)]
    assert session.undo()
    assert (parameter.is_dynamic, parameter.function) == (False, None)


def test_a_dynamic_parameter_keeps_its_function(graph: kestrix.Graph) -> None:
    parameter = graph.add_filter("blur").parameter("intensity")

    assert parameter.make_dynamic() == parameter.make_dynamic()


def test_a_plain_value_replaces_a_function(graph: kestrix.Graph) -> None:
    parameter = graph.add_filter("blur").parameter("intensity")
    function = parameter.make_dynamic()
    parameter.value = 3

    assert (parameter.value, parameter.is_dynamic) == (3.0, False)
    assert not function.is_valid


def test_a_parameter_links_to_an_input(graph: kestrix.Graph) -> None:
    entry = graph.add_input("strength")
    parameter = graph.add_filter("blur").parameter("intensity")
    parameter.link_to(entry)

    assert parameter.function is not None
    assert entry.users == parameter.function.nodes


def test_a_parameter_links_to_no_image(graph: kestrix.Graph) -> None:
    graph.add_input_node("image")

    with pytest.raises(kestrix.EditError, match="cannot read"):
        graph.add_filter("blur").parameter("intensity").link_to(graph.input("image"))


# Functions.

def test_a_function_node_is_added(body: kestrix.FunctionGraph) -> None:
    node = body.add("mul")

    assert (node.function, node in body.nodes, node.is_output) == ("mul", True, False)


def test_an_unknown_function_raises_value_error(body: kestrix.FunctionGraph) -> None:
    with pytest.raises(ValueError, match='no function is called "nope"'):
        body.add("nope")


def test_a_function_can_be_built(body: kestrix.FunctionGraph) -> None:
    constant = body.nodes[0]
    product = body.add("mul")
    body.connect(constant.outputs[0], product.inputs[0])
    body.connect(constant.outputs[0], product.inputs[1])
    body.output_node = product

    assert body.output_node == product
    assert product.is_output
    assert product.type == "float1"
    assert body.connections == [(constant.outputs[0], entry) for entry in product.inputs]


def test_function_nodes_are_disconnected(body: kestrix.FunctionGraph) -> None:
    constant, product = body.nodes[0], body.add("mul")
    body.connect(constant.outputs[0], product.inputs[0])
    body.disconnect(constant.outputs[0], product.inputs[0])

    assert body.connections == []


def test_a_node_of_another_graph_is_no_output_node(graph: kestrix.Graph,
                                                   body: kestrix.FunctionGraph) -> None:
    other = graph.add_filter("blur").parameter("intensity").make_dynamic()

    with pytest.raises(kestrix.EditError, match="output"):
        body.output_node = other.add("mul")


def test_a_node_can_replace_another_one_as_source(session: kestrix.Session,
                                                  body: kestrix.FunctionGraph) -> None:
    constant, other, product = body.nodes[0], body.add("const_float1"), body.add("mul")
    body.connect(constant.outputs[0], product.inputs[0])
    body.connect(constant.outputs[0], product.inputs[1])
    body.replace_source(constant, other)
    after = {entry.sources[0].node for entry in product.inputs}
    session.undo()

    assert after == {other}
    assert {entry.sources[0].node for entry in product.inputs} == {constant}


def test_the_value_of_a_function_node_can_be_written(body: kestrix.FunctionGraph) -> None:
    body.nodes[0].value = 0.5

    assert body.nodes[0].value == 0.5


def test_a_function_node_names_an_input(graph: kestrix.Graph, body: kestrix.FunctionGraph) -> None:
    entry = graph.add_input("strength")
    reader = body.add("get_float1")
    reader.value = "strength"

    assert entry.users == [reader]


def test_a_function_node_without_value_refuses_one(body: kestrix.FunctionGraph) -> None:
    with pytest.raises(kestrix.EditError, match="holds no value"):
        body.add("mul").value = 1.0


# Values that cannot be written.

@pytest.mark.parametrize("write", [
    lambda graph: setattr(graph.package, "author", "Ω"),
    lambda graph: setattr(graph, "identifier", "Ω"),
    lambda graph: graph.package.add_graph("Ω"),
    lambda graph: graph.package.graph("Ω"),
    lambda graph: graph.package.find("pkg://Ω"),
    lambda graph: graph.add_input("Ω"),
    lambda graph: graph.add_input_node("Ω"),
    lambda graph: graph.add_output_node("x", "color", [("Ω", "R")]),
    lambda graph: graph.input("Ω"),
    lambda graph: graph.parameter("Ω"),
    lambda graph: graph.package.edit("Ω"),
    lambda graph: setattr(graph.parameter("format"), "value", "\udc80"),
], ids=range(12))
def test_texts_outside_latin_1_raise_unicode_encode_error(
        session: kestrix.Session, graph: kestrix.Graph,
        write: Callable[[kestrix.Graph], object]) -> None:
    session.forget_steps()

    with pytest.raises(UnicodeEncodeError):
        write(graph)

    assert not session.can_undo


@pytest.mark.parametrize("write", [
    lambda graph: setattr(graph.package, "author", 1),
    lambda graph: setattr(graph.package, "author", b"x"),
    lambda graph: setattr(graph, "identifier", None),
    lambda graph: graph.package.add_graph(1),
    lambda graph: graph.package.add_resource(None),
    lambda graph: graph.add_instance(None),
    lambda graph: graph.add_instance(graph.package),
    lambda graph: graph.node("1"),
    lambda graph: graph.node(-1),
    lambda graph: graph.node(2**32),
    lambda graph: graph.package.edit(None),
    lambda graph: setattr(graph.add_filter("blur"), "position", (1,)),
    lambda graph: setattr(graph.add_filter("blur"), "position", 1.0),
    lambda graph: setattr(graph.add_filter("blur"), "depth", "deep"),
    lambda graph: graph.add_input("x").look_like(graph),
    lambda graph: graph.parameter("outputsize").link_to(graph),
], ids=range(16))
def test_a_wrong_type_raises_type_error(graph: kestrix.Graph,
                                        write: Callable[[kestrix.Graph], object]) -> None:
    with pytest.raises(TypeError):
        write(graph)


@pytest.mark.parametrize("name, value", [
    ("position", (float("nan"), 0)), ("position", (0, float("inf"))), ("position", (1e300, 0)),
    ("depth", float("nan")), ("depth", -float("inf"))])
def test_a_place_is_finite(graph: kestrix.Graph, name: str, value: object) -> None:
    node = graph.add_filter("blur")
    before = getattr(node, name)

    with pytest.raises(kestrix.EditError, match="finite"):
        setattr(node, name, value)

    assert getattr(node, name) == before


@pytest.mark.parametrize("name", ["uid", "nodes", "inputs", "url", "package", "is_valid"])
def test_a_property_without_setter_raises_attribute_error(graph: kestrix.Graph, name: str) -> None:
    with pytest.raises(AttributeError):
        setattr(graph, name, None)


def test_the_quality_of_a_resource_is_finite(wood: kestrix.Package) -> None:
    with pytest.raises(kestrix.EditError, match="finite"):
        wood.resources[0].cooked_quality = float("nan")


def test_a_path_is_a_path(tmp_path: pathlib.Path, wood: kestrix.Package) -> None:
    with pytest.raises(ValueError, match="null byte"):
        wood.add_resource("a\0b.png")

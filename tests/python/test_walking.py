"""Packages are shown as objects with properties and lists."""

from __future__ import annotations

import pathlib

import kestrix
import pytest
from samples import BRICKS, EVERYTHING, FABRIC, PRESETS, RUST, WOOD, name_of


@pytest.fixture
def bricks(session: kestrix.Session) -> kestrix.Package:
    return session.open(BRICKS)


@pytest.fixture
def everything(session: kestrix.Session) -> kestrix.Package:
    return session.open(EVERYTHING, dependencies=False)


@pytest.fixture
def fx_map(session: kestrix.Session) -> kestrix.ParameterGraph:
    """The graph of the first FX-map of a package."""
    found = [node.parameter_graph for graph in session.open(FABRIC).graphs for node in graph.nodes
             if isinstance(node, kestrix.FilterNode) and node.parameter_graph]
    return found[0]


def test_a_package_has_its_texts(wood: kestrix.Package) -> None:
    assert wood.identifier == "wood_planks"
    assert wood.author == "Åsa Öberg"
    assert wood.description.startswith("Planks of oak, pine & larch.\n")
    assert wood.format_version == "1.1.0.7049"
    assert wood.updater_version == "1.1.0.7049"
    assert wood.file_uid.startswith("{")


def test_a_new_package_has_no_path(session: kestrix.Session) -> None:
    assert session.add_package("new").path is None


def test_graphs_come_in_the_order_of_the_document_those_in_groups_too(
        everything: kestrix.Package) -> None:
    assert [graph.identifier for graph in everything.graphs] == [
        "Stamp", "Everything", "helper", "empty_graph", "every_constant"]


def test_functions_and_resources_are_listed(everything: kestrix.Package) -> None:
    assert [function.identifier for function in everything.functions] == [
        "fade", "pi", "swing", "local_gain"]
    assert [resource.identifier for resource in everything.resources] == ["stamp-image"]


@pytest.mark.parametrize("kind, identifier", [
    ("graph", "helper"), ("function", "swing"), ("resource", "stamp-image")])
def test_content_is_found_by_its_identifier(everything: kestrix.Package, kind: str,
                                            identifier: str) -> None:
    assert getattr(everything, kind)(identifier).identifier == identifier


@pytest.mark.parametrize("kind", ["graph", "function", "resource"])
@pytest.mark.parametrize("identifier", ["none", "", "été"])
def test_missing_content_raises_key_error_with_its_identifier(
        everything: kestrix.Package, kind: str, identifier: str) -> None:
    with pytest.raises(KeyError) as raised:
        getattr(everything, kind)(identifier)

    assert raised.value.args == (identifier,)


def test_content_has_a_data_path_that_leads_to_it(everything: kestrix.Package) -> None:
    graph = everything.graph("helper")

    assert graph.url.startswith("pkg://first/second/Everything/inside/helper?dependency=")
    assert everything.find(graph.url) == graph


def test_a_data_path_leads_into_another_package(bricks: kestrix.Package) -> None:
    node = next(node for node in bricks.graphs[0].nodes
                if isinstance(node, kestrix.InstanceNode) and "noises" in node.path)

    found = bricks.find(node.path)

    assert isinstance(found, kestrix.Graph)
    assert found == node.reference
    assert found.package.identifier == "noises"


@pytest.mark.parametrize("url", ["", "rubbish", "pkg://none?dependency=1"])
def test_a_data_path_that_leads_nowhere_finds_none(everything: kestrix.Package, url: str) -> None:
    assert everything.find(url) is None


def test_dependencies_name_files_and_open_packages(bricks: kestrix.Package) -> None:
    library = bricks.dependencies[1]

    assert library.path == PRESETS / "presets_library.obl"
    assert library.package is not None
    assert library.package.identifier == "presets_library"
    assert not library.is_own


def test_a_package_depends_on_itself(bricks: kestrix.Package) -> None:
    own = bricks.dependencies[2]

    assert own.is_own
    assert own.path is None
    assert own.package == bricks
    assert f"dependency={own.uid}" in bricks.graphs[0].url


def test_used_dependencies_are_not_listed_as_unused(bricks: kestrix.Package) -> None:
    assert bricks.unused_dependencies() == []


def test_inputs_have_all_that_users_see(bricks: kestrix.Package) -> None:
    entry = bricks.graphs[0].input("brick_count")

    assert (entry.identifier, entry.type, entry.is_image) == ("brick_count", "int2", False)
    assert (entry.label, entry.group, entry.description) == ("Brick count", "Bricks", "")
    assert (entry.default, entry.minimum, entry.maximum) == ((6, 16), "1", "64")
    assert entry.graph == bricks.graphs[0]
    assert entry.uid > 0


def test_an_input_of_images_has_no_default(bricks: kestrix.Package) -> None:
    entry = bricks.graphs[0].input("custom_brick")

    assert (entry.type, entry.is_image, entry.default) == ("color", True, None)
    assert (entry.minimum, entry.maximum) == (None, None)


def test_the_users_of_an_input_read_it(bricks: kestrix.Package) -> None:
    users = bricks.graphs[0].input("wear").users

    assert len(users) == 11
    assert {node.value for node in users} == {"wear"}


def test_outputs_have_usages_and_their_node(session: kestrix.Session) -> None:
    output = session.open(RUST).graphs[0].outputs[0]

    assert output.usages == [("diffuse", "RGBA")]
    assert output.node is not None
    assert output.node.entry == output
    assert output.graph.output(output.identifier) == output
    assert (type(output.format), type(output.mipmaps)) == (int, int)


@pytest.mark.parametrize("kind", ["input", "output", "parameter"])
@pytest.mark.parametrize("identifier", ["none", "été"])
def test_missing_items_of_a_graph_raise_key_error(bricks: kestrix.Package, kind: str,
                                                  identifier: str) -> None:
    with pytest.raises(KeyError) as raised:
        getattr(bricks.graphs[0], kind)(identifier)

    assert raised.value.args == (identifier,)


def test_nodes_have_the_class_of_their_kind(everything: kestrix.Package) -> None:
    nodes = everything.graph("Everything").nodes

    assert [type(node).__name__ for node in nodes[:6]] == [
        "InputNode", "InputNode", "InstanceNode", "InstanceNode", "InstanceNode", "FilterNode"]
    assert isinstance(nodes[-1], kestrix.OutputNode)


def test_a_node_is_found_by_its_uid(bricks: kestrix.Package) -> None:
    node = bricks.graphs[0].nodes[4]

    assert bricks.graphs[0].node(node.uid) == node


def test_a_missing_uid_raises_key_error_with_the_number(bricks: kestrix.Package) -> None:
    with pytest.raises(KeyError) as raised:
        bricks.graphs[0].node(1)

    assert raised.value.args == (1,)


def test_a_node_knows_its_graph_and_place(bricks: kestrix.Package) -> None:
    node = bricks.graphs[0].nodes[0]

    assert node.graph == bricks.graphs[0]
    assert (node.position, node.depth) == ((-480.0, -256.0), 0.0)


def test_bridges_show_inputs_and_outputs(bricks: kestrix.Package) -> None:
    graph = bricks.graphs[0]
    shown = [node.entry for node in graph.nodes if isinstance(node, kestrix.InputNode)]

    assert shown == [entry for entry in graph.inputs if entry.is_image]


def test_connections_are_pairs_of_connectors(wood: kestrix.Package) -> None:
    graph = wood.graphs[0]
    output, entry = graph.connections[0]

    assert entry in output.targets
    assert output in entry.sources
    assert output.node in graph.nodes
    assert entry.node.input(entry.identifier) == entry
    assert output.node.output(output.identifier) == output


def test_connectors_have_kinds_and_texts(wood: kestrix.Package) -> None:
    output, entry = wood.graphs[0].connections[0]

    assert {output.color, entry.color} <= {"color", "grayscale", "other"}
    assert output.uid > 0
    assert output.type in ("color", "grayscale")
    assert isinstance(entry.label, str)


@pytest.mark.parametrize("kind", ["input", "output"])
def test_a_missing_connector_raises_key_error(wood: kestrix.Package, kind: str) -> None:
    with pytest.raises(KeyError) as raised:
        getattr(wood.graphs[0].nodes[0], kind)("été")

    assert raised.value.args == ("été",)


def test_a_filter_node_names_its_filter_and_resource(wood: kestrix.Package) -> None:
    nodes = [node for node in wood.graphs[0].nodes if isinstance(node, kestrix.FilterNode)]
    bitmaps = [node for node in nodes if node.filter == "bitmap"]

    assert bitmaps
    assert {node.resource for node in bitmaps} <= set(wood.resources)
    assert next(node for node in nodes if node.filter != "bitmap").resource is None


def test_the_users_of_a_resource_show_it(wood: kestrix.Package) -> None:
    resource = wood.resource("oak_color")

    assert all(isinstance(node, kestrix.FilterNode) and node.resource == resource
               for node in resource.users(wood.graphs[0]))


def test_a_resource_has_its_file(wood: kestrix.Package) -> None:
    resource = wood.resource("oak_color")

    assert resource.path == WOOD.parent / "bitmaps" / "oak_color.png"
    assert resource.is_reachable
    assert resource.read() == resource.path.read_bytes()
    assert (resource.format, len(resource.checksum)) == ("PNG", 32)
    assert resource.cooked_quality == pytest.approx(0.85)
    assert resource.last_modified.startswith("20")


def test_a_resource_inside_the_package_cannot_be_read(wood: kestrix.Package) -> None:
    inside = wood.resource("oak_grain")

    with pytest.raises(kestrix.OpenError, match="oak_grain.png: it is kept inside the package"):
        inside.read()

    assert not inside.is_reachable


def test_a_resource_whose_file_is_missing_raises_open_error(session: kestrix.Session,
                                                            examples: pathlib.Path) -> None:
    resource = session.open(examples / "wood" / "wood_planks.obl").resource("oak_color")
    resource.path.unlink()

    with pytest.raises(kestrix.OpenError) as raised:
        resource.read()

    assert raised.value.failures == (
        kestrix.Failure(resource.path, "the file cannot be read", True),)
    assert not resource.is_reachable


def test_graphs_have_parameters_and_options(bricks: kestrix.Package) -> None:
    graph = bricks.graphs[0]

    assert [parameter.identifier for parameter in graph.parameters] == [
        "outputsize", "format", "pixelsize", "tiling", "quality", "randomseed"]
    assert graph.options == [("defaultOutputSize", "10x10"),
                             ("exportFolder", "C:\\textures\\bricks")]


def test_a_computed_parameter_has_a_graph_of_functions(bricks: kestrix.Package) -> None:
    node = bricks.graphs[0].nodes[2]
    assert isinstance(node, kestrix.InstanceNode)
    parameter = node.parameter("brick_count")

    assert (parameter.is_dynamic, parameter.is_stored) == (True, True)
    assert parameter.function is not None
    assert [step.function for step in parameter.function.nodes] == ["get_integer2"]
    assert parameter.value == (6, 16)  # the default


def test_an_unstored_parameter_has_its_default(bricks: kestrix.Package) -> None:
    parameter = bricks.graphs[0].nodes[0].parameter("quality")

    assert (parameter.is_stored, parameter.value, parameter.function) == (False, 0, None)
    assert parameter.type == "int1"
    assert parameter.relative_to == "parent"


def test_the_choices_of_a_parameter_are_named(bricks: kestrix.Package) -> None:
    node = bricks.graphs[0].nodes[2]

    assert node.parameter("bond").choices == {
        "Stretcher": 1, "English": 2, "Flemish": 3, "Header": 4}
    assert node.parameter("outputsize").choices == {}


def test_functions_have_inputs_type_and_body(everything: kestrix.Package) -> None:
    fade = everything.function("fade")

    assert (fade.type, fade.inputs) == ("float1", [("x", "float1"), ("edge", "float1")])
    assert fade.body is not None
    assert len(fade.body.nodes) == 9
    assert fade.body.output_node is not None
    assert fade.body.output_node.is_output
    assert len(fade.body.connections) == 8


def test_function_nodes_have_function_type_and_value(everything: kestrix.Package) -> None:
    body = everything.function("pi").body
    assert body is not None
    node = body.nodes[0]

    assert (node.function, node.type, node.is_output) == ("const_float1", "float1", True)
    assert node.value == pytest.approx(3.14159)
    assert body.node(node.uid) == node
    assert node.graph == body


def test_an_instance_of_a_function_refers_to_it(everything: kestrix.Package) -> None:
    body = everything.function("swing").body
    assert body is not None

    assert [node.reference for node in body.nodes] == [None, None, None,
                                                       everything.function("fade")]


def test_an_fx_map_has_a_graph_with_a_root(fx_map: kestrix.ParameterGraph) -> None:
    root = fx_map.root_node

    assert root is not None
    assert root in fx_map.nodes
    assert fx_map.node(root.uid) == root
    assert root.graph == fx_map
    assert root.kind


def test_nodes_of_an_fx_map_have_parameters(fx_map: kestrix.ParameterGraph) -> None:
    parameters = fx_map.nodes[0].parameters

    assert parameters
    assert fx_map.nodes[0].parameter(parameters[0].identifier) == parameters[0]


def test_lists_can_be_iterated_counted_and_sliced(bricks: kestrix.Package) -> None:
    nodes = bricks.graphs[0].nodes

    assert isinstance(nodes, list)
    assert len(list(iter(nodes))) == len(nodes) == 85
    assert nodes[-1] in nodes[80:]


def test_two_objects_of_one_thing_are_equal(wood: kestrix.Package) -> None:
    assert wood.graphs[0] == wood.graphs[0]
    assert wood.graphs[0].nodes == wood.graphs[0].nodes
    assert wood.graphs[0].connections == wood.graphs[0].connections
    assert wood.graphs[0].parameters == wood.graphs[0].parameters


def test_two_objects_of_one_thing_have_one_hash(wood: kestrix.Package) -> None:
    graph = wood.graphs[0]

    assert len({*graph.nodes, *graph.nodes}) == len(graph.nodes)
    assert len({*graph.parameters, *graph.parameters}) == len(graph.parameters)
    assert len({graph.connections[0], graph.connections[0]}) == 1


@pytest.mark.parametrize("other", [None, 1, "wood_planks"])
def test_objects_are_unequal_to_all_else(wood: kestrix.Package, other: object) -> None:
    graph = wood.graphs[0]

    assert graph != other
    assert graph.parameters[0] != other
    assert graph.connections[0][0] != other
    assert graph != wood


def test_different_things_are_unequal(wood: kestrix.Package) -> None:
    graph = wood.graphs[0]

    assert graph.nodes[0] != graph.nodes[1]
    assert graph.parameters[0] != graph.parameters[1]
    assert graph.connections[0][0] != graph.connections[1][0]


def test_reprs_name_class_and_object(wood: kestrix.Package) -> None:
    graph = wood.graphs[0]

    assert repr(wood) == f"<kestrix.Package 'wood_planks' of '{WOOD}'>"
    assert repr(graph) == "<kestrix.Graph 'wood_planks'>"
    assert repr(graph.nodes[0]) == f"<kestrix.{type(graph.nodes[0]).__name__} {graph.nodes[0].uid}>"
    assert repr(graph.inputs[0]) == "<kestrix.Input 'plank_count': int1>"
    assert repr(graph.outputs[0]) == f"<kestrix.Output '{graph.outputs[0].identifier}'>"
    assert repr(graph.parameters[0]) == "<kestrix.Parameter 'outputsize'>"
    assert repr(graph.connections[0][1]).startswith("<kestrix.InputConnector '")
    assert repr(wood.resources[0]) == "<kestrix.Resource 'oak_color'>"


def test_reprs_of_functions_count_nodes(everything: kestrix.Package) -> None:
    assert repr(everything.function("fade")) == "<kestrix.Function 'fade'>"
    assert repr(everything.function("fade").body) == "<kestrix.FunctionGraph of 9 nodes>"


def test_reprs_of_dependencies_name_the_file(bricks: kestrix.Package) -> None:
    assert repr(bricks.dependencies[1]) == (
        f"<kestrix.Dependency on '{PRESETS}/presets_library.obl'>")
    assert repr(bricks.dependencies[2]) == "<kestrix.Dependency on itself>"


def test_the_repr_of_a_session_counts_packages(session: kestrix.Session) -> None:
    session.open(BRICKS)

    assert repr(session) == "<kestrix.Session of 3 packages>"


@pytest.mark.parametrize("path", [WOOD, BRICKS, FABRIC, EVERYTHING, RUST],
                         ids=name_of)
def test_every_property_of_every_object_can_be_read(session: kestrix.Session,
                                                    path: pathlib.Path) -> None:
    seen = read_all(session.open(path))

    assert {"Package", "Graph", "Input", "Output", "Parameter", "OutputConnector"} <= seen


def read_all(package: kestrix.Package) -> set[str]:
    """Reads all properties of all objects that can be reached, and returns their classes."""
    known: set[object] = {package}
    waiting: list[object] = [package]
    while waiting:
        owner = waiting.pop()
        for name in (name for name in dir(type(owner)) if not name.startswith("_")):
            if not isinstance(getattr(type(owner), name), property):
                continue
            value = getattr(owner, name)
            items = value if isinstance(value, list) else [value]
            parts = [part for item in items
                     for part in (item if isinstance(item, tuple) else (item,))]
            found = [part for part in parts
                     if type(part).__module__ == "kestrix" and part not in known]
            known.update(found)
            waiting += found
        assert repr(owner).startswith("<kestrix.")
    return {type(item).__name__ for item in known}

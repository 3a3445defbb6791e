"""Packages of texture graphs: open, read, edit with undo, save.

    import kestrix

    with kestrix.Session() as session:
        package = session.open("wood.obl")
        for graph in package.graphs:
            for input in graph.inputs:
                print(graph.identifier, input.identifier, input.type, input.default)
        with package.edit("calmer wood"):
            package.graphs[0].input("roughness").default = 0.25
        package.save("calm_wood.obl")

A Session opens packages with all that they depend on, and brings old ones to the current format in
memory. Packages have graphs; graphs have nodes, inputs, outputs and parameters. Every edit is a step
that session.undo() takes back; the edits of a block `with package.edit(...)` are one step.

update(), edit_inputs() and specialize() do what the commands of the tool do, from file to file.

All errors are exceptions of the base kestrix.Error."""

from ._kestrix import (Content, Dependency, EditBlock, FilterNode, Function, FunctionGraph,
                       FunctionNode, Graph, ImageNode, Input, InputConnector, InputNode,
                       InstanceNode, Node, Object, Output, OutputConnector, OutputNode, Package,
                       Parameter, ParameterGraph, ParameterNode, Resource, Session, __version__)
from .commands import Image, Report, edit_inputs, specialize, update
from .errors import (CommandError, EditError, Error, Failure, GoneError, OpenError, SaveError,
                     SessionError)

__all__ = [
    "CommandError", "Content", "Dependency", "EditBlock", "EditError", "Error", "Failure",
    "FilterNode", "Function", "FunctionGraph", "FunctionNode", "GoneError", "Graph", "Image",
    "ImageNode", "Input", "InputConnector", "InputNode", "InstanceNode", "Node", "Object",
    "OpenError", "Output", "OutputConnector", "OutputNode", "Package", "Parameter",
    "ParameterGraph", "ParameterNode", "Report", "Resource", "SaveError", "Session",
    "SessionError", "__version__", "edit_inputs", "specialize", "update",
]

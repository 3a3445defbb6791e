// The numbers in a document by which objects refer to others.
#pragma once

#include "compare/itemkind.h"
#include <optional>
#include <string>

namespace Ksx::Kit {

// The lists in which the number of a reference is looked up.
enum class Target
{
    // The nodes of a graph, of a function or of a parameter graph: the innermost around it.
    Node,
    // The outputs of the node that the same connection names.
    NodeOutput,
    // The outputs of the node that the reference is in.
    OwnOutput,
    // The inputs of the graph.
    Input,
    // The outputs of the graph.
    Output,
    // The parameter sets of a parameter graph.
    ParameterSet,
};

// Returns where the number of a leaf is looked up. Returns none for a leaf that is no reference.
std::optional<Target> referenceOf(const Orv::Data::BaseObject& leaf);

// Returns the node of a graph that an object is in. Returns null if there is none.
const Orv::Data::BaseObject* nodeAround(const Orv::Data::BaseObject& object);

// Returns the connections of a node of any kind.
const Orv::Data::ContainerListBase* connexionsOf(const Orv::Data::BaseObject& node);

// Returns the number of the node that feeds a connection. Returns none if nothing feeds it.
std::optional<unsigned> feedingNodeOf(const Orv::Data::BaseObject& connexion);

// Returns the list of an element in a structure. Returns null if there is none.
const Orv::Data::ContainerListBase* listOf(const Orv::Data::BaseObject& structure,
                                           std::string_view element);

// Returns the nodes of a graph, a computed value or a parameter graph. Returns null for anything
// else.
const Orv::Data::ContainerListBase* nodesOf(const Orv::Data::BaseObject& owner);

// Returns the identifiers of a data path, with "/" in between.
std::string segmentsOf(const std::string& path);

} // namespace Ksx::Kit

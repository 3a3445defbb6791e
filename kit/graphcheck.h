// Checks the nodes of a graph and the connections between them.
#pragma once

#include <QString>

namespace Ksx::Data::Content {
class Function;
class Graph;
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

class FindingList;

// Adds double uids and identifiers, connections and bridges that lead nowhere, cycles of nodes, and
// filters, functions and parameters that no table knows. `place` is the path of the graph.
void checkGraph(const Data::Content::Graph& graph, const QString& place, FindingList& findings);

// The same for a graph that computes a value.
void checkFunction(const Data::Content::Function& function, const QString& place,
                   FindingList& findings);

} // namespace Ksx::Kit

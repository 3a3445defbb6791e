// One output of a compiled assembly's graph.
#pragma once

class QDomElement;

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Adds the graph output and the root output that an `output` element of a description tells of.
// False if it lacks identifier or uid, or has a number that cannot be read.
bool addOblasmOutput(const QDomElement& element, Data::Content::Graph& graph);

} // namespace Ksx::Core

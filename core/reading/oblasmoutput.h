// One output of a compiled assembly's graph.
#pragma once

class QDomElement;

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Adds the graph output and the root output that an `output` element of a description tells of.
// False if it lacks an identifier or has no number as uid. Other numbers that cannot be read count as
// missing.
bool addOblasmOutput(const QDomElement& element, Data::Content::Graph& graph);

} // namespace Ksx::Core

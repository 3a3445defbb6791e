// Pictures of what differs between two packages.
#pragma once

#include "ksx/kit/comparison.h"
#include "ksx/kit/drawing.h"
#include <optional>
#include <vector>

namespace Ksx::Kit {

// A graph or a function that both packages have and that differs, or that one of them has alone.
struct ComparedGraph
{
    // Its data path, in the second package if it is there.
    QString place;
    // Nodes and connections are marked by what happened to them. There are no boxes in the drawing
    // of a package that lacks the graph.
    Drawing before;
    Drawing after;
};

// What differs, with pictures.
struct DrawnComparison
{
    std::vector<Difference> differences;
    // In the order of the document.
    std::vector<ComparedGraph> graphs;
};

// Does the same as comparePackages(), and draws the graphs and functions whose nodes, connections or
// values differ.
std::optional<DrawnComparison> drawComparison(const PackageVersion& first,
                                              const PackageVersion& second,
                                              const ComparisonOptions& options, QString& file,
                                              QString& reason);

} // namespace Ksx::Kit

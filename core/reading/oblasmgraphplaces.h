// Where the graphs of compiled assemblies go in a package.
#pragma once

#include <QString>
#include <memory>

namespace Ksx::Data::Content {
class Graph;
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Makes graphs, and the groups that they stand in. Knows which names and uids are taken, so that a
// graph costs the same however many there are.
class OBLASMGraphPlaces
{
public:
    // How many groups may stand in each other: a file of many more could not be read again.
    static constexpr int MaximumDepth = 1000;

    // The package outlives this, and nobody else changes its content meanwhile.
    explicit OBLASMGraphPlaces(Data::Content::Package& package);
    ~OBLASMGraphPlaces();

    // Puts the graph at the place that the URL names: the last segment is its identifier, made
    // unique, those before it are groups, found or made. The graph gets a fresh uid. False, and the
    // graph is gone, if there are too many groups.
    bool add(const QString& pkgUrl, std::unique_ptr<Data::Content::Graph> graph);

private:
    class Level;

    std::unique_ptr<Level> m_top;
};

} // namespace Ksx::Core

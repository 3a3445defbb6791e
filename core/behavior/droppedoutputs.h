// Outputs of nodes that have gone, and the connections that came from them.
#pragma once

#include "ksx/core/uidsource.h"
#include <map>
#include <set>
#include <utility>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Data::Content {
class CompNode;
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core::Behavior {

// The outputs of nodes that an edit takes away.
class DroppedOutputs
{
public:
    // Called before the edit changes the node, as long as what is known of its graph is up to date.
    void add(const Data::Content::CompNode& node, Uid output);
    // Erases the connections that came from them. Once, at the end. Looks at the nodes that they
    // fed and at those that the edit has touched.
    void dropConnections(Orv::Core::ManipulatorContext& context) const;

private:
    struct OfGraph
    {
        bool isIndexed = false; // the index of the nodes was up to date before the edit
        std::set<std::pair<Uid, Uid>> outputs; // node, output
    };

    std::map<const Data::Content::Graph*, OfGraph> m_dropped;
};

} // namespace Ksx::Core::Behavior

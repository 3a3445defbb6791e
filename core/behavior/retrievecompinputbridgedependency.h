// Dependencies of the input nodes of graphs.
#pragma once

#include "behavior/retrievedependency.h"
#include "data/content/compinputbridge.h"

namespace Ksx::Core::Behavior {

// The references are all parameters that are texts. Nodes without one need no behaviour.
class RetrieveCompInputBridgeDependency final
    : public RetrieveDependencyOf<RetrieveCompInputBridgeDependency, Data::Content::CompInputBridge>
{
public:
    using RetrieveDependencyOf::RetrieveDependencyOf;
    static bool concerns(const Data::Content::CompInputBridge& bridge);
    static References referencesIn(const Data::Content::CompInputBridge& bridge);
};

} // namespace Ksx::Core::Behavior

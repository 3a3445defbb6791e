// Dependencies of instances of graphs.
#pragma once

#include "behavior/retrievedependency.h"
#include "data/content/compinstance.h"

namespace Ksx::Core::Behavior {

// The reference is the path of the instance.
class RetrieveCompInstanceDependency final
    : public RetrieveDependencyOf<RetrieveCompInstanceDependency, Data::Content::CompInstance>
{
public:
    using RetrieveDependencyOf::RetrieveDependencyOf;
    static References referencesIn(const Data::Content::CompInstance& instance);
};

} // namespace Ksx::Core::Behavior

// Dependencies of instances of functions.
#pragma once

#include "behavior/retrievedependency.h"
#include "data/content/paramnode.h"

namespace Ksx::Core::Behavior {

// The reference is the text that an instance node holds.
class RetrieveFunctionInstanceDependency final
    : public RetrieveDependencyOf<RetrieveFunctionInstanceDependency, Data::Content::ParamNode>
{
public:
    using RetrieveDependencyOf::RetrieveDependencyOf;
    static bool concerns(const Data::Content::ParamNode& node);
    static References referencesIn(const Data::Content::ParamNode& node);
};

} // namespace Ksx::Core::Behavior

#include "behavior/retrievefunctioninstancedependency.h"

#include "function/functionpath.h"

namespace Ksx::Core::Behavior {

using Data::Content::ParamNode;

bool RetrieveFunctionInstanceDependency::concerns(const ParamNode& node)
{
    return isFunctionInstance(node);
}

RetrieveDependency::References
RetrieveFunctionInstanceDependency::referencesIn(const ParamNode& node)
{
    return {functionPathOf(node)};
}

} // namespace Ksx::Core::Behavior

// Dependencies of filters that have a resource.
#pragma once

#include "behavior/retrievedependency.h"
#include "data/content/compfilter.h"

namespace Ksx::Core::Behavior {

// The reference is the parameter by which a filter has a bitmap, a drawing or a mask. Filters without
// such a parameter need no behaviour.
class RetrieveCompFilterDependency final
    : public RetrieveDependencyOf<RetrieveCompFilterDependency, Data::Content::CompFilter>
{
public:
    using RetrieveDependencyOf::RetrieveDependencyOf;
    static bool concerns(const Data::Content::CompFilter& filter);
    static References referencesIn(const Data::Content::CompFilter& filter);
};

} // namespace Ksx::Core::Behavior

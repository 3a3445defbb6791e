// Dependencies of links to what lies outside of a package.
#pragma once

#include "data/content/compexternallink.h"
#include "ksx/core/behavior/retrievedependency.h"

namespace Ksx::Core::Behavior {

// The reference is the path of the link.
class RetrieveCompExternalLinkDependency final
    : public RetrieveDependencyOf<RetrieveCompExternalLinkDependency,
                                  Data::Content::CompExternalLink>
{
public:
    using RetrieveDependencyOf::RetrieveDependencyOf;
    static References referencesIn(const Data::Content::CompExternalLink& link);
};

} // namespace Ksx::Core::Behavior

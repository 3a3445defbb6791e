// Dependencies of links to what lies outside of a package.
#pragma once

#include "behavior/retrievedependency.h"
#include "data/content/compexternallink.h"

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

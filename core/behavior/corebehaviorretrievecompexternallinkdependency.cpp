#include "behavior/retrievecompexternallinkdependency.h"

namespace Ksx::Core::Behavior {

RetrieveDependency::References
RetrieveCompExternalLinkDependency::referencesIn(const Data::Content::CompExternalLink& link)
{
    return {link.path().value().get()};
}

} // namespace Ksx::Core::Behavior

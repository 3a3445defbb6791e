#include "behavior/retrievecompinstancedependency.h"

namespace Ksx::Core::Behavior {

RetrieveDependency::References
RetrieveCompInstanceDependency::referencesIn(const Data::Content::CompInstance& instance)
{
    return {instance.path().value().get()};
}

} // namespace Ksx::Core::Behavior

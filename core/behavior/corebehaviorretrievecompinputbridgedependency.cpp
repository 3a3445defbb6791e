#include "behavior/retrievecompinputbridgedependency.h"

#include "behavior/parameterreference.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

bool RetrieveCompInputBridgeDependency::concerns(const CompInputBridge& bridge)
{
    return !referencesIn(bridge).empty();
}

RetrieveDependency::References
RetrieveCompInputBridgeDependency::referencesIn(const CompInputBridge& bridge)
{
    References references;
    for (const Parameter& parameter : bridge.parameters())
        if (const std::string* text = textOf(parameter))
            references.push_back(*text);
    return references;
}

} // namespace Ksx::Core::Behavior

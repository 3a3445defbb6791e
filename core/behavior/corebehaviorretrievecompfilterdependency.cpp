#include "behavior/retrievecompfilterdependency.h"

#include "behavior/parameterreference.h"
#include "content/nodekind.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

bool RetrieveCompFilterDependency::concerns(const CompFilter& filter)
{
    return !referencesIn(filter).empty();
}

RetrieveDependency::References RetrieveCompFilterDependency::referencesIn(const CompFilter& filter)
{
    References references;
    const std::string name = resourceParameterOf(filter.filter().get());
    for (const Parameter& parameter : filter.parameters())
        if (!name.empty() && parameter.name().get() == name)
            if (const std::string* text = textOf(parameter))
                references.push_back(*text);
    return references;
}

} // namespace Ksx::Core::Behavior

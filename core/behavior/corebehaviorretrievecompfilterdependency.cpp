#include "behavior/retrievecompfilterdependency.h"

#include "behavior/parameterreference.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

namespace {

// The filters that can have a resource, and the parameter that leads to it.
struct ResourceParameter
{
    const char* filter;
    const char* parameter;
};
constexpr ResourceParameter ResourceParameters[] = {
    {"bitmap", "bitmapresourcepath"},
    {"blend", "maskvectorresourcepath"},
    {"svg", "vectorresourcepath"},
};

} // namespace

bool RetrieveCompFilterDependency::concerns(const CompFilter& filter)
{
    return !referencesIn(filter).empty();
}

RetrieveDependency::References RetrieveCompFilterDependency::referencesIn(const CompFilter& filter)
{
    References references;
    for (const ResourceParameter& row : ResourceParameters) {
        if (filter.filter().get() != row.filter)
            continue;
        for (const Parameter& parameter : filter.parameters())
            if (parameter.name().get() == row.parameter)
                if (const std::string* text = textOf(parameter))
                    references.push_back(*text);
    }
    return references;
}

} // namespace Ksx::Core::Behavior

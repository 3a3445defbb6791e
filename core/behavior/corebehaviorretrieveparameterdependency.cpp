#include "ksx/core/behavior/retrieveparameterdependency.h"

#include "ksx/core/behavior/parameterreference.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

RetrieveDependency::References RetrieveParameterDependency::referencesIn(const Parameter& parameter)
{
    const std::string* const text = textOf(parameter);
    return text == nullptr ? References() : References{*text};
}

} // namespace Ksx::Core::Behavior

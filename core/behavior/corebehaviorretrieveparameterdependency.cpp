#include "behavior/retrieveparameterdependency.h"

#include "behavior/parameterreference.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

RetrieveDependency::References ParameterListening::references() const
{
    const std::string* const text = m_parameter ? textOf(*m_parameter) : nullptr;
    return text == nullptr ? RetrieveDependency::References()
                           : RetrieveDependency::References{*text};
}

RetrieveDependency::References RetrieveParameterDependency::referencesIn(const Parameter& parameter)
{
    return ParameterListening(parameter).references();
}

} // namespace Ksx::Core::Behavior

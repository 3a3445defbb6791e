// Dependencies of single parameters.
#pragma once

#include "behavior/retrievedependency.h"
#include "data/content/parameter.h"

namespace Ksx::Core::Behavior {

// Watches one parameter: the references that its value holds, as it now is.
class ParameterListening
{
public:
    explicit ParameterListening(const Data::Content::Parameter& parameter) : m_parameter(&parameter)
    {}
    // None for a value that is no text, and once the parameter has died. They point into its value.
    RetrieveDependency::References references() const;

private:
    Orv::Data::DataPointerBox<Data::Content::Parameter> m_parameter;
};

// The reference is the value of a parameter that is a text. No document has it: the behaviours of
// nodes look after the parameters that count.
class RetrieveParameterDependency final
    : public RetrieveDependencyOf<RetrieveParameterDependency, Data::Content::Parameter>
{
public:
    using RetrieveDependencyOf::RetrieveDependencyOf;
    static References referencesIn(const Data::Content::Parameter& parameter);
};

} // namespace Ksx::Core::Behavior

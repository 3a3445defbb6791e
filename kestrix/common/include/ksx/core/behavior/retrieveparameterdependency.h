// Dependencies of single parameters.
#pragma once

#include "data/content/parameter.h"
#include "ksx/core/behavior/retrievedependency.h"

namespace Ksx::Core::Behavior {

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

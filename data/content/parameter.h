// A named value of a node or graph.
#pragma once

#include "data/content/namedclass.h"
#include "data/content/paramvalue.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Parameter
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "parameter"
#define ORV_TABLE   "data/content/parameter.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Parameter final : public ParameterStruct
{
public:
    Parameter();
    ~Parameter() override;
};

ORV_LIST_CLASS(GraphParametersList, "baseParameters", Parameter)
ORV_LIST_CLASS(FilterParamsList, "parameters", Parameter)
ORV_LIST_CLASS(CompInstanceParamsList, "parameters", Parameter)

} // namespace Ksx::Data::Content

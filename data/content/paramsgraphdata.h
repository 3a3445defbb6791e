// One parameter set of a parameter graph.
#pragma once

#include "data/content/parameter.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamsGraphData
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paramsGraphData"
#define ORV_TABLE   "data/content/paramsgraphdata.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamsGraphData final : public ParamsGraphDataStruct
{
public:
    ParamsGraphData();
    ~ParamsGraphData() override;
};

} // namespace Ksx::Data::Content

// A graph of parameter sets, such as that of an FX map.
#pragma once

#include "data/content/guilayoutcomp.h"
#include "data/content/guiobject.h"
#include "data/content/paramsgraphdata.h"
#include "data/content/paramsgraphnode.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamsGraph
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paramsGraph"
#define ORV_TABLE   "data/content/paramsgraph.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamsGraph final : public ParamsGraphStruct
{
public:
    ParamsGraph();
    ~ParamsGraph() override;
};

} // namespace Ksx::Data::Content

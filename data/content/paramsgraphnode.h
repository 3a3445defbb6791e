// One node of a parameter graph.
#pragma once

#include "data/content/connexion.h"
#include "data/content/guilayout.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamsGraphNode
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paramsGraphNode"
#define ORV_TABLE   "data/content/paramsgraphnode.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamsGraphNode final : public ParamsGraphNodeStruct
{
public:
    ParamsGraphNode();
    ~ParamsGraphNode() override;
};

} // namespace Ksx::Data::Content

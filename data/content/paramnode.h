// One node of a graph that computes a value.
#pragma once

#include "data/content/connexion.h"
#include "data/content/funcdata.h"
#include "data/content/guilayout.h"
#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamNode
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paramNode"
#define ORV_TABLE   "data/content/paramnode.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamNode final : public ParamNodeStruct
{
public:
    ParamNode();
    ~ParamNode() override;
};

ORV_LIST_CLASS(ParamNodesList, "paramNodes", ParamNode)

} // namespace Ksx::Data::Content

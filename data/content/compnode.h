// One node of a graph of images.
#pragma once

#include "data/content/compimplementation.h"
#include "data/content/compoutput.h"
#include "data/content/connexion.h"
#include "data/content/guilayout.h"
#include "data/content/namedclass.h"
#include "data/content/option.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompNode
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compNode"
#define ORV_TABLE   "data/content/compnode.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompNode final : public CompNodeStruct
{
public:
    CompNode();
    ~CompNode() override;
};

ORV_LIST_CLASS(GraphCompositeNodesList, "compNodes", CompNode)

} // namespace Ksx::Data::Content

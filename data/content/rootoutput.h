// How one output of a graph is rendered.
#pragma once

#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/content/valueoverloadable.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   RootOutput
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "rootOutput"
#define ORV_TABLE   "data/content/rootoutput.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class RootOutput final : public RootOutputStruct
{
public:
    RootOutput();
    ~RootOutput() override;
};

ORV_LIST_CLASS(RootOutputList, "rootOutputs", RootOutput)

} // namespace Ksx::Data::Content

// An output of a node.
#pragma once

#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompOutput
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compOutput"
#define ORV_TABLE   "data/content/compoutput.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompOutput final : public CompOutputStruct
{
public:
    CompOutput();
    ~CompOutput() override;
};

ORV_LIST_CLASS(CompNodeOutputList, "compOutputs", CompOutput)

} // namespace Ksx::Data::Content

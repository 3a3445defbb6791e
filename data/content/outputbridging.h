// One output of an instantiated graph on one of the instance node's outputs.
#pragma once

#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   OutputBridging
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "outputBridging"
#define ORV_TABLE   "data/content/outputbridging.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class OutputBridging final : public OutputBridgingStruct
{
public:
    OutputBridging();
    ~OutputBridging() override;
};

ORV_LIST_CLASS(OutputBridgings, "outputBridgings", OutputBridging)

} // namespace Ksx::Data::Content

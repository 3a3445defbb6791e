// A node that represents an output of its graph.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompOutputBridge
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compOutputBridge"
#define ORV_TABLE   "data/content/compoutputbridge.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompOutputBridge final : public CompOutputBridgeStruct
{
public:
    CompOutputBridge();
    ~CompOutputBridge() override;
};

} // namespace Ksx::Data::Content

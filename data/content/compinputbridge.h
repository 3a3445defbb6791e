// A node that represents an input of its graph.
#pragma once

#include "data/content/parameter.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompInputBridge
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compInputBridge"
#define ORV_TABLE   "data/content/compinputbridge.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompInputBridge final : public CompInputBridgeStruct
{
public:
    CompInputBridge();
    ~CompInputBridge() override;
};

} // namespace Ksx::Data::Content

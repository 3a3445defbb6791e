// What an input or output is for.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Usage
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "usage"
#define ORV_TABLE   "data/content/usage.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Usage final : public UsageStruct
{
public:
    Usage();
    ~Usage() override;
};

} // namespace Ksx::Data::Content

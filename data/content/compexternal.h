// A node that is made elsewhere.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompExternal
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compExternal"
#define ORV_TABLE   "data/content/compexternal.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompExternal final : public CompExternalStruct
{
public:
    CompExternal();
    ~CompExternal() override;
};

} // namespace Ksx::Data::Content

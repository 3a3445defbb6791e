// A resource's bytes as a copy of the file that the package made.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ExternalCopy
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "externalcopy"
#define ORV_TABLE   "data/content/externalcopy.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ExternalCopy final : public ExternalCopyStruct
{
public:
    ExternalCopy();
    ~ExternalCopy() override;
};

} // namespace Ksx::Data::Content

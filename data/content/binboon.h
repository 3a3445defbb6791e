// A resource's bytes in a binary store beside the package. The store itself is never opened here.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   BinBoon
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "binboon"
#define ORV_TABLE   "data/content/binboon.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class BinBoon final : public BinBoonStruct
{
public:
    BinBoon();
    ~BinBoon() override;
};

} // namespace Ksx::Data::Content

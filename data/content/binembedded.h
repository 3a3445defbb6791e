// A resource's bytes inside the document.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   BinEmbedded
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "binembedded"
#define ORV_TABLE   "data/content/binembedded.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class BinEmbedded final : public BinEmbeddedStruct
{
public:
    BinEmbedded();
    ~BinEmbedded() override;
};

} // namespace Ksx::Data::Content

// A node that refers to an object elsewhere.
#pragma once

#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompExternalLink
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compExternalLink"
#define ORV_TABLE   "data/content/compexternallink.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompExternalLink final : public CompExternalLinkStruct
{
public:
    CompExternalLink();
    ~CompExternalLink() override;
};

} // namespace Ksx::Data::Content

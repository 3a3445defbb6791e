// A bitmap or other file that a package uses.
#pragma once

#include "data/content/attributes.h"
#include "data/content/binboon.h"
#include "data/content/binembedded.h"
#include "data/content/contentobjectbase.h"
#include "data/content/externalcopy.h"
#include "data/content/option.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Resource
#define ORV_BASE    ContentObjectBase
#define ORV_ELEMENT "resource"
#define ORV_TABLE   "data/content/resource.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Resource final : public ResourceStruct, public ContentInterface
{
public:
    Resource();
    ~Resource() override;

    const Orv::Data::Attribute<UInt>& uidAttribute() const override { return uid(); }
    const Orv::Data::Attribute<Text>& identifierAttribute() const override { return identifier(); }
};

} // namespace Ksx::Data::Content

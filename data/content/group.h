// A folder in a package.
#pragma once

#include "data/content/contentobjectbase.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Group
#define ORV_BASE    ContentObjectBase
#define ORV_ELEMENT "group"
#define ORV_TABLE   "data/content/group.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Group final : public GroupStruct, public ContentInterface
{
public:
    Group();
    ~Group() override;

    const Orv::Data::Attribute<UInt>& uidAttribute() const override { return uid(); }
    const Orv::Data::Attribute<Text>& identifierAttribute() const override { return identifier(); }
};

} // namespace Ksx::Data::Content

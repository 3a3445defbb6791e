// A function that computes one value.
#pragma once

#include "data/content/attributes.h"
#include "data/content/contentobjectbase.h"
#include "data/content/paraminput.h"
#include "data/content/paramvalue.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Function
#define ORV_BASE    ContentObjectBase
#define ORV_ELEMENT "function"
#define ORV_TABLE   "data/content/function.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Function final : public FunctionStruct, public ContentInterface
{
public:
    Function();
    ~Function() override;

    const Orv::Data::Attribute<UInt>& uidAttribute() const override { return uid(); }
    const Orv::Data::Attribute<Text>& identifierAttribute() const override { return identifier(); }
};

} // namespace Ksx::Data::Content

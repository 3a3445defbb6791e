// A value computed by a graph of function nodes.
#pragma once

#include "data/content/guilayoutcomp.h"
#include "data/content/guiobject.h"
#include "data/content/paramnode.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   DynamicValue
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "dynamicValue"
#define ORV_TABLE   "data/content/dynamicvalue.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class DynamicValue final : public DynamicValueStruct
{
public:
    DynamicValue();
    ~DynamicValue() override;
};

} // namespace Ksx::Data::Content

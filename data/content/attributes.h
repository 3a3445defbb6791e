// Descriptive texts of an object.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Attributes
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "attributes"
#define ORV_TABLE   "data/content/attributes.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Attributes : public AttributesStruct
{
public:
    Attributes();
    ~Attributes() override;
};

} // namespace Ksx::Data::Content

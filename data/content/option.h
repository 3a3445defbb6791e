// A free pair of name and value.
#pragma once

#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Option
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "option"
#define ORV_TABLE   "data/content/option.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Option final : public OptionStruct
{
public:
    Option();
    ~Option() override;
};

ORV_LIST_CLASS(Options, "options", Option)

} // namespace Ksx::Data::Content

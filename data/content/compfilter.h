// A node that is an atomic filter.
#pragma once

#include "data/content/parameter.h"
#include "data/content/paramsarray.h"
#include "data/content/paramsgraph.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompFilter
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compFilter"
#define ORV_TABLE   "data/content/compfilter.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompFilter final : public CompFilterStruct
{
public:
    CompFilter();
    ~CompFilter() override;
};

} // namespace Ksx::Data::Content

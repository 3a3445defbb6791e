// An array of parameter sets.
#pragma once

#include "data/content/paramsarraycell.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamsArray
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paramsArray"
#define ORV_TABLE   "data/content/paramsarray.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamsArray final : public ParamsArrayStruct
{
public:
    ParamsArray();
    ~ParamsArray() override;
};

} // namespace Ksx::Data::Content

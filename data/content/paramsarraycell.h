// One parameter set of an array.
#pragma once

#include "data/content/parameter.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamsArrayCell
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paramsArrayCell"
#define ORV_TABLE   "data/content/paramsarraycell.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamsArrayCell final : public ParamsArrayCellStruct
{
public:
    ParamsArrayCell();
    ~ParamsArrayCell() override;
};

} // namespace Ksx::Data::Content

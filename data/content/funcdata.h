// A named constant of a function node.
#pragma once

#include "data/content/constantvalues.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   FuncData
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "funcData"
#define ORV_TABLE   "data/content/funcdata.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class FuncData final : public FuncDataStruct
{
public:
    FuncData();
    ~FuncData() override;
};

} // namespace Ksx::Data::Content

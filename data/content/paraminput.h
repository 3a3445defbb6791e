// An input of a graph or function.
#pragma once

#include "data/content/attributes.h"
#include "data/content/defaultvalue.h"
#include "data/content/defaultwidget.h"
#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/content/usage.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamInput
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paraminput"
#define ORV_TABLE   "data/content/paraminput.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamInput final : public ParamInputStruct
{
public:
    ParamInput();
    ~ParamInput() override;
};

ORV_LIST_CLASS(GraphInputsList, "paraminputs", ParamInput)

} // namespace Ksx::Data::Content

// The document classes of the function family: one source, since sixty would be dear to compile.
#include "data/content/dynamicvalue.h"
#include "data/content/funcdata.h"
#include "data/content/function.h"
#include "data/content/paramnode.h"

namespace Ksx::Data::Content {

#define ORV_CLASS Function
#define ORV_TABLE "data/content/function.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS DynamicValue
#define ORV_TABLE "data/content/dynamicvalue.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ParamNode
#define ORV_TABLE "data/content/paramnode.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS FuncData
#define ORV_TABLE "data/content/funcdata.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

ORV_DEFINE_CLASS(ParamNodesList)

} // namespace Ksx::Data::Content

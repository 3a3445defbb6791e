// The document classes of the parameter family: one source, since sixty would be dear to compile.
#include "data/content/parameter.h"
#include "data/content/paramsarray.h"
#include "data/content/paramsarraycell.h"
#include "data/content/paramsgraph.h"
#include "data/content/paramsgraphdata.h"
#include "data/content/paramsgraphnode.h"
#include "data/content/paramvalue.h"

namespace Ksx::Data::Content {

#define ORV_CLASS Parameter
#define ORV_TABLE "data/content/parameter.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ParamsArray
#define ORV_TABLE "data/content/paramsarray.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ParamsArrayCell
#define ORV_TABLE "data/content/paramsarraycell.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ParamsGraph
#define ORV_TABLE "data/content/paramsgraph.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ParamsGraphData
#define ORV_TABLE "data/content/paramsgraphdata.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ParamsGraphNode
#define ORV_TABLE "data/content/paramsgraphnode.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

ORV_DEFINE_CLASS(GraphParametersList)
ORV_DEFINE_CLASS(FilterParamsList)
ORV_DEFINE_CLASS(CompInstanceParamsList)
ORV_DEFINE_CLASS(ParamValue)

} // namespace Ksx::Data::Content

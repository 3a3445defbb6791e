// The document classes of the graph family: one source, since sixty would be dear to compile.
#include "data/content/defaultvalue.h"
#include "data/content/defaultwidget.h"
#include "data/content/graph.h"
#include "data/content/graphoutput.h"
#include "data/content/paraminput.h"
#include "data/content/root.h"
#include "data/content/rootoutput.h"
#include "data/content/usage.h"

namespace Ksx::Data::Content {

#define ORV_CLASS Graph
#define ORV_TABLE "data/content/graph.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ParamInput
#define ORV_TABLE "data/content/paraminput.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS GraphOutput
#define ORV_TABLE "data/content/graphoutput.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS Usage
#define ORV_TABLE "data/content/usage.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS DefaultWidget
#define ORV_TABLE "data/content/defaultwidget.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS Root
#define ORV_TABLE "data/content/root.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS RootOutput
#define ORV_TABLE "data/content/rootoutput.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

ORV_DEFINE_CLASS(GraphInputsList)
ORV_DEFINE_CLASS(GraphOutputsList)
ORV_DEFINE_CLASS(RootOutputList)
ORV_DEFINE_CLASS(DefaultValue)

} // namespace Ksx::Data::Content

// The document classes of the node family: one source, since sixty would be dear to compile.
#include "data/content/compexternal.h"
#include "data/content/compexternallink.h"
#include "data/content/compfilter.h"
#include "data/content/compimplementation.h"
#include "data/content/compinputbridge.h"
#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/compoutput.h"
#include "data/content/compoutputbridge.h"
#include "data/content/connexion.h"
#include "data/content/outputbridging.h"

namespace Ksx::Data::Content {

#define ORV_CLASS CompNode
#define ORV_TABLE "data/content/compnode.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS CompFilter
#define ORV_TABLE "data/content/compfilter.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS CompInstance
#define ORV_TABLE "data/content/compinstance.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS CompInputBridge
#define ORV_TABLE "data/content/compinputbridge.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS CompOutputBridge
#define ORV_TABLE "data/content/compoutputbridge.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS CompExternal
#define ORV_TABLE "data/content/compexternal.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS CompExternalLink
#define ORV_TABLE "data/content/compexternallink.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS CompOutput
#define ORV_TABLE "data/content/compoutput.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS OutputBridging
#define ORV_TABLE "data/content/outputbridging.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS Connexion
#define ORV_TABLE "data/content/connexion.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

ORV_DEFINE_CLASS(GraphCompositeNodesList)
ORV_DEFINE_CLASS(CompNodeOutputList)
ORV_DEFINE_CLASS(OutputBridgings)
ORV_DEFINE_CLASS(CompNodeConnexionsList)
ORV_DEFINE_CLASS(ParamNodeConnexionsList)
ORV_DEFINE_CLASS(CompImplementation)

} // namespace Ksx::Data::Content

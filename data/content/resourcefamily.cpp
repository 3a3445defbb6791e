// The document classes of the resource family: one source, since sixty would be dear to compile.
#include "data/content/binboon.h"
#include "data/content/binembedded.h"
#include "data/content/externalcopy.h"
#include "data/content/resource.h"

namespace Ksx::Data::Content {

#define ORV_CLASS Resource
#define ORV_TABLE "data/content/resource.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS ExternalCopy
#define ORV_TABLE "data/content/externalcopy.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS BinBoon
#define ORV_TABLE "data/content/binboon.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS BinEmbedded
#define ORV_TABLE "data/content/binembedded.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

} // namespace Ksx::Data::Content

// The document classes of the layout family: one source, since sixty would be dear to compile.
#include "data/content/attributes.h"
#include "data/content/guilayout.h"
#include "data/content/guilayoutcomp.h"
#include "data/content/guiobject.h"
#include "data/content/option.h"

namespace Ksx::Data::Content {

#define ORV_CLASS Attributes
#define ORV_TABLE "data/content/attributes.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS Option
#define ORV_TABLE "data/content/option.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS GUILayout
#define ORV_TABLE "data/content/guilayout.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS GUILayoutComp
#define ORV_TABLE "data/content/guilayoutcomp.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS GUIObject
#define ORV_TABLE "data/content/guiobject.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

ORV_DEFINE_CLASS(Options)

} // namespace Ksx::Data::Content

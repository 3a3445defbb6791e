// How a graph is shown.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   GUILayoutComp
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "GUILayoutComp"
#define ORV_TABLE   "data/content/guilayoutcomp.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class GUILayoutComp : public GUILayoutCompStruct
{
public:
    GUILayoutComp();
    ~GUILayoutComp() override;
};

} // namespace Ksx::Data::Content

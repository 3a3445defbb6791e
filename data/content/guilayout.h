// The position of one thing on a canvas.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   GUILayout
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "GUILayout"
#define ORV_TABLE   "data/content/guilayout.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class GUILayout : public GUILayoutStruct
{
public:
    GUILayout();
    ~GUILayout() override;
};

} // namespace Ksx::Data::Content

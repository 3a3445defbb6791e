// An object on a canvas, such as a comment.
#pragma once

#include "data/content/guilayout.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   GUIObject
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "GUIObject"
#define ORV_TABLE   "data/content/guiobject.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class GUIObject final : public GUIObjectStruct
{
public:
    GUIObject();
    ~GUIObject() override;
};

} // namespace Ksx::Data::Content

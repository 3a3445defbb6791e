// Manipulators of the layout family.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/attributes.h"
#include "data/content/guilayout.h"
#include "data/content/guilayoutcomp.h"
#include "data/content/guiobject.h"
#include "data/content/option.h"
#include "data/content/valueoverloadablemanipulator.h"

#define ORV_QUALIFIED Ksx::Data::Content::Attributes
#define ORV_TABLE     "data/content/attributes.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::Option
#define ORV_TABLE     "data/content/option.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::GUILayout
#define ORV_TABLE     "data/content/guilayout.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::GUILayoutComp
#define ORV_TABLE     "data/content/guilayoutcomp.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::GUIObject
#define ORV_TABLE     "data/content/guiobject.members"
#include "core/declaremanipulator.inc"

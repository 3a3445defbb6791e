// Manipulators of the function family.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/dynamicvalue.h"
#include "data/content/funcdata.h"
#include "data/content/function.h"
#include "data/content/paramnode.h"
#include "data/content/valueoverloadablemanipulator.h"

#define ORV_QUALIFIED Ksx::Data::Content::Function
#define ORV_TABLE     "data/content/function.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::DynamicValue
#define ORV_TABLE     "data/content/dynamicvalue.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ParamNode
#define ORV_TABLE     "data/content/paramnode.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::FuncData
#define ORV_TABLE     "data/content/funcdata.members"
#include "core/declaremanipulator.inc"

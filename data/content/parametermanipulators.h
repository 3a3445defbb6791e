// Manipulators of the parameter family.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/parameter.h"
#include "data/content/paramsarray.h"
#include "data/content/paramsarraycell.h"
#include "data/content/paramsgraph.h"
#include "data/content/paramsgraphdata.h"
#include "data/content/paramsgraphnode.h"
#include "data/content/valueoverloadablemanipulator.h"

#define ORV_QUALIFIED Ksx::Data::Content::Parameter
#define ORV_TABLE     "data/content/parameter.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ParamsArray
#define ORV_TABLE     "data/content/paramsarray.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ParamsArrayCell
#define ORV_TABLE     "data/content/paramsarraycell.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ParamsGraph
#define ORV_TABLE     "data/content/paramsgraph.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ParamsGraphData
#define ORV_TABLE     "data/content/paramsgraphdata.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ParamsGraphNode
#define ORV_TABLE     "data/content/paramsgraphnode.members"
#include "core/declaremanipulator.inc"

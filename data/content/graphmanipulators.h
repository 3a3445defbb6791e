// Manipulators of the graph family.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/defaultwidget.h"
#include "data/content/graph.h"
#include "data/content/graphoutput.h"
#include "data/content/paraminput.h"
#include "data/content/root.h"
#include "data/content/rootoutput.h"
#include "data/content/usage.h"
#include "data/content/valueoverloadablemanipulator.h"

#define ORV_QUALIFIED Ksx::Data::Content::Graph
#define ORV_TABLE     "data/content/graph.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ParamInput
#define ORV_TABLE     "data/content/paraminput.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::GraphOutput
#define ORV_TABLE     "data/content/graphoutput.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::Usage
#define ORV_TABLE     "data/content/usage.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::DefaultWidget
#define ORV_TABLE     "data/content/defaultwidget.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::Root
#define ORV_TABLE     "data/content/root.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::RootOutput
#define ORV_TABLE     "data/content/rootoutput.members"
#include "core/declaremanipulator.inc"

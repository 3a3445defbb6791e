// Manipulators of the resource family.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/binboon.h"
#include "data/content/binembedded.h"
#include "data/content/externalcopy.h"
#include "data/content/resource.h"
#include "data/content/valueoverloadablemanipulator.h"

#define ORV_QUALIFIED Ksx::Data::Content::Resource
#define ORV_TABLE     "data/content/resource.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::ExternalCopy
#define ORV_TABLE     "data/content/externalcopy.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::BinBoon
#define ORV_TABLE     "data/content/binboon.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::BinEmbedded
#define ORV_TABLE     "data/content/binembedded.members"
#include "core/declaremanipulator.inc"

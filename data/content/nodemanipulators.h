// Manipulators of the node family.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/compexternal.h"
#include "data/content/compexternallink.h"
#include "data/content/compfilter.h"
#include "data/content/compinputbridge.h"
#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/compoutput.h"
#include "data/content/compoutputbridge.h"
#include "data/content/connexion.h"
#include "data/content/outputbridging.h"
#include "data/content/valueoverloadablemanipulator.h"

#define ORV_QUALIFIED Ksx::Data::Content::CompNode
#define ORV_TABLE     "data/content/compnode.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::CompFilter
#define ORV_TABLE     "data/content/compfilter.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::CompInstance
#define ORV_TABLE     "data/content/compinstance.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::CompInputBridge
#define ORV_TABLE     "data/content/compinputbridge.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::CompOutputBridge
#define ORV_TABLE     "data/content/compoutputbridge.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::CompExternal
#define ORV_TABLE     "data/content/compexternal.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::CompExternalLink
#define ORV_TABLE     "data/content/compexternallink.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::CompOutput
#define ORV_TABLE     "data/content/compoutput.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::OutputBridging
#define ORV_TABLE     "data/content/outputbridging.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::Connexion
#define ORV_TABLE     "data/content/connexion.members"
#include "core/declaremanipulator.inc"

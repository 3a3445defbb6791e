// Manipulators of the package family.
#pragma once

#include "core/manipulatorstruct.h"
#include "data/content/configurations.h"
#include "data/content/dependency.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/packageslist.h"
#include "data/content/valueoverloadablemanipulator.h"

#define ORV_QUALIFIED Ksx::Data::Content::Package
#define ORV_TABLE     "data/content/package.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::Configurations
#define ORV_TABLE     "data/content/configurations.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::Dependency
#define ORV_TABLE     "data/content/dependency.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::Group
#define ORV_TABLE     "data/content/group.members"
#include "core/declaremanipulator.inc"

#define ORV_QUALIFIED Ksx::Data::Content::PackagesList
#define ORV_TABLE     "data/content/packageslist.members"
#include "core/declaremanipulator.inc"

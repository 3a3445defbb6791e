// The default of an input: one of the constants.
#pragma once

#include "data/content/constantvalues.h"
#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

ORV_UNION_CLASS(DefaultValue, "defaultValue", KSX_CONSTANT_VALUES)

} // namespace Ksx::Data::Content

// The value of a parameter: computed, or one of the constants.
#pragma once

#include "data/content/constantvalues.h"
#include "data/content/dynamicvalue.h"
#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

ORV_UNION_CLASS(ParamValue, "paramValue", DynamicValue, KSX_CONSTANT_VALUES)

} // namespace Ksx::Data::Content

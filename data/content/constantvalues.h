// The twelve constant values, in the order in which every union that holds them tries them.
#pragma once

#include "data/content/valueclass.h"

namespace Ksx::Data::Content {

// Float and Float1 are two: a number and a vector of one. Int32 is unsigned, the others are not.
ORV_VALUE_CLASS(ConstantValueString, "constantValueString", Text)
ORV_VALUE_CLASS(ConstantValueBool, "constantValueBool", bool)
ORV_VALUE_CLASS(ConstantValueInt32, "constantValueInt32", UInt)
ORV_VALUE_CLASS(ConstantValueFloat, "constantValueFloat", float)
ORV_VALUE_CLASS(ConstantValueFloat1, "constantValueFloat1", Float1)
ORV_VALUE_CLASS(ConstantValueFloat2, "constantValueFloat2", Float2)
ORV_VALUE_CLASS(ConstantValueFloat3, "constantValueFloat3", Float3)
ORV_VALUE_CLASS(ConstantValueFloat4, "constantValueFloat4", Float4)
ORV_VALUE_CLASS(ConstantValueInt1, "constantValueInt1", Int1)
ORV_VALUE_CLASS(ConstantValueInt2, "constantValueInt2", Int2)
ORV_VALUE_CLASS(ConstantValueInt3, "constantValueInt3", Int3)
ORV_VALUE_CLASS(ConstantValueInt4, "constantValueInt4", Int4)

// The same as a list of classes, for the declarations of the unions.
#define KSX_CONSTANT_VALUES                                                                        \
    ConstantValueString, ConstantValueBool, ConstantValueInt32, ConstantValueFloat,                \
        ConstantValueFloat1, ConstantValueFloat2, ConstantValueFloat3, ConstantValueFloat4,        \
        ConstantValueInt1, ConstantValueInt2, ConstantValueInt3, ConstantValueInt4

} // namespace Ksx::Data::Content

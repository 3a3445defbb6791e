// The small overloadable values that have a class of their own.
#pragma once

#include "data/content/valueclass.h"

namespace Ksx::Data::Content {

ORV_VALUE_CLASS(Path, "path", Text)                   // data path of a graph or function
ORV_VALUE_CLASS(Type, "type", UInt)                   // bit value of a value or image type
ORV_VALUE_CLASS(CompType, "comptype", UInt)           // the same, of a node's output
ORV_VALUE_CLASS(Format, "format", UInt)               // of a rendered image
ORV_VALUE_CLASS(Disabled, "disabled", bool)           // switched off
ORV_VALUE_CLASS(ConnRef, "connRef", UInt)             // uid of a feeding node
ORV_VALUE_CLASS(ConnRefOutput, "connRefOutput", UInt) // uid of its output
ORV_VALUE_CLASS(RootNode, "rootnode", UInt)           // uid of the node that gives the result

} // namespace Ksx::Data::Content

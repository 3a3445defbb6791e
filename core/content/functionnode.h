// New nodes of function graphs.
#pragma once

#include "ksx/core/uidsource.h"
#include <memory>

namespace Ksx::Data::Content {
class ParamNode;
} // namespace Ksx::Data::Content

namespace Ksx::Data::Desc {
struct Function;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

// The name of the data item in which a function node holds its constant, or the name of the
// variable that it reads or writes.
constexpr const char* FunctionDataName = "datacontent";

// A node of that function, unconnected and in no list yet. Its type is the output type of the
// description: a set of types where that is open, 0 for a node without a value. What it holds is zero, false or empty.
std::unique_ptr<Data::Content::ParamNode> makeFunctionNode(const Data::Desc::Function& function,
                                                           Uid uid);

} // namespace Ksx::Core

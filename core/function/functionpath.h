// The nodes that call a function of a package.
#pragma once

#include <string>

namespace Ksx::Data::Content {
class ParamNode;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Is the node an instance of a function?
bool isFunctionInstance(const Data::Content::ParamNode& node);

// The data path of the function of an instance; empty if the node holds none.
const std::string& functionPathOf(const Data::Content::ParamNode& node);

} // namespace Ksx::Core

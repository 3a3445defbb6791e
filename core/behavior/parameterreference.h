// Parameters whose value is a reference.
#pragma once

#include <string>

namespace Ksx::Data::Content {
class Parameter;
} // namespace Ksx::Data::Content

namespace Ksx::Core::Behavior {

// The value of a parameter that is a constant text, null for all others.
const std::string* textOf(const Data::Content::Parameter& parameter);

} // namespace Ksx::Core::Behavior

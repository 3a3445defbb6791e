// One input of a compiled assembly's graph.
#pragma once

#include <memory>

class QDomElement;

namespace Ksx::Data::Content {
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The input that an `input` element of a description tells of. Null if it lacks identifier, uid or
// type, or has a type or a default that cannot be read.
std::unique_ptr<Data::Content::ParamInput> readOblasmInput(const QDomElement& element);

} // namespace Ksx::Core

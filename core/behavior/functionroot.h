// The node that gives the result of a computed value.
#pragma once

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class ParamNode;
} // namespace Ksx::Data::Content

namespace Ksx::Core::Behavior {

// Of what a ParamValue holds, which may be null. Null for a constant, and without such a node.
const Data::Content::ParamNode* rootNodeOf(const Orv::Data::BaseObject* value);

} // namespace Ksx::Core::Behavior

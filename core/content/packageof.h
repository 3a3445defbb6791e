// In which package an object stands.
#pragma once

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The object itself or the package above it; null for what stands in none.
const Data::Content::Package* packageOf(const Orv::Data::BaseObject& object);

} // namespace Ksx::Core

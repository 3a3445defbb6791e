// Data paths of the content of open packages.
#pragma once

#include <string>
#include <string_view>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// "pkg://group/graph?dependency=12" for an object of a content list, or for a package: where it
// stands in its package, and the uid by which the table of open packages knows that one. Empty for
// what stands in no open package, and without services.
std::string objectUrl(const Orv::Data::BaseObject& object);

// The object that a data path in a package leads to; null if there is none. The path's dependency
// is looked for among the dependency elements of `from`, which may name its own file, and in the
// table of open packages; a path without one leads into `from`.
const Orv::Data::BaseObject* resolveObjectUrl(std::string_view url,
                                              const Data::Content::Package& from);

} // namespace Ksx::Core

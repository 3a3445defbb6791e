// Data paths to the content of open packages.
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

// Returns the data path of a package or of an object of its content, like
// "pkg://group/graph?dependency=12". The number is the uid by which the table of open packages
// knows the package. For an object inside of a graph, returns the path of the graph. Returns an
// empty text for an object of no open package, and without services. Main thread.
std::string objectUrl(const Orv::Data::BaseObject& object);

// Returns the object that a data path in the package `from` leads to. Returns null if there is
// none, and for a text that is no data path.
//
// A path without a dependency leads into `from`. So does the uid of the element by which `from`
// names itself. Any other dependency is looked up in the table of open packages. Main thread.
const Orv::Data::BaseObject* resolveObjectUrl(std::string_view url,
                                              const Data::Content::Package& from);

} // namespace Ksx::Core

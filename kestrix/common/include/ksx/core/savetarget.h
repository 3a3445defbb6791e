// Whether an edited package may be saved to a file.
#pragma once

#include <QString>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class PackagesListManager;

// Returns false if `target` is the file of another open package, or a file that the package refers
// to, such as a picture. The new file would refer to the very file that it takes the place of. Files
// are compared as such, under whatever name. The own file of the package is no obstacle. Main
// thread.
bool isSafeTarget(const QString& target, const Data::Content::Package& package,
                  PackagesListManager& manager);

} // namespace Ksx::Core

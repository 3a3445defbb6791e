// Opens the versions of a package that are compared.
#pragma once

#include "ksx/kit/comparison.h"
#include <QDir>
#include <memory>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

// Returns the folder of the place of a version.
QDir folderOf(const PackageVersion& version);

// Opens a version as a file of that folder, so that versions from several folders have the same
// references. Names of the presets library stay as they are. Returns null on failure, with a sentence in `reason`.
std::unique_ptr<Data::Content::Package> openVersion(const PackageVersion& version,
                                                    const QDir& folder, QString& reason);

} // namespace Ksx::Kit

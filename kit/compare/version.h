// Opens the versions of a package that are compared.
#pragma once

#include "ksx/kit/comparison.h"
#include <QDir>
#include <memory>
#include <optional>

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

// Two versions that are open.
struct OpenVersions
{
    QDir folder; // of the first one, where both are taken to lie
    std::unique_ptr<const Data::Content::Package> first;
    std::unique_ptr<const Data::Content::Package> second;
};

// Opens both versions in the folder of the first one. Returns none if one of them cannot be read,
// with its name and a sentence in `file` and `reason`.
std::optional<OpenVersions> openVersions(const PackageVersion& first, const PackageVersion& second,
                                         QString& file, QString& reason);

} // namespace Ksx::Kit

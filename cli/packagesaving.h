// Saves packages; what all commands end with.
#pragma once

#include "ksx/core/packagesaver.h"
#include <QString>

namespace Ksx::Core {
class PackagesListManager;
} // namespace Ksx::Core

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

// Returns true if the package was saved. Returns false after an error line.
bool isSaved(const Ksx::Core::PackageSaver::Result& result, const QString& target);

// Writes the package to `target`. Returns false after an error line.
bool savePackageTo(const QString& target, const Ksx::Data::Content::Package& package,
                   const QString& presetsDirectory);

// Like savePackageTo(), for a package that was edited. Refuses a target that is the file of another
// open package or a file that the package refers to, such as a picture, under whatever name: the
// result would refer to the very file that it takes the place of.
bool saveEditedPackageTo(const QString& target, const Ksx::Data::Content::Package& package,
                         const QString& presetsDirectory, Ksx::Core::PackagesListManager& manager);

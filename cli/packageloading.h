// Opens packages with everything that they depend on; what all commands begin with.
#pragma once

#include <QStringList>

namespace Ksx::Core {
class PackagesListManager;
} // namespace Ksx::Core

// Opens the files and, if `followDependencies` is set, their dependencies, and attaches them to the
// manager's list: see DependencyOpener. Returns 0. On failure writes an error line, attaches nothing
// and returns 1.
int loadPackages(Ksx::Core::PackagesListManager& manager, const QStringList& paths,
                 const QStringList& presetsPaths, bool followDependencies);

// Opens packages with everything that they depend on; what all commands begin with.
#pragma once

#include <QStringList>

namespace Ksx::Core {
class PackagesListManager;
} // namespace Ksx::Core

// Opens the files and, if `followDependencies` is set, their dependencies, and attaches them to the
// manager's list: see DependencyOpener. Returns 0. On failure writes an error line, attaches nothing
// and returns 1. With Qt 6 a braced list does not notice that there is no memory for it, so `paths`
// must be none.
int loadPackages(Ksx::Core::PackagesListManager& manager, const QStringList& paths,
                 const QStringList& presetsPaths, bool followDependencies);

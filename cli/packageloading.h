// Opens packages with everything that they depend on; what all commands begin with.
#pragma once

#include "ksx/core/packageslistmanager.h"
#include <QStringList>
#include <list>

// Opens the files and, if `followDependencies` is set, their dependencies breadth first, each file
// once, and attaches them to the manager's list. "obl://" references lead into the first of
// `presetsPaths`, or into the current directory without one. 0 on success; otherwise an error line
// has been written, and nothing has been attached.
int loadPackages(Ksx::Core::PackagesListManager& manager, const QStringList& paths,
                 const QStringList& presetsPaths, bool followDependencies);

// Opens the package of one entry, or takes it over from an entry of `loaded` for the same file. The
// entry's file name becomes canonical if the file exists. Answers 0, or 1 without any message.
int loadPackageEntry(Ksx::Core::PackagesListManager::DependencyEntry& entry,
                     Ksx::Core::PackagesListManager& manager,
                     const std::list<Ksx::Core::PackagesListManager::DependencyEntry>& loaded,
                     const QStringList& presetsPaths);

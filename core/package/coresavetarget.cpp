#include "ksx/core/savetarget.h"

#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/filereferences.h"
#include "ksx/core/packageslistmanager.h"
#include <algorithm>

namespace Ksx::Core {

namespace {

using Data::Content::Package;

bool isAnotherPackage(const QString& target, const Package& package, PackagesListManager& manager)
{
    const auto packages = manager.openPackages();
    return std::any_of(packages.begin(), packages.end(), [&](const auto& open) {
        return open.get() != &package && Orv::Core::isSameFile(manager.filePath(*open), target);
    });
}

bool isReferredTo(const QString& target, const Package& package)
{
    const auto references = fileReferencesOf(package);
    return std::any_of(references.begin(), references.end(), [&](const auto* reference) {
        const QString path = Orv::fromBytes(reference->get());
        return path.startsWith('/') && Orv::Core::isSameFile(path, target);
    });
}

} // namespace

bool isSafeTarget(const QString& target, const Package& package, PackagesListManager& manager)
{
    // A reference of a package to its own file is no reason to refuse that file.
    const bool isItself = Orv::Core::isSameFile(manager.filePath(package), target);
    return !isAnotherPackage(target, package, manager) &&
           (isItself || !isReferredTo(target, package));
}

} // namespace Ksx::Core

#include "packagesaving.h"

#include "console.h"
#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/filereferences.h"
#include "ksx/core/packageslistmanager.h"
#include <QDir>
#include <algorithm>

namespace {

using Ksx::Core::PackagesListManager;
using Ksx::Data::Content::Package;

bool isAnotherPackage(const QString& target, const Package& package, PackagesListManager& manager)
{
    const auto packages = manager.openPackages();
    return std::any_of(packages.begin(), packages.end(), [&](const auto& open) {
        return open.get() != &package && Orv::Core::isSameFile(manager.filePath(*open), target);
    });
}

bool isReferredTo(const QString& target, const Package& package)
{
    const auto references = Ksx::Core::fileReferencesOf(package);
    return std::any_of(references.begin(), references.end(), [&](const auto* reference) {
        const QString path = Orv::fromBytes(reference->get());
        return path.startsWith('/') && Orv::Core::isSameFile(path, target);
    });
}

void printFailure(const QString& target)
{
    printError(QStringLiteral("Error! Cannot saved: ") + target);
}

} // namespace

bool isSaved(const Ksx::Core::PackageSaver::Result& result, const QString& target)
{
    if (result.isSaved)
        return true;
    printFailure(target);
    if (!result.keptCopy.isNull())
        printError(QStringLiteral("Error! The former file is kept as: ") + result.keptCopy);
    return false;
}

bool savePackageTo(const QString& target, const Package& package, const QString& presetsDirectory)
{
    Ksx::Core::PackageSaver saver(QDir(Orv::Core::absolutePath(presetsDirectory)));
    saver.add(package, target);
    return isSaved(saver.next(), target);
}

bool saveEditedPackageTo(const QString& target, const Package& package,
                         const QString& presetsDirectory, PackagesListManager& manager)
{
    // A reference of a package to its own file is no reason to refuse that file.
    const bool isItself = Orv::Core::isSameFile(manager.filePath(package), target);
    if (isAnotherPackage(target, package, manager) ||
        (!isItself && isReferredTo(target, package))) {
        printFailure(target);
        return false;
    }
    return savePackageTo(target, package, presetsDirectory);
}

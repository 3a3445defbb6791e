#include "packagesaving.h"

#include "console.h"
#include "core/fileplace.h"
#include "ksx/core/savetarget.h"
#include <QDir>

namespace {

using Ksx::Core::PackagesListManager;
using Ksx::Data::Content::Package;

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
    if (!Ksx::Core::isSafeTarget(target, package, manager)) {
        printFailure(target);
        return false;
    }
    return savePackageTo(target, package, presetsDirectory);
}

#include "packageloading.h"

#include "console.h"
#include "core/fileplace.h"
#include "core/moduleplace.h"
#include "ksx/core/dependencyopener.h"

namespace {

// An installation that is not complete is no fault of the file.
void printMissingReader(const QString& filename)
{
    const QString reader = Orv::Core::modulePlace(QStringLiteral("libksx_archives.so"));
    if (filename.endsWith(QLatin1String(".oblar")) && !Orv::Core::exists(reader))
        printError(QStringLiteral("Error! Library is missing: ") + reader);
}

} // namespace

int loadPackages(Ksx::Core::PackagesListManager& manager, const QStringList& paths,
                 const QStringList& presetsPaths, bool followDependencies)
{
    Ksx::Core::DependencyOpener opener(manager, presetsPaths);
    opener.setFollowsDependencies(followDependencies);
    if (opener.open(paths))
        return 0;
    const Ksx::Core::DependencyOpener::Failure& failure = opener.failures().front();
    printError(failure.isDependency ? QStringLiteral("Cannot load dependency: ") + failure.filename
                                    : QStringLiteral("Cannot load: ") + failure.filename);
    printMissingReader(failure.filename);
    return 1;
}

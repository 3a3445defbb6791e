#include "packageloading.h"

#include "console.h"
#include "ksx/core/dependencyopener.h"

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
    return 1;
}

// Gives each dependency a uid, and the package a dependency on itself.
#pragma once

#include "updating/ipackageupdater.h"
#include "updating/updaterbase.h"

namespace Ksx::Core {

class PackageUpdater6141 final : public UpdaterBase<IPackageUpdater>
{
public:
    Orv::Core::Version updaterVersion() const override { return {1, 1, 0, 6141}; }
    bool update(Data::Content::Package& package, Orv::Core::MessageNode* log,
                const Orv::Core::Extensions::ProgressFunction& progress) const override;

protected:
    const char* className() const override { return "Ksx::Core::PackageUpdater6141"; }
};

} // namespace Ksx::Core

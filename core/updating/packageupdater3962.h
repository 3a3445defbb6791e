// Gives references to files their present ending and scheme.
#pragma once

#include "updating/ipackageupdater.h"
#include "updating/updaterbase.h"

namespace Ksx::Core {

class PackageUpdater3962 final : public UpdaterBase<IPackageUpdater>
{
public:
    Orv::Core::Version updaterVersion() const override { return {1, 0, 1, 3962}; }
    bool update(Data::Content::Package& package, Orv::Core::MessageNode* log,
                const Orv::Core::Extensions::ProgressFunction& progress) const override;

protected:
    const char* className() const override { return "Ksx::Core::PackageUpdater3962"; }
};

} // namespace Ksx::Core

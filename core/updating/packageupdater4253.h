// Makes the primary input of each graph an image input.
#pragma once

#include "updating/ipackageupdater.h"
#include "updating/updaterbase.h"

namespace Ksx::Core {

class PackageUpdater4253 final : public UpdaterBase<IPackageUpdater>
{
public:
    // The package changes and the format does not.
    Orv::Core::Version formatVersion() const override { return {1, 0, 1, 3962}; }
    Orv::Core::Version updaterVersion() const override { return {1, 0, 1, 4253}; }
    bool update(Data::Content::Package& package, Orv::Core::MessageNode* log,
                const Orv::Core::Extensions::ProgressFunction& progress) const override;

protected:
    const char* className() const override { return "Ksx::Core::PackageUpdater4253"; }
};

} // namespace Ksx::Core

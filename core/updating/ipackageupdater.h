// A step of the format's history on the object tree.
#pragma once

#include "core/extensions.h"

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Works on a package that has just been imported and that nobody listens to.
class IPackageUpdater : public Orv::Core::Extensions::IUpdater
{
public:
    // False on failure. `log` may be null.
    virtual bool update(Data::Content::Package& package, Orv::Core::MessageNode* log,
                        const Orv::Core::Extensions::ProgressFunction& progress) const = 0;
};

} // namespace Ksx::Core

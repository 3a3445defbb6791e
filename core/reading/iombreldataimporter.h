// What the importers of all package formats share.
#pragma once

#include "core/extensions.h"

namespace Ksx::Core {

class IOmbrelDataImporter : public Orv::Core::Extensions::IDataImporter
{
public:
    bool isCompatible(const Orv::Core::Version& applicationVersion) const override;
    // Returns a RegularFile for the scheme "file", nothing for any other.
    std::unique_ptr<QIODevice> createDevice(const QUrl& url) const override;
    Orv::Core::Version version() const override;
};

} // namespace Ksx::Core

#include "reading/iombreldataimporter.h"

#include "core/regularfile.h"
#include "reading/extensionregistry.h"

namespace Ksx::Core {

bool IOmbrelDataImporter::isCompatible(const Orv::Core::Version&) const
{
    return true;
}

std::unique_ptr<QIODevice> IOmbrelDataImporter::createDevice(const QUrl& url) const
{
    if (url.scheme() != QLatin1String("file"))
        return nullptr;
    return std::make_unique<Orv::Core::RegularFile>(url.toLocalFile());
}

Orv::Core::Version IOmbrelDataImporter::version() const
{
    return applicationVersion();
}

} // namespace Ksx::Core

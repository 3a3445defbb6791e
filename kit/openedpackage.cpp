#include "openedpackage.h"

#include "data/content/package.h"
#include "packageparts.h"

namespace Ksx::Kit {

OpenedPackage::OpenedPackage() = default;
OpenedPackage::OpenedPackage(OpenedPackage&& other) noexcept = default;
OpenedPackage& OpenedPackage::operator=(OpenedPackage&& other) noexcept = default;
OpenedPackage::~OpenedPackage() = default;

OpenedPackage openForReading(const QString& file, const PackageHead& head,
                             const QStringList& presetsPaths)
{
    OpenedPackage package;
    package.file = file;
    package.head = head;
    package.document = openPackage(file, presetsPaths, package.updates, package.reason);
    return package;
}

} // namespace Ksx::Kit

// Reads the XML form of a package.
#pragma once

#include "reading/iombreldataimporter.h"
#include "updating/ipackagetextimporter.h"

namespace Ksx::Core {

// For ".obl" and the editor's ".obl.orvautosave".
class OBLImporter final : public IOmbrelDataImporter, public IPackageTextImporter
{
public:
    bool accepts(const QUrl& url) const override;
    // A Package, or null; a bad value in the document is a failure like any other.
    std::unique_ptr<Orv::Data::BaseObject>
    import(QIODevice& device, Orv::Core::MessageNode* log,
           const Orv::Core::Extensions::ProgressFunction& progress) const override;
};

} // namespace Ksx::Core

// Opens a compiled package: an archive of assemblies with their descriptions.
#pragma once

#include "reading/iombreldataimporter.h"
#include <QString>
#include <utility>

namespace Ksx::Core {

// For ".oblar". The package gets the graphs of all assemblies, without bodies.
class OBLARImporter final : public IOmbrelDataImporter
{
public:
    // `archiveLibrary` is what readArchive() takes.
    explicit OBLARImporter(QString archiveLibrary = {})
        : m_archiveLibrary(std::move(archiveLibrary))
    {}

    bool accepts(const QUrl& url) const override;
    std::unique_ptr<Orv::Data::BaseObject>
    import(QIODevice& device, Orv::Core::MessageNode* log,
           const Orv::Core::Extensions::ProgressFunction& progress) const override;

private:
    QString m_archiveLibrary;
};

} // namespace Ksx::Core

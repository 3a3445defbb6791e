// Opens a compiled assembly from disk.
#pragma once

#include "reading/iombreldataimporter.h"

namespace Ksx::Core {

// For ".oblasm", with its description in the ".xml" file of the same name beside it.
class OBLASMImporter final : public IOmbrelDataImporter
{
public:
    bool accepts(const QUrl& url) const override;
    // `device` must be a file.
    std::unique_ptr<Orv::Data::BaseObject>
    import(QIODevice& device, Orv::Core::MessageNode* log,
           const Orv::Core::Extensions::ProgressFunction& progress) const override;
};

} // namespace Ksx::Core

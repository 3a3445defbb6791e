// Version readers of the compiled formats, which have no versions.
#pragma once

#include "core/extensions.h"

namespace Ksx::Core {

// Both answer "no version" without a look at the file: so it meets no updater and is never too new.
class OBLARDataFormatVersionReader final : public Orv::Core::Extensions::IDataFormatVersionReader
{
public:
    bool accepts(const Orv::Core::Extensions::IDataImporter& importer) const override;
    Orv::Core::Version version() const override;
    bool read(QIODevice& device, Orv::Core::Version& version) const override;
};

class OBLASMDataFormatVersionReader final : public Orv::Core::Extensions::IDataFormatVersionReader
{
public:
    bool accepts(const Orv::Core::Extensions::IDataImporter& importer) const override;
    Orv::Core::Version version() const override;
    bool read(QIODevice& device, Orv::Core::Version& version) const override;
};

} // namespace Ksx::Core

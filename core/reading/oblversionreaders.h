// Version numbers of .obl files, read without parsing XML.
#pragma once

#include "core/extensions.h"

namespace Ksx::Core {

// Both look for the first element of a name in blocks of 150 bytes, and take the text between the
// two double quotes behind it: the elements stand near the top of every file.
class OBLDataFormatVersionReader final : public Orv::Core::Extensions::IDataFormatVersionReader
{
public:
    bool accepts(const Orv::Core::Extensions::IDataImporter& importer) const override;
    Orv::Core::Version version() const override;
    bool read(QIODevice& device, Orv::Core::Version& version) const override;
};

class OBLUpdaterVersionReader final : public Orv::Core::Extensions::IUpdaterVersionReader
{
public:
    bool accepts(const Orv::Core::Extensions::IDataImporter& importer) const override;
    Orv::Core::Version version() const override;
    bool read(QIODevice& device, Orv::Core::Version& version) const override;
};

} // namespace Ksx::Core

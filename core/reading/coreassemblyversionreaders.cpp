#include "reading/assemblyversionreaders.h"

#include "reading/extensionregistry.h"
#include "reading/oblarimporter.h"
#include "reading/oblasmimporter.h"
#include <typeinfo>

namespace Ksx::Core {

using Orv::Core::Version;
using Orv::Core::Extensions::IDataImporter;

bool OBLARDataFormatVersionReader::accepts(const IDataImporter& importer) const
{
    return typeid(importer) == typeid(OBLARImporter);
}

Version OBLARDataFormatVersionReader::version() const
{
    return applicationVersion();
}

bool OBLARDataFormatVersionReader::read(QIODevice&, Version& version) const
{
    version = {};
    return true;
}

bool OBLASMDataFormatVersionReader::accepts(const IDataImporter& importer) const
{
    return typeid(importer) == typeid(OBLASMImporter);
}

Version OBLASMDataFormatVersionReader::version() const
{
    return applicationVersion();
}

bool OBLASMDataFormatVersionReader::read(QIODevice&, Version& version) const
{
    version = {};
    return true;
}

} // namespace Ksx::Core

// Which importers read the text that format updaters rewrite.
#pragma once

namespace Ksx::Core {

// A base of importers whose files are the XML text of a package. It adds nothing to the importer.
class IPackageTextImporter
{
protected:
    IPackageTextImporter() = default;
    virtual ~IPackageTextImporter() = default;
};

} // namespace Ksx::Core

// The document of all open packages. Not a file format: packages are written one by one.
#pragma once

#include "data/content/package.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   PackagesList
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "packageslist"
#define ORV_TABLE   "data/content/packageslist.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class PackagesList final : public PackagesListStruct
{
public:
    PackagesList();
    ~PackagesList() override;

    bool isTreeRoot() const override { return true; }
};

} // namespace Ksx::Data::Content

// One package: the root of a package file.
#pragma once

#include "data/content/configurations.h"
#include "data/content/contentobjectbase.h"
#include "data/content/dependency.h"
#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Package
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "package"
#define ORV_TABLE   "data/content/package.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Package final : public PackageStruct
{
public:
    Package();
    ~Package() override;
};

ORV_LIST_CLASS(PackagesListContent, "content", Package)

} // namespace Ksx::Data::Content

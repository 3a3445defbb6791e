// One package: the root of a package file.
#pragma once

#include "data/content/configurations.h"
#include "data/content/contentobjectbase.h"
#include "data/content/dependency.h"
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

struct PackagesListContentMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("content", Required);
};
class PackagesListContent
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<Package>, PackagesListContentMeta_>>
{
public:
    PackagesListContent();
    ~PackagesListContent() override;
};

} // namespace Ksx::Data::Content

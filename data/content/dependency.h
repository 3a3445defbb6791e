// A package that another one refers to.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Dependency
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "dependency"
#define ORV_TABLE   "data/content/dependency.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Dependency final : public DependencyStruct
{
public:
    Dependency();
    ~Dependency() override;
};

} // namespace Ksx::Data::Content

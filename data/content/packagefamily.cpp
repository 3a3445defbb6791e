// The document classes of the package family: one source, since sixty would be dear to compile.
#include "data/content/configurations.h"
#include "data/content/dependency.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/packageslist.h"
#include "data/content/resource.h"

namespace Ksx::Data::Content {

#define ORV_CLASS Package
#define ORV_TABLE "data/content/package.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS Configurations
#define ORV_TABLE "data/content/configurations.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS Dependency
#define ORV_TABLE "data/content/dependency.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS Group
#define ORV_TABLE "data/content/group.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

#define ORV_CLASS PackagesList
#define ORV_TABLE "data/content/packageslist.members"
#include "data/definemembers.inc"

#include "data/undefclass.inc"

ORV_DEFINE_CLASS(PackagesListContent)
std::unique_ptr<BaseObject> DelayedContentsStub_::create(std::string_view elementName)
{
    return Orv::Data::createFirstMatch<Group, Resource, Graph, Function>(elementName);
}

std::unique_ptr<BaseObject> DelayedConfigurationStub_::create(std::string_view elementName)
{
    return Orv::Data::createFirstMatch<Configurations>(elementName);
}

} // namespace Ksx::Data::Content

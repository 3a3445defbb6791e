// A node that is an instance of a graph.
#pragma once

#include "data/content/guilayoutcomp.h"
#include "data/content/outputbridging.h"
#include "data/content/parameter.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompInstance
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compInstance"
#define ORV_TABLE   "data/content/compinstance.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompInstance final : public CompInstanceStruct
{
public:
    CompInstance();
    ~CompInstance() override;
};

} // namespace Ksx::Data::Content

// What is rendered of a graph.
#pragma once

#include "data/content/rootoutput.h"
#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Root
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "root"
#define ORV_TABLE   "data/content/root.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Root : public RootStruct
{
public:
    Root();
    ~Root() override;
};

} // namespace Ksx::Data::Content

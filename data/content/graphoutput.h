// An output of a graph.
#pragma once

#include "data/content/attributes.h"
#include "data/content/namedclass.h"
#include "data/content/types.h"
#include "data/content/usage.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   GraphOutput
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "graphoutput"
#define ORV_TABLE   "data/content/graphoutput.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class GraphOutput final : public GraphOutputStruct
{
public:
    GraphOutput();
    ~GraphOutput() override;
};

ORV_LIST_CLASS(GraphOutputsList, "graphOutputs", GraphOutput)

} // namespace Ksx::Data::Content

// An output of a graph.
#pragma once

#include "data/content/attributes.h"
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

struct GraphOutputsListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("graphOutputs", Required);
};
class GraphOutputsList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<GraphOutput>, GraphOutputsListMeta_>>
{
public:
    GraphOutputsList();
    ~GraphOutputsList() override;
};

} // namespace Ksx::Data::Content

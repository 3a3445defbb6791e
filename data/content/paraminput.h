// An input of a graph or function.
#pragma once

#include "data/content/attributes.h"
#include "data/content/defaultvalue.h"
#include "data/content/defaultwidget.h"
#include "data/content/types.h"
#include "data/content/usage.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   ParamInput
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "paraminput"
#define ORV_TABLE   "data/content/paraminput.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class ParamInput final : public ParamInputStruct
{
public:
    ParamInput();
    ~ParamInput() override;
};

struct GraphInputsListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("paraminputs", Required);
};
class GraphInputsList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<ParamInput>, GraphInputsListMeta_>>
{
public:
    GraphInputsList();
    ~GraphInputsList() override;
};

} // namespace Ksx::Data::Content

// An output of a node.
#pragma once

#include "data/content/types.h"
#include "data/content/valueclasses.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   CompOutput
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "compOutput"
#define ORV_TABLE   "data/content/compoutput.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class CompOutput final : public CompOutputStruct
{
public:
    CompOutput();
    ~CompOutput() override;
};

struct CompNodeOutputListMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("compOutputs", Required);
};
class CompNodeOutputList
    : public Orv::Data::ChildValueTypeBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerList<CompOutput>, CompNodeOutputListMeta_>>
{
public:
    CompNodeOutputList();
    ~CompNodeOutputList() override;
};

} // namespace Ksx::Data::Content

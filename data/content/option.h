// A free pair of name and value.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

#define ORV_CLASS   Option
#define ORV_BASE    ContainerStructBase
#define ORV_ELEMENT "option"
#define ORV_TABLE   "data/content/option.members"
#include "data/declaremembers.inc"

#include "data/undefclass.inc"

class Option final : public OptionStruct
{
public:
    Option();
    ~Option() override;
};

struct OptionsMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("options", Required);
};
class Options : public Orv::Data::ChildValueTypeBinder<
                    Orv::Data::MetaBinder<Orv::Data::ContainerList<Option>, OptionsMeta_>>
{
public:
    Options();
    ~Options() override;
};

} // namespace Ksx::Data::Content

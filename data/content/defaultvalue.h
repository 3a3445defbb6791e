// The default of an input: one of the constants.
#pragma once

#include "data/content/constantvalues.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

struct DefaultValueMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("defaultValue", Required);
};
class DefaultValue
    : public Orv::Data::ChildrenTypesBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerUnion<BaseObject>, DefaultValueMeta_>,
          KSX_CONSTANT_VALUES>
{
public:
    DefaultValue();
    ~DefaultValue() override;
};

} // namespace Ksx::Data::Content

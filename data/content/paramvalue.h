// The value of a parameter: computed, or one of the constants.
#pragma once

#include "data/content/constantvalues.h"
#include "data/content/dynamicvalue.h"
#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

struct ParamValueMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("paramValue", Required);
};
class ParamValue
    : public Orv::Data::ChildrenTypesBinder<
          Orv::Data::MetaBinder<Orv::Data::ContainerUnion<BaseObject>, ParamValueMeta_>,
          DynamicValue, KSX_CONSTANT_VALUES>
{
public:
    ParamValue();
    ~ParamValue() override;
};

} // namespace Ksx::Data::Content

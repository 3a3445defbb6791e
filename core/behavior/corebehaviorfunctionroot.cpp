#include "behavior/functionroot.h"

#include "data/content/dynamicvalue.h"

namespace Ksx::Core::Behavior {

using namespace Data::Content;

const ParamNode* rootNodeOf(const Orv::Data::BaseObject* value)
{
    const auto* computed = dynamic_cast<const DynamicValue*>(value);
    if (computed == nullptr)
        return nullptr;
    const auto uid = computed->rootnode().value().get();
    for (const ParamNode& node : computed->paramNodes())
        if (node.uid().get() == uid)
            return &node;
    return nullptr;
}

} // namespace Ksx::Core::Behavior

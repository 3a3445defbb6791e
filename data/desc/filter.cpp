#include "data/desc/filter.h"

#include <algorithm>

namespace Ksx::Data::Desc {

const ParameterGroup* Filter::group(std::string_view name) const
{
    const auto found =
        std::find_if(groups.begin(), groups.end(), [&](const ParameterGroupPointer& group) {
            return group->identifier() == name || group->name() == name;
        });
    return found == groups.end() ? nullptr : found->get();
}

const Parameter* Filter::parameter(std::string_view name) const
{
    for (const ParameterGroupPointer& group : groups)
        if (const Parameter* const parameter = group->find(name))
            return parameter;
    return nullptr;
}

const SubNode* Filter::subNode(std::string_view name) const
{
    const auto found = std::find_if(subNodes.begin(), subNodes.end(),
                                    [&](const SubNode& node) { return node.identifier == name; });
    return found == subNodes.end() ? nullptr : &*found;
}

} // namespace Ksx::Data::Desc

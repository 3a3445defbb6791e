#include "merge/mergescope.h"

#include "compare/pairscope.h"
#include <algorithm>

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;
using Orv::Data::ContainerListBase;

Items itemsOrNone(const BaseObject* list)
{
    return list == nullptr ? Items() : itemsOf(static_cast<const ContainerListBase&>(*list));
}

Trio listsOf(const Trio& owners, std::string_view element)
{
    return owners.mapped([&](const BaseObject& owner) { return memberOf(owner, element); });
}

} // namespace

ListPlan planOf(const Trio& lists, const MergeState& state)
{
    const Items base = itemsOrNone(lists.base);
    const std::array<Items, 2> sides{itemsOrNone(lists.sides[Ours]),
                                     itemsOrNone(lists.sides[Theirs])};
    return planList(base, sides,
                    {align(base, sides[Ours], state.translations[Ours]),
                     align(base, sides[Theirs], state.translations[Theirs])},
                    state.preferred());
}

MergeScope::MergeScope(const Trio& owners, MergeState& state)
    : m_state(state), m_isGraph(owners.any().getMeta().name == "graph")
{
    for (const TargetList& one : targetListsOf(owners.any())) {
        for (Translation& translation : state.translations)
            m_scopes.emplace_back(translation, one.target);
        m_plans.emplace_back(one.list, Ksx::Kit::planOf(listsOf(owners, one.list), state));
        addNumbers(one.target, m_plans.back().second);
        if (m_isGraph && one.target == Target::Node)
            addOutputs(m_plans.back().second);
    }
}

MergeScope::~MergeScope()
{
    for (Translation& translation : m_state.translations)
        if (m_isGraph)
            translation.forgetOutputs();
}

const ListPlan* MergeScope::planOf(std::string_view element) const
{
    const auto found = std::find_if(m_plans.begin(), m_plans.end(),
                                    [&](const auto& one) { return one.first == element; });
    return found == m_plans.end() ? nullptr : &found->second;
}

void MergeScope::addNumbers(Target target, const ListPlan& plan)
{
    for (const PlannedItem& item : plan.items)
        for (const Side side : BothSides) {
            const BaseObject* const version = item.versions.sides[side];
            const auto from = version == nullptr ? std::nullopt : ownUidOf(*version);
            if (from && *from != *item.uid)
                m_state.translations[side].set(target, *from, *item.uid);
        }
}

void MergeScope::addOutputs(const ListPlan& nodes)
{
    for (const PlannedItem& node : nodes.items) {
        if (node.versions.sides[Ours] == nullptr && node.versions.sides[Theirs] == nullptr)
            continue;
        const ListPlan outputs = Ksx::Kit::planOf(listsOf(node.versions, "compOutputs"), m_state);
        for (const PlannedItem& output : outputs.items)
            for (const Side side : BothSides) {
                const BaseObject* const version = output.versions.sides[side];
                const auto from = version == nullptr ? std::nullopt : ownUidOf(*version);
                if (from && *from != *output.uid)
                    m_state.translations[side].setOutput(*ownUidOf(*node.versions.sides[side]),
                                                         *from, *output.uid);
            }
    }
}

} // namespace Ksx::Kit

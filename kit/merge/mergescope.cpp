#include "merge/mergescope.h"

#include "compare/pairscope.h"
#include <algorithm>
#include <set>
#include <string>
#include <tuple>

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

// The number of a node that is fed, the name of its input, and the number of the feeding node.
using Use = std::tuple<unsigned, std::string, unsigned>;

// Returns the connections of a list of nodes, with the numbers that they have in the base.
std::set<Use> usesIn(const BaseObject* list, const Translation& translation)
{
    std::set<Use> uses;
    for (const BaseObject* const node : itemsOrNone(list)) {
        const BaseObject* const connexions = connexionsOf(*node);
        const unsigned fed = translation.number(Target::Node, ownUidOf(*node).value_or(0));
        for (const BaseObject* const connexion : itemsOrNone(connexions))
            if (const auto feeding = feedingNodeOf(*connexion))
                uses.emplace(fed, *nameOf(*connexion), translation.number(Target::Node, *feeding));
    }
    return uses;
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
                    state.translations, state.preferred());
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
        if (one.target == Target::Node) {
            m_outerDroppedNodes.swap(state.droppedNodes);
            addNewUses(listsOf(owners, one.list));
        }
    }
}

MergeScope::~MergeScope()
{
    if (!m_plans.empty())
        m_outerDroppedNodes.swap(m_state.droppedNodes);
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

void MergeScope::addNewUses(const Trio& lists)
{
    if (lists.base == nullptr || !lists.hasBoth())
        return;
    const std::set<Use> base = usesIn(lists.base, Translation());
    for (const Side side : BothSides)
        for (const Use& use : usesIn(lists.sides[side], m_state.translations[side]))
            if (base.count(use) == 0)
                m_newlyUsed[side].insert(std::get<2>(use));
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

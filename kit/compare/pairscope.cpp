#include "compare/pairscope.h"

#include "compare/freenumbers.h"
#include <algorithm>

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;
using Orv::Data::ContainerListBase;

constexpr TargetList TargetLists[] = {
    {"graph", "paraminputs", Target::Input},
    {"graph", "graphOutputs", Target::Output},
    {"graph", "compNodes", Target::Node},
    {"dynamicValue", "paramNodes", Target::Node},
    {"paramsGraph", "paramsGraphDatas", Target::ParameterSet},
    {"paramsGraph", "paramsGraphNodes", Target::Node},
};

} // namespace

std::vector<TargetList> targetListsOf(const BaseObject& owner)
{
    std::vector<TargetList> lists;
    for (const TargetList& one : TargetLists)
        if (one.owner == owner.getMeta().name)
            lists.push_back(one);
    return lists;
}

PairScope::PairScope(const BaseObject& first, const BaseObject& second, Translation& translation)
    : m_translation(translation), m_isGraph(first.getMeta().name == "graph")
{
    for (const TargetList& one : targetListsOf(first)) {
        const ContainerListBase* const list = listOf(first, one.list);
        const Items firstItems = itemsOf(*list);
        const Items secondItems = itemsOf(*listOf(second, one.list));
        m_scopes.emplace_back(translation, one.target);
        m_lists.emplace_back(list, align(firstItems, secondItems, translation));
        addNumbers(one.target, firstItems, secondItems, m_lists.back().second);
        if (m_isGraph && one.target == Target::Node)
            addOutputs(firstItems, secondItems, m_lists.back().second);
    }
}

PairScope::~PairScope()
{
    if (m_isGraph)
        m_translation.forgetOutputs();
}

const Alignment* PairScope::alignmentOf(const ContainerListBase& list) const
{
    const auto found = std::find_if(m_lists.begin(), m_lists.end(),
                                    [&](const auto& one) { return one.first == &list; });
    return found == m_lists.end() ? nullptr : &found->second;
}

// An item that the first list lacks must not get the number of another item there.
void PairScope::addNumbers(Target target, const Items& first, const Items& second,
                           const Alignment& alignment)
{
    Items alone;
    for (std::size_t i = 0; i < second.size(); ++i) {
        const std::size_t partner = alignment.inFirst[i];
        if (partner == Alignment::None) {
            alone.push_back(second[i]);
            continue;
        }
        const unsigned from = uidOf(*second[i]).value_or(0);
        const unsigned to = uidOf(*first[partner]).value_or(0);
        if (from != to)
            m_translation.set(target, from, to);
    }
    if (alone.empty())
        return;
    FreeNumbers numbers;
    for (const BaseObject* const item : first)
        numbers.take(uidOf(*item).value_or(0));
    for (const BaseObject* const item : alone) {
        const unsigned from = uidOf(*item).value_or(0);
        const unsigned to = numbers.takeFree(from);
        if (from != to)
            m_translation.set(target, from, to);
    }
}

void PairScope::addOutputs(const Items& first, const Items& second, const Alignment& alignment)
{
    for (std::size_t i = 0; i < second.size(); ++i) {
        const std::size_t partner = alignment.inFirst[i];
        if (partner == Alignment::None)
            continue;
        const Items own = itemsOf(*listOf(*second[i], "compOutputs"));
        const Items others = itemsOf(*listOf(*first[partner], "compOutputs"));
        const Alignment outputs = align(others, own, m_translation);
        for (std::size_t k = 0; k < own.size(); ++k) {
            if (outputs.inFirst[k] == Alignment::None)
                continue;
            const unsigned from = uidOf(*own[k]).value_or(0);
            const unsigned to = uidOf(*others[outputs.inFirst[k]]).value_or(0);
            if (from != to)
                m_translation.setOutput(uidOf(*second[i]).value_or(0), from, to);
        }
    }
}

} // namespace Ksx::Kit

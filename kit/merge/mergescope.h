// The merged lists of an object that references lead into.
#pragma once

#include "merge/listplan.h"
#include "merge/mergestate.h"
#include <deque>
#include <utility>

namespace Ksx::Kit {

// Plans the lists of a graph, a computed value or a parameter graph, and tells the translations
// which numbers the items get. Does nothing for other objects. The translations forget the numbers
// when the scope ends.
class MergeScope
{
public:
    MergeScope(const Trio& owners, MergeState& state);
    MergeScope(const MergeScope&) = delete;
    MergeScope& operator=(const MergeScope&) = delete;
    ~MergeScope();

    // Returns the plan of a list of that element. Returns null for a list into which no references
    // lead.
    const ListPlan* planOf(std::string_view element) const;

    // Returns whether a side feeds a node from this one and does not do so in the base. The number is
    // that of the base.
    bool isNewlyUsed(Side side, unsigned node) const { return m_newlyUsed[side].count(node) == 1; }

private:
    void addNumbers(Target target, const ListPlan& plan);
    void addOutputs(const ListPlan& nodes);
    void addNewUses(const Trio& lists);

    MergeState& m_state;
    const bool m_isGraph;
    std::deque<Translation::Scope> m_scopes;
    std::vector<std::pair<std::string_view, ListPlan>> m_plans;
    std::array<std::unordered_set<unsigned>, 2> m_newlyUsed;
    std::unordered_set<unsigned> m_outerDroppedNodes;
};

// Plans a list of which the trio has the versions.
ListPlan planOf(const Trio& lists, const MergeState& state);

} // namespace Ksx::Kit

// The lists of an object that references lead into.
#pragma once

#include "compare/alignment.h"
#include "compare/translation.h"
#include <deque>
#include <utility>

namespace Ksx::Kit {

// A list of an object into which references lead.
struct TargetList
{
    std::string_view owner; // the element of the object
    std::string_view list;
    Target target;
};

// Returns the lists of an object, in an order in which each needs the former ones alone.
std::vector<TargetList> targetListsOf(const Orv::Data::BaseObject& owner);

// Aligns the lists of two versions of a graph, a computed value or a parameter graph, and tells the
// translation of the second one which numbers are others in the first one. Does nothing for other
// objects. The translation forgets the numbers when the scope ends.
class PairScope
{
public:
    // Both objects are of one class.
    PairScope(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second,
              Translation& translation);
    PairScope(const PairScope&) = delete;
    PairScope& operator=(const PairScope&) = delete;
    ~PairScope();

    // Returns the alignment of a list of the first object. Returns null for a list into which no
    // references lead.
    const Alignment* alignmentOf(const Orv::Data::ContainerListBase& list) const;

private:
    void addNumbers(Target target, const Items& first, const Items& second,
                    const Alignment& alignment);
    void addOutputs(const Items& first, const Items& second, const Alignment& alignment);

    Translation& m_translation;
    const bool m_isGraph;
    std::deque<Translation::Scope> m_scopes;
    std::vector<std::pair<const Orv::Data::ContainerListBase*, Alignment>> m_lists;
};

} // namespace Ksx::Kit

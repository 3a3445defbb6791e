// Merges the versions of an object.
#pragma once

#include "data/attributebase.h"
#include "data/containerlist.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"
#include "merge/listplan.h"
#include "merge/mergestate.h"
#include <string>

namespace Ksx::Kit {

class MergeScope;

// Writes merged objects into a new tree.
class ObjectMerge
{
public:
    explicit ObjectMerge(MergeState& state) : m_state(state) {}

    // Writes an item into a new object of its class. The walk is in the item already.
    void mergeItem(Orv::Data::BaseObject& out, const PlannedItem& item);
    // Writes the members of a structure, but for contents and dependencies.
    void mergeMembers(Orv::Data::BaseObject& out, const Trio& versions);
    // Fills a list. `plan` is that of the list.
    void mergeItems(Orv::Data::ContainerListBase& out, const ListPlan& plan);

private:
    // Returns whether the item goes into the merged list, and makes it that of one side if the other
    // one has removed it in a conflict.
    bool isKept(PlannedItem& item);
    bool isNewlyUsed(const PlannedItem& item, Side side) const;
    bool isFedByDroppedNode(const Trio& connexions) const;
    void mergeStruct(Orv::Data::BaseObject& out, const Trio& versions);
    void mergeMember(Orv::Data::BaseObject& out, const Trio& versions);
    void mergeLeaf(Orv::Data::AttributeBase& out, const Trio& versions);
    void mergeUnion(Orv::Data::ContainerUnionBase& out, const Trio& versions);
    void mergeConnexion(Orv::Data::BaseObject& out, const Trio& versions);

    void addDisagreement(const Trio& versions);
    void write(Orv::Data::AttributeBase& out, const std::string& text) const;
    std::string textOf(const Trio& versions, Side side) const;
    std::string connexionText(const Orv::Data::BaseObject& connexion, const Side* side) const;
    bool isSameUnion(const Orv::Data::BaseObject& base, const Orv::Data::BaseObject& other,
                     Side side);

    MergeState& m_state;
    const MergeScope* m_scope = nullptr; // of the innermost structure
};

} // namespace Ksx::Kit

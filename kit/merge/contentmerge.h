// Merges the content of packages.
#pragma once

#include "compare/contentpairs.h"
#include "merge/listplan.h"
#include "merge/mergestate.h"
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

class ObjectMerge;

// The packages that are merged.
struct PackageTrio
{
    const Data::Content::Package& base;
    std::array<const Data::Content::Package*, 2> sides;

    Trio objects() const;
};

// Merges dependencies and content. Objects are found wherever a side has moved them. Tells the
// translations which numbers and paths the merged package has.
class ContentMerge
{
public:
    // All must outlive the object.
    ContentMerge(const PackageTrio& packages, MergeState& state, ObjectMerge& objects);

    // Fills a new package.
    void mergeInto(Data::Content::Package& out);

private:
    // An object of the content. Those that a side has removed are there as well.
    struct Entry
    {
        PlannedItem item;
        bool isKept = true;
        std::size_t owner = Alignment::None; // the package
        std::string name = {};
    };

    void findNewUses();
    void planDependencies();
    void planContent();
    void chooseOwnersAndNames();
    void dropRemoved();
    void keepOwners();
    void addPaths();
    void build(Data::Content::Package& out);

    std::size_t ownerIn(const Orv::Data::BaseObject* version) const;
    std::size_t chosenOwner(const Entry& entry);
    std::string chosenName(const Entry& entry) const;
    bool isChanged(const Entry& entry, Side side);
    bool isInItself(std::size_t index) const;
    void breakCircle(std::size_t index);
    bool moveToPreferredPlace(std::size_t index);
    void keepOwnersOf(std::size_t index);
    bool isKeptAsOwner(std::size_t index);
    std::string pathOfEntry(std::size_t index) const;

    const PackageTrio& m_packages;
    MergeState& m_state;
    ObjectMerge& m_objects;
    const std::array<ContentPairs, 2> m_pairs;
    ListPlan m_dependencies;
    std::vector<Entry> m_entries;                                           // in their new order
    std::unordered_map<const Orv::Data::BaseObject*, std::size_t> m_places; // of each version
    // The paths, in the base, that a side has more often than the base.
    std::array<std::unordered_set<std::string>, 2> m_newlyUsed;
};

} // namespace Ksx::Kit

#include "merge/listplan.h"

#include "compare/freenumbers.h"
#include "compare/references.h"
#include "compare/translation.h"
#include "data/attribute.h"
#include <algorithm>
#include <map>
#include <unordered_set>
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;
using Indexes = std::vector<std::size_t>;

constexpr std::size_t None = Alignment::None;

class Planner
{
public:
    Planner(const Items& base, const std::array<Items, 2>& sides,
            const std::array<Alignment, 2>& alignments,
            const std::array<Translation, 2>& translations, Side preferred)
        : m_base(base), m_sides(sides), m_alignments(alignments), m_translations(translations),
          m_preferred(preferred)
    {}

    ListPlan run()
    {
        addBase();
        addOthers();
        for (PlannedItem& item : m_items)
            item.uid = wantedUid(item.versions);
        freeUids();
        ListPlan plan;
        plan.hasTwoOrders = false;
        for (const std::size_t place : order(plan.hasTwoOrders))
            plan.items.push_back(m_items[place]);
        return plan;
    }

private:
    void addBase()
    {
        for (std::size_t i = 0; i < m_base.size(); ++i) {
            PlannedItem& item = m_items.emplace_back();
            item.versions.base = m_base[i];
            for (const Side side : BothSides) {
                const std::size_t partner = m_alignments[side].inSecond[i];
                if (partner != None)
                    item.versions.sides[side] = m_sides[side][partner];
            }
        }
        for (const Side side : BothSides) {
            m_places[side].assign(m_sides[side].size(), None);
            for (std::size_t i = 0; i < m_places[side].size(); ++i)
                m_places[side][i] = m_alignments[side].inFirst[i];
        }
    }

    // Two additions are one if they have one number or one name.
    void addOthers()
    {
        std::array<Items, 2> added;
        std::array<Indexes, 2> indexes;
        for (const Side side : BothSides)
            for (std::size_t i = 0; i < m_sides[side].size(); ++i)
                if (m_places[side][i] == None) {
                    added[side].push_back(m_sides[side][i]);
                    indexes[side].push_back(i);
                }
        const Alignment both = alignByKey(added[Ours], added[Theirs], m_translations);
        for (std::size_t i = 0; i < added[Ours].size(); ++i) {
            m_places[Ours][indexes[Ours][i]] = m_items.size();
            PlannedItem& item = m_items.emplace_back();
            item.versions.sides[Ours] = added[Ours][i];
            const std::size_t partner = both.inSecond[i];
            if (partner == None)
                continue;
            item.versions.sides[Theirs] = added[Theirs][partner];
            m_places[Theirs][indexes[Theirs][partner]] = m_items.size() - 1;
        }
        for (std::size_t i = 0; i < added[Theirs].size(); ++i) {
            if (both.inFirst[i] != None)
                continue;
            m_places[Theirs][indexes[Theirs][i]] = m_items.size();
            m_items.emplace_back().versions.sides[Theirs] = added[Theirs][i];
        }
    }

    static std::optional<unsigned> wantedUid(const Trio& versions)
    {
        if (versions.base != nullptr)
            return ownUidOf(*versions.base);
        std::optional<unsigned> least;
        for (const BaseObject* const version : versions.sides)
            if (version != nullptr) {
                const auto uid = ownUidOf(*version);
                least = least && uid ? std::min(*least, *uid) : uid;
            }
        return least;
    }

    // Items of the base keep their numbers. Added items get the next free one, by their number.
    void freeUids()
    {
        FreeNumbers numbers;
        std::vector<PlannedItem*> added;
        for (PlannedItem& item : m_items) {
            if (!item.uid)
                continue;
            if (item.versions.base != nullptr)
                numbers.take(*item.uid);
            else
                added.push_back(&item);
        }
        // Objects of several kinds may have one number.
        const auto rank = [](const PlannedItem& item) {
            return std::pair(*item.uid, item.versions.any().getMeta().name);
        };
        std::stable_sort(added.begin(), added.end(), [&](const auto* a, const auto* b) { //
            return rank(*a) < rank(*b);
        });
        for (PlannedItem* const item : added)
            item->uid = numbers.takeFree(*item->uid);
    }

    bool isReordered(Side side) const
    {
        const std::vector<bool> isMoved = movedItems(m_alignments[side]);
        return std::find(isMoved.begin(), isMoved.end(), true) != isMoved.end();
    }

    // Returns the items of the base that a side has, in its order.
    Indexes baseItemsIn(Side side) const
    {
        Indexes items;
        for (const std::size_t place : m_places[side])
            if (place < m_base.size())
                items.push_back(place);
        return items;
    }

    static void keepCommon(Indexes& items, const Indexes& others)
    {
        const std::unordered_set<std::size_t> known(others.begin(), others.end());
        items.erase(std::remove_if(items.begin(), items.end(),
                                   [&](std::size_t item) { return known.count(item) == 0; }),
                    items.end());
    }

    // Returns whether the items of the base that both sides have are in one order there.
    bool isOneOrder() const
    {
        Indexes ours = baseItemsIn(Ours);
        Indexes theirs = baseItemsIn(Theirs);
        keepCommon(ours, theirs);
        keepCommon(theirs, ours);
        return ours == theirs;
    }

    // Returns the items of the base that either side has, if both have them in one order. Items of
    // one side alone are between the same items as there.
    Indexes joinedOrder() const
    {
        const Indexes ours = baseItemsIn(Ours);
        const Indexes theirs = baseItemsIn(Theirs);
        const std::unordered_set<std::size_t> inOurs(ours.begin(), ours.end());
        const std::unordered_set<std::size_t> inTheirs(theirs.begin(), theirs.end());
        const auto endOfRun = [](auto begin, auto end, const auto& others) {
            return std::find_if(begin, end,
                                [&](std::size_t item) { return others.count(item) == 1; });
        };
        Indexes joined;
        auto our = ours.begin();
        auto their = theirs.begin();
        while (our != ours.end() || their != theirs.end()) {
            const auto ourEnd = endOfRun(our, ours.end(), inTheirs);
            const auto theirEnd = endOfRun(their, theirs.end(), inOurs);
            const bool isTheirsFirst = our != ourEnd && their != theirEnd && *their < *our;
            if (isTheirsFirst)
                joined.insert(joined.end(), their, theirEnd);
            joined.insert(joined.end(), our, ourEnd);
            if (!isTheirsFirst)
                joined.insert(joined.end(), their, theirEnd);
            if (ourEnd != ours.end())
                joined.push_back(*ourEnd);
            our = ourEnd == ours.end() ? ourEnd : ourEnd + 1;
            their = theirEnd == theirs.end() ? theirEnd : theirEnd + 1;
        }
        return joined;
    }

    // Returns the items of the base in their new order.
    Indexes spine(bool& hasTwoOrders) const
    {
        const bool isOurs = isReordered(Ours);
        const bool isTheirs = isReordered(Theirs);
        if (!isOurs || !isTheirs)
            return isOurs || isTheirs ? spineBy(baseItemsIn(isOurs ? Ours : Theirs)) : wholeBase();
        if (isOneOrder())
            return spineBy(joinedOrder());
        // Where nobody sees the order, two new ones are as good as none.
        hasTwoOrders = kindOf(*m_base.front()).isOrdered;
        return hasTwoOrders ? spineBy(baseItemsIn(m_preferred)) : wholeBase();
    }

    Indexes wholeBase() const
    {
        Indexes all(m_base.size());
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = i;
        return all;
    }

    // Returns the items of the base with these in their order. The others stay behind the item that
    // they followed.
    Indexes spineBy(const Indexes& leading) const
    {
        const std::unordered_set<std::size_t> known(leading.begin(), leading.end());
        std::map<std::size_t, Indexes> followers;
        std::size_t former = None;
        for (const std::size_t item : wholeBase())
            if (known.count(item) == 1)
                former = item;
            else
                followers[former].push_back(item);
        Indexes spine = followers[None];
        for (const std::size_t item : leading) {
            spine.push_back(item);
            const Indexes& behind = followers[item];
            spine.insert(spine.end(), behind.begin(), behind.end());
        }
        return spine;
    }

    // Returns the items that a side has added, by the item of the base that they follow.
    std::map<std::size_t, Indexes> additionsOf(Side side) const
    {
        std::map<std::size_t, Indexes> additions;
        std::size_t former = None;
        for (const std::size_t place : m_places[side])
            if (place < m_base.size())
                former = place;
            else
                additions[former].push_back(place);
        return additions;
    }

    // The same whichever side is which.
    std::optional<unsigned> numberOf(const PlannedItem& item) const
    {
        if (item.uid)
            return item.uid;
        const Side side = item.versions.sides[Ours] != nullptr ? Ours : Theirs;
        return translatedUidOf(item.versions.any(), m_translations[side]);
    }

    // Orders additions of the two sides that follow the same item.
    bool comesFirst(const PlannedItem& first, const PlannedItem& second) const
    {
        const auto firstNumber = numberOf(first);
        const auto secondNumber = numberOf(second);
        if (firstNumber != secondNumber)
            return firstNumber < secondNumber;
        const std::string* const name = nameOf(first.versions.any());
        return name != nullptr && *name < *nameOf(second.versions.any());
    }

    Indexes order(bool& hasTwoOrders) const
    {
        std::array<std::map<std::size_t, Indexes>, 2> additions{additionsOf(Ours),
                                                                additionsOf(Theirs)};
        Indexes order;
        std::unordered_set<std::size_t> known;
        const auto append = [&](const Indexes& items) {
            for (const std::size_t item : items)
                if (known.insert(item).second)
                    order.push_back(item);
        };
        const auto appendBehind = [&](std::size_t former) {
            const Indexes& ours = additions[Ours][former];
            const Indexes& theirs = additions[Theirs][former];
            const bool isTheirsFirst = !ours.empty() && !theirs.empty() &&
                                       comesFirst(m_items[theirs.front()], m_items[ours.front()]);
            append(isTheirsFirst ? theirs : ours);
            append(isTheirsFirst ? ours : theirs);
        };
        appendBehind(None);
        for (const std::size_t item : spine(hasTwoOrders)) {
            append({item});
            appendBehind(item);
        }
        return order;
    }

    const Items& m_base;
    const std::array<Items, 2>& m_sides;
    const std::array<Alignment, 2>& m_alignments;
    const std::array<Translation, 2>& m_translations;
    const Side m_preferred;
    std::vector<PlannedItem> m_items; // those of the base first
    std::array<Indexes, 2> m_places;  // for each item of a side its index in m_items
};

} // namespace

std::optional<unsigned> ownUidOf(const BaseObject& item)
{
    const BaseObject* const uid = memberOf(item, "uid");
    if (uid == nullptr || referenceOf(*uid))
        return std::nullopt;
    return static_cast<const Orv::Data::Attribute<Orv::Data::UInt>*>(uid)->get();
}

ListPlan planList(const Items& base, const std::array<Items, 2>& sides,
                  const std::array<Alignment, 2>& alignments,
                  const std::array<Translation, 2>& translations, Side preferred)
{
    return Planner(base, sides, alignments, translations, preferred).run();
}

} // namespace Ksx::Kit

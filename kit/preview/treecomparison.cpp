#include "preview/treecomparison.h"

#include "data/filename.h"
#include "findinglist.h"
#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <unordered_map>
#include <utility>

namespace Ksx::Kit {

namespace {

using Index = DocumentTree::Index;
constexpr Index None = DocumentTree::None;

// The members by which users tell the items of a list apart, the surest first.
constexpr std::array<std::string_view, 4> NamingMembers = {"uid", "identifier", "filename", "name"};

// Where an element is, for users.
struct Place
{
    QString object;
    QString element;
};

QString textOf(const Place& place)
{
    const bool hasBoth = !place.object.isEmpty() && !place.element.isEmpty();
    return place.object + (hasBoth ? QStringLiteral(" ") : QString()) + place.element;
}

// The children of one element, and which of them have no partner yet.
struct Children
{
    Children(const DocumentTree& owner, Index parent)
        : tree(owner), all(owner.childrenOf(parent)), partners(all.size(), None)
    {}

    const DocumentTree& tree;
    std::vector<Index> all;
    std::vector<Index> partners; // places in the other list

    Index size() const { return static_cast<Index>(all.size()); }
    const DocumentTree::Element& operator[](Index place) const { return tree[all[place]]; }
};

// Matches the children of an element before and after a step.
class Matching
{
public:
    Matching(const DocumentTree& before, Index a, const DocumentTree& after, Index b)
        : m_before(before, a), m_after(after, b)
    {}

    void run(const std::array<Index, NamingMembers.size()>& namingMembers, Index identifier)
    {
        matchEnds();
        matchBy([](const Children& list, Index place) { return Key(list[place].hash); });
        for (const Index member : namingMembers)
            matchBy([member](const Children& list, Index place) {
                return keyByMember(list, place, member);
            });
        // Objects of two identifiers are two objects.
        matchBy([identifier](const Children& list, Index place) {
            const bool isObject = list.tree.childOf(list.all[place], identifier) != None;
            return isObject ? Key() : Key(list[place].name);
        });
        matchRenamed();
    }

    const Children& before() const { return m_before; }
    const Children& after() const { return m_after; }

    bool isInOrder() const
    {
        Index last = 0;
        for (const Index partner : m_after.partners) {
            if (partner != None && partner < last)
                return false;
            last = partner == None ? last : partner;
        }
        return true;
    }

private:
    using Key = std::optional<std::uint64_t>;

    static Key keyByMember(const Children& list, Index place, Index member)
    {
        const Index child = list.tree.childOf(list.all[place], member);
        if (child == None)
            return std::nullopt;
        return list.tree[child].hash * 31 + list[place].name;
    }

    void match(Index before, Index after)
    {
        m_before.partners[before] = after;
        m_after.partners[after] = before;
    }

    // Most lists are equal but for a few items.
    void matchEnds()
    {
        const Index shorter = std::min(m_before.size(), m_after.size());
        Index begin = 0;
        for (; begin < shorter && m_before[begin].hash == m_after[begin].hash; ++begin)
            match(begin, begin);
        for (Index end = 1; end <= shorter - begin; ++end) {
            const Index a = m_before.size() - end;
            const Index b = m_after.size() - end;
            if (m_before[a].hash != m_after[b].hash)
                break;
            match(a, b);
        }
    }

    // Of several children with one key the first ones match.
    template <class KeyFunction>
    void matchBy(const KeyFunction& keyOf)
    {
        std::unordered_map<std::uint64_t, std::vector<Index>> places; // the last one first
        for (Index a = m_before.size(); a-- > 0;)
            if (m_before.partners[a] == None)
                if (const Key key = keyOf(m_before, a))
                    places[*key].push_back(a);
        for (Index b = 0; b < m_after.size() && !places.empty(); ++b) {
            const Key key = m_after.partners[b] == None ? keyOf(m_after, b) : Key();
            const auto found = key ? places.find(*key) : places.end();
            if (found == places.end())
                continue;
            match(found->second.back(), b);
            found->second.pop_back();
            if (found->second.empty())
                places.erase(found);
        }
    }

    // An element with another name in the same place, of the same size and with the same value.
    void matchRenamed()
    {
        for (Index i = 0; i < std::min(m_before.size(), m_after.size()); ++i) {
            if (m_before.partners[i] != None || m_after.partners[i] != None)
                continue;
            const Index a = m_before.all[i];
            const Index b = m_after.all[i];
            const bool isAlike = m_before[i].name != m_after[i].name &&
                                 m_before.tree[a].end - a == m_after.tree[b].end - b &&
                                 m_before.tree.valueOf(a) == m_after.tree.valueOf(b);
            if (isAlike)
                match(i, i);
        }
    }

    Children m_before;
    Children m_after;
};

// The places of the children of one element, which are asked for in their order.
class ChildPlaces
{
public:
    ChildPlaces(const ElementNames& names, const DocumentTree& tree, Index parent, Index identifier,
                const Place& place)
        : m_names(names), m_tree(tree), m_identifier(identifier), m_place(place),
          m_holdsObjects(names[tree[parent].name] == "content")
    {
        for (const Index child : tree.childrenOf(parent))
            ++m_counts[tree[child].name];
    }

    // To be called for each child.
    void advance(Index child) { m_number = ++m_numbers[m_tree[child].name]; }

    // Returns the place of the child for which advance() was called last.
    Place placeOf(Index child) const
    {
        const Index name = m_tree[child].name;
        const Index identifier = m_holdsObjects ? m_tree.childOf(child, m_identifier) : None;
        if (identifier != None)
            return {placeIn(m_place.object, m_tree.textOf(identifier)), QString()};
        QString element = m_place.element;
        if (!element.isEmpty())
            element += QLatin1Char('/');
        element += Orv::fromBytes(m_names[name]);
        if (m_counts.at(name) > 1)
            element += QStringLiteral("[%1]").arg(m_number);
        return {m_place.object, element};
    }

private:
    const ElementNames& m_names;
    const DocumentTree& m_tree;
    Index m_identifier;
    const Place& m_place;
    bool m_holdsObjects;
    std::unordered_map<Index, unsigned> m_counts;
    std::unordered_map<Index, unsigned> m_numbers;
    unsigned m_number = 0;
};

class Comparison
{
public:
    Comparison(const DocumentTree& before, DocumentTree& after, ElementNames& names)
        : m_before(before), m_after(after), m_names(names), m_identifier(names.idOf("identifier"))
    {
        for (std::size_t i = 0; i < NamingMembers.size(); ++i)
            m_namingMembers[i] = names.idOf(NamingMembers[i]);
    }

    std::vector<TreeChange> run()
    {
        if (m_before.isEmpty() || m_after.isEmpty())
            return {};
        if (m_before[0].hash == m_after[0].hash)
            takeOrigins(0, 0);
        else
            m_pairs.push_back({0, 0, {QString(), QString()}});
        while (!m_pairs.empty()) {
            const Pair pair = std::move(m_pairs.back());
            m_pairs.pop_back();
            compare(pair);
        }
        for (Whole& one : m_gone)
            if (hasChildren(m_before, one.element))
                m_goneByHash[m_before[one.element].hash].push_back(&one);
        for (const Whole& one : m_come)
            tellCome(one);
        for (const Whole& one : m_gone)
            if (!one.hasMoved)
                tellGone(one);
        return inOrder();
    }

private:
    // An element before and after.
    struct Pair
    {
        Index before;
        Index after;
        Place place;
    };
    // An element of one tree alone, with all that is in it.
    struct Whole
    {
        Index element;
        Place place;
        Index position; // in the tree behind the step
        bool hasMoved = false;
    };
    struct Found
    {
        Index position;
        TreeChange change;
    };

    static bool hasChildren(const DocumentTree& tree, Index element)
    {
        return tree[element].end > element + 1;
    }

    // Returns whether an element in another one that comes or goes is a change of its own.
    static bool isTold(const DocumentTree& tree, Index element)
    {
        return !hasChildren(tree, element) || tree[element].valueSize != 0;
    }

    void tell(ElementChangeKind kind, const Place& place, Index position, Index origin,
              const QString& oldText, const QString& newText)
    {
        m_found.push_back(
            {position, {{kind, place.object, place.element, 0, 0, oldText, newText}, origin}});
    }

    void compare(const Pair& pair)
    {
        const DocumentTree::Element& a = m_before[pair.before];
        DocumentTree::Element& b = m_after[pair.after];
        b.origin = a.origin;
        if (a.name != b.name)
            tell(ElementChangeKind::Renamed, pair.place, pair.after, a.origin,
                 Orv::fromBytes(m_names[a.name]), Orv::fromBytes(m_names[b.name]));
        if (m_before.valueOf(pair.before) != m_after.valueOf(pair.after))
            tell(ElementChangeKind::Changed, pair.place, pair.after, a.origin,
                 m_before.textOf(pair.before), m_after.textOf(pair.after));
        compareChildren(pair);
    }

    void compareChildren(const Pair& pair)
    {
        Matching matching(m_before, pair.before, m_after, pair.after);
        matching.run(m_namingMembers, m_identifier);
        if (!matching.isInOrder())
            tell(ElementChangeKind::Reordered, pair.place, pair.after, m_before[pair.before].origin,
                 {}, {});
        ChildPlaces formerPlaces(m_names, m_before, pair.before, m_identifier, pair.place);
        for (Index i = 0; i < matching.before().size(); ++i) {
            const Index child = matching.before().all[i];
            formerPlaces.advance(child);
            if (matching.before().partners[i] == None)
                m_gone.push_back({child, formerPlaces.placeOf(child), pair.after});
        }
        ChildPlaces places(m_names, m_after, pair.after, m_identifier, pair.place);
        for (Index i = 0; i < matching.after().size(); ++i) {
            const Index child = matching.after().all[i];
            const Index partner = matching.after().partners[i];
            places.advance(child);
            if (partner == None)
                m_come.push_back({child, places.placeOf(child), child});
            else if (matching.before()[partner].hash == m_after[child].hash)
                takeOrigins(matching.before().all[partner], child);
            else
                m_pairs.push_back({matching.before().all[partner], child, places.placeOf(child)});
        }
    }

    void takeOrigins(Index before, Index after)
    {
        for (const Index end = m_before[before].end; before < end; ++before, ++after)
            m_after[after].origin = m_before[before].origin;
    }

    // Returns an equal element that is gone from elsewhere, once. Returns null without one.
    Whole* takeGone(Index come)
    {
        const auto found = m_goneByHash.find(m_after[come].hash);
        if (found == m_goneByHash.end() || found->second.empty())
            return nullptr;
        Whole* const gone = found->second.front();
        found->second.pop_front();
        return gone;
    }

    void tellCome(const Whole& come)
    {
        std::vector<Whole> open{come};
        while (!open.empty()) {
            const Whole one = std::move(open.back());
            open.pop_back();
            if (Whole* const gone = takeGone(one.element)) {
                gone->hasMoved = true;
                takeOrigins(gone->element, one.element);
                tell(ElementChangeKind::Moved, one.place, one.element,
                     m_before[gone->element].origin, textOf(gone->place), textOf(one.place));
                continue;
            }
            if (isTold(m_after, one.element) || one.element == come.element)
                tell(ElementChangeKind::Added, one.place, one.element, None, {},
                     m_after.textOf(one.element));
            addChildren(m_after, one, open);
        }
    }

    void tellGone(const Whole& gone)
    {
        std::vector<Whole> open{gone};
        while (!open.empty()) {
            const Whole one = std::move(open.back());
            open.pop_back();
            if (isTold(m_before, one.element) || one.element == gone.element)
                tell(ElementChangeKind::Removed, one.place, gone.position,
                     m_before[one.element].origin, m_before.textOf(one.element), {});
            addChildren(m_before, one, open);
        }
    }

    // Adds the children, the last one first.
    void addChildren(const DocumentTree& tree, const Whole& parent, std::vector<Whole>& open) const
    {
        const std::size_t begin = open.size();
        ChildPlaces places(m_names, tree, parent.element, m_identifier, parent.place);
        for (const Index child : tree.childrenOf(parent.element)) {
            places.advance(child);
            open.push_back({child, places.placeOf(child), child});
        }
        std::reverse(open.begin() + static_cast<std::ptrdiff_t>(begin), open.end());
    }

    std::vector<TreeChange> inOrder()
    {
        std::stable_sort(m_found.begin(), m_found.end(),
                         [](const Found& a, const Found& b) { return a.position < b.position; });
        std::vector<TreeChange> changes;
        changes.reserve(m_found.size());
        for (Found& found : m_found)
            changes.push_back(std::move(found.change));
        return changes;
    }

    const DocumentTree& m_before;
    DocumentTree& m_after;
    const ElementNames& m_names;
    Index m_identifier;
    std::array<Index, NamingMembers.size()> m_namingMembers{};
    std::vector<Pair> m_pairs; // to be compared
    std::deque<Whole> m_gone;
    std::deque<Whole> m_come;
    std::unordered_map<std::uint64_t, std::deque<Whole*>> m_goneByHash;
    std::vector<Found> m_found;
};

} // namespace

std::vector<TreeChange> compareTrees(const DocumentTree& before, DocumentTree& after,
                                     ElementNames& names)
{
    return Comparison(before, after, names).run();
}

} // namespace Ksx::Kit

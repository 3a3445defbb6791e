#include "compare/nodeshapes.h"

#include "compare/references.h"
#include "data/containerunion.h"
#include <unordered_map>
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;
using Shapes = std::vector<Shape>;

constexpr int Rounds = 4; // how many connections away a neighbour may be

// Returns a shape of the kind of a node alone: the filter, the function or what it is an instance of.
Shape kindShapeOf(const BaseObject& node)
{
    const BaseObject* what = memberOf(node, "function");
    if (const BaseObject* const implementation = memberOf(node, "compImplementation")) {
        const BaseObject* const kind =
            static_cast<const Orv::Data::ContainerUnionBase*>(implementation)->get();
        if (kind == nullptr)
            return 0;
        what = memberOf(*kind, "filter");
        if (what == nullptr)
            what = memberOf(*kind, "path");
        if (what == nullptr)
            what = kind;
    }
    return what == nullptr ? 0 : shapeOf(*what);
}

// The nodes of a list and their connections.
class Network
{
public:
    explicit Network(const Items& nodes) : m_nodes(nodes), m_wires(nodes.size())
    {
        std::unordered_map<unsigned, std::size_t> places;
        for (std::size_t i = 0; i < nodes.size(); ++i)
            places.emplace(uidOf(*nodes[i]).value_or(0), i);
        for (std::size_t i = 0; i < nodes.size(); ++i)
            addWires(i, places);
    }

    Shapes whole() const
    {
        return shapes([](const BaseObject& node) { return shapeOf(node); });
    }
    Shapes kinds() const { return shapes(&kindShapeOf); }

    // Returns shapes that have those of the nodes in them that feed a node. With `isBothWays` they
    // have those of the nodes that it feeds as well.
    Shapes refined(const Shapes& shapes, const Shapes& fixed, bool isBothWays) const
    {
        Shapes next = shapes;
        for (std::size_t i = 0; i < m_wires.size(); ++i)
            for (const Wire& wire : m_wires[i]) {
                // A sum, since wires have no order.
                next[i] += joined(joined(wire.name, 1), labelOf(wire.from, shapes, fixed));
                if (isBothWays)
                    next[wire.from] += joined(joined(wire.name, 2), labelOf(i, shapes, fixed));
            }
        return next;
    }

private:
    struct Wire
    {
        Shape name;
        std::size_t from;
    };

    // Nodes that have a partner are known by it, and keep their shape.
    static Shape labelOf(std::size_t node, const Shapes& shapes, const Shapes& fixed)
    {
        return fixed[node] != 0 ? fixed[node] : shapes[node];
    }

    void addWires(std::size_t node, const std::unordered_map<unsigned, std::size_t>& places)
    {
        const auto* const connexions = connexionsOf(*m_nodes[node]);
        for (std::size_t i = 0; connexions != nullptr && i < connexions->size(); ++i) {
            const BaseObject& connexion = *connexions->childAt(i);
            const auto feeding = feedingNodeOf(connexion);
            const auto from = feeding ? places.find(*feeding) : places.end();
            if (from != places.end())
                m_wires[node].push_back({shapeOf(*nameOf(connexion)), from->second});
        }
    }

    template <class Function>
    Shapes shapes(Function&& shapeOfNode) const
    {
        Shapes all;
        all.reserve(m_nodes.size());
        for (const BaseObject* const node : m_nodes)
            all.push_back(shapeOfNode(*node));
        return all;
    }

    const Items& m_nodes;
    std::vector<std::vector<Wire>> m_wires;
};

// Nodes of a pair get the same number, and all others 0.
Shapes numbersOf(const std::vector<std::size_t>& partners, bool isFirst)
{
    Shapes numbers(partners.size(), 0);
    for (std::size_t i = 0; i < partners.size(); ++i)
        if (partners[i] != Alignment::None)
            numbers[i] = joined(isFirst ? i : partners[i], 3);
    return numbers;
}

// How the nodes around a node count.
struct Search
{
    bool isBothWays;
    int mostRounds; // nodes are searched by their shapes after so many rounds first
    int leastRounds;
};

void alignRounds(const Network& first, const Network& second, std::pair<Shapes, Shapes> begin,
                 const Search& search, Alignment& alignment)
{
    const Shapes fixedFirst = numbersOf(alignment.inSecond, true);
    const Shapes fixedSecond = numbersOf(alignment.inFirst, false);
    std::vector<std::pair<Shapes, Shapes>> rounds{std::move(begin)};
    for (int round = 0; round < search.mostRounds; ++round)
        rounds.emplace_back(first.refined(rounds.back().first, fixedFirst, search.isBothWays),
                            second.refined(rounds.back().second, fixedSecond, search.isBothWays));
    for (int round = search.mostRounds; round >= search.leastRounds; --round) {
        const auto& shapes = rounds[static_cast<std::size_t>(round)];
        alignEqual(
            alignment, [&](std::size_t i) { return shapes.first[i]; },
            [&](std::size_t i) { return shapes.second[i]; });
    }
}

// The nodes that feed a node say more of it than the ones that it feeds: most of what is added is
// added at the end.
constexpr Search SearchesOfWhole[] = {
    {true, Rounds, Rounds}, {false, Rounds, 1}, {true, Rounds, 0}};
// Nodes of one kind abound, so that their neighbours have to agree.
constexpr Search SearchOfKinds = {true, Rounds, 1};

} // namespace

void alignNodesByShape(const Items& first, const Items& second, Alignment& alignment)
{
    const Network firstNetwork(first);
    const Network secondNetwork(second);
    const std::pair whole(firstNetwork.whole(), secondNetwork.whole());
    for (const Search& search : SearchesOfWhole)
        alignRounds(firstNetwork, secondNetwork, whole, search, alignment);
    alignRounds(firstNetwork, secondNetwork, {firstNetwork.kinds(), secondNetwork.kinds()},
                SearchOfKinds, alignment);
}

} // namespace Ksx::Kit

// What is kept beside the lists of a graph, after random edits, undone and redone ones among them,
// is what would be found out from the lists as they are.
#include "behavior/graphwatcher.h"
#include "behavior/imageinputs.h"
#include "behavior/interfacememory.h"
#include "behavior/missingrootoutputs.h"
#include "behaviorfixture.h"
#include "content/contentidentifiers.h"
#include "content/contentuids.h"
#include "editing/keyindex.h"
#include "graph/graphoutputtype.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/graphinterface.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/stage.h"
#include <algorithm>
#include <random>
#include <set>
#include <sstream>

namespace {

using namespace TestSupport;
using namespace Ksx::Core;
using namespace Ksx::Core::Behavior;
using Orv::Data::ChangeType;
using Orv::Data::DataMessage;

// An InterfaceMemory on a list of inputs. Compares each of its answers with that of a look at all
// items.
class MemoryProbe final : public Orv::Core::ListenerSimple<Stage::Repair, ListChanges>
{
public:
    explicit MemoryProbe(const Graph& graph)
        : m_memory(graph.paraminputs(), &describeInput), m_former(itemsOf(graph.paraminputs()))
    {
        listenTo(graph.paraminputs(), *this);
    }
    void deliver(const DataMessage& message) override
    {
        const auto& list =
            static_cast<const Orv::Data::ContainerList<ParamInput>&>(*message.object);
        const InterfaceItems items = itemsOf(list);
        const InterfaceDiff expected(recordsOf(m_former), items);
        const InterfaceDiff told = m_memory.follow(list, &message);
        differences += textOf(told) == textOf(expected) ? 0 : 1;
        m_former = items;
    }

    int differences = 0;

private:
    static InterfaceItems itemsOf(const Orv::Data::ContainerList<ParamInput>& list)
    {
        InterfaceItems items;
        for (const ParamInput& input : list)
            items.push_back(describeInput(input));
        return items;
    }
    std::string textOf(const InterfaceDiff& diff) const
    {
        std::ostringstream text;
        for (const InterfaceItem& item : m_former)
            if (const InterfaceDiff::Fate* fate = diff.fateOf(item.identifier))
                text << item.identifier << '>' << (fate->item ? fate->item->identifier : "-")
                     << fate->isTypeChanged << ' ';
        for (const InterfaceDiff::Addition& added : diff.added())
            text << '+' << added.item.identifier << '@' << added.place << ' ';
        text << diff.isReordered() << diff.isEmpty();
        return text.str();
    }

    InterfaceMemory m_memory;
    InterfaceItems m_former;
};

// A GraphOutputTypes that hears of the nodes that count.
class TypesProbe
{
public:
    explicit TypesProbe(const Graph& graph)
        : m_types(graph, [this](const CompNode& node, bool counts) { watch(node, counts); })
    {
        listenTo(graph.compNodes(), m_nodes);
    }
    unsigned typeOf(Uid output) const { return m_types.typeOf(output); }

private:
    void followNode(const DataMessage& message)
    {
        m_types.nodeChanged(static_cast<const CompNode&>(*message.object));
    }
    void followNodes(const DataMessage& message) { m_types.nodesChanged(message); }
    void watch(const CompNode& node, bool counts)
    {
        if (counts)
            listenTo(node, m_node);
        else if (Orv::Data::ShadowObject* shadow = node.shadow())
            shadow->removeListener(m_node);
    }

    Follow<&TypesProbe::followNode, ChangeType::Descendant> m_node{*this};
    Follow<&TypesProbe::followNodes, ChangeType::Inserted | ChangeType::Erased> m_nodes{*this};
    GraphOutputTypes m_types;
};

class RandomScript
{
public:
    RandomScript(unsigned seed, Workspace& workspace, const Package& package)
        : m_random(seed), m_workspace(workspace), m_package(package),
          m_graph(dynamic_cast<const Graph&>(package.content().at(0))), m_memory(m_graph),
          m_types(m_graph)
    {}

    // Returns the number of steps after which something kept was wrong.
    int run(int steps)
    {
        int wrong = 0;
        for (int i = 0; i < steps; ++i) {
            step();
            wrong += isRight() ? 0 : 1;
        }
        return wrong + m_memory.differences;
    }

private:
    std::size_t below(std::size_t count) { return m_random() % count; }
    Uid anyUid() { return static_cast<Uid>(1 + below(m_random() % 4 == 0 ? 6 : 1000)); }
    std::string anyName()
    {
        static const char* const names[] = {"in", "in_1", "in_2", "out", "", "x"};
        return names[below(std::size(names))];
    }
    unsigned anyType()
    {
        static constexpr unsigned types[] = {1, 2, 3, 256, 258, 2307};
        return types[below(std::size(types))];
    }

    void step()
    {
        const std::size_t choice = below(10);
        if (choice == 0 && !m_done.empty()) {
            EXPECT_TRUE(m_done.back()->undo());
            m_undone.push_back(m_done.back());
            m_done.pop_back();
        } else if (choice == 1 && !m_undone.empty()) {
            EXPECT_TRUE(m_undone.back()->redo());
            m_done.push_back(m_undone.back());
            m_undone.pop_back();
        } else {
            runEdit(choice == 2);
        }
    }
    void runEdit(bool isRefused)
    {
        const auto command = std::make_shared<Orv::Core::CommandDataModification>(
            [&](ManipulatorContext& context) {
                const ManipulatorStruct<Graph> graph(m_graph, context);
                m_mayMove = true; // histories take two moves in a row for steps of one
                for (std::size_t i = 1 + below(3); i > 0; --i)
                    change(graph);
                return !isRefused;
            },
            "edit");
        if (!m_workspace.commandManager()->execute(command))
            return;
        m_done.push_back(command);
        m_undone.clear();
    }
    void change(const ManipulatorStruct<Graph>& graph)
    {
        switch (below(8)) {
        case 0:
        case 1:
            changeList(graph.paraminputs());
            break;
        case 2:
        case 3:
            changeList(graph.graphOutputs());
            break;
        case 4:
            changeRoots(graph.root().rootOutputs());
            break;
        case 5:
        case 6:
            changeNodes(graph.compNodes());
            break;
        default:
            changeContent(graph.context());
        }
    }
    template <class List>
    void insert(List list, std::unique_ptr<typename List::DataType::ItemType> item)
    {
        std::vector<std::unique_ptr<Orv::Data::BaseObject>> items;
        items.push_back(std::move(item));
        list.insert(below(list.get()->size() + 1), std::move(items));
    }
    // Erases or moves an item; false if there is none.
    template <class List>
    bool disturb(List list)
    {
        const std::size_t size = list.get()->size();
        const std::size_t choice = below(6);
        if (size == 0 || choice > 2)
            return false;
        const std::size_t from = below(size);
        if (choice == 2 && std::exchange(m_mayMove, false))
            list.move(from,
                      static_cast<std::ptrdiff_t>(below(size)) - static_cast<std::ptrdiff_t>(from));
        else if (choice != 2)
            list.erase(from, 1 + below(std::min<std::size_t>(2, size - from)));
        return true;
    }
    template <class Item>
    static void setType(ManipulatorStruct<Item> item, unsigned type)
    {
        if constexpr (std::is_same_v<Item, ParamInput>)
            item.type().value().set(type);
    }
    template <class List>
    void changeList(List list)
    {
        using Item = typename List::DataType::ItemType;
        if (disturb(list))
            return;
        if (below(2) == 0 && !list.get()->isEmpty()) {
            auto item = list.at(below(list.get()->size()));
            switch (below(4)) {
            case 0:
                item.identifier().set(anyName());
                break;
            case 1:
                item.uid().set(anyUid());
                break;
            case 2:
                setType(item, anyType());
                break;
            default:
                item.attributes().label().set(anyName());
            }
            return;
        }
        auto item = std::make_unique<Item>();
        item->uid().assign(anyUid());
        item->identifier().assign(anyName());
        if constexpr (std::is_same_v<Item, ParamInput>)
            item->type().value().assign(anyType());
        insert(list, std::move(item));
    }
    template <class List>
    void changeRoots(List list)
    {
        if (disturb(list))
            return;
        auto root = std::make_unique<RootOutput>();
        root->output().assign(anyUid());
        insert(list, std::move(root));
    }
    void changeNodes(Orv::Core::ManipulatorList<CompNode> list)
    {
        if (below(2) == 0 && !list.get()->isEmpty()) {
            const std::size_t place = below(list.get()->size());
            if (below(2) == 0) {
                list.erase(place, 1);
                return;
            }
            auto node = list.at(place);
            if (auto* bridge =
                    dynamic_cast<const CompOutputBridge*>(node.compImplementation().get()->get())) {
                ManipulatorStruct<CompOutputBridge> output(*bridge, list.context());
                if (below(2) == 0)
                    output.connectionColorType().set(static_cast<unsigned>(below(3)));
                else
                    output.output().set(anyUid());
            } else {
                node.compOutputs().at(0).comptype().value().set(
                    static_cast<unsigned>(1 + below(2)));
            }
            return;
        }
        auto node = std::make_unique<CompNode>();
        node->uid().assign(++m_nodeUid);
        auto output = std::make_unique<CompOutput>();
        output->uid().assign(1);
        output->comptype().value().assign(static_cast<unsigned>(1 + below(2)));
        node->compOutputs().pushBack(std::move(output));
        if (below(2) == 0) {
            auto bridge = std::make_unique<CompOutputBridge>();
            bridge->output().assign(anyUid());
            bridge->connectionColorType().assign(static_cast<unsigned>(below(3)));
            node->compImplementation().set(std::move(bridge));
            auto connexion = std::make_unique<Connexion>();
            connexion->identifier().assign("inputNodeOutput");
            // Of a node that has gone, that is there, or that is yet to come.
            connexion->connRef().value().assign(static_cast<Uid>(1 + below(m_nodeUid + 3)));
            connexion->connRefOutput().value().assign(1);
            node->connexions().pushBack(std::move(connexion));
        } else {
            node->compImplementation().set(std::make_unique<CompFilter>());
        }
        insert(list, std::move(node));
    }
    void changeContent(ManipulatorContext& context)
    {
        ManipulatorStruct<Package> package(m_package, context);
        auto content = package.content();
        const std::size_t size = content.get()->size();
        if (size > 1 && below(3) == 0) {
            content.erase(1 + below(size - 1), 1); // the first one is the graph
            return;
        }
        auto group = std::make_unique<Group>();
        group->identifier().assign(anyName());
        group->uid().assign(anyUid());
        auto inner = std::make_unique<Group>();
        inner->uid().assign(anyUid());
        group->content().pushBack(std::move(inner));
        const auto* const outer =
            size > 1 ? dynamic_cast<const Group*>(&content.get()->at(1 + below(size - 1)))
                     : nullptr;
        if (outer != nullptr && below(2) == 0)
            ManipulatorStruct<Group>(*outer, context).content().pushBack(std::move(group));
        else
            content.pushBack(std::move(group));
    }

    template <class List>
    static std::multiset<std::string> namesOf(const List& list)
    {
        std::multiset<std::string> names;
        for (const auto& item : list)
            names.insert(identifierOf(item));
        return names;
    }
    template <class List>
    static bool areNamesRight(const List& list)
    {
        using Index = IdentifierIndex<typename List::ItemType>;
        const Index* const kept = Index::of(list);
        const Index fresh(list);
        bool isRight = kept != nullptr;
        for (const std::string& name : namesOf(list))
            isRight = isRight && kept->names().count(name) == fresh.names().count(name);
        return isRight && kept->names().count("in") == fresh.names().count("in") &&
               kept->names().freeNumber("in", 1) == fresh.names().freeNumber("in", 1);
    }
    // Compares what is found for each key that is there, and for one that is not.
    template <class Key, class List>
    static bool areKeysRight(const List& list, const typename Key::Type& missing)
    {
        using Index = KeyIndex<typename List::ItemType, Key>;
        bool isRight = Index::find(list, missing) == nullptr;
        for (const auto& item : list) {
            const auto& key = Key::of(item).get();
            const auto isOfKey = [&key](const auto& other) { return Key::of(other).get() == key; };
            const auto found = Index::findAll(list, key);
            isRight = isRight &&
                      Index::find(list, key) == &*std::find_if(list.begin(), list.end(), isOfKey) &&
                      std::count(found.begin(), found.end(), &item) == 1 &&
                      std::count_if(list.begin(), list.end(), isOfKey) ==
                          static_cast<std::ptrdiff_t>(found.size());
        }
        return isRight;
    }
    bool areImagesRight() const
    {
        ImageInputs* const kept = ImageInputs::of(m_graph.paraminputs());
        ImageInputs fresh(m_graph.paraminputs());
        bool isRight = kept != nullptr &&
                       kept->first(m_graph.paraminputs()) == fresh.first(m_graph.paraminputs());
        for (const ParamInput& input : m_graph.paraminputs())
            isRight =
                isRight && kept->contains(input.uid().get()) == fresh.contains(input.uid().get());
        return isRight;
    }
    bool areRootOutputsRight() const
    {
        std::set<Uid> rendered;
        for (const RootOutput& output : m_graph.root().rootOutputs())
            rendered.insert(output.output().get());
        bool isMissing = false;
        for (const GraphOutput& output : m_graph.graphOutputs())
            isMissing = isMissing || rendered.count(output.uid().get()) == 0;
        const MissingRootOutputs* const kept = MissingRootOutputs::of(m_graph);
        return kept != nullptr && kept->isEmpty() != isMissing;
    }
    bool areTypesRight() const
    {
        const std::vector<unsigned> types = typesOfGraphOutputs(m_graph);
        bool isRight = true;
        for (std::size_t i = 0; i < types.size(); ++i)
            isRight =
                isRight && m_types.typeOf(m_graph.graphOutputs().at(i).uid().get()) == types[i];
        return isRight;
    }
    bool areUidsRight() const
    {
        std::set<Uid> taken;
        visitContent(m_package, [&](const ContentObjectBase& object) {
            taken.insert(dynamic_cast<const ContentInterface&>(object).uidAttribute().get());
        });
        const ContentUids* const kept = ContentUids::of(m_package);
        bool isRight = kept != nullptr;
        for (Uid uid = 0; uid <= 1001; ++uid)
            isRight = isRight && kept->contains(uid) == (taken.count(uid) != 0);
        return isRight;
    }
    bool isRight() const
    {
        EXPECT_TRUE(areNamesRight(m_graph.paraminputs()));
        EXPECT_TRUE(areNamesRight(m_graph.graphOutputs()));
        EXPECT_TRUE(areNamesRight(m_package.content()));
        EXPECT_TRUE((areKeysRight<IdentifierKey>(m_graph.paraminputs(), "missing")));
        EXPECT_TRUE((areKeysRight<UidKey>(m_graph.graphOutputs(), 5000)));
        EXPECT_TRUE(areImagesRight());
        EXPECT_TRUE(areRootOutputsRight());
        EXPECT_TRUE(areTypesRight());
        EXPECT_TRUE(areUidsRight());
        return !testing::Test::HasFailure();
    }

    using Command = std::shared_ptr<Orv::Core::CommandDataModification>;

    std::mt19937 m_random;
    Workspace& m_workspace;
    const Package& m_package;
    const Graph& m_graph;
    MemoryProbe m_memory;
    TypesProbe m_types;
    Uid m_nodeUid = 0;
    bool m_mayMove = true;
    std::vector<Command> m_done;
    std::vector<Command> m_undone;
};

// A graph whose lists are long enough for all indexes.
std::string aGraphWithLongLists()
{
    GraphText graph;
    for (unsigned i = 2001; i < 2041; ++i) {
        graph.inputs += anInput("i" + std::to_string(i), i, 256);
        graph.outputs += anOutput("o" + std::to_string(i), i);
        graph.rootOutputs += aRootOutput(i);
    }
    return graph.text();
}

class KeptIndexes : public testing::TestWithParam<unsigned>
{};

TEST_P(KeptIndexes, AreThoseThatWouldBeMadeAnew)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    Workspace workspace(GetParam() % 2 == 0);
    const Package& package = workspace.open(aPackage().containing(aGraphWithLongLists()));
    EXPECT_EQ(RandomScript(GetParam(), workspace, package).run(150), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, KeptIndexes, testing::Range(1u, 31u));

} // namespace

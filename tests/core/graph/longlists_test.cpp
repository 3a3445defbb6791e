// Lists so long that they are kept in blocks, edited here and there: controllers, sources and
// targets keep the order of the document.
#include "data/content/compnode.h"
#include "data/content/dynamicvalue.h"
#include "data/content/paraminput.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "support/functiontext.h"
#include "support/workspace.h"
#include <algorithm>
#include <random>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::DynamicValue;

constexpr unsigned Many = 3000;

std::string manyInputs()
{
    std::string text;
    for (unsigned i = 1; i <= Many; ++i)
        text += anInput("x" + std::to_string(i), i, 256);
    return text;
}

// Nodes that are fed by the first of them.
std::string manyNodes()
{
    std::string text = aNode(1, aFilter("uniform"), {}, 1, 1);
    for (unsigned i = 2; i <= Many; ++i)
        text += aNode(i, aFilter("blur"), aConnexion("input1", 1, 1), i, 1);
    return text;
}

// A sequence of many constants.
std::string manyEntries()
{
    std::string links;
    std::string constants;
    for (unsigned i = 2; i <= Many; ++i) {
        links += aLink("seqin", i);
        constants += aFunctionNode(i, "const_float1", 256);
    }
    return aRootlessValue(aFunctionNode(1, "sequence", 256, links) + constants);
}

// Nodes of which every second one reads the input "x".
std::string manyReaders()
{
    std::string text;
    for (unsigned i = 1; i <= Many; ++i)
        text +=
            aNode(i, aFilter("blur", aParameter("intensity", "0",
                                                aRootlessValue(aGetter(i, "get_float1", 256,
                                                                       i % 2 == 0 ? "x" : "y")))));
    return text;
}

class LongLists : public testing::Test
{
protected:
    CompGraphController& open(const GraphText& graph)
    {
        package = &workspace.open(aPackage().containing(graph.text()));
        return controllerIn(*package);
    }
    FuncGraphController& openFunction()
    {
        GraphText graph;
        graph.parameters = aParameter("p", "0", manyEntries());
        open(graph);
        return *graphController(
            Orv::Data::DataPointerBox<DynamicValue>(static_cast<const DynamicValue*>(
                graphIn(*package)->baseParameters().at(0).paramValue().get())));
    }
    // Half of the items but the first one, in a random order.
    template <class Item>
    static std::vector<Item*> someOf(std::vector<Item*> items)
    {
        std::shuffle(items.begin() + 1, items.end(), std::mt19937(7));
        return {items.begin() + 1, items.begin() + static_cast<std::ptrdiff_t>(items.size() / 2)};
    }
    static std::vector<ConnectorController*> targetsOf(const ConnectorController& connector)
    {
        const auto targets = connector.targets();
        return {targets.begin(), targets.end()};
    }
    static std::vector<Uid> uidsOf(const std::vector<ConnectorController*>& connectors)
    {
        std::vector<Uid> uids;
        uids.reserve(connectors.size());
        for (const ConnectorController* connector : connectors)
            uids.push_back(connector->node().uid());
        return uids;
    }
    template <class List>
    static std::vector<Uid> uidsIn(const List& list)
    {
        std::vector<Uid> uids;
        for (const auto& item : list)
            uids.push_back(item.uid().get());
        return uids;
    }
    template <class Controller>
    static std::vector<Uid> uidsOfControllers(const std::vector<Controller*>& controllers)
    {
        std::vector<Uid> uids;
        uids.reserve(controllers.size());
        for (const Controller* controller : controllers)
            uids.push_back(controller->uid());
        return uids;
    }
    static std::vector<Uid> sourcesIn(const NodeController& node)
    {
        std::vector<Uid> uids;
        for (const auto& connexion : *node.connexions())
            uids.push_back(connexion.connRef().value().get());
        return uids;
    }
    static void removeSomeInputs(CompGraphController& graph)
    {
        InputsController& inputs = *graph.inputsController();
        for (InputController* input : someOf(inputs.inputs()))
            inputs.removeInput(*input);
    }
    static void removeSomeNodes(GraphController& graph, bool disconnect)
    {
        for (NodeController* node : someOf(graph.nodes()))
            graph.removeNode(*node, disconnect);
    }
    static void disconnectSomeSources(FuncGraphController& graph, ConnectorController& list)
    {
        for (ConnectorController* source : someOf(targetsOf(list)))
            graph.disconnect(*source, list);
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
};

TEST_F(LongLists, InputsHaveTheOrderOfTheDocumentAfterScatteredRemovals)
{
    CompGraphController& graph = open({"g", 4, manyInputs()});
    removeSomeInputs(graph);
    const auto& list = graphIn(*package)->paraminputs();
    EXPECT_EQ(list.size(), Many / 2 + 1);
    EXPECT_EQ(uidsOfControllers(graph.inputsController()->inputs()), uidsIn(list));
}

TEST_F(LongLists, InputsComeBackToTheirPlacesByUndo)
{
    CompGraphController& graph = open({"g", 4, manyInputs()});
    const std::string before = xmlOf(*package);
    removeSomeInputs(graph);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_EQ(uidsOfControllers(graph.inputsController()->inputs()),
              uidsIn(graphIn(*package)->paraminputs()));
}

TEST_F(LongLists, NodesHaveTheOrderOfTheDocumentAfterScatteredRemovals)
{
    CompGraphController& graph = open({"g", 4, {}, {}, manyNodes()});
    removeSomeNodes(graph, true);
    const auto& list = graphIn(*package)->compNodes();
    EXPECT_EQ(list.size(), Many / 2 + 1);
    EXPECT_EQ(uidsOfControllers(graph.nodes()), uidsIn(list));
    EXPECT_EQ(graph.nodeByUid(1)->outputConnector(0)->targets().size(), Many / 2);
}

TEST_F(LongLists, NodesComeBackToTheirPlacesAndConnectionsByUndo)
{
    CompGraphController& graph = open({"g", 4, {}, {}, manyNodes()});
    const std::string before = xmlOf(*package);
    removeSomeNodes(graph, true);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_EQ(uidsOfControllers(graph.nodes()), uidsIn(graphIn(*package)->compNodes()));
    EXPECT_EQ(graph.nodeByUid(1)->outputConnector(0)->targets().size(), Many - 1);
}

TEST_F(LongLists, SourcesHaveTheOrderOfTheDocumentAfterScatteredDisconnections)
{
    FuncGraphController& graph = openFunction();
    ConnectorController& list = *graph.nodeByUid(1)->inputConnector(0);
    disconnectSomeSources(graph, list);
    EXPECT_EQ(list.targets().size(), Many / 2 + 1);
    EXPECT_EQ(uidsOf(targetsOf(list)), sourcesIn(*graph.nodeByUid(1)));
}

TEST_F(LongLists, SourcesComeBackToTheirPlacesByUndo)
{
    FuncGraphController& graph = openFunction();
    ConnectorController& list = *graph.nodeByUid(1)->inputConnector(0);
    disconnectSomeSources(graph, list);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(list.targets().size(), Many - 1);
    EXPECT_EQ(uidsOf(targetsOf(list)), sourcesIn(*graph.nodeByUid(1)));
}

TEST_F(LongLists, SourcesThatComeBackWithTheirNodesHaveTheOrderOfTheDocument)
{
    FuncGraphController& graph = openFunction();
    removeSomeNodes(graph, false);
    EXPECT_TRUE(workspace.undoAll());
    const ConnectorController& list = *graph.nodeByUid(1)->inputConnector(0);
    EXPECT_EQ(list.targets().size(), Many - 1);
    EXPECT_EQ(uidsOf(targetsOf(list)), sourcesIn(*graph.nodeByUid(1)));
}

TEST_F(LongLists, UsersOfAnInputHaveTheOrderOfTheNodes)
{
    open({"g", 4, {}, {}, manyReaders()});
    const auto uids = uidsOfControllers(collectInputUsers(*graphIn(*package), "x"));
    EXPECT_EQ(uids.size(), Many / 2);
    EXPECT_TRUE(std::is_sorted(uids.begin(), uids.end()));
}

} // namespace

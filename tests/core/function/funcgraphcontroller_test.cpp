#include "ksx/core/funcgraphcontroller.h"

#include "data/content/dynamicvalue.h"
#include "data/desc/function.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "support/functiontext.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::DynamicValue;
using Ksx::Data::Desc::FunctionsEnum;

class FuncGraph : public testing::Test
{
protected:
    // The graph of the one parameter of a package's one graph.
    FuncGraphController& open(const std::string& dynamicValue)
    {
        GraphText graph;
        graph.parameters = aParameter("p", "0", dynamicValue);
        package = &workspace.open(aPackage().containing(graph.text()));
        before = text();
        return *graphController(Orv::Data::DataPointerBox<DynamicValue>(&value()));
    }
    FuncGraphController& openNodes(const std::string& nodes) { return open(aRootlessValue(nodes)); }
    const DynamicValue& value() const
    {
        return static_cast<const DynamicValue&>(
            *graphIn(*package)->baseParameters().at(0).paramValue().get());
    }
    std::string text() const { return xmlOf(value()); }
    static FuncNodeController& node(const FuncGraphController& graph, Uid uid)
    {
        return dynamic_cast<FuncNodeController&>(*graph.nodeByUid(uid));
    }
    static OutputConnectorController& outputOf(const FuncGraphController& graph, Uid uid)
    {
        return *node(graph, uid).outputConnector(0);
    }
    static InputConnectorController& inputOf(const FuncGraphController& graph, Uid uid,
                                             const std::string& identifier)
    {
        return *node(graph, uid).inputConnectorByName(identifier);
    }
    // The links of a node as the document has them: "a1 b2".
    std::string linksOf(const FuncGraphController& graph, Uid uid) const
    {
        std::string links;
        for (const auto& connexion : *node(graph, uid).connexions())
            links += (links.empty() ? "" : " ") + connexion.identifier().get() +
                     std::to_string(connexion.connRef().value().get());
        return links;
    }
    // Do all edits give back the bytes of before, and then those of after?
    bool canBeUndone()
    {
        const std::string after = text();
        const bool isUndone = workspace.undoAll() && text() == before;
        return isUndone && workspace.redoAll() && text() == after;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
};

// 1 and 2 are constants, 3 adds what is connected.
const std::string TwoConstants = aConstantNode(1, "const_float1", 256, "Float1", "1") +
                                 aConstantNode(2, "const_float1", 256, "Float1", "2");
std::string anAddition(const std::string& links)
{
    return TwoConstants + aFunctionNode(3, "add", 256, links);
}

TEST_F(FuncGraph, HasAControllerForEachNodeInTheirOrder)
{
    const FuncGraphController& graph = openNodes(anAddition({}));
    ASSERT_EQ(graph.nodes().size(), 3u);
    EXPECT_EQ(graph.nodes()[0]->uid(), 1u);
    EXPECT_EQ(graph.nodes()[2]->uid(), 3u);
    EXPECT_EQ(graph.nodeAt(1), graph.nodeByUid(2));
}

TEST_F(FuncGraph, ConnectionsMayLeadToNodesFurtherBehind)
{
    const FuncGraphController& graph =
        openNodes(aFunctionNode(3, "neg", 256, aLink("a", 1)) + TwoConstants);
    EXPECT_TRUE(inputOf(graph, 3, "a").isConnectedTo(outputOf(graph, 1)));
}

TEST_F(FuncGraph, TheOutputOfAConnectionIsIgnored)
{
    const FuncGraphController& graph =
        openNodes(TwoConstants + aFunctionNode(3, "neg", 256, aConnexion("a", 1, 77)));
    EXPECT_TRUE(inputOf(graph, 3, "a").isConnectedTo(outputOf(graph, 1)));
}

TEST_F(FuncGraph, BuildingChangesNothing)
{
    openNodes(TwoConstants + aFunctionNode(3, "add", 16, aLink("a", 1)));
    EXPECT_EQ(text(), before);
    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(FuncGraph, AddsAFunctionAtTheEndWithTheTypeOfItsDescription)
{
    FuncGraphController& graph = openNodes(TwoConstants);
    const FuncNodeController* added = graph.addAtomicFunction(FunctionsEnum::Sin);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(graph.nodes().back(), added);
    EXPECT_EQ(added->outputType(), 256u);
    EXPECT_EQ(workspace.names(), std::vector<std::string>{"ADD_ATOMIC_FUNCTION_HISTORY_DESC"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, ANodeOfUidZeroCanBeTheOutput)
{
    FuncGraphController& graph = open(aDynamicValue(5, aFunctionNode(5, "sin", 256, aLink("a", 0)) +
                                                           aFunctionNode(0, "cos", 256)));
    FuncNodeController& zero = node(graph, 0);
    EXPECT_TRUE(graph.setOutputNode(zero));
    EXPECT_NE(zero.uid(), 0u);
    EXPECT_EQ(graph.outputNode(), &zero);
    EXPECT_TRUE(inputOf(graph, 5, "a").isConnectedTo(*zero.outputConnector(0)));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, AddsAConstantOfZero)
{
    FuncGraphController& graph = openNodes({});
    const FuncNodeController* added = graph.addAtomicFunction(FunctionsEnum::ConstInt2);
    EXPECT_EQ(text(), aRootlessValue(aConstantNode(added->uid(), "const_int2", 32, "Int2", "0 0")));
}

TEST_F(FuncGraph, AddsNoUnknownFunction)
{
    EXPECT_EQ(openNodes({}).addAtomicFunction(84u), nullptr);
    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(FuncGraph, NewNodesHaveUidsOfTheirOwn)
{
    FuncGraphController& graph = openNodes(TwoConstants);
    const FuncNodeController* first = graph.addAtomicFunction(FunctionsEnum::Sin);
    const FuncNodeController* second = graph.addAtomicFunction(FunctionsEnum::Sin);
    EXPECT_NE(first, second);
    EXPECT_NE(first->uid(), second->uid());
}

TEST_F(FuncGraph, ANewNodeTakesNoUidThatANodeHas)
{
    UidSource::setClock([] { return std::time_t{100}; });
    UidSource::shared().setCounter(400);
    FuncGraphController& graph = openNodes(aFunctionNode(500, "sin", 256));
    const FuncNodeController* added = graph.addAtomicFunction(FunctionsEnum::Sin);
    UidSource::setClock({});
    EXPECT_NE(added->uid(), 500u);
}

TEST_F(FuncGraph, ConnectsInBothOrdersOfTheConnectors)
{
    FuncGraphController& graph = openNodes(anAddition({}));
    EXPECT_TRUE(graph.connect(outputOf(graph, 1), inputOf(graph, 3, "a"), true));
    EXPECT_TRUE(graph.connect(inputOf(graph, 3, "b"), outputOf(graph, 2), true));
    EXPECT_EQ(text(), aRootlessValue(anAddition(aLink("a", 1) + aLink("b", 2))));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, ReplacingASourceDisconnectsWhatFedTheInput)
{
    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1) + aLink("b", 1)));
    EXPECT_TRUE(graph.connect(outputOf(graph, 2), inputOf(graph, 3, "a"), true));
    EXPECT_EQ(linksOf(graph, 3), "b1 a2");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, WithoutReplacingASecondConnectionStandsBesideTheFirst)
{
    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1)));
    EXPECT_TRUE(graph.connect(outputOf(graph, 2), inputOf(graph, 3, "a"), false));
    EXPECT_EQ(linksOf(graph, 3), "a1 a2");
}

TEST_F(FuncGraph, ConnectsNeitherANodeToItselfNorEqualKindsOfConnectors)
{
    FuncGraphController& graph = openNodes(anAddition({}));
    EXPECT_FALSE(graph.connect(outputOf(graph, 3), inputOf(graph, 3, "a"), true));
    EXPECT_FALSE(graph.connect(outputOf(graph, 1), outputOf(graph, 2), true));
    EXPECT_FALSE(graph.connect(inputOf(graph, 3, "a"), inputOf(graph, 3, "b"), true));
    EXPECT_EQ(text(), before);
}

TEST_F(FuncGraph, ConnectsNodesInACircle)
{
    FuncGraphController& graph =
        openNodes(aFunctionNode(1, "neg", 256) + aFunctionNode(2, "neg", 256, aLink("a", 1)));
    EXPECT_TRUE(graph.connect(outputOf(graph, 2), inputOf(graph, 1, "a"), true));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, DisconnectsTheConnectionOfTwoConnectorsAlone)
{
    FuncGraphController& graph =
        openNodes(anAddition(aLink("a", 1) + aLink("b", 1) + aLink("a", 2)));
    EXPECT_TRUE(graph.disconnect(outputOf(graph, 2), inputOf(graph, 3, "a")));
    EXPECT_EQ(linksOf(graph, 3), "a1 b1");
    EXPECT_EQ(workspace.names(), std::vector<std::string>{"DISCONNECT_TWO_NODES_HISTORY_DESC"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, RemovesANodeWithItsConnections)
{
    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1) + aLink("b", 2)) +
                                           aFunctionNode(4, "neg", 256, aLink("a", 3)));
    graph.removeNode(node(graph, 3), true);
    EXPECT_EQ(text(), aRootlessValue(TwoConstants + aFunctionNode(4, "neg", 256)));
    EXPECT_EQ(graph.nodeByUid(3), nullptr);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, RemovesANodeAndLeavesItsTargetsUnresolved)
{
    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1)));
    graph.removeNode(node(graph, 1), false);
    EXPECT_EQ(linksOf(graph, 3), "a1");
    EXPECT_TRUE(inputOf(graph, 3, "a").targets().empty());
    EXPECT_TRUE(canBeUndone());
    EXPECT_TRUE(inputOf(graph, 3, "a").targets().empty());
}

TEST_F(FuncGraph, AnUndoneRemovalConnectsTheTargetsAgain)
{
    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1)));
    graph.removeNode(node(graph, 1), false);
    workspace.undoAll();
    EXPECT_TRUE(inputOf(graph, 3, "a").isConnectedTo(outputOf(graph, 1)));
}

TEST_F(FuncGraph, RemovingTheOutputLeavesTheGraphWithoutOne)
{
    FuncGraphController& graph = open(aDynamicValue(1, TwoConstants));
    graph.removeNode(node(graph, 1), true);
    EXPECT_EQ(graph.outputNode(), nullptr);
    EXPECT_EQ(text(), aRootlessValue(aConstantNode(2, "const_float1", 256, "Float1", "2")));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, RemovingAnotherNodeLeavesTheOutput)
{
    FuncGraphController& graph = open(aDynamicValue(1, TwoConstants));
    graph.removeNode(node(graph, 2), true);
    EXPECT_EQ(graph.outputNode(), &node(graph, 1));
}

TEST_F(FuncGraph, SetsTheOutput)
{
    FuncGraphController& graph = openNodes(TwoConstants);
    EXPECT_EQ(graph.outputNode(), nullptr);
    EXPECT_TRUE(graph.setOutputNode(node(graph, 2)));
    EXPECT_EQ(graph.outputNode(), &node(graph, 2));
    EXPECT_TRUE(node(graph, 2).isOutputNode());
    EXPECT_FALSE(node(graph, 1).isOutputNode());
    EXPECT_EQ(text(), aDynamicValue(2, TwoConstants));
    EXPECT_EQ(workspace.names(), std::vector<std::string>{"Debug: Setting a node as output"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, TheOutputIsNotSetAgain)
{
    FuncGraphController& graph = open(aDynamicValue(1, TwoConstants));
    EXPECT_FALSE(graph.setOutputNode(node(graph, 1)));
    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(FuncGraph, ANodeWithoutValueIsNoOutput)
{
    FuncGraphController& graph = openNodes(aFunctionNode(1, "if", 524288));
    EXPECT_FALSE(graph.setOutputNode(node(graph, 1)));
    EXPECT_EQ(text(), before);
}

TEST_F(FuncGraph, ARootThatNamesNoNodeIsNoOutput)
{
    EXPECT_EQ(open(aDynamicValue(9, TwoConstants)).outputNode(), nullptr);
}

TEST_F(FuncGraph, WithoutARootANodeOfUidZeroIsNoOutput)
{
    EXPECT_EQ(openNodes(aFunctionNode(0, "sin", 256)).outputNode(), nullptr);
}

TEST_F(FuncGraph, OfTwoNodesWithOneUidTheFirstIsTheOutput)
{
    FuncGraphController& graph =
        open(aDynamicValue(1, aFunctionNode(1, "sin", 256) + aFunctionNode(1, "cos", 256)));
    EXPECT_TRUE(graph.nodeAt(0)->isOutputNode());
    EXPECT_FALSE(graph.nodeAt(1)->isOutputNode());
}

TEST_F(FuncGraph, RemovingTheSecondOfTwoNodesWithOneUidLeavesTheOutput)
{
    FuncGraphController& graph =
        open(aDynamicValue(1, aFunctionNode(1, "sin", 256) + aFunctionNode(1, "cos", 256)));
    graph.removeNode(*graph.nodeAt(1), true);
    EXPECT_EQ(text(), aDynamicValue(1, aFunctionNode(1, "sin", 256)));
    EXPECT_TRUE(canBeUndone());
}

// Beside a function graph of the same nodes in another package.
class TwoFuncGraphs : public FuncGraph
{
protected:
    static const DynamicValue& valueIn(const Ksx::Data::Content::Package& package)
    {
        return static_cast<const DynamicValue&>(
            *graphIn(package)->baseParameters().at(0).paramValue().get());
    }

    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1)));
    const std::unique_ptr<Ksx::Data::Content::Package> document =
        packageFrom(aPackage().containing(GraphText{
            "g", 4, {}, {}, {}, aParameter("p", "0", aRootlessValue(anAddition(aLink("a", 1))))}
                                              .text()));
    const DynamicValue& otherValue = valueIn(*document);
    FuncGraphController& other =
        *graphController(Orv::Data::DataPointerBox<DynamicValue>(&otherValue));
};

TEST_F(TwoFuncGraphs, ANodeOfAnotherGraphIsNotRemoved)
{
    graph.removeNode(*other.nodeAt(0), true);
    EXPECT_EQ(text(), before);
    EXPECT_EQ(otherValue.paramNodes().size(), 3u);
}

TEST_F(TwoFuncGraphs, SourcesOfAnotherGraphAreNotReplaced)
{
    graph.replaceSource(*other.nodeAt(0), *other.nodeAt(1));
    graph.replaceSource(*other.nodeAt(0), *graph.nodeAt(1));
    graph.replaceSource(*graph.nodeAt(0), *other.nodeAt(1));
    EXPECT_EQ(text(), before);
    EXPECT_EQ(xmlOf(otherValue), before);
    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(FuncGraph, ReplacingASourceGoesToTheEndOfTheConnections)
{
    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1) + aLink("b", 2)));
    FuncNodeController& constant = *graph.addAtomicFunction(FunctionsEnum::ConstFloat1);
    graph.replaceSource(node(graph, 1), constant);
    EXPECT_EQ(linksOf(graph, 3), "b2 a" + std::to_string(constant.uid()));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, ReplacingASourceReachesAllInputsOfANode)
{
    FuncGraphController& graph = openNodes(anAddition(aLink("a", 1) + aLink("b", 1)));
    FuncNodeController& constant = *graph.addAtomicFunction(FunctionsEnum::ConstFloat1);
    graph.replaceSource(node(graph, 1), constant);
    EXPECT_TRUE(inputOf(graph, 3, "a").isConnectedTo(*constant.outputConnector(0)));
    EXPECT_TRUE(inputOf(graph, 3, "b").isConnectedTo(*constant.outputConnector(0)));
    EXPECT_TRUE(outputOf(graph, 1).targets().empty());
}

TEST_F(FuncGraph, ReplacingASourceOfAListKeepsTheOtherEntriesAndTheOrder)
{
    FuncGraphController& graph =
        openNodes(TwoConstants + aFunctionNode(3, "vector3", 1024,
                                               aLink("componentsin", 1) + aLink("componentsin", 2) +
                                                   aLink("componentslast", 2)));
    FuncNodeController& constant = *graph.addAtomicFunction(FunctionsEnum::ConstFloat1);
    graph.replaceSource(node(graph, 1), constant);
    EXPECT_EQ(linksOf(graph, 3),
              "componentsin" + std::to_string(constant.uid()) + " componentsin2 componentslast2");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, ReplacingASourceReachesAllItsEntriesOfAList)
{
    FuncGraphController& graph =
        openNodes(TwoConstants + aFunctionNode(3, "sequence", 256,
                                               aLink("seqin", 1) + aLink("seqin", 2) +
                                                   aLink("seqin", 1) + aLink("seqlast", 2)));
    FuncNodeController& constant = *graph.addAtomicFunction(FunctionsEnum::ConstFloat1);
    const std::string uid = std::to_string(constant.uid());
    graph.replaceSource(node(graph, 1), constant);
    EXPECT_EQ(linksOf(graph, 3), "seqin" + uid + " seqin2 seqin" + uid + " seqlast2");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, ReplacingASourceOfAnUnknownInputKeepsItsOtherConnections)
{
    FuncGraphController& graph =
        openNodes(TwoConstants +
                  aFunctionNode(3, "mystery", 256, aLink("x", 2) + aLink("x", 1) + aLink("y", 1)));
    FuncNodeController& constant = *graph.addAtomicFunction(FunctionsEnum::ConstFloat1);
    const std::string uid = std::to_string(constant.uid());
    graph.replaceSource(node(graph, 1), constant);
    EXPECT_EQ(linksOf(graph, 3), "x2 x" + uid + " y" + uid);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncGraph, TellsOfNodesThatComeAndGo)
{
    FuncGraphController& graph = openNodes(TwoConstants);
    std::string told;
    graph.nodeAdded.connect(
        [&](NodeController*, std::size_t index) { told += "+" + std::to_string(index); });
    graph.nodeAboutToBeRemoved.connect(
        [&](NodeController*, std::size_t index) { told += "-" + std::to_string(index); });
    graph.addAtomicFunction(FunctionsEnum::Sin);
    graph.removeNode(node(graph, 1), true);
    EXPECT_EQ(told, "+2-0");
}

TEST_F(FuncGraph, DiesWithItsValue)
{
    const Orv::Data::DataPointerBox<GraphController> box(&openNodes(TwoConstants));
    workspace.packages().removePackages({Ksx::Core::PackagesListManager::PackageBox(package)});
    EXPECT_FALSE(box);
}

} // namespace

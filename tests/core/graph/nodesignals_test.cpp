#include "core/manipulatorattribute.h"
#include "core/manipulatorlist.h"
#include "data/content/compinputbridge.h"
#include "data/content/graphmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "graph/connexionslistener.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "support/contentedits.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::CompNode;
using Ksx::Data::Desc::FilterKind;
using Orv::Core::ManipulatorList;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using NodeList = Orv::Data::ContainerList<CompNode>;

class NodeSignals : public testing::Test
{
protected:
    CompGraphController& open(const GraphText& graph = {})
    {
        package = &workspace.open(aPackage().containing(graph.text()));
        before = xmlOf(*package);
        return controllerIn(*package);
    }
    void insertTwoNodes()
    {
        const auto insert = +[](ManipulatorList<CompNode> nodes, const DataPointerBoxMasterKey&,
                                const int& count) {
            for (int uid = 1; uid <= count; ++uid) {
                auto node = std::make_unique<CompNode>();
                node->uid().assign(static_cast<unsigned>(uid));
                node->compImplementation().set(std::make_unique<Ksx::Data::Content::CompFilter>());
                nodes.pushBack(std::move(node));
            }
            return true;
        };
        runEdit(DataPointerBox<NodeList>(&graphIn(*package)->compNodes()), 2, insert, "insert");
    }
    // Does undoing bring back the bytes of before, when nobody edits any more? Commands that have
    // joined another one have nothing to undo by themselves.
    bool canBeUndone(const boost::signals2::connection& handler)
    {
        handler.disconnect();
        workspace.undoAll();
        return xmlOf(*package) == before;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
};

const std::string ABlur = aNode(1, aFilter("blur"), {}, 10, 1);

TEST_F(NodeSignals, TellOfAPositionOnUndoAndRedo)
{
    NodeController& node = *open({"g", 4, {}, {}, ABlur}).nodeByUid(1);
    std::vector<QPointF> told;
    node.positionChanged.connect([&](const QPointF& place) { told.push_back(place); });
    node.setPosition(QPointF(3.0, 4.0));
    workspace.undoAll();
    workspace.redoAll();
    EXPECT_EQ(told, (std::vector<QPointF>{{3.0, 4.0}, {0.0, 0.0}, {3.0, 4.0}}));
}

TEST_F(NodeSignals, TellOfADepthAloneOnUndoAndRedo)
{
    NodeController& node = *open({"g", 4, {}, {}, ABlur}).nodeByUid(1);
    std::vector<float> told;
    int moves = 0;
    node.depthChanged.connect([&](float depth) { told.push_back(depth); });
    node.positionChanged.connect([&](const QPointF&) { ++moves; });
    node.setDepth(2.0F);
    workspace.undoAll();
    workspace.redoAll();
    EXPECT_EQ(told, (std::vector<float>{2.0F, 0.0F, 2.0F}));
    EXPECT_EQ(moves, 0);
}

TEST_F(NodeSignals, TellOfTheTypesAlongAChainOnceForEachChange)
{
    CompGraphController& graph =
        open({"g",
              4,
              anInput("a", 7, 2),
              anOutput("o", 21),
              aNode(1, aFilter("blur"), {}, 10, 1) +
                  aNode(2, anOutputBridge(21, 1), aConnexion("inputNodeOutput", 1, 10)) +
                  aNode(3, anInputBridge(7), {}, 30, 2),
              {},
              aRootOutput(21)});
    std::vector<unsigned> filter;
    std::vector<unsigned> output;
    graph.nodeByUid(1)->outputTypeChanged.connect([&](unsigned t) { filter.push_back(t); });
    graph.nodeByUid(2)->outputTypeChanged.connect([&](unsigned t) { output.push_back(t); });
    graph.connect(*graph.nodeByUid(3)->outputConnector(0), *graph.nodeByUid(1)->inputConnector(0),
                  true);
    workspace.undoAll();
    workspace.redoAll();
    EXPECT_EQ(filter, (std::vector<unsigned>{2, 1, 2}));
    EXPECT_EQ(output, (std::vector<unsigned>{2, 1, 2}));
}

// Node 1 stands for the input 7.
class InputNodeSignals : public NodeSignals
{
protected:
    InputNodeSignals()
    {
        graph = &open({"g",
                       4,
                       anInput("a", 7, 1) + anInput("b", 8, 2),
                       {},
                       aNode(1, anInputBridge(7), {}, 10, 1) +
                           aNode(2, aFilter("blur"), aConnexion("input1", 1, 10), 20, 1)});
        graph->nodeByUid(1)->outputTypeChanged.connect([this](unsigned t) { told.push_back(t); });
    }
    void setType(std::size_t input, unsigned type)
    {
        const auto set = +[](Orv::Core::ManipulatorAttribute<Uid> attribute,
                             const DataPointerBoxMasterKey&, const Uid& value) {
            attribute.set(value);
            return true;
        };
        const auto& attribute = graphIn(*package)->paraminputs().at(input).type().value();
        runEdit(DataPointerBox<Orv::Data::Attribute<Uid>>(&attribute), type, set, "type");
    }

    CompGraphController* graph = nullptr;
    std::vector<unsigned> told;
};

TEST_F(InputNodeSignals, TellOfAnInputThatGoesAndComesBackWithAnUndo)
{
    InputsController& inputs = *graph->inputsController();
    inputs.removeInput(*inputs.inputByUid(7));
    workspace.undoAll();
    setType(0, 2);
    EXPECT_EQ(told, (std::vector<unsigned>{0, 1, 2}));
    EXPECT_EQ(graph->nodeByUid(2)->outputType(), 2u);
}

TEST_F(InputNodeSignals, TellOfTheInputThatTheNodeHasComeToStandFor)
{
    const auto set = +[](Orv::Core::ManipulatorAttribute<Uid> attribute,
                         const DataPointerBoxMasterKey&, const Uid& value) {
        attribute.set(value);
        return true;
    };
    const auto& bridge = static_cast<const Ksx::Data::Content::CompInputBridge&>(
        *graphIn(*package)->compNodes().at(0).compImplementation().get());
    runEdit(DataPointerBox<Orv::Data::Attribute<Uid>>(&bridge.entry()), 8u, set, "entry");
    setType(0, 2);
    setType(1, 1);
    EXPECT_EQ(told, (std::vector<unsigned>{2, 1}));
    EXPECT_EQ(graph->nodeByUid(2)->outputType(), 1u);
}

TEST_F(InputNodeSignals, TheNodeHasTheParametersOfItsKind)
{
    auto& node = static_cast<CompNodeController&>(*graph->nodeByUid(1));
    ASSERT_NE(node.parametersController(), nullptr);
    EXPECT_EQ(node.parametersController()->groups(), node.parameterDescriptions());
    ParameterController& size = *node.parameterController("outputsize");
    EXPECT_EQ(size.relativeTo(), InheritanceMethod::RelativeToParent);
    EXPECT_TRUE(size.setValue(Orv::Data::Int2{{3, 3}}));
    EXPECT_NE(xmlOf(*package).find("<name v=\"outputsize\"/>"), std::string::npos);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(NodeSignals, AHandlerMayRemoveTheNodeThatHasComeAndTheNextOne)
{
    CompGraphController& graph = open();
    std::vector<std::size_t> told;
    graph.nodeAdded.connect([&](NodeController* node, std::size_t index) {
        told.push_back(index);
        graph.removeNode(*node, true);
    });
    insertTwoNodes();
    EXPECT_EQ(told, (std::vector<std::size_t>{0, 1}));
    EXPECT_TRUE(graph.nodes().empty());
    EXPECT_TRUE(graphIn(*package)->compNodes().isEmpty());
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(NodeSignals, AHandlerMayEmptyTheListThatIsBeingRead)
{
    CompGraphController& graph = open();
    graph.nodeAdded.connect([&](NodeController*, std::size_t) {
        const auto clear =
            +[](ManipulatorList<CompNode> nodes, const DataPointerBoxMasterKey&, const int&) {
                nodes.clear();
                return true;
            };
        runEdit(DataPointerBox<NodeList>(&graphIn(*package)->compNodes()), 0, clear, "clear");
    });
    insertTwoNodes();
    EXPECT_TRUE(graph.nodes().empty());
    EXPECT_EQ(graph.nodeByUid(1), nullptr);
    EXPECT_EQ(graph.nodeByUid(2), nullptr);
}

TEST_F(NodeSignals, AHandlerOfANodeThatGoesMayAddAnother)
{
    CompGraphController& graph = open({"g", 4, {}, {}, ABlur});
    graph.nodeAboutToBeRemoved.connect(
        [&](NodeController*, std::size_t) { graph.addAtomicFilter(FilterKind::Uniform); });
    graph.removeNode(*graph.nodeByUid(1), true);
    EXPECT_EQ(graph.nodeByUid(1), nullptr);
    EXPECT_EQ(graph.nodes().size(), 1u);
}

// Nodes 1 and 2 feed the input of node 3.
const std::string TwoSources =
    aNode(1, aFilter("uniform"), {}, 10, 1) + aNode(2, aFilter("uniform"), {}, 20, 1) +
    aNode(3, aFilter("blur"), aConnexion("input1", 1, 10) + aConnexion("input1", 2, 20), 30, 1) +
    aNode(4, aFilter("uniform"), {}, 40, 1);

TEST_F(NodeSignals, AHandlerMayTakeAwayTheTargetOfAConnectionThatIsReplaced)
{
    CompGraphController& graph = open({"g", 4, {}, {}, TwoSources});
    const auto handler =
        graph.connectionRemoved.connect([&](InputConnectorController*, OutputConnectorController*) {
            if (NodeController* target = graph.nodeByUid(3))
                graph.removeNode(*target, false);
        });
    EXPECT_FALSE(graph.connect(*graph.nodeByUid(4)->outputConnector(0),
                               *graph.nodeByUid(3)->inputConnector(0), true));
    EXPECT_EQ(graph.nodeByUid(3), nullptr);
    EXPECT_TRUE(canBeUndone(handler));
}

TEST_F(NodeSignals, AHandlerMayTakeAwayTheSourcesOfAConnectionThatIsReplaced)
{
    CompGraphController& graph = open({"g", 4, {}, {}, TwoSources});
    const auto handler =
        graph.connectionRemoved.connect([&](InputConnectorController*, OutputConnectorController*) {
            for (const Uid uid : {1u, 2u, 4u})
                if (NodeController* source = graph.nodeByUid(uid))
                    graph.removeNode(*source, false);
        });
    EXPECT_FALSE(graph.connect(*graph.nodeByUid(4)->outputConnector(0),
                               *graph.nodeByUid(3)->inputConnector(0), true));
    EXPECT_EQ(graph.nodes().size(), 1u);
    EXPECT_TRUE(canBeUndone(handler));
}

TEST_F(NodeSignals, AHandlerMayTakeAwayTheWholeGraph)
{
    CompGraphController& graph = open({"g", 4, {}, {}, TwoSources});
    const auto handler =
        graph.connectionRemoved.connect([&](InputConnectorController*, OutputConnectorController*) {
            if (!package->content().isEmpty())
                eraseFrom(package->content(), 0);
        });
    graph.removeNode(*graph.nodeByUid(3), true);
    EXPECT_TRUE(package->content().isEmpty());
    EXPECT_TRUE(canBeUndone(handler));
}

TEST_F(NodeSignals, AHandlerMayTakeAwayTheGraphThatANodeIsAddedTo)
{
    CompGraphController& graph = open();
    graph.nodeAdded.connect(
        [&](NodeController*, std::size_t) { eraseFrom(package->content(), 0); });
    EXPECT_EQ(graph.addAtomicFilter(FilterKind::Blur), nullptr);
    EXPECT_TRUE(package->content().isEmpty());
}

TEST_F(NodeSignals, AHandlerOfAPositionMayRemoveTheNode)
{
    CompGraphController& graph = open({"g", 4, {}, {}, ABlur});
    NodeController& node = *graph.nodeByUid(1);
    const auto handler =
        node.positionChanged.connect([&](const QPointF&) { graph.removeNode(node, true); });
    node.setPosition(QPointF(1.0, 1.0));
    EXPECT_EQ(graph.nodeByUid(1), nullptr);
    EXPECT_TRUE(canBeUndone(handler));
}

TEST_F(NodeSignals, AHandlerOfALabelMayRemoveTheNode)
{
    CompGraphController& graph = open({"g", 4, {}, {}, ABlur});
    NodeController& node = *graph.nodeByUid(1);
    node.inputConnector(0)->labelChanged.connect([&] { graph.removeNode(node, true); });
    node.inputConnector(0)->setLabel("other");
    EXPECT_EQ(graph.nodeByUid(1), nullptr);
}

TEST_F(NodeSignals, AConnectionThatGoesCanBeLookedForAmongTheOthers)
{
    CompGraphController& graph = open({"g", 4, {}, {}, TwoSources});
    InputConnectorController& input = *graph.nodeByUid(3)->inputConnector(0);
    OutputConnectorController& second = *graph.nodeByUid(2)->outputConnector(0);
    bool isFound = false;
    graph.connectionRemoved.connect([&](InputConnectorController*, OutputConnectorController*) {
        isFound = graph.nodeByUid(3)->connections().find(input, second) != nullptr;
    });
    graph.disconnect(*graph.nodeByUid(1)->outputConnector(0), input);
    EXPECT_TRUE(isFound);
}

// What a controller shows that was made when the document was as it is now.
TEST_F(NodeSignals, SourcesStandInTheOrderOfTheDocumentAfterAnUndo)
{
    CompGraphController& graph = open({"g", 4, {}, {}, TwoSources});
    InputConnectorController& input = *graph.nodeByUid(3)->inputConnector(0);
    graph.disconnect(*graph.nodeByUid(1)->outputConnector(0), input);
    workspace.undoAll();
    ASSERT_EQ(input.targets().size(), 2u);
    EXPECT_EQ(input.targets().front()->node().uid(), 1u);
}

TEST_F(NodeSignals, SourcesStandInTheOrderOfTheDocumentWhenANodeComesBack)
{
    CompGraphController& graph = open({"g", 4, {}, {}, TwoSources});
    InputConnectorController& input = *graph.nodeByUid(3)->inputConnector(0);
    graph.removeNode(*graph.nodeByUid(1), false);
    workspace.undoAll();
    ASSERT_EQ(input.targets().size(), 2u);
    EXPECT_EQ(input.targets().front()->node().uid(), 1u);
}

// Node 1 feeds nodes 2 and 3, of which node 3 was connected first.
class NodeTargets : public NodeSignals
{
protected:
    void openAndConnect()
    {
        graph =
            &open({"g",
                   4,
                   {},
                   {},
                   aNode(1, aFilter("uniform"), {}, 10, 1) + aNode(2, aFilter("blur"), {}, 20, 1) +
                       aNode(3, aFilter("blur"), {}, 30, 1)});
        source = graph->nodeByUid(1)->outputConnector(0);
        for (const Uid uid : {3u, 2u})
            graph->connect(*source, *graph->nodeByUid(uid)->inputConnector(0), true);
    }
    std::vector<Uid> targets() const
    {
        std::vector<Uid> uids;
        for (const ConnectorController* target : source->targets())
            uids.push_back(target->node().uid());
        return uids;
    }

    CompGraphController* graph = nullptr;
    OutputConnectorController* source = nullptr;
};

TEST_F(NodeTargets, StandInTheOrderOfTheDocument)
{
    openAndConnect();
    EXPECT_EQ(targets(), (std::vector<Uid>{2, 3}));
}

TEST_F(NodeTargets, StandInTheOrderOfTheDocumentWhenNodesAreMovedAndMovedBack)
{
    openAndConnect();
    const auto move =
        +[](ManipulatorList<CompNode> nodes, const DataPointerBoxMasterKey&, const int& offset) {
            nodes.move(2, offset);
            return true;
        };
    EXPECT_EQ(targets(), (std::vector<Uid>{2, 3}));
    runEdit(DataPointerBox<NodeList>(&graphIn(*package)->compNodes()), -2, move, "move");
    EXPECT_EQ(targets(), (std::vector<Uid>{3, 2}));
    workspace.undoAll();
    workspace.redoAll();
    EXPECT_EQ(targets(), (std::vector<Uid>{3, 2}));
}

TEST_F(NodeTargets, StandInTheOrderOfTheDocumentWhenANodeIsPutBeforeThem)
{
    openAndConnect();
    EXPECT_EQ(targets(), (std::vector<Uid>{2, 3}));
    NodeController& added = *graph->addOutputNode({"o", 1, {}, 0, 0});
    graph->connect(*source, *added.inputConnector(0), true);
    EXPECT_EQ(targets(), (std::vector<Uid>{added.uid(), 2, 3}));
}

// Two nodes have the uid 1; the type of the first is 1, that of the second 2.
const std::string Namesakes = aNode(1, aFilter("uniform"), {}, 10, 1) +
                              aNode(1, aFilter("uniform"), {}, 10, 2) +
                              aNode(3, aFilter("blur"), aConnexion("input1", 1, 10), 30, 1);

TEST_F(NodeSignals, OfNodesWithOneUidTheFirstIsFoundAgainAfterAnUndo)
{
    CompGraphController& graph = open({"g", 4, {}, {}, Namesakes});
    graph.removeNode(*graph.nodes()[0], false);
    EXPECT_EQ(graph.nodeByUid(1), graph.nodes()[0]);
    workspace.undoAll();
    EXPECT_EQ(graph.nodeByUid(1), graph.nodes()[0]);
    const auto& sources = graph.nodeByUid(3)->inputConnector(0)->targets();
    ASSERT_EQ(sources.size(), 1u);
    EXPECT_EQ(&sources.front()->node(), graph.nodes()[0]);
}

TEST_F(NodeSignals, OfNodesWithOneUidTheFirstIsFoundWhenTheyAreMoved)
{
    CompGraphController& graph = open({"g", 4, {}, {}, Namesakes});
    const auto move =
        +[](ManipulatorList<CompNode> nodes, const DataPointerBoxMasterKey&, const int& offset) {
            nodes.move(0, offset);
            return true;
        };
    runEdit(DataPointerBox<NodeList>(&graphIn(*package)->compNodes()), 1, move, "move");
    EXPECT_EQ(graph.nodeByUid(1), graph.nodes()[0]);
    EXPECT_EQ(&graph.nodeByUid(3)->inputConnector(0)->targets().front()->node(), graph.nodes()[0]);
}

TEST_F(NodeSignals, ANodeIsFoundByTheUidThatItHasNow)
{
    CompGraphController& graph = open({"g", 4, {}, {}, TwoSources});
    const auto set = +[](Orv::Core::ManipulatorStruct<CompNode> node,
                         const DataPointerBoxMasterKey&, const unsigned& uid) {
        node.uid().set(uid);
        return true;
    };
    NodeController* node = graph.nodeByUid(1);
    runEdit(DataPointerBox<CompNode>(&graphIn(*package)->compNodes().at(0)), 9u, set, "uid");
    EXPECT_EQ(graph.nodeByUid(1), nullptr);
    EXPECT_EQ(graph.nodeByUid(9), node);
    EXPECT_EQ(graph.nodeByUid(3)->inputConnector(0)->targets().size(), 1u);
    workspace.undoAll();
    EXPECT_EQ(graph.nodeByUid(1), node);
    EXPECT_EQ(graph.nodeByUid(3)->inputConnector(0)->targets().size(), 2u);
}

TEST_F(NodeSignals, ParametersOfAGraphFollowItsPrimaryInput)
{
    CompGraphController& graph = open({"g", 4, anInput("a", 7, 1)});
    const auto set = +[](Orv::Core::ManipulatorStruct<Ksx::Data::Content::Graph> edited,
                         const DataPointerBoxMasterKey&, const unsigned& uid) {
        edited.primaryInput().value().set(uid);
        return true;
    };
    ParameterController& size = *graph.parametersController().parameter("outputsize");
    EXPECT_EQ(size.relativeTo(), InheritanceMethod::RelativeToParent);
    runEdit(graphIn(*package), 7u, set, "primary");
    EXPECT_EQ(size.relativeTo(), InheritanceMethod::RelativeToInput);
    workspace.undoAll();
    EXPECT_EQ(size.relativeTo(), InheritanceMethod::RelativeToParent);
}

TEST_F(NodeSignals, AParameterRelativeToTheParentTellsWhenThatOfTheGraphChanges)
{
    CompGraphController& graph = open({"g", 4, {}, {}, aNode(1, aFilter("uniform"), {}, 10, 1)});
    auto* node = dynamic_cast<CompNodeController*>(graph.nodeByUid(1));
    ParameterController& size = *node->parametersController()->parameter("outputsize");
    ASSERT_EQ(size.relativeTo(), InheritanceMethod::RelativeToParent);
    int count = 0;
    size.changes().valueChanged.connect([&] { ++count; });
    graph.parametersController().parameter("randomseed")->setValue(7u);
    EXPECT_EQ(count, 0);
    graph.parametersController().parameter("outputsize")->setValue(Orv::Data::Int2{{2, 2}});
    EXPECT_EQ(count, 1);
    workspace.undoAll();
    EXPECT_EQ(count, 2);
}

TEST_F(NodeSignals, AParameterRelativeToTheInputTellsNothingOfTheGraph)
{
    CompGraphController& graph = open({"g", 4, {}, {}, ABlur});
    auto* node = dynamic_cast<CompNodeController*>(graph.nodeByUid(1));
    ParameterController& size = *node->parametersController()->parameter("outputsize");
    ASSERT_EQ(size.relativeTo(), InheritanceMethod::RelativeToInput);
    int count = 0;
    size.changes().valueChanged.connect([&] { ++count; });
    graph.parametersController().parameter("outputsize")->setValue(Orv::Data::Int2{{2, 2}});
    EXPECT_EQ(count, 0);
}

TEST_F(NodeSignals, ParametersThatANodeInheritsTellOfTheirChanges)
{
    CompGraphController& graph = open({"g", 4, {}, {}, ABlur});
    auto* node = dynamic_cast<CompNodeController*>(graph.nodeByUid(1));
    int count = 0;
    node->parametersController()->inherited()->changed.connect([&] { ++count; });
    graph.parametersController().parameter("outputsize")->setValue(Orv::Data::Int2{{2, 2}});
    workspace.undoAll();
    EXPECT_EQ(count, 2);
    EXPECT_EQ(graph.parametersController().inherited(), nullptr);
}

} // namespace

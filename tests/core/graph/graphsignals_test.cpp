// Which signals a graph, its nodes and connectors send, and what is there while they are sent.
#include "core/manipulatorlist.h"
#include "data/content/graphmanipulators.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/rootoutputcontroller.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::CompNode;
using Ksx::Data::Content::ParamInput;
using Orv::Core::ManipulatorList;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using Lines = std::vector<std::string>;

const std::string TwoBlurs = aNode(1, aFilter("blur"), {}, 10, 1) +
                             aNode(2, aFilter("blur"), aConnexion("input1", 1, 10), 20, 1);

std::string at(std::size_t index)
{
    return " at " + std::to_string(index);
}

class GraphSignals : public testing::Test
{
protected:
    CompGraphController& open(const GraphText& text)
    {
        package = &workspace.open(aPackage().containing(text.text()));
        return controllerIn(*package);
    }
    CompGraphController& openBlurs() { return open({"g", 4, {}, {}, TwoBlurs}); }
    void moveFirstNode(std::ptrdiff_t offset)
    {
        const auto move = +[](ManipulatorList<CompNode> nodes, const DataPointerBoxMasterKey&,
                              const std::ptrdiff_t& places) {
            nodes.move(0, places);
            return true;
        };
        runEdit(DataPointerBox<Orv::Data::ContainerList<CompNode>>(&graphIn(*package)->compNodes()),
                offset, move, "move");
    }
    static std::vector<Uid> uidsOf(const CompGraphController& graph)
    {
        std::vector<Uid> uids;
        for (const NodeController* node : graph.nodes())
            uids.push_back(node->uid());
        return uids;
    }
    void tellOfNodes(CompGraphController& graph)
    {
        graph.nodeAdded.connect([this](NodeController* node, std::size_t index) {
            told.push_back("added " + std::to_string(node->uid()) + at(index));
        });
        graph.nodeAboutToBeRemoved.connect([this](NodeController* node, std::size_t index) {
            told.push_back("removed " + std::to_string(node->uid()) + at(index));
        });
    }
    void tellOfConnections(CompGraphController& graph)
    {
        graph.connectionAdded.connect(
            [this](InputConnectorController* input, OutputConnectorController* output) {
                told.push_back("added " + endsOf(*input, *output));
            });
        graph.connectionRemoved.connect(
            [this](InputConnectorController* input, OutputConnectorController* output) {
                told.push_back("removed " + endsOf(*input, *output));
            });
    }
    static std::string endsOf(const InputConnectorController& input,
                              const OutputConnectorController& output)
    {
        return std::to_string(output.node().uid()) + " to " + std::to_string(input.node().uid());
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    Lines told;
};

TEST_F(GraphSignals, TellOfANodeThatGoesAndComesBackAtItsPlace)
{
    CompGraphController& graph = openBlurs();
    tellOfNodes(graph);
    graph.removeNode(*graph.nodeByUid(1), false);
    workspace.undoAll();
    EXPECT_EQ(told, (Lines{"removed 1 at 0", "added 1 at 0"}));
}

TEST_F(GraphSignals, TellOfANodeThatIsAddedAndUndone)
{
    CompGraphController& graph = openBlurs();
    tellOfNodes(graph);
    const std::string uid =
        std::to_string(graph.addAtomicFilter(Ksx::Data::Desc::FilterKind::Blur)->uid());
    workspace.undoAll();
    EXPECT_EQ(told, (Lines{"added " + uid + " at 2", "removed " + uid + " at 2"}));
}

TEST_F(GraphSignals, TellOfNoNodeThatIsMoved)
{
    CompGraphController& graph = openBlurs();
    tellOfNodes(graph);
    moveFirstNode(1);
    EXPECT_EQ(told, Lines());
}

TEST_F(GraphSignals, NodesThatAreMovedFollowTheirList)
{
    CompGraphController& graph = openBlurs();
    const NodeController* const first = graph.nodeByUid(1);
    moveFirstNode(1);
    EXPECT_EQ(uidsOf(graph), (std::vector<Uid>{2, 1}));
    EXPECT_EQ(graph.nodeByUid(1), first);
}

TEST_F(GraphSignals, NodesThatAreMovedGoBackByAnUndo)
{
    CompGraphController& graph = openBlurs();
    moveFirstNode(1);
    workspace.undoAll();
    EXPECT_EQ(uidsOf(graph), (std::vector<Uid>{1, 2}));
}

TEST_F(GraphSignals, NodesThatAreMovedKeepTheirConnections)
{
    CompGraphController& graph = openBlurs();
    tellOfConnections(graph);
    moveFirstNode(1);
    EXPECT_EQ(told, Lines());
    EXPECT_TRUE(graph.nodeByUid(2)->inputConnector(0)->isConnectedTo(
        *graph.nodeByUid(1)->outputConnector(0)));
}

TEST_F(GraphSignals, TellOfAConnectionThatIsRemovedAndComesBack)
{
    CompGraphController& graph = openBlurs();
    tellOfConnections(graph);
    graph.disconnect(*graph.nodeByUid(1)->outputConnector(0),
                     *graph.nodeByUid(2)->inputConnector(0));
    workspace.undoAll();
    EXPECT_EQ(told, (Lines{"removed 1 to 2", "added 1 to 2"}));
}

TEST_F(GraphSignals, TellOfAConnectionThatIsMade)
{
    CompGraphController& graph =
        open({"g", 4, {}, {}, aNode(1, aFilter("blur"), {}, 10, 1) + aNode(2, aFilter("blur"))});
    tellOfConnections(graph);
    graph.connect(*graph.nodeByUid(2)->inputConnector(0), *graph.nodeByUid(1)->outputConnector(0),
                  true);
    EXPECT_EQ(told, Lines{"added 1 to 2"});
}

TEST_F(GraphSignals, TellOfAConnectionWhoseSourceGoes)
{
    CompGraphController& graph = openBlurs();
    tellOfConnections(graph);
    graph.removeNode(*graph.nodeByUid(1), false);
    EXPECT_EQ(told, Lines{"removed 1 to 2"});
}

TEST_F(GraphSignals, TellOfOutputsAndTheirPlaces)
{
    CompGraphController& graph =
        open({"g",
              4,
              {},
              anOutput("a", 21) + anOutput("b", 22),
              aNode(1, anOutputBridge(21)) + aNode(2, anOutputBridge(22))});
    graph.outputAdded.connect([this](OutputController* output, std::size_t index) {
        told.push_back("added " + output->identifier() + at(index));
    });
    graph.outputAboutToBeRemoved.connect([this](OutputController* output, std::size_t index) {
        told.push_back("removed " + output->identifier() + at(index));
    });
    graph.removeNode(*graph.nodeByUid(2), true);
    workspace.undoAll();
    EXPECT_EQ(told, (Lines{"removed b at 1", "added b at 1"}));
}

TEST_F(GraphSignals, TellOfRootOutputsAndTheirPlaces)
{
    CompGraphController& graph = open({"g",
                                       4,
                                       {},
                                       anOutput("a", 21) + anOutput("b", 22),
                                       aNode(1, anOutputBridge(21)) + aNode(2, anOutputBridge(22)),
                                       {},
                                       aRootOutput(21) + aRootOutput(22)});
    graph.rootOutputAdded.connect([this](RootOutputController* output, std::size_t index) {
        told.push_back("added " + std::to_string(output->outputUid()) + at(index));
    });
    graph.rootOutputAboutToBeRemoved.connect(
        [this](RootOutputController* output, std::size_t index) {
            told.push_back("removed " + std::to_string(output->outputUid()) + at(index));
        });
    graph.removeNode(*graph.nodeByUid(2), true);
    workspace.undoAll();
    EXPECT_EQ(told, (Lines{"removed 22 at 1", "added 22 at 1"}));
}

// A node that stands somewhere in its file.
const std::string APlacedBlur = "<compNode><uid v=\"1\"/><compImplementation>" + aFilter("blur") +
                                "</compImplementation><GUILayout><gpos v=\"1 2 3\"/></GUILayout>"
                                "</compNode>";

TEST_F(GraphSignals, TellOfNoDepthWhereAPositionAloneChanges)
{
    NodeController& node = *open({"g", 4, {}, {}, APlacedBlur}).nodeByUid(1);
    node.depthChanged.connect([this](float) { told.emplace_back("depth"); });
    node.positionChanged.connect([this](const QPointF&) { told.emplace_back("position"); });
    node.setPosition({5.0, 6.0});
    EXPECT_EQ(told, Lines{"position"});
}

TEST_F(GraphSignals, TellOfNoPositionWhereADepthAloneChanges)
{
    NodeController& node = *open({"g", 4, {}, {}, APlacedBlur}).nodeByUid(1);
    node.depthChanged.connect([this](float) { told.emplace_back("depth"); });
    node.positionChanged.connect([this](const QPointF&) { told.emplace_back("position"); });
    node.setDepth(4.0F);
    EXPECT_EQ(told, Lines{"depth"});
}

TEST_F(GraphSignals, TellOfTheTypeOfAnInputNodeWhoseInputTakesAnother)
{
    CompGraphController& graph =
        open({"g", 4, anInput("a", 7, 1), {}, aNode(1, anInputBridge(7), {}, 10, 1)});
    graph.nodeByUid(1)->outputTypeChanged.connect(
        [this](unsigned type) { told.push_back(std::to_string(type)); });
    const auto setType = +[](ManipulatorStruct<ParamInput> input, const DataPointerBoxMasterKey&,
                             const unsigned& type) {
        input.type().value().set(type);
        return true;
    };
    runEdit(DataPointerBox<ParamInput>(&graphIn(*package)->paraminputs().at(0)), 2u, setType,
            "type");
    workspace.undoAll();
    EXPECT_EQ(told, (Lines{"2", "1"}));
}

// An instance, whose connectors follow the inputs of its graph.
class ConnectorSignals : public GraphSignals
{
protected:
    ConnectorSignals()
        : user(workspace.open(aPackage().dependingOnItself(9).containing(
              GraphText{"filter", 1}.text() +
              GraphText{"use",
                        2,
                        {},
                        {},
                        aNode(1, "<compInstance><path><value v=\"pkg://filter"
                                 "?dependency=9\"/></path><parameters/>"
                                 "<outputBridgings/></compInstance>")}
                  .text()))),
          filter(controllerIn(user, 0)), node(*controllerIn(user, 1).nodeByUid(1))
    {
        node.connectorAdded.connect([this](ConnectorController* connector) {
            told.push_back("added " + connector->name().toStdString());
        });
        node.connectorAboutToBeRemoved.connect([this](ConnectorController* connector) {
            told.push_back("removed " + connector->name().toStdString());
        });
        node.connectorsChanged.connect([this] { told.emplace_back("changed"); });
    }

    const Ksx::Data::Content::Package& user;
    CompGraphController& filter;
    NodeController& node;
};

TEST_F(ConnectorSignals, TellOfAConnectorThatComes)
{
    filter.addInputNode({"picture", 1});
    EXPECT_EQ(told, (Lines{"added picture", "changed"}));
}

TEST_F(ConnectorSignals, TellOfAConnectorThatGoes)
{
    filter.addInputNode({"picture", 1});
    told.clear();
    workspace.undoAll();
    EXPECT_EQ(told, (Lines{"removed picture", "changed"}));
}

TEST_F(ConnectorSignals, TellOfANameAndALabelThatChange)
{
    filter.addInputNode({"picture", 1});
    InputConnectorController& connector = *node.inputConnector(0);
    connector.nameChanged.connect([this] { told.emplace_back("name"); });
    connector.labelChanged.connect([this] { told.emplace_back("label"); });
    told.clear();
    connector.setName("other");
    connector.setLabel("Other");
    EXPECT_EQ(told, (Lines{"name", "label"}));
    EXPECT_EQ(connector.name(), "other");
    EXPECT_EQ(connector.label(), "Other");
}

TEST_F(ConnectorSignals, TellOfNoTextThatStays)
{
    filter.addInputNode({"picture", 1});
    InputConnectorController& connector = *node.inputConnector(0);
    connector.nameChanged.connect([this] { told.emplace_back("name"); });
    connector.labelChanged.connect([this] { told.emplace_back("label"); });
    told.clear();
    connector.setName(connector.name());
    connector.setLabel(connector.label());
    EXPECT_EQ(told, Lines());
}

} // namespace

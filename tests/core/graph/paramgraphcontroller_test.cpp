#include "ksx/core/paramgraphcontroller.h"

#include "data/content/compfilter.h"
#include "data/content/compnode.h"
#include "data/desc/filter.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/paramnodecontroller.h"
#include "support/functiontext.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Orv::Data::Float1;

std::string aSet(unsigned uid, const std::string& parameters = {})
{
    return "<paramsGraphData><identifier v=\"set\"/><uid v=\"" + std::to_string(uid) +
           "\"/><type v=\"paramset\"/>" +
           (parameters.empty() ? "" : GraphText::list("parameters", parameters)) +
           "</paramsGraphData>";
}

std::string aSubNode(unsigned uid, const std::string& type, unsigned data,
                     const std::string& links = {})
{
    return "<paramsGraphNode><uid v=\"" + std::to_string(uid) + "\"/><type v=\"" + type + "\"/>" +
           (links.empty() ? "" : "<connexions>" + links + "</connexions>") + "<data v=\"" +
           std::to_string(data) + "\"/></paramsGraphNode>";
}

std::string anFxMap(const std::string& sets, const std::string& nodes, unsigned root = 0)
{
    return "<compFilter><filter v=\"fxmaps\"/><parameters/><paramsGraphs><paramsGraph><name "
           "v=\"map\"/><uid v=\"8\"/>" +
           (root == 0 ? "" : "<rootnode><value v=\"" + std::to_string(root) + "\"/></rootnode>") +
           GraphText::list("paramsGraphDatas", sets) + GraphText::list("paramsGraphNodes", nodes) +
           "</paramsGraph></paramsGraphs></compFilter>";
}

class ParamGraph : public testing::Test
{
protected:
    ParamGraphController& open(const std::string& fxMap)
    {
        GraphText graph;
        graph.nodes = aNode(7, fxMap, {}, 70, 1);
        package = &workspace.open(aPackage().containing(graph.text()));
        return *graphController(Orv::Data::DataPointerBox<Ksx::Data::Content::ParamsGraph>(
            &filter().paramsGraphs().at(0)));
    }
    const Ksx::Data::Content::CompFilter& filter() const
    {
        return static_cast<const Ksx::Data::Content::CompFilter&>(
            *graphIn(*package)->compNodes().at(0).compImplementation().get());
    }
    static ParamNodeController& node(const ParamGraphController& graph, Uid uid)
    {
        return dynamic_cast<ParamNodeController&>(*graph.nodeByUid(uid));
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
};

const std::string TwoSets =
    aSet(1, aParameter("opacitymult", "0", aConstant("Float", "0.5"))) + aSet(2);
const std::string TwoNodes =
    aSubNode(11, "markov2", 1) + aSubNode(12, "paramset", 2, aLink("output2", 11));

TEST_F(ParamGraph, HasAControllerForEachNodeInTheirOrder)
{
    const ParamGraphController& graph = open(anFxMap(TwoSets, TwoNodes, 12));
    ASSERT_EQ(graph.nodes().size(), 2u);
    EXPECT_EQ(graph.nodes()[0]->uid(), 11u);
    EXPECT_EQ(graph.nodes()[1]->uid(), 12u);
    EXPECT_EQ(graph.rootNode(), graph.nodeByUid(12));
}

TEST_F(ParamGraph, WithoutRootHasNoRootNode)
{
    EXPECT_EQ(open(anFxMap(TwoSets, TwoNodes)).rootNode(), nullptr);
}

TEST_F(ParamGraph, ANodeHasTheConnectionsOfItsKindAsInputsAndOneOutput)
{
    const ParamNodeController& set = node(open(anFxMap(TwoSets, TwoNodes)), 12);
    ASSERT_EQ(set.inputConnectorCount(), 1u);
    EXPECT_EQ(set.inputConnector(0)->identifier(), "output2");
    EXPECT_EQ(set.connectorType("output2"), 4096u);
    ASSERT_EQ(set.outputConnectorCount(), 1u);
    EXPECT_EQ(set.outputConnector(0)->type(), 4096u);
    EXPECT_EQ(set.connectorType("other"), 0u);
}

TEST_F(ParamGraph, ShowsTheConnectionsOfTheDocument)
{
    const ParamGraphController& graph = open(anFxMap(TwoSets, TwoNodes));
    EXPECT_TRUE(
        node(graph, 12).inputConnector(0)->isConnectedTo(*node(graph, 11).outputConnector(0)));
}

TEST_F(ParamGraph, ANodeOfAnUnknownKindHasNoDescription)
{
    ParamNodeController& odd =
        node(open(anFxMap(aSet(1), aSubNode(11, "odd", 1, aLink("x", 11)))), 11);
    EXPECT_EQ(odd.description(), nullptr);
    EXPECT_EQ(odd.inputConnectorCount(), 0u);
    EXPECT_EQ(odd.parametersController(), nullptr);
}

TEST_F(ParamGraph, RefusesAllEditsOfNodesAndConnections)
{
    ParamGraphController& graph = open(anFxMap(TwoSets, TwoNodes));
    const std::string before = xmlOf(*package);
    EXPECT_FALSE(graph.connect(*node(graph, 12).outputConnector(0),
                               *node(graph, 12).inputConnector(0), true));
    EXPECT_FALSE(
        graph.disconnect(*node(graph, 11).outputConnector(0), *node(graph, 12).inputConnector(0)));
    graph.removeNode(node(graph, 11), true);
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(ParamGraph, ANodeHasTheParametersOfItsSet)
{
    const ParamGraphController& graph =
        open(anFxMap(TwoSets, aSubNode(11, "paramset", 1) + aSubNode(12, "paramset", 2)));
    const ParametersController* parameters = node(graph, 11).parametersController();
    ASSERT_NE(parameters, nullptr);
    const auto& context = parameters->context().objects();
    ASSERT_EQ(context.size(), 3u);
    EXPECT_EQ(context[0].get(), graphIn(*package).get());
    EXPECT_EQ(context[1].get(), &graphIn(*package)->compNodes().at(0));
    EXPECT_EQ(context[2].get(), &graph.graph()->paramsGraphNodes().at(0));
    ParameterController* opacity = node(graph, 11).parametersController()->parameter("opacitymult");
    ASSERT_NE(opacity, nullptr);
    EXPECT_EQ(boost::any_cast<Float1>(opacity->value()), Float1{{0.5F}});
    EXPECT_EQ(node(graph, 12).parametersController()->parameter("opacitymult")->stored(), nullptr);
}

TEST_F(ParamGraph, AParameterOfASetCanBeEditedAndUndone)
{
    ParamNodeController& set = node(open(anFxMap(aSet(1), aSubNode(11, "paramset", 1))), 11);
    const std::string before = xmlOf(*package);
    EXPECT_TRUE(set.parametersController()->parameter("opacitymult")->setValue(Float1{{0.25F}}));
    EXPECT_NE(xmlOf(*package).find("opacitymult"), std::string::npos);
    workspace.undoAll();
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(ParamGraph, ANodeWithoutASetHasNoParameters)
{
    ParamNodeController& set = node(open(anFxMap(aSet(1), aSubNode(11, "paramset", 9))), 11);
    EXPECT_EQ(set.data(), nullptr);
    EXPECT_EQ(set.parametersController(), nullptr);
}

TEST_F(ParamGraph, OfTwoSetsWithOneUidTheFirstCounts)
{
    const ParamGraphController& graph =
        open(anFxMap(aSet(1) + aSet(1), aSubNode(11, "paramset", 1)));
    EXPECT_EQ(graph.data(1), &graph.graph()->paramsGraphDatas().at(0));
}

TEST_F(ParamGraph, ANodeCanBeMoved)
{
    ParamNodeController& set = node(open(anFxMap(aSet(1), aSubNode(11, "paramset", 1))), 11);
    set.setPosition({3, 4});
    EXPECT_EQ(set.position(), QPointF(3, 4));
}

TEST_F(ParamGraph, OfANewFxMapHasOneNode)
{
    package = &workspace.open(aPackage().containing(GraphText{}.text()));
    const auto* node = controllerIn(*package).addAtomicFilter(Ksx::Data::Desc::FilterKind::FxMaps);
    ASSERT_NE(node->paramGraph(), nullptr);
    ASSERT_EQ(node->paramGraph()->nodes().size(), 1u);
    EXPECT_EQ(node->paramGraph()->rootNode(), node->paramGraph()->nodes().front());
}

} // namespace

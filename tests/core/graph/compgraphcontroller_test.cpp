#include "ksx/core/compgraphcontroller.h"

#include "data/content/compfilter.h"
#include "data/content/compnode.h"
#include "data/desc/filter.h"
#include "data/diagnosticlog.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/rootoutputcontroller.h"
#include "support/functiontext.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Desc::FilterKind;

class CompGraph : public testing::Test
{
protected:
    // An empty graph, unless another is given.
    CompGraphController& open(const GraphText& graph = {})
    {
        package = &workspace.open(aPackage().containing(graph.text()));
        before = xmlOf(*package);
        return controllerIn(*package);
    }
    const Ksx::Data::Content::Graph& graph() const { return *graphIn(*package); }
    std::vector<std::string> sourcesOf(const std::string& input, const CompNodeController& node)
    {
        std::vector<std::string> sources;
        for (const auto& connexion : node.node()->connexions())
            if (connexion.identifier().get() == input)
                sources.push_back(std::to_string(connexion.connRef().value().get()));
        return sources;
    }
    // Do all edits give back the bytes of before, and then those of after?
    bool canBeUndone()
    {
        const std::string after = xmlOf(*package);
        const bool isUndone = workspace.undoAll() && xmlOf(*package) == before;
        return isUndone && workspace.redoAll() && xmlOf(*package) == after;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
};

TEST_F(CompGraph, AddsAFilterWithItsOutputAtTheEndOfTheNodes)
{
    CompGraphController& controller = open();
    const auto* node = controller.addAtomicFilter(FilterKind::Blur);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->filter()->filter().get(), "blur");
    EXPECT_EQ(node->node()->compOutputs().size(), 1u);
    EXPECT_EQ(node->outputType(), 1u);
    EXPECT_EQ(&graph().compNodes().back(), node->node());
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, AFilterOfUnknownKindHasNoDescription)
{
    const auto* node = open().addAtomicFilter(999u);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->nodeDescription(), nullptr);
    EXPECT_EQ(node->inputConnectorCount(), 0u);
}

TEST_F(CompGraph, AnFxMapBeginsWithOneSetOfParametersAsItsResult)
{
    const auto* node = open().addAtomicFilter(FilterKind::FxMaps);
    const auto& maps = node->filter()->paramsGraphs();
    ASSERT_EQ(maps.size(), 1u);
    ASSERT_EQ(maps.at(0).paramsGraphNodes().size(), 1u);
    const auto& set = maps.at(0).paramsGraphNodes().at(0);
    EXPECT_EQ(set.type().get(), "paramset");
    EXPECT_EQ(maps.at(0).rootnode().value().get(), set.uid().get());
    EXPECT_EQ(set.data().get(), maps.at(0).paramsGraphDatas().at(0).uid().get());
}

TEST_F(CompGraph, AddsAnOutputNodeWithItsOutputAndRootOutput)
{
    CompGraphController& controller = open();
    const auto* node = controller.addOutputNode({"height", 1, {{"height", "R"}}});
    ASSERT_NE(node, nullptr);
    ASSERT_EQ(graph().graphOutputs().size(), 1u);
    const auto& output = graph().graphOutputs().at(0);
    EXPECT_EQ(output.identifier().get(), "height");
    EXPECT_EQ(output.usages().at(0).name().get(), "height");
    EXPECT_EQ(node->entry(), output.uid().get());
    ASSERT_NE(controller.rootOutput(output.uid().get()), nullptr);
    EXPECT_NE(controller.outputController(output), nullptr);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, TheDefaultIdentifierOfASecondOutputIsMadeUnique)
{
    CompGraphController& controller = open();
    controller.addOutputNode({});
    controller.addOutputNode({});
    EXPECT_EQ(graph().graphOutputs().at(0).identifier().get(), "DEFAULT_OUTPUT_IDENTIFIER");
    EXPECT_EQ(graph().graphOutputs().at(1).identifier().get(), "DEFAULT_OUTPUT_IDENTIFIER_1");
}

TEST_F(CompGraph, EntriesAndNodesComeToStandAtTheirIndexes)
{
    CompGraphController& controller = open();
    controller.addOutputNode({"a", 1, {}});
    controller.addOutputNode({"b", 1, {}, 0, 0});
    EXPECT_EQ(graph().graphOutputs().at(0).identifier().get(), "b");
    EXPECT_EQ(graph().compNodes().at(0).uid().get(), controller.nodes().front()->uid());
}

TEST_F(CompGraph, AddsAnInputNodeWithItsInputAndOutput)
{
    CompGraphController& controller = open();
    const auto* node = controller.addInputNode({"mask", 2});
    ASSERT_NE(node, nullptr);
    ASSERT_NE(node->input(), nullptr);
    EXPECT_EQ(node->input()->identifier(), "mask");
    EXPECT_EQ(node->connectorType(std::string(UniqueOutput)), 2u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, RemovingABridgeNodeRemovesWhatItStandsFor)
{
    CompGraphController& controller = open();
    controller.removeNode(*controller.addInputNode({"a", 1}), true);
    controller.removeNode(*controller.addOutputNode({"b", 1}), true);
    EXPECT_EQ(graph().paraminputs().size(), 0u);
    EXPECT_EQ(graph().graphOutputs().size(), 0u);
    EXPECT_EQ(graph().root().rootOutputs().size(), 0u);
    EXPECT_TRUE(controller.nodes().empty());
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, ConnectsInEitherOrder)
{
    CompGraphController& controller = open();
    auto* source = controller.addAtomicFilter(FilterKind::Uniform);
    auto* first = controller.addAtomicFilter(FilterKind::Blur);
    auto* second = controller.addAtomicFilter(FilterKind::Blur);
    EXPECT_TRUE(controller.connect(*source->outputConnector(0), *first->inputConnector(0), true));
    EXPECT_TRUE(controller.connect(*second->inputConnector(0), *source->outputConnector(0), true));
    EXPECT_EQ(xmlOf(first->node()->connexions()), xmlOf(second->node()->connexions()));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, RefusesConnectionsThatCannotBe)
{
    CompGraphController& controller = open();
    auto* a = controller.addAtomicFilter(FilterKind::Blur);
    auto* b = controller.addAtomicFilter(FilterKind::Blur);
    EXPECT_FALSE(controller.connect(*a->outputConnector(0), *a->inputConnector(0), true));
    EXPECT_FALSE(controller.connect(*a->inputConnector(0), *b->inputConnector(0), true));
    EXPECT_FALSE(controller.connect(*a->outputConnector(0), *b->outputConnector(0), true));
    EXPECT_FALSE(controller.disconnect(*a->outputConnector(0), *b->outputConnector(0)));
}

TEST_F(CompGraph, ReplacingLeavesOneSourceAndAddingLeavesTwo)
{
    CompGraphController& controller = open();
    auto* a = controller.addAtomicFilter(FilterKind::Uniform);
    auto* b = controller.addAtomicFilter(FilterKind::Uniform);
    auto* target = controller.addAtomicFilter(FilterKind::Blur);
    controller.connect(*a->outputConnector(0), *target->inputConnector(0), true);
    EXPECT_TRUE(controller.connect(*b->outputConnector(0), *target->inputConnector(0), false));
    EXPECT_EQ(sourcesOf("input1", *target).size(), 2u);
    EXPECT_TRUE(controller.connect(*b->outputConnector(0), *target->inputConnector(0), true));
    EXPECT_EQ(sourcesOf("input1", *target), std::vector<std::string>{std::to_string(b->uid())});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, AConnectionThatIsThereIsNotMadeTwice)
{
    CompGraphController& controller = open();
    auto* a = controller.addAtomicFilter(FilterKind::Uniform);
    auto* target = controller.addAtomicFilter(FilterKind::Blur);
    controller.connect(*a->outputConnector(0), *target->inputConnector(0), false);
    EXPECT_TRUE(controller.connect(*a->outputConnector(0), *target->inputConnector(0), false));
    EXPECT_EQ(target->node()->connexions().size(), 1u);
}

TEST_F(CompGraph, DisconnectingRemovesTheConnectionOfTheTwo)
{
    CompGraphController& controller = open();
    auto* a = controller.addAtomicFilter(FilterKind::Uniform);
    auto* b = controller.addAtomicFilter(FilterKind::Uniform);
    auto* target = controller.addAtomicFilter(FilterKind::Blur);
    controller.connect(*a->outputConnector(0), *target->inputConnector(0), false);
    controller.connect(*b->outputConnector(0), *target->inputConnector(0), false);
    EXPECT_TRUE(controller.disconnect(*b->outputConnector(0), *target->inputConnector(0)));
    EXPECT_EQ(sourcesOf("input1", *target), std::vector<std::string>{std::to_string(a->uid())});
    EXPECT_EQ(workspace.names().back(), "DISCONNECT_TWO_NODES_HISTORY_DESC");
}

TEST_F(CompGraph, RemovingANodeWithoutDisconnectingLeavesItsTargetsDangling)
{
    CompGraphController& controller = open();
    auto* source = controller.addAtomicFilter(FilterKind::Uniform);
    auto* target = controller.addAtomicFilter(FilterKind::Blur);
    controller.connect(*source->outputConnector(0), *target->inputConnector(0), true);
    controller.removeNode(*source, false);
    EXPECT_EQ(target->node()->connexions().size(), 1u);
    EXPECT_TRUE(target->inputConnector(0)->targets().empty());
}

TEST_F(CompGraph, AConnectionToALaterNodeIsResolvedWhenTheGraphIsRead)
{
    const CompGraphController& controller =
        open({"g",
              4,
              {},
              {},
              aNode(1, aFilter("blur"), aConnexion("input1", 2, 20), 10, 1) +
                  aNode(2, aFilter("uniform"), {}, 20, 1)});
    const NodeController* target = controller.nodeByUid(1);
    ASSERT_EQ(target->inputConnector(0)->targets().size(), 1u);
    EXPECT_EQ(&target->inputConnector(0)->targets()[0]->node(), controller.nodeByUid(2));
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(CompGraph, ADanglingConnectionIsKeptAndResolvedWhenItsNodeComesBack)
{
    CompGraphController& controller =
        open({"g",
              4,
              {},
              {},
              aNode(1, aFilter("blur"), aConnexion("input1", 2, 20), 10, 1) +
                  aNode(2, aFilter("uniform"), {}, 20, 1)});
    controller.removeNode(*controller.nodeByUid(2), false);
    EXPECT_TRUE(controller.nodeByUid(1)->inputConnector(0)->targets().empty());
    workspace.undoAll();
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_EQ(controller.nodeByUid(1)->inputConnector(0)->targets().size(), 1u);
}

TEST_F(CompGraph, OfNodesWithOneUidTheFirstIsFoundAndItsHeirAfterIt)
{
    CompGraphController& controller = open(
        {"g",
         4,
         {},
         {},
         aNode(1, aFilter("blur"), aConnexion("input1", 2, 20), 10, 1) +
             aNode(2, aFilter("uniform"), {}, 20, 1) + aNode(2, aFilter("bitmap"), {}, 20, 1)});
    NodeController* first = controller.nodeByUid(2);
    controller.removeNode(*first, false);
    auto* heir = dynamic_cast<CompFilterNodeController*>(controller.nodeByUid(2));
    ASSERT_NE(heir, nullptr);
    EXPECT_EQ(heir->filter()->filter().get(), "bitmap");
    EXPECT_EQ(heir->outputConnector(0)->targets().size(), 1u);
}

TEST_F(CompGraph, AGrayscaleSourceMakesAVariantFilterGrayscaleAndColorMakesItColorAgain)
{
    CompGraphController& controller = open();
    auto* gray = controller.addInputNode({"a", 2});
    auto* color = controller.addInputNode({"b", 1});
    auto* blur = controller.addAtomicFilter(FilterKind::Blur);
    controller.connect(*gray->outputConnector(0), *blur->inputConnector(0), true);
    EXPECT_EQ(blur->outputType(), 2u);
    controller.connect(*color->outputConnector(0), *blur->inputConnector(0), true);
    EXPECT_EQ(blur->outputType(), 1u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, ATypeTravelsAlongAChainOfVariantNodesToTheOutput)
{
    CompGraphController& controller = open();
    auto* blur = controller.addAtomicFilter(FilterKind::Blur);
    auto* sharpen = controller.addAtomicFilter(FilterKind::Sharpen);
    auto* output = controller.addOutputNode({"o", 1});
    controller.connect(*sharpen->outputConnector(0), *output->inputConnector(0), true);
    controller.connect(*blur->outputConnector(0), *sharpen->inputConnector(0), true);
    auto* gray = controller.addInputNode({"a", 2});
    controller.connect(*gray->outputConnector(0), *blur->inputConnector(0), true);
    EXPECT_EQ(sharpen->outputType(), 2u);
    EXPECT_EQ(output->outputType(), 2u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, ATypeStopsAtAFilterWithAFixedOutput)
{
    CompGraphController& controller = open();
    auto* gray = controller.addInputNode({"a", 2});
    auto* normal = controller.addAtomicFilter(FilterKind::Normal);
    controller.connect(*gray->outputConnector(0), *normal->inputConnector(0), true);
    EXPECT_EQ(normal->outputType(), 1u);
}

TEST_F(CompGraph, ATypeGoesAroundACycleOnce)
{
    CompGraphController& controller = open();
    auto* a = controller.addAtomicFilter(FilterKind::Blend);
    auto* b = controller.addAtomicFilter(FilterKind::Blur);
    controller.connect(*a->outputConnector(0), *b->inputConnector(0), true);
    controller.connect(*b->outputConnector(0), *a->inputConnector(0), true);
    auto* gray = controller.addInputNode({"a", 2});
    controller.connect(*gray->outputConnector(0), *a->inputConnector(1), true);
    EXPECT_EQ(a->outputType(), 2u);
    EXPECT_EQ(b->outputType(), 2u);
}

TEST_F(CompGraph, TheColorSwitchOfAFilterSetsItsOutputType)
{
    CompGraphController& controller = open();
    auto* bitmap = controller.addAtomicFilter(FilterKind::Bitmap);
    auto* blur = controller.addAtomicFilter(FilterKind::Blur);
    controller.connect(*bitmap->outputConnector(0), *blur->inputConnector(0), true);
    ASSERT_TRUE(bitmap->CompNodeController::parameterController("colorswitch")->setValue(false));
    EXPECT_EQ(bitmap->outputType(), 2u);
    EXPECT_EQ(blur->outputType(), 2u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, PositionsAreNarrowedToFloat)
{
    auto* node = open().addAtomicFilter(FilterKind::Blur);
    node->setPosition(QPointF(0.1, -2.0));
    EXPECT_EQ(node->position(), QPointF(double(0.1F), -2.0));
    node->setDepth(3.0F);
    EXPECT_EQ(node->depth(), 3.0F);
    EXPECT_EQ(node->position(), QPointF(double(0.1F), -2.0));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(CompGraph, ConnectorsKnowTheirKindOfImage)
{
    CompGraphController& controller = open();
    EXPECT_EQ(controller.addInputNode({"a", 1})->outputConnector(0)->colorKind(), ColorKind::Color);
    EXPECT_EQ(controller.addInputNode({"b", 2})->outputConnector(0)->colorKind(),
              ColorKind::Grayscale);
    EXPECT_EQ(controller.addInputNode({"c", 3})->outputConnector(0)->colorKind(), ColorKind::Other);
}

TEST_F(CompGraph, ANameThatStaysFiresNoSignal)
{
    auto* node = open().addAtomicFilter(FilterKind::Blur);
    int count = 0;
    node->inputConnector(0)->nameChanged.connect([&] { ++count; });
    node->inputConnector(0)->setName(node->inputConnector(0)->name());
    EXPECT_EQ(count, 0);
    node->inputConnector(0)->setName("other");
    EXPECT_EQ(count, 1);
}

TEST_F(CompGraph, NodesOfOtherKindsHaveNoController)
{
    const CompGraphController& controller =
        open({"g",
              4,
              {},
              {},
              aNode(1, "<compExternal><identifier v=\"x\"/></compExternal>") +
                  aNode(2, aFilter("blur"), {}, 20, 1)});
    EXPECT_EQ(controller.nodeByUid(1), nullptr);
    EXPECT_EQ(controller.nodes().size(), 1u);
}

TEST_F(CompGraph, AFilterThatIsNotKnownKeepsItsConnections)
{
    CompGraphController& controller =
        open({"g",
              4,
              {},
              {},
              aNode(1, aFilter("voronoi"), aConnexion("in", 2, 20), 10, 1) +
                  aNode(2, aFilter("uniform"), {}, 20, 1)});
    EXPECT_EQ(controller.nodeByUid(1)->inputConnectorCount(), 0u);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(CompGraph, RefusesNodesOfAnotherGraph)
{
    package =
        &workspace.open(aPackage().containing(GraphText{"a", 1}.text() + GraphText{"b", 2}.text()));
    CompGraphController& a = controllerIn(*package, 0);
    CompGraphController& b = controllerIn(*package, 1);
    auto* source = a.addAtomicFilter(FilterKind::Uniform);
    auto* target = a.addAtomicFilter(FilterKind::Blur);
    auto* input = a.addInputNode({"value", 1});
    a.connect(*source->outputConnector(0), *target->inputConnector(0), true);
    const std::string connected = xmlOf(*package);
    EXPECT_FALSE(b.connect(*input->outputConnector(0), *target->inputConnector(0), true));
    EXPECT_FALSE(b.disconnect(*source->outputConnector(0), *target->inputConnector(0)));
    b.removeNode(*source, true);
    EXPECT_FALSE(b.inputsController()->removeInput(*input->input()));
    EXPECT_EQ(xmlOf(*package), connected);
}

TEST_F(CompGraph, FindsNoUsersOfAnInputOfAnotherGraph)
{
    const std::string getter =
        aFunctionNode(1, "get_float1", 256, {}, aDataItem(aConstant("String", "x")));
    package = &workspace.open(aPackage().containing(
        GraphText{"a", 1, anInput("x", 11, 256)}.text() +
        GraphText{"b", 2, {}, {}, {}, aParameter("p", "0", aRootlessValue(getter))}.text()));
    const auto* input = controllerIn(*package, 0).inputsController()->inputByIdentifier("x");
    EXPECT_TRUE(controllerIn(*package, 1).collectInputUsers(*input).empty());
}

TEST_F(CompGraph, AnOutputNodeHasNoVariantOutput)
{
    const auto* node = open().addOutputNode({"result", 1});
    EXPECT_FALSE(node->isVariantConnector(""));
    EXPECT_TRUE(node->isVariantConnector("inputNodeOutput"));
}

TEST_F(CompGraph, AnInputNodeDescribesTheResourceOfItsImage)
{
    auto* node = open().addInputNode({"picture", 1});
    ASSERT_NE(node->description("bitmapresourcepath"), nullptr);
    EXPECT_EQ(node->description("bitmapresourcepath/x")->type, 32768u);
    EXPECT_NE(node->description("outputsize"), nullptr);
}

TEST_F(CompGraph, ConnectorsHaveTooltips)
{
    CompGraphController& controller = open();
    EXPECT_EQ(controller.addInputNode({"a", 1})->outputConnector(0)->tooltip(),
              "ENTRY_OUTPUT_DESC");
    EXPECT_EQ(controller.addOutputNode({"b", 1})->inputConnector(0)->tooltip(), "INPUT_ENTRY_DESC");
    EXPECT_EQ(controller.addAtomicFilter(FilterKind::Blur)->inputConnector(0)->tooltip(),
              "BLUR_INPUT_1_DESC");
}

TEST_F(CompGraph, AFilterReadsItsResourceWhenItsControllerIsMade)
{
    std::vector<std::string> log;
    const int sink = Orv::DiagnosticLog::addSink(
        [&](const Orv::LogRecord& record) { log.push_back(record.text); });
    const std::string path =
        aParameter("bitmapresourcepath", "", aConstant("String", "pkg://wood"));
    package = &workspace.open(
        aPackage()
            .containing(aResource("wood", "/nowhere/wood.png"))
            .containing(
                GraphText{"g", 4, {}, {}, aNode(1, aFilter("bitmap", path), {}, 10, 1)}.text()));
    controllerIn(*package, 1);
    Orv::DiagnosticLog::removeSink(sink);
    EXPECT_EQ(log, std::vector<std::string>{"Unreachable resource"});
}

TEST_F(CompGraph, AnswersADescriptionForWhatIsInFrontOfASlash)
{
    auto* node = open().addAtomicFilter(FilterKind::Blur);
    ASSERT_NE(node->description("intensity/x"), nullptr);
    EXPECT_EQ(node->description("intensity/x"), node->description("intensity"));
    EXPECT_EQ(node->description("nothing"), nullptr);
}

TEST_F(CompGraph, ALongChainOfVariantNodesTakesANewTypeWithoutRecursion)
{
    constexpr unsigned Count = 20000;
    std::string nodes = aNode(1, anInputBridge(7), {}, 10, 1);
    for (unsigned i = 2; i <= Count; ++i)
        nodes += aNode(i, aFilter("blur"), i == 2 ? "" : aConnexion("input1", i - 1, (i - 1) * 10),
                       i * 10, 1);
    CompGraphController& controller = open({"g", 4, anInput("a", 7, 2), {}, nodes});
    controller.connect(*controller.nodeByUid(1)->outputConnector(0),
                       *controller.nodeByUid(2)->inputConnector(0), true);
    EXPECT_EQ(controller.nodeByUid(Count)->outputType(), 2u);
}

} // namespace

#include "behavior/synccompinstance.h"

#include "behaviorfixture.h"
#include "graph/graphoutputtype.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/uidsource.h"
#include "support/editing.h"
#include "support/functiontext.h"
#include <algorithm>
#include <iostream>
#include <random>

namespace {

using namespace TestSupport;
using Ksx::Core::UidSource;

const std::string PathOfA = "pkg://a?dependency=100";

// Graph "a" with the inputs "picture" and "amount" and the outputs "x", of color, and "y", of
// grayscale; and graph "b" with the node 60, an instance of "a", whose outputs feed the node 61.
class SyncCompInstance : public BehaviorTest
{
protected:
    SyncCompInstance()
    {
        UidSource::setClock([] { return std::time_t{9000}; });
        UidSource::shared().setCounter(0);
    }
    ~SyncCompInstance() override { UidSource::setClock({}); }

    static GraphText graphA()
    {
        return {"a",
                1,
                anInput("picture", 11, 1) + anInput("amount", 12, 256) + anInput("mask", 13, 2),
                anOutput("x", 21) + anOutput("y", 22),
                aNode(31, anOutputBridge(21, 1)) + aNode(32, anOutputBridge(22, 2)),
                {},
                aRootOutput(21) + aRootOutput(22)};
    }
    static std::string instanceNode(const std::string& path = PathOfA)
    {
        const std::string parameters = aParameter("amount", "", aConstant("Float1", "0.5")) +
                                       aParameter("outputsize", "1", aConstant("Int2", "1 1"));
        return aNodeWithOutputs(
            60, anInstanceOf(path, aBridging(71, "x") + aBridging(72, "y"), parameters),
            aCompOutput(71, 1) + aCompOutput(72, 2),
            aConnexion("picture", 62, 73) + aConnexion("mask", 62, 73));
    }
    static GraphText graphB(const std::string& path = PathOfA)
    {
        const std::string consumer =
            aNode(61, aFilter("blend"),
                  aConnexion("source", 60, 71) + aConnexion("destination", 60, 72) +
                      aConnexion("other", 62, 73),
                  74, 1);
        return {"b",
                2,
                {},
                {},
                instanceNode(path) + consumer + aNode(62, aFilter("uniform"), {}, 73, 1)};
    }
    void openBoth(const std::string& path = PathOfA)
    {
        package = &openWith(graphA().text() + graphB(path).text());
        a = &contentAt<Graph>(*package, 0);
        b = &contentAt<Graph>(*package, 1);
    }

    static void addOutput(const ManipulatorStruct<Graph>& graph, const std::string& identifier,
                          unsigned uid, std::size_t index)
    {
        auto output = std::make_unique<GraphOutput>();
        output->identifier().assign(identifier);
        output->uid().assign(uid);
        std::vector<std::unique_ptr<Orv::Data::BaseObject>> items;
        items.push_back(std::move(output));
        auto outputs = graph.graphOutputs();
        outputs.insert(index, std::move(items));
        auto root = std::make_unique<RootOutput>();
        root->output().assign(uid);
        graph.root().rootOutputs().pushBack(std::move(root));
    }
    // The outputs of an instance, "identifier uid type", in the order of the bridgings; then the
    // uids in the order of the outputs.
    static Lines outputsOf(const Graph& graph, std::size_t node = 0)
    {
        const CompNode& compNode = graph.compNodes().at(node);
        Lines lines;
        for (const OutputBridging& bridging :
             implementationAt<CompInstance>(graph, node).outputBridgings()) {
            std::string type = "none";
            for (const CompOutput& output : compNode.compOutputs())
                if (output.uid().get() == bridging.uid().get())
                    type = std::to_string(output.comptype().value().get());
            lines.push_back(bridging.identifier().get() + " " +
                            std::to_string(bridging.uid().get()) + " " + type);
        }
        std::string order;
        for (const CompOutput& output : compNode.compOutputs())
            order += (order.empty() ? "" : " ") + std::to_string(output.uid().get());
        lines.push_back(order);
        return lines;
    }
    static Lines parametersOf(const Graph& graph)
    {
        Lines names;
        for (const Parameter& parameter : implementationAt<CompInstance>(graph, 0).parameters())
            names.push_back(parameter.name().get());
        return names;
    }
    // Lets an output feed the first connection of that name to the node 61.
    void feedFirstBy(unsigned node, unsigned output, ManipulatorContext& context,
                     const std::string& identifier) const
    {
        const auto& list = b->compNodes().at(1).connexions();
        const auto found = std::find_if(list.begin(), list.end(), [&](const Connexion& connexion) {
            return connexion.identifier().get() == identifier;
        });
        const ManipulatorStruct<Connexion> connexion(*found, context);
        connexion.connRef().value().set(node);
        connexion.connRefOutput().value().set(output);
    }
    static Lines connexionsOf(const Graph& graph, std::size_t node)
    {
        Lines names;
        for (const Connexion& connexion : graph.compNodes().at(node).connexions())
            names.push_back(connexion.identifier().get());
        return names;
    }

    const Package* package = nullptr;
    const Graph* a = nullptr;
    const Graph* b = nullptr;
};

// Outputs.

TEST_F(SyncCompInstance, GetsAnOutputThatIsAdded)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { addOutput(graph, "z", 23, 2); });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "y 72 2", "z 9000 1", "71 72 9000"}));
}

TEST_F(SyncCompInstance, GetsAnOutputBehindTheOneThatItStandsBehind)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { addOutput(graph, "z", 23, 1); });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "z 9000 1", "y 72 2", "71 9000 72"}));
}

TEST_F(SyncCompInstance, GetsSeveralOutputsInTheirOrder)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        addOutput(graph, "p", 23, 0);
        addOutput(graph, "q", 24, 1);
        addOutput(graph, "r", 25, 4);
    });

    EXPECT_EQ(outputsOf(*b), Lines({"p 9000 1", "q 9001 1", "x 71 1", "y 72 2", "r 9002 1",
                                    "9000 9001 71 72 9002"}));
}

TEST_F(SyncCompInstance, GetsAnOutputOfTheTypeThatItsNodeNames)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        addOutput(graph, "z", 23, 2);
        auto bridge = std::make_unique<CompOutputBridge>();
        bridge->output().assign(23);
        bridge->connectionColorType().assign(2);
        auto node = std::make_unique<CompNode>();
        node->uid().assign(33);
        node->compImplementation().set(std::move(bridge));
        graph.compNodes().pushBack(std::move(node));
    });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "y 72 2", "z 9000 2", "71 72 9000"}));
}

TEST_F(SyncCompInstance, LosesAnOutputThatIsRemovedAndWhatItFed)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(0, 1); });

    EXPECT_EQ(outputsOf(*b), Lines({"y 72 2", "72"}));
    EXPECT_EQ(connexionsOf(*b, 1), Lines({"destination", "other"}));
}

TEST_F(SyncCompInstance, LosesWhatAnOutputFeedsSinceAnotherOneWent)
{
    openBoth();
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(1, 1); });
    edit([&](ManipulatorContext& context) { feedFirstBy(60, 71, context, "other"); });
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(0, 1); });
    EXPECT_EQ(connexionsOf(*b, 1), Lines());
}

TEST_F(SyncCompInstance, LosesWhatAnOutputIsMadeToFeedInTheEditThatTakesIt)
{
    openBoth();
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(1, 1); });
    editGraph(*a, [&](const ManipulatorStruct<Graph>& graph) {
        feedFirstBy(60, 71, graph.context(), "other");
        graph.graphOutputs().erase(0, 1);
    });
    EXPECT_EQ(connexionsOf(*b, 1), Lines());
}

TEST_F(SyncCompInstance, LosesWhatAnOutputIsMadeToFeedAroundTheEditThatTakesIt)
{
    openBoth();
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(1, 1); });
    edit([&](ManipulatorContext& context) {
        feedFirstBy(60, 71, context, "other");
        TestSupport::edit([&](ManipulatorContext& inner) {
            ManipulatorStruct<Graph>(*a, inner).graphOutputs().erase(0, 1);
        });
    });
    EXPECT_EQ(connexionsOf(*b, 1), Lines());
}

TEST_F(SyncCompInstance, KeepsWhatAnotherOutputFeedsSinceOneWent)
{
    openBoth();
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(1, 1); });
    edit([&](ManipulatorContext& context) { feedFirstBy(62, 73, context, "source"); });
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(0, 1); });
    EXPECT_EQ(connexionsOf(*b, 1), Lines({"source", "other"}));
}

TEST_F(SyncCompInstance, FollowsAnOutputThatIsRenamed)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().at(1).identifier().set("w"); });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "w 72 2", "71 72"}));
    EXPECT_EQ(connexionsOf(*b, 1), Lines({"source", "destination", "other"}));
}

TEST_F(SyncCompInstance, FollowsOutputsThatChangeTheirNames)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        graph.graphOutputs().at(0).identifier().set("y");
        graph.graphOutputs().at(1).identifier().set("x");
    });

    EXPECT_EQ(outputsOf(*b), Lines({"y 71 1", "x 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, TellsANewNameFromANewOutput)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        graph.graphOutputs().erase(1, 1);
        graph.graphOutputs().at(0).identifier().set("y");
    });

    EXPECT_EQ(outputsOf(*b), Lines({"y 71 1", "71"}));
}

TEST_F(SyncCompInstance, KeepsAnOutputThatIsReplacedUnderItsName)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        graph.graphOutputs().erase(0, 1);
        addOutput(graph, "x", 29, 0);
    });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "y 72 2", "71 72"}));
    EXPECT_EQ(connexionsOf(*b, 1), Lines({"source", "destination", "other"}));
}

TEST_F(SyncCompInstance, FollowsTheOrderOfOutputs)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().move(1, -1); });

    EXPECT_EQ(outputsOf(*b), Lines({"y 72 2", "x 71 1", "72 71"}));
}

TEST_F(SyncCompInstance, FollowsAnyOrderOfManyOutputs)
{
    GraphText many = graphA();
    many.outputs = anOutput("p", 1) + anOutput("q", 2) + anOutput("r", 3) + anOutput("s", 4) +
                   anOutput("t", 5);
    const std::string bridgings = aBridging(81, "p") + aBridging(82, "q") + aBridging(83, "r") +
                                  aBridging(84, "s") + aBridging(85, "t");
    const std::string outputs = aCompOutput(81, 1) + aCompOutput(82, 1) + aCompOutput(83, 1) +
                                aCompOutput(84, 1) + aCompOutput(85, 1);
    const GraphText user{
        "b", 2, {}, {}, aNodeWithOutputs(60, anInstanceOf(PathOfA, bridgings), outputs)};
    const Package& opened = openWith(many.text() + user.text());

    editGraph(contentAt<Graph>(opened, 0), [](const auto& graph) {
        auto list = graph.graphOutputs();
        list.move(4, -4); // t p q r s
        auto uid = list.at(0).uid();
        uid.set(5);      // moves in a row would be taken for one
        list.move(2, 2); // t p r s q
        uid.set(5);
        list.move(1, 1); // t r p s q
    });

    EXPECT_EQ(outputsOf(contentAt<Graph>(opened, 1)),
              Lines({"t 85 1", "r 83 1", "p 81 1", "s 84 1", "q 82 1", "85 83 81 84 82"}));
}

TEST_F(SyncCompInstance, FollowsTheTypeThatAnOutputNodeNames)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        graph.compNodes()
            .at(0)
            .compImplementation()
            .template child<CompOutputBridge>()
            .connectionColorType()
            .set(2);
    });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 2", "y 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, FollowsTheTypeOfWhatFeedsAnOutputNode)
{
    GraphText text = graphA();
    text.nodes = aNode(31, anOutputBridge(21), aConnexion("inputNodeOutput", 33, 34)) +
                 aNode(33, aFilter("uniform"), {}, 34, 1);
    package = &openWith(text.text() + graphB().text());
    b = &contentAt<Graph>(*package, 1);

    editGraph(contentAt<Graph>(*package, 0), [](const auto& graph) {
        graph.compNodes().at(1).compOutputs().at(0).comptype().value().set(2);
    });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 2", "y 72 2", "71 72"}));
}

// Graph "a" with the output "x", which the node 33 feeds, and an instance of it in "b".
class SyncCompInstanceTypes : public SyncCompInstance
{
protected:
    void openFed(const std::string& nodes)
    {
        GraphText text = graphA();
        text.outputs = anOutput("x", 21);
        text.nodes = nodes;
        const GraphText user{
            "b", 2, {}, {}, aNode(60, anInstanceOf(PathOfA, aBridging(71, "x")), {}, 71, 1)};
        package = &openWith(text.text() + user.text());
        a = &contentAt<Graph>(*package, 0);
        b = &contentAt<Graph>(*package, 1);
    }
    static void addNode(const ManipulatorStruct<Graph>& graph, unsigned uid, unsigned type)
    {
        auto output = std::make_unique<CompOutput>();
        output->uid().assign(34);
        output->comptype().value().assign(type);
        auto node = std::make_unique<CompNode>();
        node->uid().assign(uid);
        node->compOutputs().pushBack(std::move(output));
        graph.compNodes().pushBack(std::move(node));
    }
    static unsigned typeIn(const Graph& graph)
    {
        return graph.compNodes().at(0).compOutputs().at(0).comptype().value().get();
    }

    const std::string fedNode =
        aNode(31, anOutputBridge(21), aConnexion("inputNodeOutput", 33, 34));
};

TEST_F(SyncCompInstanceTypes, FollowANodeThatComesToFeedTheOutput)
{
    openFed(fedNode);

    editGraph(*a, [](const auto& graph) { addNode(graph, 33, 2); });

    EXPECT_EQ(typeIn(*b), 2u);
}

TEST_F(SyncCompInstanceTypes, FollowANodeThatGoes)
{
    openFed(fedNode + aNode(33, aFilter("uniform"), {}, 34, 1));
    editGraph(*a, [](const auto& graph) {
        graph.compNodes().at(1).compOutputs().at(0).comptype().value().set(2);
    });
    ASSERT_EQ(typeIn(*b), 2u);

    editGraph(*a, [](const auto& graph) { graph.compNodes().erase(1, 1); });

    EXPECT_EQ(typeIn(*b), 1u);
}

TEST_F(SyncCompInstanceTypes, FollowAnotherConnection)
{
    openFed(fedNode + aNode(33, aFilter("uniform"), {}, 34, 1) +
            aNode(35, aFilter("uniform"), {}, 34, 2));

    editGraph(*a, [](const auto& graph) {
        graph.compNodes().at(0).connexions().at(0).connRef().value().set(35);
    });

    EXPECT_EQ(typeIn(*b), 2u);
}

TEST_F(SyncCompInstanceTypes, FollowTheNodeOfAnotherConnection)
{
    openFed(fedNode + aNode(33, aFilter("uniform"), {}, 34, 1) +
            aNode(35, aFilter("uniform"), {}, 34, 1));
    editGraph(*a, [](const auto& graph) {
        graph.compNodes().at(0).connexions().at(0).connRef().value().set(35);
    });

    editGraph(*a, [](const auto& graph) {
        graph.compNodes().at(1).compOutputs().at(0).comptype().value().set(2);
        graph.compNodes().at(2).compOutputs().at(0).comptype().value().set(3);
    });
    EXPECT_EQ(typeIn(*b), 1u);
    editGraph(*a, [](const auto& graph) {
        graph.compNodes().at(2).compOutputs().at(0).comptype().value().set(2);
    });

    EXPECT_EQ(typeIn(*b), 2u);
}

TEST_F(SyncCompInstanceTypes, FollowAnOutputNodeThatComesLater)
{
    openFed("");

    editGraph(*a, [](const auto& graph) {
        auto bridge = std::make_unique<CompOutputBridge>();
        bridge->output().assign(21);
        bridge->connectionColorType().assign(2);
        auto node = std::make_unique<CompNode>();
        node->compImplementation().set(std::move(bridge));
        graph.compNodes().pushBack(std::move(node));
    });

    EXPECT_EQ(typeIn(*b), 2u);
}

TEST_F(SyncCompInstanceTypes, FollowANodeThatAnUndoHasBroughtBack)
{
    openFed(fedNode + aNode(33, aFilter("uniform"), {}, 34, 1));
    editGraph(*a, [](const auto& graph) { graph.compNodes().erase(0, 2); });
    ASSERT_TRUE(undo());

    editGraph(*a, [](const auto& graph) {
        graph.compNodes().at(1).compOutputs().at(0).comptype().value().set(2);
    });

    EXPECT_EQ(typeIn(*b), 2u);
}

TEST_F(SyncCompInstance, TakesAnOutputOfEitherTypeForAColorImage)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        graph.compNodes()
            .at(1)
            .compImplementation()
            .template child<CompOutputBridge>()
            .connectionColorType()
            .set(3);
    });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "y 72 1", "71 72"}));
}

// Inputs.

TEST_F(SyncCompInstance, FollowsAnInputThatIsRenamed)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        graph.paraminputs().at(0).identifier().set("image");
        graph.paraminputs().at(1).identifier().set("strength");
    });

    EXPECT_EQ(parametersOf(*b), Lines({"strength", "outputsize"}));
    EXPECT_EQ(connexionsOf(*b, 0), Lines({"image", "mask"}));
}

TEST_F(SyncCompInstance, FreesTheConnectorOfAnInputThatBecomesAValueForWhichAnImageMayStand)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.paraminputs().at(0).type().value().set(2307); });

    EXPECT_EQ(connexionsOf(*b, 0), Lines({"mask"}));
}

TEST_F(SyncCompInstance, FollowsInputsThatChangeTheirNames)
{
    openBoth();

    editGraph(*a, [](const auto& graph) {
        graph.paraminputs().at(0).identifier().set("mask");
        graph.paraminputs().at(2).identifier().set("picture");
    });

    EXPECT_EQ(connexionsOf(*b, 0), Lines({"mask", "picture"}));
}

TEST_F(SyncCompInstance, LosesWhatBelongedToAnInputThatIsRemoved)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.paraminputs().erase(0, 2); });

    EXPECT_EQ(parametersOf(*b), Lines({"outputsize"}));
    EXPECT_EQ(connexionsOf(*b, 0), Lines({"mask"}));
}

TEST_F(SyncCompInstance, LosesAParameterOfAnotherShape)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.paraminputs().at(1).type().value().set(2048); });

    EXPECT_EQ(parametersOf(*b), Lines({"outputsize"}));
}

TEST_F(SyncCompInstance, KeepsAParameterOfTheSameShape)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.paraminputs().at(1).type().value().set(258); });

    EXPECT_EQ(parametersOf(*b), Lines({"amount", "outputsize"}));
}

TEST_F(SyncCompInstance, LosesTheImageOfAnInputThatBecomesAValue)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.paraminputs().at(2).type().value().set(256); });

    EXPECT_EQ(connexionsOf(*b, 0), Lines({"picture"}));
}

TEST_F(SyncCompInstance, KeepsTheConnectionOfAnInputOfAnotherColor)
{
    openBoth();

    editGraph(*a, [](const auto& graph) { graph.paraminputs().at(2).type().value().set(1); });

    EXPECT_EQ(connexionsOf(*b, 0), Lines({"picture", "mask"}));
}

TEST_F(SyncCompInstance, IsNotWrittenForAnInputThatIsAdded)
{
    openBoth();
    const std::string before = xmlOf(*b);

    editGraph(*a, [](const auto& graph) {
        auto input = std::make_unique<ParamInput>();
        input->identifier().assign("more");
        input->uid().assign(14);
        input->type().value().assign(1);
        graph.paraminputs().pushBack(std::move(input));
    });

    EXPECT_EQ(xmlOf(*b), before);
}

struct ComputedCase
{
    const char* name;
    unsigned nodeType;
    unsigned inputType;
    bool isKept;
};
class ComputedParameter : public SyncCompInstance, public testing::WithParamInterface<ComputedCase>
{};

TEST_P(ComputedParameter, IsKeptWhileItsRootNodeCanGiveTheType)
{
    const std::string value = aDynamicValue(1, aFunctionNode(1, "add", GetParam().nodeType));
    const GraphText user{
        "b", 2, {}, {}, aNode(60, anInstanceOf(PathOfA, {}, aParameter("amount", "", value)))};
    const Package& opened = openWith(graphA().text() + user.text());

    editGraph(contentAt<Graph>(opened, 0), [](const auto& graph) {
        graph.paraminputs().at(1).type().value().set(GetParam().inputType);
    });

    EXPECT_EQ(!parametersOf(contentAt<Graph>(opened, 1)).empty(), GetParam().isKept);
}

INSTANTIATE_TEST_SUITE_P(Types, ComputedParameter,
                         testing::Values(ComputedCase{"SameType", 512, 512, true},
                                         ComputedCase{"AnotherType", 256, 512, false},
                                         ComputedCase{"OneOfMany", 53236, 512, true},
                                         ComputedCase{"Color", 2048, 2304, true},
                                         ComputedCase{"Image", 256, 1, false}),
                         [](const auto& one) { return one.param.name; });

// When nothing is written.

TEST_F(SyncCompInstance, LosesConnectionsToInputsThatTheGraphLacksWithAnotherPath)
{
    openBoth("pkg://gone?dependency=100");
    edit([&](ManipulatorContext& context) {
        auto connexion = std::make_unique<Connexion>();
        connexion->identifier().assign("amount"); // an input that takes no image
        ManipulatorStruct<CompNode>(b->compNodes().at(0), context)
            .connexions()
            .pushBack(std::move(connexion));
    });
    editGraph(*a, [](const ManipulatorStruct<Graph>& graph) {
        graph.paraminputs().at(2).identifier().set("other");
    });
    EXPECT_EQ(connexionsOf(*b, 0), (Lines{"picture", "mask", "amount"}));
    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<CompInstance>(implementationAt<CompInstance>(*b, 0), context)
            .path()
            .value()
            .set(PathOfA);
    });
    EXPECT_EQ(connexionsOf(*b, 0), Lines{"picture"});
}

TEST_F(SyncCompInstance, LosesConnectionsToInputsThatTheGraphLacksWithAnyEditOfItsInterface)
{
    openBoth();
    edit([&](ManipulatorContext& context) {
        auto connexion = std::make_unique<Connexion>();
        connexion->identifier().assign("nothing");
        ManipulatorStruct<CompNode>(b->compNodes().at(0), context)
            .connexions()
            .pushBack(std::move(connexion));
    });
    EXPECT_EQ(connexionsOf(*b, 0), (Lines{"picture", "mask", "nothing"}));
    editGraph(*a, [](const ManipulatorStruct<Graph>& graph) { addOutput(graph, "z", 23, 2); });
    EXPECT_EQ(connexionsOf(*b, 0), (Lines{"picture", "mask"}));
}

TEST_F(SyncCompInstance, IsNotRepairedByOpening)
{
    const GraphText wrong{
        "b",
        2,
        {},
        {},
        aNodeWithOutputs(60, anInstanceOf(PathOfA, aBridging(71, "gone")), aCompOutput(71, 2))};
    package = &openWith(graphA().text() + wrong.text());

    EXPECT_EQ(outputsOf(contentAt<Graph>(*package, 1)), Lines({"gone 71 2", "71"}));
}

TEST_F(SyncCompInstance, ATypeThatWasWrongIsNotRepairedByOtherEditsOfTheGraph)
{
    const GraphText wrong{
        "b",
        2,
        {},
        {},
        aNodeWithOutputs(60, anInstanceOf(PathOfA, aBridging(71, "x")), aCompOutput(71, 2))};
    package = &openWith(graphA().text() + wrong.text());

    editGraph(contentAt<Graph>(*package, 0), [](const auto& graph) {
        graph.graphOutputs().at(1).identifier().set("w");
        graph.paraminputs().erase(0, 1);
        graph.compNodes().at(0).GUIName().set("name");
        graph.compNodes().at(0).disabled().value().set(true);
    });

    EXPECT_EQ(outputsOf(contentAt<Graph>(*package, 1)), Lines({"x 71 2", "71"}));
}

TEST_F(SyncCompInstance, IsLeftAloneWhenItsGraphIsRemoved)
{
    openBoth();
    const std::string before = xmlOf(*b);

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<Package>(*package, context).content().erase(0, 1);
    });

    EXPECT_EQ(xmlOf(*b), before);
}

TEST_F(SyncCompInstance, FollowsItsGraphAgainWhenThatComesBack)
{
    openBoth();
    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<Package>(*package, context).content().erase(0, 1);
    });
    ASSERT_TRUE(undo());

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("w"); });

    EXPECT_EQ(outputsOf(*b), Lines({"w 71 1", "y 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, IsLeftAloneWhenItsPackageOpensLater)
{
    const Package& user = open(aPackage()
                                   .dependingOn("/there/lib.obl", 200)
                                   .containing(graphB("pkg://a?dependency=200").text()),
                               "/there/user.obl", 300);
    const std::string before = xmlOf(user);

    GraphText other = graphA();
    other.outputs = anOutput("other", 21);
    open(aPackage().containing(other.text()), "/there/lib.obl", 200);

    EXPECT_EQ(xmlOf(user), before);
}

TEST_F(SyncCompInstance, FollowsAGraphOfAnotherPackage)
{
    const Package& library = open(aPackage().containing(graphA().text()), "/there/lib.obl", 200);
    const Package& user = open(aPackage()
                                   .dependingOn("/there/lib.obl", 200)
                                   .containing(graphB("pkg://a?dependency=200").text()),
                               "/there/user.obl", 300);

    editGraph(contentAt<Graph>(library, 0),
              [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("w"); });

    EXPECT_EQ(outputsOf(contentAt<Graph>(user, 0)), Lines({"w 71 1", "y 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, IsLeftAloneWhenItsPackageIsClosed)
{
    const Package& library = open(aPackage().containing(graphA().text()), "/there/lib.obl", 200);
    const Package& user = open(aPackage()
                                   .dependingOn("/there/lib.obl", 200)
                                   .containing(graphB("pkg://a?dependency=200").text()),
                               "/there/user.obl", 300);
    const std::string before = xmlOf(user);

    workspace.packages().removePackages({Ksx::Core::PackagesListManager::PackageBox(&library)});
    beginHistory();

    EXPECT_EQ(xmlOf(user), before);
}

TEST_F(SyncCompInstance, OfAGraphWithTheNameOfAnotherIsLeftAlone)
{
    const Package& library = open(aPackage().containing(graphA().text()), "/there/lib.obl", 200);
    openBoth();

    editGraph(contentAt<Graph>(library, 0),
              [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("w"); });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "y 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, FollowsAGraphInAGroup)
{
    package = &openWith(aGroup("g", graphA().text()) + graphB("pkg://g/a?dependency=100").text());
    b = &contentAt<Graph>(*package, 1);

    editGraph(static_cast<const Graph&>(contentAt<Group>(*package, 0).content().at(0)),
              [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("w"); });

    EXPECT_EQ(outputsOf(*b), Lines({"w 71 1", "y 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, IsNotToldOfARefusedEdit)
{
    openBoth();
    const std::string before = xmlOf(*package);

    workspace.commandManager()->execute(std::make_shared<Orv::Core::CommandDataModification>(
        [&](ManipulatorContext& context) {
            ManipulatorStruct<Graph>(*a, context).graphOutputs().erase(0, 1);
            return false;
        },
        "refused"));
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().at(1).identifier().set("w"); });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "w 72 2", "71 72"}));
}

// Instances that come in, and paths that change.

TEST_F(SyncCompInstance, ThatIsAddedByAnEditTakesOverTheOutputs)
{
    openBoth();

    editGraph(*b, [](const auto& graph) {
        auto instance = std::make_unique<CompInstance>();
        instance->path().value().assign(PathOfA);
        auto node = std::make_unique<CompNode>();
        node->uid().assign(63);
        node->compImplementation().set(std::move(instance));
        graph.compNodes().pushBack(std::move(node));
    });

    EXPECT_EQ(outputsOf(*b, 3), Lines({"x 9000 1", "y 9001 2", "9000 9001"}));
}

TEST_F(SyncCompInstance, ThatIsAddedWithItsOutputsIsNotWritten)
{
    openBoth();

    edit([&](ManipulatorContext& context) {
        auto instance = std::make_unique<CompInstance>();
        instance->path().value().assign(PathOfA);
        auto node = std::make_unique<CompNode>();
        for (const unsigned uid : {91u, 92u}) {
            auto output = std::make_unique<CompOutput>();
            output->uid().assign(uid);
            output->comptype().value().assign(uid - 90);
            node->compOutputs().pushBack(std::move(output));
            auto bridging = std::make_unique<OutputBridging>();
            bridging->uid().assign(uid);
            bridging->identifier().assign(uid == 91 ? "x" : "y");
            instance->outputBridgings().pushBack(std::move(bridging));
        }
        node->compImplementation().set(std::move(instance));
        ManipulatorStruct<Graph>(*b, context).compNodes().pushBack(std::move(node));
    });

    EXPECT_EQ(outputsOf(*b, 3), Lines({"x 91 1", "y 92 2", "91 92"}));
}

TEST_F(SyncCompInstance, ThatIsAddedWithoutAGraphKeepsItsOutputs)
{
    openBoth();

    editGraph(*b, [](const auto& graph) {
        auto instance = std::make_unique<CompInstance>();
        instance->path().value().assign("pkg://nowhere?dependency=100");
        auto bridging = std::make_unique<OutputBridging>();
        bridging->uid().assign(91);
        bridging->identifier().assign("x");
        instance->outputBridgings().pushBack(std::move(bridging));
        auto node = std::make_unique<CompNode>();
        node->compImplementation().set(std::move(instance));
        graph.compNodes().pushBack(std::move(node));
    });

    EXPECT_EQ(outputsOf(*b, 3), Lines({"x 91 none", ""}));
}

TEST_F(SyncCompInstance, ThatWasAddedFollowsLaterEdits)
{
    openBoth();
    editGraph(*b, [](const auto& graph) {
        auto instance = std::make_unique<CompInstance>();
        instance->path().value().assign(PathOfA);
        auto node = std::make_unique<CompNode>();
        node->compImplementation().set(std::move(instance));
        graph.compNodes().pushBack(std::move(node));
    });

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("w"); });

    EXPECT_EQ(outputsOf(*b, 3), Lines({"w 9000 1", "y 9001 2", "9000 9001"}));
    EXPECT_EQ(outputsOf(*b), Lines({"w 71 1", "y 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, WithAnotherPathTakesOverTheOutputsOfTheOtherGraph)
{
    const GraphText other{"other", 3, {}, anOutput("y", 25) + anOutput("n", 26)};
    package = &openWith(graphA().text() + graphB().text() + other.text());
    b = &contentAt<Graph>(*package, 1);

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<CompInstance>(implementationAt<CompInstance>(*b, 0), context)
            .path()
            .value()
            .set("pkg://other?dependency=100");
    });

    EXPECT_EQ(outputsOf(*b), Lines({"y 72 1", "n 9000 1", "72 9000"}));
    EXPECT_EQ(connexionsOf(*b, 1), Lines({"destination", "other"}));
}

TEST_F(SyncCompInstance, WithAnotherPathFollowsTheOtherGraph)
{
    const GraphText other{"other", 3, {}, anOutput("x", 25) + anOutput("y", 26)};
    package = &openWith(graphA().text() + graphB().text() + other.text());
    a = &contentAt<Graph>(*package, 0);
    b = &contentAt<Graph>(*package, 1);
    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<CompInstance>(implementationAt<CompInstance>(*b, 0), context)
            .path()
            .value()
            .set("pkg://other?dependency=100");
    });

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(0, 2); });
    editGraph(contentAt<Graph>(*package, 2),
              [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("w"); });

    EXPECT_EQ(outputsOf(*b), Lines({"w 71 1", "y 72 1", "71 72"}));
}

TEST_F(SyncCompInstance, ThatLosesItsPathKeepsItsOutputs)
{
    openBoth();

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<CompInstance>(implementationAt<CompInstance>(*b, 0), context)
            .path()
            .value()
            .set("pkg://nowhere?dependency=100");
    });

    EXPECT_EQ(outputsOf(*b), Lines({"x 71 1", "y 72 2", "71 72"}));
}

TEST_F(SyncCompInstance, ThatIsRemovedWithItsOutputsEditedIsNotTouched)
{
    openBoth();

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<Graph>(*b, context).compNodes().erase(0, 1);
        ManipulatorStruct<Graph>(*a, context).graphOutputs().erase(0, 1);
    });

    EXPECT_EQ(connexionsOf(*b, 0), Lines({"source", "destination", "other"}));
}

// Undoing leaves nothing for the behaviour to do.
TEST_F(SyncCompInstance, FollowsTheNextEditAfterAnUndo)
{
    openBoth();
    editGraph(*a, [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("w"); });
    ASSERT_TRUE(undo());

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().at(0).identifier().set("v"); });

    EXPECT_EQ(outputsOf(*b), Lines({"v 71 1", "y 72 2", "71 72"}));
}

// Instances in instances.

// Graphs "a", "b" and "c": the output of each is fed by an instance of the one before.
class SyncCompInstanceChain : public SyncCompInstance
{
protected:
    static GraphText link(const std::string& identifier, const std::string& of)
    {
        return {identifier,
                2,
                {},
                anOutput("out", 40),
                aNodeWithOutputs(60,
                                 anInstanceOf("pkg://" + of + "?dependency=100",
                                              aBridging(71, of == "a" ? "x" : "out")),
                                 aCompOutput(71, 1)) +
                    aNode(61, anOutputBridge(40), aConnexion("inputNodeOutput", 60, 71)),
                {},
                aRootOutput(40)};
    }
    static void setTypeOfX(const ManipulatorStruct<Graph>& graph, unsigned type)
    {
        graph.compNodes()
            .at(0)
            .compImplementation()
            .child<CompOutputBridge>()
            .connectionColorType()
            .set(type);
    }
};

TEST_F(SyncCompInstanceChain, ATypeGoesThroughAllGraphsInOneEdit)
{
    package = &openWith(link("c", "b").text() + link("b", "a").text() + graphA().text() +
                        link("d", "c").text());

    editGraph(contentAt<Graph>(*package, 2), [](const auto& graph) { setTypeOfX(graph, 2); });

    EXPECT_EQ(outputsOf(contentAt<Graph>(*package, 1)), Lines({"x 71 2", "71"}));
    EXPECT_EQ(outputsOf(contentAt<Graph>(*package, 0)), Lines({"out 71 2", "71"}));
    EXPECT_EQ(outputsOf(contentAt<Graph>(*package, 3)), Lines({"out 71 2", "71"}));
}

TEST_F(SyncCompInstanceChain, AnOutputThatGoesTakesItsTypeAlong)
{
    package = &openWith(graphA().text() + link("b", "a").text() + link("c", "b").text());
    editGraph(contentAt<Graph>(*package, 0), [](const auto& graph) { setTypeOfX(graph, 2); });

    editGraph(contentAt<Graph>(*package, 0),
              [](const auto& graph) { graph.graphOutputs().erase(0, 1); });

    // Nothing feeds the output of "b" any more, so it counts as a color image.
    EXPECT_EQ(outputsOf(contentAt<Graph>(*package, 2)), Lines({"out 71 1", "71"}));
}

TEST_F(SyncCompInstanceChain, OfItselfComesToRest)
{
    GraphText text{
        "a",
        1,
        {},
        anOutput("x", 21),
        aNodeWithOutputs(60, anInstanceOf(PathOfA, aBridging(71, "x")), aCompOutput(71, 1)) +
            aNode(61, anOutputBridge(21), aConnexion("inputNodeOutput", 60, 71)),
        {},
        aRootOutput(21)};
    package = &openWith(text.text());
    a = &contentAt<Graph>(*package, 0);

    editGraph(*a, [](const auto& graph) {
        graph.graphOutputs().at(0).identifier().set("w");
        addOutput(graph, "z", 22, 1);
        graph.compNodes().at(0).compOutputs().at(0).comptype().value().set(2);
    });

    EXPECT_EQ(outputsOf(*a), Lines({"w 71 2", "z 9000 1", "71 9000"}));
}

TEST_F(SyncCompInstanceChain, OfItselfLosesAnOutputThatFeedsIt)
{
    GraphText text{
        "a",
        1,
        {},
        anOutput("x", 21),
        aNodeWithOutputs(60, anInstanceOf(PathOfA, aBridging(71, "x")), aCompOutput(71, 1)) +
            aNode(61, anOutputBridge(21), aConnexion("inputNodeOutput", 60, 71)),
        {},
        aRootOutput(21)};
    package = &openWith(text.text());
    a = &contentAt<Graph>(*package, 0);

    editGraph(*a, [](const auto& graph) { graph.graphOutputs().erase(0, 1); });

    EXPECT_EQ(outputsOf(*a), Lines({""}));
    EXPECT_EQ(connexionsOf(*a, 1), Lines());
}

// Each output of the graph is fed by the other one of an instance of the graph itself. No types are
// right but two equal ones, and an edit that makes them differ would go around for ever.
TEST_F(SyncCompInstanceChain, TypesThatChaseEachOtherAreLeftAtLast)
{
    GraphText text{"a",
                   1,
                   {},
                   anOutput("x", 21) + anOutput("y", 22),
                   aNodeWithOutputs(60,
                                    anInstanceOf(PathOfA, aBridging(71, "x") + aBridging(72, "y")),
                                    aCompOutput(71, 1) + aCompOutput(72, 1)) +
                       aNode(61, anOutputBridge(21), aConnexion("inputNodeOutput", 60, 72)) +
                       aNode(62, anOutputBridge(22), aConnexion("inputNodeOutput", 60, 71)),
                   {},
                   aRootOutput(21) + aRootOutput(22)};
    package = &openWith(text.text());
    a = &contentAt<Graph>(*package, 0);

    EXPECT_TRUE(editGraph(*a, [](const auto& graph) {
        graph.compNodes().at(0).compOutputs().at(0).comptype().value().set(2);
    }));
}

TEST_F(SyncCompInstanceChain, GraphsThatHoldEachOtherComeToRest)
{
    package = &openWith(link("b", "c").text() + link("c", "b").text());

    EXPECT_TRUE(editGraph(contentAt<Graph>(*package, 0), [](const auto& graph) {
        graph.graphOutputs().at(0).identifier().set("w");
        graph.compNodes().at(0).compOutputs().at(0).comptype().value().set(2);
    }));

    EXPECT_EQ(outputsOf(contentAt<Graph>(*package, 1)), Lines({"w 71 2", "71"}));
}

// Together with controllers, which show what the behaviours have done.

TEST_F(SyncCompInstance, ItsControllerKeepsTheConnectionsOfAnInputThatIsRenamed)
{
    openBoth();
    auto& graph = controllerIn(*package, 1);
    auto& node = *graph.nodeByUid(60);
    ASSERT_EQ(node.inputConnectorByName("picture")->targets().size(), 1u);

    editGraph(*a, [](const auto& manipulator) {
        manipulator.paraminputs().at(0).identifier().set("image");
    });

    EXPECT_EQ(node.inputConnectorByName("picture"), nullptr);
    ASSERT_NE(node.inputConnectorByName("image"), nullptr);
    EXPECT_EQ(node.inputConnectorByName("image")->targets().size(), 1u);
}

TEST_F(SyncCompInstance, ItsControllerHasTheOutputsOfTheGraph)
{
    openBoth();
    auto& graph = controllerIn(*package, 1);
    auto& node = *graph.nodeByUid(60);

    editGraph(*a, [](const auto& manipulator) {
        manipulator.graphOutputs().at(0).identifier().set("w");
        addOutput(manipulator, "z", 23, 1);
        manipulator.graphOutputs().erase(2, 1);
    });

    ASSERT_EQ(node.outputConnectorCount(), 2u);
    EXPECT_EQ(node.outputConnector(0)->identifier(), "w");
    EXPECT_EQ(node.outputConnector(0)->targets().size(), 1u);
    EXPECT_EQ(node.outputConnector(1)->identifier(), "z");
}

// Random edits of the inputs and outputs of a graph with two instances.
class RandomInterfaceEdits : public SyncCompInstance, public testing::WithParamInterface<unsigned>
{
protected:
    RandomInterfaceEdits() : random(GetParam()) {}

    std::size_t below(std::size_t bound) { return random() % bound; }
    std::string freshName() { return "n" + std::to_string(++names); }

    void editOutputs(const ManipulatorStruct<Graph>& graph)
    {
        auto list = graph.graphOutputs();
        const std::size_t size = list.get()->size();
        const std::size_t index = below(size + 1);
        if (index == size) {
            addOutput(graph, freshName(), 1000 + ++names, below(size + 1));
            return;
        }
        switch (below(4)) {
        case 0:
            list.erase(index, 1);
            break;
        case 1:
            list.at(index).identifier().set(freshName());
            break;
        case 2:
            list.move(index, static_cast<std::ptrdiff_t>(below(size)) -
                                 static_cast<std::ptrdiff_t>(index));
            list.at(0).channels().set(1); // moves in a row would be taken for one
            break;
        default:
            graph.compNodes()
                .at(below(2))
                .compImplementation()
                .child<CompOutputBridge>()
                .connectionColorType()
                .set(static_cast<unsigned>(below(4)));
        }
    }
    void editInputs(const ManipulatorStruct<Graph>& graph)
    {
        auto list = graph.paraminputs();
        const std::size_t size = list.get()->size();
        const std::size_t index = below(size + 1);
        if (index == size) {
            auto input = std::make_unique<ParamInput>();
            input->identifier().assign(freshName());
            input->uid().assign(2000 + ++names);
            input->type().value().assign(below(2) == 0 ? 1 : 256);
            list.pushBack(std::move(input));
        } else if (below(2) == 0) {
            list.erase(index, 1);
        } else {
            list.at(index).identifier().set(freshName());
        }
    }
    // What an instance has, as a graph's own outputs would have it.
    Lines wantedOf(const Graph& graph) const
    {
        Lines lines;
        const std::vector<unsigned> types = Ksx::Core::typesOfGraphOutputs(graph);
        for (const GraphOutput& output : graph.graphOutputs())
            lines.push_back(output.identifier().get() + " " + std::to_string(types[lines.size()]));
        return lines;
    }
    static Lines foundIn(const Graph& graph, std::size_t node)
    {
        Lines lines = outputsOf(graph, node);
        lines.pop_back();
        for (std::string& line : lines) {
            const std::size_t begin = line.find(' ');
            line.erase(begin, line.rfind(' ') - begin);
        }
        return lines;
    }
    static bool isInOrder(const Graph& graph, std::size_t node)
    {
        const auto& outputs = graph.compNodes().at(node).compOutputs();
        const auto& bridgings = implementationAt<CompInstance>(graph, node).outputBridgings();
        return std::equal(outputs.begin(), outputs.end(), bridgings.begin(), bridgings.end(),
                          [](const CompOutput& output, const OutputBridging& bridging) {
                              return output.uid().get() == bridging.uid().get();
                          });
    }
    static std::size_t danglingIn(const Graph& graph)
    {
        std::size_t count = 0;
        for (const Connexion& connexion : graph.compNodes().at(1).connexions())
            for (const CompNode& node : graph.compNodes())
                if (node.uid().get() == connexion.connRef().value().get())
                    count += std::none_of(node.compOutputs().begin(), node.compOutputs().end(),
                                          [&](const CompOutput& output) {
                                              return output.uid().get() ==
                                                     connexion.connRefOutput().value().get();
                                          });
        return count;
    }

    std::mt19937 random;
    unsigned names = 0;
};

TEST_P(RandomInterfaceEdits, LeaveAllInstancesWithTheOutputsOfTheirGraph)
{
    std::cout << "seed " << GetParam() << '\n';
    openBoth();
    editGraph(*b, [](const auto& graph) {
        auto instance = std::make_unique<CompInstance>();
        instance->path().value().assign(PathOfA);
        auto node = std::make_unique<CompNode>();
        node->uid().assign(63);
        node->compImplementation().set(std::move(instance));
        graph.compNodes().pushBack(std::move(node));
    });

    for (int step = 0; step < 40; ++step) {
        editGraph(*a, [this](const auto& graph) {
            for (std::size_t count = 1 + below(4); count > 0; --count)
                below(2) == 0 ? editOutputs(graph) : editInputs(graph);
        });
        EXPECT_EQ(foundIn(*b, 0), wantedOf(*a));
        EXPECT_EQ(foundIn(*b, 3), wantedOf(*a));
        EXPECT_TRUE(isInOrder(*b, 0));
        EXPECT_TRUE(isInOrder(*b, 3));
        EXPECT_EQ(danglingIn(*b), 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomInterfaceEdits, testing::Range(1u, 31u));

} // namespace

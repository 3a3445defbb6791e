#include "behavior/syncgraphprimaryinput.h"

#include "behaviorfixture.h"

namespace {

using namespace TestSupport;

class SyncGraphPrimaryInput : public BehaviorTest
{
protected:
    const Graph& openGraph(const std::string& inputs, const std::string& primaryInput = {})
    {
        GraphText text{"g", 4, inputs};
        text.primaryInput = primaryInput;
        return contentAt<Graph>(openWith(text.text()), 0);
    }
    static void addInput(const ManipulatorStruct<Graph>& graph, unsigned uid, unsigned type)
    {
        auto input = std::make_unique<ParamInput>();
        input->uid().assign(uid);
        input->type().value().assign(type);
        graph.paraminputs().pushBack(std::move(input));
    }
    static unsigned primaryOf(const Graph& graph) { return graph.primaryInput().value().get(); }
};

TEST_F(SyncGraphPrimaryInput, IsTheFirstImageInputThatIsAdded)
{
    const Graph& graph = openGraph(anInput("amount", 1, 256));

    editGraph(graph, [](const auto& manipulator) {
        addInput(manipulator, 2, 256);
        addInput(manipulator, 3, 2);
        addInput(manipulator, 4, 1);
    });

    EXPECT_EQ(primaryOf(graph), 3u);
}

TEST_F(SyncGraphPrimaryInput, IsNoInputOfAValueForWhichAnImageMayStand)
{
    const Graph& graph = openGraph(anInput("amount", 1, 258) + anInput("tint", 2, 2049));

    editGraph(graph, [](const auto& manipulator) {
        addInput(manipulator, 3, 2307);
        addInput(manipulator, 4, 2304);
        addInput(manipulator, 5, 3);
    });

    EXPECT_EQ(primaryOf(graph), 5u);
}

TEST_F(SyncGraphPrimaryInput, StaysWhileItNamesAnImageInput)
{
    const Graph& graph = openGraph(anInput("a", 1, 1) + anInput("b", 2, 1), "2");

    editGraph(graph, [](const auto& manipulator) {
        addInput(manipulator, 3, 1);
        manipulator.paraminputs().move(1, -1);
    });

    EXPECT_EQ(primaryOf(graph), 2u);
}

TEST_F(SyncGraphPrimaryInput, BecomesTheFirstImageInputWhenItsInputGoes)
{
    const Graph& graph =
        openGraph(anInput("n", 1, 256) + anInput("a", 2, 1) + anInput("b", 3, 3), "2");

    editGraph(graph, [](const auto& manipulator) { manipulator.paraminputs().erase(1, 1); });

    EXPECT_EQ(primaryOf(graph), 3u);
}

TEST_F(SyncGraphPrimaryInput, BecomesTheFirstImageInputWhenItsInputIsAnImageNoMore)
{
    const Graph& graph = openGraph(anInput("a", 1, 1) + anInput("b", 2, 1), "1");

    editGraph(graph, [](const auto& manipulator) {
        manipulator.paraminputs().at(0).type().value().set(256);
    });

    EXPECT_EQ(primaryOf(graph), 2u);
}

TEST_F(SyncGraphPrimaryInput, IsNoneWithoutImageInputs)
{
    const Graph& graph = openGraph(anInput("n", 1, 256) + anInput("a", 2, 1), "2");

    editGraph(graph, [](const auto& manipulator) { manipulator.paraminputs().erase(1, 1); });

    EXPECT_EQ(primaryOf(graph), 0u);
    EXPECT_EQ(xmlOf(graph).find("primaryInput"), std::string::npos);
}

TEST_F(SyncGraphPrimaryInput, IsBroughtBackWhenItIsSetToAWrongValue)
{
    const Graph& graph = openGraph(anInput("n", 1, 256) + anInput("a", 2, 1), "2");

    editGraph(graph, [](const auto& manipulator) { manipulator.primaryInput().value().set(1); });

    EXPECT_EQ(primaryOf(graph), 2u);
}

TEST_F(SyncGraphPrimaryInput, CanBeSetToAnotherImageInput)
{
    const Graph& graph = openGraph(anInput("a", 1, 1) + anInput("b", 2, 1), "1");

    editGraph(graph, [](const auto& manipulator) { manipulator.primaryInput().value().set(2); });

    EXPECT_EQ(primaryOf(graph), 2u);
}

TEST_F(SyncGraphPrimaryInput, IsNotRepairedByOpeningNorByOtherEdits)
{
    const Graph& graph = openGraph(anInput("a", 1, 1), "99");

    editGraph(graph, [](const auto& manipulator) {
        manipulator.identifier().set("h");
        manipulator.compNodes().pushBack(std::make_unique<CompNode>());
    });

    EXPECT_EQ(primaryOf(graph), 99u);
    EXPECT_EQ(log, Lines());
}

TEST_F(SyncGraphPrimaryInput, IsSetInAGraphThatIsAddedByAnEdit)
{
    const Package& package = openWith("");

    edit([&](ManipulatorContext& context) {
        auto graph = std::make_unique<Graph>();
        auto input = std::make_unique<ParamInput>();
        input->uid().assign(7);
        input->type().value().assign(2);
        graph->paraminputs().pushBack(std::move(input));
        ManipulatorStruct<Package>(package, context).content().pushBack(std::move(graph));
    });

    EXPECT_EQ(primaryOf(contentAt<Graph>(package, 0)), 7u);
}

TEST_F(SyncGraphPrimaryInput, AWrongValueThatAnUndoBringsBackIsReportedAndStays)
{
    const Graph& graph = openGraph(anInput("a", 1, 1), "99");
    editGraph(graph, [](const auto& manipulator) { addInput(manipulator, 2, 1); });
    ASSERT_EQ(primaryOf(graph), 1u);

    undo();

    EXPECT_EQ(primaryOf(graph), 99u);
    const std::string wrong = "core\\behavior\\corebehaviorsyncgraphprimaryinput:124: Primary "
                              "Input wrong uid: current is 99 and must be 1";
    EXPECT_EQ(log, Lines{wrong});
}

TEST_F(SyncGraphPrimaryInput, AMissingValueThatAnUndoBringsBackIsReportedAndStays)
{
    const Graph& graph = openGraph(anInput("a", 1, 1));
    editGraph(graph, [](const auto& manipulator) {
        manipulator.paraminputs().at(0).identifier().set("b");
    });
    ASSERT_EQ(primaryOf(graph), 1u);

    undo();

    EXPECT_EQ(primaryOf(graph), 0u);
    const std::string missing = "core\\behavior\\corebehaviorsyncgraphprimaryinput:184: Primary "
                                "Input wrong uid must be 1in graph :g";
    EXPECT_EQ(log, Lines{missing});
}

} // namespace

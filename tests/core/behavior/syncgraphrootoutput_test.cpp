#include "behavior/syncgraphrootoutput.h"

#include "behaviorfixture.h"

namespace {

using namespace TestSupport;

class SyncGraphRootOutput : public BehaviorTest
{
protected:
    const Graph& openGraph()
    {
        return contentAt<Graph>(
            openWith(GraphText{"g", 4, {}, anOutput("a", 21), {}, {}, aRootOutput(21)}.text()), 0);
    }
    static void addOutput(const ManipulatorStruct<Graph>& graph, unsigned uid)
    {
        auto output = std::make_unique<GraphOutput>();
        output->uid().assign(uid);
        graph.graphOutputs().pushBack(std::move(output));
    }
    static void addRootOutput(const ManipulatorStruct<Graph>& graph, unsigned uid)
    {
        auto output = std::make_unique<RootOutput>();
        output->output().assign(uid);
        graph.root().rootOutputs().pushBack(std::move(output));
    }
    static std::string missing(unsigned uid)
    {
        return "core\\behavior\\corebehaviorsyncgraphrootoutput:125: Root Output Missing for " +
               std::to_string(uid) + " graph ouput in graph g";
    }
};

TEST_F(SyncGraphRootOutput, ReportsAnOutputThatIsAddedWithoutARootOutput)
{
    const Graph& graph = openGraph();

    editGraph(graph, [](const auto& manipulator) { addOutput(manipulator, 22); });

    EXPECT_EQ(log, Lines{missing(22)});
    EXPECT_EQ(graph.root().rootOutputs().size(), 1u);
}

TEST_F(SyncGraphRootOutput, SaysNothingOfAnOutputThatIsAddedWithItsRootOutput)
{
    editGraph(openGraph(), [](const auto& graph) {
        addOutput(graph, 22);
        addRootOutput(graph, 22);
    });

    EXPECT_EQ(log, Lines());
}

TEST_F(SyncGraphRootOutput, ReportsOnceWhenBothListsChange)
{
    editGraph(openGraph(), [](const auto& graph) {
        addRootOutput(graph, 22);
        addOutput(graph, 23);
    });

    EXPECT_EQ(log, Lines{missing(23)});
}

TEST_F(SyncGraphRootOutput, ReportsAnOutputWhoseRootOutputIsErased)
{
    editGraph(openGraph(), [](const auto& graph) { graph.root().rootOutputs().erase(0, 1); });

    EXPECT_EQ(log, Lines{missing(21)});
}

TEST_F(SyncGraphRootOutput, ReportsAnOutputWhoseUidIsChanged)
{
    editGraph(openGraph(), [](const auto& graph) { graph.graphOutputs().at(0).uid().set(30); });

    EXPECT_EQ(log, Lines{missing(30)});
}

TEST_F(SyncGraphRootOutput, ReportsAfterAnUndo)
{
    editGraph(openGraph(), [](const auto& graph) { graph.root().rootOutputs().erase(0, 1); });
    log.clear();
    undo();
    EXPECT_EQ(log, Lines());

    redo();

    EXPECT_EQ(log, Lines{missing(21)});
}

TEST_F(SyncGraphRootOutput, SaysNothingOfOtherEdits)
{
    const Package& package = openWith(GraphText{"g", 4, {}, anOutput("a", 21)}.text());

    editGraph(contentAt<Graph>(package, 0), [](const auto& graph) { graph.identifier().set("h"); });

    EXPECT_EQ(log, Lines());
}

TEST_F(SyncGraphRootOutput, SaysNothingWhenAPackageIsOpened)
{
    openWith(GraphText{"g", 4, {}, anOutput("a", 21)}.text());

    EXPECT_EQ(log, Lines());
}

TEST_F(SyncGraphRootOutput, ReportsForAGraphThatIsAddedByAnEdit)
{
    const Package& package = openWith("");

    edit([&](ManipulatorContext& context) {
        auto graph = std::make_unique<Graph>();
        graph->identifier().assign("g");
        auto output = std::make_unique<GraphOutput>();
        output->uid().assign(21);
        graph->graphOutputs().pushBack(std::move(output));
        ManipulatorStruct<Package>(package, context).content().pushBack(std::move(graph));
    });

    EXPECT_EQ(log, Lines{missing(21)});
}

} // namespace

#include "graph/graphoutputtype.h"

#include "data/content/compnode.h"
#include "data/content/compoutputbridge.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::CompOutputBridge;
using Ksx::Data::Content::Graph;
using Types = std::vector<unsigned>;

struct OutputCase
{
    const char* name;
    std::string nodes;
    unsigned type;
};
class GraphOutputType : public testing::TestWithParam<OutputCase>
{};

TEST_P(GraphOutputType, FollowsFromTheNodes)
{
    const auto package = packageFrom(
        aPackage().containing(GraphText{"g", 4, {}, anOutput("x", 21), GetParam().nodes}.text()));
    const auto& graph = dynamic_cast<const Graph&>(package->content().at(0));

    EXPECT_EQ(typeOfGraphOutput(graph, graph.graphOutputs().at(0)), GetParam().type);
    EXPECT_EQ(typesOfGraphOutputs(graph), Types{GetParam().type});
}

const std::string Feed = aConnexion("inputNodeOutput", 33, 34);

INSTANTIATE_TEST_SUITE_P(
    Nodes, GraphOutputType,
    testing::Values(
        OutputCase{"None", "", 1},
        OutputCase{"OfAnotherOutput", aNode(31, anOutputBridge(99, 2)), 1},
        OutputCase{"Unconnected", aNode(31, anOutputBridge(21)), 1},
        OutputCase{"NamedColor", aNode(31, anOutputBridge(21, 1)), 1},
        OutputCase{"NamedGrayscale", aNode(31, anOutputBridge(21, 2)), 2},
        OutputCase{"NamedEither", aNode(31, anOutputBridge(21, 3)), 1},
        OutputCase{"FedByColor",
                   aNode(31, anOutputBridge(21), Feed) + aNode(33, aFilter("blur"), {}, 34, 1), 1},
        OutputCase{"FedByGrayscale",
                   aNode(33, aFilter("blur"), {}, 34, 2) + aNode(31, anOutputBridge(21), Feed), 2},
        OutputCase{"FedByEither",
                   aNode(31, anOutputBridge(21), Feed) + aNode(33, aFilter("blur"), {}, 34, 3), 1},
        OutputCase{"FedByNothing",
                   aNode(31, anOutputBridge(21), Feed) + aNode(33, aFilter("blur"), {}, 34, 0), 1},
        OutputCase{"FedByUnknownOutput",
                   aNode(31, anOutputBridge(21), Feed) + aNode(33, aFilter("blur"), {}, 35, 2), 1},
        OutputCase{"FedByUnknownNode", aNode(31, anOutputBridge(21), Feed), 1},
        OutputCase{"AnotherConnector",
                   aNode(31, anOutputBridge(21), aConnexion("other", 33, 34)) +
                       aNode(33, aFilter("blur"), {}, 34, 2),
                   1},
        OutputCase{"NamedAgainstItsFeed",
                   aNode(31, anOutputBridge(21, 1), Feed) + aNode(33, aFilter("blur"), {}, 34, 2),
                   1},
        OutputCase{"OfTwoNodesTheFirst",
                   aNode(31, anOutputBridge(21, 2)) + aNode(32, anOutputBridge(21, 1)), 2}),
    [](const auto& one) { return one.param.name; });

TEST(GraphOutputTypes, ComeInTheOrderOfTheOutputs)
{
    const auto package = packageFrom(aPackage().containing(
        GraphText{"g",
                  4,
                  {},
                  anOutput("x", 21) + anOutput("y", 22) + anOutput("z", 23),
                  aNode(33, aFilter("blur"), {}, 34, 2) + aNode(31, anOutputBridge(22), Feed) +
                      aNode(32, anOutputBridge(21), Feed) + aNode(35, anOutputBridge(23, 1))}
            .text()));

    EXPECT_EQ(typesOfGraphOutputs(dynamic_cast<const Graph&>(package->content().at(0))),
              Types({2, 2, 1}));
}

TEST(GraphOutputTypes, OfAGraphWithoutOutputsAreNone)
{
    EXPECT_EQ(typesOfGraphOutputs(Graph()), Types());
}

// An output node that comes to stand for another output.
TEST(GraphOutputTypes, OfANodeThatChangesItsOutputAreThoseOfBoth)
{
    const auto package = packageFrom(
        aPackage().containing(GraphText{"g",
                                        4,
                                        {},
                                        anOutput("x", 21) + anOutput("y", 22) + anOutput("z", 23),
                                        aNode(31, anOutputBridge(21, 2))}
                                  .text()));
    auto& graph = dynamic_cast<Graph&>(package->content().at(0));
    const auto& node = graph.compNodes().at(0);
    GraphOutputTypes types(graph, [](const auto&, bool) {});
    ASSERT_EQ(types.typeOf(21), 2u);

    dynamic_cast<CompOutputBridge&>(*graph.compNodes().at(0).compImplementation().get())
        .output()
        .assign(22);

    EXPECT_EQ(types.nodeChanged(node), (std::vector<Uid>{21, 22}));
    EXPECT_EQ(types.typeOf(21), 1u);
    EXPECT_EQ(types.typeOf(22), 2u);
}

} // namespace

#include "ksx/core/collectgraphs.h"

#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/workspace.h"
#include <climits>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;

std::string aGraph(const std::string& identifier, const std::string& content = {})
{
    GraphText graph;
    graph.identifier = identifier;
    return replaced(graph.text(), "<content/>", GraphText::list("content", content));
}

// The graphs a; b in a group; c in a group of that group; d, with e in it, and f in that.
PackageText aForest()
{
    return aPackage()
        .containing(aGraph("a"))
        .containing(aGroup("outer", aGraph("b") + aGroup("inner", aGraph("c"))))
        .containing(aResource("picture", "a.png"))
        .containing(aGraph("d", aGraph("e", aGraph("f"))));
}

std::string collected(const Orv::Data::BaseObject& object, int depth)
{
    std::string identifiers;
    for (const auto& graph : collectGraphs(object, depth))
        identifiers += graph->identifier().get();
    return identifiers;
}

struct DepthCase
{
    const char* name;
    int depth;
    const char* ofPackage;
    const char* ofGroup;
    const char* ofGraph;
};

class CollectGraphs : public testing::TestWithParam<DepthCase>
{
protected:
    std::unique_ptr<Ksx::Data::Content::Package> package = packageFrom(aForest());
};

TEST_P(CollectGraphs, OfAPackage)
{
    EXPECT_EQ(collected(*package, GetParam().depth), GetParam().ofPackage);
}

TEST_P(CollectGraphs, OfAGroup)
{
    EXPECT_EQ(collected(package->content().at(1), GetParam().depth), GetParam().ofGroup);
}

TEST_P(CollectGraphs, OfAGraph)
{
    EXPECT_EQ(collected(package->content().at(3), GetParam().depth), GetParam().ofGraph);
}

INSTANTIATE_TEST_SUITE_P(Depths, CollectGraphs,
                         testing::Values(DepthCase{"All", AllDepths, "abcdef", "bc", "ef"},
                                         DepthCase{"None", 0, "ad", "b", "e"},
                                         DepthCase{"One", 1, "abde", "bc", "ef"},
                                         DepthCase{"Two", 2, "abcdef", "bc", "ef"},
                                         DepthCase{"Greatest", INT_MAX, "abcdef", "bc", "ef"},
                                         DepthCase{"OtherNegative", -2, "ad", "b", "e"},
                                         DepthCase{"Least", INT_MIN, "ad", "b", "e"}),
                         caseName<DepthCase>);

TEST(CollectGraphsOfOthers, FindsNone)
{
    const auto package = packageFrom(aForest());

    EXPECT_TRUE(collectGraphs(package->content().at(2)).empty());
    EXPECT_TRUE(collectGraphs(package->identifier()).empty());
}

TEST(CollectGraphsOfOthers, FindsNoneInAnEmptyPackage)
{
    EXPECT_TRUE(collectGraphs(*packageFrom(aPackage())).empty());
}

TEST(CollectGraphsOfOthers, GoesDownAsFarAsAFileNests)
{
    const std::string leaf = aGroup("g");
    const auto package = packageFrom(
        replaced(aPackage().containing(nestedGroups(1900)).text(), leaf, aGraph("deep")));

    EXPECT_EQ(collected(*package, AllDepths), "deep");
}

TEST(CollectGraphsOfOthers, AnswersBoxesThatEmptyWhenTheGraphDies)
{
    auto package = packageFrom(aForest());
    const auto graphs = collectGraphs(*package);

    package.reset();

    EXPECT_EQ(graphs.front().get(), nullptr);
}

} // namespace

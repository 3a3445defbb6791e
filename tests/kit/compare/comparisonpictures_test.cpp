#include "ksx/kit/comparisonpictures.h"

#include "data/filename.h"
#include "kit/graphpackages.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using Ksx::Kit::Box;
using Ksx::Kit::DrawnComparison;
using Ksx::Kit::Mark;
using Ksx::Kit::Wire;
using TestSupport::aBlend;
using TestSupport::aFilter;
using TestSupport::aFloatParameter;
using TestSupport::aFunctionNode;
using TestSupport::aGroup;
using TestSupport::aNode;
using TestSupport::fedBy;
using TestSupport::GraphText;
using TestSupport::packageWith;
using TestSupport::packageWithNodes;
using TestSupport::placedAt;
using TestSupport::TemporaryDirectory;

namespace {

using Marks = std::vector<Mark>;

Marks marksOf(const std::vector<Box>& boxes)
{
    Marks marks;
    for (const Box& box : boxes)
        marks.push_back(box.mark);
    return marks;
}

Marks marksOf(const std::vector<Wire>& wires)
{
    Marks marks;
    for (const Wire& wire : wires)
        marks.push_back(wire.mark);
    return marks;
}

class PicturesOfAComparison : public testing::Test
{
protected:
    DrawnComparison draw(const std::string& first, const std::string& second)
    {
        QString file;
        QString reason;
        return drawComparison({Orv::fromBytes(directory.write("a.obl", first))},
                              {Orv::fromBytes(directory.write("b.obl", second))}, options, file,
                              reason)
            .value();
    }

    TemporaryDirectory directory;
    Ksx::Kit::ComparisonOptions options;
};

std::string aFunction(const std::string& function)
{
    return "<function><identifier v=\"f\"/><uid v=\"9\"/><paraminputs/><type><value v=\"256\"/>"
           "</type><paramValue><dynamicValue><rootnode><value v=\"1\"/></rootnode><paramNodes>" +
           aFunctionNode(1, function) + "</paramNodes></dynamicValue></paramValue></function>";
}

} // namespace

TEST_F(PicturesOfAComparison, MarkNodesOfBothPackages)
{
    const auto drawn =
        draw(packageWithNodes(aBlend(1) + aBlend(3) + aNode(5, aFilter("blur"))),
             packageWithNodes(aBlend(1) + aBlend(3, {}, aFloatParameter("opacity", "1")) +
                              aNode(7, aFilter("levels"))));

    ASSERT_EQ(drawn.graphs.size(), 1u);
    EXPECT_EQ(drawn.graphs[0].place, QStringLiteral("pkg://g"));
    EXPECT_EQ(marksOf(drawn.graphs[0].before.boxes),
              (Marks{Mark::None, Mark::Changed, Mark::Removed}));
    EXPECT_EQ(marksOf(drawn.graphs[0].after.boxes),
              (Marks{Mark::None, Mark::Changed, Mark::Added}));
}

TEST_F(PicturesOfAComparison, MarkConnections)
{
    const auto drawn =
        draw(packageWithNodes(aBlend(1) + aBlend(3) + aBlend(5, fedBy(1))),
             packageWithNodes(aBlend(1) + aBlend(3, fedBy(1)) + aBlend(5, fedBy(3))));

    ASSERT_EQ(drawn.graphs.size(), 1u);
    EXPECT_EQ(marksOf(drawn.graphs[0].before.wires), Marks{Mark::Changed});
    EXPECT_EQ(marksOf(drawn.graphs[0].after.wires), (Marks{Mark::Added, Mark::Changed}));
    EXPECT_EQ(marksOf(drawn.graphs[0].after.boxes), (Marks{Mark::None, Mark::None, Mark::None}));
}

TEST_F(PicturesOfAComparison, MarkNodesThatHaveMovedInTheLayout)
{
    options.withLayout = true;

    const auto drawn = draw(packageWithNodes(placedAt(aBlend(1), "0 0 0")),
                            packageWithNodes(placedAt(aBlend(1), "90 0 0")));

    EXPECT_EQ(marksOf(drawn.graphs.at(0).after.boxes), Marks{Mark::Moved});
}

TEST_F(PicturesOfAComparison, MarkNodesOfFunctions)
{
    const auto drawn = draw(packageWith(aFunction("cos")), packageWith(aFunction("sin")));

    EXPECT_EQ(marksOf(drawn.graphs.at(0).after.boxes), Marks{Mark::Changed});
}

TEST_F(PicturesOfAComparison, ShowAnAddedGraphAlone)
{
    GraphText graph;
    graph.nodes = aBlend(1);

    const auto drawn = draw(packageWith({}), packageWith(graph.text()));

    EXPECT_TRUE(drawn.graphs.at(0).before.boxes.empty());
    EXPECT_EQ(marksOf(drawn.graphs[0].after.boxes), Marks{Mark::Added});
}

TEST_F(PicturesOfAComparison, LeaveOutGraphsWithTheSameNodes)
{
    const auto drawn =
        draw(packageWith(GraphText().text()), packageWith(GraphText().text() + aGroup("new")));

    EXPECT_EQ(drawn.differences.size(), 1u);
    EXPECT_TRUE(drawn.graphs.empty());
}

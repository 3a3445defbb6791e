#include "ksx/core/rootoutputcontroller.h"

#include "data/content/packageslist.h"
#include "data/content/rootoutput.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;

class RootOutput : public testing::Test
{
protected:
    RootOutputController& open(const std::string& rootOutput = aRootOutput(7))
    {
        GraphText graph;
        graph.outputs = anOutput("o", 7);
        graph.rootOutputs = rootOutput;
        package = &workspace.open(aPackage().containing(graph.text()));
        before = xmlOf(*package);
        return *controllerIn(*package).rootOutput(7);
    }
    const Ksx::Data::Content::RootOutput& rootOutput() const
    {
        return graphIn(*package)->root().rootOutputs().at(0);
    }
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

TEST_F(RootOutput, SaysWhatTheDocumentSays)
{
    const RootOutputController& controller =
        open(replaced(aRootOutput(7), "<value v=\"0\"/></format>",
                      "<value v=\"3\"/></format><mipmaps><value v=\"5\"/></mipmaps>"));

    EXPECT_EQ(controller.rootOutput(), &rootOutput());
    EXPECT_EQ(controller.graph(), graphIn(*package).get());
    EXPECT_EQ(controller.outputUid(), 7u);
    EXPECT_EQ(controller.format(), 3u);
    EXPECT_EQ(controller.mipmaps(), 5u);
}

TEST_F(RootOutput, HasNoMipmapsWhereThereAreNone)
{
    EXPECT_EQ(open().mipmaps(), 0u);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(RootOutput, TakesAFormatInOneEdit)
{
    RootOutputController& controller = open();

    EXPECT_TRUE(controller.setFormat(4294967295u));
    EXPECT_EQ(controller.format(), 4294967295u);
    EXPECT_EQ(workspace.names(), std::vector<std::string>{"Debug: set format of root output"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(RootOutput, TakesMipmapsInOneEdit)
{
    RootOutputController& controller = open();

    EXPECT_TRUE(controller.setMipmaps(2));
    EXPECT_EQ(controller.mipmaps(), 2u);
    EXPECT_EQ(workspace.names(),
              std::vector<std::string>{"Debug: set mipmaps level of root output"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(RootOutput, TakesTheFormatThatItHas)
{
    EXPECT_TRUE(open().setFormat(0));
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(RootOutput, KeepsTheOverloadsOfItsValues)
{
    const std::string overloads = "<valueOverloads><valueOverload><value v=\"8\"/>"
                                  "<configurations v=\"c\"/></valueOverload></valueOverloads>";
    RootOutputController& controller =
        open(replaced(aRootOutput(7), "<value v=\"0\"/>", "<value v=\"0\"/>" + overloads));
    controller.setFormat(1);

    EXPECT_EQ(xmlOf(rootOutput().format()), "<format><value v=\"1\"/>" + overloads + "</format>");
    EXPECT_TRUE(canBeUndone());
}

TEST(DeadRootOutput, SaysNothingAndTakesNothing)
{
    auto document = std::make_unique<Ksx::Data::Content::PackagesList>();
    GraphText text;
    text.rootOutputs = aRootOutput(7);
    document->content().pushBack(packageFrom(aPackage().containing(text.text())));
    const auto graph = graphIn(document->content().at(0));
    RootOutputController controller(graph->root().rootOutputs().at(0), *graph);

    document.reset();

    EXPECT_EQ(controller.rootOutput(), nullptr);
    EXPECT_EQ(controller.graph(), nullptr);
    EXPECT_EQ(controller.outputUid(), NoUid);
    EXPECT_EQ(controller.format(), 0u);
    EXPECT_EQ(controller.mipmaps(), 0u);
    EXPECT_FALSE(controller.setFormat(1));
    EXPECT_FALSE(controller.setMipmaps(1));
}

} // namespace

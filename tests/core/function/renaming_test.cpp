#include "ksx/core/renaming.h"

#include "data/content/compinstance.h"
#include "data/content/compnode.h"
#include "data/content/group.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/outputcontroller.h"
#include "support/functiontext.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::ContentObjectBase;
using Ksx::Data::Content::Package;

std::string aReader(unsigned uid, const std::string& input)
{
    return aDynamicValue(uid, aGetter(uid, "get_float1", 256, input));
}

std::string anInstanceOf(const std::string& path, const std::string& parameters = {})
{
    return "<compInstance><path><value v=\"" + path + "\"/></path>" +
           GraphText::list("parameters", parameters) + "<outputBridgings/></compInstance>";
}

class Renaming : public testing::Test
{
protected:
    // A graph with the inputs "x" and "y" of which "p" and "q" read one each.
    void openReaders()
    {
        GraphText graph;
        graph.inputs = anInput("x", 11, 256) + anInput("y", 12, 256);
        graph.outputs = anOutput("out", 13) + anOutput("other", 14);
        graph.parameters =
            aParameter("p", "0", aReader(21, "x")) + aParameter("q", "0", aReader(22, "y"));
        open(aPackage().containing(graph.text()));
    }
    void open(const PackageText& text) { package = &workspace.open(text, "/a.obl", 5); }
    const InputController& input(const std::string& identifier) const
    {
        return *controllerIn(*package).inputsController()->inputByIdentifier(identifier);
    }
    const OutputController& output(std::size_t index) const
    {
        return *controllerIn(*package).outputs().at(index);
    }
    const ContentObjectBase& content(std::size_t index) const
    {
        return package->content().at(index);
    }
    bool has(const std::string& text) const
    {
        return xmlOf(*package).find(text) != std::string::npos;
    }

    Workspace workspace{true};
    const Package* package = nullptr;
};

TEST_F(Renaming, OfAnInputIsFollowedByItsReaders)
{
    openReaders();
    EXPECT_TRUE(renameInput(input("x"), "width"));

    EXPECT_TRUE(has(aReader(21, "width")));
    EXPECT_TRUE(has(aReader(22, "y")));
    EXPECT_FALSE(has("\"x\""));
}

TEST_F(Renaming, IsOneEditThatCanBeUndone)
{
    openReaders();
    const std::string before = xmlOf(*package);
    renameInput(input("x"), "width");
    const std::string after = xmlOf(*package);

    EXPECT_EQ(workspace.editCount(), 1u);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_TRUE(workspace.redoAll());
    EXPECT_EQ(xmlOf(*package), after);
}

TEST_F(Renaming, GivesATakenIdentifierANumber)
{
    openReaders();

    EXPECT_TRUE(renameInput(input("x"), "y"));

    EXPECT_TRUE(has(aReader(21, "y_1")));
    EXPECT_TRUE(has(aReader(22, "y")));
}

TEST_F(Renaming, OfTheSecondInputOfANameLeavesTheReadersToTheFirst)
{
    GraphText graph;
    graph.inputs = anInput("x", 11, 256) + anInput("x", 12, 256);
    graph.parameters = aParameter("p", "0", aReader(21, "x"));
    open(aPackage().containing(graph.text()));

    EXPECT_TRUE(renameInput(*controllerIn(*package).inputsController()->inputByUid(12), "second"));

    EXPECT_TRUE(has(aReader(21, "x")));
    EXPECT_TRUE(has("<identifier v=\"second\"/>"));
}

TEST_F(Renaming, ToThePresentIdentifierRunsNoCommand)
{
    openReaders();

    EXPECT_TRUE(renameInput(input("x"), "x"));
    EXPECT_TRUE(renameOutput(output(0), "out"));
    EXPECT_TRUE(renameContent(content(0), "g"));

    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(Renaming, ToATextOfWhichNothingIsLegalIsRefused)
{
    openReaders();

    EXPECT_FALSE(renameInput(input("x"), ""));
    EXPECT_FALSE(renameOutput(output(0), "?"));
    EXPECT_FALSE(renameContent(content(0), "/"));

    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(Renaming, OfAnOutputGivesATakenIdentifierANumber)
{
    openReaders();

    EXPECT_TRUE(renameOutput(output(0), "other"));

    EXPECT_EQ(output(0).identifier(), "other_1");
}

TEST_F(Renaming, OfAnInputIsFollowedByInstances)
{
    GraphText shown;
    shown.inputs = anInput("x", 11, 256);
    GraphText user;
    user.identifier = "user";
    user.uid = 9;
    user.nodes = aNode(31, anInstanceOf("pkg://g", aParameter("x", "0", aConstant("Float1", "7"))));
    open(aPackage().containing(shown.text()).containing(user.text()));

    EXPECT_TRUE(renameInput(input("x"), "width"));

    EXPECT_TRUE(has(aParameter("width", "0", aConstant("Float1", "7")))) << xmlOf(*package);
}

TEST_F(Renaming, OfAGraphIsFollowedByThePathsToIt)
{
    GraphText user;
    user.identifier = "user";
    user.uid = 9;
    user.nodes = aNode(31, anInstanceOf("pkg://g"));
    open(aPackage().containing(GraphText().text()).containing(user.text()));

    EXPECT_TRUE(renameContent(content(0), "filter"));

    EXPECT_TRUE(has("\"pkg://filter\"")) << xmlOf(*package);
    const auto* const instance =
        dynamic_cast<const CompInstanceNodeController*>(controllerIn(*package, 1).nodeByUid(31));
    ASSERT_NE(instance, nullptr);
    EXPECT_TRUE(instance->referencedGraph());
}

TEST_F(Renaming, OfAGraphIsFollowedInOtherPackages)
{
    open(aPackage().containing(GraphText().text()));
    GraphText user;
    user.nodes = aNode(31, anInstanceOf("pkg://g?dependency=5"));
    const Package& other =
        workspace.open(aPackage().dependingOn("a.obl", 5).containing(user.text()), "/b.obl", 6);

    EXPECT_TRUE(renameContent(content(0), "filter"));

    EXPECT_NE(xmlOf(other).find("pkg://filter?dependency=5"), std::string::npos) << xmlOf(other);
}

TEST_F(Renaming, OfAGroupIsFollowedByThePathsThroughIt)
{
    open(aPackage()
             .containing(aGroup("tools", GraphText().text()))
             .containing(aGroupSaying("note", "pkg://tools/g?typeParam=CompNodeType")));

    EXPECT_TRUE(renameContent(content(0), "filters"));

    EXPECT_TRUE(has("\"pkg://filters/g?typeParam=CompNodeType\"")) << xmlOf(*package);
}

TEST_F(Renaming, LeavesPathsToOtherObjectsOfThatName)
{
    open(aPackage()
             .containing(GraphText().text())
             .containing(aGroup("tools", GraphText().text()))
             .containing(aGroupSaying("note", "pkg://tools/g")));

    EXPECT_TRUE(renameContent(content(0), "other"));

    EXPECT_TRUE(has("\"pkg://tools/g\"")) << xmlOf(*package);
}

TEST_F(Renaming, OfAnObjectOfNoPackageIsRefused)
{
    const Ksx::Data::Content::Group group;

    EXPECT_FALSE(renameContent(group, "g"));
}

} // namespace

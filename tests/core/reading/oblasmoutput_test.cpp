#include "reading/oblasmoutput.h"

#include "data/content/graph.h"
#include "support/assemblytext.h"
#include "support/shelfcases.h"
#include <QDomDocument>
#include <gtest/gtest.h>

using Ksx::Core::addOblasmOutput;
using Ksx::Data::Content::Graph;
using TestSupport::caseName;
using TestSupport::domOf;
using TestSupport::writtenAs;

namespace {

bool add(const std::string& text, Graph& graph)
{
    return addOblasmOutput(domOf(text).documentElement(), graph);
}

TEST(OblasmOutput, NeedsNothingButIdentifierAndUid)
{
    Graph graph;

    ASSERT_TRUE(add(R"(<output identifier="o" uid="6"/>)", graph));

    EXPECT_EQ(writtenAs(graph.graphOutputs()),
              R"(<graphOutputs><graphoutput><identifier v="o"/><uid v="6"/></graphoutput>)"
              "</graphOutputs>");
    EXPECT_EQ(writtenAs(graph.root().rootOutputs()),
              R"(<rootOutputs><rootOutput><output v="6"/><format><value v="0"/></format>)"
              R"(<usertag v=""/></rootOutput></rootOutputs>)");
}

TEST(OblasmOutput, GivesAGraphOutputAndARootOutput)
{
    Graph graph;

    ASSERT_TRUE(add(R"(<output identifier="o" uid="6" format="3" mipmaps="2" width="8" height="9")"
                    R"( dynamicsize="yes"><outputgui label="l" description="d" usertag="t")"
                    R"( group="g" widget="w"/></output>)",
                    graph));

    EXPECT_EQ(writtenAs(graph.graphOutputs()),
              R"(<graphOutputs><graphoutput><identifier v="o"/><uid v="6"/><attributes>)"
              R"(<label v="l"/><description v="d"/><usertags v="t"/></attributes></graphoutput>)"
              "</graphOutputs>");
    EXPECT_EQ(writtenAs(graph.root().rootOutputs()),
              R"(<rootOutputs><rootOutput><output v="6"/><format><value v="3"/></format>)"
              R"(<mipmaps><value v="2"/></mipmaps><usertag v=""/></rootOutput></rootOutputs>)");
}

TEST(OblasmOutput, TurnsChannelsIntoUsages)
{
    Graph graph;

    ASSERT_TRUE(add(R"(<output identifier="o" uid="6"><channels>)"
                    R"(<channel components="RGB" names="diffuse"/><channel components="A"/>)"
                    R"(<folly components="X"/></channels></output>)",
                    graph));

    const auto& usages = graph.graphOutputs().at(0).usages();
    ASSERT_EQ(usages.size(), 2u);
    EXPECT_EQ(usages.at(0).components().get(), "RGB");
    EXPECT_EQ(usages.at(0).name().get(), "diffuse");
    EXPECT_EQ(usages.at(1).components().get(), "A");
    EXPECT_EQ(usages.at(1).name().get(), "");
}

TEST(OblasmOutput, ComesBehindTheOthers)
{
    Graph graph;
    add(R"(<output identifier="a" uid="6"/>)", graph);

    add(R"(<output identifier="b" uid="7"/>)", graph);

    ASSERT_EQ(graph.graphOutputs().size(), 2u);
    EXPECT_EQ(graph.graphOutputs().at(1).identifier().get(), "b");
    ASSERT_EQ(graph.root().rootOutputs().size(), 2u);
    EXPECT_EQ(graph.root().rootOutputs().at(1).output().get(), 7u);
}

struct TextCase
{
    const char* name;
    std::string text;
};

std::ostream& operator<<(std::ostream& stream, const TextCase& c)
{
    return stream << c.name;
}

class BadOblasmOutput : public testing::TestWithParam<TextCase>
{};

TEST_P(BadOblasmOutput, FailsAndAddsNothing)
{
    Graph graph;

    EXPECT_FALSE(add(GetParam().text, graph));

    EXPECT_EQ(graph.graphOutputs().size(), 0u);
    EXPECT_EQ(graph.root().rootOutputs().size(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BadOblasmOutput,
    testing::Values(TextCase{"WithoutIdentifier", R"(<output uid="6"/>)"},
                    TextCase{"WithoutUid", R"(<output identifier="o"/>)"},
                    TextCase{"UidIsNoNumber", R"(<output identifier="o" uid="x"/>)"},
                    TextCase{"UidIsNegative", R"(<output identifier="o" uid="-1"/>)"},
                    TextCase{"UidIsEmpty", R"(<output identifier="o" uid=""/>)"}),
    caseName<TextCase>);

class OblasmOutputNumber : public testing::TestWithParam<TextCase>
{};

TEST_P(OblasmOutputNumber, ThatIsNoneIsPassedOver)
{
    Graph graph;

    ASSERT_TRUE(add("<output identifier=\"o\" uid=\"6\" " + GetParam().text + "/>", graph));

    EXPECT_EQ(writtenAs(graph.root().rootOutputs()),
              R"(<rootOutputs><rootOutput><output v="6"/><format><value v="0"/></format>)"
              R"(<usertag v=""/></rootOutput></rootOutputs>)");
}

INSTANTIATE_TEST_SUITE_P(Texts, OblasmOutputNumber,
                         testing::Values(TextCase{"FormatOfLetters", R"(format="x")"},
                                         TextCase{"FormatIsEmpty", R"(format="")"},
                                         TextCase{"FormatIsNegative", R"(format="-1")"},
                                         TextCase{"MipmapsOfLetters", R"(mipmaps="x")"},
                                         TextCase{"Both", R"(format="1.5" mipmaps="many")"}),
                         caseName<TextCase>);

class OblasmOutputState : public testing::TestWithParam<TextCase>
{};

TEST_P(OblasmOutputState, LeavesTheOutputOn)
{
    Graph graph;

    ASSERT_TRUE(add(
        R"(<output identifier="o" uid="6"><outputgui )" + GetParam().text + "/></output>", graph));

    EXPECT_FALSE(graph.graphOutputs().at(0).disabled().value().get());
}

INSTANTIATE_TEST_SUITE_P(Texts, OblasmOutputState,
                         testing::Values(TextCase{"Missing", ""},
                                         TextCase{"Visible", R"(state="visible")"},
                                         TextCase{"Hidden", R"(state="hidden")"},
                                         TextCase{"Other", R"(state="Disabled")"}),
                         caseName<TextCase>);

TEST(OblasmOutput, IsDisabledByItsState)
{
    Graph graph;

    ASSERT_TRUE(
        add(R"(<output identifier="o" uid="6"><outputgui state="disabled"/></output>)", graph));

    EXPECT_TRUE(graph.graphOutputs().at(0).disabled().value().get());
}

} // namespace

#include "reading/oblasmdocumentreader.h"

#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "reading/oblasmgraphplaces.h"
#include "support/assemblytext.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include <gtest/gtest.h>
#include <set>

using Ksx::Core::OBLASMAssembly;
using Ksx::Core::OBLASMDocumentReader;
using Ksx::Core::OBLASMGraphPlaces;
using Ksx::Data::Content::ContentInterface;
using Ksx::Data::Content::Graph;
using Ksx::Data::Content::Package;
using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;
using TestSupport::aDescribedGraph;
using TestSupport::aDescription;
using TestSupport::anAssemblyBody;
using TestSupport::caseName;
using TestSupport::domOf;
using TestSupport::writtenContent;

namespace {

// The validity test.

struct PairCase
{
    const char* name;
    std::string body;
    std::string description;
};

std::ostream& operator<<(std::ostream& stream, const PairCase& c)
{
    return stream << c.name;
}

bool isValid(const PairCase& pair)
{
    return OBLASMAssembly{QByteArray::fromStdString(pair.body), domOf(pair.description)}.isValid();
}

class ValidAssembly : public testing::TestWithParam<PairCase>
{};

TEST_P(ValidAssembly, IsAccepted)
{
    EXPECT_TRUE(isValid(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, ValidAssembly,
    testing::Values(
        PairCase{"Ordinary", anAssemblyBody(42), aDescription("", 42)},
        PairCase{"HeaderAlone", anAssemblyBody(42).substr(0, 16), aDescription("", 42)},
        PairCase{"UidOfFourBytes", anAssemblyBody(0x81020304), aDescription("", 0x81020304)},
        PairCase{"LargestUid", anAssemblyBody(4294967295), aDescription("", 4294967295)},
        PairCase{"UidZero", anAssemblyBody(0), aDescription("", 0)},
        PairCase{"WithoutGraphs", anAssemblyBody(42), R"(<obldescription asmuid="42"/>)"}),
    caseName<PairCase>);

class InvalidAssembly : public testing::TestWithParam<PairCase>
{};

TEST_P(InvalidAssembly, IsRefused)
{
    EXPECT_FALSE(isValid(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, InvalidAssembly,
    testing::Values(
        PairCase{"NoBytes", "", aDescription("")},
        PairCase{"MagicAlone", "OLAM", aDescription("", 0)},
        PairCase{"FifteenBytes", anAssemblyBody().substr(0, 15), aDescription("")},
        PairCase{"OtherMagic", "M" + anAssemblyBody().substr(1), aDescription("")},
        PairCase{"MagicInOtherCase", "olam" + anAssemblyBody().substr(4), aDescription("")},
        PairCase{"MagicBackwards", "MALO" + anAssemblyBody().substr(4), aDescription("")},
        PairCase{"OtherUid", anAssemblyBody(42), aDescription("", 43)},
        PairCase{"UidBigEndian", anAssemblyBody(0x2a000000), aDescription("", 42)},
        PairCase{"UidMissing", anAssemblyBody(0), "<obldescription/>"},
        PairCase{"UidEmpty", anAssemblyBody(0), R"(<obldescription asmuid=""/>)"},
        PairCase{"UidHexadecimal", anAssemblyBody(42), R"(<obldescription asmuid="0x2a"/>)"},
        PairCase{"UidNegative", anAssemblyBody(4294967295), R"(<obldescription asmuid="-1"/>)"},
        PairCase{"UidTooLarge", anAssemblyBody(0), R"(<obldescription asmuid="4294967296"/>)"},
        PairCase{"UidWithRest", anAssemblyBody(42), R"(<obldescription asmuid="42x"/>)"},
        PairCase{"OtherRoot", anAssemblyBody(42), R"(<description asmuid="42"/>)"}),
    caseName<PairCase>);

TEST(OblasmAssembly, WithoutADocumentIsRefused)
{
    const OBLASMAssembly assembly{QByteArray::fromStdString(anAssemblyBody()), {}};

    EXPECT_FALSE(assembly.isValid());
}

// Reading.

class OblasmReading : public testing::Test
{
protected:
    bool read(const std::string& description)
    {
        const OBLASMAssembly assembly{{}, domOf(description)};
        return OBLASMDocumentReader(assembly, &log).read(package);
    }
    // The content with one graph for each URL.
    std::string contentOf(const std::vector<std::string>& pkgUrls)
    {
        std::string graphs;
        for (const std::string& url : pkgUrls)
            graphs += aDescribedGraph(url);
        EXPECT_TRUE(read(aDescription(graphs)));
        return outlineOf(package.content());
    }
    // "wood noises(perlin,cells)": groups with parentheses.
    template <class List>
    static std::string outlineOf(const List& content)
    {
        std::string outline;
        for (const auto& item : content) {
            const auto* group = dynamic_cast<const Ksx::Data::Content::Group*>(&item);
            outline += (outline.empty() ? "" : " ") +
                       dynamic_cast<const ContentInterface&>(item).identifierAttribute().get() +
                       (group == nullptr ? "" : "(" + outlineOf(group->content()) + ")");
        }
        return outline;
    }

    Package package;
    MessageNode log;
};

TEST_F(OblasmReading, NeedsARoot)
{
    const OBLASMAssembly assembly;

    EXPECT_FALSE(OBLASMDocumentReader(assembly, &log).read(package));

    EXPECT_EQ(log.toText(), "Error: ERROR_FAIL_TO_RETRIEVE_OBLASM_FILE_DESCRIPTION\n");
}

TEST_F(OblasmReading, NeedsGraphs)
{
    EXPECT_FALSE(read(R"(<obldescription asmuid="42"/>)"));

    EXPECT_EQ(log.toText(), "Error: ERROR_NO_GRAPH_ARRAY_ELEMENT_FOUND\n");
    EXPECT_EQ(log.children().front()->level(), MessageLevel::Error);
}

TEST_F(OblasmReading, GraphsDeeperInsideDoNotCount)
{
    EXPECT_FALSE(read("<obldescription><x><graphs/></x></obldescription>"));
}

TEST_F(OblasmReading, NeedsNoLog)
{
    const OBLASMAssembly assembly;

    EXPECT_FALSE(OBLASMDocumentReader(assembly, nullptr).read(package));
}

TEST_F(OblasmReading, TranslatesItsMessages)
{
    const TestSupport::EchoTranslator translator;

    read("<obldescription/>");

    EXPECT_EQ(log.children().front()->text(),
              "Ksx::Core::OBLASMImporter|ERROR_NO_GRAPH_ARRAY_ELEMENT_FOUND");
}

TEST_F(OblasmReading, NoGraphsGiveAnEmptyPackage)
{
    EXPECT_TRUE(read(aDescription("")));

    EXPECT_EQ(package.content().size(), 0u);
    EXPECT_EQ(log.toText(), "");
}

TEST_F(OblasmReading, OtherElementsBetweenGraphsArePassedOver)
{
    EXPECT_TRUE(read(aDescription("<x/>" + aDescribedGraph("a") + "<y/>" + aDescribedGraph("b"))));

    EXPECT_EQ(outlineOf(package.content()), "a b");
}

struct UidCase
{
    const char* name;
    std::string attribute;
    std::string text;
};

std::ostream& operator<<(std::ostream& stream, const UidCase& c)
{
    return stream << c.name;
}

class OblasmFileUid : public OblasmReading, public testing::WithParamInterface<UidCase>
{};

TEST_P(OblasmFileUid, IsWrittenWithBraces)
{
    ASSERT_TRUE(read("<obldescription " + GetParam().attribute + "><graphs/></obldescription>"));

    EXPECT_EQ(package.fileUID().get(), GetParam().text);
}

const std::string SomeUuid = "{0a1b2c3d-1122-3344-5566-778899aabbcc}";
const std::string NullUuid = "{00000000-0000-0000-0000-000000000000}";

INSTANTIATE_TEST_SUITE_P(
    Texts, OblasmFileUid,
    testing::Values(
        UidCase{"Braces", R"(fileUid="{0a1b2c3d-1122-3344-5566-778899aabbcc}")", SomeUuid},
        UidCase{"NoBraces", R"(fileUid="0a1b2c3d-1122-3344-5566-778899aabbcc")", SomeUuid},
        UidCase{"Capitals", R"(fileUid="{0A1B2C3D-1122-3344-5566-778899AABBCC}")", SomeUuid},
        UidCase{"Missing", "", NullUuid}, UidCase{"Empty", R"(fileUid="")", NullUuid},
        UidCase{"Bad", R"(fileUid="folly")", NullUuid},
        UidCase{"Short", R"(fileUid="{0a1b2c3d-1122-3344-5566-778899aabb}")", NullUuid}),
    caseName<UidCase>);

TEST_F(OblasmReading, TheLastFileUidStands)
{
    ASSERT_TRUE(read(R"(<obldescription fileUid="{00000000-0000-0000-0000-000000000001}"><graphs/>)"
                     "</obldescription>"));

    ASSERT_TRUE(read(R"(<obldescription fileUid="{00000000-0000-0000-0000-000000000002}"><graphs/>)"
                     "</obldescription>"));

    EXPECT_EQ(package.fileUID().get(), "{00000000-0000-0000-0000-000000000002}");
}

TEST_F(OblasmReading, LeavesTheRestOfThePackage)
{
    package.identifier().assign("p");

    ASSERT_TRUE(read(aDescription(R"(<graph label="l" author="me" description="d"/>)")));

    EXPECT_EQ(package.identifier().get(), "p");
    EXPECT_EQ(package.author().get(), "");
    EXPECT_EQ(package.desc().get(), "");
    EXPECT_EQ(package.dependencies().size(), 0u);
}

// Graphs.

TEST_F(OblasmReading, AGraphHasItsTexts)
{
    ASSERT_TRUE(read(
        aDescription(R"(<graph pkgurl="wood" label="l" keywords="a;b" description="d" author="me")"
                     R"( authorurl="http://x" usertag="t"/>)")));

    EXPECT_EQ(writtenContent(package),
              R"(<content><graph><identifier v="wood"/><uid v="#"/><attributes><label v="l"/>)"
              R"(<author v="me"/><authorURL v="http://x"/><tags v="a;b"/><description v="d"/>)"
              R"(<usertags v="t"/></attributes><graphOutputs/><compNodes/><baseParameters/>)"
              "<content/><root/></graph></content>");
}

TEST_F(OblasmReading, AGraphHasInputsAndOutputsInTheirOrder)
{
    ASSERT_TRUE(read(aDescription(aDescribedGraph(
        "wood",
        R"(<input identifier="a" uid="1" type="0"/><x/><input identifier="b" uid="2" type="4"/>)",
        R"(<output identifier="c" uid="3"/><x/><output identifier="d" uid="4"/>)"))));

    const auto& graph = dynamic_cast<const Graph&>(package.content().at(0));
    ASSERT_EQ(graph.paraminputs().size(), 2u);
    EXPECT_EQ(graph.paraminputs().at(0).identifier().get(), "a");
    EXPECT_EQ(graph.paraminputs().at(1).type().value().get(), 16u);
    ASSERT_EQ(graph.graphOutputs().size(), 2u);
    EXPECT_EQ(graph.graphOutputs().at(0).uid().get(), 3u);
    EXPECT_EQ(graph.graphOutputs().at(1).identifier().get(), "d");
    EXPECT_EQ(graph.root().rootOutputs().size(), 2u);
}

TEST_F(OblasmReading, AnInputWithoutUidFailsTheGraph)
{
    EXPECT_FALSE(
        read(aDescription(aDescribedGraph("wood", R"(<input identifier="a" type="0"/>)"))));

    EXPECT_EQ(log.toText(), "Error: ERROR_FAIL_TO_CREATE_GRAPH\n  Error: wood: input a\n");
}

TEST_F(OblasmReading, AnOutputWithoutUidFailsTheGraph)
{
    EXPECT_FALSE(read(aDescription(aDescribedGraph("wood", "", R"(<output identifier="a"/>)"))));

    EXPECT_EQ(log.toText(), "Error: ERROR_FAIL_TO_CREATE_GRAPH\n  Error: wood: output a\n");
}

TEST_F(OblasmReading, AnInputWithoutANameIsToldByItsNumber)
{
    EXPECT_FALSE(
        read(aDescription(aDescribedGraph("a") +
                          aDescribedGraph("pkg://g/b", R"(<input identifier="a" uid="1" type="0"/>)"
                                                       R"(<x/><input identifier="" type="0"/>)"))));

    EXPECT_EQ(log.toText(), "Error: ERROR_FAIL_TO_CREATE_GRAPH\n  Error: pkg://g/b: input #2\n");
}

TEST_F(OblasmReading, ABadGraphEndsTheReading)
{
    EXPECT_FALSE(read(aDescription(aDescribedGraph("a") + aDescribedGraph("b", "<input/>") +
                                   aDescribedGraph("c"))));

    EXPECT_EQ(package.content().size(), 2u);
}

// Places.

struct PlaceCase
{
    const char* name;
    std::vector<std::string> pkgUrls;
    std::string outline;
};

std::ostream& operator<<(std::ostream& stream, const PlaceCase& c)
{
    return stream << c.name;
}

class OblasmGraphPlace : public OblasmReading, public testing::WithParamInterface<PlaceCase>
{};

TEST_P(OblasmGraphPlace, IsWhereItsUrlSays)
{
    EXPECT_EQ(contentOf(GetParam().pkgUrls), GetParam().outline);
}

INSTANTIATE_TEST_SUITE_P(
    Urls, OblasmGraphPlace,
    testing::Values(
        PlaceCase{"Scheme", {"pkg://wood"}, "wood"}, PlaceCase{"NoScheme", {"wood"}, "wood"},
        PlaceCase{"Query", {"pkg://wood?dependency=7"}, "wood"},
        PlaceCase{"SlashInTheQuery", {"pkg://wood?a/b?c"}, "wood"},
        PlaceCase{"Group", {"pkg://noises/perlin"}, "noises(perlin)"},
        PlaceCase{"Groups", {"pkg://a/b/c"}, "a(b(c))"},
        PlaceCase{"SameGroup", {"a/b", "c", "a/d"}, "a(b d) c"},
        PlaceCase{"GroupsOfOneNameInTwoPlaces", {"a/x/b", "c/x/d"}, "a(x(b)) c(x(d))"},
        PlaceCase{"EmptySegments", {"pkg:///a//b/"}, "a(b)"},
        PlaceCase{"Empty", {""}, "DEFAULT_NEW_GRAPH_IDENTIFIER"},
        PlaceCase{"SchemeAlone", {"pkg://"}, "DEFAULT_NEW_GRAPH_IDENTIFIER"},
        PlaceCase{"QueryAlone", {"pkg://?dependency=7"}, "DEFAULT_NEW_GRAPH_IDENTIFIER"},
        PlaceCase{
            "TwoEmpty", {"", ""}, "DEFAULT_NEW_GRAPH_IDENTIFIER DEFAULT_NEW_GRAPH_IDENTIFIER_1"},
        PlaceCase{"SameName", {"a", "a", "a"}, "a a_1 a_2"},
        PlaceCase{"MadeNameIsTaken", {"a_1", "a", "a"}, "a_1 a a_2"},
        PlaceCase{"MadeNameIsWantedLater", {"a", "a", "a_1"}, "a a_1 a_2"},
        PlaceCase{"NumberCountsOn", {"Graph_7", "Graph_7", "Graph_7"}, "Graph_7 Graph_8 Graph_9"},
        PlaceCase{"NumberThatIsTaken", {"a_8", "a_7", "a_7", "a_7"}, "a_8 a_7 a_9 a_10"},
        PlaceCase{"NumberBelowTheOthers", {"a_9", "a_9", "a_2", "a_2"}, "a_9 a_10 a_2 a_3"},
        PlaceCase{"NumberIsWrittenAnew", {"a_07", "a_07", "a_07"}, "a_07 a_7 a_8"},
        PlaceCase{"NoNumberBehindTheLastMark", {"a_7_b", "a_7_b"}, "a_7_b a_7_b_1"},
        PlaceCase{"SameNameInAGroup", {"g/a", "a", "g/a"}, "g(a a_1) a"},
        PlaceCase{"GraphLikeAGroup", {"a/b", "a"}, "a(b) a_1"},
        PlaceCase{"GroupLikeAGraph", {"a", "a/b", "a/c"}, "a a_1(b c)"},
        PlaceCase{"GroupByTheNameItGot", {"a", "a/b", "a_1/c"}, "a a_1(b c)"},
        PlaceCase{"OtherCase", {"a", "A"}, "a A"},
        PlaceCase{"OtherScheme", {"obl://a"}, "obl:(a)"}),
    caseName<PlaceCase>);

TEST_F(OblasmReading, AGraphWithoutUrlGetsTheDefaultName)
{
    ASSERT_TRUE(read(aDescription("<graph/>")));

    EXPECT_EQ(outlineOf(package.content()), "DEFAULT_NEW_GRAPH_IDENTIFIER");
}

TEST_F(OblasmReading, TheDefaultNameIsTranslated)
{
    const TestSupport::EchoTranslator translator;

    ASSERT_TRUE(read(aDescription("<graph/>")));

    EXPECT_EQ(outlineOf(package.content()),
              "Ksx::Data::Desc::Packages|DEFAULT_NEW_GRAPH_IDENTIFIER");
}

TEST_F(OblasmReading, FindsTheGroupsOfAFormerReading)
{
    ASSERT_TRUE(read(aDescription(aDescribedGraph("a/b") + aDescribedGraph("c"))));

    ASSERT_TRUE(read(aDescription(aDescribedGraph("a/b") + aDescribedGraph("c"))));

    EXPECT_EQ(outlineOf(package.content()), "a(b b_1) c c_1");
}

TEST_F(OblasmReading, SiblingsHaveDifferentUids)
{
    contentOf({"a", "b/x", "b/y", "c", "d/z"});

    std::set<unsigned> uids;
    for (const auto& item : package.content())
        uids.insert(dynamic_cast<const ContentInterface&>(item).uidAttribute().get());
    EXPECT_EQ(uids.size(), package.content().size());
    EXPECT_EQ(uids.count(0), 0u);
}

// In less than the time of a test only because no graph looks at those before it.
TEST_F(OblasmReading, ManyGraphsOfOneName)
{
    constexpr unsigned Count = 20000;

    contentOf(std::vector<std::string>(Count, "g/a"));

    const auto& group = dynamic_cast<const Ksx::Data::Content::Group&>(package.content().at(0));
    ASSERT_EQ(group.content().size(), Count);
    EXPECT_EQ(dynamic_cast<const Graph&>(group.content().at(Count - 1)).identifier().get(),
              "a_19999");
}

// In less than the time of a test only because no graph tries the numbers of those before it.
TEST_F(OblasmReading, ManyGraphsOfNumberedNames)
{
    constexpr unsigned Count = 20000;
    std::vector<std::string> urls;
    for (unsigned i = 0; i < 2 * Count; ++i)
        urls.push_back("a_" + std::to_string(i % Count + 1));

    contentOf(urls);

    ASSERT_EQ(package.content().size(), 2 * Count);
    EXPECT_EQ(dynamic_cast<const Graph&>(package.content().at(2 * Count - 1)).identifier().get(),
              "a_40000");
}

std::string inGroups(int count)
{
    std::string url = "pkg://";
    for (int i = 0; i < count; ++i)
        url += "a/";
    return url + "g";
}

TEST_F(OblasmReading, GroupsThatNestTooDeepFail)
{
    EXPECT_FALSE(
        read(aDescription(aDescribedGraph(inGroups(OBLASMGraphPlaces::MaximumDepth + 1)))));

    EXPECT_EQ(log.toText().toStdString(), "Error: ERROR_FAIL_TO_CREATE_GRAPH\n  Error: " +
                                              inGroups(OBLASMGraphPlaces::MaximumDepth + 1) + "\n");
    EXPECT_EQ(package.content().size(), 0u);
}

TEST_F(OblasmReading, TheDeepestGroupsCanBeReadAgain)
{
    ASSERT_TRUE(read(aDescription(
        aDescribedGraph(inGroups(OBLASMGraphPlaces::MaximumDepth),
                        R"(<input identifier="i" uid="1" type="0"><inputgui><guislider min="0"/>)"
                        "</inputgui></input>"))));

    const auto again = TestSupport::packageFrom(TestSupport::textOf(package));

    ASSERT_NE(again, nullptr);
    EXPECT_EQ(outlineOf(again->content()), outlineOf(package.content()));
}

} // namespace

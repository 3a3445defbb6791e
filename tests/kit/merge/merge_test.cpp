#include "ksx/kit/merge.h"

#include "data/filename.h"
#include "kit/graphpackages.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using Ksx::Kit::Conflict;
using Ksx::Kit::MergeOptions;
using Ksx::Kit::mergePackages;
using Ksx::Kit::MergeVersions;
using Ksx::Kit::Preference;
using TestSupport::aBlend;
using TestSupport::aComputedParameter;
using TestSupport::aFilter;
using TestSupport::aFloatParameter;
using TestSupport::aFunctionNode;
using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::anInput;
using TestSupport::aNode;
using TestSupport::anOutput;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::aRootOutput;
using TestSupport::caseName;
using TestSupport::fedBy;
using TestSupport::GraphText;
using TestSupport::packageWith;
using TestSupport::packageWithInputs;
using TestSupport::packageWithNodes;
using TestSupport::placedAt;
using TestSupport::replaced;
using TestSupport::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

// "place: within, object name, member: base | ours | theirs", without what is empty.
std::string lineOf(const Conflict& conflict)
{
    QStringList parts = conflict.within;
    parts.append((conflict.object + ' ' + conflict.name).trimmed());
    parts.append(conflict.member);
    parts.removeAll(QString());
    const QStringList values{conflict.base, conflict.ours, conflict.theirs};
    return (conflict.place + ": " + parts.join(", ") + ": " + values.join(" | ")).toStdString();
}

class MergeOf : public testing::Test
{
protected:
    QString at(const std::string& name) const { return Orv::fromBytes(directory.path(name)); }
    // Returns the conflicts, and the failure if there is one.
    Lines merge(const std::string& base, const std::string& ours, const std::string& theirs)
    {
        directory.write("base.obl", base);
        directory.write("ours.obl", ours);
        directory.write("theirs.obl", theirs);
        return mergeFiles({{at("base.obl")}, {at("ours.obl")}, {at("theirs.obl")}});
    }
    Lines mergeFiles(const MergeVersions& versions)
    {
        Lines lines;
        const auto result = mergePackages(versions, at("out.obl"), options, file, reason);
        if (!result)
            return {"failed: " + reason.toStdString()};
        for (const Conflict& conflict : result->conflicts)
            lines.push_back(lineOf(conflict));
        return lines;
    }
    std::string merged() const { return directory.read("out.obl"); }

    TemporaryDirectory directory;
    MergeOptions options;
    QString file;
    QString reason;
};

struct MergeCase
{
    const char* name;
    std::string base;
    std::string ours;
    std::string theirs;
    std::string merged;
};

std::ostream& operator<<(std::ostream& stream, const MergeCase& c)
{
    return stream << c.name;
}

class MergeJoins : public MergeOf, public testing::WithParamInterface<MergeCase>
{};

struct ConflictCase
{
    const char* name;
    std::string base;
    std::string ours;
    std::string theirs;
    Lines conflicts;
};

std::ostream& operator<<(std::ostream& stream, const ConflictCase& c)
{
    return stream << c.name;
}

class MergeRefuses : public MergeOf, public testing::WithParamInterface<ConflictCase>
{};

std::string withUid(std::string document, const std::string& from, const std::string& to)
{
    return replaced(std::move(document), "v=\"" + from + "\"", "v=\"" + to + "\"");
}

std::string aBlendOf(const std::string& opacity, const std::string& connexions = {})
{
    return aBlend(10, connexions, aFloatParameter("opacity", opacity));
}

std::string anInputCalled(const std::string& identifier, unsigned uid)
{
    return anInput(identifier, uid, 256);
}

// An instance of the graph of that path, in a graph of its own.
std::string aUserOf(const std::string& path)
{
    return withUid(aGraphWithInstance("user", path + "?dependency=5"), "4", "44");
}

std::string aGraphCalled(const std::string& identifier)
{
    return replaced(GraphText().text(), "v=\"g\"", "v=\"" + identifier + "\"");
}

std::string packageWithOutputs(const std::string& outputs, const std::string& rendered)
{
    GraphText graph;
    graph.outputs = outputs;
    graph.rootOutputs = rendered;
    return packageWith(graph.text());
}

std::string packageWithComment(const std::string& text)
{
    return replaced(packageWithNodes(aBlend(1)), "<content/><root/>",
                    "<content/><GUIObjects><GUIObject><type v=\"COMMENT\"/><GUIName v=\"" + text +
                        "\"/><uid v=\"8\"/></GUIObject></GUIObjects><root/>");
}

std::string aGroupBeside(const std::string& identifier, const std::string& content = {})
{
    return "<group><uid v=\"33\"/>" +
           aGroup(identifier, content).substr(aGroup("").find("<identifier"));
}

std::string aGraphBeside(const std::string& identifier)
{
    return withUid(aGraphCalled(identifier), "4", "45");
}

// A resource of that source. An empty one is none.
std::string packageWithSource(const std::string& source)
{
    return packageWith(
        replaced(aResource("r", "r.png"), "</resource>",
                 source.empty() ? "</resource>" : "<source>" + source + "</source></resource>"));
}

std::string aCopyOf(const std::string& filename)
{
    return "<externalcopy><filename v=\"" + filename +
           "\"/><lastModif v=\"\"/><checksum v=\"\"/></externalcopy>";
}

std::string anEmbedded(const std::string& data)
{
    return "<binembedded><datalength v=\"4\"/><strdata v=\"" + data + "\"/></binembedded>";
}

// Each of them has a connection to a node that is not there.
std::string manyNodesFedByNone(unsigned count)
{
    std::string nodes;
    for (unsigned uid = 100; uid < 100 + 2 * count; uid += 2)
        nodes += aBlend(uid, fedBy(9));
    return nodes;
}

} // namespace

TEST_P(MergeJoins, ChangesOfBothSides)
{
    EXPECT_EQ(merge(GetParam().base, GetParam().ours, GetParam().theirs), Lines());
    EXPECT_EQ(merged(), GetParam().merged);
}

TEST_P(MergeJoins, TheSameWhicheverSideIsOurs)
{
    EXPECT_EQ(merge(GetParam().base, GetParam().theirs, GetParam().ours), Lines());
    EXPECT_EQ(merged(), GetParam().merged);
}

INSTANTIATE_TEST_SUITE_P(
    Members, MergeJoins,
    testing::Values(
        MergeCase{"NoneAtAll", packageWithNodes(aBlend(1)), packageWithNodes(aBlend(1)),
                  packageWithNodes(aBlend(1)), packageWithNodes(aBlend(1))},
        MergeCase{"OfOneSideAlone", packageWithNodes(aBlendOf("0.5")),
                  packageWithNodes(aBlendOf("0.75")), packageWithNodes(aBlendOf("0.5")),
                  packageWithNodes(aBlendOf("0.75"))},
        MergeCase{"TheSameOnBothSides", packageWithNodes(aBlendOf("0.5")),
                  packageWithNodes(aBlendOf("0.75")), packageWithNodes(aBlendOf("0.75")),
                  packageWithNodes(aBlendOf("0.75"))},
        MergeCase{"AValueAndAConnection", packageWithNodes(aBlend(1) + aBlendOf("0.5")),
                  packageWithNodes(aBlend(1) + aBlendOf("0.75")),
                  packageWithNodes(aBlend(1) + aBlendOf("0.5", fedBy(1))),
                  packageWithNodes(aBlend(1) + aBlendOf("0.75", fedBy(1)))},
        MergeCase{"ThePackageAndAGraph", aPackage().containing(GraphText().text()).text(),
                  aPackage().with("author", "me").containing(GraphText().text()).text(),
                  aPackage().containing(aGraphCalled("h")).text(),
                  aPackage().with("author", "me").containing(aGraphCalled("h")).text()},
        MergeCase{"TwoNodesOfAFunction",
                  packageWithNodes(aBlend(1, {},
                                          aComputedParameter("opacity", 1,
                                                             aFunctionNode(1, "cos") +
                                                                 aFunctionNode(2, "sin")))),
                  packageWithNodes(aBlend(1, {},
                                          aComputedParameter("opacity", 1,
                                                             aFunctionNode(1, "sqrt") +
                                                                 aFunctionNode(2, "sin")))),
                  packageWithNodes(aBlend(1, {},
                                          aComputedParameter("opacity", 1,
                                                             aFunctionNode(1, "cos") +
                                                                 aFunctionNode(2, "tan")))),
                  packageWithNodes(aBlend(1, {},
                                          aComputedParameter("opacity", 1,
                                                             aFunctionNode(1, "sqrt") +
                                                                 aFunctionNode(2, "tan"))))},
        MergeCase{"OneSourceForAnother", packageWithSource(aCopyOf("a")),
                  packageWithSource(anEmbedded("data")), packageWithSource(aCopyOf("a")),
                  packageWithSource(anEmbedded("data"))},
        MergeCase{"ASourceForNone", packageWithSource({}), packageWithSource(aCopyOf("a")),
                  packageWithSource({}), packageWithSource(aCopyOf("a"))},
        MergeCase{"TheSameSourceOnBothSides", packageWithSource({}),
                  packageWithSource(anEmbedded("data")), packageWithSource(anEmbedded("data")),
                  packageWithSource(anEmbedded("data"))},
        MergeCase{"TwoPlacesOfOneNode", packageWithNodes(placedAt(aBlend(1), "0 0 0")),
                  packageWithNodes(placedAt(aBlend(1), "1 0 0")),
                  packageWithNodes(placedAt(aBlend(1), "2 0 0")),
                  packageWithNodes(placedAt(aBlend(1), "2 0 0"))}),
    caseName<MergeCase>);

INSTANTIATE_TEST_SUITE_P(
    Items, MergeJoins,
    testing::Values(
        MergeCase{"AddedAtOnePlace", packageWithNodes(aBlend(1)),
                  packageWithNodes(aBlend(1) + aBlend(7, fedBy(1))),
                  packageWithNodes(aBlend(1) + aBlend(5)),
                  packageWithNodes(aBlend(1) + aBlend(5) + aBlend(7, fedBy(1)))},
        MergeCase{"AddedWhereTheyStand", packageWithNodes(aBlend(1) + aBlend(3)),
                  packageWithNodes(aBlend(5) + aBlend(1) + aBlend(3)),
                  packageWithNodes(aBlend(1) + aBlend(7) + aBlend(3)),
                  packageWithNodes(aBlend(5) + aBlend(1) + aBlend(7) + aBlend(3))},
        MergeCase{"AddedAlikeOnBothSides", packageWithNodes(aBlend(1)),
                  packageWithNodes(aBlend(1) + aBlend(5)), packageWithNodes(aBlend(1) + aBlend(5)),
                  packageWithNodes(aBlend(1) + aBlend(5))},
        MergeCase{"RemovedOnOneSide", packageWithNodes(aBlend(1) + aBlend(3)),
                  packageWithNodes(aBlend(1)), packageWithNodes(aBlend(1) + aBlend(3)),
                  packageWithNodes(aBlend(1))},
        MergeCase{"RemovedOnBothSides", packageWithNodes(aBlend(1) + aBlend(3)),
                  packageWithNodes(aBlend(1)), packageWithNodes(aBlend(1)),
                  packageWithNodes(aBlend(1))},
        MergeCase{"InAnotherOrder",
                  packageWithInputs(anInputCalled("a", 7) + anInputCalled("b", 8)),
                  packageWithInputs(anInputCalled("b", 8) + anInputCalled("a", 7)),
                  packageWithInputs(anInputCalled("a", 7) + anInputCalled("c", 9) +
                                    anInputCalled("b", 8)),
                  packageWithInputs(anInputCalled("b", 8) + anInputCalled("a", 7) +
                                    anInputCalled("c", 9))},
        MergeCase{"RenderedOnBothSides", packageWithOutputs({}, {}),
                  packageWithOutputs(anOutput("p", 9), aRootOutput(9)),
                  packageWithOutputs(anOutput("o", 7), aRootOutput(7)),
                  packageWithOutputs(anOutput("o", 7) + anOutput("p", 9),
                                     aRootOutput(7) + aRootOutput(9))},
        MergeCase{"RenderedOnBothSidesByOneName", packageWithOutputs({}, {}),
                  packageWithOutputs(anOutput("o", 9), aRootOutput(9)),
                  packageWithOutputs(anOutput("o", 7), aRootOutput(7)),
                  packageWithOutputs(anOutput("o", 7), aRootOutput(7))},
        MergeCase{"InOneOtherOrderOnBothSides",
                  packageWithInputs(anInputCalled("a", 7) + anInputCalled("b", 8) +
                                    anInputCalled("c", 9)),
                  packageWithInputs(anInputCalled("c", 9) + anInputCalled("a", 7) +
                                    anInputCalled("b", 8)),
                  packageWithInputs(anInputCalled("c", 9) + anInputCalled("a", 7)),
                  packageWithInputs(anInputCalled("c", 9) + anInputCalled("a", 7))},
        MergeCase{"WithUidsOfTheirOwn", packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))),
                  packageWithNodes(aBlend(21) + aBlend(23, fedBy(21)) + aBlend(25, fedBy(23))),
                  packageWithNodes(aBlend(1) + aBlend(3, fedBy(1)) + aBlend(7, fedBy(3))),
                  packageWithNodes(aBlend(1) + aBlend(3, fedBy(1)) + aBlend(7, fedBy(3)) +
                                   aNode(25, aFilter("blend"), fedBy(3), 26, 1))}),
    caseName<MergeCase>);

INSTANTIATE_TEST_SUITE_P(
    Contents, MergeJoins,
    testing::Values(
        MergeCase{"MovedAndChanged",
                  packageWith(withUid(aGroup("a"), "3", "33") + GraphText().text()),
                  packageWith(withUid(aGroup("a", GraphText().text()), "3", "33")),
                  packageWith(withUid(aGroup("a"), "3", "33") + aGraphCalled("h")),
                  packageWith(withUid(aGroup("a", aGraphCalled("h")), "3", "33"))},
        MergeCase{"RenamedAndUsed", packageWith(GraphText().text()), packageWith(aGraphCalled("h")),
                  packageWith(GraphText().text() + aUserOf("pkg://g")),
                  packageWith(aGraphCalled("h") + aUserOf("pkg://h"))},
        MergeCase{"RenamedForAnotherOne", packageWith(GraphText().text() + aUserOf("pkg://g")),
                  packageWith(aGraphCalled("h") + aGraphBeside("g") + aUserOf("pkg://h")),
                  packageWith(GraphText().text() + aUserOf("pkg://g")),
                  packageWith(aGraphCalled("h") + aGraphBeside("g") + aUserOf("pkg://h"))},
        MergeCase{"RenamedWithAnErrorOfTheOtherSide", packageWithNodes(aBlend(1)),
                  replaced(packageWithNodes(aBlend(1)), "v=\"g\"", "v=\"h\""),
                  packageWithNodes(aBlend(1, fedBy(9))),
                  replaced(packageWithNodes(aBlend(1, fedBy(9))), "v=\"g\"", "v=\"h\"")},
        MergeCase{"RemovedWithAllInIt", packageWith(aGroup("a", GraphText().text())),
                  packageWith({}), packageWith(aGroup("a", GraphText().text())), packageWith({})},
        MergeCase{
            "AddedWithOneNumber", packageWith({}), packageWith(aGroup("a")),
            packageWith(withUid(aGraphCalled("g"), "4", "2")),
            packageWith(withUid(aGraphCalled("g"), "4", "2") + withUid(aGroup("a"), "2", "3"))},
        MergeCase{"OneDependencyAddedTwice", aPackage().dependingOnItself(5).text(),
                  aPackage().dependingOnItself(5).dependingOn("?x.obl", 9).text(),
                  aPackage().dependingOnItself(5).dependingOn("?x.obl", 7).text(),
                  aPackage().dependingOnItself(5).dependingOn("?x.obl", 7).text()}),
    caseName<MergeCase>);

TEST_P(MergeRefuses, WhatDoesNotJoin)
{
    EXPECT_EQ(merge(GetParam().base, GetParam().ours, GetParam().theirs), GetParam().conflicts);
    EXPECT_FALSE(directory.exists("out.obl"));
}

INSTANTIATE_TEST_SUITE_P(
    Conflicts, MergeRefuses,
    testing::Values(
        ConflictCase{"TwoValues",
                     packageWithNodes(aBlendOf("0.5")),
                     packageWithNodes(aBlendOf("0.75")),
                     packageWithNodes(aBlendOf("1")),
                     {"pkg://g: node 10 (blend), parameter opacity, paramValue: 0.5 | 0.75 | 1"}},
        ConflictCase{"TwoCommentsInOnePlace",
                     packageWithComment("dark"),
                     packageWithComment("darker"),
                     packageWithComment("bright"),
                     {"pkg://g: comment 8, GUIName: dark | darker | bright"}},
        ConflictCase{"ACommentRemovedAndChanged",
                     packageWithComment("dark"),
                     packageWithNodes(aBlend(1)),
                     packageWithComment("bright"),
                     {"pkg://g: comment 8:  |  | "}},
        ConflictCase{"TwoSources",
                     packageWithSource({}),
                     packageWithSource(aCopyOf("a")),
                     packageWithSource(anEmbedded("data")),
                     {"pkg://r: resource r, source:  | externalcopy | binembedded"}},
        ConflictCase{"ASourceChangedAndReplaced",
                     packageWithSource(aCopyOf("a")),
                     packageWithSource(aCopyOf("b")),
                     packageWithSource(anEmbedded("data")),
                     {"pkg://r: resource r, source: externalcopy | externalcopy | binembedded"}},
        ConflictCase{"TwoConnections",
                     packageWithNodes(aBlend(1) + aBlend(3) + aBlendOf("1")),
                     packageWithNodes(aBlend(1) + aBlend(3) + aBlendOf("1", fedBy(1))),
                     packageWithNodes(aBlend(1) + aBlend(3) + aBlendOf("1", fedBy(3))),
                     {"pkg://g: node 10 (blend), connection source:  | node 1, output 2 | node 3, "
                      "output 4"}},
        ConflictCase{"RemovedAndChanged",
                     packageWithNodes(aBlend(1) + aBlendOf("0.5")),
                     packageWithNodes(aBlend(1)),
                     packageWithNodes(aBlend(1) + aBlendOf("1")),
                     {"pkg://g: node 10: blend |  | blend"}},
        ConflictCase{"RemovedAndFed",
                     packageWithNodes(aBlend(1) + aBlend(3)),
                     packageWithNodes(aBlend(3)),
                     packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))),
                     {"pkg://g: node 1: blend |  | blend"}},
        ConflictCase{"FedInACircle",
                     packageWithNodes(aBlend(1) + aBlend(3)),
                     packageWithNodes(aBlend(1, fedBy(3)) + aBlend(3)),
                     packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))),
                     {"pkg://g: package:  |  | "}},
        ConflictCase{"RemovedAndUsed",
                     packageWith(GraphText().text()),
                     packageWith({}),
                     packageWith(GraphText().text() + aUserOf("pkg://g")),
                     {"pkg://g: graph g: 0 nodes |  | 0 nodes"}},
        ConflictCase{"DependencyRemovedAndUsed",
                     aPackage().dependingOnItself(5).text(),
                     aPackage().text(),
                     packageWith(GraphText().text() + aUserOf("pkg://g")),
                     {": dependency ?himself:  |  | "}},
        ConflictCase{"TwoNames",
                     packageWith(GraphText().text()),
                     packageWith(aGraphCalled("h")),
                     packageWith(aGraphCalled("i")),
                     {"pkg://h: graph h, identifier: g | h | i"}},
        ConflictCase{"OneNameForTwo",
                     packageWith({}),
                     packageWith(GraphText().text()),
                     packageWith(aGroup("g")),
                     {": package:  |  | "}},
        ConflictCase{"RemovedWithAnAddition",
                     packageWith(aGroup("a")),
                     packageWith({}),
                     packageWith(aGroup("a", GraphText().text())),
                     {"pkg://a: group a:  |  | "}},
        ConflictCase{"TwoOrders",
                     packageWithInputs(anInputCalled("a", 7) + anInputCalled("b", 8) +
                                       anInputCalled("c", 9)),
                     packageWithInputs(anInputCalled("b", 8) + anInputCalled("a", 7) +
                                       anInputCalled("c", 9)),
                     packageWithInputs(anInputCalled("a", 7) + anInputCalled("c", 9) +
                                       anInputCalled("b", 8)),
                     {"pkg://g: graph g, paraminputs:  |  | "}}),
    caseName<ConflictCase>);

// Preferences.

TEST_F(MergeOf, TakesOurValueInAConflictIfItIsTold)
{
    options.preference = Preference::Ours;

    EXPECT_EQ(merge(packageWithNodes(aBlendOf("0.5")), packageWithNodes(aBlendOf("0.75")),
                    packageWithNodes(aBlendOf("1")))
                  .size(),
              1u);

    EXPECT_EQ(merged(), packageWithNodes(aBlendOf("0.75")));
}

TEST_F(MergeOf, TakesTheirValueInAConflictIfItIsTold)
{
    options.preference = Preference::Theirs;

    EXPECT_EQ(merge(packageWithNodes(aBlendOf("0.5")), packageWithNodes(aBlendOf("0.75")),
                    packageWithNodes(aBlendOf("1")))
                  .size(),
              1u);

    EXPECT_EQ(merged(), packageWithNodes(aBlendOf("1")));
}

TEST_F(MergeOf, TakesTheWholeSourceOfThePreferredSide)
{
    options.preference = Preference::Theirs;

    merge(packageWithSource(aCopyOf("a")), packageWithSource(aCopyOf("b")),
          packageWithSource(anEmbedded("data")));

    EXPECT_EQ(merged(), packageWithSource(anEmbedded("data")));
}

TEST_F(MergeOf, KeepsWhatThePreferredSideHasKept)
{
    options.preference = Preference::Theirs;

    merge(packageWith(aGroup("a")), packageWith({}), packageWith(aGroup("a", GraphText().text())));

    EXPECT_EQ(merged(), packageWith(aGroup("a", GraphText().text())));
}

TEST_F(MergeOf, RemovesWhatThePreferredSideHasRemoved)
{
    options.preference = Preference::Ours;

    merge(packageWith(aGroup("a")), packageWith({}), packageWith(aGroup("a", GraphText().text())));

    EXPECT_EQ(merged(), packageWith({}));
}

TEST_F(MergeOf, DropsTheConnectionToANodeThatThePreferredSideHasRemoved)
{
    options.preference = Preference::Ours;

    merge(packageWithNodes(aBlend(1) + aBlend(3)), packageWithNodes(aBlend(3)),
          packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))));

    EXPECT_EQ(merged(), packageWithNodes(aBlend(3)));
}

TEST_F(MergeOf, KeepsTheNodeThatThePreferredSideHasConnected)
{
    options.preference = Preference::Theirs;

    merge(packageWithNodes(aBlend(1) + aBlend(3)), packageWithNodes(aBlend(3)),
          packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))));

    EXPECT_EQ(merged(), packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))));
}

TEST_F(MergeOf, KeepsTheGraphThatThePreferredSideHasUsed)
{
    options.preference = Preference::Theirs;

    merge(packageWith(GraphText().text()), packageWith({}),
          packageWith(GraphText().text() + aUserOf("pkg://g")));

    EXPECT_EQ(merged(), packageWith(GraphText().text() + aUserOf("pkg://g")));
}

TEST_F(MergeOf, LeavesAnObjectInItsPlaceIfItsNewOwnerIsRemoved)
{
    options.preference = Preference::Ours;
    const std::string graph = GraphText().text();

    merge(packageWith(aGroup("a") + graph), packageWith(graph), packageWith(aGroup("a", graph)));

    EXPECT_EQ(merged(), packageWith(graph));
}

TEST_F(MergeOf, MovesObjectsIntoEachOtherAsThePreferredSideHasThem)
{
    options.preference = Preference::Ours;
    const std::string ours = packageWith(aGroup("a", aGroupBeside("b")));

    merge(packageWith(aGroup("a") + aGroupBeside("b")), ours,
          packageWith(aGroupBeside("b", aGroup("a"))));

    EXPECT_EQ(merged(), ours);
}

TEST_F(MergeOf, KeepsTheGraphThatThePreferredSideHasUsedOnceMore)
{
    options.preference = Preference::Theirs;
    const std::string user = aUserOf("pkg://g");
    const std::string other = withUid(replaced(user, "v=\"user\"", "v=\"other\""), "44", "45");

    merge(packageWith(GraphText().text() + user), packageWith({}),
          packageWith(GraphText().text() + user + other));

    EXPECT_EQ(merged(), packageWith(GraphText().text() + other));
}

TEST_F(MergeOf, WritesNothingWithAFaultThatNeitherSideHas)
{
    options.preference = Preference::Ours;

    EXPECT_EQ(merge(packageWithNodes(aBlend(1) + aBlend(3)),
                    packageWithNodes(aBlend(1, fedBy(3)) + aBlend(3)),
                    packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))))
                  .size(),
              1u);

    EXPECT_FALSE(directory.exists("out.obl"));
}

TEST_F(MergeOf, LeavesManyFaultsToThePackagesThatHaveThem)
{
    const std::string nodes = manyNodesFedByNone(150);
    const std::string first = aBlend(5, fedBy(9));
    const std::string second = aBlend(7, fedBy(9));

    EXPECT_EQ(merge(packageWithNodes(first + second + nodes), packageWithNodes(first + nodes),
                    packageWithNodes(second + nodes)),
              Lines());
}

// Files.

TEST_F(MergeOf, ReadsAndWritesFilesOfOtherNames)
{
    directory.write("wood/x.png", "x");
    const std::string text = packageWith(aResource("r", "x.png"));
    const QString place = at("wood/a.obl");
    const MergeVersions versions{{Orv::fromBytes(directory.write("1", text)), place},
                                 {Orv::fromBytes(directory.write("2", text)), place},
                                 {Orv::fromBytes(directory.write("3", text)), place}};

    ASSERT_TRUE(mergePackages(versions, at("2"), options, file, reason)) << reason.toStdString();

    EXPECT_EQ(directory.read("2"), text);
}

TEST_F(MergeOf, JoinsTwoPackagesWithoutABase)
{
    directory.write("ours.obl", packageWith(aGroup("a")));
    directory.write("theirs.obl", packageWith(aGroup("a")));

    EXPECT_EQ(
        mergeFiles(
            {{QStringLiteral("/dev/null"), at("base.obl")}, {at("ours.obl")}, {at("theirs.obl")}}),
        Lines());

    EXPECT_EQ(merged(), packageWith(aGroup("a")));
}

TEST_F(MergeOf, NamesTheFileThatCannotBeRead)
{
    EXPECT_EQ(merge(packageWith({}), "<", packageWith({})).size(), 1u);

    EXPECT_EQ(file, at("ours.obl"));
    EXPECT_FALSE(directory.exists("out.obl"));
}

TEST_F(MergeOf, WritesNoFileOfAnotherFormat)
{
    directory.write("a.obl", packageWith({}));

    EXPECT_FALSE(mergePackages({{at("a.obl")}, {at("a.obl")}, {at("a.obl")}}, at("out.oblar"),
                               options, file, reason));

    EXPECT_EQ(reason, QStringLiteral("The name of a merged package ends with .obl"));
}

TEST_F(MergeOf, NamesATargetThatCannotBeWritten)
{
    directory.write("a.obl", packageWith({}));

    EXPECT_FALSE(mergePackages({{at("a.obl")}, {at("a.obl")}, {at("a.obl")}}, at("none/out.obl"),
                               options, file, reason));

    EXPECT_EQ(file, at("none/out.obl"));
}

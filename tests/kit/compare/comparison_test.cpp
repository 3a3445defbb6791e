#include "ksx/kit/comparison.h"

#include "data/filename.h"
#include "kit/graphpackages.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include <QFileInfo>
#include <gtest/gtest.h>

using Ksx::Kit::ComparisonOptions;
using Ksx::Kit::describePackage;
using Ksx::Kit::Difference;
using Ksx::Kit::PackageVersion;
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
using TestSupport::caseName;
using TestSupport::fedBy;
using TestSupport::GraphText;
using TestSupport::packageWith;
using TestSupport::packageWithInputs;
using TestSupport::packageWithNodes;
using TestSupport::placedAt;
using TestSupport::replaced;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

// "kind place: within, object name, member: before -> after", without what is empty.
std::string lineOf(const Difference& difference)
{
    QStringList parts = difference.within;
    parts.append((difference.object + ' ' + difference.name).trimmed());
    parts.append(difference.member);
    parts.removeAll(QString());
    const QString values = difference.before + QStringLiteral(" -> ") + difference.after;
    return (wordOf(difference.kind) + ' ' + difference.place + ": " + parts.join(", ") + ": " +
            values)
        .toStdString();
}

Lines linesOf(const std::vector<Difference>& differences)
{
    Lines lines;
    for (const Difference& difference : differences)
        lines.push_back(lineOf(difference));
    return lines;
}

class ComparisonOf : public testing::Test
{
protected:
    Lines compare(const std::string& first, const std::string& second)
    {
        return compareFiles({Orv::fromBytes(directory.write("a.obl", first))},
                            {Orv::fromBytes(directory.write("b.obl", second))});
    }
    Lines compareFiles(const PackageVersion& first, const PackageVersion& second)
    {
        return linesOf(comparePackages(first, second, options, file, reason)
                           .value_or(std::vector<Difference>()));
    }

    TemporaryDirectory directory;
    ComparisonOptions options;
    QString file;
    QString reason;
};

struct ComparisonCase
{
    const char* name;
    std::string first;
    std::string second;
    Lines differences;
};

std::ostream& operator<<(std::ostream& stream, const ComparisonCase& c)
{
    return stream << c.name;
}

class ComparisonFinds : public ComparisonOf, public testing::WithParamInterface<ComparisonCase>
{};

std::string withUids(std::string document, const std::string& from, const std::string& to)
{
    return replaced(std::move(document), "v=\"" + from + "\"", "v=\"" + to + "\"");
}

// Three blends in a row, of which the last one has an opacity.
std::string aRow(const std::string& opacity)
{
    return packageWithNodes(aBlend(10) + aBlend(20, fedBy(10)) +
                            aBlend(30, fedBy(20), aFloatParameter("opacity", opacity)));
}

std::string withOtherUids(const std::string& row)
{
    return withUids(withUids(withUids(row, "10", "110"), "20", "120"), "30", "130");
}

} // namespace

TEST_P(ComparisonFinds, WhatIsDifferent)
{
    EXPECT_EQ(compare(GetParam().first, GetParam().second), GetParam().differences)
        << reason.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Nodes, ComparisonFinds,
    testing::Values(
        ComparisonCase{"Same", packageWithNodes(aBlend(1)), packageWithNodes(aBlend(1)), {}},
        ComparisonCase{"Added",
                       packageWithNodes(aBlend(1)),
                       packageWithNodes(aBlend(1) + aNode(3, aFilter("blur"))),
                       {"added pkg://g: node 3:  -> blur"}},
        ComparisonCase{"Removed",
                       packageWithNodes(aBlend(1) + aNode(3, aFilter("blur"))),
                       packageWithNodes(aBlend(1)),
                       {"removed pkg://g: node 3: blur -> "}},
        ComparisonCase{"OfAnotherFilter",
                       packageWithNodes(aNode(1, aFilter("blend"))),
                       packageWithNodes(aNode(1, aFilter("blur"))),
                       {"changed pkg://g: node 1, compImplementation/filter: blend -> blur"}},
        ComparisonCase{"InAnotherOrder",
                       packageWithNodes(aBlend(1) + aBlend(3)),
                       packageWithNodes(aBlend(3) + aBlend(1)),
                       {}},
        ComparisonCase{"AtAnotherPlace",
                       packageWithNodes(placedAt(aBlend(1), "0 0 0")),
                       packageWithNodes(placedAt(aBlend(1), "5 0 0")),
                       {}}),
    caseName<ComparisonCase>);

INSTANTIATE_TEST_SUITE_P(
    Connections, ComparisonFinds,
    testing::Values(
        ComparisonCase{"Added",
                       packageWithNodes(aBlend(1) + aBlend(3)),
                       packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))),
                       {"added pkg://g: node 3 (blend), connection source:  -> node 1, output 2"}},
        ComparisonCase{"FromAnotherNode",
                       packageWithNodes(aBlend(1) + aBlend(3) + aBlend(5, fedBy(1))),
                       packageWithNodes(aBlend(1) + aBlend(3) + aBlend(5, fedBy(3))),
                       {"changed pkg://g: node 5 (blend), connection source: node 1, output 2 -> "
                        "node 3, output 4"}},
        ComparisonCase{"FromANodeOfAnotherUid", aRow("0.5"), withOtherUids(aRow("0.5")), {}}),
    caseName<ComparisonCase>);

INSTANTIATE_TEST_SUITE_P(
    Uids, ComparisonFinds,
    testing::Values(ComparisonCase{"OfANodeWithAnotherValue",
                                   aRow("0.5"),
                                   withOtherUids(aRow("0.75")),
                                   {"changed pkg://g: node 130 (blend), parameter opacity, "
                                    "paramValue: 0.5 -> 0.75"}},
                    ComparisonCase{"OfAGraph",
                                   packageWith(GraphText().text()),
                                   withUids(packageWith(GraphText().text()), "4", "44"),
                                   {}},
                    ComparisonCase{"OfAnInput",
                                   packageWithInputs(anInput("i", 7, 256)),
                                   packageWithInputs(anInput("i", 8, 256)),
                                   {}},
                    ComparisonCase{
                        "OfADependency",
                        packageWith(aGraphWithInstance("g", "pkg://x?dependency=5")),
                        replaced(packageWith(aGraphWithInstance("g", "pkg://x?dependency=5")),
                                 "5\"", "6\""),
                        {}}),
    caseName<ComparisonCase>);

INSTANTIATE_TEST_SUITE_P(
    Parameters, ComparisonFinds,
    testing::Values(
        ComparisonCase{"OfAnotherValue",
                       packageWithNodes(aBlend(1, {}, aFloatParameter("opacity", "0.5"))),
                       packageWithNodes(aBlend(1, {}, aFloatParameter("opacity", "1"))),
                       {"changed pkg://g: node 1 (blend), parameter opacity, paramValue: 0.5 -> "
                        "1"}},
        ComparisonCase{"Computed",
                       packageWithNodes(aBlend(1, {}, aFloatParameter("opacity", "0.5"))),
                       packageWithNodes(aBlend(
                           1, {}, aComputedParameter("opacity", 1, aFunctionNode(1, "cos")))),
                       {"changed pkg://g: node 1 (blend), parameter opacity, paramValue: 0.5 -> a "
                        "function of 1 node"}},
        ComparisonCase{
            "ComputedByAnotherFunction",
            packageWithNodes(aBlend(1, {},
                                    aComputedParameter("opacity", 1, aFunctionNode(1, "cos")))),
            packageWithNodes(aBlend(1, {},
                                    aComputedParameter("opacity", 1, aFunctionNode(1, "sin")))),
            {"changed pkg://g: node 1 (blend), parameter opacity, function node 1, "
             "function: cos -> sin"}},
        ComparisonCase{"Added",
                       packageWithNodes(aBlend(1)),
                       packageWithNodes(aBlend(1, {}, aFloatParameter("opacity", "1"))),
                       {"added pkg://g: node 1 (blend), parameter opacity:  -> 1"}}),
    caseName<ComparisonCase>);

INSTANTIATE_TEST_SUITE_P(
    Interfaces, ComparisonFinds,
    testing::Values(ComparisonCase{"InputAdded",
                                   packageWithInputs(anInput("a", 7, 256)),
                                   packageWithInputs(anInput("a", 7, 256) + anInput("b", 8, 1)),
                                   {"added pkg://g: input b:  -> color"}},
                    ComparisonCase{"InputRenamed",
                                   packageWithInputs(anInput("a", 7, 256)),
                                   packageWithInputs(anInput("b", 7, 256)),
                                   {"renamed pkg://g: input b: a -> b"}},
                    ComparisonCase{"InputMoved",
                                   packageWithInputs(anInput("a", 7, 256) + anInput("b", 8, 256) +
                                                     anInput("c", 9, 256)),
                                   packageWithInputs(anInput("c", 9, 256) + anInput("a", 7, 256) +
                                                     anInput("b", 8, 256)),
                                   {"moved pkg://g: input c: 3 -> 1"}},
                    ComparisonCase{"InputOfAnotherType",
                                   packageWithInputs(anInput("a", 7, 256)),
                                   packageWithInputs(anInput("a", 7, 2048)),
                                   {"changed pkg://g: input a, type: float1 -> float4"}},
                    ComparisonCase{"OutputRemoved",
                                   [] {
                                       GraphText graph;
                                       graph.outputs = anOutput("o", 9);
                                       return packageWith(graph.text());
                                   }(),
                                   packageWith(GraphText().text()),
                                   {"removed pkg://g: output o:  -> "}}),
    caseName<ComparisonCase>);

INSTANTIATE_TEST_SUITE_P(
    Contents, ComparisonFinds,
    testing::Values(
        ComparisonCase{"PackageOfAnotherAuthor",
                       aPackage().with("author", "a").text(),
                       aPackage().with("author", "b").text(),
                       {"changed : package, author: a -> b"}},
        ComparisonCase{"PackageRenamed",
                       aPackage().named("a").text(),
                       aPackage().named("b").text(),
                       {"renamed : package: a -> b"}},
        ComparisonCase{"GroupWithAllInIt",
                       packageWith({}),
                       packageWith(aGroup("a", aGroup("b"))),
                       {"added pkg://a: group a:  -> "}},
        ComparisonCase{"ResourceOfAnotherFile",
                       packageWith(aResource("r", "x.png")),
                       packageWith(aResource("r", "y.png")),
                       {"changed pkg://r: resource r, filepath: x.png -> y.png"}},
        ComparisonCase{"GraphMoved",
                       packageWith(withUids(aGroup("a"), "3", "33") + GraphText().text()),
                       packageWith(withUids(aGroup("a", GraphText().text()), "3", "33")),
                       {"moved pkg://a/g: graph g: pkg://g -> pkg://a/g"}},
        ComparisonCase{
            "GraphMovedToANewGroup",
            packageWith(GraphText().text()),
            packageWith(aGroup("a", GraphText().text())),
            {"moved pkg://a/g: graph g: pkg://g -> pkg://a/g", "added pkg://a: group a:  -> "}},
        ComparisonCase{"GroupRemovedAndAnotherOneAdded",
                       packageWith(aGroup("a", GraphText().text())),
                       packageWith(withUids(aGroup("b"), "2", "3")),
                       {"removed pkg://a: group a:  -> ", "added pkg://b: group b:  -> "}},
        ComparisonCase{"EmptyGroupRemovedAndAnotherOneAdded",
                       packageWith(aGroup("a")),
                       packageWith(withUids(aGroup("b"), "2", "3")),
                       {"removed pkg://a: group a:  -> ", "added pkg://b: group b:  -> "}},
        ComparisonCase{"GroupRenamedWithAnotherUid",
                       packageWith(aGroup("a", GraphText().text())),
                       packageWith(withUids(aGroup("b", GraphText().text()), "2", "3")),
                       {"renamed pkg://b: group b: a -> b"}},
        ComparisonCase{
            "GraphRenamedWithItsInstances",
            packageWith(GraphText().text() +
                        withUids(aGraphWithInstance("user", "pkg://g?dependency=5"), "4", "44")),
            packageWith(replaced(GraphText().text(), "v=\"g\"", "v=\"h\"") +
                        withUids(aGraphWithInstance("user", "pkg://h?dependency=5"), "4", "44")),
            {"renamed pkg://h: graph h: g -> h"}},
        ComparisonCase{"DependencyAdded",
                       aPackage().text(),
                       aPackage().dependingOn("x.obl", 6).text(),
                       {"added : dependency x.obl:  -> "}}),
    caseName<ComparisonCase>);

TEST_F(ComparisonOf, PositionsCountWithTheLayout)
{
    options.withLayout = true;

    EXPECT_EQ(compare(packageWithNodes(placedAt(aBlend(1), "0 0 0")),
                      packageWithNodes(placedAt(aBlend(1), "5 0 0"))),
              Lines{"moved pkg://g: node 1, GUILayout/gpos: 0 0 0 -> 5 0 0"});
}

TEST_F(ComparisonOf, NamesTheNodesOfADifference)
{
    directory.write("a.obl", aRow("0.5"));
    directory.write("b.obl", withOtherUids(aRow("1")));

    const auto found =
        comparePackages({Orv::fromBytes(directory.path("a.obl"))},
                        {Orv::fromBytes(directory.path("b.obl"))}, options, file, reason);

    ASSERT_EQ(found.value().size(), 1u);
    EXPECT_EQ(found->front().nodeBefore, 30u);
    EXPECT_EQ(found->front().nodeAfter, 130u);
}

TEST_F(ComparisonOf, ReferencesOfTwoFoldersAreTheSameByTheirTexts)
{
    const std::string text = packageWith(aResource("r", "pictures/x.png"));
    const QString first = Orv::fromBytes(directory.write("one/a.obl", text));
    const QString second = Orv::fromBytes(directory.write("two/a.obl", text));

    EXPECT_EQ(compareFiles({first}, {second}), Lines());
    EXPECT_EQ(reason, QString());
}

TEST_F(ComparisonOf, AFileOfAnotherNameIsReadAsOneAtItsPlace)
{
    const QString copy = Orv::fromBytes(directory.write("copy.tmp", packageWith(aGroup("g"))));
    const QString place = Orv::fromBytes(directory.write("a.obl", packageWith({})));

    EXPECT_EQ(compareFiles({copy, place}, {place}), Lines{"removed pkg://g: group g:  -> "});
}

TEST_F(ComparisonOf, NothingIsAPackageWithoutContent)
{
    const QString place = Orv::fromBytes(directory.write("a.obl", packageWith(aGroup("g"))));

    EXPECT_EQ(compareFiles({QStringLiteral("/dev/null"), place}, {place}),
              (Lines{"added : package package:  -> ", "added pkg://g: group g:  -> "}));
}

// A difference for each of many values in an object would repeat its name.
TEST_F(ComparisonOf, CutsLongNamesOfTheObjectsAround)
{
    const std::string name(5000, 'x');
    const std::string node =
        aNode(1, aFilter(name, aFloatParameter("opacity", "1") + aFloatParameter(name, "1")));
    const std::string text = packageWithNodes(node);

    compare(text, replaced(text, "<value v=\"1\"/></constant", "<value v=\"2\"/></constant"));
    const auto found =
        comparePackages({Orv::fromBytes(directory.path("a.obl"))},
                        {Orv::fromBytes(directory.path("b.obl"))}, options, file, reason);

    ASSERT_EQ(found.value().size(), 2u);
    EXPECT_LT(found->front().within.front().size(), 1100);
    EXPECT_LT(found->back().name.size(), 1100);
}

TEST_F(ComparisonOf, NamesTheFileThatCannotBeRead)
{
    const QString file1 = Orv::fromBytes(directory.write("a.obl", packageWith({})));
    const QString file2 = Orv::fromBytes(directory.write("b.obl", "<"));

    EXPECT_FALSE(comparePackages({file1}, {file2}, options, file, reason));

    EXPECT_EQ(file, file2);
    EXPECT_FALSE(reason.isEmpty());
}

// Descriptions.

TEST_F(ComparisonOf, ADescriptionHasALineForEachFact)
{
    const QString place = Orv::fromBytes(directory.write("a.obl", aRow("0.5")));

    const QStringList lines = describePackage({place}, options, reason).value();

    EXPECT_TRUE(lines.contains(
        QStringLiteral("graph pkg://g, node 30 (blend), parameter opacity, paramValue = 0.5")));
    EXPECT_TRUE(lines.contains(
        QStringLiteral("graph pkg://g, node 30 (blend), connection source = node 20, output 21")));
}

TEST_F(ComparisonOf, ADescriptionOfALineBreakIsOneLine)
{
    const QString place = Orv::fromBytes(
        directory.write("a.obl", aPackage().withElement("desc", "<desc v=\"a&#10;b\"/>").text()));

    const QStringList lines = describePackage({place}, options, reason).value();

    EXPECT_TRUE(lines.contains(QStringLiteral("package, desc = a\\nb")));
}

// The packages of examples/, in which nothing may be lost.

class ComparedExample : public ComparisonOf, public testing::WithParamInterface<const char*>
{};

TEST_P(ComparedExample, IsTheSameAsItself)
{
    const QString place = QString::fromStdString(sourcePath("examples/") + GetParam());
    options.withLayout = true;

    EXPECT_EQ(compareFiles({place}, {place}), Lines());
    EXPECT_EQ(reason, QString());
}

INSTANTIATE_TEST_SUITE_P(Examples, ComparedExample,
                         testing::Values("wood/wood_planks.obl", "bricks/brick_wall.obl",
                                         "mixed/everything.obl", "noises/noises.obl",
                                         "fabrics/woven_fabric.obl", "effects/surface_rust.obl",
                                         "old/felt.obl", "old/roof_tiles.obl",
                                         "assemblies/stone_filters.oblar"));

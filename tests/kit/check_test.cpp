#include "ksx/kit/check.h"

#include "data/filename.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <gtest/gtest.h>

using Ksx::Kit::checkPackage;
using Ksx::Kit::Finding;
using Ksx::Kit::FindingCode;
using Ksx::Kit::FindingKind;
using Ksx::Kit::findingKinds;
using TestSupport::aConnexion;
using TestSupport::aFilter;
using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::aGroupSaying;
using TestSupport::anInput;
using TestSupport::anInputBridge;
using TestSupport::aNode;
using TestSupport::anOutputBridge;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::caseName;
using TestSupport::GraphText;
using TestSupport::replaced;
using TestSupport::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

class CheckOf : public testing::Test
{
protected:
    CheckOf()
    {
        directory.write("x.png", "x");
        directory.write("b.obl", aPackage().containing(aGroup("there")).text());
    }

    std::vector<Finding> check(const std::string& document)
    {
        const std::string file = directory.write("a.obl", document);
        return checkPackage(Orv::fromBytes(file), {}, reason).value_or(std::vector<Finding>());
    }

    TemporaryDirectory directory;
    QString reason;
};

// "code place" for each finding, and the code alone for one of the package as a whole.
Lines linesOf(const std::vector<Finding>& findings)
{
    Lines lines;
    for (const Finding& finding : findings) {
        const std::string place = finding.place.toStdString();
        lines.push_back(finding.kind().name + (place.empty() ? "" : " " + place));
    }
    return lines;
}

std::string packageWith(const std::string& content)
{
    return aPackage().dependingOnItself(5).containing(content).text();
}

GraphText graphWithNodes(const std::string& nodes)
{
    GraphText graph;
    graph.nodes = nodes;
    return graph;
}

std::string packageWithNodes(const std::string& nodes)
{
    return packageWith(graphWithNodes(nodes).text());
}

std::string aBlend(unsigned uid, const std::string& connexions = {})
{
    return aNode(uid, aFilter("blend"), connexions, uid + 100, 1);
}

std::string aParameter(const std::string& name, const std::string& value)
{
    return "<parameter><name v=\"" + name + "\"/><paramValue>" + value +
           "</paramValue></parameter>";
}

std::string aConstant(const std::string& value)
{
    return "<constantValueFloat1><value v=\"" + value + "\"/></constantValueFloat1>";
}

std::string aFunctionNode(unsigned uid, const std::string& function,
                          const std::string& connexions = {})
{
    return "<paramNode><uid v=\"" + std::to_string(uid) + "\"/><function v=\"" + function +
           "\"/><type><value v=\"256\"/></type><connexions>" + connexions +
           "</connexions></paramNode>";
}

std::string aBody(unsigned root, const std::string& nodes)
{
    return "<dynamicValue><rootnode><value v=\"" + std::to_string(root) +
           "\"/></rootnode><paramNodes>" + nodes + "</paramNodes></dynamicValue>";
}

// A graph with one blend, whose opacity is computed.
std::string packageComputing(const std::string& body)
{
    return packageWithNodes(aNode(1, aFilter("blend", aParameter("opacity", body))));
}

std::string packageWithRange(const std::string& defaultValue, const std::string& bounds)
{
    GraphText graph;
    graph.inputs = replaced(anInput("i", 7, 256, aConstant(defaultValue)), "<options/>",
                            "<options>" + bounds + "</options>");
    return packageWith(graph.text());
}

// An FX-map with one set of parameters, and nodes of the FX-map.
std::string anFxMap(unsigned uid, const std::string& nodes)
{
    return aNode(
        uid, replaced(aFilter("fxmaps"), "</compFilter>",
                      "<paramsGraphs><paramsGraph><name v=\"\"/><uid v=\"81\"/>"
                      "<paramsGraphDatas><paramsGraphData><identifier v=\"set\"/>"
                      "<uid v=\"82\"/><type v=\"paramset\"/></paramsGraphData>"
                      "</paramsGraphDatas><paramsGraphNodes>" +
                          nodes + "</paramsGraphNodes></paramsGraph></paramsGraphs></compFilter>"));
}

std::string anFxMapNode(unsigned uid, const std::string& data, const std::string& connexions = {})
{
    return "<paramsGraphNode><uid v=\"" + std::to_string(uid) + "\"/><type v=\"paramset\"/>" +
           GraphText::list("connexions", connexions) + "<data v=\"" + data +
           "\"/></paramsGraphNode>";
}

// Two components, and options of the widget.
std::string packageWithPair(const std::string& defaultValue, const std::string& bounds)
{
    GraphText graph;
    graph.inputs = replaced(
        anInput("i", 7, 512,
                "<constantValueFloat2><value v=\"" + defaultValue + "\"/></constantValueFloat2>"),
        "<options/>", "<options>" + bounds + "</options>");
    return packageWith(graph.text());
}

std::string anOption(const std::string& name, const std::string& value)
{
    return "<option><name v=\"" + name + "\"/><value v=\"" + value + "\"/></option>";
}

struct CheckCase
{
    const char* name;
    std::string document;
    Lines findings;
};

std::ostream& operator<<(std::ostream& stream, const CheckCase& c)
{
    return stream << c.name;
}

class CheckFinds : public CheckOf, public testing::WithParamInterface<CheckCase>
{};

const char* const Node1 = "pkg://g?typeParam=CompNodeType&compNodeUidParam=1";

} // namespace

TEST_P(CheckFinds, WhatIsWrongAndWhere)
{
    EXPECT_EQ(linesOf(check(GetParam().document)), GetParam().findings) << reason.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Packages, CheckFinds,
    testing::Values(
        CheckCase{
            "NothingInASoundOne",
            packageWith(aGroup("r", aResource("r", "x.png")) + graphWithNodes(aBlend(1)).text()),
            {}},
        CheckCase{"NoDocument", "<", {"unreadable-package"}},
        CheckCase{"AnotherRoot", "<library/>", {"unreadable-package"}},
        CheckCase{"CutContent",
                  replaced(packageWith(aGroup("g")), "</content>", ""),
                  {"unreadable-package"}},
        CheckCase{
            "TooNew", replaced(aPackage().text(), "1.1.0.7049", "9.0.0.0"), {"unreadable-package"}},
        CheckCase{"Old", replaced(aPackage().text(), "1.1.0.7049", "1.1.0.6141"), {"old-format"}}),
    caseName<CheckCase>);

INSTANTIATE_TEST_SUITE_P(
    Elements, CheckFinds,
    testing::Values(
        CheckCase{"Missing",
                  aPackage().without("author").text(),
                  {"unreadable-package", "missing-element"}},
        CheckCase{"MissingInAGroup",
                  packageWith(replaced(aGroup("outer", aGroup("g")), "<content/>", "")),
                  {"unreadable-package", "missing-element pkg://outer/g"}},
        CheckCase{"Unknown",
                  replaced(aPackage().text(), "<author", "<stage><a/></stage><author"),
                  {"unknown-element"}},
        CheckCase{"UnknownItem", packageWith(aGroup("g", "<stage/>")), {"unknown-item pkg://g"}},
        CheckCase{"Double",
                  replaced(aPackage().text(), "<author", "<platform v=\"1\"/><author"),
                  {"double-element"}},
        CheckCase{"BadNumber",
                  aPackage().with("platform", "one").text(),
                  {"unreadable-package", "bad-value"}},
        CheckCase{"BadVector",
                  replaced(packageWithRange("0.5", ""), "v=\"0.5\"", "v=\"0.5 1\""),
                  {"unreadable-package", "bad-value pkg://g"}}),
    caseName<CheckCase>);

INSTANTIATE_TEST_SUITE_P(
    Names, CheckFinds,
    testing::Values(
        CheckCase{"DoubleInTheContent",
                  packageWith(aGroup("g", aGroup("a") + aGroup("a"))),
                  {"double-uid pkg://g", "double-identifier pkg://g"}},
        CheckCase{"DoubleInputs",
                  [] {
                      GraphText graph;
                      graph.inputs = anInput("i", 7, 256) + anInput("i", 7, 256);
                      return packageWith(graph.text());
                  }(),
                  {"double-uid pkg://g", "double-identifier pkg://g"}},
        CheckCase{"DoubleNodes", packageWithNodes(aBlend(1) + aBlend(1)), {"double-uid pkg://g"}},
        CheckCase{"DoubleConnections",
                  packageWithNodes(aBlend(2) + aBlend(1, aConnexion("source", 2, 102) +
                                                             aConnexion("source", 2, 102))),
                  {std::string("double-identifier ") + Node1}},
        CheckCase{"DoubleDependencies",
                  aPackage().dependingOnItself(5).dependingOn("b.obl", 5).text(),
                  {"double-uid"}}),
    caseName<CheckCase>);

INSTANTIATE_TEST_SUITE_P(
    Graphs, CheckFinds,
    testing::Values(
        CheckCase{"ConnectionFromNoNode",
                  packageWithNodes(aBlend(1, aConnexion("source", 9, 109))),
                  {"dangling-uid pkg://g"}},
        CheckCase{"ConnectionFromNoOutput",
                  packageWithNodes(aBlend(2) + aBlend(1, aConnexion("source", 2, 9))),
                  {std::string("dangling-uid ") + Node1}},
        CheckCase{"NodeOfNoInput",
                  packageWithNodes(aNode(1, anInputBridge(9))),
                  {std::string("dangling-uid ") + Node1}},
        CheckCase{"NodeOfNoOutput",
                  packageWithNodes(aNode(1, anOutputBridge(9))),
                  {std::string("dangling-uid ") + Node1}},
        CheckCase{"NoPrimaryInput",
                  [] {
                      GraphText graph;
                      graph.primaryInput = "9";
                      return packageWith(graph.text());
                  }(),
                  {"dangling-uid pkg://g"}},
        CheckCase{"CycleOfNodes",
                  packageWithNodes(aBlend(1, aConnexion("source", 2, 102)) +
                                   aBlend(2, aConnexion("source", 1, 101))),
                  {"node-cycle pkg://g"}},
        CheckCase{"NodeThatFeedsItself",
                  packageWithNodes(aBlend(1, aConnexion("source", 1, 101))),
                  {"node-cycle pkg://g"}},
        CheckCase{"UnknownFilter",
                  packageWithNodes(aNode(1, aFilter("sparkle"))),
                  {std::string("unknown-filter ") + Node1}},
        CheckCase{"UnknownParameter",
                  packageWithNodes(aNode(1, aFilter("blend", aParameter("glow", aConstant("1"))))),
                  {std::string("unknown-parameter ") + Node1}},
        CheckCase{"UnknownFunction",
                  packageComputing(aBody(3, aFunctionNode(3, "guess"))),
                  {std::string("unknown-function ") + Node1}},
        CheckCase{"NothingInAnFxMap", packageWithNodes(anFxMap(1, anFxMapNode(83, "82"))), {}},
        CheckCase{"NoParameterSetOfAnFxMap",
                  packageWithNodes(anFxMap(1, anFxMapNode(83, "9"))),
                  {std::string("dangling-uid ") + Node1}},
        CheckCase{
            "CycleInAnFxMap",
            packageWithNodes(anFxMap(1, anFxMapNode(83, "82", aConnexion("output1", 84, 0)) +
                                            anFxMapNode(84, "82", aConnexion("output1", 83, 0)))),
            {std::string("node-cycle ") + Node1}},
        CheckCase{"NoResultOfAFunction",
                  packageComputing(aBody(9, aFunctionNode(3, "cos"))),
                  {std::string("dangling-uid ") + Node1}},
        CheckCase{"CycleInAFunction",
                  packageComputing(aBody(3, aFunctionNode(3, "cos", aConnexion("a", 4, 0)) +
                                                aFunctionNode(4, "cos", aConnexion("a", 3, 0)))),
                  {std::string("node-cycle ") + Node1}}),
    caseName<CheckCase>);

INSTANTIATE_TEST_SUITE_P(
    Ranges, CheckFinds,
    testing::Values(
        CheckCase{
            "Below", packageWithRange("-0.5", anOption("min", "0")), {"out-of-range pkg://g"}},
        CheckCase{"Above", packageWithRange("2", anOption("max", "1")), {"out-of-range pkg://g"}},
        CheckCase{"OneComponentAboveItsOwnBound",
                  packageWithPair("0.5 2", anOption("max", "3 1")),
                  {"out-of-range pkg://g"}},
        CheckCase{"NothingForComponentsWithinTheirBounds",
                  packageWithPair("0.5 2", anOption("min", "0 0") + anOption("max", "1 3")),
                  {}},
        CheckCase{"NothingForBoundsOfAnotherNumber",
                  packageWithPair("0.5 2", anOption("max", "0 0 0")),
                  {}},
        CheckCase{"NothingAtTheBounds",
                  packageWithRange("1", anOption("min", "1") + anOption("max", "1")),
                  {}},
        CheckCase{
            "NothingForABoundThatIsNone", packageWithRange("1", anOption("max", "none")), {}}),
    caseName<CheckCase>);

INSTANTIATE_TEST_SUITE_P(
    References, CheckFinds,
    testing::Values(
        CheckCase{"UnknownDependency",
                  packageWith(aGroupSaying("g", "pkg://g?dependency=9")),
                  {"unknown-dependency pkg://g"}},
        CheckCase{"DanglingPath",
                  packageWith(aGroupSaying("g", "pkg://none?dependency=5")),
                  {"dangling-path pkg://g"}},
        CheckCase{
            "DanglingPathToANode",
            packageWith(aGroupSaying("s", "pkg://g?typeParam=CompNodeType&compNodeUidParam=9") +
                        replaced(graphWithNodes(aBlend(1)).text(), "v=\"4\"", "v=\"44\"")),
            {"dangling-path pkg://s"}},
        CheckCase{"DanglingPathIntoAnotherPackage",
                  aPackage()
                      .dependingOn("b.obl", 6)
                      .containing(aGroupSaying("g", "pkg://none?dependency=6"))
                      .text(),
                  {"dangling-path pkg://g"}},
        CheckCase{"NothingForAPathIntoAnotherPackage",
                  aPackage()
                      .dependingOn("b.obl", 6)
                      .containing(aGroupSaying("g", "pkg://there?dependency=6"))
                      .text(),
                  {}},
        CheckCase{"MissingDependency",
                  aPackage()
                      .dependingOn("none.obl", 6)
                      .containing(aGroupSaying("g", "pkg://there?dependency=6"))
                      .text(),
                  {"missing-dependency"}},
        CheckCase{"UnreadableDependency",
                  aPackage()
                      .dependingOn("x.png", 6)
                      .containing(aGroupSaying("g", "pkg://there?dependency=6"))
                      .text(),
                  {"unreadable-dependency"}},
        CheckCase{
            "UnusedDependency", aPackage().dependingOn("b.obl", 6).text(), {"unused-dependency"}},
        CheckCase{"MissingResource",
                  packageWith(aGroup("g", aResource("r", "none.png"))),
                  {"missing-resource pkg://g/r"}},
        CheckCase{
            "CycleOfGraphs",
            packageWith(aGroup("s", aGraphWithInstance("a", "pkg://s/b?dependency=5") +
                                        replaced(aGraphWithInstance("b", "pkg://s/a?dependency=5"),
                                                 "<uid v=\"4\"/>", "<uid v=\"44\"/>"))),
            {"graph-cycle pkg://s/a"}}),
    caseName<CheckCase>);

TEST_F(CheckOf, AnElementTellsLineAndColumn)
{
    const std::string text = replaced(aPackage().text(), "<author", "\n<stage></stage><author");

    const std::vector<Finding> findings = check(text);

    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings.front().line, 2);
    EXPECT_EQ(findings.front().column, 7);
    EXPECT_EQ(findings.front().text, "<stage> is no member of <package>");
}

TEST_F(CheckOf, AHundredFindingsOfAKindAreTold)
{
    std::string nodes;
    for (unsigned uid = 1; uid <= 250; ++uid)
        nodes += aBlend(uid, aConnexion("source", 9999, 1));

    const std::vector<Finding> findings = check(packageWithNodes(nodes));

    ASSERT_EQ(findings.size(), 101U);
    EXPECT_EQ(findings.back().code, FindingCode::DanglingUid);
    EXPECT_EQ(findings.back().text, "There are 150 more of this kind");
}

TEST_F(CheckOf, AFileThatIsMissingIsNone)
{
    EXPECT_FALSE(checkPackage("none.obl", {}, reason));
    EXPECT_EQ(reason, "there is no such file");
}

TEST_F(CheckOf, AFileOfAnotherEndingIsNone)
{
    EXPECT_FALSE(checkPackage(Orv::fromBytes(directory.path("x.png")), {}, reason));
    EXPECT_EQ(reason, "its name does not end with .obl, .oblar or .oblasm");
}

namespace {

class FindingKindOf : public testing::TestWithParam<FindingKind>
{};

std::string kindName(const testing::TestParamInfo<FindingKind>& info)
{
    return "Code" + std::to_string(info.index);
}

} // namespace

TEST_P(FindingKindOf, IsFoundByItsCode)
{
    const Finding finding{GetParam().code, {}, 0, 0, {}};

    EXPECT_STREQ(finding.kind().name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(All, FindingKindOf, testing::ValuesIn(findingKinds()), kindName);

// From the nodes of a package to boxes and wires in their places.
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "ksx/kit/drawing.h"
#include "support/packagetext.h"
#include "support/workspace.h"
#include <gtest/gtest.h>

using Ksx::Kit::Box;
using Ksx::Kit::BoxKind;
using Ksx::Kit::Drawing;
using Ksx::Kit::GraphDrawer;
using Ksx::Kit::LayoutWay;
using TestSupport::aConnexion;
using TestSupport::aFilter;
using TestSupport::anInput;
using TestSupport::anInputBridge;
using TestSupport::aNode;
using TestSupport::anOutput;
using TestSupport::anOutputBridge;
using TestSupport::aPackage;
using TestSupport::GraphText;
using TestSupport::packageFrom;
using TestSupport::PackageText;
using TestSupport::replaced;

namespace {

namespace Doc = Ksx::Data::Content;

template <class Object>
Drawing drawingOf(const PackageText& text, std::size_t index = 0)
{
    const auto package = packageFrom(text);
    return GraphDrawer(*package).draw(dynamic_cast<const Object&>(package->content().at(index)));
}

Drawing drawingOf(const GraphText& graph)
{
    return drawingOf<Doc::Graph>(aPackage().containing(graph.text()));
}

// The node with a place, and maybe the name that a user gave.
std::string placed(const std::string& node, const std::string& place, const std::string& name = {})
{
    const std::string layout = "<GUILayout><gpos v=\"" + place + "\"/></GUILayout>";
    const std::string userName = name.empty() ? "" : "<GUIName v=\"" + name + "\"/>";
    return replaced(replaced(node, "<compNode>", "<compNode>" + layout), "</compNode>",
                    userName + "</compNode>");
}

// An input that feeds a filter, which feeds an output.
GraphText aChain()
{
    GraphText graph;
    graph.inputs = anInput("paper", 10, 1);
    graph.outputs = anOutput("stamped", 20);
    graph.nodes = aNode(1, anInputBridge(10), {}, 11, 1) +
                  aNode(2, aFilter("blend"), aConnexion("destination", 1, 11), 12, 1) +
                  aNode(3, anOutputBridge(20), aConnexion("inputNodeOutput", 2, 12));
    return graph;
}

GraphText aChainWithPlaces(const std::string& second)
{
    GraphText graph = aChain();
    graph.nodes = placed(aNode(1, anInputBridge(10), {}, 11, 1), "-400 100 0") +
                  placed(aNode(2, aFilter("blend"), {}, 12, 1), second, "Soft light") +
                  placed(aNode(3, anOutputBridge(20)), "400 100 0");
    return graph;
}

bool isCovering(const Box& a, const Box& b)
{
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

double middleOf(const Box& box)
{
    return box.y + box.height / 2;
}

std::size_t coveredPairs(const Drawing& drawing)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < drawing.boxes.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            count += isCovering(drawing.boxes[i], drawing.boxes[j]) ? 1 : 0;
    return count;
}

// Filters without connections.
std::string manyNodes(unsigned count)
{
    std::string nodes;
    for (unsigned i = 1; i <= count; ++i)
        nodes += aNode(i, aFilter("uniform"), {}, 1000000 + i, 1);
    return nodes;
}

// A chain behind node 1, each of whose nodes is fed by node 1 as well.
std::string aLadder(unsigned end)
{
    std::string nodes;
    for (unsigned i = 2; i <= end; ++i)
        nodes += aNode(i, aFilter("blend"),
                       aConnexion("source", i - 1, 999 + i) + aConnexion("destination", 1, 1001),
                       1000 + i, 1);
    return nodes;
}

std::string aNote(const std::string& kind, const std::string& text, const std::string& place)
{
    return "<GUIObject><type v=\"" + kind + "\"/><GUILayout><gpos v=\"" + place +
           "\"/></GUILayout><GUIName v=\"" + text + "\"/><uid v=\"7\"/></GUIObject>";
}

std::string withNotes(const GraphText& graph, const std::string& notes)
{
    return replaced(graph.text(), "<root/>", "<GUIObjects>" + notes + "</GUIObjects><root/>");
}

} // namespace

TEST(Drawing, ABridgeHasTheNameOfItsInputOrOutput)
{
    const Drawing drawing = drawingOf(aChain());

    ASSERT_EQ(drawing.boxes.size(), 3U);
    EXPECT_EQ(drawing.boxes[0].kind, BoxKind::Input);
    EXPECT_EQ(drawing.boxes[0].title, "paper");
    EXPECT_EQ(drawing.boxes[2].kind, BoxKind::Output);
    EXPECT_EQ(drawing.boxes[2].title, "stamped");
}

TEST(Drawing, AFilterHasTheConnectorsOfTheTable)
{
    const Drawing drawing = drawingOf(aChain());

    const Box& blend = drawing.boxes.at(1);
    EXPECT_EQ(blend.kind, BoxKind::Filter);
    EXPECT_EQ(blend.title, "blend");
    ASSERT_EQ(blend.inputs.size(), 2U);
    EXPECT_EQ(blend.inputs[0].name, "source");
    EXPECT_EQ(blend.inputs[1].name, "destination");
    EXPECT_EQ(blend.outputs.at(0).type, 1U);
}

TEST(Drawing, AWireLeadsFromOutputToInput)
{
    const Drawing drawing = drawingOf(aChain());

    ASSERT_EQ(drawing.wires.size(), 2U);
    EXPECT_EQ(drawing.wires[0].from, 0U);
    EXPECT_EQ(drawing.wires[0].to, 1U);
    EXPECT_EQ(drawing.wires[0].input, 1U);
    EXPECT_EQ(drawing.wires[1].from, 1U);
    EXPECT_EQ(drawing.wires[1].to, 2U);
}

TEST(Drawing, AnInputOfNoKnownTypeHasThatOfItsFeeder)
{
    EXPECT_EQ(drawingOf(aChain()).boxes.at(2).inputs.at(0).type, 1U);
}

TEST(Drawing, AConnectionFromNothingIsLeftOut)
{
    GraphText graph;
    graph.nodes = aNode(2, aFilter("blur"), aConnexion("input1", 99, 98), 12, 1);

    EXPECT_TRUE(drawingOf(graph).wires.empty());
}

TEST(Drawing, ANameOfTheUserComesFirst)
{
    const Drawing drawing = drawingOf(aChainWithPlaces("0 100 0"));

    EXPECT_EQ(drawing.boxes.at(1).title, "Soft light");
    EXPECT_EQ(drawing.boxes.at(1).detail, "blend");
}

TEST(Drawing, BoxesAreInTheirStoredPlaces)
{
    const Drawing drawing = drawingOf(aChainWithPlaces("0 400 0"));

    EXPECT_EQ(drawing.way, LayoutWay::Stored);
    EXPECT_LT(drawing.boxes[0].x, drawing.boxes[1].x);
    EXPECT_LT(drawing.boxes[1].x, drawing.boxes[2].x);
    EXPECT_EQ(middleOf(drawing.boxes[0]), middleOf(drawing.boxes[2]));
    EXPECT_LT(middleOf(drawing.boxes[0]), middleOf(drawing.boxes[1]));
}

TEST(Drawing, OneNodeMayBeAtTheOriginWithoutAPlace)
{
    EXPECT_EQ(drawingOf(aChainWithPlaces("0 0 0")).way, LayoutWay::Stored);
}

TEST(Drawing, StoredPlacesThatAreCloseAreStretched)
{
    GraphText graph;
    graph.nodes = placed(aNode(1, aFilter("blend")), "0 0 0") +
                  placed(aNode(2, aFilter("blend")), "100 1 0") +
                  placed(aNode(3, aFilter("blend")), "0 60 0");

    EXPECT_EQ(coveredPairs(drawingOf(graph)), 0U);
}

TEST(Drawing, AWireGoesAroundABoxOfItsRow)
{
    GraphText graph;
    graph.nodes = placed(aNode(1, aFilter("uniform"), {}, 11, 1), "-300 0 0") +
                  placed(aNode(2, aFilter("uniform"), {}, 12, 1), "1 0 0") +
                  placed(aNode(3, aFilter("blur"), aConnexion("input1", 1, 11), 13, 1), "300 0 0");

    const Drawing drawing = drawingOf(graph);

    const Box& between = drawing.boxes.at(1);
    const double detour = drawing.wires.at(0).detour.value_or(between.y + 1);
    EXPECT_TRUE(detour < between.y || detour > between.y + between.height);
}

TEST(Drawing, AWireWithAFreeWayGoesThere)
{
    EXPECT_EQ(drawingOf(aChain()).wires.at(0).detour, std::nullopt);
}

TEST(Drawing, PlacesThatNoPictureCanShowAreNotUsed)
{
    GraphText graph = aChainWithPlaces("0 -1e30 0");
    graph.nodes = replaced(graph.nodes, "400 100 0", "1e30 100 0");

    EXPECT_NE(drawingOf(graph).way, LayoutWay::Stored);
}

TEST(Drawing, WithoutStoredPlacesWiresGoToTheRight)
{
    const Drawing drawing = drawingOf(aChain());

    EXPECT_NE(drawing.way, LayoutWay::Stored);
    EXPECT_LT(drawing.boxes[0].x + drawing.boxes[0].width, drawing.boxes[1].x);
    EXPECT_LT(drawing.boxes[1].x + drawing.boxes[1].width, drawing.boxes[2].x);
    EXPECT_EQ(coveredPairs(drawing), 0U);
}

TEST(Drawing, TheLibraryForLayoutsIsUsedWithoutStoredPlaces)
{
    EXPECT_EQ(drawingOf(aChain()).way, LayoutWay::Computed);
}

TEST(Drawing, TheSameGraphIsLaidOutInTheSameWay)
{
    EXPECT_EQ(svgOf(drawingOf(aChain())), svgOf(drawingOf(aChain())));
}

TEST(Drawing, AGraphThatTheLibraryWouldTakeLongForIsLaidOutInColumns)
{
    GraphText graph;
    graph.nodes = aNode(1, aFilter("uniform"), {}, 1001, 1) + aLadder(400);

    const Drawing drawing = drawingOf(graph);

    EXPECT_EQ(drawing.way, LayoutWay::Columns);
    EXPECT_EQ(coveredPairs(drawing), 0U);
}

TEST(Drawing, ACycleOfNodesIsDrawn)
{
    GraphText graph;
    graph.nodes = aNode(1, aFilter("blur"), aConnexion("input1", 2, 12), 11, 1) +
                  aNode(2, aFilter("blur"), aConnexion("input1", 1, 11), 12, 1) +
                  aNode(3, aFilter("blur"), aConnexion("input1", 3, 13), 13, 1);

    const Drawing drawing = drawingOf(graph);

    EXPECT_EQ(drawing.wires.size(), 3U);
    EXPECT_EQ(coveredPairs(drawing), 0U);
}

TEST(Drawing, AnInstanceHasThePathAndTheOutputsOfItsGraph)
{
    const std::string instance =
        "<compInstance><path><value v=\"pkg://lib/oak?dependency=5\"/></path><parameters/>"
        "<outputBridgings><outputBridging><uid v=\"31\"/><identifier v=\"height\"/>"
        "</outputBridging></outputBridgings></compInstance>";
    GraphText graph;
    graph.nodes = aNode(3, instance, {}, 31, 2);

    const Box box = drawingOf(graph).boxes.at(0);

    EXPECT_EQ(box.kind, BoxKind::Instance);
    EXPECT_EQ(box.title, "oak");
    EXPECT_EQ(box.target, "pkg://lib/oak?dependency=5");
    EXPECT_EQ(box.outputs.at(0).name, "height");
}

TEST(Drawing, AnInstanceOfAnOwnGraphHasAllOfItsImageInputs)
{
    GraphText used;
    used.identifier = "oak";
    used.inputs = anInput("grain", 10, 2) + anInput("knots", 11, 16);
    GraphText graph;
    graph.nodes = aNode(3, "<compInstance><path><value v=\"pkg://oak?dependency=5\"/></path>"
                           "<parameters/><outputBridgings/></compInstance>");

    const Drawing drawing = drawingOf<Doc::Graph>(
        aPackage().dependingOnItself(5).containing(used.text()).containing(graph.text()), 1);

    ASSERT_EQ(drawing.boxes.at(0).inputs.size(), 1U);
    EXPECT_EQ(drawing.boxes[0].inputs[0].name, "grain");
}

TEST(Drawing, AnInstanceOfAnotherPackageIsNotTakenForAGraphOfThisOne)
{
    GraphText used;
    used.identifier = "oak";
    used.inputs = anInput("grain", 10, 2);
    GraphText graph;
    graph.nodes = aNode(3, "<compInstance><path><value v=\"pkg://oak?dependency=6\"/></path>"
                           "<parameters/><outputBridgings/></compInstance>");

    const Drawing drawing = drawingOf<Doc::Graph>(aPackage()
                                                      .dependingOnItself(5)
                                                      .dependingOn("b.obl", 6)
                                                      .containing(used.text())
                                                      .containing(graph.text()),
                                                  1);

    EXPECT_TRUE(drawing.boxes.at(0).inputs.empty());
}

TEST(Drawing, ACommentIsANoteAndCoversNoBox)
{
    const auto text =
        withNotes(aChainWithPlaces("0 100 0"),
                  aNote("comment", "first&#10;second", "0 100 0") + aNote("pin", "", "0 0 0"));

    const Drawing drawing = drawingOf<Doc::Graph>(aPackage().containing(text));

    ASSERT_EQ(drawing.notes.size(), 1U);
    EXPECT_EQ(drawing.notes[0].text, "first\nsecond");
    EXPECT_LE(drawing.notes[0].y + drawing.notes[0].height, drawing.boxes[1].y);
}

TEST(Drawing, ALongCommentIsCut)
{
    const auto text = withNotes(aChain(), aNote("comment", std::string(1000000, 'm'), "0 0 0"));

    const Drawing drawing = drawingOf<Doc::Graph>(aPackage().containing(text));

    EXPECT_LT(drawing.notes.at(0).width, 400);
    EXPECT_LT(drawing.notes[0].text.size(), 100);
}

TEST(Drawing, AFunctionHasItsOperationsVariablesConstantsAndResult)
{
    const std::string data = "<funcDatas><funcData><name v=\"datacontent\"/><constantValue>"
                             "<constantValueString><value v=\"edge\"/></constantValueString>"
                             "</constantValue></funcData></funcDatas>";
    const std::string nodes =
        "<paramNode><uid v=\"1\"/><function v=\"get_float1\"/><type><value v=\"256\"/></type>" +
        data +
        "</paramNode><paramNode><uid v=\"2\"/><function v=\"neg\"/><type><value v=\"256\"/></type>"
        "<connexions><connexion><identifier v=\"a\"/><connRef><value v=\"1\"/></connRef>"
        "</connexion></connexions></paramNode>";
    const std::string function =
        "<function><identifier v=\"f\"/><uid v=\"9\"/><paraminputs/><type><value v=\"256\"/></type>"
        "<paramValue><dynamicValue><rootnode><value v=\"2\"/></rootnode><paramNodes>" +
        nodes + "</paramNodes></dynamicValue></paramValue></function>";

    const Drawing drawing = drawingOf<Doc::Function>(aPackage().containing(function));

    ASSERT_EQ(drawing.boxes.size(), 2U);
    EXPECT_EQ(drawing.boxes[0].kind, BoxKind::Variable);
    EXPECT_EQ(drawing.boxes[0].title, "edge");
    EXPECT_EQ(drawing.boxes[1].kind, BoxKind::Operation);
    EXPECT_TRUE(drawing.boxes[1].isResult);
    EXPECT_EQ(drawing.wires.size(), 1U);
}

TEST(Drawing, AnFxMapHasItsNodesWiresNotesAndResult)
{
    GraphText graph;
    graph.nodes = aNode(
        1, replaced(aFilter("fxmaps"), "</compFilter>",
                    "<paramsGraphs><paramsGraph><name v=\"\"/><uid v=\"81\"/>"
                    "<rootnode><value v=\"84\"/></rootnode><paramsGraphDatas/><paramsGraphNodes>"
                    "<paramsGraphNode><uid v=\"83\"/><type v=\"addnode\"/><data v=\"82\"/>"
                    "<GUIName v=\"Dots\"/></paramsGraphNode>"
                    "<paramsGraphNode><uid v=\"84\"/><type v=\"paramset\"/>"
                    "<disabled><value v=\"1\"/></disabled><connexions><connexion>"
                    "<identifier v=\"output1\"/><connRef><value v=\"83\"/></connRef></connexion>"
                    "</connexions><data v=\"82\"/></paramsGraphNode></paramsGraphNodes>"
                    "<GUIObjects>" +
                        aNote("comment", "dense", "0 0 0") +
                        "</GUIObjects></paramsGraph></paramsGraphs></compFilter>"));
    const auto package = packageFrom(aPackage().containing(graph.text()));
    const auto& node = dynamic_cast<const Doc::Graph&>(package->content().at(0)).compNodes().at(0);
    const auto& filter = dynamic_cast<const Doc::CompFilter&>(*node.compImplementation().get());

    const Drawing drawing = GraphDrawer(*package).draw(filter.paramsGraphs().at(0));

    ASSERT_EQ(drawing.boxes.size(), 2U);
    EXPECT_EQ(drawing.boxes[0].title, "Dots");
    EXPECT_EQ(drawing.boxes[0].detail, "addnode");
    EXPECT_EQ(drawing.boxes[1].detail, "node of an FX-map");
    EXPECT_TRUE(drawing.boxes[1].isDisabled);
    EXPECT_TRUE(drawing.boxes[1].isResult);
    EXPECT_EQ(drawing.wires.size(), 1U);
    EXPECT_EQ(drawing.notes.size(), 1U);
}

TEST(Drawing, ACommentOfManyWordsHasALimitedNumberOfLines)
{
    const QString words = QStringLiteral("word ").repeated(1000);
    const auto text = withNotes(aChain(), aNote("comment", words.toStdString(), "0 0 0"));

    const Drawing drawing = drawingOf<Doc::Graph>(aPackage().containing(text));

    EXPECT_EQ(drawing.notes.at(0).text.right(1), QString(QChar(0x2026)));
    EXPECT_LT(drawing.notes[0].text.size(), 2000);
}

TEST(Drawing, AGraphOfAHundredThousandNodesIsDrawnInPart)
{
    GraphText graph;
    graph.nodes = manyNodes(100000);

    const Drawing drawing = drawingOf(graph);

    EXPECT_EQ(drawing.boxes.size(), Ksx::Kit::MaximumBoxes);
    EXPECT_EQ(drawing.leftOut, 100000U - Ksx::Kit::MaximumBoxes);
    EXPECT_EQ(drawing.way, LayoutWay::Columns);
    EXPECT_LT(drawing.width, 20 * drawing.height);
    EXPECT_LT(drawing.height, 20 * drawing.width);
}

TEST(Drawing, ANodeWithAHundredThousandInputsIsDrawnInPart)
{
    std::string connexions;
    for (int i = 0; i < 100000; ++i)
        connexions += aConnexion("i" + std::to_string(i), 1, 11);
    GraphText graph;
    graph.nodes =
        aNode(1, aFilter("uniform"), {}, 11, 1) + aNode(2, aFilter("blur"), connexions, 12, 1);

    const Drawing drawing = drawingOf(graph);

    EXPECT_EQ(drawing.boxes.at(1).inputs.size(), Ksx::Kit::MaximumConnectors);
    EXPECT_LE(drawing.wires.size(), Ksx::Kit::MaximumConnectors);
    EXPECT_GT(drawing.leftOut, 99000U);
}

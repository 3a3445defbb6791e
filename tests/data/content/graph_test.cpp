#include "data/content/graph.h"

#include "data/content/compfilter.h"
#include "data/content/compinstance.h"
#include "data/content/dynamicvalue.h"
#include "data/content/function.h"
#include "data/content/package.h"
#include "data/content/paramsarray.h"
#include "data/content/paramsgraph.h"
#include "data/content/resource.h"
#include "data/content/xmltext.h"
#include "support/shelfcases.h"
#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <gtest/gtest.h>

using namespace Ksx::Data::Content;
using TestSupport::caseName;
using TestSupport::MemberMissing;
using TestSupport::read;
using TestSupport::readNew;
using TestSupport::rewritten;
using TestSupport::without;
using TestSupport::written;

namespace {

// A graph with each required member and nothing else, in the order of writing.
const std::string SmallestGraph =
    R"(<graph><identifier v="g"/><uid v="1"/><graphOutputs/><compNodes/><baseParameters/>)"
    R"(<content/><root/></graph>)";

const std::string SmallestFunction =
    R"(<function><identifier v="f"/><uid v="1"/><paraminputs/><type><value v="256"/></type>)"
    R"(<paramValue/></function>)";

const std::string FilterNode =
    R"(<compNode><uid v="5"/><compImplementation><compFilter><filter v="blend"/><parameters/>)"
    R"(</compFilter></compImplementation></compNode>)";

const std::string PackageHead =
    R"(<package><packageType v="Kestrix"/><identifier v="p"/><formatVersion v="1"/>)"
    R"(<platform v="1"/><author v=""/><fileUID v=""/><versionUID v="0"/><configurations>)"
    R"(<name v=""/><uid v="0"/><configuration/></configurations><dependencies/><content>)";

// A package with one item as its content.
std::string packageWith(const std::string& item)
{
    return PackageHead + item + "</content></package>";
}

std::string withNode(const std::string& node)
{
    return without(SmallestGraph, "<compNodes/>", "<compNodes>" + node + "</compNodes>");
}

struct PartCase
{
    const char* name;
    std::string part;
};

struct RewriteCase
{
    const char* name;
    std::string xml;
    std::string (*rewrite)(const std::string& xml);
};

} // namespace

// --- graphs

TEST(Graph, WritesItsRequiredMembersWhenNew)
{
    EXPECT_EQ(written(Graph()),
              R"(<graph><identifier v=""/><uid v="0"/><graphOutputs/><compNodes/><baseParameters/>)"
              R"(<content/><root/></graph>)");
}

TEST(Graph, IsTheSameAfterReadingAndWritingAPackage)
{
    const std::string xml = packageWith(withNode(FilterNode));
    EXPECT_EQ(rewritten<Package>(xml), xml);
}

class RequiredMemberOfGraph : public testing::TestWithParam<PartCase>
{};

TEST_P(RequiredMemberOfGraph, MustStandInTheFile)
{
    Package package;
    const std::string graph = without(SmallestGraph, GetParam().part);
    EXPECT_EQ(read(package, packageWith(graph)), MemberMissing);
}

INSTANTIATE_TEST_SUITE_P(All, RequiredMemberOfGraph,
                         testing::Values(PartCase{"Identifier", R"(<identifier v="g"/>)"},
                                         PartCase{"Uid", R"(<uid v="1"/>)"},
                                         PartCase{"GraphOutputs", "<graphOutputs/>"},
                                         PartCase{"CompNodes", "<compNodes/>"},
                                         PartCase{"BaseParameters", "<baseParameters/>"},
                                         PartCase{"Content", "<content/>"},
                                         PartCase{"Root", "<root/>"}),
                         caseName<PartCase>);

TEST(Graph, HasNoInputsWithoutParaminputs)
{
    const auto graph = readNew<Graph>(SmallestGraph);
    ASSERT_NE(graph, nullptr);
    EXPECT_TRUE(graph->paraminputs().isEmpty());
}

TEST(Graph, KeepsItsOptionalMembersInTheirPlaces)
{
    const std::string xml =
        R"(<graph><identifier v="g"/><uid v="1"/><attributes><label v="l"/></attributes>)"
        R"(<GUILayoutComp><groi v="r"/></GUILayoutComp><paraminputs><paraminput>)"
        R"(<identifier v="i"/><uid v="2"/><type><value v="4"/></type><defaultWidget><name v="w"/>)"
        R"(<options/></defaultWidget></paraminput></paraminputs><primaryInput><value v="2"/>)"
        R"(</primaryInput><graphOutputs><graphoutput><identifier v="o"/><uid v="3"/><usages>)"
        R"(<usage><components v="RGBA"/><name v="diffuse"/></usage></usages></graphoutput>)"
        R"(</graphOutputs><compNodes/><baseParameters><parameter><name v="size"/><paramValue>)"
        R"(<constantValueInt2><value v="1 2"/></constantValueInt2></paramValue></parameter>)"
        R"(</baseParameters><content/><GUIObjects><GUIObject><type v="COMMENT"/><GUIName v="n"/>)"
        R"(<uid v="9"/></GUIObject></GUIObjects><options><option><name v="a"/><value v="b"/>)"
        R"(</option></options><root><rootOutputs><rootOutput><output v="3"/><format><value v="0"/>)"
        R"(</format><mipmaps><value v="1"/></mipmaps><usertag v=""/></rootOutput></rootOutputs>)"
        R"(</root></graph>)";
    EXPECT_EQ(rewritten<Graph>(xml), xml);
}

TEST(Function, MustHaveParaminputs)
{
    Function function;
    EXPECT_EQ(read(function, without(SmallestFunction, "<paraminputs/>")), MemberMissing);
}

TEST(Function, IsTheSameAfterReadingAndWritingAPackage)
{
    EXPECT_EQ(rewritten<Package>(packageWith(SmallestFunction)), packageWith(SmallestFunction));
}

TEST(GraphOutput, LeavesOneChannelOutAndWritesNone)
{
    const auto withChannels = [](const char* count) {
        return R"(<graphoutput><identifier v="o"/><uid v="1"/><channels v=")" + std::string(count) +
               R"("/></graphoutput>)";
    };
    EXPECT_EQ(rewritten<GraphOutput>(withChannels("1")),
              R"(<graphoutput><identifier v="o"/><uid v="1"/></graphoutput>)");
    EXPECT_EQ(rewritten<GraphOutput>(withChannels("0")), withChannels("0"));
}

TEST(Graph, TellsItsListsApartByTheLettersOfTheirNames)
{
    EXPECT_EQ(GraphOutputsList().createChild("graphOutput"), nullptr);
    EXPECT_NE(GraphOutputsList().createChild("graphoutput"), nullptr);
    EXPECT_EQ(GraphInputsList().createChild("paramInput"), nullptr);
    EXPECT_NE(GraphInputsList().createChild("paraminput"), nullptr);
}

// --- nodes

TEST(CompNode, IsReadWithNothingChosen)
{
    const auto node =
        readNew<CompNode>(R"(<compNode><uid v="5"/><compImplementation/></compNode>)");
    ASSERT_NE(node, nullptr);
    EXPECT_TRUE(node->compImplementation().isEmpty());
}

TEST(CompNode, IsRefusedWithoutAnImplementation)
{
    CompNode node;
    EXPECT_EQ(read(node, R"(<compNode><uid v="5"/></compNode>)"), MemberMissing);
}

TEST(CompNode, WritesAnEmptyImplementation)
{
    EXPECT_EQ(written(CompNode()), R"(<compNode><uid v="0"/><compImplementation/></compNode>)");
}

TEST(CompFilter, LosesAnUnknownElement)
{
    const std::string xml = without(FilterNode, "<parameters/>", "<newer/><parameters/>");
    EXPECT_EQ(rewritten<CompNode>(xml), FilterNode);
}

TEST(Connexion, IsUnconnectedWithoutConnRef)
{
    const auto connexion = readNew<Connexion>(R"(<connexion><identifier v="in"/></connexion>)");
    ASSERT_NE(connexion, nullptr);
    EXPECT_FALSE(connexion->connRef().isModified());
    EXPECT_EQ(connexion->connRef().value().get(), 0u);
}

TEST(Connexion, ServesInThreeKindsOfNodes)
{
    EXPECT_NE(CompNode().connexions().createChild("connexion"), nullptr);
    EXPECT_NE(ParamNode().connexions().createChild("connexion"), nullptr);
    EXPECT_NE(ParamsGraphNode().connexions().createChild("connexion"), nullptr);
    EXPECT_EQ(CompNode().connexions().createChild("connection"), nullptr);
}

// --- parameters and values

TEST(Parameter, HasAllBitsSetInRelativeToWithoutIt)
{
    const auto parameter =
        readNew<Parameter>(R"(<parameter><name v="n"/><paramValue/></parameter>)");
    ASSERT_NE(parameter, nullptr);
    EXPECT_EQ(parameter->relativeTo().get(), 4294967295u);
}

TEST(Parameter, LeavesRelativeToOutWithAllBitsSetAlone)
{
    const auto relativeTo = [](const char* value) {
        return R"(<parameter><name v="n"/><relativeTo v=")" + std::string(value) +
               R"("/><paramValue/></parameter>)";
    };
    EXPECT_EQ(rewritten<Parameter>(relativeTo("4294967295")),
              R"(<parameter><name v="n"/><paramValue/></parameter>)");
    EXPECT_EQ(rewritten<Parameter>(relativeTo("0")), relativeTo("0"));
}

TEST(ParamValue, TellsFloatFromAVectorOfOneFloat)
{
    const auto valueWith = [](const char* name) {
        return "<paramValue><" + std::string(name) + R"(><value v="0.123456791"/></)" + name +
               "></paramValue>";
    };
    EXPECT_EQ(rewritten<ParamValue>(valueWith("constantValueFloat")),
              valueWith("constantValueFloat"));
    // A vector keeps six digits.
    EXPECT_EQ(rewritten<ParamValue>(valueWith("constantValueFloat1")),
              R"(<paramValue><constantValueFloat1><value v="0.123457"/></constantValueFloat1>)"
              R"(</paramValue>)");
}

TEST(ParamValue, HasAnUnsignedInt32AndASignedInt1)
{
    const auto valueWith = [](const char* name) {
        return "<paramValue><" + std::string(name) + R"(><value v="-1"/></)" + name +
               "></paramValue>";
    };
    EXPECT_EQ(rewritten<ParamValue>(valueWith("constantValueInt32")),
              R"(<paramValue><constantValueInt32><value v="4294967295"/></constantValueInt32>)"
              R"(</paramValue>)");
    EXPECT_EQ(rewritten<ParamValue>(valueWith("constantValueInt1")),
              valueWith("constantValueInt1"));
}

TEST(DefaultValue, IsNeverDynamic)
{
    EXPECT_EQ(DefaultValue().createChild("dynamicValue"), nullptr);
    EXPECT_NE(ParamValue().createChild("dynamicValue"), nullptr);
    EXPECT_EQ(FuncData().constantValue().createChild("dynamicValue"), nullptr);
}

// --- everything that an optional member can be

class GraphElement : public testing::TestWithParam<RewriteCase>
{};

TEST_P(GraphElement, IsTheSameAfterReadingAndWriting)
{
    EXPECT_EQ(GetParam().rewrite(GetParam().xml), GetParam().xml);
}

INSTANTIATE_TEST_SUITE_P(
    Full, GraphElement,
    testing::Values(
        RewriteCase{
            "CompNode",
            R"(<compNode><uid v="5"/><disabled><value v="1"/></disabled><GUILayout>)"
            R"(<gpos v="1 2 0"/><docked v="1"/><dockDistance v="3 4"/></GUILayout><compOutputs>)"
            R"(<compOutput><uid v="6"/><comptype><value v="1"/></comptype></compOutput>)"
            R"(</compOutputs><connexions><connexion><identifier v="in"/><connRef><value v="7"/>)"
            R"(</connRef><connRefOutput><value v="8"/></connRefOutput></connexion></connexions>)"
            R"(<compImplementation><compInputBridge><entry v="9"/><parameters/></compInputBridge>)"
            R"(</compImplementation><GUIName v="n"/><options><option><name v="a"/><value v="b"/>)"
            R"(</option></options></compNode>)",
            &rewritten<CompNode>},
        RewriteCase{
            "CompFilter",
            R"(<compFilter><filter v="fxmaps"/><parameters/><paramsArrays><paramsArray>)"
            R"(<name v="a"/><uid v="1"/><paramsArrayCells><paramsArrayCell><uid v="2"/>)"
            R"(<parameters/></paramsArrayCell></paramsArrayCells></paramsArray></paramsArrays>)"
            R"(<paramsGraphs><paramsGraph><name v="g"/><uid v="3"/><rootnode><value v="4"/>)"
            R"(</rootnode><paramsGraphDatas><paramsGraphData><identifier v="d"/><uid v="5"/>)"
            R"(<type v="quadrant"/><parameters><parameter><name v="p"/><paramValue/></parameter>)"
            R"(</parameters></paramsGraphData></paramsGraphDatas><paramsGraphNodes>)"
            R"(<paramsGraphNode><uid v="4"/><type v="quadrant"/><connexions><connexion>)"
            R"(<identifier v="c"/></connexion></connexions><data v="5"/><GUIName v="n"/>)"
            R"(</paramsGraphNode></paramsGraphNodes></paramsGraph></paramsGraphs></compFilter>)",
            &rewritten<CompFilter>},
        RewriteCase{
            "CompInstance",
            R"(<compInstance><path><value v="pkg:///g?dependency=1"/></path><parameters/>)"
            R"(<outputBridgings><outputBridging><uid v="1"/><identifier v="o"/></outputBridging>)"
            R"(</outputBridgings><GUILayoutComp><gzoom v="2"/></GUILayoutComp></compInstance>)",
            &rewritten<CompInstance>},
        RewriteCase{
            "CompOutputBridge",
            R"(<compOutputBridge><output v="1"/><connectionColorType v="2"/></compOutputBridge>)",
            &rewritten<CompOutputBridge>},
        RewriteCase{"CompExternal",
                    R"(<compExternal><identifier v="e"/><desc v="d"/></compExternal>)",
                    &rewritten<CompExternal>},
        RewriteCase{"CompExternalLink",
                    R"(<compExternalLink><path><value v="p"/></path></compExternalLink>)",
                    &rewritten<CompExternalLink>},
        RewriteCase{
            "DynamicValue",
            R"(<dynamicValue><GUILayoutComp><groi v="r"/></GUILayoutComp><rootnode><value v="1"/>)"
            R"(</rootnode><paramNodes><paramNode><uid v="1"/><function v="const_float1"/>)"
            R"(<disabled><value v="1"/></disabled><type><value v="256"/></type><connexions>)"
            R"(<connexion><identifier v="a"/></connexion></connexions><funcDatas><funcData>)"
            R"(<name v="c"/><constantValue><constantValueFloat1><value v="0.5"/>)"
            R"(</constantValueFloat1></constantValue></funcData></funcDatas><GUILayout>)"
            R"(<gpos v="1 2 3"/></GUILayout><GUIName v="n"/></paramNode></paramNodes>)"
            R"(<GUIObjects><GUIObject><type v="PIN"/><GUIDependency v="x"/><GUIName v=""/>)"
            R"(<uid v="2"/></GUIObject></GUIObjects></dynamicValue>)",
            &rewritten<DynamicValue>},
        RewriteCase{
            "ParamInput",
            R"(<paraminput><identifier v="i"/><uid v="1"/><attributes><label v="l"/></attributes>)"
            R"(<usages><usage><components v="R"/><name v="mask"/></usage></usages><disabled>)"
            R"(<value v="1"/></disabled><type><value v="4"/></type><defaultValue>)"
            R"(<constantValueBool><value v="1"/></constantValueBool></defaultValue><defaultWidget>)"
            R"(<name v="slider"/><options><option><name v="min"/><value v="0"/></option></options>)"
            R"(</defaultWidget><group v="g"/></paraminput>)",
            &rewritten<ParamInput>}),
    caseName<RewriteCase>);

// --- one name, several kinds

TEST(TypeElement, IsAStructureInNodesFunctionsAndInputs)
{
    EXPECT_EQ(ParamNode().type().kind(), Orv::Data::ObjectKind::Struct);
    EXPECT_EQ(Function().type().kind(), Orv::Data::ObjectKind::Struct);
    EXPECT_EQ(ParamInput().type().kind(), Orv::Data::ObjectKind::Struct);
}

TEST(TypeElement, IsATextInParameterGraphsDependenciesAndLayoutObjects)
{
    ParamsGraphNode node;
    ParamsGraphData data;
    Dependency dependency;
    GUIObject object;
    node.type().fromString("a text");
    data.type().fromString("a text");
    dependency.type().fromString("a text");
    object.type().fromString("a text");
    EXPECT_EQ(node.type().toString() + data.type().toString(), "a texta text");
    EXPECT_EQ(dependency.type().toString() + object.type().toString(), "a texta text");
}

TEST(TypeElement, IsANumberInResources)
{
    Resource resource;
    EXPECT_THROW(resource.type().fromString("a text"), boost::bad_lexical_cast);
}

TEST(TypeElement, IsReadByTheDeclarationOfTheParent)
{
    // The structure's reader would take the leaf's element for a value without `value`.
    ParamNode node;
    EXPECT_EQ(read(node, R"(<paramNode><uid v="1"/><function v="f"/><type v="256"/></paramNode>)"),
              MemberMissing);
}

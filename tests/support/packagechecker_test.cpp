#include "support/packagechecker.h"

#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::Contains;
using testing::ElementsAre;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::caseName;
using TestSupport::complaintsAbout;
using TestSupport::replaced;
using TestSupport::TemporaryDirectory;

namespace {

// One of everything that refers to something.
const std::string Content = R"(
<resource><identifier v="oak"/><uid v="11"/><type v="3"/><format v="PNG"/><filepath v="oak.png"/>
 <lastModif v=""/><checksum v="0"/></resource>
<resource><identifier v="kept"/><uid v="12"/><type v="3"/><format v="PNG"/><filepath v="gone.png"/>
 <lastModif v=""/><checksum v="0"/>
 <source><binembedded><datalength v="1"/><strdata v="a"/></binembedded></source></resource>
<function><identifier v="twice"/><uid v="13"/>
 <paraminputs><paraminput><identifier v="x"/><uid v="1"/><type><value v="256"/></type>
  <defaultWidget><name v=""/><options/></defaultWidget></paraminput></paraminputs>
 <type><value v="256"/></type>
 <paramValue><dynamicValue><rootnode><value v="22"/></rootnode><paramNodes>
  <paramNode><uid v="21"/><function v="get_float1"/><type><value v="256"/></type>
   <funcDatas><funcData><name v="datacontent"/><constantValue><constantValueString>
    <value v="x"/></constantValueString></constantValue></funcData></funcDatas></paramNode>
  <paramNode><uid v="22"/><function v="add"/><type><value v="256"/></type>
   <connexions>
    <connexion><identifier v="a"/><connRef><value v="21"/></connRef></connexion>
    <connexion><identifier v="b"/><connRef><value v="21"/></connRef></connexion>
   </connexions></paramNode>
 </paramNodes></dynamicValue></paramValue></function>
<graph><identifier v="planks"/><uid v="14"/>
 <paraminputs>
  <paraminput><identifier v="mask"/><uid v="31"/><type><value v="2"/></type>
   <defaultWidget><name v=""/><options/></defaultWidget></paraminput>
  <paraminput><identifier v="gap"/><uid v="32"/><type><value v="256"/></type>
   <defaultWidget><name v=""/><options/></defaultWidget></paraminput>
 </paraminputs>
 <primaryInput><value v="31"/></primaryInput>
 <graphOutputs><graphoutput><identifier v="height"/><uid v="41"/></graphoutput></graphOutputs>
 <compNodes>
  <compNode><uid v="51"/><compOutputs><compOutput><uid v="61"/></compOutput></compOutputs>
   <compImplementation><compInputBridge><entry v="31"/><parameters/></compInputBridge>
   </compImplementation></compNode>
  <compNode><uid v="52"/>
   <compOutputs><compOutput><uid v="62"/></compOutput><compOutput><uid v="63"/></compOutput>
   </compOutputs>
   <connexions><connexion><identifier v="base"/><connRef><value v="51"/></connRef>
    <connRefOutput><value v="61"/></connRefOutput></connexion></connexions>
   <compImplementation><compInstance><path><value v="pkg://blur/soft?dependency=2"/></path>
    <parameters/><outputBridgings>
     <outputBridging><uid v="62"/><identifier v="result"/></outputBridging>
     <outputBridging><uid v="63"/><identifier v="second"/></outputBridging>
    </outputBridgings></compInstance></compImplementation></compNode>
  <compNode><uid v="53"/><compOutputs><compOutput><uid v="61"/></compOutput></compOutputs>
   <compImplementation><compFilter><filter v="bitmap"/><parameters>
    <parameter><name v="bitmapresourcepath"/><paramValue><constantValueString>
     <value v="pkg://oak?dependency=1"/></constantValueString></paramValue></parameter>
    <parameter><name v="gapped"/><paramValue><dynamicValue><rootnode><value v="71"/></rootnode>
     <paramNodes>
      <paramNode><uid v="71"/><function v="instance"/><type><value v="256"/></type>
       <connexions><connexion><identifier v="x"/><connRef><value v="72"/></connRef></connexion>
       </connexions>
       <funcDatas><funcData><name v="datacontent"/><constantValue><constantValueString>
        <value v="pkg://twice?dependency=1"/></constantValueString></constantValue></funcData>
       </funcDatas></paramNode>
      <paramNode><uid v="72"/><function v="get_float1"/><type><value v="256"/></type>
       <funcDatas><funcData><name v="datacontent"/><constantValue><constantValueString>
        <value v="gap"/></constantValueString></constantValue></funcData></funcDatas></paramNode>
     </paramNodes></dynamicValue></paramValue></parameter>
   </parameters></compFilter></compImplementation></compNode>
  <compNode><uid v="54"/><compOutputs><compOutput><uid v="61"/></compOutput></compOutputs>
   <compImplementation><compFilter><filter v="fxmaps"/><parameters/><paramsGraphs>
    <paramsGraph><name v=""/><uid v="81"/><rootnode><value v="84"/></rootnode>
     <paramsGraphDatas><paramsGraphData><identifier v="set"/><uid v="82"/><type v="paramset"/>
     </paramsGraphData></paramsGraphDatas>
     <paramsGraphNodes>
      <paramsGraphNode><uid v="83"/><type v="paramset"/><data v="82"/></paramsGraphNode>
      <paramsGraphNode><uid v="84"/><type v="paramset"/>
       <connexions><connexion><identifier v="output2"/><connRef><value v="83"/></connRef>
       </connexion></connexions><data v="82"/></paramsGraphNode>
     </paramsGraphNodes></paramsGraph>
   </paramsGraphs></compFilter></compImplementation></compNode>
  <compNode><uid v="55"/>
   <connexions><connexion><identifier v="inputNodeOutput"/><connRef><value v="52"/></connRef>
    <connRefOutput><value v="63"/></connRefOutput></connexion></connexions>
   <compImplementation><compOutputBridge><output v="41"/></compOutputBridge>
   </compImplementation></compNode>
  <compNode><uid v="56"/><compImplementation><compExternalLink><path>
   <value v="pkg://shapes?dependency=3"/></path></compExternalLink></compImplementation></compNode>
 </compNodes>
 <baseParameters/><content/>
 <GUIObjects><GUIObject><type v="PIN"/>
  <GUIDependency v="pkg://planks?dependency=1&amp;typeParam=CompNodeType&amp;compNodeUidParam=55"/>
  <GUIName v=""/><uid v="91"/></GUIObject></GUIObjects>
 <root><rootOutputs><rootOutput><output v="41"/><format><value v="0"/></format><usertag v=""/>
 </rootOutput></rootOutputs></root>
</graph>)";

std::string aGraph(const std::string& identifier)
{
    return "<graph><identifier v=\"" + identifier + R"("/><uid v="5"/>
     <paraminputs>
      <paraminput><identifier v="base"/><uid v="1"/><type><value v="1"/></type>
       <defaultWidget><name v=""/><options/></defaultWidget></paraminput>
      <paraminput><identifier v="amount"/><uid v="2"/><type><value v="256"/></type>
       <defaultWidget><name v=""/><options/></defaultWidget></paraminput>
     </paraminputs>
     <graphOutputs><graphoutput><identifier v="result"/><uid v="3"/></graphoutput>
      <graphoutput><identifier v="second"/><uid v="4"/></graphoutput></graphOutputs>
     <compNodes/><baseParameters/><content/><root/></graph>)";
}

std::string whole()
{
    return aPackage()
        .dependingOnItself(1)
        .dependingOn("sub/other.obl", 2)
        .dependingOn("obl://library.obl", 3)
        .containing(Content)
        .text();
}

class CheckedPackage : public testing::Test
{
protected:
    CheckedPackage()
    {
        directory.write("oak.png", "");
        directory.write("sub/other.obl",
                        aPackage().containing(aGroup("blur", aGraph("soft"))).text());
        directory.write("presets/library.obl", aPackage().containing(aGraph("shapes")).text());
    }
    std::vector<std::string> complaints(const std::string& document) const
    {
        return complaintsAbout(directory.write("a.obl", document), directory.path("presets"));
    }

    TemporaryDirectory directory;
};

TEST_F(CheckedPackage, IsWhole)
{
    EXPECT_THAT(complaints(whole()), ElementsAre());
}

TEST_F(CheckedPackage, MayBeEmpty)
{
    EXPECT_THAT(complaints(aPackage().text()), ElementsAre());
}

TEST_F(CheckedPackage, HasToBeThere)
{
    EXPECT_THAT(complaintsAbout(directory.path("b.obl")), ElementsAre("the file cannot be read"));
}

TEST_F(CheckedPackage, HasToBeADocument)
{
    EXPECT_THAT(complaints("<package>"), ElementsAre("the file cannot be read"));
}

TEST_F(CheckedPackage, HasToBeAPackage)
{
    EXPECT_THAT(complaints("<package/>"), ElementsAre("the tool cannot open the file"));
}

TEST_F(CheckedPackage, NeedsThePresetsThatItRefersTo)
{
    directory.write("a.obl", whole());

    EXPECT_THAT(complaintsAbout(directory.path("a.obl")),
                Contains("dependency \"obl://library.obl\": there is no such file"));
}

TEST_F(CheckedPackage, MayNotReferToWhatCannotBeOpened)
{
    directory.write("sub/other.obl", "<package/>");

    EXPECT_THAT(complaints(whole()), Contains("dependency \"sub/other.obl\": cannot be opened"));
}

TEST_F(CheckedPackage, MayNotReferToItselfByItsPath)
{
    EXPECT_THAT(complaints(aPackage().dependingOn("sub/../a.obl", 7).text()),
                ElementsAre("dependency \"sub/../a.obl\": is the package itself"));
}

TEST_F(CheckedPackage, MayNotNeedAFileThatIsGone)
{
    std::filesystem::remove(directory.path("oak.png"));

    EXPECT_THAT(complaints(whole()), ElementsAre("oak: there is no file \"oak.png\""));
}

struct Damage
{
    const char* name;
    const char* whole;
    const char* damaged;
    const char* complaint;
};

class DamagedPackage : public CheckedPackage, public testing::WithParamInterface<Damage>
{};

TEST_P(DamagedPackage, IsComplainedAbout)
{
    const std::string document = replaced(whole(), GetParam().whole, GetParam().damaged);
    ASSERT_NE(document, whole());

    EXPECT_THAT(complaints(document), Contains(GetParam().complaint));
}

INSTANTIATE_TEST_SUITE_P(
    Dependencies, DamagedPackage,
    testing::Values(Damage{"Missing", "sub/other.obl", "sub/none.obl",
                           R"(dependency "sub/none.obl": there is no such file)"},
                    Damage{"OfAnotherType", R"(<type v="package"/>)", R"(<type v="font"/>)",
                           R"(dependency "sub/other.obl": is no package)"},
                    Damage{"SameUid", R"(<uid v="2"/><type)", R"(<uid v="3"/><type)",
                           R"(uid "3" stands twice in dependencies)"},
                    Damage{"SameFile", "obl://library.obl", "sub/other.obl",
                           R"(filename "sub/other.obl" stands twice in dependencies)"}),
    caseName<Damage>);

INSTANTIATE_TEST_SUITE_P(
    Paths, DamagedPackage,
    testing::Values(
        Damage{"NoUid", "pkg://oak?dependency=1", "pkg://oak",
               R"(planks: "pkg://oak" names no package)"},
        Damage{"UnknownUid", "pkg://oak?dependency=1", "pkg://oak?dependency=9",
               R"(planks: "pkg://oak?dependency=9" names a package that is no dependency)"},
        Damage{"WrongPackage", "pkg://oak?dependency=1", "pkg://oak?dependency=2",
               R"(planks: "pkg://oak?dependency=2" reaches nothing)"},
        Damage{"UnknownName", "pkg://blur/soft", "pkg://blur/hard",
               R"(planks: "pkg://blur/hard?dependency=2" reaches nothing)"},
        Damage{"UnknownNode", "compNodeUidParam=55", "compNodeUidParam=59",
               R"(planks: "pkg://planks?dependency=1&typeParam=CompNodeType&compNodeUidParam=59")"
               R"( reaches nothing)"},
        Damage{"GroupForAGraph", "pkg://blur/soft", "pkg://blur",
               R"(planks: "pkg://blur?dependency=2" reaches a group and no graph)"},
        Damage{"GraphForAResource", "pkg://oak", "pkg://planks",
               R"(planks: "pkg://planks?dependency=1" reaches a graph and no resource)"},
        Damage{"GraphForAFunction", "pkg://twice", "pkg://planks",
               R"(planks: "pkg://planks?dependency=1" reaches a graph and no function)"},
        Damage{"ResourceForALink", "pkg://shapes?dependency=3", "pkg://oak?dependency=1",
               R"(planks: "pkg://oak?dependency=1" reaches a resource and no graph)"},
        Damage{"NoPathOfAnInstance", "pkg://blur/soft?dependency=2", "blur/soft",
               R"(planks/node 52: "blur/soft" is no path)"}),
    caseName<Damage>);

INSTANTIATE_TEST_SUITE_P(
    Lists, DamagedPackage,
    testing::Values(
        Damage{"UidsOfContent", R"(<uid v="12"/>)", R"(<uid v="11"/>)",
               R"(uid "11" stands twice in content)"},
        Damage{"NamesOfContent", R"(<identifier v="kept"/>)", R"(<identifier v="oak"/>)",
               R"(identifier "oak" stands twice in content)"},
        Damage{"NoName", R"(<identifier v="kept"/>)", R"(<identifier v=""/>)", "has no identifier"},
        Damage{"UidsOfInputs", R"(<uid v="32"/>)", R"(<uid v="31"/>)",
               R"(planks: uid "31" stands twice in paraminputs)"},
        Damage{"NamesOfInputs", R"(<identifier v="gap"/>)", R"(<identifier v="mask"/>)",
               R"(planks: identifier "mask" stands twice in paraminputs)"},
        Damage{"UidsOfNodes", R"(<uid v="56"/>)", R"(<uid v="51"/>)",
               R"(planks: uid "51" stands twice in compNodes)"},
        Damage{"UidsOfNodeOutputs", R"(<uid v="63"/>)", R"(<uid v="62"/>)",
               R"(planks: uid "62" stands twice in compOutputs)"},
        Damage{"UidsOfBridgings", R"(<outputBridging><uid v="63"/>)",
               R"(<outputBridging><uid v="62"/>)",
               R"(planks: uid "62" stands twice in outputBridgings)"},
        Damage{"UidsOfFunctionNodes", R"(<uid v="22"/>)", R"(<uid v="21"/>)",
               R"(twice: uid "21" stands twice in paramNodes)"},
        Damage{"UidsOfParameterNodes", R"(<uid v="84"/>)", R"(<uid v="83"/>)",
               R"(planks: uid "83" stands twice in paramsGraphNodes)"},
        Damage{"Connectors", R"(<identifier v="b"/>)", R"(<identifier v="a"/>)",
               R"(twice: identifier "a" stands twice in connexions)"},
        Damage{"Parameters", R"(<name v="gapped"/>)", R"(<name v="bitmapresourcepath"/>)",
               R"(planks: name "bitmapresourcepath" stands twice in parameters)"}),
    caseName<Damage>);

INSTANTIATE_TEST_SUITE_P(
    Graphs, DamagedPackage,
    testing::Values(Damage{"NoRootOutput", "<rootOutput><output v=\"41\"/>",
                           "<rootOutput><output v=\"49\"/>",
                           "planks: output 41 has no root output"},
                    Damage{"NoOutputForARoot", "<rootOutput><output v=\"41\"/>",
                           "<rootOutput><output v=\"49\"/>",
                           "planks: root output 49 has no output"},
                    Damage{"UnknownPrimaryInput", R"(<primaryInput><value v="31"/>)",
                           R"(<primaryInput><value v="39"/>)",
                           "planks: the primary input 39 is no image input"},
                    Damage{"PrimaryInputOfAValue", R"(<primaryInput><value v="31"/>)",
                           R"(<primaryInput><value v="32"/>)",
                           "planks: the primary input 32 is no image input"},
                    Damage{"NoInputForANode", R"(<entry v="31"/>)", R"(<entry v="39"/>)",
                           "planks: node 51 stands for input 39, which is not there"},
                    Damage{"NoOutputForANode", R"(<compOutputBridge><output v="41"/>)",
                           R"(<compOutputBridge><output v="49"/>)",
                           "planks: node 55 stands for output 49, which is not there"},
                    Damage{"TwoNodesForAnOutput",
                           "<compExternalLink><path>\n   "
                           "<value v=\"pkg://shapes?dependency=3\"/></path>"
                           "</compExternalLink>",
                           R"(<compOutputBridge><output v="41"/></compOutputBridge>)",
                           "planks: two nodes stand for output 41"}),
    caseName<Damage>);

INSTANTIATE_TEST_SUITE_P(
    Nodes, DamagedPackage,
    testing::Values(
        Damage{"NoSource", R"(<connRef><value v="52"/>)", R"(<connRef><value v="59"/>)",
               R"(planks/node 55: connexion "inputNodeOutput": there is no node 59)"},
        Damage{"OwnSource", R"(<connRef><value v="51"/>)", R"(<connRef><value v="52"/>)",
               R"(planks/node 52: connexion "base": it is fed by its own node)"},
        Damage{"NoOutputOfTheSource", R"(<connRefOutput><value v="63"/>)",
               R"(<connRefOutput><value v="61"/>)",
               R"(planks/node 55: connexion "inputNodeOutput": node 52 has no output 61)"},
        Damage{"NoConnectorOfAnOutput", "inputNodeOutput", "input1",
               R"(planks/node 55: connexion "input1": there is no such connector)"},
        Damage{"NoConnectorOfAnInstance", R"(<identifier v="base"/>)", R"(<identifier v="top"/>)",
               R"(planks/node 52: connexion "top": there is no such connector)"},
        Damage{"ValueForAConnector", R"(<identifier v="base"/>)", R"(<identifier v="amount"/>)",
               R"(planks/node 52: connexion "amount": there is no such connector)"},
        Damage{"BridgingOfNoOutput", R"(<outputBridging><uid v="63"/>)",
               R"(<outputBridging><uid v="69"/>)",
               "planks/node 52: bridging 69 is no output of the node"},
        Damage{"OutputWithoutBridging", R"(<outputBridging><uid v="63"/>)",
               R"(<outputBridging><uid v="69"/>)", "planks/node 52: output 63 has no bridging"},
        Damage{"BridgingOfNothing", R"(<identifier v="second"/>)", R"(<identifier v="third"/>)",
               R"(planks/node 52: bridging "third" is no output of the graph)"}),
    caseName<Damage>);

INSTANTIATE_TEST_SUITE_P(
    Functions, DamagedPackage,
    testing::Values(Damage{"NoRoot", R"(<rootnode><value v="22"/>)", R"(<rootnode><value v="29"/>)",
                           "twice: there is no root node 29"},
                    Damage{"NoRootInANode", R"(<rootnode><value v="71"/>)",
                           R"(<rootnode><value v="79"/>)", "planks: there is no root node 79"},
                    Damage{"NoRootOfAParameterGraph", R"(<rootnode><value v="84"/>)",
                           R"(<rootnode><value v="89"/>)", "planks: there is no root node 89"},
                    Damage{"NoSource", R"(<connRef><value v="72"/>)", R"(<connRef><value v="79"/>)",
                           R"(planks: connexion "x": there is no node 79)"},
                    Damage{"NoSourceInAParameterGraph", R"(<connRef><value v="83"/>)",
                           R"(<connRef><value v="89"/>)",
                           R"(planks: connexion "output2": there is no node 89)"},
                    Damage{"OwnSource", R"(<connRef><value v="83"/>)",
                           R"(<connRef><value v="84"/>)",
                           R"(planks: connexion "output2": it is fed by its own node)"},
                    Damage{"NoData", R"(<data v="82"/>)", R"(<data v="89"/>)",
                           "planks: node 83: there is no data 89"},
                    Damage{"NoInputToRead", R"(<value v="gap"/>)", R"(<value v="none"/>)",
                           R"(planks: get_float1 reads "none", which is not there)"},
                    Damage{"InputOfAnotherType", R"(<value v="gap"/>)", R"(<value v="mask"/>)",
                           R"(planks: get_float1 reads "mask", which is of another type)"}),
    caseName<Damage>);

// The samples were written by hand and are known to be whole.
class CheckedSample : public testing::TestWithParam<const char*>
{};

TEST_P(CheckedSample, IsWhole)
{
    const std::string samples = TestSupport::sourcePath("examples/");

    EXPECT_THAT(complaintsAbout(samples + GetParam(), samples + "presets"), ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(All, CheckedSample,
                         testing::Values("bricks/brick_wall.obl", "fabrics/woven_fabric.obl",
                                         "large/city_facade.obl", "mixed/everything.obl",
                                         "noises/noises.obl", "presets/presets_library.obl",
                                         "wood/wood_planks.obl"),
                         [](const testing::TestParamInfo<const char*>& sample) {
                             const std::string name = sample.param;
                             const std::size_t begin = name.find('/') + 1;
                             return name.substr(begin, name.find('.') - begin);
                         });

} // namespace

#include "ksx/core/datapath.h"

#include "data/content/dynamicvalue.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>

using Ksx::Core::DataPath;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::caseName;
using TestSupport::packageFrom;
using TestSupport::replaced;

namespace {

using namespace Ksx::Data::Content;
using Segments = std::vector<std::string>;

struct FormCase
{
    const char* name;
    const char* text;
    Segments segments;
    std::optional<Ksx::Core::Uid> dependency;
};

std::ostream& operator<<(std::ostream& stream, const FormCase& c)
{
    return stream << c.name;
}

class DataPathForm : public testing::TestWithParam<FormCase>
{};

TEST_P(DataPathForm, IsReadAsPlainText)
{
    const DataPath path(GetParam().text);

    EXPECT_EQ(path.segments(), GetParam().segments);
    EXPECT_EQ(path.dependency(), GetParam().dependency);
    EXPECT_EQ(DataPath::dependencyOf(GetParam().text), GetParam().dependency);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DataPathForm,
    testing::Values(
        FormCase{"Nothing", "pkg://", {}, std::nullopt},
        FormCase{"OneSegment", "pkg://a", {"a"}, std::nullopt},
        FormCase{"Segments", "pkg://a/b/c", {"a", "b", "c"}, std::nullopt},
        FormCase{"Dependency", "pkg://a/b?dependency=12", {"a", "b"}, 12},
        FormCase{"DependencyAlone", "pkg://?dependency=12", {}, 12},
        FormCase{"EmptySegments", "pkg:////a//b/", {"a", "b"}, std::nullopt},
        FormCase{"OnlySlashes", "pkg://///", {}, std::nullopt},
        FormCase{"CaseIsKept", "pkg://A.B/C", {"A.B", "C"}, std::nullopt},
        FormCase{"NothingIsUnescaped", "pkg://a%20b/c+d", {"a%20b", "c+d"}, std::nullopt},
        FormCase{"Blanks", "pkg:// a / b ", {" a ", " b "}, std::nullopt},
        FormCase{"Points", "pkg://a/../b/.", {"a", "..", "b", "."}, std::nullopt},
        FormCase{"Colons", "pkg://host:80/x@y#z", {"host:80", "x@y#z"}, std::nullopt},
        FormCase{"BytesAboveAscii", "pkg://\xe9/\xff", {"\xe9", "\xff"}, std::nullopt},
        FormCase{"SlashInTheQuery", "pkg://a?x=/b/c", {"a"}, std::nullopt},
        FormCase{"EmptyQuery", "pkg://a?", {"a"}, std::nullopt},
        FormCase{"EmptyParameters", "pkg://a?&&dependency=1&", {"a"}, 1},
        FormCase{"DependencyBehindOthers", "pkg://a?x=1&dependency=3&y=2", {"a"}, 3},
        FormCase{"TheFirstDependencyCounts", "pkg://a?dependency=1&dependency=2", {"a"}, 1},
        FormCase{"GreatestDependency", "pkg://a?dependency=4294967295", {"a"}, 4294967295u},
        FormCase{"DependencyTooLarge", "pkg://a?dependency=4294967296", {"a"}, std::nullopt},
        FormCase{"DependencyNegative", "pkg://a?dependency=-1", {"a"}, std::nullopt},
        FormCase{"DependencyEmpty", "pkg://a?dependency=", {"a"}, std::nullopt},
        FormCase{"DependencyWithoutSign", "pkg://a?dependency", {"a"}, std::nullopt},
        FormCase{"DependencyWithABlank", "pkg://a?dependency=1 ", {"a"}, std::nullopt},
        FormCase{"DependencyHexadecimal", "pkg://a?dependency=0x1", {"a"}, std::nullopt},
        FormCase{"DependencyInCapitals", "pkg://a?Dependency=1", {"a"}, std::nullopt},
        FormCase{"SecondQuestionMark", "pkg://a?x=1?dependency=2", {"a"}, std::nullopt}),
    caseName<FormCase>);

TEST(DataPath, IsToldByItsBegin)
{
    EXPECT_TRUE(DataPath::isDataPath("pkg://"));
    EXPECT_TRUE(DataPath::isDataPath("pkg://a/b?c=d"));
    EXPECT_FALSE(DataPath::isDataPath(""));
    EXPECT_FALSE(DataPath::isDataPath("pkg:/"));
    EXPECT_FALSE(DataPath::isDataPath(" pkg://a"));
    EXPECT_FALSE(DataPath::isDataPath("PKG://a"));
    EXPECT_FALSE(DataPath::isDataPath("obl://a"));
}

TEST(DataPath, GivesTheValueOfAParameter)
{
    const DataPath path("pkg://a?x=1&y=&z&x=2&w=a=b");

    EXPECT_EQ(path.parameter("x"), "1");
    EXPECT_EQ(path.parameter("y"), "");
    EXPECT_EQ(path.parameter("z"), "");
    EXPECT_EQ(path.parameter("w"), "a=b");
    EXPECT_EQ(path.parameter("v"), std::nullopt);
}

// Setting a parameter.

struct SetCase
{
    const char* name;
    const char* text;
    const char* changed;
};

std::ostream& operator<<(std::ostream& stream, const SetCase& c)
{
    return stream << c.name;
}

class DataPathWithParameter : public testing::TestWithParam<SetCase>
{};

TEST_P(DataPathWithParameter, ChangesNothingElse)
{
    EXPECT_EQ(DataPath::withParameter(GetParam().text, "dependency", "7"), GetParam().changed);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DataPathWithParameter,
    testing::Values(
        SetCase{"New", "pkg://a", "pkg://a?dependency=7"},
        SetCase{"NewBehindOthers", "pkg://a?x=1", "pkg://a?x=1&dependency=7"},
        SetCase{"NewBehindAnEmptyQuery", "pkg://a?", "pkg://a?&dependency=7"},
        SetCase{"Longer", "pkg://a?dependency=12345", "pkg://a?dependency=7"},
        SetCase{"InItsPlace", "pkg://a?x=1&dependency=12&y=2", "pkg://a?x=1&dependency=7&y=2"},
        SetCase{"Empty", "pkg://a?dependency=&y", "pkg://a?dependency=7&y"},
        SetCase{"WithoutSign", "pkg://a?dependency", "pkg://a?dependency=7"},
        SetCase{"WithoutSignInFront", "pkg://a?dependency&y=1", "pkg://a?dependency=7&y=1"},
        SetCase{"OnlyTheFirst", "pkg://a?dependency=1&dependency=2",
                "pkg://a?dependency=7&dependency=2"},
        SetCase{"LongerKeysAreOthers", "pkg://a?dependencyX=1&xdependency=2",
                "pkg://a?dependencyX=1&xdependency=2&dependency=7"},
        SetCase{"NamesInThePathAreOthers", "pkg://dependency=1/a",
                "pkg://dependency=1/a?dependency=7"},
        SetCase{"RestIsKept", "pkg:////A%20//b/?&&x=1&dependency=2&",
                "pkg:////A%20//b/?&&x=1&dependency=7&"}),
    caseName<SetCase>);

struct SegmentCase
{
    const char* name;
    const char* text;
    std::size_t index;
    const char* changed;
};

class DataPathWithSegment : public testing::TestWithParam<SegmentCase>
{};

TEST_P(DataPathWithSegment, ChangesNothingElse)
{
    EXPECT_EQ(DataPath::withSegment(GetParam().text, GetParam().index, "new"), GetParam().changed);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DataPathWithSegment,
    testing::Values(SegmentCase{"Only", "pkg://a", 0, "pkg://new"},
                    SegmentCase{"First", "pkg://a/b?x=a", 0, "pkg://new/b?x=a"},
                    SegmentCase{"Last", "pkg://a/bc?dependency=7", 1, "pkg://a/new?dependency=7"},
                    SegmentCase{"BehindEmptyOnes", "pkg:////a//b/", 1, "pkg:////a//new/"},
                    SegmentCase{"Missing", "pkg://a/b?x/y", 2, "pkg://a/b?x/y"},
                    SegmentCase{"None", "pkg://", 0, "pkg://"}),
    caseName<SegmentCase>);

// Resolving. The package has something of each kind.

const std::string DynamicParameter =
    R"(<parameter><name v="%"/><paramValue><dynamicValue><paramNodes><paramNode><uid v="#"/>)"
    R"(<function v="f"/><type><value v="256"/></type></paramNode></paramNodes></dynamicValue>)"
    R"(</paramValue></parameter>)";

std::string dynamicParameter(const std::string& name, const std::string& node)
{
    return replaced(replaced(DynamicParameter, "%", name), "#", node);
}

std::string compNode(const std::string& uid, const std::string& implementation)
{
    return "<compNode><uid v=\"" + uid + "\"/><compImplementation>" + implementation +
           "</compImplementation></compNode>";
}

std::string contentOfAllKinds()
{
    const std::string guiObject = R"(<GUIObjects><GUIObject><type v="t"/><GUIName v=""/>)"
                                  R"(<uid v="#"/></GUIObject></GUIObjects>)";
    const std::string graph =
        R"(<graph><identifier v="graph"/><uid v="4"/><graphOutputs><graphoutput>)"
        R"(<identifier v="out"/><uid v="30"/></graphoutput></graphOutputs><compNodes>)" +
        compNode("10", "<compFilter><filter v=\"blend\"/><parameters>" +
                           dynamicParameter("opacity", "20") +
                           "</parameters><paramsArrays><paramsArray><name v=\"keys\"/>"
                           "<uid v=\"80\"/><paramsArrayCells><paramsArrayCell><uid v=\"81\"/>"
                           "<parameters>" +
                           dynamicParameter("position", "25") +
                           "</parameters></paramsArrayCell></paramsArrayCells></paramsArray>"
                           "</paramsArrays><paramsGraphs><paramsGraph><name v=\"n\"/><uid v=\"1\"/>"
                           "<paramsGraphDatas><paramsGraphData><identifier v=\"d\"/><uid v=\"40\"/>"
                           "<type v=\"t\"/><parameters>" +
                           dynamicParameter("color", "21") +
                           "</parameters></paramsGraphData></paramsGraphDatas><paramsGraphNodes>"
                           "<paramsGraphNode><uid v=\"50\"/><type v=\"t\"/><data v=\"40\"/>"
                           "</paramsGraphNode></paramsGraphNodes></paramsGraph></paramsGraphs>"
                           "</compFilter>") +
        compNode("11", "<compInstance><path><value v=\"pkg://x\"/></path><parameters>" +
                           dynamicParameter("seed", "22") +
                           "</parameters><outputBridgings/></compInstance>") +
        compNode("12", "<compInputBridge><entry v=\"1\"/><parameters>" +
                           dynamicParameter("size", "23") + "</parameters></compInputBridge>") +
        "</compNodes><baseParameters>" + dynamicParameter("format", "24") +
        "</baseParameters><content>" + aGroup("inner") + "</content>" +
        replaced(guiObject, "#", "60") + "<root/></graph>";
    const std::string function =
        R"(<function><identifier v="function"/><uid v="5"/><paraminputs/><type><value v="256"/>)"
        R"(</type><paramValue><dynamicValue><paramNodes><paramNode><uid v="70"/><function v="f"/>)"
        R"(<type><value v="256"/></type></paramNode></paramNodes>)" +
        replaced(guiObject, "#", "61") + "</dynamicValue></paramValue></function>";
    return aGroup("group", graph + function + aResource("resource", "x.png")) +
           replaced(aGroup("group"), "v=\"2\"", "v=\"99\"") + aGroup("a b/%20");
}

// What a path names: the element's name and its uid, or a dash.
class DataPathTarget : public testing::Test
{
protected:
    std::string resolved(const std::string& text) const
    {
        const Orv::Data::BaseObject* object = DataPath(text).resolve(*package);
        if (object == nullptr)
            return "-";
        std::string result(object->getMeta().name);
        if (const auto* named = dynamic_cast<const ContentInterface*>(object))
            result += " " + named->identifierAttribute().get() + " " +
                      std::to_string(named->uidAttribute().get());
        else
            appendUid(result, *object);
        return result;
    }
    static void appendUid(std::string& text, const Orv::Data::BaseObject& object)
    {
        const auto append = [&](const auto* typed) {
            if (typed != nullptr)
                text += " " + std::to_string(typed->uid().get());
        };
        append(dynamic_cast<const CompNode*>(&object));
        append(dynamic_cast<const GraphOutput*>(&object));
        append(dynamic_cast<const ParamNode*>(&object));
        append(dynamic_cast<const ParamsGraphNode*>(&object));
        append(dynamic_cast<const GUIObject*>(&object));
    }

    std::unique_ptr<Package> package = packageFrom(aPackage().containing(contentOfAllKinds()));
};

struct TargetCase
{
    const char* name;
    const char* text;
    const char* target;
};

std::ostream& operator<<(std::ostream& stream, const TargetCase& c)
{
    return stream << c.name;
}

class DataPathResolved : public DataPathTarget, public testing::WithParamInterface<TargetCase>
{};

TEST_P(DataPathResolved, NamesAnObjectOrNothing)
{
    EXPECT_EQ(resolved(GetParam().text), GetParam().target);
}

INSTANTIATE_TEST_SUITE_P(
    Segments, DataPathResolved,
    testing::Values(TargetCase{"Package", "pkg://", "package"},
                    TargetCase{"PackageBehindSlashes", "pkg:////", "package"},
                    TargetCase{"PackageOfADependency", "pkg://?dependency=5", "package"},
                    TargetCase{"Group", "pkg://group", "group group 2"},
                    TargetCase{"TheFirstOfANameWins", "pkg://group?dependency=5", "group group 2"},
                    TargetCase{"Graph", "pkg://group/graph", "graph graph 4"},
                    TargetCase{"Function", "pkg://group/function", "function function 5"},
                    TargetCase{"Resource", "pkg://group/resource", "resource resource 3"},
                    TargetCase{"InsideAGraph", "pkg://group/graph/inner", "group inner 2"},
                    TargetCase{"EmptySegments", "pkg:////group//graph/", "graph graph 4"},
                    TargetCase{"EmptyQuery", "pkg://group/graph?", "graph graph 4"},
                    TargetCase{"AnyDependency", "pkg://group/graph?dependency=folly",
                               "graph graph 4"},
                    TargetCase{"CaseCounts", "pkg://Group", "-"},
                    TargetCase{"Missing", "pkg://folly", "-"},
                    TargetCase{"MissingInside", "pkg://group/folly", "-"},
                    TargetCase{"InsideAResource", "pkg://group/resource/x", "-"},
                    TargetCase{"InsideAFunction", "pkg://group/function/x", "-"},
                    TargetCase{"NoWayUp", "pkg://group/../group", "-"},
                    TargetCase{"NoSlashInAName", "pkg://a b/%20", "-"}),
    caseName<TargetCase>);

INSTANTIATE_TEST_SUITE_P(
    Types, DataPathResolved,
    testing::Values(
        TargetCase{"CompNode", "pkg://group/graph?typeParam=CompNodeType&compNodeUidParam=11",
                   "compNode 11"},
        TargetCase{"CompNodeOfADependency",
                   "pkg://group/graph?compNodeUidParam=11&dependency=1&typeParam=CompNodeType",
                   "compNode 11"},
        TargetCase{"GraphOutput",
                   "pkg://group/graph?typeParam=GraphOutputType&graphOutputUidParam=30",
                   "graphoutput 30"},
        TargetCase{"FunctionNode",
                   "pkg://group/function?typeParam=FuncNodeType&funcNodeUidParam=70",
                   "paramNode 70"},
        TargetCase{"ParamNode", "pkg://group/graph?typeParam=ParamNodeType&nodeUidParam=50",
                   "paramsGraphNode 50"},
        TargetCase{"ParamNodeOfANode",
                   "pkg://group/graph?typeParam=ParamNodeType&nodeUidParam=50&compNodeUidParam=10",
                   "paramsGraphNode 50"},
        TargetCase{"GuiObjectOfAGraph",
                   "pkg://group/graph?typeParam=GUIObjectType&GuiObjectUidParam=60",
                   "GUIObject 60"},
        TargetCase{"GuiObjectOfAFunction",
                   "pkg://group/function?typeParam=GUIObjectType&GuiObjectUidParam=61",
                   "GUIObject 61"},
        TargetCase{"DynamicNodeOfAFilter",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=opacity"
                   "&compNodeUidParam=10&nodeUidParam=20",
                   "paramNode 20"},
        TargetCase{"DynamicNodeOfAnyFilter",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=opacity"
                   "&nodeUidParam=20",
                   "paramNode 20"},
        TargetCase{"DynamicNodeOfParamsGraphData",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=color"
                   "&paramGraphDataUidParam=40&nodeUidParam=21",
                   "paramNode 21"},
        TargetCase{"DynamicNodeOfACell",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=position"
                   "&nodeUidParam=25",
                   "paramNode 25"},
        TargetCase{"DynamicNodeOfTheCellOfAUid",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=position"
                   "&paramGraphDataUidParam=81&nodeUidParam=25",
                   "paramNode 25"},
        TargetCase{"DynamicNodeOfAnInstance",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=seed"
                   "&compNodeUidParam=11&nodeUidParam=22",
                   "paramNode 22"},
        TargetCase{"DynamicNodeOfAnInputBridge",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=size"
                   "&compNodeUidParam=12&nodeUidParam=23",
                   "paramNode 23"},
        TargetCase{"DynamicNodeOfTheGraph",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=format"
                   "&nodeUidParam=24",
                   "paramNode 24"}),
    caseName<TargetCase>);

INSTANTIATE_TEST_SUITE_P(
    Nothing, DataPathResolved,
    testing::Values(
        TargetCase{"UnknownUid", "pkg://group/graph?typeParam=CompNodeType&compNodeUidParam=99",
                   "-"},
        TargetCase{"UidMissing", "pkg://group/graph?typeParam=CompNodeType", "-"},
        TargetCase{"UidOfAnotherKind",
                   "pkg://group/graph?typeParam=CompNodeType&graphOutputUidParam=10", "-"},
        TargetCase{"UidNoNumber", "pkg://group/graph?typeParam=CompNodeType&compNodeUidParam=1x",
                   "-"},
        TargetCase{"UidHexadecimal",
                   "pkg://group/graph?typeParam=CompNodeType&compNodeUidParam=0xa", "-"},
        TargetCase{"UnknownKind", "pkg://group/graph?typeParam=folly&compNodeUidParam=10", "-"},
        TargetCase{"KindInCapitals", "pkg://group/graph?typeParam=COMPNODETYPE&compNodeUidParam=10",
                   "-"},
        TargetCase{"KindMissing", "pkg://group/graph?compNodeUidParam=10", "-"},
        TargetCase{"UnknownParameter", "pkg://group/graph?folly=1", "-"},
        TargetCase{"NoGraph", "pkg://group?typeParam=CompNodeType&compNodeUidParam=10", "-"},
        TargetCase{"NoFunction", "pkg://group/graph?typeParam=FuncNodeType&funcNodeUidParam=70",
                   "-"},
        TargetCase{"GuiObjectOfAPackage", "pkg://?typeParam=GUIObjectType&GuiObjectUidParam=60",
                   "-"},
        TargetCase{"UnknownGraphOutput",
                   "pkg://group/graph?typeParam=GraphOutputType&graphOutputUidParam=31", "-"},
        TargetCase{"UnknownFunctionNode",
                   "pkg://group/function?typeParam=FuncNodeType&funcNodeUidParam=71", "-"},
        TargetCase{"UnknownParamNode", "pkg://group/graph?typeParam=ParamNodeType&nodeUidParam=51",
                   "-"},
        TargetCase{"ParamNodeOfAnotherNode",
                   "pkg://group/graph?typeParam=ParamNodeType&nodeUidParam=50&compNodeUidParam=11",
                   "-"},
        TargetCase{"DynamicNodeOfAnotherParameter",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=folly"
                   "&nodeUidParam=20",
                   "-"},
        TargetCase{"DynamicNodeOfUnknownData",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=color"
                   "&paramGraphDataUidParam=41&nodeUidParam=21",
                   "-"},
        TargetCase{"UnknownDynamicNode",
                   "pkg://group/graph?typeParam=DynamicParamNodeType&parameterNameParam=opacity"
                   "&nodeUidParam=99",
                   "-"}),
    caseName<TargetCase>);

} // namespace

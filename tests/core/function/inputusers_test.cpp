#include "ksx/core/inputusers.h"

#include "data/content/dynamicvalue.h"
#include "data/shadowobject.h"
#include "data/treewalk.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "support/functionevaluator.h"
#include "support/functiontext.h"
#include "support/randomfunctions.h"
#include "support/shelfcases.h"
#include "support/workspace.h"
#include <sstream>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::DynamicValue;
using Orv::Data::Float1;

// Of a value that reads the input "x" and nothing else.
std::string aReader(unsigned uid)
{
    return aDynamicValue(uid, aGetter(uid, "get_float1", 256, "x"));
}

class InputUsers : public testing::Test
{
protected:
    void open(const GraphText& graph)
    {
        package = &workspace.open(aPackage().containing(graph.text()));
        before = xmlOf(*package);
    }
    // A graph with the float input "x", whose default is 0.5, and one parameter.
    void openValue(const std::string& dynamicValue)
    {
        GraphText graph;
        graph.inputs = anInput("x", 11, 256, aConstant("Float1", "0.5"));
        graph.parameters = aParameter("p", "0", dynamicValue);
        open(graph);
    }
    const DynamicValue& value() const
    {
        return static_cast<const DynamicValue&>(
            *graphIn(*package)->baseParameters().at(0).paramValue().get());
    }
    std::string text() const { return xmlOf(value()); }
    InputsController& inputs() const { return *controllerIn(*package).inputsController(); }
    bool freeze(const boost::any& constant, const std::string& identifier = "x") const
    {
        return switchToConstant(inputs(), *inputs().inputByIdentifier(identifier), constant);
    }
    std::string usersOf(const std::string& identifier) const
    {
        std::string uids;
        for (const FuncNodeController* user : collectInputUsers(*graphIn(*package), identifier))
            uids += (uids.empty() ? "" : " ") + std::to_string(user->uid());
        return uids;
    }
    // The uid of the only constant in the only value.
    std::string constantUid() const
    {
        std::string uid;
        for (const auto& node : value().paramNodes())
            if (node.function().get().rfind("const_", 0) == 0)
                uid = std::to_string(node.uid().get());
        return uid;
    }
    // The value's text with "const" for the uid of the constant in it.
    std::string textWithoutUid() const { return replaced(text(), constantUid(), "const"); }
    bool canBeUndone()
    {
        const std::string after = xmlOf(*package);
        const bool isUndone = workspace.undoAll() && xmlOf(*package) == before;
        return isUndone && workspace.redoAll() && xmlOf(*package) == after;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
};

std::string aConstantWithUid(const std::string& uid, const std::string& value,
                             const std::string& position = {})
{
    return replaced(
        FunctionText{999, "const_float1", 256, {}, aDataItem(aConstant("Float1", value)), position}
            .text(),
        "999", uid);
}

// Who reads an input.

TEST_F(InputUsers, AreFoundInTheOrderOfTheDocument)
{
    const auto parameter = [](unsigned uid) { return aParameter("p", "0", aReader(uid)); };
    const auto cell = [&](unsigned uid) {
        return "<paramsArrayCell><uid v=\"1\"/>" + GraphText::list("parameters", parameter(uid)) +
               "</paramsArrayCell>";
    };
    const auto data = [&](unsigned uid) {
        return "<paramsGraphData><identifier v=\"\"/><uid v=\"1\"/><type v=\"paramset\"/>" +
               GraphText::list("parameters", parameter(uid)) + "</paramsGraphData>";
    };
    const auto map = [](const std::string& datas) {
        return "<paramsGraph><name v=\"\"/><uid v=\"1\"/>" +
               GraphText::list("paramsGraphDatas", datas) + "<paramsGraphNodes/></paramsGraph>";
    };
    GraphText graph;
    graph.nodes =
        aNode(1, aFilter("blur", parameter(103) + parameter(104))) +
        aNode(2, "<compFilter><filter v=\"fxmaps\"/>" +
                     GraphText::list("parameters", parameter(105)) +
                     "<paramsArrays><paramsArray><name v=\"\"/><uid v=\"1\"/>" +
                     GraphText::list("paramsArrayCells", cell(106) + cell(107)) +
                     "</paramsArray></paramsArrays><paramsGraphs>" + map(data(108) + data(109)) +
                     map(data(110)) + "</paramsGraphs></compFilter>") +
        aNode(3, "<compInstance><path><value v=\"pkg://none\"/></path>" +
                     GraphText::list("parameters", parameter(111)) +
                     "<outputBridgings/></compInstance>") +
        aNode(4, "<compInputBridge><entry v=\"11\"/>" +
                     GraphText::list("parameters", parameter(112)) + "</compInputBridge>") +
        aNode(5, anOutputBridge(6));
    graph.parameters =
        parameter(101) + aParameter("q", "0", aConstant("Float", "1")) + parameter(102);
    open(graph);
    EXPECT_EQ(usersOf("x"), "101 102 103 104 105 106 107 108 109 110 111 112");
}

TEST_F(InputUsers, OfOneValueAreFoundInTheOrderOfItsNodes)
{
    openValue(aRootlessValue(aGetter(3, "get_float1", 256, "x") +
                             aGetter(4, "get_float1", 256, "y") +
                             aGetter(2, "get_float4", 2048, "x")));
    EXPECT_EQ(usersOf("x"), "3 2");
}

TEST_F(InputUsers, AreAllGettersOfTheName)
{
    openValue(
        aRootlessValue(aGetter(5, "get_bool", 4, "x") + aGetter(6, "get_integer1", 16, "x") +
                       aGetter(7, "get_integer2", 32, "x") + aGetter(8, "get_integer3", 64, "x") +
                       aGetter(9, "get_integer4", 128, "x") + aGetter(10, "get_float1", 256, "x") +
                       aGetter(11, "get_float2", 512, "x") + aGetter(12, "get_float3", 1024, "x") +
                       aGetter(13, "get_float4", 2048, "x")));
    EXPECT_EQ(usersOf("x"), "5 6 7 8 9 10 11 12 13");
}

struct OtherCase
{
    const char* name;
    std::string node;
};
class NoInputUser : public InputUsers, public testing::WithParamInterface<OtherCase>
{};

TEST_P(NoInputUser, IsNotFound)
{
    openValue(aRootlessValue(GetParam().node));
    EXPECT_EQ(usersOf("x"), "");
}

INSTANTIATE_TEST_SUITE_P(
    Nodes, NoInputUser,
    testing::Values(
        OtherCase{"AGetterOfAPath", aGetter(1, "get_path", 16384, "x")},
        OtherCase{"AVariableThatIsSet", aGetter(1, "set", 256, "x")},
        OtherCase{"AConstant", aGetter(1, "const_string", 16384, "x")},
        OtherCase{"AnUnknownFunction", aGetter(1, "get_float5", 256, "x")},
        OtherCase{"ANameInOtherLetters", aGetter(1, "get_float1", 256, "X")},
        OtherCase{"ALongerName", aGetter(1, "get_float1", 256, "x ")},
        OtherCase{"AGetterWithoutData", aFunctionNode(1, "get_float1", 256)},
        OtherCase{"AGetterOfANumber", aConstantNode(1, "get_float1", 256, "Float1", "1")},
        OtherCase{"AnotherDataItem", aFunctionNode(1, "get_float1", 256, {},
                                                   aDataItem(aConstant("String", "x"), "other"))}),
    caseName<OtherCase>);

TEST_F(InputUsers, MayHaveTheEmptyName)
{
    openValue(aRootlessValue(aGetter(1, "get_float1", 256, "")));
    EXPECT_EQ(usersOf(""), "1");
}

TEST_F(InputUsers, OfTheNamesakeUidsAreTheNodesThemselves)
{
    openValue(aRootlessValue(aFunctionNode(1, "sin", 256) + aGetter(1, "get_float1", 256, "x")));
    const auto users = collectInputUsers(*graphIn(*package), "x");
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users.front()->node(), &value().paramNodes().at(1));
}

TEST_F(InputUsers, AValueWithoutThemGetsNoController)
{
    openValue(aRootlessValue(aGetter(1, "get_float1", 256, "y")));
    usersOf("x");
    EXPECT_EQ(value().shadow(), nullptr);
}

TEST_F(InputUsers, AreFoundThroughTheGraphToo)
{
    openValue(aReader(1));
    const auto users = controllerIn(*package).collectInputUsers(*inputs().inputByIdentifier("x"));
    ASSERT_EQ(users.size(), 1u);
    EXPECT_EQ(users.front()->uid(), 1u);
}

// Freezing an input.

TEST_F(InputUsers, AFrozenInputIsGoneAndReadAsAConstant)
{
    openValue(aReader(1));
    EXPECT_TRUE(freeze(Float1{{0.25F}}));
    EXPECT_EQ(inputs().inputByIdentifier("x"), nullptr);
    EXPECT_TRUE(graphIn(*package)->paraminputs().isEmpty());
    EXPECT_EQ(textWithoutUid(), replaced(aDynamicValue(999, aConstantNode(999, "const_float1", 256,
                                                                          "Float1", "0.25")),
                                         "999", "const"));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, AFrozenInputThatNothingReadsIsRemovedByOneCommand)
{
    openValue(aDynamicValue(1, aGetter(1, "get_float1", 256, "y")));
    const std::string parameter = text();
    EXPECT_TRUE(freeze(Float1{{1}}));
    EXPECT_EQ(text(), parameter);
    EXPECT_EQ(workspace.names(), std::vector<std::string>{"REMOVE_TWEAK_INPUT_HISTORY_DESC"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, EachStepOfFreezingIsACommand)
{
    openValue(aDynamicValue(2, aGetter(1, "get_float1", 256, "x") +
                                   aFunctionNode(2, "neg", 256, aLink("a", 1))));
    freeze(Float1{{1}});
    EXPECT_EQ(workspace.names(),
              (std::vector<std::string>{
                  "REMOVE_TWEAK_INPUT_HISTORY_DESC", "ADD_ATOMIC_FUNCTION_HISTORY_DESC",
                  "CHANGE_THE_FUNCDATA_VALUE_CONST_FLOAT1_DATACONTENT_HISTORY_DESC",
                  "MOVE_NODE_HISTORY_DESC", "BeginGroupCommand (CONNECT_TWO_NODES_HISTORY_DESC)",
                  "DISCONNECT_TWO_NODES_HISTORY_DESC", "", "EndGroupCommand",
                  "BeginGroupCommand (REMOVE_NODE_HISTORY_DESC)", "", "EndGroupCommand"}));
}

TEST_F(InputUsers, TheConstantOfAnOutputBecomesTheOutputAsALastCommandBeforeTheRemoval)
{
    openValue(aReader(1));
    freeze(Float1{{1}});
    ASSERT_EQ(workspace.names().size(), 8u);
    EXPECT_EQ(workspace.names()[4], "Debug: Setting a node as output");
}

TEST_F(InputUsers, TheConstantStandsWhereTheGetterStood)
{
    openValue(aRootlessValue(
        FunctionText{1, "get_float1", 256, {}, aDataItem(aConstant("String", "x")), "-8 2.5 3"}
            .text()));
    freeze(Float1{{1}});
    EXPECT_EQ(textWithoutUid(), aRootlessValue(aConstantWithUid("const", "1", "-8 2.5 0")));
}

TEST_F(InputUsers, AGetterThatFeedsNothingIsReplaced)
{
    openValue(aDynamicValue(2, aGetter(1, "get_float1", 256, "x") + aFunctionNode(2, "neg", 256)));
    freeze(Float1{{1}});
    EXPECT_EQ(textWithoutUid(),
              aDynamicValue(2, aFunctionNode(2, "neg", 256) + aConstantWithUid("const", "1")));
}

TEST_F(InputUsers, OtherNodesAndConnectionsStay)
{
    const std::string other = aGetter(3, "get_float1", 256, "y");
    openValue(aDynamicValue(4, aGetter(1, "get_float1", 256, "x") + other +
                                   aFunctionNode(4, "add", 256, aLink("a", 1) + aLink("b", 3))));
    freeze(Float1{{1}});
    EXPECT_EQ(
        textWithoutUid(),
        aDynamicValue(4, other +
                             replaced(aFunctionNode(4, "add", 256, aLink("b", 3) + aLink("a", 999)),
                                      "999", "const") +
                             aConstantWithUid("const", "1")));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, InAListTheConstantTakesTheVeryPlaceOfTheGetter)
{
    const std::string others = aConstantNode(2, "get_float1", 256, "String", "y") +
                               aConstantNode(3, "get_float1", 256, "String", "z");
    openValue(aDynamicValue(
        4, aGetter(1, "get_float1", 256, "x") + others +
               aFunctionNode(4, "vector4", 2048,
                             aLink("componentsin", 2) + aLink("componentsin", 1) +
                                 aLink("componentsin", 1) + aLink("componentslast", 3))));
    freeze(Float1{{1}});
    EXPECT_EQ(textWithoutUid(),
              aDynamicValue(4, others +
                                   replaced(aFunctionNode(4, "vector4", 2048,
                                                          aLink("componentsin", 2) +
                                                              aLink("componentsin", 999) +
                                                              aLink("componentsin", 999) +
                                                              aLink("componentslast", 3)),
                                            "999", "const") +
                                   aConstantWithUid("const", "1")));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, EachGetterOfAGraphIsReplacedByItself)
{
    openValue(aDynamicValue(3, aGetter(1, "get_float1", 256, "x") +
                                   aGetter(2, "get_float1", 256, "x") +
                                   aFunctionNode(3, "add", 256, aLink("a", 1) + aLink("b", 2))));
    freeze(Float1{{1}});
    ASSERT_EQ(value().paramNodes().size(), 3u);
    EXPECT_EQ(value().paramNodes().at(0).function().get(), "add");
    EXPECT_EQ(value().paramNodes().at(1).function().get(), "const_float1");
    EXPECT_EQ(value().paramNodes().at(2).function().get(), "const_float1");
    EXPECT_TRUE(canBeUndone());
}

struct FreezeCase
{
    const char* name;
    unsigned inputType;
    const char* getter;
    unsigned getterType;
    boost::any constant;
    const char* kind; // of what is written
    const char* written;
};
class FrozenInput : public InputUsers, public testing::WithParamInterface<FreezeCase>
{};

TEST_P(FrozenInput, IsReadAs)
{
    GraphText graph;
    graph.inputs = anInput("x", 11, GetParam().inputType);
    graph.parameters = aParameter(
        "p", "0", aRootlessValue(aGetter(1, GetParam().getter, GetParam().getterType, "x")));
    open(graph);
    EXPECT_TRUE(freeze(GetParam().constant));
    ASSERT_EQ(value().paramNodes().size(), 1u);
    EXPECT_EQ(xmlOf(value().paramNodes().at(0).funcDatas().at(0)),
              aDataItem(aConstant(GetParam().kind, GetParam().written)));
    EXPECT_EQ(value().paramNodes().at(0).type().value().get(), GetParam().getterType);
    EXPECT_TRUE(canBeUndone());
}

INSTANTIATE_TEST_SUITE_P(
    Values, FrozenInput,
    testing::Values(
        FreezeCase{"Bool", 4, "get_bool", 4, true, "Bool", "1"},
        FreezeCase{"Int1", 16, "get_integer1", 16, Orv::Data::Int1{{-7}}, "Int1", "-7"},
        FreezeCase{"Int2", 32, "get_integer2", 32, Orv::Data::Int2{{1, 2}}, "Int2", "1 2"},
        FreezeCase{"Int3", 64, "get_integer3", 64, Orv::Data::Int3{{1, 2, 3}}, "Int3", "1 2 3"},
        FreezeCase{"Int4", 128, "get_integer4", 128, Orv::Data::Int4{{1, 2, 3, 4}}, "Int4",
                   "1 2 3 4"},
        FreezeCase{"Float1", 256, "get_float1", 256, Float1{{0.5F}}, "Float1", "0.5"},
        FreezeCase{"Float2", 512, "get_float2", 512, Orv::Data::Float2{{1, 2}}, "Float2", "1 2"},
        FreezeCase{"Float3", 1024, "get_float3", 1024, Orv::Data::Float3{{1, 2, 3}}, "Float3",
                   "1 2 3"},
        FreezeCase{"Float4", 2048, "get_float4", 2048, Orv::Data::Float4{{1, 2, 3, 4}}, "Float4",
                   "1 2 3 4"},
        FreezeCase{"NoConstant", 256, "get_float1", 256, boost::any(), "Float1", "0"},
        FreezeCase{"AConstantOfAnotherShape", 256, "get_float1", 256, Orv::Data::Int2{{1, 2}},
                   "Float1", "0"},
        FreezeCase{"AGetterOfAnotherShape", 256, "get_float3", 1024, Float1{{1}}, "Float3",
                   "0 0 0"},
        FreezeCase{"AnyInteger", 240, "get_integer1", 16, 5u, "Int1", "5"},
        FreezeCase{"AnyIntegerInAVector", 240, "get_integer2", 32, 5u, "Int2", "0 0"},
        FreezeCase{"AnyFloat", 3840, "get_float1", 256, 0.5F, "Float1", "0.5"},
        FreezeCase{"AnyFloatInAVector", 3840, "get_float4", 2048, 0.5F, "Float4", "0 0 0 0"}),
    caseName<FreezeCase>);

TEST_F(InputUsers, ATextInputIsRemovedAndNothingIsReplaced)
{
    GraphText graph;
    graph.inputs = anInput("x", 11, 32768, aConstant("String", "words"));
    graph.parameters = aParameter("p", "0", aRootlessValue(aGetter(1, "get_path", 16384, "x")));
    open(graph);
    const std::string parameter = text();
    EXPECT_TRUE(freeze(std::string("words")));
    EXPECT_TRUE(graphIn(*package)->paraminputs().isEmpty());
    EXPECT_EQ(text(), parameter);
}

class ImageInput : public InputUsers, public testing::WithParamInterface<unsigned>
{};

TEST_P(ImageInput, IsNotFrozen)
{
    GraphText graph;
    graph.inputs = anInput("x", 11, GetParam());
    graph.parameters = aParameter("p", "0", aReader(1));
    open(graph);
    EXPECT_FALSE(freeze(Float1{{1}}));
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_EQ(workspace.editCount(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Types, ImageInput, testing::Values(1u, 2u, 3u));

TEST_F(InputUsers, OtherInputsOfTheNameStay)
{
    GraphText graph;
    graph.inputs = anInput("x", 11, 256) + anInput("x", 12, 256);
    graph.parameters = aParameter("p", "0", aReader(1));
    open(graph);
    EXPECT_TRUE(freeze(Float1{{1}}));
    ASSERT_EQ(graphIn(*package)->paraminputs().size(), 1u);
    EXPECT_EQ(graphIn(*package)->paraminputs().at(0).uid().get(), 12u);
    EXPECT_TRUE(canBeUndone());
}

// Files that hang together badly.

TEST_F(InputUsers, AGetterThatIsConnectedToItselfIsReplaced)
{
    openValue(aDynamicValue(1, aFunctionNode(1, "get_float1", 256, aLink("loop", 1),
                                             aDataItem(aConstant("String", "x")))));
    freeze(Float1{{1}});
    EXPECT_EQ(textWithoutUid(),
              replaced(aDynamicValue(999, aConstantNode(999, "const_float1", 256, "Float1", "1")),
                       "999", "const"));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, TwoGettersThatFeedEachOtherAreReplaced)
{
    openValue(aRootlessValue(
        aFunctionNode(1, "get_float1", 256, aLink("loop", 2), aDataItem(aConstant("String", "x"))) +
        aFunctionNode(2, "get_float1", 256, aLink("loop", 1),
                      aDataItem(aConstant("String", "x")))));
    freeze(Float1{{1}});
    ASSERT_EQ(value().paramNodes().size(), 2u);
    EXPECT_EQ(value().paramNodes().at(0).function().get(), "const_float1");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, ConnectionsThatLeadNowhereStay)
{
    const std::string broken = aFunctionNode(3, "add", 256, aLink("a", 77) + aLink("b", 78));
    openValue(aDynamicValue(79, aGetter(1, "get_float1", 256, "x") + broken));
    freeze(Float1{{1}});
    EXPECT_EQ(textWithoutUid(), aDynamicValue(79, broken + aConstantWithUid("const", "1")));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, OfTwoNodesWithOneUidTheFirstIsWhatFeedsTheOthers)
{
    const std::string first = aFunctionNode(1, "sin", 256);
    const std::string user = aFunctionNode(3, "neg", 256, aLink("a", 1));
    openValue(aDynamicValue(1, first + aGetter(1, "get_float1", 256, "x") + user));
    freeze(Float1{{1}});
    EXPECT_EQ(textWithoutUid(), aDynamicValue(1, first + user + aConstantWithUid("const", "1")));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(InputUsers, TheInputsOfAnUnknownFunctionAreFedByTheConstant)
{
    openValue(aDynamicValue(3, aGetter(1, "get_float1", 256, "x") +
                                   aFunctionNode(3, "mystery", 256, aLink("q", 1))));
    freeze(Float1{{1}});
    EXPECT_EQ(textWithoutUid(),
              aDynamicValue(
                  3, replaced(aFunctionNode(3, "mystery", 256, aLink("q", 999)), "999", "const") +
                         aConstantWithUid("const", "1")));
    EXPECT_TRUE(canBeUndone());
}

// A frozen input gives what it gave: all values stay when it has that value.
class FreezingAnInput : public testing::TestWithParam<unsigned>
{
protected:
    FreezingAnInput()
    {
        package = &workspace.open(aPackage().containing(random.graph().text()));
        before = xmlOf(*package);
    }
    // The values of all parameters, with the input "x" at the value at which it is frozen.
    std::string values() const
    {
        std::ostringstream text;
        Orv::Data::visitTree(*graphIn(*package), [&](const Orv::Data::BaseObject& object) {
            if (const auto* value = dynamic_cast<const DynamicValue*>(&object))
                text << textOf(evaluate(*value, random.inputs())) << '\n';
        });
        return text.str();
    }
    bool freeze()
    {
        InputsController& inputs = *controllerIn(*package).inputsController();
        return switchToConstant(inputs, *inputs.inputByIdentifier("x"), random.frozenValue());
    }

    Workspace workspace;
    RandomFunctions random{GetParam()};
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
};

TEST_P(FreezingAnInput, LeavesAllValues)
{
    const std::string expected = values();
    EXPECT_TRUE(freeze());
    EXPECT_EQ(values(), expected);
    EXPECT_TRUE(collectInputUsers(*graphIn(*package), "x").empty());
}

TEST_P(FreezingAnInput, CanBeUndoneAndRedone)
{
    freeze();
    const std::string after = xmlOf(*package);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_TRUE(workspace.redoAll());
    EXPECT_EQ(xmlOf(*package), after);
}

INSTANTIATE_TEST_SUITE_P(Seeds, FreezingAnInput, testing::Range(0u, 180u));

} // namespace

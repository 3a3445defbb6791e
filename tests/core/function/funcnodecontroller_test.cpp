#include "ksx/core/funcnodecontroller.h"

#include "data/content/dynamicvalue.h"
#include "data/content/function.h"
#include "data/desc/function.h"
#include "data/diagnosticlog.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "support/contentedits.h"
#include "support/functiontext.h"
#include "support/shelfcases.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::DynamicValue;
using Ksx::Data::Desc::FunctionsEnum;
using Orv::Data::Float1;
using Orv::Data::Float2;
using Orv::Data::Int1;

class FuncNode : public testing::Test
{
protected:
    // The controller of the node with the uid 1 in a graph with these nodes. `content` stands
    // behind the graph in the package.
    FuncNodeController& open(const std::string& nodes, const std::string& content = {})
    {
        GraphText graph;
        graph.parameters = aParameter("p", "0", aRootlessValue(nodes));
        package = &workspace.open(
            aPackage().dependingOnItself(5).containing(graph.text()).containing(content));
        before = text();
        return node(1);
    }
    const DynamicValue& value() const
    {
        return static_cast<const DynamicValue&>(
            *graphIn(*package)->baseParameters().at(0).paramValue().get());
    }
    FuncGraphController& graph() const
    {
        return *graphController(Orv::Data::DataPointerBox<DynamicValue>(&value()));
    }
    FuncNodeController& node(Uid uid) const
    {
        return dynamic_cast<FuncNodeController&>(*graph().nodeByUid(uid));
    }
    std::string text() const { return xmlOf(value()); }
    static std::string inputsOf(const NodeController& node)
    {
        std::string names;
        for (std::size_t i = 0; i < node.inputConnectorCount(); ++i)
            names += (names.empty() ? "" : " ") + node.inputConnector(i)->identifier();
        return names;
    }
    bool connect(Uid source, Uid target, const std::string& input) const
    {
        return graph().connect(*node(source).outputConnector(0),
                               *node(target).inputConnectorByName(input), true);
    }
    bool canBeUndone()
    {
        const std::string after = text();
        const bool isUndone = workspace.undoAll() && text() == before;
        return isUndone && workspace.redoAll() && text() == after;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
};

std::string aNumber(unsigned uid)
{
    return aConstantNode(uid, "const_float1", 256, "Float1", "2");
}
std::string aPair(unsigned uid)
{
    return aConstantNode(uid, "const_float2", 512, "Float2", "2 3");
}

TEST_F(FuncNode, HasTheInputsOfItsDescription)
{
    const FuncNodeController& lerp = open(aFunctionNode(1, "lerp", 256));
    EXPECT_EQ(inputsOf(lerp), "a b x");
    EXPECT_EQ(lerp.functionType(), static_cast<unsigned>(FunctionsEnum::Lerp));
    EXPECT_EQ(lerp.inputConnector(0)->label(), "LERP_A");
}

TEST_F(FuncNode, HasOneOutput)
{
    const FuncNodeController& sin = open(aFunctionNode(1, "sin", 256));
    ASSERT_EQ(sin.outputConnectorCount(), 1u);
    EXPECT_EQ(sin.outputConnector(0)->outputUid(), 0u);
    EXPECT_EQ(sin.outputConnector(0)->identifier(), "unique_filter_output");
    EXPECT_EQ(sin.outputConnector(0)->label(), "ENTRY_OUTPUT_NAME");
    EXPECT_EQ(sin.outputConnector(0)->type(), 256u);
}

TEST_F(FuncNode, OfAnUnknownFunctionHasTheInputsThatAreConnected)
{
    const FuncNodeController& mystery =
        open(aFunctionNode(1, "mystery", 256, aLink("x", 2) + aLink("y", 9) + aLink("x", 2)) +
             aNumber(2));
    EXPECT_EQ(mystery.description(), nullptr);
    EXPECT_EQ(mystery.functionType(), FuncNodeController::UnknownFunction);
    EXPECT_EQ(inputsOf(mystery), "x y");
    EXPECT_EQ(mystery.connectorType("x"), 0u);
    EXPECT_TRUE(mystery.inputConnector(0)->isConnectedTo(*node(2).outputConnector(0)));
}

TEST_F(FuncNode, HasAnInputMoreForAnIdentifierThatItsDescriptionDoesNotKnow)
{
    const FuncNodeController& sin =
        open(aFunctionNode(1, "sin", 256, aLink("old", 2) + aLink("a", 2)) + aNumber(2));
    EXPECT_EQ(inputsOf(sin), "a old");
    EXPECT_EQ(node(2).outputConnector(0)->targets().size(), 2u);
}

TEST_F(FuncNode, ANewIdentifierGetsItsInputBeforeTheConnectionIsRead)
{
    FuncNodeController& mystery =
        open(aFunctionNode(1, "mystery", 256, aLink("x", 2)) + aNumber(2) + aNumber(3));
    connect(3, 1, "x");
    workspace.undoAll();
    EXPECT_TRUE(mystery.inputConnector(0)->isConnectedTo(*node(2).outputConnector(0)));
    EXPECT_EQ(mystery.inputConnector(0)->targets().size(), 1u);
}

TEST_F(FuncNode, AnUnknownInputCanBeConnectedAnewUnderItsOldConnection)
{
    open(aFunctionNode(1, "mystery", 256, aLink("x", 2)) + aNumber(2) + aNumber(3));
    EXPECT_TRUE(connect(3, 1, "x"));
    EXPECT_TRUE(node(1).inputConnectorByName("x")->isConnectedTo(*node(3).outputConnector(0)));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncNode, AnUnknownInputGoesWithItsLastConnection)
{
    open(aFunctionNode(1, "mystery", 256, aLink("x", 2) + aLink("y", 2)) + aNumber(2));
    graph().disconnect(*node(1).inputConnectorByName("x"), *node(2).outputConnector(0));
    EXPECT_EQ(inputsOf(node(1)), "y");
    workspace.undoAll();
    EXPECT_EQ(inputsOf(node(1)), "x y");
    EXPECT_EQ(node(2).outputConnector(0)->targets().size(), 2u);
}

TEST_F(FuncNode, AHandlerMayTakeAwayTheNodeWhoseUnknownInputGoes)
{
    FuncNodeController& mystery =
        open(aFunctionNode(1, "mystery", 256, aLink("x", 2)) + aNumber(2));
    mystery.connectorAboutToBeRemoved.connect(
        [this](ConnectorController*) { graph().removeNode(node(1), true); });
    graph().disconnect(*mystery.inputConnector(0), *node(2).outputConnector(0));
    EXPECT_EQ(graph().nodeByUid(1), nullptr);
    EXPECT_TRUE(workspace.undoAll());
    EXPECT_EQ(text(), before);
}

TEST_F(FuncNode, AnUnknownInputWithSeveralSourcesCanBeConnectedAnew)
{
    open(aFunctionNode(1, "mystery", 256, aLink("x", 2) + aLink("x", 3)) + aNumber(2) + aNumber(3) +
         aNumber(4));
    EXPECT_TRUE(connect(4, 1, "x"));
    EXPECT_EQ(text(), aRootlessValue(aFunctionNode(1, "mystery", 256, aLink("x", 4)) + aNumber(2) +
                                     aNumber(3) + aNumber(4)));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncNode, WithUnknownInputsCanBeRemoved)
{
    open(aFunctionNode(1, "mystery", 256, aLink("x", 2) + aLink("y", 2) + aLink("x", 3)) +
         aNumber(2) + aNumber(3) + aFunctionNode(4, "mystery", 256, aLink("z", 1)));
    graph().removeNode(node(1), true);
    EXPECT_EQ(text(), aRootlessValue(aNumber(2) + aNumber(3) + aFunctionNode(4, "mystery", 256)));
    EXPECT_EQ(inputsOf(node(4)), "");
    EXPECT_TRUE(canBeUndone());
}

struct TypeCase
{
    const char* name;
    const char* function;
    const char* input;
    unsigned type;
    bool isVariant;
};
class FuncNodeInputType : public FuncNode, public testing::WithParamInterface<TypeCase>
{};

TEST_P(FuncNodeInputType, IsThatOfTheDescription)
{
    const FuncNodeController& opened = open(aFunctionNode(1, GetParam().function, 256));
    EXPECT_EQ(opened.connectorType(GetParam().input), GetParam().type);
    EXPECT_EQ(opened.isVariantConnector(GetParam().input), GetParam().isVariant);
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, FuncNodeInputType,
    testing::Values(TypeCase{"One", "sin", "a", 256, false},
                    TypeCase{"Several", "swizzle2", "vector", 3840, false},
                    TypeCase{"Generic", "neg", "a", 3856, true},
                    TypeCase{"NoSuchInput", "sin", "b", 0, false},
                    TypeCase{"Output", "sin", "unique_filter_output", 256, false},
                    TypeCase{"GenericOutput", "neg", "unique_filter_output", 256, true}),
    caseName<TypeCase>);

TEST_F(FuncNode, AGenericInputTakesTheTypeThatAnotherOneGets)
{
    const FuncNodeController& add = open(aFunctionNode(1, "add", 512, aLink("a", 2)) + aPair(2));
    EXPECT_EQ(add.connectorType("b"), 512u);
}

TEST_F(FuncNode, ListsAreTheInputsThatTheDescriptionMarksAndTheUnknownOnes)
{
    const FuncNodeController& sequence = open(aFunctionNode(1, "sequence", 256, aLink("odd", 2)));
    EXPECT_TRUE(sequence.takesList("seqin"));
    EXPECT_FALSE(sequence.takesList("seqlast"));
    EXPECT_TRUE(sequence.takesList("odd"));
}

TEST_F(FuncNode, ANewNodeTakesOnTheTypeOfWhatIsConnected)
{
    open(aPair(1));
    const FuncNodeController& added = *graph().addAtomicFunction(FunctionsEnum::Neg);
    EXPECT_EQ(added.outputType(), 3856u);
    EXPECT_TRUE(connect(1, added.uid(), "a"));
    EXPECT_EQ(added.outputType(), 512u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncNode, ATypeTravelsThroughTheNodesBehind)
{
    open(aFunctionNode(1, "neg", 256) + aFunctionNode(2, "abs", 256, aLink("a", 1)) +
         aFunctionNode(3, "neg", 256, aLink("a", 2)) +
         aConstantNode(4, "const_int1", 16, "Int1", "2"));
    EXPECT_TRUE(connect(4, 1, "a"));
    EXPECT_EQ(node(1).outputType(), 16u);
    EXPECT_EQ(node(2).outputType(), 16u);
    EXPECT_EQ(node(3).outputType(), 16u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncNode, ATypeThatTravelsInACircleComesToRest)
{
    open(aFunctionNode(1, "neg", 256, aLink("a", 3)) + aFunctionNode(2, "neg", 256, aLink("a", 1)) +
         aFunctionNode(3, "add", 256, aLink("a", 2)) + aPair(4));
    EXPECT_TRUE(connect(4, 1, "a"));
    EXPECT_EQ(node(1).outputType(), 512u);
    EXPECT_EQ(node(3).outputType(), 512u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncNode, InputsThatComeToDisagreeLeaveTheType)
{
    open(aFunctionNode(1, "add", 256, aLink("a", 2) + aLink("b", 4)) + aNumber(2) + aPair(3) +
         aFunctionNode(4, "neg", 256));
    EXPECT_TRUE(connect(3, 4, "a"));
    EXPECT_EQ(node(4).outputType(), 512u);
    EXPECT_EQ(node(1).outputType(), 256u);
}

TEST_F(FuncNode, ATypeThatTheFunctionDoesNotTakeLeavesTheType)
{
    open(aFunctionNode(1, "mulscalar", 512, aLink("a", 3)) + aNumber(2) +
         aFunctionNode(3, "neg", 512));
    EXPECT_TRUE(connect(2, 3, "a"));
    EXPECT_EQ(node(3).outputType(), 256u);
    EXPECT_EQ(node(1).outputType(), 512u);
}

struct ConnectionCase
{
    const char* name;
    const char* function; // whose input "b", "a" or another is to be connected
    const char* input;
    unsigned type; // of the source
    bool isAccepted;
};

class FuncNodeConnection : public FuncNode, public testing::WithParamInterface<ConnectionCase>
{};

TEST_P(FuncNodeConnection, IsMadeForTypesThatTheFunctionTakes)
{
    const ConnectionCase& tried = GetParam();
    open(aFunctionNode(1, tried.function, 256, aLink("a", 2)) + aPair(2) +
         aFunctionNode(3, "mystery", tried.type));
    EXPECT_EQ(connect(3, 1, tried.input), tried.isAccepted);
    EXPECT_TRUE(canBeUndone());
}

constexpr unsigned Nothing = 524288; // the type of a node without a value
INSTANTIATE_TEST_SUITE_P(
    Types, FuncNodeConnection,
    testing::Values(ConnectionCase{"OfTheGenericType", "add", "b", 512, true},
                    ConnectionCase{"OfAnotherType", "add", "b", 256, false},
                    ConnectionCase{"OfAFixedType", "lerp", "x", 256, true},
                    ConnectionCase{"OfAnotherThanTheFixedType", "lerp", "x", 16, false},
                    ConnectionCase{"OutsideTheSetOfTheFunction", "mulscalar", "a", 256, false},
                    ConnectionCase{"WithinTheSetOfTheFunction", "mulscalar", "a", 1024, true},
                    ConnectionCase{"StillOpenWithOneThatFits", "lerp", "x", 3856, true},
                    ConnectionCase{"StillOpenWithNoneThatFits", "lerp", "x", 240, false},
                    ConnectionCase{"Unknown", "lerp", "x", 0, true},
                    ConnectionCase{"NothingForAFlow", "if", "ifpath", Nothing, true},
                    ConnectionCase{"NothingForAValue", "lerp", "x", Nothing, false},
                    ConnectionCase{"ToAnUnknownFunction", "enigma", "a", 4, true}),
    caseName<ConnectionCase>);

TEST_F(FuncNode, AConnectionOfAFileStaysWhateverItsType)
{
    open(aFunctionNode(1, "sin", 256, aLink("a", 2)) + aPair(2));
    EXPECT_TRUE(node(1).inputConnector(0)->isConnectedTo(*node(2).outputConnector(0)));
    EXPECT_TRUE(connect(2, 1, "a"));
    EXPECT_EQ(node(1).connexions()->size(), 1u);
}

TEST_F(FuncNode, AConnectionOfAFileMovesToAnotherSourceWhateverItsType)
{
    open(aFunctionNode(1, "sin", 256, aLink("a", 2)) + aPair(2) + aPair(3));
    graph().replaceSource(node(2), node(3));
    EXPECT_TRUE(node(1).inputConnector(0)->isConnectedTo(*node(3).outputConnector(0)));
}

TEST_F(FuncNode, ASourceOfUnknownTypeLeavesTheType)
{
    open(aFunctionNode(1, "neg", 256) + aFunctionNode(2, "mystery", 0));
    EXPECT_TRUE(connect(2, 1, "a"));
    EXPECT_EQ(node(1).outputType(), 256u);
}

TEST_F(FuncNode, DisconnectingLeavesTheType)
{
    open(aFunctionNode(1, "neg", 512, aLink("a", 2)) + aPair(2));
    graph().disconnect(*node(1).inputConnector(0), *node(2).outputConnector(0));
    EXPECT_EQ(node(1).outputType(), 512u);
}

TEST_F(FuncNode, AFixedTypeIsSetRightByAConnection)
{
    open(aFunctionNode(1, "sin", 16) + aNumber(2));
    EXPECT_TRUE(connect(2, 1, "a"));
    EXPECT_EQ(node(1).outputType(), 256u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncNode, AnUndoWritesNoTypesOfItsOwn)
{
    // The type is wrong in the file, and an undo brings the connection back beside it.
    open(aFunctionNode(1, "neg", 256, aLink("a", 2)) + aPair(2));
    graph().disconnect(*node(1).inputConnector(0), *node(2).outputConnector(0));
    workspace.undoAll();
    EXPECT_EQ(text(), before);
}

TEST_F(FuncNode, ATypeThatCannotBeWrittenIsReported)
{
    FuncNodeController& neg = open(aFunctionNode(1, "neg", 256));
    std::vector<std::string> reports;
    const int sink = Orv::DiagnosticLog::addSink([&](const Orv::LogRecord& record) {
        reports.push_back(std::string(record.source) + " " +
                          std::to_string(static_cast<int>(record.level)) + " " + record.text);
    });
    EXPECT_FALSE(neg.setOutputTypeFromInput(512, nullptr));
    Orv::DiagnosticLog::removeSink(sink);
    EXPECT_EQ(reports, std::vector<std::string>{"core\\corefuncnodecontroller 2 "
                                                "Node 1 have output type: 256 and must be: 512\n"});
    EXPECT_EQ(text(), before);
}

TEST_F(FuncNode, TheTypeThatIsThereIsNoReport)
{
    EXPECT_FALSE(open(aFunctionNode(1, "neg", 256)).setOutputTypeFromInput(256, nullptr));
    EXPECT_FALSE(node(1).setOutputTypeFromInput(0, nullptr));
}

struct DataCase
{
    const char* name;
    const char* function;
    unsigned type;
    const char* kind; // of the constant
    boost::any value;
    const char* written;
};
class FuncNodeData : public FuncNode, public testing::WithParamInterface<DataCase>
{
protected:
    static std::string aNodeWith(const std::string& constant)
    {
        return aFunctionNode(1, GetParam().function, GetParam().type, {},
                             aDataItem(constant) + aDataItem(aConstant("Bool", "1"), "other"));
    }
};

TEST_P(FuncNodeData, WritesTheDataItemAlone)
{
    FuncNodeController& opened = open(aNodeWith(aConstant("String", "x")));
    EXPECT_TRUE(opened.setData(GetParam().value));
    EXPECT_EQ(text(), aRootlessValue(aNodeWith(aConstant(GetParam().kind, GetParam().written))));
    EXPECT_EQ(workspace.editCount(), 1u);
    EXPECT_TRUE(canBeUndone());
}

INSTANTIATE_TEST_SUITE_P(
    Types, FuncNodeData,
    testing::Values(
        DataCase{"Bool", "const_bool", 4, "Bool", true, "1"},
        DataCase{"Int1", "const_int1", 16, "Int1", Int1{{-3}}, "-3"},
        DataCase{"Int1FromANumber", "const_int1", 16, "Int1", 3u, "3"},
        DataCase{"Int2", "const_int2", 32, "Int2", Orv::Data::Int2{{1, -2}}, "1 -2"},
        DataCase{"Int3", "const_int3", 64, "Int3", Orv::Data::Int3{{1, 2, 3}}, "1 2 3"},
        DataCase{"Int4", "const_int4", 128, "Int4", Orv::Data::Int4{{1, 2, 3, 4}}, "1 2 3 4"},
        DataCase{"Float1", "const_float1", 256, "Float1", Float1{{0.5F}}, "0.5"},
        DataCase{"Float1FromANumber", "const_float1", 256, "Float1", 0.5F, "0.5"},
        DataCase{"Float2", "const_float2", 512, "Float2", Float2{{1, 2}}, "1 2"},
        DataCase{"Float3", "const_float3", 1024, "Float3", Orv::Data::Float3{{1, 2, 3}}, "1 2 3"},
        DataCase{"Float4", "const_float4", 2048, "Float4", Orv::Data::Float4{{1, 2, 3, 4}},
                 "1 2 3 4"},
        DataCase{"Text", "const_string", 16384, "String", std::string("a b"), "a b"},
        DataCase{"NameOfAVariable", "get_float3", 1024, "String", std::string("size"), "size"}),
    caseName<DataCase>);

TEST_F(FuncNode, AValueOfAnotherShapeIsNotWritten)
{
    FuncNodeController& constant = open(aNumber(1));
    EXPECT_FALSE(constant.setData(Float2{{1, 2}}));
    EXPECT_FALSE(constant.setData(Int1{{1}}));
    EXPECT_FALSE(constant.setData(1u));
    EXPECT_FALSE(constant.setData(std::string("1")));
    EXPECT_FALSE(constant.setData({}));
    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(FuncNode, WithoutADataItemNothingIsWritten)
{
    FuncNodeController& constant = open(aFunctionNode(1, "const_float1", 256));
    EXPECT_FALSE(constant.setData(Float1{{1}}));
    EXPECT_TRUE(constant.dataValue().empty());
    EXPECT_EQ(text(), before);
}

TEST_F(FuncNode, OfAFunctionWithoutDataHoldsNothing)
{
    FuncNodeController& sin = open(aFunctionNode(1, "sin", 256));
    EXPECT_TRUE(sin.dataValue().empty());
    EXPECT_FALSE(sin.setData(Float1{{1}}));
}

TEST_F(FuncNode, TheSameValueIsACommandAllTheSame)
{
    FuncNodeController& constant = open(aNumber(1));
    EXPECT_TRUE(constant.setData(Float1{{2}}));
    EXPECT_EQ(workspace.editCount(), 1u);
    EXPECT_EQ(workspace.names(),
              std::vector<std::string>{"CHANGE_THE_FUNCDATA_VALUE_CONST_FLOAT1_DATACONTENT_"
                                       "HISTORY_DESC"});
    EXPECT_EQ(text(), before);
}

TEST_F(FuncNode, ReadsWhatItHolds)
{
    const boost::any value = open(aNumber(1)).dataValue();
    EXPECT_EQ(boost::any_cast<Float1>(value), Float1{{2}});
}

TEST_F(FuncNode, ReadsTheNameOfItsVariable)
{
    const boost::any value = open(aGetter(1, "get_float1", 256, "size")).dataValue();
    EXPECT_EQ(boost::any_cast<std::string>(value), "size");
}

TEST_F(FuncNode, ItsPositionIsThatOfTheDocument)
{
    FuncNodeController& moved = open(FunctionText{1, "sin", 256, {}, {}, "1.5 -2 3"}.text());
    EXPECT_EQ(moved.position(), QPointF(1.5, -2));
    moved.setPosition({});
    EXPECT_EQ(text(), aRootlessValue(FunctionText{1, "sin", 256, {}, {}, "0 0 3"}.text()));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(FuncNode, APositionOfZeroIsNotWritten)
{
    FuncNodeController& moved = open(aFunctionNode(1, "sin", 256));
    moved.setPosition({0, 0});
    EXPECT_EQ(text(), before);
    EXPECT_EQ(workspace.editCount(), 1u);
}

// Nodes that refer to a function of the package.

std::string aFunctionObject(const std::string& identifier, const std::string& inputs,
                            unsigned type = 256)
{
    return "<function><identifier v=\"" + identifier +
           "\"/><uid v=\"70\"/><attributes><label v=\"Fade\"/></attributes>" +
           GraphText::list("paraminputs", inputs) + "<type><value v=\"" + std::to_string(type) +
           "\"/></type><paramValue><dynamicValue><paramNodes/></dynamicValue></paramValue>"
           "</function>";
}

std::string anInstance(unsigned uid, const std::string& path, const std::string& links = {})
{
    return aFunctionNode(uid, "instance", 256, links, aDataItem(aConstant("String", path)));
}

const std::string FadePath = "pkg://fade?dependency=5";

class FuncInstance : public FuncNode
{
protected:
    // A package of one graph, whose instance refers to the function behind it.
    FuncNodeController& openFade(const std::string& links = {})
    {
        return open(anInstance(1, FadePath, links) + aNumber(2),
                    aFunctionObject("fade", anInput("x", 71, 256) + anInput("edge", 72, 512)));
    }
    void removeFunction() { eraseFrom(package->content(), 1); }
};

TEST_F(FuncInstance, HasTheInputsOfItsFunction)
{
    const FuncNodeController& instance = openFade();
    ASSERT_NE(instance.referencedFunction(), nullptr);
    EXPECT_EQ(instance.referencedFunction()->identifier().get(), "fade");
    EXPECT_EQ(inputsOf(instance), "x edge");
    EXPECT_EQ(instance.connectorType("edge"), 512u);
    EXPECT_EQ(instance.description()->nameKey, "Fade");
    EXPECT_EQ(instance.description()->outputType, 256u);
}

TEST_F(FuncInstance, AnInputThatTheFunctionDoesNotHaveIsKept)
{
    const FuncNodeController& instance = openFade(aLink("old", 2));
    EXPECT_EQ(inputsOf(instance), "x edge old");
    EXPECT_EQ(node(2).outputConnector(0)->targets().size(), 1u);
}

TEST_F(FuncInstance, WithABrokenReferenceIsAGhost)
{
    const FuncNodeController& ghost =
        open(anInstance(1, "pkg://gone?dependency=5", aLink("x", 2)) + aNumber(2));
    EXPECT_EQ(ghost.referencedFunction(), nullptr);
    EXPECT_EQ(ghost.description()->nameKey, "GHOST_FUNCTION");
    EXPECT_EQ(ghost.description()->descKey, "GHOST_FUNCTION_DESC");
    EXPECT_EQ(inputsOf(ghost), "entries x");
    EXPECT_EQ(text(), before);
}

TEST_F(FuncInstance, WithoutAReferenceIsAGhost)
{
    EXPECT_EQ(open(aFunctionNode(1, "instance", 256)).description()->nameKey, "GHOST_FUNCTION");
}

TEST_F(FuncInstance, AReferenceToAGraphIsBroken)
{
    EXPECT_EQ(open(anInstance(1, "pkg://g?dependency=5")).referencedFunction(), nullptr);
}

TEST_F(FuncInstance, BecomesAGhostWhenItsFunctionGoesAndComesBackWithIt)
{
    const FuncNodeController& instance = openFade(aLink("x", 2));
    removeFunction();
    EXPECT_EQ(instance.description()->nameKey, "GHOST_FUNCTION");
    EXPECT_EQ(inputsOf(instance), "entries x");
    EXPECT_EQ(node(2).outputConnector(0)->targets().size(), 1u);
    workspace.undoAll();
    EXPECT_EQ(instance.description()->nameKey, "Fade");
    EXPECT_EQ(inputsOf(instance), "x edge");
    EXPECT_EQ(node(2).outputConnector(0)->targets().size(), 1u);
}

TEST_F(FuncInstance, FindsAFunctionInAPackageThatIsOpenedLater)
{
    const FuncNodeController& instance = open(anInstance(1, "pkg://fade?dependency=6"));
    EXPECT_EQ(instance.referencedFunction(), nullptr);
    workspace.open(aPackage().containing(aFunctionObject("fade", anInput("x", 71, 256))), "b.obl",
                   6);
    EXPECT_NE(instance.referencedFunction(), nullptr);
    EXPECT_EQ(inputsOf(instance), "x");
}

TEST_F(FuncInstance, BecomesAGhostWhenItsPackageIsClosedAndComesBackWithIt)
{
    const FuncNodeController& instance = open(anInstance(1, "pkg://fade?dependency=6"));
    const auto& opened = workspace.open(
        aPackage().containing(aFunctionObject("fade", anInput("x", 71, 256))), "b.obl", 6);
    workspace.packages().removePackages({PackagesListManager::PackageBox(&opened)});
    EXPECT_EQ(instance.referencedFunction(), nullptr);
    EXPECT_EQ(instance.description()->nameKey, "GHOST_FUNCTION");
    workspace.undoAll();
    EXPECT_NE(instance.referencedFunction(), nullptr);
}

TEST_F(FuncInstance, FindsAFunctionInAGroup)
{
    const FuncNodeController& instance =
        open(anInstance(1, "pkg://tools/fade?dependency=5"),
             aGroup("other", aFunctionObject("fade", anInput("x", 71, 256))));
    EXPECT_EQ(instance.referencedFunction(), nullptr);
    rename(package->content().at(1), "tools");
    EXPECT_NE(instance.referencedFunction(), nullptr);
    workspace.undoAll();
    EXPECT_EQ(instance.referencedFunction(), nullptr);
}

TEST_F(FuncInstance, HoldsNoData)
{
    FuncNodeController& instance = openFade();
    EXPECT_TRUE(instance.dataValue().empty());
    EXPECT_FALSE(instance.setData(std::string("pkg://other")));
}

} // namespace

// The contexts in which translation files have the texts of the library.
#include "data/content/compfilter.h"
#include "data/content/graphoutput.h"
#include "data/content/paraminput.h"
#include "data/content/paramsgraph.h"
#include "data/content/paramsgraphdata.h"
#include "data/content/resource.h"
#include "data/desc/filter.h"
#include "data/desc/function.h"
#include "data/vec.h"
#include "ksx/core/compfilternodecontroller.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/compinstancenodecontroller.h"
#include "ksx/core/compoutputnodecontroller.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/packagelistener.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/resourcelistener.h"
#include "ksx/core/tweakinputcontroller.h"
#include "support/functiontext.h"
#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include "support/workspace.h"
#include <QCoreApplication>
#include <QFile>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::DynamicValue;
using Ksx::Data::Content::Resource;
using Ksx::Data::Desc::FilterKind;
using Ksx::Data::Desc::FunctionsEnum;

// A graph of an instance without target, an input, an output, and two blurs of which one feeds the
// other; its parameter "randomseed" is computed: one of two constants, negated.
PackageText aFurnishedPackage()
{
    const std::string function =
        aDynamicValue(1, aFunctionNode(1, "neg", 256, aLink("a", 2)) +
                             aConstantNode(2, "const_float1", 256, "Float1", "2") +
                             aConstantNode(3, "const_float1", 256, "Float1", "3"));
    const GraphText graph{
        "g",
        4,
        anInput("image", 7, 1) + anInput("number", 8, 256, aConstant("Float1", "1")),
        anOutput("o", 21),
        aNode(1, aFilter("blur"), {}, 10, 1) +
            aNode(2, aFilter("blur"), aConnexion("input1", 1, 10), 20, 1) +
            aNode(3, anInputBridge(7), {}, 30, 1) + aNode(4, anOutputBridge(21)) +
            aNode(
                5,
                "<compInstance><path><value v=\"pkg://gone\"/></path><parameters/><outputBridgings>"
                "<outputBridging><uid v=\"50\"/><identifier v=\"lost\"/></outputBridging>"
                "</outputBridgings></compInstance>",
                {}, 50, 1),
        aParameter("randomseed", "", function),
        aRootOutput(21)};
    return aPackage().containing(graph.text() + aResource("picture", "/p.png"));
}

struct Translation : testing::Test
{
    Translation() : package(workspace.open(aFurnishedPackage())), graph(controllerIn(package)) {}

    CompNodeController& node(Uid uid) const
    {
        return static_cast<CompNodeController&>(*graph.nodeByUid(uid));
    }
    FuncGraphController& function() const
    {
        const auto* value = dynamic_cast<const DynamicValue*>(
            graph.graph()->baseParameters().at(0).paramValue().get());
        return *graphController(Orv::Data::DataPointerBox<DynamicValue>(value));
    }
    FuncNodeController& functionNode(Uid uid) const
    {
        return static_cast<FuncNodeController&>(*function().nodeByUid(uid));
    }
    ResourceListener& resource() const
    {
        return ResourceListener::of(dynamic_cast<const Resource&>(package.content().at(1)));
    }
    QSharedPointer<PackageController> packageController() const
    {
        return PackageListener::of(package).controller();
    }

    Workspace workspace;
    const Ksx::Data::Content::Package& package;
    CompGraphController& graph;
};

// Texts of the history.

struct EditCase
{
    const char* name;
    void (*edit)(Translation& test);
    const char* text; // of the command, or of the first one of several
};

std::ostream& operator<<(std::ostream& stream, const EditCase& c)
{
    return stream << c.name;
}

struct HistoryText : Translation, testing::WithParamInterface<EditCase>
{
    const EchoTranslator translator;
};

TEST_P(HistoryText, IsLookedUpInTheContextOfItsClass)
{
    GetParam().edit(*this);

    ASSERT_FALSE(workspace.names().empty());
    EXPECT_EQ(workspace.names().front(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Graphs, HistoryText,
    testing::Values(
        EditCase{"AddFilter",
                 [](Translation& test) { test.graph.addAtomicFilter(FilterKind::Warp); },
                 "Ksx::Core::CompGraphController|ADD_ATOMIC_FILTER_HISTORY_DESC"},
        EditCase{"AddInstance",
                 [](Translation& test) { test.graph.addInstanceNode({}, "pkg://nowhere"); },
                 "Ksx::Core::CompGraphController|ADD_INSTANCE_NODE_HISTORY_DESC"},
        EditCase{"AddInput",
                 [](Translation& test) {
                     test.graph.addInputNode({"in", 1});
                 },
                 "Ksx::Core::CompGraphController|ADD_INPUT_NODE_HISTORY_DESC"},
        EditCase{"AddOutput",
                 [](Translation& test) {
                     test.graph.addOutputNode({"out", 1});
                 },
                 "Ksx::Core::CompGraphController|ADD_OUTPUT_NODE_HISTORY_DESC"},
        EditCase{"RemoveNode", [](Translation& test) { test.graph.removeNode(test.node(1), true); },
                 "BeginGroupCommand (Ksx::Core::CompGraphController|REMOVE_NODE_HISTORY_DESC)"},
        EditCase{"Connect",
                 [](Translation& test) {
                     test.graph.connect(*test.node(3).outputConnector(0),
                                        *test.node(1).inputConnector(0), true);
                 },
                 "BeginGroupCommand "
                 "(Ksx::Core::CompGraphController|CONNECT_TWO_NODES_HISTORY_DESC)"},
        EditCase{"Disconnect",
                 [](Translation& test) {
                     test.graph.disconnect(*test.node(1).outputConnector(0),
                                           *test.node(2).inputConnector(0));
                 },
                 "Ksx::Core::CompGraphController|DISCONNECT_TWO_NODES_HISTORY_DESC"},
        EditCase{"Move",
                 [](Translation& test) {
                     test.node(1).setPosition({1.0, 2.0});
                 },
                 "Ksx::Core::BaseNodeController|MOVE_NODE_HISTORY_DESC"},
        EditCase{"SetDepth", [](Translation& test) { test.node(1).setDepth(1.0F); },
                 "Ksx::Core::BaseNodeController|SET_DEPTH_NODE_HISTORY_DESC"}),
    caseName<EditCase>);

INSTANTIATE_TEST_SUITE_P(
    Functions, HistoryText,
    testing::Values(
        EditCase{"AddFunction",
                 [](Translation& test) { test.function().addAtomicFunction(FunctionsEnum::Add); },
                 "Ksx::Core::FuncGraphController|ADD_ATOMIC_FUNCTION_HISTORY_DESC"},
        EditCase{"RemoveNode",
                 [](Translation& test) { test.function().removeNode(test.functionNode(2), true); },
                 "BeginGroupCommand (Ksx::Core::FuncGraphController|REMOVE_NODE_HISTORY_DESC)"},
        EditCase{"Connect",
                 [](Translation& test) {
                     test.function().connect(*test.functionNode(3).outputConnector(0),
                                             *test.functionNode(1).inputConnector(0), true);
                 },
                 "BeginGroupCommand "
                 "(Ksx::Core::FuncGraphController|CONNECT_TWO_NODES_HISTORY_DESC)"},
        EditCase{"Disconnect",
                 [](Translation& test) {
                     test.function().disconnect(*test.functionNode(2).outputConnector(0),
                                                *test.functionNode(1).inputConnector(0));
                 },
                 "Ksx::Core::FuncGraphController|DISCONNECT_TWO_NODES_HISTORY_DESC"},
        EditCase{"SetData",
                 [](Translation& test) { test.functionNode(2).setData(Orv::Data::Float1{{3}}); },
                 "Ksx::Editor::Core::FuncDataModifier|CHANGE_THE_FUNCDATA_VALUE_"
                 "Ksx::Data::Desc::Functions|CONST_FLOAT1_DATACONTENT_HISTORY_DESC"}),
    caseName<EditCase>);

INSTANTIATE_TEST_SUITE_P(
    Values, HistoryText,
    testing::Values(
        EditCase{
            "AddTweakInput",
            [](Translation& test) { test.graph.inputsController()->addTweakInput(256, "more"); },
            "Ksx::Core::InputsController|ADD_TWEAK_INPUT_HISTORY_DESC"},
        EditCase{"RemoveInput",
                 [](Translation& test) {
                     InputsController& inputs = *test.graph.inputsController();
                     inputs.removeInput(*inputs.inputByIdentifier("number"));
                 },
                 "Ksx::Core::InputsController|REMOVE_TWEAK_INPUT_HISTORY_DESC"},
        EditCase{
            "SetParameter",
            [](Translation& test) {
                test.node(1).parameterController("intensity")->setValue(Orv::Data::Float1{{3}});
            },
            "Ksx::Core::ParameterModifier|PARAMETER_Ksx::Data::Desc::Filters|"
            "BLUR_INTENSITY_NAME_VALUE_MODIFICATION_HISTORY_DESC"},
        EditCase{"SetRelativeTo",
                 [](Translation& test) {
                     test.node(1)
                         .parameterController("intensity")
                         ->setRelativeTo(InheritanceMethod::RelativeToInput);
                 },
                 "Ksx::Core::ParameterModifier|PARAMETER_Ksx::Data::Desc::Filters|"
                 "BLUR_INTENSITY_NAME_RELATIVE_TO_MODIFICATION_HISTORY_DESC"},
        EditCase{"AddLinkedResource",
                 [](Translation& test) {
                     test.packageController()->addLinkedResource(1, "PNG", "r", "/r.png");
                 },
                 "Ksx::Core::PackageController|ADD_LINKED_RESOURCE_HISTORY_DESC"},
        EditCase{"SetCookedFormat", [](Translation& test) { test.resource().setCookedFormat(2); },
                 "BeginGroupCommand (Ksx::Core::ResourceListener|SET_COOKED_FORMAT)"},
        EditCase{"SetCookedQuality", [](Translation& test) { test.resource().setCookedQuality(2); },
                 "BeginGroupCommand (Ksx::Core::ResourceListener|SET_COOKED_QUALITY)"}),
    caseName<EditCase>);

// Names of what is new.

// Knows one text of one context.
class OneText final : public QTranslator
{
public:
    OneText(std::string context, std::string key, QString text)
        : m_context(std::move(context)), m_key(std::move(key)), m_text(std::move(text))
    {
        QCoreApplication::installTranslator(this);
    }
    ~OneText() override { QCoreApplication::removeTranslator(this); }
    QString translate(const char* context, const char* key, const char*, int) const override
    {
        return context == m_context && key == m_key ? m_text : QString();
    }
    bool isEmpty() const override { return false; }

private:
    std::string m_context;
    std::string m_key;
    QString m_text;
};

struct NameCase
{
    const char* name;
    const char* context;
    const char* key;
    std::string (*nameOfNew)(Translation& test); // made without a name
};

std::ostream& operator<<(std::ostream& stream, const NameCase& c)
{
    return stream << c.name;
}

struct DefaultName : Translation, testing::WithParamInterface<NameCase>
{};

TEST_P(DefaultName, IsLookedUpInItsContext)
{
    const OneText translator(GetParam().context, GetParam().key, "fresh");

    EXPECT_EQ(GetParam().nameOfNew(*this), "fresh");
}

constexpr const char* Filters = "Ksx::Data::Desc::Filters";
constexpr const char* Packages = "Ksx::Data::Desc::Packages";

INSTANTIATE_TEST_SUITE_P(
    Kinds, DefaultName,
    testing::Values(
        NameCase{"Input", Filters, "DEFAULT_INPUT_IDENTIFIER",
                 [](Translation& test) {
                     return test.graph.inputsController()->addTweakInput(256, "")->identifier();
                 }},
        NameCase{"ImageInput", Filters, "DEFAULT_INPUT_IDENTIFIER",
                 [](Translation& test) {
                     return test.graph.addInputNode({"", 1})->input()->identifier();
                 }},
        NameCase{"Output", Filters, "DEFAULT_OUTPUT_IDENTIFIER",
                 [](Translation& test) {
                     return test.graph.addOutputNode({"", 1})->output()->identifier().get();
                 }},
        NameCase{"ParameterNode", Filters, "DEFAULT_PARAMETERNODE_IDENTIFIER",
                 [](Translation& test) {
                     const auto* node = test.graph.addAtomicFilter(FilterKind::FxMaps);
                     const auto& map = node->filter()->paramsGraphs().at(0);
                     return map.paramsGraphDatas().at(0).identifier().get();
                 }},
        NameCase{"Graph", Packages, "DEFAULT_NEW_GRAPH_IDENTIFIER",
                 [](Translation& test) {
                     return test.packageController()->addGraph("")->identifier().toStdString();
                 }},
        NameCase{"Resource", Packages, "DEFAULT_NEW_RESOURCE_IDENTIFIER",
                 [](Translation& test) {
                     const auto controller = test.packageController();
                     return controller->addLinkedResource(1, "PNG", "", "/r.png")
                         ->resource()
                         ->identifier()
                         .get();
                 }},
        NameCase{
            "Package", Packages, "DEFAULT_NEW_PACKAGE_IDENTIFIER",
            [](Translation&) { return PackagesListManager::newPackage("")->identifier().get(); }}),
    caseName<NameCase>);

// Labels of connectors, which a controller takes when it is made.

struct LabelledNodes : testing::Test
{
    LabelledNodes() : graph(controllerIn(workspace.open(aFurnishedPackage()))) {}

    const EchoTranslator translator;
    Workspace workspace;
    CompGraphController& graph;
};

TEST_F(LabelledNodes, AFiltersInputHasTheTextsOfItsDescription)
{
    const auto& input = *graph.nodeByUid(1)->inputConnector(0);

    EXPECT_EQ(input.label(), "Ksx::Data::Desc::Filters|BLUR_INPUT_1_NAME");
    EXPECT_EQ(input.tooltip(), "Ksx::Data::Desc::Filters|BLUR_INPUT_1_DESC");
}

TEST_F(LabelledNodes, AnInputNodesOutputIsAnEntry)
{
    const auto& output = *graph.nodeByUid(3)->outputConnector(0);

    EXPECT_EQ(output.label(), "Ksx::Data::Desc::Filters|ENTRY_OUTPUT_NAME");
    EXPECT_EQ(output.tooltip(), "Ksx::Data::Desc::Filters|ENTRY_OUTPUT_DESC");
}

TEST_F(LabelledNodes, AnOutputNodesInputIsAnEntry)
{
    const auto& input = *graph.nodeByUid(4)->inputConnector(0);

    EXPECT_EQ(input.label(), "Ksx::Data::Desc::Filters|INPUT_ENTRY_NAME");
    EXPECT_EQ(input.tooltip(), "Ksx::Data::Desc::Filters|INPUT_ENTRY_DESC");
}

TEST_F(LabelledNodes, AGhostsOutputNamesItsOutput)
{
    const auto& output = *graph.nodeByUid(5)->outputConnector(0);

    EXPECT_EQ(output.label(), "Ksx::Data::Desc::Filters|GHOST_OUTPUT_ENTRY_lost");
    EXPECT_EQ(output.tooltip(), "Ksx::Data::Desc::Filters|GHOST_OUTPUT_ENTRY_DESC");
}

TEST_F(LabelledNodes, AFunctionsConnectorsHaveTheTextsOfFunctionsAndEntries)
{
    const auto* value =
        dynamic_cast<const DynamicValue*>(graph.graph()->baseParameters().at(0).paramValue().get());
    auto& function = *graphController(Orv::Data::DataPointerBox<DynamicValue>(value));
    const auto& node = *function.nodeByUid(1);

    EXPECT_EQ(node.inputConnector(0)->label(), "Ksx::Data::Desc::Functions|NEG_A");
    EXPECT_EQ(node.outputConnector(0)->label(), "Ksx::Data::Desc::Filters|ENTRY_OUTPUT_NAME");
    EXPECT_EQ(node.outputConnector(0)->tooltip(), "Ksx::Data::Desc::Filters|ENTRY_OUTPUT_DESC");
}

} // namespace

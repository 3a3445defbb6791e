// Who hears of an edit may edit as well: take away what the edit was about, or undo it.
#include "behavior/cachelistener.h"
#include "core/icommandmanager.h"
#include "core/manipulatorlist.h"
#include "data/content/graphmanipulators.h"
#include "data/content/layoutmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "data/content/resource.h"
#include "ksx/core/compnodecontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/entryinputcontroller.h"
#include "ksx/core/graphcontrollerlistener.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/optionscontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/packagelistener.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/resourcelistener.h"
#include "ksx/core/rootoutputcontroller.h"
#include "ksx/core/tweakinputcontroller.h"
#include "support/contentedits.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Graph;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBoxMasterKey;

// A graph of the inputs "a", an image, and "x", a number, the output "o", and a blur.
class SignalHandlers : public testing::Test
{
protected:
    SignalHandlers()
    {
        const GraphText graph{"g",
                              4,
                              anInput("a", 7, 1) + anInput("x", 8, 256, aConstant("Float1", "0.5")),
                              anOutput("o", 21),
                              aNode(1, aFilter("blur"), {}, 10, 1),
                              {},
                              aRootOutput(21)};
        package = &workspace.open(aPackage().containing(
            replaced(graph.text(), "<root>",
                     "<options><option><name v=\"n\"/><value v=\"1\"/></option></options><root>")));
        before = xmlOf(*package);
    }

    CompGraphController& graph() { return controllerIn(*package); }
    InputsController& inputs() { return *graph().inputsController(); }
    // Takes the graph away, with all of its controllers.
    std::function<void()> eraser()
    {
        return [this] {
            if (!package->content().isEmpty())
                eraseFrom(package->content(), 0);
        };
    }
    // Undoes the last command as soon as it is through.
    void undoEachEdit()
    {
        workspace.commandManager()->executed().connect(
            [this](const std::shared_ptr<Orv::Core::ICommand>& command) {
                if (auto* edit = dynamic_cast<Orv::Core::IUndoableCommand*>(command.get()))
                    undoneCount += edit->undo() ? 1 : 0;
            });
    }
    bool isGone() const { return package->content().isEmpty(); }
    template <class Edit>
    void write(const Edit& edit)
    {
        runEdit(graphIn(*package), 0, +edit, "write");
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
    int undoneCount = 0;
};

// The inputs of a graph.

TEST_F(SignalHandlers, MayTakeAwayTheGraphThatAnInputIsAddedTo)
{
    inputs().inputAdded.connect([erase = eraser()](std::size_t) { erase(); });
    EXPECT_EQ(inputs().addTweakInput(256, "y"), nullptr);
    EXPECT_TRUE(isGone());
    workspace.undoAll();
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(SignalHandlers, MayRemoveTheInputThatHasCome)
{
    InputsController& all = inputs();
    all.inputAdded.connect([&](std::size_t index) { all.removeInput(*all.inputs()[index]); });
    EXPECT_EQ(all.addTweakInput(256, "y"), nullptr);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(SignalHandlers, MayTakeAwayTheGraphThatAnInputLeaves)
{
    inputs().inputAboutToRemove.connect([erase = eraser()](std::size_t) { erase(); });
    EXPECT_TRUE(inputs().removeInput(*inputs().inputByUid(8)));
    EXPECT_TRUE(isGone());
}

TEST_F(SignalHandlers, MayTakeAwayTheGraphWhoseInputIsFrozen)
{
    inputs().inputAboutToRemove.connect([erase = eraser()](std::size_t) { erase(); });
    EXPECT_TRUE(switchToConstant(inputs(), *inputs().inputByUid(8), Orv::Data::Float1{{0.25F}}));
    EXPECT_TRUE(isGone());
}

TEST_F(SignalHandlers, MayTakeAwayTheGraphWhoseInputsAreMoved)
{
    inputs().orderChanged.connect(eraser());
    write([](ManipulatorStruct<Graph> edited, const DataPointerBoxMasterKey&, const int&) {
        edited.paraminputs().move(0, 1);
        return true;
    });
    EXPECT_TRUE(isGone());
}

TEST_F(SignalHandlers, MayRemoveTheInputThatIsDescribedAnew)
{
    auto* const input = static_cast<TweakInputController*>(inputs().inputByUid(8));
    const auto remove = [this] {
        if (InputController* there = inputs().inputByUid(8))
            inputs().removeInput(*there);
    };
    input->identifierChanged.connect(remove);
    input->labelChanged.connect(remove);
    input->descriptionChanged.connect(remove);
    Ksx::Data::Desc::Parameter description = aDescription("y", 256);
    description.descKey = "described";
    EXPECT_TRUE(input->initFromDescription(description));
    EXPECT_EQ(inputs().inputByUid(8), nullptr);
}

TEST_F(SignalHandlers, MayRemoveTheInputThatChangesItsType)
{
    auto& input = static_cast<EntryInputController&>(*inputs().inputByUid(7));
    input.typeChanged.connect([&] { inputs().removeInput(input); });
    write([](ManipulatorStruct<Graph> edited, const DataPointerBoxMasterKey&, const int&) {
        edited.paraminputs().at(0).type().value().set(2);
        return true;
    });
    EXPECT_EQ(inputs().inputByUid(7), nullptr);
}

// Outputs and options.

TEST_F(SignalHandlers, MayTakeAwayTheGraphThatAnOutputIsAddedTo)
{
    graph().outputAdded.connect([erase = eraser()](OutputController*, std::size_t) { erase(); });
    EXPECT_EQ(graph().addOutputNode({"p", 1}), nullptr);
    EXPECT_TRUE(isGone());
}

TEST_F(SignalHandlers, MayTakeAwayTheGraphThatARootOutputIsAddedTo)
{
    graph().rootOutputAdded.connect(
        [erase = eraser()](RootOutputController*, std::size_t) { erase(); });
    EXPECT_EQ(graph().addOutputNode({"p", 1}), nullptr);
    EXPECT_TRUE(isGone());
}

TEST_F(SignalHandlers, MayTakeAwayTheGraphWhoseOutputChanges)
{
    OutputController& output = *graph().outputs().front();
    output.identifierChanged.connect(eraser());
    output.labelChanged.connect(eraser());
    output.usagesChanged.connect(eraser());
    write([](ManipulatorStruct<Graph> edited, const DataPointerBoxMasterKey&, const int&) {
        edited.graphOutputs().at(0).identifier().set("p");
        edited.graphOutputs().at(0).attributes().label().set("p");
        edited.graphOutputs().at(0).usages().pushBack(
            std::make_unique<Ksx::Data::Content::Usage>());
        return true;
    });
    EXPECT_TRUE(isGone());
}

TEST_F(SignalHandlers, MayTakeAwayTheGraphWhoseOptionsChange)
{
    graph().optionsController().changed.connect(eraser());
    write([](ManipulatorStruct<Graph> edited, const DataPointerBoxMasterKey&, const int&) {
        edited.options().clear();
        return true;
    });
    EXPECT_TRUE(isGone());
}

// Parameters.

TEST_F(SignalHandlers, MayTakeAwayTheGraphWhoseParameterChangesInTwoWays)
{
    auto& node = static_cast<CompNodeController&>(*graph().nodeByUid(1));
    ParameterController& size = *node.parametersController()->parameter("outputsize");
    size.changes().valueChanged.connect(eraser());
    size.changes().relativeToChanged.connect(eraser());
    EXPECT_TRUE(size.setRelativeTo(InheritanceMethod::Absolute));
    EXPECT_TRUE(isGone());
}

TEST_F(SignalHandlers, MayTakeAwayTheNodeWhoseParametersAreDescribedAnew)
{
    auto& node = static_cast<CompNodeController&>(*graph().nodeByUid(1));
    ParametersController& parameters = *node.parametersController();
    const auto remove = [this](std::size_t) {
        if (NodeController* there = graph().nodeByUid(1))
            graph().removeNode(*there, true);
    };
    parameters.parameterRemoved().connect(remove);
    parameters.parameterAdded().connect(remove);
    parameters.setDescriptions({aGroupOf({aDescription("one", 16), aDescription("two", 16)})},
                               false);
    EXPECT_EQ(graph().nodeByUid(1), nullptr);
}

TEST_F(SignalHandlers, MayTakeAwayTheNodeOfAParameterThatIsDescribedAnew)
{
    auto& node = static_cast<CompNodeController&>(*graph().nodeByUid(1));
    ParametersController& parameters = *node.parametersController();
    parameters.parameter("intensity")->changes().valueChanged.connect([this] {
        if (NodeController* there = graph().nodeByUid(1))
            graph().removeNode(*there, true);
    });
    parameters.setDescriptions(
        {aGroupOf({aDescription("intensity", 16, 3u), aDescription("two", 16)})}, false);
    EXPECT_EQ(graph().nodeByUid(1), nullptr);
}

TEST_F(SignalHandlers, MayDescribeTheParametersOnceMore)
{
    auto& node = static_cast<CompNodeController&>(*graph().nodeByUid(1));
    ParametersController& parameters = *node.parametersController();
    std::vector<std::size_t> added;
    const ParametersController::Groups last{aGroupOf({aDescription("last", 16)})};
    parameters.parameterAdded().connect([&](std::size_t index) {
        added.push_back(index);
        parameters.setDescriptions(last, false);
    });
    parameters.setDescriptions({aGroupOf({aDescription("one", 16), aDescription("two", 16)})},
                               false);
    EXPECT_EQ(parameters.count(), 1u);
    EXPECT_EQ(added, (std::vector<std::size_t>{0, 0}));
}

// Connectors.

TEST_F(SignalHandlers, MayTakeAwayTheNodeWhoseTypeChanges)
{
    NodeController& node = *graph().nodeByUid(1);
    node.outputTypeChanged.connect([&](unsigned) { graph().removeNode(node, true); });
    write([](ManipulatorStruct<Graph> edited, const DataPointerBoxMasterKey&, const int&) {
        edited.compNodes().at(0).compOutputs().at(0).comptype().value().set(2);
        return true;
    });
    EXPECT_EQ(graph().nodeByUid(1), nullptr);
}

// What is kept of a graph.

TEST_F(SignalHandlers, MayTakeAwayTheGraphWhoseCacheIsDropped)
{
    CompiledGraphListener& listener = CompiledGraphListener::of(*graph().graph());
    listener.data().renew();
    listener.data().dropped.connect(eraser());
    inputs().addTweakInput(256, "y");
    EXPECT_TRUE(isGone());
}

// Those that hear of commands.

TEST_F(SignalHandlers, MayUndoWhatHasAddedAnInput)
{
    undoEachEdit();
    EXPECT_EQ(inputs().addTweakInput(256, "y"), nullptr);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(SignalHandlers, MayUndoWhatHasAddedANode)
{
    undoEachEdit();
    EXPECT_EQ(graph().addAtomicFilter(1u), nullptr);
    EXPECT_EQ(graph().addInputNode({"in", 1}), nullptr);
    EXPECT_EQ(graph().addOutputNode({"out", 1}), nullptr);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(SignalHandlers, MayUndoWhatHasAddedAGraphOrAResource)
{
    undoEachEdit();
    PackageController controller(*package);
    EXPECT_EQ(controller.addGraph(QStringLiteral("h")), nullptr);
    EXPECT_EQ(controller.addLinkedResource(3, QStringLiteral("PNG"), QString(),
                                           QStringLiteral("/there/none.png")),
              nullptr);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(SignalHandlers, MayUndoTheFirstOfSeveralCommands)
{
    undoEachEdit();
    switchToConstant(inputs(), *inputs().inputByUid(8), Orv::Data::Float1{{0.25F}});
    graph().removeNode(*graph().nodeByUid(1), true);
    EXPECT_EQ(xmlOf(*package), before);
}

} // namespace

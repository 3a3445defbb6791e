#include "ksx/core/inputscontroller.h"

#include "core/commanddatamodification.h"
#include "data/content/graphmanipulators.h"
#include "data/content/packageslist.h"
#include "data/desc/valuetype.h"
#include "ksx/core/entryinputcontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/tweakinputcontroller.h"
#include "support/shelfcases.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::ParamInput;
using Orv::Core::CommandDataModification;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorList;

constexpr Uid FirstCount = 50;

// The clock stands at 1000 seconds.
class Inputs : public testing::Test
{
protected:
    Inputs()
    {
        UidSource::setClock([] { return std::time_t{1000}; });
    }
    ~Inputs() override { UidSource::setClock({}); }
    InputsController& open(const std::string& inputs = {})
    {
        GraphText graph;
        graph.inputs = inputs;
        package = &workspace.open(aPackage().containing(graph.text()));
        before = xmlOf(*package);
        UidSource::shared().setCounter(FirstCount);
        return *controllerIn(*package).inputsController();
    }
    // The inputs a, b and c with the uids 1, 2 and 3.
    InputsController& openThree()
    {
        return open(anInput("a", 1, 256) + anInput("b", 2, 1) + anInput("c", 3, 4));
    }
    const Orv::Data::ContainerList<ParamInput>& list() const
    {
        return graphIn(*package)->paraminputs();
    }
    static std::string namesOf(const InputsController& controller)
    {
        std::string names;
        for (const InputController* input : controller.inputs())
            names += (names.empty() ? "" : " ") + input->identifier();
        return names;
    }
    // An edit of the list that no controller makes; it is none of the workspace's.
    std::shared_ptr<CommandDataModification>
    edit(const std::function<void(ManipulatorList<ParamInput>)>& function) const
    {
        auto command = std::make_shared<CommandDataModification>(
            [this, function](ManipulatorContext& context) {
                function(ManipulatorList<ParamInput>(list(), context));
                return true;
            },
            "edit");
        command->execute();
        return command;
    }
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

// --- what there is

TEST_F(Inputs, HaveAControllerEachInTheirOrder)
{
    const InputsController& inputs = openThree();

    EXPECT_EQ(namesOf(inputs), "a b c");
    EXPECT_EQ(inputs.inputs()[2]->input(), &list().at(2));
    EXPECT_EQ(inputs.graph(), graphIn(*package).get());
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(Inputs, AreFoundByIdentifier)
{
    const InputsController& inputs = openThree();

    EXPECT_EQ(inputs.inputByIdentifier("b"), inputs.inputs()[1]);
    EXPECT_EQ(inputs.inputByIdentifier("B"), nullptr);
    EXPECT_EQ(inputs.inputByIdentifier("b "), nullptr);
    EXPECT_EQ(inputs.inputByIdentifier(""), nullptr);
}

TEST_F(Inputs, AreFoundByUid)
{
    const InputsController& inputs = openThree();

    EXPECT_EQ(inputs.inputByUid(3), inputs.inputs()[2]);
    EXPECT_EQ(inputs.inputByUid(4), nullptr);
    EXPECT_EQ(inputs.inputByUid(NoUid), nullptr);
}

TEST_F(Inputs, OfOneNameTheFirstIsFound)
{
    InputsController& inputs =
        open(anInput("a", 1, 256) + anInput("a", 1, 256) + anInput("a", 1, 256));
    EXPECT_EQ(inputs.inputByIdentifier("a"), inputs.inputs()[0]);
    EXPECT_EQ(inputs.inputByUid(1), inputs.inputs()[0]);

    ASSERT_TRUE(inputs.removeInput(*inputs.inputs()[0]));

    EXPECT_EQ(inputs.inputByIdentifier("a")->input(), &list().at(0));
    EXPECT_EQ(inputs.inputByUid(1)->input(), &list().at(0));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(Inputs, OfOneNameTheFirstIsFoundAgainWhenItsRemovalIsUndone)
{
    InputsController& inputs = open(anInput("a", 1, 256) + anInput("a", 1, 256));
    inputs.removeInput(*inputs.inputs()[0]);
    workspace.undoAll();

    EXPECT_EQ(inputs.inputByIdentifier("a"), inputs.inputs()[0]);
    EXPECT_EQ(inputs.inputByUid(1), inputs.inputs()[0]);
}

TEST_F(Inputs, OfOneNameTheFirstInTheNewOrderIsFound)
{
    InputsController& inputs = open(anInput("a", 1, 256) + anInput("a", 1, 256));
    InputController* const second = inputs.inputs()[1];
    ASSERT_NE(inputs.inputByIdentifier("a"), second);

    const auto command = edit([](auto items) { items.move(0, 1); });

    EXPECT_EQ(inputs.inputs()[0], second);
    EXPECT_EQ(inputs.inputByIdentifier("a"), second);
    EXPECT_EQ(inputs.inputByUid(1), second);
}

TEST_F(Inputs, AreFoundByTheirNewIdentifierAfterARename)
{
    const InputsController& inputs = openThree();
    InputController* const input = inputs.inputByIdentifier("b");
    const auto command = edit([](auto items) { items.at(1).identifier().set("x"); });

    EXPECT_EQ(inputs.inputByIdentifier("x"), input);
    EXPECT_EQ(inputs.inputByIdentifier("b"), nullptr);

    command->undo();
    EXPECT_EQ(inputs.inputByIdentifier("b"), input);
    EXPECT_EQ(inputs.inputByIdentifier("x"), nullptr);
}

TEST_F(Inputs, ARenameToATakenNameLeavesTheFirstInFront)
{
    const InputsController& inputs = openThree();
    const auto command = edit([](auto items) { items.at(2).identifier().set("a"); });
    EXPECT_EQ(inputs.inputByIdentifier("a"), inputs.inputs()[0]);

    const auto other = edit([](auto items) { items.at(0).identifier().set("z"); });
    EXPECT_EQ(inputs.inputByIdentifier("a"), inputs.inputs()[2]);
}

TEST_F(Inputs, AreFoundByTheirNewUid)
{
    const InputsController& inputs = openThree();
    const auto command = edit([](auto items) { items.at(1).uid().set(77); });

    EXPECT_EQ(inputs.inputByUid(77), inputs.inputs()[1]);
    EXPECT_EQ(inputs.inputByUid(2), nullptr);
}

// --- new inputs

TEST_F(Inputs, ANewOneWithoutIdentifierGetsTheDefaultAndThenANumber)
{
    InputsController& inputs = open();
    const TweakInputController* first = inputs.addTweakInput(256, "");
    const TweakInputController* second = inputs.addTweakInput(256, "");

    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->identifier(), "DEFAULT_INPUT_IDENTIFIER");
    EXPECT_EQ(second->identifier(), "DEFAULT_INPUT_IDENTIFIER_1");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(Inputs, ANewOneStandsAtTheEnd)
{
    InputsController& inputs = openThree();
    const TweakInputController* added = inputs.addTweakInput(512, "a");

    EXPECT_EQ(namesOf(inputs), "a b c a_1");
    EXPECT_EQ(added->input(), &list().back());
    EXPECT_EQ(added->type(), 512u);
    EXPECT_TRUE(added->defaultValue().empty());
}

TEST_F(Inputs, ANewOneIsOneEditWithAHistoryText)
{
    openThree().addTweakInput(512, "x");

    EXPECT_EQ(workspace.names(), std::vector<std::string>{"ADD_TWEAK_INPUT_HISTORY_DESC"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(Inputs, ANewOneHasAUidThatNoOtherHas)
{
    InputsController& inputs = open(anInput("a", 1050, 256));
    const TweakInputController* added = inputs.addTweakInput(256, "x");

    EXPECT_EQ(added->uid(), 1050u + (1051u & 0xFFu));
    EXPECT_EQ(inputs.inputByUid(added->uid()), added);
}

TEST_F(Inputs, ANewOneIsGoneWhenItIsUndoneAndBackWhenItIsRedone)
{
    InputsController& inputs = open();
    inputs.addTweakInput(256, "x");
    workspace.undoAll();
    EXPECT_TRUE(inputs.inputs().empty());
    EXPECT_EQ(inputs.inputByIdentifier("x"), nullptr);

    workspace.redoAll();
    ASSERT_NE(inputs.inputByIdentifier("x"), nullptr);
    EXPECT_EQ(inputs.inputByUid(1050), inputs.inputs()[0]);
}

struct TypeCase
{
    const char* name;
    unsigned type;
    bool isTweak;
};

class InputOfType : public Inputs, public testing::WithParamInterface<TypeCase>
{};

TEST_P(InputOfType, HasTheControllerOfItsKind)
{
    InputController* const input = open(anInput("a", 1, GetParam().type)).inputs()[0];

    EXPECT_EQ(dynamic_cast<TweakInputController*>(input) != nullptr, GetParam().isTweak);
    EXPECT_EQ(dynamic_cast<EntryInputController*>(input) != nullptr, !GetParam().isTweak);
}

TEST_P(InputOfType, IsAddedIfItTakesValues)
{
    const TweakInputController* added = open().addTweakInput(GetParam().type, "x");

    EXPECT_EQ(added != nullptr, GetParam().isTweak);
    EXPECT_EQ(list().size(), GetParam().isTweak ? 1u : 0u);
    EXPECT_EQ(workspace.names().size(), GetParam().isTweak ? 1u : 0u);
}

namespace ValueType = Ksx::Data::Desc::ValueType;
INSTANTIATE_TEST_SUITE_P(
    Types, InputOfType,
    testing::Values(
        TypeCase{"ColorImage", ValueType::ColorImage, false},
        TypeCase{"GrayscaleImage", ValueType::GrayscaleImage, false},
        TypeCase{"Image", ValueType::Image, false}, TypeCase{"Bool", ValueType::Bool, true},
        TypeCase{"Int1", ValueType::Int1, true}, TypeCase{"Int4", ValueType::Int4, true},
        TypeCase{"Float1", ValueType::Float1, true}, TypeCase{"Float1OrGrayscaleImage", 258, true},
        TypeCase{"Float4OrColorImage", 2049, true}, TypeCase{"Color", 2304, true},
        TypeCase{"ColorOrImage", 2307, true}, TypeCase{"Text", ValueType::Text, true},
        TypeCase{"String", ValueType::String, true}, TypeCase{"Unknown", 0, true},
        TypeCase{"All", ~0u, true}),
    caseName<TypeCase>);

// --- removal

TEST_F(Inputs, ARemovedOneIsGoneWithItsController)
{
    InputsController& inputs = openThree();

    EXPECT_TRUE(inputs.removeInput(*inputs.inputByIdentifier("b")));
    EXPECT_EQ(namesOf(inputs), "a c");
    EXPECT_EQ(inputs.inputByIdentifier("b"), nullptr);
    EXPECT_EQ(inputs.inputByUid(2), nullptr);
    EXPECT_EQ(workspace.names(), std::vector<std::string>{"REMOVE_TWEAK_INPUT_HISTORY_DESC"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(Inputs, ARemovedOneIsFoundAgainWhenThatIsUndone)
{
    InputsController& inputs = openThree();
    inputs.removeInput(*inputs.inputByIdentifier("a"));
    workspace.undoAll();

    EXPECT_EQ(namesOf(inputs), "a b c");
    ASSERT_NE(inputs.inputByIdentifier("a"), nullptr);
    EXPECT_EQ(inputs.inputByUid(1), inputs.inputs()[0]);
}

TEST_F(Inputs, AllCanBeRemoved)
{
    InputsController& inputs = openThree();
    inputs.removeInput(*inputs.inputs()[0]);
    inputs.removeInput(*inputs.inputs()[1]);
    inputs.removeInput(*inputs.inputs()[0]);

    EXPECT_TRUE(inputs.inputs().empty());
    EXPECT_TRUE(canBeUndone());
}

TEST_F(Inputs, OfAnotherGraphAreNotRemoved)
{
    GraphText other;
    other.inputs = anInput("a", 1, 256);
    const auto& otherPackage = workspace.open(aPackage().containing(other.text()));
    InputsController& inputs = openThree();

    EXPECT_FALSE(inputs.removeInput(*controllerIn(otherPackage).inputsController()->inputs()[0]));
    EXPECT_TRUE(workspace.names().empty());
    EXPECT_EQ(xmlOf(*package), before);
}

// --- signals

TEST_F(Inputs, TellWhereOneHasBeenAdded)
{
    InputsController& inputs = openThree();
    std::vector<std::size_t> places;
    InputController* found = nullptr;
    inputs.inputAdded.connect([&](std::size_t place) {
        places.push_back(place);
        found = inputs.inputByIdentifier("x");
    });
    const InputController* added = inputs.addTweakInput(256, "x");

    EXPECT_EQ(places, std::vector<std::size_t>{3});
    EXPECT_EQ(found, added);
}

TEST_F(Inputs, TellWhichOneIsAboutToGoAndStillKnowIt)
{
    InputsController& inputs = openThree();
    std::vector<std::size_t> places;
    const InputController* found = nullptr;
    inputs.inputAboutToRemove.connect([&](std::size_t place) {
        places.push_back(place);
        found = inputs.inputs()[place];
    });
    InputController* const input = inputs.inputs()[1];
    inputs.removeInput(*input);

    EXPECT_EQ(places, std::vector<std::size_t>{1});
    EXPECT_EQ(found, input);
}

TEST_F(Inputs, TellOfUndoAsOfAnyOtherChange)
{
    InputsController& inputs = openThree();
    inputs.removeInput(*inputs.inputs()[0]);
    std::vector<std::size_t> places;
    inputs.inputAdded.connect([&](std::size_t place) { places.push_back(place); });
    workspace.undoAll();

    EXPECT_EQ(places, std::vector<std::size_t>{0});
}

TEST_F(Inputs, TellOfANewOrder)
{
    InputsController& inputs = openThree();
    std::vector<std::string> orders;
    inputs.orderChanged.connect([&] { orders.push_back(namesOf(inputs)); });
    const auto command = edit([](auto items) { items.move(0, 2); });
    command->undo();

    EXPECT_EQ(orders, (std::vector<std::string>{"b c a", "a b c"}));
}

TEST_F(Inputs, TellNothingOfRefusedEdits)
{
    InputsController& inputs = openThree();
    int count = 0;
    inputs.inputAdded.connect([&](std::size_t) { ++count; });
    inputs.addTweakInput(ValueType::ColorImage, "x");

    EXPECT_EQ(count, 0);
}

// --- the end

TEST(InputsOfADeadGraph, AreNone)
{
    auto document = std::make_unique<Ksx::Data::Content::PackagesList>();
    GraphText graph;
    graph.inputs = anInput("a", 1, 256);
    document->content().pushBack(packageFrom(aPackage().containing(graph.text())));
    const auto inputs = controllerIn(document->content().at(0)).inputsController();
    ASSERT_EQ(inputs->inputs().size(), 1u);

    document.reset();

    EXPECT_EQ(inputs->graph(), nullptr);
    EXPECT_TRUE(inputs->inputs().empty());
    EXPECT_EQ(inputs->inputByIdentifier("a"), nullptr);
    EXPECT_EQ(inputs->inputByUid(1), nullptr);
    EXPECT_EQ(inputs->addTweakInput(256, "b"), nullptr);
}

TEST(InputsOfADeadGraph, CanDieAfterIt)
{
    auto document = std::make_unique<Ksx::Data::Content::PackagesList>();
    document->content().pushBack(packageFrom(aPackage().containing(GraphText().text())));
    auto inputs = controllerIn(document->content().at(0)).inputsController();
    inputs->addTweakInput(256, "b");
    const std::weak_ptr<const void> watch = inputs;

    document.reset();
    inputs.reset();

    EXPECT_TRUE(watch.expired());
}

} // namespace

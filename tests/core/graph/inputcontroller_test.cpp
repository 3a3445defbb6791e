#include "ksx/core/inputcontroller.h"

#include "core/commanddatamodification.h"
#include "data/content/graphmanipulators.h"
#include "data/content/layoutmanipulators.h"
#include "data/content/packageslist.h"
#include "ksx/core/entryinputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/tweakinputcontroller.h"
#include "support/shelfcases.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using namespace Orv::Data;
using Ksx::Data::Content::ParamInput;
using Orv::Core::CommandDataModification;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;

std::string withOptions(const std::string& input, const std::string& options)
{
    return replaced(input, "<options/>", GraphText::list("options", options));
}

std::string anOption(const std::string& name, const std::string& value)
{
    return "<option><name v=\"" + name + "\"/><value v=\"" + value + "\"/></option>";
}

std::string aRange(const std::string& minimum, const std::string& maximum)
{
    return anOption("min", minimum) + anOption("max", maximum);
}

class Input : public testing::Test
{
protected:
    InputController& open(const std::string& input)
    {
        GraphText graph;
        graph.inputs = input;
        package = &workspace.open(aPackage().containing(graph.text()));
        before = xmlOf(*package);
        return *controllerIn(*package).inputsController()->inputs()[0];
    }
    const ParamInput& input() const { return graphIn(*package)->paraminputs().at(0); }
    std::string defaultText() const { return xmlOf(input().defaultValue()); }
    // An edit that no controller makes; it is none of the workspace's.
    std::shared_ptr<CommandDataModification>
    edit(const std::function<void(ManipulatorStruct<ParamInput>)>& function) const
    {
        auto command = std::make_shared<CommandDataModification>(
            [this, function](ManipulatorContext& context) {
                function(ManipulatorStruct<ParamInput>(input(), context));
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

// --- what it says

TEST_F(Input, SaysWhatTheDocumentSays)
{
    const InputController& controller =
        open(replaced(anInput("x", 7, 512), "<type>",
                      "<attributes><label v=\"Label\"/><description v=\"Text\"/></attributes>"
                      "<type>"));

    EXPECT_EQ(controller.uid(), 7u);
    EXPECT_EQ(controller.identifier(), "x");
    EXPECT_EQ(controller.label(), "Label");
    EXPECT_EQ(controller.description(), "Text");
    EXPECT_EQ(controller.type(), 512u);
    EXPECT_EQ(controller.input(), &input());
}

TEST_F(Input, HasEmptyTextsWhereThereAreNone)
{
    const InputController& controller = open(anInput("", 7, 512));

    EXPECT_EQ(controller.identifier(), "");
    EXPECT_EQ(controller.label(), "");
    EXPECT_EQ(controller.description(), "");
}

// --- the default value

struct ValueCase
{
    const char* name;
    unsigned type;
    const char* kind; // of the constant in which values are stored
    const char* text;
    boost::any value; // what the text says
    const char* otherText;
    boost::any other;
};

template <class T>
bool isEqual(const boost::any& a, const boost::any& b)
{
    const T* left = boost::any_cast<T>(&a);
    const T* right = boost::any_cast<T>(&b);
    return left != nullptr && right != nullptr && *left == *right;
}

bool areEqual(const boost::any& a, const boost::any& b)
{
    return isEqual<bool>(a, b) || isEqual<Int1>(a, b) || isEqual<Int2>(a, b) ||
           isEqual<Int3>(a, b) || isEqual<Int4>(a, b) || isEqual<Float1>(a, b) ||
           isEqual<Float2>(a, b) || isEqual<Float3>(a, b) || isEqual<Float4>(a, b) ||
           isEqual<std::string>(a, b);
}

class DefaultOfType : public Input, public testing::WithParamInterface<ValueCase>
{};

TEST_P(DefaultOfType, IsReadInItsShape)
{
    const InputController& controller =
        open(anInput("x", 7, GetParam().type, aConstant(GetParam().kind, GetParam().text)));

    EXPECT_TRUE(areEqual(controller.defaultValue(), GetParam().value));
}

TEST_P(DefaultOfType, IsReplaced)
{
    InputController& controller =
        open(anInput("x", 7, GetParam().type, aConstant(GetParam().kind, GetParam().text)));

    EXPECT_TRUE(controller.setDefaultValue(GetParam().other));
    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant(GetParam().kind, GetParam().otherText) +
                                 "</defaultValue>");
    EXPECT_TRUE(areEqual(controller.defaultValue(), GetParam().other));
    EXPECT_EQ(workspace.names(), std::vector<std::string>{""});
    EXPECT_TRUE(canBeUndone());
}

TEST_P(DefaultOfType, IsMadeWhereThereIsNone)
{
    InputController& controller = open(anInput("x", 7, GetParam().type));
    EXPECT_TRUE(controller.defaultValue().empty());

    EXPECT_TRUE(controller.setDefaultValue(GetParam().other));
    EXPECT_TRUE(areEqual(controller.defaultValue(), GetParam().other));
    EXPECT_TRUE(canBeUndone());
}

TEST_P(DefaultOfType, IsAnEditEvenIfNothingChanges)
{
    InputController& controller =
        open(anInput("x", 7, GetParam().type, aConstant(GetParam().kind, GetParam().text)));

    EXPECT_TRUE(controller.setDefaultValue(GetParam().value));
    EXPECT_EQ(workspace.editCount(), 1u);
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_P(DefaultOfType, TakesNoOtherShape)
{
    InputController& controller =
        open(anInput("x", 7, GetParam().type, aConstant(GetParam().kind, GetParam().text)));

    EXPECT_FALSE(controller.setDefaultValue(boost::any()));
    EXPECT_FALSE(controller.setDefaultValue(5));
    EXPECT_FALSE(controller.setDefaultValue(5u));
    EXPECT_FALSE(controller.setDefaultValue(5.0F));
    EXPECT_FALSE(controller.setDefaultValue("5"));
    EXPECT_TRUE(workspace.names().empty());
    EXPECT_EQ(xmlOf(*package), before);
}

INSTANTIATE_TEST_SUITE_P(
    Types, DefaultOfType,
    testing::Values(
        ValueCase{"Bool", 4, "Bool", "1", true, "0", false},
        ValueCase{"Int1", 16, "Int1", "3", Int1{{3}}, "-4", Int1{{-4}}},
        ValueCase{"Int2", 32, "Int2", "3 4", Int2{{3, 4}}, "5 6", Int2{{5, 6}}},
        ValueCase{"Int3", 64, "Int3", "3 4 5", Int3{{3, 4, 5}}, "5 6 7", Int3{{5, 6, 7}}},
        ValueCase{"Int4", 128, "Int4", "3 4 5 6", Int4{{3, 4, 5, 6}}, "5 6 7 8",
                  Int4{{5, 6, 7, 8}}},
        ValueCase{"Float1", 256, "Float1", "0.5", Float1{{0.5F}}, "2", Float1{{2}}},
        ValueCase{"Float2", 512, "Float2", "1 2", Float2{{1, 2}}, "3 4", Float2{{3, 4}}},
        ValueCase{"Float3", 1024, "Float3", "1 2 3", Float3{{1, 2, 3}}, "3 4 5", Float3{{3, 4, 5}}},
        ValueCase{"Float4", 2048, "Float4", "1 2 3 4", Float4{{1, 2, 3, 4}}, "3 4 5 6",
                  Float4{{3, 4, 5, 6}}},
        ValueCase{"Float1OrGrayscaleImage", 258, "Float1", "1", Float1{{1}}, "2", Float1{{2}}},
        ValueCase{"Float4OrColorImage", 2049, "Float4", "1 2 3 4", Float4{{1, 2, 3, 4}}, "3 4 5 6",
                  Float4{{3, 4, 5, 6}}},
        ValueCase{"Color", 2304, "Float4", "1 2 3 4", Float4{{1, 2, 3, 4}}, "3 4 5 6",
                  Float4{{3, 4, 5, 6}}},
        ValueCase{"ColorOrImage", 2307, "Float4", "1 2 3 4", Float4{{1, 2, 3, 4}}, "3 4 5 6",
                  Float4{{3, 4, 5, 6}}},
        ValueCase{"Text", 16384, "String", "a", std::string("a"), "b &lt;", std::string("b <")},
        ValueCase{"String", 32768, "String", "a", std::string("a"), "", std::string()}),
    caseName<ValueCase>);

struct ReadCase
{
    const char* name;
    unsigned type;
    std::string constant;
    boost::any value; // empty for none
};

class ReadDefault : public Input, public testing::WithParamInterface<ReadCase>
{};

TEST_P(ReadDefault, GoesByTheShapeOfTheType)
{
    const boost::any value =
        open(anInput("x", 7, GetParam().type, GetParam().constant)).defaultValue();

    EXPECT_EQ(value.empty(), GetParam().value.empty());
    EXPECT_EQ(areEqual(value, GetParam().value), !GetParam().value.empty());
    EXPECT_EQ(xmlOf(*package), before);
}

INSTANTIATE_TEST_SUITE_P(
    Constants, ReadDefault,
    testing::Values(ReadCase{"Int32AsInt1", 16, aConstant("Int32", "5"), Int1{{5}}},
                    ReadCase{"GreatInt32AsInt1", 16, aConstant("Int32", "4294967295"), Int1{{-1}}},
                    ReadCase{"FloatAsFloat1", 256, aConstant("Float", "0.5"), Float1{{0.5F}}},
                    ReadCase{"FloatAsFloat1ByAlias", 258, aConstant("Float", "0.5"),
                             Float1{{0.5F}}},
                    ReadCase{"Float1IsNoFloat4", 2304, aConstant("Float1", "0.5"), {}},
                    ReadCase{"Int1IsNoFloat1", 256, aConstant("Int1", "5"), {}},
                    ReadCase{"Float2IsNoFloat3", 1024, aConstant("Float2", "1 2"), {}},
                    ReadCase{"BoolIsNoInt1", 16, aConstant("Bool", "1"), {}},
                    ReadCase{"Missing", 256, "", {}},
                    ReadCase{"OfAnImage", 1, aConstant("Float1", "1"), {}},
                    ReadCase{"OfAnUnknownType", 0, aConstant("Float1", "1"), {}},
                    ReadCase{"OfATypeWithoutValues", 4096, aConstant("Float1", "1"), {}}),
    caseName<ReadCase>);

TEST_F(Input, OfAnotherShapeIsReplacedByOneThatFits)
{
    InputController& controller = open(anInput("x", 7, 256, aConstant("Int4", "1 2 3 4")));

    EXPECT_TRUE(controller.setDefaultValue(Float1{{2}}));
    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Float1", "2") + "</defaultValue>");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(Input, OfAnImageTakesNoDefault)
{
    InputController& controller = open(anInput("x", 7, 1));

    EXPECT_FALSE(controller.setDefaultValue(Float1{{2}}));
    EXPECT_FALSE(controller.setDefaultValue(boost::any()));
    EXPECT_TRUE(workspace.names().empty());
}

TEST_F(Input, LosesTheOverloadsOfItsFormerDefault)
{
    InputController& controller = open(anInput(
        "x", 7, 256,
        "<constantValueFloat1><value v=\"1\"/><valueOverloads><valueOverload><value v=\"5\"/>"
        "<configurations v=\"c\"/></valueOverload></valueOverloads></constantValueFloat1>"));

    EXPECT_TRUE(controller.setDefaultValue(Float1{{1}}));
    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Float1", "1") + "</defaultValue>");
    EXPECT_TRUE(canBeUndone());
}

// --- its bounds

struct BoundCase
{
    const char* name;
    unsigned type;
    std::string options;
    boost::any value;
    std::string expected; // the constant
};

class BoundedDefault : public Input, public testing::WithParamInterface<BoundCase>
{};

TEST_P(BoundedDefault, IsClamped)
{
    InputController& controller =
        open(withOptions(anInput("x", 7, GetParam().type), GetParam().options));

    EXPECT_TRUE(controller.setDefaultValue(GetParam().value));
    EXPECT_EQ(defaultText(), "<defaultValue>" + GetParam().expected + "</defaultValue>");
    EXPECT_TRUE(canBeUndone());
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, BoundedDefault,
    testing::Values(
        BoundCase{"Float1", 256, aRange("0", "1"), Float1{{5}}, aConstant("Float1", "1")},
        BoundCase{"Int1", 16, aRange("2", "9"), Int1{{-5}}, aConstant("Int1", "2")},
        BoundCase{"Int3", 64, aRange("0 1 2", "9"), Int3{{-1, -1, 99}}, aConstant("Int3", "0 1 9")},
        BoundCase{"ClampIsOff", 256, aRange("0", "1") + anOption("clamp", "0"), Float1{{5}},
                  aConstant("Float1", "1")},
        BoundCase{"ColorByOneNumber", 2304, aRange("0", "1"), Float4{{-1, 0.5F, 2, 1}},
                  aConstant("Float4", "0 0.5 1 1")},
        BoundCase{"Unreadable", 256, aRange("none", "x"), Float1{{5}}, aConstant("Float1", "5")},
        BoundCase{"Missing", 256, "", Float1{{5}}, aConstant("Float1", "5")},
        BoundCase{"BoolNever", 4, aRange("1", "1"), false, aConstant("Bool", "0")},
        BoundCase{"TextNever", 32768, aRange("5", "6"), std::string("1"),
                  aConstant("String", "1")}),
    caseName<BoundCase>);

TEST_F(Input, IsClampedToTheBoundsOfNow)
{
    InputController& controller = open(withOptions(anInput("x", 7, 256), aRange("0", "1")));
    const auto command =
        edit([](auto input) { input.defaultWidget().options().at(1).value().set("3"); });

    EXPECT_TRUE(controller.setDefaultValue(Float1{{5}}));
    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Float1", "3") + "</defaultValue>");
}

// --- signals

struct Counts
{
    explicit Counts(InputController& controller)
    {
        controller.identifierChanged.connect([this] { ++identifier; });
        controller.labelChanged.connect([this] { ++label; });
        controller.descriptionChanged.connect([this] { ++description; });
    }
    std::string text() const
    {
        return std::to_string(identifier) + std::to_string(label) + std::to_string(description);
    }

    int identifier = 0;
    int label = 0;
    int description = 0;
};

TEST_F(Input, TellsOfANewIdentifierAndOfItsUndoing)
{
    const Counts counts(open(anInput("x", 7, 256)));
    const auto command = edit([](auto input) { input.identifier().set("y"); });
    EXPECT_EQ(counts.text(), "100");

    command->undo();
    EXPECT_EQ(counts.text(), "200");
}

TEST_F(Input, IsFoundByItsNewIdentifierWhenItTellsOfIt)
{
    InputController& controller = open(anInput("x", 7, 256));
    const InputController* found = nullptr;
    controller.identifierChanged.connect(
        [&] { found = controllerIn(*package).inputsController()->inputByIdentifier("y"); });
    const auto command = edit([](auto input) { input.identifier().set("y"); });

    EXPECT_EQ(found, &controller);
}

TEST_F(Input, TellsOfANewLabelAndDescription)
{
    const Counts counts(open(anInput("x", 7, 256)));
    const auto label = edit([](auto input) { input.attributes().label().set("y"); });
    EXPECT_EQ(counts.text(), "010");

    const auto description = edit([](auto input) { input.attributes().description().set("y"); });
    EXPECT_EQ(counts.text(), "011");
}

TEST_F(Input, TellsNothingOfOtherChanges)
{
    InputController& controller = open(anInput("x", 7, 256));
    const Counts counts(controller);
    controller.setDefaultValue(Float1{{1}});
    const auto command = edit([](auto input) {
        input.uid().set(9);
        input.group().set("g");
        input.attributes().author().set("a");
    });

    EXPECT_EQ(counts.text(), "000");
}

TEST_F(Input, OfAnImageTellsOfANewColorMode)
{
    auto& controller = dynamic_cast<EntryInputController&>(open(anInput("x", 7, 1)));
    const Counts counts(controller);
    std::vector<unsigned> types;
    controller.typeChanged.connect([&] { types.push_back(controller.type()); });
    const auto command = edit([](auto input) { input.type().value().set(2); });
    command->undo();

    EXPECT_EQ(types, (std::vector<unsigned>{2, 1}));
    EXPECT_EQ(counts.text(), "000");
}

// --- the end

class DeadInput : public testing::TestWithParam<unsigned>
{};

TEST_P(DeadInput, SaysNothingAndTakesNothing)
{
    auto document = std::make_unique<Ksx::Data::Content::PackagesList>();
    GraphText graph;
    graph.inputs = anInput("x", 7, GetParam(), aConstant("Float1", "1"));
    document->content().pushBack(packageFrom(aPackage().containing(graph.text())));
    const auto controller =
        InputController::make(graphIn(document->content().at(0))->paraminputs().at(0));

    document.reset();

    EXPECT_EQ(controller->input(), nullptr);
    EXPECT_EQ(controller->uid(), NoUid);
    EXPECT_EQ(controller->identifier(), "");
    EXPECT_EQ(controller->label(), "");
    EXPECT_EQ(controller->description(), "");
    EXPECT_EQ(controller->type(), 0u);
    EXPECT_TRUE(controller->defaultValue().empty());
    EXPECT_FALSE(controller->setDefaultValue(Float1{{1}}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, DeadInput, testing::Values(1u, 256u));

} // namespace

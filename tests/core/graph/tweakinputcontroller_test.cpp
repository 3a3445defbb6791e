#include "ksx/core/tweakinputcontroller.h"

#include "data/content/defaultwidget.h"
#include "data/content/packageslist.h"
#include "ksx/core/inputscontroller.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using namespace Orv::Data;
using Ksx::Data::Content::ParamInput;
using Ksx::Data::Desc::Parameter;

class TweakInput : public testing::Test
{
protected:
    // The first of the inputs.
    TweakInputController& open(const std::string& inputs)
    {
        GraphText graph;
        graph.inputs = inputs;
        package = &workspace.open(aPackage().containing(graph.text()));
        before = xmlOf(*package);
        return dynamic_cast<TweakInputController&>(
            *controllerIn(*package).inputsController()->inputs()[0]);
    }
    const ParamInput& input(std::size_t index = 0) const
    {
        return graphIn(*package)->paraminputs().at(index);
    }
    // "min=0 max=1"
    std::string options() const
    {
        std::string text;
        for (const auto& option : input().defaultWidget().options())
            text += (text.empty() ? "" : " ") + option.name().get() + "=" + option.value().get();
        return text;
    }
    std::string defaultText() const { return xmlOf(input().defaultValue()); }
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

// --- from a description

TEST_F(TweakInput, TakesTheLooksOfAParameter)
{
    TweakInputController& controller = open(anInput("x", 7, 16));
    Parameter description = aDescription("intensity", 256, Float1{{0.5F}});
    description.descKey = "DESC_OF_intensity";
    description.widget = "slider";

    EXPECT_TRUE(controller.initFromDescription(description));
    EXPECT_EQ(controller.identifier(), "intensity");
    EXPECT_EQ(controller.label(), "NAME_OF_intensity");
    EXPECT_EQ(controller.description(), "DESC_OF_intensity");
    EXPECT_EQ(controller.type(), 256u);
    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Float1", "0.5") + "</defaultValue>");
    EXPECT_EQ(input().defaultWidget().name().get(), "slider");
    EXPECT_EQ(options(), "");
    EXPECT_EQ(controller.uid(), 7u);
}

TEST_F(TweakInput, TakesThemInOneEditWithoutHistoryText)
{
    open(anInput("x", 7, 16)).initFromDescription(aDescription("intensity", 256));

    EXPECT_EQ(workspace.names(), std::vector<std::string>{""});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, TakesAnIdentifierThatNoOtherInputHas)
{
    TweakInputController& controller =
        open(anInput("x", 7, 16) + anInput("intensity", 8, 1) + anInput("intensity_1", 9, 4));
    controller.initFromDescription(aDescription("intensity", 256));

    EXPECT_EQ(controller.identifier(), "intensity_2");
    EXPECT_EQ(controllerIn(*package).inputsController()->inputByIdentifier("intensity_2"),
              &controller);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, KeepsAnIdentifierThatOnlyItHas)
{
    TweakInputController& controller = open(anInput("intensity", 7, 16));
    controller.initFromDescription(aDescription("intensity", 256));

    EXPECT_EQ(controller.identifier(), "intensity");
}

TEST_F(TweakInput, TakesALegalIdentifier)
{
    TweakInputController& controller = open(anInput("x", 7, 16));
    controller.initFromDescription(aDescription("front color", 256));

    EXPECT_EQ(controller.identifier(), "front_color");
}

TEST_F(TweakInput, TakesTheDescriptionWhereThereIsNoIdentifier)
{
    TweakInputController& controller = open(anInput("x", 7, 16));
    Parameter description = aDescription("", 256);
    description.descKey = "DESC";
    controller.initFromDescription(description);

    EXPECT_EQ(controller.identifier(), "DESC");
}

TEST_F(TweakInput, TakesTheDefaultIdentifierWhereNothingIsLegal)
{
    TweakInputController& controller =
        open(anInput("x", 7, 16) + anInput("DEFAULT_INPUT_IDENTIFIER", 8, 16));
    controller.initFromDescription(aDescription("??", 256));

    EXPECT_EQ(controller.identifier(), "DEFAULT_INPUT_IDENTIFIER_1");
}

TEST_F(TweakInput, StoresASingleIntegerAsAVector)
{
    open(anInput("x", 7, 256)).initFromDescription(aDescription("mode", 16, UInt{3}));

    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Int1", "3") + "</defaultValue>");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, StoresColorsWithFourComponents)
{
    open(anInput("x", 7, 256))
        .initFromDescription(aDescription("color", 2304, Float4{{0, 0, 0, 1}}));

    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Float4", "0 0 0 1") + "</defaultValue>");
}

TEST_F(TweakInput, HasNoDefaultWhereThatOfTheParameterDoesNotFit)
{
    open(anInput("x", 7, 256, aConstant("Float1", "1")))
        .initFromDescription(aDescription("text", 32768, Float1{{1}}));

    EXPECT_TRUE(input().defaultValue().isEmpty());
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, TakesADefaultBeyondItsFormerAndItsNewBounds)
{
    TweakInputController& controller =
        open(replaced(anInput("x", 7, 256), "<options/>",
                      "<options><option><name v=\"max\"/><value v=\"1\"/></option></options>"));
    Parameter description = aDescription("a", 256, Float1{{9}});
    description.extras = {{"max", "3"}};
    controller.initFromDescription(description);

    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Float1", "9") + "</defaultValue>");
}

TEST_F(TweakInput, TakesTheExtrasAsOptionsButForTheGroup)
{
    Parameter description = aDescription("a", 256);
    description.extras = {{"min", "-1.0"}, {"max", "1.0"}, {"label0", "LEFT"}, {"group", "Shape"}};
    open(anInput("x", 7, 256)).initFromDescription(description);

    EXPECT_EQ(options(), "label0=LEFT max=1.0 min=-1.0");
    EXPECT_EQ(input().group().get(), "Shape");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, TakesTheGivenGroup)
{
    Parameter description = aDescription("a", 256);
    description.extras = {{"group", "Shape"}};
    open(anInput("x", 7, 256, {}, "former")).initFromDescription(description, "Given");

    EXPECT_EQ(input().group().get(), "Given");
}

TEST_F(TweakInput, LosesItsFormerOptionsGroupAndWidget)
{
    const std::string former =
        replaced(replaced(anInput("x", 7, 256, {}, "former"), "<options/>",
                          "<options><option><name v=\"max\"/><value v=\"1\"/></option></options>"),
                 "<name v=\"\"/>", "<name v=\"slider\"/>");
    open(former).initFromDescription(aDescription("a", 256));

    EXPECT_EQ(options(), "");
    EXPECT_EQ(input().group().get(), "");
    EXPECT_EQ(input().defaultWidget().name().get(), "");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, OffersTheEntriesOfAParameterInADropDownList)
{
    Parameter description = aDescription("mode", 16, UInt{1});
    description.entries = {
        {"copy", "COPY", "", 0, UInt{0}}, {"add", "", "", 0, UInt{5}}, {"sub", "SUB", "", 0, {}}};
    open(anInput("x", 7, 256)).initFromDescription(description);

    EXPECT_EQ(input().defaultWidget().name().get(), "dropdownlist");
    EXPECT_EQ(options(), "editorID=dropdownlist parameters=0;COPY | 5;add | 2;SUB");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, KeepsTheWidgetOfAParameterWithEntries)
{
    Parameter description = aDescription("mode", 16, UInt{1});
    description.widget = "switch";
    description.entries = {{"copy", "COPY", "", 0, Int1{{-1}}}};
    open(anInput("x", 7, 256)).initFromDescription(description);

    EXPECT_EQ(input().defaultWidget().name().get(), "switch");
    EXPECT_EQ(options(), "editorID=dropdownlist parameters=-1;COPY");
}

TEST_F(TweakInput, TheSameLooksTwiceAreTwoEditsAndOneText)
{
    TweakInputController& controller = open(anInput("x", 7, 256));
    Parameter description = aDescription("a", 256, Float1{{1}});
    description.extras = {{"min", "0"}};
    controller.initFromDescription(description);
    const std::string once = xmlOf(*package);
    controller.initFromDescription(description);

    EXPECT_EQ(xmlOf(*package), once);
    EXPECT_EQ(workspace.editCount(), 2u);
    EXPECT_TRUE(canBeUndone());
}

// --- from another input

const char* const Source =
    "<paraminput><identifier v=\"source\"/><uid v=\"9\"/><attributes><label v=\"L\"/>"
    "<description v=\"D\"/></attributes><type><value v=\"512\"/></type><defaultValue>"
    "<constantValueFloat2><value v=\"1 2\"/></constantValueFloat2></defaultValue><defaultWidget>"
    "<name v=\"slider\"/><options><option><name v=\"max\"/><value v=\"1\"/></option><option>"
    "<name v=\"clamp\"/><value v=\"0\"/></option><option><name v=\"max\"/><value v=\"2\"/>"
    "</option></options></defaultWidget><group v=\"G\"/></paraminput>";

TEST_F(TweakInput, TakesTheLooksOfAnotherInputAsTheyStand)
{
    TweakInputController& controller = open(anInput("x", 7, 16) + Source);

    EXPECT_TRUE(controller.initFromInput(input(1)));
    EXPECT_EQ(xmlOf(input(0)),
              replaced(replaced(Source, "source", "source_1"), "v=\"9\"", "v=\"7\""));
    EXPECT_EQ(workspace.names(), std::vector<std::string>{""});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, TakesTheLooksOfAnInputOfAnotherPackage)
{
    GraphText graph;
    graph.inputs = Source;
    const auto other = packageFrom(aPackage().containing(graph.text()));
    TweakInputController& controller = open(anInput("x", 7, 16));
    controller.initFromInput(graphIn(*other)->paraminputs().at(0));

    EXPECT_EQ(xmlOf(input()), replaced(Source, "v=\"9\"", "v=\"7\""));
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, StoresTheDefaultOfAnotherInputInItsOwnShape)
{
    TweakInputController& controller =
        open(anInput("x", 7, 256) + anInput("y", 8, 16, aConstant("Int32", "5")));
    controller.initFromInput(input(1));

    EXPECT_EQ(defaultText(), "<defaultValue>" + aConstant("Int1", "5") + "</defaultValue>");
}

TEST_F(TweakInput, LeavesOutADefaultThatDoesNotFitItsType)
{
    TweakInputController& controller = open(anInput("x", 7, 256, aConstant("Float1", "1")) +
                                            anInput("y", 8, 512, aConstant("Float1", "1")));
    controller.initFromInput(input(1));

    EXPECT_TRUE(input().defaultValue().isEmpty());
    EXPECT_TRUE(canBeUndone());
}

TEST_F(TweakInput, TakesItsOwnLooksWithoutAnyChange)
{
    TweakInputController& controller = open(Source);

    EXPECT_TRUE(controller.initFromInput(input()));
    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_TRUE(canBeUndone());
}

// --- the end

TEST(DeadTweakInput, TakesNoLooks)
{
    auto document = std::make_unique<Ksx::Data::Content::PackagesList>();
    GraphText graph;
    graph.inputs = anInput("x", 7, 256);
    document->content().pushBack(packageFrom(aPackage().containing(graph.text())));
    TweakInputController controller(graphIn(document->content().at(0))->paraminputs().at(0));

    document.reset();

    EXPECT_FALSE(controller.initFromDescription(aDescription("a", 256)));
    EXPECT_FALSE(controller.initFromInput(ParamInput()));
}

} // namespace

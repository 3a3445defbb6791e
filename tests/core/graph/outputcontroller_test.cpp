#include "ksx/core/outputcontroller.h"

#include "core/commanddatamodification.h"
#include "data/content/graphmanipulators.h"
#include "data/content/layoutmanipulators.h"
#include "data/content/packageslist.h"
#include "ksx/core/lazysignalconnect.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::GraphOutput;
using Ksx::Data::Content::Usage;
using Orv::Core::CommandDataModification;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;

// Of an output with the uid 7, a label and the usages diffuse and mask.
class Output : public testing::Test
{
protected:
    Output()
    {
        GraphText graph;
        graph.outputs =
            replaced(anOutput("o", 7), "</graphoutput>",
                     "<attributes><label v=\"Label\"/></attributes><usages><usage><components "
                     "v=\"RGBA\"/><name v=\"diffuse\"/></usage><usage><components v=\"R\"/><name "
                     "v=\"mask\"/></usage></usages></graphoutput>");
        document->content().pushBack(packageFrom(aPackage().containing(graph.text())));
        controller = std::make_unique<OutputController>(output());
        controller->identifierChanged.connect([this] { told += 'i'; });
        controller->labelChanged.connect([this] { told += 'l'; });
        controller->usagesChanged.connect([this] { told += 'u'; });
    }
    const GraphOutput& output() const
    {
        return graphIn(document->content().at(0))->graphOutputs().at(0);
    }
    std::shared_ptr<CommandDataModification>
    edit(const std::function<void(ManipulatorStruct<GraphOutput>)>& function) const
    {
        auto command = std::make_shared<CommandDataModification>(
            [this, function](ManipulatorContext& context) {
                function(ManipulatorStruct<GraphOutput>(output(), context));
                return true;
            },
            "edit");
        command->execute();
        return command;
    }
    std::string usages() const
    {
        std::string text;
        for (const InterfaceUsage& usage : controller->usages())
            text += usage.name + ":" + usage.components + " ";
        return text;
    }

    std::unique_ptr<Ksx::Data::Content::PackagesList> document =
        std::make_unique<Ksx::Data::Content::PackagesList>();
    std::unique_ptr<OutputController> controller;
    std::string told;
};

TEST_F(Output, SaysWhatTheDocumentSays)
{
    EXPECT_EQ(controller->output(), &output());
    EXPECT_EQ(controller->uid(), 7u);
    EXPECT_EQ(controller->identifier(), "o");
    EXPECT_EQ(controller->label(), "Label");
    EXPECT_EQ(usages(), "diffuse:RGBA mask:R ");
}

TEST_F(Output, TellsOfANewIdentifierAndOfItsUndoing)
{
    const auto command = edit([](auto output) { output.identifier().set("x"); });
    EXPECT_EQ(told, "i");
    EXPECT_EQ(controller->identifier(), "x");

    command->undo();
    EXPECT_EQ(told, "ii");
    EXPECT_EQ(controller->identifier(), "o");
}

TEST_F(Output, TellsOfANewLabel)
{
    const auto command = edit([](auto output) { output.attributes().label().set("x"); });

    EXPECT_EQ(told, "l");
}

TEST_F(Output, TellsOfAnAddedUsage)
{
    const auto command =
        edit([](auto output) { output.usages().pushBack(std::make_unique<Usage>()); });

    EXPECT_EQ(told, "u");
    EXPECT_EQ(usages(), "diffuse:RGBA mask:R : ");
}

TEST_F(Output, TellsOfARemovedUsage)
{
    const auto command = edit([](auto output) { output.usages().erase(0, 1); });

    EXPECT_EQ(told, "u");
    EXPECT_EQ(usages(), "mask:R ");
}

TEST_F(Output, TellsOfMovedUsages)
{
    const auto command = edit([](auto output) { output.usages().move(0, 1); });

    EXPECT_EQ(told, "u");
    EXPECT_EQ(usages(), "mask:R diffuse:RGBA ");
}

TEST_F(Output, TellsOfAnEditedUsage)
{
    const auto command = edit([](auto output) { output.usages().at(1).components().set("G"); });

    EXPECT_EQ(told, "u");
    EXPECT_EQ(usages(), "diffuse:RGBA mask:G ");
}

TEST_F(Output, TellsNothingOfOtherChanges)
{
    const auto command = edit([](auto output) {
        output.uid().set(9);
        output.channels().set(3);
        output.attributes().description().set("x");
    });

    EXPECT_EQ(told, "");
    EXPECT_EQ(controller->uid(), 9u);
}

TEST_F(Output, SaysNothingOnceItHasDied)
{
    document.reset();

    EXPECT_EQ(controller->output(), nullptr);
    EXPECT_EQ(controller->uid(), NoUid);
    EXPECT_EQ(controller->identifier(), "");
    EXPECT_EQ(controller->label(), "");
    EXPECT_EQ(usages(), "");
}

TEST_F(Output, CanLoseItsControllerAndChangeOn)
{
    controller.reset();

    const auto command = edit([](auto output) { output.identifier().set("x"); });
    EXPECT_EQ(told, "");
    EXPECT_EQ(output().identifier().get(), "x");
}

} // namespace

#include "ksx/core/optionscontroller.h"

#include "core/commanddatamodification.h"
#include "data/content/graphmanipulators.h"
#include "data/content/layoutmanipulators.h"
#include "data/content/option.h"
#include "data/content/packageslist.h"
#include "ksx/core/lazysignalconnect.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Graph;
using Ksx::Data::Content::Option;
using Orv::Core::CommandDataModification;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;

// Of a graph with the options a and b.
class GraphOptions : public testing::Test
{
protected:
    GraphOptions()
    {
        const std::string options = "<options><option><name v=\"a\"/><value v=\"1\"/></option>"
                                    "<option><name v=\"b\"/><value v=\"2\"/></option></options>";
        document->content().pushBack(packageFrom(
            aPackage().containing(replaced(GraphText().text(), "<root/>", options + "<root/>"))));
        controllerIn(document->content().at(0)).optionsController().changed.connect([this] {
            ++count;
        });
        before = xmlOf(graph());
    }
    const Graph& graph() const { return *graphIn(document->content().at(0)); }
    std::shared_ptr<CommandDataModification>
    edit(const std::function<void(ManipulatorStruct<Graph>)>& function) const
    {
        auto command = std::make_shared<CommandDataModification>(
            [this, function](ManipulatorContext& context) {
                function(ManipulatorStruct<Graph>(graph(), context));
                return true;
            },
            "edit");
        command->execute();
        return command;
    }

    std::unique_ptr<Ksx::Data::Content::PackagesList> document =
        std::make_unique<Ksx::Data::Content::PackagesList>();
    int count = 0;
    std::string before;
};

TEST_F(GraphOptions, AreThoseOfTheGraph)
{
    EXPECT_EQ(controllerIn(document->content().at(0)).optionsController().options(),
              &graph().options());
    EXPECT_EQ(graph().options().size(), 2u);
}

TEST_F(GraphOptions, TellOfAnAddedOneAndOfItsUndoing)
{
    const auto command =
        edit([](auto graph) { graph.options().pushBack(std::make_unique<Option>()); });
    EXPECT_EQ(count, 1);

    command->undo();
    EXPECT_EQ(count, 2);
    EXPECT_EQ(xmlOf(graph()), before);
}

TEST_F(GraphOptions, TellOfARemovedOne)
{
    const auto command = edit([](auto graph) { graph.options().erase(0, 1); });

    EXPECT_EQ(count, 1);
}

TEST_F(GraphOptions, TellOfAMovedOne)
{
    const auto command = edit([](auto graph) { graph.options().move(0, 1); });

    EXPECT_EQ(count, 1);
}

TEST_F(GraphOptions, TellOfAnEditedOne)
{
    const auto name = edit([](auto graph) { graph.options().at(0).name().set("x"); });
    EXPECT_EQ(count, 1);

    const auto value = edit([](auto graph) { graph.options().at(1).value().set("x"); });
    EXPECT_EQ(count, 2);
}

TEST_F(GraphOptions, TellNothingOfOtherChangesOfTheGraph)
{
    const auto command = edit([](auto graph) { graph.identifier().set("x"); });

    EXPECT_EQ(count, 0);
}

TEST_F(GraphOptions, AreNoneOnceTheyHaveDied)
{
    const OptionsController controller(graph().options());

    document.reset();

    EXPECT_EQ(controller.options(), nullptr);
    EXPECT_EQ(count, 0);
}

} // namespace

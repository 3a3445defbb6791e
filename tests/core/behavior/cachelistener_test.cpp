#include "behavior/cachelistener.h"

#include "core/manipulatorstruct.h"
#include "data/content/graphmanipulators.h"
#include "data/content/layoutmanipulators.h"
#include "ksx/core/edit.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/nodecontroller.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Orv::Data::DataPointerBoxMasterKey;

std::string aNodeShowing(const std::string& graph)
{
    return aNode(1, "<compInstance><path><value v=\"pkg://" + graph +
                        "\"/></path><parameters/><outputBridgings/></compInstance>");
}

// Graph "b" shows "a", "c" shows "b", and "a" itself shows "c"; "d" shows nothing.
class Cache : public testing::Test
{
protected:
    Cache()
    {
        package = &workspace.open(
            aPackage().containing(GraphText{"a", 1, {}, {}, aNodeShowing("c")}.text() +
                                  GraphText{"b", 2, {}, {}, aNodeShowing("a")}.text() +
                                  GraphText{"c", 3, {}, {}, aNodeShowing("b")}.text() +
                                  GraphText{"d", 4, {}, {}, aNode(1, aFilter("blur"))}.text()));
        workspace.behaviors()->visitOpened();
        for (std::size_t i = 0; i < 4; ++i) {
            auto& data = CompiledGraphListener::of(*graphIn(*package, i)).data();
            data.renew();
            data.dropped.connect([this, i] { dropped += "abcd"[i]; });
        }
    }
    void edit(std::size_t graph)
    {
        const auto touch = +[](Orv::Core::ManipulatorStruct<Ksx::Data::Content::Graph> edited,
                               const DataPointerBoxMasterKey&, const int&) {
            edited.attributes().label().set("other");
            return true;
        };
        runEdit(graphIn(*package, graph), 0, touch, "edit");
    }

    Workspace workspace{true};
    const Ksx::Data::Content::Package* package = nullptr;
    std::string dropped;
};

TEST_F(Cache, OfAGraphIsDroppedWithThatOfAllGraphsThatShowIt)
{
    edit(0);
    EXPECT_EQ(dropped, "abc");
    EXPECT_FALSE(CompiledGraphListener::of(*graphIn(*package, 2)).data().isCurrent());
    EXPECT_TRUE(CompiledGraphListener::of(*graphIn(*package, 3)).data().isCurrent());
}

TEST_F(Cache, OfAGraphThatNobodyShowsIsDroppedAlone)
{
    edit(3);
    EXPECT_EQ(dropped, "d");
}

TEST_F(Cache, IsDroppedOnceUntilItIsRenewed)
{
    edit(3);
    workspace.undoAll();
    EXPECT_EQ(dropped, "d");
    CompiledGraphListener::of(*graphIn(*package, 3)).data().renew();
    workspace.redoAll();
    EXPECT_EQ(dropped, "dd");
}

TEST_F(Cache, StaysWhenANodeIsMovedOnTheCanvas)
{
    controllerIn(*package, 3).nodeByUid(1)->setPosition(QPointF(1.0, 2.0));
    EXPECT_EQ(dropped, "");
}

TEST_F(Cache, HasNoDataOfItsOwn)
{
    const auto& data = CompiledGraphListener::of(*graphIn(*package, 3)).data();
    EXPECT_TRUE(data.isEmpty());
    EXPECT_FALSE(data.isPending());
    EXPECT_EQ(data.graph(), graphIn(*package, 3).get());
}

} // namespace

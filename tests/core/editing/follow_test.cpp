#include "ksx/core/follow.h"

#include "ksx/core/lazysignal.h"
#include "ksx/core/lazysignalconnect.h"
#include "support/editing.h"
#include <gtest/gtest.h>
#include <memory>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Orv::Data::ChangeType;

class Owner
{
public:
    LazySignal<> changed;
    void hear(const DataMessage& message) { messages.push_back(message); }
    void edit(ManipulatorContext* context) { contexts.push_back(context); }
    void count() { ++calls; }

    std::vector<DataMessage> messages;
    std::vector<ManipulatorContext*> contexts;
    int calls = 0;
};

class FollowTest : public testing::Test
{
protected:
    void rename(const std::string& name)
    {
        edit([&](ManipulatorContext& context) {
            ShelfEdit(library.root, context).name().set(name);
        });
    }

    Library library;
    Owner owner;
};

TEST_F(FollowTest, CallsAMemberFunctionOfItsOwnerWithTheMessage)
{
    Follow<&Owner::hear> follow(owner);
    listenTo(library.root.name(), follow);
    rename("other");
    ASSERT_EQ(owner.messages.size(), 1u);
    EXPECT_EQ(owner.messages[0].object.get(), &library.root.name());
}

TEST_F(FollowTest, HandsOutTheContextInWhichItsOwnerMayEdit)
{
    Follow<&Owner::edit> follow(owner);
    listenTo(library.root.name(), follow);
    rename("other");
    ASSERT_EQ(owner.contexts.size(), 1u);
    EXPECT_NE(owner.contexts[0], nullptr);
}

TEST_F(FollowTest, HandsOutNoContextForAnUndo)
{
    const auto command = makeCommand([this](ManipulatorContext& context) {
        ShelfEdit(library.root, context).name().set("other");
    });
    command->execute();
    Follow<&Owner::edit> follow(owner);
    listenTo(library.root.name(), follow);
    command->undo();
    EXPECT_EQ(owner.contexts, std::vector<ManipulatorContext*>{nullptr});
}

TEST_F(FollowTest, CallsAFunctionWithoutArguments)
{
    Follow<&Owner::count> follow(owner);
    listenTo(library.root.name(), follow);
    rename("other");
    EXPECT_EQ(owner.calls, 1);
}

TEST_F(FollowTest, FiresASignalOfItsOwner)
{
    int fired = 0;
    owner.changed.connect([&fired] { ++fired; });
    Follow<&Owner::changed> follow(owner);
    listenTo(library.root.name(), follow);
    rename("other");
    EXPECT_EQ(fired, 1);
}

TEST_F(FollowTest, HearsOfEachObjectThatItIsAttachedTo)
{
    Follow<&Owner::count> follow(owner);
    listenTo(library.root.name(), follow);
    listenTo(library.inner().name(), follow);
    edit([this](ManipulatorContext& context) {
        ShelfEdit(library.root, context).name().set("other");
        ShelfEdit(library.inner(), context).name().set("other");
    });
    EXPECT_EQ(owner.calls, 2);
}

TEST_F(FollowTest, HearsOfTheNamedChangesAlone)
{
    Follow<&Owner::count, ChangeType::Erased> follow(owner);
    listenTo(library.root.books(), follow);
    edit([this](ManipulatorContext& context) {
        ShelfEdit(library.root, context).books().pushBack(aBook("d"));
    });
    EXPECT_EQ(owner.calls, 0);
}

TEST_F(FollowTest, IsServedAtTheNamedStage)
{
    const Follow<&Owner::count, ListChanges, Stage::Link> follow(owner);
    EXPECT_EQ(follow.getPriority(), Stage::Link);
}

TEST_F(FollowTest, HearsNothingMoreOnceItHasDied)
{
    auto follow = std::make_unique<Follow<&Owner::count>>(owner);
    listenTo(library.root.name(), *follow);
    follow.reset();
    rename("other");
    EXPECT_EQ(owner.calls, 0);
}

TEST(Follow, TakesNoMoreSpaceThanAListenerWithAnOwner)
{
    EXPECT_EQ(sizeof(Follow<&Owner::hear>), sizeof(Orv::Data::ListenerBase) + sizeof(Owner*));
}

} // namespace

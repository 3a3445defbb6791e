#include "core/messagenode.h"

#include <gtest/gtest.h>

using Orv::Core::addMessage;
using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;

namespace {

TEST(MessageNode, IsAnEmptyInformationByDefault)
{
    const MessageNode node;

    EXPECT_EQ(node.text(), "");
    EXPECT_EQ(node.level(), MessageLevel::Information);
    EXPECT_EQ(node.parent(), nullptr);
    EXPECT_TRUE(node.children().empty());
}

TEST(MessageNode, LevelsHaveFixedNumbers)
{
    EXPECT_EQ(static_cast<int>(MessageLevel::Information), 0);
    EXPECT_EQ(static_cast<int>(MessageLevel::Error), 3);
}

TEST(MessageNode, AddsChildrenInOrder)
{
    MessageNode root;

    root.add(MessageLevel::Information, "first");
    MessageNode& second = root.add(MessageLevel::Error, "second");

    ASSERT_EQ(root.children().size(), 2u);
    EXPECT_EQ(root.children()[0]->text(), "first");
    EXPECT_EQ(root.children()[1].get(), &second);
    EXPECT_EQ(second.level(), MessageLevel::Error);
    EXPECT_EQ(second.parent(), &root);
}

TEST(MessageNode, AttachingTakesItOffItsFormerParent)
{
    MessageNode one;
    MessageNode two;
    MessageNode& child = one.add(MessageLevel::Information, "child");
    child.add(MessageLevel::Error, "grandchild");

    two.attach(child);

    EXPECT_TRUE(one.children().empty());
    ASSERT_EQ(two.children().size(), 1u);
    EXPECT_EQ(two.children()[0].get(), &child);
    EXPECT_EQ(child.parent(), &two);
    EXPECT_EQ(child.children()[0]->text(), "grandchild");
}

TEST(MessageNode, AttachingToTheSameParentMovesItToTheEnd)
{
    MessageNode root;
    MessageNode& first = root.add(MessageLevel::Information, "first");
    root.add(MessageLevel::Information, "second");

    root.attach(first);

    EXPECT_EQ(root.children()[0]->text(), "second");
    EXPECT_EQ(root.children()[1]->text(), "first");
    EXPECT_EQ(root.children().size(), 2u);
}

TEST(MessageNode, DetachingGivesTheOwnershipAway)
{
    MessageNode root;
    MessageNode& child = root.add(MessageLevel::Information, "child");

    const std::unique_ptr<MessageNode> detached = root.detach(child);

    EXPECT_EQ(detached.get(), &child);
    EXPECT_EQ(detached->parent(), nullptr);
    EXPECT_TRUE(root.children().empty());
}

TEST(MessageNode, ANodeOfItsOwnCanBeAttached)
{
    MessageNode root;

    root.attach(std::make_unique<MessageNode>("child", MessageLevel::Error));

    ASSERT_EQ(root.children().size(), 1u);
    EXPECT_EQ(root.children()[0]->parent(), &root);
}

TEST(MessageNode, KnowsOfErrorsAtAnyDepth)
{
    MessageNode root;
    MessageNode& child = root.add(MessageLevel::Information, "child");
    ASSERT_FALSE(root.hasError());

    child.add(MessageLevel::Information, "quiet").add(MessageLevel::Error, "loud");

    EXPECT_TRUE(root.hasError());
    EXPECT_TRUE(child.hasError());
}

TEST(MessageNode, IsItselfAnErrorByItsLevel)
{
    EXPECT_TRUE(MessageNode("x", MessageLevel::Error).hasError());
}

TEST(MessageNode, IsWrittenAsAnIndentedTree)
{
    MessageNode root("root");
    MessageNode& child = root.add(MessageLevel::Information, "child");
    child.add(MessageLevel::Error, "grandchild");
    root.add(MessageLevel::Error, "second");

    EXPECT_EQ(root.toText(), "root\n"
                             "  child\n"
                             "    Error: grandchild\n"
                             "  Error: second\n");
}

TEST(MessageNode, WithoutATextIsLeftOutAtTheRoot)
{
    MessageNode root;
    root.add(MessageLevel::Information, "child").add(MessageLevel::Information, "grandchild");

    EXPECT_EQ(root.toText(), "child\n"
                             "  grandchild\n");
}

TEST(MessageNode, AMessageWithoutALogIsDropped)
{
    EXPECT_NO_THROW(addMessage(nullptr, MessageLevel::Error, "nobody listens"));
}

TEST(MessageNode, AMessageGoesBelowTheLog)
{
    MessageNode log;

    addMessage(&log, MessageLevel::Error, "text");

    EXPECT_EQ(log.toText(), "Error: text\n");
}

} // namespace

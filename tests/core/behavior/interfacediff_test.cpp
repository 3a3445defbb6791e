#include "ksx/core/behavior/interfacediff.h"

#include <gtest/gtest.h>

namespace {

using namespace Ksx::Core::Behavior;
using Places = std::vector<std::size_t>;

const InterfaceItems Former{{1, 256, "a"}, {2, 256, "b"}, {3, 256, "c"}};

// What becomes of an identifier: "" for nothing, "-" if it goes, else the new one, with "!" behind
// it if the type has changed.
std::string fateOf(const InterfaceDiff& diff, const std::string& identifier)
{
    const InterfaceDiff::Fate* const fate = diff.fateOf(identifier);
    if (fate == nullptr)
        return {};
    return fate->item == nullptr ? "-" : fate->item->identifier + (fate->isTypeChanged ? "!" : "");
}

TEST(InterfaceDiff, IsEmptyWithoutAChange)
{
    EXPECT_TRUE(InterfaceDiff(recordsOf(Former), Former).isEmpty());
}

TEST(InterfaceDiff, TellsNewNamesByTheUid)
{
    const InterfaceItems items{{1, 256, "b"}, {2, 256, "a"}, {3, 256, "c"}};
    const InterfaceDiff diff(recordsOf(Former), items);

    EXPECT_EQ(fateOf(diff, "a"), "b");
    EXPECT_EQ(fateOf(diff, "b"), "a");
    EXPECT_EQ(fateOf(diff, "c"), "");
    EXPECT_FALSE(diff.isReordered());
}

TEST(InterfaceDiff, TellsWhatHasGoneAndWhatIsNew)
{
    const InterfaceItems items{{4, 256, "x"}, {1, 256, "a"}, {3, 256, "c"}};
    const InterfaceDiff diff(recordsOf(Former), items);

    EXPECT_EQ(fateOf(diff, "b"), "-");
    EXPECT_EQ(diff.added(), Places{0});
    EXPECT_FALSE(diff.isReordered());
    EXPECT_EQ(diff.placeOf("c"), 2u);
    EXPECT_EQ(diff.placeOf("b"), 3u);
}

TEST(InterfaceDiff, TellsAChangeOfType)
{
    const InterfaceItems items{{1, 512, "a"}, {2, 256, "b"}, {3, 512, "z"}};
    const InterfaceDiff diff(recordsOf(Former), items);

    EXPECT_EQ(fateOf(diff, "a"), "a!");
    EXPECT_EQ(fateOf(diff, "c"), "z!");
}

TEST(InterfaceDiff, TakesANewItemForTheOneOfItsNameThatHasGone)
{
    const InterfaceItems items{{1, 256, "a"}, {9, 256, "b"}, {3, 256, "c"}};

    EXPECT_TRUE(InterfaceDiff(recordsOf(Former), items).isEmpty());
}

TEST(InterfaceDiff, TellsAnotherOrder)
{
    const InterfaceItems items{{1, 256, "a"}, {3, 256, "c"}, {2, 256, "b"}};
    const InterfaceDiff diff(recordsOf(Former), items);

    EXPECT_TRUE(diff.isReordered());
    EXPECT_EQ(fateOf(diff, "b"), "");
}

TEST(InterfaceDiff, OfTwoItemsWithOneUidTheFirstCounts)
{
    const InterfaceItems items{{1, 256, "a"}, {1, 256, "x"}, {2, 256, "b"}, {3, 256, "c"}};

    EXPECT_TRUE(InterfaceDiff(recordsOf(Former), items).isEmpty());
}

TEST(InterfaceDiff, OfAllItemsLeavesNothingElse)
{
    const InterfaceDiff diff = InterfaceDiff::whole(Former);

    EXPECT_FALSE(diff.isEmpty());
    EXPECT_EQ(fateOf(diff, "a"), "a!");
    EXPECT_EQ(fateOf(diff, "unknown"), "-");
    EXPECT_EQ(diff.added(), Places({0, 1, 2}));
    EXPECT_TRUE(diff.isReordered());
}

} // namespace

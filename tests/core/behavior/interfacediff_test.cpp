#include "behavior/interfacediff.h"

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
    return !fate->item ? "-" : fate->item->identifier + (fate->isTypeChanged ? "!" : "");
}

Places placesOf(const InterfaceDiff& diff)
{
    Places places;
    for (const InterfaceDiff::Addition& added : diff.added())
        places.push_back(added.place);
    return places;
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
    EXPECT_EQ(placesOf(diff), Places{0});
    EXPECT_FALSE(diff.isReordered());
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
    EXPECT_EQ(diff.placeOf("c"), 1u);
    EXPECT_EQ(diff.placeOf("x"), 3u);
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
    EXPECT_EQ(placesOf(diff), Places({0, 1, 2}));
    EXPECT_TRUE(diff.isReordered());
}

} // namespace

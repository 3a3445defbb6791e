#include "batch/components.h"

#include <gtest/gtest.h>

using Ksx::Kit::Components;
using Ksx::Kit::distribute;

TEST(ComponentsOfThings, JoinWhateverIsJoinedByOthers)
{
    Components components(4);

    components.join(3, 1);
    components.join(1, 0);

    EXPECT_EQ(components.groupOf(3), 0U);
    EXPECT_EQ(components.groupOf(2), 2U);
}

TEST(Distribution, PutsTheLargestLoadsApart)
{
    EXPECT_EQ(distribute({1, 5, 4, 2}, 2), (std::vector<std::size_t>{0, 0, 1, 1}));
}

TEST(Distribution, LeavesNoBinEmptyForLoadsWithoutWeight)
{
    EXPECT_EQ(distribute({0, 0, 0}, 3), (std::vector<std::size_t>{0, 1, 2}));
}

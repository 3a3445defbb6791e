#include "command/progress.h"

#include <gtest/gtest.h>

using Ksx::Kit::progressText;

TEST(ProgressText, TellsFilesRateAndTimeLeft)
{
    EXPECT_EQ(progressText(1200, 10000, 2), "1200 of 10000 files, 600 a second, 15 s left");
}

TEST(ProgressText, TellsATenthOfASlowRate)
{
    EXPECT_EQ(progressText(3, 10, 2), "3 of 10 files, 1.5 a second, 5 s left");
}

TEST(ProgressText, OfNoTimeHasNoRate)
{
    EXPECT_EQ(progressText(3, 10, 0), "3 of 10 files");
}

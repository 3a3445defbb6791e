#include "compare/freenumbers.h"

#include <gtest/gtest.h>

using Ksx::Kit::FreeNumbers;

TEST(FreeNumbers, GivesANumberThatNobodyHas)
{
    FreeNumbers numbers;
    numbers.take(5);

    EXPECT_EQ(numbers.takeFree(4), 4u);
}

TEST(FreeNumbers, PassesNumbersThatAreTaken)
{
    FreeNumbers numbers;
    numbers.take(4);
    numbers.take(5);
    numbers.take(5);

    EXPECT_EQ(numbers.takeFree(4), 6u);
}

TEST(FreeNumbers, GivesNoNumberTwice)
{
    FreeNumbers numbers;
    numbers.take(6);

    EXPECT_EQ(numbers.takeFree(5), 5u);
    EXPECT_EQ(numbers.takeFree(5), 7u);
    EXPECT_EQ(numbers.takeFree(5), 8u);
    EXPECT_EQ(numbers.takeFree(7), 9u);
}

TEST(FreeNumbers, GoesOnAtZeroBehindTheLastNumber)
{
    FreeNumbers numbers;
    numbers.take(0xFFFFFFFFu);

    EXPECT_EQ(numbers.takeFree(0xFFFFFFFFu), 0u);
}

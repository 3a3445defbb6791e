#include "editing/takennames.h"

#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

using Ksx::Core::TakenNames;

TakenNames namesOf(const std::vector<std::string>& texts)
{
    TakenNames names;
    for (const std::string& text : texts)
        names.add(text);
    return names;
}

TEST(TakenNames, FindTheFirstFreeNumberBehindAGap)
{
    const TakenNames names = namesOf({"in", "in_1", "in_2", "in_4"});

    EXPECT_EQ(names.freeNumber("in", 1), 3);
    EXPECT_EQ(names.freeNumber("in", 4), 5);
    EXPECT_EQ(names.freeNumber("out", 1), 1);
}

TEST(TakenNames, CountOnlyNumbersInTheirUsualForm)
{
    const TakenNames names = namesOf({"in_01", "in_+2", "in_3x", "in_"});

    EXPECT_EQ(names.freeNumber("in", 1), 1);
}

TEST(TakenNames, AreTakenUntilTheLastOfANameIsGone)
{
    TakenNames names = namesOf({"in_1", "in_1"});
    names.remove("in_1");
    EXPECT_EQ(names.freeNumber("in", 1), 2);
    names.remove("in_1");
    EXPECT_EQ(names.freeNumber("in", 1), 1);
}

TEST(TakenNames, CanBeAskedWithoutOneOfThem)
{
    const TakenNames names = namesOf({"in_1", "in_2", "in_2", "in_3"});

    EXPECT_EQ(names.freeNumber("in", 1, "in_3"), 3);
    EXPECT_EQ(names.freeNumber("in", 1, "in_2"), 4);
    EXPECT_EQ(names.freeNumber("in", 2, "in_1"), 4);
}

// The number that is found by asking for one after the other.
long long countedUp(const TakenNames& names, long long number)
{
    while (names.count("a_" + std::to_string(number)) != 0)
        ++number;
    return number;
}

// Adds and removes names at random, and compares at each step. Returns the number of differences.
int differencesOfRandomNames(unsigned seed)
{
    std::mt19937 random(seed);
    TakenNames names;
    std::vector<std::string> taken;
    int differences = 0;
    for (int i = 0; i < 300; ++i) {
        if (taken.empty() || random() % 3 != 0) {
            taken.push_back("a_" + std::to_string(random() % 20));
            names.add(taken.back());
        } else {
            const std::size_t place = random() % taken.size();
            names.remove(taken[place]);
            taken.erase(taken.begin() + static_cast<std::ptrdiff_t>(place));
        }
        const auto begin = static_cast<long long>(random() % 20);
        differences += names.freeNumber("a", begin) == countedUp(names, begin) ? 0 : 1;
    }
    return differences;
}

class RandomNames : public testing::TestWithParam<unsigned>
{};

TEST_P(RandomNames, HaveTheFreeNumberThatCountingFinds)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    EXPECT_EQ(differencesOfRandomNames(GetParam()), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomNames, testing::Range(1u, 11u));

} // namespace

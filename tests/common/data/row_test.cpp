#include "data/row.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <array>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using Orv::Data::Row;

// Values of which some thousands make blocks.
constexpr std::size_t Many = 4000;
using Numbers = std::array<int, Many>;

template <class T>
bool holds(const Row<T>& row, const std::vector<T>& expected)
{
    bool isSame = row.size() == expected.size() &&
                  std::equal(row.begin(), row.end(), expected.begin(), expected.end());
    for (std::size_t i = 0; isSame && i < row.size(); ++i)
        isSame = row[i] == expected[i] && row.indexOf(expected[i]) == i;
    return isSame;
}

// Edits a row and a vector alike. They grow to all of the numbers and shrink again, at places at
// random or, with a bias, at one end. Returns how often they differed.
int differencesOfRandomRows(unsigned seed)
{
    std::mt19937 random(seed);
    Numbers numbers{};
    std::vector<int*> unused(Many);
    std::transform(numbers.begin(), numbers.end(), unused.begin(), [](int& n) { return &n; });
    Row<int*> row;
    std::vector<int*> expected;
    const auto place = [&](std::size_t count) {
        const unsigned bias = seed % 3; // 0: anywhere, 1: the beginning, 2: the end
        return bias == 0 ? random() % count : bias == 1 ? 0 : count - 1;
    };
    int differences = 0;
    bool grows = true;
    for (std::size_t i = 0; i < 5 * Many; ++i) {
        grows = unused.empty() ? false : expected.empty() ? true : grows;
        if (!unused.empty() && (expected.empty() || (random() % 8 != 0) == grows)) {
            const std::size_t at = place(expected.size() + 1);
            row.insert(at, unused.back());
            expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(at), unused.back());
            unused.pop_back();
        } else {
            const std::size_t at = place(expected.size());
            unused.push_back(row.take(at));
            differences += unused.back() == expected[at] ? 0 : 1;
            expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(at));
        }
        if (i % 500 == 0)
            differences += holds(row, expected) ? 0 : 1;
    }
    return differences + (holds(row, expected) ? 0 : 1);
}

Row<int> countedTo(std::size_t count)
{
    Row<int> row;
    for (std::size_t i = 0; i < count; ++i)
        row.pushBack(static_cast<int>(i));
    return row;
}

class RandomRow : public testing::TestWithParam<unsigned>
{};

TEST_P(RandomRow, HoldsWhatAVectorHolds)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    EXPECT_EQ(differencesOfRandomRows(GetParam()), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRow, testing::Range(1u, 7u));

TEST(Row, HasNothingToWalkOverAtFirst)
{
    const Row<int> row;
    EXPECT_TRUE(row.empty());
    EXPECT_EQ(row.begin(), row.end());
}

TEST(Row, HasNothingToWalkOverWhenAllHasBeenTaken)
{
    Row<int> row = countedTo(Many);
    const std::vector<int> taken = row.takeAll();
    EXPECT_EQ(taken.size(), Many);
    EXPECT_EQ(taken.back(), static_cast<int>(Many) - 1);
    EXPECT_TRUE(row.empty());
    EXPECT_EQ(row.begin(), row.end());
}

TEST(Row, WalksOverItsValuesInOrder)
{
    const Row<int> row = countedTo(Many);
    EXPECT_TRUE(std::is_sorted(row.begin(), row.end()));
    EXPECT_EQ(std::distance(row.begin(), row.end()), static_cast<std::ptrdiff_t>(Many));
    EXPECT_EQ(row.front(), 0);
    EXPECT_EQ(row.back(), static_cast<int>(Many) - 1);
}

TEST(Row, FindsValuesThatItOwnsByTheirAddress)
{
    Row<std::unique_ptr<int>> row;
    auto value = std::make_unique<int>(1);
    const int* const address = value.get();
    row.pushBack(nullptr);
    row.pushBack(std::move(value));
    EXPECT_EQ(row.indexOf(address), 1u);
}

TEST(Row, AnswersItsLengthForAPointerThatItHasNot)
{
    const int stranger = 0;
    EXPECT_EQ(Row<const int*>().indexOf(&stranger), 0u);
}

} // namespace

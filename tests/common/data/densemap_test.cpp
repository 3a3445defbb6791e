#include "data/densemap.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>

namespace {

using Orv::Data::DenseMap;

using Numbers = DenseMap<unsigned, std::string>;

// Sends all keys to one place of the table.
struct OneHash
{
    std::size_t operator()(unsigned) const { return 7; }
};

template <class Map>
std::vector<unsigned> keysOf(const Map& map)
{
    std::vector<unsigned> keys;
    for (const auto& entry : map)
        keys.push_back(entry.key());
    return keys;
}

// Does the same as a std::unordered_map in all of so many random steps, and answers alike after each?
template <class Hash>
testing::AssertionResult isLikeUnorderedMap(unsigned steps, unsigned keys, std::uint32_t seed)
{
    std::mt19937 engine(seed);
    const auto random = [&engine] { return static_cast<unsigned>(engine()); };
    DenseMap<unsigned, unsigned, Hash> map;
    std::unordered_map<unsigned, unsigned> model;
    for (unsigned step = 0; step < steps; ++step) {
        const unsigned key = random() % keys;
        const bool isSame = random() % 2 == 0
                                ? map.emplace(key, step).second == model.emplace(key, step).second
                                : map.erase(key) == (model.erase(key) != 0);
        const unsigned asked = random() % keys;
        const auto found = map.find(asked);
        const auto expected = model.find(asked);
        const bool isFound = found != map.end();
        if (!isSame || map.size() != model.size() || isFound != (expected != model.end()) ||
            (isFound && (found->key() != asked || found->value != expected->second)))
            return testing::AssertionFailure() << "at step " << step << ", seed " << seed;
    }
    const bool hasAll = std::all_of(model.begin(), model.end(), [&map](const auto& entry) {
        return map.contains(entry.first) && map.at(entry.first) == entry.second;
    });
    return hasAll ? testing::AssertionSuccess() : testing::AssertionFailure() << "entries are lost";
}

TEST(DenseMap, FindsNothingWhileItIsEmpty)
{
    Numbers map;
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find(1), map.end());
    EXPECT_FALSE(map.contains(1));
    EXPECT_FALSE(map.erase(1u));
}

TEST(DenseMap, KeepsTheFirstValueOfAKey)
{
    Numbers map;
    EXPECT_TRUE(map.emplace(1, "first").second);
    const auto second = map.emplace(1, "second");
    EXPECT_FALSE(second.second);
    EXPECT_EQ(second.first->value, "first");
    EXPECT_EQ(map.size(), 1u);
}

TEST(DenseMap, MakesADefaultValueForAKeyInBrackets)
{
    DenseMap<std::string, int> counts;
    ++counts["a"];
    ++counts["a"];
    EXPECT_EQ(counts["b"], 0);
    EXPECT_EQ(counts.at("a"), 2);
}

TEST(DenseMap, KeepsTheOrderInWhichEntriesCame)
{
    Numbers map;
    for (const unsigned key : {70u, 3u, 1000000u, 5u})
        map.emplace(key, "");
    EXPECT_EQ(keysOf(map), (std::vector<unsigned>{70, 3, 1000000, 5}));
}

TEST(DenseMap, PutsTheLastEntryIntoThePlaceOfAnErasedOne)
{
    Numbers map;
    for (const unsigned key : {1u, 2u, 3u, 4u})
        map.emplace(key, "");
    map.erase(2u);
    EXPECT_EQ(keysOf(map), (std::vector<unsigned>{1, 4, 3}));
    map.erase(map.find(3));
    EXPECT_EQ(keysOf(map), (std::vector<unsigned>{1, 4}));
}

TEST(DenseMap, HoldsValuesThatCannotBeCopied)
{
    DenseMap<int, std::unique_ptr<int>> map;
    map.emplace(1, std::make_unique<int>(10));
    map.emplace(2, std::make_unique<int>(20));
    map.erase(1);
    EXPECT_EQ(*map.at(2), 20);
}

TEST(DenseMap, IsEmptyAfterClearAndCanBeFilledAgain)
{
    Numbers map;
    map.emplace(1, "a");
    map.clear();
    EXPECT_TRUE(map.empty());
    EXPECT_FALSE(map.contains(1));
    map.emplace(1, "b");
    EXPECT_EQ(map.at(1), "b");
}

TEST(DenseMap, IsLikeAnUnorderedMapOverRandomSteps)
{
    EXPECT_TRUE(isLikeUnorderedMap<std::hash<unsigned>>(20000, 2000, 1));
    EXPECT_TRUE(isLikeUnorderedMap<std::hash<unsigned>>(20000, 40, 2));
}

TEST(DenseMap, IsRightWhereAllKeysHaveOneHash)
{
    EXPECT_TRUE(isLikeUnorderedMap<OneHash>(3000, 60, 3));
}

} // namespace

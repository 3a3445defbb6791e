// The fast lane of reading gives what the general one gives.
#include "support/readinglanes.h"

#include <gtest/gtest.h>

using TestSupport::differenceOfLanes;
using TestSupport::documentsForLanes;
using TestSupport::XmlMutator;

namespace {

// Returns the first of `count` mutants of the documents on which the lanes differ, and how.
std::string firstDifference(unsigned seed, int count)
{
    const std::vector<std::string> documents = documentsForLanes();
    XmlMutator mutator(seed);
    for (int i = 0; i < count; ++i) {
        const std::string mutant =
            mutator.mutant(documents[static_cast<std::size_t>(i) % documents.size()]);
        const std::string difference = differenceOfLanes(mutant);
        if (!difference.empty())
            return difference + "\nof\n" + mutant;
    }
    return {};
}

std::string differencesOf(const std::vector<std::string>& documents)
{
    std::string differences;
    for (const std::string& document : documents)
        differences += differenceOfLanes(document);
    return differences;
}

// The document cut at each of its bytes.
std::vector<std::string> beginsOf(const std::string& document)
{
    std::vector<std::string> begins;
    for (std::size_t size = 0; size <= document.size(); ++size)
        begins.push_back(document.substr(0, size));
    return begins;
}

TEST(ReadingLanes, AgreeOnTheSamples)
{
    EXPECT_EQ(differencesOf(documentsForLanes()), "");
}

TEST(ReadingLanes, AgreeWhereverADocumentEnds)
{
    EXPECT_EQ(differencesOf(beginsOf(documentsForLanes().back())), "");
}

class MutantsInLanes : public testing::TestWithParam<unsigned>
{};

TEST_P(MutantsInLanes, GiveTheSameInBoth)
{
    EXPECT_EQ(firstDifference(GetParam(), 1500), "");
}

INSTANTIATE_TEST_SUITE_P(Seeds, MutantsInLanes, testing::Values(1U, 2U, 3U, 4U));

} // namespace

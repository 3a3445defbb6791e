// The fast lane of reading gives what the general one gives.
#include "support/readinglanes.h"

#include <gtest/gtest.h>

using TestSupport::differenceOfLanes;
using TestSupport::differenceOfLightDocuments;
using TestSupport::differenceOfUpdates;
using TestSupport::documentsForLanes;
using TestSupport::firstDifferenceOfLanes;

namespace {

std::string differencesOf(const std::vector<std::string>& documents)
{
    std::string differences;
    for (const std::string& document : documents)
        differences += differenceOfLanes(document) + differenceOfLightDocuments(document) +
                       differenceOfUpdates(document);
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
    EXPECT_EQ(firstDifferenceOfLanes(GetParam(), 1500), "");
}

INSTANTIATE_TEST_SUITE_P(Seeds, MutantsInLanes, testing::Values(1U, 2U, 3U, 4U));

} // namespace

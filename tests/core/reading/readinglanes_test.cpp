// The fast lane of reading gives what the general one gives.
#include "support/packagetext.h"
#include "support/readinglanes.h"
#include "support/shelfcases.h"

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

struct TailCase
{
    const char* name;
    const char* bytes;
};

std::ostream& operator<<(std::ostream& stream, const TailCase& c)
{
    return stream << c.name;
}

// An unknown item ends its list, and what follows is read one level too high: so the tree of the
// package ends with its content. A general reader of XML has read ahead then.
class BehindTheEndOfTheTree : public testing::TestWithParam<TailCase>
{};

TEST_P(BehindTheEndOfTheTree, LanesAgree)
{
    const std::string document = TestSupport::aPackage().containing("<unknown/>").text();

    EXPECT_EQ(differencesOf({document + GetParam().bytes}), "");
}

INSTANTIATE_TEST_SUITE_P(Bytes, BehindTheEndOfTheTree,
                         testing::Values(TailCase{"Nothing", ""}, TailCase{"Blanks", " \n "},
                                         TailCase{"NoCharacter", "\xFF"},
                                         TailCase{"PartOfACharacter", "\xC3"},
                                         TailCase{"BeginOfATag", "<"},
                                         TailCase{"Comment", "<!-- c -->"},
                                         TailCase{"SecondRoot", "<x/>"}, TailCase{"Text", "text"}),
                         TestSupport::caseName<TailCase>);

class MutantsInLanes : public testing::TestWithParam<unsigned>
{};

TEST_P(MutantsInLanes, GiveTheSameInBoth)
{
    EXPECT_EQ(firstDifferenceOfLanes(GetParam(), 1500), "");
}

INSTANTIATE_TEST_SUITE_P(Seeds, MutantsInLanes, testing::Values(1U, 2U, 3U, 4U));

} // namespace

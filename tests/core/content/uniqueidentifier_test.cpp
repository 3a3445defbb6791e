#include "content/uniqueidentifier.h"

#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace TestSupport;
using Ksx::Core::uniqueIdentifier;
using Ksx::Data::Content::Package;

std::unique_ptr<Package> aPackageWith(const std::vector<std::string>& identifiers)
{
    PackageText package = aPackage();
    for (const std::string& identifier : identifiers)
        package.containing(aGroup(identifier));
    return packageFrom(package);
}

struct NameCase
{
    const char* name;
    std::vector<std::string> taken;
    const char* wanted;
    const char* expected;
};

class UniqueIdentifier : public testing::TestWithParam<NameCase>
{};

TEST_P(UniqueIdentifier, IsTheWantedOneOrTheNextFreeOne)
{
    const auto package = aPackageWith(GetParam().taken);

    EXPECT_EQ(uniqueIdentifier(*package, GetParam().wanted), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, UniqueIdentifier,
    testing::Values(NameCase{"Free", {}, "Graph", "Graph"},
                    NameCase{"FreeWithANumber", {"Graph"}, "Graph_7", "Graph_7"},
                    NameCase{"Taken", {"Graph"}, "Graph", "Graph_1"},
                    NameCase{"TakenWithItsSuccessor", {"Graph", "Graph_1"}, "Graph", "Graph_2"},
                    NameCase{"Gap", {"Graph", "Graph_2"}, "Graph", "Graph_1"},
                    NameCase{"TakenWithANumber", {"Graph_7"}, "Graph_7", "Graph_8"},
                    NameCase{"CountsOn", {"Graph_7", "Graph_8"}, "Graph_7", "Graph_9"},
                    NameCase{"OnlyTheLastNumberCounts", {"a_1_2"}, "a_1_2", "a_1_3"},
                    NameCase{"TextBehindTheSeparator", {"a_b"}, "a_b", "a_b_1"},
                    NameCase{"NumberAlone", {"7"}, "7", "7_1"},
                    NameCase{"LeadingZerosAreDropped", {"a_007"}, "a_007", "a_7"},
                    NameCase{"NegativeNumber", {"a_-3"}, "a_-3", "a_-2"},
                    NameCase{"NegativeNumberBeforeZero", {"a_-1"}, "a_-1", "a_0"},
                    NameCase{"SignedNumber", {"a_+3"}, "a_+3", "a_3"},
                    NameCase{"HexadecimalIsNoNumber", {"a_0x1"}, "a_0x1", "a_0x1_1"},
                    NameCase{"GreatestNumber", {"a_2147483647"}, "a_2147483647", "a_2147483648"},
                    NameCase{"LeastNumber", {"a_-2147483648"}, "a_-2147483648", "a_-2147483647"},
                    NameCase{"NumberTooGreat", {"a_2147483648"}, "a_2147483648", "a_2147483648_1"},
                    NameCase{"NumberFarTooGreat",
                             {"a_99999999999999999999"},
                             "a_99999999999999999999",
                             "a_99999999999999999999_1"},
                    NameCase{
                        "OthersWithTheSameBeginning", {"Graphs", "Graph_x"}, "Graph", "Graph"}),
    caseName<NameCase>);

INSTANTIATE_TEST_SUITE_P(
    Legal, UniqueIdentifier,
    testing::Values(NameCase{"EmptyStaysEmpty", {""}, "", ""}, NameCase{"Blank", {}, "a b", "a_b"},
                    NameCase{"BlankAndTaken", {"a_b"}, "a b", "a_b_1"},
                    NameCase{"PartsOfPaths", {}, "a/b?c&d", "a_b_c_d"},
                    NameCase{"EdgesAreStripped", {}, "__Graph__", "Graph"},
                    NameCase{"EdgesAreStrippedAndTaken", {"Graph"}, "_Graph_", "Graph_1"},
                    NameCase{"NothingLegal", {}, "???", "_1"},
                    NameCase{"NothingLegalAndTaken", {"_1"}, "???", "_2"},
                    NameCase{"NotAscii", {}, "caf\xC3\xA9", "caf"},
                    NameCase{"KeptSigns", {}, "[a]{b}-+^@=%,!", "[a]{b}-+^@=%,!"},
                    NameCase{"PlaceholdersAreText", {"%1_%2"}, "%1_%2", "%1_%2_1"},
                    NameCase{"CaseCounts", {"graph"}, "Graph", "Graph"}),
    caseName<NameCase>);

TEST(UniqueIdentifierOfAContainer, IsFreeIfOnlyTheIgnoredObjectHasIt)
{
    const auto package = aPackageWith({"a", "b"});

    EXPECT_EQ(uniqueIdentifier(*package, "b", &package->content().at(1)), "b");
}

TEST(UniqueIdentifierOfAContainer, IsTakenIfAnotherObjectHasIt)
{
    const auto package = aPackageWith({"a", "b"});

    EXPECT_EQ(uniqueIdentifier(*package, "b", &package->content().at(0)), "b_1");
}

TEST(UniqueIdentifierOfAContainer, BelongsToTheFirstObjectThatHasIt)
{
    const auto package = aPackageWith({"a", "a"});

    EXPECT_EQ(uniqueIdentifier(*package, "a", &package->content().at(0)), "a");
    EXPECT_EQ(uniqueIdentifier(*package, "a", &package->content().at(1)), "a_1");
}

TEST(UniqueIdentifierOfAContainer, IsNotTakenByWhatStandsDeeperOrHigher)
{
    const auto package = packageFrom(aPackage().containing(aGroup("outer", aGroup("inner"))));
    const auto& outer = package->content().at(0);

    EXPECT_EQ(uniqueIdentifier(*package, "inner"), "inner");
    EXPECT_EQ(uniqueIdentifier(outer, "inner"), "inner_1");
    EXPECT_EQ(uniqueIdentifier(outer, "outer"), "outer");
}

TEST(UniqueIdentifierOfAContainer, IsTakenByContentOfAnyKind)
{
    const auto package = packageFrom(aPackage()
                                         .containing(aResource("picture", "a.png"))
                                         .containing(aGraphWithInstance("graph", "pkg://x")));

    EXPECT_EQ(uniqueIdentifier(*package, "picture"), "picture_1");
    EXPECT_EQ(uniqueIdentifier(*package, "graph"), "graph_1");
}

TEST(UniqueIdentifierOfAContainer, KnowsWhatStandsInAGraph)
{
    const auto package =
        packageFrom(replaced(aPackage().containing(aGraphWithInstance("g", "pkg://x")).text(),
                             "<content/>", "<content>" + aGroup("a") + "</content>"));

    EXPECT_EQ(uniqueIdentifier(package->content().at(0), "a"), "a_1");
}

TEST(UniqueIdentifierOfAContainer, IsFreeWhereNothingCanBeTaken)
{
    const auto package = packageFrom(aPackage().containing(aResource("a", "a.png")));

    EXPECT_EQ(uniqueIdentifier(package->content().at(0), "a"), "a");
}

TEST(UniqueIdentifierOfAContainer, IsFoundQuicklyAmongManyOfItsKind)
{
    std::vector<std::string> taken{"g"};
    for (int i = 1; i < 20000; ++i)
        taken.push_back("g_" + std::to_string(i));
    const auto package = aPackageWith(taken);

    EXPECT_EQ(uniqueIdentifier(*package, "g"), "g_20000");
}

} // namespace

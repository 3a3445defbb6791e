#include "core/version.h"

#include "support/shelfcases.h"
#include <gtest/gtest.h>

using Orv::Core::Version;
using TestSupport::caseName;

namespace {

const Version Former{9, 8, 7, 6};

struct TextCase
{
    const char* name;
    const char* text;
    Version version;
};

std::ostream& operator<<(std::ostream& stream, const TextCase& c)
{
    return stream << c.name;
}

class VersionText : public testing::TestWithParam<TextCase>
{};

TEST_P(VersionText, IsRead)
{
    Version version = Former;

    EXPECT_TRUE(version.fromString(GetParam().text));

    EXPECT_EQ(version, GetParam().version);
}

INSTANTIATE_TEST_SUITE_P(Forms, VersionText,
                         testing::Values(TextCase{"Plain", "1.2.3.4", {1, 2, 3, 4}},
                                         TextCase{"Zeros", "0.0.0.0", {0, 0, 0, 0}},
                                         TextCase{"LeadingZeros", "01.002.0.0007", {1, 2, 0, 7}},
                                         TextCase{"Greatest",
                                                  "4294967295.0.0.4294967295",
                                                  {4294967295u, 0, 0, 4294967295u}},
                                         TextCase{"Blanks", " 1. 2.3 .4 ", {1, 2, 3, 4}},
                                         TextCase{"PlusSign", "+1.2.3.4", {1, 2, 3, 4}}),
                         caseName<TextCase>);

class NoVersionText : public testing::TestWithParam<TextCase>
{};

TEST_P(NoVersionText, IsRefusedAndChangesNothing)
{
    Version version = Former;

    EXPECT_FALSE(version.fromString(GetParam().text));

    EXPECT_EQ(version, Former);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NoVersionText,
    testing::Values(TextCase{"Empty", "", {}}, TextCase{"ThreeParts", "1.2.3", {}},
                    TextCase{"FiveParts", "1.2.3.4.5", {}}, TextCase{"EmptyPart", "1..3.4", {}},
                    TextCase{"TrailingPoint", "1.2.3.", {}}, TextCase{"OnlyPoints", "...", {}},
                    TextCase{"Letter", "1.2.x.4", {}}, TextCase{"LetterBehind", "1.2.3.4b", {}},
                    TextCase{"Negative", "1.-2.3.4", {}}, TextCase{"Hexadecimal", "1.0x2.3.4", {}},
                    TextCase{"TooLarge", "1.2.3.4294967296", {}}, TextCase{"Commas", "1,2,3,4", {}},
                    TextCase{"BlankInside", "1.2 2.3.4", {}}),
    caseName<TextCase>);

TEST(Version, IsNoneWhenAllNumbersAreZero)
{
    EXPECT_TRUE(Version().isNone());
    EXPECT_FALSE((Version{1, 0, 0, 0}).isNone());
    EXPECT_FALSE((Version{0, 1, 0, 0}).isNone());
    EXPECT_FALSE((Version{0, 0, 1, 0}).isNone());
    EXPECT_FALSE((Version{0, 0, 0, 1}).isNone());
}

TEST(Version, IsWrittenWithoutLeadingZeros)
{
    EXPECT_EQ((Version{1, 0, 20, 4294967295u}).toString(), "1.0.20.4294967295");
    EXPECT_EQ(Version().toString(), "0.0.0.0");
}

struct OrderCase
{
    const char* name;
    Version smaller;
    Version greater;
};

std::ostream& operator<<(std::ostream& stream, const OrderCase& c)
{
    return stream << c.name;
}

class VersionOrder : public testing::TestWithParam<OrderCase>
{};

TEST_P(VersionOrder, GoesFromMajorToBuild)
{
    const auto& [name, smaller, greater] = GetParam();

    EXPECT_TRUE(smaller < greater);
    EXPECT_TRUE(smaller <= greater);
    EXPECT_TRUE(smaller != greater);
    EXPECT_TRUE(greater > smaller);
    EXPECT_TRUE(greater >= smaller);
    EXPECT_FALSE(smaller == greater);
    EXPECT_FALSE(greater < smaller);
    EXPECT_FALSE(greater <= smaller);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, VersionOrder,
    testing::Values(OrderCase{"Major", {1, 9, 9, 9}, {2, 0, 0, 0}},
                    OrderCase{"Minor", {1, 1, 9, 9}, {1, 2, 0, 0}},
                    OrderCase{"Revision", {1, 1, 1, 9}, {1, 1, 2, 0}},
                    OrderCase{"Build", {1, 1, 1, 1}, {1, 1, 1, 2}},
                    OrderCase{"BeyondSigned", {0, 0, 0, 2147483647}, {0, 0, 0, 2147483648u}}),
    caseName<OrderCase>);

TEST(Version, IsNeitherSmallerNorGreaterThanItsEqual)
{
    const Version version{1, 2, 3, 4};

    EXPECT_TRUE(version == (Version{1, 2, 3, 4}));
    EXPECT_TRUE(version <= version);
    EXPECT_TRUE(version >= version);
    EXPECT_FALSE(version < version);
    EXPECT_FALSE(version > version);
}

} // namespace

#include "data/floattext.h"

#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <limits>

namespace {

struct FloatText
{
    const char* name;
    const char* text;
    std::optional<float> number;
};

class FloatOfText : public testing::TestWithParam<FloatText>
{};

TEST_P(FloatOfText, IsTheNearestFiniteOneOrNone)
{
    EXPECT_EQ(Orv::floatOf(QString::fromLatin1(GetParam().text)), GetParam().number);
}

constexpr float Greatest = std::numeric_limits<float>::max();

INSTANTIATE_TEST_SUITE_P(
    Forms, FloatOfText,
    testing::Values(FloatText{"Fraction", "-0.25", -0.25F}, FloatText{"Exponent", "1e3", 1000.0F},
                    FloatText{"Greatest", "3.40282347e38", Greatest},
                    FloatText{"AboveTheGreatestAndRoundedToIt", "3.4028235e38", Greatest},
                    FloatText{"BelowTheLeastAndRoundedToIt", "-3.4028235e38", -Greatest},
                    FloatText{"RoundedToInfinity", "3.4028236e38", std::nullopt},
                    FloatText{"BeyondAllFloats", "1e39", std::nullopt},
                    FloatText{"BeyondAllDoubles", "1e999", std::nullopt},
                    FloatText{"NotANumber", "nan", std::nullopt},
                    FloatText{"Infinity", "inf", std::nullopt},
                    FloatText{"MinusInfinity", "-inf", std::nullopt},
                    FloatText{"Word", "high", std::nullopt}, FloatText{"Nothing", "", std::nullopt},
                    FloatText{"TwoNumbers", "1 2", std::nullopt}),
    TestSupport::caseName<FloatText>);

} // namespace

#include "graph/inputrange.h"

#include "data/attribute.h"
#include "data/content/package.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "support/shelfcases.h"
#include "support/workspace.h"
#include <climits>
#include <cmath>
#include <limits>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using namespace Orv::Data;

constexpr float Greatest = std::numeric_limits<float>::max();
constexpr float Infinite = std::numeric_limits<float>::infinity();

template <class T>
T clamped(const InputRange& range, const T& value)
{
    return boost::any_cast<T>(range.clamped(value));
}

struct FloatCase
{
    const char* name;
    const char* minimum;
    const char* maximum;
    float value;
    float expected;
};

class FloatRange : public testing::TestWithParam<FloatCase>
{};

TEST_P(FloatRange, ClampsASingleNumber)
{
    const InputRange range(GetParam().minimum, GetParam().maximum);

    EXPECT_EQ(clamped(range, Float1{{GetParam().value}}), Float1{{GetParam().expected}});
}

TEST_P(FloatRange, ClampsTheLastOfFourWithOneBoundForAll)
{
    const InputRange range(GetParam().minimum, GetParam().maximum);

    EXPECT_EQ(clamped(range, Float4{{0, 0, 0, GetParam().value}})[3], GetParam().expected);
}

TEST_P(FloatRange, ClampsANumberThatIsNoVector)
{
    const InputRange range(GetParam().minimum, GetParam().maximum);

    EXPECT_EQ(clamped(range, GetParam().value), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, FloatRange,
    testing::Values(
        FloatCase{"Within", "0", "1", 0.5F, 0.5F}, FloatCase{"Below", "0", "1", -3, 0},
        FloatCase{"Above", "0", "1", 3, 1}, FloatCase{"AtTheLowerBound", "0", "1", 0, 0},
        FloatCase{"AtTheUpperBound", "0", "1", 1, 1}, FloatCase{"NoBounds", "", "", 1e30F, 1e30F},
        FloatCase{"NoLowerBound", "", "1", -1e30F, -1e30F},
        FloatCase{"NoUpperBound", "0", "", 1e30F, 1e30F},
        FloatCase{"BlanksAreNoBound", "  ", " ", 7, 7},
        FloatCase{"SeparatorsAreNoBound", ",;", ";", 7, 7},
        FloatCase{"WordIsNoBound", "0", "none", 7, 7},
        FloatCase{"NumberAndWordIsNoBound", "0", "1 x", 7, 7},
        FloatCase{"NumberWithUnitIsNoBound", "0", "1px", 7, 7},
        FloatCase{"HexadecimalIsNoBound", "0", "0x1", 7, 7},
        FloatCase{"DecimalCommaIsNoBound", "0", "0,5", 7, 7},
        FloatCase{"TwoNumbersAreNoBound", "0", "1 2", 7, 7},
        FloatCase{"BlanksAround", " 0 ", "\t1\n", 7, 1},
        FloatCase{"TrailingSeparator", "0;", "1,", 7, 1}, FloatCase{"Signed", "-2", "+1", -7, -2},
        FloatCase{"Exponent", "-1e1", "2.5E0", 7, 2.5F}, FloatCase{"Crossed", "5", "1", 3, 1},
        FloatCase{"CrossedAndBelow", "5", "1", 0, 1}, FloatCase{"CrossedAndAbove", "5", "1", 9, 1},
        FloatCase{"NanBoundsNothing", "nan", "nan", 7, 7},
        FloatCase{"NanBesidesABound", "nan", "1", 7, 1},
        FloatCase{"Infinities", "-inf", "inf", 7, 7},
        FloatCase{"CrossedInfinities", "inf", "-inf", 7, -Greatest},
        FloatCase{"InfiniteMinimum", "inf", "", 7, Greatest},
        FloatCase{"InfiniteMaximum", "", "-inf", 7, -Greatest},
        FloatCase{"BeyondAllFloats", "-1e300", "1e300", Greatest, Greatest},
        FloatCase{"AllBelowBounds", "1e300", "", 7, Greatest},
        FloatCase{"AllAboveBounds", "", "-1e300", 7, -Greatest},
        FloatCase{"BeyondAllDoubles", "1e999", "-1e999", 7, 7},
        FloatCase{"InfiniteValue", "-1", "1", Infinite, 1}, FloatCase{"Tiny", "1e-300", "", -1, 0}),
    caseName<FloatCase>);

struct IntCase
{
    const char* name;
    const char* minimum;
    const char* maximum;
    int value;
    int expected;
};

class IntRange : public testing::TestWithParam<IntCase>
{};

TEST_P(IntRange, ClampsASingleNumber)
{
    const InputRange range(GetParam().minimum, GetParam().maximum);

    EXPECT_EQ(clamped(range, Int1{{GetParam().value}}), Int1{{GetParam().expected}});
}

TEST_P(IntRange, ClampsTheLastOfThreeWithOneBoundForAll)
{
    const InputRange range(GetParam().minimum, GetParam().maximum);

    EXPECT_EQ(clamped(range, Int3{{0, 0, GetParam().value}})[2], GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, IntRange,
    testing::Values(IntCase{"Within", "0", "10", 5, 5}, IntCase{"Below", "0", "10", -5, 0},
                    IntCase{"Above", "0", "10", 15, 10},
                    IntCase{"FractionBelow", "0.5", "10", 0, 1},
                    IntCase{"FractionAbove", "0", "9.9", 10, 9},
                    IntCase{"NegativeFractions", "-1.5", "-0.5", -2, -1},
                    IntCase{"NegativeFractionAbove", "-9", "-0.5", 0, -1},
                    IntCase{"NoIntegerWithin", "1.2", "1.8", 5, 1},
                    IntCase{"Crossed", "5", "1", 3, 1},
                    IntCase{"HugeBounds", "-1e300", "1e300", INT_MAX, INT_MAX},
                    IntCase{"AllBelowBounds", "1e300", "", 0, INT_MAX},
                    IntCase{"AllAboveBounds", "", "-1e300", 0, INT_MIN},
                    IntCase{"Infinities", "-inf", "inf", INT_MIN, INT_MIN},
                    IntCase{"CrossedInfinities", "inf", "-inf", 0, INT_MIN},
                    IntCase{"NanBoundsNothing", "nan", "nan", 7, 7},
                    IntCase{"ExactLimits", "-2147483648", "2147483647", INT_MIN, INT_MIN},
                    IntCase{"LimitAsLowerBound", "2147483647", "", 0, INT_MAX}),
    caseName<IntCase>);

TEST(InputRange, HasABoundForEachComponent)
{
    const InputRange range("0 1 2", "10;11;12");

    EXPECT_EQ(clamped(range, Float3{{-5, -5, -5}}), (Float3{{0, 1, 2}}));
    EXPECT_EQ(clamped(range, Float3{{50, 50, 50}}), (Float3{{10, 11, 12}}));
    EXPECT_EQ(clamped(range, Int3{{5, 0, 50}}), (Int3{{5, 1, 12}}));
}

TEST(InputRange, TakesAnyMixtureOfSeparators)
{
    EXPECT_EQ(clamped(InputRange("1, 2;3\t4", ""), Float4{}), (Float4{{1, 2, 3, 4}}));
}

TEST(InputRange, TakesOneOfEachKindOfBound)
{
    EXPECT_EQ(clamped(InputRange("0", "1 2"), Float2{{-1, 9}}), (Float2{{0, 2}}));
}

TEST(InputRange, IgnoresListsOfAnotherLength)
{
    const InputRange range("1 1", "2 2 2 2");

    EXPECT_EQ(clamped(range, Float3{{0, 5, 9}}), (Float3{{0, 5, 9}}));
    EXPECT_EQ(clamped(range, Float1{{0}}), Float1{{0}});
}

TEST(InputRange, NanInAListLeavesOneComponentFree)
{
    EXPECT_EQ(clamped(InputRange("", "1 nan"), Float2{{9, 9}}), (Float2{{1, 9}}));
}

TEST(InputRange, NanAsAValueStaysAsItIs)
{
    const InputRange range("0", "1");

    const auto value = clamped(range, Float2{{std::nanf(""), 5}});

    EXPECT_TRUE(std::isnan(value[0]));
    EXPECT_EQ(value[1], 1);
}

TEST(InputRange, ClampsUnsignedNumbers)
{
    EXPECT_EQ(clamped(InputRange("-3", "10"), UInt{0}), 0u);
    EXPECT_EQ(clamped(InputRange("-3", "10"), UInt{4294967295u}), 10u);
    EXPECT_EQ(clamped(InputRange("5000000000", ""), UInt{1}), 4294967295u);
    EXPECT_EQ(clamped(InputRange("", "-1"), UInt{1}), 0u);
}

TEST(InputRange, ClampsEveryShapeOfNumbers)
{
    const InputRange range("1", "2");

    EXPECT_EQ(clamped(range, 0), 1);
    EXPECT_EQ(clamped(range, Int2{{0, 3}}), (Int2{{1, 2}}));
    EXPECT_EQ(clamped(range, Int4{{0, 1, 2, 3}}), (Int4{{1, 1, 2, 2}}));
    EXPECT_EQ(clamped(range, Float2{{0, 3}}), (Float2{{1, 2}}));
}

TEST(InputRange, LeavesBooleansTextsAndNothingAlone)
{
    const InputRange range("5", "6");

    EXPECT_EQ(clamped(range, true), true);
    EXPECT_EQ(clamped(range, false), false);
    EXPECT_EQ(clamped(range, std::string("1")), "1");
    EXPECT_TRUE(range.clamped(boost::any()).empty());
}

TEST(InputRange, WithoutBoundsChangesNothing)
{
    EXPECT_EQ(clamped(InputRange(), Int1{{INT_MIN}}), Int1{{INT_MIN}});
}

// From the options of an input's widget.

using Option = std::pair<std::string, std::string>;

std::string anInputWith(const std::vector<Option>& options)
{
    std::string items;
    for (const auto& [name, value] : options)
        items += "<option><name v=\"" + name + "\"/><value v=\"" + escaped(value) + "\"/></option>";
    return replaced(anInput("x", 11, 256), "<options/>", GraphText::list("options", items));
}

struct OptionCase
{
    const char* name;
    std::vector<Option> options;
    float expected; // for 100
};

class InputRangeOfAWidget : public testing::TestWithParam<OptionCase>
{};

TEST_P(InputRangeOfAWidget, IsReadFromItsOptions)
{
    GraphText graph;
    graph.inputs = anInputWith(GetParam().options);
    const auto package = packageFrom(aPackage().containing(graph.text()));

    const InputRange range = InputRange::of(graphIn(*package)->paraminputs().at(0));

    EXPECT_EQ(clamped(range, Float1{{100}}), Float1{{GetParam().expected}});
}

INSTANTIATE_TEST_SUITE_P(
    Options, InputRangeOfAWidget,
    testing::Values(OptionCase{"None", {}, 100}, OptionCase{"Max", {{"max", "7"}}, 7},
                    OptionCase{"MinAndMax", {{"min", "1"}, {"max", "7"}}, 7},
                    OptionCase{"Min", {{"min", "200"}}, 200},
                    OptionCase{"ClampIsOff", {{"clamp", "0"}, {"max", "7"}}, 7},
                    OptionCase{"ClampIsOn", {{"max", "7"}, {"clamp", "1"}}, 7},
                    OptionCase{"FirstOfTwo", {{"max", "7"}, {"max", "9"}}, 7},
                    OptionCase{"FirstOfTwoIsEmpty", {{"max", ""}, {"max", "9"}}, 100},
                    OptionCase{"Unreadable", {{"max", "<&>"}}, 100},
                    OptionCase{"NamesAreExact", {{"Max", "7"}, {"maximum", "8"}}, 100}),
    caseName<OptionCase>);

} // namespace

#include "data/attribute.h"

#include "data/defaultvaluebinder.h"
#include "data/metabinder.h"
#include "support/shelfcases.h"
#include "support/shelfvalue.h"
#include <cmath>
#include <limits>

namespace {

using namespace Orv::Data;
using namespace std::string_view_literals;
using namespace TestDocument;
using TestSupport::caseName;

struct SevenDefault_
{
    static constexpr auto value = 7u;
};
struct OneDefault_
{
    static constexpr auto value = 1.0f;
};
struct ZlibDefault_
{
    static constexpr auto value = "zlib";
};
template <class T, class Tag>
using ValueWithDefault = DefaultValueBinder<MetaBinder<Attribute<T>, ValueMeta_>, Tag>;

constexpr float Nan = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinity = std::numeric_limits<float>::infinity();

template <class T>
bool isModifiedWith(const T& value)
{
    Value<T> attribute;
    attribute.assign(value);
    return attribute.isModified();
}

// --- unsigned int

struct UIntCase
{
    const char* name;
    std::string_view text;
    UInt value;
};
class AttributeUIntText : public testing::TestWithParam<UIntCase>
{};
TEST_P(AttributeUIntText, IsRead)
{
    EXPECT_EQ(valueFromString<UInt>(GetParam().text), GetParam().value);
}
INSTANTIATE_TEST_SUITE_P(Forms, AttributeUIntText,
                         testing::Values(UIntCase{"Zero", "0", 0}, UIntCase{"OneDigit", "7", 7},
                                         UIntCase{"Plus", "+7", 7},
                                         UIntCase{"MinusNegatesModulo", "-1", 4294967295u},
                                         UIntCase{"MinusZero", "-0", 0},
                                         UIntCase{"MinusLargest", "-4294967295", 1},
                                         UIntCase{"LeadingZeros", "0000000000000012", 12},
                                         UIntCase{"NineDigits", "999999999", 999999999u},
                                         UIntCase{"TenDigits", "1000000000", 1000000000u},
                                         UIntCase{"AboveSigned", "2147483648", 2147483648u},
                                         UIntCase{"Largest", "4294967295", 4294967295u}),
                         caseName<UIntCase>);

struct TextCase
{
    const char* name;
    std::string_view text;
};
class AttributeUIntBadText : public testing::TestWithParam<TextCase>
{};
TEST_P(AttributeUIntBadText, IsRefused)
{
    EXPECT_FALSE(parses<UInt>(GetParam().text));
}
INSTANTIATE_TEST_SUITE_P(
    Forms, AttributeUIntBadText,
    testing::Values(TextCase{"Empty", ""}, TextCase{"Overflow", "4294967296"},
                    TextCase{"NegativeOverflow", "-4294967296"},
                    TextCase{"FarOverflow", "99999999999999999999"}, TextCase{"LeadingBlank", " 1"},
                    TextCase{"TrailingBlank", "1 "}, TextCase{"Plus", "+"}, TextCase{"Minus", "-"},
                    TextCase{"TwoSigns", "--1"}, TextCase{"SignBehind", "1-"},
                    TextCase{"Hexadecimal", "0x10"}, TextCase{"Fraction", "1.0"},
                    TextCase{"Exponent", "1e3"}, TextCase{"Grouping", "1,000"},
                    TextCase{"Word", "one"}, TextCase{"ZeroByte", "1\0"sv},
                    TextCase{"LineEnd", "1\n"}, TextCase{"OtherDigits", "\xD9\xA1"}),
    caseName<TextCase>);

TEST(AttributeUInt, IsWrittenWithoutSignOrGrouping)
{
    EXPECT_EQ(textOf<UInt>(4294967295u), "4294967295");
}

TEST(AttributeUInt, ZeroIsWrittenAsOneDigit)
{
    EXPECT_EQ(textOf<UInt>(0), "0");
}

TEST(AttributeUInt, IsZeroAtFirst)
{
    EXPECT_EQ(Value<UInt>().get(), 0u);
}

TEST(AttributeUInt, IsNotModifiedAtFirst)
{
    EXPECT_FALSE(Value<UInt>().isModified());
}

TEST(AttributeUInt, IsModifiedByAnotherValue)
{
    EXPECT_TRUE(isModifiedWith<UInt>(1));
}

// --- bool

struct BoolCase
{
    const char* name;
    std::string_view text;
    bool value;
};
class AttributeBoolText : public testing::TestWithParam<BoolCase>
{};
TEST_P(AttributeBoolText, IsRead)
{
    EXPECT_EQ(valueFromString<bool>(GetParam().text), GetParam().value);
}
INSTANTIATE_TEST_SUITE_P(Forms, AttributeBoolText,
                         testing::Values(BoolCase{"Zero", "0", false}, BoolCase{"One", "1", true},
                                         BoolCase{"PlusZero", "+0", false},
                                         BoolCase{"PlusOne", "+1", true},
                                         BoolCase{"MinusZero", "-0", false}),
                         caseName<BoolCase>);

class AttributeBoolBadText : public testing::TestWithParam<TextCase>
{};
TEST_P(AttributeBoolBadText, IsRefused)
{
    EXPECT_FALSE(parses<bool>(GetParam().text));
}
INSTANTIATE_TEST_SUITE_P(Forms, AttributeBoolBadText,
                         testing::Values(TextCase{"Empty", ""}, TextCase{"True", "true"},
                                         TextCase{"False", "false"}, TextCase{"MinusOne", "-1"},
                                         TextCase{"Two", "2"}, TextCase{"TwoZeros", "00"},
                                         TextCase{"LeadingZero", "01"},
                                         TextCase{"LeadingBlank", " 1"},
                                         TextCase{"TrailingBlank", "1 "}, TextCase{"Plus", "+"},
                                         TextCase{"ZeroByte", "\0"sv}, TextCase{"Fraction", "1.0"}),
                         caseName<TextCase>);

TEST(AttributeBool, TrueIsWrittenAsOne)
{
    EXPECT_EQ(textOf(true), "1");
}

TEST(AttributeBool, FalseIsWrittenAsZero)
{
    EXPECT_EQ(textOf(false), "0");
}

TEST(AttributeBool, IsModifiedByTrue)
{
    EXPECT_TRUE(isModifiedWith(true));
}

TEST(AttributeBool, IsNotModifiedByFalse)
{
    EXPECT_FALSE(isModifiedWith(false));
}

// --- std::string

class AttributeTextText : public testing::TestWithParam<TextCase>
{};
TEST_P(AttributeTextText, IsTakenWhole)
{
    EXPECT_EQ(valueFromString<Text>(GetParam().text), GetParam().text);
}
TEST_P(AttributeTextText, IsWrittenAsItIs)
{
    EXPECT_EQ(textOf(Text(GetParam().text)), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Forms, AttributeTextText,
    testing::Values(TextCase{"Empty", ""}, TextCase{"Word", "oak"}, TextCase{"OneBlank", " "},
                    TextCase{"BlanksAround", "  oak  "}, TextCase{"BlanksInside", "old  oak"},
                    TextCase{"LineEnds", "a\r\nb\tc"}, TextCase{"HighBytes", "\xE9\xFF"},
                    TextCase{"ZeroByte", "a\0b"sv}),
    caseName<TextCase>);

TEST(AttributeText, IsEmptyAtFirst)
{
    EXPECT_EQ(Value<Text>().get(), "");
}

TEST(AttributeText, IsModifiedByAnotherText)
{
    EXPECT_TRUE(isModifiedWith<Text>(" "));
}

TEST(AttributeText, IsNotModifiedByTheEmptyText)
{
    EXPECT_FALSE(isModifiedWith<Text>(""));
}

TEST(AttributeText, IsNotModifiedByItsDefault)
{
    EXPECT_FALSE((ValueWithDefault<Text, ZlibDefault_>().isModified()));
}

// --- float

struct FloatCase
{
    const char* name;
    std::string_view text;
    float value;
};
class AttributeFloatText : public testing::TestWithParam<FloatCase>
{};
TEST_P(AttributeFloatText, IsRead)
{
    EXPECT_EQ(bitsOf(valueFromString<float>(GetParam().text)), bitsOf(GetParam().value));
}
INSTANTIATE_TEST_SUITE_P(
    Forms, AttributeFloatText,
    testing::Values(
        FloatCase{"Zero", "0", 0.0f}, FloatCase{"MinusZero", "-0", -0.0f},
        FloatCase{"Whole", "12", 12.0f}, FloatCase{"Plus", "+1.5", 1.5f},
        FloatCase{"Minus", "-1.5", -1.5f}, FloatCase{"NoWholePart", ".5", 0.5f},
        FloatCase{"NoFraction", "1.", 1.0f}, FloatCase{"SmallExponent", "1e3", 1000.0f},
        FloatCase{"LargeExponent", "1E3", 1000.0f}, FloatCase{"PlusExponent", "1e+3", 1000.0f},
        FloatCase{"MinusExponent", "25e-2", 0.25f}, FloatCase{"Rounded", "0.1", 0.1f},
        FloatCase{"ManyDigits", "0.10000000149011611938476562500000000000", 0.1f},
        FloatCase{"Largest", "3.40282347e+38", std::numeric_limits<float>::max()},
        FloatCase{"Smallest", "1.40129846e-45", std::numeric_limits<float>::denorm_min()},
        FloatCase{"BelowSmallest", "1e-60", 0.0f}, FloatCase{"SmallInf", "inf", Infinity},
        FloatCase{"LargeInf", "INF", Infinity}, FloatCase{"SmallInfinity", "infinity", Infinity},
        FloatCase{"LargeInfinity", "INFINITY", Infinity}, FloatCase{"PlusInf", "+inf", Infinity},
        FloatCase{"MinusInf", "-inf", -Infinity}),
    caseName<FloatCase>);

class AttributeFloatNanText : public testing::TestWithParam<TextCase>
{};
TEST_P(AttributeFloatNanText, IsRead)
{
    EXPECT_TRUE(std::isnan(valueFromString<float>(GetParam().text)));
}
INSTANTIATE_TEST_SUITE_P(Forms, AttributeFloatNanText,
                         testing::Values(TextCase{"Small", "nan"}, TextCase{"Large", "NAN"},
                                         TextCase{"Plus", "+nan"}, TextCase{"Minus", "-nan"}),
                         caseName<TextCase>);

class AttributeFloatBadText : public testing::TestWithParam<TextCase>
{};
TEST_P(AttributeFloatBadText, IsRefused)
{
    EXPECT_FALSE(parses<float>(GetParam().text));
}
INSTANTIATE_TEST_SUITE_P(
    Forms, AttributeFloatBadText,
    testing::Values(TextCase{"Empty", ""}, TextCase{"LeadingBlank", " 1"},
                    TextCase{"TrailingBlank", "1 "}, TextCase{"DecimalComma", "1,5"},
                    TextCase{"TwoPoints", "1.5.5"}, TextCase{"Point", "."}, TextCase{"Plus", "+"},
                    TextCase{"TwoSigns", "--1"}, TextCase{"OpenExponent", "1e"},
                    TextCase{"OpenSignedExponent", "1e+"}, TextCase{"ExponentAlone", "e3"},
                    TextCase{"Hexadecimal", "0x1p3"}, TextCase{"Suffix", "1f"},
                    TextCase{"Overflow", "1e39"}, TextCase{"TwoNumbers", "1 2"},
                    TextCase{"PartOfInfinity", "infi"}, TextCase{"BehindNan", "nanx"},
                    TextCase{"ZeroByte", "1\0"sv}),
    caseName<TextCase>);

struct FloatTextCase
{
    const char* name;
    float value;
    const char* text;
};
class AttributeFloatWritten : public testing::TestWithParam<FloatTextCase>
{};
TEST_P(AttributeFloatWritten, HasNineDigits)
{
    EXPECT_EQ(textOf(GetParam().value), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Values, AttributeFloatWritten,
    testing::Values(FloatTextCase{"Zero", 0.0f, "0"}, FloatTextCase{"MinusZero", -0.0f, "-0"},
                    FloatTextCase{"Whole", 100.0f, "100"}, FloatTextCase{"Half", 0.5f, "0.5"},
                    FloatTextCase{"Tenth", 0.1f, "0.100000001"},
                    FloatTextCase{"Third", 1.0f / 3.0f, "0.333333343"},
                    FloatTextCase{"TenDigits", 1234567890.0f, "1.23456794e+09"},
                    FloatTextCase{"PowerOfTen", 1e10f, "1e+10"},
                    FloatTextCase{"Small", 0.00001f, "9.99999975e-06"},
                    FloatTextCase{"Largest", std::numeric_limits<float>::max(), "3.40282347e+38"},
                    FloatTextCase{"Smallest", std::numeric_limits<float>::denorm_min(),
                                  "1.40129846e-45"},
                    FloatTextCase{"Nan", Nan, "nan"}, FloatTextCase{"MinusNan", -Nan, "-nan"},
                    FloatTextCase{"Inf", Infinity, "inf"},
                    FloatTextCase{"MinusInf", -Infinity, "-inf"}),
    caseName<FloatTextCase>);

TEST(AttributeFloat, NanIsNeverModified)
{
    EXPECT_FALSE(isModifiedWith(Nan));
}

TEST(AttributeFloat, NanIsNotModifiedBesideADefault)
{
    ValueWithDefault<float, OneDefault_> attribute;
    attribute.assign(Nan);
    EXPECT_FALSE(attribute.isModified());
}

TEST(AttributeFloat, IsModifiedByALargerValue)
{
    EXPECT_TRUE(isModifiedWith(std::numeric_limits<float>::denorm_min()));
}

TEST(AttributeFloat, IsModifiedByASmallerValue)
{
    EXPECT_TRUE(isModifiedWith(-Infinity));
}

TEST(AttributeFloat, IsNotModifiedByMinusZero)
{
    EXPECT_FALSE(isModifiedWith(-0.0f));
}

// --- Vec<float, N>

struct VecCase
{
    const char* name;
    std::string_view text;
    bool isAccepted;
};
class AttributeFloat3Text : public testing::TestWithParam<VecCase>
{};
TEST_P(AttributeFloat3Text, IsAcceptedOrRefused)
{
    EXPECT_EQ(parses<Float3>(GetParam().text), GetParam().isAccepted);
}
INSTANTIATE_TEST_SUITE_P(
    Forms, AttributeFloat3Text,
    testing::Values(
        VecCase{"Blanks", "1 2 3", true}, VecCase{"Commas", "1,2,3", true},
        VecCase{"MixedSeparators", "1 2,3", true}, VecCase{"AnySeparator", "1x2;3", true},
        VecCase{"LineEnds", "1\n2\t3", true}, VecCase{"Fractions", "1.5 -2.25 .5", true},
        VecCase{"Exponents", "1e3 2E-3 3e+1", true}, VecCase{"PlusSigns", "+1 +2 +3", true},
        VecCase{"OneTrailingBlank", "1 2 3 ", true}, VecCase{"OneTrailingComma", "1,2,3,", true},
        VecCase{"OneTrailingCharacter", "1 2 3x", true}, VecCase{"SignAsSeparator", "1-2-3", true},
        VecCase{"TwoTrailing", "1 2 3  ", false}, VecCase{"FourElements", "1 2 3 4", false},
        VecCase{"TwoBlanks", "1  2 3", false}, VecCase{"TwoBlanksLater", "1 2  3", false},
        VecCase{"CommaAndBlank", "1, 2, 3", false}, VecCase{"TooFew", "1 2", false},
        VecCase{"TooFewAndSeparator", "1 2 ", false}, VecCase{"OneElement", "1", false},
        VecCase{"Empty", "", false}, VecCase{"LeadingBlank", " 1 2 3", false},
        VecCase{"Blank", " ", false}, VecCase{"Word", "one two three", false},
        VecCase{"Nan", "nan 0 0", false}, VecCase{"Inf", "0 0 inf", false},
        VecCase{"Overflow", "1e39 0 0", false}, VecCase{"OpenExponent", "1 2 3e", false},
        VecCase{"ZeroByteSeparates",
                "1\0"
                "2\0"
                "3"sv,
                true}),
    caseName<VecCase>);

TEST(AttributeFloat3, ReadsBlanksAndCommasAlike)
{
    EXPECT_EQ(valueFromString<Float3>("1 2 3"), valueFromString<Float3>("1,2,3"));
}

TEST(AttributeFloat3, ReadsItsElementsInOrder)
{
    EXPECT_EQ(valueFromString<Float3>("1.5 -2 3e2"), (Float3{{1.5f, -2.0f, 300.0f}}));
}

TEST(AttributeFloat3, DropsTheSignThatSeparates)
{
    EXPECT_EQ(valueFromString<Float3>("1-2-3"), (Float3{{1.0f, 2.0f, 3.0f}}));
}

TEST(AttributeFloat1, ToleratesOneTrailingCharacter)
{
    EXPECT_EQ(valueFromString<Float1>("5x"), (Float1{{5.0f}}));
}

TEST(AttributeFloat1, RefusesTwoTrailingCharacters)
{
    EXPECT_FALSE(parses<Float1>("5xx"));
}

TEST(AttributeFloat2, ReadsTwoElements)
{
    EXPECT_EQ(valueFromString<Float2>("0.25,4"), (Float2{{0.25f, 4.0f}}));
}

TEST(AttributeFloat4, ReadsFourElements)
{
    EXPECT_EQ(valueFromString<Float4>("1 2 3 4"), (Float4{{1.0f, 2.0f, 3.0f, 4.0f}}));
}

TEST(AttributeFloat4, RefusesThreeElements)
{
    EXPECT_FALSE(parses<Float4>("1 2 3"));
}

TEST(AttributeFloat1, IsWrittenWithSixDigits)
{
    EXPECT_EQ(textOf(Float1{{1.0f / 3.0f}}), "0.333333");
}

TEST(AttributeFloat2, IsWrittenWithOneBlankBetween)
{
    EXPECT_EQ(textOf(Float2{{0.1f, -2.0f}}), "0.1 -2");
}

TEST(AttributeFloat3, IsWrittenWithExponentsBeyondSixDigits)
{
    EXPECT_EQ(textOf(Float3{{1234567.0f, 0.00001f, 123456.0f}}), "1.23457e+06 1e-05 123456");
}

TEST(AttributeFloat4, IsWrittenWithWordsForNonFiniteElements)
{
    EXPECT_EQ(textOf(Float4{{Nan, Infinity, -Infinity, -0.0f}}), "nan inf -inf -0");
}

TEST(AttributeFloat2, IsModifiedByOneElement)
{
    EXPECT_TRUE(isModifiedWith(Float2{{0.0f, -1.0f}}));
}

TEST(AttributeFloat2, IsNotModifiedByZeros)
{
    EXPECT_FALSE(isModifiedWith(Float2{{0.0f, -0.0f}}));
}

TEST(AttributeFloat2, IsNotModifiedByANanElement)
{
    EXPECT_FALSE(isModifiedWith(Float2{{Nan, 0.0f}}));
}

TEST(AttributeFloat2, IsModifiedByAnElementBehindANan)
{
    EXPECT_TRUE(isModifiedWith(Float2{{Nan, 1.0f}}));
}

// --- Vec<int, N>

class AttributeInt2Text : public testing::TestWithParam<VecCase>
{};
TEST_P(AttributeInt2Text, IsAcceptedOrRefused)
{
    EXPECT_EQ(parses<Int2>(GetParam().text), GetParam().isAccepted);
}
INSTANTIATE_TEST_SUITE_P(
    Forms, AttributeInt2Text,
    testing::Values(VecCase{"Blank", "1 2", true}, VecCase{"Comma", "1,2", true},
                    VecCase{"Signs", "-1 +2", true}, VecCase{"PointSeparates", "1.2", true},
                    VecCase{"LeadingZeros", "007 010", true},
                    VecCase{"Largest", "2147483647 0", true},
                    VecCase{"Smallest", "-2147483648 0", true},
                    VecCase{"OneTrailing", "1 2 ", true}, VecCase{"LetterSeparates", "0x10", true},
                    VecCase{"TwoTrailing", "1 2  ", false}, VecCase{"TwoBlanks", "1  2", false},
                    VecCase{"TooFew", "1", false}, VecCase{"TooMany", "1 2 3", false},
                    VecCase{"LeadingBlank", " 1 2", false}, VecCase{"Empty", "", false},
                    VecCase{"Overflow", "2147483648 0", false},
                    VecCase{"NegativeOverflow", "0 -2147483649", false},
                    VecCase{"Fractions", "1.5 2.5", false}, VecCase{"MinusAlone", "- 1", false}),
    caseName<VecCase>);

TEST(AttributeInt1, ToleratesOneTrailingCharacter)
{
    EXPECT_EQ(valueFromString<Int1>("5x"), (Int1{{5}}));
}

TEST(AttributeInt2, ReadsAPointAsSeparator)
{
    EXPECT_EQ(valueFromString<Int2>("1.2"), (Int2{{1, 2}}));
}

TEST(AttributeInt2, ReadsLeadingZerosAsDecimal)
{
    EXPECT_EQ(valueFromString<Int2>("007 010"), (Int2{{7, 10}}));
}

TEST(AttributeInt3, ReadsThreeElements)
{
    EXPECT_EQ(valueFromString<Int3>("1 -2 3"), (Int3{{1, -2, 3}}));
}

TEST(AttributeInt4, ReadsFourElements)
{
    EXPECT_EQ(valueFromString<Int4>("1,2,3,4"), (Int4{{1, 2, 3, 4}}));
}

TEST(AttributeInt1, IsWrittenAsOneNumber)
{
    EXPECT_EQ(textOf(Int1{{-5}}), "-5");
}

TEST(AttributeInt4, IsWrittenWithOneBlankBetween)
{
    EXPECT_EQ(textOf(Int4{{-2147483647 - 1, 2147483647, 0, 1000}}),
              "-2147483648 2147483647 0 1000");
}

TEST(AttributeInt2, IsModifiedByOneElement)
{
    EXPECT_TRUE(isModifiedWith(Int2{{0, 1}}));
}

TEST(AttributeInt2, IsNotModifiedByZeros)
{
    EXPECT_FALSE(isModifiedWith(Int2{}));
}

// --- all types

template <class T>
class AttributeOfAnyType : public testing::Test
{};
using AllTypes =
    testing::Types<UInt, bool, Text, float, Float1, Float2, Float3, Float4, Int1, Int2, Int3, Int4>;
TYPED_TEST_SUITE(AttributeOfAnyType, AllTypes, );

TYPED_TEST(AttributeOfAnyType, IsNotModifiedAtFirst)
{
    EXPECT_FALSE(Value<TypeParam>().isModified());
}

TYPED_TEST(AttributeOfAnyType, HasTheEmptyValueOfItsTypeAtFirst)
{
    EXPECT_EQ(Value<TypeParam>().get(), TypeParam{});
}

TYPED_TEST(AttributeOfAnyType, ReadsWhatItWrites)
{
    EXPECT_EQ(valueFromString<TypeParam>(textOf(TypeParam{})), TypeParam{});
}

TYPED_TEST(AttributeOfAnyType, AppendsItsTextBehindWhatIsThere)
{
    std::string out = "before ";
    Value<TypeParam>().appendText(out);
    EXPECT_EQ(out, "before " + Value<TypeParam>().toString());
}

TYPED_TEST(AttributeOfAnyType, IsAnAttributeByKind)
{
    EXPECT_EQ(Value<TypeParam>().kind(), ObjectKind::Attribute);
}

template <class T>
class AttributeOfNumbers : public testing::Test
{};
using NumberTypes =
    testing::Types<UInt, bool, float, Float1, Float2, Float3, Float4, Int1, Int2, Int3, Int4>;
TYPED_TEST_SUITE(AttributeOfNumbers, NumberTypes, );

TYPED_TEST(AttributeOfNumbers, ThrowsABadCastForBadText)
{
    Value<TypeParam> attribute;
    EXPECT_THROW(attribute.fromString("oak"), std::bad_cast);
}

// Holds ones, and has been given a text that every type refuses, though it begins well.
template <class T>
class AttributeGivenBadText : public testing::Test
{
protected:
    AttributeGivenBadText()
    {
        m_attribute.fromString(OnesFor());
        EXPECT_THROW(m_attribute.fromString("0 0 0 0 0 x"), boost::bad_lexical_cast);
    }
    static std::string OnesFor()
    {
        std::string ones = "1";
        for (std::size_t i = 1; i < sizeof(T) / 4 && sizeof(T) > 4; ++i)
            ones += " 1";
        return ones;
    }
    Value<T> m_attribute;
};
TYPED_TEST_SUITE(AttributeGivenBadText, NumberTypes, );

TYPED_TEST(AttributeGivenBadText, KeepsItsValue)
{
    EXPECT_EQ(this->m_attribute.toString(), this->OnesFor());
}

TEST(AttributeDefault, IsHeldFromTheStart)
{
    EXPECT_EQ((ValueWithDefault<UInt, SevenDefault_>().get()), 7u);
}

TEST(AttributeDefault, DoesNotCountAsModified)
{
    EXPECT_FALSE((ValueWithDefault<UInt, SevenDefault_>().isModified()));
}

TEST(AttributeDefault, MakesTheEmptyValueAModification)
{
    ValueWithDefault<UInt, SevenDefault_> attribute;
    attribute.assign(0);
    EXPECT_TRUE(attribute.isModified());
}

TEST(AttributeDefault, ComesBackWhenItIsReadAgain)
{
    ValueWithDefault<UInt, SevenDefault_> attribute;
    attribute.assign(0);
    attribute.fromString("7");
    EXPECT_FALSE(attribute.isModified());
}

} // namespace

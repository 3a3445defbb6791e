// The fast conversions of attributes, held against the ones that define the format.
#include "data/attribute.h"

#include "support/decimalcommalocale.h"
#include "support/shelfcases.h"
#include "support/shelfvalue.h"
#include <array>
#include <cmath>
#include <iomanip>
#include <locale>
#include <optional>
#include <sstream>

namespace {

using namespace Orv::Data;
using namespace TestDocument;
using namespace std::string_view_literals;
using TestSupport::pick;
using TestSupport::seededRandom;

// --- the locale of the process

class AttributeUnderDecimalComma : public testing::Test
{
private:
    TestSupport::DecimalCommaLocale m_locale;
};

// As a program can set it for all streams that it makes from then on.
class AttributeUnderGlobalLocale : public testing::Test
{
private:
    struct Punctuation final : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

protected:
    void TearDown() override { std::locale::global(m_former); }

    std::locale m_former =
        std::locale::global(std::locale(std::locale::classic(), new Punctuation));
};

TEST_F(AttributeUnderGlobalLocale, FloatIsReadWithAPoint)
{
    EXPECT_EQ(valueFromString<float>("+1.5"), 1.5f);
}

TEST_F(AttributeUnderGlobalLocale, FloatWithACommaIsRefused)
{
    EXPECT_FALSE(parses<float>("+1,5"));
}

TEST_F(AttributeUnderGlobalLocale, VecIsReadWithPoints)
{
    EXPECT_EQ(valueFromString<Float2>("+1.5 2.25"), (Float2{{1.5f, 2.25f}}));
}

TEST_F(AttributeUnderGlobalLocale, UIntWithGroupingIsRefused)
{
    EXPECT_FALSE(parses<UInt>("1.000"));
}

TEST_F(AttributeUnderGlobalLocale, NumbersAreWrittenWithoutGrouping)
{
    EXPECT_EQ(textOf(UInt{1234567}), "1234567");
    EXPECT_EQ(textOf(1234567.5f), "1234567.5");
    EXPECT_EQ(textOf(Int2{{1000, 2000}}), "1000 2000");
}

TEST_F(AttributeUnderDecimalComma, FloatIsWrittenWithAPoint)
{
    EXPECT_EQ(textOf(1.5f), "1.5");
}

TEST_F(AttributeUnderDecimalComma, FloatIsReadWithAPoint)
{
    EXPECT_EQ(valueFromString<float>("1.5"), 1.5f);
}

TEST_F(AttributeUnderDecimalComma, FloatIsReadWithAPointAndExponent)
{
    EXPECT_EQ(valueFromString<float>("1.5e1"), 15.0f);
}

TEST_F(AttributeUnderDecimalComma, FloatWithACommaIsRefused)
{
    EXPECT_FALSE(parses<float>("1,5"));
}

TEST_F(AttributeUnderDecimalComma, VecIsWrittenWithPoints)
{
    EXPECT_EQ(textOf(Float2{{1.5f, 12345.5f}}), "1.5 12345.5");
}

TEST_F(AttributeUnderDecimalComma, VecIsReadWithPoints)
{
    EXPECT_EQ(valueFromString<Float2>("1.5,2.5"), (Float2{{1.5f, 2.5f}}));
}

TEST_F(AttributeUnderDecimalComma, VecIsReadWithPointsAndExponents)
{
    EXPECT_EQ(valueFromString<Float2>("1.5e1,2.5e1"), (Float2{{15.0f, 25.0f}}));
}

TEST_F(AttributeUnderDecimalComma, UIntIsWrittenWithoutGrouping)
{
    EXPECT_EQ(textOf<UInt>(1234567u), "1234567");
}

TEST_F(AttributeUnderDecimalComma, UIntWithGroupingIsRefused)
{
    EXPECT_FALSE(parses<UInt>("1.234.567"));
}

// --- the conversions that define the format, against which the fast ones are held

// What a text is read as: the bits of the elements, or nothing if it is refused.
using Reading = std::optional<std::array<std::uint32_t, 4>>;

template <class T, std::size_t N>
Reading reading(const Vec<T, N>& value)
{
    std::array<std::uint32_t, 4> bits{};
    for (std::size_t i = 0; i < N; ++i)
        bits[i] = bitsOf(value[i]);
    return bits;
}

template <class Number>
Reading reading(Number value)
{
    return std::array<std::uint32_t, 4>{bitsOf(value), 0, 0, 0};
}

// The conversion by the library's stream or cast.
template <class Number>
struct Defining
{
    static Reading read(const std::string& text)
    {
        Number value{};
        return boost::conversion::try_lexical_convert(text, value) ? reading(value) : Reading();
    }
};
template <class T, std::size_t N>
struct Defining<Vec<T, N>>
{
    static Reading read(const std::string& text)
    {
        std::istringstream stream(text);
        stream.imbue(std::locale::classic());
        stream.unsetf(std::ios::skipws);
        Vec<T, N> value;
        for (std::size_t i = 0; i < N; ++i) {
            stream >> value[i];
            if (stream.good())
                stream.get();
        }
        if (stream.fail() || stream.get() != std::char_traits<char>::eof())
            return {};
        return reading(value);
    }
};

template <class T>
Reading readByAttribute(const std::string& text)
{
    try {
        return reading(valueFromString<T>(text));
    } catch (const boost::bad_lexical_cast&) {
        return {};
    }
}

const std::array<const char*, 30> NastyNumbers = {
    "0",          "-0",         "+0",
    "1",          "-1",         "+1",
    "007",        "0.5",        ".5",
    "5.",         ".",          "-.5",
    "1e3",        "1E-3",       "1e",
    "1e+",        "1e39",       "-1e39",
    "1e-50",      "2147483647", "-2147483648",
    "2147483648", "4294967295", "4294967296",
    "999999999",  "nan",        "inf",
    "0x10",       "-",          "16777217.0000000000000000000000000000000000000001"};

float randomFloat(std::mt19937& random)
{
    const auto bits = static_cast<std::uint32_t>(random());
    float value = 0;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

std::string randomNumberText(std::mt19937& random)
{
    switch (pick(random, 0, 5)) {
    case 0:
        return NastyNumbers[pick<std::size_t>(random, 0, NastyNumbers.size() - 1)];
    case 1:
        return std::to_string(static_cast<int>(random()) >> pick(random, 0, 31));
    case 2:
        return std::to_string(random());
    case 3: {
        const float value = randomFloat(random);
        std::ostringstream stream;
        stream.precision(pick(random, 1, 20));
        stream << value;
        return stream.str();
    }
    case 4: {
        std::ostringstream stream;
        stream << std::fixed;
        stream.precision(pick(random, 0, 50));
        stream << static_cast<double>(pick(random, -100000, 100000)) /
                      std::pow(10.0, pick(random, 0, 50));
        return stream.str();
    }
    default: {
        std::string digits(pick<std::size_t>(random, 1, 60), '0');
        for (char& digit : digits)
            digit = static_cast<char>('0' + pick(random, 0, 9));
        return digits.insert(pick<std::size_t>(random, 0, digits.size()), ".");
    }
    }
}

// Mostly numbers with single separators, as files have them, some of them damaged.
std::string randomValueText(std::mt19937& random, std::size_t elements)
{
    static constexpr std::string_view Characters = "0123456789 ,.-+eExnaif\t\n\0"sv;
    std::string text;
    for (std::size_t i = 0; i < elements; ++i) {
        if (i > 0)
            text.push_back(pick(random, 0, 9) == 0 ? ';' : " ,"[pick(random, 0, 1)]);
        text += randomNumberText(random);
    }
    for (int damages = std::max(0, pick(random, -4, 3)); damages > 0; --damages) {
        const auto place = pick<std::size_t>(random, 0, text.size());
        const char c = Characters[pick<std::size_t>(random, 0, Characters.size() - 1)];
        if (pick(random, 0, 1) == 0 || place == text.size())
            text.insert(text.begin() + static_cast<std::ptrdiff_t>(place), c);
        else
            text.erase(place, 1);
    }
    return text;
}

template <class T>
constexpr std::size_t ElementCount = 1;
template <class T, std::size_t N>
constexpr std::size_t ElementCount<Vec<T, N>> = N;

// The first text that is read in two ways; nothing if there is none.
template <class T>
std::optional<std::string> firstDisagreement(std::mt19937 random, int count)
{
    for (int i = 0; i < count; ++i) {
        const std::string text = randomValueText(random, ElementCount<T>);
        if (readByAttribute<T>(text) != Defining<T>::read(text))
            return text;
    }
    return {};
}

template <class T>
class AttributeReading : public testing::Test
{};
using ReadTypes =
    testing::Types<UInt, float, Float1, Float2, Float3, Float4, Int1, Int2, Int3, Int4>;
TYPED_TEST_SUITE(AttributeReading, ReadTypes, );

TYPED_TEST(AttributeReading, AgreesWithTheConversionThatDefinesIt)
{
    EXPECT_EQ(firstDisagreement<TypeParam>(seededRandom(20070412), 50000), std::nullopt);
}

// The first float that is written in two ways; nothing if there is none.
template <class T>
std::optional<std::string> firstOtherText(std::mt19937 random, int precision)
{
    for (int i = 0; i < 100000; ++i) {
        const float value = randomFloat(random);
        std::ostringstream text; // in the classic locale, whatever that of the process is
        text.imbue(std::locale::classic());
        text << std::setprecision(precision) << static_cast<double>(value);
        if (textOf(T{value}) != text.str())
            return text.str();
    }
    return {};
}

TEST(AttributeWriting, OfAFloatAgreesWithTheFormatThatDefinesIt)
{
    EXPECT_EQ(firstOtherText<float>(seededRandom(20070413), 9), std::nullopt);
}

TEST(AttributeWriting, OfAVecElementAgreesWithTheFormatThatDefinesIt)
{
    EXPECT_EQ(firstOtherText<Float1>(seededRandom(20070414), 6), std::nullopt);
}

std::optional<float> firstChangedFloat(std::mt19937 random)
{
    for (int i = 0; i < 100000; ++i) {
        const float value = randomFloat(random);
        if (!std::isnan(value) && bitsOf(valueFromString<float>(textOf(value))) != bitsOf(value))
            return value;
    }
    return {};
}

TEST(AttributeWriting, KeepsEveryFloat)
{
    EXPECT_EQ(firstChangedFloat(seededRandom(20070415)), std::nullopt);
}

} // namespace

#include "data/identifiersuite.h"

#include "support/shelfcases.h"
#include <boost/function/function_base.hpp>
#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <gtest/gtest.h>
#include <locale>
#include <set>

using Orv::DefaultIdentifierPolicy;
using Orv::IdentifierSuite;
using TestSupport::caseName;

namespace {

const IdentifierSuite<DefaultIdentifierPolicy> suite;

bool nothingIsTaken(const std::string&)
{
    return false;
}

// Takes whatever it names.
auto isOneOf(std::set<std::string> taken)
{
    return [taken = std::move(taken)](const std::string& text) { return taken.count(text) != 0; };
}

// With its own separator and legal form.
struct DashPolicy
{
    static constexpr char Separator = '-';
    static std::string normalize(const std::string& text) { return "n" + text; }
};

// Knows one letter, beyond ASCII.
class OddLetters final : public std::ctype<char>
{
public:
    OddLetters() : std::ctype<char>(table()) {}

private:
    static const mask* table()
    {
        static mask masks[table_size];
        masks[static_cast<unsigned char>('\xe9')] = alpha;
        return masks;
    }
};

struct TextCase
{
    const char* name;
    std::string text;
    std::string expected;
};

} // namespace

class NormalizedIdentifier : public testing::TestWithParam<TextCase>
{};

TEST_P(NormalizedIdentifier, IsLegal)
{
    EXPECT_EQ(DefaultIdentifierPolicy::normalize(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, NormalizedIdentifier,
    testing::Values(TextCase{"Empty", "", ""}, TextCase{"Legal", "Wood2", "Wood2"},
                    TextCase{"BlankBetween", "a b", "a_b"},
                    TextCase{"SeparatorsAtBothEnds", "__a__", "a"},
                    TextCase{"SeparatorsInside", "a__b", "a__b"},
                    TextCase{"BlanksAtBothEnds", " a ", "a"},
                    TextCase{"AllKeptSigns", "x_[]{}-+^@=%,!x", "x_[]{}-+^@=%,!x"},
                    TextCase{"KeptSignsAtBothEnds", "-a!", "-a!"},
                    TextCase{"OtherSigns", "a.b/c\\d:e*f?g\"h<i>j|k#l&m(n)o;p~q'r`s$t",
                             "a_b_c_d_e_f_g_h_i_j_k_l_m_n_o_p_q_r_s_t"},
                    TextCase{"NothingKept", "./:", ""}, TextCase{"OnlySeparators", "____", ""},
                    TextCase{"LineEndAndTab", "a\nb\tc", "a_b_c"},
                    TextCase{"ZeroByte", std::string("a\0b", 3), "a_b"},
                    TextCase{"EightBitLetter", "caf\xe9s", "caf_s"},
                    TextCase{"EightBitAtEnd", "caf\xe9", "caf"}),
    caseName<TextCase>);

TEST(DefaultIdentifierPolicy, AsksTheGlobalLocaleWhatALetterIs)
{
    const std::locale before = std::locale::global(std::locale(std::locale(), new OddLetters));
    const std::string result = DefaultIdentifierPolicy::normalize("a\xe9");
    std::locale::global(before);
    EXPECT_EQ(result, "\xe9");
}

TEST(DefaultIdentifierPolicy, NormalizesANormalTextToItself)
{
    const std::string once = DefaultIdentifierPolicy::normalize("_ x.y z_ ");
    EXPECT_EQ(DefaultIdentifierPolicy::normalize(once), once);
}

class FirstUniqueIdentifier : public testing::TestWithParam<TextCase>
{};

TEST_P(FirstUniqueIdentifier, CarriesANumber)
{
    EXPECT_EQ(suite.makeUnique(GetParam().text, &nothingIsTaken), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, FirstUniqueIdentifier,
    testing::Values(
        TextCase{"NoNumber", "Graph", "Graph_1"},
        TextCase{"NumberBehindSeparator", "Graph_7", "Graph_7"}, TextCase{"OnlyDigits", "7", "7_1"},
        TextCase{"OnlyASeparatorAtTheEnd", "a_", "a__1"},
        TextCase{"NumberWithoutSeparator", "Graph7", "Graph7_1"},
        TextCase{"OtherCharacterBeforeTheNumber", "Graph-7", "Graph-7_1"},
        TextCase{"NumberInside", "a_7b", "a_7b_1"}, TextCase{"TwoNumbers", "a_7_8", "a_7_8"},
        TextCase{"LeadingZeros", "Graph_007", "Graph_7"}, TextCase{"Zero", "Graph_0", "Graph_0"},
        TextCase{"NoBase", "_7", "_7"}, TextCase{"TwoSeparators", "a__7", "a__7"},
        TextCase{"Empty", "", "_1"}, TextCase{"LargestNumber", "a_4294967295", "a_4294967295"}),
    caseName<TextCase>);

TEST(IdentifierSuite, CountsUpToTheFirstFreeNumber)
{
    EXPECT_EQ(suite.makeUnique("Graph", isOneOf({"Graph_1", "Graph_2", "Graph_4"})), "Graph_3");
}

TEST(IdentifierSuite, CountsUpFromTheNumberThatIsThere)
{
    EXPECT_EQ(suite.makeUnique("Graph_7", isOneOf({"Graph_7", "Graph_8"})), "Graph_9");
}

TEST(IdentifierSuite, NeverAsksForTheWantedTextItself)
{
    std::set<std::string> asked;
    suite.makeUnique("Graph", [&](const std::string& text) {
        asked.insert(text);
        return asked.size() < 3;
    });
    EXPECT_EQ(asked, (std::set<std::string>{"Graph_1", "Graph_2", "Graph_3"}));
}

TEST(IdentifierSuite, BeginsAgainAtZeroBehindTheLargestNumber)
{
    EXPECT_EQ(suite.makeUnique("a_4294967295", isOneOf({"a_4294967295"})), "a_0");
}

TEST(IdentifierSuite, RefusesANumberBeyond32Bits)
{
    EXPECT_THROW(suite.makeUnique("a_4294967296", &nothingIsTaken), boost::bad_lexical_cast);
}

TEST(IdentifierSuite, TakesLongDigitsWithoutSeparatorAsText)
{
    EXPECT_EQ(suite.makeUnique("a4294967296", &nothingIsTaken), "a4294967296_1");
}

TEST(IdentifierSuite, ThrowsForAnEmptyPredicate)
{
    EXPECT_THROW(suite.makeUnique("a", {}), boost::bad_function_call);
}

TEST(IdentifierSuite, AnswersTheSeparatorOfItsPolicy)
{
    EXPECT_EQ(suite.getSeparator(), '_');
    EXPECT_EQ(IdentifierSuite<DashPolicy>().getSeparator(), '-');
}

TEST(IdentifierSuite, UsesTheSeparatorOfItsPolicy)
{
    EXPECT_EQ(IdentifierSuite<DashPolicy>().makeUnique("a-4", isOneOf({"a-4"})), "a-5");
}

TEST(IdentifierSuite, NormalizesAsItsPolicy)
{
    EXPECT_EQ(IdentifierSuite<>::normalize(" a "), "a");
    EXPECT_EQ(IdentifierSuite<DashPolicy>::normalize("a"), "na");
}

#include "updating/oblformatupdater4510.h"

#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::OBLFormatUpdater4510 Updater;

std::string withOutput(const std::string& members)
{
    return "<graph><graphOutputs><graphoutput>" + members + "</graphoutput></graphOutputs></graph>";
}

std::string usages(const std::string& name)
{
    return R"(<usages><usage><components v="RGBA"/><name v=")" + name + R"("/></usage></usages>)";
}

// What becomes of the members of an output.
std::string members(const std::string& before)
{
    const std::string content = rewrittenContent(Updater, withOutput(before));
    const std::string frame = withOutput("");
    const std::size_t begin = frame.find("</graphoutput>");
    return content.substr(begin, content.size() - frame.size());
}

struct NumberCase
{
    const char* name;
    const char* usage; // the element
    const char* word;  // null if there is none
};

class OBLFormatUpdater4510Number : public testing::TestWithParam<NumberCase>
{
protected:
    static std::string expected()
    {
        return GetParam().word == nullptr ? R"(<uid v="1"/>)"
                                          : R"(<uid v="1"/>)" + usages(GetParam().word);
    }
};

} // namespace

TEST(OBLFormatUpdater4510, TurnsNumbersIntoLists)
{
    // An output without usage is the old form of "diffuse", also when it once had a bad number.
    expectGoldenUpdateOnce(Updater, "4510/usages");
}

TEST(OBLFormatUpdater4510, GivesAnOutputWithoutUsageTheFirst)
{
    EXPECT_EQ(members(R"(<uid v="1"/><channels v="2"/>)"),
              R"(<uid v="1"/>)" + usages("diffuse") + R"(<channels v="2"/>)");
}

TEST(OBLFormatUpdater4510, InsertsBehindTheDescriptionWhereThereIsOne)
{
    EXPECT_EQ(members(R"(<desc v="x"/><uid v="1"/><usage v="1"/>)"),
              R"(<desc v="x"/>)" + usages("opacity") + R"(<uid v="1"/>)");
}

TEST(OBLFormatUpdater4510, InsertsBeforeUsagesThatStand)
{
    EXPECT_EQ(members(R"(<uid v="1"/><usages/><usage v="1"/>)"),
              R"(<uid v="1"/>)" + usages("opacity") + "<usages/>");
}

TEST(OBLFormatUpdater4510, TakesAUsageAwayWhereItCanInsertNone)
{
    EXPECT_EQ(members(R"(<identifier v="x"/><usage v="1"/>)"), R"(<identifier v="x"/>)");
    EXPECT_EQ(members(R"(<identifier v="x"/>)"), R"(<identifier v="x"/>)");
}

TEST(OBLFormatUpdater4510, GoesByTheFirstOfSeveralUsages)
{
    EXPECT_EQ(members(R"(<uid v="1"/><usage v="1"/><usage v="2"/>)"),
              R"(<uid v="1"/>)" + usages("opacity") + R"(<usage v="2"/>)");
}

TEST(OBLFormatUpdater4510, CountsEveryOutput)
{
    const std::string content = withOutput(R"(<uid v="1"/><usage v="1"/>)") +
                                withOutput(R"(<uid v="2"/><usage v="999"/>)") + "<group><content>" +
                                withOutput("") + "</content></group>";
    EXPECT_EQ(updateBuffer(Updater, aBarePackage(content)).log, "ENTRY_CHANGED_3\n");
}

TEST(OBLFormatUpdater4510, LeavesAFileWithoutOutputsAsItIs)
{
    const std::string package =
        "<package ><content><graph><graphOutputs/></graph></content></package>";
    EXPECT_EQ(updateBuffer(Updater, package).bytes, package);
}

TEST_P(OBLFormatUpdater4510Number, StandsForTheWordOfTheTable)
{
    EXPECT_EQ(members(std::string(R"(<uid v="1"/>)") + GetParam().usage), expected());
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, OBLFormatUpdater4510Number,
    testing::Values(NumberCase{"First", R"(<usage v="0"/>)", "diffuse"},
                    NumberCase{"Fifth", R"(<usage v="4"/>)", "ambientOcclusion"},
                    NumberCase{"Sixteenth", R"(<usage v="15"/>)", "anisotropyLevel"},
                    NumberCase{"Ior", R"(<usage v="21"/>)", "IOR"},
                    NumberCase{"FirstMarker", R"(<usage v="26"/>)", "$matte"},
                    NumberCase{"Last", R"(<usage v="28"/>)", "$userInput"},
                    NumberCase{"LeadingZeros", R"(<usage v="0006"/>)", "normal"},
                    NumberCase{"OneTooMany", R"(<usage v="29"/>)", nullptr},
                    NumberCase{"FarTooMany", R"(<usage v="999"/>)", nullptr},
                    NumberCase{"Largest", R"(<usage v="4294967295"/>)", nullptr},
                    NumberCase{"Above32Bits", R"(<usage v="4294967296"/>)", nullptr},
                    NumberCase{"Above64Bits", R"(<usage v="18446744073709551617"/>)", nullptr},
                    NumberCase{"Negative", R"(<usage v="-1"/>)", nullptr},
                    NumberCase{"NegativeZero", R"(<usage v="-0"/>)", nullptr},
                    NumberCase{"Plus", R"(<usage v="+1"/>)", nullptr},
                    NumberCase{"Blank", R"(<usage v=" 1"/>)", nullptr},
                    NumberCase{"Hexadecimal", R"(<usage v="0x1"/>)", nullptr},
                    NumberCase{"Fraction", R"(<usage v="1.0"/>)", nullptr},
                    NumberCase{"Word", R"(<usage v="diffuse"/>)", nullptr},
                    NumberCase{"Empty", R"(<usage v=""/>)", nullptr},
                    NumberCase{"WithoutValue", R"(<usage/>)", nullptr}),
    caseName<NumberCase>);

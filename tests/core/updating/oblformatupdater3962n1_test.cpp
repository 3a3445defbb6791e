#include "updating/oblformatupdater3962n1.h"

#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::OBLFormatUpdater3962n1 Updater;

std::string withOption(const std::string& name)
{
    return "<graph><paraminputs><paraminput><defaultWidget><options><option>" + name +
           "</option></options></defaultWidget></paraminput></paraminputs></graph>";
}

struct OptionCase
{
    const char* name;
    const char* before;
    const char* after;
};

class OBLFormatUpdater3962n1Option : public testing::TestWithParam<OptionCase>
{};

} // namespace

TEST(OBLFormatUpdater3962n1, RenamesOptionsOfWidgets)
{
    expectGoldenUpdate(Updater, "3962n1/widgetoptions");
}

TEST(OBLFormatUpdater3962n1, LeavesAFileWithoutInputsAsItIs)
{
    const std::string package = "<package >\n<content><graph/></content></package>";
    EXPECT_EQ(updateBuffer(Updater, package).bytes, package);
}

TEST(OBLFormatUpdater3962n1, CountsRenamedOptionsOnly)
{
    const std::string content = withOption(R"(<name v="slidermin"/>)") +
                                withOption(R"(<name v="step"/>)") + withOption("<name/>") +
                                withOption(R"(<name v="slidermax"/>)");
    EXPECT_EQ(updateBuffer(Updater, aBarePackage(content)).log, "ENTRY_CHANGED_2\n");
}

TEST(OBLFormatUpdater3962n1, FindsInputsAtAnyDepth)
{
    const std::string before = "<group><content><graph><content>" +
                               withOption(R"(<name v="slidermin"/>)") +
                               "</content></graph></content></group>";
    const std::string after = "<group><content><graph><content>" +
                              withOption(R"(<name v="min"/>)") +
                              "</content></graph></content></group>";
    EXPECT_EQ(rewrittenContent(Updater, before), after);
}

TEST(OBLFormatUpdater3962n1, LeavesOptionsOutsideTheContentAlone)
{
    const std::string package =
        "<package>" + withOption(R"(<name v="slidermin"/>)") + "<content/></package>";
    EXPECT_EQ(rewritten(Updater, package), package);
}

TEST_P(OBLFormatUpdater3962n1Option, IsRenamedByTheTable)
{
    EXPECT_EQ(rewrittenContent(Updater, withOption(GetParam().before)),
              withOption(GetParam().after));
}

INSTANTIATE_TEST_SUITE_P(
    Names, OBLFormatUpdater3962n1Option,
    testing::Values(OptionCase{"Minimum", R"(<name v="slidermin"/>)", R"(<name v="min"/>)"},
                    OptionCase{"Maximum", R"(<name v="slidermax"/>)", R"(<name v="max"/>)"},
                    OptionCase{"Clamp", R"(<name v="clampvalues"/>)", R"(<name v="clamp"/>)"},
                    OptionCase{"Other", R"(<name v="step"/>)", R"(<name v="step"/>)"},
                    OptionCase{"OtherCase", R"(<name v="sliderMin"/>)", R"(<name v="sliderMin"/>)"},
                    OptionCase{"Longer", R"(<name v="slidermin "/>)", R"(<name v="slidermin "/>)"},
                    OptionCase{"Empty", R"(<name v=""/>)", R"(<name v=""/>)"},
                    OptionCase{"WithoutValue", R"(<name/>)", R"(<name/>)"},
                    OptionCase{"OtherMember", R"(<value v="slidermin"/>)",
                               R"(<value v="slidermin"/>)"}),
    caseName<OptionCase>);

#include "updating/oblformatupdater5017.h"

#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::OBLFormatUpdater5017 Updater;

} // namespace

TEST(OBLFormatUpdater5017, MovesTextsIntoAttributes)
{
    expectGoldenUpdate(Updater, "5017/texts");
}

TEST(OBLFormatUpdater5017, PutsNewAttributesBehindTheUid)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><graphoutput><uid v="1"/><channels v="2"/>)"
                                        R"(<desc v="x"/></graphoutput></graph>)"),
              R"(<graph><graphoutput><uid v="1"/><attributes><description v="x"/></attributes>)"
              R"(<channels v="2"/></graphoutput></graph>)");
}

TEST(OBLFormatUpdater5017, PutsNewAttributesAtTheEndWhereThereIsNoUid)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<paraminput><desc v="x"/><type/></paraminput>)"),
              R"(<paraminput><type/><attributes><description v="x"/></attributes></paraminput>)");
}

TEST(OBLFormatUpdater5017, PutsDescriptionAndTagsIntoTheSameAttributes)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<paraminput><uid v="1"/><usertag v="y"/><desc v="x"/>)"
                                        "</paraminput>"),
              R"(<paraminput><uid v="1"/><attributes><description v="x"/><usertags v="y"/>)"
              "</attributes></paraminput>");
}

TEST(OBLFormatUpdater5017, OverwritesFormerTexts)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<paraminput><attributes><usertags v="a"/>)"
                                        R"(<description v="b"/></attributes><desc v="x"/>)"
                                        R"(<usertag v="y"/></paraminput>)"),
              R"(<paraminput><attributes><usertags v="y"/><description v="x"/></attributes>)"
              "</paraminput>");
}

TEST(OBLFormatUpdater5017, RemovesEmptyTextsWithoutMakingAttributes)
{
    EXPECT_EQ(
        rewrittenContent(Updater, R"(<paraminput><uid v="1"/><desc v=""/><usertag/></paraminput>)"),
        R"(<paraminput><uid v="1"/></paraminput>)");
}

TEST(OBLFormatUpdater5017, LeavesTheTagsOfOutputsAlone)
{
    const std::string content = R"(<graphoutput><uid v="1"/><usertag v="y"/></graphoutput>)";
    EXPECT_EQ(rewrittenContent(Updater, content), content);
}

TEST(OBLFormatUpdater5017, TakesInputsOfFunctionsToo)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<function><paraminputs><paraminput><uid v="1"/>)"
                                        R"(<desc v="x"/></paraminput></paraminputs></function>)"),
              R"(<function><paraminputs><paraminput><uid v="1"/><attributes>)"
              R"(<description v="x"/></attributes></paraminput></paraminputs></function>)");
}

TEST(OBLFormatUpdater5017, CountsThroughBothLists)
{
    const std::string content = R"(<paraminput><desc v="x"/><usertag v=""/></paraminput>)"
                                R"(<graphoutput><desc v=""/><usertag v="y"/></graphoutput>)";
    EXPECT_EQ(updateBuffer(Updater, aBarePackage(content)).log, "ENTRY_CHANGED_3\n");
}

TEST(OBLFormatUpdater5017, LeavesAFileWithoutSuchTextsAsItIs)
{
    const std::string package =
        R"(<package ><content><graph><desc v="x"/></graph></content></package>)";
    EXPECT_EQ(updateBuffer(Updater, package).bytes, package);
}

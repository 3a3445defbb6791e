#include "updating/oblformatupdater4858.h"

#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::OBLFormatUpdater4858 Updater;

} // namespace

TEST(OBLFormatUpdater4858, MovesDescriptionsIntoAttributes)
{
    expectGoldenUpdate(Updater, "4858/descriptions");
}

TEST(OBLFormatUpdater4858, PutsNewAttributesInThePlaceOfTheDescription)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><uid v="1"/><desc v="x"/><root/></graph>)"),
              R"(<graph><uid v="1"/><attributes><description v="x"/></attributes><root/></graph>)");
}

TEST(OBLFormatUpdater4858, RemovesAnEmptyDescriptionWithoutMakingAttributes)
{
    EXPECT_EQ(
        rewrittenContent(Updater, R"(<graph><desc v=""/></graph><function><desc/></function>)"),
        "<graph/><function/>");
}

TEST(OBLFormatUpdater4858, KeepsAttributesOnAnEmptyDescription)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><desc v=""/><attributes><description v="x"/>)"
                                        R"(</attributes></graph>)"),
              R"(<graph><attributes><description v="x"/></attributes></graph>)");
}

TEST(OBLFormatUpdater4858, AddsToAttributesThatStand)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><desc v="x"/><uid v="1"/><attributes>)"
                                        R"(<label v="y"/></attributes></graph>)"),
              R"(<graph><uid v="1"/><attributes><label v="y"/><description v="x"/></attributes>)"
              "</graph>");
}

TEST(OBLFormatUpdater4858, OverwritesAFormerDescription)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><attributes><description v="y"/><label v="z"/>)"
                                        R"(</attributes><desc v="x"/></graph>)"),
              R"(<graph><attributes><description v="x"/><label v="z"/></attributes></graph>)");
}

TEST(OBLFormatUpdater4858, LetsTheLastOfSeveralDescriptionsWin)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><desc v="x"/><uid v="1"/><desc v="y"/></graph>)"),
              R"(<graph><attributes><description v="y"/></attributes><uid v="1"/></graph>)");
}

TEST(OBLFormatUpdater4858, TakesDescriptionsAtAnyDepth)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><content><graph><desc v="x"/></graph></content>)"
                                        R"(<desc v="y"/></graph>)"),
              R"(<graph><content><graph><attributes><description v="x"/></attributes></graph>)"
              R"(</content><attributes><description v="y"/></attributes></graph>)");
}

TEST(OBLFormatUpdater4858, CountsEmptyDescriptionsToo)
{
    const std::string content = R"(<graph><desc v="x"/></graph><resource><desc v=""/></resource>)"
                                R"(<function><desc v="z"/></function><group><desc v="x"/></group>)";
    EXPECT_EQ(updateBuffer(Updater, aBarePackage(content)).log, "ENTRY_CHANGED_3\n");
}

TEST(OBLFormatUpdater4858, LeavesAFileWithoutDescriptionsAsItIs)
{
    const std::string package =
        R"(<package ><desc v="x"/><content><group><desc v="y"/></group></content></package>)";
    EXPECT_EQ(updateBuffer(Updater, package).bytes, package);
}

#include "updating/oblformatupdater5356.h"

#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include "updating/documentdevice.h"
#include "updating/elementpath.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::OBLFormatUpdater5356 Updater;

std::string inGroup(const std::string& content)
{
    return R"(<group><uid v="1"/><identifier v="Wood"/><content>)" + content + "</content></group>";
}

struct FailureCase
{
    const char* name;
    const char* package;
};

class OBLFormatUpdater5356Failure : public testing::TestWithParam<FailureCase>
{};

} // namespace

TEST(OBLFormatUpdater5356, MovesObjectsIntoANewGroup)
{
    expectGoldenUpdate(Updater, "5356/newgroup");
}

TEST(OBLFormatUpdater5356, MovesObjectsIntoTheGroupThatIsNamedLikeThePackage)
{
    expectGoldenUpdate(Updater, "5356/existinggroup");
}

TEST(OBLFormatUpdater5356, LeavesAnEmptyContentAsItIs)
{
    const std::string package = R"(<package ><identifier v="Wood"/><content></content></package>)";
    const UpdateResult result = updateBuffer(Updater, package);
    EXPECT_TRUE(result.isOk);
    EXPECT_EQ(result.bytes, package);
}

TEST(OBLFormatUpdater5356, LeavesAPackageWithoutContentAsItIs)
{
    const std::string package = R"(<package ><identifier v="Wood"/></package>)";
    const UpdateResult result = updateBuffer(Updater, package);
    EXPECT_TRUE(result.isOk);
    EXPECT_EQ(result.bytes, package);
}

TEST(OBLFormatUpdater5356, LeavesAPackageOfTheGroupAloneAsItIs)
{
    const std::string package = aBarePackage(R"(<group ><identifier v="Wood"/></group>)");
    EXPECT_EQ(updateBuffer(Updater, package).bytes, package);
    EXPECT_EQ(updateDocument(Updater, package).bytes, package);
}

TEST(OBLFormatUpdater5356, ChangesNothingInASharedDocumentWhenItCountsNothing)
{
    Ksx::Core::DocumentDevice device(
        QByteArray::fromStdString(aBarePackage(R"(<group><identifier v="Wood"/></group>)")));
    device.open(QIODevice::ReadWrite);
    Updater.update(device, nullptr, {});
    QString error;
    EXPECT_EQ(Ksx::Core::elementsAt(*device.document(error), "/package/*/content").size(), 1U);
}

TEST(OBLFormatUpdater5356, GivesTheGroupAContentWhereItHasNone)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<group><identifier v="Wood"/></group><graph/>)"),
              R"(<group><identifier v="Wood"/><content><graph/></content></group>)");
}

TEST(OBLFormatUpdater5356, MovesGroupsOfOtherNames)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<group><identifier v="wood"/></group><group/>)"),
              inGroup(R"(<group><identifier v="wood"/></group><group/>)"));
}

TEST(OBLFormatUpdater5356, MovesElementsOfAnyName)
{
    EXPECT_EQ(rewrittenContent(Updater, "<graph/><unknown/><resource/>"),
              inGroup("<graph/><unknown/><resource/>"));
}

TEST(OBLFormatUpdater5356, TakesAGraphOfTheNameForNoGroup)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph><identifier v="Wood"/></graph>)"),
              inGroup(R"(<graph><identifier v="Wood"/></graph>)"));
}

TEST(OBLFormatUpdater5356, AppendsBehindTheObjectsOfTheGroup)
{
    EXPECT_EQ(rewrittenContent(Updater, R"(<graph/><group><identifier v="Wood"/><content>)"
                                        "<resource/></content></group><function/>"),
              R"(<group><identifier v="Wood"/><content><resource/><graph/><function/></content>)"
              "</group>");
}

TEST(OBLFormatUpdater5356, CountsMovedObjects)
{
    const std::string content = R"(<graph/><group><identifier v="Wood"/></group><function/>)";
    EXPECT_EQ(updateBuffer(Updater, aBarePackage(content)).log, "ENTRY_CHANGED_2\n");
}

TEST(OBLFormatUpdater5356, TakesTheNameAsItStands)
{
    EXPECT_EQ(rewritten(Updater, R"(<package><identifier v="&quot;A&amp;B&quot; &#233;"/>)"
                                 "<content><graph/></content></package>"),
              "<package><identifier v=\"&quot;A&amp;B&quot; \xC3\xA9\"/><content><group>"
              "<uid v=\"1\"/><identifier v=\"&quot;A&amp;B&quot; \xC3\xA9\"/>"
              "<content><graph/></content></group></content></package>");
}

TEST_P(OBLFormatUpdater5356Failure, LeavesNoMessageAndNoChange)
{
    const UpdateResult result = updateBuffer(Updater, GetParam().package);
    EXPECT_FALSE(result.isOk);
    EXPECT_EQ(result.log, "");
    EXPECT_EQ(result.bytes, GetParam().package);
}

INSTANTIATE_TEST_SUITE_P(
    Packages, OBLFormatUpdater5356Failure,
    testing::Values(
        FailureCase{"OtherRoot", R"(<other><identifier v="Wood"/><content/></other>)"},
        FailureCase{"WithoutIdentifier", "<package><content><graph/></content></package>"},
        FailureCase{"IdentifierWithoutValue",
                    "<package><identifier/><content><graph/></content></package>"},
        FailureCase{"EmptyIdentifier",
                    R"(<package><identifier v=""/><content><graph/></content></package>)"},
        FailureCase{"EmptyFirstIdentifier",
                    R"(<package><identifier v=""/><identifier v="Wood"/><content/></package>)"}),
    caseName<FailureCase>);

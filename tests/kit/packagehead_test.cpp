#include "ksx/kit/packagehead.h"

#include "data/filename.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using Ksx::Kit::PackageHead;
using Ksx::Kit::PackageKind;
using Ksx::Kit::readHead;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::caseName;
using TestSupport::replaced;
using TestSupport::TemporaryDirectory;

namespace {

class HeadOf : public testing::Test
{
protected:
    std::optional<PackageHead> head(const std::string& bytes, const std::string& name = "a.obl")
    {
        return readHead(Orv::fromBytes(directory.write(name, bytes)), reason);
    }

    TemporaryDirectory directory;
    QString reason;
};

} // namespace

TEST_F(HeadOf, APackageHasTheMembersInFrontOfTheContent)
{
    const auto found = head(aPackage()
                                .named("wood")
                                .with("desc", "planks")
                                .with("author", "me & you")
                                .with("fileUID", "{1}")
                                .with("versionUID", "7")
                                .text());

    ASSERT_TRUE(found);
    EXPECT_EQ(found->kind, PackageKind::Package);
    EXPECT_EQ(found->identifier, "wood");
    EXPECT_EQ(found->description, "planks");
    EXPECT_EQ(found->author, "me & you");
    EXPECT_EQ(found->formatVersion, "1.1.0.7049");
    EXPECT_EQ(found->updaterVersion, "1.1.0.7049");
    EXPECT_EQ(found->fileUid, "{1}");
    EXPECT_EQ(found->versionUid, "7");
}

TEST_F(HeadOf, APackageHasItsDependenciesAsTheyAreSpelled)
{
    const auto found = head(aPackage().dependingOn("../a.obl", 5).dependingOnItself(6).text());

    ASSERT_TRUE(found);
    ASSERT_EQ(found->dependencies.size(), 2U);
    EXPECT_EQ(found->dependencies[0].filename, "../a.obl");
    EXPECT_EQ(found->dependencies[0].uid, "5");
    EXPECT_EQ(found->dependencies[1].filename, "?himself");
}

TEST_F(HeadOf, APackageHasTheSizeOfTheFile)
{
    const std::string text = aPackage().text();

    EXPECT_EQ(head(text)->size, static_cast<qint64>(text.size()));
}

TEST_F(HeadOf, APackageIsReadWhateverIsBehindIt)
{
    const std::string text = aPackage().named("wood").containing(aGroup("g")).text();

    EXPECT_EQ(head(replaced(text, "</group>", "<"))->identifier, "wood");
}

TEST_F(HeadOf, APackageMayHaveItsContentFirst)
{
    const std::string text = aPackage().named("wood").dependingOn("a.obl", 5).text();
    const auto found =
        head(replaced(replaced(text, "<content/>", ""), "<package>",
                      "<package><content>" + aGroup("g", aGroup("inner")) + "</content>"));

    ASSERT_TRUE(found);
    EXPECT_EQ(found->identifier, "wood");
    EXPECT_EQ(found->dependencies.size(), 1U);
}

TEST_F(HeadOf, AnArchiveIsKnownByItsFirstBytes)
{
    EXPECT_EQ(head("7z\xBC\xAF\x27\x1C and more", "a.oblar")->kind, PackageKind::Archive);
}

TEST_F(HeadOf, AnAssemblyIsKnownByItsFirstBytes)
{
    EXPECT_EQ(head("OLAM", "a.oblasm")->kind, PackageKind::Assembly);
}

TEST_F(HeadOf, AFileThatIsMissingIsToldSo)
{
    EXPECT_FALSE(readHead("none.obl", reason));
    EXPECT_EQ(reason, "there is no such file");
}

namespace {

struct BadHead
{
    const char* name;
    const char* file;
    std::string bytes;
    const char* reason;
};

std::ostream& operator<<(std::ostream& stream, const BadHead& c)
{
    return stream << c.name;
}

class BadHeadOf : public HeadOf, public testing::WithParamInterface<BadHead>
{};

} // namespace

TEST_P(BadHeadOf, IsNoneAndTheReasonIsTold)
{
    EXPECT_FALSE(head(GetParam().bytes, GetParam().file));
    EXPECT_EQ(reason.left(static_cast<int>(qstrlen(GetParam().reason))), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BadHeadOf,
    testing::Values(
        BadHead{"Empty", "a.obl", "", "it is no sound document: "},
        BadHead{"NoDocument", "a.obl", "<<", "it is no sound document: "},
        BadHead{"CutInTheHead", "a.obl", aPackage().text().substr(0, 120),
                "it is no sound document: "},
        BadHead{"AnotherRoot", "a.obl", "<library/>", "it holds something else than a package"},
        BadHead{"NoVersion", "a.obl", aPackage().without("formatVersion").text(),
                "it has no format version"},
        BadHead{"AnotherEnding", "a.xml", aPackage().text(),
                "its name does not end with .obl, .oblar or .oblasm"},
        BadHead{"NoArchive", "a.oblar", "7z", "it is no archive"},
        BadHead{"NoAssembly", "a.oblasm", "MALO", "an assembly inside has no sound description"}),
    caseName<BadHead>);

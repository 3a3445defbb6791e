#include "core/fileplace.h"

#include "data/filename.h"
#include "support/temporarydirectory.h"
#include <QFileInfo>
#include <gtest/gtest.h>
#include <filesystem>

namespace {

using Orv::fromBytes;
using Orv::Core::absolutePath;
using Orv::Core::canonicalPath;
using Orv::Core::currentFolder;
using Orv::Core::exists;
using Orv::Core::isSameFile;
using Orv::Core::modificationTime;
using Orv::Core::realPath;
using TestSupport::TemporaryDirectory;

class FilePlace : public testing::Test
{
protected:
    QString at(const std::string& name) const { return fromBytes(directory.path(name)); }

    TemporaryDirectory directory;
};

TEST_F(FilePlace, GivesAFileThePermissionsOfAnotherOne)
{
    directory.write("new", "bytes");
    directory.write("old", "others");
    std::filesystem::permissions(directory.path("old"), std::filesystem::perms(0640));

    EXPECT_TRUE(Orv::Core::takeAttributesOf(at("new"), at("old")));

    EXPECT_EQ(std::filesystem::status(directory.path("new")).permissions(),
              std::filesystem::perms(0640));
    EXPECT_EQ(directory.read("new"), "bytes");
}

TEST_F(FilePlace, TakesNoPermissionsOfAMissingFile)
{
    directory.write("new", "bytes");

    EXPECT_FALSE(Orv::Core::takeAttributesOf(at("new"), at("missing")));
    EXPECT_FALSE(Orv::Core::takeAttributesOf(at("missing"), at("new")));
}

TEST_F(FilePlace, OfAPlainFileIsItsPath)
{
    directory.write("x/a", "");

    EXPECT_EQ(realPath(at("x/a")), at("x/a"));
}

TEST_F(FilePlace, OfAMissingFileIsInItsFolder)
{
    directory.makeDirectory("x");

    EXPECT_EQ(realPath(at("x/../x/a")), at("x/a"));
}

TEST_F(FilePlace, IsBehindLinksToFilesAndFolders)
{
    directory.write("real/deep/a", "");
    directory.makeLink("short", "real/deep");
    directory.makeLink("link", "short/a");

    EXPECT_EQ(realPath(at("link")), at("real/deep/a"));
}

TEST_F(FilePlace, IsWhereALinkToNothingLeads)
{
    directory.makeDirectory("x");
    directory.makeLink("link", "x/missing");

    EXPECT_EQ(realPath(at("link")), at("x/missing"));
}

TEST_F(FilePlace, IsNowhereWithoutItsFolder)
{
    EXPECT_TRUE(realPath(at("missing/a")).isNull());
}

TEST_F(FilePlace, IsNowhereWhereLinksGoRound)
{
    directory.makeLink("a", "b");
    directory.makeLink("b", "a");

    EXPECT_TRUE(realPath(at("a")).isNull());
}

TEST_F(FilePlace, NeedsAName)
{
    EXPECT_TRUE(realPath(at("x/")).isNull());
    EXPECT_TRUE(realPath({}).isNull());
}

TEST_F(FilePlace, OfAMissingFileIsNotCanonical)
{
    directory.write("a", "");
    directory.makeLink("link", "a");

    EXPECT_EQ(canonicalPath(at("link")), at("a"));
    EXPECT_TRUE(canonicalPath(at("missing")).isNull());
}

TEST_F(FilePlace, OfOneFileIsTheSameByLinksOfEitherKind)
{
    directory.write("a", "");
    directory.makeLink("symbolic", "a");
    std::filesystem::create_hard_link(directory.path("a"), directory.path("hard"));

    EXPECT_TRUE(isSameFile(at("a"), at("symbolic")));
    EXPECT_TRUE(isSameFile(at("a"), at("hard")));
}

TEST_F(FilePlace, OfEqualFilesIsNotTheSame)
{
    directory.write("a", "x");
    directory.write("b", "x");

    EXPECT_FALSE(isSameFile(at("a"), at("b")));
}

TEST_F(FilePlace, ExistsWhateverItIs)
{
    directory.write("x/a", "");
    directory.makeLink("dangling", "missing");

    EXPECT_TRUE(exists(at("x/a")));
    EXPECT_TRUE(exists(at("x")));
    EXPECT_FALSE(exists(at("missing")));
    EXPECT_FALSE(exists(at("dangling")));
    EXPECT_FALSE(exists({}));
}

TEST_F(FilePlace, HasTheTimeOfTheLastWriting)
{
    directory.write("a", "");
    directory.makeLink("link", "a");

    EXPECT_EQ(modificationTime(at("a")).toSecsSinceEpoch(),
              QFileInfo(at("a")).lastModified().toSecsSinceEpoch());
    EXPECT_EQ(modificationTime(at("link")), modificationTime(at("a")));
    EXPECT_FALSE(modificationTime(at("missing")).isValid());
}

TEST_F(FilePlace, BeginsAtTheRootOrInTheCurrentFolder)
{
    const QString folder = fromBytes(std::filesystem::current_path().native());

    EXPECT_EQ(currentFolder(), folder);
    EXPECT_EQ(absolutePath("x/a"), folder + "/x/a");
    EXPECT_EQ(absolutePath("./x//../a"), folder + "/a");
    EXPECT_EQ(absolutePath({}), folder);
    EXPECT_EQ(absolutePath("/x/../a/"), "/a");
}

TEST_F(FilePlace, OfANameAloneIsInTheCurrentFolder)
{
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(directory.path());

    EXPECT_EQ(realPath("a"), at("a"));

    std::filesystem::current_path(former);
}

TEST_F(FilePlace, IsNowhereForANameWithANulInIt)
{
    EXPECT_EQ(realPath(at("a") + QChar(u'\0') + 'b'), QString());
}

TEST_F(FilePlace, OfTheProcessIsUnknownWhereItsFolderWasDeleted)
{
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(directory.makeDirectory("gone"));
    std::filesystem::remove(directory.path("gone"));

    EXPECT_THROW(currentFolder(), std::runtime_error);
    EXPECT_FALSE(Orv::Core::hasCurrentFolder());

    std::filesystem::current_path(former);
}

TEST_F(FilePlace, IsFoundByANameThatIsNoUtf8)
{
    directory.write("Gr\xf6\xdf\xe9/a", "");

    EXPECT_TRUE(exists(at("Gr\xf6\xdf\xe9/a")));
    EXPECT_FALSE(exists(at("Gr\xf6\xdf\xe8/a")));
    EXPECT_TRUE(modificationTime(at("Gr\xf6\xdf\xe9/a")).isValid());
    EXPECT_EQ(canonicalPath(at("Gr\xf6\xdf\xe9/../Gr\xf6\xdf\xe9/a")), at("Gr\xf6\xdf\xe9/a"));
    EXPECT_EQ(absolutePath(at("Gr\xf6\xdf\xe9/./a")), at("Gr\xf6\xdf\xe9/a"));
}

TEST_F(FilePlace, OfMissingFilesIsNeverTheSame)
{
    EXPECT_FALSE(isSameFile(at("a"), at("a")));
}

TEST_F(FilePlace, ThatTheSystemDoesNotSpeakOfMayExist)
{
    const QString tooLong = at(std::string(5000, 'a'));

    EXPECT_FALSE(Orv::Core::exists(tooLong));
    EXPECT_TRUE(Orv::Core::mayExist(tooLong));
    EXPECT_FALSE(Orv::Core::mayExist(at("none")));
    EXPECT_TRUE(Orv::Core::mayExist(at("")));
}

} // namespace

#include "core/fileplace.h"

#include "support/temporarydirectory.h"
#include <gtest/gtest.h>
#include <filesystem>

namespace {

using Orv::Core::canonicalPath;
using Orv::Core::isSameFile;
using Orv::Core::realPath;
using TestSupport::TemporaryDirectory;

class FilePlace : public testing::Test
{
protected:
    QString at(const std::string& name) const
    {
        return QString::fromStdString(directory.path(name));
    }

    TemporaryDirectory directory;
};

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

TEST_F(FilePlace, OfMissingFilesIsNeverTheSame)
{
    EXPECT_FALSE(isSameFile(at("a"), at("a")));
}

} // namespace

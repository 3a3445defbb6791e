#include "core/filesaver.h"

#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

using Orv::Core::FileSaver;
using TestSupport::TemporaryDirectory;

const std::string Former = "the former bytes";

class FileSaving : public testing::Test
{
protected:
    bool save(const std::string& name, const QByteArray& bytes = "new")
    {
        FileSaver saver(QString::fromStdString(directory.path(name)));
        return saver.open(QIODevice::WriteOnly) && saver.write(bytes) == bytes.size() &&
               saver.commit();
    }

    TemporaryDirectory directory;
};

TEST_F(FileSaving, MakesAFile)
{
    EXPECT_TRUE(save("a"));

    EXPECT_EQ(directory.read("a"), "new");
    EXPECT_EQ(directory.files(), "a");
}

TEST_F(FileSaving, KeepsTheOrderOfSmallAndLargeBlocks)
{
    FileSaver saver(QString::fromStdString(directory.path("a")));
    ASSERT_TRUE(saver.open(QIODevice::WriteOnly));

    saver.write("begin ");
    saver.write(QByteArray(200000, 'x'));
    saver.write(" end");
    EXPECT_TRUE(saver.commit());

    EXPECT_TRUE(directory.read("a") == "begin " + std::string(200000, 'x') + " end");
}

TEST_F(FileSaving, ReplacesAFile)
{
    directory.write("a", Former);

    EXPECT_TRUE(save("a"));

    EXPECT_EQ(directory.read("a"), "new");
    EXPECT_EQ(directory.files(), "a");
}

TEST_F(FileSaving, WithoutCommitLeavesTheFormerFile)
{
    directory.write("a", Former);
    {
        FileSaver saver(QString::fromStdString(directory.path("a")));
        ASSERT_TRUE(saver.open(QIODevice::WriteOnly));
        saver.write("new");
    }

    EXPECT_EQ(directory.read("a"), Former);
    EXPECT_EQ(directory.files(), "a");
}

TEST_F(FileSaving, ShowsNothingBeforeCommit)
{
    directory.write("a", Former);
    FileSaver saver(QString::fromStdString(directory.path("a")));
    ASSERT_TRUE(saver.open(QIODevice::WriteOnly));

    saver.write(QByteArray(1000000, 'x'));

    EXPECT_EQ(directory.read("a"), Former);
}

class FileSavingUnderALongName : public FileSaving, public testing::WithParamInterface<int>
{};

TEST_P(FileSavingUnderALongName, ReplacesTheFile)
{
    const std::string name(static_cast<std::size_t>(GetParam()), 'x');
    directory.write(name, Former);

    EXPECT_TRUE(save(name));

    EXPECT_EQ(directory.read(name), "new");
}

INSTANTIATE_TEST_SUITE_P(Bytes, FileSavingUnderALongName, testing::Range(247, 256));

TEST_F(FileSaving, KeepsOwnerAndPermissions)
{
    const bool isRoot = TestSupport::Tool::isRoot();
    const unsigned owner = isRoot ? TestSupport::NobodyId : geteuid();
    const unsigned group = isRoot ? TestSupport::NobodyId : getegid();
    directory.write("a", Former);
    ASSERT_EQ(chown(directory.path("a").c_str(), owner, group), 0);
    directory.setMode("a", 0640);

    EXPECT_TRUE(save("a"));

    struct stat status = {};
    ASSERT_EQ(stat(directory.path("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, owner);
    EXPECT_EQ(status.st_gid, group);
    EXPECT_EQ(directory.mode("a"), 0640u);
}

TEST_F(FileSaving, KeepsAFilePrivate)
{
    directory.write("a", Former);
    directory.setMode("a", 0600);

    EXPECT_TRUE(save("a"));

    EXPECT_EQ(directory.mode("a"), 0600u);
}

TEST_F(FileSaving, KeepsExtendedAttributes)
{
    directory.write("a", Former);
    const std::string path = directory.path("a");
    if (setxattr(path.c_str(), "user.note", "kept", 4, 0) != 0)
        GTEST_SKIP() << "no attributes here: " << std::strerror(errno);

    EXPECT_TRUE(save("a"));

    char value[4] = {};
    EXPECT_EQ(getxattr(path.c_str(), "user.note", value, sizeof(value)), 4);
    EXPECT_EQ(std::string(value, 4), "kept");
}

struct AttributeCase
{
    const char* name;
    const char* attribute;
    std::vector<unsigned char> value;
};

std::ostream& operator<<(std::ostream& stream, const AttributeCase& c)
{
    return stream << c.name;
}

// They vouch for the bytes of before, or let a program of these bytes do more than others.
class AttributeOfTheFormerBytes : public FileSaving,
                                  public testing::WithParamInterface<AttributeCase>
{};

TEST_P(AttributeOfTheFormerBytes, IsNotKept)
{
    const auto& [name, attribute, value] = GetParam();
    directory.write("a", Former);
    const std::string path = directory.path("a");
    if (setxattr(path.c_str(), attribute, value.data(), value.size(), 0) != 0)
        GTEST_SKIP() << "may not be given here: " << std::strerror(errno);

    EXPECT_TRUE(save("a"));

    EXPECT_LT(getxattr(path.c_str(), attribute, nullptr, 0), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, AttributeOfTheFormerBytes,
    testing::Values(AttributeCase{"Measured", "security.ima", {1}},
                    AttributeCase{"Signed", "security.evm", {1}},
                    // Version 2, in effect; the right to bind low ports is permitted.
                    AttributeCase{"Capable",
                                  "security.capability",
                                  {1, 0, 0, 2, 0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}),
    TestSupport::caseName<AttributeCase>);

// The list of a folder is for new files, and not for those that are replaced.
TEST_F(FileSaving, GivesAReplacedFileNoAccessListOfItsFolder)
{
    // Version 2; the owner, a user of number 1, the group, the mask and others.
    constexpr unsigned char List[] = {2,   0,   0,   0,   1,   0,   7,  0,   255, 255, 255,
                                      255, 2,   0,   7,   0,   1,   0,  0,   0,   4,   0,
                                      5,   0,   255, 255, 255, 255, 16, 0,   7,   0,   255,
                                      255, 255, 255, 32,  0,   5,   0,  255, 255, 255, 255};
    directory.write("x/a", Former);
    directory.setMode("x/a", 0644);
    if (setxattr(directory.path("x").c_str(), "system.posix_acl_default", List, sizeof(List), 0) !=
        0)
        GTEST_SKIP() << "no access lists here: " << std::strerror(errno);

    EXPECT_TRUE(save("x/a"));

    EXPECT_EQ(directory.mode("x/a"), 0644u);
    EXPECT_LT(getxattr(directory.path("x/a").c_str(), "system.posix_acl_access", nullptr, 0), 0);
}

TEST_F(FileSaving, GivesANewFileTheUsualPermissions)
{
    directory.write("usual", "");

    EXPECT_TRUE(save("a"));

    EXPECT_EQ(directory.mode("a"), directory.mode("usual"));
}

TEST_F(FileSaving, DoesNotFollowALink)
{
    directory.write("a", Former);
    directory.makeLink("link", "a");

    EXPECT_FALSE(save("link"));

    EXPECT_EQ(directory.read("a"), Former);
}

TEST_F(FileSaving, DoesNotWaitForSomebodyToReadAPipe)
{
    ASSERT_EQ(mkfifo(directory.path("pipe").c_str(), 0666), 0);

    EXPECT_FALSE(save("pipe"));
}

TEST_F(FileSaving, WritesToAPipeThatIsRead)
{
    const std::string path = directory.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0666), 0);
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);

    EXPECT_TRUE(save("pipe"));

    char bytes[3] = {};
    EXPECT_EQ(read(reader, bytes, sizeof(bytes)), 3);
    EXPECT_EQ(std::string(bytes, 3), "new");
    close(reader);
}

TEST_F(FileSaving, NeedsAFolderAndAName)
{
    EXPECT_FALSE(save("missing/a"));
    EXPECT_FALSE(FileSaver(QString()).open(QIODevice::WriteOnly));
}

TEST_F(FileSaving, TakesNoNameWithANulInIt)
{
    EXPECT_FALSE(save(std::string("a\0b", 3)));

    EXPECT_EQ(directory.files(), "");
}

TEST_F(FileSaving, TakesANameInTheCurrentFolder)
{
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(directory.path());
    FileSaver saver("a");

    EXPECT_TRUE(saver.open(QIODevice::WriteOnly));
    EXPECT_EQ(saver.write("new"), 3);
    EXPECT_TRUE(saver.commit());

    std::filesystem::current_path(former);
    EXPECT_EQ(directory.read("a"), "new");
}

TEST_F(FileSaving, LeavesAFolderThatHasTakenTheName)
{
    FileSaver saver(QString::fromStdString(directory.path("a")));
    ASSERT_TRUE(saver.open(QIODevice::WriteOnly));
    saver.write("new");
    directory.write("a/b", Former);

    EXPECT_FALSE(saver.commit());

    EXPECT_EQ(directory.read("a/b"), Former);
}

TEST_F(FileSaving, KeepsTheAccessListOfAFile)
{
    // As the list of a folder below.
    constexpr unsigned char List[] = {2,   0,   0,   0,   1,   0,   6,  0,   255, 255, 255,
                                      255, 2,   0,   6,   0,   1,   0,  0,   0,   4,   0,
                                      4,   0,   255, 255, 255, 255, 16, 0,   6,   0,   255,
                                      255, 255, 255, 32,  0,   4,   0,  255, 255, 255, 255};
    directory.write("a", Former);
    const std::string path = directory.path("a");
    if (setxattr(path.c_str(), "system.posix_acl_access", List, sizeof(List), 0) != 0)
        GTEST_SKIP() << "no access lists here: " << std::strerror(errno);

    EXPECT_TRUE(save("a"));

    unsigned char kept[sizeof(List)] = {};
    EXPECT_EQ(getxattr(path.c_str(), "system.posix_acl_access", kept, sizeof(kept)),
              static_cast<ssize_t>(sizeof(List)));
    EXPECT_EQ(std::memcmp(kept, List, sizeof(List)), 0);
}

TEST_F(FileSaving, KeepsAGroupThatIsNotTheFirstOfTheProcess)
{
    if (!TestSupport::Tool::isRoot())
        GTEST_SKIP() << "a plain user may have one group alone";
    directory.write("a", Former);
    ASSERT_EQ(chown(directory.path("a").c_str(), geteuid(), TestSupport::NobodyId), 0);

    EXPECT_TRUE(save("a"));

    struct stat status = {};
    ASSERT_EQ(stat(directory.path("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, TestSupport::NobodyId);
}

TEST_F(FileSaving, IsForWritingAlone)
{
    FileSaver saver(QString::fromStdString(directory.path("a")));

    EXPECT_FALSE(saver.open(QIODevice::ReadOnly));
    EXPECT_FALSE(saver.open(QIODevice::Append));
    EXPECT_EQ(directory.files(), "");
}

TEST_F(FileSaving, IsOpenedOnce)
{
    FileSaver saver(QString::fromStdString(directory.path("a")));
    ASSERT_TRUE(saver.open(QIODevice::WriteOnly));

    EXPECT_FALSE(saver.open(QIODevice::WriteOnly));
    EXPECT_TRUE(saver.commit());
}

TEST(FileSavingToAFullDevice, TakesNothingBehindBytesThatWereLost)
{
    FileSaver saver("/dev/full");
    ASSERT_TRUE(saver.open(QIODevice::WriteOnly));
    const QByteArray large(200000, 'x');
    ASSERT_EQ(saver.write(large), -1);

    EXPECT_EQ(saver.write("small"), -1);
    EXPECT_EQ(saver.write(large), -1);
    EXPECT_FALSE(saver.commit());
}

TEST_F(FileSaving, IsDoneOnce)
{
    FileSaver saver(QString::fromStdString(directory.path("a")));
    ASSERT_TRUE(saver.open(QIODevice::WriteOnly));
    ASSERT_TRUE(saver.commit());

    EXPECT_FALSE(saver.commit());
}

// What can be saved, without a step.

class SavablePlace : public testing::Test
{
protected:
    SavablePlace() { directory.setMode("", 0777); }
    bool canSave(const std::string& path) const
    {
        return FileSaver::canSave(QString::fromStdString(path));
    }

    TemporaryDirectory directory;
};

TEST_F(SavablePlace, IsAFreeNameInAFolder)
{
    EXPECT_TRUE(canSave(directory.path("a")));

    EXPECT_EQ(directory.files(), "");
}

TEST_F(SavablePlace, IsAFile)
{
    directory.write("a", Former);

    EXPECT_TRUE(canSave(directory.path("a")));

    EXPECT_EQ(directory.read("a"), Former);
}

TEST_F(SavablePlace, IsNoFolder)
{
    EXPECT_FALSE(canSave(directory.path()));
}

TEST_F(SavablePlace, IsNoLink)
{
    directory.makeLink("a", "b");

    EXPECT_FALSE(canSave(directory.path("a")));
}

TEST_F(SavablePlace, IsNotInAFolderThatIsMissing)
{
    EXPECT_FALSE(canSave(directory.path("b/a")));
}

TEST_F(SavablePlace, IsNoEmptyName)
{
    EXPECT_FALSE(canSave(std::string()));
}

TEST_F(SavablePlace, IsNoNameThatIsTooLong)
{
    EXPECT_FALSE(canSave(directory.path(std::string(300, 'a'))));
}

TEST_F(SavablePlace, IsADevice)
{
    EXPECT_TRUE(canSave("/dev/null"));
}

} // namespace

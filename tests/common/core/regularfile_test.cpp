#include "core/regularfile.h"

#include "support/temporarydirectory.h"
#include <gtest/gtest.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace {

using Orv::Core::RegularFile;
using TestSupport::TemporaryDirectory;

class RegularFileReading : public testing::Test
{
protected:
    QString at(const std::string& name) const
    {
        return QString::fromStdString(directory.path(name));
    }
    bool opens(const QString& path) const { return RegularFile(path).open(QIODevice::ReadOnly); }

    TemporaryDirectory directory;
};

TEST_F(RegularFileReading, GivesAllBytes)
{
    directory.write("a", std::string(100000, 'x'));
    RegularFile file(at("a"));

    ASSERT_TRUE(file.open(QIODevice::ReadOnly));

    EXPECT_EQ(file.fileName(), at("a"));
    EXPECT_EQ(file.size(), 100000);
    EXPECT_EQ(file.readAll(), QByteArray(100000, 'x'));
    EXPECT_TRUE(file.atEnd());
    EXPECT_FALSE(file.hasFailed());
}

TEST_F(RegularFileReading, CanGoBack)
{
    directory.write("a", "0123456789");
    RegularFile file(at("a"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    file.read(7);

    EXPECT_TRUE(file.seek(2));

    EXPECT_EQ(file.readAll(), "23456789");
}

TEST_F(RegularFileReading, EndsWhereTheFileEndedWhenItWasOpened)
{
    directory.write("a", "begin");
    RegularFile file(at("a"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::ofstream(directory.path("a"), std::ios::app) << " and more";

    EXPECT_EQ(file.readAll(), "begin");
    EXPECT_TRUE(file.atEnd());
}

TEST_F(RegularFileReading, FailsWhereTheFileHasBecomeShorter)
{
    directory.write("a", std::string(100000, 'x'));
    RegularFile file(at("a"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::filesystem::resize_file(directory.path("a"), 50000);

    file.readAll();

    EXPECT_TRUE(file.hasFailed());
    EXPECT_TRUE(file.atEnd());
}

TEST_F(RegularFileReading, TakesALink)
{
    directory.write("a", "x");
    directory.makeLink("link", "a");

    EXPECT_TRUE(opens(at("link")));
}

TEST_F(RegularFileReading, RefusesAPipeWithoutWaiting)
{
    ASSERT_EQ(mkfifo(directory.path("pipe").c_str(), 0666), 0);

    EXPECT_FALSE(opens(at("pipe")));
}

TEST_F(RegularFileReading, RefusesADeviceAndAFolder)
{
    EXPECT_FALSE(opens("/dev/zero"));
    EXPECT_FALSE(opens(at(".")));
}

TEST_F(RegularFileReading, RefusesAMissingFile)
{
    EXPECT_FALSE(opens(at("missing")));
}

TEST_F(RegularFileReading, IsOpenedOnce)
{
    directory.write("a", "x");
    RegularFile file(at("a"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));

    EXPECT_FALSE(file.open(QIODevice::ReadOnly));
}

TEST_F(RegularFileReading, RefusesANameWithANulInIt)
{
    directory.write("a", "x");

    EXPECT_FALSE(opens(at("a") + QChar(u'\0') + 'b'));
}

TEST_F(RegularFileReading, IsAtItsEndWhenItIsClosed)
{
    directory.write("a", "x");
    RegularFile file(at("a"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.atEnd());

    file.close();

    EXPECT_TRUE(file.atEnd());
}

TEST_F(RegularFileReading, IsNotForWriting)
{
    directory.write("a", "x");

    EXPECT_FALSE(RegularFile(at("a")).open(QIODevice::ReadWrite));
}

TEST_F(RegularFileReading, EndsAtTheSizeThatAFileOfTheKernelTells)
{
    RegularFile file("/proc/self/pagemap");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));

    EXPECT_EQ(file.readAll(), "");
}

} // namespace

#include "ksx/core/outputfile.h"

#include <QDir>
#include <gtest/gtest.h>

using Ksx::Core::outputFile;
using Ksx::Core::outputName;
using Ksx::Core::updatedFile;

namespace {

TEST(OutputFile, IsNamedByAllPatternsOfTheName)
{
    EXPECT_EQ(outputName("{inputName}-{inputName}{inputPath}", "a"), "a-a{inputPath}");
}

TEST(OutputFile, IsInTheCurrentFolderWithoutAnother)
{
    EXPECT_EQ(outputFile(std::nullopt, "/in", "a"), QDir::currentPath() + "/a.obl");
}

TEST(OutputFile, IsInTheFolderOfAPattern)
{
    EXPECT_EQ(outputFile("{inputPath}/sub/../out", "/in", "a"), "/in/out/a.obl");
}

TEST(OutputFile, OfARelativeFolderBeginsInTheCurrentOne)
{
    EXPECT_EQ(outputFile("out", "/in", "a"), QDir::currentPath() + "/out/a.obl");
}

TEST(OutputFile, OfAnAbsoluteNameIsInNoFolder)
{
    EXPECT_EQ(outputFile("/out", "/in", "/elsewhere/a"), "/elsewhere/a.obl");
}

TEST(OutputFile, OfAnUpdateIsNamedLikeTheInputUpToItsFirstPoint)
{
    EXPECT_EQ(updatedFile("{inputName}_updated", "{inputPath}", "/in/a.b.oblar"),
              "/in/a_updated.obl");
}

TEST(OutputFile, OfAnUpdateIsNoneWithoutAName)
{
    EXPECT_TRUE(updatedFile("", "/out", "/in/a.obl").isNull());
}

} // namespace

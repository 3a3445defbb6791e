// What the tool does where a result is hard to write.
#include "support/packagetext.h"
#include "support/smalldisk.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <filesystem>

using TestSupport::aPackage;
using TestSupport::SmallDisk;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

const std::string Former = "the former result";

// Writes in/a.obl to out/a_updated.obl, without the rights of root.
class SavingTool : public testing::Test
{
protected:
    SavingTool()
    {
        directory.write("in/a.obl", aPackage().text());
        directory.makeDirectory("out");
        directory.setMode("out", 0777);
    }
    ToolRun update() const
    {
        return Tool(directory.path())
            .withoutRootRights()
            .run({"update", "in/a.obl", "--output-path", "out"});
    }
    std::string errorLine() const
    {
        return "Error! Cannot saved: " + directory.path("out/a_updated.obl") + "\n";
    }

    TemporaryDirectory directory;
};

TEST_F(SavingTool, LeavesNothingBesideTheResult)
{
    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(SavingTool, WritesAFileDirectlyWhereItsDirectoryAllowsNoOther)
{
    directory.write("out/a_updated.obl", Former + std::string(100000, 'x'));
    directory.setMode("out/a_updated.obl", 0666);
    directory.setMode("out", 0555);

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("out/a_updated.obl"), aPackage().text());
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(SavingTool, WritesIntoADirectoryThatMayNotBeListed)
{
    directory.setMode("out", 0333);

    const ToolRun run = update();

    directory.setMode("out", 0777);
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("out/a_updated.obl"), aPackage().text());
}

TEST_F(SavingTool, CannotMakeAFileWhereItsDirectoryAllowsNone)
{
    directory.setMode("out", 0555);

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.files(), "in/a.obl");
}

TEST_F(SavingTool, LeavesAFileThatMayNotBeWritten)
{
    directory.write("out/a_updated.obl", Former);
    directory.setMode("out/a_updated.obl", 0444);

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(SavingTool, LeavesAFileInADirectoryThatMayNotBeEntered)
{
    directory.write("out/a_updated.obl", Former);
    directory.setMode("out", 0);

    const ToolRun run = update();

    directory.setMode("out", 0777);
    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
}

TEST_F(SavingTool, TellsThatADeviceIsFull)
{
    directory.makeLink("out/a_updated.obl", "/dev/full");

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
}

TEST_F(SavingTool, WritesToADevice)
{
    directory.makeLink("out/a_updated.obl", "/dev/null");

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("out/a_updated.obl")));
}

TEST_F(SavingTool, FollowsALinkToAFileElsewhere)
{
    directory.write("else/b.obl", Former);
    directory.setMode("else", 0777);
    directory.setMode("else/b.obl", 0666);
    directory.makeLink("out/a_updated.obl", "../else/b.obl");

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out.substr(run.out.find("Saved:")),
              "Saved:\n    " + directory.path("out/a_updated.obl") + "\n");
    EXPECT_EQ(directory.read("else/b.obl"), aPackage().text());
}

// Where there is neither space nor the right to make a file, the former bytes stay.
TEST_F(SavingTool, PutsTheFormerBytesBackWhereItWritesDirectlyToAFullDisk)
{
    const SmallDisk disk(directory.path("out"));
    if (!disk.isMounted())
        GTEST_SKIP() << "no file system can be mounted";
    directory.write("in/a.obl", aPackage().named(std::string(1 << 20, 'x')).text());
    directory.write("out/a_updated.obl", Former);
    directory.setMode("out/a_updated.obl", 0666);
    directory.setMode("out", 0555);

    const ToolRun run = update();

    const std::string left = directory.read("out/a_updated.obl");
    const std::string files = directory.files();
    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_TRUE(left == Former);
    EXPECT_EQ(files, "in/a.obl out/a_updated.obl");
}

} // namespace

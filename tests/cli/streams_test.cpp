// What the tool does with streams, folders and files that are not as usual.
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <sys/stat.h>

using TestSupport::aPackage;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

const char* const OutputLost = "Error! Standard output cannot be written\n";

class OddSurroundings : public testing::Test
{
protected:
    OddSurroundings() { directory.write("a.obl", aPackage().text()); }

    Tool tool() const { return Tool(directory.path()); }
    void makePipe(const std::string& name) const
    {
        ASSERT_EQ(mkfifo(directory.path(name).c_str(), 0666), 0);
    }

    TemporaryDirectory directory;
};

// Standard streams.

TEST_F(OddSurroundings, AFullStandardOutputIsToldWhenAllIsSaved)
{
    const ToolRun run = tool().withOutputTo("/dev/full").run({"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, OutputLost);
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
}

TEST_F(OddSurroundings, AFullStandardOutputIsToldForTheHelp)
{
    const ToolRun run = tool().withOutputTo("/dev/full").run({"--help"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, OutputLost);
}

TEST_F(OddSurroundings, AClosedStandardOutputIsToldAndGetsIntoNoFile)
{
    const ToolRun run = tool().withoutStream(1).run({"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, OutputLost);
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
    EXPECT_EQ(directory.read("a.obl"), aPackage().text());
}

TEST_F(OddSurroundings, AClosedStandardInputIsOfNoInterest)
{
    const ToolRun run = tool().withoutStream(0).run({"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
}

TEST_F(OddSurroundings, ErrorLinesGetIntoNoFileWhereStandardErrorIsClosed)
{
    directory.makeDirectory("b_updated.obl");
    directory.write("b.obl", aPackage().text());

    const ToolRun run = tool().withoutStream(2).run({"update", "b.obl", "a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
}

// The current folder.

TEST_F(OddSurroundings, ADeletedCurrentFolderIsRefused)
{
    const TemporaryDirectory other;
    other.makeDirectory("gone");

    const ToolRun run =
        Tool(other.path("gone")).inDeletedDirectory().run({"update", directory.path("a.obl")});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Error! Current folder not found\n");
}

TEST_F(OddSurroundings, TheHelpNeedsNoCurrentFolder)
{
    const TemporaryDirectory other;
    other.makeDirectory("gone");

    const ToolRun run = Tool(other.path("gone")).inDeletedDirectory().run({"--help=update"});

    EXPECT_EQ(run.exitCode, 0) << run;
}

// Pipes and devices. Nobody writes to the pipes or reads them.

TEST_F(OddSurroundings, APipeIsNoPackage)
{
    makePipe("pipe.obl");

    const ToolRun run = tool().run({"update", "pipe.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + directory.path("pipe.obl") +
                           "\nPackages cannot be correctly loaded\n");
}

TEST_F(OddSurroundings, APipeIsNoDependency)
{
    makePipe("pipe.obl");
    directory.write("a.obl", aPackage().dependingOn("pipe.obl", 7).text());

    const ToolRun run = tool().run({"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + directory.path("pipe.obl") +
                           "\nPackages cannot be correctly loaded\n");
}

TEST_F(OddSurroundings, APipeIsNoPreset)
{
    directory.makeDirectory("presets");
    makePipe("presets/pipe.obl");
    directory.write("a.obl", aPackage().dependingOn("obl://pipe.obl", 7).text());

    const ToolRun run = tool().run({"update", "a.obl", "--presets-path", "presets"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + directory.path("presets/pipe.obl") +
                           "\nPackages cannot be correctly loaded\n");
}

TEST_F(OddSurroundings, APipeIsNoDescriptionOfAnAssembly)
{
    directory.write("b.oblasm", "OLAM and more");
    makePipe("b.xml");

    const ToolRun run = tool().run({"update", "b.oblasm"});

    EXPECT_EQ(run.exitCode, 1) << run;
}

TEST_F(OddSurroundings, ADeviceIsNoDescriptionOfAnAssembly)
{
    directory.write("b.oblasm", "OLAM and more");
    directory.makeLink("b.xml", "/dev/zero");

    const ToolRun run = tool().run({"update", "b.oblasm"});

    EXPECT_EQ(run.exitCode, 1) << run;
}

TEST_F(OddSurroundings, APipeThatNobodyReadsIsNoTarget)
{
    makePipe("a_updated.obl");

    const ToolRun run = tool().run({"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Error! Cannot saved: " + directory.path("a_updated.obl") + "\n");
}

// Links.

TEST_F(OddSurroundings, AResultBehindALinkLeadsToItsDependencies)
{
    directory.write("in/a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("in/b.obl", aPackage().text());
    directory.makeDirectory("real/deep");
    directory.makeLink("out", "real/deep");

    const ToolRun run = tool().run({"update", "in/a.obl", "--output-path", "out"});
    const ToolRun again = tool().run({"update", "real/deep/a_updated.obl"});
    const ToolRun byLink = tool().run({"update", "out/a_updated.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(again.exitCode, 0) << again;
    EXPECT_EQ(byLink.exitCode, 0) << byLink;
}

} // namespace

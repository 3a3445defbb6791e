// The arguments of ksx before a command runs.
#include "support/golden.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>

using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

class KsxProgram : public testing::Test
{
protected:
    Tool tool() const { return Tool(directory.path()).at(ksxPath()); }
    ToolRun run(const Arguments& arguments) const { return tool().run(arguments); }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(KsxProgram, ShowsItsCommands)
{
    const ToolRun found = run({"--help"});

    EXPECT_EQ(found.exitCode, 0) << found;
    expectGolden("kit/help.txt", found.out);
}

TEST_F(KsxProgram, ShowsTheOptionsOfACommand)
{
    const ToolRun found = run({"info", "a.obl", "--help"});

    EXPECT_EQ(found.exitCode, 0) << found;
    expectGolden("kit/help-info.txt", found.out);
}

TEST_F(KsxProgram, ShowsItsVersion)
{
    const ToolRun found = run({"--version"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "ksx 1.0.0\n");
}

TEST_F(KsxProgram, TellsThatItsOutputIsLost)
{
    const ToolRun found = tool().withOutputTo("/dev/full").run({"--help"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! Standard output cannot be written\n");
}

TEST_F(KsxProgram, TellsThatItsFolderIsGone)
{
    const ToolRun found = tool().inDeletedDirectory().run({"info", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! Current folder not found\n");
}

namespace {

struct BadLine
{
    const char* name;
    Arguments arguments;
    const char* error;
};

std::ostream& operator<<(std::ostream& stream, const BadLine& c)
{
    return stream << c.name;
}

class KsxBadLine : public KsxProgram, public testing::WithParamInterface<BadLine>
{};

} // namespace

TEST_P(KsxBadLine, EndsWithTwoAndTellsWhy)
{
    const ToolRun found = run(GetParam().arguments);

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.out, "");
    EXPECT_EQ(found.err, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, KsxBadLine,
    testing::Values(
        BadLine{"NoCommand", {}, "Error! No command given\nSee 'ksx --help'\n"},
        BadLine{
            "AnotherCommand", {"update"}, "Error! There is no command update\nSee 'ksx --help'\n"},
        BadLine{"AnotherOption",
                {"info", "--all"},
                "Error! unrecognised option '--all'\nSee 'ksx info --help'\n"},
        BadLine{"AnAbbreviation",
                {"info", "--bri"},
                "Error! unrecognised option '--bri'\nSee 'ksx info --help'\n"},
        BadLine{"NoPackage", {"info"}, "Error! No package given\nSee 'ksx info --help'\n"},
        BadLine{"NoJobs",
                {"info", "--jobs", "0", "a.obl"},
                "Error! The option '--jobs' takes a number from 1 to 256\n"
                "See 'ksx info --help'\n"}),
    caseName<BadLine>);

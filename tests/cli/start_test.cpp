// What the tool does with its arguments before a command runs, and around it.
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>

using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::expectGolden;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

const std::string GlobalHelp =
    "\n"
    "Usage: tool [--help] <command> [<args>]\n"
    "\n"
    "Available commands are: \n"
    "   update \n"
    "   specialization \n"
    "   graph-parameters-editor \n"
    "\n"
    "See 'tool --help <command>' for more information on a specific command.\n"
    "\n"
    "global options:\n"
    "  --help arg\n"
    "          Display help on availables commands.\n"
    "          If no argument is given, global help is displayed\n"
    "\n";

class ToolStart : public testing::Test
{
protected:
    ToolRun run(const Arguments& arguments) const { return Tool(directory.path()).run(arguments); }

    TemporaryDirectory directory;
};

struct StartCase
{
    const char* name;
    Arguments arguments;
    int exitCode;
    std::string out;
    std::string err;
};

std::ostream& operator<<(std::ostream& stream, const StartCase& c)
{
    return stream << c.name;
}

class ToolEndsAtOnce : public ToolStart, public testing::WithParamInterface<StartCase>
{};

TEST_P(ToolEndsAtOnce, WithItsTextsAndExitCode)
{
    const ToolRun run = this->run(GetParam().arguments);

    EXPECT_EQ(run.out, GetParam().out);
    EXPECT_EQ(run.err, GetParam().err);
    EXPECT_EQ(run.exitCode, GetParam().exitCode) << run;
    EXPECT_EQ(directory.files(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ToolEndsAtOnce,
    testing::Values(
        StartCase{"NoArgument", {}, 0, GlobalHelp, ""},
        StartCase{"OnlyAnUnknownOption", {"--nonsense"}, 0, GlobalHelp, ""},
        StartCase{"OnlyUnknownOptions", {"--nonsense", "--folly=3", "-x"}, 0, GlobalHelp, ""},
        StartCase{"EmptyHelp", {"--help"}, 0, GlobalHelp, ""},
        StartCase{"HelpWithACommandApart", {"--help", "update"}, 0, GlobalHelp, ""},
        StartCase{"HelpWithFolly", {"--help", "folly"}, 0, GlobalHelp, ""},
        StartCase{"HelpBehindTheCommand", {"update", "--help"}, 0, GlobalHelp, ""},
        StartCase{"HelpOfAnUnknownCommand", {"--help=folly"}, 1, "", "Unknow command folly!\n"},
        StartCase{"UnknownOptionInFront",
                  {"--nonsense", "update", "x"},
                  1,
                  GlobalHelp,
                  "Error: no command specified!\n"},
        StartCase{"UnknownCommand", {"folly"}, 1, "", "Error: Invalid command!\n"},
        StartCase{"EmptyCommand", {""}, 1, "", "Error: Invalid command!\n"},
        StartCase{"NoInput", {"update"}, 1, "", "Error! No input(s) specified\n"},
        StartCase{"NoInputButOptions",
                  {"update", "--no-dependency", "--output-name", "x"},
                  1,
                  "",
                  "Error! No input(s) specified\n"}),
    caseName<StartCase>);

// The rest of such a line is the library's own.
class ToolRefusesSyntax : public ToolStart, public testing::WithParamInterface<StartCase>
{};

TEST_P(ToolRefusesSyntax, WithAParsingErrorAndABlankLine)
{
    const ToolRun run = this->run(GetParam().arguments);

    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.substr(0, 15), "Parsing Error: ") << run;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 2) << run;
    EXPECT_EQ(run.err.substr(run.err.size() - 2), "\n\n") << run;
    EXPECT_EQ(run.exitCode, 1) << run;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ToolRefusesSyntax,
    testing::Values(
        StartCase{"NothingBehindTheSign", {"--help="}, 1, "", ""},
        StartCase{"HelpTwice", {"--help=update", "--help=update"}, 1, "", ""},
        StartCase{"UnknownOptionOfACommand", {"update", "--folly"}, 1, "", ""},
        StartCase{"OptionOfAnotherCommand", {"update", "--connect-image=x"}, 1, "", ""},
        StartCase{"OptionWithoutItsValue", {"update", "x.obl", "--output-name"}, 1, "", ""},
        StartCase{"OptionTwice", {"update", "--output-name", "a", "--output-name", "b"}, 1, "", ""},
        StartCase{"SwitchWithAValue", {"update", "--no-dependency=folly", "x.obl"}, 1, "", ""},
        StartCase{"TwoInputsForOne", {"graph-parameters-editor", "a.obl", "b.obl"}, 1, "", ""},
        StartCase{"TwoFiltersForOne", {"specialization", "a.obl", "b.obl"}, 1, "", ""}),
    caseName<StartCase>);

struct HelpCase
{
    const char* name;
    const char* command;
    const char* golden;
};

std::ostream& operator<<(std::ostream& stream, const HelpCase& c)
{
    return stream << c.name;
}

class ToolHelp : public ToolStart, public testing::WithParamInterface<HelpCase>
{};

TEST_P(ToolHelp, ListsTheOptionsOfTheCommand)
{
    const ToolRun run = this->run({std::string("--help=") + GetParam().command});

    expectGolden(GetParam().golden, run.out);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.exitCode, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, ToolHelp,
    testing::Values(HelpCase{"Update", "update", "cli/help-update.txt"},
                    HelpCase{"UpdateInCapitals", "UPDATE", "cli/help-update.txt"},
                    HelpCase{"Specialization", "specialization", "cli/help-specialization.txt"},
                    HelpCase{"Editor", "graph-parameters-editor",
                             "cli/help-graph-parameters-editor.txt"}),
    caseName<HelpCase>);

TEST_F(ToolStart, CommandNamesMatchWithoutRegardToCase)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun run = this->run({"UPDATE", "a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl a_updated.obl");
}

TEST_F(ToolStart, TokensBehindTheCommandReachItWhateverTheirForm)
{
    directory.write("--a.obl", aPackage().text());

    const ToolRun run = this->run({"update", "--output-name", "-x-", "--inputs=--a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "--a.obl -x-.obl");
}

TEST_F(ToolStart, OptionsMayStandBeforeAndBehindTheInputs)
{
    directory.write("a.obl", aPackage().text());
    directory.makeDirectory("out");

    const ToolRun run = this->run({"update", "--output-path=out", "a.obl", "--output-name=x"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl out/x.obl");
}

TEST_F(ToolStart, TheUsageNamesTheProgramUpToTheFirstPoint)
{
    const ToolRun run = Tool(directory.path()).calledAs("some/where/tool.old.exe").run({});

    EXPECT_EQ(run.out, GlobalHelp);
}

TEST_F(ToolStart, TheProgramsNameMayBeBytes)
{
    const ToolRun run = Tool(directory.path()).calledAs("/x/t\xff\xc3\xa9.exe").run({});

    EXPECT_NE(run.out.find("Usage: t\xff\xc3\xa9 [--help]"), std::string::npos) << run;
}

TEST_F(ToolStart, TheCommandsExitCodeIsThatOfTheProcess)
{
    const ToolRun run = this->run({"update", "missing.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.signal, 0);
}

// Copies of the executable, with something called "plugins" beside them.
class ToolBesidePlugins : public ToolStart
{
protected:
    ToolBesidePlugins()
    {
        directory.makeDirectory("bin");
        std::filesystem::copy_file(Tool::executable(), executable);
        directory.write("work/a.obl", aPackage().text());
    }
    ToolRun update() const
    {
        return Tool(directory.path("work")).at(executable).run({"update", "a.obl"});
    }

    const std::string executable = directory.path("bin/kestrix");
};

TEST_F(ToolBesidePlugins, RunsWithoutTheDirectory)
{
    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(directory.exists("work/a_updated.obl"));
}

TEST_F(ToolBesidePlugins, RunsWithAnEmptyDirectory)
{
    directory.makeDirectory("bin/plugins");

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
}

TEST_F(ToolBesidePlugins, RunsWithAFileInItsPlace)
{
    directory.write("bin/plugins", "no directory");

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
}

TEST_F(ToolBesidePlugins, RunsWithBrokenPlugInsInside)
{
    directory.write("bin/plugins/imageformats/libfolly.so", "no plug-in");

    const ToolRun run = update();

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
}

} // namespace

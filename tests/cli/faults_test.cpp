// What the tool does when calls of the system fail.
#include "support/assemblytext.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>

using TestSupport::aGraphWithInstance;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

const std::string Former = "the former result";

struct FaultCase
{
    const char* name;
    const char* plan;
};

std::ostream& operator<<(std::ostream& stream, const FaultCase& c)
{
    return stream << c.name;
}

// Writes in/a.obl to out/a_updated.obl.
class FaultyTool : public testing::Test
{
protected:
    FaultyTool()
    {
        directory.write("in/a.obl", aPackage().text());
        directory.makeDirectory("out");
        directory.makeDirectory("tmp");
        directory.setMode("tmp", 0777);
    }
    Tool tool(const std::string& faults) const
    {
        return Tool(directory.path())
            .withFaults(faults)
            .withEnvironment("TMPDIR", directory.path("tmp"));
    }
    ToolRun update(const std::string& faults) const
    {
        return tool(faults).run({"update", "in/a.obl", "--output-path", "out"});
    }
    std::string errorLine() const
    {
        return "Error! Cannot saved: " + directory.path("out/a_updated.obl") + "\n";
    }

    TemporaryDirectory directory;
};

// Steps of a save. A package of this size is written by one call.

class FaultySave : public FaultyTool, public testing::WithParamInterface<FaultCase>
{};

TEST_P(FaultySave, LeavesTheFormerFile)
{
    directory.write("out/a_updated.obl", Former);

    const ToolRun run = update(GetParam().plan);

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_P(FaultySave, LeavesNoNewFile)
{
    const ToolRun run = update(GetParam().plan);

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.files(), "in/a.obl");
}

INSTANTIATE_TEST_SUITE_P(Steps, FaultySave,
                         testing::Values(FaultCase{"Write", "write:1:ENOSPC"},
                                         FaultCase{"FileOnDisk", "sync:1:EIO"},
                                         FaultCase{"FileOnDiskFull", "sync:1:ENOSPC"},
                                         FaultCase{"FileOnDiskOverQuota", "sync:1:EDQUOT"},
                                         FaultCase{"FolderOnDisk", "sync:2:EIO"},
                                         FaultCase{"Rename", "rename:1+:EIO"}),
                         caseName<FaultCase>);

class FaultyReplacement : public FaultyTool, public testing::WithParamInterface<FaultCase>
{};

TEST_P(FaultyReplacement, LeavesTheFormerFile)
{
    directory.write("out/a_updated.obl", Former);
    directory.setMode("out/a_updated.obl", 0604);

    const ToolRun run = update(GetParam().plan);

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

INSTANTIATE_TEST_SUITE_P(Steps, FaultyReplacement,
                         testing::Values(FaultCase{"Permissions", "mode:1:EIO"},
                                         FaultCase{"PermissionsFull", "mode:1:ENOSPC"},
                                         // The first one is of the package that is read.
                                         FaultCase{"Close", "close:2:EIO"}),
                         caseName<FaultCase>);

TEST_F(FaultyTool, ASaveNeedsNoExchangeOfNames)
{
    directory.write("out/a_updated.obl", Former);

    const ToolRun run = update("rename:1:EINVAL");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("out/a_updated.obl"), aPackage().text());
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(FaultyTool, ASaveThatCanNeitherExchangeNorChangeNamesLeavesTheFormerFile)
{
    directory.write("out/a_updated.obl", Former);

    const ToolRun run = update("rename:1+:EINVAL");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(FaultyTool, ASaveWithoutAnExchangeOfNamesGoesBackToo)
{
    directory.write("out/a_updated.obl", Former);

    const ToolRun run = update("rename:1:EINVAL,sync:2:EIO");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(FaultyTool, AFolderThatCannotBeSyncedIsNoFailure)
{
    const ToolRun run = update("sync:2:EINVAL");

    EXPECT_EQ(run.exitCode, 0) << run;
}

// Where the folder takes no new file.

class FaultyOverwriting : public FaultyTool
{
protected:
    FaultyOverwriting()
    {
        directory.write("out/a_updated.obl", Former);
        directory.setMode("out/a_updated.obl", 0666);
        directory.setMode("out", 0555);
    }
    ToolRun overwrite(const std::string& faults) const
    {
        return tool(faults).withoutRootRights().run({"update", "in/a.obl", "--output-path", "out"});
    }
};

TEST_F(FaultyOverwriting, WritesToTheFile)
{
    const ToolRun run = overwrite("");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("out/a_updated.obl"), aPackage().text());
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

// The copy and its folder are on disk before the file is touched.
TEST_F(FaultyOverwriting, DoesNothingWithoutACopyOfTheFormerBytes)
{
    const ToolRun run = overwrite("sync:2:EIO");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(FaultyOverwriting, PutsTheFormerBytesBack)
{
    const ToolRun run = overwrite("sync:3:EIO");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(directory.read("out/a_updated.obl"), Former);
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(FaultyOverwriting, NamesTheCopyWhereTheFormerBytesCannotBePutBack)
{
    const ToolRun run = overwrite("sync:3+:EIO");

    const std::string copy =
        directory.files().substr(std::string("in/a.obl out/a_updated.obl ").size());
    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err,
              errorLine() + "Error! The former file is kept as: " + directory.path(copy) + "\n");
    EXPECT_EQ(directory.read(copy), Former);
    EXPECT_EQ(directory.mode(copy) & 07777u, 0600u);
}

// Reading.

class FaultyReading : public FaultyTool, public testing::WithParamInterface<FaultCase>
{};

TEST_P(FaultyReading, EndsTheLoad)
{
    directory.write("in/a.obl", aPackage().named(std::string(100000, 'x')).text());

    const ToolRun run = update(GetParam().plan);

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + directory.path("in/a.obl") +
                           "\nPackages cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "in/a.obl");
}

INSTANTIATE_TEST_SUITE_P(Places, FaultyReading,
                         testing::Values(FaultCase{"FromTheBegin", "read:1+:EIO"},
                                         FaultCase{"AfterTheVersions", "read:3+:EIO"},
                                         FaultCase{"InTheMiddle", "read:6+:EIO"},
                                         FaultCase{"Once", "read:5:EIO"}),
                         caseName<FaultCase>);

class FaultyDescription : public FaultyTool, public testing::WithParamInterface<FaultCase>
{};

// The description of an assembly is the second file that is read.
TEST_P(FaultyDescription, EndsTheLoad)
{
    directory.write("in/a.oblasm", TestSupport::anAssemblyBody());
    directory.write("in/a.xml", TestSupport::aDescription(TestSupport::aDescribedGraph("wood")));

    const ToolRun run = tool(GetParam().plan).run({"update", "in/a.oblasm"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + directory.path("in/a.oblasm") +
                           "\nPackages cannot be correctly loaded\n");
}

INSTANTIATE_TEST_SUITE_P(Places, FaultyDescription,
                         testing::Values(FaultCase{"FromTheBegin", "read:2+:EIO"},
                                         FaultCase{"BehindAPart", "read:2:SHORT,read:3+:EIO"},
                                         FaultCase{"Opening", "open:2:EIO"}),
                         caseName<FaultCase>);

TEST_F(FaultyTool, AFileIsOpenedAgainWhereASignalBreaksThatOff)
{
    const ToolRun run = update("open:1:EINTR");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("out/a_updated.obl"), aPackage().text());
}

// Commands of which one call fails, in one run after the other.

struct CommandCase
{
    const char* name;
    Arguments arguments;
};

std::ostream& operator<<(std::ostream& stream, const CommandCase& c)
{
    return stream << c.name;
}

class FaultyCommand : public FaultyTool, public testing::WithParamInterface<CommandCase>
{
protected:
    FaultyCommand()
    {
        const std::string instance = aGraphWithInstance("i", "pkg://g?dependency=5");
        directory.write("in/a.obl", aPackage()
                                        .dependingOnItself(5)
                                        .dependingOn("b.obl", 6)
                                        .containing(instance + aResource("r", "x.png"))
                                        .text());
    }
    // A dependency of the input, and a package to merge with.
    void writeOthers() const
    {
        directory.write("in/b.obl", aPackage().text());
        directory.write("in/c.obl", aPackage().named("former").text());
    }
    // All that a run printed and wrote, without what comes from the clock.
    std::string resultOf(const ToolRun& run) const
    {
        std::ostringstream result;
        result << run << '\n';
        std::istringstream names(directory.files());
        for (std::string name; names >> name;)
            result << name << ' ' << (name == "counts" ? "" : directory.read(name)) << '\n';
        static const std::regex fromTheClock("\\{[-0-9a-f]{36}\\}|[0-9]{9,10}");
        return std::regex_replace(result.str(), fromTheClock, "clock");
    }
    ToolRun runWith(const std::string& faults)
    {
        for (const char* name :
             {"a_updated.obl", "b_updated.obl", "a_edited.obl", "a_specialized.obl"})
            std::filesystem::remove(directory.path(name));
        std::filesystem::remove_all(directory.path("out"));
        directory.makeDirectory("out");
        writeOthers();
        return tool(faults).run(GetParam().arguments);
    }
    unsigned long countOf(const std::string& wanted) const
    {
        writeOthers();
        tool("")
            .withEnvironment("FAULT_COUNTS", directory.path("counts"))
            .run(GetParam().arguments);
        std::istringstream counts(directory.read("counts"));
        std::string word;
        unsigned long count = 0;
        while (counts >> word >> count && word != wanted) {
        }
        return count;
    }
    // The first run that neither did all nor ended as `isRefusal` says; empty if there is none.
    static std::string planOf(const std::string& word, unsigned long number)
    {
        return word + ':' + std::to_string(number);
    }
    // Each call fails, or every `step`th. `ending` completes the plan behind its number.
    std::string firstBadRun(const std::string& word, unsigned long step, const std::string& ending,
                            bool (*isRefusal)(const ToolRun&))
    {
        const unsigned long count = countOf(word);
        const std::string whole = resultOf(runWith(""));
        for (unsigned long i = 1; i <= count; i += step) {
            const std::string plan = planOf(word, i).append(ending);
            const ToolRun run = runWith(plan);
            const std::string result = resultOf(run);
            if (result != whole && !isRefusal(run))
                return std::string(plan).append(": ").append(result);
        }
        return {};
    }
};

bool failsWithALine(const ToolRun& run)
{
    return run.exitCode == 1 && !run.err.empty();
}

// Memory.

class FaultyMemory : public FaultyCommand
{
protected:
    // As many runs are made for each command, over all of its allocations.
    static constexpr unsigned long Runs = 500;

    std::string firstBadRun()
    {
        const unsigned long step = std::max(1ul, countOf("alloc") / Runs);
        return FaultyCommand::firstBadRun("alloc", step, "", [](const ToolRun& run) {
            return run.exitCode == 1 && run.err == "Error! Out of memory\n";
        });
    }
};

TEST_P(FaultyMemory, EndsWithOneLineOrAllThatWasWanted)
{
    EXPECT_EQ(firstBadRun(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Commands, FaultyMemory,
    testing::Values(CommandCase{"Update", {"update", "in/a.obl"}},
                    CommandCase{"Editor", {"graph-parameters-editor", "in/a.obl"}},
                    CommandCase{"Specialization",
                                {"specialization", "in/a.obl", "--output-graph-name",
                                 "a_name_with_more_than_fifteen_letters"}},
                    CommandCase{"Help", {"--help=specialization"}}),
    caseName<CommandCase>);

// Places that cannot be found for a moment.

class FaultyPlace : public FaultyCommand
{};

TEST_P(FaultyPlace, MakesNoOtherResult)
{
    EXPECT_EQ(firstBadRun("place", 1, ":EIO", &failsWithALine), "");
}

TEST_P(FaultyPlace, IsNoMissingOneWhereMemoryIsMissing)
{
    EXPECT_EQ(firstBadRun("place", 1, ":ENOMEM", &failsWithALine), "");
}

INSTANTIATE_TEST_SUITE_P(
    Commands, FaultyPlace,
    testing::Values(
        CommandCase{"Update", {"update", "in/a.obl", "--output-path", "out"}},
        CommandCase{"Editor", {"graph-parameters-editor", "in/a.obl", "--output-path", "out"}},
        CommandCase{"Specialization", {"specialization", "in/a.obl", "--output-path", "out"}}),
    caseName<CommandCase>);

// Folders and links that go away while the tool runs, so that no path can be found any more. The
// input is given by a link.

class FaultyPlaces : public FaultyCommand
{
protected:
    FaultyPlaces() { std::filesystem::create_symlink("a.obl", directory.path("in/link.obl")); }
};

TEST_P(FaultyPlaces, EndWithALineThatNamesNoFileElsewhere)
{
    const std::string bad = firstBadRun("place", 1, "+:ENOENT", [](const ToolRun& run) {
        return failsWithALine(run) && run.err.find("Cannot saved: /out/") == std::string::npos;
    });

    EXPECT_EQ(bad, "");
}

INSTANTIATE_TEST_SUITE_P(
    Commands, FaultyPlaces,
    testing::Values(
        CommandCase{"Update", {"update", "in/link.obl", "--output-path", "out"}},
        CommandCase{"Editor", {"graph-parameters-editor", "in/link.obl", "--output-path", "out"}},
        CommandCase{"Specialization", {"specialization", "in/link.obl", "--output-path", "out"}}),
    caseName<CommandCase>);

// A target that is to be merged with.

class FaultyMerge : public FaultyCommand
{};

TEST_P(FaultyMerge, OverwritesNoFileWithoutAWord)
{
    const std::string bad = firstBadRun("stat", 1, ":EIO", [](const ToolRun& run) {
        return failsWithALine(run) || run.err.find("Warning! Output file") != std::string::npos;
    });

    EXPECT_EQ(bad, "");
}

INSTANTIATE_TEST_SUITE_P(Commands, FaultyMerge,
                         testing::Values(CommandCase{"IntoAPackage",
                                                     {"specialization", "in/a.obl", "--output-path",
                                                      "in", "--output-name", "c",
                                                      "--output-merge"}}),
                         caseName<CommandCase>);

} // namespace

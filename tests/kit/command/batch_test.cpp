// The command "batch" of the built tool.
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <unistd.h>

using testing::HasSubstr;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::replaced;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;
using TestSupport::withDependencyUidsHidden;

namespace {

class BatchCommand : public testing::Test
{
protected:
    BatchCommand() { directory.write("lib/a.obl", aPackage().text()); }

    ToolRun run(const Arguments& arguments) const
    {
        Arguments words = {"batch"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return Tool(directory.path()).at(ksxPath()).run(words);
    }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(BatchCommand, ShowsItsOptions)
{
    expectGolden("kit/help-batch.txt", run({"--help"}).out);
}

TEST_F(BatchCommand, RefusesAnOptionOfAnotherPart)
{
    const ToolRun found = run({"plan", "update", "lib", "--to", "out", "--json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("The option '--json' is none of 'ksx batch plan'"));
}

TEST_F(BatchCommand, RefusesAnUnknownPart)
{
    EXPECT_EQ(run({"plant"}).exitCode, 2);
}

TEST_F(BatchCommand, PlansToStandardOutput)
{
    const ToolRun found = run({"plan", "update", "lib", "--to", "out"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_THAT(found.out, HasSubstr("\"input\":\"a.obl\""));
    EXPECT_FALSE(directory.exists("out"));
}

TEST_F(BatchCommand, SumsUpAPlanInAFile)
{
    directory.write("lib/b.obl", aPackage().dependingOn("none.obl", 5).text());

    const ToolRun found = run({"plan", "update", "lib", "--to", "out", "-o", "plan.json"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_THAT(found.out, HasSubstr("lib/none.obl for the dependency none.obl\npackages: 2, "));
    EXPECT_TRUE(directory.exists("plan.json"));
}

TEST_F(BatchCommand, WritesNoPlanInPlaceOfAPackage)
{
    directory.write("lib/b.obl", "no package");
    directory.makeLink("link", "lib/a.obl");
    const std::string before = directory.files();

    const ToolRun direct = run({"plan", "update", "lib", "--to", "out", "-o", "lib/a.obl"});
    const ToolRun linked = run({"plan", "update", "lib", "--to", "out", "-o", "link"});
    const ToolRun leftOut = run({"plan", "update", "lib", "--to", "out", "-o", "lib/b.obl"});

    EXPECT_EQ(direct.exitCode, 2) << direct;
    EXPECT_THAT(direct.err, HasSubstr("would take the place of the package lib/a.obl"));
    EXPECT_EQ(linked.exitCode, 2) << linked;
    EXPECT_EQ(leftOut.exitCode, 2) << leftOut;
    EXPECT_EQ(directory.files(), before);
}

TEST_F(BatchCommand, PlansTheOthersOfAnUnreadablePackage)
{
    directory.write("lib/b.obl", "no package");

    const ToolRun found = run({"plan", "update", "lib", "--to", "out", "-o", "plan.json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("lib/b.obl: "));
    EXPECT_THAT(found.out, HasSubstr("packages: 1, "));
}

TEST_F(BatchCommand, NotesWhichResultsAppearTogether)
{
    const ToolRun component = run({"plan", "update", "--all-or-none", "lib", "--to", "out"});
    const ToolRun whole =
        run({"plan", "update", "lib", "--all-or-none", "--whole-plan", "--to", "out"});

    EXPECT_THAT(component.out, HasSubstr("\"allOrNone\":\"component\""));
    EXPECT_THAT(whole.out, HasSubstr("\"allOrNone\":\"plan\""));
}

TEST_F(BatchCommand, TakesWholePlansAloneIfAllOrNoneShallAppear)
{
    const ToolRun found = run({"plan", "update", "lib", "--whole-plan", "--to", "out"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("'--whole-plan' is one of '--all-or-none'"));
}

TEST_F(BatchCommand, RefusesResultsAmongThePackages)
{
    const ToolRun found = run({"plan", "update", "lib", "--to", "lib/out"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("are in each other"));
}

TEST_F(BatchCommand, RefusesResultsAmongThePackagesByALink)
{
    directory.makeLink("link", "lib");

    EXPECT_EQ(run({"plan", "update", "lib", "--to", "link/out"}).exitCode, 2);
}

TEST_F(BatchCommand, RefusesAFolderThatIsNone)
{
    const ToolRun found = run({"plan", "update", "lib/a.obl", "--to", "out"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("There is no folder lib/a.obl"));
}

TEST_F(BatchCommand, RefusesAPlanWithoutATarget)
{
    EXPECT_EQ(run({"plan", "update", "lib"}).exitCode, 2);
}

TEST_F(BatchCommand, PlansTheSameWithAnyNumberOfWorkers)
{
    directory.write("lib/b.obl", aPackage().dependingOn("a.obl", 5).text());
    directory.write("lib/c.obl", aPackage().dependingOn("none.obl", 5).text());

    const ToolRun one = run({"plan", "update", "lib", "--to", "out", "--jobs", "1"});
    const ToolRun four = run({"plan", "update", "lib", "--to", "out", "--jobs", "4"});

    EXPECT_EQ(one.out, four.out);
}

namespace {

class BatchRun : public BatchCommand
{
protected:
    BatchRun()
    {
        directory.write("lib/b.obl", aPackage().dependingOn("a.obl", 5).text());
        directory.write("lib/sub/c.obl", aPackage().dependingOn("../b.obl", 7).text());
        directory.write("lib/d.obl", aPackage().named("d").text());
    }

    ToolRun plan(const Arguments& more = {}) const
    {
        Arguments words = {"plan", "update", "lib", "--to", "out", "-o", "plan.json"};
        words.insert(words.end(), more.begin(), more.end());
        return run(words);
    }
    ToolRun planAndRun(const Arguments& planning = {}, const Arguments& running = {}) const
    {
        plan(planning);
        Arguments words = {"run", "plan.json"};
        words.insert(words.end(), running.begin(), running.end());
        return run(words);
    }
    // All results, and nothing of the state.
    std::string results() const
    {
        return directory.read("out/a.obl") + directory.read("out/b.obl") +
               directory.read("out/d.obl") + directory.read("out/sub/c.obl");
    }
    std::string lockedFile(const std::string& name, const std::string& bytes) const
    {
        return directory.write("out/.ksx-batch/" + name, bytes);
    }
};

// A lock that another process could have.
class Lock
{
public:
    explicit Lock(const std::string& file) : m_file(open(file.c_str(), O_RDWR))
    {
        EXPECT_EQ(flock(m_file, LOCK_EX), 0);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { close(m_file); }
    void share() const { EXPECT_EQ(flock(m_file, LOCK_SH), 0); }

private:
    int m_file;
};

#ifndef __SANITIZE_ADDRESS__
// A package of more than 40 MB in memory.
std::string aLargePackage()
{
    std::string groups;
    for (int i = 0; i < 150000; ++i)
        groups += aGroup("g" + std::to_string(i));
    return aPackage().containing(groups).text();
}
#endif

} // namespace

TEST_F(BatchRun, WritesAllPackages)
{
    const ToolRun found = planAndRun();

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "done: 4, failed: 0, left as they are: 0\n");
    EXPECT_EQ(found.err, "");
    EXPECT_EQ(directory.read("out/d.obl"), aPackage().named("d").text());
}

TEST_F(BatchRun, GivesTheBytesOfOneUpdateButForUids)
{
    directory.write(
        "lib/old.obl",
        aPackage().with("updaterVersion", "1.0.1.3000").dependingOn("b.kestrix", 9).text());
    directory.makeDirectory("whole");
    planAndRun({"--shards", "2"}, {"--jobs", "2"});

    const ToolRun whole = Tool(directory.path())
                              .run({"update", "lib/a.obl", "lib/b.obl", "lib/d.obl", "lib/old.obl",
                                    "--output-path", "whole", "--output-name", "{inputName}"});

    EXPECT_EQ(whole.exitCode, 0) << whole;
    const auto text = [this](const std::string& name) {
        return withDependencyUidsHidden(directory.read(name));
    };
    EXPECT_EQ(text("out/a.obl"), text("whole/a.obl"));
    EXPECT_EQ(text("out/b.obl"), text("whole/b.obl"));
    EXPECT_EQ(text("out/d.obl"), text("whole/d.obl"));
    EXPECT_EQ(text("out/old.obl"), text("whole/old.obl"));
}

TEST_F(BatchRun, GivesTheSameBytesForAnyShardsAndWorkersWithAClock)
{
    planAndRun({"--clock", "7"}, {"--jobs", "1"});
    const std::string one = results();
    std::filesystem::remove_all(directory.path("out"));

    planAndRun({"--clock", "7", "--shards", "2"}, {"--jobs", "3"});

    EXPECT_EQ(results(), one);
}

TEST_F(BatchRun, WritesOneShardAlone)
{
    const ToolRun found = planAndRun({"--shards", "2"}, {"--shard", "2"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_TRUE(directory.exists("out/d.obl"));
    EXPECT_FALSE(directory.exists("out/a.obl"));
}

TEST_F(BatchRun, RefusesAShardThatThePlanDoesNotHave)
{
    EXPECT_EQ(planAndRun({}, {"--shard", "2"}).exitCode, 2);
}

TEST_F(BatchRun, LeavesOutADamagedPackageAndThoseThatNeedIt)
{
    plan();
    directory.write("lib/b.obl", replaced(directory.read("lib/b.obl"), "</package>", "</pack>"));

    const ToolRun found = run({"run", "plan.json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("lib/b.obl: it is no sound document"));
    EXPECT_THAT(found.err, HasSubstr("lib/sub/c.obl: it needs " + directory.path("lib/b.obl")));
    EXPECT_EQ(found.out, "done: 2, failed: 2, left as they are: 0\n");
    EXPECT_TRUE(directory.exists("out/a.obl"));
    EXPECT_FALSE(directory.exists("out/b.obl"));
}

TEST_F(BatchRun, RefusesAnInputThatHasChangedSinceThePlan)
{
    plan();
    directory.write("lib/d.obl", aPackage().named("e").text());

    const ToolRun found = run({"run", "plan.json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! " + directory.path("lib/d.obl") +
                             ": it has changed since the plan was made\n");
    EXPECT_FALSE(directory.exists("out/d.obl"));
}

TEST_F(BatchRun, RefusesADependencyThatHasChangedSinceThePlan)
{
    plan();
    directory.write("lib/a.obl", aPackage().named("other").text());

    const ToolRun found = run({"run", "plan.json"});

    EXPECT_THAT(found.err, HasSubstr("lib/b.obl: it needs " + directory.path("lib/a.obl") +
                                     ": it has changed since the plan was made\n"));
    EXPECT_EQ(found.out, "done: 1, failed: 3, left as they are: 0\n");
}

TEST_F(BatchRun, TakesAnInputThatWasWrittenAgainWithTheSameBytes)
{
    plan();
    directory.write("lib/d.obl", aPackage().named("d").text());

    EXPECT_EQ(run({"run", "plan.json"}).exitCode, 0);
}

#ifndef __SANITIZE_ADDRESS__ // takes much more memory itself
TEST_F(BatchRun, LeavesOutAPackageThatTakesTooMuchMemory)
{
    directory.write("lib/c.obl", aLargePackage());
    directory.write("lib/e.obl", aPackage().dependingOn("c.obl", 5).dependingOn("d.obl", 6).text());

    const ToolRun found = planAndRun({}, {"--memory", "12"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("lib/c.obl: it takes more than 12 MiB of memory"));
    EXPECT_THAT(found.err, HasSubstr("lib/e.obl: it needs " + directory.path("lib/c.obl")));
    EXPECT_EQ(found.out, "done: 4, failed: 2, left as they are: 0\n");
}
#endif

TEST_F(BatchRun, TellsOfAResultThatCannotBeWritten)
{
    directory.makeDirectory("out/d.obl");

    const ToolRun found = planAndRun();

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err,
              "Error! " + directory.path("lib/d.obl") + ": the result cannot be written\n");
}

TEST_F(BatchRun, RefusesAPlanThatIsNone)
{
    directory.write("plan.json", "{}");

    const ToolRun found = run({"run", "plan.json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! plan.json: it is no sound plan: ksx is no number of its range\n");
}

TEST_F(BatchRun, RefusesATargetIntoWhichAnotherPlanIsRun)
{
    plan();
    const Lock lock(lockedFile("lock", "another"));
    lock.share();

    const ToolRun found = run({"run", "plan.json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("out: another batch is run into the folder"));
    EXPECT_FALSE(directory.exists("out/a.obl"));
}

TEST_F(BatchRun, RefusesAShardOnWhichAnotherRunWorks)
{
    plan({"--shards", "2"});
    const Lock lock(lockedFile("shard-000001.log", ""));

    const ToolRun found = run({"run", "plan.json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("shard 1: another run works on it"));
    EXPECT_THAT(found.out, HasSubstr("left as they are: 3"));
}

TEST_F(BatchRun, ResumesWithWhatIsNotDone)
{
    planAndRun();
    const std::string before = results();
    std::filesystem::remove(directory.path("out/d.obl"));

    const ToolRun found = run({"resume", "plan.json"});

    EXPECT_EQ(found.out, "done: 1, failed: 0, left as they are: 3\n");
    EXPECT_EQ(results(), before);
}

TEST_F(BatchRun, ResumesWithAResultThatHasOtherBytes)
{
    planAndRun();
    directory.write("out/d.obl", "half a pack");

    EXPECT_EQ(run({"resume", "plan.json"}).out, "done: 1, failed: 0, left as they are: 3\n");
}

TEST_F(BatchRun, ResumesWithPackagesThatHaveChangedInANewPlan)
{
    planAndRun();
    directory.write("lib/d.obl", aPackage().named("e").text());
    plan({"--shards", "2"});

    EXPECT_EQ(run({"resume", "plan.json"}).out, "done: 1, failed: 0, left as they are: 3\n");
    EXPECT_EQ(run({"status", "plan.json"}).exitCode, 0);
}

TEST_F(BatchRun, ResumesBehindAJournalThatWasCutOff)
{
    planAndRun();
    const std::string report = directory.read("out/.ksx-batch/shard-000001.json");
    std::filesystem::remove(directory.path("out/.ksx-batch/shard-000001.json"));
    lockedFile("shard-000001.log", report.substr(0, report.rfind("\"state\"")));

    const ToolRun found = run({"resume", "plan.json"});

    EXPECT_EQ(found.out, "done: 3, failed: 0, left as they are: 1\n");
    EXPECT_EQ(run({"status", "plan.json"}).exitCode, 0);
}

TEST_F(BatchRun, DoesAllAgainWithoutResuming)
{
    planAndRun();

    EXPECT_EQ(run({"run", "plan.json"}).out, "done: 4, failed: 0, left as they are: 0\n");
}

TEST_F(BatchRun, TellsItsStatus)
{
    planAndRun({"--shards", "2"}, {"--shard", "1"});
    directory.write("out/a.obl", "other bytes");

    const ToolRun found = run({"status", "plan.json"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(found.out, "shard 1: done: 2, changed: 1, failed: 0, pending: 0\n"
                         "shard 2: done: 0, changed: 0, failed: 0, pending: 1\n"
                         "all: done: 2, changed: 1, failed: 0, pending: 1\n");
}

TEST_F(BatchRun, ReportsWhatIsNotDone)
{
    directory.write("lib/e.obl", aPackage().dependingOn("none.obl", 5).text());
    planAndRun();
    directory.write("out/a.obl", "other bytes");

    const ToolRun found = run({"report", "plan.json"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_THAT(found.out, HasSubstr("out/a.obl: it is not as it was written\n"));
    EXPECT_THAT(found.out, HasSubstr("lib/e.obl: it needs " + directory.path("lib/none.obl") +
                                     ": there is no such file\n"));
    EXPECT_THAT(found.out, HasSubstr("done: 3, changed: 1, failed: 1, pending: 0, seconds: "));
}

TEST_F(BatchRun, VerifiesThatAnotherUpdateGivesTheSameBytes)
{
    directory.write("lib/e.obl", aPackage().dependingOnItself(9).dependingOn("a.obl", 8).text());
    planAndRun();
    const std::string before = directory.files();

    const ToolRun found = run({"verify", "plan.json"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "the same: 5, not the same: 0\n");
    EXPECT_EQ(directory.files(), before);
}

TEST_F(BatchRun, VerifiesNoResultThatHasOtherBytes)
{
    planAndRun();
    directory.write("out/d.obl", aPackage().named("e").text());

    const ToolRun found = run({"verify", "plan.json"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(found.out,
              directory.path("out/d.obl") + ": it is changed\nthe same: 3, not the same: 1\n");
}

TEST_F(BatchRun, ListsACommandForEachShard)
{
    plan({"--shards", "2"});

    EXPECT_EQ(run({"commands", "plan.json"}).out, "ksx batch run 'plan.json' --shard 1\n"
                                                  "ksx batch run 'plan.json' --shard 2\n");
}

TEST_F(BatchRun, SubmitsToNoQueueThatIsNotNamed)
{
    plan();

    EXPECT_EQ(run({"submit", "plan.json"}).exitCode, 2);
}

TEST_F(BatchRun, QuotesThePlanForAShell)
{
    run({"plan", "update", "lib", "--to", "out", "-o", "my 'plan'.json"});

    EXPECT_EQ(run({"commands", "my 'plan'.json"}).out,
              "ksx batch run 'my '\\''plan'\\''.json' --shard 1\n");
}

// What a save leaves when one call of the system fails, whichever it is.
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <array>
#include <sstream>
#include <sys/xattr.h>
#include <unistd.h>

using TestSupport::aPackage;
using TestSupport::caseName;
using TestSupport::NobodyId;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

const std::string Former = "the former result";
const std::string Target = "out/a_updated.obl";

struct FaultCase
{
    const char* name;
    const char* plan;
};

std::ostream& operator<<(std::ostream& stream, const FaultCase& c)
{
    return stream << c.name;
}

// A folder with in/a.obl, whose update goes to the target.
class Place
{
public:
    Place()
    {
        directory.write("in/a.obl", aPackage().text());
        directory.makeDirectory("out");
        directory.makeDirectory("tmp");
        directory.setMode("tmp", 0777);
        directory.setMode("out", 0777);
    }
    ToolRun update(const std::string& faults, bool hasRights = true) const
    {
        Tool tool(directory.path());
        tool.withFaults(faults).withEnvironment("TMPDIR", directory.path("tmp"));
        if (!hasRights)
            tool.withoutRootRights();
        return tool.withEnvironment("FAULT_COUNTS", directory.path("counts"))
            .run({"update", "in/a.obl", "--output-path", "out"});
    }
    std::string target() const { return directory.exists(Target) ? directory.read(Target) : ""; }
    bool isSaved() const { return target() == aPackage().text(); }
    // Returns how many calls of that word the last run made.
    unsigned long countOf(const std::string& wanted) const
    {
        std::istringstream counts(directory.read("counts"));
        std::string word;
        unsigned long count = 0;
        while (counts >> word >> count && word != wanted) {
        }
        return count;
    }
    // Belongs to nobody, where the test may give files away.
    void writeFormer(unsigned mode) const
    {
        directory.write(Target, Former);
        directory.setMode(Target, mode);
        const unsigned owner = Tool::isRoot() ? NobodyId : geteuid();
        EXPECT_EQ(chown(directory.path(Target).c_str(), owner, getegid()), 0);
    }

    TemporaryDirectory directory;
};

struct WayCase
{
    const char* name;
    void (*prepare)(const Place& place);
    bool hasRights;
    const char* plan; // faults that lead to the way
};

std::ostream& operator<<(std::ostream& stream, const WayCase& c)
{
    return stream << c.name;
}

// The ways that a save takes, each of which makes calls that the others do not make.
class WayOfSaving : public testing::TestWithParam<WayCase>
{
protected:
    static constexpr std::array Words = {"open",  "read",   "write", "sync",  "close",  "rename",
                                         "link",  "mode",   "owner", "trunc", "remove", "stat",
                                         "place", "access", "seek",  "extra", "control"};

    static ToolRun runIn(const Place& place, const std::string& plan)
    {
        GetParam().prepare(place);
        return place.update(std::string(GetParam().plan).append(plan), GetParam().hasRights);
    }
    static unsigned long countOf(const std::string& wanted)
    {
        const Place place;
        place.directory.write("counts", "");
        place.directory.setMode("counts", 0666);
        runIn(place, "");
        return place.countOf(wanted);
    }
    // Returns true if the line names a copy of the former bytes.
    static bool keepsCopy(const ToolRun& run, const Place& place)
    {
        const std::string words = "kept as: " + place.directory.path() + "/";
        const std::size_t begin = run.err.find(words);
        return begin != std::string::npos &&
               place.directory.read(run.err.substr(
                   begin + words.size(), run.err.size() - begin - words.size() - 1)) == Former;
    }
    static bool keepsThePromise(const ToolRun& run, const Place& place)
    {
        if (run.exitCode == 0)
            return place.isSaved();
        const std::string former = std::string(GetParam().name) == "New" ? "" : Former;
        return run.exitCode == 1 && !run.err.empty() &&
               (place.target() == former || place.isSaved() || keepsCopy(run, place));
    }
    static std::string firstBrokenPromise(const std::string& error)
    {
        for (const char* word : Words) {
            const unsigned long count = countOf(word);
            for (unsigned long i = 1; i <= count; ++i) {
                const std::string plan =
                    std::string(",").append(word) + ':' + std::to_string(i) + ':' + error;
                const Place place;
                const ToolRun run = runIn(place, plan);
                place.directory.setMode("out", 0777);
                std::ostringstream report;
                report << plan << ": " << run << ", left: " << place.target();
                if (!keepsThePromise(run, place))
                    return report.str();
            }
        }
        return {};
    }
};

TEST_P(WayOfSaving, KeepsOneOfTheTwoFilesAtAnErrorOfTheDevice)
{
    EXPECT_EQ(firstBrokenPromise("EIO"), "");
}

TEST_P(WayOfSaving, KeepsOneOfTheTwoFilesWhereACallIsNotAllowed)
{
    EXPECT_EQ(firstBrokenPromise("EPERM"), "");
}

TEST_P(WayOfSaving, KeepsOneOfTheTwoFilesWhereASignalBreaksACallOff)
{
    EXPECT_EQ(firstBrokenPromise("EINTR"), "");
}

void makeNothing(const Place& /*place*/) {}

void makeFormer(const Place& place)
{
    place.writeFormer(0644);
    // Fails where the file system has no attributes, and so there is less to try.
    setxattr(place.directory.path(Target).c_str(), "user.note", "kept", 4, 0);
}

void makeFormerInAFolderThatTakesNoOther(const Place& place)
{
    place.writeFormer(0666);
    place.directory.setMode("out", 0555);
}

void makeFolderThatMayNotBeListed(const Place& place)
{
    place.directory.write(Target, Former);
    place.directory.setMode(Target, 0666);
    place.directory.setMode("out", 0333);
}

INSTANTIATE_TEST_SUITE_P(
    Ways, WayOfSaving,
    testing::Values(
        WayCase{"New", &makeNothing, true, ""}, WayCase{"Replaced", &makeFormer, true, ""},
        WayCase{"ReplacedWithoutAnExchange", &makeFormer, true, "rename:1:EINVAL"},
        WayCase{"ReplacedWithoutAnyCopy", &makeFormer, true, "rename:1:EINVAL,link:1:EIO"},
        WayCase{"Overwritten", &makeFormerInAFolderThatTakesNoOther, false, ""},
        WayCase{"InAFolderThatMayNotBeListed", &makeFolderThatMayNotBeListed, false, ""}),
    caseName<WayCase>);

// Several calls.

class SaveWithFaults : public testing::Test
{
protected:
    std::string errorLine() const
    {
        return "Error! Cannot saved: " + place.directory.path(Target) + "\n";
    }

    const Place place;
};

TEST_F(SaveWithFaults, NamesTheFormerFileThatCannotGetItsNameBack)
{
    place.writeFormer(0644);

    const ToolRun run = place.update("sync:2:EIO,rename:2:EIO");

    EXPECT_EQ(run.exitCode, 1) << run;
    ASSERT_EQ(run.err.find(errorLine() + "Error! The former file is kept as: "), 0u) << run;
    const std::string kept = run.err.substr(run.err.find(place.directory.path("out/.orv-")));
    EXPECT_EQ(place.directory.read(kept.substr(0, kept.size() - 1)), Former);
    EXPECT_TRUE(place.isSaved());
}

TEST_F(SaveWithFaults, LeavesTheFormerFileWithoutAnyWayToReplaceIt)
{
    place.writeFormer(0644);

    const ToolRun run = place.update("rename:1:EINVAL,rename:2:EIO,link:1:EIO");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_EQ(place.target(), Former);
    EXPECT_EQ(place.directory.files(), "counts in/a.obl out/a_updated.obl");
}

// The former file cannot be kept meanwhile, so there is no way back.
TEST_F(SaveWithFaults, LeavesTheNewFileWhereTheFormerOneCouldNotBeKept)
{
    place.writeFormer(0644);

    const ToolRun run = place.update("rename:1:EINVAL,link:1:EIO,sync:2:EIO");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
    EXPECT_TRUE(place.isSaved());
    EXPECT_EQ(place.directory.files(), "counts in/a.obl out/a_updated.obl");
}

TEST_F(SaveWithFaults, TakesNameAfterNameAndGivesUpWhereAllAreTaken)
{
    // The first file that is opened is the input, and then comes the folder.
    const ToolRun run = place.update("open:3+:EEXIST");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
}

class HarmlessFault : public SaveWithFaults, public testing::WithParamInterface<FaultCase>
{};

TEST_P(HarmlessFault, KeepsNoSaveFromItsEnd)
{
    place.writeFormer(0604);

    const ToolRun run = place.update(GetParam().plan);

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(place.isSaved());
    EXPECT_EQ(place.directory.files(), "counts in/a.obl out/a_updated.obl");
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, HarmlessFault,
    testing::Values(FaultCase{"ExchangeIsNotKnownToTheFileSystem", "rename:1:EINVAL"},
                    FaultCase{"ExchangeIsNotKnownToTheSystem", "rename:1:ENOSYS"},
                    FaultCase{"ExchangeIsNotSupported", "rename:1:EOPNOTSUPP"},
                    FaultCase{"ExchangeIsForbidden", "rename:1:EPERM"},
                    FaultCase{"TheNameIsTaken", "open:3:EEXIST"},
                    FaultCase{"CloseIsBrokenOff", "close:2:EINTR"},
                    FaultCase{"TheOwnerMayNotBeGiven", "owner:1:EPERM"},
                    FaultCase{"NeitherOwnerNorGroupMayBeGiven", "owner:1+:EPERM"},
                    FaultCase{"AttributesMayNotBeListed", "extra:1+:EPERM"},
                    FaultCase{"ThereIsNoAccessList", "extra:2:ENODATA"},
                    FaultCase{"AttributesAreNotSupported", "extra:1+:EOPNOTSUPP"}),
    caseName<FaultCase>);

TEST_F(SaveWithFaults, NeedsNoNameOfATemporaryFolder)
{
    makeFormerInAFolderThatTakesNoOther(place);

    const ToolRun run = Tool(place.directory.path())
                            .withEnvironment("TMPDIR", "")
                            .withoutRootRights()
                            .run({"update", "in/a.obl", "--output-path", "out"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(place.isSaved());
}

TEST_F(SaveWithFaults, NeedsNoDeviceThatCanBeSynced)
{
    place.directory.makeLink(Target, "/dev/null");

    const ToolRun run = place.update("sync:1:EOPNOTSUPP");

    EXPECT_EQ(run.exitCode, 0) << run;
}

// The group of the process is not to get the permissions of the former one.
TEST_F(SaveWithFaults, GivesAnotherGroupThePermissionsOfOthers)
{
    if (!Tool::isRoot())
        GTEST_SKIP() << "only root has another owner's file";
    place.writeFormer(0674);
    ASSERT_EQ(chown(place.directory.path(Target).c_str(), NobodyId, NobodyId), 0);

    const ToolRun run = place.update("owner:1+:EPERM");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(place.directory.mode(Target) & 07777u, 0644u);
}

class FaultyDevice : public SaveWithFaults, public testing::WithParamInterface<FaultCase>
{};

TEST_P(FaultyDevice, EndsTheSave)
{
    place.directory.makeLink(Target, "/dev/null");

    const ToolRun run = place.update(GetParam().plan);

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
}

INSTANTIATE_TEST_SUITE_P(Calls, FaultyDevice,
                         testing::Values(FaultCase{"Open", "open:2:EIO"},
                                         FaultCase{"Questions", "control:1+:EIO"},
                                         FaultCase{"Write", "write:1:EIO"},
                                         FaultCase{"Sync", "sync:1:EIO"},
                                         FaultCase{"Close", "close:2:EIO"}),
                         caseName<FaultCase>);

// Without that the write would not wait for the reader of a pipe.
TEST_F(SaveWithFaults, NeedsADeviceThatCanBeMadeToWait)
{
    place.directory.makeLink(Target, "/dev/null");
    place.update("");
    const std::string last = std::to_string(place.countOf("control"));

    const ToolRun run = place.update("control:" + last + ":EIO");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, errorLine());
}

} // namespace

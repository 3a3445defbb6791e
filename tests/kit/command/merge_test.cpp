// The command "merge" of the built tool.
#include "kit/graphpackages.h"
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::readFile;
using TestSupport::replaced;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

std::string byAuthor(const std::string& author, const std::string& identifier = "package")
{
    return aPackage().named(identifier).with("author", author).text();
}

class MergeCommand : public testing::Test
{
protected:
    MergeCommand() { directory.write("base.obl", byAuthor("a")); }

    ToolRun run(const Arguments& arguments) const
    {
        return Tool(directory.path()).at(ksxPath()).run(arguments);
    }
    ToolRun merge(const Arguments& options) const
    {
        Arguments all = {"merge", "base.obl", "ours.obl", "theirs.obl"};
        all.insert(all.end(), options.begin(), options.end());
        return run(all);
    }
    void writeJoining() const
    {
        directory.write("ours.obl", byAuthor("b"));
        directory.write("theirs.obl", byAuthor("a", "other"));
    }
    void writeConflicting() const
    {
        directory.write("ours.obl", byAuthor("b"));
        directory.write("theirs.obl", byAuthor("c"));
    }
    // Writes two changed copies of an example, of which some changes are of the same members.
    void writePlanks() const
    {
        const std::string text = readFile(sourcePath("examples/wood/wood_planks.obl"));
        directory.write("base.obl", text);
        directory.write("ours.obl", replaced(replaced(text, "v=\"Gap\"", "v=\"Gaps\""),
                                             "<filter v=\"levels\"", "<filter v=\"curve\""));
        directory.write("theirs.obl", replaced(replaced(text, "v=\"Gap\"", "v=\"Joints\""),
                                               "v=\"Nails\"", "v=\"Bolts\""));
    }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(MergeCommand, JoinsChangesWithoutAWord)
{
    writeJoining();

    const ToolRun found = merge({"-o", "out.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out + found.err, "");
    EXPECT_EQ(directory.read("out.obl"), byAuthor("b", "other"));
}

TEST_F(MergeCommand, WritesOverOneOfTheVersionsIfItIsTold)
{
    writeJoining();

    EXPECT_EQ(merge({"--output", "ours.obl"}).exitCode, 0);

    EXPECT_EQ(directory.read("ours.obl"), byAuthor("b", "other"));
}

TEST_F(MergeCommand, TellsConflictsToPeople)
{
    writePlanks();

    const ToolRun found = merge({"-o", "out.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    expectGolden("kit/merge.txt", found.out);
    EXPECT_FALSE(directory.exists("out.obl"));
}

TEST_F(MergeCommand, TellsConflictsAsJson)
{
    writePlanks();

    const ToolRun found = merge({"--json", "-o", "out.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    expectGolden(
        "kit/merge.json",
        QJsonDocument::fromJson(QByteArray::fromStdString(found.out)).toJson().toStdString());
}

TEST_F(MergeCommand, WritesAConflictWithThePreferredSide)
{
    writeConflicting();

    const ToolRun found = merge({"--theirs", "-o", "out.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(directory.read("out.obl"), byAuthor("c"));
}

TEST_F(MergeCommand, TakesAnEmptyBaseForNone)
{
    writeConflicting();
    directory.write("base.obl", "");
    directory.write("theirs.obl", byAuthor("b"));

    EXPECT_EQ(merge({"-o", "out.obl"}).exitCode, 0);

    EXPECT_EQ(directory.read("out.obl"), byAuthor("b"));
}

TEST_F(MergeCommand, LeavesTheTargetAloneIfAVersionIsDamaged)
{
    directory.write("ours.obl", byAuthor("b"));
    directory.write("theirs.obl", "<");

    const ToolRun found = merge({"-o", "ours.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err.rfind("Error! theirs.obl: ", 0), 0U) << found;
    EXPECT_EQ(directory.read("ours.obl"), byAuthor("b"));
}

TEST_F(MergeCommand, RefusesARequestWithoutATarget)
{
    EXPECT_EQ(merge({}).err, "Error! The option '--output' is missing\nSee 'ksx merge --help'\n");
}

TEST_F(MergeCommand, RefusesTwoPreferences)
{
    EXPECT_EQ(merge({"--ours", "--theirs", "-o", "out.obl"}).err,
              "Error! The options '--ours' and '--theirs' exclude each other\nSee 'ksx merge "
              "--help'\n");
}

TEST_F(MergeCommand, RefusesAnotherNumberOfVersions)
{
    EXPECT_EQ(run({"merge", "base.obl", "-o", "out.obl"}).err,
              "Error! A base and two versions of it are merged\nSee 'ksx merge --help'\n");
}

TEST_F(MergeCommand, ShowsItsOptions)
{
    expectGolden("kit/help-merge.txt", run({"merge", "--help"}).out);
}

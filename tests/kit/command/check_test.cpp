// The command "check" of the built tool.
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::replaced;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

ToolRun checkExamples(const Arguments& arguments)
{
    ToolRun run = Tool(sourcePath("examples")).at(ksxPath()).run(arguments);
    run.out = replaced(run.out, sourcePath("examples"), "EXAMPLES");
    return run;
}

class CheckCommand : public testing::Test
{
protected:
    ToolRun run(const Arguments& arguments) const
    {
        return Tool(directory.path()).at(ksxPath()).run(arguments);
    }
    void writeSound(const std::string& name) const { directory.write(name, aPackage().text()); }
    void writeWithWarning(const std::string& name) const
    {
        directory.write(name, aPackage().dependingOn("b.obl", 6).text());
        writeSound("b.obl");
    }
    void writeWithError(const std::string& name) const
    {
        directory.write(name, aPackage().containing(aGroup("g") + aGroup("g")).text());
    }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(CheckCommand, TellsFindingsToPeople)
{
    const ToolRun found = checkExamples({"check", "--presets-path", "presets", "."});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(found.err, "");
    expectGolden("kit/check.txt", found.out);
}

TEST_F(CheckCommand, TellsFindingsAsJson)
{
    const ToolRun found = checkExamples({"check", "--json", "--presets-path", "presets", "."});

    EXPECT_EQ(found.exitCode, 1) << found;
    expectGolden(
        "kit/check.json",
        QJsonDocument::fromJson(QByteArray::fromStdString(found.out)).toJson().toStdString());
}

TEST_F(CheckCommand, ShowsItsOptions)
{
    expectGolden("kit/help-check.txt", run({"check", "--help"}).out);
}

TEST_F(CheckCommand, FindsNothingInASoundPackage)
{
    writeSound("a.obl");

    const ToolRun found = run({"check", "--strict", "a.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "0 errors and 0 warnings in 1 package\n");
}

TEST_F(CheckCommand, EndsWithOneForAnError)
{
    writeWithError("a.obl");

    EXPECT_EQ(run({"check", "a.obl"}).exitCode, 1);
}

TEST_F(CheckCommand, EndsWithNothingForAWarning)
{
    writeWithWarning("a.obl");

    const ToolRun found = run({"check", "a.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "a.obl: warning: No path uses the dependency b.obl [unused-dependency]\n"
                         "    Remove the dependency\n"
                         "0 errors and 1 warning in 1 package\n");
}

TEST_F(CheckCommand, EndsWithOneForAWarningThatIsTakenForAnError)
{
    writeWithWarning("a.obl");

    EXPECT_EQ(run({"check", "--strict", "a.obl"}).exitCode, 1);
}

TEST_F(CheckCommand, LeavesOutIgnoredCodes)
{
    writeWithError("a.obl");

    const ToolRun found =
        run({"check", "--ignore", "double-uid", "--ignore", "double-identifier", "a.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "0 errors and 0 warnings in 1 package\n");
}

TEST_F(CheckCommand, RefusesACodeThatThereIsNot)
{
    const ToolRun found = run({"check", "--ignore", "colour", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! There is no code colour\nSee 'ksx check --help'\n");
}

TEST_F(CheckCommand, TellsADamagedPackageAndChecksTheOthers)
{
    directory.write("a.obl", "<");
    writeWithError("b.obl");

    const ToolRun found = run({"check", "."});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(found.err, "");
    EXPECT_EQ(found.out.rfind("./a.obl: error: The package cannot be opened: it is no sound "
                              "document",
                              0),
              0U)
        << found;
    EXPECT_NE(found.out.find("3 errors and 0 warnings in 2 packages\n"), std::string::npos)
        << found;
}

TEST_F(CheckCommand, EndsWithTwoForAFileThatCannotBeRead)
{
    writeWithError("b.obl");

    const ToolRun found = run({"check", "none.obl", "b.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! none.obl: there is no such file\n");
    EXPECT_NE(found.out.find("in 1 package\n"), std::string::npos) << found;
}

TEST_F(CheckCommand, ChecksTheSameForAnyNumberOfJobs)
{
    const ToolRun one = checkExamples({"check", "--jobs", "1", "."});

    EXPECT_EQ(checkExamples({"check", "--jobs", "5", "."}).out, one.out);
}

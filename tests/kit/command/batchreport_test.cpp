// The part "report" of the command "batch" of the built tool, with the findings of a check.
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>

using testing::HasSubstr;
using testing::Not;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::replaced;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

// A library of a sound package, and others that the tests add to it.
class BatchReportCommand : public testing::Test
{
protected:
    BatchReportCommand() { directory.write("lib/a.obl", aPackage().text()); }

    void addWithWarning() const
    {
        directory.write("lib/w.obl", aPackage().dependingOn("a.obl", 6).text());
    }
    void addWithError() const
    {
        directory.write("lib/e.obl", aPackage().containing(aGroup("g") + aGroup("g")).text());
    }

    ToolRun run(const Arguments& arguments) const
    {
        Arguments words = {"batch"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return Tool(directory.path()).at(ksxPath()).run(words);
    }
    void planAndRun(const Arguments& more = {}) const
    {
        Arguments words = {"plan", "update", "lib", "--to", "out", "-o", "plan.json"};
        words.insert(words.end(), more.begin(), more.end());
        run(words);
        run({"run", "plan.json"});
    }
    // The package whose input has that name, in a report as JSON.
    static QJsonObject packageIn(const ToolRun& found, const std::string& name)
    {
        const QJsonDocument report = QJsonDocument::fromJson(QByteArray::fromStdString(found.out));
        for (const auto& package : report["packages"].toArray())
            if (package.toObject()["file"].toString().endsWith(QString::fromStdString(name)))
                return package.toObject();
        return {};
    }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(BatchReportCommand, OpensNoResultUnlessItIsAskedFor)
{
    addWithError();
    planAndRun();

    const ToolRun found = run({"report", "plan.json"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_THAT(found.out, Not(HasSubstr("double-identifier")));
    EXPECT_THAT(found.out, Not(HasSubstr("errors")));
}

TEST_F(BatchReportCommand, TellsFailuresAndFindings)
{
    addWithError();
    addWithWarning();
    directory.write("lib/z.obl", aPackage().dependingOn("none.obl", 5).text());
    planAndRun();

    const ToolRun found = run({"report", "plan.json", "--check"});

    EXPECT_EQ(found.err, "");
    expectGolden("kit/batch-report.txt",
                 std::regex_replace(replaced(found.out, directory.path(), "WORK"),
                                    std::regex("seconds: [0-9.]+"), "seconds: S"));
}

TEST_F(BatchReportCommand, EndsWithOneForAnErrorInAResult)
{
    addWithError();
    planAndRun();

    EXPECT_EQ(run({"report", "plan.json", "--check"}).exitCode, 1);
}

TEST_F(BatchReportCommand, EndsWithZeroForAWarningInAResult)
{
    addWithWarning();
    planAndRun();

    EXPECT_EQ(run({"report", "plan.json", "--check"}).exitCode, 0);
}

TEST_F(BatchReportCommand, ChecksTheResultsThatAreAsTheyWereWritten)
{
    addWithError();
    planAndRun();
    directory.write("out/e.obl", "other bytes");

    const ToolRun found = run({"report", "plan.json", "--check"});

    EXPECT_THAT(found.out, HasSubstr("\n0 errors and 0 warnings in 1 package\n"));
}

TEST_F(BatchReportCommand, ChecksWithThePresetsOfThePlan)
{
    directory.write("presets/p.obl", aPackage().text());
    directory.write("lib/e.obl", aPackage().dependingOn("obl://p.obl", 5).text());
    planAndRun({"--presets-path", "presets"});

    const ToolRun found = run({"report", "plan.json", "--check"});

    EXPECT_THAT(found.out, HasSubstr("unused-dependency"));
    EXPECT_THAT(found.out, Not(HasSubstr("missing-dependency")));
}

TEST_F(BatchReportCommand, HasTheFindingsOfAResultAsJson)
{
    addWithError();
    directory.write("lib/z.obl", aPackage().dependingOn("none.obl", 5).text());
    planAndRun();

    const ToolRun found = run({"report", "plan.json", "--json", "--check"});

    EXPECT_EQ(packageIn(found, "e.obl")["findings"].toArray().at(0)["code"].toString(),
              "double-uid");
    EXPECT_EQ(packageIn(found, "a.obl")["findings"], QJsonArray());
    EXPECT_FALSE(packageIn(found, "z.obl").contains("findings"));
    EXPECT_EQ(packageIn(found, "z.obl")["state"].toString(), "failed");
}

TEST_F(BatchReportCommand, TellsTheSameWithAnyNumberOfWorkers)
{
    addWithError();
    addWithWarning();
    planAndRun();

    const ToolRun one = run({"report", "plan.json", "--check", "--jobs", "1"});
    const ToolRun four = run({"report", "plan.json", "--check", "--jobs", "4"});

    EXPECT_EQ(one.out, four.out);
}

TEST_F(BatchReportCommand, WritesAPageWithFindings)
{
    addWithError();
    planAndRun();

    const ToolRun found = run({"report", "plan.json", "--html", "pages/batch.html"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_THAT(directory.read("pages/batch.html"), HasSubstr("<code>double-identifier</code>"));
    EXPECT_THAT(found.out, Not(HasSubstr("double-identifier")));
    EXPECT_THAT(found.out, HasSubstr("\n2 errors and 0 warnings in 2 packages\n"));
}

TEST_F(BatchReportCommand, WritesAPageOfAPackageThatIsNamedLikeMarkup)
{
    directory.write("lib/<script>alert(1)<script>.obl",
                    aPackage().dependingOn("none.obl", 5).text());
    planAndRun();

    run({"report", "plan.json", "--html", "batch.html"});

    EXPECT_THAT(directory.read("batch.html"),
                HasSubstr("lib/&lt;script&gt;alert(1)&lt;script&gt;"));
    EXPECT_THAT(directory.read("batch.html"), Not(HasSubstr("<script>alert")));
}

TEST_F(BatchReportCommand, WritesNoPageOverAPackage)
{
    planAndRun();
    const std::string before = directory.read("lib/a.obl");

    const ToolRun found = run({"report", "plan.json", "--html", "lib/a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("lib/a.obl is a file that is read"));
    EXPECT_EQ(directory.read("lib/a.obl"), before);
}

TEST_F(BatchReportCommand, WritesNoPageOverAResultOrThePlan)
{
    planAndRun();

    EXPECT_EQ(run({"report", "plan.json", "--html", "out/a.obl"}).exitCode, 2);
    EXPECT_EQ(run({"report", "plan.json", "--html", "plan.json"}).exitCode, 2);
    EXPECT_EQ(run({"status", "plan.json"}).exitCode, 0);
}

TEST_F(BatchReportCommand, TellsOfAPageThatCannotBeWritten)
{
    planAndRun();
    directory.makeDirectory("batch.html");

    const ToolRun found = run({"report", "plan.json", "--html", "batch.html"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("batch.html cannot be written"));
}

TEST_F(BatchReportCommand, RefusesAPageWithoutANameBeforeAnythingIsDone)
{
    planAndRun();

    const ToolRun found = run({"report", "plan.json", "--html", ""});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("The option '--html' takes the name of a file"));
    EXPECT_EQ(found.out, "");
    EXPECT_EQ(run({"submit", "plan.json", "--slurm", "--html", "pages/"}).exitCode, 2);
}

TEST_F(BatchReportCommand, SubmitsAJobThatWritesThePage)
{
    planAndRun();
    directory.write("bin/sbatch", "#!/bin/sh\ncat >> jobs\necho 7\n");
    directory.setMode("bin/sbatch", 0755);

    const ToolRun found =
        Tool(directory.path())
            .at(ksxPath())
            .withEnvironment("PATH", directory.path("bin") + ":/usr/bin:/bin")
            .run({"batch", "submit", "plan.json", "--slurm", "--html", "it's.html"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_THAT(directory.read("jobs"),
                HasSubstr(" --json --html '" + directory.path("it") + "'\\''s.html' --jobs "));
}

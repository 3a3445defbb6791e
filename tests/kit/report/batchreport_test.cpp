#include "ksx/kit/batchreport.h"

#include <QCryptographicHash>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

using Ksx::Kit::BatchPackage;
using Ksx::Kit::BatchPlan;
using Ksx::Kit::BatchReport;
using Ksx::Kit::BatchState;
using Ksx::Kit::BatchStatus;
using Ksx::Kit::countOf;
using Ksx::Kit::Finding;
using Ksx::Kit::FindingCode;
using Ksx::Kit::Severity;
using testing::HasSubstr;
using testing::Not;

namespace {

// More packages than a page has.
constexpr std::size_t Many = 5002;
const std::string Hostile = "</script><script>alert(1)</script>\"'>&";

Finding anError(const QString& text = QStringLiteral("It leads to no object"))
{
    return {FindingCode::DanglingPath, QStringLiteral("pkg://g"), 1, 7, text};
}

Finding aWarning(const QString& text = QStringLiteral("No path uses it"))
{
    return {FindingCode::UnusedDependency, QString(), 0, 0, text};
}

// The parts of a page that are made of the batch.
std::string bodyOf(const QByteArray& page)
{
    const auto begin = page.indexOf("<body>");
    return page.mid(begin, page.indexOf("<script>", begin) - begin).toStdString();
}

std::string pageOf(const BatchReport& report)
{
    return bodyOf(report.page({}));
}

// The texts between two marks in a page, each of which comes once.
std::string between(const std::string& text, const std::string& begin, const std::string& end)
{
    const std::size_t first = text.find(begin) + begin.size();
    return text.substr(first, text.find(end, first) - first);
}

class ReportOfBatch : public testing::Test
{
protected:
    ReportOfBatch()
    {
        plan.options.folders = QStringList(QStringLiteral("/lib"));
        plan.options.target = QStringLiteral("/out");
        plan.shardCount = 3;
    }

    void add(const std::string& name, BatchState state = BatchState::Done,
             const std::string& reason = {}, unsigned shard = 1)
    {
        BatchPackage package;
        package.input = QString::fromStdString(name);
        package.output = package.input;
        package.stamp.size = 1000;
        package.shard = shard;
        plan.packages.push_back(package);
        BatchStatus status;
        status.state = state;
        status.result.reason = QString::fromStdString(reason);
        status.result.seconds = 1.5;
        states.push_back(status);
    }

    void addMany(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
            add("p" + std::to_string(i) + ".obl");
    }

    // Adds a finding to each of the packages from one to another.
    static void addFindings(BatchReport& report, std::size_t begin, std::size_t end,
                            const Finding& finding)
    {
        for (std::size_t i = begin; i < end; ++i)
            report.addFindings(i, {finding});
    }

    BatchPlan plan;
    std::vector<BatchStatus> states;
};

} // namespace

TEST_F(ReportOfBatch, CountsPackagesByTheirStates)
{
    add("a.obl");
    add("b.obl", BatchState::Failed, "it is no sound document");
    add("c.obl", BatchState::Failed, "it is no sound document");

    const BatchReport report(plan, states);

    EXPECT_EQ(countOf(report.counts(), BatchState::Done), 1U);
    EXPECT_EQ(countOf(report.counts(), BatchState::Failed), 2U);
    EXPECT_EQ(countOf(report.counts(), BatchState::Pending), 0U);
}

TEST_F(ReportOfBatch, CountsFindingsByTheirKinds)
{
    add("a.obl");
    add("b.obl");
    add("c.obl");
    BatchReport report(plan, states);

    report.addFindings(0, {anError(), anError(), aWarning()});
    report.addFindings(1, {aWarning()});
    report.addFindings(2, {});

    EXPECT_EQ(report.findings().at(FindingCode::DanglingPath).findings, 2U);
    EXPECT_EQ(report.findings().at(FindingCode::DanglingPath).packages, 1U);
    EXPECT_EQ(report.findings().at(FindingCode::UnusedDependency).packages, 2U);
    EXPECT_EQ(report.findingsOf(Severity::Error), 2U);
    EXPECT_EQ(report.findingsOf(Severity::Warning), 2U);
    EXPECT_EQ(report.checked(), 3U);
}

TEST_F(ReportOfBatch, SumsUpTheBatch)
{
    add("a.obl");
    add("b.obl", BatchState::Pending, {}, 2);
    BatchReport report(plan, states);
    report.addFindings(0, {aWarning()});

    const std::string summary = between(pageOf(report), "<dl class=\"facts\">", "</dl>");

    EXPECT_THAT(summary, HasSubstr("<dt>Packages</dt><dd>2, of 2,000 bytes</dd>"));
    EXPECT_THAT(summary, HasSubstr("<dt>done</dt><dd>1</dd>"));
    EXPECT_THAT(summary, HasSubstr("<dt>pending</dt><dd>1</dd>"));
    EXPECT_THAT(summary, HasSubstr("<dt>Shards</dt><dd>1 of 2 are done</dd>"));
    EXPECT_THAT(summary, HasSubstr("<dd>3.0 seconds, added up"));
    EXPECT_THAT(summary, HasSubstr("1 warning</span> in 1 results</dd>"));
}

TEST_F(ReportOfBatch, TellsOfResultsThatWaitWhereThereAreAny)
{
    add("a.obl");
    EXPECT_THAT(pageOf(BatchReport(plan, states)), Not(HasSubstr("taged")));

    add("b.obl", BatchState::Staged);

    const std::string page = pageOf(BatchReport(plan, states));
    EXPECT_THAT(page, HasSubstr("<dt>staged</dt><dd>1</dd>"));
    EXPECT_THAT(page, HasSubstr("<th scope=\"col\">Done</th><th scope=\"col\">Staged</th>"));
    EXPECT_THAT(page, HasSubstr("<tr><td>1</td><td>staged</td><td class=\"number\">1</td>"));
}

TEST_F(ReportOfBatch, GroupsFailuresByTheirReasonsWithTheMostFrequentFirst)
{
    add("a.obl", BatchState::Failed, "it is no sound document");
    add("b.obl", BatchState::Failed, "it needs /lib/x.obl");
    add("c.obl", BatchState::Failed, "it needs /lib/x.obl");
    const BatchReport report(plan, states);

    const std::string failures =
        between(pageOf(report), "Why packages failed</caption>", "</table>");

    EXPECT_THAT(failures, HasSubstr("<tbody>\n<tr><td>it needs /lib/x.obl</td><td><code>/lib/b.obl"
                                    "</code></td><td class=\"number\">2</td></tr>\n<tr><td>it is "
                                    "no sound document</td><td><code>/lib/a.obl</code>"));
}

TEST_F(ReportOfBatch, ListsFailedPackagesBeforeChangedOnesAndFindings)
{
    add("a.obl");
    add("b.obl", BatchState::Changed);
    add("c.obl", BatchState::Failed, "it is no sound document");
    add("d.obl");
    BatchReport report(plan, states);
    report.addFindings(0, {aWarning()});
    report.addFindings(3, {aWarning(), anError()});

    const std::string packages = between(pageOf(report), "<table class=\"searched\">", "</table>");

    EXPECT_LT(packages.find("/lib/c.obl"), packages.find("/lib/b.obl"));
    EXPECT_LT(packages.find("/lib/b.obl"), packages.find("/lib/d.obl"));
    EXPECT_LT(packages.find("/lib/d.obl"), packages.find("/lib/a.obl"));
}

TEST_F(ReportOfBatch, ListsNoPackageThatIsDoneWithoutFindings)
{
    add("a.obl");
    BatchReport report(plan, states);
    report.addFindings(0, {});

    const std::string page = pageOf(report);

    EXPECT_THAT(page, Not(HasSubstr("a.obl")));
    EXPECT_THAT(page, HasSubstr("No package failed or was changed, and no result has findings."));
    EXPECT_THAT(page, HasSubstr("No package failed."));
    EXPECT_THAT(page, HasSubstr("The check found nothing."));
}

TEST_F(ReportOfBatch, TakesNoPendingPackageForOneThatIsDone)
{
    add("a.obl", BatchState::Pending);

    const std::string page = pageOf(BatchReport(plan, states));

    EXPECT_THAT(page, HasSubstr("<dt>pending</dt><dd>1</dd>"));
    EXPECT_THAT(page, HasSubstr("<dt>Shards</dt><dd>0 of 1 are done</dd>"));
    EXPECT_THAT(page, HasSubstr("<dt>Findings</dt><dd>none in 0 results</dd>"));
    EXPECT_THAT(page, HasSubstr("<tr><td>1</td><td>pending</td>"));
}

TEST_F(ReportOfBatch, ShowsFiveFindingsOfAPackageWithErrorsFirst)
{
    add("a.obl");
    BatchReport report(plan, states);

    report.addFindings(0, {aWarning("w1"), aWarning("w2"), aWarning("w3"), aWarning("w4"),
                           aWarning("w5"), anError("e1")});

    const std::string findings = between(pageOf(report), "<details>", "</details>");
    EXPECT_THAT(findings, HasSubstr("1 error</span> and <span class=\"warning\">5 warnings"));
    EXPECT_LT(findings.find(" e1 "), findings.find(" w1 "));
    EXPECT_THAT(findings, HasSubstr(" w4 "));
    EXPECT_THAT(findings, Not(HasSubstr(" w5 ")));
    EXPECT_THAT(findings, HasSubstr("<li>1 more</li>"));
}

TEST_F(ReportOfBatch, HasABoundedNumberOfPackagesAndCountsTheOthers)
{
    addMany(Many);
    BatchReport report(plan, states);
    addFindings(report, 0, Many - 1, aWarning());

    report.addFindings(Many - 1, {anError()});

    const std::string packages = between(pageOf(report), "<table class=\"searched\">", "</table>");
    EXPECT_THAT(packages, HasSubstr("/lib/p5001.obl")); // its error is worse than all the warnings
    EXPECT_THAT(packages, HasSubstr("/lib/p4998.obl"));
    EXPECT_THAT(packages, Not(HasSubstr("/lib/p4999.obl")));
    EXPECT_THAT(packages, HasSubstr("<tfoot><tr><td colspan=\"5\">2 more</td></tr></tfoot>"));
}

TEST_F(ReportOfBatch, HoldsTheFindingsOfABoundedNumberOfPackages)
{
    addMany(4 * Many);
    BatchReport report(plan, states);
    addFindings(report, 0, Many, aWarning());
    const std::size_t before = mallinfo2().uordblks;

    addFindings(report, Many, 4 * Many, aWarning());

    EXPECT_LT(mallinfo2().uordblks, before + 100000);
}

TEST_F(ReportOfBatch, CutsLongTextsOfFindings)
{
    add("a.obl");
    BatchReport report(plan, states);

    report.addFindings(0, {anError(QString(100000, QChar('x')))});

    EXPECT_LT(pageOf(report).size(), 5000U);
}

TEST_F(ReportOfBatch, ListsShardsThatAreNotDoneFirst)
{
    add("a.obl");
    add("b.obl", BatchState::Pending, {}, 2);
    add("c.obl", BatchState::Failed, "it is no sound document", 3);
    const BatchReport report(plan, states);

    const std::string shards =
        between(pageOf(report), "The shards of the plan</caption>", "</table>");

    EXPECT_THAT(shards, HasSubstr("<tbody>\n<tr><td>2</td><td>pending</td>"));
    EXPECT_THAT(shards, HasSubstr("<tr><td>3</td><td><span class=\"error\">failed</span></td>"));
    EXPECT_LT(shards.find("<td>3</td>"), shards.find("<td>1</td><td>done</td>"));
}

TEST_F(ReportOfBatch, ListsFilesThatAreLeftOutAndResultsThatCannotBeRead)
{
    plan.failures = {{QStringLiteral("/lib/x.obl"), QStringLiteral("it is empty")}};
    plan.missing = {{QStringLiteral("/lib/y.obl"), QStringLiteral("obl://z.obl"),
                     QStringLiteral("/presets/z.obl")}};
    const BatchReport report(plan, states);

    const std::string page = bodyOf(
        report.page({{QStringLiteral("/out/a.obl"), QStringLiteral("it cannot be opened")}}));

    EXPECT_THAT(page, HasSubstr("<code>/lib/x.obl</code></td><td>it is empty</td>"));
    EXPECT_THAT(page, HasSubstr("<code>obl://z.obl</code></td><td><code>/presets/z.obl</code>"));
    EXPECT_THAT(page, HasSubstr("<code>/out/a.obl</code></td><td>it cannot be opened</td>"));
}

TEST_F(ReportOfBatch, NamesAndReasonsThatLookLikeMarkupStayText)
{
    const QString hostile = QString::fromStdString(Hostile);
    add(Hostile + ".obl", BatchState::Failed, Hostile);
    add("done.obl");
    plan.options.target = hostile;
    plan.options.folders = QStringList(hostile);
    plan.missing = {{hostile, hostile, hostile}};
    BatchReport report(plan, states);
    Finding finding = anError(hostile);
    finding.place = hostile;
    report.addFindings(1, {finding});

    const QByteArray page = report.page({{hostile, hostile}});

    EXPECT_EQ(page.count("<script>"), 1);
    EXPECT_EQ(page.count("</script>"), 1);
    EXPECT_THAT(page.toStdString(), HasSubstr("<title>Batch into &lt;/script&gt;"));
    EXPECT_THAT(page.toStdString(), Not(HasSubstr(Hostile)));
}

TEST_F(ReportOfBatch, ThePageNeedsNoOtherFileAndRunsItsOwnScriptAlone)
{
    const QByteArray page = BatchReport(plan, states).page({});

    const std::string script = between(page.toStdString(), "<script>", "</script>");
    const QByteArray sum =
        QCryptographicHash::hash(QByteArray::fromStdString(script), QCryptographicHash::Sha256);
    EXPECT_THAT(page.toStdString(),
                HasSubstr("script-src 'sha256-" + sum.toBase64().toStdString() + "';"));
    EXPECT_THAT(page.toStdString(), HasSubstr("default-src 'none'; style-src 'sha256-"));
    EXPECT_FALSE(page.contains(" src="));
    EXPECT_EQ(page.count("<link"), 0);
}

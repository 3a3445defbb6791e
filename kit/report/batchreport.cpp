#include "ksx/kit/batchreport.h"

#include "drawing/markup.h"
#include "report/pageparts.h"
#include <QLocale>
#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace Ksx::Kit {

namespace {

constexpr std::size_t MaximumPackages = 5000;   // a browser searches no more in a useful time
constexpr std::size_t MaximumShownFindings = 5; // of a package
const char* const ChangedReason = "The result is not as it was written";

// A shard, or all of them.
struct ShardSums
{
    BatchCounts counts;
    qint64 bytes = 0;
    double seconds = 0;

    void add(const BatchPackage& package, const BatchStatus& status)
    {
        ++counts[status.state];
        bytes += package.stamp.size;
        seconds += status.result.seconds;
    }
    // Returns the state that needs a look most.
    BatchState state() const
    {
        for (const BatchState one :
             {BatchState::Failed, BatchState::Changed, BatchState::Pending, BatchState::Staged})
            if (countOf(counts, one) > 0)
                return one;
        return BatchState::Done;
    }
};

QByteArray secondsText(double seconds)
{
    return escaped(QLocale(QLocale::English).toString(seconds, 'f', 1));
}

// Returns a whole path, which `code()` would cut.
QByteArray pathText(const QString& path)
{
    return "<code>" + escaped(path) + "</code>";
}

QByteArray stateText(BatchState state)
{
    QByteArray word = escaped(wordOf(state));
    if (state == BatchState::Failed)
        return "<span class=\"error\">" + word + "</span>";
    if (state == BatchState::Changed)
        return "<span class=\"warning\">" + word + "</span>";
    return word;
}

// Returns "Done" and the like.
QString titleOf(BatchState state)
{
    const QString word = wordOf(state);
    return word.left(1).toUpper() + word.mid(1);
}

std::size_t numberOf(const std::vector<Finding>& findings, Severity severity)
{
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(), [severity](const Finding& finding) {
            return finding.kind().severity == severity;
        }));
}

// Returns "2 errors and 1 warning" in their colours.
QByteArray sumText(std::size_t errors, std::size_t warnings)
{
    QList<QByteArray> parts;
    if (errors > 0)
        parts.append("<span class=\"error\">" + escaped(counted(errors, "error", "errors")) +
                     "</span>");
    if (warnings > 0)
        parts.append("<span class=\"warning\">" +
                     escaped(counted(warnings, "warning", "warnings")) + "</span>");
    return parts.join(" and ");
}

QByteArray findingText(const Finding& finding)
{
    const FindingKind& kind = finding.kind();
    return "<li>" + severityText(kind.severity) + ' ' + cell(finding.text) + " <code>" + kind.name +
           "</code> <span class=\"note\">" + placeText(finding) + "</span></li>\n";
}

// Returns the sum of the findings of a package. It opens to the first of them, errors before
// warnings.
QByteArray findingsText(const std::vector<Finding>& findings)
{
    QByteArray text =
        "<details><summary>" +
        sumText(numberOf(findings, Severity::Error), numberOf(findings, Severity::Warning)) +
        "</summary>\n<ul class=\"findings\">\n";
    std::size_t shown = 0;
    for (const Severity severity : {Severity::Error, Severity::Warning})
        for (const Finding& finding : findings)
            if (finding.kind().severity == severity && ++shown <= MaximumShownFindings)
                text += findingText(finding);
    if (shown > MaximumShownFindings)
        text += "<li>" + groupedNumber(qint64(shown - MaximumShownFindings)) + " more</li>\n";
    return text + "</ul></details>";
}

// Makes the sections of the page, but for the findings.
class Sections
{
public:
    Sections(const BatchPlan& plan, const std::vector<BatchStatus>& states)
        : m_plan(plan), m_states(states)
    {
        for (std::size_t i = 0; i < states.size(); ++i) {
            m_all.add(plan.packages[i], states[i]);
            m_shards[plan.packages[i].shard].add(plan.packages[i], states[i]);
        }
    }

    QByteArray summary(const QByteArray& findings) const
    {
        QByteArray text = "<dl class=\"facts\">\n" + fact("Library", folders()) +
                          fact("Packages", groupedNumber(qint64(m_states.size())) + ", of " +
                                               groupedNumber(m_all.bytes) + " bytes");
        for (const BatchState state : toldStates(m_all.counts))
            text += countFact(state);
        text += fact("Shards", groupedNumber(qint64(doneShards())) + " of " +
                                   groupedNumber(qint64(m_shards.size())) + " are done");
        text += fact("Time", secondsText(m_all.seconds) + " seconds, added up over all processes");
        return text + fact("Findings", findings) + "</dl>\n";
    }

    // Returns the reasons, the most frequent one first.
    QByteArray failures() const
    {
        const std::map<QString, Cause> causes = causesByReason();
        std::vector<std::pair<QString, Cause>> order(causes.begin(), causes.end());
        std::stable_sort(order.begin(), order.end(), [](const auto& one, const auto& other) {
            return one.second.count > other.second.count;
        });
        HtmlTable table(
            QStringLiteral("Why packages failed"),
            {QStringLiteral("Reason"), QStringLiteral("First package"), QStringLiteral("Packages")},
            {1});
        for (const auto& [reason, cause] : order)
            if (table.hasRoom())
                table.add({cell(reason), pathText(m_plan.inputPath(m_plan.packages[cause.first])),
                           groupedNumber(qint64(cause.count))});
        return table.isEmpty() ? "<p>No package failed.</p>\n" : table.text();
    }

    QByteArray missing() const
    {
        HtmlTable table(
            QStringLiteral("Dependencies without a file"),
            {QStringLiteral("Package"), QStringLiteral("Name"), QStringLiteral("Path")});
        for (const MissingDependency& one : m_plan.missing)
            if (table.hasRoom())
                table.add({pathText(one.file), code(one.dependency), pathText(one.path)});
        return table.text();
    }

    // Returns all shards. Those that are not done come first.
    QByteArray shards() const
    {
        const std::vector<BatchState> states = toldStates(m_all.counts);
        QStringList heads = {QStringLiteral("Shard"), QStringLiteral("State")};
        for (const BatchState state : states)
            heads.append(titleOf(state));
        heads << QStringLiteral("Bytes") << QStringLiteral("Seconds");
        HtmlTable table(QStringLiteral("The shards of the plan"), heads, {states.size() + 2});
        for (const bool isDone : {false, true})
            for (const auto& [number, shard] : m_shards)
                if ((shard.state() == BatchState::Done) == isDone && table.hasRoom())
                    table.add(rowOf(number, shard, states));
        return table.text();
    }

private:
    // Packages that failed for one reason.
    struct Cause
    {
        std::size_t first = 0; // index of a package
        std::size_t count = 0;
    };

    std::map<QString, Cause> causesByReason() const
    {
        std::map<QString, Cause> causes;
        for (std::size_t i = 0; i < m_states.size(); ++i)
            if (m_states[i].state == BatchState::Failed)
                ++causes.try_emplace(m_states[i].result.reason, Cause{i}).first->second.count;
        return causes;
    }

    static std::vector<QByteArray> rowOf(unsigned number, const ShardSums& shard,
                                         const std::vector<BatchState>& states)
    {
        std::vector<QByteArray> row = {QByteArray::number(number), stateText(shard.state())};
        for (const BatchState state : states)
            row.push_back(groupedNumber(qint64(countOf(shard.counts, state))));
        row.push_back(groupedNumber(shard.bytes));
        row.push_back(secondsText(shard.seconds));
        return row;
    }

    QByteArray countFact(BatchState state) const
    {
        const std::size_t count = countOf(m_all.counts, state);
        return "<dt>" + (count > 0 ? stateText(state) : escaped(wordOf(state))) + "</dt><dd>" +
               groupedNumber(qint64(count)) + "</dd>\n";
    }

    QByteArray folders() const
    {
        QList<QByteArray> texts;
        for (const QString& folder : m_plan.options.folders)
            texts.append(pathText(folder));
        return texts.join("<br>");
    }

    std::size_t doneShards() const
    {
        return static_cast<std::size_t>(
            std::count_if(m_shards.begin(), m_shards.end(), [](const auto& shard) {
                return shard.second.state() == BatchState::Done;
            }));
    }

    const BatchPlan& m_plan;
    const std::vector<BatchStatus>& m_states;
    ShardSums m_all;
    std::map<unsigned, ShardSums> m_shards;
};

QByteArray failureList(const QString& caption, const std::vector<Failure>& failures)
{
    HtmlTable table(caption, {QStringLiteral("File"), QStringLiteral("Reason")});
    for (const Failure& failure : failures)
        if (table.hasRoom())
            table.add({pathText(failure.file), cell(failure.reason)});
    return table.text();
}

QByteArray kindsText(const std::map<FindingCode, FindingCount>& findings)
{
    HtmlTable table(QStringLiteral("Findings in results, by their kinds"),
                    {QStringLiteral("Kind"), QStringLiteral("Severity"),
                     QStringLiteral("What to do"), QStringLiteral("Findings"),
                     QStringLiteral("Packages")},
                    {2});
    for (const Severity severity : {Severity::Error, Severity::Warning})
        for (const FindingKind& kind : findingKinds()) {
            const auto count = findings.find(kind.code);
            if (kind.severity == severity && count != findings.end() && table.hasRoom())
                table.add({"<code>" + QByteArray(kind.name) + "</code>", severityText(severity),
                           escaped(QString::fromUtf8(kind.advice)),
                           groupedNumber(qint64(count->second.findings)),
                           groupedNumber(qint64(count->second.packages))});
        }
    return table.isEmpty() ? "<p>The check found nothing.</p>\n" : table.text();
}

const char* const SearchedTable = " class=\"searched\"";
// The words of the state, the reason and the findings are searched too.
const char* const SearchForm =
    "<form class=\"search\" role=\"search\"><label for=\"search\">Search</label><input "
    "id=\"search\" type=\"search\" autocomplete=\"off\" spellcheck=\"false\" "
    "placeholder=\"path, failed, reason, kind of finding\">"
    "<span id=\"status\" role=\"status\"></span></form>\n";

} // namespace

std::size_t countOf(const BatchCounts& counts, BatchState state)
{
    const auto count = counts.find(state);
    return count == counts.end() ? 0 : count->second;
}

std::vector<BatchState> toldStates(const BatchCounts& counts)
{
    std::vector<BatchState> states;
    std::copy_if(BatchStates.begin(), BatchStates.end(), std::back_inserter(states),
                 [&](BatchState state) {
                     return state != BatchState::Staged || countOf(counts, state) > 0;
                 });
    return states;
}

BatchReport::BatchReport(const BatchPlan& plan, const std::vector<BatchStatus>& states)
    : m_plan(plan), m_states(states)
{
    for (const BatchStatus& status : states)
        ++m_counts[status.state];
}

void BatchReport::addFindings(std::size_t package, const std::vector<Finding>& findings)
{
    ++m_checked;
    if (findings.empty())
        return;
    std::set<FindingCode> codes;
    for (const Finding& finding : findings) {
        FindingCount& count = m_findings[finding.code];
        ++count.findings;
        if (codes.insert(finding.code).second)
            ++count.packages;
    }
    const bool hasError = numberOf(findings, Severity::Error) > 0;
    Rows& rows = m_rows[hasError ? Severity::Error : Severity::Warning];
    if (rows.rows.size() < MaximumPackages)
        rows.rows.push_back(rowOf(package, findingsText(findings)));
    else
        ++rows.leftOut;
}

std::size_t BatchReport::findingsOf(Severity severity) const
{
    std::size_t number = 0;
    for (const FindingKind& kind : findingKinds())
        if (const auto count = m_findings.find(kind.code);
            kind.severity == severity && count != m_findings.end())
            number += count->second.findings;
    return number;
}

BatchReport::Row BatchReport::rowOf(std::size_t package, const QByteArray& text) const
{
    const BatchPackage& one = m_plan.packages[package];
    const BatchStatus& status = m_states[package];
    return {pathText(m_plan.inputPath(one)), stateText(status.state), text,
            QByteArray::number(one.shard), secondsText(status.result.seconds)};
}

// Returns the packages that failed, then the changed ones, then those with findings.
QByteArray BatchReport::packagesText() const
{
    HtmlTable table(QStringLiteral("Packages that failed or were changed, or have findings"),
                    {QStringLiteral("Package"), QStringLiteral("State"),
                     QStringLiteral("Reason or findings"), QStringLiteral("Shard"),
                     QStringLiteral("Seconds")},
                    {2, MaximumPackages, SearchedTable});
    for (const BatchState state : {BatchState::Failed, BatchState::Changed})
        for (std::size_t i = 0; i < m_states.size(); ++i)
            if (m_states[i].state == state && table.hasRoom())
                table.add(rowOf(i, state == BatchState::Failed ? cell(m_states[i].result.reason)
                                                               : QByteArray(ChangedReason)));
    // Errors are before warnings.
    for (auto rows = m_rows.rbegin(); rows != m_rows.rend(); ++rows) {
        for (const Row& row : rows->second.rows)
            if (table.hasRoom())
                table.add(row);
        table.leaveOut(rows->second.leftOut);
    }
    return table.isEmpty()
               ? "<p>No package failed or was changed, and no result has findings.</p>\n"
               : SearchForm + table.text();
}

QByteArray BatchReport::page(const std::vector<Failure>& unread) const
{
    const Sections sections(m_plan, m_states);
    const QByteArray target = escaped(m_plan.options.target);
    const QByteArray found = sumText(findingsOf(Severity::Error), findingsOf(Severity::Warning));
    const QByteArray sum =
        (found.isEmpty() ? "none" : found) + " in " + groupedNumber(qint64(m_checked)) + " results";
    return wholePageBegin(QStringLiteral("Batch into ") + m_plan.options.target) +
           "<body>\n<a class=\"skip\" href=\"#main\">Skip to the content</a>\n<header>\n"
           "<h1>Batch into " +
           target + "</h1>\n</header>\n<main id=\"main\">\n" +
           section("summary", "Summary", sections.summary(sum)) +
           section("failures", "Failures", sections.failures()) +
           section("unread", "Results that cannot be read",
                   failureList(QStringLiteral("Results without a check"), unread)) +
           section("left-out", "Files that the plan leaves out",
                   failureList(QStringLiteral("Files without a result"), m_plan.failures)) +
           section("missing", "Missing dependencies", sections.missing()) +
           section("findings", "Findings", kindsText(m_findings)) +
           section("packages", "Packages", packagesText()) +
           section("shards", "Shards", sections.shards()) + "</main>\n" + wholePageEnd();
}

} // namespace Ksx::Kit

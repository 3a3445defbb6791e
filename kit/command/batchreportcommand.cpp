// The part "report" of the command "batch".
#include "command/batchcommand.h"
#include "command/colour.h"
#include "command/findingtext.h"
#include "command/jsonoutput.h"
#include "command/outputfolder.h"
#include "command/packagework.h"
#include "command/texttable.h"
#include "console.h"
#include "core/fileplace.h"
#include "data/filename.h"
#include "ksx/kit/batchreport.h"
#include "ksx/kit/check.h"
#include <iostream>

namespace Ksx::Kit {

namespace {

using Findings = std::vector<Finding>;

constexpr const char* CheckOption = "check";
constexpr const char* HtmlOption = "html";

QJsonObject packageJson(const BatchPackage& package, const BatchStatus& status,
                        const BatchPlan& plan)
{
    return {{"file", plan.inputPath(package)},
            {"output", plan.outputPath(package)},
            {"shard", qint64(package.shard)},
            {"component", qint64(package.component)},
            {"state", wordOf(status.state)},
            {"reason", status.result.reason},
            {"sha256", QString::fromLatin1(status.result.sha256)},
            {"seconds", status.result.seconds}};
}

// The report as the user wants it: JSON in the order of the plan, or text with the failures first.
class Printer
{
public:
    Printer(const BatchPlan& plan, const std::vector<BatchStatus>& states, const Request& request)
        : m_plan(plan), m_states(states), m_hasFindings(request.has(CheckOption))
    {
        if (request.has("json"))
            m_json.emplace("batch report", "packages");
        else
            printFailures();
    }

    // Adds the next package of the plan, with findings if its result was checked.
    void add(std::size_t number, const Findings* findings)
    {
        const BatchPackage& package = m_plan.packages[number];
        m_seconds += m_states[number].result.seconds;
        if (m_json) {
            QJsonObject object = packageJson(package, m_states[number], m_plan);
            if (m_hasFindings && findings != nullptr)
                object["findings"] = arrayOf(*findings);
            m_json->add(object);
        } else if (m_hasFindings && findings != nullptr) {
            for (const Finding& finding : *findings)
                std::cout << Orv::toBytes(
                    findingText(m_plan.outputPath(package), finding, m_isColoured));
        }
    }

    void finish(const BatchReport& report, const std::vector<Failure>& unread, bool isChecked)
    {
        if (m_json) {
            std::vector<Failure> failures = m_plan.failures;
            failures.insert(failures.end(), unread.begin(), unread.end());
            m_json->finish(failures);
            return;
        }
        if (m_hasFindings)
            std::cout << Orv::toBytes(kindsText(report));
        printLine(QStringLiteral("%1, seconds: %2")
                      .arg(countsText(report.counts()))
                      .arg(m_seconds, 0, 'f', 1));
        if (isChecked)
            printLine(findingSum(report.findingsOf(Severity::Error),
                                 report.findingsOf(Severity::Warning), report.checked()));
    }

private:
    void printFailures() const
    {
        for (std::size_t i = 0; i < m_states.size(); ++i) {
            const BatchPackage& package = m_plan.packages[i];
            if (m_states[i].state == BatchState::Failed)
                printLine(QStringLiteral("%1: %2").arg(lineText(m_plan.inputPath(package)),
                                                       lineText(m_states[i].result.reason)));
            else if (m_states[i].state == BatchState::Changed)
                printLine(QStringLiteral("%1: it is not as it was written")
                              .arg(lineText(m_plan.outputPath(package))));
        }
    }

    static QString kindsText(const BatchReport& report)
    {
        TextTable table({{QStringLiteral("KIND")},
                         {QStringLiteral("SEVERITY")},
                         {QStringLiteral("FINDINGS"), TextTable::Align::Right},
                         {QStringLiteral("PACKAGES"), TextTable::Align::Right}});
        for (const auto& [code, count] : report.findings()) {
            const FindingKind& kind = findingKinds()[static_cast<std::size_t>(code)];
            table.add({QLatin1String(kind.name), wordOf(kind.severity),
                       QString::number(count.findings), QString::number(count.packages)});
        }
        return table.text();
    }

    const BatchPlan& m_plan;
    const std::vector<BatchStatus>& m_states;
    const bool m_hasFindings;
    const bool m_isColoured = hasColours();
    std::optional<JsonList> m_json; // none for people
    double m_seconds = 0;
};

// Returns the results that are checked, in the order of the plan.
QStringList doneResults(const BatchPlan& plan, const std::vector<BatchStatus>& states)
{
    QStringList files;
    for (std::size_t i = 0; i < states.size(); ++i)
        if (states[i].state == BatchState::Done)
            files.append(plan.outputPath(plan.packages[i]));
    return files;
}

// Writes the page. Returns false after an error line.
bool isPageWritten(const Request& request, const BatchPlan& plan, const QByteArray& page)
{
    QStringList others = {planFile(request)};
    for (const BatchPackage& package : plan.packages)
        others << plan.inputPath(package) << plan.outputPath(package);
    for (const BatchSource& source : plan.sources)
        others << source.file;
    const QString path = pagePath(request);
    const OutputFolder folder(path.section(QLatin1Char('/'), 0, -2), others);
    QString reason;
    if (folder.write(path.section(QLatin1Char('/'), -1), page, reason))
        return true;
    printError(QStringLiteral("Error! ") + reason);
    return false;
}

} // namespace

QString countsText(const BatchCounts& counts)
{
    QStringList parts;
    for (const BatchState state : toldStates(counts))
        parts.append(QStringLiteral("%1: %2").arg(wordOf(state)).arg(countOf(counts, state)));
    return parts.join(QStringLiteral(", "));
}

QString pagePath(const Request& request)
{
    const QString name = request.text(HtmlOption);
    if (request.has(HtmlOption) && (name.isEmpty() || name.endsWith(QLatin1Char('/'))))
        throw UsageError("The option '--html' takes the name of a file");
    return name.isEmpty() ? QString() : Orv::Core::absolutePath(name);
}

int reportBatch(const Request& request)
{
    const unsigned jobs = jobsOf(request);
    const bool hasPage = !pagePath(request).isEmpty();
    const bool isChecked = hasPage || request.has(CheckOption);
    const std::optional<BatchPlan> plan = openPlan(planFile(request));
    if (!plan)
        return CannotDo;
    const std::vector<BatchStatus> states = statusOf(*plan);
    BatchReport report(*plan, states);
    Printer printer(*plan, states, request);
    PackageFiles results;
    if (isChecked)
        results.files = doneResults(*plan, states);
    std::size_t next = 0; // the package of the plan whose turn it is
    const auto check = [&](const QString& file, QString& reason) {
        return checkPackage(file, {plan->options.presetsPath}, reason);
    };
    const auto take = [&](const QString& file, Findings&& findings) {
        while (plan->outputPath(plan->packages[next]) != file)
            printer.add(next++, nullptr);
        report.addFindings(next, findings);
        printer.add(next++, &findings);
    };
    readAll<Findings>(results, jobs, check, take);
    while (next < states.size())
        printer.add(next++, nullptr);
    printer.finish(report, results.failures, isChecked);
    if (hasPage && !isPageWritten(request, *plan, report.page(results.failures)))
        return CannotDo;
    if (!results.failures.empty())
        return CannotDo;
    const bool isAllDone = countOf(report.counts(), BatchState::Done) == states.size();
    return isAllDone && report.findingsOf(Severity::Error) == 0 ? NothingFound : SomethingFound;
}

} // namespace Ksx::Kit

// The parts "run", "resume", "status", "verify" and "commands" of the command "batch".
#include "command/batchcommand.h"
#include "command/jsonoutput.h"
#include "command/packagework.h"
#include "command/texttable.h"
#include "console.h"
#include "data/filename.h"
#include "ksx/kit/batchreport.h"
#include <algorithm>
#include <map>

namespace Ksx::Kit {

namespace {

std::optional<BatchPlan> planOf(const Request& request)
{
    return openPlan(planFile(request));
}

qint64 boundOf(const Request& request, const char* option, qint64 value)
{
    constexpr unsigned Most = 1U << 20;
    if (!request.has(option))
        return value;
    const unsigned bound = request.options[option].as<unsigned>();
    if (bound < 1 || bound > Most)
        throw UsageError("The option '--" + std::string(option) +
                         "' takes a number from 1 to 1048576");
    return bound;
}

BatchRunOptions runOptionsOf(const Request& request, const BatchPlan& plan)
{
    BatchRunOptions options;
    options.jobs = jobsOf(request);
    options.megabytes = boundOf(request, "memory", options.megabytes);
    options.seconds = boundOf(request, "time", options.seconds);
    if (request.has("shard")) {
        options.shard = request.options["shard"].as<unsigned>();
        if (*options.shard < 1 || *options.shard > plan.shardCount)
            throw UsageError("The plan has the shards 1 to " + std::to_string(plan.shardCount));
    }
    return options;
}

std::size_t packageCount(const BatchPlan& plan, const BatchRunOptions& options)
{
    return static_cast<std::size_t>(
        std::count_if(plan.packages.begin(), plan.packages.end(), [&](const BatchPackage& one) {
            return !options.shard || one.shard == *options.shard;
        }));
}

int runPlan(const Request& request, bool resumes)
{
    const std::optional<BatchPlan> plan = planOf(request);
    if (!plan)
        return CannotDo;
    BatchRunOptions options = runOptionsOf(request, *plan);
    options.resumes = resumes;
    const std::size_t total = packageCount(*plan, options);
    std::size_t done = 0;
    std::size_t failed = 0;
    Progress progress(total);
    const auto take = [&](const BatchPackage& package, const BatchResult& result) {
        progress.step();
        if (result.isDone) {
            ++done;
            return;
        }
        ++failed;
        progress.hide();
        printFailure({plan->inputPath(package), result.reason});
    };
    QString reason;
    const bool isRun = runBatch(*plan, options, take, reason);
    progress.hide();
    if (!isRun)
        printFailure({plan->options.target, reason});
    printLine(QStringLiteral("done: %1, failed: %2, left as they are: %3")
                  .arg(done)
                  .arg(failed)
                  .arg(total - done - failed));
    return isRun && failed == 0 ? NothingFound : CannotDo;
}

QJsonObject shardJson(unsigned shard, const BatchCounts& counts)
{
    QJsonObject object{{"shard", qint64(shard)}};
    for (const BatchState state : BatchStates)
        object[wordOf(state)] = qint64(countOf(counts, state));
    return object;
}

} // namespace

int runBatchPlan(const Request& request)
{
    return runPlan(request, false);
}

int resumeBatch(const Request& request)
{
    return runPlan(request, true);
}

int showBatchStatus(const Request& request)
{
    const std::optional<BatchPlan> plan = planOf(request);
    if (!plan)
        return CannotDo;
    const std::vector<BatchStatus> states = statusOf(*plan);
    std::map<unsigned, BatchCounts> shards;
    BatchCounts all;
    for (std::size_t i = 0; i < states.size(); ++i) {
        ++shards[plan->packages[i].shard][states[i].state];
        ++all[states[i].state];
    }
    if (request.has("json")) {
        JsonList list("batch status", "shards");
        for (const auto& [shard, counts] : shards)
            list.add(shardJson(shard, counts));
        list.finish(plan->failures);
    } else {
        for (const auto& [shard, counts] : shards)
            printLine(QStringLiteral("shard %1: %2").arg(shard).arg(countsText(counts)));
        printLine(QStringLiteral("all: %1").arg(countsText(all)));
    }
    return countOf(all, BatchState::Done) == states.size() ? NothingFound : SomethingFound;
}

int verifyBatchResults(const Request& request)
{
    const std::optional<BatchPlan> plan = planOf(request);
    if (!plan)
        return CannotDo;
    const BatchRunOptions options = runOptionsOf(request, *plan);
    const std::size_t total = packageCount(*plan, options);
    std::size_t faults = 0;
    Progress progress(total);
    const bool isSame =
        verifyBatch(*plan, options, [&](const BatchPackage& package, const QString& fault) {
            progress.step();
            if (fault.isEmpty())
                return;
            ++faults;
            progress.hide();
            printLine(
                QStringLiteral("%1: %2").arg(lineText(plan->outputPath(package)), lineText(fault)));
        });
    progress.hide();
    printLine(QStringLiteral("the same: %1, not the same: %2").arg(total - faults).arg(faults));
    return isSame ? NothingFound : SomethingFound;
}

int listBatchCommands(const Request& request)
{
    const std::optional<BatchPlan> plan = planOf(request);
    if (!plan)
        return CannotDo;
    const QString name = shellWord(planFile(request));
    for (unsigned shard = 1; shard <= plan->shardCount; ++shard)
        printLine(QStringLiteral("ksx batch run %1 --shard %2").arg(name).arg(shard));
    return NothingFound;
}

} // namespace Ksx::Kit

// The command "batch", whose first operand is the name of its part.
#include "command/batchcommand.h"

#include "command/commandtable.h"
#include "command/packagework.h"
#include "data/filename.h"
#include <algorithm>
#include <iterator>
#include <set>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;

struct Part
{
    const char* name;
    std::set<std::string> options;
    int (*run)(const Request& request);
};

const Part Parts[] = {
    {"plan",
     {"all-or-none", "clock", "jobs", "output", "presets-path", "shards", "shared", "to",
      "whole-plan"},
     &planBatch},
    {"run", {"jobs", "memory", "shard", "time"}, &runBatchPlan},
    {"resume", {"jobs", "memory", "shard", "time"}, &resumeBatch},
    {"status", {"json"}, &showBatchStatus},
    {"report", {"check", "html", "jobs", "json"}, &reportBatch},
    {"verify", {"jobs", "memory", "shard", "time"}, &verifyBatchResults},
    {"commands", {}, &listBatchCommands},
    {"submit", {"html", "memory", "slurm", "time"}, &submitBatch},
};

const Part& partOf(const Request& request)
{
    if (request.operands.isEmpty())
        throw UsageError("No part of the command given, such as plan");
    const std::string name = Orv::toBytes(request.operands.front());
    const auto* const part = std::find_if(std::begin(Parts), std::end(Parts),
                                          [&](const Part& one) { return one.name == name; });
    if (part == std::end(Parts))
        throw UsageError("There is no part " + name + " of the command");
    return *part;
}

} // namespace

void declareBatchOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        ("to", po::value<std::string>()->value_name("FOLDER"),
         "plan: The folder of the results, which have the names of the packages in their folders.")
        ("output,o", po::value<std::string>()->value_name("FILE"),
         "plan: The file of the plan. Without it standard output is written.")
        ("shards", po::value<unsigned>()->value_name("N"),
         "plan: Makes so many shards, or fewer for want of packages. Without it one.")
        ("shared", po::value<std::vector<std::string>>()->value_name("FOLDER"),
         "plan: A folder of packages that very many others need, as the presets library is one. "
         "May be given several times.")
        ("clock", po::value<unsigned>()->value_name("SECONDS"),
         "plan: The time since 1970 that new uids are taken from, for results that are the same "
         "each time. Without it the clock.")
        ("all-or-none", po::bool_switch(),
         "plan: Lets the results of packages that need each other appear together, when all of "
         "them are there and verified.")
        ("whole-plan", po::bool_switch(),
         "plan: Lets the results of all packages appear together, with --all-or-none.")
        ("shard", po::value<unsigned>()->value_name("K"),
         "run, resume, verify: Works on that shard alone.")
        ("memory", po::value<unsigned>()->value_name("MIB"),
         "run, resume, verify, submit: The memory that a package may take. Without it 1024.")
        ("time", po::value<unsigned>()->value_name("SECONDS"),
         "run, resume, verify, submit: The time that a package may take. Without it 600.")
        ("check", po::bool_switch(),
         "report: Adds the findings of a check of the results.")
        ("html", po::value<std::string>()->value_name("FILE"),
         "report, submit: Writes the report there as well, as a page of HTML with the findings "
         "of a check.")
        ("slurm", po::bool_switch(),
         "submit: Hands the shards to Slurm. Words behind '--' are options of its sbatch.");
    // clang-format on
    declareReadingOptions(options);
}

QString planFile(const Request& request)
{
    if (request.operands.size() != 1)
        throw UsageError("One plan is needed");
    return request.operands.front();
}

std::optional<BatchPlan> openPlan(const QString& file)
{
    QString reason;
    std::optional<BatchPlan> plan = readPlan(file, reason);
    if (!plan)
        printFailure({file, reason});
    return plan;
}

QString shellWord(QString text)
{
    // One character ends the quotation.
    return '\'' + text.replace('\'', QStringLiteral("'\\''")) + '\'';
}

int runBatch(const Request& request)
{
    const Part& part = partOf(request);
    for (const auto& [name, value] : request.options)
        if (name != "operands" && name != "help" && request.has(name.c_str()) &&
            part.options.count(name) == 0)
            throw UsageError("The option '--" + name + "' is none of 'ksx batch " + part.name +
                             "'");
    Request rest = request;
    rest.operands.removeFirst();
    return part.run(rest);
}

} // namespace Ksx::Kit

#include "command/packagework.h"

#include "console.h"
#include "core/fileplace.h"
#include "data/filename.h"
#include <iostream>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;

constexpr const char* JsonOption = "json";
constexpr const char* PresetsPathOption = "presets-path";
constexpr const char* JobsOption = "jobs";
constexpr unsigned MaximumJobs = 256;

QStringList linesOfInput()
{
    QStringList lines;
    for (std::string line; std::getline(std::cin, line);)
        if (!line.empty())
            lines.append(Orv::fromBytes(line));
    return lines;
}

} // namespace

void declareReadingOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        (JsonOption, po::bool_switch(), "Prints JSON, which docs/ksx.schema.json describes.")
        (PresetsPathOption, po::value<std::string>()->value_name("FOLDER"),
         "The folder of the presets library, where obl:// names lead to. Without it they lead to "
         "the current folder.")
        (JobsOption, po::value<unsigned>()->value_name("N"),
         "Reads so many files at a time. Without it as many as there are cores.");
    // clang-format on
}

QStringList operandsOf(const Request& request)
{
    QStringList names;
    for (const QString& operand : request.operands) {
        if (operand == QLatin1String("-"))
            names += linesOfInput();
        else
            names.append(operand);
    }
    return names;
}

PackageFiles filesOf(const Request& request)
{
    if (request.operands.isEmpty())
        throw UsageError("No package given");
    PackageFiles found = findPackageFiles(operandsOf(request));
    for (const Failure& failure : found.failures)
        printFailure(failure);
    return found;
}

QStringList presetsPathsOf(const Request& request)
{
    const QString path = request.text(PresetsPathOption);
    return path.isEmpty() ? QStringList() : QStringList(Orv::Core::absolutePath(path));
}

unsigned jobsOf(const Request& request)
{
    if (!request.has(JobsOption))
        return Orv::Core::availableCores();
    const auto jobs = request.options[JobsOption].as<unsigned>();
    if (jobs < 1 || jobs > MaximumJobs)
        throw UsageError("The option '--jobs' takes a number from 1 to 256");
    return jobs;
}

void printFailure(const Failure& failure)
{
    printError(QStringLiteral("Error! %1: %2").arg(failure.file, failure.reason));
}

} // namespace Ksx::Kit

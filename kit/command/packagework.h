// The operands, options, workers and failures of all commands that read packages.
#pragma once

#include "command/command.h"
#include "command/progress.h"
#include "core/orderedtasks.h"
#include "ksx/kit/packagefiles.h"
#include <deque>
#include <functional>
#include <optional>
#include <utility>

namespace Ksx::Kit {

// Adds the options "json", "presets-path" and "jobs".
void declareReadingOptions(boost::program_options::options_description& options);

// Returns the operands, with the lines of standard input in the place of "-".
QStringList operandsOf(const Request& request);

// Returns the files that the operands mean. "-" means the lines of standard input. Prints
// the failures of the search. Throws UsageError without an operand.
PackageFiles filesOf(const Request& request);

// Returns where "obl://" names lead to.
QStringList presetsPathsOf(const Request& request);

// Returns how many files are read at a time. Throws UsageError for a value that is no number of
// workers.
unsigned jobsOf(const Request& request);

// Prints "Error! ", the file and the reason to standard error.
void printFailure(const Failure& failure);

// Reads the files with workers and hands the results on in the order of the files. `read` runs in
// any thread. It returns none on failure, with the reason. `take` runs in this thread. Failures are
// printed, and added to `files.failures`.
template <class Result>
void readAll(PackageFiles& files, unsigned jobs,
             const std::function<std::optional<Result>(const QString&, QString&)>& read,
             const std::function<void(const QString&, Result&&)>& take)
{
    struct Reading
    {
        QString file;
        std::optional<Result> result = std::nullopt;
        QString reason = {};
    };
    constexpr std::size_t ReadingsPerWorker = 4; // enough to keep a worker from waiting
    Progress progress(static_cast<std::size_t>(files.files.size()));
    std::deque<Reading> readings; // a reading does not move while others come and go
    Orv::Core::OrderedTasks tasks(jobs);
    const auto finishOne = [&] {
        tasks.finish();
        Reading reading = std::move(readings.front());
        readings.pop_front();
        progress.step();
        if (reading.result) {
            take(reading.file, std::move(*reading.result));
            return;
        }
        files.failures.push_back({reading.file, reading.reason});
        progress.hide();
        printFailure(files.failures.back());
    };
    for (const QString& file : files.files) {
        if (readings.size() == ReadingsPerWorker * jobs)
            finishOne();
        Reading& reading = readings.emplace_back(Reading{file});
        tasks.add([&read, &reading] { reading.result = read(reading.file, reading.reason); });
    }
    while (!readings.empty())
        finishOne();
}

} // namespace Ksx::Kit

// Runs the plan of an update, and looks at what has become of it.
#pragma once

#include "ksx/kit/batchplan.h"
#include <QByteArray>
#include <QString>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// Returns the folder in the target for the reports and locks of runs.
QString stateFolder(const BatchPlan& plan);

// The result of one package.
struct BatchResult
{
    // The path in the target.
    QString output;
    // True also for a result that waits for the others of the plan.
    bool isDone = false;
    // A sentence, if the package failed.
    QString reason;
    // The sum of the bytes of the output.
    QByteArray sha256;
    // The sum of all that the output is made of, by which a later change is seen.
    QByteArray origin;
    // The share of the package in the time of its component.
    double seconds = 0;
};

// The choices of a user for a run.
struct BatchRunOptions
{
    // The number of processes at a time.
    unsigned jobs = 1;
    // The bounds of one package. A component has the sum of the bounds of its packages.
    qint64 megabytes = 1024;
    qint64 seconds = 600;
    // The only shard to run. None means all.
    std::optional<unsigned> shard;
    // Leaves out the packages whose results are there and current.
    bool resumes = false;
};

// Updates the packages of a plan, each component in a process of its own. The results are the same
// for any number of processes and shards. A package that fails takes along the packages that need
// it, and no other.
//
// `take` is called with the result of each package, in the order in which they end. Packages that
// are left out have none. Each shard gets a report in the folder ".ksx-batch" of the target.
//
// The results of a component or of the plan appear together if the plan says so. They are written to
// a folder in ".ksx-batch" and verified, and take their places when all of them are there. A run
// that is killed while they do is completed or taken back by the next run.
//
// Returns false with a sentence in `reason` if a shard cannot be run, such as while another run
// works on it or another plan is run into the target, and if results cannot take their places. The
// other shards are run all the same.
//
// The process must have no other thread.
bool runBatch(const BatchPlan& plan, const BatchRunOptions& options,
              const std::function<void(const BatchPackage&, const BatchResult&)>& take,
              QString& reason);

// The state of a package in the target.
enum class BatchState
{
    // It was not run, or its inputs have become others in the plan since.
    Pending,
    // The result is there as it was written.
    Done,
    // The result was written, and waits for the others of the plan.
    Staged,
    // The result was written, and it is not there any more or has other bytes.
    Changed,
    Failed,
};

// Returns the word for a state: "pending", "done", "staged", "changed" or "failed".
QString wordOf(BatchState state);

// A package with its state.
struct BatchStatus
{
    BatchState state = BatchState::Pending;
    // Of the last run. Empty for a package that is pending.
    BatchResult result;
};

// Returns the state of each package of a plan, in its order. Reads the results in the target.
std::vector<BatchStatus> statusOf(const BatchPlan& plan);

// Updates the results that are done again, each in a process of its own, and compares the bytes.
// Leaves the results as they are. `take` is called for each package, with a sentence for a package
// that is not done, or that becomes another one. Returns whether there was no such package. The
// process must have no other thread.
bool verifyBatch(const BatchPlan& plan, const BatchRunOptions& options,
                 const std::function<void(const BatchPackage&, const QString&)>& take);

} // namespace Ksx::Kit

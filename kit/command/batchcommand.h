// The parts of the command "batch", which updates whole libraries.
#pragma once

#include "ksx/kit/batchplan.h"
#include "ksx/kit/batchreport.h"
#include <QString>
#include <optional>

namespace Ksx::Kit {

struct Request;

// Returns the only operand. Throws UsageError if there are none or several.
QString planFile(const Request& request);

// Returns the absolute path of the page of a report. Returns an empty text without the option. Throws
// UsageError for no name of a file.
QString pagePath(const Request& request);

// Reads a plan. Returns none after an error line.
std::optional<BatchPlan> openPlan(const QString& file);

// Returns a text as one word of a shell.
QString shellWord(QString text);

// Returns the counts as one line.
QString countsText(const BatchCounts& counts);

// Each takes the operands behind its own name, and returns the exit code.
int planBatch(const Request& request);
int runBatchPlan(const Request& request);
int resumeBatch(const Request& request);
int showBatchStatus(const Request& request);
int reportBatch(const Request& request);
int verifyBatchResults(const Request& request);
int listBatchCommands(const Request& request);
int submitBatch(const Request& request);

} // namespace Ksx::Kit

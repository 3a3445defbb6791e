// The parts of the command "batch", which updates whole libraries.
#pragma once

#include "ksx/kit/batchplan.h"
#include <QString>
#include <optional>

namespace Ksx::Kit {

struct Request;

// Reads a plan. Returns none after an error line.
std::optional<BatchPlan> openPlan(const QString& file);

// Returns a text as one word of a shell.
QString shellWord(QString text);

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

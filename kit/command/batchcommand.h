// The parts of the command "batch", which updates whole libraries.
#pragma once

namespace Ksx::Kit {

struct Request;

// Each takes the operands behind its own name, and returns the exit code.
int planBatch(const Request& request);
int runBatchPlan(const Request& request);
int resumeBatch(const Request& request);
int showBatchStatus(const Request& request);
int reportBatch(const Request& request);
int verifyBatchResults(const Request& request);
int listBatchCommands(const Request& request);

} // namespace Ksx::Kit

#include "batch/statefolder.h"

namespace Ksx::Kit {

QString wordOf(BatchState state)
{
    switch (state) {
    case BatchState::Done:
        return QStringLiteral("done");
    case BatchState::Changed:
        return QStringLiteral("changed");
    case BatchState::Failed:
        return QStringLiteral("failed");
    default:
        return QStringLiteral("pending");
    }
}

std::vector<BatchStatus> statusOf(const BatchPlan& plan)
{
    const BatchResults results = formerResults(plan, originsOf(plan));
    std::vector<BatchStatus> all;
    for (const BatchPackage& package : plan.packages) {
        BatchStatus status;
        const auto result = results.constFind(package.output);
        if (result != results.constEnd()) {
            status.result = *result;
            QString reason;
            const std::optional<FileStamp> stamp =
                result->isDone ? stampOf(plan.outputPath(package), reason) : std::nullopt;
            if (!result->isDone)
                status.state = BatchState::Failed;
            else
                status.state = stamp && stamp->sha256 == result->sha256 ? BatchState::Done
                                                                        : BatchState::Changed;
        }
        all.push_back(std::move(status));
    }
    return all;
}

} // namespace Ksx::Kit

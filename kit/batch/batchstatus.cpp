#include "batch/statefolder.h"

namespace Ksx::Kit {

namespace {

bool hasSum(const QString& file, const QByteArray& sha256)
{
    QString reason;
    const std::optional<FileStamp> stamp = stampOf(file, reason);
    return stamp && stamp->sha256 == sha256;
}

} // namespace

QString wordOf(BatchState state)
{
    switch (state) {
    case BatchState::Done:
        return QStringLiteral("done");
    case BatchState::Staged:
        return QStringLiteral("staged");
    case BatchState::Changed:
        return QStringLiteral("changed");
    case BatchState::Failed:
        return QStringLiteral("failed");
    default:
        return QStringLiteral("pending");
    }
}

BatchState stateOf(const BatchPlan& plan, const BatchPackage& package, const BatchResult& result)
{
    if (!result.isDone)
        return BatchState::Failed;
    if (hasSum(plan.outputPath(package), result.sha256))
        return BatchState::Done;
    if (plan.options.unit == BatchUnit::Plan &&
        hasSum(stagedPath(plan, package.output), result.sha256))
        return BatchState::Staged;
    return BatchState::Changed;
}

std::vector<BatchStatus> statusOf(const BatchPlan& plan)
{
    const BatchResults results = formerResults(plan, originsOf(plan));
    std::vector<BatchStatus> all;
    for (const BatchPackage& package : plan.packages) {
        const auto result = results.constFind(package.output);
        if (result == results.constEnd())
            all.emplace_back();
        else
            all.push_back({stateOf(plan, package, *result), *result});
    }
    return all;
}

} // namespace Ksx::Kit

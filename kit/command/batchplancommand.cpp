// The part "plan" of the command "batch".
#include "command/batchcommand.h"
#include "command/packagework.h"
#include "command/texttable.h"
#include "console.h"
#include "core/fileplace.h"
#include "core/filesaver.h"
#include "data/filename.h"
#include "ksx/kit/updateplanner.h"
#include <QFile>
#include <algorithm>
#include <filesystem>
#include <set>

namespace Ksx::Kit {

namespace {

namespace fs = std::filesystem;

// Returns a path without links, as far as it exists.
QString realPlace(const QString& name)
{
    std::error_code error;
    const fs::path real =
        fs::weakly_canonical(fs::path(Orv::toBytes(Orv::Core::absolutePath(name))), error);
    const QString path = error ? Orv::Core::absolutePath(name) : Orv::fromBytes(real.native());
    return path.size() > 1 && path.endsWith('/') ? path.chopped(1) : path;
}

bool isWithin(const QString& path, const QString& folder)
{
    return path == folder || path.startsWith(folder == QLatin1String("/") ? folder : folder + '/');
}

QStringList foldersOf(const Request& request)
{
    QStringList names = operandsOf(request);
    if (names.isEmpty() || names.takeFirst() != QLatin1String("update"))
        throw UsageError("A plan is one of update");
    if (names.isEmpty())
        throw UsageError("No folder given");
    QStringList folders;
    for (const QString& name : names) {
        std::error_code error;
        if (!fs::is_directory(fs::path(Orv::toBytes(name)), error))
            throw UsageError("There is no folder " + Orv::toBytes(name));
        folders.append(realPlace(name));
    }
    return folders;
}

// Returns the target. Throws UsageError where results could take the place of packages.
QString targetOf(const Request& request, const QStringList& folders)
{
    if (!request.has("to") || request.text("to").isEmpty())
        throw UsageError("The option '--to' is missing");
    QString target = realPlace(request.text("to"));
    for (const QString& folder : folders)
        if (isWithin(target, folder) || isWithin(folder, target))
            throw UsageError("The folder of the results and " + Orv::toBytes(folder) +
                             " are in each other");
    return target;
}

BatchUnit unitOf(const Request& request)
{
    if (!request.has("all-or-none")) {
        if (request.has("whole-plan"))
            throw UsageError("The option '--whole-plan' is one of '--all-or-none'");
        return BatchUnit::Package;
    }
    return request.has("whole-plan") ? BatchUnit::Plan : BatchUnit::Component;
}

BatchOptions optionsOf(const Request& request)
{
    BatchOptions options;
    options.folders = foldersOf(request);
    options.target = targetOf(request, options.folders);
    const QStringList presets = presetsPathsOf(request);
    options.presetsPath = presets.isEmpty() ? Orv::Core::currentFolder() : presets.front();
    if (!presets.isEmpty())
        options.shared.append(realPlace(presets.front()));
    if (request.has("shared"))
        for (const std::string& name : request.options["shared"].as<std::vector<std::string>>())
            options.shared.append(realPlace(Orv::fromBytes(name)));
    if (request.has("clock"))
        options.clock = request.options["clock"].as<unsigned>();
    options.unit = unitOf(request);
    return options;
}

unsigned shardsOf(const Request& request)
{
    constexpr unsigned Most = 100000;
    const unsigned shards = request.has("shards") ? request.options["shards"].as<unsigned>() : 1;
    if (shards < 1 || shards > Most)
        throw UsageError("The option '--shards' takes a number from 1 to 100000");
    return shards;
}

BatchPlan planOf(const Request& request)
{
    const unsigned shards = shardsOf(request);
    const unsigned jobs = jobsOf(request);
    const BatchOptions options = optionsOf(request);
    UpdatePlanner planner(options);
    for (const Failure& failure : planner.failures())
        printFailure(failure);
    PackageFiles files;
    const auto read = [&](const QString& file, QString& reason) {
        return scoutPackage(file, options.presetsPath, reason);
    };
    const auto take = [&](const QString& file, ScoutedPackage&& package) {
        planner.add(file, package);
    };
    for (files.files = planner.next(); !files.files.isEmpty(); files.files = planner.next())
        readAll<ScoutedPackage>(files, jobs, read, take);
    for (const Failure& failure : files.failures)
        planner.addFailure(failure);
    return planner.finish(shards);
}

QString summaryOf(const BatchPlan& plan)
{
    std::set<unsigned> components;
    qint64 bytes = 0;
    for (const BatchPackage& package : plan.packages) {
        components.insert(package.component);
        bytes += package.stamp.size;
    }
    QString text;
    for (const MissingDependency& missing : plan.missing)
        text +=
            QStringLiteral("%1: there is no file %2 for the dependency %3\n")
                .arg(lineText(missing.file), lineText(missing.path), lineText(missing.dependency));
    return text + QStringLiteral("packages: %1, bytes: %2, components: %3, shards: %4, missing "
                                 "dependencies: %5, left out: %6")
                      .arg(plan.packages.size())
                      .arg(bytes)
                      .arg(components.size())
                      .arg(plan.shardCount)
                      .arg(plan.missing.size())
                      .arg(plan.failures.size());
}

// Returns true for a file that the plan is about, whatever it is called.
bool isInPlan(const BatchPlan& plan, const QString& name)
{
    const QString file = Orv::Core::realPath(name);
    return std::any_of(plan.packages.begin(), plan.packages.end(),
                       [&](const auto& package) { return plan.inputPath(package) == file; }) ||
           std::any_of(plan.sources.begin(), plan.sources.end(),
                       [&](const auto& source) { return source.file == file; }) ||
           std::any_of(plan.failures.begin(), plan.failures.end(),
                       [&](const auto& failure) { return failure.file == file; });
}

bool isSaved(const BatchPlan& plan, const QString& name)
{
    if (name.isEmpty()) {
        QFile output;
        return output.open(stdout, QIODevice::WriteOnly) && writePlan(output, plan) &&
               output.flush();
    }
    Orv::Core::FileSaver saver(Orv::Core::realPath(name));
    return saver.open(QIODevice::WriteOnly) && writePlan(saver, plan) && saver.commit();
}

} // namespace

int planBatch(const Request& request)
{
    const BatchPlan plan = planOf(request);
    const QString output = request.text("output");
    if (!output.isEmpty() && isInPlan(plan, output))
        throw UsageError("The plan would take the place of the package " + Orv::toBytes(output));
    if (!isSaved(plan, output)) {
        printFailure({output.isEmpty() ? QStringLiteral("standard output") : output,
                      QStringLiteral("the plan cannot be written")});
        return CannotDo;
    }
    if (!output.isEmpty())
        printLine(summaryOf(plan));
    if (!plan.failures.empty())
        return CannotDo;
    return plan.missing.empty() ? NothingFound : SomethingFound;
}

} // namespace Ksx::Kit

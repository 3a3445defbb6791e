// The part "submit" of the command "batch".
#include "command/batchcommand.h"
#include "command/packagework.h"
#include "console.h"
#include "core/fileplace.h"
#include "data/filename.h"
#include "ksx/kit/batchrun.h"
#include <QCoreApplication>
#include <QProcess>

namespace Ksx::Kit {

namespace {

QString program()
{
    return shellWord(QCoreApplication::applicationFilePath());
}

// Returns the script of each task. A task that is started again, such as one whose machine was lost,
// goes on where it was.
QString taskScript(const QString& plan, const QString& bounds)
{
    return QStringLiteral("#!/bin/sh\n"
                          "part=run\n"
                          "if [ \"${SLURM_RESTART_COUNT:-0}\" -gt 0 ]; then part=resume; fi\n"
                          "exec %1 batch \"$part\" %2 --shard \"$SLURM_ARRAY_TASK_ID\" "
                          "--jobs \"${SLURM_CPUS_PER_TASK:-1}\"%3\n")
        .arg(program(), shellWord(plan), bounds);
}

QString reportScript(const QString& plan, const QString& report, const QString& page)
{
    return QStringLiteral("#!/bin/sh\nexec %1 batch report %2 --json%3 > %4\n")
        .arg(program(), shellWord(plan), page, shellWord(report));
}

// Returns the words that let the last job write a page too.
QString pageWords(const Request& request)
{
    const QString page = pagePath(request);
    if (page.isEmpty())
        return {};
    return QStringLiteral(" --html %1 --jobs \"${SLURM_CPUS_PER_TASK:-1}\"").arg(shellWord(page));
}

QString boundsOf(const Request& request)
{
    QString words;
    for (const char* option : {"memory", "time"})
        if (request.has(option))
            words += QStringLiteral(" --%1 %2")
                         .arg(QLatin1String(option))
                         .arg(request.options[option].as<unsigned>());
    return words;
}

// Hands a script to Slurm. Returns the number of the job, or an empty text after an error line.
QString submit(const QString& script, const QStringList& options)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("sbatch"), QStringList{QStringLiteral("--parsable")} + options);
    if (!process.waitForStarted(-1)) {
        printFailure({QStringLiteral("sbatch"), QStringLiteral("the program of Slurm cannot be "
                                                               "started")});
        return {};
    }
    process.write(QByteArray::fromStdString(Orv::toBytes(script)));
    process.closeWriteChannel();
    process.waitForFinished(-1);
    // The number, and the name of the cluster where there are several.
    QString job = QString::fromLatin1(process.readAllStandardOutput()).trimmed().section(';', 0, 0);
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 && !job.isEmpty())
        return job;
    printFailure({QStringLiteral("sbatch"), QStringLiteral("Slurm does not take the job")});
    return {};
}

} // namespace

int submitBatch(const Request& request)
{
    if (!request.has("slurm"))
        throw UsageError("The queue is missing, which is named by '--slurm'");
    QStringList words = request.operands;
    if (words.isEmpty())
        throw UsageError("One plan is needed");
    const QString file = words.takeFirst();
    const QString page = pageWords(request);
    const std::optional<BatchPlan> plan = openPlan(file);
    if (!plan)
        return CannotDo;
    const QString path = Orv::Core::absolutePath(file);
    const QString array = submit(
        taskScript(path, boundsOf(request)),
        words + QStringList{QStringLiteral("--job-name=ksx-batch"), QStringLiteral("--requeue"),
                            QStringLiteral("--array=1-%1").arg(plan->shardCount)});
    if (array.isEmpty())
        return CannotDo;
    const QString report =
        submit(reportScript(path, stateFolder(*plan) + QStringLiteral("/report.json"), page),
               words + QStringList{QStringLiteral("--job-name=ksx-batch-report"),
                                   QStringLiteral("--dependency=afterany:") + array});
    if (report.isEmpty()) {
        printLine(QStringLiteral("tasks: %1").arg(array));
        return CannotDo;
    }
    printLine(QStringLiteral("tasks: %1, report: %2").arg(array, report));
    return NothingFound;
}

} // namespace Ksx::Kit

#include "batch/statefolder.h"

#include "batch/linedjson.h"
#include "batch/unitplacement.h"
#include "core/filesaver.h"
#include "core/regularfile.h"
#include "data/filename.h"
#include "sha256.h"
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Core::Descriptor;
using Orv::Core::uninterrupted;

constexpr int ReportVersion = 1;
constexpr qint64 LargestReport = qint64(1) << 29;
constexpr unsigned FileMode = 0666;

// Returns an object in one line. A batch has as many as packages, and an object of Qt takes three
// times as long.
QByteArray toJson(const BatchResult& result)
{
    const BatchState state = result.isDone ? BatchState::Done : BatchState::Failed;
    return "{\"output\":" + jsonText(result.output) + ",\"state\":" + jsonText(wordOf(state)) +
           ",\"reason\":" + jsonText(result.reason) + ",\"sha256\":\"" + result.sha256 +
           "\",\"origin\":\"" + result.origin +
           "\",\"seconds\":" + QByteArray::number(result.seconds, 'g', 6) + '}';
}

BatchResult resultIn(const QJsonObject& object)
{
    BatchResult result;
    result.output = object["output"].toString();
    result.isDone = object["state"].toString() == wordOf(BatchState::Done);
    result.reason = object["reason"].toString();
    result.sha256 = object["sha256"].toString().toLatin1();
    result.origin = object["origin"].toString().toLatin1();
    result.seconds = object["seconds"].toDouble();
    return result;
}

// Returns the results in a journal or a report: both have one in a line.
std::vector<BatchResult> resultsIn(const QString& file)
{
    std::vector<BatchResult> results;
    Orv::Core::RegularFile device(file);
    if (!device.open(QIODevice::ReadOnly) || device.size() > LargestReport)
        return results;
    // The end of a device that fails is never told, but it has no more lines.
    for (QByteArray line = device.readLine(); !line.isEmpty(); line = device.readLine()) {
        line = line.trimmed();
        if (line.endsWith(','))
            line.chop(1);
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        if (object.contains(QLatin1String("output")))
            results.push_back(resultIn(object));
    }
    return results;
}

// Adds a text of which the end is known as well.
void add(Sha256& hash, const QByteArray& bytes)
{
    hash.add(QByteArray::number(bytes.size()) + ':');
    hash.add(bytes);
}

// Returns the sum of the choices, and of the packages that any other one may need.
QByteArray commonOrigin(const BatchPlan& plan)
{
    Sha256 hash;
    add(hash, plan.options.presetsPath.toUtf8());
    add(hash, plan.options.target.toUtf8());
    add(hash, plan.options.clock ? QByteArray::number(*plan.options.clock) : QByteArray());
    add(hash, QByteArray::number(static_cast<int>(plan.options.unit)));
    for (const BatchSource& source : plan.sources)
        add(hash, source.stamp.sha256);
    for (const BatchPackage& package : plan.packages)
        if (plan.options.isShared(plan.inputPath(package)))
            add(hash, package.stamp.sha256);
    return hash.result();
}

// Returns the sum of a whole plan.
QByteArray sumOf(const BatchPlan& plan)
{
    Sha256 hash;
    add(hash, commonOrigin(plan));
    for (const BatchPackage& package : plan.packages) {
        add(hash, plan.inputPath(package).toUtf8());
        add(hash, package.output.toUtf8());
        add(hash, package.stamp.sha256);
        add(hash, QByteArray::number(package.component));
        add(hash, QByteArray::number(package.shard));
    }
    return hash.result().toHex();
}

Descriptor openState(const QString& path, int flags)
{
    return Orv::Core::openAt(AT_FDCWD, Orv::toBytes(path), flags | O_CLOEXEC, FileMode);
}

bool isLocked(const Descriptor& file, int operation)
{
    return uninterrupted([&] { return flock(file.number(), operation); }) == 0;
}

// Takes a lock that nobody else has. The copies of a run that was killed a moment ago may have it for
// another moment.
bool isLockedAlone(const Descriptor& file)
{
    constexpr int Attempts = 10;
    constexpr std::chrono::milliseconds Pause{20};
    for (int attempt = 1; !isLocked(file, LOCK_EX | LOCK_NB); ++attempt) {
        if (attempt == Attempts)
            return false;
        std::this_thread::sleep_for(Pause);
    }
    return true;
}

QByteArray bytesOf(const Descriptor& file)
{
    char bytes[128];
    const auto count = uninterrupted([&] { return pread(file.number(), bytes, sizeof(bytes), 0); });
    return count > 0 ? QByteArray(bytes, static_cast<int>(count)) : QByteArray();
}

bool replaceBytes(const Descriptor& file, const QByteArray& bytes)
{
    return ftruncate(file.number(), 0) == 0 && lseek(file.number(), 0, SEEK_SET) == 0 &&
           file.write(bytes.constData(), bytes.size());
}

void removeFile(const QString& path)
{
    unlink(Orv::toBytes(path).c_str());
}

QString shardPath(const BatchPlan& plan, unsigned shard)
{
    return stateFolder(plan) + QStringLiteral("/shard-%1").arg(shard, 6, 10, QLatin1Char('0'));
}

} // namespace

QString stateFolder(const BatchPlan& plan)
{
    return plan.options.target + QStringLiteral("/.ksx-batch");
}

QString stagedPath(const BatchPlan& plan, const QString& output)
{
    return stateFolder(plan) + QStringLiteral("/staged/") + output;
}

std::vector<QByteArray> originsOf(const BatchPlan& plan, std::optional<unsigned> shard)
{
    const QByteArray common = commonOrigin(plan);
    QHash<unsigned, std::vector<std::size_t>> components;
    for (std::size_t i = 0; i < plan.packages.size(); ++i)
        if (!shard || plan.packages[i].shard == *shard)
            components[plan.packages[i].component].push_back(i);
    std::vector<QByteArray> origins(plan.packages.size());
    for (const std::vector<std::size_t>& component : std::as_const(components)) {
        Sha256 hash;
        add(hash, common);
        for (const std::size_t i : component) {
            add(hash, plan.inputPath(plan.packages[i]).toUtf8());
            add(hash, plan.packages[i].output.toUtf8());
            add(hash, plan.packages[i].stamp.sha256);
        }
        const QByteArray sum = hash.result().toHex();
        for (const std::size_t i : component)
            origins[i] = sum;
    }
    return origins;
}

BatchResults formerResults(const BatchPlan& plan, const std::vector<QByteArray>& origins)
{
    QHash<QString, QByteArray> originByOutput;
    for (std::size_t i = 0; i < plan.packages.size(); ++i)
        originByOutput.insert(plan.packages[i].output, origins[i]);
    BatchResults all;
    const QDir folder(stateFolder(plan));
    const QStringList patterns = {QStringLiteral("shard-*.json"), QStringLiteral("shard-*.log")};
    for (const QString& name : folder.entryList(patterns, QDir::Files, QDir::Name))
        for (const BatchResult& result : resultsIn(folder.filePath(name))) {
            const auto origin = originByOutput.constFind(result.output);
            if (origin == originByOutput.constEnd() || *origin != result.origin)
                continue;
            BatchResult& known = all[result.output];
            if (!known.isDone || result.isDone)
                known = result;
        }
    return all;
}

std::optional<TargetLock> TargetLock::take(const BatchPlan& plan, QString& reason)
{
    const QString folder = stateFolder(plan);
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(Orv::toBytes(folder)), error);
    Descriptor file = openState(folder + QStringLiteral("/lock"), O_RDWR | O_CREAT);
    if (!file.isOpen()) {
        reason = QStringLiteral("the folder %1 cannot be written").arg(folder);
        return std::nullopt;
    }
    // The first of the runs of a plan notes the plan. The others find it.
    const QByteArray sum = sumOf(plan);
    if (isLocked(file, LOCK_EX | LOCK_NB) || (bytesOf(file) != sum && isLockedAlone(file))) {
        if (!replaceBytes(file, sum))
            reason = QStringLiteral("the folder %1 cannot be written").arg(folder);
        else
            reason = recoverPlacements(plan, allJournals());
        if (!reason.isEmpty())
            return std::nullopt;
        removeLeftovers(plan, plan.options.unit == BatchUnit::Plan);
    }
    if (!isLocked(file, LOCK_SH) || bytesOf(file) != sum) {
        reason = QStringLiteral("another batch is run into the folder");
        return std::nullopt;
    }
    return TargetLock(std::move(file));
}

std::optional<ShardJournal> ShardJournal::begin(const BatchPlan& plan, unsigned shard, bool resumes,
                                                QString& reason)
{
    const QString path = shardPath(plan, shard);
    Descriptor file = openState(path + QStringLiteral(".log"), O_RDWR | O_CREAT | O_APPEND);
    if (!file.isOpen()) {
        reason = QStringLiteral("the file %1.log cannot be written").arg(path);
        return std::nullopt;
    }
    if (!isLockedAlone(file)) {
        reason = QStringLiteral("another run works on it");
        return std::nullopt;
    }
    reason = recoverPlacements(plan, journalsOfShard(shard));
    if (!reason.isEmpty())
        return std::nullopt;
    if (!resumes) {
        removeFile(path + QStringLiteral(".json"));
        if (ftruncate(file.number(), 0) != 0) {
            reason = QStringLiteral("the file %1.log cannot be written").arg(path);
            return std::nullopt;
        }
    }
    return ShardJournal(std::move(file), path, shard);
}

std::optional<PlacingLock> PlacingLock::take(const BatchPlan& plan, QString& reason)
{
    const QString path = stateFolder(plan) + QStringLiteral("/placing.lock");
    Descriptor file = openState(path, O_RDWR | O_CREAT);
    if (!file.isOpen() || !isLocked(file, LOCK_EX)) {
        reason = QStringLiteral("the file %1 cannot be written").arg(path);
        return std::nullopt;
    }
    return PlacingLock(std::move(file));
}

bool ShardJournal::add(const BatchResult& result)
{
    // The first line end is for a line in which a former run was killed.
    const QByteArray line = '\n' + toJson(result) + '\n';
    return m_file.write(line.constData(), line.size());
}

bool ShardJournal::finish(const BatchPlan& plan, const BatchResults& results)
{
    Orv::Core::FileSaver saver(m_path + QStringLiteral(".json"));
    if (!saver.open(QIODevice::WriteOnly))
        return false;
    LinedJson report(saver);
    report.add("ksx", ReportVersion);
    report.add("shard", qint64(m_shard));
    report.beginList("packages");
    for (const BatchPackage& package : plan.packages)
        if (package.shard == m_shard && results.contains(package.output))
            report.addItem(toJson(results[package.output]));
    report.endList();
    // The report has all that the journal has.
    return report.finish() && saver.commit() && ftruncate(m_file.number(), 0) == 0;
}

} // namespace Ksx::Kit

#include "ksx/kit/batchrun.h"

#include "batch/componentupdate.h"
#include "batch/dependencypaths.h"
#include "batch/statefolder.h"
#include "batch/unitplacement.h"
#include "batch/workerprocess.h"
#include "core/fileplace.h"
#include <QStringList>
#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

namespace Ksx::Kit {

namespace {

using Packages = std::vector<const BatchPackage*>;

// Packages that are updated together.
struct Component
{
    Packages packages;
    // True once packages have been left out because a process ended without an answer.
    bool isSecondTry = false;
};

// A shard of which not all packages have a result.
struct OpenShard
{
    ShardJournal journal;
    std::size_t packagesLeft = 0;
    bool hasJournalFailed = false;
};

class Run
{
public:
    using Take = std::function<void(const BatchPackage&, const BatchResult&)>;

    Run(const BatchPlan& plan, const BatchRunOptions& options, const Take& take)
        : m_plan(plan), m_options(options), m_take(take), m_stamps(plannedStamps(plan)),
          m_origins(originsOf(plan, options.shard))
    {
        for (std::size_t i = 0; i < plan.packages.size(); ++i)
            m_indices[&plan.packages[i]] = i;
        for (const BatchPackage& package : plan.packages)
            m_components[package.shard][package.component].push_back(&package);
        if (options.resumes)
            m_results = formerResults(plan, m_origins);
    }

    // Returns a sentence for each failure of a shard.
    QStringList run()
    {
        runShards();
        if (m_plan.options.unit == BatchUnit::Plan)
            placePlan();
        return m_failures;
    }

private:
    void runShards()
    {
        unsigned shard = m_options.shard.value_or(1);
        const unsigned last = m_options.shard.value_or(m_plan.shardCount);
        while (shard <= last || !m_waiting.empty() || !m_pool.isEmpty()) {
            if (m_pool.isFull() || (m_waiting.empty() && shard > last))
                m_pool.finishOne();
            else if (!m_waiting.empty())
                start();
            else
                beginShard(shard++);
        }
    }

    // Lets the results of all shards take their places, if this is the last of the runs.
    void placePlan()
    {
        QString reason;
        const auto lock = PlacingLock::take(m_plan, reason);
        if (lock)
            reason = recoverPlacements(m_plan, journalOfPlan());
        if (reason.isEmpty()) {
            if (const std::optional<QStringList> outputs = stagedOutputs())
                reason = placeResults(m_plan, journalOfPlan(), *outputs);
            else if (m_options.shard)
                return; // the last of the other runs does it
            else
                reason = QStringLiteral("the results of the plan are not all there, and so none "
                                        "takes its place");
        }
        if (reason.isEmpty())
            removeLeftovers(m_plan, false);
        else
            m_failures.append(reason);
    }

    // Returns the results that wait. Returns none if some are not there.
    std::optional<QStringList> stagedOutputs() const
    {
        if (!haveAllResults())
            return std::nullopt;
        QStringList outputs;
        const std::vector<BatchStatus> states = statusOf(m_plan);
        for (std::size_t i = 0; i < states.size(); ++i)
            if (states[i].state == BatchState::Staged)
                outputs.append(m_plan.packages[i].output);
            else if (states[i].state != BatchState::Done)
                return std::nullopt;
        return outputs;
    }

    // Says it without a look at the bytes, which most of the runs can spare.
    bool haveAllResults() const
    {
        const BatchResults results = formerResults(m_plan, originsOf(m_plan));
        return std::all_of(
            m_plan.packages.begin(), m_plan.packages.end(),
            [&](const BatchPackage& package) { return results.value(package.output).isDone; });
    }

    void beginShard(unsigned shard)
    {
        QString reason;
        auto journal = ShardJournal::begin(m_plan, shard, m_options.resumes, reason);
        if (!journal) {
            m_failures.append(QStringLiteral("shard %1: %2").arg(shard).arg(reason));
            return;
        }
        std::size_t packagesLeft = 0;
        for (Packages& packages : componentsOf(shard)) {
            if (m_options.resumes && areCurrent(packages))
                continue;
            packagesLeft += packages.size();
            m_waiting.push_back({std::move(packages)});
        }
        m_shards.emplace(shard, OpenShard{std::move(*journal), packagesLeft});
        endShardIfDone(shard);
    }

    // Returns the components of a shard, the largest first: a large one at the end would leave the
    // other processes without work.
    std::vector<Packages> componentsOf(unsigned shard)
    {
        std::vector<std::pair<qint64, Packages>> components;
        for (auto& [number, packages] : m_components[shard]) {
            qint64 bytes = 0;
            for (const BatchPackage* package : packages)
                bytes += package->stamp.size;
            components.emplace_back(bytes, std::move(packages));
        }
        std::stable_sort(components.begin(), components.end(),
                         [](const auto& a, const auto& b) { return a.first > b.first; });
        std::vector<Packages> sorted;
        sorted.reserve(components.size());
        for (auto& [bytes, packages] : components)
            sorted.push_back(std::move(packages));
        return sorted;
    }

    bool areCurrent(const Packages& packages) const
    {
        return std::all_of(packages.begin(), packages.end(), [&](const BatchPackage* package) {
            const auto result = m_results.constFind(package->output);
            if (result == m_results.constEnd())
                return false;
            const BatchState state = stateOf(m_plan, *package, *result);
            return state == BatchState::Done || state == BatchState::Staged;
        });
    }

    WorkerBounds boundsFor(std::size_t packages) const
    {
        constexpr qint64 Most = 1 << 30; // of anything
        const auto count = static_cast<qint64>(packages);
        return {std::min(m_options.megabytes * count, Most),
                std::chrono::seconds(std::min(m_options.seconds * count, Most))};
    }

    void start()
    {
        Component component = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_pool.start(requestFor(component.packages), boundsFor(component.packages.size()),
                     [this, component](const WorkerResult& result) { finish(component, result); });
    }

    // A request to a process names packages by their indices.
    QByteArray requestFor(const Packages& packages) const
    {
        QByteArray request;
        for (const BatchPackage* package : packages)
            request += QByteArray::number(qulonglong(m_indices[package])) + ' ';
        return request;
    }

    // Runs in a process of the pool.
    QByteArray answerTo(const QByteArray& request) const
    {
        Packages packages;
        for (const QByteArray& index : request.trimmed().split(' '))
            packages.push_back(&m_plan.packages[index.toULongLong()]);
        return updateComponent(m_plan, m_stamps, packages).toBytes();
    }

    void finish(const Component& component, const WorkerResult& result)
    {
        const std::size_t count = component.packages.size();
        const auto outcome = ComponentOutcome::fromBytes(result.answer);
        if (!result.failure.isEmpty() || !outcome) {
            leaveOutCulprits(component, result.failure);
        } else if (outcome->savings.size() != count) {
            leaveOut(component, outcome->failures);
        } else if (const QString fault = unitFault(component.packages, *outcome);
                   !fault.isEmpty()) {
            failTogether(component.packages, *outcome, fault);
        } else {
            const double seconds = result.seconds / static_cast<double>(count);
            for (std::size_t i = 0; i < count; ++i)
                noteSaving(*component.packages[i], outcome->savings[i], seconds);
        }
    }

    void noteSaving(const BatchPackage& package, const ComponentOutcome::Saving& saving,
                    double seconds)
    {
        BatchResult result;
        result.isDone = saving.isSaved();
        result.sha256 = saving.sha256;
        result.seconds = seconds;
        result.reason = saving.reason;
        note(package, std::move(result));
    }

    // Lets the results of a component take their places. Returns a sentence if one of them is not
    // there, or if they cannot. There is nothing to do where each package is by itself.
    QString unitFault(const Packages& packages, const ComponentOutcome& outcome) const
    {
        if (m_plan.options.unit == BatchUnit::Package)
            return {};
        for (std::size_t i = 0; i < packages.size(); ++i)
            if (!outcome.savings[i].isSaved())
                return othersFault(m_plan.inputPath(*packages[i]), outcome.savings[i].reason);
        if (m_plan.options.unit == BatchUnit::Plan)
            return {};
        return placeResults(m_plan, journalOf(packages), outputsOf(packages));
    }

    static QString journalOf(const Packages& packages)
    {
        return journalOfComponent(packages.front()->shard, packages.front()->component);
    }

    // Returns the reason for which the others of a component have no results if a file fails.
    static QString othersFault(const QString& file, const QString& reason)
    {
        return QStringLiteral("no package of its component has a result: %1: %2").arg(file, reason);
    }

    // Notes the failures of packages, and `fault` for the other packages of the component.
    void failTogether(const Packages& packages, const ComponentOutcome& outcome,
                      const QString& fault)
    {
        if (!isPlacing(m_plan, journalOf(packages)))
            removeStaged(m_plan, outputsOf(packages));
        for (std::size_t i = 0; i < packages.size(); ++i)
            fail({packages[i]}, outcome.savings[i].isSaved() ? fault : outcome.savings[i].reason);
    }

    static QStringList outputsOf(const Packages& packages)
    {
        QStringList outputs;
        for (const BatchPackage* package : packages)
            outputs.append(package->output);
        return outputs;
    }

    // The process of a component has ended without an answer. Opens all files of the component one
    // by one to find those that are to blame.
    void leaveOutCulprits(Component component, const QString& reason)
    {
        std::vector<Failure> culprits;
        if (!component.isSecondTry && component.packages.size() > 1)
            for (const QString& file :
                 NeededFiles(m_plan.options.presetsPath).closureOf(pathsOf(component.packages)))
                if (const QString fault = faultOf(file); !fault.isEmpty())
                    culprits.push_back({file, fault});
        component.isSecondTry = true;
        if (culprits.empty())
            fail(component.packages, reason);
        else
            leaveOut(component, culprits);
    }

    QString faultOf(const QString& file) const
    {
        WorkerProcess process([&](const QByteArray&) { return openOne(m_plan, file).toBytes(); });
        process.ask({}, boundsFor(1));
        WorkerProcess::waitForOne({&process});
        const WorkerResult result = process.takeResult();
        const auto outcome = ComponentOutcome::fromBytes(result.answer);
        if (outcome && !outcome->failures.empty())
            return outcome->failures.front().reason;
        return result.failure;
    }

    // Notes the failures of files and of all packages that need them, and lets the others be
    // updated.
    void leaveOut(const Component& component, const std::vector<Failure>& failures)
    {
        QHash<QString, QString> reasons;
        for (const Failure& failure : failures)
            reasons.insert(failure.file, failure.reason);
        NeededFiles needs(m_plan.options.presetsPath);
        Packages others;
        for (const BatchPackage* package : component.packages) {
            const QString file = realPath(*package);
            const QString needed = needs.firstNeeded(file, reasons);
            if (needed.isNull())
                others.push_back(package);
            else if (needed == file)
                fail({package}, reasons[file]);
            else
                fail({package}, QStringLiteral("it needs %1: %2").arg(needed, reasons[needed]));
        }
        if (others.size() == component.packages.size())
            fail(others, QStringLiteral("it needs %1: %2")
                             .arg(failures.front().file, failures.front().reason));
        else if (m_plan.options.unit != BatchUnit::Package)
            fail(others, othersFault(failures.front().file, failures.front().reason));
        else if (!others.empty())
            m_waiting.push_front({std::move(others), component.isSecondTry});
    }

    QString realPath(const BatchPackage& package) const
    {
        const QString path = m_plan.inputPath(package);
        const QString real = Orv::Core::canonicalPath(path);
        return real.isEmpty() ? path : real;
    }

    QStringList pathsOf(const Packages& packages) const
    {
        QStringList paths;
        for (const BatchPackage* package : packages)
            paths.append(realPath(*package));
        return paths;
    }

    void fail(const Packages& packages, const QString& reason)
    {
        BatchResult result;
        result.reason = reason;
        for (const BatchPackage* package : packages)
            note(*package, result);
    }

    void note(const BatchPackage& package, BatchResult result)
    {
        result.output = package.output;
        result.origin = m_origins[m_indices[&package]];
        OpenShard& shard = m_shards.at(package.shard);
        if (!shard.hasJournalFailed && !shard.journal.add(result)) {
            shard.hasJournalFailed = true;
            m_failures.append(
                QStringLiteral("shard %1: its journal cannot be written").arg(package.shard));
        }
        m_results[result.output] = result;
        m_take(package, result);
        --shard.packagesLeft;
        endShardIfDone(package.shard);
    }

    void endShardIfDone(unsigned number)
    {
        const auto shard = m_shards.find(number);
        if (shard->second.packagesLeft > 0)
            return;
        if (!shard->second.journal.finish(m_plan, m_results))
            m_failures.append(QStringLiteral("shard %1: its report cannot be written").arg(number));
        m_shards.erase(shard);
    }

    const BatchPlan& m_plan;
    const BatchRunOptions& m_options;
    const Take& m_take;
    PlannedStamps m_stamps;
    std::vector<QByteArray> m_origins; // by the index of the package
    QHash<const BatchPackage*, std::size_t> m_indices;
    BatchResults m_results;
    std::map<unsigned, std::map<unsigned, Packages>> m_components; // by shard
    std::deque<Component> m_waiting;
    WorkerPool m_pool{m_options.jobs,
                      [this](const QByteArray& request) { return answerTo(request); }};
    std::map<unsigned, OpenShard> m_shards;
    QStringList m_failures;
};

// Returns a sentence unless another update of a result has given the same bytes.
QString faultOf(const WorkerResult& result, const QByteArray& sha256)
{
    if (!result.failure.isEmpty())
        return result.failure;
    const auto outcome = ComponentOutcome::fromBytes(result.answer);
    return verificationFault(outcome ? *outcome : ComponentOutcome(), sha256);
}

} // namespace

bool runBatch(const BatchPlan& plan, const BatchRunOptions& options,
              const std::function<void(const BatchPackage&, const BatchResult&)>& take,
              QString& reason)
{
    const std::optional<TargetLock> lock = TargetLock::take(plan, reason);
    if (!lock)
        return false;
    try {
        const QStringList failures = Run(plan, options, take).run();
        reason = failures.join(QStringLiteral("; "));
        return failures.isEmpty();
    } catch (const std::runtime_error& error) {
        reason = QString::fromUtf8(error.what());
        return false;
    }
}

bool verifyBatch(const BatchPlan& plan, const BatchRunOptions& options,
                 const std::function<void(const BatchPackage&, const QString&)>& take)
{
    const std::vector<BatchStatus> states = statusOf(plan);
    WorkerPool pool(options.jobs, [&plan](const QByteArray& index) {
        return updateAgain(plan, plan.packages[index.toULongLong()]).toBytes();
    });
    bool isSame = true;
    const auto tell = [&](const BatchPackage& package, const QString& fault) {
        isSame = isSame && fault.isEmpty();
        take(package, fault);
    };
    for (std::size_t i = 0; i < states.size(); ++i) {
        const BatchPackage& package = plan.packages[i];
        const BatchStatus& status = states[i];
        if (options.shard && package.shard != *options.shard)
            continue;
        if (status.state != BatchState::Done) {
            tell(package, QStringLiteral("it is %1").arg(wordOf(status.state)));
            continue;
        }
        while (pool.isFull())
            pool.finishOne();
        pool.start(QByteArray::number(qulonglong(i)),
                   {options.megabytes, std::chrono::seconds(options.seconds)},
                   [&tell, &package, sum = status.result.sha256](const WorkerResult& result) {
                       tell(package, faultOf(result, sum));
                   });
    }
    while (!pool.isEmpty())
        pool.finishOne();
    return isSame;
}

} // namespace Ksx::Kit

// The folder ".ksx-batch" of a target: locks, and the results of packages.
#pragma once

#include "core/descriptor.h"
#include "ksx/kit/batchplan.h"
#include "ksx/kit/batchrun.h"
#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// Returns the sum of all that the result of each package is made of, in their order. With a shard,
// the sums of all other packages are empty.
std::vector<QByteArray> originsOf(const BatchPlan& plan,
                                  std::optional<unsigned> shard = std::nullopt);

// Returns the path at which a result waits for the others of its unit.
QString stagedPath(const BatchPlan& plan, const QString& output);

// The results of packages, by their outputs.
using BatchResults = QHash<QString, BatchResult>;

// Returns the results of earlier runs of packages that are made of the same now, as `origins` has
// it. Of several results of a package one that is done counts.
BatchResults formerResults(const BatchPlan& plan, const std::vector<QByteArray>& origins);

// Returns what has become of a result that was written or has failed. Reads the files.
BatchState stateOf(const BatchPlan& plan, const BatchPackage& package, const BatchResult& result);

// The right of a run to write into a target. Runs of one plan share it.
class TargetLock
{
public:
    // Makes the state folder. The first of several runs completes placements that a killed run has
    // left. Returns none with a sentence in `reason` if that cannot be, if another plan has the
    // target, or if it cannot be written.
    static std::optional<TargetLock> take(const BatchPlan& plan, QString& reason);

private:
    explicit TargetLock(Orv::Core::Descriptor file) : m_file(std::move(file)) {}

    Orv::Core::Descriptor m_file; // locked while it is open
};

// The right to put the results of a plan into their places. Others wait for it.
class PlacingLock
{
public:
    // Returns none with a sentence in `reason` if it cannot be had.
    static std::optional<PlacingLock> take(const BatchPlan& plan, QString& reason);

private:
    explicit PlacingLock(Orv::Core::Descriptor file) : m_file(std::move(file)) {}

    Orv::Core::Descriptor m_file; // locked while it is open
};

// The results of one shard while it is run. They are in a journal, and in the report at the end.
class ShardJournal
{
public:
    // Completes placements that a killed run of the shard has left. Returns none with a sentence in
    // `reason` if that cannot be, if another run has the shard, or if nothing can be written. The former results of the shard are removed unless the run resumes.
    static std::optional<ShardJournal> begin(const BatchPlan& plan, unsigned shard, bool resumes,
                                             QString& reason);

    // Adds a result. Returns false on failure.
    bool add(const BatchResult& result);
    // Writes the report with the results of all packages of the shard. Returns false on failure.
    bool finish(const BatchPlan& plan, const BatchResults& results);

private:
    ShardJournal(Orv::Core::Descriptor file, const QString& path, unsigned shard)
        : m_file(std::move(file)), m_path(path), m_shard(shard)
    {}

    Orv::Core::Descriptor m_file; // locked while it is open
    QString m_path;
    unsigned m_shard;
};

} // namespace Ksx::Kit

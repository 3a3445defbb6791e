// A plan of the update of a library: which packages are updated together, and where they go.
#pragma once

#include "ksx/kit/packagefiles.h"
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <optional>
#include <vector>

class QIODevice;

namespace Ksx::Kit {

// A state of a file, by which a later change is seen.
struct FileStamp
{
    qint64 size = 0;
    // Milliseconds since 1970 in UTC.
    qint64 modified = 0;
    // 64 digits of base 16.
    QByteArray sha256;
};

// Returns the present state of a file. Returns none for one that cannot be read as a whole, with a
// sentence in `reason`.
std::optional<FileStamp> stampOf(const QString& file, QString& reason);

// Returns whether a file still has the bytes of that state, whatever its time is.
bool hasStamp(const QString& file, const FileStamp& stamp);

// The packages whose results appear in the target together, or not at all.
enum class BatchUnit
{
    // Each package by itself.
    Package,
    Component,
    // All packages of the plan.
    Plan,
};

// The choices of a user for a plan. All paths are absolute and without links.
struct BatchOptions
{
    // The folders of the library.
    QStringList folders;
    // The folder of the results.
    QString target;
    // Where "obl://" names lead to.
    QString presetsPath;
    // Folders of packages that very many others need, such as presets, and further packages that
    // these need. A need of one of these does not join packages.
    QStringList shared;
    // The time in seconds since 1970 that uids are taken from. None means the clock.
    std::optional<qint64> clock;
    BatchUnit unit = BatchUnit::Package;

    // Returns whether a file is in one of the shared folders, or one of the shared packages.
    bool isShared(const QString& file) const;
};

// A package that is updated.
struct BatchPackage
{
    // The index of its folder in the options.
    std::size_t folder = 0;
    // The path in that folder.
    QString input;
    // The path in the target.
    QString output;
    FileStamp stamp;
    // Packages of one component are updated together, in the order of the plan. Components and
    // shards count from 1.
    unsigned component = 0;
    unsigned shard = 0;
};

// A package that others need, and that is not updated itself.
struct BatchSource
{
    QString file;
    FileStamp stamp;
};

// A dependency without a file.
struct MissingDependency
{
    // The package that has it.
    QString file;
    // The name in the package.
    QString dependency;
    // The path that the name leads to.
    QString path;
};

struct BatchPlan
{
    BatchOptions options;
    std::vector<BatchPackage> packages;
    std::vector<BatchSource> sources;
    std::vector<MissingDependency> missing;
    // The files that are left out.
    std::vector<Failure> failures;
    unsigned shardCount = 0;

    QString inputPath(const BatchPackage& package) const;
    QString outputPath(const BatchPackage& package) const;
};

// Writes a plan as JSON, a line for each package. Returns false if the device takes no more.
bool writePlan(QIODevice& device, const BatchPlan& plan);

// Reads a plan. Returns none for a file that is no sound plan, with a sentence in `reason`. All
// inputs of a plan lie in its folders and all outputs in its target, and no two outputs are equal.
std::optional<BatchPlan> readPlan(const QString& file, QString& reason);

} // namespace Ksx::Kit

// Makes the plan of the update of a library.
#pragma once

#include "ksx/kit/batchplan.h"
#include <QHash>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// A name of a dependency, and the path that it leads to.
struct NamedPath
{
    QString name;
    // Without a link in it if the file exists.
    QString path;
    bool isFound = false;
};

// The facts of a package that a plan is made of.
struct ScoutedPackage
{
    FileStamp stamp;
    // Without those on itself.
    std::vector<NamedPath> dependencies;
};

// Reads the head of a package and the sum of its bytes. Returns none on failure, with a sentence in
// `reason`. May be called in any thread.
std::optional<ScoutedPackage> scoutPackage(const QString& file, const QString& presetsPath,
                                           QString& reason);

// Makes one plan.
//
//     UpdatePlanner planner(options);
//     for (QStringList files = planner.next(); !files.isEmpty(); files = planner.next())
//         for (const QString& file : files)
//             if (auto package = scoutPackage(file, options.presetsPath, reason))
//                 planner.add(file, *package);
//             else
//                 planner.addFailure({file, reason});
//     const BatchPlan plan = planner.finish(4);
class UpdatePlanner
{
public:
    // Searches the folders. A file that is found twice, and one whose result would take the place
    // of another one, becomes a failure.
    explicit UpdatePlanner(const BatchOptions& options);

    // Returns the files to scout next: first the packages of the folders, then the packages that
    // these need. Each is returned once. Returns nothing at the end.
    QStringList next();
    void add(const QString& file, const ScoutedPackage& package);
    // Leaves a file out.
    void addFailure(const Failure& failure);

    // Returns the failures so far.
    const std::vector<Failure>& failures() const { return m_plan.failures; }

    // Returns the plan with no more than so many shards, of about as many bytes each.
    BatchPlan finish(unsigned shards);

private:
    struct Node
    {
        QString file;
        std::optional<BatchPackage> package = std::nullopt; // none if it is not updated
        FileStamp stamp = {};
        std::vector<std::size_t> needs = {};
        bool isScouted = false;
        bool isShared = false;
    };

    void addInput(std::size_t folder, const QString& file);
    std::size_t nodeOf(const QString& file);
    void shareNeeds();
    std::vector<std::size_t> componentRoots() const;

    BatchPlan m_plan;
    std::vector<Node> m_nodes;
    QHash<QString, std::size_t> m_byFile;
    QHash<QString, QString> m_inputByOutput;
    QStringList m_pending;
};

} // namespace Ksx::Kit

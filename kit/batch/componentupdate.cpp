#include "batch/componentupdate.h"

#include "batch/statefolder.h"
#include "core/fileplace.h"
#include "core/messagenode.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/dependencyopener.h"
#include "ksx/core/failurereason.h"
#include "ksx/core/libraryservices.h"
#include "ksx/core/packagesaver.h"
#include "ksx/core/packageslistmanager.h"
#include "ksx/core/packagewriter.h"
#include "ksx/core/uidsource.h"
#include "ksx/kit/packagehead.h"
#include "packageparts.h"
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>
#include <unistd.h>

namespace Ksx::Kit {

namespace {

using Core::DependencyOpener;
using Core::PackagesListManager;
using Packages = std::vector<const BatchPackage*>;
using Entry = PackagesListManager::DependencyEntry;

// The documents of a process that ends without taking them apart.
class Documents
{
public:
    explicit Documents(const BatchPlan& plan) : m_presets(plan.options.presetsPath)
    {
        Core::UidSource::restart();
        if (plan.options.clock)
            Core::UidSource::setClock([time = *plan.options.clock] { return time; });
    }

    PackagesListManager& manager() { return *m_services.packagesListManager(); }

    // Returns the files that failed.
    std::vector<Failure> open(const QStringList& files, bool followsDependencies)
    {
        DependencyOpener opener(manager(), {m_presets}, DependencyOpener::OnFailure::GoOn);
        opener.setWorkers(1); // the processes are the workers
        opener.setFollowsDependencies(followsDependencies);
        Orv::Core::MessageNode report;
        opener.open(files, &report);
        std::vector<Failure> failures;
        for (const DependencyOpener::Failure& failure : opener.failures())
            failures.push_back(
                {failure.filename, Core::failureReason(failure.filename, failure.error)});
        return failures;
    }

    // Opens a file by the uid that it has for itself, as if another package asked for it.
    bool openByUid(const QString& file, std::int32_t uid)
    {
        const DependencyOpener opener(manager(), {m_presets});
        Core::LoadedEntries loaded;
        std::list<Entry> pending(1);
        pending.front().filename = file;
        pending.front().uid = uid;
        for (; !pending.empty(); pending.pop_front()) {
            Entry& entry = pending.front();
            if (!opener.openEntry(entry, loaded))
                return false;
            if (loaded.findByFile(entry.filename) == nullptr)
                pending.splice(pending.end(), manager().dependenciesOf(entry));
            loaded.add(entry);
        }
        return manager().finishLoading(loaded.all());
    }

    QDir presets() const { return QDir(m_presets); }

private:
    QString m_presets;
    Core::LibraryServices m_services{Core::ServiceParts::Packages::EndWithServices};
};

// Returns the state in the plan of an open file. Its path has no links, and that of the plan may have
// some. Returns null for a file that is not in the plan.
const FileStamp* plannedStamp(const QString& file, const PlannedStamps& stamps,
                              const BatchPlan& plan, const Packages& packages)
{
    const auto stamp = stamps.constFind(file);
    if (stamp != stamps.constEnd())
        return &*stamp;
    for (const BatchPackage* package : packages)
        if (Orv::Core::canonicalPath(plan.inputPath(*package)) == file)
            return &package->stamp;
    return nullptr;
}

// Returns the open files that are not as the plan has them.
std::vector<Failure> changedFiles(PackagesListManager& manager, const PlannedStamps& stamps,
                                  const BatchPlan& plan, const Packages& packages)
{
    std::vector<Failure> changed;
    for (const auto& package : manager.openPackages()) {
        const QString file = manager.filePath(*package);
        const FileStamp* const stamp = plannedStamp(file, stamps, plan, packages);
        if (stamp == nullptr)
            changed.push_back({file, QStringLiteral("it is not in the plan, which has to be made "
                                                    "again")});
        else if (!hasStamp(file, *stamp))
            changed.push_back({file, QStringLiteral("it has changed since the plan was made")});
    }
    return changed;
}

ComponentOutcome::Saving savingOf(bool isSaved, const QString& file)
{
    QString reason;
    const std::optional<FileStamp> stamp = isSaved ? stampOf(file, reason) : std::nullopt;
    return stamp ? ComponentOutcome::Saving{true, stamp->sha256} : ComponentOutcome::Saving();
}

void makeFolderOf(const QString& file)
{
    std::error_code error; // the saving fails then
    std::filesystem::create_directories(std::filesystem::path(Orv::toBytes(file)).parent_path(),
                                        error);
}

// Returns the uid that a package has for itself, or -1.
std::int32_t ownUid(const QString& file)
{
    QString reason;
    if (const std::optional<PackageHead> head = readHead(file, reason))
        for (const NamedDependency& dependency : head->dependencies)
            if (dependency.filename == QLatin1String(ItselfName))
                return static_cast<std::int32_t>(dependency.uid.toUInt());
    return -1;
}

} // namespace

PlannedStamps plannedStamps(const BatchPlan& plan)
{
    PlannedStamps stamps;
    for (const BatchPackage& package : plan.packages)
        stamps.insert(plan.inputPath(package), package.stamp);
    for (const BatchSource& source : plan.sources)
        stamps.insert(source.file, source.stamp);
    return stamps;
}

QByteArray ComponentOutcome::toBytes() const
{
    QJsonArray failed;
    for (const Failure& failure : failures)
        failed.append(QJsonArray{failure.file, failure.reason});
    QJsonArray saved;
    for (const Saving& saving : savings)
        saved.append(saving.isSaved ? QString::fromLatin1(saving.sha256) : QString());
    return QJsonDocument(QJsonArray{failed, saved}).toJson(QJsonDocument::Compact);
}

std::optional<ComponentOutcome> ComponentOutcome::fromBytes(const QByteArray& bytes)
{
    const QJsonArray parts = QJsonDocument::fromJson(bytes).array();
    if (parts.size() != 2)
        return std::nullopt;
    const QJsonArray failed = parts[0].toArray();
    const QJsonArray saved = parts[1].toArray();
    ComponentOutcome outcome;
    for (const auto& failure : failed)
        outcome.failures.push_back(
            {failure.toArray()[0].toString(), failure.toArray()[1].toString()});
    for (const auto& sum : saved)
        outcome.savings.push_back({!sum.toString().isEmpty(), sum.toString().toLatin1()});
    return outcome;
}

ComponentOutcome updateComponent(const BatchPlan& plan, const PlannedStamps& stamps,
                                 const Packages& packages)
{
    Documents documents(plan);
    QStringList files;
    for (const BatchPackage* package : packages)
        files.append(plan.inputPath(*package));
    ComponentOutcome outcome;
    outcome.failures = documents.open(files, true);
    if (outcome.failures.empty())
        outcome.failures = changedFiles(documents.manager(), stamps, plan, packages);
    if (!outcome.failures.empty())
        return outcome;
    Core::PackageSaver saver(documents.presets(), 1);
    for (std::size_t i = 0; i < packages.size(); ++i) {
        const QString target = plan.outputPath(*packages[i]);
        makeFolderOf(target);
        saver.add(*documents.manager().packageForPath(files[static_cast<int>(i)]), target);
    }
    for (const BatchPackage* package : packages)
        outcome.savings.push_back(savingOf(saver.next().isSaved, plan.outputPath(*package)));
    return outcome;
}

ComponentOutcome openOne(const BatchPlan& plan, const QString& file)
{
    ComponentOutcome outcome;
    outcome.failures = Documents(plan).open({file}, false);
    return outcome;
}

ComponentOutcome updateAgain(const BatchPlan& plan, const BatchPackage& package)
{
    const QString file = plan.outputPath(package);
    Documents documents(plan);
    ComponentOutcome outcome;
    if (!documents.openByUid(file, ownUid(file))) {
        outcome.failures.push_back(
            {file, QStringLiteral("it cannot be opened with what it needs")});
        return outcome;
    }
    const QString copy =
        stateFolder(plan) + QStringLiteral("/verify-%1.obl").arg(QString::number(getpid()));
    const bool isSaved = Core::savePackage(*documents.manager().packageForPath(file), copy,
                                           documents.presets(), nullptr, file);
    outcome.savings.push_back(savingOf(isSaved, copy));
    std::error_code error;
    std::filesystem::remove(std::filesystem::path(Orv::toBytes(copy)), error);
    return outcome;
}

} // namespace Ksx::Kit

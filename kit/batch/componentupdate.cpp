#include "batch/componentupdate.h"

#include "batch/statefolder.h"
#include "core/fileplace.h"
#include "core/messagenode.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/dependencyopener.h"
#include "ksx/core/failurereason.h"
#include "ksx/core/libraryservices.h"
#include "ksx/core/packageslistmanager.h"
#include "ksx/core/packagewriter.h"
#include "ksx/core/uidsource.h"
#include "ksx/kit/packagehead.h"
#include "packageparts.h"
#include "sha256.h"
#include <QBuffer>
#include <QDataStream>
#include <QDir>
#include <filesystem>

namespace Ksx::Kit {

namespace {

using Core::DependencyOpener;
using Core::PackagesListManager;
using Packages = std::vector<const BatchPackage*>;
using Entry = PackagesListManager::DependencyEntry;

// The open documents of one component. A process has those of one at a time.
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

    // Opens a result by the uid that it has for itself, as if another package asked for it. `file` has
    // its bytes, and `place` is its path. Returns an empty box on failure.
    PackagesListManager::PackageBox openResult(const QString& file, const QString& place,
                                               std::int32_t uid)
    {
        QString reason;
        auto package = openVersionAt(place, file, {m_presets}, reason);
        if (package == nullptr)
            return {};
        const auto box = manager().keep(std::move(package));
        const DependencyOpener opener(manager(), {m_presets});
        Core::LoadedEntries loaded;
        std::list<Entry> pending(1);
        pending.front().filename = place;
        pending.front().uid = uid;
        pending.front().package = box;
        for (; !pending.empty(); pending.pop_front()) {
            Entry& entry = pending.front();
            if (!opener.openEntry(entry, loaded))
                return {};
            if (loaded.findByFile(entry.filename) == nullptr)
                pending.splice(pending.end(), manager().dependenciesOf(entry));
            loaded.add(entry);
        }
        return manager().finishLoading(loaded.all()) ? box : PackagesListManager::PackageBox();
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
    if (!stamp)
        return {{}, QStringLiteral("the result cannot be written")};
    return {stamp->sha256, {}};
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

// Updates the bytes of a result that are in a file.
ComponentOutcome updateAgain(const BatchPlan& plan, const BatchPackage& package,
                             const QString& file)
{
    const QString place = plan.outputPath(package);
    Documents documents(plan);
    ComponentOutcome outcome;
    const auto opened = documents.openResult(file, place, ownUid(file));
    if (!opened) {
        outcome.failures.push_back(
            {place, QStringLiteral("it cannot be opened with what it needs")});
        return outcome;
    }
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    if (Core::renderPackage(*opened, place, documents.presets(), bytes))
        outcome.savings.push_back({Sha256::digitsOf(bytes.data()), {}});
    return outcome;
}

ComponentOutcome saveComponent(const BatchPlan& plan, const PlannedStamps& stamps,
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
    for (std::size_t i = 0; i < packages.size(); ++i) {
        const QString target = plan.outputPath(*packages[i]);
        const QString file = plan.options.unit == BatchUnit::Package
                                 ? target
                                 : stagedPath(plan, packages[i]->output);
        makeFolderOf(target);
        makeFolderOf(file);
        const auto package = documents.manager().packageForPath(files[static_cast<int>(i)]);
        outcome.savings.push_back(savingOf(
            Core::savePackage(*package, file, documents.presets(), nullptr, target), file));
    }
    return outcome;
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
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << quint32(failures.size());
    for (const Failure& failure : failures)
        stream << failure.file << failure.reason;
    stream << quint32(savings.size());
    for (const Saving& saving : savings)
        stream << saving.sha256 << saving.reason;
    return bytes;
}

std::optional<ComponentOutcome> ComponentOutcome::fromBytes(const QByteArray& bytes)
{
    ComponentOutcome outcome;
    QDataStream stream(bytes);
    quint32 count = 0;
    for (stream >> count; count > 0 && stream.status() == QDataStream::Ok; --count) {
        Failure& failure = outcome.failures.emplace_back();
        stream >> failure.file >> failure.reason;
    }
    for (stream >> count; count > 0 && stream.status() == QDataStream::Ok; --count) {
        Saving& saving = outcome.savings.emplace_back();
        stream >> saving.sha256 >> saving.reason;
    }
    return stream.status() == QDataStream::Ok ? std::optional(std::move(outcome)) : std::nullopt;
}

ComponentOutcome updateComponent(const BatchPlan& plan, const PlannedStamps& stamps,
                                 const Packages& packages)
{
    ComponentOutcome outcome = saveComponent(plan, stamps, packages);
    if (plan.options.unit == BatchUnit::Package)
        return outcome;
    for (std::size_t i = 0; i < outcome.savings.size(); ++i) {
        ComponentOutcome::Saving& saving = outcome.savings[i];
        if (saving.isSaved())
            saving.reason = verificationFault(
                updateAgain(plan, *packages[i], stagedPath(plan, packages[i]->output)),
                saving.sha256);
    }
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
    return updateAgain(plan, package, plan.outputPath(package));
}

QString verificationFault(const ComponentOutcome& outcome, const QByteArray& sha256)
{
    if (!outcome.failures.empty())
        return outcome.failures.front().reason;
    if (outcome.savings.size() != 1 || !outcome.savings.front().isSaved())
        return QStringLiteral("it cannot be written again");
    return outcome.savings.front().sha256 == sha256
               ? QString()
               : QStringLiteral("another update of it gives other bytes");
}

} // namespace Ksx::Kit

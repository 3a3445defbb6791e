#include "ksx/kit/updateplanner.h"

#include "batch/components.h"
#include "batch/dependencypaths.h"
#include "core/fileplace.h"
#include "ksx/kit/packagehead.h"
#include <algorithm>
#include <utility>

namespace Ksx::Kit {

namespace {

// The name without the ending of packages. A name may have other points.
QString withoutEnding(const QString& name)
{
    return name.left(name.lastIndexOf('.'));
}

} // namespace

std::optional<ScoutedPackage> scoutPackage(const QString& file, const QString& presetsPath,
                                           QString& reason)
{
    const std::optional<PackageHead> head = readHead(file, reason);
    const std::optional<FileStamp> stamp = head ? stampOf(file, reason) : std::nullopt;
    if (!stamp)
        return std::nullopt;
    return ScoutedPackage{*stamp, dependencyPaths(file, *head, presetsPath)};
}

UpdatePlanner::UpdatePlanner(const BatchOptions& options)
{
    m_plan.options = options;
    for (int folder = 0; folder < options.folders.size(); ++folder) {
        const PackageFiles found = findPackageFiles({options.folders[folder]});
        for (const Failure& failure : found.failures)
            addFailure(failure);
        for (const QString& file : found.files)
            addInput(static_cast<std::size_t>(folder), file);
    }
}

void UpdatePlanner::addInput(std::size_t folder, const QString& file)
{
    const QString real = Orv::Core::canonicalPath(file);
    if (m_byFile.contains(real)) {
        addFailure({file, QStringLiteral("it is the file %1 under another name").arg(real)});
        return;
    }
    BatchPackage package;
    package.folder = folder;
    const QString& path = m_plan.options.folders[static_cast<int>(folder)];
    package.input = file.mid(path.size() + (path.endsWith('/') ? 0 : 1));
    package.output = withoutEnding(package.input) + QStringLiteral(".obl");
    QString& former = m_inputByOutput[package.output];
    if (!former.isEmpty()) {
        addFailure(
            {file, QStringLiteral("its result would take the place of that of %1").arg(former)});
        return;
    }
    former = file;
    m_nodes[nodeOf(real.isEmpty() ? file : real)].package = std::move(package);
}

std::size_t UpdatePlanner::nodeOf(const QString& file)
{
    const auto known = m_byFile.constFind(file);
    if (known != m_byFile.constEnd())
        return *known;
    m_byFile.insert(file, m_nodes.size());
    m_nodes.push_back({file});
    m_pending.append(file);
    return m_nodes.size() - 1;
}

QStringList UpdatePlanner::next()
{
    return std::exchange(m_pending, {});
}

void UpdatePlanner::add(const QString& file, const ScoutedPackage& package)
{
    const std::size_t index = m_byFile[file];
    std::vector<std::size_t> needs;
    for (const NamedPath& dependency : package.dependencies) {
        if (dependency.isFound)
            needs.push_back(nodeOf(dependency.path));
        else
            m_plan.missing.push_back({file, dependency.name, dependency.path});
    }
    Node& node = m_nodes[index];
    node.needs = std::move(needs);
    node.stamp = package.stamp;
    node.isScouted = true;
}

void UpdatePlanner::addFailure(const Failure& failure)
{
    m_plan.failures.push_back(failure);
}

// What a shared package needs is read by all that need that one, and so it is shared as well.
void UpdatePlanner::shareNeeds()
{
    std::vector<std::size_t> pending;
    for (std::size_t node = 0; node < m_nodes.size(); ++node) {
        m_nodes[node].isShared = m_plan.options.isShared(m_nodes[node].file);
        if (m_nodes[node].isShared)
            pending.push_back(node);
    }
    while (!pending.empty()) {
        const std::vector<std::size_t>& needs = m_nodes[pending.back()].needs;
        pending.pop_back();
        for (const std::size_t need : needs) {
            if (m_nodes[need].isShared)
                continue;
            m_nodes[need].isShared = true;
            m_plan.options.shared.append(m_nodes[need].file);
            pending.push_back(need);
        }
    }
}

// Returns the first node of the component of each node.
std::vector<std::size_t> UpdatePlanner::componentRoots() const
{
    Components components(m_nodes.size());
    for (std::size_t node = 0; node < m_nodes.size(); ++node)
        for (const std::size_t need : m_nodes[node].needs)
            if (!m_nodes[need].isShared)
                components.join(node, need);
    std::vector<std::size_t> roots(m_nodes.size());
    for (std::size_t node = 0; node < m_nodes.size(); ++node)
        roots[node] = components.groupOf(node);
    return roots;
}

BatchPlan UpdatePlanner::finish(unsigned shards)
{
    shareNeeds();
    const std::vector<std::size_t> roots = componentRoots();
    QHash<std::size_t, unsigned> numbers;
    std::vector<qint64> bytes;
    for (std::size_t index = 0; index < m_nodes.size(); ++index) {
        Node& node = m_nodes[index];
        if (!node.isScouted)
            continue;
        if (!node.package) {
            m_plan.sources.push_back({node.file, node.stamp});
            continue;
        }
        unsigned& number = numbers[roots[index]];
        if (number == 0) {
            bytes.push_back(0);
            number = static_cast<unsigned>(bytes.size());
        }
        node.package->component = number;
        node.package->stamp = node.stamp;
        bytes[number - 1] += node.stamp.size;
        m_plan.packages.push_back(std::move(*node.package));
    }
    m_plan.shardCount = std::max(1U, std::min(shards, static_cast<unsigned>(bytes.size())));
    const std::vector<std::size_t> places = distribute(bytes, m_plan.shardCount);
    for (BatchPackage& package : m_plan.packages)
        package.shard = static_cast<unsigned>(places[package.component - 1]) + 1;
    m_nodes.clear();
    return std::move(m_plan);
}

} // namespace Ksx::Kit

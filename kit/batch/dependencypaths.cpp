#include "batch/dependencypaths.h"

#include "core/fileplace.h"
#include "core/version.h"
#include "data/filename.h"
#include "data/xmlvalueconverter.h"
#include "packageparts.h"
#include <QDir>
#include <optional>
#include <utility>

namespace Ksx::Kit {

namespace {

using PresetsNames = Orv::Data::XmlValueConverterURLPrefixReplacement;
using RelativeNames = Orv::Data::XmlValueConverterURLRelativeToAbsolute;

// Older packages name files by an ending and a scheme of their own.
constexpr Orv::Core::Version FirstWithPresentNames{1, 0, 1, 3962};

QString presentName(QString name, const PackageHead& head)
{
    Orv::Core::Version version;
    if (version.fromString(head.updaterVersion) && version >= FirstWithPresentNames)
        return name;
    const QString ending = QStringLiteral(".kestrix");
    const QString scheme = QStringLiteral("ksx://");
    if (name.endsWith(ending))
        name = name.left(name.size() - ending.size()) + QStringLiteral(".obl");
    if (name.startsWith(scheme))
        name = QStringLiteral("obl://") + name.mid(scheme.size());
    return name;
}

} // namespace

std::vector<NamedPath> dependencyPaths(const QString& file, const PackageHead& head,
                                       const QString& presetsPath)
{
    const PresetsNames presets("obl://", {QDir(presetsPath)});
    const RelativeNames relative(file);
    std::vector<NamedPath> paths;
    for (const NamedDependency& dependency : head.dependencies) {
        if (dependency.filename == QLatin1String(ItselfName))
            continue;
        std::string path = Orv::toBytes(presentName(dependency.filename, head));
        relative.convert(path, path);
        presets.convert(path, path);
        NamedPath named{dependency.filename, Orv::fromBytes(path), false};
        const QString found = Orv::Core::canonicalPath(named.path);
        named.isFound = !found.isEmpty();
        if (named.isFound)
            named.path = found;
        if (named.path != file)
            paths.push_back(std::move(named));
    }
    return paths;
}

QStringList NeededFiles::closureOf(const QStringList& files)
{
    QStringList closure;
    QSet<QString> known;
    QStringList pending = files;
    while (!pending.isEmpty()) {
        const QString file = pending.takeLast();
        if (known.contains(file))
            continue;
        known.insert(file);
        closure.append(file);
        pending += needsOf(file);
    }
    return closure;
}

QString NeededFiles::firstNeeded(const QString& file, const QHash<QString, QString>& failed)
{
    for (const QString& needed : closureOf({file}))
        if (failed.contains(needed))
            return needed;
    return {};
}

const QStringList& NeededFiles::needsOf(const QString& file)
{
    const auto known = m_needs.find(file);
    if (known != m_needs.end())
        return *known;
    QString reason;
    QStringList needs;
    if (const std::optional<PackageHead> head = readHead(file, reason))
        for (const NamedPath& dependency : dependencyPaths(file, *head, m_presetsPath))
            needs.append(dependency.path);
    return *m_needs.insert(file, needs);
}

} // namespace Ksx::Kit

#include "ksx/kit/comparison.h"

#include "compare/packagecomparison.h"
#include "compare/version.h"
#include "data/content/package.h"

namespace Ksx::Kit {

QString wordOf(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Added:
        return QStringLiteral("added");
    case ChangeKind::Removed:
        return QStringLiteral("removed");
    case ChangeKind::Moved:
        return QStringLiteral("moved");
    case ChangeKind::Renamed:
        return QStringLiteral("renamed");
    default:
        return QStringLiteral("changed");
    }
}

std::optional<std::vector<Difference>> comparePackages(const PackageVersion& first,
                                                       const PackageVersion& second,
                                                       const ComparisonOptions& options,
                                                       QString& file, QString& reason)
{
    const auto versions = openVersions(first, second, file, reason);
    if (!versions)
        return std::nullopt;
    return PackageComparison(*versions->first, *versions->second, options, versions->folder).run();
}

} // namespace Ksx::Kit

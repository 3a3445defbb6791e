#include "ksx/kit/merge.h"

#include "compare/version.h"
#include "data/content/package.h"
#include "ksx/core/packagewriter.h"
#include "merge/contentmerge.h"
#include "merge/mergecheck.h"
#include "merge/mergestate.h"
#include "merge/objectmerge.h"
#include <QFileInfo>
#include <iterator>
#include <utility>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;

bool canBeWritten(const QString& name)
{
    return name.endsWith(QLatin1String(".obl"), Qt::CaseInsensitive) ||
           name.endsWith(QLatin1String(".obl.orvautosave"), Qt::CaseInsensitive);
}

} // namespace

std::optional<MergeResult> mergePackages(const MergeVersions& versions, const QString& target,
                                         const MergeOptions& options, QString& file,
                                         QString& reason)
{
    const QString& place = versions.ours.place.isEmpty() ? target : versions.ours.place;
    file = target;
    if (!canBeWritten(place)) {
        reason = QStringLiteral("The name of a merged package ends with .obl");
        return std::nullopt;
    }
    const QDir folder = folderOf(versions.ours);
    const auto open = [&](const PackageVersion& version) {
        file = version.file;
        return openVersion(version, folder, reason);
    };
    const auto base = open(versions.base);
    const auto ours = base == nullptr ? nullptr : open(versions.ours);
    const auto theirs = ours == nullptr ? nullptr : open(versions.theirs);
    if (theirs == nullptr)
        return std::nullopt;

    const PackageTrio packages{*base, {ours.get(), theirs.get()}};
    MergeState state(*ours, folder, options.preference);
    ObjectMerge objects(state);
    Doc::Package merged;
    ContentMerge(packages, state, objects).mergeInto(merged);
    std::vector<Conflict> faults = newFaults(merged, *ours, *theirs, place, options.presetsPaths);
    const bool isWritten =
        faults.empty() && (state.conflicts.empty() || options.preference != Preference::None);
    MergeResult result{std::move(state.conflicts), isWritten};
    std::move(faults.begin(), faults.end(), std::back_inserter(result.conflicts));
    if (!isWritten)
        return result;
    file = target;
    // A package that lies in the presets library names its files without it, as the versions do.
    if (Core::savePackage(merged, target, QFileInfo(place).absoluteDir(), nullptr,
                          versions.ours.place))
        return result;
    reason = QStringLiteral("It cannot be written");
    return std::nullopt;
}

} // namespace Ksx::Kit

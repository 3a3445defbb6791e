#include "compare/version.h"

#include "core/fileplace.h"
#include "data/content/package.h"
#include "packageparts.h"
#include <QFileInfo>

namespace Ksx::Kit {

namespace {

QString placeOfVersion(const PackageVersion& version)
{
    const QString& place = version.place.isEmpty() ? version.file : version.place;
    // References begin in the folder in which the file really lies.
    const QString canonical = Orv::Core::canonicalPath(place);
    return canonical.isEmpty() ? Orv::Core::absolutePath(place) : canonical;
}

} // namespace

QDir folderOf(const PackageVersion& version)
{
    return QFileInfo(placeOfVersion(version)).absoluteDir();
}

std::unique_ptr<Data::Content::Package> openVersion(const PackageVersion& version,
                                                    const QDir& folder, QString& reason)
{
    if (version.file == QLatin1String("/dev/null"))
        return std::make_unique<Data::Content::Package>();
    const QString name = QFileInfo(placeOfVersion(version)).fileName();
    return openVersionAt(folder.filePath(name), version.file, {}, reason);
}

std::optional<OpenVersions> openVersions(const PackageVersion& first, const PackageVersion& second,
                                         QString& file, QString& reason)
{
    OpenVersions versions{folderOf(first), nullptr, nullptr};
    file = first.file;
    versions.first = openVersion(first, versions.folder, reason);
    if (versions.first == nullptr)
        return std::nullopt;
    file = second.file;
    versions.second = openVersion(second, versions.folder, reason);
    if (versions.second == nullptr)
        return std::nullopt;
    return versions;
}

} // namespace Ksx::Kit

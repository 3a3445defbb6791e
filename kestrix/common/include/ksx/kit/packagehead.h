// Reads the head of a package file.
#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// The form of a package file.
enum class PackageKind
{
    // A package of XML, which has a head.
    Package,
    // An archive of assemblies.
    Archive,
    // One assembly with its description beside it.
    Assembly,
};

// Returns the word for a kind: "package", "archive" or "assembly".
QString wordOf(PackageKind kind);

// A dependency as the file spells it.
struct NamedDependency
{
    // "?himself" is the package itself.
    QString filename;
    // Empty in files of old versions.
    QString uid;
};

// Everything in front of the content. Texts are empty where the file has none. Archives and
// assemblies have none at all.
struct PackageHead
{
    PackageKind kind = PackageKind::Package;
    // The size of the file in bytes.
    qint64 size = 0;
    QString identifier;
    QString description;
    QString author;
    QString formatVersion;
    QString updaterVersion;
    QString fileUid;
    QString versionUid;
    std::vector<NamedDependency> dependencies;
};

// Returns whether a name ends as that of a package that can be opened: ".obl", ".obl.orvautosave",
// ".oblar" or ".oblasm".
bool isPackageName(const QString& file);

// Reads the head of a file and no more of it. Returns none on failure, with a sentence in `reason`.
// The content is neither read nor checked, unless it comes in front of the version or dependencies.
std::optional<PackageHead> readHead(const QString& file, QString& reason);

} // namespace Ksx::Kit

// The two halves of saving a package.
#pragma once

#include <QDir>
#include <QString>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Writes the newest versions into the package: 0.0.0.0 if no importer takes a file of that name.
void stampPackage(const Data::Content::Package& package, const QString& path);

// Writes a stamped package as savePackage() does. Only reads the package.
bool writePackage(const Data::Content::Package& package, const QString& path,
                  const QDir& presetsDir, QString* keptCopy);

} // namespace Ksx::Core

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

// Writes a stamped package as savePackage() does, to a file as Orv::Core::realPath() returns it. Only
// reads the package. `place`, which may be null, is such a file as well, for which the bytes are
// meant.
bool writePackage(const Data::Content::Package& package, const QString& file,
                  const QDir& presetsDir, QString* keptCopy, const QString& place = QString());

} // namespace Ksx::Core

// Writes a package file.
#pragma once

#include <QDir>
#include <QString>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Stamps the newest versions on the package, whether or not the file can be written, and writes it
// as XML to `path`: 0.0.0.0 if no importer takes that name. File references become relative to the
// file, or "obl://" names where they lead into the presets directory from outside.
// The file is written beside the target and takes its place when it is whole and on disk; a
// symbolic link is followed and permissions are kept. Where the directory allows no further file,
// or the target is no regular file, it is written directly. False if that fails: the old file is
// then untouched and nothing else is left behind.
bool savePackage(const Data::Content::Package& package, const QString& path,
                 const QDir& presetsDir);

// The two conversions of file references on the way out.
// Relative to the directory of `path`, if a file of that name is there; otherwise as it is.
QString relativeToFile(const QString& path, const QString& value);
// Relative to `fileDir`, unless the value leads into the presets directory and `fileDir` lies
// outside: then "obl://" and the bare file name, whatever the directory below the presets is.
QString relativeToPresets(const QDir& fileDir, const QDir& presetsDir, const QString& value);

} // namespace Ksx::Core

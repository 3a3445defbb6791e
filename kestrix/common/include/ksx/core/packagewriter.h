// Writes a package file.
#pragma once

#include <QDir>
#include <QString>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Stamps the newest versions on the package, whether or not the file can be written, and writes it
// as XML to `path`: 0.0.0.0 if no importer takes that name. Symbolic links are followed. File
// references become relative to where the file really lies, or "obl://" names where they lead into
// the presets directory from outside.
// Returns false if the file could not be saved as a whole (see FileSaver), or if XML cannot hold one
// of its references: the old file is then untouched and nothing else is left behind. Where the old
// bytes could not be put back, `keptCopy` becomes the path of a copy of them; else a null text.
bool savePackage(const Data::Content::Package& package, const QString& path, const QDir& presetsDir,
                 QString* keptCopy = nullptr);

// The two conversions of file references on the way out.
// Relative to the directory of `path`, if a file of that name is there; otherwise as it is.
QString relativeToFile(const QString& path, const QString& value);
// Relative to `fileDir`, unless the value leads below the presets directory and `fileDir` is neither
// that nor below it: then "obl://" and the bare file name, whatever the directory below the presets
// is.
QString relativeToPresets(const QDir& fileDir, const QDir& presetsDir, const QString& value);

} // namespace Ksx::Core

// Writes a package file.
#pragma once

#include <QDir>
#include <QString>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

class QIODevice;

namespace Ksx::Core {

// Writes a package as XML to the file at `path`. An existing file is replaced as a whole, when all
// bytes of the new one are on disk. Symbolic links are followed. The package may be attached or
// not. Main thread. PackageSaver writes several packages on several threads.
//
// Before writing, the newest format and updater versions are written into the package. They stay
// there also if the saving fails. The versions are 0.0.0.0 if no importer takes the name of the
// file. That change cannot be undone.
//
// File references in the file are relative to where the file really lies. References into
// `presetsDir` from outside of it become "obl://" names. References in the tree stay absolute.
//
// Returns true if the file was saved. Returns false if it could not be saved as a whole, or if XML
// cannot hold one of its references. The old file is then untouched and nothing else is left
// behind.
//
// `keptCopy` may be null. It becomes the path of a copy of the old bytes, if these could not be put
// back. Else it becomes a null text.
//
// `place` may be empty, which means `path` itself. The file is written as one that will lie at
// `place`: its name chooses the versions, and file references begin there.
bool savePackage(const Data::Content::Package& package, const QString& path, const QDir& presetsDir,
                 QString* keptCopy = nullptr, const QString& place = QString());

// Writes to a device the bytes that savePackage() would write to the file at `path`. Touches no file.
// `device` is open for writing. Returns false if it refuses bytes, or if XML cannot hold one of the
// references.
bool renderPackage(const Data::Content::Package& package, const QString& path,
                   const QDir& presetsDir, QIODevice& device);

// Returns `value` relative to the directory of `path`, if it leads to a file or folder that exists.
// Returns it unchanged otherwise. First of the two conversions of a file reference on the way out.
QString relativeToFile(const QString& path, const QString& value);

// Returns "obl://" and the bare file name, if `value` leads below the presets directory and
// `fileDir` is not within it. Directories below the presets are left out of the name. Otherwise
// returns `value` relative to `fileDir`. Returns an empty text for an empty one.
QString relativeToPresets(const QDir& fileDir, const QDir& presetsDir, const QString& value);

} // namespace Ksx::Core

// Where files are, whatever they are called. Qt 6 cannot ask for a file whose name is no UTF-8, so
// these functions give names to the system as bytes, as RegularFile and FileSaver do.
#pragma once

#include <QDateTime>
#include <QString>

namespace Orv::Core {

// Returns true for whatever has this path: a file, a folder, or a link to one of them.
bool exists(const QString& path);

// The same, but returns true as well where the system does not say: whoever takes a file for missing
// may overwrite it.
bool mayExist(const QString& path);

// Returns when the file was last written. Returns an invalid time for a missing one.
QDateTime modificationTime(const QString& path);

// Returns the process's folder, in which relative paths begin. Throws std::runtime_error where it
// cannot be found: it may be deleted at any time.
QString currentFolder();

// Returns the path from the root on, without "." and "..", as its text says it: the file need not
// exist, and links are not followed.
QString absolutePath(const QString& path);

// Returns the path of an existing file or folder without a symbolic link in it. Returns a null text
// for a missing one. Unlike Qt it never takes a lack of memory for a missing link.
QString canonicalPath(const QString& path);

// Returns the path of the file that `path` leads to, without a symbolic link in it. The file need
// not exist, as behind a link to nothing, but its folder must. Returns a null text where links go
// round, the folder is missing or the path names no file.
QString realPath(const QString& path);

// Returns true if both paths lead to one file: they are the same, or links to it of either kind.
// Two files that do not exist are never the same.
bool isSameFile(const QString& a, const QString& b);

// Gives a file the owner, the permissions and the extended attributes of another one, as FileSaver
// does for a file that takes the place of another one. Waits until it is on disk as a whole. Returns
// false on failure. A right that the process lacks is none.
bool takeAttributesOf(const QString& path, const QString& former);

// Returns false if relative paths lead nowhere, since the process's folder was deleted, cannot be
// entered or has too long a path. Qt takes the root of the file system for it then.
bool hasCurrentFolder();

} // namespace Orv::Core

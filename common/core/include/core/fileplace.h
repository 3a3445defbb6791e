// Where files are, whatever they are called.
#pragma once

#include <QString>

namespace Orv::Core {

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

// Returns false if relative paths lead nowhere, since the process's folder was deleted, cannot be
// entered or has too long a path. Qt takes the root of the file system for it then.
bool hasCurrentFolder();

} // namespace Orv::Core

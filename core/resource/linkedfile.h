// What a resource notes of the file that it links to.
#pragma once

#include <QString>

namespace Ksx::Core {

// Returns the time at which a file was written last, in ISO form. Empty for a missing file.
QString linkedFileTime(const QString& filePath);

// Returns the MD5 sum of the content of a file, in hexadecimal. Returns "0" for a file that is empty or
// cannot be read.
QString linkedFileChecksum(const QString& filePath);

} // namespace Ksx::Core

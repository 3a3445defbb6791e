#include "filesaving.h"

#include "fileoverwriting.h"
#include "filereplacement.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Orv::Core {

namespace {

std::unique_ptr<FileSaving> atRegularFile(const std::string& path, bool exists)
{
    // A file that may not be written is not replaced either, whatever its folder allows.
    if (exists && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
        return nullptr;
    auto replacement = std::make_unique<FileReplacement>(path);
    if (replacement->start(exists))
        return replacement;
    auto overwriting = std::make_unique<FileOverwriting>();
    if (!exists || !overwriting->start(path))
        return nullptr;
    return overwriting;
}

} // namespace

std::unique_ptr<FileSaving> FileSaving::at(const std::string& path)
{
    struct stat status = {};
    const bool exists = lstat(path.c_str(), &status) == 0;
    if (path.find('\0') != std::string::npos || (!exists && errno != ENOENT))
        return nullptr;
    if (!exists || S_ISREG(status.st_mode))
        return atRegularFile(path, exists);
    if (S_ISDIR(status.st_mode) || S_ISLNK(status.st_mode))
        return nullptr;
    auto streaming = std::make_unique<FileStreaming>();
    if (!streaming->start(path))
        return nullptr;
    return streaming;
}

} // namespace Orv::Core

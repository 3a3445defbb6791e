#include "filesaving.h"

#include "fileoverwriting.h"
#include "filereplacement.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Orv::Core {

namespace {

// What has the path of a target.
enum class Target
{
    Nothing,
    RegularFile,
    Stream,   // a device or a pipe
    Unusable, // a folder or a link, or a path that leads nowhere
};

Target targetAt(const std::string& path)
{
    struct stat status = {};
    const bool exists = lstat(path.c_str(), &status) == 0;
    if (path.find('\0') != std::string::npos || (!exists && errno != ENOENT))
        return Target::Unusable;
    if (!exists)
        return Target::Nothing;
    if (S_ISREG(status.st_mode))
        return Target::RegularFile;
    return S_ISDIR(status.st_mode) || S_ISLNK(status.st_mode) ? Target::Unusable : Target::Stream;
}

bool isAccessible(const std::string& path, int mode)
{
    return faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
}

std::unique_ptr<FileSaving> atRegularFile(const std::string& path, bool exists)
{
    // A file that may not be written is not replaced either, whatever its folder allows.
    if (exists && !isAccessible(path, W_OK))
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
    const Target target = targetAt(path);
    if (target == Target::Unusable)
        return nullptr;
    if (target != Target::Stream)
        return atRegularFile(path, target == Target::RegularFile);
    auto streaming = std::make_unique<FileStreaming>();
    if (!streaming->start(path))
        return nullptr;
    return streaming;
}

bool FileSaving::canBeAt(const std::string& path)
{
    switch (targetAt(path)) {
    case Target::Nothing: {
        const std::string folder = path.substr(0, path.rfind('/') + 1);
        return isAccessible(folder.empty() ? "." : folder, W_OK | X_OK);
    }
    case Target::Unusable:
        return false;
    default:
        return isAccessible(path, W_OK);
    }
}

} // namespace Orv::Core

#include "fileattributes.h"

#include "core/fileplace.h"
#include "data/filename.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace Orv::Core {

namespace {

constexpr const char* AccessList = "system.posix_acl_access";
// Attributes that speak of the former bytes, or that would let the new ones do more.
constexpr std::string_view OwnAttributes[] = {"security.ima", "security.evm",
                                              "security.capability"};

constexpr mode_t Permissions = 0777;
constexpr mode_t AllBits = 07777;

// The process may not do it, or the file system knows no such thing.
bool isNotAllowed(int error)
{
    constexpr int Reasons[] = {EPERM, EACCES, EINVAL, ENOSYS, ENOTSUP, EOPNOTSUPP};
    return std::find(std::begin(Reasons), std::end(Reasons), error) != std::end(Reasons);
}

bool succeededOrNotAllowed(int result)
{
    return result == 0 || isNotAllowed(errno);
}

// `isKept` becomes true if owner and group are those of the former file.
bool takeOwner(const Descriptor& file, const struct stat& former, struct stat& status)
{
    if (fstat(file.number(), &status) != 0)
        return false;
    if (status.st_uid == former.st_uid && status.st_gid == former.st_gid)
        return true;
    // A plain user may still give a file to another group that the user is in.
    const bool isTaken =
        fchown(file.number(), former.st_uid, former.st_gid) == 0 ||
        (isNotAllowed(errno) &&
         succeededOrNotAllowed(fchown(file.number(), static_cast<uid_t>(-1), former.st_gid)));
    return isTaken && fstat(file.number(), &status) == 0;
}

// Of another group, the file must not give that group the permissions of the former one.
mode_t modeFor(const struct stat& status, const struct stat& former)
{
    if (status.st_gid != former.st_gid)
        return (former.st_mode & Permissions & ~mode_t{S_IRWXG}) | (former.st_mode & S_IRWXO) << 3;
    return former.st_mode & (status.st_uid == former.st_uid ? AllBits : Permissions);
}

// Empty without any, or where they cannot be asked for.
bool listAttributes(const std::string& path, std::vector<std::string>& names)
{
    const ssize_t size = llistxattr(path.c_str(), nullptr, 0);
    if (size <= 0)
        return size == 0 || isNotAllowed(errno);
    std::string list(static_cast<std::size_t>(size), '\0');
    const ssize_t count = llistxattr(path.c_str(), list.data(), list.size());
    if (count < 0)
        return false;
    list.resize(static_cast<std::size_t>(count));
    for (std::size_t begin = 0; begin < list.size(); begin = list.find('\0', begin) + 1)
        names.emplace_back(list.c_str() + begin);
    return true;
}

bool takeAttribute(const Descriptor& file, const std::string& path, const char* name)
{
    const ssize_t size = lgetxattr(path.c_str(), name, nullptr, 0);
    if (size < 0)
        return isNotAllowed(errno);
    std::string value(static_cast<std::size_t>(size), '\0');
    if (lgetxattr(path.c_str(), name, value.data(), value.size()) != size)
        return false;
    return succeededOrNotAllowed(fsetxattr(file.number(), name, value.data(), value.size(), 0));
}

bool takeExtendedAttributes(const Descriptor& file, const std::string& path)
{
    std::vector<std::string> names;
    if (!listAttributes(path, names))
        return false;
    // The folder may give new files a list of its own.
    if (std::find(names.begin(), names.end(), AccessList) == names.end() &&
        fremovexattr(file.number(), AccessList) != 0 && errno != ENODATA && !isNotAllowed(errno))
        return false;
    return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        const bool isOwn = std::find(std::begin(OwnAttributes), std::end(OwnAttributes), name) !=
                           std::end(OwnAttributes);
        return isOwn || takeAttribute(file, path, name.c_str());
    });
}

} // namespace

bool takeAttributes(const Descriptor& file, const std::string& path, const struct stat& former)
{
    struct stat status = {};
    if (!takeOwner(file, former, status) || !takeExtendedAttributes(file, path) ||
        fstat(file.number(), &status) != 0)
        return false;
    // Last, since a change of the owner takes bits away. A file system without permissions refuses
    // to change them, and has them right.
    const mode_t mode = modeFor(status, former);
    return (status.st_mode & AllBits) == mode || fchmod(file.number(), mode) == 0;
}

bool takeAttributesOf(const QString& path, const QString& former)
{
    struct stat status = {};
    const std::string name = toBytes(former);
    const Descriptor file = openAt(AT_FDCWD, toBytes(path), O_RDWR | O_NOFOLLOW);
    return file.isOpen() && lstat(name.c_str(), &status) == 0 &&
           takeAttributes(file, name, status) && file.sync();
}

} // namespace Orv::Core

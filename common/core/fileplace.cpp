#include "core/fileplace.h"

#include "data/filename.h"
#include <QDir>
#include <QFileInfo>
#include <array>
#include <climits>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <system_error>
#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace Orv::Core {

namespace {

namespace fs = std::filesystem;

constexpr int MaximumLinks = 40; // as many as the system follows

// A lack of memory is no answer of the file system.
void refuseLackOfMemory(const std::error_code& error)
{
    if (error == std::errc::not_enough_memory)
        throw std::bad_alloc();
}

// Empty for a missing file.
fs::path withoutLinks(const fs::path& path)
{
    std::error_code error;
    fs::path found = fs::canonical(path, error);
    refuseLackOfMemory(error);
    return error ? fs::path() : found;
}

// No path is cleaned on the way: where ".." leads from a linked folder is for the system to say.
// Empty if the links go round.
fs::path followLinks(fs::path target)
{
    for (int i = 0; i < MaximumLinks; ++i) {
        std::error_code error;
        if (!fs::is_symlink(target, error))
            return target;
        target = target.parent_path() / fs::read_symlink(target, error);
    }
    return {};
}

} // namespace

bool exists(const QString& path)
{
    std::error_code error;
    return fs::exists(toBytes(path), error);
}

bool mayExist(const QString& path)
{
    std::error_code error;
    return fs::status(toBytes(path), error).type() != fs::file_type::not_found;
}

QDateTime modificationTime(const QString& path)
{
#ifdef Q_OS_UNIX
    struct stat status = {};
    if (stat(toBytes(path).c_str(), &status) != 0)
        return {};
    return QDateTime::fromSecsSinceEpoch(status.st_mtime);
#else
    return QFileInfo(path).lastModified();
#endif
}

QString currentFolder()
{
    std::error_code error;
    const fs::path folder = fs::current_path(error);
    refuseLackOfMemory(error);
    if (error) // a path behind nothing would begin at the root of the file system
        throw std::runtime_error("Current folder not found");
    return fromBytes(folder.native());
}

QString absolutePath(const QString& path)
{
    return QDir::cleanPath(QDir::isAbsolutePath(path) ? path : currentFolder() + '/' + path);
}

QString canonicalPath(const QString& path)
{
    const fs::path found = withoutLinks(toBytes(path));
    return found.empty() ? QString() : fromBytes(found.native());
}

QString realPath(const QString& path)
{
    const fs::path target = followLinks(toBytes(path));
    const fs::path name = target.filename();
    if (path.contains(QChar(u'\0')) || name.empty() || name == "." || name == "..")
        return {};
    const fs::path folder = withoutLinks(target.has_parent_path() ? target.parent_path() : ".");
    return folder.empty() ? QString() : fromBytes((folder / name).native());
}

bool isSameFile(const QString& a, const QString& b)
{
    std::error_code error;
    return fs::equivalent(toBytes(a), toBytes(b), error) && !error;
}

bool hasCurrentFolder()
{
#ifdef Q_OS_UNIX
    // As Qt asks for it.
    std::array<char, PATH_MAX> path;
    struct stat status = {};
    return stat(".", &status) == 0 && getcwd(path.data(), path.size()) != nullptr;
#else
    std::error_code error;
    return !fs::current_path(error).empty();
#endif
}

} // namespace Orv::Core

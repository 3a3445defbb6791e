#include "filereplacement.h"

#include "data/filename.h"
#include "fileattributes.h"
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Orv::Core {

namespace {

constexpr unsigned UsualMode = 0666; // less the bits of the process's mask
constexpr unsigned PrivateMode = 0600;

// Some file systems cannot exchange two names, and some sandboxes do not know the call.
bool canNotExchange(int error)
{
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == EPERM;
}

} // namespace

FileReplacement::FileReplacement(const std::string& path)
    : m_path(path), m_folderPath(path.substr(0, path.rfind('/') + 1)),
      m_name(path.substr(m_folderPath.size()))
{}

FileReplacement::~FileReplacement()
{
    if (!m_temporary.empty())
        remove(m_temporary);
}

bool FileReplacement::start(bool replaces)
{
    const std::string folder = m_folderPath.empty() ? "." : m_folderPath;
    m_folder = openAt(AT_FDCWD, folder, O_RDONLY | O_DIRECTORY);
    if (!m_folder.isOpen() && errno == EACCES) // a folder that may be written and not be listed
        m_folder = openAt(AT_FDCWD, folder, O_PATH | O_DIRECTORY);
    if (!m_folder.isOpen())
        return false;
    // Nobody may read the bytes who may not read the former file.
    m_file = makeTemporary(m_folder.number(), replaces ? PrivateMode : UsualMode, m_temporary);
    return m_file.isOpen();
}

bool FileReplacement::commit()
{
    struct stat former = {};
    const bool replaces =
        fstatat(m_folder.number(), m_name.c_str(), &former, AT_SYMLINK_NOFOLLOW) == 0;
    if (replaces ? !S_ISREG(former.st_mode) : errno != ENOENT)
        return false;
    if (replaces && !takeAttributes(m_file, m_path, former))
        return false;
    return m_file.sync() && m_file.close() && takePlace(replaces);
}

// The new names must be on disk as well. Until they are, the former file is kept.
bool FileReplacement::takePlace(bool replaces)
{
    if (replaces) {
        if (!exchange())
            return false;
    } else {
        if (!rename(m_temporary, m_name))
            return false;
        m_temporary.clear();
    }
    if (syncFolder())
        return true;
    if (!replaces) {
        remove(m_name);
    } else if (!m_temporary.empty()) {
        // The former file has that name, and is not to be removed whatever happens next.
        const std::string former = std::exchange(m_temporary, {});
        if (!rename(former, m_name))
            m_keptCopy = fromBytes(m_folderPath + former);
    }
    return false;
}

// Puts the new file in its place. The former one gets the temporary name, if the file system can do
// one or the other thing that this takes.
bool FileReplacement::exchange()
{
    if (renameat2(m_folder.number(), m_temporary.c_str(), m_folder.number(), m_name.c_str(),
                  RENAME_EXCHANGE) == 0)
        return true;
    if (!canNotExchange(errno))
        return false;
    std::string kept = m_temporary + '-';
    const bool isKept =
        linkat(m_folder.number(), m_name.c_str(), m_folder.number(), kept.c_str(), 0) == 0;
    if (!rename(m_temporary, m_name)) {
        if (isKept)
            remove(kept);
        return false;
    }
    m_temporary = isKept ? std::move(kept) : std::string();
    return true;
}

bool FileReplacement::syncFolder() const
{
    if (m_folder.sync() || errno == EINVAL) // a file system that has no such thing for folders
        return true;
    if (errno != EBADF)
        return false;
    // The folder may not be opened for reading: all of its file system is written instead.
    const Descriptor file = openAt(m_folder.number(), m_name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    return file.isOpen() && syncfs(file.number()) == 0;
}

bool FileReplacement::rename(const std::string& from, const std::string& to) const
{
    return renameat(m_folder.number(), from.c_str(), m_folder.number(), to.c_str()) == 0;
}

bool FileReplacement::remove(const std::string& name) const
{
    return unlinkat(m_folder.number(), name.c_str(), 0) == 0;
}

} // namespace Orv::Core

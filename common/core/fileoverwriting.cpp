#include "fileoverwriting.h"

#include "core/fileplace.h"
#include "data/filename.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Orv::Core {

namespace {

constexpr unsigned PrivateMode = 0600;

// Returns the folder that QDir::tempPath() has, whose name need not be UTF-8 here.
std::string temporaryFolder()
{
    const QByteArray named = qgetenv("TMPDIR");
    return toBytes(
        canonicalPath(named.isEmpty() ? QStringLiteral("/tmp") : fromBytes(named.toStdString())));
}

} // namespace

bool FileOverwriting::start(const std::string& path)
{
    m_target = openAt(AT_FDCWD, path, O_RDWR | O_NOFOLLOW | O_NONBLOCK);
    struct stat status = {};
    if (!m_target.isOpen() || fstat(m_target.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    m_folderPath = temporaryFolder();
    m_folder = openAt(AT_FDCWD, m_folderPath, O_RDONLY | O_DIRECTORY);
    if (!m_folder.isOpen())
        return false;
    std::string name;
    m_content = makeTemporary(m_folder.number(), PrivateMode, name);
    return m_content.isOpen() && unlinkat(m_folder.number(), name.c_str(), 0) == 0;
}

bool FileOverwriting::commit()
{
    if (!keepFormer()) {
        removeCopy();
        return false;
    }
    const bool isSaved = fill(m_content);
    if (isSaved || fill(m_former))
        removeCopy();
    return isSaved;
}

QString FileOverwriting::keptCopy() const
{
    return m_copy.empty() ? QString() : fromBytes(m_folderPath + '/' + m_copy);
}

bool FileOverwriting::keepFormer()
{
    m_former = makeTemporary(m_folder.number(), PrivateMode, m_copy);
    return m_former.isOpen() && m_former.copyFrom(m_target) && m_former.sync() && m_folder.sync();
}

// Makes the target hold the bytes of `source`, on disk and nothing behind them.
bool FileOverwriting::fill(const Descriptor& source) const
{
    if (lseek(m_target.number(), 0, SEEK_SET) != 0 || !m_target.copyFrom(source))
        return false;
    const off_t size = lseek(m_target.number(), 0, SEEK_CUR);
    if (size < 0 || ftruncate(m_target.number(), size) != 0 || !m_target.sync())
        return false;
    // A network may report a loss when a file is closed, and the target is still needed then.
    Descriptor twin(fcntl(m_target.number(), F_DUPFD_CLOEXEC, 0));
    return twin.isOpen() && twin.close();
}

void FileOverwriting::removeCopy()
{
    if (!m_copy.empty())
        unlinkat(m_folder.number(), m_copy.c_str(), 0);
    m_copy.clear();
}

bool FileStreaming::start(const std::string& path)
{
    // Without waiting for somebody to read a pipe. The reader is waited for, once there is one.
    m_target = openAt(AT_FDCWD, path, O_WRONLY | O_NONBLOCK | O_NOCTTY);
    const int flags = m_target.isOpen() ? fcntl(m_target.number(), F_GETFL) : -1;
    return flags >= 0 && fcntl(m_target.number(), F_SETFL, flags & ~O_NONBLOCK) == 0;
}

bool FileStreaming::commit()
{
    const bool isSynced = m_target.sync() || errno == EINVAL || errno == ENOTSUP;
    return m_target.close() && isSynced;
}

} // namespace Orv::Core

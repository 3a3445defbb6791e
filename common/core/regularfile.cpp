#include "core/regularfile.h"

#include "core/descriptor.h"
#include "data/filename.h"
#include <QFileInfo>
#include <algorithm>
#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace Orv::Core {

namespace {

#ifdef Q_OS_UNIX

// Returns the descriptor of a regular file, or -1.
int openRegular(const QString& path)
{
    const std::string name = toBytes(path);
    if (name.find('\0') != std::string::npos)
        return -1;
    Descriptor file = openAt(AT_FDCWD, name, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status = {};
    const bool isRegular =
        file.isOpen() && fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode);
    return isRegular ? file.release() : -1;
}

#endif

} // namespace

bool RegularFile::open(OpenMode mode)
{
    if (mode != ReadOnly)
        return false;
    m_hasFailed = false;
#ifdef Q_OS_UNIX
    const int descriptor = openRegular(m_path);
    if (descriptor < 0)
        return false;
    if (!QFile::open(descriptor, mode, AutoCloseHandle)) {
        ::close(descriptor);
        return false;
    }
#else
    setFileName(m_path);
    if (!QFileInfo(m_path).isFile() || !QFile::open(mode))
        return false;
#endif
    m_size = QFile::size();
    return true;
}

bool RegularFile::atEnd() const
{
    return m_hasFailed || !isOpen() || pos() >= m_size;
}

// Reads ahead of pos(), so the place is asked of the file itself.
qint64 RegularFile::readData(char* data, qint64 maximumSize)
{
#ifdef Q_OS_UNIX
    const qint64 place = lseek(handle(), 0, SEEK_CUR);
#else
    const qint64 place = pos();
#endif
    const qint64 wanted = std::min(maximumSize, m_size - place);
    if (wanted <= 0 || m_hasFailed)
        return m_hasFailed ? -1 : 0;
    const qint64 count = QFile::readData(data, wanted);
    m_hasFailed = count < wanted; // the file is as long as that
    return count;
}

} // namespace Orv::Core

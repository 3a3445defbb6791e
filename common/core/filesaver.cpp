#include "core/filesaver.h"

#include "data/filename.h"
#include "filesaving.h"

namespace Orv::Core {

namespace {

constexpr int BufferSize = 64 * 1024;

} // namespace

FileSaver::FileSaver(const QString& path) : m_path(path) {}

FileSaver::~FileSaver() = default;

bool FileSaver::canSave(const QString& path)
{
    return !path.isEmpty() && FileSaving::canBeAt(toBytes(path));
}

bool FileSaver::open(OpenMode mode)
{
    if (mode != WriteOnly || m_saving != nullptr || m_path.isEmpty())
        return false;
    m_buffer.reserve(BufferSize);
    m_saving = FileSaving::at(toBytes(m_path));
    if (m_saving == nullptr)
        return false;
    return QIODevice::open(mode | Unbuffered);
}

bool FileSaver::commit()
{
    if (!isOpen())
        return false;
    const bool isWritten = flush();
    close();
    return isWritten && m_saving->commit();
}

QString FileSaver::keptCopy() const
{
    return m_saving == nullptr ? QString() : m_saving->keptCopy();
}

qint64 FileSaver::writeData(const char* data, qint64 size)
{
    if (m_buffer.size() + size > BufferSize && !flush())
        return -1;
    if (size > BufferSize)
        m_hasFailed = !m_saving->write(data, size);
    else
        m_buffer.append(data, static_cast<int>(size));
    return m_hasFailed ? -1 : size;
}

// Nothing is written behind bytes that were lost.
bool FileSaver::flush()
{
    m_hasFailed = m_hasFailed || !m_saving->write(m_buffer.constData(), m_buffer.size());
    m_buffer.resize(0);
    return !m_hasFailed;
}

} // namespace Orv::Core

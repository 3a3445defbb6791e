#include "updating/documentdevice.h"

#include "data/lightdocumentreader.h"
#include "data/lightdocumentwriter.h"
#include <algorithm>
#include <cstring>
#include <utility>

namespace Ksx::Core {

DocumentDevice::DocumentDevice(QByteArray bytes) : m_bytes(std::move(bytes)) {}

DocumentDevice::~DocumentDevice() = default;

Orv::Data::LightDocument* DocumentDevice::document(QString& error)
{
    if (m_document)
        return &*m_document;
    Orv::Data::LightDocument parsed;
    Orv::Data::DocumentError reason;
    if (!Orv::Data::readLightDocument(m_bytes, parsed, reason)) {
        error = reason.text();
        return nullptr;
    }
    m_index = ElementIndex(parsed);
    return &m_document.emplace(std::move(parsed));
}

const Orv::Data::LightDocument* DocumentDevice::parsedDocument() const
{
    return m_document ? &*m_document : nullptr;
}

bool DocumentDevice::setDocumentChanged()
{
    Q_ASSERT(m_document.has_value());
    m_isChanged = isWritable();
    if (m_isChanged)
        m_bytes.clear();
    else
        dropDocument();
    return m_isChanged;
}

void DocumentDevice::dropDocument()
{
    m_document.reset();
    m_index = ElementIndex();
}

void DocumentDevice::releaseDocument()
{
    bytes();
    dropDocument();
}

const QByteArray& DocumentDevice::bytes() const
{
    if (std::exchange(m_isChanged, false))
        m_bytes = Orv::Data::serialise(*m_document);
    return m_bytes;
}

bool DocumentDevice::open(OpenMode mode)
{
    if (mode.testFlag(Truncate)) {
        dropDocument();
        m_isChanged = false;
        m_bytes.clear();
    }
    bytes();
    // A buffer of the base class would outlive a change of the document.
    return QIODevice::open(mode | Unbuffered);
}

qint64 DocumentDevice::size() const
{
    return bytes().size();
}

bool DocumentDevice::seek(qint64 position)
{
    // The begin is there without asking for the size, which may mean to write the document.
    if (position != 0 && (position < 0 || position > size()))
        return false;
    return QIODevice::seek(position);
}

qint64 DocumentDevice::readData(char* data, qint64 maximumSize)
{
    const qint64 count = std::min(maximumSize, size() - pos());
    if (count <= 0)
        return 0;
    std::memcpy(data, m_bytes.constData() + pos(), static_cast<std::size_t>(count));
    return count;
}

qint64 DocumentDevice::writeData(const char* data, qint64 size)
{
    releaseDocument();
    const auto begin = static_cast<int>(pos());
    const auto count = static_cast<int>(size);
    if (begin > m_bytes.size()) // the document has become shorter
        m_bytes.append(QByteArray(begin - m_bytes.size(), '\0'));
    m_bytes.replace(begin, count, data, count);
    return size;
}

} // namespace Ksx::Core

#include "data/xmlsource.h"

#include <QXmlStreamReader>
#include <algorithm>
#include <cstring>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#else
#include <QStringDecoder>
#endif

namespace Orv::Data {

namespace {

// A stream reader takes a device that gives fewer bytes at first for an empty one.
constexpr qint64 ShortestBegin = 4;
constexpr qint64 BlockSize = AttributeBound::MaximumBlockSize;

// The encodings that a document shows by its first bytes. Null for those that it must name.
const char* encodingByFirstBytes(const QByteArray& bytes)
{
    const QByteArray two = bytes.left(2);
    if (two == QByteArray("\xFF\xFE", 2) || two == QByteArray("\xFE\xFF", 2))
        return "UTF-16";
    if (two == QByteArray("<\0", 2))
        return "UTF-16LE";
    return two == QByteArray("\0<", 2) ? "UTF-16BE" : nullptr;
}

// What a declaration says of the encoding, as the reader itself will understand it.
struct Declaration
{
    explicit Declaration(const QString& text)
    {
        if (!text.startsWith(QLatin1String("<?xml")))
            return;
        QXmlStreamReader reader(text);
        reader.readNext();
        isWhole = reader.error() != QXmlStreamReader::PrematureEndOfDocumentError;
        encoding = reader.documentEncoding().toString();
        end = static_cast<int>(text.indexOf(QLatin1String("?>")));
    }
    // The text with UTF-8 in the place of its encoding.
    QString withUtf8(QString text) const
    {
        if (encoding.isEmpty())
            return text;
        const auto place = text.indexOf(encoding, text.indexOf(QLatin1String("encoding")));
        return text.replace(place, encoding.size(), QLatin1String("UTF-8"));
    }

    bool isWhole = true;
    QString encoding; // empty if it names none
    int end = 0;
};

} // namespace

// From the bytes of one encoding to text, however the bytes are cut into blocks.
class XmlSource::Decoder
{
public:
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    explicit Decoder(const QByteArray& encoding)
        : m_codec(QTextCodec::codecForName(encoding)),
          m_decoder(m_codec != nullptr ? m_codec->makeDecoder() : nullptr)
    {}
    bool isValid() const
    {
        return m_codec != nullptr;
    }
    bool hasFailed() const
    {
        return m_decoder->hasFailure();
    }
    QString decode(const QByteArray& bytes)
    {
        return m_decoder->toUnicode(bytes);
    }
    bool isUtf8() const
    {
        return m_codec == QTextCodec::codecForMib(Utf8Mib);
    }

private:
    static constexpr int Utf8Mib = 106;

    QTextCodec* m_codec;
    std::unique_ptr<QTextDecoder> m_decoder;
#else
    explicit Decoder(const QByteArray& encoding) : m_decoder(encoding.constData()) {}
    bool isValid() const
    {
        return m_decoder.isValid();
    }
    bool hasFailed() const
    {
        return m_decoder.hasError();
    }
    QString decode(const QByteArray& bytes)
    {
        return m_decoder.decode(bytes);
    }
    bool isUtf8() const
    {
        return qstrcmp(m_decoder.name(), "UTF-8") == 0;
    }

private:
    QStringDecoder m_decoder;
#endif
};

XmlSource::XmlSource(QIODevice& device, int parameterEntitySize)
    : m_device(device), m_documentType(parameterEntitySize), m_entities(device.size())
{
    setOpenMode(ReadOnly | Unbuffered);
}

XmlSource::~XmlSource() = default;

void XmlSource::enterDocumentType(const QXmlStreamReader& reader)
{
    m_hasDocumentType = true;
    m_entities.declare(reader);
}

void XmlSource::addExpanded(qint64 characters)
{
    if (!m_entities.add(characters))
        fail(XmlSourceFault::EntitiesTooLarge);
}

bool XmlSource::atEnd() const
{
    return m_fault != XmlSourceFault::None || (m_given == m_text.size() && m_device.atEnd());
}

qint64 XmlSource::readData(char* data, qint64 maximumSize)
{
    if (!m_hasBegun)
        begin();
    const bool isDirect = m_decoder == nullptr && m_given == m_text.size() && !m_isInProlog;
    const qint64 count = isDirect ? readDevice(data, maximumSize) : takePiece(data, maximumSize);
    for (qint64 place = 0; place < count; place += BlockSize)
        checkBounds(data + place, data + std::min(place + BlockSize, count));
    return m_fault == XmlSourceFault::None ? count : -1;
}

qint64 XmlSource::readDevice(char* data, qint64 maximumSize)
{
    const qint64 count = m_device.read(data, maximumSize);
    if (count < 0)
        fail(XmlSourceFault::DeviceFailed);
    return std::max<qint64>(count, 0);
}

QByteArray XmlSource::readBlock()
{
    QByteArray block(static_cast<int>(BlockSize), '\0');
    qint64 size = 0;
    qint64 count = 0;
    do {
        count = readDevice(block.data() + size, BlockSize - size);
        size += count;
    } while (count > 0 && size < BlockSize);
    block.truncate(static_cast<int>(size));
    return block;
}

// Finds out the encoding. A declaration that names another one than UTF-8 is changed: the reader
// would go by it.
void XmlSource::begin()
{
    m_hasBegun = true;
    QByteArray block = readBlock();
    const bool isAll = block.size() < BlockSize;
    if (block.startsWith("\xEF\xBB\xBF"))
        block.remove(0, 3);
    m_text = block;
    QString text = QString::fromLatin1(block);
    const char* const shown = encodingByFirstBytes(block);
    if (shown != nullptr) {
        m_decoder = std::make_unique<Decoder>(shown);
        text = decoded(block);
    }
    const Declaration declaration(text);
    if (!declaration.isWhole && !isAll)
        fail(XmlSourceFault::BadEncoding);
    if (shown == nullptr && !declaration.encoding.isEmpty()) {
        auto decoder = std::make_unique<Decoder>(declaration.encoding.toLatin1());
        if (!decoder->isValid() || decoder->isUtf8()) // the reader refuses an unknown encoding
            return;
        m_decoder = std::move(decoder);
        const QString inLatin1 = text.left(declaration.end);
        text = decoded(block);
        // An encoding in which the declaration reads otherwise is none in which it can stand.
        if (!text.startsWith(inLatin1))
            fail(XmlSourceFault::BadEncoding);
    }
    if (m_decoder != nullptr)
        m_text = declaration.withUtf8(text).toUtf8();
}

// Keeps a character that the next block completes.
QString XmlSource::decoded(const QByteArray& block)
{
    QString text = m_heldBack + m_decoder->decode(block);
    if (m_decoder->hasFailed())
        fail(XmlSourceFault::BadEncoding);
    m_heldBack.clear();
    if (!text.isEmpty() && text.at(text.size() - 1).isHighSurrogate() && !block.isEmpty()) {
        m_heldBack = text.right(1);
        text.chop(1);
    }
    return text;
}

// In the prolog a piece ends with a ">", so that the reader has the document type at hand before
// anything behind it is given out. The first piece is long enough for a reader to begin.
qint64 XmlSource::takePiece(char* data, qint64 maximumSize)
{
    while (m_given == m_text.size() && m_fault == XmlSourceFault::None) {
        const QByteArray block = readBlock();
        m_text = m_decoder == nullptr ? block : decoded(block).toUtf8();
        m_given = 0;
        if (block.isEmpty())
            break;
    }
    const char* const begin = m_text.constData() + m_given;
    qint64 count = std::min<qint64>(m_text.size() - m_given, maximumSize);
    if (m_isInProlog)
        if (const void* last = std::memchr(begin, '>', static_cast<std::size_t>(count)))
            count = std::clamp<qint64>(static_cast<const char*>(last) - begin + 1,
                                       std::min(count, ShortestBegin), count);
    std::memcpy(data, begin, static_cast<std::size_t>(count));
    m_given += static_cast<int>(count);
    return count;
}

void XmlSource::checkBounds(const char* begin, const char* end)
{
    if (!m_attributes.accept(begin, end))
        fail(XmlSourceFault::TooManyAttributes);
    if (!m_entities.accept(begin, end))
        fail(XmlSourceFault::EntitiesTooLarge);
    if (m_isInProlog && !m_hasDocumentType && !m_documentType.accept(begin, end))
        fail(XmlSourceFault::DocumentTypeTooLarge);
}

} // namespace Orv::Data

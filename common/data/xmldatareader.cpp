#include "data/xmldatareader.h"

#include "data/exceptionbadvalue.h"
#include "data/filename.h"
#include "data/latin1.h"
#include "readprogress.h"
#include "xmltreebuilder.h"
#include <QIODevice>
#include <QObject>

namespace Orv::Data {

namespace {

template <class Reference>
bool isSame(const Reference& text, std::string_view name)
{
    if (static_cast<std::size_t>(text.size()) != name.size())
        return false;
    const QChar* data = text.data();
    for (std::size_t i = 0; i < name.size(); ++i)
        if (data[i].unicode() != static_cast<unsigned char>(name[i]))
            return false;
    return true;
}

} // namespace

// The tokens of the stream reader, for XmlTreeBuilder.
class XmlDataReader::Tokens
{
public:
    Tokens(XmlDataReader& reader, const ProgressFunction& progress)
        : m_reader(reader),
          m_progress(progress, reader.device() == nullptr ? 0 : reader.device()->size())
    {}

    void next()
    {
        do
            m_reader.advance();
        while (m_reader.isWhitespace());
    }
    bool isStart() const { return m_reader.isStartElement(); }
    bool isEnd() const { return m_reader.isEndElement(); }
    int error() const { return m_reader.error(); }
    bool isNamed(std::string_view name) const { return isSame(m_reader.name(), name); }
    std::string_view name(std::string& buffer) const
    {
        assignLatin1(buffer, m_reader.name().data(), m_reader.name().size());
        return buffer;
    }
    std::optional<std::string_view> value(bool isFilePath, std::string& buffer) const;
    int fail(XmlReadStatus status);
    int refuse(const AttributeBase& attribute, std::string_view text) const
    {
        throw ExceptionBadValue(std::string(attribute.getMeta().name), m_reader.lineNumber(),
                                std::string(text));
    }
    void reportProgress() { m_progress.report(m_reader.characterOffset()); }

private:
    QString textOf(XmlReadStatus status) const;

    XmlDataReader& m_reader;
    ReadProgress m_progress;
};

std::optional<std::string_view> XmlDataReader::Tokens::value(bool isFilePath,
                                                             std::string& buffer) const
{
    // Gone before the next token: the reader would otherwise make a new array for it.
    const QXmlStreamAttributes attributes = m_reader.attributes();
    const auto value = std::find_if(attributes.begin(), attributes.end(), [](const auto& one) {
        return isSame(one.qualifiedName(), "v");
    });
    if (value == attributes.end())
        return std::nullopt;
    if (isFilePath)
        buffer = toBytes(value->value().toString()); // a file name, which is Unicode
    else
        assignLatin1(buffer, value->value().data(), value->value().size());
    return buffer;
}

QString XmlDataReader::Tokens::textOf(XmlReadStatus status) const
{
    const auto placed = [this](const QString& text) {
        return text.arg(m_reader.lineNumber()).arg(m_reader.columnNumber());
    };
    switch (status) {
    case XmlReadStatus::BadRoot:
        return QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_BAD_ROOT");
    case XmlReadStatus::MemberMissing:
        return placed(QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_%1_%2_%3")
                          .arg(m_reader.name().toString()));
    case XmlReadStatus::AttributeNotFound:
        return placed(QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_ATTRIBUTE_NOT_FOUND_%1_%2_%3")
                          .arg(QStringLiteral("v")));
    case XmlReadStatus::NestingTooDeep:
        return placed(QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_%1_%2"));
    default:
        return placed(QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_%1_%2"));
    }
}

int XmlDataReader::Tokens::fail(XmlReadStatus status)
{
    m_reader.raiseError(textOf(status));
    return static_cast<int>(status);
}

XmlDataReader::XmlDataReader(QIODevice* device) : BoundedXmlReader(device) {}

int XmlDataReader::read(BaseObject& root, const ProgressFunction& progress)
{
    Tokens tokens(*this, progress);
    while (!isStartElement() && !hasError() && !atEnd()) // at a read error there is no end
        tokens.next();
    if (!isStartElement())
        return error();
    if (!tokens.isNamed(root.getMeta().name))
        return tokens.fail(XmlReadStatus::BadRoot);
    return XmlTreeBuilder<Tokens>(tokens).read(root);
}

} // namespace Orv::Data

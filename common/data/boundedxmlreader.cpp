#include "data/boundedxmlreader.h"

#include <QObject>
#include <algorithm>

namespace Orv::Data {

namespace {

// A reader compares each element with each attribute that a document type declares.
constexpr int MaximumAttributeDeclarationsSize = 4096;

struct FaultText
{
    XmlSourceFault fault;
    const char* key;
};

constexpr FaultText FaultTexts[] = {
    {XmlSourceFault::DeviceFailed, "ORV_DATA_XML_DATA_READER_ERROR_XML_DEVICE_FAILED_%1_%2"},
    {XmlSourceFault::BadEncoding, "ORV_DATA_XML_DATA_READER_ERROR_XML_BAD_ENCODING_%1_%2"},
    {XmlSourceFault::TooManyAttributes,
     "ORV_DATA_XML_DATA_READER_ERROR_XML_TOO_MANY_ATTRIBUTES_%1_%2"},
    {XmlSourceFault::DocumentTypeTooLarge,
     "ORV_DATA_XML_DATA_READER_ERROR_XML_DOCUMENT_TYPE_TOO_LARGE_%1_%2"},
    {XmlSourceFault::EntitiesTooLarge,
     "ORV_DATA_XML_DATA_READER_ERROR_XML_ENTITIES_TOO_LARGE_%1_%2"},
};

} // namespace

BoundedXmlReader::BoundedXmlReader(QIODevice* device)
{
    if (device == nullptr)
        return;
    m_source.emplace(*device, entityExpansionLimit());
    m_looksAtElements = true;
    setDevice(&*m_source);
}

BoundedXmlReader::TokenType BoundedXmlReader::lookAt(TokenType token)
{
    if (!m_source)
        return token;
    if (token == DTD)
        enterDocumentType();
    else if (token == StartElement)
        enterElement();
    for (const FaultText& row : FaultTexts)
        if (row.fault == m_source->fault())
            raiseError(QObject::tr(row.key).arg(lineNumber()).arg(columnNumber()));
    return tokenType();
}

void BoundedXmlReader::enterDocumentType()
{
    m_source->enterDocumentType(*this);
    const auto declarations = text();
    const auto first = declarations.indexOf(QLatin1String("<!ATTLIST"));
    m_hasDefaultValues = first >= 0;
    if (m_hasDefaultValues && declarations.size() - first > MaximumAttributeDeclarationsSize)
        m_source->fail(XmlSourceFault::DocumentTypeTooLarge);
}

void BoundedXmlReader::enterElement()
{
    m_source->enterRoot();
    m_looksAtElements = m_hasDefaultValues;
    if (!m_hasDefaultValues)
        return;
    const QXmlStreamAttributes attributes = this->attributes();
    for (const QXmlStreamAttribute& attribute : attributes)
        if (attribute.isDefault())
            m_source->addExpanded(attribute.value().size());
}

} // namespace Orv::Data

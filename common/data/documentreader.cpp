#include "data/documentreader.h"

#include "data/boundedxmlreader.h"
#include "data/xmldatareader.h"
#include <QBuffer>
#include <QCoreApplication>

namespace Orv::Data {

namespace {

// The text that the reader of the object tree has for a document that is too deep.
constexpr char DepthError[] = "ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_%1_%2";

// Hands on the token at hand. Returns by how much the depth changes.
int handOn(BoundedXmlReader& reader, DocumentSink& sink)
{
    switch (reader.tokenType()) {
    case QXmlStreamReader::StartElement:
        sink.beginElement(reader);
        return 1;
    case QXmlStreamReader::EndElement:
        sink.endElement();
        return -1;
    case QXmlStreamReader::Characters:
        if (reader.isCDATA() || !reader.isWhitespace())
            sink.add(reader);
        return 0;
    case QXmlStreamReader::Comment:
    case QXmlStreamReader::ProcessingInstruction:
        sink.add(reader);
        return 0;
    case QXmlStreamReader::EntityReference:
        reader.raiseError(
            QStringLiteral("Entity '%1' not declared.").arg(reader.name().toString()));
        return 0;
    default: // of a document type nothing is left but the texts of its entities
        return 0;
    }
}

} // namespace

QString DocumentError::text() const
{
    if (isTooDeep)
        return message;
    return QCoreApplication::translate("Xml", "PARSE_ERROR_AT_LINE_%1_AND_COLUMN_%2")
               .arg(line)
               .arg(column) +
           QStringLiteral(" :\n") + message;
}

bool readDocument(const QByteArray& bytes, DocumentSink& sink, DocumentError& error)
{
    QBuffer buffer;
    buffer.setData(bytes);
    // Not the bytes themselves: the reader would decode all of them at once.
    buffer.open(QIODevice::ReadOnly);
    BoundedXmlReader reader(&buffer);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd() && !reader.hasError() && depth <= XmlDataReader::MaximumDepth) {
        reader.advance();
        depth += handOn(reader, sink);
    }
    error = {reader.errorString(), reader.lineNumber(), reader.columnNumber()};
    error.isTooDeep = depth > XmlDataReader::MaximumDepth;
    if (error.isTooDeep)
        error.message =
            QCoreApplication::translate("QObject", DepthError).arg(error.line).arg(error.column);
    return !error.isTooDeep && !reader.hasError();
}

} // namespace Orv::Data

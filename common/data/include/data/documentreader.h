// Hands on the parts of a document to whoever makes a document of them.
#pragma once

#include <QByteArray>
#include <QString>

namespace Orv::Data {

class BoundedXmlReader;

// Why a text is no document, and where.
struct DocumentError
{
    QString message;
    qint64 line = 0;
    qint64 column = 0;
    bool isTooDeep = false; // the message has the place already

    // All of it, for a user.
    QString text() const;
};

// Takes the parts of a document in document order. The reader is at the part.
class DocumentSink
{
public:
    virtual ~DocumentSink() = default;
    virtual void beginElement(const BoundedXmlReader& reader) = 0;
    virtual void endElement() = 0;
    // A text that is not all white space, a CDATA section, a comment or an instruction.
    virtual void add(const BoundedXmlReader& reader) = 0;
};

// Hands on what the bytes say, without a document type: the texts of its entities are where they are
// used. On failure returns false, with the reason in `error`; the sink then has a part. Refuses what
// QXmlStreamReader refuses without a look at namespaces, references to entities that nobody declares,
// and elements that nest deeper than XmlDataReader::MaximumDepth.
bool readDocument(const QByteArray& bytes, DocumentSink& sink, DocumentError& error);

} // namespace Orv::Data

// The bytes of an XML document on their way from a device to a stream reader.
#pragma once

#include "data/xmlbounds.h"
#include <QIODevice>
#include <QString>
#include <memory>

namespace Orv::Data {

enum class XmlSourceFault
{
    None,
    DeviceFailed,
    BadEncoding, // the text is not in the encoding that it names, or names it too late
    TooManyAttributes,
    DocumentTypeTooLarge,
    EntitiesTooLarge,
};

// Gives a document out in UTF-8, whatever its encoding, and checks it against bounds before the
// reader sees it. Gives nothing more after a fault. Documents in UTF-8 pass through with hardly a
// look at them. Serves one reading.
class XmlSource final : public QIODevice
{
public:
    // `device` is open for reading, is at the begin of the document and outlives the source.
    // `parameterEntitySize` is how long the reader lets a parameter entity become.
    XmlSource(QIODevice& device, int parameterEntitySize);
    ~XmlSource() override;

    XmlSourceFault fault() const { return m_fault; }
    // Ends the document here.
    void fail(XmlSourceFault fault) { m_fault = fault; }

    // The reader calls these when it has a document type at hand, when it has met the root element,
    // and when it has added characters that are not in the document.
    void enterDocumentType(const QXmlStreamReader& reader);
    void enterRoot() { m_isInProlog = false; }
    void addExpanded(qint64 characters);

    bool isSequential() const override { return true; }
    qint64 size() const override { return m_device.size(); }
    bool atEnd() const override;

protected:
    qint64 readData(char* data, qint64 maximumSize) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    class Decoder;

    void begin();
    qint64 readDevice(char* data, qint64 maximumSize);
    QByteArray readBlock();
    QString decoded(const QByteArray& block);
    qint64 takePiece(char* data, qint64 maximumSize);
    void checkBounds(const char* begin, const char* end);

    QIODevice& m_device;
    XmlSourceFault m_fault = XmlSourceFault::None;
    bool m_hasBegun = false;
    bool m_isInProlog = true;
    bool m_hasDocumentType = false;
    std::unique_ptr<Decoder> m_decoder; // none for UTF-8
    QString m_heldBack;                 // the first half of a character
    QByteArray m_text;                  // in UTF-8, given out up to m_given
    int m_given = 0;
    AttributeBound m_attributes;
    DocumentTypeBound m_documentType;
    EntityBound m_entities;
};

} // namespace Orv::Data

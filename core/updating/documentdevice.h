// The bytes of a document in memory, and the parsed document beside them.
#pragma once

#include "data/lightdocument.h"
#include "updating/elementpath.h"
#include <QByteArray>
#include <QIODevice>
#include <optional>

namespace Ksx::Core {

// Lets a chain of steps work on one document: it is parsed when the first step asks for it, and
// written back when somebody reads the device. To everybody else it is a plain random access
// device. Bytes that are written to it replace the document.
class DocumentDevice final : public QIODevice
{
public:
    explicit DocumentDevice(QByteArray bytes = {});
    ~DocumentDevice() override;

    // The document, parsed on first demand and owned by the device; null if the bytes do not
    // parse, with a text for the user in `error`. Good until the device is written to, truncated
    // or told to release it. Who changes it calls setDocumentChanged() before anybody reads.
    Orv::Data::LightDocument* document(QString& error);
    // The same if it has been asked for and not been released, otherwise null.
    const Orv::Data::LightDocument* parsedDocument() const;
    // Of the document as it was parsed.
    const ElementIndex& index() const { return m_index; }
    // From now on the document tells the bytes, in UTF-8. False, and the document as it was before
    // it was parsed, if the device is not open for writing.
    bool setDocumentChanged();
    // Frees the document, once its changes are in the bytes.
    void releaseDocument();

    // The bytes as a reader would get them, wherever the device stands and whether or not it is
    // open.
    const QByteArray& bytes() const;

    bool open(OpenMode mode) override;
    qint64 size() const override;
    // Refuses places behind the end.
    bool seek(qint64 position) override;

protected:
    qint64 readData(char* data, qint64 maximumSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    void dropDocument();

    mutable QByteArray m_bytes;       // none while m_isChanged
    mutable bool m_isChanged = false; // the document is newer than the bytes
    std::optional<Orv::Data::LightDocument> m_document;
    ElementIndex m_index;
};

} // namespace Ksx::Core

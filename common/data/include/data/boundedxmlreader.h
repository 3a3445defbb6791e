// A stream reader whose time and memory are bounded by the size of the document.
#pragma once

#include "data/xmlsource.h"
#include <QXmlStreamReader>
#include <optional>

namespace Orv::Data {

// Refuses elements with too many attributes and texts of entities that come to too much, before it
// builds them, and ends when its device fails. All tokens are taken with advance().
class BoundedXmlReader : public QXmlStreamReader
{
public:
    // `device` is open for reading and outlives the reader. It may be null for a document that is
    // added as data, which is not bounded.
    explicit BoundedXmlReader(QIODevice* device);

    // Reads the next token. Gives Invalid with a text for the user when the document is refused.
    TokenType advance()
    {
        const TokenType token = readNext();
        const bool isPlain = token != Invalid && token != DTD;
        return isPlain && (token != StartElement || !m_looksAtElements) ? token : lookAt(token);
    }

private:
    TokenType lookAt(TokenType token);
    void enterDocumentType();
    void enterElement();

    std::optional<XmlSource> m_source;
    bool m_looksAtElements = false;  // the root element alone, as a rule
    bool m_hasDefaultValues = false; // of attributes, from the document type
};

} // namespace Orv::Data

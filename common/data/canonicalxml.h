// The tokens of a document in the form in which this program writes it.
#pragma once

#include "data/xmldatareader.h"
#include "readprogress.h"
#include <QIODevice>
#include <QString>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orv::Data {

class AttributeBase;

// Returns true for a name that CanonicalXmlTokens takes, but for its length.
bool isCanonicalName(std::string_view name);
// Returns true for a text that CanonicalXmlTokens gives for a value in which it is escaped.
bool isCanonicalText(std::u16string_view text);
// Resolves the references in the value of an attribute, which is in UTF-8. Returns false for what
// CanonicalXmlTokens does not take.
bool decodeCanonical(std::string_view value, QString& text);

// Scans the bytes of a document in UTF-8: the usual declaration, elements with ASCII names, at most
// the attribute `v`, white space between elements, the five predefined entities and references to
// characters. Fails at anything else, such as a comment, a text or a fault, and says nothing more of
// it: the document is then read again by a reader that knows all of XML. What it takes, that reader
// takes with the same result. Keeps a window on the document, which grows with the longest tag.
class CanonicalXmlTokens
{
public:
    // What read() of XmlTreeBuilder returns for a document in any other form.
    static constexpr int NotCanonical = -1;

    // `device` is open for reading and outlives the tokens.
    CanonicalXmlTokens(QIODevice& device, const ProgressFunction& progress);
    // For a document that is in memory, and outlives the tokens.
    explicit CanonicalXmlTokens(std::string_view document);

    // Reads the declaration and goes to the root element. Returns false without both.
    bool begin();

    void next();
    bool isStart() const { return m_token == Token::Start; }
    bool isEnd() const { return m_token == Token::End; }
    int error() const { return m_token == Token::Failure ? NotCanonical : 0; }
    bool isNamed(std::string_view name) const { return m_name == name; }
    std::string_view name(const std::string& /*buffer*/) const { return m_name; }
    std::optional<std::string_view> value(bool isFilePath, std::string& buffer) const;
    // The same as it is written in the document. It has references or other characters than those of
    // ASCII if `isDecoded`.
    bool hasValue() const { return m_hasValue; }
    std::string_view writtenValue() const { return m_value; }
    bool isDecoded() const { return m_isDecoded; }
    bool isAtEnd() const { return m_token == Token::EndOfDocument; }
    int fail(XmlReadStatus) { return giveUp(); }
    int refuse(const AttributeBase&, std::string_view) { return giveUp(); }
    void reportProgress() { m_progress.report(m_offset + (m_at - m_buffer.data())); }

private:
    int giveUp()
    {
        m_token = Token::Failure;
        return NotCanonical;
    }

    enum class Token
    {
        None,
        Start,
        End,
        EndOfDocument,
        Failure,
    };
    enum class Scan
    {
        Done,
        NeedsMore, // the window ends inside of the tag
        Foreign,   // no tag of the canonical form
    };

    bool readMore();
    Scan scanTag();
    Scan scanEndTag();
    Scan scanStartTag();
    Scan scanValue(const char*& at);

    QIODevice* m_device; // null for a document in memory
    ReadProgress m_progress;
    std::vector<char> m_buffer;
    const char* m_at;    // the first byte that has not been scanned
    const char* m_end;   // behind the last byte of the window
    qint64 m_offset = 0; // of the window in the document

    Token m_token = Token::None;
    bool m_isEmptyElement = false; // its end is the next token
    bool m_hasValue = false;
    bool m_isDecoded = false; // the value is in m_decoded
    std::string_view m_name;
    std::string_view m_value;
    QString m_decoded;
    std::string m_openNames; // of the elements that have not ended, one behind the other
    std::vector<std::uint8_t> m_nameSizes;
};

} // namespace Orv::Data

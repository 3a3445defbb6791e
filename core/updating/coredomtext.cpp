#include "updating/domtext.h"

#include "data/xmldatareader.h"
#include "updating/dompath.h"
#include <QBuffer>
#include <QCoreApplication>
#include <QDomDocument>
#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Ksx::Core {

namespace {

constexpr std::size_t MaximumDepth = Orv::Data::XmlDataReader::MaximumDepth;

// The text that the reader of the object tree has for a document that is too deep.
constexpr char DepthError[] = "ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_%1_%2";

// One text for each name of a document, which repeats few names very often: without it the names
// would be a tenth of the memory of a document.
class NamePool
{
public:
    template <class Reference>
    const QString& nameOf(const Reference& text)
    {
        const std::u16string_view key(reinterpret_cast<const char16_t*>(text.data()),
                                      static_cast<std::size_t>(text.size()));
        const auto found = m_names.find(key);
        if (found != m_names.end())
            return found->second;
        const QString name = text.toString();
        const std::u16string_view own(reinterpret_cast<const char16_t*>(name.constData()),
                                      key.size());
        return m_names.emplace(own, name).first->second;
    }

private:
    std::unordered_map<std::u16string_view, QString> m_names; // each key lies in its name
};

// Puts a document together out of what a stream reader meets. An element hangs on its parent only
// when it is complete: QDomDocument climbs to the root of what it appends to, so this keeps deep
// documents in linear time, which QDomDocument::setContent() does not.
class DomBuilder
{
public:
    DomBuilder(Orv::Data::BoundedXmlReader& reader, QDomDocument& document, DomIndex* index)
        : m_reader(reader), m_document(document), m_index(index)
    {}

    // False, with a text for the user, as soon as the document cannot be read or is too deep.
    bool build(DomError& error);

private:
    void take();
    void begin();
    void append(const QDomNode& node)
    {
        if (m_open.empty())
            m_document.appendChild(node);
        else
            m_open.back().appendChild(node);
    }

    Orv::Data::BoundedXmlReader& m_reader;
    QDomDocument& m_document;
    DomIndex* m_index;
    NamePool m_names;
    std::vector<QDomElement> m_open; // each without its parent
};

bool DomBuilder::build(DomError& error)
{
    while (!m_reader.atEnd() && !m_reader.hasError()) {
        m_reader.advance();
        take();
        if (m_open.size() > MaximumDepth)
            break;
    }
    error = {m_reader.errorString(), m_reader.lineNumber(), m_reader.columnNumber()};
    if (m_open.size() > MaximumDepth) {
        error.message =
            QCoreApplication::translate("QObject", DepthError).arg(error.line).arg(error.column);
        error.isTooDeep = true;
        return false;
    }
    return !m_reader.hasError();
}

void DomBuilder::take()
{
    switch (m_reader.tokenType()) {
    case QXmlStreamReader::StartElement:
        begin();
        break;
    case QXmlStreamReader::EndElement: {
        const QDomElement element = m_open.back();
        m_open.pop_back();
        append(element);
        break;
    }
    case QXmlStreamReader::Characters:
        if (m_reader.isCDATA())
            append(m_document.createCDATASection(m_reader.text().toString()));
        else if (!m_reader.isWhitespace())
            append(m_document.createTextNode(m_reader.text().toString()));
        break;
    case QXmlStreamReader::Comment:
        append(m_document.createComment(m_reader.text().toString()));
        break;
    case QXmlStreamReader::ProcessingInstruction:
        append(m_document.createProcessingInstruction(
            m_reader.processingInstructionTarget().toString(),
            m_reader.processingInstructionData().toString()));
        break;
    case QXmlStreamReader::EntityReference:
        m_reader.raiseError(
            QStringLiteral("Entity '%1' not declared.").arg(m_reader.name().toString()));
        break;
    default: // of a DTD nothing is left but the texts of its entities, where they are used
        break;
    }
}

void DomBuilder::begin()
{
    const QString& name = m_names.nameOf(m_reader.qualifiedName());
    QDomElement element = m_document.createElement(name);
    const QXmlStreamAttributes attributes = m_reader.attributes();
    for (const QXmlStreamAttribute& attribute : attributes)
        element.setAttribute(m_names.nameOf(attribute.qualifiedName()),
                             attribute.value().toString());
    m_open.push_back(element);
    if (m_index != nullptr && m_open.size() > 2)
        m_index->note(name, element, m_open[1]);
}

bool isText(const QDomNode& node)
{
    return node.isText() || node.isCDATASection();
}

enum class Place
{
    Text,
    AttributeValue, // quotes and white space would not come back as they are
};

void appendEscaped(QByteArray& out, const QString& text, Place place)
{
    const QByteArray bytes = text.toUtf8();
    const bool isValue = place == Place::AttributeValue;
    for (decltype(bytes.size()) i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        if (c == '<')
            out += "&lt;";
        else if (c == '&')
            out += "&amp;";
        else if (c == '"' && isValue)
            out += "&quot;";
        else if (c == '>' && i >= 2 && bytes[i - 1] == ']' && bytes[i - 2] == ']')
            out += "&gt;";
        else if (c == '\r')
            out += "&#xd;";
        else if (c == '\n' && isValue)
            out += "&#xa;";
        else if (c == '\t' && isValue)
            out += "&#x9;";
        else
            out += c;
    }
}

// Writes the nodes one after the other, so that depth costs no stack.
class DomWriter
{
public:
    QByteArray write(const QDomDocument& document);

private:
    // Writes a node up to its children. True if it has some, which come next.
    bool begin(const QDomNode& node);
    void end(const QDomNode& element);
    void writeAttributes(const QDomNode& element);
    void writeComment(const QDomNode& comment);

    void indent()
    {
        m_out.append(QByteArray::fromRawData(Blanks, std::min(m_depth, MaximumIndent)));
    }
    // A line may begin or end only where no text of the document stands.
    void indentUnlessBehindText()
    {
        if (!m_isBehindText)
            indent();
    }
    void endLineBefore(const QDomNode& next)
    {
        if (!isText(next))
            m_out += '\n';
    }

    static const char Blanks[MaximumIndent + 1];

    QByteArray m_out;
    int m_depth = 0;
    bool m_isBehindText = false; // the former node of the same parent is text
};

const char DomWriter::Blanks[MaximumIndent + 1] =
    "                                                                "
    "                                                                ";

QByteArray DomWriter::write(const QDomDocument& document)
{
    m_out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    QDomNode node = document.firstChild();
    while (!node.isNull()) {
        const bool hasChildren = begin(node);
        m_isBehindText = isText(node);
        if (hasChildren) {
            node = node.firstChild();
            ++m_depth;
            continue;
        }
        while (m_depth > 0 && node.nextSibling().isNull()) {
            node = node.parentNode();
            --m_depth;
            end(node);
            m_isBehindText = false;
        }
        node = node.nextSibling();
    }
    return std::move(m_out);
}

bool DomWriter::begin(const QDomNode& node)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        indentUnlessBehindText();
        m_out += '<';
        m_out += node.nodeName().toUtf8();
        writeAttributes(node);
        if (!node.firstChild().isNull()) {
            m_out += '>';
            endLineBefore(node.firstChild());
            return true;
        }
        m_out += "/>";
        endLineBefore(node.nextSibling());
        break;
    case QDomNode::TextNode:
        appendEscaped(m_out, node.nodeValue(), Place::Text);
        break;
    case QDomNode::CDATASectionNode:
        m_out += "<![CDATA[" + node.nodeValue().toUtf8() + "]]>";
        break;
    case QDomNode::CommentNode:
        writeComment(node);
        break;
    case QDomNode::ProcessingInstructionNode:
        m_out += "<?" + node.nodeName().toUtf8() + ' ' + node.nodeValue().toUtf8() + "?>\n";
        break;
    default:
        break;
    }
    return false;
}

void DomWriter::end(const QDomNode& element)
{
    indentUnlessBehindText();
    m_out += "</" + element.nodeName().toUtf8() + '>';
    endLineBefore(element.nextSibling());
}

// Sorted by name, since their own order differs from run to run.
void DomWriter::writeAttributes(const QDomNode& element)
{
    const QDomNamedNodeMap map = element.attributes();
    std::vector<QDomNode> attributes;
    attributes.reserve(static_cast<std::size_t>(map.count()));
    for (int i = 0; i < map.count(); ++i)
        attributes.push_back(map.item(i));
    std::sort(attributes.begin(), attributes.end(),
              [](const QDomNode& a, const QDomNode& b) { return a.nodeName() < b.nodeName(); });
    for (const QDomNode& attribute : attributes) {
        m_out += ' ' + attribute.nodeName().toUtf8() + "=\"";
        appendEscaped(m_out, attribute.nodeValue(), Place::AttributeValue);
        m_out += '"';
    }
}

void DomWriter::writeComment(const QDomNode& comment)
{
    indentUnlessBehindText();
    m_out += "<!--" + comment.nodeValue().toUtf8() + "-->";
    endLineBefore(comment.nextSibling());
}

} // namespace

QString DomError::text() const
{
    if (isTooDeep)
        return message;
    return QCoreApplication::translate("Xml", "PARSE_ERROR_AT_LINE_%1_AND_COLUMN_%2")
               .arg(line)
               .arg(column) +
           QStringLiteral(" :\n") + message;
}

bool parseDom(const QByteArray& bytes, QDomDocument& document, DomError& error, DomIndex* index)
{
    QBuffer buffer;
    buffer.setData(bytes);
    // Not the bytes themselves: the reader would decode all of them at once.
    buffer.open(QIODevice::ReadOnly);
    Orv::Data::BoundedXmlReader reader(&buffer);
    reader.setNamespaceProcessing(false);
    document = QDomDocument();
    return DomBuilder(reader, document, index).build(error);
}

QByteArray serialiseDom(const QDomDocument& document)
{
    return DomWriter().write(document);
}

} // namespace Ksx::Core

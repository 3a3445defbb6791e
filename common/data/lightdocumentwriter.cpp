#include "data/lightdocumentwriter.h"

#include "lightnodes.h"
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace Orv::Data {

namespace {

using Node = LightNodes::Node;

enum class Place
{
    Text,
    AttributeValue, // quotes and white space would not come back as they are
};

void append(QByteArray& out, std::string_view text)
{
    out.append(text.data(), static_cast<int>(text.size()));
}

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
class LightWriter
{
public:
    explicit LightWriter(const LightNodes& nodes) : m_nodes(nodes) {}

    QByteArray write();

private:
    // Writes a node up to its children. Returns true if it has some, which come next.
    bool begin(Node node);
    bool beginElement(Node element);
    void end(Node element);
    void writeAttributes(Node element);
    void writeComment(Node comment);

    bool isText(Node node) const
    {
        const LightKind kind = m_nodes[node].kindOf();
        return kind == LightKind::Text || kind == LightKind::CData;
    }
    void indent()
    {
        m_out.append(QByteArray::fromRawData(Blanks, std::min(m_depth, MaximumIndent)));
    }
    // A line may begin or end only where no text of the document is.
    void indentUnlessBehindText()
    {
        if (!m_isBehindText)
            indent();
    }
    void endLineBefore(Node next)
    {
        if (next == 0 || !isText(next))
            m_out += '\n';
    }

    static const char Blanks[MaximumIndent + 1];

    const LightNodes& m_nodes;
    QByteArray m_out;
    int m_depth = 0;
    bool m_isBehindText = false; // the former node of the same parent is text
};

const char LightWriter::Blanks[MaximumIndent + 1] =
    "                                                                "
    "                                                                ";

QByteArray LightWriter::write()
{
    m_out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    Node node = m_nodes.firstChild(LightNodes::Document);
    while (node != 0) {
        const bool hasChildren = begin(node);
        m_isBehindText = isText(node);
        if (hasChildren) {
            node = m_nodes.firstChild(node);
            ++m_depth;
            continue;
        }
        while (m_depth > 0 && m_nodes.nextSibling(node) == 0) {
            node = m_nodes[node].parent;
            --m_depth;
            end(node);
            m_isBehindText = false;
        }
        node = m_nodes.nextSibling(node);
    }
    return std::move(m_out);
}

bool LightWriter::begin(Node node)
{
    switch (m_nodes[node].kindOf()) {
    case LightKind::Text:
        appendEscaped(m_out, m_nodes.textOf(node), Place::Text);
        return false;
    case LightKind::CData:
        m_out += "<![CDATA[" + m_nodes.textOf(node).toUtf8() + "]]>";
        return false;
    case LightKind::Comment:
        writeComment(node);
        return false;
    case LightKind::Instruction:
        m_out += "<?";
        append(m_out, m_nodes.nameOf(node));
        m_out += ' ' + m_nodes.textOf(node).toUtf8() + "?>\n";
        return false;
    default:
        return beginElement(node);
    }
}

bool LightWriter::beginElement(Node element)
{
    indentUnlessBehindText();
    m_out += '<';
    append(m_out, m_nodes.nameOf(element));
    writeAttributes(element);
    const Node child = m_nodes.firstChild(element);
    m_out += child != 0 ? ">" : "/>";
    endLineBefore(child != 0 ? child : m_nodes.nextSibling(element));
    return child != 0;
}

void LightWriter::end(Node element)
{
    indentUnlessBehindText();
    m_out += "</";
    append(m_out, m_nodes.nameOf(element));
    m_out += '>';
    endLineBefore(m_nodes.nextSibling(element));
}

// Sorted by name, whatever their order was.
void LightWriter::writeAttributes(Node element)
{
    std::vector<std::pair<QString, QString>> attributes;
    if (m_nodes[element].kindOf() != LightKind::Element)
        attributes.emplace_back(QStringLiteral("v"), m_nodes.textOf(element));
    if (const auto* others = m_nodes.attributesOf(element))
        for (const LightNodes::Attribute& other : *others) {
            const std::string_view name = m_nodes.names()[other.name];
            attributes.emplace_back(QString::fromUtf8(name.data(), static_cast<int>(name.size())),
                                    m_nodes.ownText(other.text));
        }
    std::sort(attributes.begin(), attributes.end());
    for (const auto& [name, value] : attributes) {
        m_out += ' ' + name.toUtf8() + "=\"";
        appendEscaped(m_out, value, Place::AttributeValue);
        m_out += '"';
    }
}

void LightWriter::writeComment(Node comment)
{
    indentUnlessBehindText();
    m_out += "<!--" + m_nodes.textOf(comment).toUtf8() + "-->";
    endLineBefore(m_nodes.nextSibling(comment));
}

} // namespace

QByteArray serialise(const LightDocument& document)
{
    return LightWriter(document.nodes()).write();
}

} // namespace Orv::Data

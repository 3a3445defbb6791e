#include "data/lightdocumentreader.h"

#include "canonicalxml.h"
#include "data/boundedxmlreader.h"
#include "lightnodes.h"
#include <utility>
#include <vector>

namespace Orv::Data {

namespace {

constexpr std::size_t MaximumDepth = XmlDataReader::MaximumDepth;

// Hangs nodes into a document in document order.
class LightBuilder
{
public:
    using Node = LightNodes::Node;

    explicit LightBuilder(LightNodes& nodes) : m_nodes(nodes) { m_open.push_back({0, 0}); }

    std::size_t depth() const { return m_open.size() - 1; }
    void begin(Node element)
    {
        append(element);
        m_open.push_back({element, 0});
    }
    void end() { m_open.pop_back(); }
    void append(Node node)
    {
        Open& open = m_open.back();
        m_nodes.link(open.node, open.last, node);
        m_nodes.setParent(node, open.node);
        open.last = node;
    }

private:
    struct Open
    {
        Node node;
        Node last; // of its children so far
    };

    LightNodes& m_nodes;
    std::vector<Open> m_open; // the document and the elements that have not ended
};

LightNodes::Node addElement(LightNodes& nodes, const CanonicalXmlTokens& tokens)
{
    const LightNodes::Node element = nodes.addElement(tokens.name({}));
    if (tokens.hasValue()) {
        const LightKind kind =
            tokens.isDecoded() ? LightKind::ReferencedElement : LightKind::SourceElement;
        nodes[element].setKind(kind);
        nodes[element].text = nodes.placeOf(tokens.writtenValue());
    }
    return element;
}

// Returns false for a document in another form, of which `nodes` then has a part.
bool readCanonical(std::string_view bytes, LightNodes& nodes)
{
    CanonicalXmlTokens tokens(bytes);
    if (!tokens.begin())
        return false;
    LightBuilder builder(nodes);
    while (tokens.isStart() || tokens.isEnd()) {
        if (tokens.isEnd())
            builder.end();
        else if (builder.depth() < MaximumDepth)
            builder.begin(addElement(nodes, tokens));
        else
            return false;
        tokens.next();
    }
    return tokens.isAtEnd();
}

// Takes a document of any form.
class LightSink final : public DocumentSink
{
public:
    explicit LightSink(LightNodes& nodes) : m_nodes(nodes), m_builder(nodes) {}

    void beginElement(const BoundedXmlReader& reader) override;
    void endElement() override { m_builder.end(); }
    void add(const BoundedXmlReader& reader) override;

private:
    template <class Reference>
    std::uint32_t textOf(const Reference& text)
    {
        return m_nodes.addText(text.data(), text.size());
    }
    template <class Reference>
    std::uint32_t nameOf(const Reference& name)
    {
        return m_nodes.names().idOf(name.toUtf8().toStdString());
    }

    LightNodes& m_nodes;
    LightBuilder m_builder;
};

void LightSink::beginElement(const BoundedXmlReader& reader)
{
    const LightNodes::Node element =
        m_nodes.add(LightKind::Element, nameOf(reader.qualifiedName()), 0);
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (attribute.qualifiedName() == QLatin1String("v"))
            m_nodes.setValue(element, attribute.value().data(), attribute.value().size());
        else
            m_nodes.addAttribute(element,
                                 {nameOf(attribute.qualifiedName()), textOf(attribute.value())});
    }
    m_builder.begin(element);
}

void LightSink::add(const BoundedXmlReader& reader)
{
    if (m_builder.depth() > 0)
        m_nodes.setNotPlain();
    LightKind kind = reader.isComment() ? LightKind::Comment : LightKind::Text;
    if (reader.isCDATA())
        kind = LightKind::CData;
    if (reader.isProcessingInstruction())
        m_builder.append(m_nodes.add(LightKind::Instruction,
                                     nameOf(reader.processingInstructionTarget()),
                                     textOf(reader.processingInstructionData())));
    else
        m_builder.append(m_nodes.add(kind, 0, textOf(reader.text())));
}

} // namespace

bool readLightDocument(const QByteArray& bytes, LightDocument& document, DocumentError& error,
                       XmlLane lane)
{
    document = LightDocument();
    auto nodes = std::make_unique<LightNodes>(bytes);
    if (lane == XmlLane::General ||
        !readCanonical({bytes.constData(), static_cast<std::size_t>(bytes.size())}, *nodes)) {
        nodes = std::make_unique<LightNodes>();
        LightSink sink(*nodes);
        if (!readDocument(bytes, sink, error))
            return false;
    }
    document = LightDocument(std::move(nodes));
    return true;
}

} // namespace Orv::Data

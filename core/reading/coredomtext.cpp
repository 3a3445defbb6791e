#include "reading/domtext.h"

#include "data/boundedxmlreader.h"
#include <QDomDocument>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Ksx::Core {

namespace {

using Orv::Data::BoundedXmlReader;

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

// Puts a document together. An element hangs on its parent only when it is complete: QDomDocument
// climbs to the root of what it appends to, so this keeps deep documents in linear time, which
// QDomDocument::setContent() does not.
class DomBuilder final : public Orv::Data::DocumentSink
{
public:
    explicit DomBuilder(QDomDocument& document) : m_document(document) {}

    void beginElement(const BoundedXmlReader& reader) override;
    void endElement() override;
    void add(const BoundedXmlReader& reader) override;

private:
    void append(const QDomNode& node)
    {
        if (m_open.empty())
            m_document.appendChild(node);
        else
            m_open.back().appendChild(node);
    }

    QDomDocument& m_document;
    NamePool m_names;
    std::vector<QDomElement> m_open; // each without its parent
};

void DomBuilder::beginElement(const BoundedXmlReader& reader)
{
    QDomElement element = m_document.createElement(m_names.nameOf(reader.qualifiedName()));
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute& attribute : attributes)
        element.setAttribute(m_names.nameOf(attribute.qualifiedName()),
                             attribute.value().toString());
    m_open.push_back(element);
}

void DomBuilder::endElement()
{
    const QDomElement element = m_open.back();
    m_open.pop_back();
    append(element);
}

void DomBuilder::add(const BoundedXmlReader& reader)
{
    if (reader.isCDATA())
        append(m_document.createCDATASection(reader.text().toString()));
    else if (reader.isComment())
        append(m_document.createComment(reader.text().toString()));
    else if (reader.isProcessingInstruction())
        append(
            m_document.createProcessingInstruction(reader.processingInstructionTarget().toString(),
                                                   reader.processingInstructionData().toString()));
    else
        append(m_document.createTextNode(reader.text().toString()));
}

} // namespace

bool parseDom(const QByteArray& bytes, QDomDocument& document, Orv::Data::DocumentError& error)
{
    document = QDomDocument();
    DomBuilder builder(document);
    return Orv::Data::readDocument(bytes, builder, error);
}

} // namespace Ksx::Core

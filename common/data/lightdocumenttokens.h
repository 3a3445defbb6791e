// The tokens of a light document, as if its text were read.
#pragma once

#include "data/filename.h"
#include "data/latin1.h"
#include "data/xmldatareader.h"
#include "lightnodes.h"
#include "readprogress.h"
#include <optional>
#include <string>
#include <string_view>

namespace Orv::Data {

class AttributeBase;

// Goes through the elements of a document that is plain, for XmlTreeBuilder. Words no error: after a
// failure the text of the document is to be read, by a reader that knows lines and columns.
class LightDocumentTokens
{
public:
    // The document stays as it is while the tokens live.
    LightDocumentTokens(const LightNodes& nodes, const ProgressFunction& progress)
        : m_nodes(nodes), m_progress(progress, NodeSize * nodes.size()), m_node(nodes.root())
    {}

    void next()
    {
        if (m_token == Token::Start) {
            ++m_count;
            const LightNodes::Node child = m_nodes.firstChild(m_node);
            enter(child, m_node);
        } else if (m_token == Token::End) {
            const LightNodes::Node parent = m_nodes[m_node].parent;
            const bool isRoot = parent == LightNodes::Document;
            enter(isRoot ? 0 : m_nodes.nextSibling(m_node), parent);
        }
    }
    bool isStart() const { return m_token == Token::Start; }
    bool isEnd() const { return m_token == Token::End; }
    int error() const { return m_token == Token::Failure ? Failed : 0; }
    bool isNamed(std::string_view name) const { return m_nodes.nameOf(m_node) == name; }
    std::string_view name(const std::string& /*buffer*/) const { return m_nodes.nameOf(m_node); }
    std::optional<std::string_view> value(bool isFilePath, std::string& buffer) const
    {
        const LightKind kind = m_nodes[m_node].kindOf();
        if (kind == LightKind::Element)
            return std::nullopt;
        if (kind == LightKind::SourceElement)
            return m_nodes.written(m_node);
        const QString text = m_nodes.textOf(m_node);
        if (isFilePath)
            buffer = toBytes(text);
        else
            assignLatin1(buffer, text.constData(), text.size());
        return buffer;
    }
    int fail(XmlReadStatus) { return giveUp(); }
    int refuse(const AttributeBase&, std::string_view) { return giveUp(); }
    void reportProgress() { m_progress.report(NodeSize * m_count); }

private:
    static constexpr int Failed = -1;
    // The size of the text of a node, more or less. Progress goes by the size of texts.
    static constexpr qint64 NodeSize = 24;

    enum class Token
    {
        Start,
        End,
        EndOfDocument,
        Failure,
    };

    void enter(LightNodes::Node node, LightNodes::Node parent)
    {
        m_token = node != 0 ? Token::Start : parent != 0 ? Token::End : Token::EndOfDocument;
        m_node = node != 0 ? node : parent;
    }
    int giveUp()
    {
        m_token = Token::Failure;
        return Failed;
    }

    const LightNodes& m_nodes;
    ReadProgress m_progress;
    LightNodes::Node m_count = 0;
    LightNodes::Node m_node;
    Token m_token = Token::Start;
};

} // namespace Orv::Data

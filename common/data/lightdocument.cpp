#include "data/lightdocument.h"

#include "data/filename.h"
#include "lightnodes.h"
#include <utility>

namespace Orv::Data {

namespace {

// Returns the node itself or the first behind it that is an element of that name, 0 without one.
LightNodes::Node elementFrom(const LightNodes& nodes, LightNodes::Node node, std::string_view name)
{
    const std::uint32_t id = name.empty() ? LightNames::NoName : nodes.names().find(name);
    if (!name.empty() && id == LightNames::NoName)
        return 0;
    while (node != 0 && !(nodes[node].isElement() && (name.empty() || nodes[node].name == id)))
        node = nodes.nextSibling(node);
    return node;
}

// Returns the last child, which may be one that was removed, or 0.
LightNodes::Node lastOf(const LightNodes& nodes, LightNodes::Node parent)
{
    LightNodes::Node last = nodes.first(parent);
    while (last != 0 && nodes[last].next != 0)
        last = nodes[last].next;
    return last;
}

} // namespace

std::string_view LightElement::name() const
{
    return isNull() ? std::string_view() : m_nodes->nameOf(m_node);
}

void LightElement::rename(std::string_view name)
{
    LightNode& node = (*m_nodes)[m_node];
    m_nodes->countChange();
    m_nodes->setChanged(node.name);
    node.setName(m_nodes->names().idOf(name));
    m_nodes->setChanged(node.name);
}

QString LightElement::value() const
{
    const bool hasValue = !isNull() && (*m_nodes)[m_node].kindOf() != LightKind::Element;
    return hasValue ? m_nodes->textOf(m_node) : QString();
}

void LightElement::appendValue(std::string& text) const
{
    if (!isNull() && (*m_nodes)[m_node].kindOf() == LightKind::SourceElement)
        text += m_nodes->written(m_node);
    else
        text += toBytes(value());
}

void LightElement::setValue(const QString& text)
{
    m_nodes->countChange();
    m_nodes->setValue(m_node, text.constData(), text.size());
}

void LightElement::shareValue(const LightElement& other)
{
    m_nodes->countChange();
    (*m_nodes)[m_node].text = (*m_nodes)[other.m_node].text;
    (*m_nodes)[m_node].kind = (*m_nodes)[other.m_node].kind;
}

LightElement LightElement::parent() const
{
    return isNull() ? LightElement() : LightElement(*m_nodes, (*m_nodes)[m_node].parent);
}

LightElement LightElement::firstChild(std::string_view name) const
{
    if (isNull())
        return {};
    return {*m_nodes, elementFrom(*m_nodes, m_nodes->firstChild(m_node), name)};
}

LightElement LightElement::nextSibling(std::string_view name) const
{
    if (isNull())
        return {};
    return {*m_nodes, elementFrom(*m_nodes, m_nodes->nextSibling(m_node), name)};
}

void LightElement::append(const LightElement& child)
{
    m_nodes->countChange();
    m_nodes->link(m_node, lastOf(*m_nodes, m_node), child.m_node);
    m_nodes->setParent(child.m_node, m_node);
}

void LightElement::insertBehind(const LightElement& anchor, const LightElement& child)
{
    m_nodes->countChange();
    m_nodes->setParent(child.m_node, m_node);
    m_nodes->setNext(child.m_node, (*m_nodes)[anchor.m_node].next);
    m_nodes->setNext(anchor.m_node, child.m_node);
}

void LightElement::takeElements(const LightElement& source, const LightElement& exception)
{
    LightNodes& nodes = *m_nodes;
    nodes.countChange();
    nodes.setMoved();
    LightNodes::Node last = lastOf(nodes, m_node);
    LightNodes::Node left = 0; // the last node that stays in the source
    LightNodes::Node next = 0;
    for (LightNodes::Node node = nodes.first(source.m_node); node != 0; node = next) {
        next = nodes[node].next;
        const bool isTaken =
            nodes[node].isElement() && nodes[node].isRemoved == 0 && node != exception.m_node;
        nodes.link(isTaken ? m_node : source.m_node, isTaken ? last : left, node);
        (isTaken ? last : left) = node;
        nodes.setNext(node, 0);
        if (isTaken)
            nodes.setParent(node, m_node);
    }
    nodes.link(source.m_node, left, 0);
}

void LightElement::remove()
{
    if (isNull())
        return;
    LightNode& node = (*m_nodes)[m_node];
    m_nodes->countChange();
    node.isRemoved = 1;
    m_nodes->setChanged(node.name);
    if (m_nodes->first(m_node) != 0)
        m_nodes->setMoved();
}

LightDocument::LightDocument() : LightDocument(std::make_unique<LightNodes>()) {}

LightDocument::LightDocument(std::unique_ptr<LightNodes> nodes) : m_nodes(std::move(nodes)) {}

LightDocument::~LightDocument() = default;

LightDocument::LightDocument(LightDocument&&) noexcept = default;

LightDocument& LightDocument::operator=(LightDocument&&) noexcept = default;

LightElement LightDocument::root() const
{
    return {*m_nodes, m_nodes->root()};
}

std::size_t LightDocument::nodeCount() const
{
    return m_nodes->size();
}

std::size_t LightDocument::changeCount() const
{
    return m_nodes->changeCount();
}

LightElement LightDocument::makeElement(std::string_view name)
{
    const LightNodes::Node node = m_nodes->addElement(name);
    m_nodes->setChanged((*m_nodes)[node].name);
    return {*m_nodes, node};
}

LightElement LightDocument::makeLeaf(std::string_view name, const QString& value)
{
    const LightElement leaf = makeElement(name);
    m_nodes->setValue(leaf.m_node, value.constData(), value.size());
    return leaf;
}

bool LightDocument::areAsRead(std::string_view name) const
{
    return m_nodes->areAsRead(m_nodes->names().find(name));
}

void LightDocument::visitNamed(const std::vector<std::string_view>& names, const Visit& visit) const
{
    std::vector<bool> isWanted(m_nodes->names().size());
    for (const std::string_view name : names)
        if (const std::uint32_t id = m_nodes->names().find(name); id != LightNames::NoName)
            isWanted[id] = true;
    const LightNodes::Node rootNode = m_nodes->root();
    LightElement top;
    for (LightNodes::Node node = rootNode + 1; node < m_nodes->size(); ++node) {
        const LightNode& one = (*m_nodes)[node];
        if (!one.isElement())
            continue;
        if (one.parent == rootNode)
            top = {*m_nodes, node};
        else if (isWanted[one.name])
            visit({*m_nodes, node}, top);
    }
}

} // namespace Orv::Data

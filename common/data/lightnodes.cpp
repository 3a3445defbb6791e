#include "lightnodes.h"

#include "canonicalxml.h"
#include <algorithm>
#include <cstring>
#include <utility>

namespace Orv::Data {

std::uint32_t LightNames::idOf(std::string_view name)
{
    if (m_names.empty())
        return lookUp(name);
    const std::uint32_t guess = m_names[m_last].follower;
    if (m_names[guess].text == name)
        return m_last = guess;
    const std::uint32_t id = lookUp(name);
    m_names[m_last].follower = id;
    return m_last = id;
}

std::uint32_t LightNames::lookUp(std::string_view name)
{
    const auto found = m_ids.find(name);
    if (found != m_ids.end())
        return found->second;
    const auto id = static_cast<std::uint32_t>(m_names.size());
    const std::string_view own = m_texts.emplace_back(name);
    m_names.push_back({own, id});
    m_ids.emplace(own, id);
    m_areCanonical = m_areCanonical && isCanonicalName(own);
    return id;
}

std::uint32_t LightNames::find(std::string_view name) const
{
    const auto found = m_ids.find(name);
    return found == m_ids.end() ? NoName : found->second;
}

LightNodes::LightNodes(QByteArray source) : m_source(std::move(source))
{
    add(LightKind::Element, 0, 0); // the document
}

LightNodes::Node LightNodes::add(LightKind kind, std::uint32_t name, std::uint32_t text)
{
    if (m_size % BlockSize == 0)
        m_blocks.emplace_back(new LightNode[BlockSize]); // without a value until they are used
    const Node node = m_size++;
    LightNode& added = (*this)[node];
    added = {};
    added.text = text;
    added.setName(name);
    added.setKind(kind);
    return node;
}

void LightNodes::setFirst(Node node, Node child)
{
    LightNode& one = (*this)[node];
    one.hasFirst = child != 0 ? 1 : 0;
    one.isFirstElsewhere = child != 0 && child != node + 1 ? 1 : 0;
    if (one.isFirstElsewhere != 0)
        m_firsts[node] = child;
}

LightNodes::Node LightNodes::root() const
{
    Node node = firstChild(Document);
    while (node != 0 && !(*this)[node].isElement())
        node = nextSibling(node);
    return node;
}

std::uint32_t LightNodes::addText(const QChar* text, qsizetype size)
{
    if (size > m_roomSize) {
        m_roomSize = std::max(size, TextBlockSize);
        m_room =
            m_textBlocks.emplace_back(new char16_t[static_cast<std::size_t>(m_roomSize)]).get();
    }
    const std::u16string_view own(m_room, static_cast<std::size_t>(size));
    std::transform(text, text + size, m_room, [](QChar c) { return char16_t{c.unicode()}; });
    m_room += size;
    m_roomSize -= size;
    m_texts.push_back(own);
    return static_cast<std::uint32_t>(m_texts.size() - 1);
}

void LightNodes::setValue(Node element, const QChar* text, qsizetype size)
{
    LightNode& node = (*this)[element];
    node.text = addText(text, size);
    node.setKind(LightKind::OwnElement);
    m_isPlain = m_isPlain && isCanonicalText(m_texts[node.text]);
}

QString LightNodes::textOf(Node node) const
{
    const LightNode& one = (*this)[node];
    if (one.kindOf() == LightKind::SourceElement) {
        const std::string_view text = written(node);
        return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
    }
    if (one.kindOf() == LightKind::ReferencedElement) {
        QString text;
        decodeCanonical(written(node), text);
        return text;
    }
    return ownText(one.text);
}

QString LightNodes::ownText(std::uint32_t number) const
{
    const std::u16string_view text = m_texts[number];
    return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<int>(text.size()));
}

// The byte before a value is its quote.
std::string_view LightNodes::written(Node element) const
{
    const char* const begin = m_source.constData() + (*this)[element].text;
    const auto* const end = static_cast<const char*>(
        std::memchr(begin, begin[-1],
                    static_cast<std::size_t>(m_source.constData() + m_source.size() - begin)));
    return {begin, static_cast<std::size_t>(end - begin)};
}

const std::vector<LightNodes::Attribute>* LightNodes::attributesOf(Node element) const
{
    const auto found = m_attributes.find(element);
    return found == m_attributes.end() ? nullptr : &found->second;
}

void LightNodes::setChanged(std::uint32_t name)
{
    if (name >= m_isChanged.size())
        m_isChanged.resize(name + 1);
    m_isChanged[name] = true;
}

} // namespace Orv::Data

// How a light document is kept in memory.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Orv::Data {

// Of an element it also says where the value is, which is the text of the attribute `v`.
enum class LightKind : std::uint8_t
{
    Element,           // without a value
    SourceElement,     // a value in the text that was read, as it is written there, in ASCII
    ReferencedElement, // the same, with references or other characters
    OwnElement,        // a value of its own
    Text,
    CData,
    Comment,
    Instruction,
};

// Each number of a node is 0 for none. Node 0 is the document. There are never 2^31 nodes: a text is
// shorter than that.
struct LightNode
{
    std::uint32_t parent : 31;
    std::uint32_t isRemoved : 1; // from its parent, whose chain it stays in
    std::uint32_t next : 31;     // sibling
    std::uint32_t hasFirst : 1;  // child, which is the next node as long as `isFirstElsewhere` is 0
    std::uint32_t text;          // a place in the source, or the number of a text of its own
    std::uint32_t name : 28;     // more than the source has room for
    std::uint32_t kind : 3;
    std::uint32_t isFirstElsewhere : 1;

    LightKind kindOf() const { return static_cast<LightKind>(kind); }
    void setKind(LightKind value) { kind = static_cast<std::uint32_t>(value) & 7u; }
    void setName(std::uint32_t id) { name = id & 0xFFFFFFFu; }
    bool isElement() const { return kind <= static_cast<std::uint32_t>(LightKind::OwnElement); }
};
static_assert(sizeof(LightNode) == 16);

// One text for each name. Guesses the next name by the one that followed the last name before.
class LightNames
{
public:
    std::uint32_t idOf(std::string_view name);
    // Returns NoName for a name that is not there.
    std::uint32_t find(std::string_view name) const;
    std::string_view operator[](std::uint32_t id) const { return m_names[id].text; }
    std::size_t size() const { return m_names.size(); }
    bool areCanonical() const { return m_areCanonical; }

    static constexpr std::uint32_t NoName = ~std::uint32_t{0};

private:
    struct Name
    {
        std::string_view text;
        std::uint32_t follower; // the name that came behind it
    };
    std::uint32_t lookUp(std::string_view name);

    std::vector<Name> m_names;
    std::deque<std::string> m_texts;
    std::unordered_map<std::string_view, std::uint32_t> m_ids;
    std::uint32_t m_last = 0;
    bool m_areCanonical = true;
};

// The nodes, names and texts of one document.
class LightNodes
{
public:
    using Node = std::uint32_t;
    static constexpr Node Document = 0;

    struct Attribute // other than `v`
    {
        std::uint32_t name;
        std::uint32_t text;
    };

    // `source` is the text that values may be places in.
    explicit LightNodes(QByteArray source = {});

    LightNode& operator[](Node node) { return m_blocks[node / BlockSize][node % BlockSize]; }
    const LightNode& operator[](Node node) const
    {
        return m_blocks[node / BlockSize][node % BlockSize];
    }
    Node size() const { return m_size; }
    LightNames& names() { return m_names; }
    const LightNames& names() const { return m_names; }

    // Returns a new node behind all others, which has no links to any.
    Node add(LightKind kind, std::uint32_t name, std::uint32_t text);
    Node addElement(std::string_view name)
    {
        return add(LightKind::Element, m_names.idOf(name), 0);
    }
    // Returns the node itself or the first behind it that has not been removed, 0 without one.
    Node kept(Node node) const
    {
        while (node != 0 && (*this)[node].isRemoved != 0)
            node = (*this)[node].next;
        return node;
    }
    // Returns the first child, which may be one that was removed, or 0.
    Node first(Node node) const
    {
        const LightNode& one = (*this)[node];
        if (one.isFirstElsewhere != 0)
            return m_firsts.find(node)->second;
        return one.hasFirst != 0 ? node + 1 : 0;
    }
    void setFirst(Node node, Node child);
    void setNext(Node node, Node sibling) { (*this)[node].next = sibling & MaximumNode; }
    void setParent(Node node, Node parent) { (*this)[node].parent = parent & MaximumNode; }
    // Hangs a chain of children behind `last`, a child of `parent`, or as its first ones.
    void link(Node parent, Node last, Node chain)
    {
        if (last == 0)
            setFirst(parent, chain);
        else
            setNext(last, chain);
    }
    Node firstChild(Node node) const { return kept(first(node)); }
    Node nextSibling(Node node) const { return kept((*this)[node].next); }
    // Returns the root element, 0 in an empty document.
    Node root() const;
    std::string_view nameOf(Node node) const { return m_names[(*this)[node].name]; }

    // Returns a number for the text.
    std::uint32_t addText(const QChar* text, qsizetype size);
    void setValue(Node element, const QChar* text, qsizetype size);
    // Returns the value or text of a node, which has one.
    QString textOf(Node node) const;
    QString ownText(std::uint32_t number) const;
    // Returns the value of a SourceElement or ReferencedElement as it is written.
    std::string_view written(Node element) const;
    std::uint32_t placeOf(std::string_view value) const
    {
        return static_cast<std::uint32_t>(value.data() - m_source.constData());
    }

    void addAttribute(Node element, const Attribute& attribute)
    {
        m_attributes[element].push_back(attribute);
    }
    // Returns null for an element that has none but `v`.
    const std::vector<Attribute>* attributesOf(Node element) const;

    // Returns true if a tree can be built from the nodes: there is nothing in the root but elements
    // with `v` that would be read again as they are, once they had been written.
    bool isPlain() const { return m_isPlain && m_attributes.empty() && m_names.areCanonical(); }
    // Says that a text or the like is in the root.
    void setNotPlain() { m_isPlain = false; }

    // Returns true if the elements of that name are those that were read, in their places.
    bool areAsRead(std::uint32_t name) const
    {
        return !m_haveMoved && (name >= m_isChanged.size() || !m_isChanged[name]);
    }
    // Says that an element has changed in any way.
    void countChange() { ++m_changeCount; }
    std::size_t changeCount() const { return m_changeCount; }
    // Says that elements of that name have come or gone.
    void setChanged(std::uint32_t name);
    // Says that elements of any name may have gone or be elsewhere.
    void setMoved() { m_haveMoved = true; }

private:
    static constexpr Node MaximumNode = 0x7FFFFFFF;
    static constexpr Node BlockSize = Node{1} << 16;
    static constexpr qsizetype TextBlockSize = qsizetype{1} << 15;

    QByteArray m_source;
    LightNames m_names;
    std::vector<std::unique_ptr<LightNode[]>> m_blocks;
    Node m_size = 0;
    std::unordered_map<Node, Node> m_firsts; // children that are not the next nodes
    std::vector<std::u16string_view> m_texts;
    std::vector<std::unique_ptr<char16_t[]>> m_textBlocks;
    char16_t* m_room = nullptr; // in the last block of texts
    qsizetype m_roomSize = 0;
    std::unordered_map<Node, std::vector<Attribute>> m_attributes;
    std::vector<bool> m_isChanged; // by the number of the name, as far as one is changed
    std::size_t m_changeCount = 0;
    bool m_haveMoved = false;
    bool m_isPlain = true;
};

} // namespace Orv::Data

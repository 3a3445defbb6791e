// An XML document that can be changed and takes little memory.
#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orv::Data {

class LightNodes;

// An element of a document, or none. Copies mean the same element, wherever it is moved to. Is good
// as long as its document. Each question to no element has an empty answer.
class LightElement
{
public:
    LightElement() = default;

    bool isNull() const { return m_node == 0; }

    // In UTF-8, with its prefix.
    std::string_view name() const;
    void rename(std::string_view name);

    // The text of the attribute `v`, empty without one.
    QString value() const;
    // Appends the same in UTF-8, which takes no time in most elements.
    void appendValue(std::string& text) const;
    void setValue(const QString& text);
    // Takes the value of another element of the document, or none. The text is held once.
    void shareValue(const LightElement& other);

    // Null for the root element and for an element that nobody has put anywhere.
    LightElement parent() const;
    // Without a name, elements of all names count.
    LightElement firstChild(std::string_view name = {}) const;
    LightElement nextSibling(std::string_view name = {}) const;

    // `child` is new: it has no parent. Takes time in the number of children.
    void append(const LightElement& child);
    // `anchor` is a child of this element, and `child` is new.
    void insertBehind(const LightElement& anchor, const LightElement& child);
    // Moves all child elements of `source` but `exception` to the end. Other nodes stay. Leaves the
    // elements in their order. `source` is another element, and holds this one in `exception`.
    void takeElements(const LightElement& source, const LightElement& exception);
    // Takes the element and all below it out of the document. It stays good, and keeps its parent.
    void remove();

    friend bool operator==(const LightElement& a, const LightElement& b)
    {
        return a.m_node == b.m_node && a.m_nodes == b.m_nodes;
    }
    friend bool operator!=(const LightElement& a, const LightElement& b) { return !(a == b); }

private:
    friend class LightDocument;
    LightElement(LightNodes& nodes, quint32 node)
        : m_nodes(node == 0 ? nullptr : &nodes), m_node(node)
    {}

    LightNodes* m_nodes = nullptr;
    quint32 m_node = 0;
};

using LightElements = std::vector<LightElement>;

// The elements of a document with all their attributes, in nodes of 16 bytes, and its texts, comments
// and instructions. Of a document type nothing is left, and no white space between elements. Names
// are held once. Values are places in the text that was read, or of their own where they changed.
class LightDocument
{
public:
    LightDocument();
    explicit LightDocument(std::unique_ptr<LightNodes> nodes);
    ~LightDocument();
    LightDocument(LightDocument&&) noexcept;
    LightDocument& operator=(LightDocument&&) noexcept;

    // Null in an empty document.
    LightElement root() const;

    // Returns the number of elements, texts and the like, with those that were removed.
    std::size_t nodeCount() const;
    // Returns the number of changes to elements since the document was read.
    std::size_t changeCount() const;

    // New elements, which are nowhere in the document as yet.
    LightElement makeElement(std::string_view name);
    LightElement makeLeaf(std::string_view name, const QString& value);

    // Returns true if the elements of that name are those that were read, each in its place. May
    // return false for that as well, once elements have been moved or removed.
    bool areAsRead(std::string_view name) const;

    // Calls `visit` for each element of these names, in document order, with the child of the root
    // that it is below. Children of the root and the root are left out. For a document as it has
    // been read: new elements come last and removed ones as well.
    using Visit = std::function<void(const LightElement& element, const LightElement& top)>;
    void visitNamed(const std::vector<std::string_view>& names, const Visit& visit) const;

    // For readers and writers of documents.
    const LightNodes& nodes() const { return *m_nodes; }

private:
    std::unique_ptr<LightNodes> m_nodes;
};

} // namespace Orv::Data

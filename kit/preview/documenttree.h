// Documents as they were at one time, for comparisons.
#pragma once

#include <QString>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Orv::Data {
class LightDocument;
class LightElement;
} // namespace Orv::Data

namespace Ksx::Kit {

// Numbers for the names of elements. Trees that are compared have theirs in common.
class ElementNames
{
public:
    std::uint32_t idOf(std::string_view name);
    std::string_view operator[](std::uint32_t id) const { return m_names[id]; }

private:
    std::deque<std::string> m_names; // a name does not move while others come
    std::unordered_map<std::string_view, std::uint32_t> m_ids;
};

// The elements of a document with their values, in document order. It takes 32 bytes for an element,
// and the bytes of its value.
class DocumentTree
{
public:
    using Index = std::uint32_t;
    static constexpr Index None = ~Index{0};

    struct Element
    {
        std::uint64_t hash = 0; // of the element and all below it
        Index name = 0;         // a number of ElementNames
        Index end = 0;          // behind the last element below it
        Index valueBegin = 0;
        Index valueSize = 0;
        Index origin = None; // the number of the element in the file; None for a new one
    };

    DocumentTree() = default;
    DocumentTree(const Orv::Data::LightDocument& document, ElementNames& names);

    // Says that the tree is that of the file.
    void setOrigins();

    bool isEmpty() const { return m_elements.empty(); }
    Index size() const { return static_cast<Index>(m_elements.size()); }
    Element& operator[](Index element) { return m_elements[element]; }
    const Element& operator[](Index element) const { return m_elements[element]; }
    // Returns the value in UTF-8.
    std::string_view valueOf(Index element) const
    {
        return std::string_view(m_values).substr(m_elements[element].valueBegin,
                                                 m_elements[element].valueSize);
    }
    QString textOf(Index element) const;
    std::vector<Index> childrenOf(Index element) const;
    // Returns the first child of a name. Returns None without one.
    Index childOf(Index element, Index name) const;

private:
    using KnownNames = std::unordered_map<const void*, Index>;

    Index add(const Orv::Data::LightElement& element, ElementNames& names, KnownNames& known);
    void close(Index element);

    std::vector<Element> m_elements;
    std::string m_values;
};

} // namespace Ksx::Kit

#include "updating/elementpath.h"

#include <algorithm>

namespace Ksx::Core {

namespace {

using Orv::Data::LightDocument;
using Orv::Data::LightElement;

// The element behind `element` in document order; null behind the last one below `root`.
LightElement nextBelow(const LightElement& root, const LightElement& element)
{
    LightElement next = element.firstChild();
    if (!next.isNull())
        return next;
    for (LightElement at = element; at != root; at = at.parent()) {
        next = at.nextSibling();
        if (!next.isNull())
            return next;
    }
    return {};
}

LightElements childrenOf(const LightElement& parent, std::string_view name)
{
    LightElements children;
    for (LightElement child = parent.firstChild(name); !child.isNull();
         child = child.nextSibling(name))
        children.push_back(child);
    return children;
}

void append(LightElements& elements, const LightElements& more)
{
    elements.insert(elements.end(), more.begin(), more.end());
}

std::vector<std::string_view> partsOf(std::string_view path)
{
    std::vector<std::string_view> parts;
    std::size_t begin = 0;
    while (begin <= path.size()) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        parts.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

} // namespace

ElementIndex::ElementIndex(const LightDocument& document)
{
    const std::vector<std::string_view> names{"function",    "graph",      "graphOutputs",
                                              "graphoutput", "paraminput", "paraminputs",
                                              "resource"};
    for (const std::string_view name : names)
        m_entries.emplace(name, std::vector<Entry>());
    document.visitNamed(names, [this](const LightElement& element, const LightElement& top) {
        m_entries.find(element.name())->second.push_back({element, top});
    });
}

bool ElementIndex::knows(const LightDocument& document, std::string_view name) const
{
    return m_entries.count(name) != 0 && document.areAsRead(name);
}

LightElements ElementIndex::below(std::string_view topName, std::string_view name) const
{
    LightElements found;
    for (const Entry& entry : m_entries.find(name)->second)
        if (entry.top.name() == topName)
            found.push_back(entry.element);
    return found;
}

LightElements descendantsOf(const LightElement& root, std::string_view name)
{
    LightElements found;
    for (LightElement at = nextBelow(root, root); !at.isNull(); at = nextBelow(root, at))
        if (at.name() == name)
            found.push_back(at);
    return found;
}

LightElements elementsAt(const LightDocument& document, std::string_view path,
                         const ElementIndex* index)
{
    const std::vector<std::string_view> parts = partsOf(path);
    const LightElement root = document.root();
    std::size_t part = parts.front().empty() ? 1 : 0;
    if (part < parts.size() && parts[part] == root.name())
        ++part;

    LightElements found{root};
    const bool isIndexed = index != nullptr && parts.size() >= part + 3 && parts[part] != "*" &&
                           parts[part + 1] == "*" && index->knows(document, parts[part + 2]);
    if (isIndexed) {
        found = index->below(parts[part], parts[part + 2]);
        part += 3;
    }
    // All branches take a part at a time, which keeps their order.
    while (part < parts.size()) {
        const bool isAnywhere = parts[part] == "*" && part + 1 < parts.size();
        const bool isAll = parts[part] == "*" && !isAnywhere;
        part += isAnywhere ? 1 : 0;
        const std::string_view name = isAll ? std::string_view() : parts[part];
        LightElements next;
        for (const LightElement& element : found)
            append(next, isAnywhere ? descendantsOf(element, name) : childrenOf(element, name));
        found = std::move(next);
        ++part;
    }
    return found;
}

} // namespace Ksx::Core

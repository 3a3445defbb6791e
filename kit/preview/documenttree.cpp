#include "preview/documenttree.h"

#include "data/filename.h"
#include "data/lightdocument.h"
#include <boost/functional/hash.hpp>
#include <functional>
#include <utility>

namespace Ksx::Kit {

using Orv::Data::LightDocument;
using Orv::Data::LightElement;

std::uint32_t ElementNames::idOf(std::string_view name)
{
    const auto found = m_ids.find(name);
    if (found != m_ids.end())
        return found->second;
    const auto id = static_cast<std::uint32_t>(m_names.size());
    m_ids.emplace(m_names.emplace_back(name), id);
    return id;
}

DocumentTree::DocumentTree(const LightDocument& document, ElementNames& names)
{
    KnownNames known;
    m_elements.reserve(document.nodeCount());
    std::vector<std::pair<LightElement, Index>> open; // from the root on
    LightElement element = document.root();
    while (!element.isNull()) {
        const Index index = add(element, names, known);
        LightElement next = element.firstChild();
        if (next.isNull()) {
            close(index);
            next = element.nextSibling();
        } else {
            open.emplace_back(element, index);
        }
        while (next.isNull() && !open.empty()) {
            close(open.back().second);
            next = open.back().first.nextSibling();
            open.pop_back();
        }
        element = next;
    }
}

// A document holds each name once, so that the place of a name in memory is as good as its text.
DocumentTree::Index DocumentTree::add(const LightElement& element, ElementNames& names,
                                      KnownNames& known)
{
    Element& added = m_elements.emplace_back();
    const std::string_view name = element.name();
    const auto [place, isNew] = known.emplace(name.data(), 0);
    if (isNew)
        place->second = names.idOf(name);
    added.name = place->second;
    added.valueBegin = static_cast<Index>(m_values.size());
    element.appendValue(m_values);
    added.valueSize = static_cast<Index>(m_values.size()) - added.valueBegin;
    return size() - 1;
}

void DocumentTree::close(Index element)
{
    m_elements[element].end = size();
    std::size_t hash = m_elements[element].name;
    boost::hash_combine(hash, std::hash<std::string_view>()(valueOf(element)));
    for (Index child = element + 1; child < size(); child = m_elements[child].end)
        boost::hash_combine(hash, m_elements[child].hash);
    m_elements[element].hash = hash;
}

void DocumentTree::setOrigins()
{
    for (Index element = 0; element < size(); ++element)
        m_elements[element].origin = element;
}

QString DocumentTree::textOf(Index element) const
{
    return Orv::fromBytes(valueOf(element));
}

std::vector<DocumentTree::Index> DocumentTree::childrenOf(Index element) const
{
    std::vector<Index> children;
    for (Index child = element + 1; child < m_elements[element].end; child = m_elements[child].end)
        children.push_back(child);
    return children;
}

DocumentTree::Index DocumentTree::childOf(Index element, Index name) const
{
    for (Index child = element + 1; child < m_elements[element].end; child = m_elements[child].end)
        if (m_elements[child].name == name)
            return child;
    return None;
}

} // namespace Ksx::Kit

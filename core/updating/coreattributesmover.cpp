#include "updating/attributesmover.h"

namespace Ksx::Core {

using Orv::Data::LightDocument;
using Orv::Data::LightElement;

AttributesMover::AttributesMover(LightDocument& document, std::string_view anchor)
    : m_document(document), m_anchor(anchor)
{}

void AttributesMover::move(LightElement leaf, std::string_view target)
{
    if (!leaf.value().isEmpty())
        member(attributesBeside(leaf), target).shareValue(leaf);
    leaf.remove();
}

LightElement AttributesMover::attributesBeside(const LightElement& leaf)
{
    LightElement parent = leaf.parent();
    if (parent == m_parent)
        return m_attributes;
    m_parent = parent;
    m_member = LightElement();
    m_attributes = parent.firstChild("attributes");
    if (!m_attributes.isNull())
        return m_attributes;
    m_attributes = m_document.makeElement("attributes");
    const LightElement anchor = m_anchor.empty() ? leaf : parent.firstChild(m_anchor);
    if (anchor.isNull())
        parent.append(m_attributes);
    else
        parent.insertBehind(anchor, m_attributes);
    return m_attributes;
}

LightElement AttributesMover::member(LightElement attributes, std::string_view name)
{
    if (!m_member.isNull() && m_member.name() == name)
        return m_member;
    m_member = attributes.firstChild(name);
    if (m_member.isNull()) {
        m_member = m_document.makeElement(name);
        attributes.append(m_member);
    }
    return m_member;
}

} // namespace Ksx::Core

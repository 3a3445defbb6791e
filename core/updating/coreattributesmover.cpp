#include "updating/attributesmover.h"

#include <QDomDocument>

namespace Ksx::Core {

AttributesMover::AttributesMover(QDomDocument& document, const QString& anchor)
    : m_document(document), m_anchor(anchor)
{}

void AttributesMover::move(QDomElement leaf, const QString& target)
{
    const QString text = leaf.attribute(QStringLiteral("v"));
    QDomNode parent = leaf.parentNode();
    if (!text.isEmpty())
        member(attributesBeside(leaf), target).setAttribute(QStringLiteral("v"), text);
    parent.removeChild(leaf);
}

QDomElement AttributesMover::attributesBeside(const QDomElement& leaf)
{
    QDomElement parent = leaf.parentNode().toElement();
    if (parent == m_parent)
        return m_attributes;
    m_parent = parent;
    m_member = QDomElement();
    m_attributes = parent.firstChildElement(QStringLiteral("attributes"));
    if (!m_attributes.isNull())
        return m_attributes;
    m_attributes = m_document.createElement(QStringLiteral("attributes"));
    const QDomElement anchor = m_anchor.isEmpty() ? leaf : parent.firstChildElement(m_anchor);
    if (anchor.isNull())
        parent.appendChild(m_attributes);
    else
        parent.insertAfter(m_attributes, anchor);
    return m_attributes;
}

QDomElement AttributesMover::member(QDomElement attributes, const QString& name)
{
    if (!m_member.isNull() && m_member.tagName() == name)
        return m_member;
    m_member = attributes.firstChildElement(name);
    if (m_member.isNull()) {
        m_member = m_document.createElement(name);
        attributes.appendChild(m_member);
    }
    return m_member;
}

} // namespace Ksx::Core

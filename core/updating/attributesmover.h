// Moving texts of old files into `attributes` elements.
#pragma once

#include <QDomElement>
#include <QString>

class QDomDocument;

namespace Ksx::Core {

// Moves leaves into the first `attributes` among their siblings, which is made where it is missing.
// Serves one run over a document, during which nobody else changes the elements it has met. Leaves
// of one parent come one behind the other, lest the parent be searched for each of them.
class AttributesMover
{
public:
    // `document` outlives the mover. New `attributes` stand behind the first sibling `anchor`, at
    // the end where there is none, and behind the leaf itself if `anchor` is empty.
    AttributesMover(QDomDocument& document, const QString& anchor);

    // Takes the leaf away. Its text, unless it is empty, becomes that of the member `target`.
    void move(QDomElement leaf, const QString& target);

private:
    QDomElement attributesBeside(const QDomElement& leaf);
    QDomElement member(QDomElement attributes, const QString& name);

    QDomDocument& m_document;
    QString m_anchor;
    QDomElement m_parent; // of the last leaf, and what stands there
    QDomElement m_attributes;
    QDomElement m_member;
};

} // namespace Ksx::Core

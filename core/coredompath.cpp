#include "ksx/core/dompath.h"

#include <QDomDocument>
#include <QStringList>

namespace Ksx::Core {

namespace {

// The node behind `node` in document order; null behind the last one below `root`. Goes by nodes and
// not by elements, of which Qt makes several copies per step.
QDomNode nextBelow(const QDomNode& root, const QDomNode& node)
{
    QDomNode next = node.firstChild();
    if (!next.isNull())
        return next;
    for (QDomNode at = node; at != root; at = at.parentNode()) {
        next = at.nextSibling();
        if (!next.isNull())
            return next;
    }
    return {};
}

DomElements childrenOf(const QDomElement& parent, const QString& name)
{
    DomElements children;
    for (QDomElement child = parent.firstChildElement(name); !child.isNull();
         child = child.nextSiblingElement(name))
        children.push_back(child);
    return children;
}

} // namespace

DomElements descendantsOf(const QDomElement& root, const QString& name)
{
    DomElements found;
    for (QDomNode at = nextBelow(root, root); !at.isNull(); at = nextBelow(root, at))
        if (at.nodeName() == name && at.isElement())
            found.push_back(at.toElement());
    return found;
}

DomElements elementsAt(const QDomDocument& document, const QString& path)
{
    QStringList parts = path.split(QLatin1Char('/'));
    if (parts.first().isEmpty())
        parts.removeFirst();
    const QDomElement root = document.documentElement();
    if (!parts.isEmpty() && parts.first() == root.tagName())
        parts.removeFirst();

    // All branches take a part at a time, which keeps their order.
    DomElements found{root};
    while (!parts.isEmpty()) {
        QString name = parts.takeFirst();
        const bool isDeep = name == QLatin1String("*");
        if (isDeep)
            name = parts.isEmpty() ? QString() : parts.takeFirst();
        const bool isLast = isDeep && name.isNull();
        DomElements next;
        for (const QDomElement& element : found) {
            const DomElements matches =
                isDeep && !isLast ? descendantsOf(element, name) : childrenOf(element, name);
            next.insert(next.end(), matches.begin(), matches.end());
        }
        found = std::move(next);
    }
    return found;
}

} // namespace Ksx::Core

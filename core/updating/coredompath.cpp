#include "updating/dompath.h"

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

DomIndex::DomIndex()
{
    for (const char* name : {"function", "graph", "graphOutputs", "graphoutput", "paraminput",
                             "paraminputs", "resource"})
        m_entries.insert(QLatin1String(name), {});
}

void DomIndex::note(const QString& name, const QDomElement& element, const QDomElement& top)
{
    const auto entries = m_entries.find(name);
    if (entries != m_entries.end())
        entries->push_back({element, top});
}

DomElements DomIndex::below(const QString& topName, const QString& name) const
{
    DomElements found;
    for (const Entry& entry : *m_entries.find(name))
        if (entry.top.tagName() == topName)
            found.push_back(entry.element);
    return found;
}

DomElements descendantsOf(const QDomElement& root, const QString& name)
{
    DomElements found;
    for (QDomNode at = nextBelow(root, root); !at.isNull(); at = nextBelow(root, at))
        if (at.nodeName() == name && at.isElement())
            found.push_back(at.toElement());
    return found;
}

DomElements elementsAt(const QDomDocument& document, const QString& path, const DomIndex* index)
{
    QStringList parts = path.split(QLatin1Char('/'));
    if (parts.first().isEmpty())
        parts.removeFirst();
    const QDomElement root = document.documentElement();
    if (!parts.isEmpty() && parts.first() == root.tagName())
        parts.removeFirst();

    DomElements found{root};
    const bool isIndexed = index != nullptr && parts.size() >= 3 && parts[0] != "*" &&
                           parts[1] == "*" && index->knows(parts[2]);
    if (isIndexed) {
        found = index->below(parts[0], parts[2]);
        parts = parts.mid(3);
    }
    // All branches take a part at a time, which keeps their order.
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

#include "updating/oblformatupdater5356.h"

#include "updating/dompath.h"
#include <QDomDocument>

namespace Ksx::Core {

namespace {

QDomElement leaf(QDomDocument& document, const QString& name, const QString& value)
{
    QDomElement element = document.createElement(name);
    element.setAttribute(QStringLiteral("v"), value);
    return element;
}

QString identifierOf(const QDomElement& element)
{
    return element.firstChildElement(QStringLiteral("identifier")).attribute(QStringLiteral("v"));
}

QDomElement findGroup(const QDomElement& content, const QString& identifier)
{
    QDomElement group = content.firstChildElement(QStringLiteral("group"));
    while (!group.isNull() && identifierOf(group) != identifier)
        group = group.nextSiblingElement(QStringLiteral("group"));
    return group;
}

// Its uid collides with nothing: it is the first group of that name.
QDomElement appendGroup(QDomDocument& document, QDomElement content, const QString& identifier)
{
    QDomElement group = document.createElement(QStringLiteral("group"));
    group.appendChild(leaf(document, QStringLiteral("uid"), QStringLiteral("1")));
    group.appendChild(leaf(document, QStringLiteral("identifier"), identifier));
    content.appendChild(group);
    return group;
}

QDomElement contentOf(QDomDocument& document, QDomElement group)
{
    QDomElement content = group.firstChildElement(QStringLiteral("content"));
    if (content.isNull()) {
        content = document.createElement(QStringLiteral("content"));
        group.appendChild(content);
    }
    return content;
}

DomElements childrenBut(const QDomElement& parent, const QDomElement& exception)
{
    DomElements children;
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement())
        if (child != exception)
            children.push_back(child);
    return children;
}

} // namespace

// Files before build 5356 had their objects in the package itself. They move to the end of the
// first group that is named like the package, which is made if there is none.
//   <identifier v="Wood"/> ... <content><graph>...</graph></content>
// becomes
//   <identifier v="Wood"/> ... <content><group>
//     <uid v="1"/><identifier v="Wood"/><content><graph>...</graph></content>
//   </group></content>
// Fails for a package without a name. An empty `content` stays empty.
OBLFormatUpdater::Elements OBLFormatUpdater5356::find(const QDomDocument& document,
                                                      const DomIndex&) const
{
    const QDomElement package = document.firstChildElement(QStringLiteral("package"));
    return package.isNull() ? Elements() : Elements{package};
}

std::optional<int> OBLFormatUpdater5356::change(QDomDocument& document, const Elements& found) const
{
    const QString identifier = found.empty() ? QString() : identifierOf(found.front());
    if (identifier.isEmpty())
        return std::nullopt;
    const QDomElement content = found.front().firstChildElement(QStringLiteral("content"));
    QDomElement group = findGroup(content, identifier);
    const DomElements children = childrenBut(content, group);
    if (children.empty())
        return 0;
    if (group.isNull())
        group = appendGroup(document, content, identifier);
    QDomElement target = contentOf(document, group);
    for (const QDomElement& child : children)
        target.appendChild(child);
    return static_cast<int>(children.size());
}

} // namespace Ksx::Core

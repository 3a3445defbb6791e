#include "updating/oblformatupdater5356.h"

#include "updating/elementpath.h"

namespace Ksx::Core {

namespace {

using Orv::Data::LightDocument;
using Orv::Data::LightElement;

QString identifierOf(const LightElement& element)
{
    return element.firstChild("identifier").value();
}

LightElement findGroup(const LightElement& content, const QString& identifier)
{
    LightElement group = content.firstChild("group");
    while (!group.isNull() && identifierOf(group) != identifier)
        group = group.nextSibling("group");
    return group;
}

// Its uid collides with nothing: it is the first group of that name.
LightElement appendGroup(LightDocument& document, LightElement content, const QString& identifier)
{
    LightElement group = document.makeElement("group");
    group.append(document.makeLeaf("uid", QStringLiteral("1")));
    group.append(document.makeLeaf("identifier", identifier));
    content.append(group);
    return group;
}

LightElement contentOf(LightDocument& document, LightElement group)
{
    LightElement content = group.firstChild("content");
    if (content.isNull()) {
        content = document.makeElement("content");
        group.append(content);
    }
    return content;
}

int countChildrenBut(const LightElement& parent, const LightElement& exception)
{
    int count = 0;
    for (LightElement child = parent.firstChild(); !child.isNull(); child = child.nextSibling())
        count += child != exception ? 1 : 0;
    return count;
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
OBLFormatUpdater::Elements OBLFormatUpdater5356::find(const Document& document,
                                                      const ElementIndex&) const
{
    const Element package = document.root();
    return package.name() == "package" ? Elements{package} : Elements();
}

std::optional<int> OBLFormatUpdater5356::change(Document& document, const Elements& found) const
{
    const QString identifier = found.empty() ? QString() : identifierOf(found.front());
    if (identifier.isEmpty())
        return std::nullopt;
    const Element content = found.front().firstChild("content");
    Element group = findGroup(content, identifier);
    const int count = countChildrenBut(content, group);
    if (count == 0)
        return 0;
    if (group.isNull())
        group = appendGroup(document, content, identifier);
    contentOf(document, group).takeElements(content, group);
    return count;
}

} // namespace Ksx::Core

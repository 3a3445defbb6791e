// Finding elements of a DOM document.
#pragma once

#include <QDomElement>
#include <QString>
#include <vector>

namespace Ksx::Core {

// Elements keep their identity when they are moved, and these lists do not change with the
// document, as the live lists of QDomNode do.
using DomElements = std::vector<QDomElement>;

// All elements of that name below `root`, which is not among them, in document order. Takes time
// in the size of `root` and no stack in its depth.
DomElements descendantsOf(const QDomElement& root, const QString& name);

// The elements at a path such as "/package/content/*/graph/desc", which begins at the document
// element: "*/graph" leads to every `graph` below, at any depth; "*" at the end to all children;
// any other part to the children of that name.
DomElements elementsAt(const QDomDocument& document, const QString& path);

} // namespace Ksx::Core

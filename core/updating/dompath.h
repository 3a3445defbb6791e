// Finding elements of a DOM document.
#pragma once

#include <QDomElement>
#include <QHash>
#include <QString>
#include <vector>

namespace Ksx::Core {

// Elements keep their identity when they are moved, and these lists do not change with the
// document, as the live lists of QDomNode do.
using DomElements = std::vector<QDomElement>;

// Where the elements of certain names stand, noted while their document was parsed: the steps of an
// update search the same large document many times. A step that makes, renames or moves elements of
// those names ends the use of the index.
class DomIndex
{
public:
    // Of the names that the steps search at any depth.
    DomIndex();

    // To be called in document order. `top` is the child of the document element above `element`.
    void note(const QString& name, const QDomElement& element, const QDomElement& top);
    bool knows(const QString& name) const { return m_entries.contains(name); }
    // The elements of a known name below the children of the document element that are named
    // `topName`, in document order.
    DomElements below(const QString& topName, const QString& name) const;

private:
    struct Entry
    {
        QDomElement element;
        QDomElement top;
    };
    QHash<QString, std::vector<Entry>> m_entries;
};

// All elements of that name below `root`, which is not among them, in document order. Takes time
// in the size of `root` and no stack in its depth.
DomElements descendantsOf(const QDomElement& root, const QString& name);

// The elements at a path such as "/package/content/*/graph/desc", which begins at the document
// element: "*/graph" leads to every `graph` below, at any depth; "*" at the end to all children;
// any other part to the children of that name.
// An index, if there is one, saves the walk that "*" is otherwise.
DomElements elementsAt(const QDomDocument& document, const QString& path,
                       const DomIndex* index = nullptr);

} // namespace Ksx::Core

// Finding elements of a document.
#pragma once

#include "data/lightdocument.h"
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Ksx::Core {

using Orv::Data::LightElements;

// Where the elements of certain names are, noted when their document has been read: the steps of an
// update search the same large document many times. A name is known as long as no step makes, renames,
// removes or moves elements of it.
class ElementIndex
{
public:
    ElementIndex() = default; // knows no name
    // Of the names that the steps search at any depth.
    explicit ElementIndex(const Orv::Data::LightDocument& document);

    // `document` is the one that the index was made of.
    bool knows(const Orv::Data::LightDocument& document, std::string_view name) const;
    // The elements of a known name below the children of the document element that are named
    // `topName`, in document order.
    LightElements below(std::string_view topName, std::string_view name) const;

private:
    struct Entry
    {
        Orv::Data::LightElement element;
        Orv::Data::LightElement top; // the child of the document element above it
    };
    std::map<std::string, std::vector<Entry>, std::less<>> m_entries;
};

// All elements of that name below `root`, which is not among them, in document order. Takes time
// in the size of `root` and no stack in its depth.
LightElements descendantsOf(const Orv::Data::LightElement& root, std::string_view name);

// The elements at a path such as "/package/content/*/graph/desc", which begins at the document
// element: "*/graph" leads to every `graph` below, at any depth; "*" at the end to all children;
// any other part to the children of that name.
// An index, if there is one, saves the walk that "*" is otherwise.
LightElements elementsAt(const Orv::Data::LightDocument& document, std::string_view path,
                         const ElementIndex* index = nullptr);

} // namespace Ksx::Core

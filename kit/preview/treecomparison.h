// Compares two states of a document.
#pragma once

#include "ksx/kit/preview.h"
#include "preview/documenttree.h"
#include <vector>

namespace Ksx::Kit {

// A change, and the number in the file of the element that it is about.
struct TreeChange
{
    ElementChange change;
    DocumentTree::Index origin = DocumentTree::None;
};

// Returns the changes that lead from one tree to another, in the order of `after`. Gives the elements
// of `after` the origins of the elements that they were before.
//
// Children of an element are matched by equality, by a uid or a name in them, and by their order. An
// element with others in it that is gone and comes back elsewhere has moved. The time grows with the
// number of elements: equal parts are passed over by their hashes.
std::vector<TreeChange> compareTrees(const DocumentTree& before, DocumentTree& after,
                                     ElementNames& names);

} // namespace Ksx::Kit

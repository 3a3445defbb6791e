// Lists the file references and the texts of a package.
#pragma once

#include "data/attribute.h"
#include <functional>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// A text of a document. Writing to it directly is for packages that are not attached; see
// ManipulatorAttribute.
using TextAttribute = Orv::Data::Attribute<Orv::Data::Text>;

// Returns every text of the package that is declared a file path, in the order of the document.
// These are the file names of dependencies and of resources. The package may be attached or not.
std::vector<TextAttribute*> fileReferencesOf(Data::Content::Package& package);
// Returns the same for reading.
std::vector<const TextAttribute*> fileReferencesOf(const Data::Content::Package& package);

// Calls `visit` for every text of the package, in the order of the document. It takes a walk over
// the whole tree. `visit` may change the text, and must not change the tree in other ways.
void visitTexts(Data::Content::Package& package, const std::function<void(TextAttribute&)>& visit);
// Does the same for reading.
void visitTexts(const Data::Content::Package& package,
                const std::function<void(const TextAttribute&)>& visit);

} // namespace Ksx::Core

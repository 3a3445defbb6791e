// The file references and texts of a package.
#pragma once

#include "data/attribute.h"
#include <functional>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

using TextAttribute = Orv::Data::Attribute<Orv::Data::Text>;

// Every text leaf that is declared a file path, in document order.
std::vector<TextAttribute*> fileReferencesOf(Data::Content::Package& package);
std::vector<const TextAttribute*> fileReferencesOf(const Data::Content::Package& package);

// Calls `visit` for every text leaf of the package, in document order.
void visitTexts(Data::Content::Package& package, const std::function<void(TextAttribute&)>& visit);

} // namespace Ksx::Core

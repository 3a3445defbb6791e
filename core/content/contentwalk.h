// The objects that stand in the content lists of a package.
#pragma once

#include "data/containerlist.h"
#include "data/content/contentobjectbase.h"
#include <functional>
#include <string>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The content list of a package, a group or a graph; null for any other object.
const Orv::Data::ContainerList<Data::Content::ContentObjectBase>*
contentOf(const Orv::Data::BaseObject& object);

// Returns the first item of that list with the identifier. Returns null if there is none.
const Data::Content::ContentObjectBase* findContent(const Orv::Data::BaseObject& owner,
                                                    const std::string& identifier);

// Calls `visit` for every object of the package's content and of the content in it, owners first,
// in document order. Nothing else is looked at, so this is far cheaper than a walk over the tree.
void visitContent(const Data::Content::Package& package,
                  const std::function<void(const Data::Content::ContentObjectBase&)>& visit);
void visitContent(Data::Content::Package& package,
                  const std::function<void(Data::Content::ContentObjectBase&)>& visit);

} // namespace Ksx::Core

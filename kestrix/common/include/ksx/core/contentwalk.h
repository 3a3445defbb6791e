// Goes over the objects in the content lists of a package.
#pragma once

#include "data/containerlist.h"
#include "data/content/contentobjectbase.h"
#include <functional>
#include <string>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Returns the content list of a package, a group or a graph. Returns null for any other object.
const Orv::Data::ContainerList<Data::Content::ContentObjectBase>*
contentOf(const Orv::Data::BaseObject& object);

// Returns the first item of that list with the identifier. Returns null if there is none. Main thread
// for an object that is part of a document.
const Data::Content::ContentObjectBase* findContent(const Orv::Data::BaseObject& owner,
                                                    const std::string& identifier);

// Calls `visit` for every object of the content of a package and of the content in it, owners first,
// in the order of the document. Looks at nothing else, so it costs far less than a walk over the tree.
// Depth costs memory and no stack. `visit` must not change the lists.
void visitContent(const Data::Content::Package& package,
                  const std::function<void(const Data::Content::ContentObjectBase&)>& visit);
// Does the same for writing. The package must not be part of a document.
void visitContent(Data::Content::Package& package,
                  const std::function<void(Data::Content::ContentObjectBase&)>& visit);

} // namespace Ksx::Core

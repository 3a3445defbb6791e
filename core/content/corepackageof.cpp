#include "content/packageof.h"

#include "data/content/package.h"

namespace Ksx::Core {

const Data::Content::Package* packageOf(const Orv::Data::BaseObject& object)
{
    for (const Orv::Data::BaseObject* at = &object; at != nullptr; at = at->getParent())
        if (const auto* package = dynamic_cast<const Data::Content::Package*>(at))
            return package;
    return nullptr;
}

} // namespace Ksx::Core

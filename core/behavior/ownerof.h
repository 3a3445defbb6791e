// From a place in a document up to the object of a class in which it lies.
#pragma once

#include "data/baseobject.h"

namespace Ksx::Core::Behavior {

// The object itself or the innermost one above it that is declared as a T; null if there is none.
template <class T>
const T* ownerOf(const Orv::Data::BaseObject& object)
{
    for (const Orv::Data::BaseObject* at = &object; at != nullptr; at = at->getParent())
        if (&at->getMeta() == &T::MetaTag::record)
            return static_cast<const T*>(at);
    return nullptr;
}

} // namespace Ksx::Core::Behavior

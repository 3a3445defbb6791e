// Listeners that are found through the object that they stand on.
#pragma once

#include "data/shadowobject.h"
#include "ksx/core/edit.h"
#include <memory>

namespace Ksx::Core {

// The listener of class L on a live object, made by L(object) if there is none. L is owned by the
// shadow, so that it dies with the object, or when the object is taken out for good.
template <class L, class T>
L& listenerOf(const T& object)
{
    if (const Orv::Data::ShadowObject* shadow = object.shadow())
        if (auto* found = shadow->template findListener<L>())
            return *found;
    auto made = std::make_unique<L>(object);
    listenTo(object, *made);
    return *made.release(); // the shadow owns it now
}

} // namespace Ksx::Core

// Listeners that the shadows of their objects own.
#pragma once

#include "data/shadowobject.h"
#include "ksx/core/edit.h"
#include <QtGlobal>
#include <initializer_list>
#include <memory>

namespace Ksx::Core {

// Attaches a listener to live objects, whose shadows own it from now on. The first of the shadows
// that dies deletes it.
template <class L, class Places = std::initializer_list<const Orv::Data::BaseObject*>>
L& giveToShadows(std::unique_ptr<L> listener, const Places& places)
{
    Q_ASSERT(listener->isOwnedByShadow());
    for (const Orv::Data::BaseObject* place : places)
        listenTo(*place, *listener);
    return *listener.release();
}

// The listener of class L on a live object, made by L(object) if there is none. L is owned by the
// shadow, so that it dies with the object, or when the object is taken out for good.
template <class L, class T>
L& listenerOf(const T& object)
{
    if (const Orv::Data::ShadowObject* shadow = object.shadow())
        if (auto* found = shadow->template findListener<L>())
            return *found;
    return giveToShadows(std::make_unique<L>(object), {&object});
}

} // namespace Ksx::Core

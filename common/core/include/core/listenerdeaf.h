// A listener that hears nothing.
#pragma once

#include "core/listenersimple.h"
#include "data/datamessage.h"

namespace Orv::Core {

// For what only needs a place on the shadow: an object that lives and dies with a document object
// and is found through it (ShadowObject::findListener). Accepts no event at all.
template <class Base = Data::ListenerBase>
class ListenerDeaf : public ListenerSimple<0, 0, 0, Base>
{
public:
    using ListenerSimple<0, 0, 0, Base>::ListenerSimple;

    void deliver(const Data::DataMessage&) override {}
};

} // namespace Orv::Core

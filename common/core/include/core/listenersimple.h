// A listener whose priority and filter are known at compile time.
#pragma once

#include "data/listenerbase.h"
#include "data/objectmeta.h"
#include <cstdint>

namespace Orv::Core {

// Leaves deliver() to the class that derives from it. Takes nothing out of the event's member mask,
// so the ancestors hear of the change too. `Base` is ListenerBase or a class derived from it.
template <std::uint16_t Priority, std::uint32_t TypeMask,
          std::uint32_t MemberMask = Data::MessageMask::All, class Base = Data::ListenerBase>
class ListenerSimple : public Base
{
public:
    using Base::Base;

    std::uint16_t getPriority() const override { return Priority; }
    const Data::ListenerFilter& getFilter() const override { return Filter; }

private:
    static constexpr Data::ListenerFilter Filter{TypeMask, MemberMask, 0};
};

} // namespace Orv::Core

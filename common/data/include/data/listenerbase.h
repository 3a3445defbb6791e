// What can be attached to a document object to hear of its changes.
#pragma once

#include "data/changeevent.h"
#include "data/datamessage.h"
#include "data/securedobject.h"
#include <cstdint>

namespace Orv::Data {

// Which events a listener accepts.
struct ListenerFilter
{
    std::uint32_t typeMask;    // ChangeType bits, one of which must be in the event
    std::uint32_t memberMask;  // one bit of which must be in the event's member mask
    std::uint32_t consumeMask; // taken out of the event's member mask for the ancestors
};

// The priority that is served before all others; for listeners that others depend upon.
constexpr std::uint16_t FirstPriority = 0xFFFF;

// A listener hears of its object's changes at the end of the context that made them, merged into
// one message. It may be called several times in one change, since other listeners edit too, and
// must come to rest: when nothing is left to do it writes nothing. Priorities are served in the
// order 0xFFFF, 0x8000 to 0xFFFE, 0 to 0x7FFF.
class ListenerBase : public SecuredObject
{
public:
    // True: the shadow of the object deletes the listener when it dies.
    virtual bool isOwnedByShadow() const { return false; }
    virtual std::uint16_t getPriority() const = 0;
    virtual const ListenerFilter& getFilter() const = 0;
    // Does the event concern this listener? Takes the consumed bits out of its member mask.
    virtual bool accept(ChangeEvent& event) const;
    virtual void deliver(const DataMessage& message) = 0;
};

} // namespace Orv::Data

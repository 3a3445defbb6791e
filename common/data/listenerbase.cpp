#include "data/listenerbase.h"

namespace Orv::Data {

bool ListenerBase::accept(ChangeEvent& event) const
{
    const ListenerFilter& filter = getFilter();
    if ((event.type & filter.typeMask) == 0 || (event.memberMask & filter.memberMask) == 0)
        return false;
    event.memberMask &= ~filter.consumeMask;
    return true;
}

void DataMessage::merge(std::uint32_t eventType, const ChangeRuns& eventRuns)
{
    type |= eventType;
    if ((type & ChangeType::Removed) != 0)
        type = ChangeType::Removed;
    runs.mergeRuns(eventRuns);
}

} // namespace Orv::Data

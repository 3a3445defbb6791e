#include "data/listenerbase.h"

#include "data/baseobject.h"

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

void DataMessage::merge(const DataMessage& other)
{
    merge(other.type, other.runs);
    touched.insert(touched.end(), other.touched.begin(), other.touched.end());
}

void DataMessage::touch(const ChildrenSpan& children)
{
    for (const BaseObject* child : children)
        if (touched.empty() || touched.back().address != child)
            touched.push_back({child, DataPointerBox<BaseObject>(child)});
}

} // namespace Orv::Data

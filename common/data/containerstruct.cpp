#include "data/containerstruct.h"

namespace Orv::Data {

bool ContainerStructBase::isModified() const
{
    const MemberSpan span = members();
    for (std::size_t i = 0; i < span.count; ++i)
        if (span.object(i)->isModified())
            return true;
    return false;
}

} // namespace Orv::Data

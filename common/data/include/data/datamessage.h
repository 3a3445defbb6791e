// What a listener is told: everything that happened to its object since the last time.
#pragma once

#include "data/changeruns.h"
#include "data/datapointerbox.h"
#include <cstdint>

namespace Orv::Data {

class BaseObject;
class ManipulatorContextBase;

struct DataMessage
{
    DataPointerBox<BaseObject> object;              // where the listener is attached
    DataPointerBox<ManipulatorContextBase> context; // the context of the change: a listener may
                                                    // edit further through it
    std::uint32_t type = 0;                         // ChangeType bits; Removed stands alone
    ChangeRuns runs;                                // of a list or union, else empty

    // Adds an event: types are joined, runs replayed. Removed overrides all the others.
    void merge(std::uint32_t eventType, const ChangeRuns& eventRuns);
};

} // namespace Orv::Data

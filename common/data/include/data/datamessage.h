// The news of a listener: everything that happened to its object since the last time.
#pragma once

#include "data/changeruns.h"
#include "data/datapointerbox.h"
#include <cstdint>
#include <vector>

namespace Orv::Data {

class BaseObject;
class ManipulatorContextBase;
struct ChildrenSpan;

// A child with which something happened. It may have left, and may have died since.
struct TouchedChild
{
    const BaseObject* address; // for comparison alone
    DataPointerBox<BaseObject> object;
};

struct DataMessage
{
    DataPointerBox<BaseObject> object;              // where the listener is attached
    DataPointerBox<ManipulatorContextBase> context; // the context of the change: a listener may
                                                    // edit further through it
    std::uint32_t type = 0;                         // ChangeType bits; Removed comes alone
    ChangeRuns runs;                                // of a list or union, else empty
    // The items of a list that came, went or were moved, and all children in which something
    // changed: each once at least, so that an index can follow without a look at the others.
    std::vector<TouchedChild> touched;

    // Adds an event: types are joined, runs replayed. Removed overrides all the others.
    void merge(std::uint32_t eventType, const ChangeRuns& eventRuns);
    void merge(const DataMessage& other);
    void touch(const ChildrenSpan& children);
};

} // namespace Orv::Data

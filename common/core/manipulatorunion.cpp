#include "core/manipulatorunion.h"

#include "core/historyscratch.h"
#include "data/changeevent.h"

namespace Orv::Core {

using Data::ChangeRuns;
using Data::ChangeType;

void ManipulatorUnionBase::set(std::unique_ptr<Data::BaseObject> child)
{
    auto& target = static_cast<Data::ContainerUnionBase&>(object());
    if (child == nullptr && target.isEmpty())
        return;
    ChangeRuns runs;
    std::uint32_t type = 0;
    if (!target.isEmpty()) {
        runs.eraseRun(0, 1);
        type |= ChangeType::Erased;
        notifyRemoved(*target.get());
    }
    scratch().addUnion(*this, target.takeOwned());
    if (child != nullptr) {
        runs.insertRun(0, 1);
        type |= ChangeType::Inserted;
        target.set(std::move(child));
        noteInserted(*target.get());
    }
    notify(type, runs);
}

} // namespace Orv::Core

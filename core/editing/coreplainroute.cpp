#include "ksx/core/plainroute.h"

#include "core/commanddatamodification.h"

namespace Ksx::Core {

bool editPlainly(const std::function<bool(Orv::Core::ManipulatorContext&)>& edit)
{
    return Orv::Core::CommandDataModification(edit, {}).execute();
}

} // namespace Ksx::Core

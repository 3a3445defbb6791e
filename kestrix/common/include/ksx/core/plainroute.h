// Edits that are not offered for undoing.
#pragma once

#include <functional>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Core {

// Runs the edit in a context of its own, past the command manager: for documents that are not
// attached, and for what a user did not ask for. False if the edit was refused and rolled back.
bool editPlainly(const std::function<bool(Orv::Core::ManipulatorContext&)>& edit);

} // namespace Ksx::Core

// Edits that are not offered for undoing.
#pragma once

#include <functional>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Core {

// Runs the edit in a context of its own, past the command manager. For documents that are not
// attached, and for changes that a user did not ask for. Listeners hear of it like of any other
// edit. Returns false if `edit` returned false; all changes are rolled back then. Passes on
// exceptions. Main thread.
bool editPlainly(const std::function<bool(Orv::Core::ManipulatorContext&)>& edit);

} // namespace Ksx::Core

// The behaviours that every document of packages has.
#pragma once

#include <cstdint>

namespace Ksx::Core {

class DataNotifier;
class DependenciesDictionary;

namespace Behavior {

// Behaviours change documents, so they come before all that only shows them.
constexpr std::uint16_t Priority = 0x8001;

// Adds one entry for each behaviour. The dictionary outlives the documents that are edited.
void addBehaviors(DataNotifier& notifier, DependenciesDictionary& dictionary);

} // namespace Behavior
} // namespace Ksx::Core

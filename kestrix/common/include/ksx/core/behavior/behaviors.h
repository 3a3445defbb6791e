// The behaviours that every document of packages has.
#pragma once

namespace Ksx::Core {

class DataNotifier;
class DependenciesDictionary;

namespace Behavior {

// Adds one entry for each behaviour. The dictionary outlives the documents that are edited.
void addBehaviors(DataNotifier& notifier, DependenciesDictionary& dictionary);

} // namespace Behavior
} // namespace Ksx::Core

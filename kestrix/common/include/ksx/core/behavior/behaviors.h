// The behaviours that keep the documents of packages consistent.
#pragma once

namespace Ksx::Core {

class DataNotifier;
class DependenciesDictionary;

namespace Behavior {

// Adds one entry to the notifier for each behaviour. Called once for a notifier, before documents
// are edited.
//
// The behaviours react to edits and repair no file. Instances follow the inputs and outputs of
// their graphs and functions. A function has the type of its result. Each output has its root
// output. The primary input is an image. A reference to another open package makes the dependency
// element that it needs, and notes its user in the dictionary.
//
// Changes of behaviours are part of the edit that caused them, and are undone with it. The
// dictionary must outlive the documents that are edited. Main thread.
void addBehaviors(DataNotifier& notifier, DependenciesDictionary& dictionary);

} // namespace Behavior
} // namespace Ksx::Core

// Gives objects of open packages other identifiers, and makes all references follow.
#pragma once

#include <string>

namespace Ksx::Data::Content {
class ContentObjectBase;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class InputController;
class OutputController;

// The three functions have the following in common. The identifier is brought into legal form and
// gets a number if it is taken. One undoable command writes it together with all references. Nothing
// happens for the present identifier. Returns false and changes nothing if the object has died or is
// part of no open package. Returns false also for a text of which nothing is legal. Main thread.

// Renames an input of a graph. Functions in the graph that read the input read it by its new name.
// Instances of the graph follow by a behaviour. If an earlier input has the same identifier, the
// functions mean that one and are left alone.
bool renameInput(const InputController& input, const std::string& identifier);

// Renames an output of a graph. Instances of the graph follow by a behaviour.
bool renameOutput(const OutputController& output, const std::string& identifier);

// Renames a graph, function, resource or group. Data paths to it, and to objects inside it, follow
// in all open packages. Returns false for an object without an identifier.
bool renameContent(const Data::Content::ContentObjectBase& object, const std::string& identifier);

} // namespace Ksx::Core

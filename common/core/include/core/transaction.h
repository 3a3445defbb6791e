// Marks several commands as one edit of a user.
#pragma once

#include <QString>

namespace Orv::Core {

// Begins a group that a user is not offered to undo. Runs one BeginGroupCommand on the command
// manager of the process. Without a manager it warns and does nothing, here and in the two
// functions below.
void beginTransaction();
// Begins a group that a user can undo as one. `name` is its text for users.
void beginUndoableTransaction(const QString& name);
// Ends the group that was begun last.
void commitTransaction();

} // namespace Orv::Core

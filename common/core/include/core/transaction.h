// Marks that several commands are one edit to a user.
#pragma once

#include <QString>

namespace Orv::Core {

// Each runs one group command on the process's command manager. Without a manager they warn and do
// nothing; the commands between them still run.
void beginTransaction(); // not to be undone
void beginUndoableTransaction(const QString& name);
void commitTransaction();

} // namespace Orv::Core

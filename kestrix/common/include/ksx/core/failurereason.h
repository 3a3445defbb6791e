// Why a file could not be opened, in words.
#pragma once

#include <QString>

namespace Ksx::Core {

// Returns a sentence without a full stop for users, in English. `filename` is the file that could
// not be opened, and `error` the text of the error in the report of its opening, which programs know
// it by. May be empty if there was no report. May be called in any thread.
QString failureReason(const QString& filename, const QString& error);

} // namespace Ksx::Core

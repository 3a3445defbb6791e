// Whether a package is current and sound.
#pragma once

#include "ksx/kit/finding.h"
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// Checks a package. Opens the dependencies that it has paths into. An old package is checked as an
// update would leave it, but for its elements. A package whose bytes are damaged is a finding.
// "obl://" names lead into the first of `presetsPaths`, and into the current folder if there is
// none.
//
// Returns no more than a hundred findings of a kind, and behind them one that counts the others.
// Returns none for a file that cannot be read at all, with a sentence in `reason`. Several threads
// may check at a time as tasks of one OrderedTasks.
std::optional<std::vector<Finding>> checkPackage(const QString& file,
                                                 const QStringList& presetsPaths, QString& reason);

} // namespace Ksx::Kit

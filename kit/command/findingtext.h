// The findings of a check as text for people.
#pragma once

#include "ksx/kit/finding.h"
#include <QString>
#include <cstddef>

namespace Ksx::Kit {

// Returns the lines of a finding: where it is, the fault and the cure.
QString findingText(const QString& file, const Finding& finding, bool isColoured);

// Returns "2 errors and 1 warning in 5 packages".
QString findingSum(std::size_t errors, std::size_t warnings, std::size_t packages);

} // namespace Ksx::Kit

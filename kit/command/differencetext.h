// Differences as text for people.
#pragma once

#include "ksx/kit/comparison.h"

namespace Ksx::Kit {

// Returns a line for each difference below the place that it is at, and their counts at the end.
QString differenceText(const std::vector<Difference>& differences, bool isColoured);

} // namespace Ksx::Kit

#include "data/floattext.h"

#include <cmath>
#include <limits>

namespace Orv {

std::optional<float> floatOf(const QString& text)
{
    constexpr double Greatest = std::numeric_limits<float>::max();
    constexpr double Beyond = 0x1.ffffffp127; // the first double that does not round to Greatest
    bool isNumber = false;
    const float number = text.toFloat(&isNumber);
    if (isNumber)
        return std::isfinite(number) ? std::optional<float>(number) : std::nullopt;
    // QString also refuses numbers that lie above the greatest float and round to it.
    const double wide = text.toDouble(&isNumber);
    if (!isNumber || std::fabs(wide) <= Greatest || std::fabs(wide) >= Beyond)
        return std::nullopt;
    return static_cast<float>(std::copysign(Greatest, wide));
}

} // namespace Orv

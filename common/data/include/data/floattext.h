// The floats in the texts of users and descriptions.
#pragma once

#include <QString>
#include <optional>

namespace Orv {

// Returns the float that is nearest to the number in a text. Returns none for any other text, for
// "nan" and "inf", and for a number beyond all floats.
std::optional<float> floatOf(const QString& text);

} // namespace Orv

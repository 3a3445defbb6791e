// Widths of texts in pictures, whose bytes must not depend on the fonts of a machine.
#pragma once

#include <QString>

namespace Ksx::Kit {

// Returns the width of a text in a common sans-serif font, in the unit of `size`. The estimate is
// for a wide font, so that most others take less.
double textWidth(const QString& text, double size, bool isBold = false);

// Returns the text, or as much of its beginning as fits into `width`, with an ellipsis. Control
// characters become blanks.
QString fittingText(const QString& text, double width, double size, bool isBold = false);

} // namespace Ksx::Kit

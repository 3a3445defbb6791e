// Colours on terminals.
#pragma once

#include <QString>

namespace Ksx::Kit {

// The meanings that have a colour.
enum class Colour
{
    Good,    // green
    Bad,     // red
    Warning, // yellow
    Other,   // blue
    Strong,  // bold
};

// Returns whether standard output shows colours: it is a terminal that is not "dumb", and the
// variable NO_COLOR is not set, or empty (https://no-color.org).
bool hasColours();

// Returns the text in a colour if `isColoured`, and as it is otherwise.
QString coloured(const QString& text, Colour colour, bool isColoured);

} // namespace Ksx::Kit

// The library that paints SVG, which is loaded when the first picture needs it.
#pragma once

#include <QByteArray>

namespace Ksx::Kit {

enum class PaintResult
{
    Success,
    // The library is missing.
    NoPainter,
    // The picture has more parts than the library takes.
    TooLarge,
    Failure,
};

// The function of the library, ksxPaintSvg(). Any thread; one picture is painted at a time.
using PaintFunction = PaintResult (*)(const QByteArray& svg, QByteArray& png);

} // namespace Ksx::Kit

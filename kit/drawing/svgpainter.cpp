#include "drawing/svgpainter.h"

#include "core/moduleplace.h"
#include "ksx/kit/drawing.h"
#include <QLibrary>

namespace Ksx::Kit {

namespace {

// Of bytes. The library takes sixty times the memory.
constexpr int MaximumSvg = 4 * 1024 * 1024;
const QString LibraryName = QStringLiteral("libksx_painter.so");

PaintFunction paintFunction()
{
    static const auto function = reinterpret_cast<PaintFunction>(
        QLibrary(Orv::Core::modulePlace(LibraryName)).resolve("ksxPaintSvg"));
    return function;
}

PaintResult paint(const QByteArray& svg, QByteArray& png)
{
    if (svg.size() > MaximumSvg)
        return PaintResult::TooLarge;
    const PaintFunction function = paintFunction();
    return function == nullptr ? PaintResult::NoPainter : function(svg, png);
}

} // namespace

QByteArray pngOf(const std::vector<Drawing>& drawings, QString& reason)
{
    QByteArray png;
    switch (paint(svgOf(drawings, SvgForm::LightFile), png)) {
    case PaintResult::Success:
        return png;
    case PaintResult::NoPainter:
        reason =
            QStringLiteral("the library %1 is missing").arg(Orv::Core::modulePlace(LibraryName));
        break;
    case PaintResult::TooLarge:
        reason = QStringLiteral("the picture has too many parts for PNG");
        break;
    default:
        reason = QStringLiteral("the picture cannot be painted");
    }
    return {};
}

} // namespace Ksx::Kit

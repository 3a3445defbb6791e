// Drawings as PNG.
#include "ksx/kit/drawing.h"
#include <QByteArray>
#include <QtEndian>
#include <gtest/gtest.h>

using Ksx::Kit::Box;
using Ksx::Kit::Drawing;
using Ksx::Kit::pngOf;

namespace {

struct Size
{
    quint32 width;
    quint32 height;
};

// Returns the size that the head of a PNG tells.
Size sizeOf(const QByteArray& png)
{
    EXPECT_TRUE(png.startsWith("\x89PNG\r\n\x1A\n"));
    const char* const head = png.constData() + 16;
    return {qFromBigEndian<quint32>(head), qFromBigEndian<quint32>(head + 4)};
}

Drawing aDrawing(double width, double height)
{
    Drawing drawing;
    Box box;
    box.title = "oak";
    box.width = 100;
    box.height = 60;
    drawing.boxes = {box};
    drawing.width = width;
    drawing.height = height;
    return drawing;
}

} // namespace

TEST(Png, APictureHasItsOwnSize)
{
    QString reason;

    const Size size = sizeOf(pngOf({aDrawing(500, 300)}, reason));

    EXPECT_EQ(size.width, 500U);
    EXPECT_GT(size.height, 300U); // with the legend
    EXPECT_LT(size.height, 400U);
}

TEST(Png, AHugePictureIsMadeSmaller)
{
    QString reason;

    const Size size = sizeOf(pngOf({aDrawing(400000, 100000)}, reason));

    EXPECT_LE(quint64(size.width) * size.height, 32U * 1024 * 1024);
    EXPECT_NEAR(double(size.width) / size.height, 4.0, 0.01);
}

TEST(Png, APictureOfTooManyPartsIsRefused)
{
    Drawing drawing = aDrawing(500, 300);
    drawing.boxes.resize(20000, drawing.boxes.front());
    QString reason;

    EXPECT_TRUE(pngOf({drawing}, reason).isEmpty());
    EXPECT_EQ(reason, "the picture has too many parts for PNG");
}

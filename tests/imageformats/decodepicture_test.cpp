// Damaged pictures of which a part was never written.
#include "imageformats/picturedecoding.h"

#include "support/paths.h"
#include <QBuffer>
#include <QFile>
#include <gtest/gtest.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Orv::ImageFormats;

namespace {

// Memory that is given out anew holds this byte, where the C library can do that.
class FilledMemory
{
public:
    explicit FilledMemory(int byte) { fill(byte ^ 0xff); }
    ~FilledMemory() { fill(0); }
    FilledMemory(const FilledMemory&) = delete;
    FilledMemory& operator=(const FilledMemory&) = delete;

private:
    static void fill([[maybe_unused]] int value)
    {
#ifdef __GLIBC__
        mallopt(M_PERTURB, value);
#endif
    }
};

QByteArray sample(const char* name)
{
    QFile file(QString::fromStdString(TestSupport::sourcePath("tests/data/pictures/")) + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// The sample with runs that end at once.
QByteArray bmpWithoutPixels()
{
    QByteArray bytes = sample("bmp5-palette-imagemagick.bmp");
    const int pixels = static_cast<uchar>(bytes[10]) + static_cast<uchar>(bytes[11]) * 256;
    return bytes.replace(pixels, 2, QByteArray("\0\1", 2));
}

QImage decoded(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return decodePicture(buffer, "bmp", {1 << 20, 1 << 20}, &imageInMemory);
}

TEST(DamagedBmp, HasItsFirstColourWhereItHasNoPixels)
{
    const FilledMemory memory(0x25);
    const QByteArray bytes = bmpWithoutPixels();
    const auto* const colour = reinterpret_cast<const uchar*>(bytes.constData()) + 14 + 124;

    const QImage picture = decoded(bytes);

    QImage wanted(16, 12, QImage::Format_ARGB32);
    wanted.fill(qRgb(colour[2], colour[1], colour[0]));
    EXPECT_EQ(picture, wanted);
}

} // namespace

#include "imageformats/picturesize.h"

#include "imageformats/freeimagedevice.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <QFile>
#include <QSize>
#include <gtest/gtest.h>

using namespace Orv::ImageFormats;
using namespace TestSupport;

namespace {

QByteArray bytesOf(const char* file)
{
    QFile source(QString::fromStdString(sourcePath(std::string("tests/data/pictures/") + file)));
    EXPECT_TRUE(source.open(QIODevice::ReadOnly));
    return source.readAll();
}

// Returns the size in pixels; not valid if the format has none that is looked for.
QSize sizeIn(QByteArray bytes, FREE_IMAGE_FORMAT format)
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    const std::optional<PictureSize> size = announcedSize(format, device);
    EXPECT_EQ(device.pos(), 0);
    return size ? QSize(int(size->width), int(size->height)) : QSize();
}

struct SizeCase
{
    const char* name;
    FREE_IMAGE_FORMAT format;
    const char* file;
};
class AnnouncedSize : public testing::TestWithParam<SizeCase>
{};

TEST_P(AnnouncedSize, IsFoundInTheHeader)
{
    EXPECT_EQ(sizeIn(bytesOf(GetParam().file), GetParam().format), QSize(16, 12));
}

TEST_P(AnnouncedSize, IsEmptyWhereTheHeaderIsMissing)
{
    EXPECT_TRUE(sizeIn(bytesOf(GetParam().file).left(3), GetParam().format).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Formats, AnnouncedSize,
                         testing::Values(SizeCase{"Dds", FIF_DDS, "dds-imagemagick.dds"},
                                         SizeCase{"Exr", FIF_EXR, "exr-imagemagick.exr"},
                                         SizeCase{"Gif", FIF_GIF, "gif-netpbm.gif"},
                                         SizeCase{"Ico", FIF_ICO, "ico-imagemagick.ico"},
                                         SizeCase{"Iff", FIF_IFF, "iff-netpbm.iff"},
                                         SizeCase{"J2k", FIF_J2K, "j2k-openjpeg.j2k"},
                                         SizeCase{"Jp2", FIF_JP2, "jp2-openjpeg.jp2"},
                                         SizeCase{"Mng", FIF_MNG, "mng-imagemagick.mng"},
                                         SizeCase{"Pcx", FIF_PCX, "pcx-imagemagick.pcx"},
                                         SizeCase{"Pict", FIF_PICT, "pict-netpbm.pict"},
                                         SizeCase{"Psb", FIF_PSD, "psb-imagemagick.psb"},
                                         SizeCase{"Psd", FIF_PSD, "psd-imagemagick.psd"},
                                         SizeCase{"Ras", FIF_RAS, "ras-ffmpeg.ras"},
                                         SizeCase{"Sgi", FIF_SGI, "sgi-netpbm.sgi"},
                                         SizeCase{"Wbmp", FIF_WBMP, "wbmp-netpbm.wbmp"},
                                         SizeCase{"Xbm", FIF_XBM, "xbm-netpbm.xbm"}),
                         caseName<SizeCase>);

// --- what stands in headers of other forms

TEST(AnnouncedSizeOfAnIcon, IsThatOfThePngFileInIt)
{
    const QByteArray head =
        QByteArray::fromHex("000001000100 10100000 0100 2000 21000000 16000000");
    const QByteArray png =
        QByteArray::fromHex("89504e470d0a1a0a 0000000d 49484452 00000100 00000080");
    EXPECT_EQ(sizeIn(head + png, FIF_ICO), QSize(256, 128));
}

TEST(AnnouncedSizeOfAWirelessBitmap, MayTakeSeveralBytes)
{
    EXPECT_EQ(sizeIn(QByteArray::fromHex("0000 8100 8f7f"), FIF_WBMP), QSize(128, 2047));
}

TEST(AnnouncedSizeOfAKoala, IsAlwaysTheSame)
{
    EXPECT_EQ(sizeIn(QByteArray::fromHex("0060"), FIF_KOALA), QSize(320, 200));
}

TEST(AnnouncedSizeOfAPcx, IsEmptyWhereTheLinesAreShorterThanThePicture)
{
    QByteArray bytes = bytesOf("pcx-imagemagick.pcx");
    bytes[66] = 15; // bytes of a line
    EXPECT_TRUE(sizeIn(bytes, FIF_PCX).isEmpty());
}

TEST(AnnouncedSize, IsNotLookedForInOtherFormats)
{
    EXPECT_FALSE(sizeIn(bytesOf("png-netpbm.png"), FIF_PNG).isValid());
}

} // namespace

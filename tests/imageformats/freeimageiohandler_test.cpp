#include "imageformats/freeimageiohandler.h"

#include "imageformats/freeimagedevice.h"
#include "imageformats/freeimageioplugin.h"
#include "imageformats/sampleimages.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <cmath>
#include <limits>
#include <random>

using Orv::ImageFormats::FreeImageIOHandler;
using Orv::ImageFormats::FreeImageIOPlugin;
using namespace TestSupport;

namespace {

// What reading some bytes gave.
struct Reading
{
    bool isRead;
    QImage image;
};

Reading readDevice(QIODevice* device, const char* word)
{
    FreeImageIOHandler handler;
    handler.setDevice(device);
    handler.setFormat(word);
    Reading reading;
    reading.isRead = handler.read(&reading.image);
    return reading;
}

Reading readBytes(QByteArray bytes, const char* word = "")
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    return readDevice(&device, word);
}

QImage imageIn(const QByteArray& bytes)
{
    return readBytes(bytes).image;
}

bool canRead(QByteArray bytes)
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    return handler.canRead();
}

// What writing a picture gave.
struct Writing
{
    bool isWritten;
    QByteArray bytes;
};

using Option = QImageIOHandler::ImageOption;

Writing writePicture(const QImage& picture, const char* word,
                     const QMap<Option, QVariant>& options = {})
{
    Writing writing;
    QBuffer device(&writing.bytes);
    device.open(QIODevice::WriteOnly);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    handler.setFormat(word);
    for (auto option = options.begin(); option != options.end(); ++option)
        handler.setOption(option.key(), option.value());
    writing.isWritten = handler.write(picture);
    return writing;
}

QByteArray written(const QImage& picture, const char* word)
{
    return writePicture(picture, word).bytes;
}

// The colour that a plain picture has after it was written with one bit a pixel.
QRgb oneBitColour(const QImage& picture)
{
    return readBytes(written(picture, "wbmp"), "wbmp").image.pixel(0, 0);
}

QByteArray jpegOfQuality(int quality)
{
    return writePicture(samplePicture(), "jpg", {{QImageIOHandler::Quality, quality}}).bytes;
}

// A picture of one colour.
QImage plain(QRgb colour)
{
    QImage picture(SampleSize, SampleSize, QImage::Format_ARGB32);
    picture.fill(colour);
    return picture;
}

// The greatest difference of a channel between two pictures of the same size.
int distance(const QImage& left, const QImage& right)
{
    int result = 0;
    for (int y = 0; y < left.height(); ++y)
        for (int x = 0; x < left.width(); ++x) {
            const QRgb a = left.pixel(x, y);
            const QRgb b = right.pixel(x, y);
            result = std::max({result, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                               std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
        }
    return result;
}

QByteArray firstHalf(const QByteArray& bytes)
{
    return bytes.left(bytes.size() / 2);
}

// Sixteen colours of the palette, each alone in its column.
BitmapPointer paletteBitmap()
{
    BitmapPointer bitmap(FreeImage_Allocate(SampleSize, SampleSize, 8));
    RGBQUAD* const palette = FreeImage_GetPalette(bitmap.get());
    for (int i = 0; i < SampleSize; ++i) {
        const QRgb colour = sampleColour(i, 3);
        palette[i] = {BYTE(qBlue(colour)), BYTE(qGreen(colour)), BYTE(qRed(colour)), 0};
    }
    for (int y = 0; y < SampleSize; ++y)
        for (int x = 0; x < SampleSize; ++x)
            FreeImage_GetScanLine(bitmap.get(), y)[x] = BYTE(x);
    return bitmap;
}

// One red pixel, below a layer section of so many bytes. Put together here because FreeImage's own
// way of saving PSD leaks memory.
QByteArray psdFile(int layerBytes)
{
    const char* const header = "38425053 0001 000000000000" // signature, version, reserved bytes
                               "0003 00000001 00000001"     // channels, height, width
                               "0008 0003 00000000"         // bits a channel, RGB, no palette
                               "00000000 000000";           // no resources, begin of the size
    return QByteArray::fromHex(header) + char(layerBytes) + QByteArray(layerBytes, '\0') +
           QByteArray::fromHex("0000 ff0000"); // no compression, pixel
}

QByteArray flatPsdFile()
{
    return psdFile(0);
}

QByteArray layeredPsdFile()
{
    return psdFile(4);
}

// Smaller pictures are not to FreeImage's liking.
template <FREE_IMAGE_FORMAT Format>
QByteArray jpeg2000File()
{
    const BitmapPointer large(FreeImage_Rescale(opaqueBitmap().get(), 64, 64, FILTER_BILINEAR));
    return fileOf(Format, large);
}

// Reads damaged copies of a file and answers how many were read in spite of it.
int readDamaged(const QByteArray& bytes, std::mt19937& random)
{
    constexpr int Copies = 60;
    int result = 0;
    for (int copy = 0; copy < Copies; ++copy) {
        QByteArray damaged = bytes;
        for (int change = 0; change < 3; ++change)
            damaged[int(random() % unsigned(bytes.size()))] = char(random());
        result += readBytes(damaged).isRead ? 1 : 0;
    }
    return result;
}

// Reads each beginning of a file, and answers how many were read in spite of what is missing.
int readBeginnings(const QByteArray& bytes)
{
    int result = 0;
    for (int size = 0; size < bytes.size(); size += std::max(1, int(bytes.size()) / 50))
        result += readBytes(bytes.left(size)).isRead ? 1 : 0;
    return result;
}

// Messages are dropped from the first instance of the plug-in on; handlers come from it.
class PluginEnvironment : public testing::Environment
{
private:
    const FreeImageIOPlugin m_plugin;
};
const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new PluginEnvironment);

class SequentialBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;
    bool isSequential() const override { return true; }
};

// Takes no data.
class FullDevice : public QBuffer
{
protected:
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }
};

} // namespace

// --- reading: what comes out of which file

struct FormatCase
{
    const char* name;
    FREE_IMAGE_FORMAT format;
    const char* detected;
};
class LosslessFormat : public testing::TestWithParam<FormatCase>
{};
TEST_P(LosslessFormat, IsReadAsItWasSavedAndOpaque)
{
    const Reading reading = readBytes(fileOf(GetParam().format, opaqueBitmap()));
    EXPECT_TRUE(reading.isRead);
    EXPECT_EQ(reading.image, samplePicture());
}
TEST_P(LosslessFormat, IsFoundByItsContentAndNamed)
{
    QByteArray bytes = fileOf(GetParam().format, opaqueBitmap());
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    EXPECT_TRUE(handler.canRead());
    EXPECT_EQ(handler.format(), GetParam().detected);
}
TEST_P(LosslessFormat, IsReadFromAFileLikeFromABuffer)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("picture")));
    file.open(QIODevice::ReadWrite);
    file.write(fileOf(GetParam().format, opaqueBitmap()));
    file.seek(0);
    EXPECT_EQ(readDevice(&file, "").image, samplePicture());
}
INSTANTIATE_TEST_SUITE_P(
    Formats, LosslessFormat,
    testing::Values(FormatCase{"Bmp", FIF_BMP, "BMP"}, FormatCase{"Png", FIF_PNG, "PNG"},
                    FormatCase{"Targa", FIF_TARGA, "TARGA"}, FormatCase{"Tiff", FIF_TIFF, "TIFF"},
                    FormatCase{"Ppm", FIF_PPMRAW, "PBM"}, FormatCase{"Ico", FIF_ICO, "ICO"},
                    FormatCase{"Xpm", FIF_XPM, "XPM"}),
    caseName<FormatCase>);

TEST(FreeImageIOHandlerReading, OfPngAgreesWithQt)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    translucentPicture().save(&device, "PNG");
    EXPECT_EQ(imageIn(bytes), translucentPicture());
}

TEST(FreeImageIOHandlerReading, OfJpegComesNearThePicture)
{
    const QByteArray bytes =
        fileOf(FIF_JPEG, opaqueBitmap(), JPEG_QUALITYSUPERB | JPEG_SUBSAMPLING_444);
    EXPECT_LE(distance(imageIn(bytes), samplePicture()), 8);
}

TEST(FreeImageIOHandlerReading, OfGifGivesThePalettesColours)
{
    const QImage image = imageIn(fileOf(FIF_GIF, paletteBitmap()));
    EXPECT_EQ(image.pixel(0, 0), sampleColour(0, 3));
    EXPECT_EQ(image.pixel(15, 9), sampleColour(15, 3));
}

TEST(FreeImageIOHandlerReading, KeepsAlpha)
{
    EXPECT_EQ(imageIn(fileOf(FIF_TARGA, bitmapOf(translucentPicture()))), translucentPicture());
}

TEST(FreeImageIOHandlerReading, KeepsThePalettesTransparency)
{
    const BitmapPointer bitmap = paletteBitmap();
    BYTE alphas[] = {0, 100};
    FreeImage_SetTransparencyTable(bitmap.get(), alphas, 2);
    const QImage image = imageIn(fileOf(FIF_PNG, bitmap));
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(image.pixel(1, 0)), 100);
    EXPECT_EQ(image.pixel(2, 0), sampleColour(2, 3));
}

TEST(FreeImageIOHandlerReading, OfGreyGivesGrey)
{
    const BYTE greys[] = {0, 100, 255};
    const QImage image = imageIn(fileOf(FIF_PNG, lineOf(FIT_BITMAP, 1, greys)));
    EXPECT_EQ(image.pixel(1, 0), qRgb(100, 100, 100));
    EXPECT_EQ(image.format(), QImage::Format_ARGB32);
}

TEST(FreeImageIOHandlerReading, OfPsdWithoutLayersGivesThePicture)
{
    EXPECT_EQ(imageIn(flatPsdFile()).pixel(0, 0), qRgb(255, 0, 0));
}

TEST(FreeImageIOHandlerReading, OfOneBitGivesBlackAndWhite)
{
    const QImage image = imageIn("P1\n2 1\n1 0\n");
    EXPECT_EQ(image.pixel(0, 0), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(1, 0), qRgb(255, 255, 255));
}

TEST(FreeImageIOHandlerReading, OfSixteenBitColoursWidensThem)
{
    const BitmapPointer bitmap(FreeImage_ConvertTo16Bits565(opaqueBitmap().get()));
    const QImage image = imageIn(fileOf(FIF_BMP, bitmap));
    EXPECT_LE(distance(image, samplePicture()), 8);
}

TEST(FreeImageIOHandlerReading, StartsAtTheDevicesPosition)
{
    const QByteArray png = fileOf(FIF_PNG, opaqueBitmap());
    QByteArray bytes = "before" + png;
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    device.seek(6);
    EXPECT_EQ(readDevice(&device, "").image, samplePicture());
}

// --- reading: high-range pictures

struct HighRangeCase
{
    const char* name;
    FREE_IMAGE_FORMAT format;
    FREE_IMAGE_TYPE type;
};
class HighRangeFile : public testing::TestWithParam<HighRangeCase>
{};
TEST_P(HighRangeFile, IsReducedAndSaysSo)
{
    const BitmapPointer bitmap(
        FreeImage_ConvertToType(opaqueBitmap().get(), GetParam().type, TRUE));
    const Reading reading = readBytes(fileOf(GetParam().format, bitmap));
    EXPECT_TRUE(reading.isRead);
    EXPECT_EQ(reading.image.format(), QImage::Format_ARGB32);
    EXPECT_EQ(reading.image.text(QStringLiteral("degraded")), QStringLiteral("true"));
    EXPECT_EQ(qAlpha(reading.image.pixel(3, 3)), 255);
    // Brighter to the right and to the bottom, as the sample is.
    EXPECT_GT(qGray(reading.image.pixel(12, 12)), qGray(reading.image.pixel(2, 2)));
}
INSTANTIATE_TEST_SUITE_P(Formats, HighRangeFile,
                         testing::Values(HighRangeCase{"Hdr", FIF_HDR, FIT_RGBF},
                                         HighRangeCase{"Exr", FIF_EXR, FIT_RGBF},
                                         HighRangeCase{"ExrWithAlpha", FIF_EXR, FIT_RGBAF},
                                         HighRangeCase{"Pfm", FIF_PFM, FIT_RGBF},
                                         HighRangeCase{"GreyPfm", FIF_PFM, FIT_FLOAT},
                                         HighRangeCase{"FloatTiff", FIF_TIFF, FIT_RGBF},
                                         HighRangeCase{"Png16", FIF_PNG, FIT_RGB16},
                                         HighRangeCase{"Png16WithAlpha", FIF_PNG, FIT_RGBA16},
                                         HighRangeCase{"GreyPng16", FIF_PNG, FIT_UINT16},
                                         HighRangeCase{"Ppm16", FIF_PPMRAW, FIT_RGB16}),
                         caseName<HighRangeCase>);

TEST(HighRangeColours, AreStretchedFromTheLeastToTheGreatestValue)
{
    const float values[] = {-1.0F, 1.0F, 3.0F, 0.0F, 1.0F, 2.0F};
    const QImage image = imageIn(fileOf(FIF_PFM, lineOf(FIT_RGBF, 3, values)));
    EXPECT_EQ(image.pixel(0, 0), qRgb(0, 128, 255));
    EXPECT_EQ(image.pixel(1, 0), qRgb(64, 128, 191));
}

TEST(HighRangeColours, OfOneValueAreTakenFromBlackToWhite)
{
    const float values[] = {0.5F, 0.5F, 0.5F};
    const QImage image = imageIn(fileOf(FIF_PFM, lineOf(FIT_RGBF, 3, values)));
    EXPECT_EQ(image.pixel(0, 0), qRgb(128, 128, 128));
}

TEST(HighRangeColours, ThatAreNotFiniteAreBlackOrWhiteAndStretchNothing)
{
    constexpr float Infinite = std::numeric_limits<float>::infinity();
    const float values[] = {0.0F, 1.0F, 2.0F, NAN, Infinite, -Infinite};
    const QImage image = imageIn(fileOf(FIF_PFM, lineOf(FIT_RGBF, 3, values)));
    EXPECT_EQ(image.pixel(0, 0), qRgb(0, 128, 255));
    EXPECT_EQ(image.pixel(1, 0), qRgb(0, 255, 0));
}

TEST(HighRangeColours, LeaveAlphaUnstretched)
{
    const float values[] = {0.0F, 4.0F, 2.0F, 0.5F, 0.0F, 0.0F, 0.0F, 7.0F};
    const QImage image = imageIn(fileOf(FIF_TIFF, lineOf(FIT_RGBAF, 4, values)));
    EXPECT_EQ(image.pixel(0, 0), qRgba(0, 255, 128, 128));
    EXPECT_EQ(image.pixel(1, 0), qRgba(0, 0, 0, 255));
}

TEST(HighRangeColours, WithoutAWayToBytesAreRefused)
{
    const double values[] = {0.0, 1.0, 2.0, 3.0};
    const QByteArray file = fileOf(FIF_TIFF, lineOf(FIT_COMPLEX, 2, values));
    EXPECT_FALSE(file.isEmpty());
    EXPECT_FALSE(readBytes(file).isRead);
}

TEST(FreeImageIOHandlerReading, OfEightBitsAddsNoText)
{
    EXPECT_TRUE(imageIn(fileOf(FIF_PNG, opaqueBitmap())).text().isEmpty());
}

// --- reading: content and format word

TEST(FreeImageIOHandlerFormat, ComesFromTheContentBeforeTheWord)
{
    EXPECT_EQ(readBytes(fileOf(FIF_PNG, opaqueBitmap()), "bmp").image, samplePicture());
}

TEST(FreeImageIOHandlerFormat, ComesFromTheWordWhenTheContentShowsNone)
{
    const BitmapPointer bitmap(FreeImage_Threshold(opaqueBitmap().get(), 128));
    const QByteArray bytes = fileOf(FIF_WBMP, bitmap); // has no mark of its own
    EXPECT_FALSE(readBytes(bytes).isRead);
    EXPECT_TRUE(readBytes(bytes, "wbmp").isRead);
}

TEST(FreeImageIOHandlerFormat, ThatIsUnknownByContentAndWordIsRefused)
{
    EXPECT_FALSE(readBytes("no image at all", "nonsense").isRead);
}

TEST(FreeImageIOHandlerCanRead, IsFalseForWhatIsNoImage)
{
    EXPECT_FALSE(canRead("no image at all"));
    EXPECT_FALSE(canRead(""));
}

TEST(FreeImageIOHandlerCanRead, LeavesThePosition)
{
    QByteArray bytes = "12345" + fileOf(FIF_TIFF, opaqueBitmap());
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    device.seek(5);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    handler.canRead();
    EXPECT_EQ(device.pos(), 5);
}

TEST(FreeImageIOHandlerCanRead, LeavesTheContentOfAWritableBuffer)
{
    const QByteArray file = fileOf(FIF_BMP, opaqueBitmap());
    QByteArray bytes = file;
    QBuffer device(&bytes);
    device.open(QIODevice::ReadWrite);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    EXPECT_TRUE(handler.canRead());
    EXPECT_EQ(bytes, file);
}

TEST(FreeImageIOHandlerCanRead, IsFalseForADeviceThatCannotBeWoundBack)
{
    QByteArray bytes = fileOf(FIF_PNG, opaqueBitmap());
    SequentialBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    EXPECT_FALSE(handler.canRead());
    EXPECT_EQ(device.read(bytes.size()), bytes);
}

TEST(FreeImageIOHandlerCanRead, IsFalseForAClosedDevice)
{
    QBuffer device;
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    EXPECT_FALSE(handler.canRead());
}

// The text names another class; it is fixed.
TEST(FreeImageIOHandlerCanRead, WithoutADeviceWarnsInTheNameOfAnotherHandler)
{
    const CapturedMessages messages;
    EXPECT_FALSE(FreeImageIOHandler().canRead());
    EXPECT_EQ(messages.texts(), QStringList{"QJpegHandler::canRead() called with no device"});
}

TEST(FreeImageIOHandlerReading, WithoutADeviceGivesTheSameWarning)
{
    const CapturedMessages messages;
    EXPECT_FALSE(readDevice(nullptr, "png").isRead);
    EXPECT_EQ(messages.texts(), QStringList{"QJpegHandler::canRead() called with no device"});
}

// --- reading: files that are not whole

// The lengths to which a file was cut and was then read as another picture than the whole file.
std::string wrongLengths(const QByteArray& bytes)
{
    const QImage whole = imageIn(bytes);
    std::string lengths = whole.isNull() ? "the whole file is refused" : "";
    const int step = std::max(1, int(bytes.size()) / 600);
    for (int length = 0; length < bytes.size(); length += step) {
        const Reading reading = readBytes(bytes.left(length));
        if (reading.isRead && reading.image != whole)
            lengths += ' ' + std::to_string(length);
    }
    return lengths.empty() ? lengths : lengths + " of " + std::to_string(bytes.size());
}

QByteArray floatFile(FREE_IMAGE_FORMAT format)
{
    const BitmapPointer bitmap(FreeImage_ConvertToRGBF(opaqueBitmap().get()));
    return fileOf(format, bitmap);
}

QByteArray cutSample(FREE_IMAGE_FORMAT format)
{
    switch (format) {
    case FIF_EXR:
    case FIF_HDR:
    case FIF_PFM:
        return floatFile(format);
    case FIF_GIF:
        return fileOf(format, paletteBitmap());
    default:
        return fileOf(format, opaqueBitmap());
    }
}

class CutFile : public testing::TestWithParam<FormatCase>
{};
TEST_P(CutFile, IsRefusedUnlessOnlyWhatDoesNotMatterIsMissing)
{
    EXPECT_EQ(wrongLengths(cutSample(GetParam().format)), "");
}
INSTANTIATE_TEST_SUITE_P(
    Formats, CutFile,
    testing::Values(FormatCase{"Png", FIF_PNG, ""}, FormatCase{"Jpeg", FIF_JPEG, ""},
                    FormatCase{"Bmp", FIF_BMP, ""}, FormatCase{"Targa", FIF_TARGA, ""},
                    FormatCase{"Tiff", FIF_TIFF, ""}, FormatCase{"Gif", FIF_GIF, ""},
                    FormatCase{"Hdr", FIF_HDR, ""}, FormatCase{"Exr", FIF_EXR, ""},
                    FormatCase{"Pfm", FIF_PFM, ""}, FormatCase{"Ppm", FIF_PPMRAW, ""},
                    FormatCase{"PpmText", FIF_PPM, ""}, FormatCase{"Ico", FIF_ICO, ""},
                    FormatCase{"Webp", FIF_WEBP, ""}, FormatCase{"Xpm", FIF_XPM, ""}),
    caseName<FormatCase>);

TEST(FreeImageIOHandlerReading, OfACutCompressedTargaIsRefusedUnlessOnlyWhatDoesNotMatterIsMissing)
{
    EXPECT_EQ(wrongLengths(fileOf(FIF_TARGA, opaqueBitmap(), TARGA_SAVE_RLE)), "");
}

TEST(FreeImageIOHandlerReading, OfACompressedTargaGivesItsPicture)
{
    EXPECT_EQ(imageIn(fileOf(FIF_TARGA, opaqueBitmap(), TARGA_SAVE_RLE)), samplePicture());
}

// There is nothing behind such a header: its size must not be allocated first.
TEST(FreeImageIOHandlerReading, OfAPictureOfAbsurdSizeIsRefused)
{
    QByteArray bytes = fileOf(FIF_BMP, opaqueBitmap());
    constexpr char huge[] = {'\0', '\0', '\1', '\0'}; // 65536
    bytes.replace(18, 4, huge, 4);
    bytes.replace(22, 4, huge, 4);
    EXPECT_FALSE(readBytes(bytes).isRead);
}

TEST(FreeImageIOHandlerReading, ThatFailsLeavesTheImage)
{
    QByteArray bytes = firstHalf(fileOf(FIF_PNG, opaqueBitmap()));
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    QImage image = plain(qRgb(1, 2, 3));
    EXPECT_FALSE(handler.read(&image));
    EXPECT_EQ(image, plain(qRgb(1, 2, 3)));
}

class DamagedFile : public testing::TestWithParam<FormatCase>
{};
TEST_P(DamagedFile, IsReadOrRefusedWithoutAWordOnTheTerminal)
{
    std::mt19937 random = seededRandom(20240611);
    const QByteArray bytes = fileOf(GetParam().format, opaqueBitmap());
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    readDamaged(bytes, random);
    readBeginnings(bytes);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
INSTANTIATE_TEST_SUITE_P(
    Formats, DamagedFile,
    testing::Values(FormatCase{"Png", FIF_PNG, ""}, FormatCase{"Jpeg", FIF_JPEG, ""},
                    FormatCase{"Targa", FIF_TARGA, ""}, FormatCase{"Tiff", FIF_TIFF, ""},
                    FormatCase{"Ppm", FIF_PPMRAW, ""}, FormatCase{"Webp", FIF_WEBP, ""}),
    caseName<FormatCase>);

// --- the answer of the seek callback

// The codecs of these formats look at it, and those of all others do not.
struct FileCase
{
    const char* name;
    FREE_IMAGE_FORMAT format;
    QByteArray (*file)();
};
class SeekAnswer : public testing::TestWithParam<FileCase>
{};
TEST_P(SeekAnswer, LetsTheCodecsThatLookAtItGoOn)
{
    const QByteArray bytes = GetParam().file();
    EXPECT_TRUE(canRead(bytes));
    EXPECT_TRUE(readBytes(bytes).isRead);
}
INSTANTIATE_TEST_SUITE_P(Formats, SeekAnswer,
                         testing::Values(FileCase{"PsdWithLayers", FIF_PSD, &layeredPsdFile},
                                         FileCase{"J2k", FIF_J2K, &jpeg2000File<FIF_J2K>},
                                         FileCase{"Jp2", FIF_JP2, &jpeg2000File<FIF_JP2>}),
                         caseName<FileCase>);

TEST(SeekAnswer, LetsJpeg2000BeWritten)
{
    const QImage large = samplePicture().scaled(64, 64);
    EXPECT_EQ(imageIn(written(large, "jp2")).size(), large.size());
}

// --- reading behind the end

// Counts how often it is asked for bytes that it does not have.
class CountingBuffer : public QBuffer
{
public:
    using QBuffer::QBuffer;
    int vainReads = 0;

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const qint64 read = QBuffer::readData(data, size);
        vainReads += size > 0 && read <= 0 ? 1 : 0;
        return read;
    }
};

struct EndlessCase
{
    const char* name;
    QByteArray bytes;
};
class EndlessFile : public testing::TestWithParam<EndlessCase>
{};
// Its decoder would go on for ever, or for as many steps as the header announces.
TEST_P(EndlessFile, IsGivenUpAtItsEnd)
{
    QByteArray bytes = GetParam().bytes;
    CountingBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    EXPECT_FALSE(readDevice(&device, GetParam().name).isRead);
    EXPECT_LT(device.vainReads, 100);
}
INSTANTIATE_TEST_SUITE_P(
    Files, EndlessFile,
    testing::Values(
        EndlessCase{"mng", QByteArray("\x8aMNG\r\n\x1a\n", 8)},
        EndlessCase{"xbm",
                    "#define a_width 16\n#define a_height 16\nstatic char a[] = {\n0x00, 0x"},
        EndlessCase{"ppm", "P6 8000 8000 255\n"}, EndlessCase{"pgm", "P2 8000 8000 255\n1 2 "},
        EndlessCase{"ras", QByteArray::fromHex("59a66a95 00001f40 00001f40 00000018 0b71b000"
                                               "00000001 00000000 00000000")},
        EndlessCase{"sgi", QByteArray::fromHex("01da0001 00031f40 1f400003 00000000 000000ff") +
                               QByteArray(492, '\0')},
        EndlessCase{"iff", QByteArray("FORM\0\0\0\x30ILBMBMHD\0\0\0\x14\x1f\x40\x1f\x40\0\0\0\0"
                                      "\x18\0\0\0\0\0\1\1\x1f\x40\x1f\x40"
                                      "BODY\0\0\x10\0",
                                      48)}),
    caseName<EndlessCase>);

TEST(FreeImageIOHandlerReading, LeavesWhatTheFileDoesNotFill)
{
    QByteArray bytes = "ab";
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    Orv::ImageFormats::ReadSource source(device);
    char buffer[] = "12345";
    EXPECT_EQ(source.read(buffer, 4), 2);
    EXPECT_STREQ(buffer, "ab345");
}

// --- writing

struct DepthCase
{
    const char* name;
    const char* word;
    FREE_IMAGE_FORMAT format;
    unsigned depth;
};
class WrittenFormat : public testing::TestWithParam<DepthCase>
{};
TEST_P(WrittenFormat, HasTheGreatestDepthOfItsOwn)
{
    const Writing writing = writePicture(translucentPicture(), GetParam().word);
    EXPECT_TRUE(writing.isWritten);
    const BitmapPointer bitmap = bitmapIn(GetParam().format, writing.bytes);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(FreeImage_GetBPP(bitmap.get()), GetParam().depth);
    EXPECT_EQ(FreeImage_GetWidth(bitmap.get()), unsigned(SampleSize));
}
INSTANTIATE_TEST_SUITE_P(
    Formats, WrittenFormat,
    testing::Values(DepthCase{"Bmp", "bmp", FIF_BMP, 32}, DepthCase{"Ico", "ico", FIF_ICO, 32},
                    DepthCase{"JpegHasNoAlpha", "jpg", FIF_JPEG, 24},
                    DepthCase{"PbmIsBlackAndWhite", "pbm", FIF_PBM, 1},
                    DepthCase{"PgmIsGrey", "pgm", FIF_PGM, 8},
                    DepthCase{"PpmIsColour", "ppm", FIF_PPM, 24},
                    DepthCase{"Png", "png", FIF_PNG, 32}, DepthCase{"Targa", "tga", FIF_TARGA, 32},
                    DepthCase{"Tiff", "tiff", FIF_TIFF, 32}, DepthCase{"Wbmp", "wbmp", FIF_WBMP, 1},
                    DepthCase{"GifGoesThroughGrey", "gif", FIF_GIF, 8},
                    DepthCase{"Webp", "webp", FIF_WEBP, 32},
                    DepthCase{"ByFormatName", "TARGA", FIF_TARGA, 32}),
    caseName<DepthCase>);

struct RefusalCase
{
    const char* name;
    const char* word;
};
class UnwrittenFormat : public testing::TestWithParam<RefusalCase>
{};
TEST_P(UnwrittenFormat, IsRefusedAndLeavesTheDevice)
{
    const Writing writing = writePicture(samplePicture(), GetParam().word);
    EXPECT_FALSE(writing.isWritten);
    EXPECT_TRUE(writing.bytes.isEmpty());
}
INSTANTIATE_TEST_SUITE_P(Words, UnwrittenFormat,
                         testing::Values(RefusalCase{"NoWord", ""},
                                         RefusalCase{"UnknownWord", "nonsense"},
                                         RefusalCase{"HighRangeAloneHdr", "hdr"},
                                         RefusalCase{"HighRangeAloneExr", "exr"},
                                         RefusalCase{"ReadOnly", "pcx"}),
                         caseName<RefusalCase>);

class KeptPicture : public testing::TestWithParam<RefusalCase>
{};
TEST_P(KeptPicture, IsReadBackWithItsAlpha)
{
    EXPECT_EQ(imageIn(written(translucentPicture(), GetParam().word)), translucentPicture());
}
INSTANTIATE_TEST_SUITE_P(Words, KeptPicture,
                         testing::Values(RefusalCase{"Bmp", "bmp"}, RefusalCase{"Png", "png"},
                                         RefusalCase{"Targa", "tga"}, RefusalCase{"Tiff", "tif"}),
                         caseName<RefusalCase>);

TEST(FreeImageIOHandlerWriting, OfPngAgreesWithQt)
{
    const QImage image = QImage::fromData(written(translucentPicture(), "png"), "PNG");
    EXPECT_EQ(image.convertToFormat(QImage::Format_ARGB32), translucentPicture());
}

TEST(FreeImageIOHandlerWriting, LosesAlphaWhereTheFormatHasNone)
{
    EXPECT_EQ(imageIn(written(translucentPicture(), "ppm")), samplePicture());
}

TEST(FreeImageIOHandlerWriting, ToEightBitsGoesThroughGrey)
{
    const QRgb pixel = imageIn(written(plain(qRgb(0, 200, 0)), "gif")).pixel(4, 4);
    EXPECT_TRUE(qIsGray(pixel));
    EXPECT_GT(qRed(pixel), 100);
    EXPECT_LT(qRed(pixel), 200);
}

TEST(FreeImageIOHandlerWriting, ToOneBitIsBlackBelowTheMiddle)
{
    EXPECT_EQ(oneBitColour(plain(qRgb(127, 127, 127))), qRgb(0, 0, 0));
    EXPECT_EQ(oneBitColour(plain(qRgb(128, 128, 128))), qRgb(255, 255, 255));
}

TEST(FreeImageIOHandlerWriting, OfPbmKeepsBlackBlack)
{
    EXPECT_EQ(imageIn(written(plain(qRgb(255, 255, 255)), "pbm")), plain(qRgb(255, 255, 255)));
    EXPECT_EQ(imageIn(written(plain(qRgb(0, 0, 0)), "pbm")), plain(qRgb(0, 0, 0)));
}

TEST(FreeImageIOHandlerWriting, OfPbmTextKeepsBlackBlack)
{
    const QMap<Option, QVariant> ascii{{QImageIOHandler::SubType, QByteArray("ascii")}};
    EXPECT_EQ(imageIn(writePicture(plain(qRgb(0, 0, 0)), "pbm", ascii).bytes),
              plain(qRgb(0, 0, 0)));
}

TEST(FreeImageIOHandlerWriting, TakesPicturesOfOtherForms)
{
    const QImage grey = samplePicture().convertToFormat(QImage::Format_Grayscale8);
    EXPECT_EQ(imageIn(written(grey, "png")), grey.convertToFormat(QImage::Format_ARGB32));
}

TEST(FreeImageIOHandlerWriting, LeavesThePictureAlone)
{
    const QImage picture = translucentPicture();
    written(picture, "jpg");
    EXPECT_EQ(picture, translucentPicture());
}

TEST(FreeImageIOHandlerWriting, OfANullPictureIsRefused)
{
    EXPECT_FALSE(writePicture(QImage(), "png").isWritten);
}

TEST(FreeImageIOHandlerWriting, WithoutADeviceIsRefused)
{
    FreeImageIOHandler handler;
    handler.setFormat("png");
    EXPECT_FALSE(handler.write(samplePicture()));
}

TEST(FreeImageIOHandlerWriting, ToAReadOnlyDeviceIsRefused)
{
    QBuffer device;
    device.open(QIODevice::ReadOnly);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    handler.setFormat("png");
    EXPECT_FALSE(handler.write(samplePicture()));
}

TEST(FreeImageIOHandlerWriting, FailsWhenTheDeviceTakesNoData)
{
    FullDevice device;
    device.open(QIODevice::WriteOnly);
    FreeImageIOHandler handler;
    handler.setDevice(&device);
    handler.setFormat("bmp");
    EXPECT_FALSE(handler.write(samplePicture()));
}

TEST(FreeImageIOHandlerWriting, SaysNothingOnTheTerminal)
{
    testing::internal::CaptureStderr();
    written(samplePicture(), "tiff");
    written(samplePicture(), "jp2");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// --- options

TEST(FreeImageIOHandlerQuality, MakesJpegFilesLarger)
{
    EXPECT_LT(jpegOfQuality(5).size(), jpegOfQuality(95).size());
}

TEST(FreeImageIOHandlerQuality, IsKeptBetweenZeroAndHundred)
{
    EXPECT_EQ(jpegOfQuality(1000), jpegOfQuality(100));
    EXPECT_EQ(jpegOfQuality(-1), jpegOfQuality(0));
}

TEST(FreeImageIOHandlerQuality, OfZeroIsTheDefault)
{
    EXPECT_EQ(jpegOfQuality(0), written(samplePicture(), "jpg"));
}

TEST(FreeImageIOHandlerQuality, ChangesNoOtherFormat)
{
    EXPECT_EQ(writePicture(samplePicture(), "png", {{QImageIOHandler::Quality, 10}}).bytes,
              written(samplePicture(), "png"));
}

TEST(FreeImageIOHandlerSubType, MakesPnmFilesBytesOrText)
{
    const QMap<Option, QVariant> ascii{{QImageIOHandler::SubType, QByteArray("ascii")}};
    EXPECT_TRUE(written(samplePicture(), "ppm").startsWith("P6"));
    EXPECT_TRUE(writePicture(samplePicture(), "ppm", ascii).bytes.startsWith("P3"));
    EXPECT_TRUE(writePicture(samplePicture(), "pgm", ascii).bytes.startsWith("P2"));
    EXPECT_TRUE(writePicture(samplePicture(), "pbm", ascii).bytes.startsWith("P1"));
}

struct OptionCase
{
    const char* name;
    const char* word;
    QImageIOHandler::ImageOption option;
    bool isSupported;
};
class FreeImageIOHandlerOption : public testing::TestWithParam<OptionCase>
{};
TEST_P(FreeImageIOHandlerOption, IsSupportedOrNot)
{
    FreeImageIOHandler handler;
    handler.setFormat(GetParam().word);
    EXPECT_EQ(handler.supportsOption(GetParam().option), GetParam().isSupported);
}
INSTANTIATE_TEST_SUITE_P(
    Options, FreeImageIOHandlerOption,
    testing::Values(OptionCase{"QualityOfJpeg", "jpeg", QImageIOHandler::Quality, true},
                    OptionCase{"QualityOfJpegByItsName", "JPEG", QImageIOHandler::Quality, true},
                    OptionCase{"QualityOfPng", "png", QImageIOHandler::Quality, false},
                    OptionCase{"QualityOfNothing", "", QImageIOHandler::Quality, false},
                    OptionCase{"SizeOfJpeg", "jpg", QImageIOHandler::Size, false},
                    OptionCase{"SubTypeOfPpm", "ppm", QImageIOHandler::SubType, false}),
    caseName<OptionCase>);

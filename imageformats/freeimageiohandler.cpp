#include "imageformats/freeimageiohandler.h"

#include "imageformats/freeimagedevice.h"
#include "imageformats/targacheck.h"
#include <QIODevice>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace Orv::ImageFormats {

namespace {

constexpr unsigned RedMask = 0x00ff0000;
constexpr unsigned GreenMask = 0x0000ff00;
constexpr unsigned BlueMask = 0x000000ff;
constexpr int RawDepth = 32;
constexpr int DepthsToTry[] = {32, 24, 16, 8, 4, 1};
constexpr BYTE MiddleGrey = 128;
constexpr int ColourChannels = 3;

// Larger pictures are refused: these are already 16384 by 16384.
constexpr quint64 MaximumPixels = quint64(1) << 28;
constexpr quint64 MaximumBytes = quint64(1) << 31; // as they are in the file, unpacked

struct Unload
{
    void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

// The text is fixed, although it names another class.
void warnOfMissingDevice()
{
    qWarning("QJpegHandler::canRead() called with no device");
}

// Calls `visit(pixel, x, y)` with each pixel's first float.
template <typename Visit>
void forEachPixel(FIBITMAP* bitmap, int channels, Visit visit)
{
    const int width = static_cast<int>(FreeImage_GetWidth(bitmap));
    const int height = static_cast<int>(FreeImage_GetHeight(bitmap));
    for (int y = 0; y < height; ++y) {
        const BYTE* const line = FreeImage_GetScanLine(bitmap, y);
        const float* const first = reinterpret_cast<const float*>(line);
        for (int x = 0; x < width; ++x)
            visit(first + qptrdiff(x) * channels, x, y);
    }
}

struct ValueRange
{
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();
};

ValueRange colourRange(FIBITMAP* bitmap, int channels)
{
    ValueRange range;
    forEachPixel(bitmap, channels, [&range](const float* pixel, int, int) {
        for (int channel = 0; channel < ColourChannels; ++channel) {
            const double value = pixel[channel];
            if (!std::isfinite(value))
                continue;
            range.low = std::min(range.low, value);
            range.high = std::max(range.high, value);
        }
    });
    // One value, or none, makes no range to stretch; the usual one is from black to white.
    return range.low < range.high ? range : ValueRange{0.0, 1.0};
}

BYTE byteOf(double value, const ValueRange& range)
{
    const double fraction = (value - range.low) / (range.high - range.low);
    if (!(fraction > 0.0)) // NaN too
        return 0;
    return static_cast<BYTE>(std::lround(std::min(fraction, 1.0) * 255.0));
}

// FreeImage has a linear conversion to bytes for one float per pixel, but none for three or four.
// This is the same rule: the least value becomes 0 and the greatest 255. All colours are scaled
// alike, so that hues stay.
Bitmap stretchedColours(FIBITMAP* source, int channels)
{
    const int width = static_cast<int>(FreeImage_GetWidth(source));
    const int height = static_cast<int>(FreeImage_GetHeight(source));
    Bitmap result(FreeImage_Allocate(width, height, RawDepth));
    if (!result)
        return nullptr;
    const ValueRange range = colourRange(source, channels);
    forEachPixel(source, channels, [&](const float* pixel, int x, int y) {
        BYTE* const bytes = FreeImage_GetScanLine(result.get(), y) + qptrdiff(x) * 4;
        bytes[FI_RGBA_RED] = byteOf(pixel[0], range);
        bytes[FI_RGBA_GREEN] = byteOf(pixel[1], range);
        bytes[FI_RGBA_BLUE] = byteOf(pixel[2], range);
        const bool hasAlpha = channels > ColourChannels;
        const float full = 1.0F;
        bytes[FI_RGBA_ALPHA] = byteOf(hasAlpha ? pixel[ColourChannels] : full, {0.0, 1.0});
    });
    return result;
}

// A picture of eight bits a channel, or null when there is no way to one.
Bitmap reduced(FIBITMAP* source)
{
    switch (FreeImage_GetImageType(source)) {
    case FIT_RGBF:
        return stretchedColours(source, ColourChannels);
    case FIT_RGBAF:
        return stretchedColours(source, ColourChannels + 1);
    default:
        return Bitmap(FreeImage_ConvertToType(source, FIT_BITMAP, TRUE));
    }
}

// FreeImage answers the depths of the whole PNM family for each of its members, and for JPEG that
// of CMYK pictures, which ours are not.
bool isForeignDepth(FREE_IMAGE_FORMAT format, int depth)
{
    switch (format) {
    case FIF_JPEG:
        return depth == 32;
    case FIF_PBM:
    case FIF_PBMRAW:
        return depth == 24 || depth == 8;
    case FIF_PGM:
    case FIF_PGMRAW:
        return depth == 24 || depth == 1;
    case FIF_PPM:
    case FIF_PPMRAW:
        return depth == 8 || depth == 1;
    default:
        return false;
    }
}

// The greatest depth in which the format can be written, 0 when there is none.
int writingDepth(FREE_IMAGE_FORMAT format)
{
    for (const int depth : DepthsToTry)
        if (FreeImage_FIFSupportsExportBPP(format, depth) && !isForeignDepth(format, depth))
            return depth;
    return 0;
}

Bitmap ofDepth(FIBITMAP* source, int depth)
{
    switch (depth) {
    case 1: // set bits are white; PBM files, where they are black, become negatives
        return Bitmap(FreeImage_Threshold(source, MiddleGrey));
    case 4:
        return Bitmap(FreeImage_ConvertTo4Bits(source));
    case 8:
        return Bitmap(FreeImage_ConvertToGreyscale(source));
    case 16:
        return Bitmap(FreeImage_ConvertTo16Bits555(source));
    case 24:
        return Bitmap(FreeImage_ConvertTo24Bits(source));
    default:
        return Bitmap(FreeImage_ConvertTo32Bits(source));
    }
}

int savingFlags(FREE_IMAGE_FORMAT format,
                const QMap<QImageIOHandler::ImageOption, QVariant>& options)
{
    switch (format) {
    case FIF_JPEG:
        return std::clamp(options.value(QImageIOHandler::Quality, 0).toInt(), 0, 100);
    case FIF_PBM:
    case FIF_PGM:
    case FIF_PPM:
        return options.value(QImageIOHandler::SubType).toByteArray() == "ascii" ? PNM_SAVE_ASCII
                                                                                : PNM_SAVE_RAW;
    default:
        return 0;
    }
}

// Most codecs can tell the size of a picture before they allocate it. A header may announce
// anything.
bool isTooLarge(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    if (!FreeImage_FIFSupportsNoPixels(format))
        return false;
    const qint64 begin = device.pos();
    ReadSource source(device);
    FreeImageIO callbacks = ReadSource::callbacks();
    const Bitmap header(
        FreeImage_LoadFromHandle(format, &callbacks, source.handle(), FIF_LOAD_NOPIXELS));
    device.seek(begin);
    if (!header)
        return false;
    const quint64 pixels =
        quint64(FreeImage_GetWidth(header.get())) * FreeImage_GetHeight(header.get());
    return pixels > MaximumPixels || pixels * FreeImage_GetBPP(header.get()) / 8 > MaximumBytes;
}

// Compressed Targa files are read in blocks as well, and what their codec misses it makes up.
bool isCutTarga(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    return format == FIF_TARGA && isCompressedTarga(device.peek(TargaHeaderSize)) &&
           !hasAllRuns(device.peek(device.size() - device.pos()));
}

} // namespace

bool FreeImageIOHandler::canRead() const
{
    if (!device()) {
        warnOfMissingDevice();
        return false;
    }
    const FREE_IMAGE_FORMAT found = formatOfContent(device());
    if (found == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(found))
        return false;
    setFormat(FreeImage_GetFormatFromFIF(found));
    return true;
}

bool FreeImageIOHandler::read(QImage* image)
{
    if (!device()) {
        warnOfMissingDevice();
        return false;
    }
    FREE_IMAGE_FORMAT found = formatOfContent(device());
    if (found == FIF_UNKNOWN && !format().isEmpty())
        found = formatOfWord(format());
    if (found == FIF_UNKNOWN)
        return false;

    if (isTooLarge(found, *device()) || isCutTarga(found, *device()))
        return false;
    // A codec that comes to the end of the file and goes on has given a picture of which a part is
    // made up. Those that read in blocks ask for more than they need.
    const bool readsBlocks =
        found == FIF_JPEG ||
        (found == FIF_TARGA && isCompressedTarga(device()->peek(TargaHeaderSize)));
    ReadSource source(*device());
    FreeImageIO callbacks = ReadSource::callbacks();
    Bitmap bitmap(FreeImage_LoadFromHandle(found, &callbacks, source.handle(), 0));
    if (!bitmap || (readsBlocks ? source.hasReadNothing() : source.hasReadShort()))
        return false;
    QImage result(static_cast<int>(FreeImage_GetWidth(bitmap.get())),
                  static_cast<int>(FreeImage_GetHeight(bitmap.get())), QImage::Format_ARGB32);
    if (result.isNull())
        return false;
    result.fill(0xffffffffU); // opaque, whatever the conversion leaves out

    if (FreeImage_GetImageType(bitmap.get()) != FIT_BITMAP) {
        result.setText(QStringLiteral("degraded"), QStringLiteral("true"));
        bitmap = reduced(bitmap.get());
    }
    if (bitmap && (FreeImage_GetColorType(bitmap.get()) == FIC_PALETTE ||
                   FreeImage_GetBPP(bitmap.get()) == 16))
        bitmap.reset(FreeImage_ConvertTo32Bits(bitmap.get()));
    if (!bitmap)
        return false;
    FreeImage_ConvertToRawBits(result.bits(), bitmap.get(), static_cast<int>(result.bytesPerLine()),
                               RawDepth, RedMask, GreenMask, BlueMask, TRUE);
    *image = result;
    return true;
}

bool FreeImageIOHandler::write(const QImage& image)
{
    if (!device() || !device()->isWritable() || image.isNull())
        return false;
    const FREE_IMAGE_FORMAT wanted = formatOfWord(format());
    if (wanted == FIF_UNKNOWN)
        return false;
    const int depth = writingDepth(wanted);
    if (depth == 0)
        return false;

    QImage source = image.convertToFormat(QImage::Format_ARGB32);
    if (source.isNull())
        return false;
    Bitmap bitmap(FreeImage_ConvertFromRawBits(source.bits(), source.width(), source.height(),
                                               source.width() * 4, RawDepth, RedMask, GreenMask,
                                               BlueMask, TRUE));
    if (bitmap && FreeImage_GetBPP(bitmap.get()) != static_cast<unsigned>(depth))
        bitmap = ofDepth(bitmap.get(), depth);
    if (!bitmap)
        return false;
    FreeImageIO callbacks = writingCallbacks();
    return FreeImage_SaveToHandle(wanted, bitmap.get(), &callbacks, device(),
                                  savingFlags(wanted, m_options)) != FALSE;
}

void FreeImageIOHandler::setOption(ImageOption option, const QVariant& value)
{
    m_options.insert(option, value);
}

bool FreeImageIOHandler::supportsOption(ImageOption option) const
{
    return option == Quality && formatOfWord(format()) == FIF_JPEG;
}

} // namespace Orv::ImageFormats

#include "imageformats/freeimageiohandler.h"

#include "imageformats/bitmap.h"
#include "imageformats/freeimagedevice.h"
#include "imageformats/pictureloading.h"
#include <QIODevice>
#include <QImage>
#include <algorithm>

namespace Orv::ImageFormats {

namespace {

constexpr int DepthsToTry[] = {32, 24, 16, 8, 4, 1};
constexpr BYTE MiddleGrey = 128;

// The text is fixed, although it names another class.
void warnOfMissingDevice()
{
    qWarning("QJpegHandler::canRead() called with no device");
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
    case 1: // set bits are white
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

// A set bit is black in a PBM file. FreeImage's codec writes the bits as they are.
bool hasBlackBits(FREE_IMAGE_FORMAT format)
{
    return format == FIF_PBM || format == FIF_PBMRAW;
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
    const QImage result = loadPicture(*device(), found);
    if (result.isNull())
        return false;
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
    if (!bitmap || (hasBlackBits(wanted) && !FreeImage_Invert(bitmap.get())))
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

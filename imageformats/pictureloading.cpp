#include "imageformats/pictureloading.h"

#include "imageformats/bitmapreduction.h"
#include "imageformats/freeimagedevice.h"
#include "imageformats/picturesize.h"
#include "imageformats/runcheck.h"
#include <QIODevice>
#include <limits>
#include <optional>

namespace Orv::ImageFormats {

namespace {

Bitmap loadFrom(ReadSource& source, FREE_IMAGE_FORMAT format, int flags)
{
    FreeImageIO callbacks = ReadSource::callbacks();
    try {
        return Bitmap(FreeImage_LoadFromHandle(format, &callbacks, source.handle(), flags));
    } catch (...) { // codecs let through whatever their libraries throw
        return nullptr;
    }
}

// Most codecs can tell the size of a picture before they allocate it. Returns nothing if the codec
// has no way to tell. The size is empty if the codec refuses the header.
std::optional<PictureSize> sizeByCodec(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    if (!FreeImage_FIFSupportsNoPixels(format))
        return std::nullopt;
    const qint64 begin = device.pos();
    ReadSource source(device);
    const Bitmap header = loadFrom(source, format, FIF_LOAD_NOPIXELS);
    device.seek(begin);
    if (!header)
        return PictureSize();
    return PictureSize{FreeImage_GetWidth(header.get()), FreeImage_GetHeight(header.get()),
                       FreeImage_GetBPP(header.get())};
}

bool isWithin(const PictureLimits& limits, const PictureSize& size)
{
    constexpr qint64 MaximumSide = std::numeric_limits<int>::max();
    if (size.width <= 0 || size.height <= 0 || size.width > MaximumSide ||
        size.height > MaximumSide)
        return false;
    const quint64 pixels = quint64(size.width) * quint64(size.height);
    return pixels <= limits.pixels && pixels * quint64(size.depth) / 8 <= limits.bytes;
}

// A header may announce anything.
bool announcesTooMuch(const PictureLimits& limits, FREE_IMAGE_FORMAT format, QIODevice& device)
{
    std::optional<PictureSize> size = announcedSize(format, device);
    if (!size)
        size = sizeByCodec(format, device);
    return size && !isWithin(limits, *size);
}

// How a decoder comes to the end of a file.
enum class EndRule
{
    ReadsToSize, // what it reads is there, or a part of the picture is made up
    ReadsBlocks, // the same for blocks, of which the last one may be short
    FindsTheEnd, // it looks for more, and refuses a picture of which a part is missing
};

EndRule endRuleOf(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    switch (format) {
    case FIF_JPEG:
        return EndRule::ReadsBlocks;
    case FIF_J2K:
    case FIF_JP2:
    case FIF_RAW:
        return EndRule::FindsTheEnd;
    default:
        return isMadeOfRuns(format, device) ? EndRule::ReadsBlocks : EndRule::ReadsToSize;
    }
}

bool hasComeToTheEnd(EndRule rule, const ReadSource& source)
{
    switch (rule) {
    case EndRule::ReadsToSize:
        return source.hasReadShort();
    case EndRule::ReadsBlocks:
        return source.hasReadNothing();
    default:
        return false;
    }
}

Bitmap loadWhole(QIODevice& device, FREE_IMAGE_FORMAT format)
{
    if (isMadeOfRuns(format, device) && !hasAllRuns(format, device))
        return nullptr;
    const EndRule rule = endRuleOf(format, device);
    ReadSource source(device);
    Bitmap bitmap = loadFrom(source, format, 0);
    if (hasComeToTheEnd(rule, source))
        bitmap.reset();
    return bitmap;
}

} // namespace

QImage imageInMemory(QSize size)
{
    return QImage(size, QImage::Format_ARGB32);
}

QImage loadPicture(QIODevice& device, FREE_IMAGE_FORMAT format, const PictureLimits& limits,
                   const ImageMaker& makeImage)
{
    if (announcesTooMuch(limits, format, device))
        return QImage();
    Bitmap bitmap = loadWhole(device, format);
    if (!bitmap)
        return QImage();
    const bool isDegraded = FreeImage_GetImageType(bitmap.get()) != FIT_BITMAP;
    if (isDegraded)
        bitmap = reduced(bitmap.get());
    if (bitmap && (FreeImage_GetColorType(bitmap.get()) == FIC_PALETTE ||
                   FreeImage_GetBPP(bitmap.get()) == 16))
        bitmap.reset(FreeImage_ConvertTo32Bits(bitmap.get()));
    if (!bitmap)
        return QImage();
    QImage image = makeImage(QSize(static_cast<int>(FreeImage_GetWidth(bitmap.get())),
                                   static_cast<int>(FreeImage_GetHeight(bitmap.get()))));
    if (image.isNull())
        return image;
    if (FreeImage_GetBPP(bitmap.get()) != RawDepth)
        image.fill(0xffffffffU); // opaque, whatever the conversion leaves out
    if (isDegraded)
        image.setText(QStringLiteral("degraded"), QStringLiteral("true"));
    FreeImage_ConvertToRawBits(image.bits(), bitmap.get(), static_cast<int>(image.bytesPerLine()),
                               RawDepth, RedMask, GreenMask, BlueMask, TRUE);
    return image;
}

} // namespace Orv::ImageFormats

#include "imageformats/bitmapreduction.h"

#include <QtGlobal>
#include <algorithm>
#include <cmath>
#include <limits>

namespace Orv::ImageFormats {

namespace {

constexpr int ColourChannels = 3;

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

} // namespace

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

} // namespace Orv::ImageFormats

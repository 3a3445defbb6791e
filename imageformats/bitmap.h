// A picture of FreeImage, owned.
#pragma once

#include <FreeImage.h>
#include <memory>

namespace Orv::ImageFormats {

struct UnloadBitmap
{
    void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, UnloadBitmap>;

// How our pictures lie in memory: four bytes a pixel, read as one number.
constexpr int RawDepth = 32;
constexpr unsigned RedMask = 0x00ff0000;
constexpr unsigned GreenMask = 0x0000ff00;
constexpr unsigned BlueMask = 0x000000ff;

} // namespace Orv::ImageFormats

// Image files, written here byte by byte: what reads them is not what made them.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace TestSupport {

struct ImageSize
{
    int width = 1;
    int height = 1;
};

// A way to write an image. What it shows is of no interest.
struct ImageFormat
{
    const char* name; // of letters and digits
    const char* ending;
    std::string (*bytes)(ImageSize);
};

std::ostream& operator<<(std::ostream& stream, const ImageFormat& format);

// All that can be made of any size up to some thousand pixels.
std::vector<ImageFormat> imageFormats();

std::string aPng(ImageSize size);
// Of one bit a pixel, and so of few bytes.
std::string aPngWithPalette(ImageSize size);
// Of the size of a camera's picture: decoders refuse small ones.
std::string aCameraFile(ImageSize size);
// The same bytes whatever library packs the others.
std::string aBmp(ImageSize size);

} // namespace TestSupport

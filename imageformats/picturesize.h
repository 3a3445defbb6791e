// The size that a picture file announces.
#pragma once

#include <QtGlobal>
#include <FreeImage.h>
#include <optional>

class QIODevice;

namespace Orv::ImageFormats {

struct PictureSize
{
    qint64 width = 0;
    qint64 height = 0;
    qint64 depth = 0; // bits that a pixel takes in the memory of its decoder
};

// Returns the size that the header of the file gives. Knows the formats whose codec in FreeImage
// cannot load a header alone, damages its memory while it does, or believes a header that contradicts
// itself. The size is empty where the file has no such header. Returns nothing for other formats. The
// device's position stays.
std::optional<PictureSize> announcedSize(FREE_IMAGE_FORMAT format, QIODevice& device);

} // namespace Orv::ImageFormats

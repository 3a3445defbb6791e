// Loading a whole picture within bounds.
#pragma once

#include "imageformats/bitmap.h"
#include <QImage>
#include <QtGlobal>
#include <functional>

class QIODevice;

namespace Orv::ImageFormats {

// A picture that announces more is refused before anything is allocated for it.
struct PictureLimits
{
    quint64 pixels = quint64(1) << 28; // 16384 by 16384
    quint64 bytes = quint64(1) << 31;  // as they are in the file, unpacked
};

// Makes the image of Format_ARGB32 that the pixels go to; null if there is no memory for it.
using ImageMaker = std::function<QImage(QSize)>;

QImage imageInMemory(QSize size);

// Returns the picture that the device holds from its position on, in Format_ARGB32. The picture is
// opaque where the file has no transparency. A picture of more than eight bits a channel is reduced
// and carries the text "degraded" with the value "true". Returns a null image for a picture that is
// too large, damaged, or of which a part is missing.
QImage loadPicture(QIODevice& device, FREE_IMAGE_FORMAT format, const PictureLimits& limits = {},
                   const ImageMaker& makeImage = &imageInMemory);

} // namespace Orv::ImageFormats

// Reading a picture of whatever format, by FreeImage or by Qt.
#pragma once

#include "imageformats/pictureloading.h"
#include <QByteArray>

namespace Orv::ImageFormats {

// Returns the picture that the device holds, in Format_ARGB32. `ending` is that of the file's name,
// without the dot; it decides where the content shows no format. Returns a null image for a file
// that cannot be read whole. The formats that FreeImage knows are left to FreeImage, also where it
// refuses: it takes no picture of which a part is missing, and Qt's own readers do.
QImage decodePicture(QIODevice& device, const QByteArray& ending, const PictureLimits& limits,
                     const ImageMaker& makeImage);

} // namespace Orv::ImageFormats

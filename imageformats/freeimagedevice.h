// A QIODevice as the functions of FreeImage see it, and which format it holds.
#pragma once

#include <FreeImage.h>

class QByteArray;
class QIODevice;

namespace Orv::ImageFormats {

// The callbacks of FreeImage; the handle that belongs to them is the QIODevice itself.
FreeImageIO readingCallbacks();
FreeImageIO writingCallbacks();

// The format that the device's content shows from its position on, which stays where it is.
// FIF_UNKNOWN for a device that is null, cannot be read or cannot be wound back.
FREE_IMAGE_FORMAT formatOfContent(QIODevice* device);

// The format that a word stands for: a file extension, or FreeImage's own name of the format.
// FIF_UNKNOWN when there is none of that name.
FREE_IMAGE_FORMAT formatOfWord(const QByteArray& word);

} // namespace Orv::ImageFormats

// Pictures of high range as pictures of bytes.
#pragma once

#include "imageformats/bitmap.h"

namespace Orv::ImageFormats {

// Returns a picture of eight bits a channel, or null when there is no way to one.
Bitmap reduced(FIBITMAP* source);

} // namespace Orv::ImageFormats

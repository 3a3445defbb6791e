// Whether the runs of a file with run-length encoding are all there.
#pragma once

#include <FreeImage.h>

class QByteArray;
class QIODevice;

namespace Orv::ImageFormats {

// Returns true for a Targa or PCX file whose pixels are packed in runs. FreeImage's decoders read
// such a file in blocks. They take the bytes that their buffer holds for the ones that are missing,
// and so the runs have to be counted.
bool isMadeOfRuns(FREE_IMAGE_FORMAT format, QIODevice& device);

// Do the runs of such a file give as many pixels as its header announces? The file begins at the
// device's position, which stays.
bool hasAllRuns(FREE_IMAGE_FORMAT format, QIODevice& device);

} // namespace Orv::ImageFormats

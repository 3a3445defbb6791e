// Whether the runs of a compressed Targa file are all there.
#pragma once

class QByteArray;

namespace Orv::ImageFormats {

// True for a file that begins as a Targa file with run-length encoding. FreeImage's decoder takes
// whatever its buffer holds for what is missing in such a file, and so it has to be looked for.
// Format: Truevision TGA File Format Specification, version 2.0.
bool isCompressedTarga(const QByteArray& head);

// Do the packets of such a file give as many pixels as its header announces? False for a file whose
// header is cut.
bool hasAllRuns(const QByteArray& file);

// How much of a file isCompressedTarga() wants to see.
constexpr int TargaHeaderSize = 18;

} // namespace Orv::ImageFormats

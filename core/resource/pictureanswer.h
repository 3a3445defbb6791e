// What the decoding process and the process that starts it have agreed on.
#pragma once

#include <cstdint>

namespace Ksx::Core {

// The descriptors that the decoding process starts with. Standard output and standard error lead
// nowhere, and there are no others.
enum class DecodingDescriptor
{
    Picture = 0, // the file, open for reading
    Answer = 3,  // a pipe that takes one PictureAnswer
    Pixels = 4   // memory that is empty at first
};

constexpr std::uint64_t MaximumPicturePixels = std::uint64_t(1) << 26; // 8192 by 8192
constexpr std::uint64_t PixelSize = 4;                                 // one number 0xAARRGGBB

constexpr std::uint32_t PictureAnswerMark = 0x4b535850;

enum class PictureKind : std::uint32_t
{
    None,    // the file is no picture, or cannot be read whole
    Exact,   // with all that the file has
    Degraded // of more than eight bits a channel, which were reduced
};

// Written when all pixels are in the memory, line by line from the top without gaps.
struct PictureAnswer
{
    std::uint32_t mark = PictureAnswerMark;
    PictureKind kind = PictureKind::None;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

} // namespace Ksx::Core

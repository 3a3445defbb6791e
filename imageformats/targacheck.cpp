#include "imageformats/targacheck.h"

#include <QByteArray>

namespace Orv::ImageFormats {

namespace {

// Places in the header.
constexpr int IdLength = 0;
constexpr int ImageType = 2;
constexpr int ColorMapLength = 5;
constexpr int ColorMapDepth = 7;
constexpr int Width = 12;
constexpr int Height = 14;
constexpr int Depth = 16;

constexpr int FirstCompressed = 9; // with a colour map; then of true colour, then grey
constexpr int LastCompressed = 11;
constexpr int IsRun = 0x80; // else as many pixels as the packet says stand one by one

int byteAt(const QByteArray& file, qint64 place)
{
    return static_cast<unsigned char>(file[static_cast<int>(place)]);
}

int wordAt(const QByteArray& file, qint64 place)
{
    return byteAt(file, place) | byteAt(file, place + 1) << 8;
}

int wholeBytes(int bits)
{
    return (bits + 7) / 8;
}

} // namespace

bool isCompressedTarga(const QByteArray& head)
{
    return head.size() >= TargaHeaderSize && byteAt(head, ImageType) >= FirstCompressed &&
           byteAt(head, ImageType) <= LastCompressed;
}

bool hasAllRuns(const QByteArray& file)
{
    if (!isCompressedTarga(file))
        return false;
    const int pixelSize = wholeBytes(byteAt(file, Depth));
    qint64 place = TargaHeaderSize + byteAt(file, IdLength) +
                   qint64(wordAt(file, ColorMapLength)) * wholeBytes(byteAt(file, ColorMapDepth));
    qint64 missing = qint64(wordAt(file, Width)) * wordAt(file, Height);
    while (missing > 0 && place < file.size()) {
        const int packet = byteAt(file, place);
        const int pixels = packet % IsRun + 1;
        place += 1 + qint64((packet & IsRun) != 0 ? 1 : pixels) * pixelSize;
        missing -= pixels;
    }
    return missing <= 0 && place <= file.size();
}

} // namespace Orv::ImageFormats

#include "imageformats/runcheck.h"

#include <QByteArray>
#include <QIODevice>

namespace Orv::ImageFormats {

namespace {

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

// What the first byte of a packet announces.
struct Packet
{
    qint64 units;  // that the packet unpacks to
    qint64 length; // in units, of the data behind the first byte
};

// Where the packets begin and what they have to give. A unit is a pixel, or a byte of it. Decoders
// drop what a packet gives beyond the end of its line.
struct Runs
{
    qint64 begin;
    qint64 lines;
    qint64 unitsOfALine;
    int unitSize;
    qint64 tail; // bytes that have to stand behind the packets
};

// Truevision TGA File Format Specification, version 2.0.
namespace Targa {

constexpr int IdLength = 0;
constexpr int ImageType = 2;
constexpr int ColorMapLength = 5;
constexpr int ColorMapDepth = 7;
constexpr int Width = 12;
constexpr int Height = 14;
constexpr int Depth = 16;
constexpr int HeaderSize = 18;

constexpr int FirstCompressed = 9; // with a colour map; then of true colour, then grey
constexpr int LastCompressed = 11;
constexpr int IsRun = 0x80; // else as many pixels as the packet says stand one by one

bool isCompressed(const QByteArray& head)
{
    const int type = byteAt(head, ImageType);
    return type >= FirstCompressed && type <= LastCompressed;
}

Runs runs(const QByteArray& head)
{
    return {HeaderSize + byteAt(head, IdLength) +
                qint64(wordAt(head, ColorMapLength)) * wholeBytes(byteAt(head, ColorMapDepth)),
            1, // a packet may go on in the next line
            qint64(wordAt(head, Width)) * wordAt(head, Height), wholeBytes(byteAt(head, Depth)), 0};
}

Packet packet(int first)
{
    const int pixels = first % IsRun + 1;
    return {pixels, (first & IsRun) != 0 ? 1 : pixels};
}

} // namespace Targa

// ZSoft PCX File Format Technical Reference Manual, revision 5.
namespace Pcx {

constexpr int Version = 1;
constexpr int Encoding = 2;
constexpr int Depth = 3; // of a plane
constexpr int Top = 6;
constexpr int Bottom = 10;
constexpr int Planes = 65;
constexpr int LineSize = 66; // of one plane, in bytes
constexpr int Greys = 68;    // 2 if there is no colour
constexpr int HeaderSize = 128;
constexpr int TableSize = 1 + 3 * 256; // of colours, behind its mark
constexpr int IsRun = 0xc0;            // else the byte stands for itself

bool isCompressed(const QByteArray& head)
{
    return byteAt(head, Encoding) == 1;
}

Runs runs(const QByteArray& head)
{
    const qint64 lines = wordAt(head, Bottom) - wordAt(head, Top) + 1;
    const bool hasTable = byteAt(head, Version) >= 5 && byteAt(head, Depth) == 8 &&
                          byteAt(head, Planes) == 1 && wordAt(head, Greys) != 2;
    return {HeaderSize, lines, qint64(byteAt(head, Planes)) * wordAt(head, LineSize), 1,
            hasTable ? TableSize : 0};
}

Packet packet(int first)
{
    return (first & IsRun) == IsRun ? Packet{first - IsRun, 1} : Packet{1, 0};
}

} // namespace Pcx

struct RunFormat
{
    FREE_IMAGE_FORMAT format;
    int headerSize;
    bool (*isCompressed)(const QByteArray& head);
    Runs (*runs)(const QByteArray& head);
    Packet (*packet)(int first);
};
constexpr RunFormat RunFormats[] = {
    {FIF_TARGA, Targa::HeaderSize, &Targa::isCompressed, &Targa::runs, &Targa::packet},
    {FIF_PCX, Pcx::HeaderSize, &Pcx::isCompressed, &Pcx::runs, &Pcx::packet},
};

// Null if the file is of no such format.
const RunFormat* runFormatOf(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    for (const RunFormat& row : RunFormats) {
        if (row.format != format)
            continue;
        const QByteArray head = device.peek(row.headerSize);
        return head.size() == row.headerSize && row.isCompressed(head) ? &row : nullptr;
    }
    return nullptr;
}

} // namespace

bool isMadeOfRuns(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    return runFormatOf(format, device) != nullptr;
}

bool hasAllRuns(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    const RunFormat* const row = runFormatOf(format, device);
    if (row == nullptr)
        return false;
    const QByteArray file = device.peek(device.size() - device.pos());
    const Runs runs = row->runs(file);
    qint64 place = runs.begin;
    for (qint64 line = 0; line < runs.lines; ++line) {
        qint64 missing = runs.unitsOfALine;
        while (missing > 0 && place < file.size()) {
            const Packet packet = row->packet(byteAt(file, place));
            place += 1 + packet.length * runs.unitSize;
            missing -= packet.units;
        }
        if (missing > 0)
            return false;
    }
    return place + runs.tail <= file.size();
}

} // namespace Orv::ImageFormats

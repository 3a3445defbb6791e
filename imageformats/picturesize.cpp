#include "imageformats/picturesize.h"

#include <QByteArray>
#include <QIODevice>
#include <QtEndian>
#include <algorithm>
#include <iterator>

namespace Orv::ImageFormats {

namespace {

// The bytes of a file that begins at the device's position.
class FileView
{
public:
    explicit FileView(QIODevice& device) : m_device(device), m_begin(device.pos()) {}
    ~FileView() { m_device.seek(m_begin); }
    FileView(const FileView&) = delete;
    FileView& operator=(const FileView&) = delete;

    qint64 size() const { return m_device.size() - m_begin; }
    // Returns as many bytes as there are, at most `count`.
    QByteArray bytes(qint64 place, qint64 count) const
    {
        const bool isInside = place >= 0 && place < size() && m_device.seek(m_begin + place);
        return isInside ? m_device.read(count) : QByteArray();
    }
    // Returns 0 where the file has no such bytes.
    template <class Number>
    Number little(qint64 place) const
    {
        const QByteArray found = bytes(place, sizeof(Number));
        return found.size() < int(sizeof(Number)) ? 0
                                                  : qFromLittleEndian<Number>(found.constData());
    }
    template <class Number>
    Number big(qint64 place) const
    {
        const QByteArray found = bytes(place, sizeof(Number));
        return found.size() < int(sizeof(Number)) ? 0 : qFromBigEndian<Number>(found.constData());
    }

private:
    QIODevice& m_device;
    qint64 m_begin;
};

// A header has few parts. A file of more is refused, and nobody walks through it.
constexpr int MaximumParts = 10000;

// Commodore 64: Koala Painter, which has one size.
PictureSize koalaSize(const FileView&)
{
    return {320, 200, 8};
}

// Microsoft: DDS_HEADER.
PictureSize ddsSize(const FileView& file)
{
    return {file.little<quint32>(16), file.little<quint32>(12), 32};
}

// Silicon Graphics: The SGI Image File Format, version 1.0.
PictureSize sgiSize(const FileView& file)
{
    const qint64 channels = std::max<qint64>(file.big<quint16>(10), 1);
    return {file.big<quint16>(6), std::max<qint64>(file.big<quint16>(8), 1), channels * 32};
}

// Electronic Arts: "EA IFF 85" and "ILBM". Chunks of an even length follow the type of the form.
PictureSize iffSize(const FileView& file)
{
    qint64 place = 12;
    for (int part = 0; part < MaximumParts && place < file.size(); ++part) {
        if (file.bytes(place, 4) == "BMHD")
            return {file.big<quint16>(place + 8), file.big<quint16>(place + 10), 24};
        const qint64 length = file.big<quint32>(place + 4);
        place += 8 + length + length % 2;
    }
    return {};
}

// Apple: Imaging With QuickDraw, appendix A. The frame stands behind an empty block and two bytes:
// top, left, bottom, right.
PictureSize pictSize(const FileView& file)
{
    constexpr qint64 Frame = 512 + 2;
    return {file.big<qint16>(Frame + 6) - file.big<qint16>(Frame + 2),
            file.big<qint16>(Frame + 4) - file.big<qint16>(Frame), 32};
}

// A number of seven bits a byte, the highest first; the last byte has no eighth bit.
qint64 multiByteInteger(const FileView& file, qint64& place)
{
    constexpr int MoreFollow = 0x80;
    constexpr int MaximumBytes = 5;
    qint64 number = 0;
    for (int i = 0; i < MaximumBytes; ++i) {
        const auto byte = file.big<quint8>(place++);
        number = number * MoreFollow + byte % MoreFollow;
        if (byte < MoreFollow)
            break;
    }
    return number;
}

// WAP Forum: Wireless Application Environment Specification, "WBMP". Type and fixed header come
// first; the eighth bit of the header says that it goes on.
PictureSize wbmpSize(const FileView& file)
{
    qint64 place = 0;
    multiByteInteger(file, place);
    multiByteInteger(file, place);
    const qint64 width = multiByteInteger(file, place);
    return {width, multiByteInteger(file, place), 8};
}

// The number behind the first `name` of a text, -1 if there is none.
qint64 definedNumber(const QByteArray& text, const char* name)
{
    const auto place = text.indexOf(name);
    if (place < 0)
        return -1;
    const QByteArray rest = text.mid(place).mid(int(qstrlen(name))).trimmed();
    int digits = 0;
    while (digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9')
        ++digits;
    return rest.left(digits).toLongLong();
}

// X Consortium: Xlib - C Language X Interface, XReadBitmapFile. The size is two lines of C.
PictureSize xbmSize(const FileView& file)
{
    const QByteArray head = file.bytes(0, 4096);
    return {definedNumber(head, "_width"), definedNumber(head, "_height"), 8};
}

// ISO/IEC 15444-1, A.5.1: the segment SIZ behind the begin of a codestream. The decoder holds each
// component of a pixel in four bytes.
PictureSize codestreamSize(const FileView& file, qint64 begin)
{
    if (file.big<quint32>(begin) != 0xff4fff51)
        return {};
    const auto number = [&](qint64 place) { return qint64(file.big<quint32>(begin + place)); };
    return {number(8) - number(16), number(12) - number(20),
            qint64(file.big<quint16>(begin + 40)) * 32};
}

PictureSize j2kSize(const FileView& file)
{
    return codestreamSize(file, 0);
}

// ISO/IEC 15444-1, annex I: boxes of a length, a type and data. Length 1 stands for a longer number
// behind the type, 0 for the rest of the file.
PictureSize jp2Size(const FileView& file)
{
    qint64 place = 0;
    for (int part = 0; part < MaximumParts && place < file.size(); ++part) {
        const qint64 length = file.big<quint32>(place);
        const qint64 head = length == 1 ? 16 : 8;
        if (file.bytes(place + 4, 4) == "jp2c")
            return codestreamSize(file, place + head);
        const qint64 whole = length == 1 ? file.big<qint64>(place + 8) : length;
        if (whole < head || whole > file.size() - place)
            break;
        place += whole;
    }
    return {};
}

bool isIconDepth(int depth)
{
    constexpr int Depths[] = {1, 4, 8, 16, 24, 32};
    return std::find(std::begin(Depths), std::end(Depths), depth) != std::end(Depths);
}

// Microsoft: "Icons in Win32". The first picture of the file is a BITMAPINFOHEADER, whose height
// counts a mask as well, or a PNG file.
PictureSize icoSize(const FileView& file)
{
    const qint64 place = file.little<quint32>(6 + 12);
    if (file.big<quint32>(place) == 0x89504e47)
        return {file.big<quint32>(place + 16), file.big<quint32>(place + 20), 64};
    const int depth = file.little<quint16>(place + 14);
    if (file.little<quint32>(place) != 40 || !isIconDepth(depth))
        return {};
    return {file.little<qint32>(place + 4), file.little<qint32>(place + 8) / 2, depth};
}

// ZSoft: PCX File Format Technical Reference Manual, revision 5. The header gives the width and the
// bytes of a line apart from each other, and the codec reads the whole width out of each line.
PictureSize pcxSize(const FileView& file)
{
    const qint64 width = file.little<quint16>(8) - file.little<quint16>(4) + 1;
    const qint64 height = file.little<quint16>(10) - file.little<quint16>(6) + 1;
    const qint64 depth = file.big<quint8>(3); // of a plane
    const qint64 lineSize = file.little<quint16>(66);
    if (depth == 0 || lineSize * 8 < width * depth)
        return {};
    return {width, height, depth * file.big<quint8>(65)};
}

// Adobe: Photoshop File Formats Specification.
PictureSize psdSize(const FileView& file)
{
    const qint64 channels = file.big<quint16>(12);
    return {file.big<quint32>(18), file.big<quint32>(14), channels * file.big<quint16>(22)};
}

// Sun Microsystems: rasterfile(5). The codec copies a table of colours of whatever length.
PictureSize rasSize(const FileView& file)
{
    constexpr quint32 MaximumTable = 3 * 256;
    if (file.big<quint32>(28) > MaximumTable)
        return {};
    return {file.big<quint32>(4), file.big<quint32>(8), file.big<quint32>(12)};
}

// The text that ends with a zero byte.
QByteArray textAt(const FileView& file, qint64 place)
{
    const QByteArray found = file.bytes(place, 256);
    return found.left(found.indexOf('\0'));
}

// Academy Software Foundation: OpenEXR File Layout. Attributes of a name, a type, a length and data
// follow the version.
PictureSize exrSize(const FileView& file)
{
    qint64 place = 8;
    for (int part = 0; part < MaximumParts && place < file.size(); ++part) {
        const QByteArray name = textAt(file, place);
        place += name.size() + 1;
        place += textAt(file, place).size() + 1;
        const qint64 length = file.little<quint32>(place);
        place += 4;
        const auto number = [&](int index) {
            return qint64(file.little<qint32>(place + qint64{index} * 4));
        };
        if (name == "dataWindow")
            return {number(2) - number(0) + 1, number(3) - number(1) + 1, 128};
        if (name.isEmpty())
            break;
        place += length;
    }
    return {};
}

// CompuServe: Graphics Interchange Format, version 89a. Colours and extensions stand before the
// descriptor of the first picture.
PictureSize gifSize(const FileView& file)
{
    const auto coloursBytes = [](int flags) { return flags & 0x80 ? 3 << (flags % 8 + 1) : 0; };
    constexpr int Extension = 0x21;
    constexpr int Descriptor = 0x2c;
    qint64 place = 13 + coloursBytes(file.big<quint8>(10));
    for (int part = 0; part < MaximumParts && file.big<quint8>(place) == Extension; ++part) {
        place += 2;
        int length = 0;
        do {
            length = file.big<quint8>(place);
            place += 1 + length;
        } while (length != 0);
    }
    if (file.big<quint8>(place) != Descriptor)
        return {};
    return {file.little<quint16>(place + 5), file.little<quint16>(place + 7), 8};
}

// PNG Development Group: MNG Format, version 1.0. The first picture is the first PNG or JNG header.
PictureSize mngSize(const FileView& file)
{
    qint64 place = 8;
    for (int part = 0; part < MaximumParts && place < file.size(); ++part) {
        const QByteArray type = file.bytes(place + 4, 4);
        if (type == "IHDR" || type == "JHDR")
            return {file.big<quint32>(place + 8), file.big<quint32>(place + 12), 64};
        place += 12 + qint64(file.big<quint32>(place));
    }
    return {};
}

struct SizeRow
{
    FREE_IMAGE_FORMAT format;
    PictureSize (*size)(const FileView&);
};
constexpr SizeRow SizeRows[] = {
    {FIF_DDS, &ddsSize}, {FIF_EXR, &exrSize}, {FIF_GIF, &gifSize},   {FIF_ICO, &icoSize},
    {FIF_IFF, &iffSize}, {FIF_J2K, &j2kSize}, {FIF_JP2, &jp2Size},   {FIF_KOALA, &koalaSize},
    {FIF_MNG, &mngSize}, {FIF_PCX, &pcxSize}, {FIF_PICT, &pictSize}, {FIF_PSD, &psdSize},
    {FIF_RAS, &rasSize}, {FIF_SGI, &sgiSize}, {FIF_WBMP, &wbmpSize}, {FIF_XBM, &xbmSize},
};

} // namespace

std::optional<PictureSize> announcedSize(FREE_IMAGE_FORMAT format, QIODevice& device)
{
    for (const SizeRow& row : SizeRows)
        if (row.format == format)
            return row.size(FileView(device));
    return std::nullopt;
}

} // namespace Orv::ImageFormats

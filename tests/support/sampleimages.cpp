#include "support/sampleimages.h"

#include "support/bytes.h"
#include <QByteArray>
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <ostream>

namespace TestSupport {

namespace {

using std::uint32_t;

constexpr char Grey = '\x80';

std::size_t pixelsOf(ImageSize size)
{
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

std::string grey(std::size_t bytes)
{
    return std::string(bytes, Grey);
}

uint32_t sizeOf(const std::string& bytes)
{
    return static_cast<uint32_t>(bytes.size());
}

// Adds bits to the lowest that are free.
class LittleBits
{
public:
    template <class Number>
    LittleBits& add(Number number, int bits)
    {
        const auto value = static_cast<uint32_t>(number);
        for (int i = 0; i < bits; ++i) {
            if (m_count % 8 == 0)
                m_bytes += '\0';
            if ((value >> i & 1) != 0)
                m_bytes.back() = static_cast<char>(m_bytes.back() | (1 << m_count % 8));
            ++m_count;
        }
        return *this;
    }
    const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
    int m_count = 0;
};

// PNG

uint32_t crc(const std::string& bytes)
{
    uint32_t sum = 0xffffffffU;
    for (const char c : bytes) {
        sum ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320U : 0);
    }
    return ~sum;
}

std::string pngChunk(const std::string& type, const std::string& data)
{
    return big(sizeOf(data), 4) + type + data + big(crc(type + data), 4);
}

std::string zlib(const std::string& bytes)
{
    const QByteArray packed =
        qCompress(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()));
    return packed.mid(4).toStdString(); // behind the size, which is Qt's own
}

std::string png(ImageSize size, int depth, int colourType, int bitsPerPixel,
                const std::string& palette = {})
{
    const std::size_t line = (static_cast<std::size_t>(size.width) * bitsPerPixel + 7) / 8;
    std::string lines;
    for (int y = 0; y < size.height; ++y)
        lines += '\0' + std::string(line, palette.empty() ? Grey : '\0');
    return "\x89PNG\r\n\x1a\n" +
           pngChunk("IHDR", big(size.width, 4) + big(size.height, 4) + little(depth, 1) +
                                little(colourType, 1) + std::string(3, '\0')) +
           (palette.empty() ? "" : pngChunk("PLTE", palette)) + pngChunk("IDAT", zlib(lines)) +
           pngChunk("IEND", "");
}

std::string pngRgb(ImageSize size)
{
    return png(size, 8, 2, 24);
}

std::string pngRgba(ImageSize size)
{
    return png(size, 8, 6, 32);
}

std::string pngGrey(ImageSize size)
{
    return png(size, 8, 0, 8);
}

std::string pngDeep(ImageSize size)
{
    return png(size, 16, 6, 64);
}

std::string pngPalette(ImageSize size)
{
    return png(size, 1, 3, 1, grey(6));
}

// JPEG: with tables of one code each, of one bit, all blocks are zeros and so of one grey.

std::string jpegSegment(char marker, const std::string& data)
{
    return std::string("\xff") + marker + big(sizeOf(data) + 2, 2) + data;
}

std::string jpegTable(char place)
{
    return jpegSegment('\xc4', place + std::string(1, '\1') + std::string(16, '\0'));
}

std::string jpeg(ImageSize size)
{
    const std::size_t blocks = static_cast<std::size_t>((size.width + 7) / 8) *
                               static_cast<std::size_t>((size.height + 7) / 8);
    return "\xff\xd8" + jpegSegment('\xe0', std::string("JFIF\0\1\1\0\0\1\0\1\0\0", 14)) +
           jpegSegment('\xdb', '\0' + std::string(64, '\1')) +
           jpegSegment('\xc0', "\x08" + big(size.height, 2) + big(size.width, 2) +
                                   std::string("\1\1\x11\0", 4)) +
           jpegTable('\0') + jpegTable('\x10') +
           jpegSegment('\xda', std::string("\1\1\0\0\x3f\0", 6)) +
           std::string((2 * blocks + 7) / 8, '\0') + "\xff\xd9";
}

// Formats whose pixels stand one behind the other.

std::string dib(ImageSize size, int bits, int heightFactor = 1)
{
    const std::size_t line = (static_cast<std::size_t>(size.width) * bits / 8 + 3) / 4 * 4;
    return little(40, 4) + little(size.width, 4) + little(size.height * heightFactor, 4) +
           little(1, 2) + little(bits, 2) + std::string(24, '\0') + grey(line * size.height);
}

std::string bmp(ImageSize size)
{
    const std::string body = dib(size, 24);
    return "BM" + little(sizeOf(body) + 14, 4) + little(0, 4) + little(54, 4) + body;
}

std::string ico(ImageSize size)
{
    const std::size_t maskLine = (static_cast<std::size_t>(size.width) + 31) / 32 * 4;
    const std::string body = dib(size, 32, 2) + std::string(maskLine * size.height, '\0');
    return little(0, 2) + little(1, 2) + little(1, 2) + little(size.width & 0xff, 1) +
           little(size.height & 0xff, 1) + little(0, 2) + little(1, 2) + little(32, 2) +
           little(sizeOf(body), 4) + little(22, 4) + body;
}

std::string tga(ImageSize size, int bits)
{
    return std::string("\0\0\2\0\0\0\0\0\0\0\0\0", 12) + little(size.width, 2) +
           little(size.height, 2) + little(bits, 1) + (bits == 32 ? '\x08' : '\0') +
           grey(pixelsOf(size) * bits / 8);
}

std::string tgaRgb(ImageSize size)
{
    return tga(size, 24);
}

std::string tgaRgba(ImageSize size)
{
    return tga(size, 32);
}

std::string psd(ImageSize size)
{
    return "8BPS" + big(1, 2) + std::string(6, '\0') + big(3, 2) + big(size.height, 4) +
           big(size.width, 4) + big(8, 2) + big(3, 2) + std::string(12, '\0') + big(0, 2) +
           grey(pixelsOf(size) * 3);
}

std::string dds(ImageSize size)
{
    const uint32_t flags = 0x1 | 0x2 | 0x4 | 0x1000; // caps, height, width, pixel format
    const std::string format = little(32, 4) + little(0x41, 4) + little(0, 4) + little(32, 4) +
                               little(0xff0000, 4) + little(0xff00, 4) + little(0xff, 4) +
                               little(0xff000000, 4);
    return "DDS " + little(124, 4) + little(flags, 4) + little(size.height, 4) +
           little(size.width, 4) + little(size.width * 4, 4) + little(0, 8) +
           std::string(44, '\0') + format + little(0x1000, 4) + std::string(16, '\0') +
           grey(pixelsOf(size) * 4);
}

std::string pnm(const char* magic, ImageSize size, const char* greatest, std::size_t bytes)
{
    return std::string(magic) + '\n' + std::to_string(size.width) + ' ' +
           std::to_string(size.height) + '\n' + greatest + grey(bytes);
}

std::string ppm(ImageSize size)
{
    return pnm("P6", size, "255\n", pixelsOf(size) * 3);
}

std::string pgm(ImageSize size)
{
    return pnm("P5", size, "255\n", pixelsOf(size));
}

std::string pbm(ImageSize size)
{
    return pnm("P4", size, "", static_cast<std::size_t>((size.width + 7) / 8) * size.height);
}

std::string hdr(ImageSize size)
{
    return "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y " + std::to_string(size.height) + " +X " +
           std::to_string(size.width) + '\n' + grey(pixelsOf(size) * 4);
}

// TIFF

struct TiffTag
{
    uint32_t tag;
    uint32_t type; // 3: two bytes, 4: four bytes
    uint32_t count;
    uint32_t value; // or where the values stand that do not fit
};

enum class TiffSample
{
    Unsigned = 1,
    Float = 3
};

std::string tiff(ImageSize size, uint32_t bits, uint32_t samples, TiffSample kind)
{
    const std::string pixels = grey(pixelsOf(size) * bits / 8 * samples);
    const uint32_t begin = 8;
    const uint32_t end = begin + sizeOf(pixels);
    std::string depths;
    for (uint32_t i = 0; i < samples; ++i)
        depths += little(bits, 2);
    const TiffTag tags[] = {
        {256, 4, 1, static_cast<uint32_t>(size.width)},
        {257, 4, 1, static_cast<uint32_t>(size.height)},
        {258, 3, samples, samples > 2 ? end : bits},
        {259, 3, 1, 1},                     // not compressed
        {262, 3, 1, samples > 1 ? 2U : 1U}, // colours, or zero for black
        {273, 4, 1, begin},                 // where the pixels stand
        {277, 3, 1, samples},
        {278, 4, 1, static_cast<uint32_t>(size.height)},
        {279, 4, 1, sizeOf(pixels)},
        {339, 3, 1, static_cast<uint32_t>(kind)},
    };
    std::string directory = little(static_cast<uint32_t>(std::size(tags)), 2);
    for (const TiffTag& tag : tags)
        directory +=
            little(tag.tag, 2) + little(tag.type, 2) + little(tag.count, 4) + little(tag.value, 4);
    return "II" + little(42, 2) + little(end + sizeOf(depths), 4) + pixels + depths + directory +
           little(0, 4);
}

std::string tiff8(ImageSize size)
{
    return tiff(size, 8, 1, TiffSample::Unsigned);
}

std::string tiff16(ImageSize size)
{
    return tiff(size, 16, 1, TiffSample::Unsigned);
}

std::string tiffFloat(ImageSize size)
{
    return tiff(size, 32, 1, TiffSample::Float);
}

std::string tiffRgb(ImageSize size)
{
    return tiff(size, 8, 3, TiffSample::Unsigned);
}

// A camera's negative (DNG): a TIFF file whose pixels have one colour each.
struct DngTag
{
    uint32_t tag;
    uint32_t type;
    uint32_t count;
    std::string data;
};

std::string dng(ImageSize size)
{
    const uint32_t begin = 1024;
    const std::string pixels = grey(pixelsOf(size) * 2);
    const auto byte = [](uint32_t tag, const std::string& values) {
        return DngTag{tag, 1, sizeOf(values), values};
    };
    const auto word = [](uint32_t tag, uint32_t value) {
        return DngTag{tag, 3, 1, little(value, 2)};
    };
    const auto number = [](uint32_t tag, uint32_t value) {
        return DngTag{tag, 4, 1, little(value, 4)};
    };
    const auto text = [](uint32_t tag, const std::string& value) {
        return DngTag{tag, 2, sizeOf(value) + 1, value + '\0'};
    };
    const std::string one = little(1, 4) + little(1, 4);
    const std::string none = little(0, 4) + little(1, 4);
    const DngTag tags[] = {
        number(254, 0),
        number(256, static_cast<uint32_t>(size.width)),
        number(257, static_cast<uint32_t>(size.height)),
        word(258, 16),
        word(259, 1),     // not compressed
        word(262, 32803), // a filter of colours
        text(271, "Maker"),
        text(272, "Model"),
        number(273, begin),
        word(277, 1),
        number(278, static_cast<uint32_t>(size.height)),
        number(279, sizeOf(pixels)),
        {33421, 3, 2, little(2, 2) + little(2, 2)}, // the filter repeats after 2 by 2 pixels
        byte(33422, std::string("\0\1\1\2", 4)),    // red, green, green, blue
        byte(50706, std::string("\1\4\0\0", 4)),    // version of the format
        text(50708, "Maker Model"),
        number(50717, 65535),                                                      // white
        {50721, 10, 9, one + none + none + none + one + none + none + none + one}, // of colours
        {50728, 5, 3, one + one + one},                                            // neutral
        word(50778, 21),                                                           // daylight
    };
    const auto count = static_cast<uint32_t>(std::size(tags));
    std::string directory = little(count, 2);
    std::string values;
    for (const DngTag& tag : tags) {
        const bool isShort = tag.data.size() <= 4;
        const uint32_t place = 8 + 2 + count * 12 + 4 + sizeOf(values);
        directory +=
            little(tag.tag, 2) + little(tag.type, 2) + little(tag.count, 4) +
            (isShort ? tag.data + std::string(4 - tag.data.size(), '\0') : little(place, 4));
        values += isShort ? "" : tag.data + std::string(tag.data.size() % 2, '\0');
    }
    std::string head = "II" + little(42, 2) + little(8, 4) + directory + little(0, 4) + values;
    head.resize(begin, '\0');
    return head + pixels;
}

// GIF: a code for each pixel, and the table begun anew before the codes grow beyond a byte.
std::string gif(ImageSize size)
{
    const char clear = '\x80';
    const char end = '\x81';
    std::string codes;
    for (std::size_t left = pixelsOf(size); left > 0;) {
        const std::size_t count = std::min<std::size_t>(left, 100);
        codes += clear + std::string(count, '\0');
        left -= count;
    }
    codes += end;
    std::string blocks;
    for (std::size_t i = 0; i < codes.size(); i += 255) {
        const std::string block = codes.substr(i, 255);
        blocks += little(sizeOf(block), 1) + block;
    }
    const std::string area = little(size.width, 2) + little(size.height, 2);
    return "GIF89a" + area + std::string("\xf6\0\0", 3) + grey(std::size_t{128} * 3) + "," +
           little(0, 4) + area + '\0' + '\7' + blocks + '\0' + ";";
}

// WebP, of the kind without losses: each channel has one value, which takes no bits per pixel.
std::string webp(ImageSize size)
{
    const uint32_t oneSymbolOfAByte = 0x5;
    LittleBits bits;
    bits.add(0x2f, 8).add(size.width - 1, 14).add(size.height - 1, 14).add(0, 1 + 3 + 3);
    for (int channel = 0; channel < 4; ++channel)
        bits.add(oneSymbolOfAByte, 3).add(0x80, 8);
    bits.add(1, 3).add(0, 1); // distances, which are never met
    std::string data = bits.bytes();
    const std::string chunk =
        "VP8L" + little(sizeOf(data), 4) + data + std::string(data.size() % 2, '\0');
    return "RIFF" + little(sizeOf(chunk) + 4, 4) + "WEBP" + chunk;
}

// EXR: three channels of 16 bits, not compressed.
std::string exr(ImageSize size)
{
    const auto attribute = [](const std::string& name, const std::string& type,
                              const std::string& data) {
        return name + '\0' + type + '\0' + little(sizeOf(data), 4) + data;
    };
    const std::string window =
        little(0, 8) + little(size.width - 1, 4) + little(size.height - 1, 4);
    const std::string one = little(0x3f800000, 4);
    std::string channels;
    for (const char* name : {"B", "G", "R"})
        channels +=
            name + std::string(1, '\0') + little(1, 4) + little(0, 4) + little(1, 4) + little(1, 4);
    const std::string header =
        little(20000630, 4) + little(2, 4) + attribute("channels", "chlist", channels + '\0') +
        attribute("compression", "compression", little(0, 1)) +
        attribute("dataWindow", "box2i", window) + attribute("displayWindow", "box2i", window) +
        attribute("lineOrder", "lineOrder", little(0, 1)) +
        attribute("pixelAspectRatio", "float", one) +
        attribute("screenWindowCenter", "v2f", std::string(8, '\0')) +
        attribute("screenWindowWidth", "float", one) + '\0';
    const std::string line(static_cast<std::size_t>(size.width) * 6, '\x3c');
    std::string places;
    std::string lines;
    for (int y = 0; y < size.height; ++y) {
        places += little(sizeOf(header) + size.height * 8 + sizeOf(lines), 8);
        lines += little(y, 4) + little(sizeOf(line), 4) + line;
    }
    return header + places + lines;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const ImageFormat& format)
{
    return stream << format.name;
}

std::vector<ImageFormat> imageFormats()
{
    return {
        {"Bmp", "bmp", &bmp},
        {"Dds", "dds", &dds},
        {"Exr", "exr", &exr},
        {"Gif", "gif", &gif},
        {"Hdr", "hdr", &hdr},
        {"Ico", "ico", &ico},
        {"Jpeg", "jpg", &jpeg},
        {"Pbm", "pbm", &pbm},
        {"Pgm", "pgm", &pgm},
        {"PngOf16Bits", "png", &pngDeep},
        {"PngOfGreys", "png", &pngGrey},
        {"PngWithAlpha", "png", &pngRgba},
        {"PngWithPalette", "png", &pngPalette},
        {"PngWithoutAlpha", "png", &pngRgb},
        {"Ppm", "ppm", &ppm},
        {"Psd", "psd", &psd},
        {"TgaWithAlpha", "tga", &tgaRgba},
        {"TgaWithoutAlpha", "tga", &tgaRgb},
        {"TiffOf16Bits", "tif", &tiff16},
        {"TiffOf8Bits", "tif", &tiff8},
        {"TiffOfColours", "tif", &tiffRgb},
        {"TiffOfFloats", "tif", &tiffFloat},
        {"WebP", "webp", &webp},
    };
}

std::string aPng(ImageSize size)
{
    return pngRgb(size);
}

std::string aPngWithPalette(ImageSize size)
{
    return pngPalette(size);
}

std::string aCameraFile(ImageSize size)
{
    return dng(size);
}

std::string aBmp(ImageSize size)
{
    return bmp(size);
}

} // namespace TestSupport

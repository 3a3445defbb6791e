#include "support/hostilepictures.h"

#include "support/bytes.h"
#include "support/paths.h"
#include "support/sampleimages.h"
#include <fstream>
#include <iterator>
#include <ostream>

namespace TestSupport {

namespace {

std::string zeros(std::size_t count)
{
    return std::string(count, '\0');
}

// A file of tests/data/pictures with another byte at a place.
std::string changed(const std::string& name, std::size_t place, char byte)
{
    std::ifstream file(sourcePath("tests/data/pictures/" + name), std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    bytes.at(place) = byte;
    return bytes;
}

// --- Icons

std::string icon(int width, int height, int depth, std::size_t size)
{
    const std::string header = little(40, 4) + little(width, 4) + little(height, 4) + little(1, 2) +
                               little(depth, 2) + zeros(24);
    std::string bytes = little(0, 2) + little(1, 2) + little(1, 2) + "\x10\x10" + zeros(2) +
                        little(1, 2) + little(32, 2) + little(size - 22, 4) + little(22, 4) +
                        header;
    bytes.resize(size, '\x80');
    return bytes;
}

std::string iconOfDepth13600()
{
    return icon(16, 32, 13600, 894);
}

std::string iconOfWidthMinusOne()
{
    return icon(-1, 32, 32, 894);
}

std::string iconOfHeightMinus32()
{
    return icon(16, -32, 32, 894);
}

std::string cutIcon()
{
    return icon(16, 32, 24, 766);
}

// --- Photoshop

std::string psd(int channels, int depth, int mode, const std::string& rest)
{
    return "8BPS" + big(1, 2) + zeros(6) + big(channels, 2) + big(4, 4) + big(4, 4) +
           big(depth, 2) + big(mode, 2) + rest;
}

std::string psdOfLongRuns()
{
    std::string runs;
    for (int i = 0; i < 200; ++i)
        runs += "\x81\x55";
    return psd(3, 8, 3, zeros(12) + big(1, 2) + std::string(24, '\xff') + runs);
}

std::string psdOf60000Channels()
{
    return psd(60000, 8, 3, zeros(14) + zeros(48));
}

std::string psdOfDepth85()
{
    return changed("psd-imagemagick.psd", 23, 85);
}

std::string psdOfNothing()
{
    return psd(3, 8, 3, zeros(14) + zeros(48)).substr(0, 88 - 30);
}

// --- Formats of a header and pixels

std::string ras(unsigned width, unsigned height, unsigned type, unsigned colours)
{
    return big(0x59a66a95, 4) + big(width, 4) + big(height, 4) + big(24, 4) + big(0, 4) +
           big(type, 4) + big(1, 4) + big(colours, 4);
}

std::string rasOfManyColours()
{
    return ras(16, 16, 1, 0x7fffffff);
}

std::string rasOfAHeader()
{
    return ras(8000, 8000, 2, 0);
}

std::string rasOfLongLines()
{
    return changed("ras-imagemagick.ras", 5, 1);
}

std::string dds(unsigned width, unsigned height, unsigned flags, const std::string& code)
{
    return "DDS " + little(124, 4) + little(0x1007, 4) + little(height, 4) + little(width, 4) +
           zeros(56) + little(32, 4) + little(flags, 4) + code + little(32, 4) +
           little(0xff0000, 4) + little(0xff00, 4) + little(0xff, 4) + little(0xff000000, 4) +
           little(0x1000, 4) + zeros(16);
}

std::string ddsOfGigabytes()
{
    return dds(26000, 25000, 0x41, zeros(4));
}

std::string ddsOfNegativeWidth()
{
    return dds(0xffffffff, 4, 4, "DXT5") + zeros(16);
}

std::string sgi(unsigned width, unsigned height, unsigned channels, bool isPacked)
{
    return big(0x01da, 2) + (isPacked ? '\1' : '\0') + '\1' + big(3, 2) + big(width, 2) +
           big(height, 2) + big(channels, 2) + zeros(500);
}

std::string sgiOfGigabytes()
{
    return sgi(65535, 65535, 4, false);
}

std::string sgiOfManyRuns()
{
    return sgi(1, 65535, 65535, true);
}

std::string sgiOfAHeader()
{
    return sgi(8000, 8000, 4, false);
}

std::string iff(unsigned width, unsigned height, char planes, char packing)
{
    const std::string size = big(width, 2) + big(height, 2);
    const std::string header = size + zeros(4) + planes + '\0' + packing + zeros(3) + "\1\1" + size;
    return "FORM" + big(48, 4) + "ILBMBMHD" + big(20, 4) + header + "BODY" + big(100, 4);
}

std::string iffOfAHeader()
{
    return iff(8000, 8000, 24, 0);
}

std::string iffOfManyLines()
{
    return iff(65535, 1000, 8, 1);
}

std::string ppmOfAHeader()
{
    return "P6\n8000 8000\n255\n";
}

std::string ppmOfText()
{
    return "P3\n8000 8000\n255\n1 2";
}

std::string gifOfGigabytes()
{
    const std::string size = little(65535, 2) + little(65535, 2);
    return "GIF89a" + size + '\xf0' + zeros(8) + ',' + zeros(4) + size + '\0' + "\2\1" + zeros(2) +
           ';';
}

std::string pcxOfLongLines()
{
    return changed("pcx-imagemagick.pcx", 9, '\xff');
}

std::string pictOfLongRuns()
{
    return changed("pict-netpbm.pict", 2247, '\x80');
}

// --- Formats of text and of chunks

std::string xbmWithoutAnEnd()
{
    return "#define a_width 16\n#define a_height 2\nstatic char a_bits[] = {\n 0x01, 0x02";
}

std::string xbmOfManyPixels()
{
    return "#define a_width 60000\n#define a_height 60000\nstatic char a_bits[] = {\n 0x01};";
}

std::string mngOfEightBytes()
{
    return "\x8aMNG\r\n\x1a\n";
}

// 33 kB, and a gigabyte when it is unpacked.
std::string pngOfManyPixels()
{
    return aPngWithPalette({16384, 16384});
}

// --- EXR

std::string exr(int width, int height, bool hasTiles)
{
    const auto attribute = [](const std::string& name, const std::string& type,
                              const std::string& data) {
        return name + '\0' + type + '\0' + little(data.size(), 4) + data;
    };
    const std::string window = zeros(8) + little(width - 1, 4) + little(height - 1, 4);
    const std::string one = little(0x3f800000, 4);
    std::string channels;
    for (const char* name : {"B", "G", "R"})
        channels += name + zeros(1) + little(1, 4) + zeros(4) + little(1, 4) + little(1, 4);
    std::string bytes = little(20000630, 4) + little(hasTiles ? 0x202 : 2, 4) +
                        attribute("channels", "chlist", channels + '\0') +
                        attribute("compression", "compression", zeros(1)) +
                        attribute("dataWindow", "box2i", window) +
                        attribute("displayWindow", "box2i", window) +
                        attribute("lineOrder", "lineOrder", zeros(1)) +
                        attribute("pixelAspectRatio", "float", one) +
                        attribute("screenWindowCenter", "v2f", zeros(8)) +
                        attribute("screenWindowWidth", "float", one);
    if (hasTiles)
        bytes += attribute("tiles", "tiledesc", little(1, 4) + little(1, 4) + '\0');
    bytes.resize(3600, '\0');
    return bytes;
}

std::string exrOfManyLines()
{
    return exr(1, 60000000, false);
}

std::string exrOfManyTiles()
{
    return exr(8000, 8000, true);
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const HostilePicture& picture)
{
    return stream << picture.name;
}

std::vector<HostilePicture> hostilePictures()
{
    return {
        {"CutIcon", "ico", &cutIcon},
        {"DdsOfGigabytes", "dds", &ddsOfGigabytes},
        {"DdsOfNegativeWidth", "dds", &ddsOfNegativeWidth},
        {"ExrOfManyLines", "exr", &exrOfManyLines},
        {"ExrOfManyTiles", "exr", &exrOfManyTiles},
        {"GifOfGigabytes", "gif", &gifOfGigabytes},
        {"IconOfDepth13600", "ico", &iconOfDepth13600},
        {"IconOfHeightMinus32", "ico", &iconOfHeightMinus32},
        {"IconOfWidthMinusOne", "ico", &iconOfWidthMinusOne},
        {"IffOfAHeader", "iff", &iffOfAHeader},
        {"IffOfManyLines", "iff", &iffOfManyLines},
        {"MngOfEightBytes", "mng", &mngOfEightBytes},
        {"PcxOfLongLines", "pcx", &pcxOfLongLines},
        {"PictOfLongRuns", "pict", &pictOfLongRuns},
        {"PngOfManyPixels", "png", &pngOfManyPixels},
        {"PpmOfAHeader", "ppm", &ppmOfAHeader},
        {"PpmOfText", "ppm", &ppmOfText},
        {"PsdOf60000Channels", "psd", &psdOf60000Channels},
        {"PsdOfDepth85", "psd", &psdOfDepth85},
        {"PsdOfLongRuns", "psd", &psdOfLongRuns},
        {"PsdOfNothing", "psd", &psdOfNothing},
        {"RasOfAHeader", "ras", &rasOfAHeader},
        {"RasOfLongLines", "ras", &rasOfLongLines},
        {"RasOfManyColours", "ras", &rasOfManyColours},
        {"SgiOfAHeader", "sgi", &sgiOfAHeader},
        {"SgiOfGigabytes", "sgi", &sgiOfGigabytes},
        {"SgiOfManyRuns", "sgi", &sgiOfManyRuns},
        {"XbmOfManyPixels", "xbm", &xbmOfManyPixels},
        {"XbmWithoutAnEnd", "xbm", &xbmWithoutAnEnd},
    };
}

} // namespace TestSupport

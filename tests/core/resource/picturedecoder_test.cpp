#include "resource/picturedecoder.h"

#include "resource/pictureanswer.h"
#include "support/paths.h"
#include "support/sampleimages.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include <QFile>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;

using Picture = std::shared_ptr<const DecodedPicture>;

Picture decode(const std::string& path, const PictureDecoder& decoder = PictureDecoder())
{
    QFile file(QString::fromStdString(path));
    file.open(QIODevice::ReadOnly);
    return decoder.decode(file, QString::fromStdString(path.substr(path.rfind('.') + 1)));
}

bool hasChildren()
{
    return waitpid(-1, nullptr, WNOHANG) >= 0 || errno != ECHILD;
}

long openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

// --- Pictures by other programs

std::string pathOf(const std::string& file)
{
    return sourcePath("tests/data/pictures/" + file);
}

std::string bytesOf(const std::string& file)
{
    QFile source(QString::fromStdString(pathOf(file)));
    EXPECT_TRUE(source.open(QIODevice::ReadOnly));
    return source.readAll().toStdString();
}

constexpr int Width = 16;
constexpr int Height = 12;

struct Colour
{
    int red;
    int green;
    int blue;
};

// The patterns that tests/data/pictures/README.md describes.
Colour colourAt(int x, int y)
{
    return {x * 17, y * 23, (x * 5 + y * 7) % 8 * 36};
}
Colour greyAt(int x, int y)
{
    const int grey = (x * 16 + y * 5) % 256;
    return {grey, grey, grey};
}
Colour monoAt(int x, int y)
{
    const int grey = (x * x + 3 * y) % 5 < 2 ? 0 : 255;
    return {grey, grey, grey};
}

// Returns the greatest difference of a channel, alpha included, from an opaque pattern.
int distance(const DecodedPicture& picture, Colour (*pattern)(int, int))
{
    int result = 0;
    for (int i = 0; i < Width * Height; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, picture.pixels() + std::size_t(i) * 4, 4);
        const Colour wanted = pattern(i % Width, i / Width);
        const auto channel = [pixel](int place) { return static_cast<int>(pixel >> place & 255); };
        result =
            std::max({result, std::abs(channel(24) - 255), std::abs(channel(16) - wanted.red),
                      std::abs(channel(8) - wanted.green), std::abs(channel(0) - wanted.blue)});
    }
    return result;
}

struct ForeignCase
{
    const char* name;
    const char* file;
    Colour (*pattern)(int, int) = &colourAt;
    int tolerance = 0;
    bool isDegraded = false;
};

class ForeignPicture : public testing::TestWithParam<ForeignCase>
{};

TEST_P(ForeignPicture, IsDecodedToItsPixels)
{
    const Picture picture = decode(pathOf(GetParam().file));

    ASSERT_NE(picture, nullptr);
    ASSERT_EQ(picture->size(), QSize(Width, Height));
    EXPECT_LE(distance(*picture, GetParam().pattern), GetParam().tolerance);
    EXPECT_EQ(picture->isDegraded(), GetParam().isDegraded);
}

INSTANTIATE_TEST_SUITE_P(
    Files, ForeignPicture,
    testing::Values(
        ForeignCase{"Bmp2OfImageMagick", "bmp2-imagemagick.bmp"},
        ForeignCase{"Bmp3OfImageMagick", "bmp3-imagemagick.bmp"},
        ForeignCase{"Bmp5OfImageMagick", "bmp5-imagemagick.bmp"},
        ForeignCase{"Bmp5PaletteOfImageMagick", "bmp5-palette-imagemagick.bmp"},
        ForeignCase{"BmpOfFfmpeg", "bmp-ffmpeg.bmp"}, ForeignCase{"BmpOfNetpbm", "bmp-netpbm.bmp"},
        ForeignCase{"DdsOfImageMagick", "dds-imagemagick.dds"},
        ForeignCase{"ExrOfFfmpeg", "exr-ffmpeg.exr", &colourAt, 0, true},
        ForeignCase{"ExrOfImageMagick", "exr-imagemagick.exr", &colourAt, 0, true},
        ForeignCase{"GifOfGraphicsMagick", "gif-graphicsmagick.gif"},
        ForeignCase{"GifOfNetpbm", "gif-netpbm.gif"},
        ForeignCase{"HdrOfImageMagick", "hdr-imagemagick.hdr", &colourAt, 2, true},
        ForeignCase{"IcoOfImageMagick", "ico-imagemagick.ico"},
        ForeignCase{"IcoOfNetpbm", "ico-netpbm.ico"}, ForeignCase{"IffOfNetpbm", "iff-netpbm.iff"},
        ForeignCase{"J2kOfImageMagick", "j2k-imagemagick.j2k"},
        ForeignCase{"J2kOfOpenJpeg", "j2k-openjpeg.j2k"},
        ForeignCase{"JngOfGraphicsMagick", "jng-graphicsmagick.jng", &greyAt, 15},
        ForeignCase{"JngOfImageMagick", "jng-imagemagick.jng", &greyAt, 15},
        ForeignCase{"Jp2OfFfmpeg", "jp2-ffmpeg.jp2", &colourAt, 2},
        ForeignCase{"Jp2OfOpenJpeg", "jp2-openjpeg.jp2"},
        ForeignCase{"JpegOfImageMagick", "jpg-imagemagick.jpg", &greyAt, 15},
        ForeignCase{"JpegOfNetpbm", "jpg-netpbm.jpg", &greyAt, 15},
        ForeignCase{"MngOfGraphicsMagick", "mng-graphicsmagick.mng"},
        ForeignCase{"MngOfImageMagick", "mng-imagemagick.mng"},
        ForeignCase{"PbmOfImageMagick", "pbm-imagemagick.pbm", &monoAt},
        ForeignCase{"PcxOf24BitsOfNetpbm", "pcx24-netpbm.pcx"},
        ForeignCase{"PcxOfFfmpeg", "pcx-ffmpeg.pcx"},
        ForeignCase{"PcxOfGraphicsMagick", "pcx-graphicsmagick.pcx"},
        ForeignCase{"PcxOfGreysOfImageMagick", "pcx-grey-imagemagick.pcx", &greyAt},
        ForeignCase{"PcxOfImageMagick", "pcx-imagemagick.pcx"},
        ForeignCase{"PcxOfOneBitOfImageMagick", "pcx-mono-imagemagick.pcx", &monoAt},
        ForeignCase{"PcxWithAPaletteOfImageMagick", "pcx-palette-imagemagick.pcx"},
        ForeignCase{"PcxWithAPaletteOfNetpbm", "pcx-netpbm.pcx"},
        ForeignCase{"PfmOfFfmpeg", "pfm-ffmpeg.pfm", &colourAt, 0, true},
        ForeignCase{"PgmOfImageMagick", "pgm-imagemagick.pgm", &greyAt},
        ForeignCase{"PictOfGraphicsMagick", "pict-graphicsmagick.pict"},
        ForeignCase{"PictOfImageMagick", "pict-imagemagick.pict"},
        ForeignCase{"PictOfNetpbm", "pict-netpbm.pict"},
        ForeignCase{"PngInterlacedOfImageMagick", "png-interlaced-imagemagick.png"},
        ForeignCase{"PngOfFfmpeg", "png-ffmpeg.png"}, ForeignCase{"PngOfNetpbm", "png-netpbm.png"},
        ForeignCase{"PpmOfImageMagick", "ppm-imagemagick.ppm"},
        ForeignCase{"PsbOfImageMagick", "psb-imagemagick.psb"},
        ForeignCase{"PsdOfImageMagick", "psd-imagemagick.psd"}),
    caseName<ForeignCase>);

INSTANTIATE_TEST_SUITE_P(
    MoreFiles, ForeignPicture,
    testing::Values(ForeignCase{"RasOfFfmpeg", "ras-ffmpeg.ras"},
                    ForeignCase{"RasOfImageMagick", "ras-imagemagick.ras"},
                    ForeignCase{"SgiOfFfmpeg", "sgi-ffmpeg.sgi"},
                    ForeignCase{"SgiOfImageMagick", "sgi-imagemagick.sgi"},
                    ForeignCase{"SgiOfNetpbm", "sgi-netpbm.sgi"},
                    ForeignCase{"TargaOfFfmpeg", "tga-ffmpeg.tga"},
                    ForeignCase{"TargaOfGraphicsMagick", "tga-graphicsmagick.tga"},
                    ForeignCase{"TargaOfNetpbm", "tga-netpbm.tga"},
                    ForeignCase{"TiffFaxOfImageMagick", "tif-fax-imagemagick.tif", &monoAt},
                    ForeignCase{"TiffLzwOfImageMagick", "tif-lzw-imagemagick.tif"},
                    ForeignCase{"TiffOf16BitsOfImageMagick", "tif16-imagemagick.tif", &colourAt, 0,
                                true},
                    ForeignCase{"TiffOfFfmpeg", "tif-ffmpeg.tif"},
                    ForeignCase{"TiffOfNetpbm", "tif-netpbm.tif"},
                    ForeignCase{"TiffZipOfImageMagick", "tif-zip-imagemagick.tif"},
                    ForeignCase{"WbmpOfImageMagick", "wbmp-imagemagick.wbmp", &monoAt},
                    ForeignCase{"WbmpOfNetpbm", "wbmp-netpbm.wbmp", &monoAt},
                    ForeignCase{"WebpOfCwebp", "webp-cwebp.webp"},
                    ForeignCase{"XbmOfImageMagick", "xbm-imagemagick.xbm", &monoAt},
                    ForeignCase{"XbmOfNetpbm", "xbm-netpbm.xbm", &monoAt},
                    ForeignCase{"XpmOfImageMagick", "xpm-imagemagick.xpm"},
                    ForeignCase{"XpmOfNetpbm", "xpm-netpbm.xpm"}),
    caseName<ForeignCase>);

// Returns the numbers of bytes without which another picture is decoded.
std::string wrongCuts(const ForeignCase& sample)
{
    const TemporaryDirectory directory;
    const std::string bytes = bytesOf(sample.file);
    std::string wrong;
    for (const std::size_t missing :
         {bytes.size() / 2, bytes.size() / 5, std::size_t(13), std::size_t(1)}) {
        const std::string path =
            directory.write(sample.file, bytes.substr(0, bytes.size() - missing));
        const Picture picture = decode(path);
        if (picture != nullptr && distance(*picture, sample.pattern) > sample.tolerance)
            wrong += " " + std::to_string(missing);
    }
    return wrong;
}

TEST_P(ForeignPicture, IsRefusedCutUnlessOnlyWhatDoesNotMatterIsMissing)
{
    EXPECT_EQ(wrongCuts(GetParam()), "");
}

// No program in Debian writes such a file.
TEST(CameraPicture, IsDecodedWhole)
{
    const TemporaryDirectory directory;
    const std::string bytes = aCameraFile({256, 200});

    const Picture picture = decode(directory.write("a.dng", bytes));

    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->size(), QSize(256, 200));
    EXPECT_EQ(decode(directory.write("b.dng", bytes.substr(0, bytes.size() - 2))), nullptr);
    EXPECT_EQ(decode(directory.write("c.dng", bytes.substr(0, bytes.size() / 2))), nullptr);
}

TEST(UnmarkedPicture, OfPhotoCdIsKnownByItsEnding)
{
    const TemporaryDirectory directory;
    const std::string size("\0\x0c\x08\0", 4); // 788480, as qUncompress() wants it
    const std::string bytes =
        qUncompress(QByteArray::fromStdString(size + bytesOf("pcd-imagemagick.pcd.z")))
            .toStdString();

    const Picture picture = decode(directory.write("a.pcd", bytes));

    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->size(), QSize(768, 512));
    EXPECT_EQ(decode(directory.write("a.else", bytes)), nullptr);
}

// Two lines of three pixels, in runs, without a palette of their own.
TEST(UnmarkedPicture, OfDrHaloIsKnownByItsEnding)
{
    const TemporaryDirectory directory;
    const std::string bytes("\3\0\2\0\0\0\3\0\x83\7\0\5\0\3\1\2\3\0", 18);

    const Picture picture = decode(directory.write("a.cut", bytes));

    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->size(), QSize(3, 2));
    EXPECT_EQ(decode(directory.write("a.else", bytes)), nullptr);
}

TEST(UnmarkedPicture, OfWirelessBitmapIsNotKnownByItsContent)
{
    const TemporaryDirectory directory;
    std::filesystem::copy(pathOf("wbmp-netpbm.wbmp"), directory.path("a.else"));

    EXPECT_EQ(decode(directory.path("a.else")), nullptr);
}

// --- Damage of which the decoders of others make a picture

// A PCX file of 16 by 2 pixels of three colours, with these runs.
std::string pcxOf(const std::string& runs)
{
    std::string header = bytesOf("pcx-imagemagick.pcx").substr(0, 128);
    header[10] = 1; // the last line
    return header + runs;
}

// The decoder drops what a run has beyond its line, and then takes other bytes for the missing ones.
TEST(DamagedPicture, OfPcxLacksWhatARunHasBeyondItsLine)
{
    const TemporaryDirectory directory;

    EXPECT_NE(decode(directory.write("a.pcx", pcxOf("\xf0\x55\xf0\x55"))), nullptr);
    EXPECT_EQ(decode(directory.write("b.pcx", pcxOf("\xff\x55\xe1\x55"))), nullptr);
}

// --- The process

TEST(PictureDecoderProcess, LeavesNothingBehind)
{
    const std::string path = pathOf("png-netpbm.png");
    const long before = openDescriptors();
    EXPECT_NE(decode(path), nullptr);
    EXPECT_EQ(decode(sourcePath("CMakeLists.txt")), nullptr);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

TEST(PictureDecoderProcess, ReadsTheFileFromItsBeginning)
{
    QFile file(QString::fromStdString(pathOf("png-netpbm.png")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    file.read(100);

    EXPECT_NE(PictureDecoder().decode(file, "png"), nullptr);
}

TEST(PictureDecoderProcess, HasToBeThere)
{
    const long before = openDescriptors();
    EXPECT_EQ(decode(pathOf("png-netpbm.png"), PictureDecoder("/nowhere")), nullptr);
    EXPECT_EQ(openDescriptors(), before);
}

// Programs in place of the real one. Each is a script, and gets the descriptors of the real one.
class FakeDecoder : public testing::Test
{
protected:
    Picture answer(const std::string& script,
                   std::chrono::milliseconds patience = std::chrono::minutes(1))
    {
        directory.write("decoder", "#!/bin/sh\n" + script);
        directory.setMode("decoder", 0755);
        const PictureDecoder decoder(QString::fromStdString(directory.path("decoder")), patience);
        return decode(directory.write("a.png", "bytes"), decoder);
    }

    TemporaryDirectory directory;
};

// Answers with a picture of 16 by 12 pixels.
const std::string Sound = "head -c 768 /dev/zero >&4\n"
                          "printf 'PXSK\\1\\0\\0\\0\\20\\0\\0\\0\\14\\0\\0\\0' >&3\n";

TEST_F(FakeDecoder, IsBelievedASoundAnswer)
{
    const Picture picture = answer(Sound);

    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->size(), QSize(16, 12));
    EXPECT_EQ(picture->pixels()[767], 0);
}

TEST_F(FakeDecoder, IsGivenNoOtherDescriptors)
{
    const int kept = dup2(STDERR_FILENO, 57); // without FD_CLOEXEC
    const Picture picture = answer("[ ! -e /proc/$$/fd/57 ] || exit 1\n" + Sound);
    close(kept);
    EXPECT_NE(picture, nullptr);
}

TEST_F(FakeDecoder, IsGivenNoEnvironment)
{
    setenv("KESTRIX_TEST_SECRET", "1", 1);
    EXPECT_NE(answer("[ -z \"$KESTRIX_TEST_SECRET\" ] || exit 1\n" + Sound), nullptr);
}

// A decoder that forgets to write a part of a picture leaves the same there in every run.
TEST_F(FakeDecoder, IsToldToFillItsMemory)
{
    EXPECT_NE(answer("echo $GLIBC_TUNABLES | grep -q perturb=255 || exit 1\n" + Sound), nullptr);
}

TEST_F(FakeDecoder, CannotWriteToTheTerminal)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    answer("echo word; echo word >&2\n" + Sound);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FakeDecoder, IsEndedWithItsAnswer)
{
    answer(Sound + "exec sleep 1000\n");
    EXPECT_FALSE(hasChildren());
}

struct AnswerCase
{
    const char* name;
    const char* script;
};

class BadAnswer : public FakeDecoder, public testing::WithParamInterface<AnswerCase>
{};

TEST_P(BadAnswer, IsNoPicture)
{
    const long before = openDescriptors();
    EXPECT_EQ(answer(GetParam().script, std::chrono::seconds(1)), nullptr);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_FALSE(hasChildren());
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, BadAnswer,
    testing::Values(
        AnswerCase{"Crash", "kill -SEGV $$\n"}, AnswerCase{"End", "exit 0\n"},
        AnswerCase{"Silence", "exec sleep 1000\n"},
        AnswerCase{"ClosedAndAlive", "exec 3>&-\nexec sleep 1000\n"},
        AnswerCase{"Part", "head -c 768 /dev/zero >&4\nprintf 'PXSK\\1\\0\\0\\0\\20' >&3\n"},
        AnswerCase{"PartAndSilence", "printf 'PXSK\\1\\0\\0\\0\\20' >&3\nexec sleep 1000\n"},
        AnswerCase{"NoPixels", "printf 'PXSK\\1\\0\\0\\0\\20\\0\\0\\0\\14\\0\\0\\0' >&3\n"},
        AnswerCase{"OnePixelMissing", "head -c 764 /dev/zero >&4\n"
                                      "printf 'PXSK\\1\\0\\0\\0\\20\\0\\0\\0\\14\\0\\0\\0' >&3\n"},
        AnswerCase{"OnePixelMore", "head -c 772 /dev/zero >&4\n"
                                   "printf 'PXSK\\1\\0\\0\\0\\20\\0\\0\\0\\14\\0\\0\\0' >&3\n"},
        AnswerCase{"AnotherMark", "head -c 768 /dev/zero >&4\n"
                                  "printf 'PXSX\\1\\0\\0\\0\\20\\0\\0\\0\\14\\0\\0\\0' >&3\n"},
        AnswerCase{"Refusal", "head -c 768 /dev/zero >&4\n"
                              "printf 'PXSK\\0\\0\\0\\0\\20\\0\\0\\0\\14\\0\\0\\0' >&3\n"},
        AnswerCase{"UnknownKind", "head -c 768 /dev/zero >&4\n"
                                  "printf 'PXSK\\3\\0\\0\\0\\20\\0\\0\\0\\14\\0\\0\\0' >&3\n"},
        AnswerCase{"NoWidth", "printf 'PXSK\\1\\0\\0\\0\\0\\0\\0\\0\\14\\0\\0\\0' >&3\n"},
        AnswerCase{"OverflowingSize",
                   "printf 'PXSK\\1\\0\\0\\0\\0\\0\\0\\200\\0\\0\\0\\200' >&3\n"},
        AnswerCase{"TooLarge", "truncate -s 268435460 /proc/self/fd/4\n"
                               "printf 'PXSK\\1\\0\\0\\0\\1\\0\\0\\4\\1\\0\\0\\0' >&3\n"}),
    caseName<AnswerCase>);

} // namespace

#include "imageformats/freeimageioplugin.h"

#include "imageformats/sampleimages.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <QFile>
#include <QImageIOHandler>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

using Orv::ImageFormats::FreeImageIOPlugin;
using namespace TestSupport;

namespace {

constexpr int None = 0;
constexpr int Read = QImageIOPlugin::CanRead;
constexpr int ReadAndWrite = QImageIOPlugin::CanRead | QImageIOPlugin::CanWrite;

// The keys of the metadata file, from which Qt takes them.
QStringList keysOfMetaData()
{
    QFile file(
        QString::fromStdString(TestSupport::sourcePath("imageformats/freeimageioplugin.json")));
    QStringList keys;
    if (file.open(QIODevice::ReadOnly))
        for (const QJsonValue value : QJsonDocument::fromJson(file.readAll())
                                          .object()
                                          .value(QStringLiteral("Keys"))
                                          .toArray())
            keys += value.toString();
    return keys;
}

int capabilities(QIODevice* device, const char* format)
{
    return static_cast<int>(FreeImageIOPlugin().capabilities(device, format));
}

int capabilitiesOfContent(QByteArray content, QIODevice::OpenMode mode)
{
    QBuffer device(&content);
    device.open(mode);
    return capabilities(&device, "");
}

QByteArray pngFile()
{
    return fileOf(FIF_PNG, opaqueBitmap());
}

QByteArray gifFile()
{
    return fileOf(FIF_GIF, BitmapPointer(FreeImage_ConvertToGreyscale(opaqueBitmap().get())));
}

} // namespace

TEST(FreeImageIOPluginKeys, AreThoseOfTheMetaDataInTheSameOrder)
{
    EXPECT_EQ(FreeImageIOPlugin().keys(), keysOfMetaData());
}

TEST(FreeImageIOPluginKeys, BeginWithAllExtensionsOfTheFirstFormats)
{
    const QStringList first{"bmp", "ico", "jpg", "jif", "jpeg", "jpe", "jng"};
    EXPECT_EQ(FreeImageIOPlugin().keys().mid(0, first.size()), first);
}

TEST(FreeImageIOPluginName, IsTheClassWithItsNamespace)
{
    EXPECT_STREQ(FreeImageIOPlugin::staticMetaObject.className(),
                 "Orv::ImageFormats::FreeImageIOPlugin");
}

struct WordCase
{
    const char* name;
    const char* word;
    int expected;
};
class FreeImageIOPluginCapabilities : public testing::TestWithParam<WordCase>
{};
TEST_P(FreeImageIOPluginCapabilities, FollowTheFormatWord)
{
    EXPECT_EQ(capabilities(nullptr, GetParam().word), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Words, FreeImageIOPluginCapabilities,
                         testing::Values(WordCase{"Png", "png", ReadAndWrite},
                                         WordCase{"UpperCase", "PNG", ReadAndWrite},
                                         WordCase{"FormatName", "TARGA", ReadAndWrite},
                                         WordCase{"OtherExtension", "jpe", ReadAndWrite},
                                         WordCase{"GifIsReadOnly", "gif", Read},
                                         WordCase{"ReadOnlyInFreeImage", "pcx", Read},
                                         WordCase{"CameraRaw", "nef", Read},
                                         WordCase{"HighRangeHdr", "hdr", Read},
                                         WordCase{"HighRangeExr", "exr", Read},
                                         WordCase{"HighRangePfm", "pfm", Read},
                                         WordCase{"NeitherReadNorWritten", "g3", None},
                                         WordCase{"Unknown", "nonsense", None}),
                         caseName<WordCase>);

TEST(FreeImageIOPluginContent, OfAReadableDeviceGivesReading)
{
    EXPECT_EQ(capabilitiesOfContent(pngFile(), QIODevice::ReadOnly), Read);
}

TEST(FreeImageIOPluginContent, OfAWritableDeviceGivesWritingToo)
{
    EXPECT_EQ(capabilitiesOfContent(pngFile(), QIODevice::ReadWrite), ReadAndWrite);
}

TEST(FreeImageIOPluginContent, OfAWritableDeviceWithGifGivesReadingOnly)
{
    EXPECT_EQ(capabilitiesOfContent(gifFile(), QIODevice::ReadWrite), Read);
}

TEST(FreeImageIOPluginContent, OfAWriteOnlyDeviceGivesNothing)
{
    EXPECT_EQ(capabilitiesOfContent(pngFile(), QIODevice::WriteOnly), None);
}

TEST(FreeImageIOPluginContent, ThatIsNoImageGivesNothing)
{
    EXPECT_EQ(capabilitiesOfContent("no image at all, but some text", QIODevice::ReadOnly), None);
}

TEST(FreeImageIOPluginContent, ThatIsEmptyGivesNothing)
{
    EXPECT_EQ(capabilitiesOfContent("", QIODevice::ReadOnly), None);
}

TEST(FreeImageIOPluginContent, OfAClosedDeviceGivesNothing)
{
    QBuffer device;
    EXPECT_EQ(capabilities(&device, ""), None);
}

TEST(FreeImageIOPluginContent, IsNotAskedForWithoutADevice)
{
    EXPECT_EQ(capabilities(nullptr, ""), None);
}

TEST(FreeImageIOPluginContent, IsNotAskedForWhenThereIsAWord)
{
    QByteArray content = pngFile();
    QBuffer device(&content);
    device.open(QIODevice::ReadOnly);
    EXPECT_EQ(capabilities(&device, "gif"), Read);
    EXPECT_EQ(capabilities(&device, "nonsense"), None);
}

TEST(FreeImageIOPluginCreate, GivesTheHandlerDeviceAndFormat)
{
    QBuffer device;
    const FreeImageIOPlugin plugin;
    const std::unique_ptr<QImageIOHandler> handler(plugin.create(&device, "tga"));
    EXPECT_EQ(handler->device(), &device);
    EXPECT_EQ(handler->format(), "tga");
}

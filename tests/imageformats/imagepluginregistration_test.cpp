#include "imageformats/imagepluginregistration.h"

#include "imageformats/sampleimages.h"
#include "support/paths.h"
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QPluginLoader>
#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace TestSupport;
using Orv::ImageFormats::registerImagePlugin;
using testing::HasSubstr;

// moc exports both for a plug-in; here they are linked in.
extern "C" QObject* qt_plugin_instance();
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
extern "C" const char* qt_plugin_query_metadata();
static constexpr auto queryMetaData = &qt_plugin_query_metadata;
#else
extern "C" QPluginMetaData qt_plugin_query_metadata_v2();
static constexpr auto queryMetaData = &qt_plugin_query_metadata_v2;
#endif

namespace {

// A folder with a copy of the probe, where there is no library yet, and pictures to read.
class RegisteredPlugin : public testing::Test
{
protected:
    QString path(const char* name) const { return m_directory.filePath(QLatin1String(name)); }

    void putLibrary() const
    {
        const QString library = QStringLiteral(KESTRIX_IMAGE_PLUGIN);
        QFile::copy(library, m_directory.filePath(QFileInfo(library).fileName()));
    }

    void put(const char* name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
    }

    // What the probe prints when it reads the file of that name; empty when it crashes.
    std::string probe(const char* name) const
    {
        QFile::copy(QStringLiteral(KESTRIX_IMAGE_PROBE), path("probe"));
        QProcess process;
        process.start(path("probe"), {path(name)});
        process.waitForFinished();
        const bool hasEnded = process.exitStatus() == QProcess::NormalExit;
        return hasEnded && process.exitCode() == 0 ? process.readAllStandardOutput().toStdString()
                                                   : std::string();
    }

private:
    const QTemporaryDir m_directory;
};

QByteArray targaFile()
{
    return fileOf(FIF_TARGA, opaqueBitmap());
}

QByteArray hdrFile()
{
    return fileOf(FIF_HDR, BitmapPointer(FreeImage_ConvertToRGBF(opaqueBitmap().get())));
}

} // namespace

TEST_F(RegisteredPlugin, IsFoundByQtWithoutAPluginDirectory)
{
    putLibrary();
    put("picture.tga", targaFile());
    EXPECT_THAT(probe("picture.tga"), HasSubstr("size: 16x16\ndegraded: \n"));
}

TEST_F(RegisteredPlugin, ReadsByContentWhatTheNameDoesNotTell)
{
    putLibrary();
    put("picture.unknown", targaFile());
    EXPECT_THAT(probe("picture.unknown"), HasSubstr("size: 16x16"));
}

TEST_F(RegisteredPlugin, ReadsHighRangeFilesThroughQt)
{
    putLibrary();
    put("picture.hdr", hdrFile());
    EXPECT_THAT(probe("picture.hdr"), HasSubstr("size: 16x16\ndegraded: true\n"));
}

TEST_F(RegisteredPlugin, TellsQtItsFormats)
{
    putLibrary();
    EXPECT_THAT(probe("missing"), HasSubstr("knows exr: 1"));
}

TEST_F(RegisteredPlugin, IsRegisteredOnceThoughAskedTwice)
{
    putLibrary();
    EXPECT_THAT(probe("missing"), HasSubstr("static plug-ins: 1\n"));
}

TEST_F(RegisteredPlugin, IsNotLoadedBeforeQtAsksForAnImageFormat)
{
    putLibrary();
    put("picture.tga", targaFile());
    const std::string output = probe("picture.tga");
    EXPECT_THAT(output, HasSubstr("loaded at first: 0"));
    EXPECT_THAT(output, HasSubstr("loaded at last: 1"));
}

TEST_F(RegisteredPlugin, WithoutItsLibraryReadsNothing)
{
    put("picture.tga", targaFile());
    EXPECT_THAT(probe("picture.tga"), HasSubstr("size: 0x0"));
}

TEST_F(RegisteredPlugin, WithoutItsLibraryLeavesQtItsOwnFormats)
{
    put("picture.png", fileOf(FIF_PNG, opaqueBitmap()));
    const std::string output = probe("picture.png");
    EXPECT_THAT(output, HasSubstr("size: 16x16"));
    EXPECT_THAT(output, HasSubstr("knows exr: 0"));
}

TEST_F(RegisteredPlugin, WithAFileThatIsNoLibraryReadsNothing)
{
    put(QFileInfo(QStringLiteral(KESTRIX_IMAGE_PLUGIN)).fileName().toLatin1(), "no library");
    put("picture.tga", targaFile());
    EXPECT_THAT(probe("picture.tga"), HasSubstr("size: 0x0"));
}

// The list of static plug-ins is the process's, and nothing is ever taken out of it.
TEST(ImagePluginRegistration, DoesNothingWhenAPluginOfThatNameIsThere)
{
    qRegisterStaticPluginFunction(QStaticPlugin{&qt_plugin_instance, queryMetaData});
    registerImagePlugin();
    EXPECT_EQ(QPluginLoader::staticPlugins().size(), 1);
}

TEST(KestrixExecutable, NeedsNeitherQtGuiNorFreeImage)
{
    QFile file(QString::fromStdString(TestSupport::toolPath()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const std::string bytes = file.readAll().toStdString();
    EXPECT_EQ(bytes.find("libQt5Gui"), std::string::npos);
    EXPECT_EQ(bytes.find("libQt6Gui"), std::string::npos);
    EXPECT_EQ(bytes.find("libfreeimage"), std::string::npos);
}

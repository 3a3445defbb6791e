#include "updating/documentdevice.h"

#include <gtest/gtest.h>

namespace {

using Ksx::Core::DocumentDevice;

constexpr const char* Small = "<a><b v=\"1\"/></a>";
constexpr const char* SmallWithTwo =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\n <b v=\"2\"/>\n</a>\n";

class DocumentDeviceOpen : public testing::Test
{
protected:
    DocumentDeviceOpen() { device.open(QIODevice::ReadWrite); }
    void setTwo()
    {
        device.document(error)->root().firstChild("b").setValue("2");
        device.setDocumentChanged();
    }
    void moveBack() { EXPECT_TRUE(device.seek(0)); }

    DocumentDevice device{Small};
    QString error;
};

} // namespace

TEST_F(DocumentDeviceOpen, GivesItsBytesToReaders)
{
    EXPECT_EQ(device.read(3), "<a>");
    EXPECT_EQ(device.readAll(), "<b v=\"1\"/></a>");
    EXPECT_TRUE(device.atEnd());
}

TEST_F(DocumentDeviceOpen, TakesBytesInPlaceAndAtTheEnd)
{
    device.seek(3);
    device.write("<c v=\"1\"/></a>\n");
    EXPECT_EQ(device.bytes(), "<a><c v=\"1\"/></a>\n");
    EXPECT_EQ(device.size(), 18);
    EXPECT_EQ(device.pos(), 18);
}

TEST_F(DocumentDeviceOpen, RefusesPlacesOutsideItsBytes)
{
    EXPECT_TRUE(device.seek(device.size()));
    EXPECT_FALSE(device.seek(device.size() + 1));
    EXPECT_FALSE(device.seek(-1));
}

TEST_F(DocumentDeviceOpen, IsNotSequential)
{
    EXPECT_FALSE(device.isSequential());
}

TEST_F(DocumentDeviceOpen, ParsesItsBytesOnce)
{
    const Orv::Data::LightDocument* const first = device.document(error);
    EXPECT_EQ(first->root().name(), "a");
    EXPECT_EQ(device.document(error), first);
}

TEST_F(DocumentDeviceOpen, KeepsItsBytesWhileTheDocumentIsOnlyLookedAt)
{
    device.document(error);
    EXPECT_EQ(device.readAll(), Small);
}

TEST_F(DocumentDeviceOpen, GivesTheChangedDocumentToReaders)
{
    setTwo();
    EXPECT_EQ(device.readAll(), SmallWithTwo);
}

TEST_F(DocumentDeviceOpen, KnowsTheSizeOfTheChangedDocument)
{
    setTwo();
    EXPECT_EQ(device.size(), QByteArray(SmallWithTwo).size());
}

TEST_F(DocumentDeviceOpen, GivesEachOfSeveralChanges)
{
    setTwo();
    device.readAll();
    device.document(error)->root().rename("z");
    device.setDocumentChanged();
    moveBack();
    EXPECT_EQ(device.readAll(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<z>\n <b v=\"2\"/>\n</z>\n");
}

TEST_F(DocumentDeviceOpen, KeepsChangesWhenItReleasesTheDocument)
{
    setTwo();
    device.releaseDocument();
    EXPECT_EQ(device.readAll(), SmallWithTwo);
}

TEST_F(DocumentDeviceOpen, HasNoParsedDocumentBeforeAnybodyAsksAndBehindARelease)
{
    EXPECT_EQ(device.parsedDocument(), nullptr);
    const Orv::Data::LightDocument* const document = device.document(error);
    EXPECT_EQ(device.parsedDocument(), document);
    device.releaseDocument();
    EXPECT_EQ(device.parsedDocument(), nullptr);
}

TEST_F(DocumentDeviceOpen, ParsesAgainBehindARelease)
{
    setTwo();
    device.releaseDocument();
    EXPECT_EQ(device.document(error)->root().firstChild("b").value(), "2");
}

TEST_F(DocumentDeviceOpen, TakesWrittenBytesForTheDocument)
{
    setTwo();
    device.open(QIODevice::ReadWrite | QIODevice::Truncate);
    device.write("<other/>");
    EXPECT_EQ(device.document(error)->root().name(), "other");
    EXPECT_EQ(device.bytes(), "<other/>");
}

TEST_F(DocumentDeviceOpen, WritesIntoTheTextOfAChangedDocument)
{
    setTwo();
    device.write("<?XML");
    EXPECT_EQ(device.bytes().left(20), "<?XML version=\"1.0\" ");
}

TEST_F(DocumentDeviceOpen, KeepsAChangedDocumentOverClosingAndOpening)
{
    setTwo();
    device.close();
    device.open(QIODevice::ReadOnly);
    EXPECT_EQ(device.readAll(), SmallWithTwo);
}

TEST(DocumentDevice, RefusesChangesWhenItIsNotOpenForWriting)
{
    DocumentDevice device(Small);
    device.open(QIODevice::ReadOnly);
    QString error;
    device.document(error)->root().rename("z");
    EXPECT_FALSE(device.setDocumentChanged());
    EXPECT_EQ(device.readAll(), Small);
    EXPECT_EQ(device.document(error)->root().name(), "a");
}

TEST(DocumentDevice, HasNoDocumentForBytesThatDoNotParse)
{
    DocumentDevice device("<a>\n<b></a>");
    device.open(QIODevice::ReadWrite);
    QString error;
    EXPECT_EQ(device.document(error), nullptr);
    EXPECT_TRUE(error.startsWith("PARSE_ERROR_AT_LINE_2_AND_COLUMN_"));
    EXPECT_EQ(device.readAll(), "<a>\n<b></a>");
}

#include "updating/oblformatupdater.h"

#include "core/messagenode.h"
#include "data/baseobject.h"
#include "reading/oblimporter.h"
#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include "updating/documentdevice.h"
#include "updating/oblformatupdater3962n1.h"
#include "updating/oblformatupdater3962n2.h"
#include "updating/oblformatupdater4510.h"
#include "updating/oblformatupdater4858.h"
#include "updating/oblformatupdater5017.h"
#include "updating/oblformatupdater5356.h"
#include "updating/oblformatupdater7049.h"
#include <QBuffer>
#include <QTemporaryFile>
#include <gtest/gtest.h>
#include <memory>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;

const OBLFormatUpdater3962n2 Swap; // stands for all: the frame is theirs

constexpr const char* Old = "<package>\n  <configuration/>  <configuration/></package>";
constexpr const char* Present = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<package>\n <configurations/>\n <configurations/>\n</package>\n";
constexpr const char* WithoutOld = "<package  >  <content/></package>";

class OtherImporter final : public Orv::Core::Extensions::IDataImporter
{
public:
    bool isCompatible(const Orv::Core::Version& /*version*/) const override { return true; }
    bool accepts(const QUrl& /*url*/) const override { return true; }
    std::unique_ptr<QIODevice> createDevice(const QUrl& /*url*/) const override { return nullptr; }
    Orv::Core::Version version() const override { return {}; }
    std::unique_ptr<Orv::Data::BaseObject>
    import(QIODevice& /*device*/, Orv::Core::MessageNode* /*log*/,
           const Orv::Core::Extensions::ProgressFunction& /*progress*/) const override
    {
        return nullptr;
    }
};

struct UpdaterCase
{
    const char* name; // of the class, and so the context of its texts
    const OBLFormatUpdater& updater;
    const char* version;
};

const OBLFormatUpdater3962n1 Updater3962n1;
const OBLFormatUpdater4510 Updater4510;
const OBLFormatUpdater4858 Updater4858;
const OBLFormatUpdater5017 Updater5017;
const OBLFormatUpdater5356 Updater5356;
const OBLFormatUpdater7049 Updater7049;

class EachFormatUpdater : public testing::TestWithParam<UpdaterCase>
{};

} // namespace

TEST(OBLFormatUpdaterFrame, ReportsItsProgress)
{
    const std::vector<float> expected{0.0F, 0.25F, 0.5F, 0.75F, 1.0F};
    EXPECT_EQ(updateBuffer(Swap, Old).progress, expected);
    EXPECT_EQ(updateBuffer(Swap, WithoutOld).progress, expected);
}

TEST(OBLFormatUpdaterFrame, ReportsHowManyEntriesItChanged)
{
    EXPECT_EQ(updateBuffer(Swap, Old).log, "ENTRY_CHANGED_2\n");
}

TEST(OBLFormatUpdaterFrame, WritesTheDocumentWithAnIndentOfOne)
{
    EXPECT_EQ(updateBuffer(Swap, Old).bytes, Present);
    EXPECT_EQ(updateDocument(Swap, Old).bytes, Present);
}

TEST(OBLFormatUpdaterFrame, LeavesTheBytesAloneWhenNothingChanges)
{
    const UpdateResult result = updateBuffer(Swap, WithoutOld);
    EXPECT_TRUE(result.isOk);
    EXPECT_EQ(result.bytes, WithoutOld);
    EXPECT_EQ(result.log, "");
    EXPECT_EQ(updateDocument(Swap, WithoutOld).bytes, WithoutOld);
}

TEST(OBLFormatUpdaterFrame, FailsWithPlaceAndReasonOnBadText)
{
    const UpdateResult result = updateBuffer(Swap, "<package>\n<a></package>");
    EXPECT_FALSE(result.isOk);
    EXPECT_EQ(result.log, "Error: PARSE_ERROR_AT_LINE_2_AND_COLUMN_13 :\n"
                          "Opening and ending tag mismatch.\n");
    EXPECT_EQ(result.bytes, "<package>\n<a></package>");
    EXPECT_EQ(result.progress, std::vector<float>{0.0F});
}

TEST(OBLFormatUpdaterFrame, FailsAlikeOnADocumentDevice)
{
    EXPECT_EQ(updateDocument(Swap, "<package>\n<a></package>").log,
              updateBuffer(Swap, "<package>\n<a></package>").log);
}

TEST(OBLFormatUpdaterFrame, FailsOnTooDeepNesting)
{
    std::string text;
    for (int i = 0; i < 5001; ++i)
        text += "<a>";
    const UpdateResult result = updateBuffer(Swap, text);
    EXPECT_FALSE(result.isOk);
    EXPECT_EQ(result.log, "Error: ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_1_15003\n");
}

TEST(OBLFormatUpdaterFrame, TakesLatin1ToUtf8)
{
    EXPECT_EQ(updateBuffer(Swap, "<?xml version='1.0' encoding='ISO-8859-1'?>"
                                 "<package><configuration v='\xE9'/></package>")
                  .bytes,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<package>\n <configurations v=\"\xC3\xA9\"/>\n</package>\n");
}

TEST(OBLFormatUpdaterFrame, NeedsNeitherLogNorProgress)
{
    QBuffer buffer;
    buffer.setData(Old);
    buffer.open(QIODevice::ReadWrite);
    EXPECT_TRUE(Swap.update(buffer, nullptr, {}));
    EXPECT_EQ(buffer.data(), Present);
}

TEST(OBLFormatUpdaterFrame, CutsOffWhatTheNewTextDoesNotReach)
{
    const std::string padded = std::string(Old) + std::string(500, '\n');
    EXPECT_EQ(updateBuffer(Swap, padded).bytes, Present);
}

TEST(OBLFormatUpdaterFrame, RewritesFiles)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(Old + QByteArray(500, '\n'));
    file.seek(0);
    EXPECT_TRUE(Swap.update(file, nullptr, {}));
    EXPECT_EQ(file.readAll(), Present);
}

TEST(OBLFormatUpdaterFrame, FailsOnADeviceThatCannotBeWritten)
{
    QBuffer buffer;
    buffer.setData(Old);
    buffer.open(QIODevice::ReadOnly);
    Orv::Core::MessageNode log;
    EXPECT_FALSE(Swap.update(buffer, &log, {}));
    EXPECT_EQ(log.toText(), "ENTRY_CHANGED_2\nError: ERROR_FAIL_TO_SET_DEVICE_CONTENT\n");
    EXPECT_EQ(buffer.data(), Old);
}

TEST(OBLFormatUpdaterFrame, FailsOnADocumentDeviceThatCannotBeWritten)
{
    DocumentDevice device(Old);
    device.open(QIODevice::ReadOnly);
    Orv::Core::MessageNode log;
    EXPECT_FALSE(Swap.update(device, &log, {}));
    EXPECT_EQ(log.toText(), "ENTRY_CHANGED_2\nError: ERROR_FAIL_TO_SET_DEVICE_CONTENT\n");
    EXPECT_EQ(device.readAll(), Old);
}

TEST(OBLFormatUpdaterFrame, SharesOneDocumentAmongAllSteps)
{
    DocumentDevice device(Old);
    device.open(QIODevice::ReadWrite);
    QString error;
    const Orv::Data::LightDocument* const document = device.document(error);
    Swap.update(device, nullptr, {});
    Updater4510.update(device, nullptr, {});
    EXPECT_EQ(device.document(error), document);
    EXPECT_EQ(device.readAll(), Present);
}

TEST_P(EachFormatUpdater, ServesTheImporterOfPackagesAlone)
{
    EXPECT_TRUE(GetParam().updater.accepts(OBLImporter()));
    EXPECT_FALSE(GetParam().updater.accepts(OtherImporter()));
}

TEST_P(EachFormatUpdater, LeavesItsOwnVersion)
{
    EXPECT_EQ(GetParam().updater.updaterVersion().toString(), GetParam().version);
    EXPECT_EQ(GetParam().updater.formatVersion().toString(), GetParam().version);
}

TEST_P(EachFormatUpdater, IsNamedByKeysInTheContextOfItsClass)
{
    const EchoTranslator translator;
    const QString context = QStringLiteral("Ksx::Core::") + GetParam().name;
    EXPECT_EQ(GetParam().updater.name(), context + "|NAME");
    EXPECT_EQ(GetParam().updater.description(), context + "|DESCRIPTION");
}

INSTANTIATE_TEST_SUITE_P(
    All, EachFormatUpdater,
    testing::Values(UpdaterCase{"OBLFormatUpdater3962n1", Updater3962n1, "1.0.1.3962"},
                    UpdaterCase{"OBLFormatUpdater3962n2", Swap, "1.0.1.3962"},
                    UpdaterCase{"OBLFormatUpdater4510", Updater4510, "1.0.1.4510"},
                    UpdaterCase{"OBLFormatUpdater4858", Updater4858, "1.0.3.4858"},
                    UpdaterCase{"OBLFormatUpdater5017", Updater5017, "1.0.3.5017"},
                    UpdaterCase{"OBLFormatUpdater5356", Updater5356, "1.1.0.5356"},
                    UpdaterCase{"OBLFormatUpdater7049", Updater7049, "1.1.0.7049"}),
    caseName<UpdaterCase>);

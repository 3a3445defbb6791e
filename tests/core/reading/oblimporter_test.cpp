#include "reading/oblimporter.h"

#include "data/content/package.h"
#include "data/diagnosticlog.h"
#include "support/damage.h"
#include "support/packagetext.h"
#include <QBuffer>
#include <QFile>
#include <gtest/gtest.h>
#include <algorithm>
#include <new>
#include <stdexcept>

using Ksx::Core::OBLImporter;
using Ksx::Data::Content::Package;
using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::replaced;

namespace {

class OblImport : public testing::Test
{
protected:
    std::unique_ptr<Orv::Data::BaseObject> import(const std::string& text)
    {
        QByteArray bytes(text.data(), static_cast<int>(text.size()));
        QBuffer buffer(&bytes);
        EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
        return OBLImporter().import(buffer, &log,
                                    [this](float fraction) { progress.push_back(fraction); });
    }

    MessageNode log;
    std::vector<float> progress;
};

TEST_F(OblImport, GivesAPackage)
{
    const auto root = import(aPackage().named("wood").containing(aGroup("g")).text());

    const auto* package = dynamic_cast<const Package*>(root.get());
    ASSERT_NE(package, nullptr);
    EXPECT_EQ(package->identifier().get(), "wood");
    EXPECT_EQ(package->content().size(), 1u);
    EXPECT_EQ(log.toText(), "");
}

TEST_F(OblImport, LeavesFileReferencesAsTheyStand)
{
    const auto root = import(aPackage().dependingOn("../b.obl", 7).text());

    ASSERT_NE(root, nullptr);
    EXPECT_EQ(static_cast<const Package&>(*root).dependencies().at(0).filename().get(), "../b.obl");
}

TEST_F(OblImport, TellsItsProgress)
{
    import(aPackage().containing(aGroup("g")).text());

    ASSERT_FALSE(progress.empty());
    EXPECT_GE(progress.front(), 0.0F);
    EXPECT_LE(progress.back(), 1.0F);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
}

// A comment is met when most of the document has been read, which begins again then.
TEST_F(OblImport, TellsNoSmallerProgressWhenItReadsADocumentAgain)
{
    const std::string groups = TestSupport::repeated(aGroup("g"), 30000);

    import(replaced(aPackage().containing(groups).text(), "</package>", "<!-- --></package>"));

    EXPECT_GT(progress.size(), 20u);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
}

TEST_F(OblImport, NamesTheParentOfAMissingMember)
{
    EXPECT_EQ(import(aPackage().without("content").text()), nullptr);

    ASSERT_EQ(log.children().size(), 1u);
    const MessageNode& message = *log.children().front();
    EXPECT_EQ(message.level(), MessageLevel::Error);
    EXPECT_EQ(message.text().section('_', 0, -3),
              "ERROR_XML_READ_ERROR :\nORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_package");
}

TEST_F(OblImport, NamesAWrongRoot)
{
    EXPECT_EQ(import("<folly/>"), nullptr);

    EXPECT_EQ(log.toText(), "Error: ERROR_XML_READ_ERROR :\n"
                            "ORV_DATA_XML_DATA_READER_ERROR_XML_BAD_ROOT\n");
}

TEST_F(OblImport, NamesAMissingValue)
{
    EXPECT_EQ(import("<package><author/></package>"), nullptr);

    EXPECT_EQ(log.children().front()->text().section('_', 0, -3),
              "ERROR_XML_READ_ERROR :\nORV_DATA_XML_DATA_READER_ERROR_XML_ATTRIBUTE_NOT_FOUND_v");
}

TEST_F(OblImport, FailsForABadValueLikeForAnythingElse)
{
    EXPECT_EQ(import(aPackage().with("platform", "folly").text()), nullptr);

    ASSERT_EQ(log.children().size(), 1u);
    EXPECT_EQ(log.children().front()->level(), MessageLevel::Error);
    EXPECT_TRUE(log.children().front()->text().startsWith("ERROR_XML_READ_ERROR"))
        << log.toText().toStdString();
}

TEST_F(OblImport, FailsForBrokenXml)
{
    EXPECT_EQ(import(replaced(aPackage().text(), "</package>", "")), nullptr);

    EXPECT_TRUE(log.hasError());
}

TEST_F(OblImport, FailsForAnEmptyDevice)
{
    EXPECT_EQ(import(""), nullptr);

    EXPECT_TRUE(log.hasError());
}

TEST_F(OblImport, NeedsNeitherLogNorProgress)
{
    QByteArray bytes("folly");
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));

    EXPECT_EQ(OBLImporter().import(buffer, nullptr, {}), nullptr);
}

TEST_F(OblImport, LetsALackOfMemoryThrough)
{
    QByteArray bytes = QByteArray::fromStdString(aPackage().text());
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));

    EXPECT_THROW(OBLImporter().import(buffer, &log, [](float) { throw std::bad_alloc(); }),
                 std::bad_alloc);
}

TEST_F(OblImport, AnnouncesNoReasonThatHasNoWords)
{
    QByteArray bytes = QByteArray::fromStdString(aPackage().text());
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));

    OBLImporter().import(buffer, &log, [](float) { throw std::runtime_error(""); });

    EXPECT_EQ(log.toText(), "Error: ERROR_XML_READ_ERROR\n");
}

TEST_F(OblImport, TracesAFailure)
{
    std::vector<std::string> traced;
    const int sink = Orv::DiagnosticLog::addSink([&](const Orv::LogRecord& record) {
        traced.push_back(std::string(record.source) + ": " + record.text);
    });

    import("<folly/>");

    Orv::DiagnosticLog::removeSink(sink);
    EXPECT_EQ(traced, std::vector<std::string>({"core\\coreoblimporter: ERROR_XML_READ_ERROR :\n"
                                                "ORV_DATA_XML_DATA_READER_ERROR_XML_BAD_ROOT"}));
}

TEST(OblImporter, GivesAFileForLocalUrlsOnly)
{
    const auto file = OBLImporter().createDevice(QUrl("file:///x/a%20b.obl"));

    ASSERT_NE(dynamic_cast<QFile*>(file.get()), nullptr);
    EXPECT_EQ(static_cast<QFile&>(*file).fileName(), "/x/a b.obl");
    EXPECT_FALSE(file->isOpen());
    EXPECT_EQ(OBLImporter().createDevice(QUrl("http://x/a.obl")), nullptr);
    EXPECT_EQ(OBLImporter().createDevice(QUrl("obl://a.obl")), nullptr);
    EXPECT_EQ(OBLImporter().createDevice(QUrl("a.obl")), nullptr);
}

} // namespace

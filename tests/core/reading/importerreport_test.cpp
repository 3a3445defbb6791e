#include "reading/importerreport.h"

#include "core/messagenode.h"
#include "data/diagnosticlog.h"
#include "data/documentreader.h"
#include "support/updaterhelper.h"
#include <gtest/gtest.h>

using Ksx::Core::ImporterReport;
using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;
using Orv::Data::DocumentError;

namespace {

class Report : public testing::Test
{
protected:
    MessageNode log;
    const ImporterReport report{&log, "Context", "source"};
};

TEST_F(Report, IsAnErrorInTheLog)
{
    EXPECT_FALSE(report.fail("KEY"));

    EXPECT_EQ(log.toText(), "Error: KEY\n");
    EXPECT_EQ(log.children().front()->level(), MessageLevel::Error);
}

TEST_F(Report, IsTranslated)
{
    const TestSupport::EchoTranslator translator;

    report.fail("KEY_%1", {"a"});

    EXPECT_EQ(log.toText(), "Error: Context|KEY_a\n");
}

TEST_F(Report, IsTraced)
{
    std::vector<std::string> traced;
    const int sink = Orv::DiagnosticLog::addSink([&](const Orv::LogRecord& record) {
        traced.push_back(std::string(record.source) + ": " + record.text);
    });

    report.fail("KEY_%1", {"a"});

    Orv::DiagnosticLog::removeSink(sink);
    EXPECT_EQ(traced, std::vector<std::string>({"source: KEY_a"}));
}

TEST_F(Report, NeedsNoLog)
{
    EXPECT_FALSE(ImporterReport(nullptr, "Context", "source").fail("KEY"));
}

TEST_F(Report, TellsWhereADocumentIsBroken)
{
    EXPECT_FALSE(report.fail(DocumentError{"folly", 3, 14}));

    EXPECT_EQ(log.toText(), "Error: ERROR_XML_DOCUMENT_ERROR_folly_3_14\n");
}

TEST_F(Report, LeavesPlacesThatAnArgumentBrings)
{
    report.fail(DocumentError{"100%2 %1", 3, 14});

    EXPECT_EQ(log.toText(), "Error: ERROR_XML_DOCUMENT_ERROR_100%2 %1_3_14\n");
}

} // namespace

#include "reading/oblasmimporter.h"

#include "data/content/package.h"
#include "data/diagnosticlog.h"
#include "support/assemblytext.h"
#include "support/damage.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/updaterhelper.h"
#include <QBuffer>
#include <QFile>
#include <QUrl>
#include <gtest/gtest.h>

using Ksx::Core::OBLASMImporter;
using Ksx::Data::Content::Package;
using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;
using TestSupport::aDescribedGraph;
using TestSupport::aDescription;
using TestSupport::anAssemblyBody;
using TestSupport::caseName;
using TestSupport::DamageCase;
using TestSupport::TemporaryDirectory;

namespace {

class OblasmImport : public testing::Test
{
protected:
    std::unique_ptr<Orv::Data::BaseObject> import(const std::string& name = "a.oblasm")
    {
        QFile file(QString::fromStdString(directory.path(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return OBLASMImporter().import(file, &log, {});
    }
    std::string xmlPath() const { return directory.path("a.xml"); }
    // The only message, without a line end.
    std::string message() const
    {
        const std::string text = log.toText().toStdString();
        return text.substr(0, text.find('\n'));
    }

    TemporaryDirectory directory;
    MessageNode log;
};

TEST_F(OblasmImport, GivesThePackageOfAPairOfFiles)
{
    directory.write("a.oblasm", anAssemblyBody());
    directory.write("a.xml", aDescription(aDescribedGraph("wood")));

    const auto root = import();

    const auto* package = dynamic_cast<const Package*>(root.get());
    ASSERT_NE(package, nullptr) << log.toText().toStdString();
    EXPECT_EQ(package->identifier().get(), "a");
    EXPECT_EQ(package->content().size(), 1u);
    EXPECT_EQ(package->fileUID().get(), "{00000000-0000-0000-0000-0000000000ab}");
    EXPECT_EQ(log.toText(), "");
}

TEST_F(OblasmImport, NamesThePackageByAllButTheEnding)
{
    directory.write("a.b.c.oblasm", anAssemblyBody());
    directory.write("a.b.c.xml", aDescription(""));

    const auto root = import("a.b.c.oblasm");

    ASSERT_NE(root, nullptr);
    EXPECT_EQ(static_cast<const Package&>(*root).identifier().get(), "a.b.c");
}

TEST_F(OblasmImport, ReadsNoBodyBehindTheHeader)
{
    directory.write("a.oblasm", anAssemblyBody().substr(0, 16));
    directory.write("a.xml", aDescription(""));

    EXPECT_NE(import(), nullptr);
}

TEST_F(OblasmImport, NeedsAFile)
{
    QByteArray bytes = QByteArray::fromStdString(anAssemblyBody());
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));

    EXPECT_EQ(OBLASMImporter().import(buffer, &log, {}), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_WRONG_DEVICE_TYPE");
}

TEST_F(OblasmImport, NeedsADescription)
{
    directory.write("a.oblasm", anAssemblyBody());

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_XML_FILE_NOT_FOUND_" + xmlPath());
}

TEST_F(OblasmImport, LooksForADescriptionInSmallLettersAlone)
{
    directory.write("a.oblasm", anAssemblyBody());
    directory.write("a.XML", aDescription(""));

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_XML_FILE_NOT_FOUND_" + xmlPath());
}

TEST_F(OblasmImport, MissesTheDescriptionBeforeTheBody)
{
    directory.write("a.oblasm", "");

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_XML_FILE_NOT_FOUND_" + xmlPath());
}

TEST_F(OblasmImport, NeedsABody)
{
    directory.write("a.oblasm", "");
    directory.write("a.xml", aDescription(""));

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_INVALID_FILE_CONTENT_" + directory.path("a.oblasm"));
}

TEST_F(OblasmImport, NeedsADescriptionThatOpens)
{
    directory.write("a.oblasm", anAssemblyBody());
    directory.makeDirectory("a.xml");

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_OPEN_FILE_FAILED_" + xmlPath());
}

TEST_F(OblasmImport, NeedsADescriptionWithContent)
{
    directory.write("a.oblasm", anAssemblyBody());
    directory.write("a.xml", "");

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_INVALID_FILE_CONTENT_" + xmlPath());
}

TEST_F(OblasmImport, TellsWhereTheDescriptionIsBroken)
{
    directory.write("a.oblasm", anAssemblyBody());
    directory.write("a.xml", "<obldescription>\n</folly>");

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message().substr(0, 35), "Error: ERROR_XML_DOCUMENT_ERROR_Ope");
    EXPECT_EQ(message().substr(message().size() - 4), "_2_8");
}

TEST_F(OblasmImport, NeedsAPairThatBelongsTogether)
{
    directory.write("a.oblasm", anAssemblyBody(42));
    directory.write("a.xml", aDescription("", 43));

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_INVALID_OBLASM");
}

TEST_F(OblasmImport, RefusesAShortBody)
{
    directory.write("a.oblasm", anAssemblyBody().substr(0, 15));
    directory.write("a.xml", aDescription(""));

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message(), "Error: ERROR_INVALID_OBLASM");
}

TEST_F(OblasmImport, FailsWithTheReader)
{
    directory.write("a.oblasm", anAssemblyBody());
    directory.write("a.xml", R"(<obldescription asmuid="42"/>)");

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(log.toText(), "Error: ERROR_NO_GRAPH_ARRAY_ELEMENT_FOUND\n");
    EXPECT_EQ(log.children().front()->level(), MessageLevel::Error);
}

TEST_F(OblasmImport, TracesAFailure)
{
    std::vector<std::string> traced;
    const int sink = Orv::DiagnosticLog::addSink([&](const Orv::LogRecord& record) {
        traced.push_back(std::string(record.source) + ": " + record.text);
    });
    directory.write("a.oblasm", anAssemblyBody(42));
    directory.write("a.xml", aDescription("", 43));

    import();

    Orv::DiagnosticLog::removeSink(sink);
    EXPECT_EQ(traced, std::vector<std::string>({"core\\coreoblasmimporter: ERROR_INVALID_OBLASM"}));
}

TEST_F(OblasmImport, TranslatesItsMessages)
{
    const TestSupport::EchoTranslator translator;
    directory.write("a.oblasm", anAssemblyBody());

    import();

    EXPECT_EQ(message(), "Error: Ksx::Core::OBLASMImporter|ERROR_XML_FILE_NOT_FOUND_" + xmlPath());
}

TEST_F(OblasmImport, NeedsNoLog)
{
    QBuffer buffer;
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));

    EXPECT_EQ(OBLASMImporter().import(buffer, nullptr, {}), nullptr);
}

// Descriptions that cost more than they hold.

class BadDescription : public OblasmImport, public testing::WithParamInterface<DamageCase>
{};

TEST_P(BadDescription, IsRefused)
{
    directory.write("a.oblasm", anAssemblyBody());
    directory.write("a.xml", GetParam().bytes());

    EXPECT_EQ(import(), nullptr);

    EXPECT_TRUE(log.hasError());
    EXPECT_EQ(message().substr(0, 32), "Error: ERROR_XML_DOCUMENT_ERROR_") << message();
}

INSTANTIATE_TEST_SUITE_P(Forms, BadDescription,
                         testing::ValuesIn(TestSupport::brokenDescriptions()),
                         caseName<DamageCase>);

TEST_F(OblasmImport, AnExternalEntityIsNotLoaded)
{
    const std::string secret = directory.write("secret", "folly");
    directory.write("a.oblasm", anAssemblyBody());
    directory.write("a.xml", "<!DOCTYPE x [<!ENTITY e SYSTEM \"" + secret + "\">]>" +
                                 aDescription(R"(<graph label="&e;"/>)"));

    EXPECT_EQ(import(), nullptr);

    EXPECT_EQ(message().find("folly"), std::string::npos);
}

// URLs.

struct UrlCase
{
    const char* name;
    const char* url;
    bool isAccepted;
};

std::ostream& operator<<(std::ostream& stream, const UrlCase& c)
{
    return stream << c.name;
}

class OblasmUrl : public testing::TestWithParam<UrlCase>
{};

TEST_P(OblasmUrl, IsAcceptedByItsEnding)
{
    EXPECT_EQ(OBLASMImporter().accepts(QUrl(GetParam().url)), GetParam().isAccepted);
}

INSTANTIATE_TEST_SUITE_P(Urls, OblasmUrl,
                         testing::Values(UrlCase{"File", "file:///x/a.oblasm", true},
                                         UrlCase{"OtherScheme", "http://x/a.oblasm", true},
                                         UrlCase{"Capitals", "file:///x/a.OBLASM", false},
                                         UrlCase{"Obl", "file:///x/a.obl", false},
                                         UrlCase{"Oblar", "file:///x/a.oblar", false},
                                         UrlCase{"MoreBehind", "file:///x/a.oblasm.bak", false},
                                         UrlCase{"NoPoint", "file:///x/aoblasm", false}),
                         caseName<UrlCase>);

TEST(OblasmImporter, GivesAFileForLocalUrlsOnly)
{
    const auto file = OBLASMImporter().createDevice(QUrl("file:///x/a.oblasm"));

    ASSERT_NE(dynamic_cast<QFile*>(file.get()), nullptr);
    EXPECT_EQ(OBLASMImporter().createDevice(QUrl("http://x/a.oblasm")), nullptr);
}

} // namespace

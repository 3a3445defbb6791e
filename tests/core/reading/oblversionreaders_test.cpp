#include "reading/oblversionreaders.h"

#include "data/baseobject.h"
#include "reading/extensionregistry.h"
#include "reading/oblimporter.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <gtest/gtest.h>

using Ksx::Core::OBLDataFormatVersionReader;
using Ksx::Core::OBLUpdaterVersionReader;
using Orv::Core::Version;
using TestSupport::aPackage;
using TestSupport::caseName;

namespace {

const Version Former{9, 8, 7, 6};
const Version Found{1, 2, 3, 4};
const std::string Element = R"(<formatVersion v="1.2.3.4"/>)";

struct Reading
{
    bool isFound;
    Version version;
};

template <class Reader>
Reading readFrom(const std::string& text)
{
    QByteArray bytes(text.data(), static_cast<int>(text.size()));
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
    Version version = Former;
    const bool isFound = Reader().read(buffer, version);
    return {isFound, version};
}

struct ScanCase
{
    const char* name;
    std::string text;
};

std::ostream& operator<<(std::ostream& stream, const ScanCase& c)
{
    return stream << c.name;
}

std::string padded(std::size_t count)
{
    return std::string(count, 'x');
}

class FormatVersionScan : public testing::TestWithParam<ScanCase>
{};

TEST_P(FormatVersionScan, FindsIt)
{
    const Reading reading = readFrom<OBLDataFormatVersionReader>(GetParam().text);

    EXPECT_TRUE(reading.isFound);
    EXPECT_EQ(reading.version, Found);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, FormatVersionScan,
    testing::Values(
        ScanCase{"Alone", Element}, ScanCase{"AtTheEndOfABlock", padded(122) + Element},
        ScanCase{"AcrossTwoBlocks", padded(140) + Element + padded(400)},
        ScanCase{"TagAcrossTwoBlocks", padded(145) + Element},
        ScanCase{"TextAcrossTwoBlocks", padded(130) + Element},
        ScanCase{"FarBehind", padded(100000) + Element},
        ScanCase{"InALastShortBlock", padded(299) + Element},
        ScanCase{"QuotesAtTheEndOfTheNextBlock", "<formatVersion" + padded(277) + R"("1.2.3.4")"},
        ScanCase{"SpreadOverLines", "<formatVersion\n\tv\n=\n\"1.2.3.4\"\n/>"},
        ScanCase{"LongerTag", R"(<formatVersionX v="1.2.3.4"/>)"},
        ScanCase{"InsideAComment", "<!-- " + Element + R"( --><formatVersion v="5.6.7.8"/>)"},
        ScanCase{"TheFirstOfTwo", Element + R"(<formatVersion v="5.6.7.8"/>)"},
        ScanCase{"NoXmlAtAll", "\xff\xfe<formatVersion\"1.2.3.4\""}),
    caseName<ScanCase>);

class NoFormatVersion : public testing::TestWithParam<ScanCase>
{};

TEST_P(NoFormatVersion, IsReportedAndChangesNothing)
{
    const Reading reading = readFrom<OBLDataFormatVersionReader>(GetParam().text);

    EXPECT_FALSE(reading.isFound);
    EXPECT_EQ(reading.version, Former);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, NoFormatVersion,
    testing::Values(ScanCase{"EmptyFile", ""}, ScanCase{"NoTag", padded(1000)},
                    ScanCase{"TagAtTheEnd", padded(500) + "<formatVersion"},
                    ScanCase{"OneQuote", R"(<formatVersion v="1.2.3.4)"},
                    ScanCase{"SingleQuotes", "<formatVersion v='1.2.3.4'/>"},
                    ScanCase{"OtherCase", R"(<formatversion v="1.2.3.4"/>)"},
                    ScanCase{"EndTag", R"(</formatVersion v="1.2.3.4"/>)"},
                    ScanCase{"BlankInTheTag", R"(< formatVersion v="1.2.3.4"/>)"},
                    ScanCase{"EmptyText", R"(<formatVersion v=""/>)"},
                    ScanCase{"ThreeParts", R"(<formatVersion v="1.2.3"/>)"},
                    ScanCase{"NoNumber", R"(<formatVersion v="1.2.x.4"/>)"},
                    ScanCase{"ABadOneInFrontOfAGoodOne", R"(<formatVersion v="x"/>)" + Element},
                    ScanCase{"QuotesTooFarBehind", "<formatVersion" + padded(300) + R"("1.2.3.4")"},
                    ScanCase{"QuoteOneByteBehindTheNextBlock",
                             "<formatVersion" + padded(278) + R"("1.2.3.4")"},
                    ScanCase{"Utf16", std::string("<\0f\0o\0r\0m\0a\0t\0", 14)}),
    caseName<ScanCase>);

TEST(OblVersionReaders, EachReadsItsOwnElement)
{
    const std::string text =
        aPackage().with("formatVersion", "1.0.0.1").with("updaterVersion", "2.0.0.2").text();

    EXPECT_EQ(readFrom<OBLDataFormatVersionReader>(text).version, (Version{1, 0, 0, 1}));
    EXPECT_EQ(readFrom<OBLUpdaterVersionReader>(text).version, (Version{2, 0, 0, 2}));
}

TEST(OblVersionReaders, AMissingUpdaterVersionIsNotFound)
{
    const Reading reading =
        readFrom<OBLUpdaterVersionReader>(aPackage().without("updaterVersion").text());

    EXPECT_FALSE(reading.isFound);
    EXPECT_EQ(reading.version, Former);
}

TEST(OblVersionReaders, AVersionOfZerosIsFound)
{
    const Reading reading = readFrom<OBLDataFormatVersionReader>(R"(<formatVersion v="0.0.0.0"/>)");

    EXPECT_TRUE(reading.isFound);
    EXPECT_TRUE(reading.version.isNone());
}

TEST(OblVersionReaders, AreOfTheApplicationsVersion)
{
    EXPECT_EQ(OBLDataFormatVersionReader().version(), Ksx::Core::applicationVersion());
    EXPECT_EQ(OBLUpdaterVersionReader().version(), Ksx::Core::applicationVersion());
}

class OtherImporter final : public Ksx::Core::IOmbrelDataImporter
{
public:
    bool accepts(const QUrl& /*url*/) const override { return true; }
    std::unique_ptr<Orv::Data::BaseObject>
    import(QIODevice& /*device*/, Orv::Core::MessageNode* /*log*/,
           const Orv::Core::Extensions::ProgressFunction& /*progress*/) const override
    {
        return nullptr;
    }
};

TEST(OblVersionReaders, ServeTheOblImporterAlone)
{
    EXPECT_TRUE(OBLDataFormatVersionReader().accepts(Ksx::Core::OBLImporter()));
    EXPECT_TRUE(OBLUpdaterVersionReader().accepts(Ksx::Core::OBLImporter()));
    EXPECT_FALSE(OBLDataFormatVersionReader().accepts(OtherImporter()));
    EXPECT_FALSE(OBLUpdaterVersionReader().accepts(OtherImporter()));
}

} // namespace

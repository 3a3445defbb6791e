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
using TestSupport::pick;
using TestSupport::seededRandom;

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

// Looks at each two neighbouring blocks, one after the other, for a tag and two quotes.
Reading readByBlocks(const std::string& text)
{
    constexpr std::size_t Block = 150;
    for (std::size_t place = 0; place < text.size(); place += Block) {
        const std::size_t begin = place < Block ? 0 : place - Block;
        const std::string window = text.substr(begin, place + Block - begin);
        const std::size_t tag = window.find("<formatVersion");
        const std::size_t open = tag == std::string::npos ? tag : window.find('"', tag);
        const std::size_t close = open == std::string::npos ? open : window.find('"', open + 1);
        if (close == std::string::npos)
            continue;
        Version version = Former;
        const std::string number = window.substr(open + 1, close - open - 1);
        const bool isFound = version.fromString(QString::fromStdString(number));
        return {isFound, version};
    }
    return {false, Former};
}

// A text with tags, some of which have quotes near enough.
std::string randomText(std::mt19937& random)
{
    const std::vector<std::string> pieces = {"<formatVersion", "\"1.2.3.4\"", "\"", "<formatVer"};
    std::string text;
    for (int count = pick(random, 1, 8); count != 0; --count)
        text += padded(pick<std::size_t>(random, 0, pick(random, 0, 3) == 0 ? 16000 : 300)) +
                pieces[pick<std::size_t>(random, 0, pieces.size() - 1)];
    return text;
}

// Returns the first of some random texts in which another version is found.
std::string firstTextReadOtherwise(std::mt19937 random)
{
    for (int i = 0; i < 3000; ++i) {
        std::string text = randomText(random);
        const Reading expected = readByBlocks(text);
        const Reading reading = readFrom<OBLDataFormatVersionReader>(text);
        if (reading.isFound != expected.isFound || reading.version != expected.version)
            return text;
    }
    return {};
}

TEST(OblVersionReaders, LookAtEachTwoNeighbouringBlocks)
{
    EXPECT_EQ(firstTextReadOtherwise(seededRandom(20261132)), "");
}

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

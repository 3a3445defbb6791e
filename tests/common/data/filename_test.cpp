#include "data/filename.h"

#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <array>
#include <clocale>
#include <optional>

namespace {

using namespace std::string_view_literals;
using Orv::fromBytes;
using Orv::toBytes;
using TestSupport::caseName;
using TestSupport::pick;
using TestSupport::seededRandom;

struct ValidCase
{
    const char* name;
    std::string_view bytes;
    std::u16string_view text;
};
class FileNameOfValidBytes : public testing::TestWithParam<ValidCase>
{
protected:
    // From its units as they are: QString::fromUtf16 drops a byte order mark.
    const QString m_text = QString(reinterpret_cast<const QChar*>(GetParam().text.data()),
                                   static_cast<int>(GetParam().text.size()));
};
TEST_P(FileNameOfValidBytes, IsReadAsUtf8)
{
    EXPECT_EQ(fromBytes(GetParam().bytes), m_text);
}
TEST_P(FileNameOfValidBytes, IsGivenBack)
{
    EXPECT_EQ(toBytes(m_text), GetParam().bytes);
}
INSTANTIATE_TEST_SUITE_P(
    Forms, FileNameOfValidBytes,
    testing::Values(ValidCase{"Empty", "", u""}, ValidCase{"Ascii", "oak.obl", u"oak.obl"},
                    ValidCase{"TwoBytes", "\xC3\xA9", u"\u00E9"},
                    ValidCase{"SmallestTwo", "\xC2\x80", u"\u0080"},
                    ValidCase{"LargestTwo", "\xDF\xBF", u"\u07FF"},
                    ValidCase{"SmallestThree", "\xE0\xA0\x80", u"\u0800"},
                    ValidCase{"BeforeSurrogates", "\xED\x9F\xBF", u"\uD7FF"},
                    ValidCase{"BehindSurrogates", "\xEE\x80\x80", u"\uE000"},
                    ValidCase{"LargestThree", "\xEF\xBF\xBF", u"\uFFFF"},
                    ValidCase{"SmallestFour", "\xF0\x90\x80\x80", u"\U00010000"},
                    ValidCase{"LowHalfLikeAnEscape", "\xF0\x90\x82\x80", u"\U00010080"},
                    ValidCase{"LargestFour", "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
                    ValidCase{"ByteOrderMark", "\xEF\xBB\xBFx", u"\uFEFFx"},
                    ValidCase{"ZeroByte", "a\0b"sv, u"a\0b"sv}),
    caseName<ValidCase>);

struct BytesCase
{
    const char* name;
    std::string_view bytes;
};
class FileNameOfInvalidBytes : public testing::TestWithParam<BytesCase>
{};
TEST_P(FileNameOfInvalidBytes, SurvivesInAndOut)
{
    EXPECT_EQ(toBytes(fromBytes(GetParam().bytes)), GetParam().bytes);
}
TEST_P(FileNameOfInvalidBytes, IsReadByteByByte)
{
    EXPECT_EQ(fromBytes(GetParam().bytes).size(), static_cast<int>(GetParam().bytes.size()));
}
INSTANTIATE_TEST_SUITE_P(
    Forms, FileNameOfInvalidBytes,
    testing::Values(
        BytesCase{"Latin1", "caf\xE9.obl"}, BytesCase{"ContinuationAlone", "\x80"},
        BytesCase{"LeadAtTheEnd", "a\xC3"}, BytesCase{"ThreeCutShort", "\xE2\x82"},
        BytesCase{"FourCutShort", "\xF0\x9F\x98"}, BytesCase{"LeadBeforeAscii", "\xC3x"},
        BytesCase{"OverlongTwo", "\xC0\xAF"}, BytesCase{"OverlongThree", "\xE0\x80\xAF"},
        BytesCase{"OverlongFour", "\xF0\x80\x80\xAF"}, BytesCase{"Surrogate", "\xED\xA0\x80"},
        BytesCase{"EncodedEscape", "\xED\xB3\xA9"}, BytesCase{"BeyondUnicode", "\xF4\x90\x80\x80"},
        BytesCase{"NeverValid", "\xFE\xFF"}),
    caseName<BytesCase>);

TEST(FileName, InvalidByteBecomesALoneLowSurrogate)
{
    EXPECT_EQ(fromBytes("\xE9").at(0).unicode(), 0xDCE9);
}

std::optional<std::string> firstChangedName(std::mt19937 random)
{
    static constexpr std::string_view Pieces[] = {"a",    "/",    "\xC3", "\xA9", "\xE2", "\x82",
                                                  "\xAC", "\xF0", "\x9F", "\x98", "\x80", "\xED",
                                                  "\xA0", "\xB0", "\xFF", "\0"sv};
    for (int i = 0; i < 50000; ++i) {
        std::string bytes;
        for (int rest = pick(random, 0, 12); rest > 0; --rest)
            bytes += Pieces[pick<std::size_t>(random, 0, std::size(Pieces) - 1)];
        if (toBytes(fromBytes(bytes)) != bytes)
            return bytes;
    }
    return {};
}

TEST(FileName, OfAnyBytesSurvivesInAndOut)
{
    EXPECT_EQ(firstChangedName(seededRandom(20070421)), std::nullopt);
}

std::optional<std::string> firstOtherDecoding(std::mt19937 random)
{
    for (int i = 0; i < 20000; ++i) {
        const std::string bytes = TestDocument::randomUtf8(random, 10);
        if (fromBytes(bytes) != QString::fromStdString(bytes))
            return bytes;
    }
    return {};
}

TEST(FileName, OfValidUtf8IsReadAsQtReadsIt)
{
    EXPECT_EQ(firstOtherDecoding(seededRandom(20070422)), std::nullopt);
}

// --- Qt's own file functions

class FileNameCodec : public testing::Test
{
protected:
    void SetUp() override { std::setlocale(LC_ALL, "C"); }
    void TearDown() override { std::setlocale(LC_ALL, m_former.c_str()); }

    // Makes an empty file whose name is these bytes.
    void makeFile(const QByteArray& name)
    {
        QFile file(m_directory.path() + "/" + QFile::decodeName(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    std::string m_former = std::setlocale(LC_ALL, nullptr);
    QTemporaryDir m_directory;
};

TEST_F(FileNameCodec, DecodesUtf8UnderTheCLocale)
{
    EXPECT_EQ(QFile::decodeName("\xC3\xA9"), QString(QChar(0xE9)));
}

TEST_F(FileNameCodec, EncodesUtf8UnderTheCLocale)
{
    EXPECT_EQ(QFile::encodeName(QString(QChar(0xE9))), QByteArray("\xC3\xA9"));
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0) // later ones replace the bytes

TEST_F(FileNameCodec, GivesInvalidBytesBack)
{
    EXPECT_EQ(QFile::encodeName(QFile::decodeName("caf\xE9.obl")), QByteArray("caf\xE9.obl"));
}

TEST_F(FileNameCodec, FindsAFileWhoseNameIsNoUtf8)
{
    makeFile("caf\xE9.obl");
    EXPECT_TRUE(QFile::exists(m_directory.path() + "/" + fromBytes("caf\xE9.obl")));
}

TEST_F(FileNameCodec, ListsAFileWhoseNameIsNoUtf8)
{
    makeFile("caf\xE9.obl");
    EXPECT_EQ(QDir(m_directory.path()).entryList(QDir::Files | QDir::System),
              QStringList(fromBytes("caf\xE9.obl")));
}

#endif

} // namespace

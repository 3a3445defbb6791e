#include "common/data/canonicalxml.h"

#include "support/shelfcases.h"
#include <QBuffer>
#include <gtest/gtest.h>
#include <algorithm>
#include <string>

namespace {

using Orv::Data::CanonicalXmlTokens;
using Orv::Data::decodeCanonical;
using Orv::Data::isCanonicalName;
using Orv::Data::isCanonicalText;
using TestSupport::caseName;

const std::string Declaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

TEST(CanonicalName, BeginsWithALetter)
{
    EXPECT_TRUE(isCanonicalName("a1"));
    EXPECT_FALSE(isCanonicalName("1a"));
    EXPECT_FALSE(isCanonicalName(""));
}

TEST(CanonicalText, HasBothHalvesOfACharacter)
{
    EXPECT_TRUE(isCanonicalText(u"a\U0001F600z"));
    EXPECT_FALSE(isCanonicalText(std::u16string(1, char16_t{0xD83D})));
    EXPECT_FALSE(isCanonicalText(std::u16string{char16_t{0xD83D}, u'z'}));
    EXPECT_FALSE(isCanonicalText(std::u16string(1, char16_t{0xDE00})));
}

struct ValueCase
{
    const char* name;
    const char* value;
};

std::ostream& operator<<(std::ostream& stream, const ValueCase& c)
{
    return stream << c.name;
}

class ForeignValue : public testing::TestWithParam<ValueCase>
{};

TEST_P(ForeignValue, IsNotTaken)
{
    QString text;

    EXPECT_FALSE(decodeCanonical(GetParam().value, text));
}

INSTANTIATE_TEST_SUITE_P(Values, ForeignValue,
                         testing::Values(ValueCase{"CharacterInThreeBytesForOne", "\xE0\x80\xAF"},
                                         ValueCase{"CharacterInFourBytesForOne",
                                                   "\xF0\x80\x80\xAF"},
                                         ValueCase{"NumberWithASignBeforeTheDigits", "&#6/;"},
                                         ValueCase{"NumberWithASignBehindTheDigits", "&#6:;"},
                                         ValueCase{"DecimalNumberWithALetter", "&#6a;"},
                                         ValueCase{"DecimalNumberWithACapital", "&#6A;"},
                                         ValueCase{"LetterBehindTheHexadecimalOnes", "&#x4g;"},
                                         ValueCase{"CapitalBehindTheHexadecimalOnes", "&#x4G;"},
                                         ValueCase{"SignBeforeTheLetters", "&#x4`;"},
                                         ValueCase{"SignBeforeTheCapitals", "&#x4@;"}),
                         caseName<ValueCase>);

// Gives some bytes, and then fails.
class FailingDevice final : public QIODevice
{
public:
    explicit FailingDevice(std::string begin) : m_begin(std::move(begin))
    {
        open(ReadOnly | Unbuffered);
    }

protected:
    qint64 readData(char* data, qint64 maximumSize) override
    {
        const auto count = std::min(maximumSize, static_cast<qint64>(m_begin.size()));
        std::copy_n(m_begin.begin(), count, data);
        m_begin.erase(0, static_cast<std::size_t>(count));
        return count == 0 ? -1 : count;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    std::string m_begin;
};

TEST(CanonicalXmlTokens, FailWithTheirDevice)
{
    FailingDevice atOnce{{}};
    FailingDevice inTheMiddle(Declaration + "<a><b/>");
    CanonicalXmlTokens tokens(inTheMiddle, {});

    EXPECT_FALSE(CanonicalXmlTokens(atOnce, {}).begin());
    ASSERT_TRUE(tokens.begin());
    tokens.next();
    tokens.next();
    tokens.next();
    EXPECT_NE(tokens.error(), 0);
}

TEST(CanonicalXmlTokens, FailWhereADocumentEndsInsideOfAnEndTag)
{
    const std::string document = Declaration + "<a></a  ";
    CanonicalXmlTokens tokens(document);
    ASSERT_TRUE(tokens.begin());

    tokens.next();

    EXPECT_NE(tokens.error(), 0);
}

// The window on the document does not grow with every tag.
TEST(CanonicalXmlTokens, FailAtATagOfManyMegabytes)
{
    QByteArray bytes = QByteArray::fromStdString(Declaration + "<a v=\"");
    bytes.append(QByteArray(17 << 20, 'x')).append("\"/>");
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);

    EXPECT_FALSE(CanonicalXmlTokens(buffer, {}).begin());
}

} // namespace

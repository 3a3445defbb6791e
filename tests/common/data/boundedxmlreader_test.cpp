// What documents a stream reader is given whole, and which end before they take too much.
#include "data/boundedxmlreader.h"

#include "support/peakbound.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

using Orv::Data::AttributeBound;
using Orv::Data::BoundedXmlReader;
using TestSupport::caseName;
using TestSupport::pick;
using TestSupport::seededRandom;

std::string repeated(const std::string& text, int count)
{
    std::string all;
    all.reserve(text.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

struct Reading
{
    QString error;    // empty for a document that was read to its end
    qint64 texts = 0; // characters of all texts and values
    qint64 elements = 0;
};

Reading readAll(QIODevice& device)
{
    BoundedXmlReader reader(&device);
    Reading reading;
    while (!reader.atEnd() && !reader.hasError()) {
        const auto token = reader.advance();
        if (token == QXmlStreamReader::Characters)
            reading.texts += reader.text().size();
        if (token != QXmlStreamReader::StartElement)
            continue;
        ++reading.elements;
        const QXmlStreamAttributes attributes = reader.attributes();
        for (const auto& attribute : attributes)
            reading.texts += attribute.value().size();
    }
    reading.error = reader.errorString();
    return reading;
}

Reading readAll(const std::string& bytes)
{
    QByteArray copy = QByteArray::fromStdString(bytes);
    QBuffer buffer(&copy);
    buffer.open(QIODevice::ReadOnly);
    return readAll(buffer);
}

// The error without its place.
std::string errorOf(const Reading& reading)
{
    const std::string prefix = "ORV_DATA_XML_DATA_READER_ERROR_XML_";
    std::string error = reading.error.toStdString();
    if (error.compare(0, prefix.size(), prefix) != 0)
        return error;
    return error.substr(prefix.size(), error.find_first_of("0123456789") - prefix.size() - 1);
}

std::string attributes(int count, const std::string& value)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " a" + std::to_string(i) + "=" + value;
    return text;
}

std::string doctype(const std::string& declarations)
{
    return "<!DOCTYPE a [" + declarations + "]>";
}

std::string entity(const std::string& name, const std::string& text)
{
    return "<!ENTITY " + name + " '" + text + "'>";
}

const std::string FourThousand = entity("e", std::string(4000, 'x'));

std::string inUtf16(const std::string& ascii, bool isBigEndian, const std::string& mark = {})
{
    std::string bytes = mark;
    for (const char c : ascii)
        bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

std::string declared(const std::string& encoding)
{
    return "<?xml version='1.0' encoding='" + encoding + "'?>";
}

// Documents that are read.

struct GoodCase
{
    const char* name;
    std::string bytes;
    qint64 texts;
};

std::ostream& operator<<(std::ostream& stream, const GoodCase& c)
{
    return stream << c.name;
}

class BoundedXml : public testing::TestWithParam<GoodCase>
{};

TEST_P(BoundedXml, IsReadWhole)
{
    const Reading reading = readAll(GetParam().bytes);

    EXPECT_EQ(reading.error.toStdString(), "");
    EXPECT_EQ(reading.texts, GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, BoundedXml,
    testing::Values(
        GoodCase{"AsManyAsThereMayBe",
                 "<a" + attributes(AttributeBound::MaximumAttributes, "'>'") + "/>", 1000},
        GoodCase{
            "AsManyOnEachOfManyElements",
            "<a>" +
                repeated("<b" + attributes(AttributeBound::MaximumAttributes, "''") + "/>", 50) +
                "</a>",
            0},
        GoodCase{"AValueThatLooksLikeMany", "<a b=\"" + repeated("a='1' ", 20000) + "\"/>", 120000},
        GoodCase{"ATextThatLooksLikeMany", "<a>" + repeated("a='1' ", 20000) + "</a>", 120000},
        GoodCase{"ACommentThatLooksLikeMany", "<a><!--" + repeated("a='1' ", 20000) + "--></a>", 0},
        GoodCase{"AnInstructionThatLooksLikeMany", "<a><?b " + repeated("a='1' ", 20000) + "?></a>",
                 0}),
    caseName<GoodCase>);

INSTANTIATE_TEST_SUITE_P(
    Entities, BoundedXml,
    testing::Values(
        GoodCase{"AFewMegabytesInASmallDocument",
                 doctype(FourThousand) + "<a>" + repeated("&e;", 2500) + "</a>", 10000000},
        GoodCase{"AHundredTimesTheDocument",
                 doctype(FourThousand) + "<a b='" + std::string(300000, 'y') + "'>" +
                     repeated("&e;", 7000) + "</a>",
                 28300000},
        GoodCase{"SmallOnesVeryOften",
                 doctype(entity("e", "x")) + "<a>" + repeated("&e;", 1000000) + "</a>", 1000000},
        GoodCase{"NestedOnes",
                 doctype(entity("e", "xy") + entity("f", "&e;&e;")) + "<a b='&f;'>&f;</a>", 8},
        GoodCase{"OnesOfMarkup", doctype(entity("e", "<b c=\"xy\"/>z")) + "<a>&e;&e;</a>", 6},
        GoodCase{"OnesThatEveryDocumentHas",
                 doctype(FourThousand) + "<a>" + repeated("&lt;&amp;&#65;", 100000) + "</a>",
                 300000},
        GoodCase{"OnesOfAParameterEntity",
                 doctype("<!ENTITY % p \"<!ENTITY e 'xyz'>\"> %p;") + "<a>&e;</a>", 3},
        GoodCase{"DefaultValues", doctype("<!ATTLIST a b CDATA 'xyz'>") + "<a/>", 3},
        GoodCase{"DefaultValuesBesideOthers", doctype("<!ATTLIST a b CDATA 'xyz'>") + "<a c='12'/>",
                 5},
        GoodCase{"PercentSignsInFrontOfTheRoot", "<!--" + repeated("%20", 10000) + "--><a>x</a>",
                 1},
        GoodCase{"ALongCommentInFrontOfTheRoot", "<!--" + repeated("<x> ", 100000) + "--><a>x</a>",
                 1}),
    caseName<GoodCase>);

INSTANTIATE_TEST_SUITE_P(
    Encodings, BoundedXml,
    testing::Values(
        GoodCase{"Utf8WithAMark", "\xEF\xBB\xBF<a>\xC3\xA9</a>", 1},
        GoodCase{"Utf8WithAMarkAndADeclaration", "\xEF\xBB\xBF" + declared("UTF-8") + "<a>x</a>",
                 1},
        GoodCase{"Latin1", declared("ISO-8859-1") + "<a b='\xE9'>\xE9</a>", 2},
        GoodCase{"Windows", declared("windows-1252") + "<a b='\x80'/>", 1},
        GoodCase{"Utf16", inUtf16("<a b='x'>" + std::string(20000, 'y') + "</a>", false), 20001},
        GoodCase{"Utf16WithAMark", inUtf16("<a b='x'>y</a>", false, "\xFF\xFE"), 2},
        GoodCase{"Utf16BigEndian", inUtf16("<a b='x'>y</a>", true), 2},
        GoodCase{"Utf16BigEndianWithAMark", inUtf16("<a b='x'>y</a>", true, "\xFE\xFF"), 2},
        GoodCase{"Utf16WithADeclaration",
                 inUtf16(declared("UTF-16") + "<a b='x'>y</a>", true, "\xFE\xFF"), 2}),
    caseName<GoodCase>);

TEST(BoundedXmlReader, KeepsCharactersThatLieAcrossTwoBlocks)
{
    const std::string clef("\x34\xD8\x1E\xDD", 4); // one character, two of UTF-16
    const std::string text =
        inUtf16("<a>", false, "\xFF\xFE") + repeated(clef, 5000) + inUtf16("b</a>", false);

    EXPECT_EQ(readAll(text).texts, 10001);
    EXPECT_EQ(readAll(inUtf16("<a>", false) + repeated(clef, 5000) + inUtf16("b</a>", false)).texts,
              10001);
}

// Documents that end early.

struct BadCase
{
    const char* name;
    std::string (*bytes)();
    const char* error;
};

std::ostream& operator<<(std::ostream& stream, const BadCase& c)
{
    return stream << c.name;
}

// The most memory that the process has held so far, in bytes.
long peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

class UnboundedXml : public testing::TestWithParam<BadCase>
{};

TEST_P(UnboundedXml, IsRefused)
{
    EXPECT_EQ(errorOf(readAll(GetParam().bytes())), GetParam().error);
}

TEST_P(UnboundedXml, TakesLittleMemory)
{
    const std::string bytes = GetParam().bytes();
    const long before = peakMemory();

    readAll(bytes);

    EXPECT_LT(peakMemory() - before, TestSupport::peakBound(300L << 20));
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, UnboundedXml,
    testing::Values(
        BadCase{"OneTooMany", [] { return "<a" + attributes(1001, "''") + "/>"; },
                "TOO_MANY_ATTRIBUTES"},
        BadCase{"FarTooMany", [] { return "<a" + attributes(80000, "''") + "/>"; },
                "TOO_MANY_ATTRIBUTES"},
        BadCase{"WithEndsOfTagsAsValues", [] { return "<a" + attributes(80000, "'>'") + "/>"; },
                "TOO_MANY_ATTRIBUTES"},
        BadCase{"WithQuotesAsValues", [] { return "<a" + attributes(80000, "'\"'") + "/>"; },
                "TOO_MANY_ATTRIBUTES"},
        BadCase{"InUtf16", [] { return inUtf16("<a" + attributes(80000, "''") + "/>", false); },
                "TOO_MANY_ATTRIBUTES"},
        BadCase{"ThatEndInsideOfABlock",
                [] { return "<a><b" + attributes(1001, "''") + "/><c/></a>"; },
                "TOO_MANY_ATTRIBUTES"},
        BadCase{"BehindALongText",
                [] {
                    return "<a>" + std::string(5000, 'x') + "<b" + attributes(80000, "''") +
                           "/></a>";
                },
                "TOO_MANY_ATTRIBUTES"}),
    caseName<BadCase>);

std::string often(const std::string& reference, const std::string& declarations)
{
    return doctype(declarations) + "<a>" + repeated(reference, 300000) + "</a>";
}

INSTANTIATE_TEST_SUITE_P(
    Entities, UnboundedXml,
    testing::Values(
        BadCase{"InAText", [] { return often("&e;", FourThousand); }, "ENTITIES_TOO_LARGE"},
        BadCase{"InAValue",
                [] { return doctype(FourThousand) + "<a b='" + repeated("&e;", 300000) + "'/>"; },
                "ENTITIES_TOO_LARGE"},
        BadCase{"InManyValues",
                [] {
                    return doctype(FourThousand) + "<a>" + repeated("<b c='&e;'/>", 300000) +
                           "</a>";
                },
                "ENTITIES_TOO_LARGE"},
        BadCase{"NestedOnes",
                [] {
                    return often("&f;", entity("e", std::string(500, 'x')) +
                                            entity("f", repeated("&e;", 7)));
                },
                "ENTITIES_TOO_LARGE"},
        BadCase{"DeclaredByAParameterEntity",
                [] {
                    return often("&e;",
                                 "<!ENTITY % p \"" + FourThousand.substr(0, 3900) + "'>\">%p;");
                },
                "ENTITIES_TOO_LARGE"},
        BadCase{"NestedTooDeep",
                [] {
                    std::string entities = entity("e0", "x");
                    for (int i = 1; i < 1500; ++i)
                        entities +=
                            entity("e" + std::to_string(i), "&e" + std::to_string(i - 1) + ';');
                    return doctype(entities) + "<a>&e1499;</a>";
                },
                "ENTITIES_TOO_LARGE"},
        BadCase{"OfMarkup", [] { return often("&e;", entity("e", repeated("<b/>", 900))); },
                "ENTITIES_TOO_LARGE"},
        BadCase{"WithANameOfLetters",
                [] { return often("&\xC3\xA9;", entity("\xC3\xA9", std::string(4000, 'x'))); },
                "ENTITIES_TOO_LARGE"},
        BadCase{"InUtf16", [] { return inUtf16(often("&e;", FourThousand), false); },
                "ENTITIES_TOO_LARGE"},
        BadCase{"InUtf16BigEndian",
                [] { return inUtf16(often("&e;", FourThousand), true, "\xFE\xFF"); },
                "ENTITIES_TOO_LARGE"},
        BadCase{"InLatin1", [] { return declared("ISO-8859-1") + often("&e;", FourThousand); },
                "ENTITIES_TOO_LARGE"},
        BadCase{"AMegabyteBelowTheSizeThatASmallDocumentMayHave",
                [] { return doctype(FourThousand) + "<a>" + repeated("&e;", 3000) + "</a>"; },
                "ENTITIES_TOO_LARGE"},
        BadCase{"AsDefaultValues",
                [] {
                    return doctype("<!ATTLIST b c CDATA '" + std::string(4000, 'x') + "'>") +
                           "<a>" + repeated("<b/>", 300000) + "</a>";
                },
                "ENTITIES_TOO_LARGE"}),
    caseName<BadCase>);

INSTANTIATE_TEST_SUITE_P(
    DocumentTypes, UnboundedXml,
    testing::Values(
        BadCase{"OfManyDeclarations", [] { return doctype(repeated(entity("e", "x"), 40000)); },
                "DOCUMENT_TYPE_TOO_LARGE"},
        BadCase{"OfManyAttributes",
                [] { return doctype(repeated("<!ATTLIST a b CDATA 'x'>", 40000)); },
                "DOCUMENT_TYPE_TOO_LARGE"},
        BadCase{"OfMoreAttributesThanEachElementCanBeComparedWith",
                [] { return doctype(repeated("<!ATTLIST a b CDATA 'x'>", 300)) + "<a/>"; },
                "DOCUMENT_TYPE_TOO_LARGE"},
        BadCase{"OfParameterEntities",
                [] {
                    return doctype("<!ENTITY % p '" + std::string(4000, ' ') + "'>" +
                                   repeated("%p;", 300000));
                },
                "DOCUMENT_TYPE_TOO_LARGE"},
        BadCase{"BehindABlankOfAnyLength",
                [] {
                    return std::string(8187, ' ') +
                           doctype("<!ENTITY % p ''>" + repeated("%p;", 300000));
                },
                "DOCUMENT_TYPE_TOO_LARGE"}),
    caseName<BadCase>);

INSTANTIATE_TEST_SUITE_P(
    Encodings, UnboundedXml,
    testing::Values(BadCase{"DeclaredTooLate",
                            [] {
                                return "<?xml version='1.0'" + std::string(9000, ' ') +
                                       "encoding='ISO-8859-1'?><a/>";
                            },
                            "BAD_ENCODING"},
                    BadCase{"DeclaredTooLateInUtf16",
                            [] {
                                return inUtf16("<?xml version='1.0'" + std::string(9000, ' ') +
                                                   "encoding='ISO-8859-1'?><a/>",
                                               false);
                            },
                            "BAD_ENCODING"},
                    BadCase{"InWhichTheDeclarationReadsOtherwise",
                            [] { return declared("UTF-16") + "<a/>"; }, "BAD_ENCODING"},
                    BadCase{"ThatEndsInHalfACharacter",
                            [] { return inUtf16("<a>", false) + std::string("\x34\xD8", 2); },
                            "Premature end of document."},
                    BadCase{"Unknown", [] { return declared("folly") + "<a/>"; },
                            "Encoding folly is unsupported"}),
    caseName<BadCase>);

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
INSTANTIATE_TEST_SUITE_P(
    EncodingsThatHideReferences, UnboundedXml,
    testing::Values(BadCase{"Utf7",
                            [] { return declared("UTF-7") + often("+ACY-e;", FourThousand); },
                            "ENTITIES_TOO_LARGE"},
                    BadCase{"Iso2022",
                            [] { return declared("ISO-2022-JP") + often("&e;", FourThousand); },
                            "ENTITIES_TOO_LARGE"}),
    caseName<BadCase>);
#endif

// Beside a reader without bounds.

// All tokens of a document, and whether it ended in an error.
template <class Next>
QStringList tokensOf(QXmlStreamReader& reader, const Next& next)
{
    QStringList tokens;
    while (!reader.atEnd() && !reader.hasError()) {
        next();
        QString token = reader.tokenString() + reader.qualifiedName().toString() + '|' +
                        reader.text().toString();
        const QXmlStreamAttributes attributes = reader.attributes();
        for (const auto& attribute : attributes)
            token +=
                '|' + attribute.qualifiedName().toString() + '=' + attribute.value().toString();
        tokens.append(token);
    }
    return reader.hasError() ? QStringList{"failed"} : tokens;
}

QStringList plainTokens(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&buffer);
    return tokensOf(reader, [&] { reader.readNext(); });
}

QStringList boundedTokens(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    BoundedXmlReader reader(&buffer);
    return tokensOf(reader, [&] { reader.advance(); });
}

// A document over several blocks, with something of all that there is in XML, at random places.
std::string randomDocument(std::mt19937& random)
{
    static const std::vector<std::string> pieces{
        "<b c='1' d=\"2'\"/>",  "text ",         "&e;",   "&amp;&#65;",      "<!-- <c a='1' -->",
        "<![CDATA[<d a=''>]]>", "<?go on='1'?>", "\n\t ", "<f>&e;</f>",      "\xC3\xA9",
        "<g h='&e;&f;'/>",      "</g",           "<",     "<i j='1' j='2'>", "&unknown;"};
    std::string text = declared(pick(random, 0, 1) == 0 ? "UTF-8" : "ISO-8859-1") +
                       doctype(entity("e", "x&amp;y") + entity("f", "&e;&e;")) + "<a>";
    const std::size_t kinds =
        pieces.size() - static_cast<std::size_t>(pick(random, 0, 3) == 0 ? 0 : 4);
    for (int i = 0; i < 1500; ++i)
        text += pieces[pick(random, std::size_t{0}, kinds - 1)];
    return text + "</a>";
}

// The first document of many that does not read the same with bounds and without.
std::optional<std::string> firstDifference(std::mt19937 random)
{
    for (int i = 0; i < 300; ++i) {
        const std::string text = randomDocument(random);
        const QByteArray bytes = QByteArray::fromStdString(text);
        if (plainTokens(bytes) != boundedTokens(bytes))
            return text;
    }
    return {};
}

TEST(BoundedXmlReader, ReadsWhatAReaderWithoutBoundsReads)
{
    EXPECT_EQ(firstDifference(seededRandom(20261122)), std::nullopt);
}

// Gives the begin of a document, and then fails without end.
class FailingDevice final : public QIODevice
{
public:
    explicit FailingDevice(QByteArray begin) : m_begin(std::move(begin))
    {
        open(ReadOnly | Unbuffered);
    }
    bool isSequential() const override { return true; }
    bool atEnd() const override { return false; }

protected:
    qint64 readData(char* data, qint64 maximumSize) override
    {
        const auto count = std::min<qint64>(maximumSize, m_begin.size());
        std::copy_n(m_begin.constData(), count, data);
        m_begin.clear();
        return count == 0 ? -1 : count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_begin;
};

TEST(BoundedXmlReader, RefusesAReferenceInsideOfAnother)
{
    EXPECT_NE(errorOf(readAll(doctype(FourThousand) + "<a>&e&e;</a>")), "");
}

TEST(BoundedXmlReader, TakesADocumentWithoutADevice)
{
    BoundedXmlReader reader(nullptr);
    reader.addData(QByteArray("<!DOCTYPE a><a/>"));

    EXPECT_EQ(tokensOf(reader, [&] { reader.advance(); }).size(), 5);
}

TEST(BoundedXmlReader, EndsWhenItsDeviceFails)
{
    FailingDevice atOnce{{}};
    FailingDevice inTheMiddle("<a><b/><c>");

    EXPECT_EQ(errorOf(readAll(atOnce)), "DEVICE_FAILED");
    EXPECT_EQ(errorOf(readAll(inTheMiddle)), "DEVICE_FAILED");
}

} // namespace

// Light documents from the text of files, and back.
#include "data/lightdocumentreader.h"
#include "data/lightdocumentwriter.h"
#include "data/xmldatareader.h"
#include <gtest/gtest.h>

namespace {

using Orv::Data::DocumentError;
using Orv::Data::LightDocument;
using Orv::Data::XmlLane;

constexpr int MaximumDepth = Orv::Data::XmlDataReader::MaximumDepth;

QString errorOf(const QByteArray& bytes)
{
    LightDocument document;
    DocumentError error;
    EXPECT_FALSE(readLightDocument(bytes, document, error));
    EXPECT_TRUE(document.root().isNull());
    return error.text();
}

QByteArray throughLane(const QByteArray& bytes, XmlLane lane)
{
    LightDocument document;
    DocumentError error;
    EXPECT_TRUE(readLightDocument(bytes, document, error, lane)) << error.text().toStdString();
    return serialise(document);
}

// In both lanes.
QByteArray through(const QByteArray& bytes)
{
    QByteArray text = throughLane(bytes, XmlLane::Fast);
    EXPECT_EQ(text, throughLane(bytes, XmlLane::General));
    return text;
}

QByteArray declared(const QByteArray& rest)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + rest;
}

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

} // namespace

TEST(LightDocumentText, IsUtf8AndSaysSo)
{
    EXPECT_EQ(through("<a v=\"\xC3\xA9\xF0\x9F\x8C\xB2\"/>"),
              declared("<a v=\"\xC3\xA9\xF0\x9F\x8C\xB2\"/>\n"));
}

TEST(LightDocumentText, ReadsLatin1)
{
    EXPECT_EQ(through("<?xml version='1.0' encoding='ISO-8859-1' standalone='yes'?><a v='\xE9'/>"),
              declared("<a v=\"\xC3\xA9\"/>\n"));
}

TEST(LightDocumentText, ReadsUtf16)
{
    const QString text = QStringLiteral("<?xml version='1.0' encoding='UTF-16'?><a v='\u00E9'/>");
    const QChar mark(QChar::ByteOrderMark);
    const QString marked = mark + text;
    const QByteArray bytes(reinterpret_cast<const char*>(marked.utf16()),
                           static_cast<int>(marked.size() * 2));
    EXPECT_EQ(through(bytes), declared("<a v=\"\xC3\xA9\"/>\n"));
}

TEST(LightDocumentText, EscapesAndIndentsAsADom)
{
    const QByteArray text = declared("<a c=\"&quot;'&lt;>&amp;]]&gt;&#xa;&#x9;&#xd;\">\n"
                                     " <b/>\n <c>\n  <d v=\"\"/>\n </c>\n"
                                     " <e>text &lt; &amp; \"text\" ]]&gt;<f/> more</e>\n"
                                     " <!-- a comment -->\n</a>\n<!-- behind -->\n");
    EXPECT_EQ(through(text), text);
}

TEST(LightDocumentText, EscapesValuesAlikeWhereverTheyWere)
{
    const QByteArray value =
        "&#34;&quot;'&apos;&lt;>&amp;]]>&gt;&#10;&#xA;&#x9;&#13;\xC3\xA9&#233;";
    EXPECT_EQ(through("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a v=\"" + value + "\"/>"),
              declared("<a v=\"&quot;&quot;''&lt;>&amp;]]&gt;>&#xa;&#xa;&#x9;&#xd;"
                       "\xC3\xA9\xC3\xA9\"/>\n"));
}

TEST(LightDocumentText, TakesBothQuotes)
{
    EXPECT_EQ(through("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a v='\"'><a v=\"'\"/></a>"),
              declared("<a v=\"&quot;\">\n <a v=\"'\"/>\n</a>\n"));
}

TEST(LightDocumentText, KeepsCommentsInstructionsAndCData)
{
    const QByteArray text =
        declared("<!-- before -->\n<?style sheet?>\n<a><![CDATA[ x<y ]]></a>\n");
    EXPECT_EQ(through(text), text);
}

TEST(LightDocumentText, HasAttributesInTheOrderOfTheirNames)
{
    EXPECT_EQ(through("<a v='1' b='2' k='3'/>"), declared("<a b=\"2\" k=\"3\" v=\"1\"/>\n"));
}

TEST(LightDocumentText, LosesSpaceBetweenElements)
{
    EXPECT_EQ(through("<a>\n\n   <b/>  <c> </c>\n</a>"), declared("<a>\n <b/>\n <c/>\n</a>\n"));
}

TEST(LightDocumentText, HoldsTheTextsOfDeclaredEntities)
{
    EXPECT_EQ(through("<!DOCTYPE a [<!ENTITY e \"value\">]><a v='&e;'>&e;</a>"),
              declared("<a v=\"value\">value</a>\n"));
}

TEST(LightDocumentText, RefusesUndeclaredEntitiesInValues)
{
    EXPECT_EQ(errorOf("<a v='&e;'/>"),
              "PARSE_ERROR_AT_LINE_1_AND_COLUMN_9 :\nEntity 'e' not declared.");
}

TEST(LightDocumentText, RefusesUndeclaredEntitiesOfADtdThatIsNotRead)
{
    EXPECT_TRUE(
        errorOf("<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>").endsWith("Entity 'e' not declared."));
}

TEST(LightDocumentText, RefusesEntitiesThatGrow)
{
    QByteArray dtd = "<!DOCTYPE a [<!ENTITY e0 \"eeeeeeeeee\">";
    for (const char* const next : {"1", "2", "3", "4", "5", "6", "7", "8", "9"}) {
        const char former = static_cast<char>(*next - 1);
        const QByteArray reference = QByteArray("&e") + former + ';';
        dtd += QByteArray("<!ENTITY e") + next + " \"" + reference.repeated(10) + "\">";
    }
    EXPECT_TRUE(errorOf(dtd + "]><a>&e9;</a>").startsWith("PARSE_ERROR_AT_LINE_1_AND_COLUMN_"));
}

TEST(LightDocumentText, RefusesAnEmptyText)
{
    EXPECT_TRUE(errorOf("").startsWith("PARSE_ERROR_AT_LINE_1_AND_COLUMN_0 :\n"));
}

TEST(LightDocumentText, TellsLineColumnAndReasonOfAnError)
{
    EXPECT_EQ(errorOf("<a>\n <b>\n</a>"),
              "PARSE_ERROR_AT_LINE_3_AND_COLUMN_4 :\nOpening and ending tag mismatch.");
}

TEST(LightDocumentText, NestsToTheLimitOfTheReader)
{
    const QByteArray text = through(nested(MaximumDepth));
    EXPECT_EQ(text.count("<a>"), MaximumDepth - 1);
    EXPECT_EQ(text.count("<a/>"), 1);
}

TEST(LightDocumentText, RefusesToNestDeeper)
{
    EXPECT_EQ(errorOf("<x>\n" + nested(MaximumDepth) + "</x>"),
              "ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_2_15000");
}

TEST(LightDocumentText, IndentsDeepLevelsLikeTheLastOne)
{
    const QByteArray text = through(nested(Orv::Data::MaximumIndent + 10));
    const QByteArray deepest = '\n' + QByteArray(Orv::Data::MaximumIndent, ' ') + "<a/>\n";
    EXPECT_TRUE(text.contains(deepest));
}

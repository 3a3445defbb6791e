#include "updating/domtext.h"

#include "data/xmldatareader.h"
#include <QDomDocument>
#include <gtest/gtest.h>
#include <optional>

namespace {

using Ksx::Core::DomError;
using Ksx::Core::parseDom;
using Ksx::Core::serialiseDom;

constexpr int MaximumDepth = Orv::Data::XmlDataReader::MaximumDepth;

QString errorOf(const QByteArray& bytes)
{
    QDomDocument document;
    DomError error;
    EXPECT_FALSE(parseDom(bytes, document, error));
    return error.text();
}

QByteArray throughDom(const QByteArray& bytes)
{
    QDomDocument document;
    DomError error;
    EXPECT_TRUE(parseDom(bytes, document, error)) << error.text().toStdString();
    return serialiseDom(document);
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

TEST(DomText, IsUtf8AndSaysSo)
{
    EXPECT_EQ(throughDom("<a v=\"\xC3\xA9\xF0\x9F\x8C\xB2\"/>"),
              declared("<a v=\"\xC3\xA9\xF0\x9F\x8C\xB2\"/>\n"));
}

TEST(DomText, ReadsLatin1)
{
    EXPECT_EQ(
        throughDom("<?xml version='1.0' encoding='ISO-8859-1' standalone='yes'?><a v='\xE9'/>"),
        declared("<a v=\"\xC3\xA9\"/>\n"));
}

TEST(DomText, ReadsUtf16)
{
    const QString text = QStringLiteral("<?xml version='1.0' encoding='UTF-16'?><a v='\u00E9'/>");
    const QChar mark(QChar::ByteOrderMark);
    const QString marked = mark + text;
    const QByteArray bytes(reinterpret_cast<const char*>(marked.utf16()),
                           static_cast<int>(marked.size() * 2));
    EXPECT_EQ(throughDom(bytes), declared("<a v=\"\xC3\xA9\"/>\n"));
}

TEST(DomText, IsTheTextOfQDomDocument)
{
    const QByteArray text = declared("<a c=\"&quot;'&lt;>&amp;]]&gt;&#xa;&#x9;&#xd;\">\n"
                                     " <b/>\n <c>\n  <d v=\"\"/>\n </c>\n"
                                     " <e>text &lt; &amp; \"text\" ]]&gt;<f/> more</e>\n"
                                     " <!-- a comment -->\n</a>\n<!-- behind -->\n");
    QDomDocument document;
    document.setContent(text);
    const QByteArray expected = document.toByteArray(1);
    EXPECT_EQ(expected.mid(expected.indexOf('\n')), text.mid(text.indexOf('\n')));
    EXPECT_EQ(throughDom(text), text);
}

TEST(DomText, KeepsCommentsInstructionsAndCData)
{
    const QByteArray text =
        declared("<!-- before -->\n<?style sheet?>\n<a><![CDATA[ x<y ]]></a>\n");
    EXPECT_EQ(throughDom(text), text);
}

TEST(DomText, HasAttributesInTheOrderOfTheirNames)
{
    EXPECT_EQ(throughDom("<a v='1' b='2' k='3'/>"), declared("<a b=\"2\" k=\"3\" v=\"1\"/>\n"));
}

TEST(DomText, LosesSpaceBetweenElements)
{
    EXPECT_EQ(throughDom("<a>\n\n   <b/>  <c> </c>\n</a>"), declared("<a>\n <b/>\n <c/>\n</a>\n"));
}

TEST(DomText, HoldsTheTextsOfDeclaredEntities)
{
    EXPECT_EQ(throughDom("<!DOCTYPE a [<!ENTITY e \"value\">]><a v='&e;'>&e;</a>"),
              declared("<a v=\"value\">value</a>\n"));
}

TEST(DomText, RefusesUndeclaredEntitiesInValues)
{
    EXPECT_EQ(errorOf("<a v='&e;'/>"),
              "PARSE_ERROR_AT_LINE_1_AND_COLUMN_9 :\nEntity 'e' not declared.");
}

TEST(DomText, RefusesUndeclaredEntitiesOfADtdThatIsNotRead)
{
    EXPECT_TRUE(
        errorOf("<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>").endsWith("Entity 'e' not declared."));
}

TEST(DomText, RefusesEntitiesThatGrow)
{
    QByteArray dtd = "<!DOCTYPE a [<!ENTITY e0 \"eeeeeeeeee\">";
    for (const char* const next : {"1", "2", "3", "4", "5", "6", "7", "8", "9"}) {
        const char former = static_cast<char>(*next - 1);
        const QByteArray reference = QByteArray("&e") + former + ';';
        dtd += QByteArray("<!ENTITY e") + next + " \"" + reference.repeated(10) + "\">";
    }
    EXPECT_TRUE(errorOf(dtd + "]><a>&e9;</a>").startsWith("PARSE_ERROR_AT_LINE_1_AND_COLUMN_"));
}

TEST(DomText, RefusesAnEmptyText)
{
    EXPECT_TRUE(errorOf("").startsWith("PARSE_ERROR_AT_LINE_1_AND_COLUMN_0 :\n"));
}

TEST(DomText, TellsLineColumnAndReasonOfAnError)
{
    EXPECT_EQ(errorOf("<a>\n <b>\n</a>"),
              "PARSE_ERROR_AT_LINE_3_AND_COLUMN_4 :\nOpening and ending tag mismatch.");
}

TEST(DomText, NestsToTheLimitOfTheReader)
{
    const QByteArray text = throughDom(nested(MaximumDepth));
    EXPECT_EQ(text.count("<a>"), MaximumDepth - 1);
    EXPECT_EQ(text.count("<a/>"), 1);
}

TEST(DomText, RefusesToNestDeeper)
{
    EXPECT_EQ(errorOf("<x>\n" + nested(MaximumDepth) + "</x>"),
              "ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_2_15000");
}

TEST(DomText, LeavesStackToDestroyTheDeepestDocument)
{
    std::optional<QDomDocument> document(std::in_place);
    DomError error;
    EXPECT_TRUE(parseDom(nested(MaximumDepth), *document, error));
    const QDomNode deepest = document->elementsByTagName("a").item(MaximumDepth - 1);

    document.reset(); // its destructor calls itself for each level

    EXPECT_FALSE(deepest.isNull());
    EXPECT_TRUE(deepest.parentNode().isNull());
}

TEST(DomText, IndentsDeepLevelsLikeTheLastOne)
{
    const QByteArray text = throughDom(nested(Ksx::Core::MaximumIndent + 10));
    const QByteArray deepest = '\n' + QByteArray(Ksx::Core::MaximumIndent, ' ') + "<a/>\n";
    EXPECT_TRUE(text.contains(deepest));
}

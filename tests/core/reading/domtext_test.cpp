#include "reading/domtext.h"

#include "data/xmldatareader.h"
#include <QDomDocument>
#include <gtest/gtest.h>
#include <optional>

namespace {

using Ksx::Core::parseDom;

constexpr int MaximumDepth = Orv::Data::XmlDataReader::MaximumDepth;

QByteArray throughDom(const QByteArray& bytes)
{
    QDomDocument document;
    Orv::Data::DocumentError error;
    EXPECT_TRUE(parseDom(bytes, document, error)) << error.text().toStdString();
    return document.toByteArray(-1);
}

} // namespace

TEST(DomText, HasElementsAttributesAndTexts)
{
    EXPECT_EQ(throughDom("<a v='1'>\n <b w='&lt;'/>text<c/></a>"),
              "<a v=\"1\"><b w=\"&lt;\"/>text<c/></a>");
}

TEST(DomText, HasCommentsInstructionsAndCData)
{
    EXPECT_EQ(throughDom("<!-- c --><?style sheet?><a><![CDATA[ x<y ]]></a>"),
              "<!-- c -->\n<?style sheet?>\n<a><![CDATA[ x<y ]]></a>");
}

TEST(DomText, HasTheTextsOfDeclaredEntities)
{
    EXPECT_EQ(throughDom("<!DOCTYPE a [<!ENTITY e \"value\">]><a v='&e;'>&e;</a>"),
              "<a v=\"value\">value</a>");
}

TEST(DomText, SaysWhereATextIsNoDocument)
{
    QDomDocument document;
    Orv::Data::DocumentError error;
    EXPECT_FALSE(parseDom("<a>\n <b>\n</a>", document, error));
    EXPECT_EQ(error.line, 3);
    EXPECT_EQ(error.message, "Opening and ending tag mismatch.");
}

TEST(DomText, LeavesStackToDestroyTheDeepestDocument)
{
    const QByteArray nested =
        QByteArray("<a>").repeated(MaximumDepth) + QByteArray("</a>").repeated(MaximumDepth);
    std::optional<QDomDocument> document(std::in_place);
    Orv::Data::DocumentError error;
    EXPECT_TRUE(parseDom(nested, *document, error));
    const QDomNode deepest = document->elementsByTagName("a").item(MaximumDepth - 1);

    document.reset(); // its destructor calls itself for each level

    EXPECT_FALSE(deepest.isNull());
    EXPECT_TRUE(deepest.parentNode().isNull());
}

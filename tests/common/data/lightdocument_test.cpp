#include "data/lightdocument.h"

#include "data/lightdocumentreader.h"
#include "data/lightdocumentwriter.h"
#include "support/shelfcases.h"
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

using Orv::Data::LightDocument;
using Orv::Data::LightElement;

class LightDocumentOf : public testing::Test
{
protected:
    // In the form of the scanner, which the other documents are not.
    void readCanonical(const QByteArray& elements)
    {
        read("<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + elements);
    }
    void read(const QByteArray& text)
    {
        Orv::Data::DocumentError error;
        ASSERT_TRUE(readLightDocument(text, document, error));
        root = document.root();
    }
    // The elements of the document, without declaration and the space between them.
    QByteArray text() const
    {
        const QString all = QString::fromUtf8(serialise(document));
        return all.mid(all.indexOf('\n')).remove(QRegularExpression("\n *")).toUtf8();
    }

    LightDocument document;
    LightElement root;
};

QByteArray emptyElements(int count, int names)
{
    QByteArray elements;
    for (int i = 0; i < count; ++i)
        elements += "<n" + QByteArray::number(i % names) + "/>";
    return elements;
}

// The names, with values, of what is visited.
std::string visited(const LightDocument& document, const std::vector<std::string_view>& names)
{
    std::string text;
    document.visitNamed(names, [&text](const LightElement& element, const LightElement& top) {
        text += std::string(top.name()) + ">" + std::string(element.name()) +
                element.value().toStdString() + " ";
    });
    return text;
}

} // namespace

TEST(LightElement, HasEmptyAnswersForNone)
{
    const LightElement none;
    EXPECT_TRUE(none.isNull());
    EXPECT_EQ(none.name(), "");
    EXPECT_EQ(none.value(), "");
    EXPECT_TRUE(none.parent().isNull());
    EXPECT_TRUE(none.firstChild().isNull());
    EXPECT_TRUE(none.nextSibling("a").isNull());
    EXPECT_EQ(none, LightElement());
}

TEST(LightDocument, IsEmptyAtFirst)
{
    EXPECT_TRUE(LightDocument().root().isNull());
}

TEST_F(LightDocumentOf, LeadsToChildrenAndSiblingsByName)
{
    readCanonical("<p><a v='1'/><b v='2'/><a v='3'/></p>");
    EXPECT_EQ(root.firstChild().value(), "1");
    EXPECT_EQ(root.firstChild().nextSibling().value(), "2");
    EXPECT_EQ(root.firstChild("a").nextSibling("a").value(), "3");
    EXPECT_TRUE(root.firstChild("b").nextSibling("b").isNull());
    EXPECT_TRUE(root.firstChild("unknown").isNull());
    EXPECT_EQ(root.firstChild().parent(), root);
    EXPECT_TRUE(root.parent().isNull());
}

TEST_F(LightDocumentOf, PassesOverNodesThatAreNoElements)
{
    read("<!-- c --><p>text<!-- c --><a v='1'/><?i x?><![CDATA[x]]><b v='2'/></p>");
    EXPECT_EQ(root.name(), "p");
    EXPECT_EQ(root.firstChild().value(), "1");
    EXPECT_EQ(root.firstChild().nextSibling().value(), "2");
}

TEST_F(LightDocumentOf, HasPrefixesInNames)
{
    read("<p:a p:v='1' v='2'/>");
    EXPECT_EQ(root.name(), "p:a");
    EXPECT_EQ(root.value(), "2");
}

TEST_F(LightDocumentOf, ResolvesReferencesInValues)
{
    readCanonical("<a v='&lt;&#233;\xC3\xA9'/>");
    EXPECT_EQ(root.value(), QStringLiteral("<\u00E9\u00E9"));
}

TEST_F(LightDocumentOf, GivesNewValues)
{
    readCanonical("<a><b v='1'/><c/></a>");
    root.firstChild("b").setValue("<2>");
    root.firstChild("c").setValue(QStringLiteral("\u00E9"));
    EXPECT_EQ(text(), "<a><b v=\"&lt;2>\"/><c v=\"\xC3\xA9\"/></a>");
}

TEST_F(LightDocumentOf, KeepsOtherAttributesBesideANewValue)
{
    read("<a z='1' b='2'/>");
    root.setValue("3");
    EXPECT_EQ(text(), "<a b=\"2\" v=\"3\" z=\"1\"/>");
}

TEST_F(LightDocumentOf, SharesValuesAmongElements)
{
    readCanonical("<a v='&lt;'><b v='1'/><c/><d v='2'/></a>");
    root.firstChild("b").shareValue(root);
    root.firstChild("d").shareValue(root.firstChild("c"));
    root.setValue("3");
    EXPECT_EQ(text(), "<a v=\"3\"><b v=\"&lt;\"/><c/><d/></a>");
}

TEST_F(LightDocumentOf, HoldsLongValues)
{
    const QString value = QString(100000, 'x');
    readCanonical("<a/>");
    root.setValue("short");
    root.append(document.makeLeaf("b", value));
    root.append(document.makeLeaf("c", "y"));
    EXPECT_EQ(root.firstChild("b").value(), value);
    EXPECT_EQ(root.value(), "short");
    EXPECT_EQ(root.firstChild("c").value(), "y");
}

TEST_F(LightDocumentOf, RenamesElements)
{
    readCanonical("<a><b><c/></b><b/></a>");
    root.firstChild().rename("new");
    EXPECT_EQ(text(), "<a><new><c/></new><b/></a>");
}

TEST_F(LightDocumentOf, AppendsValuesInUtf8)
{
    readCanonical("<a><b v=\"plain\"/><c v=\"\xc3\xa9 &amp; 1\"/><d/></a>");
    std::string text = ">";

    root.firstChild("b").appendValue(text);
    root.firstChild("c").appendValue(text);
    root.firstChild("d").appendValue(text);
    LightElement().appendValue(text);

    EXPECT_EQ(text, ">plain\xc3\xa9 & 1");
}

TEST_F(LightDocumentOf, CountsItsNodes)
{
    readCanonical("<a><b/><c/></a>");
    const std::size_t count = document.nodeCount();

    document.makeElement("d");

    EXPECT_EQ(document.nodeCount(), count + 1);
}

TEST_F(LightDocumentOf, CountsNoChangeWhileItIsRead)
{
    readCanonical("<a><b v=\"1\"/></a>");

    EXPECT_EQ(document.changeCount(), 0U);
}

struct ChangeCase
{
    const char* name;
    void (*change)(LightDocument& document, LightElement root);
};

class ChangeOfADocument : public LightDocumentOf, public testing::WithParamInterface<ChangeCase>
{};

TEST_P(ChangeOfADocument, IsCounted)
{
    readCanonical("<a><b v=\"1\"/><c><d/></c></a>");
    const std::size_t before = document.changeCount();

    GetParam().change(document, root);

    EXPECT_GT(document.changeCount(), before);
}

INSTANTIATE_TEST_SUITE_P(
    All, ChangeOfADocument,
    testing::Values(
        ChangeCase{"Rename", [](LightDocument&, LightElement root) { root.rename("x"); }},
        ChangeCase{"Value", [](LightDocument&, LightElement root) { root.setValue("x"); }},
        ChangeCase{"SharedValue", [](LightDocument&,
                                     LightElement root) { root.shareValue(root.firstChild("b")); }},
        ChangeCase{"Append", [](LightDocument& document,
                                LightElement root) { root.append(document.makeElement("x")); }},
        ChangeCase{"Insert",
                   [](LightDocument& document, LightElement root) {
                       root.insertBehind(root.firstChild(), document.makeElement("x"));
                   }},
        ChangeCase{"Take",
                   [](LightDocument&, LightElement root) {
                       root.firstChild("c").takeElements(root, root.firstChild("c"));
                   }},
        ChangeCase{"Removal",
                   [](LightDocument&, LightElement root) { root.firstChild().remove(); }}),
    TestSupport::caseName<ChangeCase>);

TEST_F(LightDocumentOf, AppendsBehindTheLastChild)
{
    readCanonical("<a><b/><c/></a>");
    root.append(document.makeElement("d"));
    root.firstChild("b").append(document.makeLeaf("e", "1"));
    EXPECT_EQ(text(), "<a><b><e v=\"1\"/></b><c/><d/></a>");
    EXPECT_EQ(root.firstChild("d").parent(), root);
}

TEST_F(LightDocumentOf, InsertsBehindAChild)
{
    readCanonical("<a><b/><c/></a>");
    root.insertBehind(root.firstChild("b"), document.makeElement("x"));
    root.insertBehind(root.firstChild("c"), document.makeElement("y"));
    EXPECT_EQ(text(), "<a><b/><x/><c/><y/></a>");
}

TEST_F(LightDocumentOf, RemovesElementsWithAllBelow)
{
    readCanonical("<a><b><c/></b><d/><b/></a>");
    root.firstChild("b").remove();
    EXPECT_EQ(text(), "<a><d/><b/></a>");
    root.firstChild("d").remove();
    root.firstChild("b").remove();
    EXPECT_EQ(text(), "<a/>");
}

TEST_F(LightDocumentOf, AppendsAndInsertsBehindRemovedChildren)
{
    readCanonical("<a><b/><c/></a>");
    const LightElement first = root.firstChild("b");
    root.firstChild("b").remove();
    root.firstChild("c").remove();
    root.append(document.makeElement("x"));
    root.insertBehind(first, document.makeElement("y"));
    EXPECT_EQ(text(), "<a><y/><x/></a>");
}

TEST_F(LightDocumentOf, KeepsTheSubtreeOfARemovedElement)
{
    readCanonical("<a><b><c v='1'/></b></a>");
    LightElement removed = root.firstChild();
    removed.remove();
    EXPECT_EQ(removed.firstChild().value(), "1");
    removed.firstChild().remove();
    EXPECT_TRUE(removed.firstChild().isNull());
}

TEST_F(LightDocumentOf, MovesTheChildElementsButOneIntoIt)
{
    readCanonical("<a><b/><g><t><x/></t></g><c><d/></c><e/></a>");
    const LightElement group = root.firstChild("g");
    group.firstChild().takeElements(root, group);
    EXPECT_EQ(text(), "<a><g><t><x/><b/><c><d/></c><e/></t></g></a>");
    EXPECT_EQ(group.firstChild().firstChild("e").parent(), group.firstChild());
}

TEST_F(LightDocumentOf, LeavesOtherNodesAndRemovedElementsWhereTheyAre)
{
    read("<a><!--1--><b/><!--2--><g/><c/><d/><!--3--></a>");
    root.firstChild("c").remove();
    LightElement group = root.firstChild("g");
    group.takeElements(root, group);
    EXPECT_EQ(text(), "<a><!--1--><!--2--><g><b/><d/></g><!--3--></a>");
}

TEST_F(LightDocumentOf, VisitsElementsBelowTheChildrenOfTheRoot)
{
    readCanonical("<a v='0'><a v='1'><b><a v='2'><a v='3'/></a></b></a><c><d/><a v='4'/></c></a>");
    EXPECT_EQ(visited(document, {"a", "d", "unknown"}), "a>a2 a>a3 c>d c>a4 ");
}

TEST_F(LightDocumentOf, VisitsNoTextsAndComments)
{
    read("<!--a--><a><!--a--><b>a<!--a--><a v='1'/></b></a>");
    EXPECT_EQ(visited(document, {"a"}), "b>a1 ");
}

TEST_F(LightDocumentOf, GrowsOverManyNodesAndNames)
{
    const QByteArray items = emptyElements(200000, 1000);
    readCanonical("<a>" + items + "</a>");
    EXPECT_EQ(text(), "<a>" + items + "</a>");
}

// Object trees from light documents.
#include "data/lightdocumentreader.h"
#include "data/lightdocumentwriter.h"
#include "data/xmldocument.h"
#include "support/shelfbuilder.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <optional>

namespace {

using namespace TestDocument;
using Orv::Data::LightDocument;
using Orv::Data::LightElement;
using TestSupport::caseName;
using TestSupport::seededRandom;

LightDocument lightDocument(const std::string& text)
{
    LightDocument document;
    Orv::Data::DocumentError error;
    EXPECT_TRUE(readLightDocument(QByteArray::fromStdString(text), document, error));
    return document;
}

// Returns the tree as it is written, or nothing without a tree.
std::optional<std::string> treeText(const LightDocument& document,
                                    const Orv::Data::ProgressFunction& progress = nullptr)
{
    const auto tree = treeOf(
        document, [] { return std::make_unique<Shelf>(); }, progress);
    return tree == nullptr ? std::nullopt : std::optional<std::string>(written(*tree));
}

// Returns the text with other characters in the place of control characters and of no characters,
// which are not plain.
std::string plain(const std::string& text)
{
    QString characters = QString::fromStdString(text);
    for (QChar& c : characters)
        if ((c.unicode() >= 0x7F && c.unicode() < 0xA0) || c == QChar::ByteOrderMark)
            c = QChar(0xE9);
        else if (c.isLowSurrogate())
            c = QChar(0xDC00);
    return characters.toStdString();
}

// Returns the first of some random documents that is another when it was a light one.
std::optional<std::string> firstChangedDocument(std::mt19937 random)
{
    for (int i = 0; i < 300; ++i) {
        const std::string bytes = plain(written(*randomShelf(random, 4)));
        if (treeText(lightDocument(bytes)) != bytes)
            return bytes;
    }
    return {};
}

std::string nested(int depth)
{
    return (QByteArray("<x>").repeated(depth) + QByteArray("</x>").repeated(depth)).toStdString();
}

struct TextCase
{
    const char* name;
    std::string text;
};

class LightDocumentThatIsNotPlain : public testing::TestWithParam<TextCase>
{};

class LightDocumentWithoutTree : public testing::TestWithParam<TextCase>
{};

const std::string Plain = R"(<shelf><name v="hall"/><shelves/></shelf>)";

} // namespace

TEST(LightDocumentTree, OfRandomDocumentsIsTheirTree)
{
    EXPECT_EQ(firstChangedDocument(seededRandom(20261131)), std::nullopt);
}

TEST(LightDocumentTree, OfAnotherEncodingIsItsTree)
{
    const std::string latin1 = "<?xml version='1.0' encoding='ISO-8859-1'?>"
                               "<shelf><name v='\xE9'/><path v='\xE9'/><shelves/></shelf>";
    EXPECT_EQ(treeText(lightDocument(latin1)),
              written(*aShelf().named("\xE9").atPath("\xC3\xA9").build()));
}

TEST(LightDocumentTree, HasWhatWasChanged)
{
    LightDocument document = lightDocument(
        R"(<shelf><title v="a"/><name v="hall"/><cover><color v="red"/></cover><shelves/></shelf>)");
    document.root().firstChild("name").setValue(QStringLiteral("\u00E9\u20AC"));
    document.root().firstChild("cover").remove();
    LightElement book = document.makeElement("book");
    LightElement books = document.makeElement("books");
    book.append(document.makeLeaf("title", "atlas"));
    books.append(book);
    document.root().append(books);
    EXPECT_EQ(treeText(document), written(*aShelf().named("\xE9?").withBook("atlas").build()));
}

TEST(LightDocumentTree, PassesOverCommentsAndInstructionsOutsideOfTheRoot)
{
    EXPECT_EQ(treeText(lightDocument("<!-- c --><?i x?>" + Plain + "<!-- c --><?i x?>")),
              treeText(lightDocument(Plain)));
}

TEST(LightDocumentTree, SkipsUnknownMembers)
{
    EXPECT_EQ(treeText(lightDocument(
                  R"(<shelf><x><y v="1"/></x><name v="hall"/><shelves/><z/></shelf>)")),
              written(*aShelf().named("hall").build()));
}

TEST(LightDocumentTree, ReportsProgress)
{
    std::vector<float> progress;
    treeText(lightDocument(Plain), [&progress](float fraction) { progress.push_back(fraction); });
    ASSERT_FALSE(progress.empty());
    EXPECT_GE(progress.front(), 0.0F);
    EXPECT_LE(progress.back(), 1.0F);
}

TEST(LightDocumentTree, OfAnEmptyDocumentIsNone)
{
    EXPECT_EQ(treeText(LightDocument()), std::nullopt);
}

TEST_P(LightDocumentThatIsNotPlain, HasToBeReadAsText)
{
    const LightDocument document = lightDocument(GetParam().text);
    EXPECT_EQ(treeText(document), std::nullopt);
    const ReadOutcome outcome = readShelf(serialise(document).toStdString());
    EXPECT_EQ(outcome.status, 0) << outcome.message;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, LightDocumentThatIsNotPlain,
    testing::Values(TextCase{"OtherAttribute", shelfXml(R"(<name v="a" w="1"/><shelves/>)")},
                    TextCase{"Prefix",
                             R"(<shelf xmlns:p="u"><name p:v="1" v="a"/><shelves/></shelf>)"},
                    TextCase{"OtherLetters", shelfXml("<\xC3\xA9/><name v=\"a\"/><shelves/>")},
                    TextCase{"DeleteCharacter", shelfXml("<name v=\"&#127;\"/><shelves/>")}),
    caseName<TextCase>);

TEST_P(LightDocumentWithoutTree, HasToBeReadForTheReason)
{
    const LightDocument document = lightDocument(GetParam().text);
    EXPECT_EQ(treeText(document), std::nullopt);
    EXPECT_NE(readShelf(serialise(document).toStdString()).status, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, LightDocumentWithoutTree,
    testing::Values(TextCase{"OtherRoot", "<book/>"}, TextCase{"MemberMissing", shelfXml("")},
                    TextCase{"WithoutValue", shelfXml("<name/><shelves/>")},
                    TextCase{"ElementInALeaf", shelfXml(R"(<name v="a"><x/></name><shelves/>)")},
                    TextCase{"Text", shelfXml(R"(<name v="a"/>text<shelves/>)")},
                    TextCase{"CommentInside", shelfXml(R"(<name v="a"/><!-- c --><shelves/>)")}),
    caseName<TextCase>);

TEST(LightDocumentTree, OfABadValueIsNone)
{
    EXPECT_EQ(treeText(lightDocument(shelfXml(R"(<name v="a"/><uid v="x"/><shelves/>)"))),
              std::nullopt);
}

TEST(LightDocumentTree, OfElementsThatBecameTooDeepIsNone)
{
    const std::string deepest = nested(Orv::Data::XmlDataReader::MaximumDepth - 2);
    LightDocument document =
        lightDocument(shelfXml(R"(<name v="a"/><shelves/><y>)" + deepest + "</y>"));
    EXPECT_TRUE(treeText(document).has_value());
    LightElement y = document.root().firstChild("y");
    LightElement z = document.makeElement("z");
    y.append(z);
    z.takeElements(y, z);
    EXPECT_EQ(treeText(document), std::nullopt);
}

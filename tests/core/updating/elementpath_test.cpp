#include "updating/elementpath.h"

#include "data/lightdocumentreader.h"
#include <QStringList>
#include <gtest/gtest.h>

namespace {

using Ksx::Core::ElementIndex;
using Orv::Data::LightDocument;
using Orv::Data::LightElement;
using Orv::Data::LightElements;

LightDocument documentOf(const char* text)
{
    LightDocument document;
    Orv::Data::DocumentError error;
    EXPECT_TRUE(Orv::Data::readLightDocument(text, document, error));
    return document;
}

std::string valuesOf(const LightElements& elements)
{
    QStringList values;
    for (const LightElement& element : elements)
        values.append(element.value());
    return values.join(' ').toStdString();
}

// The `v` of what is found, in its order.
std::string found(const char* text, const char* path)
{
    return valuesOf(Ksx::Core::elementsAt(documentOf(text), path));
}

} // namespace

TEST(ElementPath, LeadsToChildrenByName)
{
    EXPECT_EQ(found("<p><a v='1'/><b v='2'/><a v='3'/></p>", "/p/a"), "1 3");
}

TEST(ElementPath, LeadsThroughAllBranches)
{
    EXPECT_EQ(found("<p><a><b v='1'/></a><a><b v='2'/><b v='3'/></a></p>", "/p/a/b"), "1 2 3");
}

TEST(ElementPath, BeginsAtTheDocumentElement)
{
    EXPECT_EQ(found("<p v='0'><p v='1'/></p>", "/p"), "0");
    EXPECT_EQ(found("<p v='0'><p v='1'/></p>", "/p/p"), "1");
}

TEST(ElementPath, MayLeaveOutTheDocumentElement)
{
    EXPECT_EQ(found("<p><a v='1'/></p>", "a"), "1");
    EXPECT_EQ(found("<other><p><a v='1'/></p></other>", "/p/a"), "1");
}

TEST(ElementPath, LeadsToAllDescendantsBehindAStar)
{
    EXPECT_EQ(found("<p><c><x><a v='1'/></x><a v='2'/></c><a v='3'/></p>", "/p/c/*/a"), "1 2");
}

TEST(ElementPath, FindsDescendantsInsideEachOther)
{
    EXPECT_EQ(found("<p><a v='1'><x><a v='2'/></x></a><a v='3'/></p>", "/p/*/a"), "1 2 3");
}

TEST(ElementPath, GoesOnFromEachDescendant)
{
    EXPECT_EQ(found("<p><a><d v='1'/><a><d v='2'/></a></a><d v='3'/></p>", "/p/*/a/d"), "1 2");
}

TEST(ElementPath, FindsAnElementOnceForEachWayToIt)
{
    EXPECT_EQ(found("<p><a><a><d v='1'/></a></a></p>", "/p/*/a/*/d"), "1 1");
}

TEST(ElementPath, LeadsToAllChildrenByAStarAtTheEnd)
{
    EXPECT_EQ(found("<p><a v='1'/><b v='2'><c v='3'/></b></p>", "/p/*"), "1 2");
}

TEST(ElementPath, LeadsNowhereByAnEmptyPart)
{
    EXPECT_EQ(found("<p><a v='1'/></p>", "/p//a"), "");
}

TEST(ElementPath, KeepsItsResultsWhenTheDocumentChanges)
{
    const LightDocument document = documentOf("<p><a v='1'/><a v='2'/></p>");
    const LightElements elements = Ksx::Core::descendantsOf(document.root(), "a");
    LightElement(elements.front()).remove();
    EXPECT_EQ(valuesOf(elements), "1 2");
}

TEST(ElementPath, LeavesOutRemovedElementsAndAllBelowThem)
{
    const LightDocument document = documentOf("<p><a><a v='1'/></a><a v='2'/></p>");
    document.root().firstChild().remove();
    EXPECT_EQ(valuesOf(Ksx::Core::elementsAt(document, "/p/*/a")), "2");
}

TEST(ElementIndex, LeadsToTheSameElements)
{
    const LightDocument document =
        documentOf("<package><content><graph v='1'><graph v='2'><x><graph v='3'/></x></graph>"
                   "</graph><graph v='4'/></content><other><x><graph v='5'/></x></other>"
                   "<content><graph v='6'/></content></package>");
    const ElementIndex index(document);
    const char* const path = "/package/content/*/graph";
    EXPECT_EQ(valuesOf(Ksx::Core::elementsAt(document, path, &index)), "1 2 3 4 6");
    EXPECT_EQ(valuesOf(Ksx::Core::elementsAt(document, path)), "1 2 3 4 6");
}

TEST(ElementIndex, KnowsTheNamesThatStepsSearch)
{
    const LightDocument document = documentOf("<package/>");
    const ElementIndex index(document);
    EXPECT_TRUE(index.knows(document, "paraminput"));
    EXPECT_FALSE(index.knows(document, "package"));
    EXPECT_TRUE(index.below("content", "paraminput").empty());
}

TEST(ElementIndex, KnowsANameWhileElementsOfOtherNamesComeAndGo)
{
    LightDocument document = documentOf("<p><c><graph v='1'><desc v='2'/></graph></c></p>");
    const ElementIndex index(document);
    LightElement graph = document.root().firstChild().firstChild();
    graph.firstChild().remove();
    graph.append(document.makeElement("attributes"));
    EXPECT_TRUE(index.knows(document, "graph"));
}

namespace {

struct Change
{
    const char* name;
    void (*make)(LightDocument& document, LightElement content, LightElement graph);
};

std::ostream& operator<<(std::ostream& stream, const Change& change)
{
    return stream << change.name;
}

class IndexOfChangedDocument : public testing::TestWithParam<Change>
{};

} // namespace

TEST_P(IndexOfChangedDocument, IsNotUsed)
{
    LightDocument document =
        documentOf("<p><c><x v='0'/><graph v='1'><desc><graph v='2'/></desc></graph>"
                   "<graph v='3'/><other/></c></p>");
    const ElementIndex index(document);
    const LightElement content = document.root().firstChild();
    GetParam().make(document, content, content.firstChild("graph"));
    EXPECT_FALSE(index.knows(document, "graph"));
    EXPECT_EQ(valuesOf(Ksx::Core::elementsAt(document, "/p/c/*/graph", &index)),
              valuesOf(Ksx::Core::elementsAt(document, "/p/c/*/graph")));
}

INSTANTIATE_TEST_SUITE_P(
    Changes, IndexOfChangedDocument,
    testing::Values(
        Change{"renamedAway",
               [](LightDocument&, LightElement, LightElement graph) { graph.rename("chart"); }},
        Change{"renamedInto", [](LightDocument&, LightElement content,
                                 LightElement) { content.firstChild("x").rename("graph"); }},
        Change{"made", [](LightDocument& document, LightElement content,
                          LightElement) { content.append(document.makeLeaf("graph", "9")); }},
        Change{"removed", [](LightDocument&, LightElement, LightElement graph) { graph.remove(); }},
        Change{"removedWithTheOneAbove", [](LightDocument&, LightElement,
                                            LightElement graph) { graph.firstChild().remove(); }},
        Change{"moved", [](LightDocument&, LightElement content, LightElement) {
                   LightElement other = content.firstChild("other");
                   other.takeElements(content, other);
               }}));

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
    const ElementIndex index(documentOf("<package/>"));
    EXPECT_TRUE(index.knows("paraminput"));
    EXPECT_FALSE(index.knows("package"));
    EXPECT_TRUE(index.below("content", "paraminput").empty());
}

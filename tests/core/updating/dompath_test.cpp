#include "updating/dompath.h"

#include <QDomDocument>
#include <QStringList>
#include <gtest/gtest.h>

namespace {

// The `v` of what is found, in its order.
std::string found(const char* text, const char* path)
{
    QDomDocument document;
    document.setContent(QByteArray(text));
    QStringList values;
    for (const QDomElement& element : Ksx::Core::elementsAt(document, path))
        values.append(element.attribute("v"));
    return values.join(' ').toStdString();
}

} // namespace

TEST(DomPath, LeadsToChildrenByName)
{
    EXPECT_EQ(found("<p><a v='1'/><b v='2'/><a v='3'/></p>", "/p/a"), "1 3");
}

TEST(DomPath, LeadsThroughAllBranches)
{
    EXPECT_EQ(found("<p><a><b v='1'/></a><a><b v='2'/><b v='3'/></a></p>", "/p/a/b"), "1 2 3");
}

TEST(DomPath, BeginsAtTheDocumentElement)
{
    EXPECT_EQ(found("<p v='0'><p v='1'/></p>", "/p"), "0");
    EXPECT_EQ(found("<p v='0'><p v='1'/></p>", "/p/p"), "1");
}

TEST(DomPath, MayLeaveOutTheDocumentElement)
{
    EXPECT_EQ(found("<p><a v='1'/></p>", "a"), "1");
    EXPECT_EQ(found("<other><p><a v='1'/></p></other>", "/p/a"), "1");
}

TEST(DomPath, LeadsToAllDescendantsBehindAStar)
{
    EXPECT_EQ(found("<p><c><x><a v='1'/></x><a v='2'/></c><a v='3'/></p>", "/p/c/*/a"), "1 2");
}

TEST(DomPath, FindsDescendantsInsideEachOther)
{
    EXPECT_EQ(found("<p><a v='1'><x><a v='2'/></x></a><a v='3'/></p>", "/p/*/a"), "1 2 3");
}

TEST(DomPath, GoesOnFromEachDescendant)
{
    EXPECT_EQ(found("<p><a><d v='1'/><a><d v='2'/></a></a><d v='3'/></p>", "/p/*/a/d"), "1 2");
}

TEST(DomPath, FindsAnElementOnceForEachWayToIt)
{
    EXPECT_EQ(found("<p><a><a><d v='1'/></a></a></p>", "/p/*/a/*/d"), "1 1");
}

TEST(DomPath, LeadsToAllChildrenByAStarAtTheEnd)
{
    EXPECT_EQ(found("<p><a v='1'/><b v='2'><c v='3'/></b></p>", "/p/*"), "1 2");
}

TEST(DomPath, LeadsNowhereByAnEmptyPart)
{
    EXPECT_EQ(found("<p><a v='1'/></p>", "/p//a"), "");
}

TEST(DomPath, KeepsItsResultsWhenTheDocumentChanges)
{
    QDomDocument document;
    document.setContent(QByteArray("<p><a v='1'/><a v='2'/></p>"));
    const Ksx::Core::DomElements elements =
        Ksx::Core::descendantsOf(document.documentElement(), "a");
    document.documentElement().removeChild(elements.front());
    EXPECT_EQ(elements.size(), 2U);
    EXPECT_EQ(elements.front().attribute("v"), "1");
}

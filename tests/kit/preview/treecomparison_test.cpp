#include "preview/treecomparison.h"

#include "data/filename.h"
#include "data/lightdocument.h"
#include "data/lightdocumentreader.h"
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

using Ksx::Kit::DocumentTree;
using Ksx::Kit::ElementChange;
using Ksx::Kit::ElementChangeKind;
using Ksx::Kit::ElementNames;
using Ksx::Kit::TreeChange;

namespace {

using Lines = std::vector<std::string>;

DocumentTree treeOf(const std::string& text, ElementNames& names)
{
    Orv::Data::LightDocument document;
    Orv::Data::DocumentError error;
    EXPECT_TRUE(readLightDocument(QByteArray::fromStdString(text), document, error)) << text;
    return {document, names};
}

struct Compared
{
    Compared(const std::string& beforeText, const std::string& afterText)
    {
        before = treeOf(beforeText, names);
        before.setOrigins();
        after = treeOf(afterText, names);
        changes = compareTrees(before, after, names);
    }

    ElementNames names;
    DocumentTree before;
    DocumentTree after;
    std::vector<TreeChange> changes;
};

// The changes, such as "changed pkg://a uid: 1 -> 2". Elements are those of a package.
Lines changesOf(const std::string& before, const std::string& after)
{
    Lines lines;
    for (const TreeChange& one :
         Compared("<package>" + before + "</package>", "<package>" + after + "</package>")
             .changes) {
        const ElementChange& change = one.change;
        QString line = Ksx::Kit::wordOf(change.kind);
        for (const QString& word : {change.place, change.element})
            line += word.isEmpty() ? QString() : ' ' + word;
        lines.push_back(Orv::toBytes(line + ": " + change.oldText + " -> " + change.newText));
    }
    return lines;
}

TEST(TreeComparison, FindsNothingInEqualDocuments)
{
    EXPECT_EQ(changesOf("<a v=\"1\"/><b><c/></b>", "<a v=\"1\"/><b><c/></b>"), Lines());
}

TEST(TreeComparison, FindsOtherValues)
{
    EXPECT_EQ(changesOf("<a v=\"1\"/><b v=\"x\"/>", "<a v=\"2\"/><b v=\"x\"/>"),
              Lines{"changed a: 1 -> 2"});
}

TEST(TreeComparison, FindsNewElementsWithTheirLeaves)
{
    EXPECT_EQ(changesOf("<a/>", "<a/><b><c><d v=\"1\"/></c><e/></b>"),
              (Lines{"added b:  -> ", "added b/c/d:  -> 1", "added b/e:  -> "}));
}

TEST(TreeComparison, FindsElementsThatAreGone)
{
    EXPECT_EQ(changesOf("<a v=\"1\"/><b><c v=\"2\"/></b>", ""),
              (Lines{"removed a: 1 -> ", "removed b:  -> ", "removed b/c: 2 -> "}));
}

TEST(TreeComparison, FindsOtherNames)
{
    EXPECT_EQ(changesOf("<a><b v=\"1\"/></a>", "<c><d v=\"1\"/></c>"),
              (Lines{"renamed c: a -> c", "renamed c/d: b -> d"}));
}

TEST(TreeComparison, FindsMovedElements)
{
    EXPECT_EQ(changesOf("<a><b><c v=\"1\"/></b></a><d/>", "<a/><d><b><c v=\"1\"/></b></d>"),
              Lines{"moved d/b: a/b -> d/b"});
}

TEST(TreeComparison, FindsMovedElementsInNewOnes)
{
    EXPECT_EQ(changesOf("<b><c v=\"1\"/></b>", "<a><x v=\"2\"/><b><c v=\"1\"/></b></a>"),
              (Lines{"added a:  -> ", "added a/x:  -> 2", "moved a/b: b -> a/b"}));
}

TEST(TreeComparison, TakesAMovedElementOnce)
{
    EXPECT_EQ(changesOf("<b><c v=\"1\"/></b>", "<a><b><c v=\"1\"/></b><b><c v=\"1\"/></b></a>"),
              (Lines{"added a:  -> ", "moved a/b[1]: b -> a/b[1]", "added a/b[2]/c:  -> 1"}));
}

TEST(TreeComparison, FindsAnotherOrder)
{
    EXPECT_EQ(changesOf("<l><a v=\"1\"/><b v=\"2\"/></l>", "<l><b v=\"2\"/><a v=\"1\"/></l>"),
              Lines{"reordered l:  -> "});
}

TEST(TreeComparison, KnowsItemsByTheirUids)
{
    EXPECT_EQ(changesOf("<n><uid v=\"1\"/><x v=\"a\"/></n><n><uid v=\"2\"/><x v=\"b\"/></n>",
                        "<n><uid v=\"2\"/><x v=\"c\"/></n>"),
              (Lines{"removed n[1]:  -> ", "removed n[1]/uid: 1 -> ", "removed n[1]/x: a -> ",
                     "changed n/x: b -> c"}));
}

TEST(TreeComparison, KnowsDependenciesByTheirFilesWhenTheirUidsChange)
{
    EXPECT_EQ(changesOf("<n><filename v=\"a\"/></n><n><filename v=\"b\"/></n>",
                        "<n><filename v=\"b\"/><uid v=\"8\"/></n>"),
              (Lines{"removed n[1]:  -> ", "removed n[1]/filename: a -> ", "added n/uid:  -> 8"}));
}

TEST(TreeComparison, TakesObjectsOfTwoIdentifiersForTwo)
{
    EXPECT_EQ(changesOf("<content><graph><identifier v=\"a\"/></graph></content>",
                        "<content><graph><identifier v=\"b\"/></graph></content>"),
              (Lines{"removed pkg://a:  -> ", "removed pkg://a identifier: a -> ",
                     "added pkg://b:  -> ", "added pkg://b identifier:  -> b"}));
}

TEST(TreeComparison, NamesThePlacesOfObjects)
{
    const std::string begin = "<content><group><identifier v=\"g\"/><content><graph>"
                              "<identifier v=\"h\"/><l><i v=\"1\"/><i v=\"";
    const std::string end = "\"/></l></graph></content></group></content>";

    EXPECT_EQ(changesOf(begin + "2" + end, begin + "3" + end),
              Lines{"changed pkg://g/h l/i[2]: 2 -> 3"});
}

TEST(TreeComparison, FollowsElementsToTheirOrigins)
{
    const Compared first("<p><a><b v=\"1\"/></a><c/></p>", "<p><c/><d><a><b v=\"1\"/></a></d></p>");

    EXPECT_EQ(first.after[0].origin, 0U);
    EXPECT_EQ(first.after[1].origin, 3U);
    EXPECT_EQ(first.after[2].origin, DocumentTree::None);
    EXPECT_EQ(first.after[3].origin, 1U);
    EXPECT_EQ(first.after[4].origin, 2U);
}

TEST(TreeComparison, TellsWhereElementsWere)
{
    const Compared compared("<p><a/><b v=\"1\"/></p>", "<p><a/><b v=\"2\"/><c/></p>");

    ASSERT_EQ(compared.changes.size(), 2U);
    EXPECT_EQ(compared.changes[0].origin, 2U);
    EXPECT_EQ(compared.changes[1].origin, DocumentTree::None);
}

// Documents of random elements, few of whose names and values differ.
std::string randomElements(std::mt19937& random, int depth)
{
    std::ostringstream text;
    const auto count = random() % 5;
    for (auto left = count; left > 0; --left) {
        static const char* const names[] = {"uid", "identifier", "content", "a", "b"};
        const char* const name = names[random() % 5];
        text << '<' << name;
        if (random() % 3 != 0)
            text << " v=\"" << random() % 4 << '"';
        text << '>' << (depth > 0 ? randomElements(random, depth - 1) : std::string()) << "</"
             << name << '>';
    }
    return text.str();
}

// How often each value occurs in elements.
std::map<QString, int> valuesOf(const DocumentTree& tree)
{
    std::map<QString, int> counts;
    for (DocumentTree::Index element = 0; element < tree.size(); ++element)
        ++counts[tree.textOf(element)];
    return counts;
}

// The counts of values, but for empty ones, that the changes make of the former ones.
std::map<QString, int> withChanges(std::map<QString, int> counts,
                                   const std::vector<TreeChange>& changes)
{
    for (const TreeChange& one : changes) {
        const bool isOfValues = one.change.kind == ElementChangeKind::Added ||
                                one.change.kind == ElementChangeKind::Removed ||
                                one.change.kind == ElementChangeKind::Changed;
        counts[one.change.oldText] -= isOfValues ? 1 : 0;
        counts[one.change.newText] += isOfValues ? 1 : 0;
    }
    return counts;
}

std::map<QString, int> withoutNothing(std::map<QString, int> counts)
{
    counts.erase(QString());
    for (auto one = counts.begin(); one != counts.end();)
        one = one->second == 0 ? counts.erase(one) : std::next(one);
    return counts;
}

void expectAllValuesTold(unsigned seed)
{
    std::mt19937 random(seed);
    const std::string before = "<p>" + randomElements(random, 3) + "</p>";
    const std::string after = "<p>" + randomElements(random, 3) + "</p>";
    const Compared compared(before, after);
    EXPECT_EQ(compared.changes.empty(), before == after) << "seed " << seed;
    EXPECT_EQ(withoutNothing(withChanges(valuesOf(compared.before), compared.changes)),
              withoutNothing(valuesOf(compared.after)))
        << "seed " << seed << '\n'
        << before << '\n'
        << after;
}

class RandomDocuments : public testing::TestWithParam<unsigned>
{};

TEST_P(RandomDocuments, HaveAllTheirValuesTold)
{
    expectAllValuesTold(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomDocuments, testing::Range(1U, 200U));

std::string listOfUids(int first, int step)
{
    std::string text = "<p>";
    for (int i = 0; i < 100000; ++i)
        text += "<n><uid v=\"" + std::to_string(first + i * step) + "\"/></n>";
    return text + "</p>";
}

// A list whose items were all reversed, which compares in a moment unless it takes n * n steps.
TEST(TreeComparison, TakesLongListsInTheirLength)
{
    const Compared compared(listOfUids(0, 1), listOfUids(99999, -1));

    ASSERT_EQ(compared.changes.size(), 1U);
    EXPECT_EQ(compared.changes[0].change.kind, ElementChangeKind::Reordered);
}

} // namespace

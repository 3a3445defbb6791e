// The command "diff" of the built tool.
#include "kit/graphpackages.h"
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

using TestSupport::aBlend;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::expectGolden;
using TestSupport::fedBy;
using TestSupport::ksxPath;
using TestSupport::packageWithNodes;
using TestSupport::readFile;
using TestSupport::replaced;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

class DiffCommand : public testing::Test
{
protected:
    ToolRun run(const Arguments& arguments) const
    {
        ToolRun run = Tool(directory.path()).at(ksxPath()).run(arguments);
        run.out = replaced(run.out, sourcePath("examples"), "EXAMPLES");
        return run;
    }
    // Writes an example with some changes.
    void writeChangedPlanks() const
    {
        std::string text = readFile(planks);
        text = replaced(text, "<author v=\"Åsa Öberg\"", "<author v=\"Me&#10;and you\"");
        text = replaced(text, "<label v=\"Gap\"", "<label v=\"Gaps\"");
        text = replaced(text, "<identifier v=\"plank_count\"/>", "<identifier v=\"planks\"/>");
        text = replaced(text, "<filter v=\"levels\"", "<filter v=\"curve\"");
        directory.write("changed.obl", replaced(text, "scratches.png", "scars.png"));
    }
    void writeTwo(const std::string& first, const std::string& second) const
    {
        directory.write("a.obl", aPackage().with("author", first).text());
        directory.write("b.obl", aPackage().with("author", second).text());
    }

    TemporaryDirectory directory;
    const std::string planks = sourcePath("examples/wood/wood_planks.obl");
};

} // namespace

TEST_F(DiffCommand, TellsDifferencesToPeople)
{
    writeChangedPlanks();

    const ToolRun found = run({"diff", planks, "changed.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(found.err, "");
    expectGolden("kit/diff.txt", found.out);
}

TEST_F(DiffCommand, TellsDifferencesAsJson)
{
    writeChangedPlanks();

    const ToolRun found = run({"diff", "--json", planks, "changed.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    expectGolden(
        "kit/diff.json",
        QJsonDocument::fromJson(QByteArray::fromStdString(found.out)).toJson().toStdString());
}

TEST_F(DiffCommand, PrintsAllFactsOfAPackageAsText)
{
    const ToolRun found = run({"diff", "--text", planks});

    EXPECT_EQ(found.exitCode, 0) << found;
    expectGolden("kit/diff-text.txt", found.out);
}

TEST_F(DiffCommand, ShowsItsOptions)
{
    expectGolden("kit/help-diff.txt", run({"diff", "--help"}).out);
}

TEST_F(DiffCommand, SaysNothingOfEqualPackages)
{
    writeTwo("a", "a");

    const ToolRun found = run({"diff", "a.obl", "b.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "");
}

TEST_F(DiffCommand, DrawsBothVersionsSideBySide)
{
    directory.write("a.obl", packageWithNodes(aBlend(1) + aBlend(3)));
    directory.write("b.obl", packageWithNodes(aBlend(1) + aBlend(3, fedBy(1))));

    const ToolRun found = run({"diff", "--svg", "pictures", "a.obl", "b.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(found.out, "pkg://g\n  added   node 3 (blend), connection source: node 1, output 2\n"
                         "1 added\npictures/g.svg\n");
    expectGolden("kit/diff.svg", directory.read("pictures/g.svg"));
}

TEST_F(DiffCommand, DrawsPairsOfFoldersInFoldersOfTheirOwn)
{
    directory.write("old/in/a.obl", packageWithNodes(aBlend(1)));
    directory.write("new/in/a.obl", packageWithNodes(aBlend(1) + aBlend(3)));

    const ToolRun found = run({"diff", "--svg", "pictures", "old", "new"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_TRUE(directory.exists("pictures/in_a.obl/g.svg")) << found;
}

TEST_F(DiffCommand, WritesNoPictureOverAPackage)
{
    directory.write("pictures/g.svg", packageWithNodes(aBlend(1)));
    directory.write("b.obl", packageWithNodes(aBlend(3)));
    directory.makeLink("a.obl", "pictures/g.svg");

    const ToolRun found = run({"diff", "--svg", "pictures", "a.obl", "b.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(directory.read("pictures/g.svg"), packageWithNodes(aBlend(1)));
}

TEST_F(DiffCommand, ComparesFoldersByTheNamesInThem)
{
    directory.write("old/a.obl", aPackage().with("author", "a").text());
    directory.write("old/b.obl", aPackage().text());
    directory.write("new/a.obl", aPackage().with("author", "b").text());
    directory.write("new/in/c.obl", aPackage().containing(aGroup("g")).text());

    const ToolRun found = run({"diff", "old", "new"});

    EXPECT_EQ(found.exitCode, 1) << found;
    expectGolden("kit/diff-folders.txt", found.out);
}

// The order of these names by their bytes is not that by their characters.
TEST_F(DiffCommand, FindsPackagesOfAnyNameInBothFolders)
{
    directory.write("old/\xEF\xB9\xA2.obl", aPackage().text());
    directory.write("old/\xF0\x9F\x98\x80.obl", aPackage().text());
    directory.write("new/\xEF\xB9\xA2.obl", aPackage().text());
    directory.write("new/\xF0\x9F\x98\x80.obl", aPackage().text());

    const ToolRun found = run({"diff", "old", "new"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "");
}

TEST_F(DiffCommand, GoesOnBehindADamagedPackageOfAFolder)
{
    directory.write("old/a.obl", "<");
    directory.write("old/b.obl", aPackage().with("author", "a").text());
    directory.write("new/a.obl", aPackage().text());
    directory.write("new/b.obl", aPackage().with("author", "b").text());

    const ToolRun found = run({"diff", "old", "new"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err.rfind("Error! old/a.obl: ", 0), 0U) << found;
    EXPECT_EQ(found.out, "b.obl\npackage\n  changed package, author: a -> b\n1 changed\n");
}

TEST_F(DiffCommand, TakesTheNamesFromStandardInput)
{
    writeTwo("a", "b");

    const ToolRun found = Tool(directory.path())
                              .at(ksxPath())
                              .withInputFrom(directory.write("names", "a.obl\nb.obl\n"))
                              .run({"diff", "-"});

    EXPECT_EQ(found.out, "package\n  changed package, author: a -> b\n1 changed\n") << found;
}

TEST_F(DiffCommand, RefusesAnotherNumberOfNames)
{
    const ToolRun found = run({"diff", "a.obl"});

    EXPECT_EQ(found.exitCode, 2);
    EXPECT_EQ(found.err,
              "Error! Two packages or two folders are compared\nSee 'ksx diff --help'\n");
}

TEST_F(DiffCommand, RefusesAnotherNumberOfWordsFromGit)
{
    const ToolRun found = run({"diff", "--git", "a.obl", "b.obl"});

    EXPECT_EQ(found.exitCode, 2);
    EXPECT_EQ(found.err, "Error! The option '--git' takes the seven words that git gives\nSee "
                         "'ksx diff --help'\n");
}

TEST_F(DiffCommand, ShowsNoColoursInAFile)
{
    writeTwo("a", "b");

    EXPECT_EQ(run({"diff", "a.obl", "b.obl"}).out.find('\x1b'), std::string::npos);
}

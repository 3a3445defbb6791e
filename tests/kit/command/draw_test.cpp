// The command "draw" of the built tool.
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/peakbound.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include "support/workspace.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <filesystem>

using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::expectGolden;
using TestSupport::GraphText;
using TestSupport::ksxPath;
using TestSupport::peakBound;
using TestSupport::replaced;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

std::string aPackageWith(const std::string& graph)
{
    GraphText text;
    text.identifier = graph;
    return aPackage().containing(text.text()).text();
}

std::string aPackageOfNodes(unsigned count)
{
    GraphText graph;
    for (unsigned i = 1; i <= count; ++i)
        graph.nodes += TestSupport::aNode(i, TestSupport::aFilter("blend"));
    return aPackage().containing(graph.text()).text();
}

class DrawCommand : public testing::Test
{
protected:
    Tool tool() const { return Tool(directory.path()).at(ksxPath()); }
    ToolRun run(const Arguments& arguments) const { return tool().run(arguments); }
    ToolRun drawExamples(Arguments arguments) const
    {
        arguments.insert(arguments.begin(), {"draw", "-o", directory.path("out")});
        ToolRun found = Tool(sourcePath("examples")).at(ksxPath()).run(arguments);
        found.out = replaced(found.out, directory.path(), "FOLDER");
        return found;
    }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(DrawCommand, ShowsItsOptions)
{
    const ToolRun found = run({"draw", "--help"});

    EXPECT_EQ(found.exitCode, 0) << found;
    expectGolden("kit/help-draw.txt", found.out);
}

TEST_F(DrawCommand, WritesAPictureOfEachGraphAndTellsItsName)
{
    const ToolRun found = drawExamples({"bricks", "old/felt.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "FOLDER/out/brick_wall/brick_wall.svg\n"
                         "FOLDER/out/brick_wall/parts.bond.svg\n"
                         "FOLDER/out/brick_wall/parts.brick_tone.svg\n"
                         "FOLDER/out/brick_wall/parts.mortar.svg\n"
                         "FOLDER/out/felt/felt.hair.svg\n"
                         "FOLDER/out/felt/felt.felt.svg\n");
    EXPECT_EQ(directory.files(),
              "out/brick_wall/brick_wall.svg out/brick_wall/parts.bond.svg "
              "out/brick_wall/parts.brick_tone.svg out/brick_wall/parts.mortar.svg "
              "out/felt/felt.felt.svg out/felt/felt.hair.svg");
}

TEST_F(DrawCommand, WritesTheSameBytesOnAnyMachine)
{
    drawExamples({"mixed"});

    expectGolden("kit/everything.svg",
                 directory.read("out/everything/first.second.Everything.svg"));
}

TEST_F(DrawCommand, TellsPicturesAsJson)
{
    const ToolRun found = drawExamples({"--json", "mixed/everything.obl", "none.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    expectGolden(
        "kit/draw.json",
        QJsonDocument::fromJson(QByteArray::fromStdString(found.out)).toJson().toStdString());
}

TEST_F(DrawCommand, WritesPicturesAsPngOnRequest)
{
    directory.write("a.obl", aPackageWith("oak"));

    const ToolRun found = run({"draw", "-o", "out", "--format", "png", "a.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, "out/a/oak.png\n");
    EXPECT_EQ(directory.read("out/a/oak.png").substr(0, 8), "\x89PNG\r\n\x1A\n");
}

TEST_F(DrawCommand, DrawsOneGraphOnRequest)
{
    directory.write("a.obl", aPackageWith("oak"));
    directory.write("b.obl", aPackageWith("pine"));

    const ToolRun found = run({"draw", "-o", "out", "--graph", "pine", "."});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(directory.files(), "a.obl b.obl out/b/pine.svg");
}

TEST_F(DrawCommand, TellsThatThereIsNoSuchGraph)
{
    directory.write("a.obl", aPackageWith("oak"));

    const ToolRun found = run({"draw", "-o", "out", "--graph", "pine", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! pine: no package has such a graph or function\n");
}

TEST_F(DrawCommand, PackagesOfOneNameGetFoldersOfTheirOwn)
{
    directory.write("a/wood.obl", aPackageWith("oak"));
    directory.write("b/wood.obl", aPackageWith("oak"));

    EXPECT_EQ(run({"draw", "-o", "out", "a", "b"}).exitCode, 0);

    EXPECT_EQ(directory.files(), "a/wood.obl b/wood.obl out/wood-2/oak.svg out/wood/oak.svg");
}

TEST_F(DrawCommand, NeverWritesToAPackage)
{
    const std::string text = aPackageWith("oak");
    directory.write("a.obl", text);
    directory.makeDirectory("out/a");
    std::filesystem::create_hard_link(directory.path("a.obl"), directory.path("out/a/oak.svg"));

    const ToolRun found = run({"draw", "-o", "out", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! a.obl: out/a/oak.svg is a file that is read\n");
    EXPECT_EQ(directory.read("a.obl"), text);
}

TEST_F(DrawCommand, TellsThatAPictureCannotBeWritten)
{
    directory.write("a.obl", aPackageWith("oak"));
    directory.write("out", "a file");

    const ToolRun found = run({"draw", "-o", "out", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! a.obl: out/a/oak.svg cannot be written\n");
    EXPECT_EQ(directory.read("out"), "a file");
}

TEST_F(DrawCommand, WritesAReport)
{
    directory.write("a.obl", aPackageWith("oak"));
    directory.write("b.obl", "<package>");

    const ToolRun found = run({"draw", "--html", "out", "."});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.out, "out/index.html\n");
    EXPECT_EQ(found.err.rfind("Error! ./b.obl: it is no sound document", 0), 0U) << found;
    EXPECT_EQ(directory.files(), "a.obl b.obl out/index.html out/library.js out/packages/a.html "
                                 "out/packages/b.html out/report.css out/report.js out/users.js");
}

TEST_F(DrawCommand, AGraphOfAHundredThousandNodesTakesLittleMemory)
{
    directory.write("a.obl", aPackageOfNodes(100000));

    const ToolRun picture = run({"draw", "-o", "out", "a.obl"});
    const ToolRun report = run({"draw", "--html", "report", "a.obl"});

    EXPECT_EQ(picture.exitCode, 0) << picture;
    EXPECT_EQ(report.exitCode, 0) << report;
    EXPECT_LT(picture.peakKilobytes, peakBound(400L * 1024));
    EXPECT_LT(report.peakKilobytes, peakBound(400L * 1024));
}

TEST_F(DrawCommand, WritesTheSameReportWithAnyNumberOfWorkers)
{
    Tool examples(sourcePath("examples"));
    examples.at(ksxPath());

    examples.run({"draw", "--html", directory.path("a"), "--jobs", "1", "."});
    examples.run({"draw", "--html", directory.path("b"), "--jobs", "8", "."});

    EXPECT_EQ(directory.read("a/library.js"), directory.read("b/library.js"));
    EXPECT_EQ(directory.read("a/packages/city_facade.html"),
              directory.read("b/packages/city_facade.html"));
}

TEST_F(DrawCommand, TellsPagesAsJson)
{
    directory.write("a.obl", aPackageWith("oak"));

    const ToolRun found = run({"draw", "--json", "--html", "out", "a.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    const QJsonObject package = QJsonDocument::fromJson(QByteArray::fromStdString(found.out))
                                    .object()["packages"]
                                    .toArray()[0]
                                    .toObject();
    EXPECT_EQ(package["page"].toString(), "out/packages/a.html");
    EXPECT_EQ(package["pictures"].toArray().size(), 0);
}

TEST_F(DrawCommand, TellsThatAPageCannotBeWritten)
{
    directory.write("a.obl", aPackageWith("oak"));
    directory.write("b.obl", aPackageWith("pine"));
    directory.makeDirectory("out/packages/a.html");

    const ToolRun found = run({"draw", "--html", "out", "a.obl", "b.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! a.obl: out/packages/a.html cannot be written\n");
    EXPECT_TRUE(directory.exists("out/packages/b.html"));
}

TEST_F(DrawCommand, TellsThatAnIndexCannotBeWritten)
{
    directory.write("a.obl", aPackageWith("oak"));
    directory.makeDirectory("out/index.html");

    const ToolRun found = run({"draw", "--html", "out", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! out: out/index.html cannot be written\n");
    EXPECT_EQ(found.out, "");
}

TEST_F(DrawCommand, AReportHasAllGraphsInItsOwnFormat)
{
    const ToolRun graph = run({"draw", "--html", "x", "--graph", "oak", "a.obl"});
    const ToolRun format = run({"draw", "--html", "x", "--format", "png", "a.obl"});

    EXPECT_EQ(graph.exitCode, 2) << graph;
    EXPECT_EQ(graph.err, "Error! '--graph' goes with '--output' alone\nSee 'ksx draw --help'\n");
    EXPECT_EQ(format.exitCode, 2) << format;
    EXPECT_EQ(format.err, "Error! '--format' goes with '--output' alone\nSee 'ksx draw --help'\n");
}

TEST_F(DrawCommand, KnowsTwoFormats)
{
    const ToolRun found = run({"draw", "-o", "x", "--format", "gif", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! The option '--format' takes svg or png\n"
                         "See 'ksx draw --help'\n");
}

TEST_F(DrawCommand, WantsOneFolderToWriteTo)
{
    const ToolRun none = run({"draw", "a.obl"});
    const ToolRun both = run({"draw", "-o", "x", "--html", "y", "a.obl"});

    EXPECT_EQ(none.exitCode, 2) << none;
    EXPECT_EQ(none.err, "Error! Give either '--output' or '--html', with a folder to write to\n"
                        "See 'ksx draw --help'\n");
    EXPECT_EQ(both.err, none.err);
}

// The command "preview" of the built tool.
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

ToolRun previewExamples(const Arguments& arguments)
{
    Arguments words{"preview", "--presets-path", "old/presets"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    ToolRun run = Tool(sourcePath("examples")).at(ksxPath()).withClockAt(1790000000).run(words);
    run.out = replaced(run.out, sourcePath("examples"), "/EXAMPLES");
    return run;
}

class PreviewCommand : public testing::Test
{
protected:
    ToolRun run(const Arguments& arguments) const
    {
        return Tool(directory.path()).at(ksxPath()).run(arguments);
    }
    std::string path(const std::string& name) const { return directory.path(name); }

    TemporaryDirectory directory;
};

TEST_F(PreviewCommand, TellsChangesToPeople)
{
    const ToolRun found = previewExamples({"old/felt.obl", "old/roof_tiles.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_EQ(found.err, "");
    expectGolden("kit/preview.txt", found.out);
}

TEST_F(PreviewCommand, TellsChangesAsJson)
{
    const ToolRun found = previewExamples({"--json", "old/felt.obl", "old/pavement.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    expectGolden(
        "kit/preview.json",
        QJsonDocument::fromJson(QByteArray::fromStdString(found.out)).toJson().toStdString());
}

TEST_F(PreviewCommand, ShowsItsOptions)
{
    expectGolden("kit/help-preview.txt", run({"preview", "--help"}).out);
}

TEST_F(PreviewCommand, TellsTheSameForAnyNumberOfJobs)
{
    const ToolRun one = previewExamples({"--json", "--jobs", "1", "old"});

    EXPECT_EQ(previewExamples({"--json", "--jobs", "5", "old"}).out, one.out);
}

TEST_F(PreviewCommand, FindsNothingWhenAllIsAsAnUpdateLeavesIt)
{
    directory.write("a.obl", aPackage().text());
    runTool(directory.path(), {"update", "a.obl"});

    const ToolRun found = run({"preview", "a.obl"});

    EXPECT_EQ(found.exitCode, 0) << found;
    EXPECT_EQ(found.out, path("a.obl") + "\n  writes " +
                             std::to_string(directory.read("a.obl").size()) + " bytes to " +
                             path("a_updated.obl") + ", which has these bytes already\n\n" +
                             "The update would write 0 of 1 files with other bytes\n");
}

TEST_F(PreviewCommand, FindsAFileThatWouldBecomeAnother)
{
    directory.write("a.obl", aPackage().text());
    directory.write("a_updated.obl", "before");

    const ToolRun found = run({"preview", "a.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_NE(found.out.find("a_updated.obl, which has other bytes now\n"), std::string::npos)
        << found;
    EXPECT_EQ(directory.read("a_updated.obl"), "before");
}

TEST_F(PreviewCommand, TellsThatAnotherPackageTakesATargetInTheEnd)
{
    directory.write("a/wood.obl", aPackage().text());
    directory.write("b/wood.obl", aPackage().text());
    directory.makeDirectory("out");

    const ToolRun found = run({"preview", "--output-path", "out", "a/wood.obl", "b/wood.obl"});

    EXPECT_EQ(found.exitCode, 1) << found;
    EXPECT_NE(found.out.find("gets the bytes of another package in the end\n"), std::string::npos)
        << found;
}

TEST_F(PreviewCommand, TellsWhatTheUpdateSaysOfAMissingFile)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun found = run({"preview", "none.obl", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! none.obl: there is no such file\nCannot load: none.obl\n"
                         "Packages cannot be correctly loaded\n");
    EXPECT_NE(found.out.find("The update would write nothing"), std::string::npos) << found;
}

TEST_F(PreviewCommand, NamesAFileThatTwoPackagesMissOnce)
{
    directory.write("a.obl", aPackage().dependingOn("none.obl", 5).text());
    directory.write("b.obl", aPackage().dependingOn("none.obl", 5).text());

    const ToolRun found = run({"preview", "a.obl", "b.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    const std::string line = "Error! " + path("none.obl") + ": there is no such file\n";
    EXPECT_EQ(found.err.find(line), found.err.rfind(line)) << found;
    EXPECT_NE(found.err.find(line), std::string::npos) << found;
}

TEST_F(PreviewCommand, TellsWhatTheUpdateSaysOfAFolderThatIsMissing)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun found = run({"preview", "--output-path", "out", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! Cannot saved: " + path("out/a_updated.obl") + "\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(PreviewCommand, SearchesFolders)
{
    directory.write("sub/a.obl", aPackage().text());
    directory.write("sub/b.obl", "<");

    const ToolRun found = run({"preview", "."});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.out.rfind(path("sub/a.obl") + "\n", 0), 0U) << found;
}

TEST_F(PreviewCommand, CutsLongListsForPeople)
{
    std::string content;
    for (int i = 0; i < 50; ++i)
        content += TestSupport::aResource("r" + std::to_string(i), "x" + std::to_string(i));
    directory.write("sub/a.obl", aPackage().containing(content).text());

    const ToolRun found = run({"preview", "sub/a.obl"});

    EXPECT_NE(found.out.find("    and 10 more, which --json shows\n"), std::string::npos) << found;
}

TEST_F(PreviewCommand, ShowsNoControlCharactersOfPackages)
{
    directory.write("a.obl", aPackage()
                                 .with("formatVersion", "1.0.3.5017")
                                 .without("updaterVersion")
                                 .containing(TestSupport::aGroup("x&#10;y&#27;[31m"))
                                 .text());

    const ToolRun found = run({"preview", "a.obl"});

    EXPECT_EQ(found.out.find('\x1b'), std::string::npos) << found;
    EXPECT_NE(found.exitCode, -1) << found;
}

} // namespace

// The command "info" of the built tool.
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::replaced;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

ToolRun runInExamples(const Arguments& arguments)
{
    ToolRun run = Tool(sourcePath("examples")).at(ksxPath()).run(arguments);
    run.out = replaced(run.out, sourcePath("examples"), "EXAMPLES");
    return run;
}

// Returns JSON with a line for each value, and any other text as it is.
std::string inLines(const std::string& text)
{
    const QJsonDocument json = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    return json.isNull() ? text : json.toJson().toStdString();
}

struct GoldenInfo
{
    const char* name;
    Arguments arguments;
    const char* golden;
};

std::ostream& operator<<(std::ostream& stream, const GoldenInfo& c)
{
    return stream << c.name;
}

class InfoOfExamples : public testing::TestWithParam<GoldenInfo>
{};

class InfoOf : public testing::Test
{
protected:
    Tool tool() const { return Tool(directory.path()).at(ksxPath()); }

    TemporaryDirectory directory;
};

} // namespace

TEST_P(InfoOfExamples, IsThatOfTheGoldenFile)
{
    const ToolRun run = runInExamples(GetParam().arguments);

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
    expectGolden(GetParam().golden, inLines(run.out));
}

INSTANTIATE_TEST_SUITE_P(
    All, InfoOfExamples,
    testing::Values(
        GoldenInfo{
            "Text",
            {"info", "--presets-path", "presets", "mixed/everything.obl", "old/market_square.obl"},
            "kit/info.txt"},
        GoldenInfo{"Json",
                   {"info", "--json", "--presets-path", "presets", "mixed/everything.obl",
                    "old/market_square.obl"},
                   "kit/info.json"},
        GoldenInfo{"OfAnAssembly", {"info", "assemblies/rust_effect.oblasm"}, "kit/assembly.txt"},
        GoldenInfo{"BriefText", {"info", "--brief", "."}, "kit/brief.txt"},
        GoldenInfo{"BriefJson", {"info", "--brief", "--json", "."}, "kit/brief.json"}),
    caseName<GoldenInfo>);

TEST_F(InfoOf, PackagesIsTheSameForAnyNumberOfJobs)
{
    const ToolRun one = runInExamples({"info", "--jobs", "1", "."});

    EXPECT_EQ(runInExamples({"info", "--jobs", "5", "."}).out, one.out);
}

TEST_F(InfoOf, AnArchiveShowsItsGraphs)
{
    const ToolRun run = runInExamples({"info", "assemblies/metal_filters.oblar"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(run.out.find("graph metal_filters/patina (5 inputs, 2 outputs"), std::string::npos)
        << run;
}

TEST_F(InfoOf, NamesOnStandardInputIsThatOfTheFiles)
{
    directory.write("a.obl", aPackage().named("first").text());
    directory.write("b.obl", aPackage().named("second").text());
    const std::string names = directory.write("names", "b.obl\n\na.obl");

    const ToolRun run = tool().withInputFrom(names).run({"info", "--brief", "-"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_LT(run.out.find("second"), run.out.find("first"));
}

TEST_F(InfoOf, AFolderWithoutPackagesIsNothing)
{
    const ToolRun run = tool().run({"info", "."});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "");
}

TEST_F(InfoOf, ADamagedFileLeavesTheOthers)
{
    directory.write("a.obl", "<");
    directory.write("b.obl", aPackage().named("sound").text());

    const ToolRun run = tool().run({"info", "."});

    EXPECT_EQ(run.exitCode, 2) << run;
    EXPECT_NE(run.out.find("sound"), std::string::npos);
    EXPECT_EQ(run.err.rfind("Error! ./a.obl: it is no sound document: ", 0), 0U) << run;
}

TEST_F(InfoOf, ADamagedFileIsAFailureInJson)
{
    directory.write("a.obl", "<library/>");

    const ToolRun run = tool().run({"info", "--json", "a.obl"});

    EXPECT_EQ(run.exitCode, 2) << run;
    EXPECT_EQ(run.out, R"({"ksx":1,"command":"info","packages":[],"failures":[{"file":"a.obl",)"
                       R"("reason":"it holds something else than a package"}]})"
                       "\n");
}

TEST_F(InfoOf, APackageWritesNothing)
{
    directory.write("a.obl", replaced(aPackage().text(), "1.1.0.7049", "1.0.1.3000"));

    const ToolRun run = tool().run({"info", "a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(InfoOf, AFileOfAnyNameIsListed)
{
    directory.write("\xFF\n.obl", aPackage().text());

    const ToolRun run = tool().run({"info", "--brief", "--json", "."});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(run.out.find(R"(\udcff\n.obl")"), std::string::npos) << run;
}

// The command "specialization": which files it opens, writes and merges with, and under which names.
#include "support/packagechecker.h"
#include "support/packagedom.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/specialization.h"
#include <gtest/gtest.h>
#include <filesystem>

using TestSupport::aFilter;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aRichFilter;
using TestSupport::caseName;
using TestSupport::countAt;
using TestSupport::dependencyUidIn;
using TestSupport::expectWhole;
using TestSupport::Instance;
using TestSupport::SpecializationCommand;
using TestSupport::textsAt;
using TestSupport::ToolRun;

namespace {

class SpecializationFiles : public SpecializationCommand
{};

// References

TEST_F(SpecializationFiles, DependsOnThePackageOfTheFilterAlone)
{
    directory.write("f.obl", aPackage()
                                 .dependingOn("sub/other.obl", 7)
                                 .dependingOnItself(8)
                                 .containing(aFilter().text())
                                 .text());
    directory.write("sub/other.obl", aPackage().text());

    expectSaved(specialize({"f.obl"}));

    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/type"), "package");
    EXPECT_EQ(textsAt(written, Instance + "path/value"),
              "pkg://planks?dependency=" + std::to_string(dependencyUidIn(written, "f.obl")));
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationFiles, NamesTheFilterRelativeToTheTarget)
{
    writeFilter(aFilter(), "filters/f.obl");
    directory.makeDirectory("out/deep");

    expectSaved(specialize({"filters/f.obl", "--output-path", "out/deep"}),
                "out/deep/f_specialized.obl");

    EXPECT_EQ(
        textsAt(directory.read("out/deep/f_specialized.obl"), "dependencies/dependency/filename"),
        "../../filters/f.obl");
    expectWhole(at("out/deep/f_specialized.obl"));
}

TEST_F(SpecializationFiles, NamesAFilterOfThePresetsByTheirScheme)
{
    writeFilter(aFilter(), "presets/f.obl");

    const ToolRun run = specialize({"presets/f.obl", "--presets-path", "presets"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Presets Path added: " + at("presets") +
                           "\nPackage Saved: " + at("f_specialized.obl") + "\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(textsAt(directory.read("f_specialized.obl"), "dependencies/dependency/filename"),
              "obl://f.obl");
    expectWhole(at("f_specialized.obl"), at("presets"));
}

TEST_F(SpecializationFiles, NamesAFilterOfThePresetsByItsPathAmongThem)
{
    writeFilter(aFilter(), "presets/f.obl");
    directory.makeDirectory("presets/mine");

    const ToolRun run =
        specialize({"presets/f.obl", "--presets-path", "presets", "--output-path", "presets/mine"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(textsAt(directory.read("presets/mine/f_specialized.obl"),
                      "dependencies/dependency/filename"),
              "../f.obl");
    expectWhole(at("presets/mine/f_specialized.obl"), at("presets"));
}

TEST_F(SpecializationFiles, FindsThePresetsThatTheFilterNeeds)
{
    directory.write(
        "f.obl",
        aPackage().dependingOn("obl://library.obl", 7).containing(aFilter().text()).text());
    directory.write("presets/library.obl", aPackage().text());

    const ToolRun run = specialize({"f.obl", "--presets-path", at("presets")});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
    expectWhole(at("f_specialized.obl"), at("presets"));
}

// Names

TEST_F(SpecializationFiles, ReplacesThePatternsInItsOptions)
{
    writeFilter(aFilter(), "in/f.old.obl");
    directory.makeDirectory("in/out");

    const ToolRun run = specialize({"in/f.old.obl", "--output-path", "{inputPath}/out",
                                    "--output-name", "{inputName}_{inputName}_{InputName}",
                                    "--output-graph-name", "{inputGraph}_of_{inputGraph}"});

    expectSaved(run, "in/out/f_f_{InputName}.obl");
    EXPECT_EQ(textsAt(directory.read("in/out/f_f_{InputName}.obl"), "content/graph/identifier"),
              "planks_of_planks");
}

TEST_F(SpecializationFiles, PatternsAreReplacedInTheOptionsThatHaveThem)
{
    writeFilter(aFilter());

    const ToolRun run =
        specialize({"f.obl", "--output-path", ".", "--output-name", "{inputPath}{inputGraph}",
                    "--output-graph-name", "{inputName}"});

    expectSaved(run, "{inputPath}{inputGraph}.obl");
    EXPECT_EQ(textsAt(directory.read("{inputPath}{inputGraph}.obl"), "content/graph/identifier"),
              "{inputName}");
}

TEST_F(SpecializationFiles, AnEmptyOutputNameIsToldAndIsAName)
{
    writeFilter(aFilter());

    const ToolRun run = specialize({"f.obl", "--output-name", ""});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Package Saved: " + at(".obl") + "\n");
    EXPECT_EQ(run.err, "Error! Output name empty\n");
    EXPECT_EQ(directory.files(), ".obl f.obl");
    expectWhole(at(".obl"));
}

TEST_F(SpecializationFiles, AFilterWithoutABaseNameGivesAnEmptyOne)
{
    writeFilter(aFilter(), "in/.obl");

    const ToolRun run = specialize({"in/.obl", "--output-name", "{inputName}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Package Saved: " + at(".obl") + "\n");
    EXPECT_EQ(run.err, "Error! Output name empty\n");
}

TEST_F(SpecializationFiles, ANameMayHoldADirectory)
{
    writeFilter(aFilter());
    directory.makeDirectory("sub");

    expectSaved(specialize({"f.obl", "--output-name", "sub/x"}), "sub/x.obl");

    EXPECT_EQ(textsAt(directory.read("sub/x.obl"), "dependencies/dependency/filename"), "../f.obl");
}

TEST_F(SpecializationFiles, PathsMayBeAbsolute)
{
    writeFilter(aFilter(), "in/f.obl");
    directory.makeDirectory("out");
    const std::string elsewhere = directory.makeDirectory("elsewhere");

    const ToolRun run = specializeIn(elsewhere, {at("in/f.obl"), "--output-path", at("out") + "/"});

    expectSaved(run, "out/f_specialized.obl");
    EXPECT_EQ(directory.files(), "in/f.obl out/f_specialized.obl");
    expectWhole(at("out/f_specialized.obl"));
}

TEST_F(SpecializationFiles, RelativePathsBeginAtTheCurrentDirectory)
{
    writeFilter(aFilter(), "in/f.obl");
    const std::string elsewhere = directory.makeDirectory("elsewhere");
    directory.makeDirectory("out");

    const ToolRun run = specializeIn(elsewhere, {"../in/./f.obl", "--output-path", "../out"});

    expectSaved(run, "out/f_specialized.obl");
    EXPECT_EQ(textsAt(directory.read("out/f_specialized.obl"), "dependencies/dependency/filename"),
              "../in/f.obl");
}

TEST_F(SpecializationFiles, TheInputMayBeGivenAsAnOption)
{
    writeFilter(aFilter());

    expectSaved(specialize({"--input", "f.obl"}));
}

TEST_F(SpecializationFiles, NamesOfFilesAreBytes)
{
    const std::string name = "Gr\xc3\xb6\xc3\x9f"
                             "e & <1>";
    writeFilter(aFilter(), name + ".obl");

    expectSaved(specialize({name + ".obl"}), name + "_specialized.obl");

    expectWhole(at(name + "_specialized.obl"));
}

struct NameCase
{
    const char* name;
    const char* option;
    const char* identifier;
};

class NameOfTheNewGraph : public SpecializationCommand, public testing::WithParamInterface<NameCase>
{};

TEST_P(NameOfTheNewGraph, IsALegalIdentifier)
{
    const std::string written = specialized(aFilter(), {"--output-graph-name", GetParam().option});

    EXPECT_EQ(textsAt(written, "content/graph/identifier"), GetParam().identifier);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NameOfTheNewGraph,
    testing::Values(NameCase{"AsItIs", "my[graph]", "my[graph]"},
                    NameCase{"Blanks", " a b ", "a_b"}, NameCase{"Slashes", "a/b?c&d", "a_b_c_d"},
                    NameCase{"Bytes",
                             "Gr\xc3\xb6\xc3\x9f"
                             "e",
                             "Gr__e"},
                    NameCase{"Numbered", "planks_7", "planks_7"},
                    NameCase{"Empty", "", "DEFAULT_NEW_GRAPH_IDENTIFIER"},
                    NameCase{"NothingLegal", "___ /", "DEFAULT_NEW_GRAPH_IDENTIFIER"}),
    caseName<NameCase>);

// Merging

TEST_F(SpecializationFiles, ReplacesAFormerResult)
{
    directory.write("f_specialized.obl", std::string(100000, 'x'));

    const std::string written = specialized(aFilter());

    EXPECT_EQ(countAt(written, "content/graph"), 1);
}

TEST_F(SpecializationFiles, MergesIntoAPackage)
{
    directory.write("f_specialized.obl", aPackage()
                                             .named("mine")
                                             .with("author", "somebody")
                                             .containing(aGroup("g") + aFilter("own").text())
                                             .text());

    const std::string written = specialized(aFilter(), {"--output-merge"});

    EXPECT_EQ(textsAt(written, "identifier"), "mine");
    EXPECT_EQ(textsAt(written, "author"), "somebody");
    EXPECT_EQ(textsAt(written, "fileUID"), "{00000000-0000-0000-0000-000000000001}");
    EXPECT_EQ(textsAt(written, "content/group/identifier"), "g");
    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "own planks");
}

TEST_F(SpecializationFiles, GivesTheGraphANameThatIsFreeInThePackage)
{
    directory.write("f_specialized.obl",
                    aPackage().containing(aGroup("planks") + aFilter("planks_1").text()).text());

    const std::string written = specialized(aFilter(), {"--output-merge"});

    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks_1 planks_2");
}

TEST_F(SpecializationFiles, MergesAgainAndAgain)
{
    specialized(aRichFilter(), {"--output-merge", "--connect-input", "in"});
    specialized(aRichFilter(), {"--output-merge"});

    const std::string written = specialized(aRichFilter(), {"--output-merge"});

    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks planks_1 planks_2");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl");
}

TEST_F(SpecializationFiles, MergesTwoFiltersIntoOnePackage)
{
    writeFilter(aFilter("bricks"), "sub/g.obl");

    specialized(aFilter());
    expectSaved(specialize({"sub/g.obl", "--output-merge", "--output-name", "f_specialized"}));

    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks bricks");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl sub/g.obl");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationFiles, MergesIntoAPackageThatTheFilterDependsOn)
{
    directory.write(
        "f.obl",
        aPackage().dependingOn("f_specialized.obl", 7).containing(aFilter().text()).text());
    directory.write("f_specialized.obl",
                    aPackage().named("mine").containing(aFilter("own").text()).text());

    expectSaved(specialize({"f.obl", "--output-merge"}));

    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, "identifier"), "mine");
    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "own planks");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationFiles, MergesIntoAnOldPackage)
{
    writeFilter(aFilter());
    std::filesystem::copy(TestSupport::sourcePath("examples/old/grain.obl"),
                          at("f_specialized.obl"));

    expectSaved(specialize({"f.obl", "--output-merge"}));

    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, "formatVersion"), "1.1.0.7049");
    EXPECT_EQ(textsAt(written, "content/*/graph/identifier"), "rings plank_grain planks");
    EXPECT_EQ(directory.files(), "f.obl f_specialized.obl");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationFiles, MergesSilentlyWithNothing)
{
    const std::string written = specialized(aFilter(), {"--output-merge"});

    EXPECT_EQ(textsAt(written, "identifier"), "wood");
}

TEST_F(SpecializationFiles, WarnsOfATargetThatCannotBeOpenedAndOverwritesIt)
{
    writeFilter(aFilter());
    directory.write("f_specialized.obl", "<package>");

    const ToolRun run = specialize({"f.obl", "--output-merge"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Package Saved: " + at("f_specialized.obl") + "\n");
    EXPECT_EQ(run.err, "Cannot load: " + at("f_specialized.obl") +
                           "\nWarning! Output file not found and cannot be merged\n");
    EXPECT_EQ(textsAt(directory.read("f_specialized.obl"), "identifier"), "wood");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationFiles, WarnsOfATargetWithoutItsDependencies)
{
    writeFilter(aFilter());
    directory.write("f_specialized.obl",
                    aPackage().named("mine").dependingOn("gone.obl", 7).text());

    const ToolRun run = specialize({"f.obl", "--output-merge"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + at("gone.obl") +
                           "\nWarning! Output file not found and cannot be merged\n");
    EXPECT_EQ(textsAt(directory.read("f_specialized.obl"), "identifier"), "wood");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationFiles, MergesIntoTheFiltersOwnPackage)
{
    writeFilter(aRichFilter());

    expectSaved(specialize({"f.obl", "--output-merge", "--output-name", "{inputName}"}), "f.obl");

    const std::string written = directory.read("f.obl");
    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks planks_1");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "?himself");
    EXPECT_EQ(textsAt(written, Instance + "path/value"),
              "pkg://planks?dependency=" + std::to_string(dependencyUidIn(written, "?himself")));
    EXPECT_EQ(directory.files(), "f.obl");
    expectWhole(at("f.obl"));
}

TEST_F(SpecializationFiles, WritesThroughALink)
{
    writeFilter(aFilter());
    directory.write("else/real.obl", aPackage().named("mine").text());
    directory.makeLink("f_specialized.obl", "else/real.obl");

    expectSaved(specialize({"f.obl"}));

    EXPECT_TRUE(std::filesystem::is_symlink(at("f_specialized.obl")));
    EXPECT_EQ(textsAt(directory.read("else/real.obl"), "identifier"), "wood");
    expectWhole(at("else/real.obl"));
}

TEST_F(SpecializationFiles, MergesThroughALink)
{
    writeFilter(aFilter());
    directory.write("else/real.obl", aPackage().named("mine").text());
    directory.makeLink("f_specialized.obl", "else/real.obl");

    expectSaved(specialize({"f.obl", "--output-merge"}));

    EXPECT_TRUE(std::filesystem::is_symlink(at("f_specialized.obl")));
    EXPECT_EQ(textsAt(directory.read("else/real.obl"), "identifier"), "mine");
    EXPECT_EQ(textsAt(directory.read("else/real.obl"), "content/graph/identifier"), "planks");
    expectWhole(at("else/real.obl"));
}

TEST_F(SpecializationFiles, OpensAFilterBehindALink)
{
    writeFilter(aFilter(), "else/real.obl");
    directory.makeLink("f.obl", "else/real.obl");

    expectSaved(specialize({"f.obl"}));

    EXPECT_EQ(textsAt(directory.read("f_specialized.obl"), "dependencies/dependency/filename"),
              "else/real.obl");
    expectWhole(at("f_specialized.obl"));
}

} // namespace

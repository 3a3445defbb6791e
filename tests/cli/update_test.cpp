// The command "update": which files it writes, under which names, and what it prints.
#include "support/packagetext.h"
#include "support/peakbound.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>

using TestSupport::aGroupSaying;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;
using TestSupport::withOwnUidHidden;

namespace {

class UpdateCommand : public testing::Test
{
protected:
    ToolRun update(const Arguments& arguments) const
    {
        return updateIn(directory.path(), arguments);
    }
    static ToolRun updateIn(const std::string& where, Arguments arguments)
    {
        arguments.insert(arguments.begin(), "update");
        return runTool(where, arguments);
    }
    std::string at(const std::string& name) const { return directory.path(name); }

    // Packages "p0.obl" and so on, each with a dependency on one that is no input: their names.
    Arguments writeLibrary(int count) const
    {
        Arguments names;
        for (int i = 0; i < count; ++i) {
            const std::string number = std::to_string(i);
            names.push_back("p" + number + ".obl");
            directory.write(
                names.back(),
                aPackage().named("p" + number).dependingOn("q" + number + ".obl", 7).text());
            directory.write("q" + number + ".obl", aPackage().named("q" + number).text());
        }
        return names;
    }
    // What became of these packages and their dependencies.
    std::string allUpdated(int count) const
    {
        std::string bytes;
        for (int i = 0; i < count; ++i)
            bytes += directory.read("p" + std::to_string(i) + "_updated.obl") +
                     directory.read("q" + std::to_string(i) + "_updated.obl");
        return TestSupport::withDependencyUidsHidden(bytes);
    }

    TemporaryDirectory directory;
};

std::string manyGroups(int count)
{
    std::string groups;
    for (int i = 0; i < count; ++i)
        groups += TestSupport::aGroup("group" + std::to_string(i));
    return groups;
}

TEST_F(UpdateCommand, WritesAPackageThatIsCurrentAsItWas)
{
    const std::string text =
        aPackage().named("wood").with("desc", "\"<a> & 'b'\t\n\"").dependingOnItself(5).text();
    directory.write("a.obl", text);

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(withOwnUidHidden(directory.read("a_updated.obl")), withOwnUidHidden(text));
}

TEST_F(UpdateCommand, ReadsTheConfigurationsInsideOthersOfAnOldPackage)
{
    const std::string current = "<configurations><name v=\"a\"/><uid v=\"1\"/><configuration>"
                                "<configurations><name v=\"b\"/><uid v=\"2\"/><configuration/>"
                                "</configurations></configuration></configurations>";
    const std::string old = "<configuration><name v=\"a\"/><uid v=\"1\"/><configurations>"
                            "<configuration><name v=\"b\"/><uid v=\"2\"/><configurations/>"
                            "</configuration></configurations></configuration>";
    const std::string none =
        "<configurations><name v=\"default\"/><uid v=\"1\"/><configuration/></configurations>";
    const std::string text = aPackage().text();
    directory.write("a.obl", replaced(replaced(text, none, old), "1.1.0.7049", "1.0.1.3000"));

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), replaced(text, none, current));
}

TEST_F(UpdateCommand, DoesTheSameOnOneCoreAsOnAll)
{
    const Arguments packages = writeLibrary(30);
    const ToolRun onAll = update(packages);
    const std::string written = allUpdated(30);

    Arguments again = packages;
    again.insert(again.begin(), "update");
    const ToolRun onOne = Tool(directory.path()).onOneCore().run(again);

    EXPECT_EQ(onAll.exitCode, 0) << onAll;
    EXPECT_EQ(onOne.exitCode, 0) << onOne;
    EXPECT_EQ(onOne.out, onAll.out);
    EXPECT_EQ(onOne.err, onAll.err);
    EXPECT_EQ(allUpdated(30), written);
}

TEST_F(UpdateCommand, NamesTheFirstFileThatFailsOnAllCores)
{
    Arguments packages = writeLibrary(30);
    directory.write("p7.obl", "no package");
    directory.write("p9.obl", "no package");

    const ToolRun run = update(packages);

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + at("p7.obl") + "\nPackages cannot be correctly loaded\n");
}

TEST_F(UpdateCommand, TakesLittleMemoryForAnOldPackage)
{
    const std::string text =
        replaced(aPackage().containing(manyGroups(100000)).text(), "1.1.0.7049", "1.0.1.3000");
    directory.write("a.obl", text);

    const ToolRun run = update({"a.obl"});

    const long kilobytes = static_cast<long>(text.size() / 1024);
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_LT(run.peakKilobytes, TestSupport::peakBound(32L * 1024 + 9 * kilobytes));
}

TEST_F(UpdateCommand, WritesOneLineThatEndsWithALineFeed)
{
    directory.write("a.obl", aPackage().text());

    update({"a.obl"});

    const std::string written = directory.read("a_updated.obl");
    EXPECT_EQ(written.find('\n'), written.size() - 1);
}

TEST_F(UpdateCommand, NeverChangesTheInput)
{
    const std::string text = "<?xml version='1.0'?>\n" + aPackage().text().substr(38);
    directory.write("a.obl", text);

    update({"a.obl"});

    EXPECT_EQ(directory.read("a.obl"), text);
    EXPECT_EQ(directory.files(), "a.obl a_updated.obl");
}

TEST_F(UpdateCommand, TellsWhatItLoadedAndSaved)
{
    directory.write("in/a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("in/b.obl", aPackage().text());

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.out, "Packages Loaded:\n"
                       "    " +
                           at("in/a.obl") + "\n    " + at("in/b.obl") +
                           "\n"
                           "Packages Saved:\n"
                           "    " +
                           at("a_updated.obl") + "\n    " + at("b_updated.obl") + "\n");
    EXPECT_EQ(run.err, "");
}

TEST_F(UpdateCommand, WritesToTheCurrentDirectoryByDefault)
{
    directory.write("in/a.obl", aPackage().dependingOn("sub/b.obl", 7).text());
    directory.write("in/sub/b.obl", aPackage().text());

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a_updated.obl b_updated.obl in/a.obl in/sub/b.obl");
}

TEST_F(UpdateCommand, WritesEachPackageBesideItsOwnInputForThePathPattern)
{
    directory.write("in/a.obl", aPackage().dependingOn("sub/b.obl", 7).text());
    directory.write("in/sub/b.obl", aPackage().text());

    const ToolRun run = update({"in/a.obl", "--output-path", "{inputPath}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "in/a.obl in/a_updated.obl in/sub/b.obl in/sub/b_updated.obl");
}

TEST_F(UpdateCommand, ReplacesThePathPatternInsideAPath)
{
    directory.write("in/a.obl", aPackage().text());
    directory.makeDirectory("in/out");

    const ToolRun run = update({"in/a.obl", "--output-path", "{inputPath}/../in/out"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "in/a.obl in/out/a_updated.obl");
}

TEST_F(UpdateCommand, TheLastPackageWinsAFixedName)
{
    directory.write("a.obl", aPackage().named("first").dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().named("second").text());

    const ToolRun run = update({"a.obl", "--output-name", "fixed"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl b.obl fixed.obl");
    EXPECT_EQ(directory.read("fixed.obl"), aPackage().named("second").text());
}

TEST_F(UpdateCommand, TheSecondOfTwoInputsWithOneNameReplacesTheFirst)
{
    directory.write("x/a.obl", aPackage().named("first").text());
    directory.write("y/a.obl", aPackage().named("second").text());

    const ToolRun run = update({"x/a.obl", "y/a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(directory.files(), "a_updated.obl x/a.obl y/a.obl");
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().named("second").text());
}

TEST_F(UpdateCommand, InputsMayBeGivenInBothForms)
{
    directory.write("a.obl", aPackage().text());
    directory.write("b.obl", aPackage().text());

    const ToolRun run = update({"--inputs", "a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl a_updated.obl b.obl b_updated.obl");
}

TEST_F(UpdateCommand, NoDependencyChangesNothing)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().text());

    const ToolRun run = update({"--no-dependency", "a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl a_updated.obl b.obl b_updated.obl");
}

TEST_F(UpdateCommand, ReplacesAnOldResult)
{
    directory.write("a.obl", aPackage().text());
    directory.write("a_updated.obl", std::string(100000, 'x'));

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
}

TEST_F(UpdateCommand, WritesOverItsInput)
{
    directory.write("in/a.obl", aPackage().named("first").dependingOn("b.obl", 7).text());
    directory.write("in/b.obl", aPackage().named("second").text());

    const ToolRun run =
        update({"in/a.obl", "--output-path", "{inputPath}", "--output-name", "{inputName}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "in/a.obl in/b.obl");
    EXPECT_EQ(directory.read("in/a.obl"), aPackage().named("first").dependingOn("b.obl", 7).text());
    EXPECT_EQ(directory.read("in/b.obl"), aPackage().named("second").text());
}

struct NameCase
{
    const char* name;
    std::string input;
    std::string pattern;
    std::string written;
};

std::ostream& operator<<(std::ostream& stream, const NameCase& c)
{
    return stream << c.name;
}

class UpdateOutputName : public UpdateCommand, public testing::WithParamInterface<NameCase>
{};

TEST_P(UpdateOutputName, IsFormedFromThePattern)
{
    directory.write(GetParam().input, aPackage().text());

    const ToolRun run = update({"--inputs", GetParam().input, "--output-name", GetParam().pattern});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(directory.exists(GetParam().written)) << directory.files();
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, UpdateOutputName,
    testing::Values(
        NameCase{"TwiceTheName", "a.obl", "{inputName}-{inputName}", "a-a.obl"},
        NameCase{"NameUpToTheFirstPoint", "a.b.c.obl", "{inputName}", "a.obl"},
        NameCase{"NothingInFrontOfThePoint", ".obl", "x{inputName}", "x.obl"},
        NameCase{"CaseCounts", "a.obl", "{inputname}", "{inputname}.obl"},
        NameCase{"PathPatternIsPlain", "a.obl", "{inputPath}", "{inputPath}.obl"},
        NameCase{"GraphPatternIsPlain", "a.obl", "{inputGraph}", "{inputGraph}.obl"},
        NameCase{"EndingIsAdded", "a.obl", "x.obl", "x.obl.obl"},
        NameCase{"PlaceholderInTheInput", "a%1%2.obl", "{inputName}_x", "a%1%2_x.obl"},
        NameCase{"PlaceholderInThePattern", "a.obl", "%1{inputName}%2", "%1a%2.obl"},
        NameCase{"PatternInTheInput", "{inputName}.obl", "{inputName}_x", "{inputName}_x.obl"},
        NameCase{"PathPatternInTheInput", "{inputPath}.obl", "{inputName}_x", "{inputPath}_x.obl"},
        NameCase{"Blanks", "a b.obl", " {inputName} ", " a b .obl"},
        NameCase{"UrlCharacters", "a%20#b?c&d.obl", "{inputName}_x", "a%20#b?c&d_x.obl"},
        NameCase{"Upwards", "in/a.obl", "in/../{inputName}", "a.obl"}),
    caseName<NameCase>);

TEST_F(UpdateCommand, AnAbsoluteNameWinsOverThePath)
{
    directory.write("a.obl", aPackage().text());
    directory.makeDirectory("x");

    const ToolRun run = update({"a.obl", "--output-name", at("x/b"), "--output-path", "/nowhere"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl x/b.obl");
}

TEST_F(UpdateCommand, ARelativePathStartsInTheCurrentDirectory)
{
    directory.write("in/a.obl", aPackage().text());
    directory.makeDirectory("out");

    const ToolRun run = update({"in/a.obl", "--output-path", "in/../out/"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "in/a.obl out/a_updated.obl");
}

TEST_F(UpdateCommand, AnEmptyPathIsTheCurrentDirectory)
{
    directory.write("in/a.obl", aPackage().text());

    const ToolRun run = update({"in/a.obl", "--output-path", ""});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a_updated.obl in/a.obl");
}

TEST_F(UpdateCommand, AnEmptyNameSkipsThePackage)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "--output-name", ""});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "Packages Loaded:\n    " + at("a.obl") + "\nPackages Saved:\n");
    EXPECT_EQ(run.err, "Error! Output name empty\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(UpdateCommand, AnEmptyNameIsTheFaultOfOnePackageOnly)
{
    directory.write(".obl", aPackage().text());
    directory.write("a.obl", aPackage().text());

    directory.makeDirectory("out");

    const ToolRun run =
        update({".obl", "a.obl", "--output-name", "{inputName}", "--output-path", "out"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Error! Output name empty\n");
    EXPECT_EQ(directory.files(), ".obl a.obl out/a.obl");
}

TEST_F(UpdateCommand, AMissingOutputDirectoryIsNotMade)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "--output-path", "missing"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Error! Cannot saved: " + at("missing/a_updated.obl") + "\n");
    EXPECT_EQ(run.out, "Packages Loaded:\n    " + at("a.obl") + "\nPackages Saved:\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(UpdateCommand, TheNamePatternIsPlainInsideThePath)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "--output-path", "{inputName}"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Error! Cannot saved: " + at("{inputName}/a_updated.obl") + "\n");
}

TEST_F(UpdateCommand, TheOtherPackagesAreWrittenWhenOneCannotBe)
{
    directory.write("a.obl", aPackage().text());
    directory.write("b.obl", aPackage().text());
    directory.write("c.obl", aPackage().text());
    directory.makeDirectory("b_updated.obl");

    const ToolRun run = update({"a.obl", "b.obl", "c.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Error! Cannot saved: " + at("b_updated.obl") + "\n");
    EXPECT_EQ(directory.files(), "a.obl a_updated.obl b.obl c.obl c_updated.obl");
}

TEST_F(UpdateCommand, ANameTooLongForTheFileSystemIsAnError)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "--output-name", std::string(100000, 'x')});

    EXPECT_EQ(run.exitCode, 1) << run.exitCode;
    EXPECT_EQ(run.err.substr(0, 21), "Error! Cannot saved: ");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(UpdateCommand, WritesTheCurrentFormatsEndingOnlyOnce)
{
    directory.write("a.obl.orvautosave", aPackage().text());

    const ToolRun run = update({"a.obl.orvautosave"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl.orvautosave a_updated.obl");
}

// The presets library.

class UpdateWithPresets : public UpdateCommand
{
protected:
    UpdateWithPresets()
    {
        directory.write("presets/lib.obl", aPackage().named("lib").text());
        directory.write("in/a.obl", aPackage().dependingOn("obl://lib.obl", 7).text());
    }
};

TEST_F(UpdateWithPresets, TheirPathIsTold)
{
    const ToolRun run = update({"in/a.obl", "--presets-path", "in/../presets"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "Presets Path added: " + at("presets"));
}

TEST_F(UpdateWithPresets, ALibraryPackageIsWrittenLikeAnyOther)
{
    const ToolRun run = update({"in/a.obl", "--presets-path", "presets"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a_updated.obl in/a.obl lib_updated.obl presets/lib.obl");
    EXPECT_EQ(directory.read("lib_updated.obl"), aPackage().named("lib").text());
}

TEST_F(UpdateWithPresets, ReferencesIntoThemKeepTheirScheme)
{
    update({"in/a.obl", "--presets-path", "presets"});

    EXPECT_EQ(directory.read("a_updated.obl"), directory.read("in/a.obl"));
}

TEST_F(UpdateWithPresets, APathIntoThemGetsTheScheme)
{
    directory.write("in/a.obl", aPackage().dependingOn("../presets/lib.obl", 7).text());

    const ToolRun run = update({"in/a.obl", "--presets-path", "presets"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().dependingOn("obl://lib.obl", 7).text());
}

TEST_F(UpdateWithPresets, WithoutTheirPathTheSchemeLeadsIntoTheCurrentDirectory)
{
    directory.write("lib.obl", aPackage().named("other").text());

    const ToolRun run = update({"in/a.obl", "--output-path", "{inputPath}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(run.out.find("    " + at("lib.obl") + "\n"), std::string::npos) << run;
}

TEST_F(UpdateWithPresets, WithoutTheirPathTheFilesDirectoryIsNotSearched)
{
    directory.write("in/lib.obl", aPackage().text());

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + at("lib.obl") +
                           "\nPackages cannot be correctly loaded\n");
}

TEST_F(UpdateWithPresets, APathThatDoesNotExistIsTakenAllTheSame)
{
    const ToolRun run = update({"in/a.obl", "--presets-path", "missing"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "Presets Path added: " + at("missing") + "\n");
    EXPECT_EQ(run.err, "Cannot load dependency: " + at("missing/lib.obl") +
                           "\nPackages cannot be correctly loaded\n");
}

TEST_F(UpdateWithPresets, NeighboursInsideThemStayRelative)
{
    directory.write("presets/lib.obl", aPackage().dependingOn("sub/more.obl", 9).text());
    directory.write("presets/sub/more.obl", aPackage().text());

    const ToolRun run = update({"presets/lib.obl", "--presets-path", "presets", "--output-path",
                                "{inputPath}", "--output-name", "{inputName}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("presets/lib.obl"), aPackage().dependingOn("sub/more.obl", 9).text());
}

TEST_F(UpdateWithPresets, NeighboursInsideThemGetTheSchemeElsewhere)
{
    directory.write("presets/lib.obl", aPackage().dependingOn("sub/more.obl", 9).text());
    directory.write("presets/sub/more.obl", aPackage().text());

    const ToolRun run = update({"presets/lib.obl", "--presets-path", "presets"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("lib_updated.obl"),
              aPackage().dependingOn("obl://more.obl", 9).text());
}

// File references in what is written.

TEST_F(UpdateCommand, ReferencesAreRelativeToTheTarget)
{
    directory.write(
        "in/a.obl",
        aPackage().dependingOn("b.obl", 7).containing(aResource("r", "bitmaps/x.png")).text());
    directory.write("in/b.obl", aPackage().text());
    directory.write("in/bitmaps/x.png", "");

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage()
                                                   .dependingOn("in/b.obl", 7)
                                                   .containing(aResource("r", "in/bitmaps/x.png"))
                                                   .text());
}

TEST_F(UpdateCommand, AResourceNeedsNoFile)
{
    directory.write("in/a.obl", aPackage().containing(aResource("r", "../x.png")).text());

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"),
              aPackage().containing(aResource("r", "x.png")).text());
}

TEST_F(UpdateCommand, AnEmptyReferenceOfAResourceStaysEmpty)
{
    const std::string text = aPackage().containing(aResource("r", "")).text();
    directory.write("in/a.obl", text);

    const ToolRun run = update({"in/a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), text);
}

TEST_F(UpdateCommand, TheWrittenFileLoadsAgainToTheSameBytes)
{
    directory.write("in/a.obl", aPackage()
                                    .dependingOn("b.obl", 7)
                                    .dependingOnItself(8)
                                    .containing(aGroupSaying("g", "pkg://x?dependency=7"))
                                    .text());
    directory.write("in/b.obl", aPackage().text());
    ASSERT_EQ(update({"in/a.obl"}).exitCode, 0);
    const std::string once = directory.read("a_updated.obl");

    const ToolRun run = update({"a_updated.obl", "--output-name", "{inputName}-2"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(withOwnUidHidden(directory.read("a_updated-2.obl")), withOwnUidHidden(once));
}

// How deep groups may nest.

// The first version in a file counts, wherever it is. So no step is taken here, though the package is
// an old one.
TEST_F(UpdateCommand, APackageWithANewVersionInsideIsUpdatedOnce)
{
    const std::string group =
        replaced(TestSupport::aGroup("g"), "<uid", "<updaterVersion v=\"1.1.0.7049\"/><uid");
    directory.write("a.obl", aPackage()
                                 .with("formatVersion", "1.0.1.4510")
                                 .without("updaterVersion")
                                 .containing(group)
                                 .text());
    update({"a.obl"});
    const std::string once = directory.read("a_updated.obl");

    const ToolRun run = update({"a_updated.obl", "--output-name", "b"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("b.obl"), once);
}

TEST_F(UpdateCommand, TwoThousandNestedGroupsAreReadAndWritten)
{
    const std::string text = aPackage().containing(TestSupport::nestedGroups(2000)).text();
    directory.write("a.obl", text);

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(directory.read("a_updated.obl") == text);
}

// Old versions.

TEST_F(UpdateCommand, AFileOfALaterFormatIsRefused)
{
    directory.write(
        "a.obl", aPackage().with("formatVersion", "1.1.0.7050").without("updaterVersion").text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + at("a.obl") + "\nPackages cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(UpdateCommand, AFileWithoutAnUpdaterVersionGetsOne)
{
    directory.write("a.obl", aPackage().without("updaterVersion").text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
}

TEST_F(UpdateCommand, NoBackupIsMadeOfAnOldFile)
{
    directory.write(
        "a.obl", aPackage().with("formatVersion", "1.1.0.5356").without("updaterVersion").text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl a_updated.obl");
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
}

TEST_F(UpdateCommand, AVersionOfZerosCountsAsNone)
{
    directory.write("a.obl", aPackage().with("formatVersion", "0.0.0.0").text());
    directory.write(
        "b.obl",
        aPackage().with("formatVersion", "1.0.0.1").with("updaterVersion", "0.0.0.0").text());

    const ToolRun run = update({"a.obl", "b.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().text());
    EXPECT_EQ(directory.read("b_updated.obl"), aPackage().text());
}

} // namespace

// File names and console text are bytes, under every locale.
#include "support/assemblytext.h"
#include "support/filtertext.h"
#include "support/packagedom.h"
#include "support/packagetext.h"
#include "support/sampleimages.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cctype>

using TestSupport::aColorInput;
using TestSupport::aDescribedGraph;
using TestSupport::aDescription;
using TestSupport::aGroupSaying;
using TestSupport::anAssemblyBody;
using TestSupport::aPackage;
using TestSupport::aPng;
using TestSupport::aResource;
using TestSupport::Arguments;
using TestSupport::FilterText;
using TestSupport::TemporaryDirectory;
using TestSupport::textsAt;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

struct LocaleCase
{
    const char* name;
    const char* locale;
    std::string word; // a part of file names
    bool isUnicode;   // can it stand in a document?
};

std::ostream& operator<<(std::ostream& stream, const LocaleCase& c)
{
    return stream << c.name;
}

std::vector<LocaleCase> localeCases()
{
    std::vector<LocaleCase> cases;
    const LocaleCase words[] = {{"Latin", "", "Gr\xc3\xb6\xc3\x9f\xc3\xa9", true},
                                {"Chinese", "", "\xe6\x9c\xa8\xe6\x9d\x90", true},
                                {"BeyondTheFirstPlane", "", "\xf0\x9f\x8c\xb2", true},
                                {"Decomposed", "", "e\xcc\x81", true},
                                {"Latin1Bytes", "", "Gr\xf6\xdf\xe9", false},
                                {"NoUnicodeAtAll", "", "\xff\xfe\x80\xc3", false},
                                {"CutOffSequence", "", "x\xe6\x9c", false}};
    for (const LocaleCase& word : words)
        for (const char* locale : {"C", "C.UTF-8", "de_DE.ISO-8859-1"})
            cases.push_back({word.name, locale, word.word, word.isUnicode});
    return cases;
}

std::string localeCaseName(const testing::TestParamInfo<LocaleCase>& info)
{
    std::string name = std::string(info.param.name) + "Under" + info.param.locale;
    name.erase(std::remove_if(name.begin(), name.end(),
                              [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }),
               name.end());
    return name;
}

class NamesUnderALocale : public testing::TestWithParam<LocaleCase>
{
protected:
    Tool tool(const std::string& folder = {}) const
    {
        return Tool(directory.path(folder))
            .withEnvironment("LANG", GetParam().locale)
            .withEnvironment("LC_ALL", GetParam().locale);
    }
    ToolRun update(Arguments arguments) const
    {
        arguments.insert(arguments.begin(), "update");
        return tool().run(arguments);
    }
    const std::string& word() const { return GetParam().word; }

    TemporaryDirectory directory;
};

TEST_P(NamesUnderALocale, OfInputsOutputsAndMessagesAreKept)
{
    directory.write(word() + "/" + word() + ".obl", aPackage().text());

    const ToolRun run = update({word() + "/" + word() + ".obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Packages Loaded:\n    " + directory.path(word() + "/" + word() + ".obl") +
                           "\nPackages Saved:\n    " + directory.path(word() + "_updated.obl") +
                           "\n");
    EXPECT_EQ(directory.read(word() + "_updated.obl"), aPackage().text());
}

TEST_P(NamesUnderALocale, InOptionsAreKept)
{
    directory.write("a.obl", aPackage().text());
    directory.makeDirectory(word());

    const ToolRun run = update(
        {"a.obl", "--output-path", word(), "--output-name", word(), "--presets-path", word()});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')),
              "Presets Path added: " + directory.path(word()));
    EXPECT_EQ(directory.read(word() + "/" + word() + ".obl"), aPackage().text());
}

TEST_P(NamesUnderALocale, OfMissingInputsAreToldAsGiven)
{
    const ToolRun run = update({word() + ".obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: " + word() + ".obl\nPackages cannot be correctly loaded\n");
}

TEST_P(NamesUnderALocale, OfTargetsThatCannotBeWrittenAreTold)
{
    directory.write("a.obl", aPackage().text());

    const ToolRun run = update({"a.obl", "--output-path", word()});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Error! Cannot saved: " + directory.path(word() + "/a_updated.obl") + "\n");
}

TEST_P(NamesUnderALocale, OfDirectoriesDoNotHinderDependencies)
{
    directory.write(word() + "/a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write(word() + "/b.obl", aPackage().text());

    const ToolRun run = update({word() + "/a.obl", "--output-path", "{inputPath}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read(word() + "/a_updated.obl"), directory.read(word() + "/a.obl"));
}

TEST_P(NamesUnderALocale, OfMissingDependenciesAreTold)
{
    directory.write(word() + "/a.obl", aPackage().dependingOn("b.obl", 7).text());

    const ToolRun run = update({word() + "/a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + directory.path(word() + "/b.obl") +
                           "\nPackages cannot be correctly loaded\n");
}

TEST_P(NamesUnderALocale, OfTheCurrentFolderAreKept)
{
    directory.write(word() + "/in/a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write(word() + "/in/b.obl", aPackage().text());

    const ToolRun run = tool(word()).run({"update", "in/../in/a.obl", "--output-path", "in/.."});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Packages Loaded:\n    " + directory.path(word() + "/in/a.obl") + "\n    " +
                           directory.path(word() + "/in/b.obl") + "\nPackages Saved:\n    " +
                           directory.path(word() + "/a_updated.obl") + "\n    " +
                           directory.path(word() + "/b_updated.obl") + "\n");
}

TEST_P(NamesUnderALocale, OfFoldersWithPicturesAreKept)
{
    const std::string filter = FilterText("planks").taking(aColorInput("in")).text();
    directory.write(word() + "/f.obl", aPackage().containing(filter).text());
    directory.write(word() + "/oak.png", aPng({4, 4}));

    const ToolRun run =
        tool(word()).run({"specialization", "f.obl", "--connect-image", "in@path@oak.png"});

    const std::string written = directory.read(word() + "/f_specialized.obl");
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(textsAt(written, "content/resource/filepath"), "oak.png");
    EXPECT_NE(textsAt(written, "content/resource/lastModif"), "");
}

TEST_P(NamesUnderALocale, OfPackagesToMergeWithAreKept)
{
    directory.write("f.obl", aPackage().containing(FilterText("planks").text()).text());
    directory.write(word() + "/a.obl", aPackage().containing(FilterText("own").text()).text());

    const ToolRun run = tool().run({"specialization", "f.obl", "--output-path", word(),
                                    "--output-name", "a", "--output-merge"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(textsAt(directory.read(word() + "/a.obl"), "content/graph/identifier"), "own planks");
}

TEST_P(NamesUnderALocale, OfAssembliesAreKept)
{
    directory.write(word() + "/" + word() + ".oblasm", anAssemblyBody());
    directory.write(word() + "/" + word() + ".xml", aDescription(aDescribedGraph("wood")));

    const ToolRun run = update({word() + "/" + word() + ".oblasm"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(textsAt(directory.read(word() + "_updated.obl"), "content/graph/identifier"), "wood");
}

TEST_P(NamesUnderALocale, OfTwoFoldersAreToldApart)
{
    directory.write(word() + "\xfd/a.obl", aPackage().named("one").text());
    directory.write(word() + "\xfe/a.obl", aPackage().named("two").text());

    const ToolRun run = update({word() + "\xfd/../" + word() + "\xfd/a.obl", word() + "\xfe/a.obl",
                                "--output-path", "{inputPath}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read(word() + "\xfd/a_updated.obl"), aPackage().named("one").text());
    EXPECT_EQ(directory.read(word() + "\xfe/a_updated.obl"), aPackage().named("two").text());
}

INSTANTIATE_TEST_SUITE_P(Words, NamesUnderALocale, testing::ValuesIn(localeCases()),
                         localeCaseName);

// Names that stand in documents, which hold Unicode only.

class NamesInDocuments : public NamesUnderALocale
{};

TEST_P(NamesInDocuments, OfDependenciesAndResourcesAreKept)
{
    const std::string text = aPackage()
                                 .dependingOn(word() + ".obl", 7)
                                 .containing(aResource("r", word() + "/x.png"))
                                 .text();
    directory.write("in/a.obl", text);
    directory.write("in/" + word() + ".obl", aPackage().text());

    const ToolRun run = update({"in/a.obl", "--output-path", "{inputPath}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out.find('?'), std::string::npos) << run;
    EXPECT_EQ(directory.read("in/a_updated.obl"), text);
    EXPECT_TRUE(directory.exists("in/" + word() + "_updated.obl"));
}

TEST_P(NamesInDocuments, OfMissingDependenciesAreToldAsBytes)
{
    directory.write("a.obl", aPackage().dependingOn(word() + ".obl", 7).text());

    const ToolRun run = update({"a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + directory.path(word()) +
                           ".obl\nPackages cannot be correctly loaded\n");
}

TEST_P(NamesInDocuments, OfPresetsAreKept)
{
    const std::string text = aPackage().dependingOn("obl://" + word() + ".obl", 7).text();
    directory.write("a.obl", text);
    directory.write(word() + "/" + word() + ".obl", aPackage().text());

    const ToolRun run = update({"a.obl", "--presets-path", word()});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), text);
}

std::vector<LocaleCase> unicodeCases()
{
    std::vector<LocaleCase> cases = localeCases();
    cases.erase(std::remove_if(cases.begin(), cases.end(),
                               [](const LocaleCase& c) { return !c.isUnicode; }),
                cases.end());
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Words, NamesInDocuments, testing::ValuesIn(unicodeCases()),
                         localeCaseName);

TEST(TextsInDocuments, AreLatin1WithAMarkForTheRest)
{
    const TemporaryDirectory directory;
    directory.write(
        "a.obl",
        aPackage().containing(aGroupSaying("g", "\xc3\xa9 \xe6\x9c\xa8 \xf0\x9f\x8c\xb2.")).text());

    const ToolRun run = TestSupport::runTool(directory.path(), {"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"),
              aPackage().containing(aGroupSaying("g", "\xc3\xa9 ? ?.")).text());
}

} // namespace

// The command "specialization" where it fails: a line or two, and no file.
#include "support/packagetext.h"
#include "support/sampleimages.h"
#include "support/shelfcases.h"
#include "support/specialization.h"
#include <gtest/gtest.h>
#include <filesystem>

using TestSupport::aFilter;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aPng;
using TestSupport::Arguments;
using TestSupport::aRichFilter;
using TestSupport::caseName;
using TestSupport::SpecializationCommand;
using TestSupport::ToolRun;

namespace {

class RefusedSpecialization : public SpecializationCommand
{
protected:
    RefusedSpecialization()
    {
        writeFilter(aRichFilter());
        directory.write("a.png", aPng({4, 4}));
    }
    void expectRefused(const ToolRun& run, const std::string& message,
                       const std::string& out = {}) const
    {
        EXPECT_EQ(run.exitCode, 1) << run;
        EXPECT_EQ(run.signal, 0);
        EXPECT_EQ(run.out, out);
        EXPECT_EQ(run.err, message);
    }
};

TEST_F(RefusedSpecialization, WithoutAnInput)
{
    expectRefused(specialize({}), "Error! No input specified\n");
    expectRefused(specialize({"--hide-parameters"}), "Error! No input specified\n");
    EXPECT_EQ(directory.files(), "a.png f.obl");
}

TEST_F(RefusedSpecialization, OfAMissingFilter)
{
    expectRefused(specialize({"gone.obl"}),
                  "Cannot load: gone.obl\nError! Input file cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "a.png f.obl");
}

TEST_F(RefusedSpecialization, OfABrokenFilter)
{
    directory.write("g.obl", "<package>");

    expectRefused(specialize({"g.obl"}), "Cannot load: " + at("g.obl") +
                                             "\nError! Input file cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "a.png f.obl g.obl");
}

TEST_F(RefusedSpecialization, OfADirectory)
{
    directory.makeDirectory("g.obl");

    expectRefused(specialize({"g.obl"}), "Cannot load: " + at("g.obl") +
                                             "\nError! Input file cannot be correctly loaded\n");
}

TEST_F(RefusedSpecialization, OfAFilterWithoutItsDependencies)
{
    directory.write("g.obl", aPackage().dependingOn("gone.obl", 7).text());

    expectRefused(specialize({"g.obl"}), "Cannot load dependency: " + at("gone.obl") +
                                             "\nError! Input file cannot be correctly loaded\n");
}

TEST_F(RefusedSpecialization, OfAPackageWithoutAGraph)
{
    directory.write("g.obl", aPackage().containing(aGroup("planks")).text());

    expectRefused(specialize({"g.obl"}), "Error! No graph found into the input file\n");
    EXPECT_EQ(directory.files(), "a.png f.obl g.obl");
}

TEST_F(RefusedSpecialization, TellsThePresetsFirst)
{
    expectRefused(specialize({"gone.obl", "--presets-path", "p"}),
                  "Cannot load: gone.obl\nError! Input file cannot be correctly loaded\n",
                  "Presets Path added: " + at("p") + "\n");
}

TEST_F(RefusedSpecialization, OfAnUnknownInput)
{
    expectRefused(specialize({"f.obl", "--connect-input", "in", "--connect-input", "none"}),
                  "Error! Input name not found: none\n");
    EXPECT_EQ(directory.files(), "a.png f.obl");
}

struct RefusedInput
{
    const char* name;
    const char* input;
};

class RefusedInputName : public RefusedSpecialization,
                         public testing::WithParamInterface<RefusedInput>
{};

TEST_P(RefusedInputName, LeadsToNoConnector)
{
    const std::string name = GetParam().input;

    expectRefused(specialize({"f.obl", "--connect-input", name}),
                  "Error! Input name not found: " + name + "\n");
    expectRefused(specialize({"f.obl", "--connect-image", name + "@path@a.png"}),
                  "Error! Input name not found\n");
    EXPECT_EQ(directory.files(), "a.png f.obl");
}

INSTANTIATE_TEST_SUITE_P(
    Names, RefusedInputName,
    testing::Values(RefusedInput{"OfAValue", "gap"}, RefusedInput{"OfAnOutput", "color"},
                    RefusedInput{"OfAnotherCase", "In"}, RefusedInput{"Beginning", "i"},
                    RefusedInput{"WithABlank", "in "}, RefusedInput{"Empty", ""}),
    caseName<RefusedInput>);

struct RefusedImage
{
    const char* name;
    const char* option;
    const char* message;
};

class RefusedImageOption : public RefusedSpecialization,
                           public testing::WithParamInterface<RefusedImage>
{};

TEST_P(RefusedImageOption, IsTold)
{
    const ToolRun run = specialize({"f.obl", "--connect-image", GetParam().option});

    expectRefused(run, std::string(GetParam().message) + "\n");
    EXPECT_EQ(directory.files(), "a.png f.obl");
}

INSTANTIATE_TEST_SUITE_P(
    CountOfParts, RefusedImageOption,
    testing::Values(RefusedImage{"Empty", "", "Error! Invalid connect-image parameters"},
                    RefusedImage{"One", "in", "Error! Invalid connect-image parameters"},
                    RefusedImage{"Two", "in@path", "Error! Invalid connect-image parameters"},
                    RefusedImage{"Four", "in@path@a.png@format",
                                 "Error! Invalid connect-image parameters"},
                    RefusedImage{"FourOfWhichOneIsUnknown", "in@colour@x@y",
                                 "Error! Invalid connect-image parameters"},
                    RefusedImage{"SeparatorInThePath", "in@path@a@b.png",
                                 "Error! Invalid connect-image parameters"}),
    caseName<RefusedImage>);

INSTANTIATE_TEST_SUITE_P(
    Parameters, RefusedImageOption,
    testing::Values(RefusedImage{"Unknown", "in@colour@x",
                                 "Error! Invalid connect-image parameter: colour"},
                    RefusedImage{"OfAnotherCase", "in@Path@a.png",
                                 "Error! Invalid connect-image parameter: Path"},
                    RefusedImage{"Empty", "in@@x", "Error! Invalid connect-image parameter: "},
                    RefusedImage{"WithABlank", "in@path @a.png",
                                 "Error! Invalid connect-image parameter: path "},
                    RefusedImage{"BehindAKnownOne", "in@path@a.png@quality@1",
                                 "Error! Invalid connect-image parameter: quality"}),
    caseName<RefusedImage>);

INSTANTIATE_TEST_SUITE_P(
    Values, RefusedImageOption,
    testing::Values(RefusedImage{"MissingFile", "in@path@none/b.png",
                                 "Error! Image cannot be loaded: none/b.png"},
                    RefusedImage{"UnknownFormat", "in@path@a.png@format@PNG",
                                 "Error!Cooked image format unknown."},
                    RefusedImage{"FormatOfAnotherCase", "in@path@a.png@format@jpeg",
                                 "Error!Cooked image format unknown."},
                    RefusedImage{"MissingFileOfAnUnknownFormat", "in@path@b.png@format@PNG",
                                 "Error! Image cannot be loaded: b.png"},
                    RefusedImage{"UnknownFormatOfAnUnknownInput", "none@path@a.png@format@PNG",
                                 "Error!Cooked image format unknown."},
                    RefusedImage{"UnknownInput", "none@path@a.png", "Error! Input name not found"},
                    RefusedImage{"NoImage", "none@path@f.obl", "Error! Input name not found"}),
    caseName<RefusedImage>);

TEST_F(RefusedSpecialization, ReadsAllImageOptionsBeforeAnyImage)
{
    expectRefused(specialize({"f.obl", "--connect-image", "in@path@gone.png", "--connect-image",
                              "mask@colour@x"}),
                  "Error! Invalid connect-image parameter: colour\n");
}

TEST_F(RefusedSpecialization, ConnectsImagesBeforeInputs)
{
    expectRefused(
        specialize({"f.obl", "--connect-input", "none", "--connect-image", "in@path@gone.png"}),
        "Error! Image cannot be loaded: gone.png\n");
}

// A skipped image is no failure, but does not hide one.
TEST_F(RefusedSpecialization, TakesImagesInTheOrderOfTheirInputs)
{
    expectRefused(specialize({"f.obl", "--connect-image", "mask@path@gone.png", "--connect-image",
                              "in@format@PNG"}),
                  "Image \"in\" has not a file path specified\n"
                  "Error! Image cannot be loaded: gone.png\n");
}

TEST_F(RefusedSpecialization, IntoADirectoryThatIsNotThere)
{
    expectRefused(specialize({"f.obl", "--output-path", "none"}),
                  "Error! Cannot saved: " + at("none/f_specialized.obl") + "\n");
    EXPECT_EQ(directory.files(), "a.png f.obl");
}

TEST_F(RefusedSpecialization, IntoAFileForADirectory)
{
    expectRefused(specialize({"f.obl", "--output-path", "a.png"}),
                  "Error! Cannot saved: " + at("a.png/f_specialized.obl") + "\n");
}

TEST_F(RefusedSpecialization, IntoADirectoryOfThatName)
{
    directory.makeDirectory("f_specialized.obl");

    expectRefused(specialize({"f.obl"}), "Error! Cannot saved: " + at("f_specialized.obl") + "\n");
}

// The new package would refer to the very file that it takes the place of.
TEST_F(RefusedSpecialization, InThePlaceOfTheFilter)
{
    const std::string filter = directory.read("f.obl");

    expectRefused(specialize({"f.obl", "--output-name", "{inputName}"}),
                  "Error! Cannot saved: " + at("f.obl") + "\n");
    EXPECT_EQ(directory.read("f.obl"), filter);
}

TEST_F(RefusedSpecialization, InThePlaceOfTheFilterBehindALink)
{
    const std::string filter = directory.read("f.obl");
    directory.makeLink("f_specialized.obl", "f.obl");

    expectRefused(specialize({"f.obl"}), "Error! Cannot saved: " + at("f_specialized.obl") + "\n");
    EXPECT_EQ(directory.read("f.obl"), filter);
}

TEST_F(RefusedSpecialization, InThePlaceOfWhatTheFilterDependsOn)
{
    const std::string other = aPackage().named("other").text();
    directory.write("g.obl",
                    aPackage().dependingOn("sub/h.obl", 7).containing(aFilter().text()).text());
    directory.write("sub/h.obl", other);

    expectRefused(specialize({"g.obl", "--output-path", "sub", "--output-name", "h"}),
                  "Error! Cannot saved: " + at("sub/h.obl") + "\n");
    EXPECT_EQ(directory.read("sub/h.obl"), other);
}

TEST_F(RefusedSpecialization, InThePlaceOfAConnectedPicture)
{
    const std::string picture = directory.read("a.png");
    directory.write("f_specialized.obl", picture);

    expectRefused(specialize({"f.obl", "--connect-image", "in@path@f_specialized.obl"}),
                  "Error! Cannot saved: " + at("f_specialized.obl") + "\n");
    EXPECT_EQ(directory.read("f_specialized.obl"), picture);
}

TEST_F(RefusedSpecialization, InThePlaceOfAConnectedPictureUnderAnotherName)
{
    const std::string picture = directory.read("a.png");
    std::filesystem::create_hard_link(at("a.png"), at("f_specialized.obl"));

    expectRefused(specialize({"f.obl", "--connect-image", "in@path@a.png"}),
                  "Error! Cannot saved: " + at("f_specialized.obl") + "\n");
    EXPECT_EQ(directory.read("a.png"), picture);
}

TEST_F(RefusedSpecialization, InThePlaceOfTheFilterUnderAnotherName)
{
    const std::string filter = directory.read("f.obl");
    std::filesystem::create_hard_link(at("f.obl"), at("f_specialized.obl"));

    expectRefused(specialize({"f.obl"}), "Error! Cannot saved: " + at("f_specialized.obl") + "\n");
    EXPECT_EQ(directory.read("f.obl"), filter);
}

TEST_F(RefusedSpecialization, LeavesAFormerResult)
{
    directory.write("f_specialized.obl", "former");

    expectRefused(specialize({"f.obl", "--connect-input", "none"}),
                  "Error! Input name not found: none\n");
    EXPECT_EQ(directory.read("f_specialized.obl"), "former");
}

TEST_F(RefusedSpecialization, LeavesThePackageThatItWasToBeMergedWith)
{
    const std::string former = aPackage().named("mine").text();
    directory.write("f_specialized.obl", former);

    expectRefused(specialize({"f.obl", "--output-merge", "--connect-image", "in@path@a.png",
                              "--connect-input", "none"}),
                  "Error! Input name not found: none\n");
    EXPECT_EQ(directory.read("f_specialized.obl"), former);
    EXPECT_EQ(directory.files(), "a.png f.obl f_specialized.obl");
}

struct ParsedCase
{
    const char* name;
    Arguments arguments;
    const char* message;
};

class RefusedArguments : public RefusedSpecialization,
                         public testing::WithParamInterface<ParsedCase>
{};

TEST_P(RefusedArguments, AreTold)
{
    expectRefused(specialize(GetParam().arguments),
                  "Parsing Error: " + std::string(GetParam().message) + "\n\n");
    EXPECT_EQ(directory.files(), "a.png f.obl");
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedArguments,
    testing::Values(ParsedCase{"TwoInputs",
                               {"f.obl", "f.obl"},
                               "option '--input' cannot be specified more than once"},
                    ParsedCase{"TwoNames",
                               {"f.obl", "--output-name", "a", "--output-name", "b"},
                               "option '--output-name' cannot be specified more than once"},
                    ParsedCase{"Unknown", {"f.obl", "--none"}, "unrecognised option '--none'"},
                    ParsedCase{"NoImage",
                               {"f.obl", "--connect-image"},
                               "the required argument for option '--connect-image' is missing"},
                    ParsedCase{"ValueOfASwitch",
                               {"f.obl", "--hide-parameters=1"},
                               "option '--hide-parameters' does not take any arguments"}),
    caseName<ParsedCase>);

} // namespace

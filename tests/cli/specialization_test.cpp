// The command "specialization": the graph that it makes of a filter, the file that it writes, and
// what it prints.
#include "support/filtertext.h"
#include "support/golden.h"
#include "support/packagechecker.h"
#include "support/packagedom.h"
#include "support/packagetext.h"
#include "support/sampleimages.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <regex>

using TestSupport::aBmp;
using TestSupport::aColorInput;
using TestSupport::aFloatInput;
using TestSupport::aGrayscaleInput;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aPng;
using TestSupport::aResource;
using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::countAt;
using TestSupport::dependencyUidIn;
using TestSupport::elementsText;
using TestSupport::expectGolden;
using TestSupport::expectWhole;
using TestSupport::FilterText;
using TestSupport::InputText;
using TestSupport::OutputText;
using TestSupport::runTool;
using TestSupport::TemporaryDirectory;
using TestSupport::textsAt;
using TestSupport::ToolRun;
using TestSupport::withUidsNumbered;

namespace {

const std::string Nodes = "content/graph/compNodes/compNode/";
const std::string Instance = Nodes + "compImplementation/compInstance/";

// A filter in "f.obl" becomes a package in "f_specialized.obl".
class SpecializationCommand : public testing::Test
{
protected:
    ToolRun specialize(const Arguments& arguments) const
    {
        return specializeIn(directory.path(), arguments);
    }
    static ToolRun specializeIn(const std::string& where, Arguments arguments)
    {
        arguments.insert(arguments.begin(), "specialization");
        return runTool(where, arguments);
    }
    std::string at(const std::string& name) const { return directory.path(name); }
    void writeFilter(const FilterText& filter, const std::string& name = "f.obl") const
    {
        directory.write(name, aPackage().named("wood").containing(filter.text()).text());
    }
    void expectSaved(const ToolRun& run, const std::string& name = "f_specialized.obl") const
    {
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_EQ(run.out, "Package Saved: " + at(name) + "\n");
        EXPECT_EQ(run.err, "");
    }
    // What it writes of a filter.
    std::string specialized(const FilterText& filter, Arguments arguments = {}) const
    {
        writeFilter(filter);
        arguments.insert(arguments.begin(), "f.obl");
        expectSaved(specialize(arguments));
        expectWhole(at("f_specialized.obl"));
        return directory.read("f_specialized.obl");
    }

    TemporaryDirectory directory;
};

FilterText aFilter(const std::string& identifier = "planks")
{
    return FilterText(identifier);
}

// A filter with one of all that the command goes by.
FilterText aRichFilter()
{
    return aFilter()
        .taking(aColorInput("in"))
        .taking(aGrayscaleInput("mask"))
        .taking(aFloatInput("gap").labelled("Gap").inGroup("Planks").withOption("min", "0"))
        .taking(InputText("count", 16).byDefault("Int1", "7"))
        .giving(OutputText("color").usedAs("diffuse", "RGB").ofFormat(3))
        .giving(OutputText("height").usedAs("height", "R").withMipmaps(11));
}

TEST_F(SpecializationCommand, MakesAGraphOfAFilter)
{
    directory.write("oak.bmp", aBmp({300, 200}));
    writeFilter(aRichFilter());

    const ToolRun run =
        specialize({"f.obl", "--connect-image", "in@path@oak.bmp@format@JPEG@level@0.5",
                    "--connect-input", "mask"});

    expectSaved(run);
    expectWhole(at("f_specialized.obl"));
    static const std::regex time("<lastModif v=\"[^\"]*\"/>");
    expectGolden("specialization/rich.obl",
                 std::regex_replace(withUidsNumbered(directory.read("f_specialized.obl")), time,
                                    "<lastModif v=\"time\"/>"));
}

TEST_F(SpecializationCommand, WritesToTheCurrentDirectoryAndNothingElse)
{
    writeFilter(aRichFilter());
    const std::string filter = directory.read("f.obl");

    const ToolRun run = specialize({"f.obl"});

    expectSaved(run);
    EXPECT_EQ(directory.files(), "f.obl f_specialized.obl");
    EXPECT_EQ(directory.read("f.obl"), filter);
}

TEST_F(SpecializationCommand, TakesTheFirstGraph)
{
    directory.write("f.obl",
                    aPackage()
                        .containing(aResource("r", "f.obl") + aGroup("g", aFilter("inner").text()) +
                                    aFilter("outer").text())
                        .text());

    expectSaved(specialize({"f.obl"}));

    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "inner");
    EXPECT_EQ(textsAt(written, Instance + "path/value").substr(0, 25), "pkg://g/inner?dependency=");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationCommand, FindsAFilterByAnyNameThatAPathCanHold)
{
    const std::string written = specialized(aFilter("\xc3\xb6ld planks & 50%").giving("out"));

    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "ld_planks___50%");
    EXPECT_EQ(textsAt(written, Instance + "outputBridgings/outputBridging/identifier"), "out");
}

TEST_F(SpecializationCommand, TheNewPackageHasTheNameOfTheFiltersAndAnIdentityOfItsOwn)
{
    const std::string first = specialized(aFilter());
    const std::string second = specialized(aFilter());

    EXPECT_EQ(textsAt(first, "identifier"), "wood");
    EXPECT_TRUE(std::regex_match(textsAt(first, "fileUID"), std::regex("\\{[0-9a-f-]{36}\\}")));
    EXPECT_NE(textsAt(first, "fileUID"), textsAt(second, "fileUID"));
    EXPECT_EQ(textsAt(first, "formatVersion") + textsAt(first, "updaterVersion"),
              "1.1.0.70491.1.0.7049");
}

TEST_F(SpecializationCommand, APackageWithoutANameGetsTheDefaultOne)
{
    directory.write("f.obl", aPackage().named("").containing(aFilter().text()).text());

    expectSaved(specialize({"f.obl"}));

    EXPECT_EQ(textsAt(directory.read("f_specialized.obl"), "identifier"),
              "DEFAULT_NEW_PACKAGE_IDENTIFIER");
}

// References

TEST_F(SpecializationCommand, DependsOnThePackageOfTheFilterAlone)
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

TEST_F(SpecializationCommand, NamesTheFilterRelativeToTheTarget)
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

TEST_F(SpecializationCommand, NamesAFilterOfThePresetsByTheirScheme)
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

TEST_F(SpecializationCommand, NamesAFilterOfThePresetsByItsPathAmongThem)
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

TEST_F(SpecializationCommand, FindsThePresetsThatTheFilterNeeds)
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

TEST_F(SpecializationCommand, ReplacesThePatternsInItsOptions)
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

TEST_F(SpecializationCommand, PatternsAreReplacedInTheOptionsThatHaveThem)
{
    writeFilter(aFilter());

    const ToolRun run =
        specialize({"f.obl", "--output-path", ".", "--output-name", "{inputPath}{inputGraph}",
                    "--output-graph-name", "{inputName}"});

    expectSaved(run, "{inputPath}{inputGraph}.obl");
    EXPECT_EQ(textsAt(directory.read("{inputPath}{inputGraph}.obl"), "content/graph/identifier"),
              "{inputName}");
}

TEST_F(SpecializationCommand, AnEmptyOutputNameIsToldAndIsAName)
{
    writeFilter(aFilter());

    const ToolRun run = specialize({"f.obl", "--output-name", ""});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Package Saved: " + at(".obl") + "\n");
    EXPECT_EQ(run.err, "Error! Output name empty\n");
    EXPECT_EQ(directory.files(), ".obl f.obl");
    expectWhole(at(".obl"));
}

TEST_F(SpecializationCommand, AFilterWithoutABaseNameGivesAnEmptyOne)
{
    writeFilter(aFilter(), "in/.obl");

    const ToolRun run = specialize({"in/.obl", "--output-name", "{inputName}"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Package Saved: " + at(".obl") + "\n");
    EXPECT_EQ(run.err, "Error! Output name empty\n");
}

TEST_F(SpecializationCommand, ANameMayHoldADirectory)
{
    writeFilter(aFilter());
    directory.makeDirectory("sub");

    expectSaved(specialize({"f.obl", "--output-name", "sub/x"}), "sub/x.obl");

    EXPECT_EQ(textsAt(directory.read("sub/x.obl"), "dependencies/dependency/filename"), "../f.obl");
}

TEST_F(SpecializationCommand, PathsMayBeAbsolute)
{
    writeFilter(aFilter(), "in/f.obl");
    directory.makeDirectory("out");
    const std::string elsewhere = directory.makeDirectory("elsewhere");

    const ToolRun run = specializeIn(elsewhere, {at("in/f.obl"), "--output-path", at("out") + "/"});

    expectSaved(run, "out/f_specialized.obl");
    EXPECT_EQ(directory.files(), "in/f.obl out/f_specialized.obl");
    expectWhole(at("out/f_specialized.obl"));
}

TEST_F(SpecializationCommand, RelativePathsBeginAtTheCurrentDirectory)
{
    writeFilter(aFilter(), "in/f.obl");
    const std::string elsewhere = directory.makeDirectory("elsewhere");
    directory.makeDirectory("out");

    const ToolRun run = specializeIn(elsewhere, {"../in/./f.obl", "--output-path", "../out"});

    expectSaved(run, "out/f_specialized.obl");
    EXPECT_EQ(textsAt(directory.read("out/f_specialized.obl"), "dependencies/dependency/filename"),
              "../in/f.obl");
}

TEST_F(SpecializationCommand, TheInputMayBeGivenAsAnOption)
{
    writeFilter(aFilter());

    expectSaved(specialize({"--input", "f.obl"}));
}

TEST_F(SpecializationCommand, NamesOfFilesAreBytes)
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

// Outputs

TEST_F(SpecializationCommand, EachOutputGetsANodeInAColumn)
{
    const std::string written =
        specialized(aFilter().giving("a").giving("b").giving("c").giving("d"));

    EXPECT_EQ(textsAt(written, "content/graph/graphOutputs/graphoutput/identifier"), "a b c d");
    EXPECT_EQ(textsAt(written, Instance + "outputBridgings/outputBridging/identifier"), "a b c d");
    EXPECT_EQ(textsAt(written, Nodes + "GUILayout/gpos"), "156 0 0 156 128 0 156 256 0 156 384 0");
    EXPECT_EQ(textsAt(written, Nodes + "connexions/connexion/connRefOutput/value"),
              textsAt(written, Nodes + "compOutputs/compOutput/uid"));
    EXPECT_EQ(textsAt(written, Nodes + "compImplementation/compOutputBridge/output"),
              textsAt(written, "content/graph/graphOutputs/graphoutput/uid"));
}

TEST_F(SpecializationCommand, OutputsKeepTheirUsages)
{
    const std::string written = specialized(aFilter()
                                                .giving(OutputText("a")
                                                            .usedAs("diffuse", "RGB")
                                                            .usedAs("opacity", "A")
                                                            .usedAs("my own", "RGBA"))
                                                .giving("b"));

    EXPECT_EQ(textsAt(written, "content/graph/graphOutputs/graphoutput/usages/usage/name"),
              "diffuse opacity my own");
    EXPECT_EQ(textsAt(written, "content/graph/graphOutputs/graphoutput/usages/usage/components"),
              "RGB A RGBA");
}

TEST_F(SpecializationCommand, OutputsKeepTheirFormatsAndMipmaps)
{
    const std::string written =
        specialized(aFilter()
                        .giving(OutputText("a").ofFormat(3))
                        .giving(OutputText("b").withMipmaps(11))
                        .giving(OutputText("c").withoutRoot())
                        .giving(OutputText("d").ofFormat(1).withMipmaps(2)));

    const std::string roots = "content/graph/root/rootOutputs/rootOutput/";
    EXPECT_EQ(textsAt(written, roots + "format/value"), "3 0 0 1");
    EXPECT_EQ(textsAt(written, roots + "mipmaps/value"), "11 2");
    EXPECT_EQ(textsAt(written, roots + "output"),
              textsAt(written, "content/graph/graphOutputs/graphoutput/uid"));
}

TEST_F(SpecializationCommand, OutputsOfOneNameGetNamesOfTheirOwn)
{
    const std::string written = specialized(aFilter()
                                                .giving(OutputText("out").usedAs("diffuse", "RGB"))
                                                .giving(OutputText("out").usedAs("height", "R"))
                                                .giving("out_1"));

    EXPECT_EQ(textsAt(written, "content/graph/graphOutputs/graphoutput/identifier"),
              "out out_1 out_2");
    EXPECT_EQ(textsAt(written, Nodes + "connexions/connexion/connRefOutput/value"),
              textsAt(written, Nodes + "compOutputs/compOutput/uid"));
}

TEST_F(SpecializationCommand, OutputsGetLegalNames)
{
    const std::string written =
        specialized(aFilter().giving("my out").giving("my_out").giving("").giving(" / "));

    EXPECT_EQ(textsAt(written, "content/graph/graphOutputs/graphoutput/identifier"),
              "my_out my_out_1 DEFAULT_OUTPUT_IDENTIFIER DEFAULT_OUTPUT_IDENTIFIER_1");
}

TEST_F(SpecializationCommand, AFilterMayGiveNothing)
{
    const std::string written = specialized(aFilter().taking(aFloatInput("gap")));

    EXPECT_EQ(countAt(written, "content/graph/compNodes/compNode"), 1);
    EXPECT_EQ(countAt(written, Instance + "outputBridgings/outputBridging"), 0);
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"), "gap");
}

TEST_F(SpecializationCommand, AFilterMayBeEmpty)
{
    const std::string written = specialized(aFilter());

    EXPECT_EQ(countAt(written, "content/graph/compNodes/compNode"), 1);
    EXPECT_EQ(countAt(written, "content/graph/paraminputs/paraminput"), 0);
    EXPECT_EQ(countAt(written, "content/graph/graphOutputs/graphoutput"), 0);
}

// Values that the filter takes

// The inputs of a graph without their uids.
std::string inputsOf(const std::string& document)
{
    static const std::regex uid("<uid v=\"\\d+\"/>");
    return std::regex_replace(elementsText(document, "content/graph/paraminputs"), uid, "");
}

TEST_F(SpecializationCommand, ExposedInputsAreThoseOfTheFilter)
{
    const FilterText filter =
        aFilter()
            .taking(aFloatInput("gap")
                        .labelled("Gr\xc3\xb6\xc3\x9f"
                                  "e \"1\" & <2>")
                        .described("Between\n\tplanks.")
                        .inGroup("Planks")
                        .withOption("min", "0")
                        .withOption("max", "1")
                        .withOption("label0", "Narrow")
                        .withOption("clamp", "1")
                        .withOption("min", "2"))
            .taking(InputText("count", 16)
                        .byDefault("Int1", "-7")
                        .inGroup("Other")
                        .editedBy("dropdownlist")
                        .withOption("parameters", "0;none | -7;few | 12;many, or more"))
            .taking(InputText("seed", 16))
            .taking(InputText("nails", 4).byDefault("Bool", "1").editedBy("togglebutton"))
            .taking(InputText("colour", 2048).byDefault("Float4", "1 0.5 0.25 0").inGroup("Planks"))
            .taking(InputText("place", 512).byDefault("Float2", "0.1 -2"))
            .taking(InputText("light", 1024).byDefault("Float3", "1 2 3"))
            .taking(InputText("size", 32).byDefault("Int2", "8 9").editedBy("power2"))
            .taking(InputText("box", 64).byDefault("Int3", "1 2 3"))
            .taking(InputText("frame", 128).byDefault("Int4", "1 2 3 4"))
            .taking(InputText("name", 32768).byDefault("String", "oak & elm").editedBy("text"));

    const std::string written = specialized(filter);

    EXPECT_EQ(inputsOf(written), inputsOf(directory.read("f.obl")));
}

TEST_F(SpecializationCommand, ExposedInputsStandInTheOrderOfTheFilters)
{
    const std::string written = specialized(aFilter()
                                                .taking(aFloatInput("z").inGroup("b"))
                                                .taking(aColorInput("image").inGroup("b"))
                                                .taking(aFloatInput("y"))
                                                .taking(aFloatInput("x").inGroup("b"))
                                                .taking(aFloatInput("w").inGroup("a")));

    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"), "z y x w");
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/group"), "b b a");
    EXPECT_EQ(textsAt(written, Instance + "parameters/parameter/name"), "z y x w");
}

struct TypeCase
{
    const char* name;
    unsigned type;
    const char* getter; // empty if the value is not bound
};

class ExposedInput : public SpecializationCommand, public testing::WithParamInterface<TypeCase>
{};

TEST_P(ExposedInput, IsReadByTheInstance)
{
    const std::string written = specialized(aFilter().taking(InputText("value", GetParam().type)));

    const std::string parameter = Instance + "parameters/parameter/";
    const std::string node = parameter + "paramValue/dynamicValue/paramNodes/paramNode/";
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/type/value"),
              std::to_string(GetParam().type));
    EXPECT_EQ(textsAt(written, parameter + "name"), "value");
    EXPECT_EQ(textsAt(written, node + "function"), GetParam().getter);
    EXPECT_EQ(textsAt(written, node + "funcDatas/funcData/name"), "datacontent");
    EXPECT_EQ(textsAt(written, node + "funcDatas/funcData/constantValue/constantValueString/value"),
              "value");
    EXPECT_EQ(textsAt(written, parameter + "paramValue/dynamicValue/rootnode/value"),
              textsAt(written, node + "uid"));
}

INSTANTIATE_TEST_SUITE_P(
    Types, ExposedInput,
    testing::Values(TypeCase{"Bool", 4, "get_bool"}, TypeCase{"Int1", 16, "get_integer1"},
                    TypeCase{"Int2", 32, "get_integer2"}, TypeCase{"Int3", 64, "get_integer3"},
                    TypeCase{"Int4", 128, "get_integer4"}, TypeCase{"Float1", 256, "get_float1"},
                    TypeCase{"Float2", 512, "get_float2"}, TypeCase{"Float3", 1024, "get_float3"},
                    TypeCase{"Float4", 2048, "get_float4"}),
    caseName<TypeCase>);

class UnboundInput : public SpecializationCommand, public testing::WithParamInterface<TypeCase>
{};

TEST_P(UnboundInput, IsExposedAllTheSame)
{
    const std::string written = specialized(aFilter().taking(InputText("value", GetParam().type)));

    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"), "value");
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/type/value"),
              std::to_string(GetParam().type));
    EXPECT_EQ(countAt(written, Instance + "parameters/parameter"), 0);
}

INSTANTIATE_TEST_SUITE_P(Types, UnboundInput,
                         testing::Values(TypeCase{"Text", 32768, ""},
                                         TypeCase{"OtherText", 16384, ""},
                                         TypeCase{"Entries", 4096, ""}, TypeCase{"Unknown", 8, ""}),
                         caseName<TypeCase>);

class HiddenInput : public SpecializationCommand, public testing::WithParamInterface<TypeCase>
{};

TEST_P(HiddenInput, IsNotExposed)
{
    const std::string written = specialized(aFilter().taking(InputText("value", GetParam().type)));

    EXPECT_EQ(countAt(written, "content/graph/paraminputs/paraminput"), 0);
    EXPECT_EQ(countAt(written, Instance + "parameters/parameter"), 0);
}

INSTANTIATE_TEST_SUITE_P(Types, HiddenInput,
                         testing::Values(TypeCase{"None", 0, ""}, TypeCase{"Color", 1, ""},
                                         TypeCase{"Grayscale", 2, ""}, TypeCase{"Either", 3, ""}),
                         caseName<TypeCase>);

TEST_F(SpecializationCommand, ExposedInputsGetLegalNames)
{
    const std::string written = specialized(aFilter()
                                                .taking(aFloatInput("my gap"))
                                                .taking(aFloatInput("my_gap"))
                                                .taking(aFloatInput("$gap"))
                                                .taking(aFloatInput("?")));

    const std::string node =
        Instance + "parameters/parameter/paramValue/dynamicValue/paramNodes/paramNode/";
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"),
              "my_gap my_gap_1 gap DEFAULT_INPUT_IDENTIFIER");
    EXPECT_EQ(textsAt(written, Instance + "parameters/parameter/name"), "my gap my_gap $gap ?");
    EXPECT_EQ(textsAt(written, node + "funcDatas/funcData/constantValue/constantValueString/value"),
              "my_gap my_gap_1 gap DEFAULT_INPUT_IDENTIFIER");
}

TEST_F(SpecializationCommand, HidesParametersOnDemand)
{
    const std::string written = specialized(aRichFilter(), {"--hide-parameters"});

    EXPECT_EQ(countAt(written, "content/graph/paraminputs/paraminput"), 0);
    EXPECT_EQ(countAt(written, Instance + "parameters/parameter"), 0);
    EXPECT_EQ(textsAt(written, "content/graph/graphOutputs/graphoutput/identifier"),
              "color height");
}

TEST_F(SpecializationCommand, HidesParametersAndNotImages)
{
    const std::string written =
        specialized(aRichFilter(), {"--hide-parameters", "--connect-input", "in"});

    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"), "in");
}

// Images that the new graph takes

TEST_F(SpecializationCommand, ConnectsInputsInTheGivenOrder)
{
    const std::string written = specialized(
        aRichFilter(), {"--connect-input", "mask", "--connect-input", "in", "--hide-parameters"});

    const std::string connexions =
        "content/graph/compNodes/compNode/connexions/connexion/identifier";
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"), "mask in");
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/type/value"), "2 1");
    EXPECT_EQ(textsAt(written, Nodes + "GUILayout/gpos"), "156 0 0 156 128 0 -156 0 0 -156 128 0");
    EXPECT_EQ(textsAt(written, connexions), "mask in inputNodeOutput inputNodeOutput");
    EXPECT_EQ(textsAt(written, Nodes + "compImplementation/compInputBridge/entry"),
              textsAt(written, "content/graph/paraminputs/paraminput/uid"));
}

TEST_F(SpecializationCommand, InputsOfImagesStandBeforeThoseOfValues)
{
    const std::string written = specialized(aRichFilter(), {"--connect-input", "mask"});

    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"),
              "mask gap count");
}

TEST_F(SpecializationCommand, TheFirstInputOfAnImageIsThePrimaryOne)
{
    const std::string written = specialized(
        aRichFilter(), {"--connect-input", "mask", "--connect-input", "in", "--hide-parameters"});

    const std::string uids = textsAt(written, "content/graph/paraminputs/paraminput/uid");
    EXPECT_EQ(textsAt(written, "content/graph/primaryInput/value"), uids.substr(0, uids.find(' ')));
}

TEST_F(SpecializationCommand, AnImageOfEitherKindIsTakenAsAColouredOne)
{
    const std::string written =
        specialized(aFilter().taking(InputText("any", 3)), {"--connect-input", "any"});

    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/type/value"), "1");
}

// Both nodes stay, and the second one feeds the filter.
TEST_F(SpecializationCommand, TheSecondInputForAConnectorReplacesTheFirst)
{
    const std::string written = specialized(aFilter().taking(aColorInput("in")).giving("out"),
                                            {"--connect-input", "in", "--connect-input", "in"});

    const std::string nodes = textsAt(written, Nodes + "uid");
    EXPECT_EQ(textsAt(written, "content/graph/paraminputs/paraminput/identifier"), "in in_1");
    EXPECT_EQ(countAt(written, Nodes + "compImplementation/compInputBridge"), 2);
    EXPECT_EQ(textsAt(written, Nodes + "connexions/connexion/identifier"), "in inputNodeOutput");
    EXPECT_EQ(textsAt(written, Nodes + "connexions/connexion/connRef/value"),
              nodes.substr(nodes.rfind(' ') + 1) + " " + nodes.substr(0, nodes.find(' ')));
}

// Merging

TEST_F(SpecializationCommand, ReplacesAFormerResult)
{
    directory.write("f_specialized.obl", std::string(100000, 'x'));

    const std::string written = specialized(aFilter());

    EXPECT_EQ(countAt(written, "content/graph"), 1);
}

TEST_F(SpecializationCommand, MergesIntoAPackage)
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

TEST_F(SpecializationCommand, GivesTheGraphANameThatIsFreeInThePackage)
{
    directory.write("f_specialized.obl",
                    aPackage().containing(aGroup("planks") + aFilter("planks_1").text()).text());

    const std::string written = specialized(aFilter(), {"--output-merge"});

    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks_1 planks_2");
}

TEST_F(SpecializationCommand, MergesAgainAndAgain)
{
    specialized(aRichFilter(), {"--output-merge", "--connect-input", "in"});
    specialized(aRichFilter(), {"--output-merge"});

    const std::string written = specialized(aRichFilter(), {"--output-merge"});

    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks planks_1 planks_2");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl");
}

TEST_F(SpecializationCommand, MergesTwoFiltersIntoOnePackage)
{
    writeFilter(aFilter("bricks"), "sub/g.obl");

    specialized(aFilter());
    expectSaved(specialize({"sub/g.obl", "--output-merge", "--output-name", "f_specialized"}));

    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks bricks");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl sub/g.obl");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationCommand, MergesIntoAPackageThatTheFilterDependsOn)
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

TEST_F(SpecializationCommand, MergesIntoAnOldPackage)
{
    writeFilter(aFilter());
    std::filesystem::copy(KESTRIX_SOURCE_DIR "/examples/old/grain.obl", at("f_specialized.obl"));

    expectSaved(specialize({"f.obl", "--output-merge"}));

    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, "formatVersion"), "1.1.0.7049");
    EXPECT_EQ(textsAt(written, "content/*/graph/identifier"), "rings plank_grain planks");
    EXPECT_EQ(directory.files(), "f.obl f_specialized.obl");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(SpecializationCommand, MergesSilentlyWithNothing)
{
    const std::string written = specialized(aFilter(), {"--output-merge"});

    EXPECT_EQ(textsAt(written, "identifier"), "wood");
}

TEST_F(SpecializationCommand, WarnsOfATargetThatCannotBeOpenedAndOverwritesIt)
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

TEST_F(SpecializationCommand, WarnsOfATargetWithoutItsDependencies)
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

TEST_F(SpecializationCommand, MergesIntoTheFiltersOwnPackage)
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

TEST_F(SpecializationCommand, WritesThroughALink)
{
    writeFilter(aFilter());
    directory.write("else/real.obl", aPackage().named("mine").text());
    directory.makeLink("f_specialized.obl", "else/real.obl");

    expectSaved(specialize({"f.obl"}));

    EXPECT_TRUE(std::filesystem::is_symlink(at("f_specialized.obl")));
    EXPECT_EQ(textsAt(directory.read("else/real.obl"), "identifier"), "wood");
}

TEST_F(SpecializationCommand, MergesThroughALink)
{
    writeFilter(aFilter());
    directory.write("else/real.obl", aPackage().named("mine").text());
    directory.makeLink("f_specialized.obl", "else/real.obl");

    expectSaved(specialize({"f.obl", "--output-merge"}));

    EXPECT_TRUE(std::filesystem::is_symlink(at("f_specialized.obl")));
    EXPECT_EQ(textsAt(directory.read("else/real.obl"), "identifier"), "mine");
    EXPECT_EQ(textsAt(directory.read("else/real.obl"), "content/graph/identifier"), "planks");
}

TEST_F(SpecializationCommand, OpensAFilterBehindALink)
{
    writeFilter(aFilter(), "else/real.obl");
    directory.makeLink("f.obl", "else/real.obl");

    expectSaved(specialize({"f.obl"}));

    EXPECT_EQ(textsAt(directory.read("f_specialized.obl"), "dependencies/dependency/filename"),
              "else/real.obl");
    expectWhole(at("f_specialized.obl"));
}

// Failures: one line or two, and no file.

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

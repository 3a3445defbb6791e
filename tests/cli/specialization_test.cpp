// The command "specialization": the graph that it makes of a filter.
#include "support/golden.h"
#include "support/packagechecker.h"
#include "support/packagedom.h"
#include "support/packagetext.h"
#include "support/sampleimages.h"
#include "support/shelfcases.h"
#include "support/specialization.h"
#include <gtest/gtest.h>
#include <regex>

using TestSupport::aBmp;
using TestSupport::aColorInput;
using TestSupport::aFilter;
using TestSupport::aFloatInput;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::aRichFilter;
using TestSupport::caseName;
using TestSupport::countAt;
using TestSupport::elementsText;
using TestSupport::expectGolden;
using TestSupport::expectWhole;
using TestSupport::FilterText;
using TestSupport::InputText;
using TestSupport::Instance;
using TestSupport::Nodes;
using TestSupport::OutputText;
using TestSupport::SpecializationCommand;
using TestSupport::textsAt;
using TestSupport::ToolRun;
using TestSupport::withUidsNumbered;

namespace {

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
                    TypeCase{"Float4", 2048, "get_float4"},
                    TypeCase{"Float1OrGrayscaleImage", 258, "get_float1"},
                    TypeCase{"Float4OrColorImage", 2049, "get_float4"},
                    TypeCase{"Color", 2304, "get_float4"},
                    TypeCase{"ColorOrImage", 2307, "get_float4"}),
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

} // namespace

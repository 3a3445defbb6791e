// The command "graph-parameters-editor": what it does to the inputs of a graph, which file it
// writes, and what it prints.
#include "support/functiontext.h"
#include "support/packagechecker.h"
#include "support/packagetext.h"
#include "support/peakbound.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include "support/workspace.h"
#include <gtest/gtest.h>
#include <filesystem>

using namespace TestSupport;

namespace {

// An input whose widget has a range.
std::string anInputWithin(const std::string& identifier, unsigned type, const std::string& minimum,
                          const std::string& maximum)
{
    const auto option = [](const std::string& name, const std::string& value) {
        return "<option><name v=\"" + name + "\"/><value v=\"" + value + "\"/></option>";
    };
    return replaced(anInput(identifier, 20, type), "<options/>",
                    "<options>" + option("min", minimum) + option("max", maximum) + "</options>");
}

PackageText aGraphPackage(const std::string& inputs, const std::string& parameters = {})
{
    GraphText graph;
    graph.inputs = inputs;
    graph.parameters = parameters;
    return aPackage().containing(graph.text());
}

// A graph with an input "x" and that many instances of another graph, which has as many images.
PackageText instancesOfAGraphOfImages(unsigned many)
{
    GraphText graph;
    graph.inputs = anInput("x", 20, 256);
    GraphText shown;
    shown.identifier = "h";
    for (unsigned i = 0; i < many; ++i) {
        graph.nodes +=
            aNode(100 + i, "<compInstance><path><value v=\"pkg://h?dependency=9\"/></path>"
                           "<parameters/><outputBridgings/></compInstance>");
        shown.inputs += anInput("m" + std::to_string(i), 100 + i, 1);
    }
    return aPackage().dependingOnItself(9).containing(graph.text() + shown.text());
}

class InputEditorCommand : public testing::Test
{
protected:
    ToolRun edit(Arguments arguments) const
    {
        arguments.insert(arguments.begin(), "graph-parameters-editor");
        return runTool(directory.path(), arguments);
    }
    // Edits a package that is written to "a.obl" before.
    ToolRun edit(const PackageText& package, Arguments arguments) const
    {
        directory.write("a.obl", package.text());
        arguments.insert(arguments.begin(), "a.obl");
        return edit(arguments);
    }
    std::string written() const
    {
        expectWhole(at("a_edited.obl"), at("presets"));
        return directory.read("a_edited.obl");
    }
    std::string at(const std::string& name) const { return directory.path(name); }
    std::string savedAs(const std::string& name) const
    {
        return "Package Saved:\n    " + at(name) + "\n";
    }

    TemporaryDirectory directory;
};

void expectFailure(const ToolRun& run, const std::string& error)
{
    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "") << run;
    EXPECT_EQ(run.err, error) << run;
}

// Around the edits.

TEST_F(InputEditorCommand, WithoutEditsWritesThePackageAsItWas)
{
    const PackageText package =
        aGraphPackage(anInput("x", 11, 256, aConstant("Float1", "0.5")),
                      aParameter("p", "0", aDynamicValue(1, aGetter(1, "get_float1", 256, "x"))));
    const ToolRun run = edit(package, {});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, savedAs("a_edited.obl"));
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(written(), package.text());
}

TEST_F(InputEditorCommand, NeverChangesTheInput)
{
    const PackageText package = aGraphPackage(anInput("x", 11, 256));
    edit(package, {"--switch-to-constant", "x"});
    EXPECT_EQ(directory.read("a.obl"), package.text());
    EXPECT_EQ(directory.files(), "a.obl a_edited.obl");
}

TEST_F(InputEditorCommand, NeedsAnInput)
{
    expectFailure(edit({"--set-default-value", "x@1"}), "Error: No input specified !\n");
}

TEST_F(InputEditorCommand, TakesItsInputAsAnOptionToo)
{
    directory.write("a.obl", aGraphPackage({}).text());
    EXPECT_EQ(edit({"--input", "a.obl"}).exitCode, 0);
    EXPECT_EQ(directory.files(), "a.obl a_edited.obl");
}

TEST_F(InputEditorCommand, TellsOfAnInputThatCannotBeLoaded)
{
    expectFailure(edit({"none.obl"}), "Cannot load: none.obl\n"
                                      "input file cannot be correctly loaded\n");
}

TEST_F(InputEditorCommand, TellsOfADependencyThatCannotBeLoaded)
{
    const ToolRun run = edit(aGraphPackage({}).dependingOn("b.obl", 7), {});
    expectFailure(run, "Cannot load dependency: " + at("b.obl") +
                           "\ninput file cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(InputEditorCommand, NeedsAGraph)
{
    expectFailure(edit(aPackage().containing(aGroup("none")), {}),
                  "No Graph found into the input file\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(InputEditorCommand, WritesNoDependencies)
{
    directory.write("b.obl", aPackage().text());
    const ToolRun run = edit(aGraphPackage({}).dependingOn("b.obl", 7), {});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.files(), "a.obl a_edited.obl b.obl");
}

TEST_F(InputEditorCommand, TellsOfThePresetsFirst)
{
    directory.makeDirectory("presets");
    const ToolRun run = edit(aGraphPackage({}), {"--presets-path", "presets"});
    EXPECT_EQ(run.out, "Presets Path added: " + at("presets") + "\n" + savedAs("a_edited.obl"));
}

TEST_F(InputEditorCommand, FindsDependenciesAmongThePresets)
{
    directory.write("presets/b.obl", aPackage().text());
    const PackageText package = aGraphPackage({}).dependingOn("obl://b.obl", 7);
    const ToolRun run = edit(package, {"--presets-path", "presets"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(withDependencyUidsHidden(written()), withDependencyUidsHidden(package.text()));
}

TEST_F(InputEditorCommand, EditsTheFirstGraphInTheOrderOfTheDocument)
{
    const auto graph = [](const std::string& identifier) {
        return GraphText{identifier, 4, anInput("x", 11, 256)}.text();
    };
    const ToolRun run =
        edit(aPackage().containing(aGroup("group", graph("inner"))).containing(graph("outer")),
             {"--switch-to-constant", "x"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aPackage()
                             .containing(aGroup("group", GraphText{"inner", 4}.text()))
                             .containing(graph("outer"))
                             .text());
}

TEST_F(InputEditorCommand, ReplacesThePatternOfTheName)
{
    edit(aGraphPackage({}), {"--output-name", "{inputName}-{inputName}{inputPath}.obl"});
    EXPECT_EQ(directory.files(), "a-a{inputPath}.obl.obl a.obl");
}

TEST_F(InputEditorCommand, ThePatternOfThePathIsTheDirectoryOfTheFileItself)
{
    directory.write("real/a.obl", aGraphPackage({}).text());
    directory.makeLink("link.obl", "real/a.obl");
    const ToolRun run = edit({"link.obl", "--output-path", "{inputPath}"});
    EXPECT_EQ(run.out, savedAs("real/a_edited.obl"));
    EXPECT_EQ(directory.files(), "link.obl real/a.obl real/a_edited.obl");
}

// The result would depend on the very file that it takes the place of.
class InputEditorInThePlaceOfADependency : public InputEditorCommand
{
protected:
    InputEditorInThePlaceOfADependency()
    {
        directory.write("d.obl", aPackage().dependingOn("e.obl", 8).text());
        directory.write("e.obl", aPackage().named("e").text());
    }
    void expectRefusedAt(const std::string& name) const
    {
        const std::string d = directory.read("d.obl");
        const std::string e = directory.read("e.obl");
        const ToolRun run =
            edit(aGraphPackage({}).dependingOn("d.obl", 7), {"--output-name", name});
        EXPECT_EQ(run.exitCode, 1) << run;
        EXPECT_EQ(run.err, "Error! Cannot saved: " + at(name + ".obl") + "\n");
        EXPECT_EQ(directory.read("d.obl"), d);
        EXPECT_EQ(directory.read("e.obl"), e);
    }
};

TEST_F(InputEditorInThePlaceOfADependency, IsRefused)
{
    expectRefusedAt("d");
}

TEST_F(InputEditorInThePlaceOfADependency, IsRefusedForOneOfADependency)
{
    expectRefusedAt("e");
}

TEST_F(InputEditorInThePlaceOfADependency, IsRefusedBehindASymbolicLink)
{
    directory.makeLink("link.obl", "d.obl");
    expectRefusedAt("link");
}

TEST_F(InputEditorInThePlaceOfADependency, IsRefusedUnderAnotherNameOfTheFile)
{
    std::filesystem::create_hard_link(at("d.obl"), at("hard.obl"));
    expectRefusedAt("hard");
}

TEST_F(InputEditorCommand, TakesThePlaceOfItsInput)
{
    const ToolRun run =
        edit(aGraphPackage({}).dependingOn("a.obl", 7), {"--output-name", "{inputName}"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a.obl"), aGraphPackage({}).text());
}

TEST_F(InputEditorCommand, WritesToTheCurrentDirectoryByDefault)
{
    directory.write("in/a.obl", aGraphPackage({}).text());
    EXPECT_EQ(edit({"in/a.obl"}).out, savedAs("a_edited.obl"));
}

TEST_F(InputEditorCommand, MayReplaceItsInput)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, 256)),
                             {"--output-name", "{inputName}", "--switch-to-constant", "x"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a.obl"), aGraphPackage({}).text());
}

TEST_F(InputEditorCommand, AnEmptyNameIsAFailureBehindTheAnnouncement)
{
    const ToolRun run = edit(aGraphPackage({}), {"--output-name", ""});
    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "Package Saved:\n");
    EXPECT_EQ(run.err, "Error! Output name empty\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(InputEditorCommand, TellsOfAFileThatCannotBeWritten)
{
    const ToolRun run = edit(aGraphPackage({}), {"--output-path", "none"});
    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "Package Saved:\n");
    EXPECT_EQ(run.err, "Error! Cannot saved: " + at("none/a_edited.obl") + "\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

// Default values.

struct ValueCase
{
    const char* name;
    unsigned type;
    const char* text;
    const char* kind; // of the constant
    const char* value;
};
std::ostream& operator<<(std::ostream& stream, const ValueCase& c)
{
    return stream << c.name;
}

class DefaultValue : public InputEditorCommand, public testing::WithParamInterface<ValueCase>
{};

TEST_P(DefaultValue, IsWritten)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, GetParam().type)),
                             {"--set-default-value", std::string("x@") + GetParam().text});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(written(), aGraphPackage(anInput("x", 11, GetParam().type,
                                               aConstant(GetParam().kind, GetParam().value)))
                             .text());
}

INSTANTIATE_TEST_SUITE_P(
    Types, DefaultValue,
    testing::Values(ValueCase{"True", 4, "1", "Bool", "1"},
                    ValueCase{"AnyNumberIsTrue", 4, "17", "Bool", "1"},
                    ValueCase{"False", 4, "0", "Bool", "0"},
                    ValueCase{"Int1", 16, "-5", "Int1", "-5"},
                    ValueCase{"TheGreatestInteger", 16, "2147483647", "Int1", "2147483647"},
                    ValueCase{"TheLeastInteger", 16, "-2147483648", "Int1", "-2147483648"},
                    ValueCase{"Int2", 32, "1,-2", "Int2", "1 -2"},
                    ValueCase{"Int3", 64, "1,2,3", "Int3", "1 2 3"},
                    ValueCase{"Int4", 128, "1,2,3,4", "Int4", "1 2 3 4"},
                    ValueCase{"AnyInteger", 240, "4294967295", "Int32", "4294967295"},
                    ValueCase{"Float1", 256, "-0.25", "Float1", "-0.25"},
                    ValueCase{"AnExponent", 256, "1e3", "Float1", "1000"},
                    ValueCase{"TheGreatestFloatAsItIsOftenWritten", 256, "3.4028235e38", "Float1",
                              "3.40282e+38"},
                    ValueCase{"TheLeastFloatAsItIsOftenWritten", 256, "-3.4028235e38", "Float1",
                              "-3.40282e+38"},
                    ValueCase{"Float2", 512, "0.5,1", "Float2", "0.5 1"},
                    ValueCase{"Float3", 1024, "1,2,3", "Float3", "1 2 3"},
                    ValueCase{"Float4", 2048, "0,0,0,1", "Float4", "0 0 0 1"},
                    ValueCase{"AnyFloat", 3840, "0.5", "Float", "0.5"}),
    caseName<ValueCase>);

struct TextCase
{
    const char* name;
    unsigned type;
    const char* text;
};
std::ostream& operator<<(std::ostream& stream, const TextCase& c)
{
    return stream << c.name;
}

class NoDefaultValue : public InputEditorCommand, public testing::WithParamInterface<TextCase>
{};

TEST_P(NoDefaultValue, IsAFailureWithoutAMessage)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, GetParam().type)),
                             {"--set-default-value", std::string("x@") + GetParam().text});
    expectFailure(run, "");
    EXPECT_EQ(directory.files(), "a.obl");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, NoDefaultValue,
    testing::Values(
        TextCase{"Letters", 256, "abc"}, TextCase{"Nothing", 256, ""},
        TextCase{"NothingForABoolean", 4, ""}, TextCase{"AWordForABoolean", 4, "true"},
        TextCase{"ANegativeBoolean", 4, "-1"}, TextCase{"AFractionForAnInteger", 16, "1.5"},
        TextCase{"TooGreatAnInteger", 16, "2147483648"},
        TextCase{"FarTooGreatAnInteger", 16, "99999999999999999999999"},
        TextCase{"AHexadecimalInteger", 16, "0x10"}, TextCase{"TooGreatAFloat", 256, "1e999"},
        TextCase{"TooGreatAFloatForItsSize", 256, "1e39"}, TextCase{"TwoPartsForOne", 16, "1,2"},
        TextCase{"TwoPartsForOneFloat", 256, "1,2"}, TextCase{"TwoPartsForThree", 1024, "1,2"},
        TextCase{"FourPartsForThree", 1024, "1,2,3,4"}, TextCase{"OnePartForTwo", 512, "1"},
        TextCase{"AnEmptyPart", 512, "1,"}, TextCase{"ABadPart", 32, "1,x"},
        TextCase{"AnotherSeparator", 32, "1;2"}, TextCase{"TwoPartsForAnySize", 240, "1,2"},
        TextCase{"ANegativeForAnySize", 240, "-1"}, TextCase{"TwoFloatsForAnySize", 3840, "1,2"},
        TextCase{"NotANumber", 256, "nan"}, TextCase{"Infinity", 256, "inf"},
        TextCase{"MinusInfinity", 256, "-inf"}, TextCase{"OnePartThatIsNotANumber", 512, "0,nan"},
        TextCase{"AnInfinitePart", 1024, "0,inf,0"},
        TextCase{"TheLastPartInfinite", 2048, "0,0,0,-inf"},
        TextCase{"NotANumberForAnySize", 3840, "nan"}, TextCase{"InfinityForAnySize", 3840, "inf"},
        TextCase{"JustBeyondTheGreatestFloat", 256, "3.4028236e38"}),
    caseName<TextCase>);

class TypeWithoutTexts : public InputEditorCommand, public testing::WithParamInterface<unsigned>
{};

TEST_P(TypeWithoutTexts, HasNoDefaultValue)
{
    const ToolRun run =
        edit(aGraphPackage(anInput("x", 11, GetParam())), {"--set-default-value", "x@1 %1"});
    expectFailure(run, "Error! Value \"1 %1\" cannot be converted to the expected type\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

INSTANTIATE_TEST_SUITE_P(Types, TypeWithoutTexts,
                         testing::Values(0u, 1u, 2u, 3u, 258u, 2049u, 2304u, 2307u, 16384u, 32768u,
                                         4096u, 48u, 1u << 31));

TEST_F(InputEditorCommand, ClampsADefaultValue)
{
    const std::string input = anInputWithin("x", 512, "0", "1");
    const ToolRun run = edit(aGraphPackage(input), {"--set-default-value", "x@-3,99"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(written().find(aConstant("Float2", "0 1")), std::string::npos);
}

TEST_F(InputEditorCommand, TheLastDefaultValueStays)
{
    const ToolRun run = edit(
        aGraphPackage(anInput("x", 11, 256) + anInput("y", 12, 16)),
        {"--set-default-value", "x@1", "--set-default-value", "y@2", "--set-default-value", "x@3"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage(anInput("x", 11, 256, aConstant("Float1", "3")) +
                                       anInput("y", 12, 16, aConstant("Int1", "2")))
                             .text());
}

TEST_F(InputEditorCommand, ADefaultValueReplacesOneOfAnotherShape)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, 256, aConstant("Int2", "1 2"))),
                             {"--set-default-value", "x@1"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage(anInput("x", 11, 256, aConstant("Float1", "1"))).text());
}

// What is wrong with the values of the options.

struct WrongCase
{
    const char* name;
    Arguments arguments;
    const char* error;
};
std::ostream& operator<<(std::ostream& stream, const WrongCase& c)
{
    return stream << c.name;
}

class WrongEdit : public InputEditorCommand, public testing::WithParamInterface<WrongCase>
{};

TEST_P(WrongEdit, WritesNothing)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, 256) + anInput("\xC3\x84", 12, 256)),
                             GetParam().arguments);
    expectFailure(run, GetParam().error);
    EXPECT_EQ(directory.files(), "a.obl");
}

INSTANTIATE_TEST_SUITE_P(
    Values, WrongEdit,
    testing::Values(
        WrongCase{"UnknownInput", {"--switch-to-constant", "y"}, "Error! Unknown input: y\n"},
        WrongCase{
            "UnknownInputWithValue", {"--switch-to-constant", "y@1"}, "Error! Unknown input: y\n"},
        WrongCase{
            "UnknownInputOfADefault", {"--set-default-value", "y@1"}, "Error! Unknown input: y\n"},
        WrongCase{"OtherLetters", {"--switch-to-constant", "X"}, "Error! Unknown input: X\n"},
        WrongCase{
            "NamesAreNotTrimmed", {"--switch-to-constant", " x"}, "Error! Unknown input:  x\n"},
        WrongCase{"NoName", {"--switch-to-constant", ""}, "Error! Unknown input: \n"},
        WrongCase{"NoNameButAValue", {"--switch-to-constant", "@1"}, "Error! Unknown input: \n"},
        WrongCase{
            "NothingButTheSeparator", {"--switch-to-constant", "@"}, "Error! Unknown input: \n"},
        WrongCase{"ANameOutsideLatin1",
                  {"--switch-to-constant", "\xE2\x82\xAC"},
                  "Error! Unknown input: \xE2\x82\xAC\n"},
        WrongCase{
            "BytesThatAreNoText", {"--switch-to-constant", "\xFF"}, "Error! Unknown input: \xFF\n"},
        WrongCase{"TwoSeparators",
                  {"--switch-to-constant", "x@1@2"},
                  "Error! Invalid switch-to-constantparameters\n"},
        WrongCase{"ManySeparators",
                  {"--switch-to-constant", "@@@@@@@@"},
                  "Error! Invalid switch-to-constantparameters\n"},
        WrongCase{"ADefaultWithoutValue",
                  {"--set-default-value", "x"},
                  "Error! Invalid set-default-valueparameters\n"},
        WrongCase{"ADefaultWithoutAnything",
                  {"--set-default-value", ""},
                  "Error! Invalid set-default-valueparameters\n"},
        WrongCase{"ADefaultWithTwoValues",
                  {"--set-default-value", "x@1@2"},
                  "Error! Invalid set-default-valueparameters\n"},
        WrongCase{"TheFirstFailureEndsAll",
                  {"--set-default-value", "y@1", "--set-default-value", "x@1@2"},
                  "Error! Unknown input: y\n"},
        WrongCase{"ConstantsComeFirst",
                  {"--set-default-value", "x@1", "--switch-to-constant", "x"},
                  "Error! Unknown input: x\n"},
        WrongCase{"AnInputIsFrozenOnce",
                  {"--switch-to-constant", "x", "--switch-to-constant", "x"},
                  "Error! Unknown input: x\n"}),
    caseName<WrongCase>);

TEST_F(InputEditorCommand, FailsAfterThePresetsWereTold)
{
    const ToolRun run =
        edit(aGraphPackage({}), {"--presets-path", ".", "--switch-to-constant", "x"});
    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.out, "Presets Path added: " + directory.path() + "\n");
}

// Constants.

std::string aReadParameter(const std::string& getter = "get_float1", unsigned type = 256,
                           const std::string& input = "x")
{
    return aParameter("p", "0", aDynamicValue(1, aGetter(1, getter, type, input)));
}

// The document with "const" for the uid of its only constant.
std::string withoutUid(const std::string& document)
{
    const std::string begin = "<paramNodes><paramNode><uid v=\"";
    const std::size_t place = document.find(begin) + begin.size();
    return replaced(document, document.substr(place, document.find('"', place) - place), "const");
}

std::string aFrozenPackage(const std::string& function, unsigned type, const std::string& kind,
                           const std::string& value)
{
    return replaced(
        aGraphPackage(
            {}, aParameter("p", "0",
                           aDynamicValue(99999, aConstantNode(99999, function, type, kind, value))))
            .text(),
        "99999", "const");
}

struct FreezeCase
{
    const char* name;
    const char* argument;
    const char* value;
    const char* error;
};
std::ostream& operator<<(std::ostream& stream, const FreezeCase& c)
{
    return stream << c.name;
}

class Freezing : public InputEditorCommand, public testing::WithParamInterface<FreezeCase>
{};

TEST_P(Freezing, AnInputOfAFloat)
{
    const ToolRun run =
        edit(aGraphPackage(anInput("x", 11, 256, aConstant("Float1", "0.5")), aReadParameter()),
             {"--switch-to-constant", GetParam().argument});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, savedAs("a_edited.obl"));
    EXPECT_EQ(run.err, GetParam().error);
    EXPECT_EQ(withoutUid(written()),
              aFrozenPackage("const_float1", 256, "Float1", GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(Values, Freezing,
                         testing::Values(FreezeCase{"AtItsDefault", "x", "0.5", ""},
                                         FreezeCase{"AtItsDefaultWithASeparator", "x@", "0.5", ""},
                                         FreezeCase{"AtAValue", "x@2.25", "2.25", ""},
                                         FreezeCase{"AtATextThatIsNoValue", "x@abc", "0", ""},
                                         FreezeCase{"AtTooGreatAValue", "x@1e999", "0", ""},
                                         FreezeCase{"AtNotANumber", "x@nan", "0", ""},
                                         FreezeCase{"AtInfinity", "x@-inf", "0", ""},
                                         FreezeCase{"AtTheGreatestValue", "x@3.4028235e38",
                                                    "3.40282e+38", ""},
                                         FreezeCase{"AtTheWrongNumberOfParts", "x@1,2", "0", ""}),
                         caseName<FreezeCase>);

TEST_F(InputEditorCommand, AFrozenValueIsNotClamped)
{
    const ToolRun run = edit(aGraphPackage(anInputWithin("x", 256, "0", "1"), aReadParameter()),
                             {"--switch-to-constant", "x@7"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(withoutUid(written()), aFrozenPackage("const_float1", 256, "Float1", "7"));
}

TEST_F(InputEditorCommand, AnInputWithoutDefaultIsFrozenAtZero)
{
    edit(aGraphPackage(anInput("x", 11, 32), aReadParameter("get_integer2", 32)),
         {"--switch-to-constant", "x"});
    EXPECT_EQ(withoutUid(written()), aFrozenPackage("const_int2", 32, "Int2", "0 0"));
}

TEST_F(InputEditorCommand, AnInputOfAnAliasIsFrozenAtItsDefault)
{
    edit(aGraphPackage(anInput("x", 11, 2304, aConstant("Float4", "1 2 3 4")),
                       aReadParameter("get_float4", 2048)),
         {"--switch-to-constant", "x"});
    EXPECT_EQ(withoutUid(written()), aFrozenPackage("const_float4", 2048, "Float4", "1 2 3 4"));
}

TEST_F(InputEditorCommand, AnInputOfAnAliasTakesNoTextButIsRemoved)
{
    const ToolRun run =
        edit(aGraphPackage(anInput("x", 11, 2304), aReadParameter("get_float4", 2048)),
             {"--switch-to-constant", "x@1,2,3,4"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "Error! Value \"1,2,3,4\" cannot be converted to the expected type\n");
    EXPECT_EQ(withoutUid(written()), aFrozenPackage("const_float4", 2048, "Float4", "0 0 0 0"));
}

TEST_F(InputEditorCommand, AnInputForWhichAnImageMayStandBecomesNoPrimaryInput)
{
    const std::string kept = anInput("a", 11, 258) + anInput("b", 12, 2307);
    edit(aGraphPackage(kept + anInput("x", 13, 256)), {"--switch-to-constant", "x"});
    EXPECT_EQ(written(), aGraphPackage(kept).text());
}

TEST_F(InputEditorCommand, ATextInputIsRemoved)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, 32768, aConstant("String", "words"))),
                             {"--switch-to-constant", "x"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage({}).text());
}

TEST_F(InputEditorCommand, SeveralInputsAreFrozenInOneRun)
{
    const ToolRun run = edit(
        aGraphPackage(anInput("x", 11, 256) + anInput("y", 12, 16) + anInput("z", 13, 4)),
        {"--switch-to-constant", "z", "--set-default-value", "y@3", "--switch-to-constant", "x@1"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage(anInput("y", 12, 16, aConstant("Int1", "3"))).text());
}

TEST_F(InputEditorCommand, NamesAreThoseOfTheDocumentInItsEightBits)
{
    const ToolRun run =
        edit(aGraphPackage(anInput("\xC3\x84", 11, 256)), {"--switch-to-constant", "\xC3\x84"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage({}).text());
}

TEST_F(InputEditorCommand, AnInputMayHaveTheEmptyName)
{
    const ToolRun run = edit(aGraphPackage(anInput("", 11, 256)), {"--switch-to-constant", ""});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage({}).text());
}

TEST_F(InputEditorCommand, OfTwoInputsWithOneNameTheFirstIsMeant)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, 256) + anInput("x", 12, 16)),
                             {"--switch-to-constant", "x"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage(anInput("x", 12, 16)).text());
}

TEST_F(InputEditorCommand, AnInputWithoutItsWidgetIsNotRead)
{
    const std::string text =
        replaced(aGraphPackage(anInput("x", 11, 256)).text(),
                 "<defaultWidget><name v=\"\"/><options/></defaultWidget>", "");
    directory.write("a.obl", text);
    expectFailure(edit({"a.obl"}),
                  "Cannot load: " + at("a.obl") + "\ninput file cannot be correctly loaded\n");
}

struct ImageCase
{
    const char* name;
    unsigned type;
    const char* argument;
    const char* error;
};
std::ostream& operator<<(std::ostream& stream, const ImageCase& c)
{
    return stream << c.name;
}

class FreezingAnImage : public InputEditorCommand, public testing::WithParamInterface<ImageCase>
{};

TEST_P(FreezingAnImage, IsAFailure)
{
    const ToolRun run = edit(aGraphPackage(anInput("x", 11, GetParam().type)),
                             {"--switch-to-constant", GetParam().argument});
    expectFailure(run, GetParam().error);
    EXPECT_EQ(directory.files(), "a.obl");
}

INSTANTIATE_TEST_SUITE_P(
    Types, FreezingAnImage,
    testing::Values(ImageCase{"Color", 1, "x@1",
                              "Error! Value \"1\" cannot be converted to the expected type\n"},
                    ImageCase{"Grayscale", 2, "x@0.5",
                              "Error! Value \"0.5\" cannot be converted to the expected type\n"},
                    ImageCase{"EitherWithoutAValue", 3, "x",
                              "Error! Value \"\" cannot be converted to the expected type\n"}),
    caseName<ImageCase>);

// Function graphs that hang together badly are written back as they are, but for the getters.
struct HostileCase
{
    const char* name;
    std::string value; // computed, before
    std::string after; // with "const" for the uid of the constant
};
std::ostream& operator<<(std::ostream& stream, const HostileCase& c)
{
    return stream << c.name;
}

class HostileFunctions : public InputEditorCommand, public testing::WithParamInterface<HostileCase>
{};

TEST_P(HostileFunctions, AreFrozen)
{
    const ToolRun run =
        edit(aGraphPackage(anInput("x", 11, 256), aParameter("p", "0", GetParam().value)),
             {"--switch-to-constant", "x@1"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "");
    const std::string begin = "<function v=\"const_float1\"/>";
    const std::string document = directory.read("a_edited.obl"); // some of it leads nowhere
    const std::size_t end = document.rfind("\"/>", document.find(begin));
    const std::size_t place = document.rfind('"', end - 1) + 1;
    EXPECT_EQ(replaced(document, document.substr(place, end - place), "const"),
              replaced(aGraphPackage({}, aParameter("p", "0", GetParam().after)).text(), "99999",
                       "const"));
}

const std::string Getter = aGetter(1, "get_float1", 256, "x");
const std::string Constant = aConstantNode(99999, "const_float1", 256, "Float1", "1");

INSTANTIATE_TEST_SUITE_P(
    Graphs, HostileFunctions,
    testing::Values(
        HostileCase{
            "ACircle",
            aDynamicValue(2, Getter + aFunctionNode(2, "add", 256, aLink("a", 1) + aLink("b", 3)) +
                                 aFunctionNode(3, "neg", 256, aLink("a", 2))),
            aDynamicValue(2, aFunctionNode(2, "add", 256, aLink("b", 3) + aLink("a", 99999)) +
                                 aFunctionNode(3, "neg", 256, aLink("a", 2)) + Constant)},
        HostileCase{"ConnectionsThatLeadNowhere",
                    aDynamicValue(44, Getter + aFunctionNode(2, "neg", 256, aLink("a", 45))),
                    aDynamicValue(44, aFunctionNode(2, "neg", 256, aLink("a", 45)) + Constant)},
        HostileCase{"AnUnknownFunction",
                    aDynamicValue(2, Getter + aFunctionNode(2, "mystery", 7, aLink("q", 1))),
                    aDynamicValue(2, aFunctionNode(2, "mystery", 7, aLink("q", 99999)) + Constant)},
        HostileCase{
            "NodesWithOneUid",
            aDynamicValue(1, Getter + aFunctionNode(1, "neg", 256, aLink("a", 1))),
            aDynamicValue(99999, aFunctionNode(1, "neg", 256, aLink("a", 99999)) + Constant)},
        HostileCase{"NoOutput", aRootlessValue(Getter), aRootlessValue(Constant)}),
    caseName<HostileCase>);

TEST_F(InputEditorCommand, WhatAnInstanceOfTheGraphInItselfSetsTheInputToGoesWithIt)
{
    const auto package = [](const std::string& inputs, const std::string& parameters) {
        GraphText graph;
        graph.inputs = inputs;
        graph.nodes = aNode(1, "<compInstance><path><value v=\"pkg://g?dependency=5\"/></path>" +
                                   GraphText::list("parameters", parameters) +
                                   "<outputBridgings/></compInstance>");
        return aPackage().dependingOnItself(5).containing(graph.text());
    };
    const ToolRun run =
        edit(package(anInput("x", 11, 256),
                     replaced(aReadParameter(), "<name v=\"p\"/>", "<name v=\"x\"/>")),
             {"--switch-to-constant", "x"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(withOwnUidHidden(written()), withOwnUidHidden(package({}, {}).text()));
}

TEST_F(InputEditorCommand, ItsMemoryFollowsTheFileAndNotInstancesTimesImages)
{
    const ToolRun run = edit(instancesOfAGraphOfImages(1500), {"--set-default-value", "x@1"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_LT(run.peakKilobytes, peakBound(50L * 1024));
}

TEST_F(InputEditorCommand, AnEmptyFunctionGraphStays)
{
    const std::string parameter = aParameter("p", "0", aRootlessValue({}));
    const ToolRun run =
        edit(aGraphPackage(anInput("x", 11, 256), parameter), {"--switch-to-constant", "x"});
    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written(), aGraphPackage({}, parameter).text());
}

} // namespace

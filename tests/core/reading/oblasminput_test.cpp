#include "reading/oblasminput.h"

#include "data/content/paraminput.h"
#include "support/assemblytext.h"
#include "support/shelfcases.h"
#include <QDomDocument>
#include <gtest/gtest.h>

using Ksx::Core::readOblasmInput;
using Ksx::Data::Content::ParamInput;
using TestSupport::caseName;
using TestSupport::domOf;
using TestSupport::writtenAs;

namespace {

std::unique_ptr<ParamInput> inputFrom(const std::string& text)
{
    return readOblasmInput(domOf(text).documentElement());
}

// What an input with those attributes and that child is written as; "failed" if it fails.
std::string written(const std::string& attributes, const std::string& children = {})
{
    const auto input =
        inputFrom("<input identifier=\"i\" uid=\"5\" " + attributes + ">" + children + "</input>");
    return input == nullptr ? "failed" : writtenAs(*input);
}

std::string expected(const std::string& type, const std::string& defaultValue = {},
                     const std::string& widget = R"(<name v=""/><options/>)")
{
    const std::string value = type == "0" ? "" : "<type><value v=\"" + type + "\"/></type>";
    const std::string text =
        defaultValue.empty() ? "" : "<defaultValue>" + defaultValue + "</defaultValue>";
    return R"(<paraminput><identifier v="i"/><uid v="5"/>)" +
           (type == "0" ? std::string(R"(<type><value v="0"/></type>)") : value) + text +
           "<defaultWidget>" + widget + "</defaultWidget></paraminput>";
}

std::string aWidget(const std::string& name, const std::string& options = {})
{
    return "<name v=\"" + name + "\"/>" +
           (options.empty() ? "<options/>" : "<options>" + options + "</options>");
}

std::string anOption(const std::string& name, const std::string& value)
{
    return "<option><name v=\"" + name + "\"/><value v=\"" + value + "\"/></option>";
}

// Which attributes must be there.

struct TextCase
{
    const char* name;
    std::string text;
};

std::ostream& operator<<(std::ostream& stream, const TextCase& c)
{
    return stream << c.name;
}

class BadOblasmInput : public testing::TestWithParam<TextCase>
{};

TEST_P(BadOblasmInput, Fails)
{
    EXPECT_EQ(inputFrom(GetParam().text), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BadOblasmInput,
    testing::Values(TextCase{"WithoutIdentifier", R"(<input uid="5" type="0"/>)"},
                    TextCase{"WithoutUid", R"(<input identifier="i" type="0"/>)"},
                    TextCase{"WithoutType", R"(<input identifier="i" uid="5"/>)"},
                    TextCase{"UidIsNoNumber", R"(<input identifier="i" uid="x" type="0"/>)"},
                    TextCase{"UidIsEmpty", R"(<input identifier="i" uid="" type="0"/>)"},
                    TextCase{"UidIsNegative", R"(<input identifier="i" uid="-1" type="0"/>)"},
                    TextCase{"UidIsTooLarge",
                             R"(<input identifier="i" uid="4294967296" type="0"/>)"},
                    TextCase{"TypeIsNoNumber", R"(<input identifier="i" uid="5" type="float"/>)"},
                    TextCase{"TypeIsEmpty", R"(<input identifier="i" uid="5" type=""/>)"},
                    TextCase{"TypeIsNegative", R"(<input identifier="i" uid="5" type="-1"/>)"},
                    TextCase{"TypeSix", R"(<input identifier="i" uid="5" type="6"/>)"},
                    TextCase{"TypeEleven", R"(<input identifier="i" uid="5" type="11"/>)"},
                    TextCase{"TypeIsHuge", R"(<input identifier="i" uid="5" type="4294967296"/>)"},
                    TextCase{"OtherCase", R"(<input Identifier="i" Uid="5" Type="0"/>)"}),
    caseName<TextCase>);

TEST(OblasmInput, NeedsNothingButIdentifierUidAndType)
{
    EXPECT_EQ(written(R"(type="0")"), expected("256"));
}

TEST(OblasmInput, HasIdentifierAndUid)
{
    const auto input = inputFrom(R"(<input identifier="scale" uid="4294967294" type="0"/>)");

    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->identifier().get(), "scale");
    EXPECT_EQ(input->uid().get(), 4294967294u);
}

// Value types.

struct TypeCase
{
    const char* name;
    std::string type;
    std::string valueType;
};

std::ostream& operator<<(std::ostream& stream, const TypeCase& c)
{
    return stream << c.name;
}

class OblasmInputType : public testing::TestWithParam<TypeCase>
{};

TEST_P(OblasmInputType, GivesTheValueType)
{
    EXPECT_EQ(written("type=\"" + GetParam().type + "\""), expected(GetParam().valueType));
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, OblasmInputType,
    testing::Values(TypeCase{"Float1", "0", "256"}, TypeCase{"Float2", "1", "512"},
                    TypeCase{"Float3", "2", "1024"}, TypeCase{"Float4", "3", "2048"},
                    TypeCase{"Integer1", "4", "16"}, TypeCase{"String", "7", "16384"},
                    TypeCase{"Integer2", "8", "32"}, TypeCase{"Integer3", "9", "64"},
                    TypeCase{"Integer4", "10", "128"}),
    caseName<TypeCase>);

struct ImageCase
{
    const char* name;
    std::string gui;
    unsigned valueType;
};

std::ostream& operator<<(std::ostream& stream, const ImageCase& c)
{
    return stream << c.name;
}

class OblasmImageInput : public testing::TestWithParam<ImageCase>
{};

TEST_P(OblasmImageInput, HasTheTypeOfItsColors)
{
    const auto input =
        inputFrom(R"(<input identifier="i" uid="5" type="5">)" + GetParam().gui + "</input>");

    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->type().value().get(), GetParam().valueType);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OblasmImageInput,
    testing::Values(
        ImageCase{"Color", R"(<inputgui><guiimage colortype="color"/></inputgui>)", 1},
        ImageCase{"Grayscale", R"(<inputgui><guiimage colortype="grayscale"/></inputgui>)", 2},
        ImageCase{"OtherColorType", R"(<inputgui><guiimage colortype="sepia"/></inputgui>)", 0},
        ImageCase{"ColorTypeInCapitals", R"(<inputgui><guiimage colortype="Color"/></inputgui>)",
                  0},
        ImageCase{"NoColorType", "<inputgui><guiimage/></inputgui>", 0},
        ImageCase{"NoImage", R"(<inputgui colortype="color"/>)", 0}, ImageCase{"NoGui", "", 0},
        ImageCase{"ImageOutsideTheGui", R"(<guiimage colortype="color"/>)", 0}),
    caseName<ImageCase>);

// Booleans in disguise.

TEST(OblasmInput, AnIntegerWithAToggleIsABoolean)
{
    EXPECT_EQ(written(R"(type="4" default="1")", R"(<inputgui widget="togglebutton"/>)"),
              expected("4", R"(<constantValueBool><value v="1"/></constantValueBool>)",
                       aWidget("buttons")));
}

TEST(OblasmInput, AnIntegerWithAToggleAndAnImageIsABoolean)
{
    EXPECT_EQ(written(R"(type="4")", R"(<inputgui widget="togglebutton"><guiimage/></inputgui>)"),
              expected("4", "", aWidget("buttons")));
}

class OblasmFinerWidget : public testing::TestWithParam<TypeCase>
{};

TEST_P(OblasmFinerWidget, LeavesAnIntegerWithAToggle)
{
    const auto input =
        inputFrom(R"(<input identifier="i" uid="5" type="4"><inputgui widget="togglebutton"><)" +
                  GetParam().type + "/></inputgui></input>");

    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->type().value().get(), 16u);
    EXPECT_EQ(input->defaultWidget().name().get(), GetParam().valueType);
}

INSTANTIATE_TEST_SUITE_P(Kinds, OblasmFinerWidget,
                         testing::Values(TypeCase{"Slider", "guislider", "slider"},
                                         TypeCase{"Angle", "guiangle", "angle"},
                                         TypeCase{"ComboBox", "guicombobox", "dropdownlist"}),
                         caseName<TypeCase>);

TEST(OblasmInput, AFloatWithAToggleStaysAFloat)
{
    EXPECT_EQ(written(R"(type="0")", R"(<inputgui widget="togglebutton"/>)"),
              expected("256", "", aWidget("togglebutton")));
}

TEST(OblasmInput, AnIntegerWithButtonsStaysAnInteger)
{
    EXPECT_EQ(written(R"(type="4")", R"(<inputgui widget="buttons"/>)"),
              expected("16", "", aWidget("buttons")));
}

// Texts.

TEST(OblasmInput, HasTheTextsOfItsGui)
{
    const auto input = inputFrom(
        R"(<input identifier="i" uid="5" type="0"><inputgui label="Größe" description="how &amp; why")"
        R"( usertag="t" group="g/h"/></input>)");

    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->attributes().label().get(), "Gr\xf6\xdf"
                                                 "e");
    EXPECT_EQ(input->attributes().description().get(), "how & why");
    EXPECT_EQ(input->attributes().usertags().get(), "t");
    EXPECT_EQ(input->group().get(), "g/h");
}

TEST(OblasmInput, TextsThatAreEmptyAreNotWritten)
{
    EXPECT_EQ(written(R"(type="0" usertag="")",
                      R"(<inputgui label="" description="" usertag="" group=""/>)"),
              expected("256"));
}

TEST(OblasmInput, ItsOwnTextsDoNotCount)
{
    EXPECT_EQ(written(R"(type="0" label="l" description="d" group="g" pkgurl="p" alternodes="1")"
                      R"( alteroutputs="1,2")"),
              expected("256"));
}

struct TagCase
{
    const char* name;
    std::string own;
    std::string gui;
    std::string tag;
};

std::ostream& operator<<(std::ostream& stream, const TagCase& c)
{
    return stream << c.name;
}

class OblasmUserTag : public testing::TestWithParam<TagCase>
{};

TEST_P(OblasmUserTag, IsThatOfTheGuiIfThereIsOne)
{
    const auto input = inputFrom(R"(<input identifier="i" uid="5" type="0" )" + GetParam().own +
                                 ">" + GetParam().gui + "</input>");

    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->attributes().usertags().get(), GetParam().tag);
}

INSTANTIATE_TEST_SUITE_P(
    Places, OblasmUserTag,
    testing::Values(TagCase{"Both", R"(usertag="own")", R"(<inputgui usertag="gui"/>)", "gui"},
                    TagCase{"GuiWithout", R"(usertag="own")", "<inputgui/>", "own"},
                    TagCase{"NoGui", R"(usertag="own")", "", "own"},
                    TagCase{"GuiAlone", "", R"(<inputgui usertag="gui"/>)", "gui"},
                    TagCase{"None", "", "<inputgui/>", ""}),
    caseName<TagCase>);

struct StateCase
{
    const char* name;
    std::string gui;
    bool isDisabled;
};

std::ostream& operator<<(std::ostream& stream, const StateCase& c)
{
    return stream << c.name;
}

class OblasmInputState : public testing::TestWithParam<StateCase>
{};

TEST_P(OblasmInputState, TellsWhetherItIsDisabled)
{
    const auto input =
        inputFrom(R"(<input identifier="i" uid="5" type="0">)" + GetParam().gui + "</input>");

    ASSERT_NE(input, nullptr);
    EXPECT_EQ(input->disabled().value().get(), GetParam().isDisabled);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, OblasmInputState,
    testing::Values(StateCase{"Disabled", R"(<inputgui state="disabled"/>)", true},
                    StateCase{"Visible", R"(<inputgui state="visible"/>)", false},
                    StateCase{"Hidden", R"(<inputgui state="hidden"/>)", false},
                    StateCase{"Missing", "<inputgui/>", false}, StateCase{"NoGui", "", false},
                    StateCase{"Other", R"(<inputgui state="Disabled"/>)", false}),
    caseName<StateCase>);

// Default values.

struct DefaultCase
{
    const char* name;
    std::string type;
    std::string text;
    std::string valueType;
    std::string constant; // its kind, and then its value
    std::string value;
};

std::ostream& operator<<(std::ostream& stream, const DefaultCase& c)
{
    return stream << c.name;
}

class OblasmDefault : public testing::TestWithParam<DefaultCase>
{};

TEST_P(OblasmDefault, IsAConstantOfTheInputsType)
{
    const std::string element = "constantValue" + GetParam().constant;
    const std::string constant =
        "<" + element + "><value v=\"" + GetParam().value + "\"/></" + element + ">";

    EXPECT_EQ(written("type=\"" + GetParam().type + "\" default=\"" + GetParam().text + "\""),
              expected(GetParam().valueType, constant));
}

INSTANTIATE_TEST_SUITE_P(
    Types, OblasmDefault,
    testing::Values(DefaultCase{"Float1", "0", "1.5", "256", "Float1", "1.5"},
                    DefaultCase{"FloatWithoutAPoint", "0", "-2", "256", "Float1", "-2"},
                    DefaultCase{"FloatWithAnExponent", "0", "25e-2", "256", "Float1", "0.25"},
                    DefaultCase{"TheGreatestFloat", "0", "3.4028235e38", "256", "Float1",
                                "3.40282e+38"},
                    DefaultCase{"Float2", "1", "1.5,2", "512", "Float2", "1.5 2"},
                    DefaultCase{"Float3", "2", "1.5,2,-3", "1024", "Float3", "1.5 2 -3"},
                    DefaultCase{"Float4", "3", "1,2,3,4.25", "2048", "Float4", "1 2 3 4.25"},
                    DefaultCase{"Integer1", "4", "-7", "16", "Int1", "-7"},
                    DefaultCase{"Integer2", "8", "1,-2", "32", "Int2", "1 -2"},
                    DefaultCase{"Integer3", "9", "1,2,3", "64", "Int3", "1 2 3"},
                    DefaultCase{"Integer4", "10", "1,2,3,4", "128", "Int4", "1 2 3 4"},
                    DefaultCase{"String", "7", "a, b", "16384", "String", "a, b"}),
    caseName<DefaultCase>);

class BadOblasmDefault : public testing::TestWithParam<DefaultCase>
{};

TEST_P(BadOblasmDefault, FailsTheInput)
{
    EXPECT_EQ(written("type=\"" + GetParam().type + "\" default=\"" + GetParam().text + "\""),
              "failed");
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BadOblasmDefault,
    testing::Values(DefaultCase{"FloatLetters", "0", "x", "", "", ""},
                    DefaultCase{"FloatTwo", "0", "1,2", "", "", ""},
                    DefaultCase{"FloatTooLarge", "0", "1e99", "", "", ""},
                    DefaultCase{"NotANumber", "0", "nan", "", "", ""},
                    DefaultCase{"Infinity", "0", "inf", "", "", ""},
                    DefaultCase{"OneOfTwoNotANumber", "1", "1,nan", "", "", ""},
                    DefaultCase{"OneOfFourInfinite", "3", "1,2,-inf,4", "", "", ""},
                    DefaultCase{"FloatsTooFew", "1", "1", "", "", ""},
                    DefaultCase{"FloatsTooMany", "1", "1,2,3", "", "", ""},
                    DefaultCase{"FloatsWithBlanks", "1", "1 2", "", "", ""},
                    DefaultCase{"FloatsWithSemicolons", "1", "1;2", "", "", ""},
                    DefaultCase{"FloatsEmptyPart", "2", "1,,3", "", "", ""},
                    DefaultCase{"FloatsTrailingComma", "1", "1,2,", "", "", ""},
                    DefaultCase{"IntegerWithAPoint", "4", "1.5", "", "", ""},
                    DefaultCase{"IntegerTooLarge", "4", "2147483648", "", "", ""},
                    DefaultCase{"IntegerYes", "4", "yes", "", "", ""},
                    DefaultCase{"IntegersLetters", "10", "1,2,3,x", "", "", ""}),
    caseName<DefaultCase>);

class OblasmBooleanDefault : public testing::TestWithParam<StateCase>
{};

TEST_P(OblasmBooleanDefault, TakesNumbersAndWords)
{
    const std::string value = GetParam().isDisabled ? "1" : "0";

    EXPECT_EQ(written("type=\"4\" default=\"" + GetParam().gui + "\"",
                      R"(<inputgui widget="togglebutton"/>)"),
              expected("4", "<constantValueBool><value v=\"" + value + "\"/></constantValueBool>",
                       aWidget("buttons")));
}

INSTANTIATE_TEST_SUITE_P(Texts, OblasmBooleanDefault,
                         testing::Values(StateCase{"Zero", "0", false}, StateCase{"One", "1", true},
                                         StateCase{"No", "no", false},
                                         StateCase{"Yes", "yes", true},
                                         StateCase{"Off", "off", false},
                                         StateCase{"On", "on", true}),
                         caseName<StateCase>);

TEST(OblasmInput, ABooleanHasNoOtherDefault)
{
    EXPECT_EQ(written(R"(type="4" default="true")", R"(<inputgui widget="togglebutton"/>)"),
              "failed");
}

TEST(OblasmInput, TheDefaultOfAnImageIsPassedOver)
{
    EXPECT_EQ(
        written(R"(type="5" default="x")", R"(<inputgui><guiimage colortype="color"/></inputgui>)"),
        expected("1"));
}

TEST(OblasmInput, AnEmptyDefaultIsNone)
{
    EXPECT_EQ(written(R"(type="3" default="")"), expected("2048"));
}

// Widgets.

struct WidgetCase
{
    const char* name;
    std::string gui;
    std::string widget;
};

std::ostream& operator<<(std::ostream& stream, const WidgetCase& c)
{
    return stream << c.name;
}

class OblasmWidget : public testing::TestWithParam<WidgetCase>
{};

TEST_P(OblasmWidget, HasNameAndOptions)
{
    EXPECT_EQ(written(R"(type="0")", GetParam().gui), expected("256", "", GetParam().widget));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, OblasmWidget,
    testing::Values(
        WidgetCase{"Plain", R"(<inputgui widget="color"/>)", aWidget("color")},
        WidgetCase{"None", "<inputgui/>", aWidget("")},
        WidgetCase{"OptionsWithoutAChild", R"(<inputgui widget="slider" min="1" step="2"/>)",
                   aWidget("slider")},
        WidgetCase{"Slider", R"(<inputgui widget="x"><guislider/></inputgui>)", aWidget("slider")},
        WidgetCase{"Angle", "<inputgui><guiangle/></inputgui>", aWidget("angle")},
        WidgetCase{"Image", R"(<inputgui widget="x"><guiimage min="1"/></inputgui>)", aWidget("x")},
        WidgetCase{"SliderBeforeAll",
                   R"(<inputgui><guicombobox/><guiangle min="1"/><guislider min="2"/></inputgui>)",
                   aWidget("slider", anOption("min", "2"))},
        WidgetCase{"AngleBeforeAComboBox",
                   R"(<inputgui><guicombobox/><guiangle min="1"/></inputgui>)",
                   aWidget("angle", anOption("min", "1"))},
        WidgetCase{"AllOptionsOfASlider",
                   R"(<inputgui><guislider valuescale="2.5" suffix=" px" step="0.1" clamp="yes")"
                   R"( max="9" min="-9" label1="many" label0="few"/></inputgui>)",
                   aWidget("slider", anOption("min", "-9") + anOption("max", "9") +
                                         anOption("clamp", "1") + anOption("step", "0.1") +
                                         anOption("suffix", " px") + anOption("valueScale", "2.5") +
                                         anOption("label0", "few") + anOption("label1", "many"))},
        WidgetCase{"Unit", R"(<inputgui><guiangle unit="turns" max="1"/></inputgui>)",
                   aWidget("angle", anOption("max", "1") + anOption("unit", "turns"))},
        WidgetCase{"ClampOn", R"(<inputgui><guislider clamp="on"/></inputgui>)",
                   aWidget("slider", anOption("clamp", "1"))},
        WidgetCase{"ClampOff", R"(<inputgui><guislider clamp="off"/></inputgui>)",
                   aWidget("slider", anOption("clamp", "0"))},
        WidgetCase{"ClampNo", R"(<inputgui><guislider clamp="no"/></inputgui>)",
                   aWidget("slider", anOption("clamp", "0"))},
        WidgetCase{"LabelsFromAnyNumber",
                   R"(<inputgui><guislider label11="c" label9="a" label10="b"/></inputgui>)",
                   aWidget("slider", anOption("label9", "a") + anOption("label10", "b") +
                                         anOption("label11", "c"))},
        WidgetCase{"NamesThatAreNoLabels",
                   R"(<inputgui><guislider label="a" label01="b" labels="c" label-1="d")"
                   R"( label2="e"/></inputgui>)",
                   aWidget("slider", anOption("label2", "e"))},
        WidgetCase{"LabelsEndAtAGap", R"(<inputgui><guislider label0="a" label2="c"/></inputgui>)",
                   aWidget("slider", anOption("label0", "a"))},
        WidgetCase{"ScaleInOtherCase", R"(<inputgui><guislider valueScale="2"/></inputgui>)",
                   aWidget("slider")},
        WidgetCase{"ComboBox",
                   R"(<inputgui widget="x"><guicombobox><guicomboboxitem value="1" text="small"/>)"
                   R"(<guicomboboxitem value="4" text="not so small"/></guicombobox></inputgui>)",
                   aWidget("dropdownlist", anOption("editorID", "dropdownlist") +
                                               anOption("parameters", "1;small | 4;not so small"))},
        WidgetCase{"ComboBoxOfOne",
                   R"(<inputgui><guicombobox><guicomboboxitem value="1" text="a"/></guicombobox>)"
                   "</inputgui>",
                   aWidget("dropdownlist",
                           anOption("editorID", "dropdownlist") + anOption("parameters", "1;a"))},
        WidgetCase{"NumbersOfAnImage",
                   R"(<inputgui widget="x"><guiimage step="2" suffix="px" valuescale="3")"
                   R"( label1="a"/></inputgui>)",
                   aWidget("x", anOption("step", "2") + anOption("suffix", "px") +
                                    anOption("valueScale", "3") + anOption("label1", "a"))},
        WidgetCase{"NumbersOfAComboBox",
                   R"(<inputgui><guicombobox step="2" suffix="px" valuescale="3" label0="a"/>)"
                   "</inputgui>",
                   aWidget("dropdownlist",
                           anOption("editorID", "dropdownlist") + anOption("parameters", "") +
                               anOption("step", "2") + anOption("suffix", "px") +
                               anOption("valueScale", "3") + anOption("label0", "a"))},
        WidgetCase{"ComboBoxOfTextsWithMarks",
                   R"(<inputgui><guicombobox><guicomboboxitem value="1" text="a|b;c"/>)"
                   R"(<guicomboboxitem value="2" text=";|"/></guicombobox></inputgui>)",
                   aWidget("dropdownlist", anOption("editorID", "dropdownlist") +
                                               anOption("parameters", "1;a b c | 2;  "))},
        WidgetCase{"EmptyComboBox", "<inputgui><guicombobox/></inputgui>",
                   aWidget("dropdownlist",
                           anOption("editorID", "dropdownlist") + anOption("parameters", ""))}),
    caseName<WidgetCase>);

TEST(OblasmInput, TheFirstOfTwoGuisCounts)
{
    EXPECT_EQ(written(R"(type="0")", R"(<inputgui widget="a"/><inputgui widget="b"/>)"),
              expected("256", "", aWidget("a")));
}

} // namespace

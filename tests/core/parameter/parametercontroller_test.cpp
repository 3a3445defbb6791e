#include "ksx/core/parametercontroller.h"

#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/uidsource.h"
#include "support/functiontext.h"
#include "support/parameterdocument.h"
#include "support/shelfcases.h"
#include "support/undohistory.h"
#include <gtest/gtest.h>

using namespace Ksx::Core;
using namespace Ksx::Data::Desc;
using Orv::Data::Float1;
using Orv::Data::Float4;
using Orv::Data::Int1;
using Orv::Data::Int2;
using Orv::Data::Int3;
using TestSupport::aConstant;
using TestSupport::aConstantNode;
using TestSupport::aDescription;
using TestSupport::aDynamicValue;
using TestSupport::aGetter;
using TestSupport::aParameter;
using TestSupport::caseName;
using TestSupport::ParameterDocument;
using TestSupport::UndoHistory;
using TestSupport::xmlOf;

namespace {

using Lines = std::vector<std::string>;
using Method = InheritanceMethod;

constexpr unsigned Inheritable = ParameterFlag::Inheritable;

// Uids are 1000, 1001 and so on.
class StandingUids
{
public:
    StandingUids()
    {
        UidSource::setClock([] { return std::time_t{1000}; });
        UidSource::shared().setCounter(0);
    }
    ~StandingUids() { UidSource::setClock({}); }
};

const boost::any ten = Float1{{10}};
const boost::any eleven = Float1{{11}};

const Parameter intensity = aDescription("intensity", 256, ten);
const Parameter outputSize = aDescription("outputsize", 32, Int2{}, Inheritable);
const Parameter tiling = aDescription("tiling", 16, 3u, Inheritable);

std::string intensityOf(const std::string& value, const std::string& mode = "0")
{
    return aParameter("intensity", mode, aConstant("Float1", value));
}

// One parameter of a live document, by a controller.
struct Editor
{
    explicit Editor(const Parameter& parameter, const std::string& stored = {},
                    bool hasNoInput = false)
        : description(parameter), document(stored),
          controller(ParameterController::ListBox(&document.parameters()), description, hasNoInput)
    {}

    std::string text() const { return document.text(); }
    std::string packageText() const { return xmlOf(document.package()); }
    template <class T>
    T value() const
    {
        return boost::any_cast<T>(controller.value());
    }

    Parameter description;
    ParameterDocument document;
    UndoHistory history;
    ParameterController controller;
};

// Counts what it is told, as a line each.
struct Subscriber
{
    explicit Subscriber(ParameterController& controller)
    {
        ParameterSignals& changes = controller.changes();
        changes.valueChanged.connect([this] { told.push_back("value"); });
        changes.relativeToChanged.connect([this] { told.push_back("relativeTo"); });
        changes.dynamicChanged.connect([this] { told.push_back("dynamic"); });
    }

    Lines told;
};

} // namespace

// --- the mode

TEST(ParameterMode, IsAbsoluteByDefaultIfNotInheritable)
{
    EXPECT_EQ(Editor(intensity).controller.relativeTo(), Method::Absolute);
}

TEST(ParameterMode, OfAnInheritableFollowsTheInputByDefault)
{
    EXPECT_EQ(Editor(outputSize).controller.relativeTo(), Method::RelativeToInput);
}

TEST(ParameterMode, OfAnInheritableFollowsTheParentWithoutAnInput)
{
    EXPECT_EQ(Editor(outputSize, {}, true).controller.relativeTo(), Method::RelativeToParent);
}

TEST(ParameterMode, IsTheStoredOne)
{
    const Editor editor(outputSize, aParameter("outputsize", "2", aConstant("Int2", "1 1")));

    EXPECT_EQ(editor.controller.relativeTo(), Method::RelativeToParent);
}

TEST(ParameterMode, ThatAFileDoesNotStateIsTheDefault)
{
    const Editor editor(outputSize, aParameter("outputsize", "", aConstant("Int2", "1 1")));

    EXPECT_EQ(editor.controller.relativeTo(), Method::RelativeToInput);
}

// --- the value

TEST(ParameterValue, IsTheDefaultOfTheDescription)
{
    EXPECT_EQ(Editor(intensity).value<Float1>(), (Float1{{10}}));
}

TEST(ParameterValue, IsTheStoredOne)
{
    EXPECT_EQ(Editor(intensity, intensityOf("4")).value<Float1>(), (Float1{{4}}));
}

TEST(ParameterValue, IsThatOfTheFirstObjectOfItsName)
{
    const Editor editor(intensity, aParameter("Intensity", "0", aConstant("Float1", "3")) +
                                       intensityOf("4") + intensityOf("5"));

    EXPECT_EQ(editor.value<Float1>(), (Float1{{4}}));
}

TEST(ParameterValue, IsReadFromTheOtherClassOfItsShape)
{
    const auto asFloat = aParameter("intensity", "0", aConstant("Float", "4"));
    const auto asInt1 = aParameter("tiling", "0", aConstant("Int1", "2"));

    EXPECT_EQ(Editor(intensity, asFloat).value<Float1>(), (Float1{{4}}));
    EXPECT_EQ(Editor(tiling, asInt1).value<unsigned>(), 2u);
}

TEST(ParameterValue, OfAnotherShapeIsTheDefault)
{
    const Editor editor(intensity, aParameter("intensity", "0", aConstant("Float2", "4 4")));

    EXPECT_EQ(editor.value<Float1>(), (Float1{{10}}));
}

TEST(ParameterValue, ThatIsComputedIsTheDefault)
{
    const Editor editor(intensity, aParameter("intensity", "0", aDynamicValue(1, "")));

    EXPECT_EQ(editor.value<Float1>(), (Float1{{10}}));
}

TEST(ParameterValue, IsZeroWhereRelativeIfTheDescriptionSaysSo)
{
    const Parameter relative =
        aDescription("p", 32, Int2{{9, 9}}, Inheritable | ParameterFlag::ZeroWhenRelative);

    EXPECT_EQ(Editor(relative).value<Int2>(), Int2{});
}

TEST(ParameterValue, IsOneWhereRelativeIfTheDescriptionSaysSo)
{
    const unsigned flags = Inheritable | ParameterFlag::OneWhenRelative;

    EXPECT_EQ(Editor(aDescription("p", 64, {}, flags)).value<Int3>(), (Int3{{1, 1, 1}}));
    EXPECT_EQ(Editor(aDescription("p", 256, {}, flags)).value<Float1>(), (Float1{{1}}));
    EXPECT_EQ(Editor(aDescription("p", 16, {}, flags)).value<unsigned>(), 1u);
    EXPECT_TRUE(Editor(aDescription("p", 4, {}, flags)).value<bool>());
}

TEST(ParameterValue, IsTheDefaultWhereAbsolute)
{
    const Parameter absolute = aDescription(
        "p", 32, Int2{{9, 9}}, ParameterFlag::ZeroWhenRelative | ParameterFlag::OneWhenRelative);

    EXPECT_EQ(Editor(absolute).value<Int2>(), (Int2{{9, 9}}));
}

TEST(ParameterValue, IsTheFirstEntryOfTheDefaultKindIfTheDescriptionSaysSo)
{
    Parameter choice = aDescription("p", 16, 7u, ParameterFlag::DefaultFromEntry);
    choice.entries = {{"a", "", "", 0, 1u}, {"b", "", "", 3072, 2u}, {"c", "", "", 3072, 3u}};

    EXPECT_EQ(Editor(choice).value<unsigned>(), 2u);
}

TEST(ParameterValue, IsTheDefaultIfNoEntryIsOfTheDefaultKind)
{
    Parameter choice = aDescription("p", 16, 7u, ParameterFlag::DefaultFromEntry);
    choice.entries = {{"a", "", "", 0, 1u}};

    EXPECT_EQ(Editor(choice).value<unsigned>(), 7u);
}

// --- writing values

TEST(ParameterSetValue, CreatesTheObject)
{
    Editor editor(intensity);

    EXPECT_TRUE(editor.controller.setValue(eleven));
    EXPECT_EQ(editor.text(), intensityOf("11"));
}

TEST(ParameterSetValue, AppendsBehindOtherParameters)
{
    const std::string other = aParameter("a", "0", aConstant("Bool", "1"));
    Editor editor(intensity, other);

    editor.controller.setValue(eleven);

    EXPECT_EQ(editor.text(), other + intensityOf("11"));
}

TEST(ParameterSetValue, ChangesTheObjectThatIsThere)
{
    Editor editor(intensity);
    editor.controller.setValue(eleven);

    EXPECT_TRUE(editor.controller.setValue(Float1{{12}}));
    EXPECT_EQ(editor.text(), intensityOf("12"));
}

TEST(ParameterSetValue, RunsNoCommandForThePresentValue)
{
    Editor editor(intensity, intensityOf("11"));

    EXPECT_FALSE(editor.controller.setValue(eleven));
    EXPECT_EQ(editor.history.size(), 0u);
}

TEST(ParameterSetValue, RunsNoCommandForTheDefaultOfWhatIsNotStored)
{
    Editor editor(intensity);

    EXPECT_FALSE(editor.controller.setValue(ten));
    EXPECT_EQ(editor.history.size(), 0u);
}

TEST(ParameterSetValue, ToTheDefaultRemovesTheObject)
{
    const std::string other = aParameter("a", "0", aConstant("Bool", "1"));
    Editor editor(intensity, intensityOf("11") + other);

    EXPECT_TRUE(editor.controller.setValue(ten));
    EXPECT_EQ(editor.text(), other);
}

TEST(ParameterSetValue, ToTheDefaultKeepsTheObjectInAnotherMode)
{
    Editor editor(tiling, aParameter("tiling", "0", aConstant("Int32", "1")));

    EXPECT_TRUE(editor.controller.setValue(3u));
    EXPECT_EQ(editor.text(), aParameter("tiling", "0", aConstant("Int32", "3")));
}

TEST(ParameterSetValue, StatesTheMode)
{
    Editor unstored(outputSize);
    Editor unstated(outputSize, aParameter("outputsize", "", aConstant("Int2", "1 1")));
    const Int2 value{{9, 8}};
    const std::string expected = aParameter("outputsize", "1", aConstant("Int2", "9 8"));

    unstored.controller.setValue(value);
    unstated.controller.setValue(value);

    EXPECT_EQ(unstored.text(), expected);
    EXPECT_EQ(unstated.text(), expected);
}

TEST(ParameterSetValue, ReplacesWhatIsComputed)
{
    Editor editor(intensity, aParameter("intensity", "0",
                                        aDynamicValue(1, aGetter(1, "get_float1", 256, "x"))));

    EXPECT_TRUE(editor.controller.setValue(eleven));
    EXPECT_EQ(editor.text(), intensityOf("11"));
    EXPECT_FALSE(editor.controller.isDynamic());
}

TEST(ParameterSetValue, ToTheDefaultRemovesWhatIsComputed)
{
    Editor editor(intensity, aParameter("intensity", "0",
                                        aDynamicValue(1, aGetter(1, "get_float1", 256, "x"))));

    EXPECT_TRUE(editor.controller.setValue(ten));
    EXPECT_EQ(editor.text(), "");
}

TEST(ParameterSetValue, ReplacesWhatIsStoredInAnotherShape)
{
    const std::string gray = aParameter("color", "0", aConstant("Float1", "0.5"));
    Editor editor(aDescription("color", 2304), gray);

    EXPECT_TRUE(editor.controller.setValue(Float4{}));
    EXPECT_EQ(editor.text(), "");
}

TEST(ParameterSetValue, LeavesADuplicateOfTheNameAlone)
{
    Editor editor(intensity, intensityOf("4") + intensityOf("5"));

    editor.controller.setValue(Float1{{6}});

    EXPECT_EQ(editor.text(), intensityOf("6") + intensityOf("5"));
}

TEST(ParameterSetValue, ThrowsForAnotherShape)
{
    Editor editor(intensity);

    EXPECT_THROW(editor.controller.setValue(11.0f), boost::bad_any_cast);
    EXPECT_THROW(editor.controller.setValue(boost::any()), boost::bad_any_cast);
    EXPECT_EQ(editor.history.size(), 0u);
}

TEST(ParameterSetValue, HasTheTextOfValueChanges)
{
    Editor editor(intensity);

    editor.controller.setValue(eleven);
    editor.controller.setValue(ten);

    const Lines twice(2, "PARAMETER_NAME_OF_intensity_VALUE_MODIFICATION_HISTORY_DESC");
    EXPECT_EQ(editor.history.names(), twice);
}

TEST(ParameterSetValue, RunsWithoutACommandManager)
{
    ParameterDocument document;
    ParameterController controller(ParameterController::ListBox(&document.parameters()), intensity,
                                   false);

    EXPECT_TRUE(controller.setValue(eleven));
    EXPECT_EQ(document.text(), intensityOf("11"));
}

struct TypeCase
{
    const char* name;
    unsigned type;
    boost::any value;
    std::string stored;
};

class ParameterType : public testing::TestWithParam<TypeCase>
{};

TEST_P(ParameterType, IsStoredInItsClass)
{
    Editor editor(aDescription("p", GetParam().type));

    EXPECT_TRUE(editor.controller.setValue(GetParam().value));
    EXPECT_EQ(editor.text(), aParameter("p", "0", GetParam().stored));
}

TEST_P(ParameterType, HasItsShapeByDefaultAndStored)
{
    Editor editor(aDescription("p", GetParam().type));
    EXPECT_EQ(editor.controller.value().type(), GetParam().value.type());

    editor.controller.setValue(GetParam().value);

    EXPECT_EQ(editor.controller.value().type(), GetParam().value.type());
    EXPECT_FALSE(editor.controller.setValue(GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(
    Types, ParameterType,
    testing::Values(
        TypeCase{"Bool", 4, true, aConstant("Bool", "1")},
        TypeCase{"Int1", 16, 5u, aConstant("Int32", "5")},
        TypeCase{"Int2", 32, Int2{{1, 2}}, aConstant("Int2", "1 2")},
        TypeCase{"Int3", 64, Int3{{1, 2, 3}}, aConstant("Int3", "1 2 3")},
        TypeCase{"Int4", 128, Orv::Data::Int4{{1, 2, 3, 4}}, aConstant("Int4", "1 2 3 4")},
        TypeCase{"Float1", 256, Float1{{0.5f}}, aConstant("Float1", "0.5")},
        TypeCase{"Float1OrImage", 258, Float1{{0.5f}}, aConstant("Float1", "0.5")},
        TypeCase{"Float2", 512, Orv::Data::Float2{{1, 2}}, aConstant("Float2", "1 2")},
        TypeCase{"Float3", 1024, Orv::Data::Float3{{1, 2, 3}}, aConstant("Float3", "1 2 3")},
        TypeCase{"Float4", 2048, Float4{{1, 2, 3, 4}}, aConstant("Float4", "1 2 3 4")},
        TypeCase{"Float4OrImage", 2049, Float4{{1, 2, 3, 4}}, aConstant("Float4", "1 2 3 4")},
        TypeCase{"Color", 2304, Float4{{1, 2, 3, 4}}, aConstant("Float4", "1 2 3 4")},
        TypeCase{"ColorOrImage", 2307, Float4{{1, 2, 3, 4}}, aConstant("Float4", "1 2 3 4")},
        TypeCase{"String", 32768, std::string("a"), aConstant("String", "a")}),
    caseName<TypeCase>);

class ParameterTypeWithoutModifier : public testing::TestWithParam<unsigned>
{};

TEST_P(ParameterTypeWithoutModifier, RefusesAllEdits)
{
    Editor editor(aDescription("p", GetParam(), {}, Inheritable));

    EXPECT_FALSE(editor.controller.setValue(std::string("a")));
    EXPECT_FALSE(editor.controller.setRelativeTo(Method::Absolute));
    editor.controller.linkToInput({"x", 256});

    EXPECT_TRUE(editor.controller.value().empty());
    EXPECT_EQ(editor.text(), "");
    EXPECT_EQ(editor.history.size(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Types, ParameterTypeWithoutModifier,
                         testing::Values(0u, 1u, 3u, 240u, 3840u, 4096u, 16384u, 65536u));

// --- writing modes

TEST(ParameterSetRelativeTo, StoresTheDefaultValueInTheNewMode)
{
    Editor editor(outputSize, {}, true);

    EXPECT_TRUE(editor.controller.setRelativeTo(Method::Absolute));
    EXPECT_EQ(editor.text(), aParameter("outputsize", "0", aConstant("Int2", "0 0")));
}

TEST(ParameterSetRelativeTo, RunsNoCommandForThePresentMode)
{
    Editor editor(outputSize);

    EXPECT_FALSE(editor.controller.setRelativeTo(Method::RelativeToInput));
    EXPECT_EQ(editor.history.size(), 0u);
}

TEST(ParameterSetRelativeTo, KeepsTheStoredValue)
{
    Editor editor(outputSize, aParameter("outputsize", "2", aConstant("Int2", "1 1")));

    EXPECT_TRUE(editor.controller.setRelativeTo(Method::Absolute));
    EXPECT_EQ(editor.text(), aParameter("outputsize", "0", aConstant("Int2", "1 1")));
}

TEST(ParameterSetRelativeTo, StoresTheValueThatWasInForceBefore)
{
    const Parameter relative =
        aDescription("p", 32, Int2{{9, 9}}, Inheritable | ParameterFlag::ZeroWhenRelative);
    Editor editor(relative);

    editor.controller.setRelativeTo(Method::Absolute);

    EXPECT_EQ(editor.text(), aParameter("p", "0", aConstant("Int2", "0 0")));
}

TEST(ParameterSetRelativeTo, BackToTheDefaultDropsTheValue)
{
    Editor editor(outputSize, aParameter("outputsize", "0", aConstant("Int2", "9 8")));

    EXPECT_TRUE(editor.controller.setRelativeTo(Method::RelativeToInput));
    EXPECT_EQ(editor.text(), "");
    EXPECT_EQ(editor.value<Int2>(), Int2{});
}

TEST(ParameterSetRelativeTo, KeepsWhatIsComputed)
{
    const std::string computed = aDynamicValue(1, aGetter(1, "get_integer2", 32, "x"));
    Editor editor(outputSize, aParameter("outputsize", "0", computed));

    EXPECT_TRUE(editor.controller.setRelativeTo(Method::RelativeToInput));
    EXPECT_EQ(editor.text(), aParameter("outputsize", "1", computed));
}

TEST(ParameterSetRelativeTo, KeepsWhatIsStoredInAnotherShape)
{
    const std::string gray = aConstant("Float1", "0.5");
    Editor editor(aDescription("color", 2304), aParameter("color", "0", gray));

    EXPECT_TRUE(editor.controller.setRelativeTo(Method::RelativeToParent));
    EXPECT_EQ(editor.text(), aParameter("color", "2", gray));
}

TEST(ParameterSetRelativeTo, HasTheTextOfModeChangesUnlessItRemoves)
{
    Editor editor(outputSize);

    editor.controller.setRelativeTo(Method::Absolute);
    editor.controller.setRelativeTo(Method::RelativeToInput);

    EXPECT_EQ(editor.history.names(),
              (Lines{"PARAMETER_NAME_OF_outputsize_RELATIVE_TO_MODIFICATION_HISTORY_DESC",
                     "PARAMETER_NAME_OF_outputsize_VALUE_MODIFICATION_HISTORY_DESC"}));
}

// --- links

TEST(ParameterLink, OfWhatIsNotStoredCreatesTheObject)
{
    const StandingUids uids;
    Editor editor(outputSize);

    editor.controller.linkToInput({"size", 32});

    EXPECT_EQ(editor.text(),
              aParameter("outputsize", "1",
                         aDynamicValue(1000, aGetter(1000, "get_integer2", 32, "size"))));
    EXPECT_TRUE(editor.controller.isDynamic());
    EXPECT_EQ(editor.history.names(),
              Lines{"PARAMETER_NAME_OF_outputsize_VALUE_MODIFICATION_HISTORY_DESC"});
}

TEST(ParameterLink, ReplacesTheConstant)
{
    const StandingUids uids;
    Editor editor(intensity, intensityOf("11", ""));

    editor.controller.linkToInput({"amount", 256});

    EXPECT_EQ(editor.text(),
              aParameter("intensity", "0",
                         aDynamicValue(1000, aGetter(1000, "get_float1", 256, "amount"))));
}

TEST(ParameterLink, TwiceLeavesOneNode)
{
    const StandingUids uids;
    Editor editor(intensity);

    editor.controller.linkToInput({"a", 256});
    editor.controller.linkToInput({"b", 256});

    EXPECT_EQ(
        editor.text(),
        aParameter("intensity", "0", aDynamicValue(1001, aGetter(1001, "get_float1", 256, "b"))));
}

TEST(ParameterLink, AvoidsTheUidsThatTheFunctionGraphHad)
{
    const StandingUids uids;
    Editor editor(intensity, aParameter("intensity", "0",
                                        aDynamicValue(1000, aGetter(1000, "sin", 256, "a"))));

    editor.controller.linkToInput({"b", 256});

    EXPECT_EQ(editor.text().find("1000"), std::string::npos);
}

TEST(ParameterLink, KeepsTheLayoutOfTheFunctionGraph)
{
    const StandingUids uids;
    const std::string layout = "<GUILayoutComp><gzoom v=\"2\"/></GUILayoutComp>";
    Editor editor(
        intensity,
        aParameter("intensity", "0", "<dynamicValue>" + layout + "<paramNodes/></dynamicValue>"));

    editor.controller.linkToInput({"b", 256});

    EXPECT_NE(editor.text().find(layout + "<rootnode><value v=\"1000\"/></rootnode>"),
              std::string::npos)
        << editor.text();
}

struct GetterCase
{
    const char* name;
    unsigned type;
    const char* function;
    unsigned output;
};

class ParameterLinkType : public testing::TestWithParam<GetterCase>
{};

TEST_P(ParameterLinkType, ReadsByItsGetter)
{
    const StandingUids uids;
    Editor editor(intensity);

    editor.controller.linkToInput({"x", GetParam().type});

    EXPECT_NE(editor.text().find(aGetter(1000, GetParam().function, GetParam().output, "x")),
              std::string::npos)
        << editor.text();
}

INSTANTIATE_TEST_SUITE_P(Types, ParameterLinkType,
                         testing::Values(GetterCase{"Bool", 4, "get_bool", 4},
                                         GetterCase{"Int1", 16, "get_integer1", 16},
                                         GetterCase{"Int2", 32, "get_integer2", 32},
                                         GetterCase{"Int3", 64, "get_integer3", 64},
                                         GetterCase{"Int4", 128, "get_integer4", 128},
                                         GetterCase{"Float1", 256, "get_float1", 256},
                                         GetterCase{"Float1OrImage", 258, "get_float1", 256},
                                         GetterCase{"Float2", 512, "get_float2", 512},
                                         GetterCase{"Float3", 1024, "get_float3", 1024},
                                         GetterCase{"Float4", 2048, "get_float4", 2048},
                                         GetterCase{"Float4OrImage", 2049, "get_float4", 2048},
                                         GetterCase{"Color", 2304, "get_float4", 2048},
                                         GetterCase{"ColorOrImage", 2307, "get_float4", 2048}),
                         caseName<GetterCase>);

class ParameterLinkTypeWithoutGetter : public testing::TestWithParam<unsigned>
{};

TEST_P(ParameterLinkTypeWithoutGetter, DoesNothing)
{
    Editor editor(intensity, intensityOf("11"));

    editor.controller.linkToInput({"x", GetParam()});

    EXPECT_EQ(editor.text(), intensityOf("11"));
    EXPECT_EQ(editor.history.size(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Types, ParameterLinkTypeWithoutGetter,
                         testing::Values(0u, 1u, 2u, 3u, 240u, 3840u, 16384u, 32768u));

// --- constants as functions

TEST(ParameterFunction, HasOneConstantOfThePresentValue)
{
    const StandingUids uids;
    Editor editor(intensity, intensityOf("11"));

    EXPECT_TRUE(editor.controller.makeDynamic());

    EXPECT_EQ(editor.text(), aParameter("intensity", "0",
                                        aDynamicValue(1000, aConstantNode(1000, "const_float1", 256,
                                                                          "Float1", "11"))));
    EXPECT_EQ(editor.history.size(), 1u);
}

TEST(ParameterFunction, HasTheDefaultOfWhatIsNotStoredAndItsMode)
{
    const StandingUids uids;
    Editor editor(outputSize);
    const boost::any before = editor.controller.value();

    EXPECT_TRUE(editor.controller.makeDynamic());

    EXPECT_EQ(editor.text(), aParameter("outputsize", "1",
                                        aDynamicValue(1000, aConstantNode(1000, "const_int2", 32,
                                                                          "Int2", "0 0"))));
    EXPECT_EQ(boost::any_cast<Int2>(before), Int2());
    EXPECT_NE(editor.controller.computedValue(), nullptr);
}

TEST(ParameterFunction, HoldsTheIndexOfAnItemAsANumber)
{
    const StandingUids uids;
    Editor editor(aDescription("mode", ValueType::Int1, Orv::Data::UInt{3}));

    EXPECT_TRUE(editor.controller.makeDynamic());

    EXPECT_NE(editor.text().find(aConstantNode(1000, "const_int1", 16, "Int1", "3")),
              std::string::npos)
        << editor.text();
}

TEST(ParameterFunction, OfAComputedValueStays)
{
    const std::string dynamic =
        aParameter("intensity", "0", aDynamicValue(7, aGetter(7, "get_float1", 256, "a")));
    Editor editor(intensity, dynamic);

    EXPECT_FALSE(editor.controller.makeDynamic());

    EXPECT_EQ(editor.text(), dynamic);
    EXPECT_EQ(editor.history.size(), 0u);
}

TEST(ParameterFunction, IsNotMadeOfATypeWithoutConstants)
{
    Editor editor(aDescription("x", ValueType::ColorImage, boost::any()));

    EXPECT_FALSE(editor.controller.makeDynamic());

    EXPECT_EQ(editor.history.size(), 0u);
}

TEST(ParameterFunction, IsNoneForAPlainValue)
{
    Editor editor(intensity, intensityOf("11"));

    EXPECT_EQ(editor.controller.computedValue(), nullptr);
}

// --- undo and redo

TEST(ParameterHistory, UndoGivesBackTheBytes)
{
    const StandingUids uids;
    Editor editor(outputSize,
                  aParameter("outputsize", "", aConstant("Int2", "1 1")) + intensityOf("4"));
    const std::string before = editor.packageText();
    editor.controller.setValue(Int2{{9, 8}});
    editor.controller.linkToInput({"x", 32});
    editor.controller.setRelativeTo(Method::RelativeToParent);
    editor.controller.linkToInput({"y", 32});
    editor.controller.setValue(Int2{{7, 7}});
    editor.controller.setRelativeTo(Method::RelativeToInput);
    editor.controller.linkToInput({"z", 32});
    const std::string after = editor.packageText();

    EXPECT_TRUE(editor.history.undoAll());
    EXPECT_EQ(editor.packageText(), before);
    EXPECT_TRUE(editor.history.redoAll());
    EXPECT_EQ(editor.packageText(), after);
    EXPECT_TRUE(editor.history.undoAll());
    EXPECT_EQ(editor.packageText(), before);
}

TEST(ParameterHistory, ValueFollowsUndoAndRedo)
{
    Editor editor(intensity);
    editor.controller.setValue(eleven);

    editor.history.undo();
    EXPECT_EQ(editor.controller.stored(), nullptr);
    EXPECT_EQ(editor.value<Float1>(), (Float1{{10}}));

    editor.history.redo();
    EXPECT_NE(editor.controller.stored(), nullptr);
    EXPECT_EQ(editor.value<Float1>(), (Float1{{11}}));
}

TEST(ParameterHistory, EditsWorkAfterUndo)
{
    Editor editor(intensity);
    editor.controller.setValue(eleven);
    editor.history.undo();

    EXPECT_TRUE(editor.controller.setValue(Float1{{12}}));
    EXPECT_EQ(editor.text(), intensityOf("12"));
}

TEST(ParameterHistory, OfALinkGivesTheConstantBack)
{
    Editor editor(intensity, intensityOf("11"));
    editor.controller.linkToInput({"x", 256});

    editor.history.undo();

    EXPECT_EQ(editor.text(), intensityOf("11"));
    EXPECT_FALSE(editor.controller.isDynamic());
}

// --- a list that is gone

TEST(ParameterOfADeadList, RefusesEdits)
{
    auto document = std::make_unique<ParameterDocument>(intensityOf("11"));
    ParameterController controller(ParameterController::ListBox(&document->parameters()), intensity,
                                   false);
    document.reset();

    EXPECT_FALSE(controller.setValue(Float1{{12}}));
    EXPECT_FALSE(controller.setRelativeTo(Method::RelativeToParent));
    controller.linkToInput({"x", 256});
    EXPECT_EQ(controller.stored(), nullptr);
    EXPECT_FALSE(controller.isDynamic());
}

// --- signals

TEST(ParameterSignalling, TellsValueAndMode)
{
    Editor editor(outputSize);
    const Subscriber subscriber(editor.controller);

    editor.controller.setValue(Int2{{9, 8}});
    editor.controller.setRelativeTo(Method::Absolute);

    EXPECT_EQ(subscriber.told, (Lines{"value", "relativeTo"}));
}

TEST(ParameterSignalling, TellsOfLinks)
{
    Editor editor(intensity, intensityOf("11"));
    const Subscriber subscriber(editor.controller);

    editor.controller.linkToInput({"x", 256});

    EXPECT_EQ(subscriber.told, (Lines{"value", "dynamic"}));
}

TEST(ParameterSignalling, TellsOfUndoAndRedo)
{
    Editor editor(intensity);
    editor.controller.setValue(eleven);
    const Subscriber subscriber(editor.controller);

    editor.history.undo();
    editor.history.redo();

    EXPECT_EQ(subscriber.told, (Lines{"value", "value"}));
}

TEST(ParameterSignalling, LeavesOtherParametersAlone)
{
    Editor editor(intensity);
    const Subscriber subscriber(editor.controller);
    ParameterController other(ParameterController::ListBox(&editor.document.parameters()), tiling,
                              false);

    other.setValue(1u);

    EXPECT_EQ(subscriber.told, Lines{});
}

TEST(ParameterSignalling, IsSilentForWhatIsRefused)
{
    Editor editor(intensity);
    const Subscriber subscriber(editor.controller);

    editor.controller.setValue(ten);
    editor.controller.setRelativeTo(Method::Absolute);

    EXPECT_EQ(subscriber.told, Lines{});
}

TEST(ParameterSignalling, EndsWithTheController)
{
    ParameterDocument document;
    auto controller = std::make_unique<ParameterController>(
        ParameterController::ListBox(&document.parameters()), intensity, false);
    const Subscriber subscriber(*controller);
    controller.reset();
    ParameterController other(ParameterController::ListBox(&document.parameters()), intensity,
                              false);

    EXPECT_TRUE(other.setValue(eleven));
    EXPECT_EQ(subscriber.told, Lines{});
}

TEST(ParameterDescription, CanBeReplaced)
{
    Editor editor(intensity, aParameter("intensity", "0", aConstant("Int2", "1 2")));
    const Subscriber subscriber(editor.controller);
    const Parameter anew = aDescription("intensity", 32, Int2{}, Inheritable);

    editor.controller.setDescription(anew, true);

    EXPECT_EQ(editor.value<Int2>(), (Int2{{1, 2}}));
    EXPECT_EQ(editor.controller.modifier()->defaultMode(), Method::RelativeToParent);
    EXPECT_EQ(subscriber.told, Lines{"value"});
}

#include "ksx/core/parameterscontroller.h"

#include "data/desc/descriptiontables.h"
#include "data/desc/filtertable.h"
#include "ksx/core/lazysignalconnect.h"
#include "support/parameterdocument.h"
#include "support/undohistory.h"
#include <gtest/gtest.h>

using namespace Ksx::Core;
using namespace Ksx::Data::Desc;
using Orv::Data::Float1;
using Orv::Data::Int2;
using TestSupport::aConstant;
using TestSupport::aDescription;
using TestSupport::aGroupOf;
using TestSupport::aParameter;
using TestSupport::ParameterDocument;
using TestSupport::UndoHistory;

namespace {

using Lines = std::vector<std::string>;
using Method = InheritanceMethod;

const boost::any eleven = Float1{{11}};

Parameter connector(const std::string& identifier, unsigned type)
{
    return aDescription(identifier, type);
}

// The parameters of a live document, under the groups of a description.
struct Editor
{
    explicit Editor(ParametersController::Groups groups, bool hasPrimaryInput = true)
        : controller(document.parameters(), DataContext(), std::move(groups), hasPrimaryInput)
    {}

    Lines identifiers()
    {
        Lines names;
        for (std::size_t i = 0; i < controller.count(); ++i)
            names.push_back(controller.at(i).identifier());
        return names;
    }

    ParameterDocument document;
    UndoHistory history;
    ParametersController controller;
};

// What setDescriptions() announces, a line each.
struct Subscriber
{
    explicit Subscriber(ParametersController& controller)
    {
        controller.parameterRemoved().connect(
            [this](std::size_t index) { told.push_back("removed " + std::to_string(index)); });
        controller.parameterAdded().connect(
            [this](std::size_t index) { told.push_back("added " + std::to_string(index)); });
    }

    Lines told;
};

ParametersController::Groups groupsOf(const Filter& filter)
{
    return {DescriptionTables::instance().commonParameters(), filter.groups.front()};
}

ParametersController::Groups groupsOf(FilterKind kind)
{
    return groupsOf(*DescriptionTables::instance().filters().find(kind));
}

} // namespace

TEST(ParametersController, HasARowForEachDescriptionInTheOrderOfTheGroups)
{
    Editor editor({aGroupOf({aDescription("a", 4), aDescription("b", 16)}),
                   aGroupOf({aDescription("c", 256)})});

    EXPECT_EQ(editor.identifiers(), (Lines{"a", "b", "c"}));
}

TEST(ParametersController, HasNoRowsForConnectors)
{
    Editor editor({aGroupOf({connector("color", 1), connector("gray", 2), connector("any", 3),
                             connector("fx", 4096), aDescription("background", 2307)})});

    EXPECT_EQ(editor.identifiers(), Lines{"background"});
    EXPECT_EQ(editor.controller.parameter("gray"), nullptr);
}

TEST(ParametersController, HasRowsThatRefuseEditsForTypesWithoutModifier)
{
    Editor editor({aGroupOf({aDescription("pattern", 65536), aDescription("text", 16384)})});

    EXPECT_EQ(editor.identifiers(), (Lines{"pattern", "text"}));
    EXPECT_FALSE(editor.controller.parameter("text")->setValue(std::string("a")));
}

TEST(ParametersController, FindsARowByIdentifierOrDescription)
{
    const auto group = aGroupOf({aDescription("a", 4), aDescription("b", 16)});
    Editor editor({group});
    ParameterController* const row = editor.controller.parameter("b");

    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->identifier(), "b");
    EXPECT_EQ(editor.controller.parameter(*group->find("b")), row);
    EXPECT_EQ(&editor.controller.at(1), row);
}

TEST(ParametersController, FindsNoRowForWhatIsNotDescribed)
{
    Editor editor({aGroupOf({aDescription("a", 4)})});

    EXPECT_EQ(editor.controller.parameter("A"), nullptr);
    EXPECT_EQ(editor.controller.parameter(aDescription("a", 4)), nullptr);
}

TEST(ParametersController, FindsTheFirstOfSeveralRowsOfOneIdentifier)
{
    const auto group = aGroupOf({aDescription("a", 4), aDescription("a", 256)});
    Editor editor({group});

    EXPECT_EQ(editor.controller.parameter("a")->description().type, 4u);
    EXPECT_EQ(editor.controller.parameter(*group->parameters()[1])->description().type, 256u);
    EXPECT_EQ(editor.controller.count(), 2u);
}

TEST(ParametersController, EditsTheListOfTheDocument)
{
    Editor editor({aGroupOf({aDescription("a", 256)})});

    EXPECT_TRUE(editor.controller.parameter("a")->setValue(eleven));
    EXPECT_EQ(editor.document.text(), aParameter("a", "0", aConstant("Float1", "11")));
}

TEST(ParametersController, KeepsItsContext)
{
    ParameterDocument document;
    const DataContext context(std::vector<DataContext::Box>{DataContext::Box(&document.package())});
    const ParametersController controller(document.parameters(), context, {}, false);

    ASSERT_EQ(controller.context().objects().size(), 1u);
    EXPECT_EQ(controller.context().objects()[0].get(), &document.package());
}

TEST(ParametersController, MayOutliveItsList)
{
    auto document = std::make_unique<ParameterDocument>();
    ParametersController controller(document->parameters(), {},
                                    {aGroupOf({aDescription("a", 256)})}, false);
    document.reset();

    EXPECT_FALSE(controller.parameter("a")->setValue(eleven));
}

TEST(ParametersController, KeepsDescriptionsAlive)
{
    Editor editor({aGroupOf({aDescription("a", 256)})});

    EXPECT_EQ(editor.controller.parameter("a")->description().nameKey, "NAME_OF_a");
}

// --- filters

TEST(ParametersOfAFilter, CommonOnesFollowTheInput)
{
    Editor editor(groupsOf(FilterKind::Blur));

    EXPECT_EQ(editor.controller.parameter("outputsize")->relativeTo(), Method::RelativeToInput);
    EXPECT_EQ(editor.controller.parameter("tiling")->relativeTo(), Method::RelativeToInput);
    EXPECT_EQ(editor.controller.parameter("intensity")->relativeTo(), Method::Absolute);
}

TEST(ParametersOfAFilter, CommonOnesFollowTheParentWithoutAnInput)
{
    Editor editor(groupsOf(FilterKind::Bitmap), false);

    EXPECT_EQ(editor.controller.parameter("outputsize")->relativeTo(), Method::RelativeToParent);
}

TEST(ParametersOfAFilter, TilingIsBothWaysUnlessItIsSet)
{
    Editor editor(groupsOf(FilterKind::Transformation));

    EXPECT_FALSE(editor.controller.parameter("tiling")->setValue(3u));
    EXPECT_TRUE(editor.controller.parameter("tiling")->setValue(0u));
    EXPECT_EQ(editor.document.text(), aParameter("tiling", "1", aConstant("Int32", "0")));
}

TEST(ParametersOfAFilter, AbsoluteSizeOfABitmapIsStoredEvenIfItIsZero)
{
    Editor editor(groupsOf(FilterKind::Bitmap), false);
    ParameterController& size = *editor.controller.parameter("outputsize");

    EXPECT_TRUE(size.setRelativeTo(Method::Absolute));
    EXPECT_FALSE(size.setValue(Int2{}));
    EXPECT_EQ(editor.document.text(), aParameter("outputsize", "0", aConstant("Int2", "0 0")));
}

TEST(ParametersOfAFilter, PathOfABitmapIsText)
{
    Editor editor(groupsOf(FilterKind::Bitmap), false);

    editor.controller.parameter("bitmapresourcepath")->setValue(std::string("pkg://a"));
    editor.controller.parameter("colorswitch")->setValue(false);

    EXPECT_EQ(editor.document.text(),
              aParameter("bitmapresourcepath", "0", aConstant("String", "pkg://a")) +
                  aParameter("colorswitch", "0", aConstant("Bool", "0")));
}

// --- being described anew

TEST(ParametersDescribedAnew, HaveTheNewRows)
{
    Editor editor({aGroupOf({aDescription("a", 4), aDescription("b", 16)})});
    editor.controller.parameter("b");

    editor.controller.setDescriptions({aGroupOf({aDescription("c", 4), aDescription("b", 16)})},
                                      true);

    EXPECT_EQ(editor.identifiers(), (Lines{"c", "b"}));
    EXPECT_EQ(editor.controller.parameter("a"), nullptr);
}

TEST(ParametersDescribedAnew, KeepTheRowsOfTheirIdentifiers)
{
    Editor editor({aGroupOf({aDescription("a", 4), aDescription("b", 16)})});
    ParameterController* const row = editor.controller.parameter("b");
    const auto anew = aGroupOf({aDescription("b", 256)});

    editor.controller.setDescriptions({anew}, true);

    EXPECT_EQ(editor.controller.parameter("b"), row);
    EXPECT_EQ(&row->description(), anew->find("b"));
    EXPECT_TRUE(row->setValue(eleven));
}

TEST(ParametersDescribedAnew, KeepRowsOfOneIdentifierInOrder)
{
    Editor editor({aGroupOf({aDescription("a", 4), aDescription("a", 16)})});
    ParameterController* const first = &editor.controller.at(0);
    ParameterController* const second = &editor.controller.at(1);

    editor.controller.setDescriptions({aGroupOf({aDescription("a", 4), aDescription("a", 16)})},
                                      true);

    EXPECT_EQ(&editor.controller.at(0), first);
    EXPECT_EQ(&editor.controller.at(1), second);
}

TEST(ParametersDescribedAnew, LeaveStoredValuesAlone)
{
    Editor editor({aGroupOf({aDescription("a", 256)})});
    editor.controller.parameter("a")->setValue(eleven);
    const std::string before = editor.document.text();

    editor.controller.setDescriptions({}, true);

    EXPECT_EQ(editor.document.text(), before);
    EXPECT_EQ(editor.history.size(), 1u);
}

TEST(ParametersDescribedAnew, FollowWhetherThereIsAPrimaryInput)
{
    const auto group = aGroupOf({aDescription("a", 256, {}, ParameterFlag::Inheritable)});
    Editor editor({group});
    ParameterController* const row = editor.controller.parameter("a");

    editor.controller.setDescriptions({group}, false);

    EXPECT_EQ(row->relativeTo(), Method::RelativeToParent);
}

TEST(ParametersDescribedAnew, AreAnnounced)
{
    Editor editor({aGroupOf({aDescription("a", 4), aDescription("b", 4), aDescription("c", 4)})});
    const Subscriber subscriber(editor.controller);

    editor.controller.setDescriptions(
        {aGroupOf({connector("in", 1), aDescription("x", 4), aDescription("b", 4)}),
         aGroupOf({aDescription("y", 4)})},
        true);

    EXPECT_EQ(subscriber.told, (Lines{"removed 2", "removed 0", "added 0", "added 2"}));
}

TEST(ParametersDescribedAnew, TheSameWayAreNotAnnounced)
{
    const auto group = aGroupOf({aDescription("a", 4), aDescription("a", 4)});
    Editor editor({group});
    const Subscriber subscriber(editor.controller);

    editor.controller.setDescriptions({group}, true);

    EXPECT_EQ(subscriber.told, Lines{});
}

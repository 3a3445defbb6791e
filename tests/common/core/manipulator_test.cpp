// What each write of a manipulator changes, records, tells and refuses.
#include "core/historyscratch.h"
#include "core/manipulatorbase.h"
#include "data/shadowobject.h"
#include "support/editing.h"
#include "support/shelfcases.h"

#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <gtest/gtest.h>
#include <limits>

using Orv::Core::ExceptionOutOfBounds;
using Orv::Core::ManipulatorAttribute;
using Orv::Core::ManipulatorBaseObject;
using Orv::Core::ManipulatorFactory;
using Orv::Core::ManipulatorFactoryBase;
using Orv::Core::ManipulatorStructBaseObject;
using Orv::Data::BaseObject;
using Orv::Data::DataPointerBox;
using Orv::Data::Text;
using TestDocument::Book;
using TestDocument::Bulb;
using TestDocument::Candle;
using TestDocument::Float3;
using namespace TestSupport;

namespace {

class Manipulator : public testing::Test
{
protected:
    // Edits the root, and keeps the number of items that this left in the history.
    template <class Edit>
    void editRoot(Edit function)
    {
        edit([&](ManipulatorContext& context) {
            const auto keepCount = [&] { recorded = context.historySize(); };
            try {
                function(ShelfEdit(library.root, context));
            } catch (...) {
                keepCount();
                throw;
            }
            keepCount();
        });
    }
    const TestDocument::Shelf& root() const { return library.root; }

    Library library;
    RecordingListener listener;
    std::size_t recorded = 99;
};

using ManipulatorAttributes = Manipulator;
using ManipulatorLists = Manipulator;
using ManipulatorUnions = Manipulator;
using ManipulatorStructs = Manipulator;

std::vector<std::unique_ptr<BaseObject>> books(std::unique_ptr<Book> first,
                                               std::unique_ptr<Book> second)
{
    std::vector<std::unique_ptr<BaseObject>> items;
    items.push_back(std::move(first));
    items.push_back(std::move(second));
    return items;
}

} // namespace

// Attributes.

TEST_F(ManipulatorAttributes, SetWritesTheValue)
{
    editRoot([](ShelfEdit shelf) { shelf.name().set("new"); });
    EXPECT_EQ(root().name().get(), "new");
}

TEST_F(ManipulatorAttributes, SetRecordsAndTellsAnEqualValueToo)
{
    attach(root().name(), listener);
    editRoot([](ShelfEdit shelf) { shelf.name().set("root"); });
    EXPECT_EQ(recorded, 1u);
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(ManipulatorAttributes, SetIfChangedWritesAnotherValue)
{
    bool isWritten = false;
    editRoot([&](ShelfEdit shelf) { isWritten = shelf.name().setIfChanged("new"); });
    EXPECT_TRUE(isWritten);
    EXPECT_EQ(root().name().get(), "new");
}

TEST_F(ManipulatorAttributes, SetIfChangedToThePresentValueLeavesNoTrace)
{
    attach(root().name(), listener);
    bool isWritten = true;
    editRoot([&](ShelfEdit shelf) { isWritten = shelf.name().setIfChanged("root"); });
    EXPECT_FALSE(isWritten);
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorAttributes, SetIfChangedToNanAlwaysWrites)
{
    constexpr float Nan = std::numeric_limits<float>::quiet_NaN();
    bool isWritten = false;
    editRoot([&](ShelfEdit shelf) {
        shelf.spot().set(Float3{{Nan, 0, 0}});
        isWritten = shelf.spot().setIfChanged(Float3{{Nan, 0, 0}});
    });
    EXPECT_TRUE(isWritten);
}

TEST_F(ManipulatorAttributes, SetFromStringReadsTheTextOfAFile)
{
    editRoot([](ShelfEdit shelf) { shelf.spot().setFromString("1,2,3"); });
    EXPECT_EQ(root().spot().get(), (Float3{1.f, 2.f, 3.f}));
}

TEST_F(ManipulatorAttributes, SetFromStringOfABadTextLeavesNoTrace)
{
    attach(root(), listener);
    EXPECT_THROW(editRoot([](ShelfEdit shelf) { shelf.uid().setFromString("many"); }),
                 boost::bad_lexical_cast);
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorAttributes, GetValueHoldsTheTypeOfTheAttribute)
{
    Text value;
    editRoot([&](ShelfEdit shelf) { value = boost::any_cast<Text>(shelf.name().getValue()); });
    EXPECT_EQ(value, "root");
}

TEST_F(ManipulatorAttributes, SetValueTakesTheTypeOfTheAttribute)
{
    editRoot([](ShelfEdit shelf) { shelf.name().setValue(Text("new")); });
    EXPECT_EQ(root().name().get(), "new");
}

TEST_F(ManipulatorAttributes, SetValueOfAnotherTypeLeavesNoTrace)
{
    attach(root(), listener);
    EXPECT_THROW(editRoot([](ShelfEdit shelf) { shelf.uid().setValue(7); }), boost::bad_any_cast);
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorAttributes, SetValueOfNothingIsRefused)
{
    EXPECT_THROW(editRoot([](ShelfEdit shelf) { shelf.uid().setValue({}); }), boost::bad_any_cast);
}

TEST_F(ManipulatorAttributes, ResetSetsTheDeclaredDefault)
{
    library.root.level().assign(3);
    editRoot([](ShelfEdit shelf) { shelf.level().resetToDefault(); });
    EXPECT_EQ(root().level().get(), 7u);
}

TEST_F(ManipulatorAttributes, ResetSetsZeroWhereNoDefaultIsDeclared)
{
    library.root.uid().assign(3);
    editRoot([](ShelfEdit shelf) { shelf.uid().resetToDefault(); });
    EXPECT_EQ(root().uid().get(), 0u);
}

// Lists.

TEST_F(ManipulatorLists, InsertedItemsStandBeforeTheIndex)
{
    editRoot([](ShelfEdit shelf) { shelf.books().insert(1, books(aBook("x"), aBook("y"))); });
    EXPECT_EQ(titlesOf(root()), "a x y b c");
}

TEST_F(ManipulatorLists, InsertedItemsBelongToTheList)
{
    editRoot([](ShelfEdit shelf) { shelf.books().insert(1, books(aBook("x"), aBook("y"))); });
    EXPECT_EQ(root().books().at(2).getParent(), &root().books());
}

TEST_F(ManipulatorLists, InsertIsOneItemOfHistoryAndOneEvent)
{
    attach(root().books(), listener);
    editRoot([](ShelfEdit shelf) { shelf.books().insert(1, books(aBook("x"), aBook("y"))); });
    EXPECT_EQ(recorded, 1u);
    EXPECT_EQ(listener.told, Journal{"8 K1 I2"});
}

TEST_F(ManipulatorLists, InsertAtTheEndIsAllowed)
{
    editRoot([](ShelfEdit shelf) { shelf.books().insert(3, books(aBook("x"), aBook("y"))); });
    EXPECT_EQ(titlesOf(root()), "a b c x y");
}

TEST_F(ManipulatorLists, InsertBehindTheEndLeavesNoTrace)
{
    attach(root().books(), listener);
    EXPECT_THROW(
        editRoot([](ShelfEdit shelf) { shelf.books().insert(4, books(aBook("x"), aBook("y"))); }),
        ExceptionOutOfBounds);
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorLists, InsertPutsOneItemBeforeTheIndex)
{
    editRoot([](ShelfEdit shelf) { shelf.books().insert(1, aBook("x")); });
    EXPECT_EQ(titlesOf(root()), "a x b c");
    EXPECT_EQ(recorded, 1u);
}

TEST_F(ManipulatorLists, InsertByIteratorAnswersThePlaceBehind)
{
    std::string behind;
    editRoot([&](ShelfEdit shelf) {
        auto list = shelf.books();
        behind = (*list.insert(list.begin(), aBook("x"))).get()->title().get();
    });
    EXPECT_EQ(titlesOf(root()), "x a b c");
    EXPECT_EQ(behind, "a");
}

TEST_F(ManipulatorLists, PushBackAppends)
{
    editRoot([](ShelfEdit shelf) { shelf.books().pushBack(aBook("x")); });
    EXPECT_EQ(titlesOf(root()), "a b c x");
}

TEST_F(ManipulatorLists, EraseTakesTheRangeOut)
{
    editRoot([](ShelfEdit shelf) { shelf.books().erase(0, 2); });
    EXPECT_EQ(titlesOf(root()), "c");
}

TEST_F(ManipulatorLists, EraseFindsTheItemOfABox)
{
    const DataPointerBox<Book> second(&root().books().at(1));
    bool isErased = false;
    editRoot([&](ShelfEdit shelf) { isErased = shelf.books().erase(second); });
    EXPECT_TRUE(isErased);
    EXPECT_EQ(titlesOf(root()), "a c");
    EXPECT_EQ(recorded, 1u);
}

TEST_F(ManipulatorLists, EraseOfADeadItemLeavesNoTrace)
{
    auto dying = aBook("dying");
    const DataPointerBox<Book> dead(dying.get());
    dying.reset();
    bool isErased = true;
    editRoot([&](ShelfEdit shelf) { isErased = shelf.books().erase(dead); });
    EXPECT_FALSE(isErased);
    EXPECT_EQ(recorded, 0u);
}

TEST_F(ManipulatorLists, EraseOfAnItemOfAnotherListLeavesNoTrace)
{
    const auto other = aBook("a");
    attach(root().books(), listener);
    bool isErased = true;
    editRoot([&](ShelfEdit shelf) { isErased = shelf.books().erase(other.get()); });
    EXPECT_FALSE(isErased);
    EXPECT_EQ(titlesOf(root()), "a b c");
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorLists, ErasedItemsHaveNoParent)
{
    const DataPointerBox<Book> box(&library.book(1));
    const auto command =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).books().erase(1, 1); });
    command->execute();
    EXPECT_EQ(box->getParent(), nullptr);
}

TEST_F(ManipulatorLists, EraseOfAllIsOneItemOfHistoryAndOneEvent)
{
    attach(root().books(), listener);
    editRoot([](ShelfEdit shelf) { shelf.books().erase(0, 3); });
    EXPECT_EQ(recorded, 1u);
    EXPECT_EQ(listener.told, Journal{"16 E3"});
}

TEST_F(ManipulatorLists, EraseByIteratorsAnswersThePlaceBehind)
{
    std::string behind;
    editRoot([&](ShelfEdit shelf) {
        auto list = shelf.books();
        behind = (*list.erase(list.begin(), ++list.begin())).get()->title().get();
    });
    EXPECT_EQ(titlesOf(root()), "b c");
    EXPECT_EQ(behind, "b");
}

TEST_F(ManipulatorLists, ClearErasesEverything)
{
    attach(root().books(), listener);
    editRoot([](ShelfEdit shelf) { shelf.books().clear(); });
    EXPECT_TRUE(root().books().isEmpty());
    EXPECT_EQ(listener.told, Journal{"16 E3"});
}

TEST_F(ManipulatorLists, ClearOfAnEmptyListDoesNothing)
{
    attach(library.inner().books(), listener);
    edit([&](ManipulatorContext& context) {
        ShelfEdit(library.inner(), context).books().clear();
        recorded = context.historySize();
    });
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorLists, MoveByNothingDoesNothing)
{
    attach(root().books(), listener);
    editRoot([](ShelfEdit shelf) { shelf.books().move(0, 0); });
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorLists, MoveKeepsTheItem)
{
    const DataPointerBox<Book> box(&library.book(0));
    editRoot([](ShelfEdit shelf) { shelf.books().move(0, 2); });
    EXPECT_EQ(box.get(), &root().books().at(2));
    EXPECT_EQ(box->getParent(), &root().books());
}

TEST_F(ManipulatorLists, MoveIsOneItemOfHistoryAndOneEvent)
{
    attach(root().books(), listener);
    editRoot([](ShelfEdit shelf) { shelf.books().move(2, -1); });
    EXPECT_EQ(recorded, 1u);
    EXPECT_EQ(listener.told, Journal{"128 K1 H1+2 K1 A1-2"});
}

struct MoveCase
{
    const char* name;
    std::size_t index;
    std::ptrdiff_t offset;
    const char* titles;
};

class ManipulatorListMove : public ManipulatorLists, public testing::WithParamInterface<MoveCase>
{};

TEST_P(ManipulatorListMove, PutsTheItemAtItsNewIndex)
{
    editRoot([](ShelfEdit shelf) { shelf.books().move(GetParam().index, GetParam().offset); });
    EXPECT_EQ(titlesOf(root()), GetParam().titles);
}

INSTANTIATE_TEST_SUITE_P(Places, ManipulatorListMove,
                         testing::Values(MoveCase{"FirstToLast", 0, 2, "b c a"},
                                         MoveCase{"LastToFirst", 2, -2, "c a b"},
                                         MoveCase{"OneOn", 0, 1, "b a c"},
                                         MoveCase{"OneBack", 2, -1, "a c b"},
                                         MoveCase{"MiddleToFirst", 1, -1, "b a c"}),
                         caseName<MoveCase>);

struct OutOfBoundsCase
{
    const char* name;
    void (*edit)(ShelfEdit);
};

class ManipulatorListBounds : public ManipulatorLists,
                              public testing::WithParamInterface<OutOfBoundsCase>
{};

TEST_P(ManipulatorListBounds, AreKeptWithoutATrace)
{
    attach(root().books(), listener);
    EXPECT_THROW(editRoot(GetParam().edit), ExceptionOutOfBounds);
    EXPECT_EQ(titlesOf(root()), "a b c");
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

constexpr std::ptrdiff_t Lowest = std::numeric_limits<std::ptrdiff_t>::min();
constexpr std::ptrdiff_t Highest = std::numeric_limits<std::ptrdiff_t>::max();

INSTANTIATE_TEST_SUITE_P(
    Edits, ManipulatorListBounds,
    testing::Values(
        OutOfBoundsCase{"InsertBehindTheEnd", [](ShelfEdit s) { s.books().insert(4, aBook("x")); }},
        OutOfBoundsCase{"ReorderTooFew",
                        [](ShelfEdit s) {
                            s.books().reorder({1, 0});
                        }},
        OutOfBoundsCase{"ReorderTooMany",
                        [](ShelfEdit s) {
                            s.books().reorder({2, 1, 0, 3});
                        }},
        OutOfBoundsCase{"ReorderOnePlaceTwice",
                        [](ShelfEdit s) {
                            s.books().reorder({1, 1, 0});
                        }},
        OutOfBoundsCase{"EraseTooMany", [](ShelfEdit s) { s.books().erase(1, 3); }},
        OutOfBoundsCase{"EraseBehindTheEnd", [](ShelfEdit s) { s.books().erase(4, 0); }},
        OutOfBoundsCase{"EraseMoreThanCanBeAdded",
                        [](ShelfEdit s) { s.books().erase(1, SIZE_MAX); }},
        OutOfBoundsCase{"MoveBeforeTheBegin", [](ShelfEdit s) { s.books().move(0, -1); }},
        OutOfBoundsCase{"MoveBehindTheEnd", [](ShelfEdit s) { s.books().move(2, 1); }},
        OutOfBoundsCase{"MoveNoItem", [](ShelfEdit s) { s.books().move(3, 0); }},
        OutOfBoundsCase{"MoveByTheLowestNumber", [](ShelfEdit s) { s.books().move(1, Lowest); }},
        OutOfBoundsCase{"MoveByTheHighestNumber", [](ShelfEdit s) { s.books().move(1, Highest); }}),
    caseName<OutOfBoundsCase>);

TEST(ExceptionOutOfBoundsText, IsFixed)
{
    EXPECT_STREQ(ExceptionOutOfBounds().what(), "out of bounds");
}

struct ReorderCase
{
    const char* name;
    std::vector<std::size_t> order;
    const char* titles;
};

class ManipulatorListReorder : public ManipulatorLists,
                               public testing::WithParamInterface<ReorderCase>
{};

TEST_P(ManipulatorListReorder, MovesEachItemToItsPlace)
{
    library.root.books().pushBack(aBook("d"));
    editRoot([](ShelfEdit shelf) { shelf.books().reorder(GetParam().order); });
    EXPECT_EQ(titlesOf(root()), GetParam().titles);
}

TEST_P(ManipulatorListReorder, IsOneItemOfHistory)
{
    library.root.books().pushBack(aBook("d"));
    editRoot([](ShelfEdit shelf) { shelf.books().reorder(GetParam().order); });
    EXPECT_EQ(recorded, 1u);
}

INSTANTIATE_TEST_SUITE_P(Orders, ManipulatorListReorder,
                         testing::Values(ReorderCase{"Backward", {3, 2, 1, 0}, "d c b a"},
                                         ReorderCase{"TwoPairs", {1, 0, 3, 2}, "b a d c"},
                                         ReorderCase{"FirstToLast", {1, 2, 3, 0}, "b c d a"},
                                         ReorderCase{"LastToFirst", {3, 0, 1, 2}, "d a b c"}),
                         caseName<ReorderCase>);

TEST_F(ManipulatorLists, ReorderIntoThePresentOrderLeavesNoTrace)
{
    attach(root().books(), listener);
    editRoot([](ShelfEdit shelf) { shelf.books().reorder({0, 1, 2}); });
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorLists, ReorderKeepsTheItems)
{
    const Book* const first = &root().books().at(0);
    editRoot([](ShelfEdit shelf) { shelf.books().reorder({2, 1, 0}); });
    EXPECT_EQ(&root().books().at(2), first);
}

struct SpliceCase
{
    const char* name;
    std::size_t to;
    std::size_t first;
    std::size_t last;
    const char* titles;
};

class ManipulatorListSplice : public ManipulatorLists,
                              public testing::WithParamInterface<SpliceCase>
{};

TEST_P(ManipulatorListSplice, KeepsTheOrderOfTheRange)
{
    library.root.books().pushBack(aBook("d"));
    editRoot([](ShelfEdit shelf) {
        auto list = shelf.books();
        const auto at = [&](std::size_t index) { return decltype(list)::iterator(list, index); };
        list.splice(at(GetParam().to), at(GetParam().first), at(GetParam().last));
    });
    EXPECT_EQ(titlesOf(root()), GetParam().titles);
}

INSTANTIATE_TEST_SUITE_P(Places, ManipulatorListSplice,
                         testing::Values(SpliceCase{"Forward", 4, 0, 2, "c d a b"},
                                         SpliceCase{"Backward", 0, 2, 4, "c d a b"},
                                         SpliceCase{"OverOne", 3, 0, 2, "c a b d"},
                                         SpliceCase{"OneItem", 1, 3, 4, "a d b c"},
                                         SpliceCase{"Nothing", 0, 2, 2, "a b c d"},
                                         SpliceCase{"BehindItself", 2, 0, 2, "a b c d"}),
                         caseName<SpliceCase>);

TEST_F(ManipulatorLists, IteratorsVisitEachItem)
{
    editRoot([](ShelfEdit shelf) {
        for (const auto& book : shelf.books())
            book.title().set(book.get()->title().get() + "!");
    });
    EXPECT_EQ(titlesOf(root()), "a! b! c!");
}

TEST_F(ManipulatorLists, IteratorsFollowTheirItem)
{
    std::size_t index = 99;
    editRoot([&](ShelfEdit shelf) {
        auto list = shelf.books();
        const auto place = ++list.begin();
        list.insert(0, books(aBook("x"), aBook("y")));
        index = place.index();
    });
    EXPECT_EQ(index, 3u);
}

TEST_F(ManipulatorLists, TheEndFollowsTheSize)
{
    std::size_t index = 99;
    editRoot([&](ShelfEdit shelf) {
        auto list = shelf.books();
        const auto end = list.end();
        list.erase(0, 1);
        index = end.index();
    });
    EXPECT_EQ(index, 2u);
}

// Unions.

TEST_F(ManipulatorUnions, SetOnAnEmptyUnionAdoptsTheChild)
{
    editRoot([](ShelfEdit shelf) { shelf.lamp().set(std::make_unique<Candle>()); });
    ASSERT_NE(root().lamp().get(), nullptr);
    EXPECT_EQ(root().lamp().get()->getParent(), &root().lamp());
}

TEST_F(ManipulatorUnions, SetToNothingEmptiesTheUnion)
{
    library.root.lamp().set(std::make_unique<Candle>());
    editRoot([](ShelfEdit shelf) { shelf.lamp().set(nullptr); });
    EXPECT_TRUE(root().lamp().isEmpty());
}

TEST_F(ManipulatorUnions, SetToNothingOnAnEmptyUnionDoesNothing)
{
    attach(root().lamp(), listener);
    editRoot([](ShelfEdit shelf) { shelf.lamp().set(nullptr); });
    EXPECT_EQ(recorded, 0u);
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(ManipulatorUnions, SetRecordsOneItem)
{
    library.root.lamp().set(std::make_unique<Candle>());
    editRoot([](ShelfEdit shelf) { shelf.lamp().set(std::make_unique<Bulb>()); });
    EXPECT_EQ(recorded, 1u);
}

TEST_F(ManipulatorUnions, TheFormerChildLosesItsParent)
{
    library.root.lamp().set(std::make_unique<Candle>());
    const DataPointerBox<BaseObject> box(root().lamp().get());
    const auto command =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).lamp().set(nullptr); });
    command->execute();
    EXPECT_EQ(box->getParent(), nullptr);
}

TEST_F(ManipulatorUnions, TheChildCanBeWritten)
{
    library.root.lamp().set(std::make_unique<Candle>());
    editRoot([](ShelfEdit shelf) { shelf.lamp().child<Candle>().wicks().set(3); });
    EXPECT_EQ(static_cast<const Candle&>(*root().lamp().get()).wicks().get(), 3u);
}

// Structures and any object.

TEST_F(ManipulatorStructs, MembersAreWrittenThroughTheirGetters)
{
    editRoot([](ShelfEdit shelf) { shelf.cover().color().set("red"); });
    EXPECT_EQ(root().cover().color().get(), "red");
}

TEST_F(ManipulatorStructs, GiveTheirObject)
{
    const BaseObject* object = nullptr;
    editRoot([&](ShelfEdit shelf) { object = shelf.cover().getData(); });
    EXPECT_EQ(object, &root().cover());
}

TEST_F(ManipulatorStructs, GiveNullOnceTheirObjectHasDied)
{
    const BaseObject* object = &root();
    edit([&](ManipulatorContext& context) {
        auto shelf = TestDocument::aShelf().build();
        const ShelfEdit manipulator(*shelf, context);
        shelf.reset();
        object = manipulator.getData();
    });
    EXPECT_EQ(object, nullptr);
}

TEST_F(ManipulatorStructs, CopiesWorkOnTheSameObjectInTheSameContext)
{
    editRoot([](ShelfEdit shelf) {
        const ShelfEdit copy = shelf; // NOLINT(performance-unnecessary-copy-initialization)
        copy.name().set("by " + shelf.get()->name().get());
    });
    EXPECT_EQ(root().name().get(), "by root");
    EXPECT_EQ(recorded, 1u);
}

TEST_F(ManipulatorStructs, ListenersCanBeAddedThroughThem)
{
    editRoot([&](ShelfEdit shelf) { shelf.name().addListener(listener); });
    editRoot([](ShelfEdit shelf) { shelf.name().set("new"); });
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(ManipulatorStructs, ListenersCanBeRemovedThroughThem)
{
    attach(root(), listener);
    bool isRemoved = false;
    editRoot([&](ShelfEdit shelf) { isRemoved = shelf.removeListener(listener); });
    editRoot([](ShelfEdit shelf) { shelf.name().set("new"); });
    EXPECT_TRUE(isRemoved);
    EXPECT_EQ(listener.told, Journal{});
}

// Factories make a manipulator of the class that they come from.

TEST(ManipulatorFactories, OfAnAttributeMakeItsManipulator)
{
    Library library;
    edit([&](ManipulatorContext& context) {
        const auto factory = ShelfEdit(library.root, context).name().createFactory();
        const auto made = factory->create(library.inner().name(), context);
        dynamic_cast<ManipulatorAttribute<Text>&>(*made).set("made");
    });
    EXPECT_EQ(library.inner().name().get(), "made");
}

TEST(ManipulatorFactories, OfAListMakeItsManipulator)
{
    Library library;
    edit([&](ManipulatorContext& context) {
        const auto factory = ShelfEdit(library.inner(), context).books().createFactory();
        const auto made = factory->create(library.root.books(), context);
        dynamic_cast<Orv::Core::ManipulatorListBase&>(*made).clear();
    });
    EXPECT_EQ(titlesOf(library.root), "");
}

TEST(ManipulatorFactories, OfAUnionMakeItsManipulator)
{
    Library library;
    edit([&](ManipulatorContext& context) {
        const auto factory = ShelfEdit(library.inner(), context).lamp().createFactory();
        const auto made = factory->create(library.root.lamp(), context);
        dynamic_cast<Orv::Core::ManipulatorUnionBase&>(*made).set(std::make_unique<Bulb>());
    });
    EXPECT_FALSE(library.root.lamp().isEmpty());
}

TEST(ManipulatorFactories, OfAStructureMakeItsManipulator)
{
    Library library;
    edit([&](ManipulatorContext& context) {
        const auto factory = ShelfEdit(library.inner(), context).createFactory();
        const auto made = factory->create(library.root, context);
        dynamic_cast<ShelfEdit&>(*made).name().set("made");
    });
    EXPECT_EQ(library.root.name().get(), "made");
}

TEST(ManipulatorFactories, OfAnyStructureMakeItsManipulator)
{
    Library library;
    const BaseObject* object = nullptr;
    edit([&](ManipulatorContext& context) {
        const auto factory = ManipulatorStructBaseObject(library.inner(), context).createFactory();
        const auto made = factory->create(library.root, context);
        object = dynamic_cast<ManipulatorStructBaseObject&>(*made).get();
    });
    EXPECT_EQ(object, &library.root);
}

TEST(ManipulatorFactories, OfAnyObjectMakeItsManipulator)
{
    Library library;
    const BaseObject* object = nullptr;
    edit([&](ManipulatorContext& context) {
        const auto factory = ManipulatorBaseObject(library.inner(), context).createFactory();
        const auto made = factory->create(library.root.name(), context);
        object = dynamic_cast<ManipulatorBaseObject&>(*made).get();
    });
    EXPECT_EQ(object, &library.root.name());
}

TEST(ManipulatorFactories, HoldNoData)
{
    EXPECT_EQ(sizeof(ManipulatorFactory<ShelfEdit>), sizeof(ManipulatorFactoryBase));
}

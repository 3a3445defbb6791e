// What listeners hear of edits: which of them, what, in which order and how often.
#include "core/listenersimple.h"
#include "core/manipulatorcontext.h"
#include "data/changeevent.h"
#include "data/shadowobject.h"
#include "support/editing.h"
#include "support/shelfcases.h"

#include <gtest/gtest.h>
#include <stdexcept>

using Orv::Data::ChangeType;
using Orv::Data::FirstPriority;
using Orv::Data::MessageMask;
using TestDocument::Bulb;
using TestDocument::Candle;
using namespace TestSupport;

namespace {

constexpr std::uint32_t AllTypes = RecordingListener::All;
constexpr std::uint32_t AllMembers = RecordingListener::All;

ManipulatorContext& contextOf(const DataMessage& message)
{
    return static_cast<ManipulatorContext&>(*message.context.access());
}

class Notification : public testing::Test
{
protected:
    // The edits of the tests.
    void rename(ManipulatorContext& context, const std::string& name)
    {
        ShelfEdit(library.root, context).name().set(name);
    }
    void renameInner(ManipulatorContext& context, const std::string& name)
    {
        ShelfEdit(library.inner(), context).name().set(name);
    }
    void retitle(ManipulatorContext& context, std::size_t index, const std::string& title)
    {
        ShelfEdit(library.root, context).books().at(index).title().set(title);
    }
    void insert(ManipulatorContext& context, std::size_t index, const std::string& title)
    {
        std::vector<std::unique_ptr<Orv::Data::BaseObject>> books;
        books.push_back(aBook(title));
        ShelfEdit(library.root, context).books().insert(index, std::move(books));
    }
    void erase(ManipulatorContext& context, std::size_t index, std::size_t count = 1)
    {
        ShelfEdit(library.root, context).books().erase(index, count);
    }

    // Lets the listener edit until it has been told so often.
    void renameUntilTold(std::size_t count)
    {
        listener.reaction = [this, count](const DataMessage& message) {
            if (listener.told.size() < count)
                rename(contextOf(message), "newer");
        };
    }

    // Notes the titles of the books that messages of the list name, with "-" before those of books
    // that have left.
    void noteTouchedBooks()
    {
        attach(library.root.books(), listener);
        listener.reaction = [this](const DataMessage& message) {
            for (const Orv::Data::TouchedChild& touched : message.touched) {
                const auto& book = dynamic_cast<const TestDocument::Book&>(*touched.object);
                const bool isThere = book.getParent() == message.object.get();
                touchedBooks.push_back((isThere ? "" : "-") + book.title().get());
            }
        };
    }

    Library library;
    RecordingListener listener;
    Journal touchedBooks;
};

class MortalListener final : public Orv::Core::ListenerSimple<0, ChangeType::Value>
{
public:
    void deliver(const DataMessage&) override { delete this; }
};

} // namespace

// Which objects hear of a change, and what.

TEST_F(Notification, TheChangedAttributeHearsOfItsValue)
{
    attach(library.root.name(), listener);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(Notification, TheParentHearsThatADescendantHasChanged)
{
    attach(library.root, listener);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(listener.told, Journal{"1"});
}

TEST_F(Notification, TheRootHearsOfChangesFarBelow)
{
    attach(library.root, listener);
    edit([&](auto& context) { retitle(context, 1, "new"); });
    EXPECT_EQ(listener.told, Journal{"1"});
}

TEST_F(Notification, SiblingsHearNothing)
{
    attach(library.root.uid(), listener);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(Notification, ChildrenHearNothingOfTheirContainer)
{
    attach(library.book(0), listener);
    edit([&](auto& context) { erase(context, 1); });
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(Notification, AListHearsWhichItemsCameWentAndChanged)
{
    noteTouchedBooks();
    edit([&](auto& context) {
        insert(context, 1, "new");
        retitle(context, 0, "changed");
        erase(context, 2);
    });
    EXPECT_EQ(touchedBooks, (Journal{"new", "changed", "-b"}));
}

TEST_F(Notification, AListHearsWhichItemWasMoved)
{
    noteTouchedBooks();
    edit([&](auto& context) { ShelfEdit(library.root, context).books().move(0, 2); });
    EXPECT_EQ(touchedBooks, Journal{"a"});
}

TEST_F(Notification, AListHearsOnceOfAnItemThatIsChangedTwiceInARow)
{
    noteTouchedBooks();
    edit([&](auto& context) {
        retitle(context, 1, "new");
        retitle(context, 1, "newer");
    });
    EXPECT_EQ(touchedBooks, Journal{"newer"});
}

TEST_F(Notification, AListHearsWhichItemsAnInnerEditChanged)
{
    noteTouchedBooks();
    edit([&](auto& context) {
        retitle(context, 0, "outer");
        edit([&](auto& inner) { retitle(inner, 1, "inner"); });
    });
    EXPECT_EQ(touchedBooks, (Journal{"outer", "inner"}));
}

TEST_F(Notification, AListHearsOfItemsThatAnUndoBringsBack)
{
    const auto erasing = makeCommand([&](auto& context) { erase(context, 0, 2); });
    erasing->execute();
    noteTouchedBooks();
    erasing->undo();
    EXPECT_EQ(touchedBooks, (Journal{"a", "b"}));
}

TEST_F(Notification, AListHearsOfInsertedItemsAndWhere)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) { insert(context, 2, "new"); });
    EXPECT_EQ(listener.told, Journal{"8 K2 I1"});
}

TEST_F(Notification, AListHearsOfErasedItemsAndWhere)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) { erase(context, 1, 2); });
    EXPECT_EQ(listener.told, Journal{"16 K1 E2"});
}

TEST_F(Notification, AListHearsOfMovedItemsAndWhere)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) { ShelfEdit(library.root, context).books().move(0, 2); });
    EXPECT_EQ(listener.told, Journal{"128 A1+2 K2 H1-2"});
}

TEST_F(Notification, TheParentOfAListHearsNoScript)
{
    attach(library.root, listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        ShelfEdit(library.root, context).books().move(0, 2);
        erase(context, 1);
    });
    EXPECT_EQ(listener.told, Journal{"1"});
}

TEST_F(Notification, AListHearsOfItsItemsWithoutAScript)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) { retitle(context, 1, "new"); });
    EXPECT_EQ(listener.told, Journal{"1"});
}

TEST_F(Notification, AUnionHearsOfItsFirstChildAsInserted)
{
    attach(library.root.lamp(), listener);
    edit([&](auto& context) {
        ShelfEdit(library.root, context).lamp().set(std::make_unique<Candle>());
    });
    EXPECT_EQ(listener.told, Journal{"8 I1"});
}

TEST_F(Notification, AUnionHearsOfALostChildAsErased)
{
    library.root.lamp().set(std::make_unique<Candle>());
    attach(library.root.lamp(), listener);
    edit([&](auto& context) { ShelfEdit(library.root, context).lamp().set(nullptr); });
    EXPECT_EQ(listener.told, Journal{"16 E1"});
}

TEST_F(Notification, AUnionHearsOfAReplacedChildAsBoth)
{
    library.root.lamp().set(std::make_unique<Candle>());
    attach(library.root.lamp(), listener);
    edit([&](auto& context) {
        ShelfEdit(library.root, context).lamp().set(std::make_unique<Bulb>());
    });
    EXPECT_EQ(listener.told, Journal{"24 E1 I1"});
}

TEST_F(Notification, TheMessageNamesTheObjectOfTheListener)
{
    attach(library.root, listener);
    edit([&](auto& context) { retitle(context, 0, "new"); });
    EXPECT_EQ(listener.messages.at(0).object.get(), &library.root);
}

TEST_F(Notification, TheMessageNamesTheContextWhileItLasts)
{
    attach(library.root, listener);
    bool isContext = false;
    edit([&](ManipulatorContext& context) {
        listener.reaction = [&](const DataMessage& message) {
            isContext = message.context == &context;
        };
        rename(context, "new");
    });
    EXPECT_TRUE(isContext);
}

// The types that no manipulator sends.

namespace {

class SendingManipulator final : public Orv::Core::ManipulatorBaseObject
{
public:
    using ManipulatorBase::notify;
    using ManipulatorBaseObject::ManipulatorBaseObject;
};

} // namespace

struct SentCase
{
    const char* name;
    std::uint32_t type;
    const char* toldToObject;
    const char* toldToParent;
    const char* toldToRoot;
};

class NotificationOfAnyType : public Notification, public testing::WithParamInterface<SentCase>
{};

TEST_P(NotificationOfAnyType, ChangesOnTheWayUp)
{
    RecordingListener ofList;
    RecordingListener ofRoot;
    attach(library.book(0), listener);
    attach(library.root.books(), ofList);
    attach(library.root, ofRoot);
    edit([&](ManipulatorContext& context) {
        SendingManipulator(library.book(0), context).notify(GetParam().type, {});
    });
    EXPECT_EQ(listener.told, Journal{GetParam().toldToObject});
    EXPECT_EQ(ofList.told, Journal{GetParam().toldToParent});
    EXPECT_EQ(ofRoot.told, Journal{GetParam().toldToRoot});
}

INSTANTIATE_TEST_SUITE_P(
    Types, NotificationOfAnyType,
    testing::Values(SentCase{"Descendant", 1, "1", "1", "1"}, SentCase{"Value", 2, "2", "1", "1"},
                    SentCase{"Removed", 4, "4", "1", "1"}, SentCase{"Inserted", 8, "8", "1", "1"},
                    SentCase{"Erased", 16, "16", "1", "1"}, SentCase{"Moved", 128, "128", "1", "1"},
                    SentCase{"InsertedAndErased", 24, "24", "1", "1"},
                    SentCase{"DescendantMoved", 32, "32", "32", "32"},
                    SentCase{"Reserved", 64, "64", "32", "32"},
                    SentCase{"ReservedAndValue", 66, "66", "33", "33"}),
    caseName<SentCase>);

// Removed objects.

TEST_F(Notification, AnErasedItemHearsThatItIsRemoved)
{
    attach(library.book(1), listener);
    edit([&](auto& context) { erase(context, 1); });
    EXPECT_EQ(listener.told, Journal{"4"});
}

TEST_F(Notification, TheItemIsToldBeforeItsList)
{
    RecordingListener item;
    Journal order;
    item.reaction = [&](const DataMessage&) { order.push_back("item"); };
    listener.reaction = [&](const DataMessage&) { order.push_back("list"); };
    attach(library.root.books(), listener);
    attach(library.book(0), item);
    edit([&](auto& context) { erase(context, 0, 3); });
    EXPECT_EQ(order, (Journal{"item", "list"}));
    EXPECT_EQ(listener.told, Journal{"16 E3"});
}

TEST_F(Notification, EverythingBelowAnErasedItemHearsThatItIsRemoved)
{
    library.inner().books().pushBack(aBook("deep"));
    attach(library.inner().books().at(0).title(), listener);
    edit([&](auto& context) { ShelfEdit(library.root, context).shelves().clear(); });
    EXPECT_EQ(listener.told, Journal{"4"});
}

TEST_F(Notification, AReplacedChildHearsThatItIsRemoved)
{
    library.root.lamp().set(std::make_unique<Candle>());
    attach(*library.root.lamp().get(), listener);
    edit([&](auto& context) {
        ShelfEdit(library.root, context).lamp().set(std::make_unique<Bulb>());
    });
    EXPECT_EQ(listener.told, Journal{"4"});
}

TEST_F(Notification, RemovalOverridesWhatHappenedBefore)
{
    attach(library.book(1).title(), listener);
    edit([&](auto& context) {
        retitle(context, 1, "new");
        erase(context, 1);
    });
    EXPECT_EQ(listener.told, Journal{"4"});
}

TEST_F(Notification, RemovalSilencesAListenerThatDoesNotAcceptIt)
{
    RecordingListener ofValues(ChangeType::Value);
    attach(library.book(1).title(), ofValues);
    edit([&](auto& context) {
        retitle(context, 1, "new");
        erase(context, 1);
    });
    EXPECT_EQ(ofValues.told, Journal{});
}

TEST_F(Notification, AncestorsHearNoRemoval)
{
    RecordingListener ofRemovals(ChangeType::Removed);
    attach(library.root, ofRemovals);
    edit([&](auto& context) { erase(context, 1); });
    EXPECT_EQ(ofRemovals.told, Journal{});
}

// Merging.

TEST_F(Notification, TwoChangesOfAValueAreOneDelivery)
{
    attach(library.root.name(), listener);
    edit([&](auto& context) {
        rename(context, "new");
        rename(context, "newer");
    });
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(Notification, ManyEditsOfAListAreOneScript)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 1, "new");
        erase(context, 3);
        ShelfEdit(library.root, context).books().move(0, 2);
    });
    EXPECT_EQ(listener.told, Journal{"152 A1+4 I1 K1 E1 H1-4"});
}

TEST_F(Notification, ListAndItemChangesAreOneDelivery)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        retitle(context, 0, "new");
        erase(context, 2);
    });
    EXPECT_EQ(listener.told, Journal{"17 K2 E1"});
}

TEST_F(Notification, AnInsertedAndErasedItemIsStillDelivered)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        erase(context, 0);
    });
    EXPECT_EQ(listener.told, Journal{"24"});
}

TEST_F(Notification, EachContextIsADeliveryOfItsOwn)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) { insert(context, 0, "new"); });
    edit([&](auto& context) { erase(context, 1); });
    EXPECT_EQ(listener.told, (Journal{"8 I1", "16 K1 E1"}));
}

TEST_F(Notification, AListenerOnTwoObjectsHearsOfEach)
{
    attach(library.root, listener);
    attach(library.root.name(), listener);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(listener.told, (Journal{"2", "1"}));
}

// Filters.

TEST_F(Notification, AnEventOutsideTheTypeMaskIsNotHeard)
{
    RecordingListener ofInsertions(ChangeType::Inserted);
    attach(library.root.books(), ofInsertions);
    edit([&](auto& context) { erase(context, 0); });
    EXPECT_EQ(ofInsertions.told, Journal{});
}

TEST_F(Notification, AListenerThatHasAcceptedHearsAllTypesOfTheContext)
{
    RecordingListener ofInsertions(ChangeType::Inserted);
    attach(library.root.books(), ofInsertions);
    edit([&](auto& context) {
        insert(context, 0, "new");
        erase(context, 1);
    });
    EXPECT_EQ(ofInsertions.told, Journal{"24 I1 E1"});
}

TEST_F(Notification, AListenerOfDescendantsHearsOfAMembersValue)
{
    RecordingListener ofDescendants(ChangeType::Descendant);
    attach(library.root, ofDescendants);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(ofDescendants.told, Journal{"1"});
}

TEST_F(Notification, PresentationIsNotHeardByListenersOfContent)
{
    RecordingListener ofContent(AllTypes, MessageMask::Content);
    attach(library.root, ofContent);
    edit([&](auto& context) { ShelfEdit(library.root, context).spot().setFromString("1,2,3"); });
    EXPECT_EQ(ofContent.told, Journal{});
}

TEST_F(Notification, PresentationIsHeardByListenersOfAll)
{
    attach(library.root, listener);
    edit([&](auto& context) { ShelfEdit(library.root, context).spot().setFromString("1,2,3"); });
    EXPECT_EQ(listener.told, Journal{"1"});
}

TEST_F(Notification, ContentIsHeardByListenersOfContent)
{
    RecordingListener ofContent(AllTypes, MessageMask::Content);
    attach(library.root, ofContent);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(ofContent.told, Journal{"1"});
}

TEST_F(Notification, WhatIsConsumedWhollyDoesNotReachTheAncestors)
{
    RecordingListener consumer(AllTypes, AllMembers, 0, AllMembers);
    attach(library.root.name(), consumer);
    attach(library.root, listener);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(consumer.told, Journal{"2"});
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(Notification, WhatIsConsumedInPartReachesListenersOfTheRest)
{
    RecordingListener consumer(AllTypes, AllMembers, 0, MessageMask::Content);
    RecordingListener ofContent(AllTypes, MessageMask::Content);
    attach(library.root.name(), consumer);
    attach(library.root, ofContent);
    attach(library.root, listener);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(ofContent.told, Journal{});
    EXPECT_EQ(listener.told, Journal{"1"});
}

TEST_F(Notification, WhatIsRefusedIsNotConsumed)
{
    RecordingListener consumer(ChangeType::Inserted, AllMembers, 0, AllMembers);
    attach(library.root.name(), consumer);
    attach(library.root, listener);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(listener.told, Journal{"1"});
}

TEST_F(Notification, AListenerConsumesTheFirstEventOfAContextOnly)
{
    // Once it has accepted it is not asked again.
    RecordingListener consumer(AllTypes, AllMembers, 0, AllMembers);
    attach(library.root.name(), consumer);
    attach(library.root, listener);
    edit([&](auto& context) {
        rename(context, "new");
        rename(context, "newer");
    });
    EXPECT_EQ(listener.told, Journal{"1"});
}

// The order of delivery.

TEST_F(Notification, PrioritiesAreServedInTheirOrder)
{
    Journal order;
    std::vector<std::unique_ptr<RecordingListener>> listeners;
    const auto attachAt = [&](const Orv::Data::BaseObject& object, std::uint16_t priority) {
        listeners.push_back(std::make_unique<RecordingListener>(AllTypes, AllMembers, priority));
        listeners.back()->reaction = [&order, priority](const DataMessage&) {
            order.push_back(std::to_string(priority));
        };
        attach(object, *listeners.back());
    };
    attachAt(library.root.name(), 0);
    attachAt(library.root, 0x8001);
    attachAt(library.root.name(), 0x7FFF);
    attachAt(library.root, FirstPriority);
    attachAt(library.root.name(), 0x8000);
    attachAt(library.root, 1);
    attachAt(library.root.name(), 0xFFFE);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(order, (Journal{"65535", "32768", "32769", "65534", "0", "1", "32767"}));
}

TEST_F(Notification, EqualPrioritiesAreServedInTheOrderOfRegistration)
{
    RecordingListener second;
    Journal order;
    listener.reaction = [&](const DataMessage&) { order.push_back("first"); };
    second.reaction = [&](const DataMessage&) { order.push_back("second"); };
    attach(library.root, listener);
    attach(library.root, second);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(order, (Journal{"first", "second"}));
}

TEST_F(Notification, EqualPrioritiesOnTwoObjectsAreServedInTheOrderOfChange)
{
    RecordingListener ofInner;
    Journal order;
    listener.reaction = [&](const DataMessage&) { order.push_back("name"); };
    ofInner.reaction = [&](const DataMessage&) { order.push_back("inner"); };
    attach(library.root.name(), listener);
    attach(library.inner(), ofInner);
    edit([&](auto& context) {
        renameInner(context, "new");
        rename(context, "new");
        renameInner(context, "newer");
    });
    EXPECT_EQ(order, (Journal{"inner", "name"}));
}

TEST_F(Notification, NothingIsDeliveredBeforeTheEndOfTheContext)
{
    attach(library.root, listener);
    std::size_t toldWithin = 99;
    edit([&](auto& context) {
        rename(context, "new");
        toldWithin = listener.told.size();
    });
    EXPECT_EQ(toldWithin, 0u);
    EXPECT_EQ(listener.told.size(), 1u);
}

// Edits, listeners and deaths during the delivery.

TEST_F(Notification, AListenersEditIsDeliveredInTheNextWave)
{
    RecordingListener ofInner;
    attach(library.inner(), ofInner);
    attach(library.root.name(), listener);
    listener.reaction = [&](const DataMessage& message) {
        renameInner(contextOf(message), "follows");
    };
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(ofInner.told, Journal{"1"});
}

TEST_F(Notification, AListenersEditIsUndoneWithTheCommand)
{
    attach(library.root.name(), listener);
    listener.reaction = [&](const DataMessage& message) {
        renameInner(contextOf(message), "follows");
        listener.reaction = nullptr;
    };
    const auto command = makeCommand([&](auto& context) { rename(context, "new"); });
    const std::string before = TestDocument::written(library.root);
    command->execute();
    command->undo();
    EXPECT_EQ(TestDocument::written(library.root), before);
}

TEST_F(Notification, AListenerHearsOfItsOwnEditsUntilItComesToRest)
{
    attach(library.root.name(), listener);
    renameUntilTold(4);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(listener.told, (Journal{"2", "2", "2", "2"}));
}

TEST_F(Notification, AWaitingMessageIsNotChangedByEditsDuringItsWave)
{
    RecordingListener later(AllTypes, AllMembers, 1);
    attach(library.root.books(), listener);
    attach(library.root.books(), later);
    listener.reaction = [&](const DataMessage& message) {
        listener.reaction = nullptr;
        erase(contextOf(message), 0);
    };
    edit([&](auto& context) { insert(context, 0, "new"); });
    EXPECT_EQ(later.told, (Journal{"8 I1", "16 E1"}));
}

TEST_F(Notification, AListenerAddedDuringTheDeliveryHearsOfTheNextWave)
{
    RecordingListener late;
    attach(library.root.name(), listener);
    listener.reaction = [&](const DataMessage& message) {
        listener.reaction = nullptr;
        contextOf(message).addListener(library.root.name(), late);
        rename(contextOf(message), "newer");
    };
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(late.told, Journal{"2"});
    EXPECT_EQ(listener.told.size(), 2u);
}

TEST_F(Notification, AListenerAddedDuringTheDeliveryHearsNothingOfItsWave)
{
    RecordingListener late;
    attach(library.root.name(), listener);
    listener.reaction = [&](const DataMessage& message) {
        contextOf(message).addListener(library.root.name(), late);
        contextOf(message).addListener(library.root, late);
    };
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(late.told, Journal{});
}

TEST_F(Notification, AListenerRemovedDuringTheDeliveryStillHearsWhatWaitsForIt)
{
    RecordingListener later(AllTypes, AllMembers, 1);
    attach(library.root.name(), listener);
    attach(library.root.name(), later);
    listener.reaction = [&](const DataMessage& message) {
        listener.reaction = nullptr;
        contextOf(message).removeListener(library.root.name(), later);
        rename(contextOf(message), "newer");
    };
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(later.told, Journal{"2"});
}

TEST_F(Notification, AListenerThatDiesDuringTheDeliveryIsSkipped)
{
    auto later = std::make_unique<RecordingListener>(AllTypes, AllMembers, 1);
    attach(library.root.name(), listener);
    attach(library.root.name(), *later);
    listener.reaction = [&](const DataMessage&) { later.reset(); };
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(Notification, AListenerMayDieInItsOwnDelivery)
{
    RecordingListener later(AllTypes, AllMembers, 1);
    attach(library.root.name(), *new MortalListener);
    attach(library.root.name(), later);
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(later.told, Journal{"2"});
}

TEST_F(Notification, AnExceptionOfAListenerLeavesTheCommand)
{
    attach(library.root.name(), listener);
    listener.reaction = [](const DataMessage&) { throw std::runtime_error("deaf ear"); };
    EXPECT_THROW(edit([&](auto& context) { rename(context, "new"); }), std::runtime_error);
    EXPECT_EQ(library.root.name().get(), "new");
}

TEST_F(Notification, AfterAnExceptionOfAListenerLaterEditsAreHeard)
{
    attach(library.root.name(), listener);
    listener.reaction = [&](const DataMessage& message) {
        listener.reaction = nullptr;
        rename(contextOf(message), "newer");
        throw std::runtime_error("deaf ear");
    };
    EXPECT_THROW(edit([&](auto& context) { rename(context, "new"); }), std::runtime_error);
    edit([&](auto& context) { rename(context, "newest"); });
    EXPECT_EQ(listener.told, (Journal{"2", "2"}));
}

// Listeners that come and go while a message is pending.

TEST_F(Notification, AListenerAddedToAPendingMessageHearsOfLaterChangesOnly)
{
    RecordingListener late;
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        context.addListener(library.root.books(), late);
        erase(context, 1);
    });
    EXPECT_EQ(listener.told, Journal{"24 I1 E1"});
    EXPECT_EQ(late.told, Journal{"16 K1 E1"});
}

TEST_F(Notification, AListenerAddedToAPendingMessageHearsNothingOfIt)
{
    RecordingListener late;
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        context.addListener(library.root.books(), late);
    });
    EXPECT_EQ(late.told, Journal{});
}

TEST_F(Notification, AListenerAddedToAPendingMessageIsAnOrdinaryOneAfterwards)
{
    RecordingListener late;
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        context.addListener(library.root.books(), late);
    });
    edit([&](auto& context) { erase(context, 1); });
    EXPECT_EQ(late.told, Journal{"16 K1 E1"});
}

TEST_F(Notification, AListenerRemovedWhileAMessageIsPendingHearsNothing)
{
    attach(library.root.name(), listener);
    edit([&](auto& context) {
        rename(context, "new");
        context.removeListener(library.root.name(), listener);
    });
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(Notification, AListenerThatDiesWhileAMessageIsPendingIsDropped)
{
    auto mortal = std::make_unique<RecordingListener>();
    attach(library.root.name(), *mortal);
    edit([&](auto& context) {
        rename(context, "new");
        mortal.reset();
    });
    EXPECT_TRUE(library.root.name().shadow()->listeners().empty());
}

// Failed edits.

TEST_F(Notification, ARefusedEditDeliversNothing)
{
    RecordingListener ofItem;
    attach(library.root, listener);
    attach(library.book(1), ofItem);
    editAndRefuse([&](auto& context) {
        rename(context, "new");
        erase(context, 1);
    });
    EXPECT_EQ(listener.told, Journal{});
    EXPECT_EQ(ofItem.told, Journal{});
}

TEST_F(Notification, AfterARefusedEditOnlyLaterChangesAreHeard)
{
    attach(library.root.books(), listener);
    editAndRefuse([&](auto& context) { erase(context, 0); });
    edit([&](auto& context) { insert(context, 1, "new"); });
    EXPECT_EQ(listener.told, Journal{"8 K1 I1"});
}

TEST_F(Notification, AnEditThatThrowsIsDelivered)
{
    attach(library.root.name(), listener);
    const EditFunction throwing = [&](ManipulatorContext& context) {
        rename(context, "new");
        throw std::runtime_error("half done");
    };
    EXPECT_THROW(edit(throwing), std::runtime_error);
    EXPECT_EQ(listener.told, Journal{"2"});
}

// Commands within commands.

TEST_F(Notification, ACommandWithinAnEditIsToldAtTheEndOfTheEdit)
{
    attach(library.inner().name(), listener);
    std::size_t toldWithin = 99;
    edit([&](auto& context) {
        rename(context, "new");
        edit([&](auto& inner) { renameInner(inner, "new"); });
        toldWithin = listener.told.size();
    });
    EXPECT_EQ(toldWithin, 0u);
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(Notification, ACommandWithinAnEditAddsToTheMessageOfTheEdit)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        edit([&](auto& inner) { erase(inner, 1); });
    });
    EXPECT_EQ(listener.told, Journal{"24 I1 E1"});
}

TEST_F(Notification, CommandsWithinCommandsAddToTheMessageOfTheEdit)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        edit([&](auto& inner) {
            erase(inner, 1);
            edit([&](auto& innermost) { erase(innermost, 1); });
        });
    });
    EXPECT_EQ(listener.told, Journal{"24 I1 E2"});
}

TEST_F(Notification, WhatACommandWithinAddedIsToldInTheOuterContext)
{
    attach(library.root.books(), listener);
    listener.reaction = [&](const DataMessage& message) {
        EXPECT_TRUE(static_cast<bool>(message.context));
    };
    edit([&](auto& context) {
        insert(context, 0, "new");
        edit([&](auto& inner) { erase(inner, 1); });
    });
    EXPECT_EQ(listener.told.size(), 1u);
}

TEST_F(Notification, ARefusedCommandWithinAnEditDeliversNothing)
{
    attach(library.inner(), listener);
    edit([&](auto& context) {
        rename(context, "new");
        editAndRefuse([&](auto& inner) { renameInner(inner, "new"); });
    });
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(Notification, ARefusedCommandWithinAnEditAddsNothingToTheMessageOfTheEdit)
{
    attach(library.root.books(), listener);
    edit([&](auto& context) {
        insert(context, 0, "new");
        editAndRefuse([&](auto& inner) { erase(inner, 1); });
    });
    EXPECT_EQ(listener.told, Journal{"8 I1"});
}

TEST_F(Notification, ARefusedCommandWithinARefusedEditDeliversNothing)
{
    attach(library.root.books(), listener);
    editAndRefuse([&](auto& context) {
        insert(context, 0, "new");
        editAndRefuse([&](auto& inner) { erase(inner, 1); });
        edit([&](auto& inner) { erase(inner, 0); });
    });
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(Notification, ALiveObjectIsNotToldOfARemovalThatWasRefusedWithinTheEdit)
{
    attach(library.book(0).title(), listener);
    edit([&](auto& context) {
        retitle(context, 0, "new");
        editAndRefuse([&](auto& inner) { erase(inner, 0); });
    });
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(Notification, ALiveObjectIsToldOfLaterChangesAfterARefusalWithinTheEdit)
{
    attach(library.book(0).title(), listener);
    edit([&](auto& context) {
        editAndRefuse([&](auto& inner) { erase(inner, 0); });
        retitle(context, 0, "new");
    });
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(Notification, AListenerThatCameWithACommandWithinHearsOfWhatFollowsAlone)
{
    edit([&](auto& context) {
        insert(context, 0, "new");
        edit([&](auto& inner) {
            inner.addListener(library.root.books(), listener);
            erase(inner, 1);
        });
    });
    EXPECT_EQ(listener.told, Journal{"16 K1 E1"});
}

TEST_F(Notification, AListenerThatCameWithARefusedCommandHearsOfWhatFollowsAlone)
{
    RecordingListener other;
    attach(library.root.books(), other);
    edit([&](auto& context) {
        insert(context, 0, "new");
        editAndRefuse([&](auto& inner) {
            erase(inner, 1);
            inner.addListener(library.root.books(), listener);
        });
        erase(context, 0);
    });
    EXPECT_EQ(listener.told, Journal{"16 E1"});
    EXPECT_EQ(other.told, Journal{"24"});
}

TEST_F(Notification, ACommandWithinADeliveryIsToldInThatDelivery)
{
    RecordingListener ofInner;
    attach(library.inner().name(), ofInner);
    attach(library.root.name(), listener);
    std::size_t toldWithin = 99;
    listener.reaction = [&](const DataMessage&) {
        edit([&](auto& inner) { renameInner(inner, "new"); });
        toldWithin = ofInner.told.size();
    };
    edit([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(toldWithin, 0u);
    EXPECT_EQ(ofInner.told, Journal{"2"});
}

TEST_F(Notification, ACommandWithinADeliveryIsToldBehindTheMessageThatWaits)
{
    RecordingListener later(AllTypes, AllMembers, 1);
    attach(library.root.books(), listener);
    attach(library.root.books(), later);
    listener.reaction = [&](const DataMessage&) {
        listener.reaction = nullptr;
        edit([&](auto& inner) { erase(inner, 1); });
    };
    edit([&](auto& context) { insert(context, 0, "new"); });
    EXPECT_EQ(later.told, (Journal{"8 I1", "16 K1 E1"}));
    EXPECT_EQ(listener.told, (Journal{"8 I1", "16 K1 E1"}));
}

// Listeners that are served at once.

namespace {

class ImmediateNotification : public Notification
{
protected:
    ImmediateNotification() : first(AllTypes, AllMembers, FirstPriority) {}
    void editImmediately(const EditFunction& function)
    {
        edit([&](ManipulatorContext& context) {
            context.setImmediate(true);
            function(context);
        });
    }
    RecordingListener first;
};

} // namespace

TEST_F(ImmediateNotification, TheFirstPriorityIsServedAtTheEvent)
{
    attach(library.root.name(), first);
    attach(library.root.name(), listener);
    Journal firstWithin;
    std::size_t othersWithin = 99;
    editImmediately([&](auto& context) {
        rename(context, "new");
        firstWithin = first.told;
        othersWithin = listener.told.size();
    });
    EXPECT_EQ(firstWithin, Journal{"2"});
    EXPECT_EQ(othersWithin, 0u);
}

TEST_F(ImmediateNotification, WhatWasServedAtOnceIsNotServedAgainAtTheEnd)
{
    attach(library.root.name(), first);
    attach(library.root.name(), listener);
    editImmediately([&](auto& context) { rename(context, "new"); });
    EXPECT_EQ(first.told, Journal{"2"});
    EXPECT_EQ(listener.told, Journal{"2"});
}

TEST_F(ImmediateNotification, LaterEventsAreToldByThemselves)
{
    attach(library.root.books(), first);
    editImmediately([&](auto& context) {
        insert(context, 0, "new");
        erase(context, 2);
    });
    EXPECT_EQ(first.told, (Journal{"8 I1", "16 K2 E1"}));
}

TEST_F(ImmediateNotification, TheFirstServiceTellsAllThatWasPending)
{
    attach(library.root.books(), first);
    edit([&](ManipulatorContext& context) {
        insert(context, 0, "new");
        context.setImmediate(true);
        erase(context, 2);
    });
    EXPECT_EQ(first.told, Journal{"24 I1 K1 E1"});
}

TEST_F(ImmediateNotification, AListenerThatDoesNotMatchIsNotServed)
{
    RecordingListener ofInsertions(ChangeType::Inserted, AllMembers, FirstPriority);
    attach(library.root.books(), ofInsertions);
    attach(library.root.books(), listener);
    editImmediately([&](auto& context) { erase(context, 0); });
    EXPECT_EQ(ofInsertions.told, Journal{});
}

TEST_F(ImmediateNotification, AListenerAddedMeanwhileIsNotServedAgainAtTheEnd)
{
    editImmediately([&](auto& context) {
        context.addListener(library.root.books(), first);
        insert(context, 0, "new");
    });
    EXPECT_EQ(first.told, Journal{"8 I1"});
}

TEST_F(ImmediateNotification, TheNextContextServesAtItsEndAgain)
{
    attach(library.root.name(), first);
    editImmediately([&](auto& context) { rename(context, "new"); });
    edit([&](auto& context) { rename(context, "newer"); });
    EXPECT_EQ(first.told, (Journal{"2", "2"}));
}

TEST_F(ImmediateNotification, ARemovalIsToldByItself)
{
    attach(library.book(0).title(), first);
    editImmediately([&](auto& context) {
        retitle(context, 0, "new");
        erase(context, 0);
    });
    EXPECT_EQ(first.told, (Journal{"2", "4"}));
}

// Events and messages by themselves.

TEST(DataMessageMerge, JoinsTypes)
{
    DataMessage message;
    message.merge(ChangeType::Inserted, {});
    message.merge(ChangeType::Descendant, {});
    EXPECT_EQ(message.type, 9u);
}

TEST(DataMessageMerge, RemovalStandsAlone)
{
    DataMessage message;
    message.merge(ChangeType::Removed, {});
    message.merge(ChangeType::Value, {});
    EXPECT_EQ(message.type, 4u);
}

struct AcceptCase
{
    const char* name;
    std::uint32_t type;
    std::uint32_t memberMask;
    bool accepted;
    std::uint32_t maskLeft;
};

class ListenerAccept : public testing::TestWithParam<AcceptCase>
{};

TEST_P(ListenerAccept, GoesByTypeAndMembers)
{
    const RecordingListener listener(ChangeType::Value | ChangeType::Inserted, 6, 0, 2);
    Orv::Data::ChangeEvent event{GetParam().type, {}, GetParam().memberMask};
    EXPECT_EQ(listener.accept(event), GetParam().accepted);
    EXPECT_EQ(event.memberMask, GetParam().maskLeft);
}

INSTANTIATE_TEST_SUITE_P(Masks, ListenerAccept,
                         testing::Values(AcceptCase{"OneTypeOneMember", 2, 4, true, 4},
                                         AcceptCase{"AmongOtherTypes", 1 | 8, 4, true, 4},
                                         AcceptCase{"AmongOtherMembers", 2, 5, true, 5},
                                         AcceptCase{"OtherType", 1, 4, false, 4},
                                         AcceptCase{"OtherMember", 2, 1, false, 1},
                                         AcceptCase{"NoMember", 2, 0, false, 0},
                                         AcceptCase{"Consumed", 2, 7, true, 5},
                                         AcceptCase{"ConsumedWholly", 2, 2, true, 0},
                                         AcceptCase{"RefusedAndNotConsumed", 1, 7, false, 7}),
                         caseName<AcceptCase>);

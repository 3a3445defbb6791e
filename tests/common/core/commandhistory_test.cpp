// Undo, redo, merging and refusal of edits, by the commands that run them.
#include "core/commandhistory.h"

#include "core/commanddatamodification.h"
#include "core/commandmodification.h"
#include "core/datamodification.h"
#include "core/historyscratch.h"
#include "support/editing.h"
#include "support/shelfcases.h"

#include <boost/function/function_base.hpp>
#include <gtest/gtest.h>
#include <stdexcept>

using Orv::Core::BeginGroupCommand;
using Orv::Core::CommandModification;
using Orv::Core::ExceptionCantUndo;
using Orv::Core::ICommand;
using Orv::Core::makeModification;
using Orv::Core::ManipulatorAttribute;
using Orv::Core::ManipulatorList;
using Orv::Core::UndoableCommand;
using Orv::Data::BaseObject;
using Orv::Data::ContainerList;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using Orv::Data::Text;
using TestDocument::Book;
using TestDocument::Bulb;
using TestDocument::Candle;
using TestDocument::Root;
using TestDocument::Shelf;
using TestDocument::written;
using namespace TestSupport;

namespace {

class History : public testing::Test
{
protected:
    History() : before(written(library.root)) {}

    std::shared_ptr<CommandDataModification> run(const EditFunction& function,
                                                 const std::string& mergeKey = {})
    {
        auto command = makeCommand(
            [this, function](ManipulatorContext& context) {
                function(context);
                recorded = context.historySize();
            },
            mergeKey);
        command->execute();
        return command;
    }
    ShelfEdit root(ManipulatorContext& context) { return {library.root, context}; }
    std::string now() const { return written(library.root); }

    Library library;
    RecordingListener listener;
    std::string before;
    std::size_t recorded = 99;
};

// Every kind of change.
void editEverything(Library& library, ManipulatorContext& context)
{
    ShelfEdit root(library.root, context);
    root.name().set("new");
    root.books().move(0, 2);
    root.books().at(0).title().set("B");
    root.books().erase(1, 1);
    root.books().pushBack(aBook("d"));
    root.lamp().set(std::make_unique<Candle>());
    root.lamp().set(std::make_unique<Bulb>());
    root.cover().color().set("red");
    root.shelves().clear();
}

} // namespace

// What is recorded.

TEST_F(History, SetsOfOneAttributeInARowAreOneItem)
{
    const auto command = run([&](auto& context) {
        root(context).name().set("x");
        root(context).name().set("y");
        root(context).name().set("z");
    });
    EXPECT_EQ(recorded, 1u);
    command->undo();
    EXPECT_EQ(library.root.name().get(), "root");
}

TEST_F(History, SetsWithAnotherInBetweenAreThreeItems)
{
    const auto command = run([&](auto& context) {
        root(context).name().set("x");
        root(context).uid().set(1);
        root(context).name().set("y");
    });
    EXPECT_EQ(recorded, 3u);
    command->undo();
    EXPECT_EQ(now(), before);
}

TEST_F(History, InsertionsAreNotMerged)
{
    run([&](auto& context) {
        root(context).books().pushBack(aBook("x"));
        root(context).books().pushBack(aBook("y"));
    });
    EXPECT_EQ(recorded, 2u);
}

TEST_F(History, ErasuresAreNotMerged)
{
    run([&](auto& context) {
        root(context).books().erase(0, 1);
        root(context).books().erase(0, 1);
    });
    EXPECT_EQ(recorded, 2u);
}

TEST_F(History, ReplacementsOfAChildAreNotMerged)
{
    run([&](auto& context) {
        root(context).lamp().set(std::make_unique<Candle>());
        root(context).lamp().set(std::make_unique<Bulb>());
    });
    EXPECT_EQ(recorded, 2u);
}

TEST_F(History, StepsOfOneItemAreOneMove)
{
    const auto command = run([&](auto& context) {
        root(context).books().move(0, 1);
        root(context).books().move(1, 1);
    });
    EXPECT_EQ(recorded, 1u);
    command->undo();
    EXPECT_EQ(titlesOf(library.root), "a b c");
}

TEST_F(History, MovesOfTwoItemsAreOneItemAndUndoneExactly)
{
    const auto command = run([&](auto& context) {
        root(context).books().move(0, 1); // b a c
        root(context).books().move(0, 2); // a c b
    });
    EXPECT_EQ(recorded, 1u);
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(titlesOf(library.root), "a b c");
}

TEST_F(History, MovesOfTwoItemsAreRedoneExactly)
{
    const auto command = run([&](auto& context) {
        root(context).books().move(0, 1);
        root(context).books().move(0, 2);
    });
    command->undo();
    EXPECT_TRUE(command->redo());
    EXPECT_EQ(titlesOf(library.root), "a c b");
}

TEST_F(History, ASpliceOfSeveralItemsIsUndoneExactly)
{
    const auto command = run([&](auto& context) {
        const auto books = root(context).books();
        auto last = books.begin();
        ++ ++last;
        root(context).books().splice(books.end(), books.begin(), last); // c a b
    });
    EXPECT_EQ(titlesOf(library.root), "c a b");
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(titlesOf(library.root), "a b c");
}

struct VerbCase
{
    const char* name;
    void (*edit)(ShelfEdit);
    const char* titles; // behind the edit
};

class ListVerbs : public History, public testing::WithParamInterface<VerbCase>
{
protected:
    EditFunction verb()
    {
        return [this](ManipulatorContext& context) { GetParam().edit(root(context)); };
    }
};

TEST_P(ListVerbs, AreUndoneExactly)
{
    const auto command = run(verb());
    EXPECT_EQ(titlesOf(library.root), GetParam().titles);
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(now(), before);
}

TEST_P(ListVerbs, AreRedoneExactly)
{
    const auto command = run(verb());
    EXPECT_TRUE(command->undo());
    EXPECT_TRUE(command->redo());
    EXPECT_EQ(titlesOf(library.root), GetParam().titles);
}

TEST_P(ListVerbs, LeaveNoTraceWhenTheEditIsRefused)
{
    EXPECT_FALSE(editAndRefuse(verb()));
    EXPECT_EQ(now(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Verbs, ListVerbs,
    testing::Values(
        VerbCase{"Insert", [](ShelfEdit s) { s.books().insert(1, aBook("x")); }, "a x b c"},
        VerbCase{"EraseItem", [](ShelfEdit s) { s.books().erase(&s.get()->books().at(1)); }, "a c"},
        VerbCase{"Reorder",
                 [](ShelfEdit s) {
                     s.books().reorder({2, 0, 1});
                 },
                 "c a b"},
        VerbCase{"ReorderTwice",
                 [](ShelfEdit s) {
                     s.books().reorder({1, 0, 2});
                     s.books().reorder({2, 0, 1});
                 },
                 "c b a"},
        VerbCase{"SetIfChanged", [](ShelfEdit s) { s.books().at(0).title().setIfChanged("x"); },
                 "x b c"}),
    caseName<VerbCase>);

TEST_F(History, ARefusedEditWithMovesOfTwoItemsLeavesTheTreeAsItWas)
{
    EXPECT_NO_THROW(editAndRefuse([&](auto& context) {
        root(context).books().move(0, 2);
        root(context).books().move(0, 2);
    }));
    EXPECT_EQ(titlesOf(library.root), "a b c");
}

TEST_F(History, MovesOfMergedCommandsAreUndoneExactly)
{
    const auto move = [&](auto& context) { root(context).books().move(0, 2); };
    const auto first = run(move, "key");
    const auto second = run(move, "key");
    EXPECT_TRUE(first->merge(second));
    EXPECT_TRUE(first->undo());
    EXPECT_EQ(titlesOf(library.root), "a b c");
}

TEST_F(History, MovesInTwoListsAreTwoItems)
{
    library.inner().books().pushBack(aBook("d"));
    library.inner().books().pushBack(aBook("e"));
    before = now();
    const auto command = run([&](auto& context) {
        root(context).books().move(0, 1);
        ShelfEdit(library.inner(), context).books().move(0, 1);
    });
    EXPECT_EQ(recorded, 2u);
    command->undo();
    EXPECT_EQ(now(), before);
}

// Undo and redo.

TEST_F(History, UndoReversesEveryKindOfChange)
{
    const auto command = run([&](auto& context) { editEverything(library, context); });
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, RedoRestoresEveryKindOfChange)
{
    const auto command = run([&](auto& context) { editEverything(library, context); });
    const std::string after = now();
    command->undo();
    EXPECT_TRUE(command->redo());
    EXPECT_EQ(now(), after);
}

TEST_F(History, UndoCanFollowRedo)
{
    const auto command = run([&](auto& context) { editEverything(library, context); });
    command->undo();
    command->redo();
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, ACommandThatHasNotRunCannotBeUndone)
{
    EXPECT_FALSE(makeCommand([](auto&) {})->undo());
}

TEST_F(History, ACommandThatHasNotBeenUndoneCannotBeRedone)
{
    EXPECT_FALSE(run([](auto&) {})->redo());
}

TEST_F(History, ACommandCannotBeUndoneTwice)
{
    const auto command = run([&](auto& context) { root(context).name().set("x"); });
    command->undo();
    EXPECT_FALSE(command->undo());
}

TEST_F(History, UndoIsToldToListeners)
{
    const auto command = run([&](auto& context) { root(context).books().erase(0, 2); });
    attach(library.root.books(), listener);
    command->undo();
    EXPECT_EQ(listener.told, Journal{"8 I2"});
}

TEST_F(History, RedoIsToldToListeners)
{
    const auto command = run([&](auto& context) { root(context).books().erase(0, 2); });
    command->undo();
    attach(library.root.books(), listener);
    command->redo();
    EXPECT_EQ(listener.told, Journal{"16 E2"});
}

TEST_F(History, UndoOfADeadDocumentFails)
{
    auto dying = std::make_unique<Root>();
    const auto command = run([&](auto& context) { ShelfEdit(*dying, context).name().set("x"); });
    dying.reset();
    EXPECT_FALSE(command->undo());
}

TEST_F(History, UndoOfAnInsertionThatIsGoneFails)
{
    const auto command = run([&](auto& context) { root(context).books().pushBack(aBook("x")); });
    edit([&](auto& context) { root(context).books().clear(); });
    EXPECT_FALSE(command->undo());
}

TEST_F(History, UndoOfAnErasureBehindTheEndFailsAndKeepsTheItem)
{
    const DataPointerBox<Book> box(&library.book(2));
    const auto command = run([&](auto& context) { root(context).books().erase(2, 1); });
    edit([&](auto& context) { root(context).books().clear(); });
    EXPECT_FALSE(command->undo());
    EXPECT_TRUE(box);
}

TEST_F(History, UndoOfAMoveThatIsGoneFails)
{
    const auto command = run([&](auto& context) { root(context).books().move(0, 2); });
    edit([&](auto& context) { root(context).books().erase(0, 1); });
    EXPECT_FALSE(command->undo());
}

TEST_F(History, UndoFailsWhenAListenerThrows)
{
    const auto command = run([&](auto& context) { root(context).name().set("x"); });
    attach(library.root, listener);
    listener.reaction = [](const DataMessage&) { throw std::runtime_error("deaf ear"); };
    EXPECT_FALSE(command->undo());
}

TEST_F(History, UndoThatAListenerStoppedLeavesTheTreeAsItWas)
{
    const auto command = run([&](auto& context) { editEverything(library, context); });
    const std::string done = now();
    attach(library.root, listener);
    listener.reaction = [](const DataMessage&) { throw std::runtime_error("deaf ear"); };
    command->undo();
    EXPECT_EQ(now(), done);
}

TEST_F(History, UndoThatAListenerStoppedCanBeTriedAgain)
{
    const auto command = run([&](auto& context) { editEverything(library, context); });
    attach(library.root, listener);
    listener.reaction = [](const DataMessage&) { throw std::runtime_error("deaf ear"); };
    command->undo();
    listener.reaction = nullptr;
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(now(), before);
}

// An edit in between takes away what the first step of the command wants back.
class FailingUndo : public History
{
protected:
    FailingUndo()
        : command(run([this](auto& context) {
              root(context).books().erase(2, 1);
              root(context).name().set("x");
              root(context).books().pushBack(aBook("d"));
          })),
          between(run([this](auto& context) { root(context).books().erase(0, 2); })), done(now())
    {}
    std::shared_ptr<CommandDataModification> command; // leaves "a b d"
    std::shared_ptr<CommandDataModification> between; // leaves "d"
    std::string done;
};

TEST_F(FailingUndo, SaysSo)
{
    EXPECT_FALSE(command->undo());
}

TEST_F(FailingUndo, LeavesTheTreeAsItWas)
{
    command->undo();
    EXPECT_EQ(now(), done);
}

TEST_F(FailingUndo, TellsNobody)
{
    attach(library.root, listener);
    command->undo();
    EXPECT_EQ(listener.told, Journal{});
}

TEST_F(FailingUndo, SucceedsWhenTheObstacleIsGone)
{
    command->undo();
    between->undo();
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(FailingUndo, KeepsTheObjectsThatItPutsBack)
{
    const DataPointerBox<Book> box(&library.root.books().at(0)); // "d"
    command->undo();
    EXPECT_TRUE(box);
}

TEST(ExceptionCantUndoText, IsFixed)
{
    EXPECT_STREQ(ExceptionCantUndo().what(), "inconsistent undo");
}

// Who owns what left the tree.

TEST_F(History, AnErasedObjectLivesWithItsCommand)
{
    const DataPointerBox<Book> box(&library.book(1));
    const auto command = run([&](auto& context) { root(context).books().erase(1, 1); });
    EXPECT_EQ(box->title().get(), "b");
}

TEST_F(History, AnErasedObjectDiesWithItsCommand)
{
    const DataPointerBox<Book> box(&library.book(1));
    auto command = run([&](auto& context) { root(context).books().erase(1, 1); });
    command.reset();
    EXPECT_FALSE(box);
}

TEST_F(History, UndoGivesTheErasedObjectsBackThemselves)
{
    const DataPointerBox<Book> box(&library.book(1));
    const auto command = run([&](auto& context) { root(context).books().erase(0, 3); });
    command->undo();
    EXPECT_EQ(box.get(), &library.book(1));
    EXPECT_EQ(box->getParent(), &library.root.books());
}

TEST_F(History, AnObjectThatCameBackOutlivesTheCommand)
{
    const DataPointerBox<Book> box(&library.book(1));
    auto command = run([&](auto& context) { root(context).books().erase(1, 1); });
    command->undo();
    command.reset();
    EXPECT_TRUE(box);
}

TEST_F(History, RedoGivesTheInsertedObjectsBackThemselves)
{
    const auto command = run([&](auto& context) { root(context).books().pushBack(aBook("x")); });
    const DataPointerBox<Book> box(&library.book(3));
    command->undo();
    command->redo();
    EXPECT_EQ(box.get(), &library.book(3));
}

TEST_F(History, AnUndoneInsertionDiesWithItsCommand)
{
    auto command = run([&](auto& context) { root(context).books().pushBack(aBook("x")); });
    const DataPointerBox<Book> box(&library.book(3));
    command->undo();
    command.reset();
    EXPECT_FALSE(box);
}

TEST_F(History, ALostChildComesBackItself)
{
    library.root.lamp().set(std::make_unique<Candle>());
    const DataPointerBox<BaseObject> box(library.root.lamp().get());
    const auto command = run([&](auto& context) { root(context).lamp().set(nullptr); });
    command->undo();
    EXPECT_EQ(box.get(), library.root.lamp().get());
}

TEST_F(History, ALostChildDiesWithItsCommand)
{
    library.root.lamp().set(std::make_unique<Candle>());
    const DataPointerBox<BaseObject> box(library.root.lamp().get());
    run([&](auto& context) { root(context).lamp().set(nullptr); });
    EXPECT_FALSE(box);
}

// Refused edits and exceptions.

TEST_F(History, ARefusedEditLeavesTheTreeAsItWas)
{
    EXPECT_FALSE(editAndRefuse([&](auto& context) { editEverything(library, context); }));
    EXPECT_EQ(now(), before);
}

TEST_F(History, ARefusedEditLeavesTheObjectsThemselves)
{
    const DataPointerBox<Book> box(&library.book(1));
    editAndRefuse([&](auto& context) { root(context).books().clear(); });
    EXPECT_EQ(box.get(), &library.book(1));
}

TEST_F(History, ARefusedInsertionDeletesItsItems)
{
    DataPointerBox<Book> box;
    editAndRefuse([&](auto& context) {
        root(context).books().pushBack(aBook("x"));
        box.reset(&library.book(3));
    });
    EXPECT_FALSE(box);
}

TEST_F(History, ARefusedEditWithoutAnyChangeIsNoDifferent)
{
    EXPECT_FALSE(editAndRefuse([](auto&) {}));
    EXPECT_EQ(now(), before);
}

TEST_F(History, ARefusedCommandCannotBeUndone)
{
    CommandDataModification command(
        [&](ManipulatorContext& context) {
            root(context).name().set("x");
            return false;
        },
        "refused");
    command.execute();
    EXPECT_FALSE(command.undo());
}

TEST_F(History, ARefusedCommandMayBeRunAgain)
{
    bool isAccepted = false;
    CommandDataModification command(
        [&](ManipulatorContext& context) {
            root(context).name().set("x");
            return isAccepted;
        },
        "edit");
    command.execute();
    isAccepted = true;
    EXPECT_TRUE(command.execute());
    EXPECT_TRUE(command.undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, AnExceptionPassesThroughWithTheEditDone)
{
    const auto command = makeCommand([&](ManipulatorContext& context) {
        root(context).name().set("x");
        throw std::runtime_error("half done");
    });
    EXPECT_THROW(command->execute(), std::runtime_error);
    EXPECT_EQ(library.root.name().get(), "x");
}

TEST_F(History, ACommandThatThrewCannotBeUndone)
{
    const auto command = makeCommand([&](ManipulatorContext& context) {
        root(context).name().set("x");
        throw std::runtime_error("half done");
    });
    EXPECT_THROW(command->execute(), std::runtime_error);
    EXPECT_FALSE(command->undo());
}

TEST_F(History, AnEmptyFunctionCannotBeCalled)
{
    CommandDataModification command({}, "empty");
    EXPECT_THROW(command.execute(), boost::bad_function_call);
}

TEST_F(History, TheTextOfACallToAnEmptyFunctionIsFixed)
{
    EXPECT_STREQ(boost::bad_function_call().what(), "call to empty boost::function");
}

// Commands within commands.

TEST_F(History, ACommandWithinAnEditIsUndoneWithTheEdit)
{
    const auto outer = makeCommand([&](auto& context) {
        root(context).name().set("outer");
        edit([&](auto& within) { root(within).uid().set(5); });
    });
    outer->execute();
    EXPECT_TRUE(outer->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, ACommandWithinAnEditIsRedoneWithTheEdit)
{
    const auto outer = makeCommand([&](auto& context) {
        root(context).name().set("outer");
        edit([&](auto& within) { editEverything(library, within); });
    });
    outer->execute();
    const std::string done = now();
    outer->undo();
    EXPECT_TRUE(outer->redo());
    EXPECT_EQ(now(), done);
}

TEST_F(History, ACommandWithinAnEditHasNothingToUndoByItself)
{
    const auto inner = makeCommand([&](auto& context) { root(context).uid().set(5); });
    edit([&](auto&) { inner->execute(); });
    EXPECT_FALSE(inner->undo());
    EXPECT_EQ(library.root.uid().get(), 5u);
}

TEST_F(History, ACommandWithinADeliveryIsUndoneWithTheEdit)
{
    attach(library.root.name(), listener);
    listener.reaction = [&](const DataMessage&) {
        listener.reaction = nullptr;
        edit([&](auto& context) { root(context).uid().set(5); });
    };
    const auto outer = run([&](auto& context) { root(context).name().set("outer"); });
    EXPECT_EQ(library.root.uid().get(), 5u);
    EXPECT_TRUE(outer->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, ARefusedEditTakesWhatCommandsWithinHaveDoneAlong)
{
    editAndRefuse([&](auto& context) {
        root(context).name().set("outer");
        edit([&](auto& within) { editEverything(library, within); });
    });
    EXPECT_EQ(now(), before);
}

TEST_F(History, ARefusedCommandWithinLeavesTheOuterEdit)
{
    edit([&](auto& context) {
        root(context).name().set("outer");
        editAndRefuse([&](auto& within) { root(within).name().set("inner"); });
    });
    EXPECT_EQ(library.root.name().get(), "outer");
}

TEST_F(History, ARefusedCommandWithinIsNoPartOfTheHistoryOfTheEdit)
{
    const auto outer = run([&](auto& context) {
        root(context).name().set("outer");
        editAndRefuse([&](auto& within) { editEverything(library, within); });
    });
    EXPECT_EQ(recorded, 1u);
    EXPECT_TRUE(outer->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, NothingIsUndoneWithinAnEdit)
{
    const auto former = run([&](auto& context) { root(context).name().set("x"); });
    bool isUndone = true;
    edit([&](auto&) { isUndone = former->undo(); });
    EXPECT_FALSE(isUndone);
    EXPECT_TRUE(former->undo());
}

// Merging commands.

TEST_F(History, MergedCommandsAreUndoneAsOne)
{
    const auto first = run([&](auto& context) { root(context).name().set("x"); }, "key");
    const auto second = run([&](auto& context) { editEverything(library, context); }, "key");
    EXPECT_TRUE(first->merge(second));
    EXPECT_TRUE(first->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, MergedCommandsAreRedoneAsOne)
{
    const auto first = run([&](auto& context) { root(context).name().set("x"); }, "key");
    const auto second = run([&](auto& context) { editEverything(library, context); }, "key");
    const std::string after = now();
    first->merge(second);
    first->undo();
    EXPECT_TRUE(first->redo());
    EXPECT_EQ(now(), after);
}

TEST_F(History, CommandsThatCannotBeMergedStayApart)
{
    const auto first = run([&](auto& context) { root(context).name().set("x"); });
    const auto second = run([&](auto& context) { root(context).name().set("y"); });
    EXPECT_FALSE(first->merge(second));
    first->undo();
    EXPECT_EQ(library.root.name().get(), "root");
    EXPECT_TRUE(second->undo());
    EXPECT_EQ(library.root.name().get(), "x");
}

TEST_F(History, ACommandThatHasNotRunAddsNothing)
{
    const auto first = run([&](auto& context) { root(context).name().set("x"); }, "key");
    EXPECT_TRUE(first->merge(makeCommand([](auto&) {}, "key")));
    EXPECT_TRUE(first->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, AppendedItemsAreMergedAsLongAsTheyAreRedundant)
{
    const auto first = run([&](auto& context) { root(context).name().set("x"); }, "key");
    const auto second = run(
        [&](auto& context) {
            root(context).name().set("y");
            root(context).uid().set(1);
            root(context).name().set("z");
        },
        "key");
    first->merge(second);
    EXPECT_EQ(first->undoSize(), 3u);
    EXPECT_EQ(second->undoSize(), 0u);
}

TEST_F(History, ACommandDoesNotMergeWithItself)
{
    const auto command = run([&](auto& context) { editEverything(library, context); }, "key");
    EXPECT_FALSE(command->canMerge(command));
    EXPECT_FALSE(command->merge(command));
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(now(), before);
}

TEST_F(History, AnUndoneCommandTakesNoOtherOver)
{
    const auto first = run([&](auto& context) { root(context).name().set("x"); }, "key");
    first->undo();
    const auto second = run([&](auto& context) { root(context).name().set("y"); }, "key");
    EXPECT_FALSE(first->merge(second));
    EXPECT_TRUE(second->undo());
}

TEST_F(History, ACommandRunAgainHasNothingToRedo)
{
    const auto command = run([&](auto& context) { root(context).name().set("x"); });
    command->undo();
    command->execute();
    EXPECT_FALSE(command->redo());
    EXPECT_EQ(library.root.name().get(), "x");
}

TEST_F(History, ACommandRunAgainIsUndone)
{
    const auto command = run([&](auto& context) { root(context).books().move(0, 1); });
    command->undo();
    command->execute();
    EXPECT_TRUE(command->undo());
    EXPECT_EQ(now(), before);
}

namespace {

bool renameByModification(ManipulatorStruct<Shelf> shelf, const DataPointerBoxMasterKey&,
                          const std::string& name)
{
    if (name.empty())
        return false;
    shelf.name().set(name);
    return true;
}

std::shared_ptr<ICommand> emptyEdit(const std::string& mergeKey)
{
    return makeCommand([](auto&) {}, mergeKey);
}

std::shared_ptr<ICommand> modification(const std::string& mergeKey)
{
    return std::make_shared<CommandModification>(
        makeModification(DataPointerBox<Shelf>(), std::string(), &renameByModification), "edit",
        mergeKey);
}

std::shared_ptr<ICommand> groupCommand(const std::string&)
{
    return std::make_shared<BeginGroupCommand>(nullptr);
}

std::shared_ptr<ICommand> noCommand(const std::string&)
{
    return nullptr;
}

using CommandMaker = std::shared_ptr<ICommand> (*)(const std::string&);

} // namespace

struct MergeCase
{
    const char* name;
    CommandMaker first;
    const char* firstKey;
    CommandMaker second;
    const char* secondKey;
    bool canMerge;
};

class CommandMerge : public testing::TestWithParam<MergeCase>
{};

TEST_P(CommandMerge, NeedsOneClassAndOneKey)
{
    const auto first = GetParam().first(GetParam().firstKey);
    const auto second = GetParam().second(GetParam().secondKey);
    EXPECT_EQ(dynamic_cast<UndoableCommand&>(*first).canMerge(second), GetParam().canMerge);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, CommandMerge,
    testing::Values(MergeCase{"SameKey", emptyEdit, "key", emptyEdit, "key", true},
                    MergeCase{"OtherKey", emptyEdit, "key", emptyEdit, "other", false},
                    MergeCase{"NoKeys", emptyEdit, "", emptyEdit, "", false},
                    MergeCase{"NoKeyInTheFirst", emptyEdit, "", emptyEdit, "key", false},
                    MergeCase{"Modifications", modification, "key", modification, "key", true},
                    MergeCase{"OtherClass", emptyEdit, "key", modification, "key", false},
                    MergeCase{"OtherClassTheOtherWay", modification, "key", emptyEdit, "key",
                              false},
                    MergeCase{"NotUndoable", emptyEdit, "key", groupCommand, "key", false},
                    MergeCase{"Null", emptyEdit, "key", noCommand, "key", false}),
    caseName<MergeCase>);

// Modifications: a target, a payload and a function.

namespace {

class Modification : public testing::Test
{
protected:
    bool rename(const Shelf* target, const std::string& name)
    {
        CommandModification command(
            makeModification(DataPointerBox<Shelf>(target), name, &renameByModification), "rename");
        return command.execute();
    }
    Library library;
};

bool appendExclamation(ManipulatorAttribute<Text> text, const DataPointerBoxMasterKey&,
                       const std::string& mark)
{
    text.set(text.get()->get() + mark);
    return true;
}

bool keepFirst(ManipulatorList<Book> list, const DataPointerBoxMasterKey&, std::size_t& erased)
{
    erased = list.get()->size() - 1;
    list.erase(1, erased);
    return true;
}

bool renameThroughBox(ManipulatorStruct<Shelf>, const DataPointerBoxMasterKey& key,
                      const DataPointerBox<Shelf>& other)
{
    // NOLINTNEXTLINE(readability-redundant-smartptr-get): it takes a key
    other.get(key)->name().assign("through the box");
    return true;
}

} // namespace

TEST_F(Modification, AppliesItsFunctionToTheTarget)
{
    EXPECT_TRUE(rename(&library.root, "new"));
    EXPECT_EQ(library.root.name().get(), "new");
}

TEST_F(Modification, OfAnInnerTargetIsAppliedToo)
{
    EXPECT_TRUE(rename(&library.inner(), "new"));
    EXPECT_EQ(library.inner().name().get(), "new");
}

TEST_F(Modification, ThatIsRefusedAnswersFalse)
{
    EXPECT_FALSE(rename(&library.root, ""));
}

TEST_F(Modification, WithoutATargetAnswersFalse)
{
    EXPECT_FALSE(rename(nullptr, "new"));
}

TEST_F(Modification, OfATargetThatHasDiedAnswersFalse)
{
    auto shelf = TestDocument::aShelf().build();
    CommandModification command(makeModification(DataPointerBox<Shelf>(shelf.get()),
                                                 std::string("new"), &renameByModification),
                                "rename");
    shelf.reset();
    EXPECT_FALSE(command.execute());
}

TEST_F(Modification, OfATargetOutsideTheLiveTreeAnswersFalse)
{
    const auto shelf = TestDocument::aShelf().named("free").build();
    EXPECT_FALSE(rename(shelf.get(), "new"));
    EXPECT_EQ(shelf->name().get(), "free");
}

TEST_F(Modification, OfATargetThatHasLeftTheTreeAnswersFalse)
{
    const DataPointerBox<Shelf> box(&library.inner());
    const auto erasure =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).shelves().clear(); });
    erasure->execute();
    EXPECT_FALSE(rename(box.get(), "new"));
    EXPECT_EQ(box->name().get(), "inner");
}

TEST_F(Modification, OfATargetThatCameBackIsApplied)
{
    const DataPointerBox<Shelf> box(&library.inner());
    const auto erasure =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).shelves().clear(); });
    erasure->execute();
    erasure->undo();
    EXPECT_TRUE(rename(box.get(), "new"));
}

TEST_F(Modification, MayHaveAnAttributeAsTarget)
{
    CommandModification command(
        makeModification(DataPointerBox<Orv::Data::Attribute<Text>>(&library.root.name()),
                         std::string("!"), &appendExclamation),
        "mark");
    command.execute();
    EXPECT_EQ(library.root.name().get(), "root!");
}

TEST_F(Modification, MayHaveAListAsTarget)
{
    CommandModification command(
        makeModification(DataPointerBox<ContainerList<Book>>(&library.root.books()), std::size_t{0},
                         &keepFirst),
        "shorten");
    command.execute();
    EXPECT_EQ(titlesOf(library.root), "a");
}

TEST_F(Modification, LeavesItsResultsInThePayload)
{
    auto shortening = makeModification(DataPointerBox<ContainerList<Book>>(&library.root.books()),
                                       std::size_t{0}, &keepFirst);
    const auto& kept = *shortening;
    CommandModification command(std::move(shortening), "shorten");
    command.execute();
    EXPECT_EQ(kept.data(), 2u);
    EXPECT_EQ(&command.modification(), &kept);
}

TEST_F(Modification, ReachesOtherObjectsByItsKey)
{
    CommandModification command(makeModification(DataPointerBox<Shelf>(&library.root),
                                                 DataPointerBox<Shelf>(&library.inner()),
                                                 &renameThroughBox),
                                "rename");
    command.execute();
    EXPECT_EQ(library.inner().name().get(), "through the box");
}

TEST_F(Modification, IsUndoneLikeAnyEdit)
{
    CommandModification command(makeModification(DataPointerBox<Shelf>(&library.root),
                                                 std::string("new"), &renameByModification),
                                "rename");
    command.execute();
    EXPECT_TRUE(command.undo());
    EXPECT_EQ(library.root.name().get(), "root");
}

TEST_F(Modification, IsKnownByItsHistoryText)
{
    const CommandModification command(
        makeModification(DataPointerBox<Shelf>(), std::string(), &renameByModification), "rename");
    EXPECT_EQ(command.getName(), "rename");
}

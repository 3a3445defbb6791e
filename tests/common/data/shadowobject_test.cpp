#include "data/shadowobject.h"

#include "core/listenerdeaf.h"
#include "data/diagnosticlog.h"
#include "support/editing.h"

#include <gtest/gtest.h>

using Orv::DiagnosticLog;
using Orv::LogLevel;
using Orv::LogRecord;
using Orv::Data::DataPointerBox;
using Orv::Data::ShadowObject;
using TestDocument::Book;
using TestDocument::Candle;
using TestDocument::Root;
using namespace TestSupport;

namespace {

// Belongs to the shadow that it is attached to, and counts the living.
class OwnedListener final : public Orv::Core::ListenerDeaf<>
{
public:
    explicit OwnedListener(int& living) : m_living(living) { ++m_living; }
    ~OwnedListener() override { --m_living; }
    bool isOwnedByShadow() const override { return true; }

private:
    int& m_living;
};

// Deletes another listener when it dies.
class GuardListener final : public Orv::Core::ListenerDeaf<>
{
public:
    explicit GuardListener(std::unique_ptr<OwnedListener> guarded) : m_guarded(std::move(guarded))
    {}
    OwnedListener& guarded() { return *m_guarded; }
    bool isOwnedByShadow() const override { return true; }

private:
    std::unique_ptr<OwnedListener> m_guarded;
};

// Collects what is written to the log.
class LogCapture
{
public:
    LogCapture()
        : m_number(DiagnosticLog::addSink([this](const LogRecord& r) { records.push_back(r); }))
    {}
    ~LogCapture() { DiagnosticLog::removeSink(m_number); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<LogRecord> records;

private:
    int m_number;
};

std::vector<const Orv::Data::ListenerBase*> listenersOf(const ShadowObject& shadow)
{
    std::vector<const Orv::Data::ListenerBase*> listeners;
    for (const Orv::Data::ListenerEntry& entry : shadow.listeners())
        listeners.push_back(entry.listener.get());
    return listeners;
}

using Listeners = std::vector<const Orv::Data::ListenerBase*>;

RecordingListener atPriority(std::uint16_t priority)
{
    return RecordingListener(RecordingListener::All, RecordingListener::All, priority);
}

} // namespace

// How a shadow comes and goes with its object.

TEST(ShadowObject, IsAbsentAtFirst)
{
    EXPECT_EQ(Book().shadow(), nullptr);
}

TEST(ShadowObject, IsMadeByTheFirstListener)
{
    Library library;
    RecordingListener listener;
    attach(library.root, listener);
    ASSERT_NE(library.root.shadow(), nullptr);
    EXPECT_EQ(library.root.shadow()->owner(), &library.root);
}

TEST(ShadowObject, IsTheSameForAllListeners)
{
    Book book;
    ShadowObject& first = ShadowObject::of(book);
    EXPECT_EQ(&ShadowObject::of(book), &first);
}

TEST(ShadowObject, IsNotMadeForAncestors)
{
    Library library;
    RecordingListener listener;
    attach(library.root.name(), listener);
    EXPECT_EQ(library.root.shadow(), nullptr);
}

TEST(ShadowObject, StaysWhenItsLastListenerIsRemoved)
{
    Book book;
    RecordingListener listener;
    ShadowObject::of(book).addListener(listener);
    book.shadow()->removeListener(listener);
    EXPECT_NE(book.shadow(), nullptr);
}

TEST(ShadowObject, DiesWithItsObject)
{
    auto book = std::make_unique<Book>();
    const DataPointerBox<ShadowObject> shadow(&ShadowObject::of(*book));
    book.reset();
    EXPECT_FALSE(shadow);
}

TEST(ShadowObject, LeavesItsObjectWhenItDies)
{
    Book book;
    delete &ShadowObject::of(book);
    EXPECT_EQ(book.shadow(), nullptr);
}

TEST(ShadowObject, BoxesMadeBeforeItKeepTheirTarget)
{
    auto book = std::make_unique<Book>();
    const DataPointerBox<Book> box(book.get());
    ShadowObject::of(*book);
    EXPECT_EQ(box.get(), book.get());
}

TEST(ShadowObject, BoxesAroundItReadNullWhenTheObjectDies)
{
    auto book = std::make_unique<Book>();
    const DataPointerBox<Book> before(book.get());
    ShadowObject::of(*book);
    const DataPointerBox<Book> behind(book.get());
    const DataPointerBox<Book> copy(behind); // NOLINT(performance-unnecessary-copy-initialization)
    book.reset();
    EXPECT_FALSE(before || behind || copy);
}

TEST(ShadowObject, BoxesOutliveIt)
{
    Book book;
    const DataPointerBox<Book> before(&book);
    ShadowObject& shadow = ShadowObject::of(book);
    const DataPointerBox<Book> behind(&book);
    delete &shadow;
    EXPECT_EQ(before.get(), &book);
    EXPECT_EQ(behind.get(), &book);
}

TEST(ShadowObject, IsFoundWhileBoxesComeAndGo)
{
    Book book;
    auto before = std::make_unique<DataPointerBox<Book>>(&book);
    ShadowObject& shadow = ShadowObject::of(book);
    const DataPointerBox<Book> behind(&book);
    before.reset();
    EXPECT_EQ(book.shadow(), &shadow);
}

TEST(ShadowObject, ASecondOneCanBeMadeAfterTheFirst)
{
    Book book;
    delete &ShadowObject::of(book);
    EXPECT_EQ(ShadowObject::of(book).owner(), &book);
}

// Its listeners.

TEST(ShadowListeners, StandInTheOrderOfTheirPriorities)
{
    Book book;
    RecordingListener middle = atPriority(3);
    RecordingListener last = atPriority(0x8001);
    RecordingListener first = atPriority(0);
    ShadowObject& shadow = ShadowObject::of(book);
    shadow.addListener(middle);
    shadow.addListener(last);
    shadow.addListener(first);
    EXPECT_EQ(listenersOf(shadow), (Listeners{&first, &middle, &last}));
}

TEST(ShadowListeners, OfEqualPriorityStandInTheOrderOfRegistration)
{
    Book book;
    RecordingListener first = atPriority(3);
    RecordingListener second = atPriority(3);
    RecordingListener behind = atPriority(4);
    ShadowObject& shadow = ShadowObject::of(book);
    shadow.addListener(first);
    shadow.addListener(behind);
    shadow.addListener(second);
    EXPECT_EQ(listenersOf(shadow), (Listeners{&first, &second, &behind}));
}

TEST(ShadowListeners, ThatHaveDiedAreDroppedWhenAnotherComes)
{
    Book book;
    auto mortal = std::make_unique<RecordingListener>();
    RecordingListener heir;
    ShadowObject& shadow = ShadowObject::of(book);
    shadow.addListener(*mortal);
    mortal.reset();
    shadow.addListener(heir);
    EXPECT_EQ(listenersOf(shadow), (Listeners{&heir}));
}

TEST(ShadowListeners, AreRemovedAlone)
{
    Book book;
    RecordingListener staying;
    RecordingListener leaving;
    ShadowObject& shadow = ShadowObject::of(book);
    shadow.addListener(staying);
    shadow.addListener(leaving);
    EXPECT_TRUE(shadow.removeListener(leaving));
    EXPECT_EQ(listenersOf(shadow), (Listeners{&staying}));
}

TEST(ShadowListeners, ThatAreNotAttachedCannotBeRemoved)
{
    Book book;
    RecordingListener attached;
    RecordingListener stranger;
    ShadowObject::of(book).addListener(attached);
    EXPECT_FALSE(book.shadow()->removeListener(stranger));
}

TEST(ShadowListeners, CannotBeRemovedFromAnObjectWithoutShadow)
{
    Library library;
    RecordingListener stranger;
    bool isRemoved = true;
    edit([&](ManipulatorContext& context) {
        isRemoved = ShelfEdit(library.root, context).name().removeListener(stranger);
    });
    EXPECT_FALSE(isRemoved);
    EXPECT_EQ(library.root.name().shadow(), nullptr);
}

TEST(ShadowListeners, AreFoundByTheirClass)
{
    Book book;
    int living = 0;
    RecordingListener other;
    auto* owned = new OwnedListener(living);
    ShadowObject::of(book).addListener(other);
    ShadowObject::of(book).addListener(*owned);
    EXPECT_EQ(book.shadow()->findListener<OwnedListener>(), owned);
}

TEST(ShadowListeners, OfAnAbsentClassAreNotFound)
{
    Book book;
    RecordingListener other;
    ShadowObject::of(book).addListener(other);
    EXPECT_EQ(book.shadow()->findListener<OwnedListener>(), nullptr);
}

TEST(ShadowListeners, ThatAreOwnedDieWithTheObject)
{
    int living = 0;
    auto book = std::make_unique<Book>();
    ShadowObject::of(*book).addListener(*new OwnedListener(living));
    ShadowObject::of(*book).addListener(*new OwnedListener(living));
    book.reset();
    EXPECT_EQ(living, 0);
}

TEST(ShadowListeners, ThatAreNotOwnedOutliveTheObject)
{
    RecordingListener listener;
    const DataPointerBox<RecordingListener> box(&listener);
    auto book = std::make_unique<Book>();
    ShadowObject::of(*book).addListener(listener);
    book.reset();
    EXPECT_TRUE(box);
}

TEST(ShadowListeners, ThatAreOwnedAreHandedBackWhenRemoved)
{
    int living = 0;
    auto book = std::make_unique<Book>();
    const auto listener = std::make_unique<OwnedListener>(living);
    ShadowObject::of(*book).addListener(*listener);
    book->shadow()->removeListener(*listener);
    book.reset();
    EXPECT_EQ(living, 1);
}

TEST(ShadowListeners, MayDeleteOneAnotherWhenTheyDie)
{
    int living = 0;
    auto book = std::make_unique<Book>();
    auto* guard = new GuardListener(std::make_unique<OwnedListener>(living));
    ShadowObject::of(*book).addListener(guard->guarded());
    ShadowObject::of(*book).addListener(*guard);
    book.reset();
    EXPECT_EQ(living, 0);
}

// Shadows of what leaves the tree.

TEST(ShadowOfRemoved, DiesAtTheEndOfTheEditThoughTheObjectLives)
{
    Library library;
    int living = 0;
    attach(library.book(1), *new OwnedListener(living));
    const DataPointerBox<Book> box(&library.book(1));
    const auto command =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).books().erase(1, 1); });
    command->execute();
    EXPECT_TRUE(box);
    EXPECT_EQ(box->shadow(), nullptr);
    EXPECT_EQ(living, 0);
}

TEST(ShadowOfRemoved, DiesInTheWholeSubtree)
{
    Library library;
    int living = 0;
    library.inner().books().pushBack(aBook("deep"));
    attach(library.inner().books().at(0).title(), *new OwnedListener(living));
    attach(library.inner().books(), *new OwnedListener(living));
    const auto command =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).shelves().clear(); });
    command->execute();
    EXPECT_EQ(living, 0);
}

TEST(ShadowOfRemoved, DiesWithTheChildThatAUnionLost)
{
    Library library;
    int living = 0;
    library.root.lamp().set(std::make_unique<Candle>());
    attach(*library.root.lamp().get(), *new OwnedListener(living));
    const auto command =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).lamp().set(nullptr); });
    command->execute();
    EXPECT_EQ(living, 0);
}

TEST(ShadowOfRemoved, IsToldBeforeItDies)
{
    Library library;
    RecordingListener listener;
    attach(library.book(1), listener);
    edit([&](auto& context) { ShelfEdit(library.root, context).books().erase(1, 1); });
    EXPECT_EQ(listener.told, Journal{"4"});
}

TEST(ShadowOfRemoved, DoesNotComeBackWithTheObject)
{
    Library library;
    RecordingListener listener;
    attach(library.book(1), listener);
    const auto command =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).books().erase(1, 1); });
    command->execute();
    command->undo();
    EXPECT_EQ(library.book(1).shadow(), nullptr);
}

TEST(ShadowOfRemoved, StaysWhenTheEditIsRefused)
{
    Library library;
    int living = 0;
    attach(library.book(1), *new OwnedListener(living));
    editAndRefuse([&](auto& context) { ShelfEdit(library.root, context).books().erase(1, 1); });
    EXPECT_NE(library.book(1).shadow(), nullptr);
    EXPECT_EQ(living, 1);
}

TEST(ShadowOfRemoved, DiesWithAnItemWhoseInsertionIsRefused)
{
    Library library;
    int living = 0;
    editAndRefuse([&](ManipulatorContext& context) {
        auto books = ShelfEdit(library.root, context).books();
        books.pushBack(aBook("new"));
        context.addListener(library.book(3), *new OwnedListener(living));
        books.at(3).title().set("newer");
    });
    EXPECT_EQ(living, 0);
}

TEST(ShadowOfRemoved, DiesWhenACommandWithinRemovesWhatTheOuterOneChanged)
{
    Library library;
    int living = 0;
    RecordingListener listener;
    attach(library.book(1), listener);
    attach(library.book(1), *new OwnedListener(living));
    edit([&](auto& context) {
        ShelfEdit(library.root, context).books().at(1).title().set("new");
        edit([&](auto& inner) { ShelfEdit(library.root, inner).books().erase(1, 1); });
    });
    EXPECT_EQ(listener.told, Journal{"4"});
    EXPECT_EQ(living, 0);
}

// Messages that are lost.

TEST(ShadowWithPendingMessage, ReportsItsDeath)
{
    const LogCapture log;
    RecordingListener listener;
    auto root = std::make_unique<Root>();
    attach(root->name(), listener);
    edit([&](auto& context) {
        ShelfEdit(*root, context).name().set("new");
        root.reset();
    });
    ASSERT_EQ(log.records.size(), 1u);
    EXPECT_EQ(log.records[0].level, LogLevel::Assertion);
    EXPECT_EQ(log.records[0].text, "The shadow object have pending messages");
    EXPECT_STREQ(log.records[0].source, "data/include/data/shadowobject");
    EXPECT_EQ(log.records[0].line, 34);
}

TEST(ShadowWithPendingMessage, DropsItWithTheObject)
{
    RecordingListener listener;
    auto root = std::make_unique<Root>();
    attach(root->name(), listener);
    edit([&](auto& context) {
        ShelfEdit(*root, context).name().set("new");
        root.reset();
    });
    EXPECT_EQ(listener.told, Journal{});
}

TEST(ShadowWithoutPendingMessage, ReportsNothing)
{
    const LogCapture log;
    RecordingListener listener;
    auto root = std::make_unique<Root>();
    attach(root->name(), listener);
    edit([&](auto& context) { ShelfEdit(*root, context).name().set("new"); });
    root.reset();
    EXPECT_TRUE(log.records.empty());
}

TEST(ShadowWithPendingMessage, IsFreeOfItAfterARefusedEdit)
{
    Library library;
    RecordingListener listener;
    attach(library.root.name(), listener);
    editAndRefuse([&](auto& context) { ShelfEdit(library.root, context).name().set("new"); });
    EXPECT_FALSE(library.root.name().shadow()->hasPending());
}

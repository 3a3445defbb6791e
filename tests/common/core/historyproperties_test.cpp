// Undo, redo and refusal of random edits of random documents.
#include "core/manipulatorstruct.h"
#include "data/shadowobject.h"
#include "data/treewalk.h"
#include "support/editing.h"
#include "support/shelfcases.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <map>
#include <numeric>
#include <random>

using Orv::Data::BaseObject;
using Orv::Data::ChangeRun;
using Orv::Data::RunKind;
using TestDocument::Bulb;
using TestDocument::Candle;
using TestDocument::Root;
using TestDocument::Shelf;
using TestDocument::written;
using TestSupport::pick;
using namespace TestSupport;

namespace {

// The shelves of a document, the root among them.
std::vector<Shelf*> shelvesOf(Root& root)
{
    std::vector<Shelf*> shelves;
    Orv::Data::visitTree(static_cast<BaseObject&>(root), [&](BaseObject& object) {
        if (auto* shelf = dynamic_cast<Shelf*>(&object))
            shelves.push_back(shelf);
    });
    return shelves;
}

std::size_t below(std::mt19937& random, std::size_t size)
{
    return pick<std::size_t>(random, 0, size - 1);
}

std::string aName(std::mt19937& random)
{
    return "n" + std::to_string(pick(random, 0, 999));
}

std::vector<std::unique_ptr<BaseObject>> someBooks(std::mt19937& random)
{
    std::vector<std::unique_ptr<BaseObject>> books;
    for (std::size_t left = pick<std::size_t>(random, 0, 3); left > 0; --left)
        books.push_back(aBook(aName(random)));
    return books;
}

std::vector<std::unique_ptr<BaseObject>> oneShelf(std::mt19937& random)
{
    std::vector<std::unique_ptr<BaseObject>> shelves;
    auto shelf = TestDocument::aShelf().named(aName(random)).build();
    for (auto& book : someBooks(random))
        shelf->books().pushBack(std::move(book));
    shelves.push_back(std::move(shelf));
    return shelves;
}

void eraseSome(std::mt19937& random, Orv::Core::ManipulatorListBase& list)
{
    const std::size_t index = pick<std::size_t>(random, 0, list.list()->size());
    list.erase(index, pick<std::size_t>(random, 0, list.list()->size() - index));
}

void moveOne(std::mt19937& random, Orv::Core::ManipulatorListBase& list)
{
    if (list.list()->isEmpty())
        return;
    const auto from = static_cast<std::ptrdiff_t>(below(random, list.list()->size()));
    const auto to = static_cast<std::ptrdiff_t>(below(random, list.list()->size()));
    list.move(static_cast<std::size_t>(from), to - from);
}

void shuffle(std::mt19937& random, Orv::Core::ManipulatorListBase& list)
{
    std::vector<std::size_t> order(list.list()->size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::shuffle(order.begin(), order.end(), random);
    list.reorder(order);
}

void eraseOne(std::mt19937& random, Orv::Core::ManipulatorListBase& list)
{
    if (!list.list()->isEmpty())
        list.erase(list.list()->childAt(below(random, list.list()->size())));
}

using Edit = void (*)(std::mt19937&, ShelfEdit&);

const Edit Edits[] = {
    [](std::mt19937& random, ShelfEdit& shelf) { shelf.name().set(aName(random)); },
    [](std::mt19937& random, ShelfEdit& shelf) { shelf.level().set(pick(random, 6u, 8u)); },
    [](std::mt19937&, ShelfEdit& shelf) { shelf.level().resetToDefault(); },
    [](std::mt19937&, ShelfEdit& shelf) { shelf.spot().setFromString("1,2,3"); },
    [](std::mt19937& random, ShelfEdit& shelf) { shelf.cover().color().set(aName(random)); },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto books = shelf.books();
        books.insert(pick<std::size_t>(random, 0, books.get()->size()), someBooks(random));
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto books = shelf.books();
        eraseSome(random, books);
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto books = shelf.books();
        moveOne(random, books);
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        for (const auto& book : shelf.books())
            book.title().set(aName(random));
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto books = shelf.books();
        books.insert(pick<std::size_t>(random, 0, books.get()->size()), aBook(aName(random)));
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto books = shelf.books();
        eraseOne(random, books);
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto books = shelf.books();
        shuffle(random, books);
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        shelf.level().setIfChanged(pick(random, 6u, 8u));
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto shelves = shelf.shelves();
        shelves.insert(pick<std::size_t>(random, 0, shelves.get()->size()), oneShelf(random));
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto shelves = shelf.shelves();
        shelves.insert(pick<std::size_t>(random, 0, shelves.get()->size()), oneShelf(random));
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto shelves = shelf.shelves();
        eraseSome(random, shelves);
    },
    [](std::mt19937& random, ShelfEdit& shelf) {
        auto shelves = shelf.shelves();
        moveOne(random, shelves);
    },
    [](std::mt19937&, ShelfEdit& shelf) { shelf.lamp().set(std::make_unique<Candle>()); },
    [](std::mt19937&, ShelfEdit& shelf) { shelf.lamp().set(std::make_unique<Bulb>()); },
    [](std::mt19937&, ShelfEdit& shelf) { shelf.lamp().set(nullptr); },
};

// Several edits anywhere in the document.
EditFunction randomEdits(std::mt19937& random, Root& root)
{
    return [&](ManipulatorContext& context) {
        for (int left = pick(random, 1, 12); left > 0; --left) {
            const std::vector<Shelf*> shelves = shelvesOf(root);
            ShelfEdit shelf(*shelves[below(random, shelves.size())], context);
            Edits[below(random, std::size(Edits))](random, shelf);
        }
    };
}

void fill(std::mt19937& random, Root& root)
{
    for (int left = 4; left > 0; --left)
        edit(randomEdits(random, root));
}

// A series of commands, each of which leads from one state of the document to the next.
struct Session
{
    Session(std::mt19937& random, Root& document) : root(document), states{written(document)}
    {
        for (int left = pick(random, 1, 6); left > 0; --left) {
            commands.push_back(makeCommand(randomEdits(random, root)));
            commands.back()->execute();
            states.push_back(written(root));
        }
    }

    // Both answer what is wrong, "" if nothing is.
    std::string undoAll()
    {
        for (std::size_t i = commands.size(); i-- > 0;)
            if (!commands[i]->undo() || written(root) != states[i])
                return "command " + std::to_string(i) + " is not undone";
        return "";
    }
    std::string redoAll()
    {
        for (std::size_t i = 0; i < commands.size(); ++i)
            if (!commands[i]->redo() || written(root) != states[i + 1])
                return "command " + std::to_string(i) + " is not redone";
        return "";
    }

    Root& root;
    std::vector<std::shared_ptr<CommandDataModification>> commands;
    std::vector<std::string> states;
};

// Listens to every object of a document.
class Audience
{
public:
    explicit Audience(Root& root) : m_root(root)
    {
        Orv::Data::visitTree(static_cast<BaseObject&>(root), [this](BaseObject& object) {
            m_listeners[&object] = std::make_unique<RecordingListener>();
            attach(object, *m_listeners[&object]);
        });
    }

    std::size_t toldTimes() const
    {
        std::size_t times = 0;
        for (const auto& [object, listener] : m_listeners)
            times += listener->told.size();
        return times;
    }

    // Do exactly the objects of the beginning stand in the document, each with its own listener and
    // no message pending?
    bool isAsAtFirst() const
    {
        std::size_t matches = 0;
        std::size_t objects = 0;
        Orv::Data::visitTree(static_cast<BaseObject&>(m_root), [&](BaseObject& object) {
            ++objects;
            matches += isAttended(object) ? 1 : 0;
        });
        return objects == m_listeners.size() && matches == objects;
    }

private:
    bool isAttended(const BaseObject& object) const
    {
        const auto found = m_listeners.find(&object);
        return found != m_listeners.end() && object.shadow() != nullptr &&
               !object.shadow()->hasPending() && object.shadow()->listeners().size() == 1 &&
               object.shadow()->listeners()[0].listener == found->second.get();
    }

    Root& m_root;
    std::map<const BaseObject*, std::unique_ptr<RecordingListener>> m_listeners;
};

// Follows a list by what it is told alone.
class Follower
{
public:
    explicit Follower(const Shelf& shelf) : m_shelf(shelf), m_items(itemsNow())
    {
        attach(shelf.books(), m_listener);
        m_listener.reaction = [this](const DataMessage& message) { follow(message); };
    }

    bool isUpToDate() const { return m_items == itemsNow(); }

private:
    using Items = std::vector<const BaseObject*>;

    Items itemsNow() const
    {
        Items items;
        for (const TestDocument::Book& book : m_shelf.books())
            items.push_back(&book);
        return items;
    }

    // Takes all but the inserted items from what it knew.
    void follow(const DataMessage& message)
    {
        const std::vector<ChangeRun>& runs = message.runs.runs();
        std::vector<std::size_t> oldPlaces(runs.size());
        std::size_t place = 0;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            oldPlaces[i] = place;
            place += runs[i].inOldList() ? runs[i].count : 0;
        }
        const Items now = itemsNow();
        Items items;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            const auto source =
                static_cast<std::size_t>(static_cast<std::ptrdiff_t>(i) + runs[i].link);
            for (std::size_t k = 0; runs[i].inNewList() && k < runs[i].count; ++k)
                items.push_back(runs[i].kind == RunKind::Inserted
                                    ? now.at(items.size())
                                    : m_items.at(oldPlaces[source] + k));
        }
        items.insert(items.end(), m_items.begin() + static_cast<std::ptrdiff_t>(place),
                     m_items.end());
        m_items = items;
    }

    const Shelf& m_shelf;
    Items m_items;
    RecordingListener m_listener;
};

// Answers "" if the property holds for the document of this generator.
using Property = std::string (*)(std::mt19937&);

std::string undoAndRedoRestoreTheBytes(std::mt19937& random)
{
    Root root;
    fill(random, root);
    Session session(random, root);
    std::string fault = session.undoAll();
    fault += session.redoAll();
    fault += session.undoAll();
    return fault;
}

std::string mergedCommandsAreUndoneAsOne(std::mt19937& random)
{
    Root root;
    fill(random, root);
    const std::string before = written(root);
    const auto first = makeCommand(randomEdits(random, root), "key");
    const auto second = makeCommand(
        [&](ManipulatorContext& context) {
            ShelfEdit(root, context).name().set("between"); // no move behind a move
            randomEdits(random, root)(context);
        },
        "key");
    first->execute();
    second->execute();
    const std::string after = written(root);
    if (!first->merge(second) || !first->undo() || written(root) != before)
        return "not undone";
    return first->redo() && written(root) == after ? "" : "not redone";
}

std::string aRefusedEditLeavesNoTrace(std::mt19937& random)
{
    Root root;
    fill(random, root);
    const std::string before = written(root);
    const Audience audience(root);
    if (editAndRefuse(randomEdits(random, root)))
        return "was not refused";
    if (written(root) != before)
        return "left other bytes";
    if (audience.toldTimes() != 0)
        return "was told";
    return audience.isAsAtFirst() ? "" : "left other objects or listeners";
}

std::string aRefusedEditLeavesTheNextOneFree(std::mt19937& random)
{
    Root root;
    fill(random, root);
    editAndRefuse(randomEdits(random, root));
    Session session(random, root);
    return session.undoAll();
}

std::string aListenerCanFollowAList(std::mt19937& random)
{
    Root root;
    fill(random, root);
    const Follower follower(root);
    Session session(random, root);
    if (!follower.isUpToDate())
        return "lost track of edits";
    session.undoAll();
    return follower.isUpToDate() ? "" : "lost track of undo";
}

constexpr unsigned Rounds = 60;

// Tries documents of many seeds; answers the first fault and its seed.
std::string firstFault(std::mt19937::result_type firstSeed, Property property)
{
    for (auto seed = firstSeed; seed < firstSeed + Rounds; ++seed) {
        std::mt19937 random(seed);
        const std::string fault = property(random);
        if (!fault.empty())
            return "seed " + std::to_string(seed) + ": " + fault;
    }
    return "";
}

} // namespace

struct PropertyCase
{
    const char* name;
    Property property;
};

class HistoryProperty : public testing::TestWithParam<PropertyCase>
{};

TEST_P(HistoryProperty, HoldsForRandomEdits)
{
    EXPECT_EQ(firstFault(1, GetParam().property), "");
}

INSTANTIATE_TEST_SUITE_P(
    Edits, HistoryProperty,
    testing::Values(PropertyCase{"UndoAndRedoRestoreTheBytes", undoAndRedoRestoreTheBytes},
                    PropertyCase{"MergedCommandsAreUndoneAsOne", mergedCommandsAreUndoneAsOne},
                    PropertyCase{"ARefusedEditLeavesNoTrace", aRefusedEditLeavesNoTrace},
                    PropertyCase{"ARefusedEditLeavesTheNextOneFree",
                                 aRefusedEditLeavesTheNextOneFree},
                    PropertyCase{"AListenerCanFollowAList", aListenerCanFollowAList}),
    caseName<PropertyCase>);

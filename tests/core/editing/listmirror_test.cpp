#include "editing/listmirror.h"

#include "editing/controllerlist.h"
#include "support/editing.h"
#include <gtest/gtest.h>
#include <memory>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using TestDocument::Book;
using Places = std::vector<std::size_t>;

struct Shadow
{
    explicit Shadow(const Book& book) : title(book.title().get()) {}
    std::string title;
};

class ListMirrorTest : public testing::Test
{
protected:
    using Mirror = ControllerList<Book, Shadow>;

    ListMirrorTest() { mirror.follow(library.root.books()); }

    std::string titles() const
    {
        std::string joined;
        for (const Shadow* shadow : mirror.controllers())
            joined += (joined.empty() ? "" : " ") + shadow->title;
        return joined;
    }
    static Mirror::Callbacks callbacks(ListMirrorTest& test)
    {
        Mirror::Callbacks calls;
        calls.make = [](const Book& book) { return std::make_unique<Shadow>(book); };
        calls.added = [&test](Shadow& shadow, std::size_t index, const DataMessage&) {
            test.told.push_back("+" + shadow.title + std::to_string(index));
        };
        calls.aboutToRemove = [&test](Shadow& shadow, std::size_t index) {
            test.told.push_back("-" + shadow.title + std::to_string(index));
        };
        calls.moved = [&test] { test.told.emplace_back("moved"); };
        return calls;
    }

    Library library; // with the books a, b and c
    Journal told;
    Mirror mirror{callbacks(*this)};
};

TEST(ListMirrorSteps, AreThePlacesOfBeforeAndThoseOfNow)
{
    Orv::Data::ChangeRuns runs;
    runs.eraseRun(1, 2);  // a d e
    runs.insertRun(2, 2); // a d x y e
    const auto steps = stepsOf(runs, 5, 5);
    ASSERT_TRUE(steps.has_value());
    EXPECT_EQ(steps->gone, (Places{1, 2}));
    EXPECT_EQ(steps->fresh, (Places{2, 3}));
}

TEST(ListMirrorSteps, AreNoneForAScriptWithMoves)
{
    Orv::Data::ChangeRuns runs;
    runs.moveRun(0, 1);
    EXPECT_FALSE(stepsOf(runs, 3, 3).has_value());
}

TEST(ListMirrorSteps, AreNoneForARowOfAnotherLength)
{
    Orv::Data::ChangeRuns runs;
    runs.insertRun(0, 1);
    EXPECT_FALSE(stepsOf(runs, 3, 3).has_value());
}

TEST_F(ListMirrorTest, TellsOfRemovalsFromTheLastToTheFirstAndThenOfTheAdded)
{
    edit([this](ManipulatorContext& context) {
        auto books = ShelfEdit(library.root, context).books();
        books.erase(books.begin(), std::next(books.begin(), 2));
        books.pushBack(aBook("d"));
    });
    EXPECT_EQ(told, (Journal{"-b1", "-a0", "+d1"}));
    EXPECT_EQ(titles(), "c d");
}

TEST_F(ListMirrorTest, KeepsTheControllersOfMovedItems)
{
    const Shadow* const first = mirror.at(0);
    edit([this](ManipulatorContext& context) {
        ShelfEdit(library.root, context).books().move(0, 2);
    });
    EXPECT_EQ(mirror.at(2), first);
    EXPECT_EQ(told, Journal{"moved"});
}

TEST_F(ListMirrorTest, FollowsMovesBesideItemsThatComeAndGo)
{
    edit([this](ManipulatorContext& context) {
        auto books = ShelfEdit(library.root, context).books();
        books.move(2, -2);
        books.pushBack(aBook("d"));
        books.erase(1, 1);
    });
    EXPECT_EQ(titles(), "c b d");
    EXPECT_EQ(told, (Journal{"-a0", "+d2", "moved"}));
}

TEST(ListMirrorArrange, AddsTheMissingEntriesAndReturnsTheOthers)
{
    struct Entry
    {
        const int* item = nullptr;
    };
    const int items[] = {0, 1, 2, 3};
    Orv::Data::Row<Entry> row;
    for (const int place : {2, 0, 3})
        row.pushBack({&items[place]});
    const auto left = arrange(
        row, std::vector<const int*>{&items[0], &items[1], &items[2]},
        [](const Entry& entry) { return entry.item; },
        [](const int& item) { return Entry{&item}; });
    ASSERT_EQ(row.size(), 3u);
    EXPECT_EQ(row[0].item, &items[0]);
    EXPECT_EQ(row[1].item, &items[1]);
    EXPECT_EQ(row[2].item, &items[2]);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].item, &items[3]);
}

} // namespace

#include "data/treewalk.h"

#include "support/shelfbuilder.h"
#include "support/shelfchain.h"
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace TestDocument;
using Orv::Data::visitTree;

std::string visitedNames(const BaseObject& root)
{
    std::string names;
    visitTree(root, [&](const BaseObject& object) {
        names.append(object.getMeta().name).push_back(' ');
    });
    return names;
}

std::size_t visitedCount(const BaseObject& root)
{
    std::size_t count = 0;
    visitTree(root, [&](const BaseObject&) { ++count; });
    return count;
}

TEST(VisitTree, OfALeafVisitsTheLeaf)
{
    EXPECT_EQ(visitedNames(Shelf().name()), "name ");
}

TEST(VisitTree, OfAnEmptyListVisitsTheList)
{
    EXPECT_EQ(visitedNames(Shelf().books()), "books ");
}

TEST(VisitTree, VisitsParentsFirstAndChildrenInOrder)
{
    const auto shelf = aShelf().withBook("a").withBook("b").build();
    EXPECT_EQ(visitedNames(shelf->books()), "books book title pages book title pages ");
}

TEST(VisitTree, VisitsTheChildOfAUnion)
{
    EXPECT_EQ(visitedNames(aShelf().withCandle(1).build()->lamp()), "lamp candle wicks ");
}

TEST(VisitTree, VisitsMembersWhetherOrNotTheyAreModified)
{
    EXPECT_EQ(visitedNames(Shelf()),
              "shelf name uid level path spot weight size open books lamp cover color ratio "
              "shelves ");
}

TEST(VisitTree, GoesOnBehindADeepBranch)
{
    const auto shelf =
        aShelf().withShelf(nestedShelves(2)).withShelf(aShelf().withBook("last").build()).build();
    // Each shelf is 15 objects, a book three.
    EXPECT_EQ(visitedCount(*shelf), 4 * 15u + 3u);
}

TEST(VisitTree, GivesMutableObjectsOfAMutableTree)
{
    const auto shelf = aShelf().withBook("a").withBook("b").build();
    visitTree(static_cast<BaseObject&>(*shelf), [](BaseObject& object) {
        if (auto* book = dynamic_cast<Book*>(&object))
            book->pages().assign(5);
    });
    EXPECT_EQ(shelf->books().back().pages().get(), 5u);
}

TEST(VisitTree, UsesNoStackForDepth)
{
    EXPECT_EQ(visitedCount(Chain(100000).first()), 100000u);
}

} // namespace

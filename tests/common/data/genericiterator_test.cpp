#include "data/genericiterator.h"

#include "support/shelfbuilder.h"
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace TestDocument;
using Objects = std::vector<const BaseObject*>;

Objects walked(const BaseObject& object)
{
    Objects children;
    for (const auto place = object.createConstIterator(); !place->atEnd(); place->next())
        children.push_back(place->get());
    return children;
}

Objects walkedMutable(BaseObject& object)
{
    Objects children;
    for (const auto place = object.createIterator(); !place->atEnd(); place->next())
        children.push_back(place->get());
    return children;
}

TEST(LeafIterator, IsAtItsEndFromTheStart)
{
    EXPECT_TRUE(Shelf().name().createIterator()->atEnd());
}

TEST(LeafIterator, GivesNull)
{
    EXPECT_EQ(Shelf().name().createIterator()->get(), nullptr);
}

TEST(LeafIterator, StaysAtItsEnd)
{
    EXPECT_TRUE(Shelf().name().createIterator()->next().atEnd());
}

TEST(LeafIterator, IsAtItsEndFromTheStartWhenConst)
{
    EXPECT_TRUE(Shelf().name().createConstIterator()->atEnd());
}

TEST(LeafIterator, GivesNullWhenConst)
{
    EXPECT_EQ(Shelf().name().createConstIterator()->get(), nullptr);
}

TEST(LeafIterator, StaysAtItsEndWhenConst)
{
    EXPECT_TRUE(Shelf().name().createConstIterator()->next().atEnd());
}

TEST(StructIterator, GivesTheMembersInTheOrderOfDeclaration)
{
    const Book book;
    EXPECT_EQ(walked(book), (Objects{&book.title(), &book.pages()}));
}

TEST(StructIterator, GivesTheSameWhenMutable)
{
    Shelf shelf;
    EXPECT_EQ(walkedMutable(shelf), walked(shelf));
}

TEST(ListIterator, GivesTheItemsInOrder)
{
    const auto shelf = aShelf().withBook("a").withBook("b").withBook("c").build();
    const auto& books = shelf->books();
    EXPECT_EQ(walked(books), (Objects{&books.at(0), &books.at(1), &books.at(2)}));
}

TEST(ListIterator, GivesTheSameWhenMutable)
{
    const auto shelf = aShelf().withBook("a").withBook("b").build();
    EXPECT_EQ(walkedMutable(shelf->books()), walked(shelf->books()));
}

TEST(ListIterator, OfAnEmptyListIsAtItsEndFromTheStart)
{
    EXPECT_TRUE(Shelf().books().createIterator()->atEnd());
}

TEST(ListIterator, GivesNullAtItsEnd)
{
    EXPECT_EQ(Shelf().books().createIterator()->get(), nullptr);
}

TEST(UnionIterator, GivesTheChildOnce)
{
    const auto shelf = aShelf().withCandle(1).build();
    EXPECT_EQ(walked(shelf->lamp()), (Objects{shelf->lamp().get()}));
}

TEST(UnionIterator, GivesTheSameWhenMutable)
{
    const auto shelf = aShelf().withCandle(1).build();
    EXPECT_EQ(walkedMutable(shelf->lamp()), walked(shelf->lamp()));
}

TEST(UnionIterator, IsAtItsEndBehindTheChild)
{
    EXPECT_TRUE(aShelf().withCandle(1).build()->lamp().createIterator()->next().atEnd());
}

TEST(UnionIterator, GivesNullBehindTheChild)
{
    EXPECT_EQ(aShelf().withCandle(1).build()->lamp().createIterator()->next().get(), nullptr);
}

TEST(UnionIterator, OfAnEmptyUnionIsAtItsEndFromTheStart)
{
    EXPECT_TRUE(Shelf().lamp().createIterator()->atEnd());
}

TEST(UnionIterator, OfAnEmptyUnionGivesNull)
{
    EXPECT_EQ(Shelf().lamp().createConstIterator()->get(), nullptr);
}

} // namespace

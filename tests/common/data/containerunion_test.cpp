#include "data/containerunion.h"

#include "data/datapointerbox.h"
#include "support/shelfbuilder.h"
#include <gtest/gtest.h>

namespace {

using namespace TestDocument;
using Orv::Data::DataPointerBox;

TEST(ContainerUnion, IsEmptyAtFirst)
{
    EXPECT_TRUE(Shelf().lamp().isEmpty());
}

TEST(ContainerUnion, HasNoChildAtFirst)
{
    EXPECT_EQ(Shelf().lamp().get(), nullptr);
}

TEST(ContainerUnion, IsNotModifiedWhileItIsEmpty)
{
    EXPECT_FALSE(Shelf().lamp().isModified());
}

TEST(ContainerUnion, IsModifiedByAChildAtItsDefault)
{
    EXPECT_TRUE(aShelf().withCandle(0).build()->lamp().isModified());
}

TEST(ContainerUnion, SetSetsTheParent)
{
    const auto shelf = aShelf().withCandle(1).build();
    EXPECT_EQ(shelf->lamp().get()->getParent(), &shelf->lamp());
}

TEST(ContainerUnion, SetDeletesTheFormerChild)
{
    auto shelf = aShelf().withCandle(1).build();
    const DataPointerBox<BaseObject> candle(shelf->lamp().get());
    shelf->lamp().set(std::make_unique<Bulb>());
    EXPECT_EQ(candle.get(), nullptr);
}

TEST(ContainerUnion, SetStoresTheNewChild)
{
    auto shelf = aShelf().withCandle(1).build();
    auto bulb = std::make_unique<Bulb>();
    const BaseObject* stored = bulb.get();
    shelf->lamp().set(std::move(bulb));
    EXPECT_EQ(shelf->lamp().get(), stored);
}

TEST(ContainerUnion, SetWithTheObjectItHoldsKeepsItAlive)
{
    auto shelf = aShelf().withCandle(1).build();
    const DataPointerBox<BaseObject> candle(shelf->lamp().get());
    shelf->lamp().set(std::unique_ptr<BaseObject>(shelf->lamp().get()));
    EXPECT_EQ(candle.get(), shelf->lamp().get());
}

TEST(ContainerUnion, SetWithTheObjectItHoldsKeepsTheParent)
{
    auto shelf = aShelf().withCandle(1).build();
    shelf->lamp().set(std::unique_ptr<BaseObject>(shelf->lamp().get()));
    EXPECT_EQ(shelf->lamp().get()->getParent(), &shelf->lamp());
}

TEST(ContainerUnion, ClearDeletesTheChild)
{
    auto shelf = aShelf().withCandle(1).build();
    const DataPointerBox<BaseObject> candle(shelf->lamp().get());
    shelf->lamp().clear();
    EXPECT_EQ(candle.get(), nullptr);
}

TEST(ContainerUnion, ClearLeavesItEmpty)
{
    auto shelf = aShelf().withCandle(1).build();
    shelf->lamp().clear();
    EXPECT_TRUE(shelf->lamp().isEmpty());
}

TEST(ContainerUnion, DeletesItsChildWithItself)
{
    auto shelf = aShelf().withCandle(1).build();
    const DataPointerBox<BaseObject> candle(shelf->lamp().get());
    shelf.reset();
    EXPECT_EQ(candle.get(), nullptr);
}

} // namespace

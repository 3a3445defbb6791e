#include "ksx/core/listenerof.h"

#include "core/listenerdeaf.h"
#include "support/editing.h"
#include <gtest/gtest.h>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using TestDocument::Shelf;

class Guest final : public Orv::Core::ListenerDeaf<>
{
public:
    explicit Guest(const Shelf&) {}
    bool isOwnedByShadow() const override { return true; }
};

class ListenerOfTest : public testing::Test
{
protected:
    Library library;
};

TEST_F(ListenerOfTest, AnswersTheSameOneAgain)
{
    Guest& guest = listenerOf<Guest>(library.inner());
    EXPECT_EQ(&listenerOf<Guest>(library.inner()), &guest);
}

TEST_F(ListenerOfTest, TheListenerDiesWithItsObject)
{
    const Orv::Data::DataPointerBox<Guest> guest(&listenerOf<Guest>(library.inner()));
    library.root.shelves().clear();
    EXPECT_FALSE(guest);
}

TEST_F(ListenerOfTest, AListenerOnTwoObjectsDiesWithTheFirstThatGoes)
{
    const Orv::Data::DataPointerBox<Guest> guest(&giveToShadows(
        std::make_unique<Guest>(library.root), {&library.root.name(), &library.inner()}));
    library.root.shelves().clear();
    EXPECT_FALSE(guest);
    EXPECT_EQ(library.root.name().shadow()->findListener<Guest>(), nullptr);
}

} // namespace

// What a context knows of the objects that came into the tree.
#include "core/manipulatorcontext.h"

#include "support/editing.h"

#include <gtest/gtest.h>

using Orv::Data::BaseObject;
using Orv::Data::DataPointerBox;
using TestDocument::Candle;
using namespace TestSupport;

namespace {

// The objects of a context that live, taken off it.
std::vector<const BaseObject*> taken(ManipulatorContext& context)
{
    std::vector<const BaseObject*> objects;
    for (const DataPointerBox<BaseObject>& box : context.takeInserted())
        if (box)
            objects.push_back(box.get());
    return objects;
}

using Objects = std::vector<const BaseObject*>;

class InsertedObjects : public testing::Test
{
protected:
    void insertBook(ManipulatorContext& context)
    {
        ShelfEdit(library.root, context).books().pushBack(aBook("new"));
    }
    Library library;
    Objects objects;
};

} // namespace

TEST_F(InsertedObjects, AreTheItemsThatCameIntoAList)
{
    edit([&](auto& context) {
        insertBook(context);
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{&library.book(3)});
}

TEST_F(InsertedObjects, AreTheChildrenThatCameIntoAUnion)
{
    edit([&](auto& context) {
        ShelfEdit(library.root, context).lamp().set(std::make_unique<Candle>());
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{library.root.lamp().get()});
}

TEST_F(InsertedObjects, AreTakenOffOnce)
{
    edit([&](auto& context) {
        insertBook(context);
        taken(context);
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{});
}

TEST_F(InsertedObjects, AreNotThoseThatMoved)
{
    edit([&](auto& context) {
        ShelfEdit(library.root, context).books().move(0, 2);
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{});
}

TEST_F(InsertedObjects, OfACommandWithinPassToTheEnclosingContext)
{
    edit([&](auto& context) {
        edit([&](auto& inner) { insertBook(inner); });
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{&library.book(3)});
}

TEST_F(InsertedObjects, ThatACommandWithinHasTakenDoNotPass)
{
    edit([&](auto& context) {
        edit([&](auto& inner) {
            insertBook(inner);
            taken(inner);
        });
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{});
}

TEST_F(InsertedObjects, OfARefusedCommandWithinAreGone)
{
    edit([&](auto& context) {
        editAndRefuse([&](auto& inner) { insertBook(inner); });
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{});
}

TEST_F(InsertedObjects, AreNotThoseThatARefusalPutsBack)
{
    edit([&](auto& context) {
        editAndRefuse([&](auto& inner) { ShelfEdit(library.root, inner).books().clear(); });
        objects = taken(context);
    });
    EXPECT_EQ(objects, Objects{});
}

TEST_F(InsertedObjects, AreThoseThatAnUndoPutsBack)
{
    const auto command =
        makeCommand([&](auto& context) { ShelfEdit(library.root, context).books().erase(1, 1); });
    command->execute();
    RecordingListener listener;
    attach(library.root.books(), listener);
    listener.reaction = [&](const DataMessage& message) {
        objects = taken(static_cast<ManipulatorContext&>(*message.context.access()));
    };
    command->undo();
    EXPECT_EQ(objects, Objects{&library.book(1)});
}

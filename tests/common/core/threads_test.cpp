// Two documents that are edited on two threads; under the thread sanitizer these show races.
#include "core/commandhistory.h"
#include "support/editing.h"
#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace TestSupport;
using TestDocument::written;

// Edits, refuses, undoes and redoes, with a listener that edits on, and commands within commands.
void editForAWhile(Library& library)
{
    RecordingListener listener(Orv::Data::ChangeType::Value);
    attach(library.root.name(), listener);
    listener.reaction = [&](const DataMessage& message) {
        if (!static_cast<const ManipulatorContext&>(*message.context).isReplay())
            edit([&](auto& inner) { ShelfEdit(library.inner(), inner).name().set("followed"); });
    };
    for (int i = 0; i < 200; ++i) {
        const auto command = makeCommand([&](auto& context) {
            ShelfEdit root(library.root, context);
            root.books().pushBack(aBook("new"));
            root.name().set("edited");
            editAndRefuse([&](auto& inner) { ShelfEdit(library.root, inner).books().clear(); });
        });
        command->execute();
        command->undo();
        command->redo();
        command->undo();
    }
    edit([&](auto& context) { context.removeListener(library.root.name(), listener); });
}

TEST(Threads, EditTwoDocumentsIndependently)
{
    Library first;
    Library second;
    const std::string before = written(first.root);

    std::thread other([&] { editForAWhile(second); });
    editForAWhile(first);
    other.join();

    EXPECT_EQ(written(first.root), before);
    EXPECT_EQ(written(second.root), before);
}

TEST(Threads, HaveContextsOfTheirOwn)
{
    Library first;
    Library second;
    RecordingListener listener;
    attach(second.root.name(), listener);
    std::size_t toldWithin = 99;

    edit([&](auto&) {
        // In this thread it would be told at the end of the edit.
        std::thread([&] {
            edit([&](auto& context) { ShelfEdit(second.root, context).name().set("new"); });
        }).join();
        toldWithin = listener.told.size();
    });

    EXPECT_EQ(toldWithin, 1u);
}

} // namespace

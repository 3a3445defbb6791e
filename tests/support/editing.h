// Editing documents and listening to them in tests.
#pragma once

#include "core/commanddatamodification.h"
#include "core/manipulatorcontext.h"
#include "data/listenerbase.h"
#include "support/shelfbuilder.h"
#include "support/testdocument.h"
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

using Orv::Core::CommandDataModification;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using Orv::Data::ChangeRuns;
using Orv::Data::DataMessage;

using Journal = std::vector<std::string>;
using ShelfEdit = ManipulatorStruct<TestDocument::Shelf>;
using EditFunction = std::function<void(ManipulatorContext&)>;

// A command of one edit that succeeds.
inline std::shared_ptr<CommandDataModification> makeCommand(const EditFunction& function,
                                                            const std::string& mergeKey = {})
{
    return std::make_shared<CommandDataModification>(
        [function](ManipulatorContext& context) {
            function(context);
            return true;
        },
        "edit", mergeKey);
}

// Runs such a command and drops it, and with it what the edit took out of the tree.
inline void edit(const EditFunction& function)
{
    makeCommand(function)->execute();
}

// Runs an edit that is refused at its end.
inline bool editAndRefuse(const EditFunction& function)
{
    CommandDataModification command(
        [&](ManipulatorContext& context) {
            function(context);
            return false;
        },
        "refused");
    return command.execute();
}

// A script as text: a letter per run for kept, erased, inserted, changed, away and here, its count,
// and the link of moved runs: "K2 A1+2 K1 H1-2".
inline std::string textOf(const ChangeRuns& runs)
{
    std::string text;
    for (const Orv::Data::ChangeRun& run : runs.runs()) {
        text += text.empty() ? "" : " ";
        text += "KEICAH"[static_cast<int>(run.kind)] + std::to_string(run.count);
        if (run.link != 0)
            text += (run.link > 0 ? "+" : "") + std::to_string(run.link);
    }
    return text;
}

// Keeps what it is told. Lives in the test and not with the shadow.
class RecordingListener final : public Orv::Data::ListenerBase
{
public:
    static constexpr std::uint32_t All = 0xFFFFFFFFu;

    explicit RecordingListener(std::uint32_t typeMask = All, std::uint32_t memberMask = All,
                               std::uint16_t priority = 0, std::uint32_t consumeMask = 0)
        : m_filter{typeMask, memberMask, consumeMask}, m_priority(priority)
    {}

    std::uint16_t getPriority() const override { return m_priority; }
    const Orv::Data::ListenerFilter& getFilter() const override { return m_filter; }
    void deliver(const DataMessage& message) override
    {
        const std::string runs = textOf(message.runs);
        told.push_back(std::to_string(message.type) + (runs.empty() ? "" : " " + runs));
        messages.push_back(message);
        if (reaction)
            reaction(message);
    }

    Journal told; // a line per message: its type and its script
    std::vector<DataMessage> messages;
    std::function<void(const DataMessage&)> reaction; // called at the end of each delivery

private:
    Orv::Data::ListenerFilter m_filter;
    std::uint16_t m_priority;
};

inline void attach(const Orv::Data::BaseObject& object, Orv::Data::ListenerBase& listener)
{
    edit([&](ManipulatorContext& context) { context.addListener(object, listener); });
}

inline std::unique_ptr<TestDocument::Book> aBook(const std::string& title)
{
    auto book = std::make_unique<TestDocument::Book>();
    book->title().assign(title);
    return book;
}

// The titles of a shelf's books, in order: "a b c".
inline std::string titlesOf(const TestDocument::Shelf& shelf)
{
    std::string titles;
    for (const TestDocument::Book& book : shelf.books())
        titles += (titles.empty() ? "" : " ") + book.title().get();
    return titles;
}

// The live root of a document with the books a, b and c, an inner shelf and no lamp.
struct Library
{
    Library()
    {
        root.name().assign("root");
        root.books().pushBack(aBook("a"));
        root.books().pushBack(aBook("b"));
        root.books().pushBack(aBook("c"));
        root.shelves().pushBack(TestDocument::aShelf().named("inner").build());
    }

    TestDocument::Shelf& inner() { return static_cast<TestDocument::Shelf&>(root.shelves().at(0)); }
    TestDocument::Book& book(std::size_t index) { return root.books().at(index); }

    TestDocument::Root root;
};

} // namespace TestSupport

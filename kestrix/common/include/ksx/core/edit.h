// The ways to change a document: one undoable command per edit, several in a transaction.
#pragma once

#include "core/commandmodification.h"
#include "core/datamodification.h"
#include <QString>
#include <memory>
#include <optional>
#include <utility>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Orv::Data {
class BaseObject;
class ListenerBase;
struct DataMessage;
} // namespace Orv::Data

namespace Ksx::Core {

// Runs a command on the command manager of the process, or directly if there is none. Returns false
// if it was refused, and so rolled back. Passes on exceptions. Main thread, like all functions
// here.
//
// The command manager keeps no undo stack. A program that offers undo makes one of the executed()
// signal:
//
//     manager.executed().connect([&done](const std::shared_ptr<Orv::Core::ICommand>& command) {
//         if (auto undoable = std::dynamic_pointer_cast<Orv::Core::IUndoableCommand>(command))
//             done.push_back(undoable);
//     });
//     // later, the last one first; returns false for a command that was part of another edit
//     done.back()->undo();
//
// The commands of a Transaction come between a BeginGroupCommand and an EndGroupCommand.
bool executeCommand(const std::shared_ptr<Orv::Core::CommandModification>& command);

// Returns the translation of a history key. `className` is the context,
// "Ksx::Core::PackageController" for one. Without a translator that is the key.
QString historyText(const char* className, const char* key);

// Runs one undoable edit: applies `function` to the object in `target`, with a copy of `payload`.
// `history` is the name of the command for users and may be empty. Inside another edit, or inside a
// listener, the command becomes a part of that edit.
//
// Returns the payload as the function left it: edits write their results into it. Returns none if
// the function returned false, or the target has died or is not attached. All changes are rolled
// back then, and no listener hears of them.
//
// An edit of one's own:
//
//     bool applyLabel(ManipulatorStruct<Graph> graph, const DataPointerBoxMasterKey&,
//                     const std::string& label)
//     {
//         graph.attributes().label().set(label);
//         return true; // false refuses the edit
//     }
//
//     runEdit(DataPointerBox<Graph>(&graph), label, &applyLabel, QString());
template <class T, class Payload, class Manipulator, class Argument>
std::optional<Payload>
runEdit(const Orv::Data::DataPointerBox<T>& target, Payload payload,
        bool (*function)(Manipulator, const Orv::Data::DataPointerBoxMasterKey&, Argument),
        const QString& history)
{
    if (!target)
        return std::nullopt;
    auto modification = Orv::Core::makeModification(target, std::move(payload), function);
    const auto* run = modification.get();
    const auto command =
        std::make_shared<Orv::Core::CommandModification>(std::move(modification), history);
    if (!executeCommand(command))
        return std::nullopt;
    return run->data();
}

// Groups the commands of one user-level edit, from its construction to its end. Undoes nothing
// itself, also if one of the commands was refused. Transactions may be nested. Without a command
// manager it warns and does nothing. Lives on the stack.
class Transaction
{
public:
    // `history` is the name of the group for users.
    explicit Transaction(const QString& history);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
};

// Returns the context in which a listener may edit further. Returns null for an undo or a redo, and
// if the context has ended. An undo brings back a state that was settled before, and must not be
// edited on top.
Orv::Core::ManipulatorContext* editableContext(const Orv::Data::DataMessage& message);

// Attaches a listener to an object that is part of a document, outside of any edit. It hears of
// changes from now on. If an edit is under way, it hears of the rest of it. If isOwnedByShadow()
// returns true, the shadow owns the listener from now on. Else the caller owns it, and may destroy
// it at any time.
void listenTo(const Orv::Data::BaseObject& object, Orv::Data::ListenerBase& listener);

} // namespace Ksx::Core
